#pragma once
/// @file
/// KvGePoint2d: the plane point. Two coordinates and the flag m_bInfinite of a point at infinity
/// (a direction with homogeneous weight 0); arithmetic, minimum, maximum and equality follow the
/// flag rules of the point family (see KvGePointBase.h): an infinite point absorbs ordinary ones
/// under + and -, loses under & and wins under |. Equality is a distance of at most 0.001
/// (squared distance <= 1e-6) between points of the same kind.
///
/// A component index beyond 1 refers to the shared static m_vDummy, also in the const access,
/// which reads its value: a write through a bad index lands there, is what any point then reads
/// through a bad index, and corrupts no point.

/// \file
/// Non-finite input and range: arithmetic and distances propagate NaN and infinities; distances
/// scale before squaring. Normalize returns 0 and Clip2d returns 0, both writing nothing, when a
/// coordinate is not finite; Between2d gives 0 for NaN; OutCode of NaN is 0 (no comparison holds).
/// See docs/non-finite-policy.md.

#include <iosfwd>

#include "basics/UtilityGeometryExport.h"
#include "geometry/algebra/KvGeVector.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePointBase.h"

class KvGePoint3d;
class KvGeModMat2d;

/// A plane point (x, y) with the flag m_bInfinite of a point at infinity. Two points are equal when their distance is
/// at most 0.001 (squared distance <= 1e-6, inclusive) and they are of the same kind.
class KVGE_API KvGePoint2d : public KvGeDetail::PointBase<2, KvGePoint2d> {
 public:
  /// The origin, ordinary.
  KvGePoint2d() : PointBase(0, 0.0, 0.0) {}
  /// (v, v), ordinary.
  explicit KvGePoint2d(double v) : PointBase(0, v, v) {}
  /// (x, y), a point at infinity when infinite is non-zero.
  KvGePoint2d(double x_, double y_, int infinite = 0) : PointBase(infinite, x_, y_) {}
  /// The vector's components, ordinary.
  explicit KvGePoint2d(const KvGeVector2& v) : PointBase(0, v.x, v.y) {}
  /// Homogeneous (x, y, w): divided by w, or a point at infinity when w is within 0.001 of 0.
  explicit KvGePoint2d(const KvGeVector3& v) : PointBase(0, 0.0, 0.0) { SetHomogeneous(v); }
  /// x and y of p with p's flag; z is dropped.
  explicit KvGePoint2d(const KvGePoint3d& p);
  /// Copies coordinates and flag.
  KvGePoint2d(const KvGePoint2d&) = default;
  /// Copies coordinates and flag.
  KvGePoint2d& operator=(const KvGePoint2d&) = default;
  virtual ~KvGePoint2d();

  /// (v, v), ordinary.
  KvGePoint2d& Set(double v) { return Set(v, v, 0); }
  /// (x, y), a point at infinity when infinite is non-zero.
  KvGePoint2d& Set(double x_, double y_, int infinite = 0) {
    x = x_;
    y = y_;
    m_bInfinite = infinite;
    return *this;
  }
  /// The vector's components, ordinary.
  KvGePoint2d& Set(const KvGeVector2& v) { return Set(v.x, v.y, 0); }
  /// Homogeneous (x, y, w): divided by w, or a point at infinity when w is within 0.001 of 0.
  KvGePoint2d& Set(const KvGeVector3& v) {
    SetHomogeneous(v);
    return *this;
  }
  /// x and y of p with p's flag; z is dropped.
  KvGePoint2d& Set(const KvGePoint3d& p);
  /// (r cos a, r sin a) with the given flag.
  KvGePoint2d& SetPolar(double r, const KvGeAngle& a, int infinite = 0);

  /// (x, y) as a vector; the flag is dropped.
  KvGeVector2 Vector2() const { return KvGeVector2(x, y); }
  /// (x, y, w) with w = 0 for a point at infinity, 1 otherwise.
  KvGeVector3 Vector3() const { return Homogeneous<KvGeVector3>(); }
  /// (x, y, 0) with the same flag.
  KvGePoint3d Point3d() const;

