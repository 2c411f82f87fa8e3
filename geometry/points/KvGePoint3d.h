#pragma once
/// @file
/// KvGePoint3d: the space point, and the coordinate type of every plan (23d) object. It has the
/// members of KvGePoint2d with a third coordinate and the same flag rules (see KvGePointBase.h);
/// Point2d() always returns an ordinary plan point, and the plan functions (Distance2d, Clip2d,
/// Project2d, Between2d, the direction tests) look at x and y only. A component index beyond 2
/// refers to the shared static m_vDummy, as in KvGePoint2d (the const access reads its value).
///
/// KvGePoint23d adds a height: the point stands for the vertical range z .. z + height. Setting z
/// keeps the top where it was.

/// \file
/// Non-finite input and range: as for plane points. Clip2d, Clip3d and ClipConical3d return 0 and
/// leave both ends as they were when a coordinate of an end or a corner is not finite;
/// ClipConical3d interpolates from the end nearer the plane, so a far end gives the exact crossing.
/// PenetrationPoint, OrthonormalBasis, Intersection and CircleMatch3Points write nothing unless
/// their results are finite. See docs/non-finite-policy.md.

#include <iosfwd>

#include "basics/UtilityGeometryExport.h"
#include "geometry/algebra/KvGeMatrix.h"
#include "geometry/algebra/KvGeVector.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePointBase.h"

class KvGeModMat3d;

/// A space point (x, y, z) with the flag of a point at infinity; also the coordinate type of every plan object. Two
/// points are equal when their distance is at most 0.001 (inclusive) and they are of the same kind.
class KVGE_API KvGePoint3d : public KvGeDetail::PointBase<3, KvGePoint3d> {
 public:
  /// The origin, ordinary.
  KvGePoint3d() : PointBase(0, 0.0, 0.0, 0.0) {}
  /// (v, v, v), ordinary.
  explicit KvGePoint3d(double v) : PointBase(0, v, v, v) {}
  /// (x, y, z), a point at infinity when infinite is non-zero.
  KvGePoint3d(double x_, double y_, double z_, int infinite = 0) : PointBase(infinite, x_, y_, z_) {}
  /// The vector's components, ordinary.
  explicit KvGePoint3d(const KvGeVector3& v) : PointBase(0, v.x, v.y, v.z) {}
  /// Homogeneous (x, y, z, w): divided by w, or a point at infinity when w is within 0.001 of 0.
  explicit KvGePoint3d(const KvGeVector4& v) : PointBase(0, 0.0, 0.0, 0.0) { SetHomogeneous(v); }
  /// (p.x, p.y, z) with p's flag.
  KvGePoint3d(const KvGePoint2d& p, double z_) : PointBase(p.m_bInfinite, p.x, p.y, z_) {}
  /// Copies coordinates and flag.
  KvGePoint3d(const KvGePoint3d&) = default;
  /// Copies coordinates and flag.
  KvGePoint3d& operator=(const KvGePoint3d&) = default;
  virtual ~KvGePoint3d();

  /// (v, v, v), ordinary.
  KvGePoint3d& Set(double v) { return Set(v, v, v, 0); }
  /// (x, y, z), a point at infinity when infinite is non-zero.
  KvGePoint3d& Set(double x_, double y_, double z_, int infinite = 0) {
    x = x_;
    y = y_;
    z = z_;
    m_bInfinite = infinite;
    return *this;
  }
  /// The vector's components, ordinary.
  KvGePoint3d& Set(const KvGeVector3& v) { return Set(v.x, v.y, v.z, 0); }
  /// Homogeneous (x, y, z, w): divided by w, or a point at infinity when w is within 0.001 of 0.
  KvGePoint3d& Set(const KvGeVector4& v) {
    SetHomogeneous(v);
    return *this;
  }
  /// (p.x, p.y, z) with p's flag.
  KvGePoint3d& Set(const KvGePoint2d& p, double z_) { return Set(p.x, p.y, z_, p.m_bInfinite); }
  /// (r cos a, r sin a, 0).
  KvGePoint3d& SetPolar(double r, const KvGeAngle& a, int infinite = 0);
  /// (r cos a, r sin a, h).
  KvGePoint3d& SetCylinder(double r, const KvGeAngle& a, double h, int infinite = 0);
  /// (r cos a, r sin a, r sin b). x and y are not multiplied by cos b, so the point lies on the
  /// sphere of radius r only for b = 0; this is the required behaviour, deliberately kept.
  KvGePoint3d& SetSphere(double r, const KvGeAngle& a, const KvGeAngle& b, int infinite = 0);

  /// (x, y, z) as a vector.
  KvGeVector3 Vector3() const { return KvGeVector3(x, y, z); }
  /// (x, y, z, w) with w = 0 for a point at infinity, 1 otherwise.
  KvGeVector4 Vector4() const { return Homogeneous<KvGeVector4>(); }
  /// (x, y), always ordinary.
  KvGePoint2d Point2d() const { return KvGePoint2d(x, y, 0); }

  /// The plan direction from the origin; 0 when x and y are both 0. z is ignored.
  KvGeAngle Angle() const { return KvGeAngle(x, y); }

