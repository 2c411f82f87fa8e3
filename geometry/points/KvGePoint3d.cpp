#include "geometry/points/KvGePoint3d.h"

#include <cmath>

#include "basics/companion/KvBtCompare.h"
#include "geometry/algebra/KvGeModMat.h"

KvGePoint3d::~KvGePoint3d() = default;
KvGePoint23d::~KvGePoint23d() = default;

double KvGePoint3d::m_vDummy = 0.0;

KvGePoint3d& KvGePoint3d::SetPolar(double r, const KvGeAngle& a, int infinite) {
  return Set(r * a.Cos(), r * a.Sin(), 0.0, infinite);
}

KvGePoint3d& KvGePoint3d::SetCylinder(double r, const KvGeAngle& a, double h, int infinite) {
  return Set(r * a.Cos(), r * a.Sin(), h, infinite);
}

KvGePoint3d& KvGePoint3d::SetSphere(double r, const KvGeAngle& a, const KvGeAngle& b, int infinite) {
  return Set(r * a.Cos(), r * a.Sin(), r * b.Sin(), infinite);
}

KvGePoint3d& KvGePoint3d::Transform(const KvGeModMat3d& m) { return Set(Vector4() * m); }

KvGePoint3d& KvGePoint3d::multiply(const KvGeMatrix4X4& m) {
  const double px = x, py = y, pz = z;
  for (unsigned j = 0; j < 3; ++j) (*this)[j] = px * m(0, j) + py * m(1, j) + pz * m(2, j) + m(3, j);
  m_bInfinite = 0;
  return *this;
}

int KvGePoint3d::IsEqualCoorTo(const KvGePoint3d& p, double tol1, double tol2) const {
  return (IsEqualRelative(x, p.x, tol1, tol2) && IsEqualRelative(y, p.y, tol1, tol2) &&
          IsEqualRelative(z, p.z, tol1, tol2))
             ? 1
             : 0;
}

int KvGePoint3d::OutCode(double zmin, double tol) const {
  int code = 0;
  if (IsLess(x, -z, tol)) code |= 1;
  if (IsGreater(x, z, tol)) code |= 2;
  if (IsLess(y, -z, tol)) code |= 4;
  if (IsGreater(y, z, tol)) code |= 8;
  if (IsLess(z, zmin, tol)) code |= 16;
  if (IsGreater(z, 1.0, tol)) code |= 32;
  return code;
}

const KvGePoint3d& KvGePoint3d_Origin() {
  static const KvGePoint3d p(0.0, 0.0, 0.0);
  return p;
}
const KvGePoint3d& KvGePoint3d_XAxis() {
  static const KvGePoint3d p(1.0, 0.0, 0.0);
  return p;
}
const KvGePoint3d& KvGePoint3d_YAxis() {
  static const KvGePoint3d p(0.0, 1.0, 0.0);
  return p;
}
const KvGePoint3d& KvGePoint3d_ZAxis() {
  static const KvGePoint3d p(0.0, 0.0, 1.0);
  return p;
}

KvGeAngle Angle2d(const KvGePoint3d& a, const KvGePoint3d& b) { return KvGeAngle(a, b); }
double Distance2d(const KvGePoint3d& a, const KvGePoint3d& b) { return KvGeVector2(b.x - a.x, b.y - a.y).Length(); }
double DistanceSqr2d(const KvGePoint3d& a, const KvGePoint3d& b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  return dx * dx + dy * dy;
}
double DotProduct2d(const KvGePoint3d& a, const KvGePoint3d& b) { return a.x * b.x + a.y * b.y; }
double Distance3d(const KvGePoint3d& a, const KvGePoint3d& b) {
  return KvGeVector3(b.x - a.x, b.y - a.y, b.z - a.z).Length();
}
double DistanceSqr3d(const KvGePoint3d& a, const KvGePoint3d& b) { return a.DistanceSqr(b); }
double DotProduct3d(const KvGePoint3d& a, const KvGePoint3d& b) { return a * b; }

