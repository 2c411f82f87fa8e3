#pragma once
/// @file
/// Internal: the box and transform rules that the plane and the plan circles and arcs share.

#include <cmath>
#include <initializer_list>

#include "basics/KvGeTolerance.h"
#include "basics/companion/KvBtCompare.h"
#include "geometry/curves/KvGeCircle2d.h"
#include "geometry/points/KvGeAngle.h"

namespace KvGeDetail {

constexpr double kKvGeTwoPi = 6.283185307179586;
constexpr double kKvGePi = 3.141592653589793;

/// The box of the circle (whole non-zero) or of the arc beg -> end, each point of it transformed
/// by m. The point at angle t is centre + r (cos t, sin t) before the transform; coordinate k of
/// its image is extreme where t = atan2(m(1, k), m(0, k)) or that plus pi, for the `cols`
/// coordinates of the matrix. An arc adds its end points and those extremes that it passes; an
/// arc of sense 0 is its end points alone, and one that sweeps a full turn (within 1e-6) is its
/// circle. A radius within 0.001 of 0 gives the transformed centre alone.
template <class B, class P, class M>
B ArcBox(const P& c, double r, int whole, const KvGeAngle& beg, const KvGeAngle& end, const M& m, unsigned cols) {
  B box;
  if (!IsNotEqual(r, 0.0, kKvGeLinearTol)) {
    box.Include(c.Transformed(m));
    return box;
  }
  const auto at = [&](double t) {
    P q = c;
    q.x += r * std::cos(t);
    q.y += r * std::sin(t);
    return q.Transformed(m);
  };
  const KvGeAngle sweep = end - beg;
  const int sense = ArcSense(beg, end);
  const int full = whole || KvGeAngle(std::fabs(sweep.Rad())) >= KvGeAngle(kKvGeTwoPi);
  if (!full) {
    box.Include(at(beg.Rad()));
    box.Include(at(end.Rad()));
    if (sense == 0) return box;
  }
  for (unsigned k = 0; k < cols; ++k) {
    const double t = std::atan2(m(1, k), m(0, k));
    for (const double u : {t, t + kKvGePi})
      if (full || KvGeAngle(u).IsBetween(beg, end, sense > 0)) box.Include(at(u));
  }
  return box;
}

/// The plan part of a modelling matrix: how x and y of a direction map (row vectors).
struct PlanMap {
  double a, b, c, d;  // (x, y) -> (x a + y c, x b + y d)

  template <class M>
  explicit PlanMap(const M& m) : a(m(0, 0)), b(m(0, 1)), c(m(1, 0)), d(m(1, 1)) {}

  double Det() const { return a * d - b * c; }
  /// The radius of the image circle: exact for a similarity, that of equal area otherwise.
  double Scale() const { return std::sqrt(std::fabs(Det())); }
  KvGeAngle Direction(const KvGeAngle& t) const {
    const double x = t.Cos(), y = t.Sin();
    return KvGeAngle(x * a + y * c, x * b + y * d);
  }
  /// Beg becomes the image direction of Beg. End becomes Beg plus the old sweep (negated by a
  /// mirror), corrected by the part of a turn that puts it on the image direction of End: an
  /// affine map moves directions by less than half a turn relative to each other, so whole turns
  /// and the sense survive and the ends lie on the right rays.
  void MapArc(KvGeAngle& beg, KvGeAngle& end) const {
    const double s = Det() < 0.0 ? -1.0 : 1.0;
    const KvGeAngle b0 = Direction(beg);
    const double predicted = b0.Rad() + s * (end - beg).Rad();
    const double corr = std::remainder(Direction(end).Rad() - predicted, kKvGeTwoPi);
    beg = b0;
    end = KvGeAngle(predicted + corr);
  }
};

}  // namespace KvGeDetail