  /// Vector4() times m, stored back with the homogeneous rule.
  KvGePoint3d& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGePoint3d Transformed(const KvGeModMat3d& m) const { return KvGePoint3d(*this).Transform(m); }
  /// The affine product (x, y, z, 1) x m without division by a weight; the result is ordinary.
  KvGePoint3d& multiply(const KvGeMatrix4X4& m);

  /// 1 when IsEqualRelative(c, p.c, tol1, tol2) holds for x, y and z; the flags are not compared.
  int IsEqualCoorTo(const KvGePoint3d& p, double tol1, double tol2) const;

  using PointBase::OutCode;
  /// Region code against the perspective view volume -z <= x <= z, -z <= y <= z, zmin <= z <= 1:
  /// 1 x < -z, 2 x > z, 4 y < -z, 8 y > z, 16 z < zmin, 32 z > 1, each beyond tol.
  int OutCode(double zmin, double tol = kKvGeLinearTol) const;

  /// The component handed out for an index beyond 2.
  static double m_vDummy;
};

// A virtual destructor, x, y, z and the flag (padded to the alignment of a double).
static_assert(sizeof(KvGePoint3d) == sizeof(void*) + 3 * sizeof(double) + alignof(double), "KvGePoint3d layout");

/// A space point standing for the vertical range z .. z + height. Equal when the points are equal (within 0.001, same
/// kind) and the heights within 0.001.
class KVGE_API KvGePoint23d : public KvGePoint3d {
 public:
  KvGePoint23d() = default;
  /// (v, v, v), ordinary, height 0.
  explicit KvGePoint23d(double v) : KvGePoint3d(v) {}
  /// (x, y, z) with the flag and the height.
  KvGePoint23d(double x_, double y_, double z_, int infinite = 0, double height = 0.0)
      : KvGePoint3d(x_, y_, z_, infinite), m_Height(height) {}
  /// The point p with the height.
  KvGePoint23d(const KvGePoint3d& p, double height) : KvGePoint3d(p), m_Height(height) {}
  /// Copies coordinates, flag and height.
  KvGePoint23d(const KvGePoint23d&) = default;
  /// Copies coordinates, flag and height.
  KvGePoint23d& operator=(const KvGePoint23d&) = default;
  ~KvGePoint23d() override;

  /// The height, stored as passed (may be negative).
  double& Height() { return m_Height; }
  /// The height, stored as passed (may be negative).
  double Height() const { return m_Height; }
  /// z + height.
  double Top() const { return z + m_Height; }
  /// z becomes v and the height changes so that the top stays where it was.
  KvGePoint23d& SetZ(double v) {
    m_Height = z + m_Height - v;
    z = v;
    return *this;
  }
  /// The height becomes top - z; z stays.
  KvGePoint23d& SetTop(double top) {
    m_Height = top - z;
    return *this;
  }
  /// Heights within 0.001.
  int IsEqualHeight(const KvGePoint23d& o) const { return IsEqual(m_Height, o.m_Height, kKvGeLinearTol); }
  /// 1 when the height differs from 0 by more than 0.001.
  int HasHeight() const { return IsNotEqual(m_Height, 0.0, kKvGeLinearTol); }
  /// The point rule (distance at most 0.001, same kind) and heights within 0.001.
  int operator==(const KvGePoint23d& o) const { return KvGePoint3d::operator==(o) && IsEqualHeight(o); }
  /// The negation of operator==.
  int operator!=(const KvGePoint23d& o) const { return (*this == o) ? 0 : 1; }

 private:
  double m_Height = 0.0;
};

static_assert(sizeof(KvGePoint23d) == sizeof(KvGePoint3d) + sizeof(double), "KvGePoint23d layout");

/// Exported constant points, built once: (0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1).
KVGE_API const KvGePoint3d& KvGePoint3d_Origin();
/// (1, 0, 0), built once.
KVGE_API const KvGePoint3d& KvGePoint3d_XAxis();
/// (0, 1, 0), built once.
KVGE_API const KvGePoint3d& KvGePoint3d_YAxis();
/// (0, 0, 1), built once.
KVGE_API const KvGePoint3d& KvGePoint3d_ZAxis();

/// Plan direction from a to b.
KVGE_API KvGeAngle Angle2d(const KvGePoint3d& a, const KvGePoint3d& b);
/// Plan forms: x and y only.
KVGE_API double Distance2d(const KvGePoint3d& a, const KvGePoint3d& b);
/// The squared plan distance.
KVGE_API double DistanceSqr2d(const KvGePoint3d& a, const KvGePoint3d& b);
/// The plan dot product a.x b.x + a.y b.y.
KVGE_API double DotProduct2d(const KvGePoint3d& a, const KvGePoint3d& b);
/// The distance in space.
KVGE_API double Distance3d(const KvGePoint3d& a, const KvGePoint3d& b);
/// The squared distance in space.
KVGE_API double DistanceSqr3d(const KvGePoint3d& a, const KvGePoint3d& b);
/// The dot product in space.
KVGE_API double DotProduct3d(const KvGePoint3d& a, const KvGePoint3d& b);