int Clip2d(KvGePoint3d& p1, KvGePoint3d& p2, const KvGePoint3d& min, const KvGePoint3d& max) {
  KvGePoint2d q1 = p1.Point2d(), q2 = p2.Point2d();
  if (!KvGeDetail::ClipToBox<KvGePoint2d, 2>(q1, q2, min.Point2d(), max.Point2d())) return 0;
  // The plan result is written back by position: p1 keeps its z also when the plane clip
  // exchanged the ends, so the heights do not travel with the exchanged ends.
  p1.Set(q1, p1.z);
  p2.Set(q2, p2.z);
  return 1;
}

int Clip3d(KvGePoint3d& p1, KvGePoint3d& p2, const KvGePoint3d& min, const KvGePoint3d& max) {
  return KvGeDetail::ClipToBox<KvGePoint3d, 3>(p1, p2, min, max);
}

int ClipConical3d(KvGePoint3d& p1, KvGePoint3d& p2, double zmin) {
  if (!std::isfinite(zmin)) return 0;
  const auto code = [zmin](const KvGePoint3d& p) { return p.OutCode(zmin, kKvGeLinearTol); };
  const auto step = [zmin](KvGePoint3d& a, const KvGePoint3d& b, int c) {
    const double x1 = a.x, y1 = a.y, z1 = a.z, x2 = b.x, y2 = b.y, z2 = b.z;
    // f1 and f2 are the signed distances of the ends from the plane in the step's own
    // measure, t = f1 / (f1 - f2): the same parameter as (z1 - x1) / ((x2 - x1) - (z2 - z1))
    // and its kin, with each end's difference taken first, so that a far end (4e16 and
    // beyond) does not cancel the denominator. f1 is outside by more than 0.001 and f2 is not
    // (or the codes would share the bit), so f1 - f2 is not 0.
    double f1, f2;
    if (c & 1) {
      f1 = z1 + x1;
      f2 = z2 + x2;
    } else if (c & 2) {
      f1 = z1 - x1;
      f2 = z2 - x2;
    } else if (c & 4) {
      f1 = y1 + z1;
      f2 = y2 + z2;
    } else if (c & 8) {
      f1 = z1 - y1;
      f2 = z2 - y2;
    } else {
      const double zz = c & 16 ? zmin : 1.0;
      f1 = z1 - zz;
      f2 = z2 - zz;
    }
    const double t = f1 / (f1 - f2);
    // Interpolated from the nearer end, so that a far end's size does not swamp the result.
    if (t <= 0.5) {
      a.x = x1 + (x2 - x1) * t;
      a.y = y1 + (y2 - y1) * t;
    } else {
      const double s = f2 / (f2 - f1);  // 1 - t
      a.x = x2 + (x1 - x2) * s;
      a.y = y2 + (y1 - y2) * s;
    }
    // The new z comes from the new x or y, so the end lies exactly on the slanted plane.
    if (c & 1)
      a.z = -a.x;
    else if (c & 2)
      a.z = a.x;
    else if (c & 4)
      a.z = -a.y;
    else if (c & 8)
      a.z = a.y;
    else
      a.z = c & 16 ? zmin : 1.0;
  };
  return KvGeDetail::CohenSutherland(p1, p2, code, step);
}

KvGePoint3d Project2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return KvGePoint3d(Project2d(a.Point2d(), b.Point2d(), p.Point2d()), p.z);
}

KvGePoint3d Project3d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return KvGeDetail::ProjectOnLine(a, b, p);
}

int Between2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return Between2d(a.Point2d(), b.Point2d(), p.Point2d());
}

int Between3d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return KvGeDetail::BetweenOnSegment(a, b, p);
}

KvGePoint3d CrossProduct(const KvGePoint3d& a, const KvGePoint3d& b) {
  return KvGePoint3d(a.y * b.z - b.y * a.z, b.x * a.z - a.x * b.z, a.x * b.y - b.x * a.y);
}

