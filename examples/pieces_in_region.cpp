// Which pieces of a line, and of a polyline, lie inside a region with a hole.
#include <UtilityGeometry.h>

#include <iostream>

int main() {
  // Counter-clockwise outer ring, clockwise hole.
  const KvGePolygon2dArray region{KvGePolygon2d{{0, 0}, {100, 0}, {100, 60}, {0, 60}},
                                  KvGePolygon2d{{40, 20}, {40, 40}, {60, 40}, {60, 20}}};

  // A segment across the region and through the hole. Mode 0 gives each inside piece on its own;
  // mode 1 would also join pieces running along the boundary. Pieces run the line's way.
  const KvGeLine2d line(KvGePoint2d(-20, 30), KvGePoint2d(120, 30));
  KvBtDynArray<KvGeLine2d> pieces;
  const int n = Intersection2d(line, region, pieces, 0);
  std::cout << n << " pieces of " << line << '\n';
  for (const KvGeLine2d& piece : pieces) std::cout << "  " << piece << '\n';

  // A polyline is cut edge by edge and the pieces are chained: it comes back as one polyline for
  // each stretch it stays inside.
  const KvGePolyline2d path{{-10, 10}, {50, 10}, {50, 50}, {50, 70}};
  KvGePolyline2dArray inside;
  Intersection2d(path, region, inside, 0);
  for (const KvGePolyline2d& stretch : inside) std::cout << "  " << stretch << '\n';

  // Where single points lie: 4 inside, 2 on the boundary (within 0.001), 1 outside.
  std::cout << "(20, 30): " << Containment(KvGePoint2d(20, 30), region)
            << ", (50, 30) in the hole: " << Containment(KvGePoint2d(50, 30), region)
            << ", (40.0009, 30) on the hole's edge: " << Containment(KvGePoint2d(40.0009, 30), region) << '\n';

  const bool right = n == 2 && pieces[0].P1() == KvGePoint2d(0, 30) && pieces[0].P2() == KvGePoint2d(40, 30) &&
                     pieces[1].P1() == KvGePoint2d(60, 30) && inside.GetSize() == 2;
  return right ? 0 : 1;
}
