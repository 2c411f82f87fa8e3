#pragma once
/// @file
/// KvGeAngle: a direction or a turn in the plane, in radians, counter-clockwise positive, 0 along
/// the positive x axis. An angle is never normalised implicitly: every value, also a negative
/// one or one beyond 2 pi, stays as set until a caller normalises it.
///
/// Comparisons use an absolute band of 1e-6 radians on the raw values, with no normalisation
/// (0 < 2 pi holds); a difference equal to the band counts as equal. Normalize brings an angle
/// into a range [lower, upper) or (lower, upper] by adding or subtracting one span at a time,
/// with the bounds tested in the same band: an angle within 1e-6 below the excluded bound is
/// taken to lie on it and moved across, so 2 pi - 5e-7 normalised into [0, 2 pi) becomes -5e-7.
/// This is the required behaviour, deliberately kept.
///
/// Degrees convert with the factors 0.017453292519943295 and 57.29577951308232. Division by
/// exactly 0 leaves the angle unchanged, in place of an error.

/// \file
/// Non-finite input: Normalize of a NaN or infinite angle, or into a range with an infinite bound,
/// gives NaN; the direction of a point propagates NaN, and infinite coordinates give their
/// directions. See docs/non-finite-policy.md.

#include <iosfwd>

#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"

class KvGePoint2d;
class KvGePoint3d;

/// An angle in radians, counter-clockwise positive, never normalised implicitly. Comparisons use the absolute band 1e-6
/// on the raw values (a difference equal to the band counts as equal).
class KVGE_API KvGeAngle {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  KvGeAngle() = default;
  /// The angle of rad radians, as given.
  KvGeAngle(double rad) : m_Rad(rad) {}  // NOLINT: radians convert implicitly, as callers expect
  /// The direction of the vector (dx, dy), in -pi .. pi; 0 when both are exactly 0.
  KvGeAngle(double dx, double dy) { Set(dx, dy); }
  /// The direction of p seen from the origin.
  explicit KvGeAngle(const KvGePoint2d& p) { Set(p); }
  /// The direction from one point to another.
  KvGeAngle(const KvGePoint2d& from, const KvGePoint2d& to) { Set(from, to); }
  /// The direction of p seen from the origin, in plan.
  explicit KvGeAngle(const KvGePoint3d& p) { Set(p); }
  /// The direction from one point to another, in plan.
  KvGeAngle(const KvGePoint3d& from, const KvGePoint3d& to) { Set(from, to); }
  /// Copies the value.
  KvGeAngle(const KvGeAngle&) = default;
  /// Copies the value.
  KvGeAngle& operator=(const KvGeAngle&) = default;
  virtual ~KvGeAngle();

  /// Sets rad radians.
  KvGeAngle& SetRad(double rad) {
    m_Rad = rad;
    return *this;
  }
  /// Sets deg degrees (times 0.017453292519943295).
  KvGeAngle& SetDeg(double deg) {
    m_Rad = deg * 0.017453292519943295;
    return *this;
  }
  /// The value in radians.
  double Rad() const { return m_Rad; }
  /// The value in degrees (times 57.29577951308232).
  double Deg() const { return m_Rad * 57.29577951308232; }
  /// The direction of (dx, dy), in -pi .. pi; 0 when both are exactly 0.
  KvGeAngle& Set(double dx, double dy);
  /// The direction of p seen from the origin, and from one point to another; a 3D point is seen
  /// in plan (x and y only).
  KvGeAngle& Set(const KvGePoint2d& p);
  /// The direction from one point to another.
  KvGeAngle& Set(const KvGePoint2d& from, const KvGePoint2d& to);
  /// The direction of p seen from the origin, in plan.
  KvGeAngle& Set(const KvGePoint3d& p);
  /// The direction from one point to another, in plan.
  KvGeAngle& Set(const KvGePoint3d& from, const KvGePoint3d& to);

