#include "geometry/points/KvGePointHelpers.h"

#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeCircle23d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"

void SetPoint(KvGePoint3d& p, double v) { p.Set(v); }

void AddPnt(const KvGePoint3d& a, const KvGePoint3d& b, KvGePoint3d& r) { r = a + b; }

void SubPnt(const KvGePoint3d& a, const KvGePoint3d& b, KvGePoint3d& r) { r = a - b; }

void MulPnt(const KvGePoint3d& a, double s, KvGePoint3d& r) { r = a * s; }

void CrossProd(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, KvGePoint3d& r) {
  r = CrossProduct(b - a, c - b);
}

double CrossZ(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c) {
  return (b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x);
}

double DotProd(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c) { return DotProduct3d(b - a, c - b); }

KvGeAngle Angle(const KvGePoint3d& a, const KvGePoint3d& b) { return Angle2d(a, b); }

double Distance(const KvGePoint3d& a, const KvGePoint3d& b) { return Distance2d(a, b); }

double LineLen3(const KvGePoint3d& a, const KvGePoint3d& b) { return Distance3d(a, b); }

void Polar(const KvGePoint3d& p, const KvGeAngle& a, double r, KvGePoint3d& out) {
  // A direction has no position to step from: it comes back as it is.
  if (p.m_bInfinite) {
    out = p;
    return;
  }
  out = p + KvGePoint3d().SetPolar(r, a);
}

void Project(const KvGePoint3d& a, const KvGePoint3d& b, KvGePoint3d& p) { p = Project2d(a, b, p); }

int Clip(KvGePoint3d& p1, KvGePoint3d& p2, const KvGePoint3d& min, const KvGePoint3d& max, int mode) {
  return mode == 0 ? Clip2d(p1, p2, min, max) : Clip3d(p1, p2, min, max);
}

int Between(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) { return Between2d(a, b, p); }

int Circ3Pt(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, KvGePoint3d& centre, double& radius) {
  KvGeCircle23d circle;
  if (!circle.By3Points(a, b, c)) return 0;
  centre = circle.Center();
  radius = circle.Radius();
  return 1;
}

void CylindCart(double r, const KvGeAngle& a, double h, double& x, double& y, double& z) {
  const KvGePoint3d p = KvGePoint3d().SetCylinder(r, a, h);
  x = p.x;
  y = p.y;
  z = p.z;
}

void SphereCart(double r, const KvGeAngle& a, const KvGeAngle& b, double& x, double& y, double& z) {
  const KvGePoint3d p = KvGePoint3d().SetSphere(r, a, b);
  x = p.x;
  y = p.y;
  z = p.z;
}

double DisFromLine(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return DistanceSqrToLine2d(a, b, p);
}

double DisFromSeg(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return DistanceSqrToLineseg2d(a, b, p);
}

double DisFromCrc(const KvGePoint3d& centre, double r, const KvGePoint3d& p) {
  return DistanceSqr2d(KvGeCircle23d(centre, r), p);
}

double DisFromArc(const KvGePoint3d& centre, double r, const KvGeAngle& a1, const KvGeAngle& a2, const KvGePoint3d& p) {
  return DistanceSqr2d(KvGeArc23d(centre, r, a1, a2), p);
}

void PolyExtents(const KvGePoint3dArray& arr, KvGePoint3d& min, KvGePoint3d& max) {
  const KvGeBox3d box = arr.BoundingBox();
  min = box.Min();
  max = box.Max();
}

void PolyFix(KvGePoint3dArray& arr, KvGePoint3d& min, KvGePoint3d& max) {
  arr.Normalize2d();
  PolyExtents(arr, min, max);
}

int IntrLinLin(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, const KvGePoint3d& d, KvGePoint3d& r,
               int mode) {
  return IntrLineLine2d(a, b, c, d, r, mode);
}

void NorVkt(KvGePoint3d& p) {
  const double x = p.x;
  p.x = -p.y;
  p.y = x;
}