KvGePoint3d Normal(const KvGePoint3d& a, const KvGePoint3d& b) { return CrossProduct(a, b); }

KvGePoint3d Mean(const KvGePoint3d& a, const KvGePoint3d& b, double t) { return a * t + b * (1.0 - t); }

double Determinate(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c) {
  return KvGeMatrix3X3(a.Vector3(), b.Vector3(), c.Vector3()).Det();
}

int PenetrationPoint(KvGePoint3d& r, const KvGePoint3d& planePoint, const KvGePoint3d& planeNormal,
                     const KvGePoint3d& linePoint, const KvGePoint3d& lineDirection, double eps) {
  const double len = lineDirection.Length();
  if (eps > len) return 0;
  const KvGePoint3d d = lineDirection / len;
  const double den = planeNormal * d;
  if (eps > std::fabs(den)) return 0;
  const double t = -(planeNormal * (linePoint - planePoint)) / den / len;
  const KvGePoint3d at = linePoint + lineDirection * t;
  // NaN passes the strict tests above; a point that is not finite is no piercing point.
  if (!KvGeDetail::IsFinitePoint(at)) return 0;
  r = at;
  return 1;
}

int OrthonormalBasis(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, const KvGePoint3d& d,
                     KvGePoint3d& e1, KvGePoint3d& e2, KvGePoint3d& e3) {
  const KvGePoint3d u = b - a;
  const KvGePoint3d v = d - c;
  const double s = u * u;
  if (IsEqual(s, 0.0, kKvGeLinearTol)) return 0;
  const KvGePoint3d f1 = u / u.Length();
  KvGePoint3d f2 = v - u * ((v * u) / s);
  f2.Normalize();
  const KvGePoint3d f3 = CrossProduct(f1, f2);
  // Not finite input, or an overflow on the way, builds no frame.
  if (!KvGeDetail::IsFinitePoint(f1) || !KvGeDetail::IsFinitePoint(f2) || !KvGeDetail::IsFinitePoint(f3)) return 0;
  e1 = f1;
  e2 = f2;
  e3 = f3;
  return 1;
}

int Intersection(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, const KvGePoint3d& d, KvGePoint3d& r,
                 int mode, double tol) {
  const KvGePoint3d u = b - a;
  const KvGePoint3d v = d - c;
  const KvGePoint3d w = c - a;
  const KvGePoint3d n = CrossProduct(u, v);
  const double den = n * n;
  if (tol > den) return 0;
  if (std::fabs(w * n) / den > tol) return 0;
  const double s = (CrossProduct(w, v) * n) / den;
  const double t = (CrossProduct(w, u) * n) / den;
  if (mode == 1 && (s < -tol || s > 1.0 + tol || t < -tol || t > 1.0 + tol)) return 0;
  const KvGePoint3d at = a + u * s;
  if (!KvGeDetail::IsFinitePoint(at)) return 0;  // NaN passes the tests above
  r = at;
  return 1;
}

double CircleMatch3Points(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, KvGePoint3d& centre) {
  const KvGePoint3d u = b - a;
  const KvGePoint3d v = c - b;
  const KvGePoint3d n = CrossProduct(u, v);
  const KvGePoint3d m1 = a + u * 0.5;
  const KvGePoint3d m2 = b + v * 0.5;
  if (!Intersection(m1, m1 + CrossProduct(u, n), m2, m2 + CrossProduct(v, n), centre, 0, 1e-5)) return 0.0;
  return Distance3d(centre, a);
}

int IsSimelarlyDirected(const KvGePoint3d& a, const KvGePoint3d& b) {
  return IsSimelarlyDirected(a.Angle(), b.Angle());
}
int IsParallel(const KvGePoint3d& a, const KvGePoint3d& b) { return IsParallel(a.Angle(), b.Angle(), 1e-6); }
int IsNormal(const KvGePoint3d& a, const KvGePoint3d& b) { return IsNormal(a.Angle(), b.Angle()); }