  /// Adds o.
  KvGeAngle& operator+=(const KvGeAngle& o) {
    m_Rad += o.m_Rad;
    return *this;
  }
  /// Subtracts o.
  KvGeAngle& operator-=(const KvGeAngle& o) {
    m_Rad -= o.m_Rad;
    return *this;
  }
  /// Multiplies by s.
  KvGeAngle& operator*=(double s) {
    m_Rad *= s;
    return *this;
  }
  /// Divides by s; s exactly 0 leaves the angle unchanged.
  KvGeAngle& operator/=(double s) {
    if (s != 0.0) m_Rad /= s;
    return *this;
  }
  /// The smaller (&) or larger (|) raw value, no band and no normalisation; a tie gives the
  /// argument's value.
  KvGeAngle& operator&=(const KvGeAngle& o) {
    if (o.m_Rad <= m_Rad) m_Rad = o.m_Rad;
    return *this;
  }
  /// The larger raw value (|); a tie gives the argument's value.
  KvGeAngle& operator|=(const KvGeAngle& o) {
    if (o.m_Rad >= m_Rad) m_Rad = o.m_Rad;
    return *this;
  }
  /// Negates the value.
  KvGeAngle& Negate() {
    m_Rad = -m_Rad;
    return *this;
  }
  /// The sum.
  KvGeAngle operator+(const KvGeAngle& o) const { return KvGeAngle(*this) += o; }
  /// The difference.
  KvGeAngle operator-(const KvGeAngle& o) const { return KvGeAngle(*this) -= o; }
  /// Times s.
  KvGeAngle operator*(double s) const { return KvGeAngle(*this) *= s; }
  /// Divided by s; s exactly 0 gives an unchanged copy.
  KvGeAngle operator/(double s) const { return KvGeAngle(*this) /= s; }
  /// The smaller raw value (no band).
  KvGeAngle operator&(const KvGeAngle& o) const { return KvGeAngle(*this) &= o; }
  /// The larger raw value (no band).
  KvGeAngle operator|(const KvGeAngle& o) const { return KvGeAngle(*this) |= o; }
  /// The negated angle.
  KvGeAngle operator-() const { return KvGeAngle(-m_Rad); }
  /// a times s.
  friend KvGeAngle operator*(double s, const KvGeAngle& a) { return a * s; }

  /// -1 when o - eps > this, 1 when this > o + eps, otherwise 0.
  int Compare(const KvGeAngle& o, double eps = kKvGeAngularTol) const {
    if (o.m_Rad - eps > m_Rad) return -1;
    if (m_Rad > o.m_Rad + eps) return 1;
    return 0;
  }
  /// 1 when the values differ by no more than 1e-6 (inclusive).
  int operator==(const KvGeAngle& o) const { return Compare(o) == 0 ? 1 : 0; }
  /// 1 when the values differ by more than 1e-6.
  int operator!=(const KvGeAngle& o) const { return Compare(o) != 0 ? 1 : 0; }
  /// 1 when this is below o by more than 1e-6.
  int operator<(const KvGeAngle& o) const { return Compare(o) < 0 ? 1 : 0; }
  /// 1 when this is not above o by more than 1e-6.
  int operator<=(const KvGeAngle& o) const { return Compare(o) <= 0 ? 1 : 0; }
  /// 1 when this is above o by more than 1e-6.
  int operator>(const KvGeAngle& o) const { return Compare(o) > 0 ? 1 : 0; }
  /// 1 when this is not below o by more than 1e-6.
  int operator>=(const KvGeAngle& o) const { return Compare(o) >= 0 ? 1 : 0; }
  /// -1 below -1e-6, 1 above 1e-6, otherwise 0.
  int Sgn() const { return m_Rad < -kKvGeAngularTol ? -1 : (m_Rad > kKvGeAngularTol ? 1 : 0); }

  /// The cosine.
  double Cos() const;
  /// The sine.
  double Sin() const;
  /// The tangent; not guarded at odd multiples of pi/2.
  double Tan() const;
  /// 1 / tangent; not guarded at multiples of pi.
  double Cot() const;
  /// Sets the arc cosine of x, in 0 .. pi (NaN for x outside -1 .. 1).
  KvGeAngle& ArcCos(double x);
  /// Sets the arc sine of x, in -pi/2 .. pi/2 (NaN for x outside -1 .. 1).
  KvGeAngle& ArcSin(double x);
  /// The arc tangent of x, in -pi/2 .. pi/2.
  KvGeAngle& ArcTan(double x);
  /// The arc tangent of 1 / x (not pi/2 - arctan x), in -pi/2 .. pi/2; x = 0 gives +-pi/2 by
  /// the sign of the zero.
  KvGeAngle& ArcCot(double x);

