// Where two lines cross, and how a calculator cuts a line into parts at its crossings with a
// closed outline.
#include <UtilityGeometry.h>

#include <iostream>

int main() {
  // Two bounded lines (segments). A crossing within 0.001 of an end point counts as lying at
  // that end.
  const KvGeLine2d a(KvGePoint2d(0, 0), KvGePoint2d(10, 0));
  const KvGeLine2d b(KvGePoint2d(4, -3), KvGePoint2d(4, 3));

  // The record holds the point and, for each line, the parameter (the distance from its start
  // point), the end code (-1 start, 0 inside, +1 end) and the crossing sense: +1 when b crosses
  // a from its right to its left.
  KvGeIntrPoint2d crossing;
  if (Intersection2d(a, b, crossing) == 0) return 1;
  std::cout << "a        " << a << '\n' << "b        " << b << '\n';
  std::cout << "crossing " << crossing << '\n';
  std::cout << "  at " << crossing.Param0() << " along a, " << crossing.Param1() << " along b, sense "
            << crossing.CrossSense() << "\n\n";

  // A calculator collects the crossings of a line with an outline, sorts them along the line
  // and cuts the line into parts between them, each typed by how often the outline was crossed:
  // 1 inside, 0 on the boundary (or of no length), -1 outside. A new calculator holds two
  // sentinels at both infinities, so crossings are added with append = 1 to keep them.
  const KvGePolygon2d outline{{2, -2}, {8, -2}, {8, 2}, {2, 2}};    // counter-clockwise
  const KvGeLine2d line(KvGePoint2d(0, 0), KvGePoint2d(10, 0), 0);  // segment 0: unbounded
  KvGeIntrCalculator2d calc;
  Intersection2d(line, outline, calc, 1);
  calc.Calculate0();  // sort along the line (object 0) and cut it into parts

  int inside = 0;
  for (const KvGeIntrPart2d& part : calc.Parts0()) {
    std::cout << "part type " << part.Type() << " from " << part.Min().Param0() << " to " << part.Max().Param0()
              << '\n';
    if (part.Type() == 1) ++inside;
  }
  // The parts run from -infinity to the entry at x = 2, inside to the exit at x = 8, and on.
  return crossing == KvGePoint2d(4, 0) && crossing.CrossSense() == 1 && inside == 1 ? 0 : 1;
}