/// Clips in plan: the ends and the corners as ordinary plan points run through the plane Clip2d;
/// on success x, y and the flag of each end are written back and each end keeps its own z (an end
/// moved onto an edge keeps its old height; when the plan clip exchanged the ends, p1 gets the
/// plan position that came back first and still its own z). On 0 the ends are not touched.
KVGE_API int Clip2d(KvGePoint3d& p1, KvGePoint3d& p2, const KvGePoint3d& min, const KvGePoint3d& max);
/// Cohen-Sutherland in space against the box, tolerance 0.001; the ends may come back exchanged.
/// On 0 (outside, or a coordinate not finite) the ends are not touched, for all three clips.
KVGE_API int Clip3d(KvGePoint3d& p1, KvGePoint3d& p2, const KvGePoint3d& min, const KvGePoint3d& max);
/// Clipping to the perspective view volume of OutCode(zmin): an end moved onto a slanted plane
/// gets its z from the new x or y, so it lies exactly on the plane. A step interpolates from the
/// end nearer the plane, so an end far away (4e16 and beyond) still gives the exact crossing.
KVGE_API int ClipConical3d(KvGePoint3d& p1, KvGePoint3d& p2, double zmin);

/// The plan foot of p on the line a-b, with the z of p.
KVGE_API KvGePoint3d Project2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// The foot of p on the line a-b in space; a when a and b are within 0.001; not clamped.
KVGE_API KvGePoint3d Project3d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// The codes of the plane Between2d, on the plan points and in space.
KVGE_API int Between2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// The codes of the plane Between2d, in space.
KVGE_API int Between3d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);

/// a x b, ordinary; Normal is the same (not normalised).
KVGE_API KvGePoint3d CrossProduct(const KvGePoint3d& a, const KvGePoint3d& b);
/// The same as CrossProduct: a x b, ordinary, not normalised.
KVGE_API KvGePoint3d Normal(const KvGePoint3d& a, const KvGePoint3d& b);
/// a t + b (1 - t) with the flag rules of +.
KVGE_API KvGePoint3d Mean(const KvGePoint3d& a, const KvGePoint3d& b, double t = 0.5);
/// The determinant of the 3x3 matrix with rows a, b, c: a . (b x c).
KVGE_API double Determinate(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c);

/// Where the line through linePoint with direction lineDirection pierces the plane through
/// planePoint with normal planeNormal. 0 when the direction is shorter than eps or the line runs
/// parallel to the plane (|N . d| < eps for the unit direction d; the normal is not normalised, so
/// this test scales with |N|); both tests are strict. r is written only on success.
KVGE_API int PenetrationPoint(KvGePoint3d& r, const KvGePoint3d& planePoint, const KvGePoint3d& planeNormal,
                              const KvGePoint3d& linePoint, const KvGePoint3d& lineDirection,
                              double eps = kKvGeLinearTol);
/// A right-handed orthonormal frame: e1 along b - a, e2 the part of d - c perpendicular to it,
/// e3 = e1 x e2. 0 (nothing written) when |b - a|^2 is within 0.001 of 0, deliberately a test on
/// the squared length. When d - c is parallel to b - a, e2 keeps its short, unnormalised value.
KVGE_API int OrthonormalBasis(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, const KvGePoint3d& d,
                              KvGePoint3d& e1, KvGePoint3d& e2, KvGePoint3d& e3);
/// The meeting point of the lines a-b and c-d in space. With u = b - a, v = d - c, w = c - a and
/// n = u x v: the lines are parallel when |n|^2 < tol, and too far apart when
/// |w . n| / |n|^2 > tol. The parameters are s = ((w x v) . n) / |n|^2 along a-b and
/// t = ((w x u) . n) / |n|^2 along c-d; mode 1 asks both to lie in 0 .. 1 within tol (the
/// segments meet), mode 0 takes the lines as infinite. On success r = a + s u and 1 is returned;
/// on failure r is not written.
KVGE_API int Intersection(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, const KvGePoint3d& d,
                          KvGePoint3d& r, int mode, double tol = kKvGeLinearTol);
/// The centre of the circle through a, b and c (the meeting point of two perpendicular bisectors
/// in the plane of the points, Intersection with mode 0 and tolerance 1e-5) and its radius; 0.0
/// for collinear or coincident points, the centre then not written.
KVGE_API double CircleMatch3Points(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c,
                                   KvGePoint3d& centre);

/// The plane direction tests on the plan angles of the two points; z plays no part.
KVGE_API int IsSimelarlyDirected(const KvGePoint3d& a, const KvGePoint3d& b);
/// The plane IsParallel on the plan angles of a and b; z plays no part.
KVGE_API int IsParallel(const KvGePoint3d& a, const KvGePoint3d& b);
/// The plane IsNormal on the plan angles of a and b; z plays no part.
KVGE_API int IsNormal(const KvGePoint3d& a, const KvGePoint3d& b);

/// Writes WKT, "POINT Z (x y z)", or "DIRECTION Z (x y z)" for a point at infinity.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePoint3d& v);
/// Writes the point as a KvGePoint3d followed by " height h".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePoint23d& v);
