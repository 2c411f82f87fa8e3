#include "geometry/points/KvGePoint2d.h"

#include <cmath>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/points/KvGePoint3d.h"

KvGePoint2d::~KvGePoint2d() = default;

const KvGePoint2d KvGePoint2d::kOrigin(0.0, 0.0, 0);
const KvGePoint2d KvGePoint2d::kXAxis(1.0, 0.0, 0);
const KvGePoint2d KvGePoint2d::kYAxis(0.0, 1.0, 0);
double KvGePoint2d::m_vDummy = 0.0;

KvGePoint2d::KvGePoint2d(const KvGePoint3d& p) : PointBase(p.m_bInfinite, p.x, p.y) {}

KvGePoint2d& KvGePoint2d::Set(const KvGePoint3d& p) { return Set(p.x, p.y, p.m_bInfinite); }

KvGePoint2d& KvGePoint2d::SetPolar(double r, const KvGeAngle& a, int infinite) {
  return Set(r * a.Cos(), r * a.Sin(), infinite);
}

KvGePoint3d KvGePoint2d::Point3d() const { return KvGePoint3d(x, y, 0.0, m_bInfinite); }

KvGePoint2d& KvGePoint2d::Transform(const KvGeModMat2d& m) { return Set(Vector3() * m); }

KvGeAngle Angle2d(const KvGePoint2d& a, const KvGePoint2d& b) { return KvGeAngle(a, b); }
double Distance2d(const KvGePoint2d& a, const KvGePoint2d& b) { return KvGeVector2(b.x - a.x, b.y - a.y).Length(); }
double DistanceSqr2d(const KvGePoint2d& a, const KvGePoint2d& b) { return a.DistanceSqr(b); }
double DotProduct2d(const KvGePoint2d& a, const KvGePoint2d& b) { return a * b; }
double Determinate(const KvGePoint2d& a, const KvGePoint2d& b) { return a.x * b.y - a.y * b.x; }
KvGePoint2d Normal(const KvGePoint2d& p) { return KvGePoint2d(-p.y, p.x, p.m_bInfinite); }
KvGePoint2d Mean(const KvGePoint2d& a, const KvGePoint2d& b, double t) { return a * t + b * (1.0 - t); }

KvGePoint2d Project2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p) {
  return KvGeDetail::ProjectOnLine(a, b, p);
}

int Between2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p) {
  return KvGeDetail::BetweenOnSegment(a, b, p);
}

int Clip2d(KvGePoint2d& p1, KvGePoint2d& p2, const KvGePoint2d& min, const KvGePoint2d& max) {
  return KvGeDetail::ClipToBox<KvGePoint2d, 2>(p1, p2, min, max);
}

int IsSimelarlyDirected(const KvGePoint2d& a, const KvGePoint2d& b) {
  return IsSimelarlyDirected(a.Angle(), b.Angle());
}
int IsParallel(const KvGePoint2d& a, const KvGePoint2d& b) { return IsParallel(a.Angle(), b.Angle(), 1e-6); }
int IsNormal(const KvGePoint2d& a, const KvGePoint2d& b) { return IsNormal(a.Angle(), b.Angle()); }
