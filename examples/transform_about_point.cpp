// Turning and scaling a part about a point of its own, as a CAD command does.
#include <UtilityGeometry.h>

#include <iomanip>
#include <iostream>

int main() {
  // A 10 x 10 square standing on the corner (20, 10).
  const KvGePolygon2d square{{20, 10}, {30, 10}, {30, 20}, {20, 20}};
  const KvGePoint2d corner(20, 10);

  // A modelling matrix holds the transform. The ...Rel forms work about a centre: they move the
  // centre to the origin, transform, and move it back. Positive angles turn counter-clockwise.
  KvGeModMat2d turn;
  turn.SetRotRel(KvGeAngle().SetDeg(90), corner);

  // Cat... appends a further step, so a chain reads in the order the steps happen: turned
  // first, then enlarged twice about the same corner, which itself stays where it is.
  KvGeModMat2d turnAndGrow = turn;
  turnAndGrow.CatEnlRel(2, 2, corner);

  // Transformed() returns a copy; Transform() changes the object in place.
  const KvGePolygon2d turned = square.Transformed(turn);
  const KvGePolygon2d grown = square.Transformed(turnAndGrow);

  // Turning leaves rounding noise in the last digits; a fixed format prints what matters.
  std::cout << std::fixed << std::setprecision(3);
  std::cout << "square   " << square << '\n';
  std::cout << "turned   " << turned << '\n';
  std::cout << "grown    " << grown << '\n';

  // Point comparison is tolerant (0.001), so the noise does not matter here either.
  const bool right = turned[2] == KvGePoint2d(10, 20) && grown[2] == KvGePoint2d(0, 30) && grown[0] == corner &&
                     IsEqual(grown.Area(), 4 * square.Area());
  return right ? 0 : 1;
}