  /// The direction from the origin, in (-pi, pi]; 0 for (0, 0). The flag is ignored.
  KvGeAngle Angle() const { return KvGeAngle(x, y); }

  /// Vector3() times m, stored back with the homogeneous rule: a weight within 0.001 of 0 gives
  /// a point at infinity.
  KvGePoint2d& Transform(const KvGeModMat2d& m);
  /// A transformed copy.
  KvGePoint2d Transformed(const KvGeModMat2d& m) const { return KvGePoint2d(*this).Transform(m); }

  /// (0, 0), ordinary.
  static const KvGePoint2d kOrigin;
  /// (1, 0), ordinary.
  static const KvGePoint2d kXAxis;
  /// (0, 1), ordinary.
  static const KvGePoint2d kYAxis;
  /// The component handed out for an index beyond 1.
  static double m_vDummy;
};

// A virtual destructor, x, y and the flag (padded to the alignment of a double).
static_assert(sizeof(KvGePoint2d) == sizeof(void*) + 2 * sizeof(double) + alignof(double), "KvGePoint2d layout");

/// The direction from a to b.
KVGE_API KvGeAngle Angle2d(const KvGePoint2d& a, const KvGePoint2d& b);
/// Flags are ignored by the distances and the products.
KVGE_API double Distance2d(const KvGePoint2d& a, const KvGePoint2d& b);
/// The squared distance; flags ignored.
KVGE_API double DistanceSqr2d(const KvGePoint2d& a, const KvGePoint2d& b);
/// a.x b.x + a.y b.y; flags ignored.
KVGE_API double DotProduct2d(const KvGePoint2d& a, const KvGePoint2d& b);
/// a.x b.y - a.y b.x: positive when b lies counter-clockwise of a.
KVGE_API double Determinate(const KvGePoint2d& a, const KvGePoint2d& b);
/// (-y, x) with the flag of p: p turned by +90 degrees.
KVGE_API KvGePoint2d Normal(const KvGePoint2d& p);
/// a t + b (1 - t) with the flag rules of +: t = 1 gives a, t = 0 gives b.
KVGE_API KvGePoint2d Mean(const KvGePoint2d& a, const KvGePoint2d& b, double t = 0.5);
/// Foot of p on the infinite line through a and b; a when a and b are within 0.001.
KVGE_API KvGePoint2d Project2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p);
/// Where the foot of p falls on a-b: -1 before a, 1 at a, 0 between, 2 at b, -2 beyond b (ends
/// within 0.001). The distance from the line is not examined; a segment no longer than 0.001
/// gives 0, deliberately: callers test the segment first.
KVGE_API int Between2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p);
/// Clips p1-p2 in place to the box min-max (Cohen-Sutherland, tolerance 0.001); 1 when a part
/// remains. The ends may come back exchanged, deliberately; an end within 0.001 outside the box
/// is left where it is. On 0 (the segment outside, or a coordinate of an end or a corner not
/// finite) the ends are not touched.
KVGE_API int Clip2d(KvGePoint2d& p1, KvGePoint2d& p2, const KvGePoint2d& min, const KvGePoint2d& max);
/// Direction tests on the position vectors, with the angle band of 1e-6 radians; a zero vector
/// has the direction 0.
KVGE_API int IsSimelarlyDirected(const KvGePoint2d& a, const KvGePoint2d& b);
/// 1 when the directions agree or are opposite within 1e-6 radians.
KVGE_API int IsParallel(const KvGePoint2d& a, const KvGePoint2d& b);
/// 1 when the directions are perpendicular within 1e-6 radians.
KVGE_API int IsNormal(const KvGePoint2d& a, const KvGePoint2d& b);

/// Writes WKT, "POINT (x y)"; a point at infinity, which WKT lacks, as "DIRECTION (x y)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePoint2d& v);