  /// (cos, sin): the unit direction.
  KvGePoint2d Point2d() const;
  /// (r cos, r sin).
  KvGePoint2d Point2d(double r) const;
  /// (cos, sin, 0).
  KvGePoint3d Point3d() const;
  /// (r cos, r sin, z).
  KvGePoint3d Point3d(double r, double z) const;

  /// Brings the angle into the range between lower and upper by whole spans (upper - lower),
  /// lower included when lowerIncluded is non-zero, else upper included (bounds tested in the
  /// 1e-6 band, see above). A span that is not positive sets the angle to the included bound.
  ///
  /// An angle already in the range comes back unchanged, also when a bound is infinite. The
  /// loops step one span at a time for every angle up to 2^24 (16,777,216) spans from lower, so
  /// any angle up to about 1e8 radians normalised into a full turn gets the stepwise result. An
  /// angle farther out is first brought within two spans of lower with floating-point
  /// remainders, so that a huge angle (one to which adding a span changes nothing) does not hang
  /// the caller; its result differs from endless stepping by the rounding that stepping would
  /// have accumulated. Outside the range, a NaN or infinite angle, or a range with an infinite
  /// bound, gives NaN: there is no whole number of spans to step by.
  KvGeAngle& Normalize(const KvGeAngle& upper, const KvGeAngle& lower, int lowerIncluded);
  /// A normalized copy.
  KvGeAngle Normalized(const KvGeAngle& upper, const KvGeAngle& lower, int lowerIncluded) const {
    return KvGeAngle(*this).Normalize(upper, lower, lowerIncluded);
  }

  /// 1 when turning from the start in the positive sense reaches this angle no later than the
  /// end: start a and end b when counterClockwise is non-zero, else start b and end a. Equal a
  /// and b sweep the full turn; both ends are between.
  int IsBetween(const KvGeAngle& a, const KvGeAngle& b, int counterClockwise) const;

 private:
  double m_Rad = 0.0;
};

static_assert(sizeof(KvGeAngle) == sizeof(void*) + sizeof(double), "KvGeAngle layout");

/// Exported constant angles, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg0();
/// 30 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg30();
/// 45 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg45();
/// 60 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg60();
/// 90 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg90();
/// 180 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg180();
/// 270 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg270();
/// 360 degrees, built once.
KVGE_API const KvGeAngle& KvGeAngle_Deg360();

/// min and max of the raw values: b > a gives (a, b), otherwise (b, a); no band.
KVGE_API void CalcMinMax(const KvGeAngle& a, const KvGeAngle& b, KvGeAngle& min, KvGeAngle& max);
/// 1 when b - a normalised into [0, 2 pi) is 0 within 1e-6.
KVGE_API int IsSimelarlyDirected(const KvGeAngle& a, const KvGeAngle& b);
/// 1 when b - a normalised into [0, pi) is pi/2 within 1e-6.
KVGE_API int IsNormal(const KvGeAngle& a, const KvGeAngle& b);
/// 1 when the directions agree or are opposite within eps. For eps above 1e-6 a difference
/// within eps of 0 is snapped to 0, and one within eps of pi to pi + 0.1 eps (just above pi, so
/// that the normalisation into [0, pi) takes it near 0 instead of just below pi); the factor 0.1
/// is deliberate. Only differences near 0 or pi themselves are snapped; one near -pi or 2 pi is
/// left to the normalisation and the final test.
KVGE_API int IsParallel(const KvGeAngle& a, const KvGeAngle& b, double eps);

/// r = the plan distance sqrt(x^2 + y^2), angle = the direction of (x, y) (0 when both are
/// exactly 0), h = z.
KVGE_API void CartCylind(double x, double y, double z, double& r, KvGeAngle& angle, double& h);
/// r = the plan distance sqrt(x^2 + y^2), not the distance in space; azimuth = the direction of
/// (x, y); elevation = the direction of (r, z), measured from the plan distance. Each direction
/// is 0 when both its arguments are exactly 0. This is how the library defines it.
KVGE_API void CartSphere(double x, double y, double z, double& r, KvGeAngle& azimuth, KvGeAngle& elevation);

/// Writes the angle in degrees, "30 deg".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeAngle& v);
