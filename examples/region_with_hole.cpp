// A plate with a hole: its area, its centre of area and the box it needs.
#include <UtilityGeometry.h>

#include <iostream>

int main() {
  // A region is a polygon set. A ring running counter-clockwise encloses what lies inside it;
  // a clockwise ring inside it is a hole. No ring repeats its first point at the end.
  const KvGePolygon2d outer{{0, 0}, {100, 0}, {100, 60}, {0, 60}};
  const KvGePolygon2d hole{{10, 20}, {10, 40}, {30, 40}, {30, 20}};  // clockwise
  const KvGePolygon2dArray plate{outer, hole};

  // The area sums the rings' signed areas, so the clockwise hole counts negatively:
  // 100 * 60 - 20 * 20 = 5600.
  const double area = plate.Area();
  // The centre of area with the hole taken out: it moves away from the hole, to the right of 50.
  const KvGePoint2d centre = plate.Schwerpunkt();
  // The box around every vertex of every ring.
  const KvGeBox2d box = plate.BoundingBox();

  std::cout << "area     " << area << '\n';
  std::cout << "centre   " << centre << '\n';
  std::cout << "box      " << box << '\n';
  // Sense() tells how a ring runs: 1 counter-clockwise, -1 clockwise.
  for (const KvGePolygon2d& ring : plate) std::cout << "ring     " << ring << "  sense " << ring.Sense() << '\n';

  // Comparisons are tolerant: IsEqual and == on points accept differences up to 0.001.
  const bool right = IsEqual(area, 5600.0) && centre == KvGePoint2d(52.1429, 30) && box.Min() == KvGePoint2d(0, 0) &&
                     box.Max() == KvGePoint2d(100, 60);
  return right ? 0 : 1;
}
