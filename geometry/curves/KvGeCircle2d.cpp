#include "geometry/curves/KvGeCircle2d.h"

#include <cmath>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeCircleDetail.h"
#include "geometry/points/KvGePoint2dArray.h"

using KvGeDetail::kKvGeTwoPi;

KvGeCircle2d::~KvGeCircle2d() = default;
KvGeArc2d::~KvGeArc2d() = default;

// ---------------------------------------------------------------------------------------------
// Circle

KvGeMatrix3X3 KvGeCircle2d::Matrix3X3() const {
  return KvGeMatrix3X3(m_Radius, 0.0, 0.0, 0.0, m_Radius, 0.0, m_Center.x, m_Center.y, 1.0);
}

KvGeBox2d KvGeCircle2d::BoundingBox() const { return BoundingBox(KvGeModMat2d()); }

KvGeBox2d KvGeCircle2d::BoundingBox(const KvGeModMat2d& m) const {
  return KvGeDetail::ArcBox<KvGeBox2d>(m_Center, m_Radius, 1, KvGeAngle(), KvGeAngle(), m, 2);
}

int KvGeCircle2d::By3Points(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& p3) {
  const double ax = p2.x - p1.x, ay = p2.y - p1.y;
  const double bx = p3.x - p2.x, by = p3.y - p2.y;
  const double la = std::sqrt(ax * ax + ay * ay), lb = std::sqrt(bx * bx + by * by);
  // Chords within 0.001 of zero length, and then a sine of the turn within 1e-6 of 0, fail;
  // the negated form refuses NaN coordinates as well.
  if (!(la > kKvGeLinearTol) || !(lb > kKvGeLinearTol)) return 0;
  const double c = ax * by - ay * bx;
  if (!(std::fabs(c / (la * lb)) > kKvGeAngularTol)) return 0;
  const double k1 = ax * (p1.x + p2.x) * 0.5 + ay * (p1.y + p2.y) * 0.5;
  const double k2 = bx * (p2.x + p3.x) * 0.5 + by * (p2.y + p3.y) * 0.5;
  const KvGePoint2d center((by * k1 - ay * k2) / c, (ax * k2 - bx * k1) / c, 0);
  const double radius = Distance2d(p1, center);
  // An infinite point, or an overflow of huge coordinates, gives no circle.
  if (!std::isfinite(center.x) || !std::isfinite(center.y) || !std::isfinite(radius)) return 0;
  m_Radius = radius;
  m_Center = center;
  m_Sense = c > 0.0 ? 1 : -1;
  return 1;
}

int KvGeCircle2d::By2PointsRadius(const KvGePoint2d& p1, const KvGePoint2d& p2, double radius, int side, int sense) {
  const double dx = p2.x - p1.x, dy = p2.y - p1.y;
  const double d = std::sqrt(dx * dx + dy * dy);
  // A chord within 0.001 of zero fails, and so does one longer than the diameter by more than
  // 0.001; written so that a NaN coordinate or radius fails too.
  if (!(d > kKvGeLinearTol) || !(d - 2.0 * radius <= kKvGeLinearTol)) return 0;
  const double q = radius / d;
  const double rad = q * q - 0.25;
  const double h = rad > 0.0 ? std::sqrt(rad) : 0.0;
  // Normal of the chord (-dy, dx), not normalised: h |N| is the centre's distance from the chord.
  const double cx = (p1.x + p2.x) * 0.5 - side * h * dy, cy = (p1.y + p2.y) * 0.5 + side * h * dx;
  if (!std::isfinite(cx) || !std::isfinite(cy) || !std::isfinite(radius)) return 0;
  m_Center.Set(cx, cy, 0);
  m_Radius = radius;
  m_Sense = sense;
  return 1;
}

int KvGeCircle2d::By2PointsBulge(const KvGePoint2d& p1, const KvGePoint2d& p2, double bulge) {
  if (!(std::fabs(bulge) > kKvGeLinearTol)) return 0;  // within 0.001 of 0, or NaN
  const double dx = p2.x - p1.x, dy = p2.y - p1.y;
  const double k = (1.0 - bulge * bulge) / (4.0 * bulge);
  const KvGePoint2d center((p1.x + p2.x) * 0.5 - k * dy, (p1.y + p2.y) * 0.5 + k * dx, 0);
  const double radius = Distance2d(p1, center);
  if (!std::isfinite(center.x) || !std::isfinite(center.y) || !std::isfinite(radius)) return 0;
  m_Radius = radius;
  m_Center = center;
  m_Sense = bulge > 0.0 ? 1 : -1;
  return 1;
}

KvGeCircle2d& KvGeCircle2d::Transform(const KvGeModMat2d& m) {
  const KvGeDetail::PlanMap map(m);
  m_Center.Transform(m);
  m_Radius *= map.Scale();
  if (map.Det() < 0.0) m_Sense = -m_Sense;
  return *this;
}

// ---------------------------------------------------------------------------------------------
// Arc

KvGeArc2d::KvGeArc2d(const KvGeCircle2d& c)
    : ArcBase(c.Center(), c.Radius(), KvGeAngle(0.0), KvGeAngle(c.Sense() * kKvGeTwoPi)) {}

KvGeMatrix3X3 KvGeArc2d::Matrix3X3() const {
  return KvGeMatrix3X3(m_Radius, 0.0, 0.0, 0.0, m_Radius, 0.0, m_Center.x, m_Center.y, 1.0);
}

KvGeBox2d KvGeArc2d::BoundingBox() const { return BoundingBox(KvGeModMat2d()); }

KvGeBox2d KvGeArc2d::BoundingBox(const KvGeModMat2d& m) const {
  return KvGeDetail::ArcBox<KvGeBox2d>(m_Center, m_Radius, 0, m_Beg, m_End, m, 2);
}

void KvGeArc2d::SetFromCircle(const KvGeCircle2d& c, const KvGePoint2d& first, const KvGePoint2d& last, int ccw) {
  m_Center = c.Center();
  m_Radius = c.Radius();
  m_Beg = Angle2d(m_Center, first);
  m_End = Angle2d(m_Center, last);
  if (ccw)
    m_End.Normalize(m_Beg + KvGeAngle_Deg360(), m_Beg, 0);
  else
    m_End.Normalize(m_Beg, m_Beg - KvGeAngle_Deg360(), 1);
}

int KvGeArc2d::By3Points(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& p3) {
  KvGeCircle2d c;
  if (!c.By3Points(p1, p2, p3)) return 0;
  SetFromCircle(c, p1, p3, c.Sense() == 1);
  return 1;
}

int KvGeArc2d::By2PointsRadius(const KvGePoint2d& p1, const KvGePoint2d& p2, double radius, int side, int sense) {
  KvGeCircle2d c;
  if (!c.By2PointsRadius(p1, p2, radius, side, sense)) return 0;
  SetFromCircle(c, p1, p2, sense == 1);
  return 1;
}

int KvGeArc2d::By2PointsBulge(const KvGePoint2d& p1, const KvGePoint2d& p2, double bulge) {
  KvGeCircle2d c;
  if (!c.By2PointsBulge(p1, p2, bulge)) return 0;
  SetFromCircle(c, p1, p2, c.Sense() == 1);
  return 1;
}

int KvGeArc2d::By2PointsCenter(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& center, int sense) {
  if (center == p1 || center == p2) return 0;
  SetFromCircle(KvGeCircle2d(center, m_Radius, sense), p1, p2, sense == 1);
  return 1;
}

KvGeArc2d& KvGeArc2d::Transform(const KvGeModMat2d& m) {
  const KvGeDetail::PlanMap map(m);
  m_Center.Transform(m);
  m_Radius *= map.Scale();
  map.MapArc(m_Beg, m_End);
  return *this;
}

// ---------------------------------------------------------------------------------------------
// Free functions

int KrsMittelpunkt(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& p3, KvGePoint2d& center) {
  for (const KvGePoint2d* p : {&p1, &p2, &p3})
    if (!std::isfinite(p->x) || !std::isfinite(p->y)) return 0;
  const double m1x = (p1.x + p2.x) * 0.5, m1y = (p1.y + p2.y) * 0.5;
  const double m2x = (p2.x + p3.x) * 0.5, m2y = (p2.y + p3.y) * 0.5;
  const double k1 = (p1.x - p2.x) * m1x + (p1.y - p2.y) * m1y;
  const double k2 = (p2.x - p3.x) * m2x + (p2.y - p3.y) * m2y;
  const double d1x = p2.x - p1.x, d1y = p2.y - p1.y;
  const double d2x = p3.x - p2.x, d2y = p3.y - p2.y;
  const double det = d1x * d2y - d1y * d2x;
  // An absolute threshold on the cross product, deliberately not scaled by the chord lengths.
  if (std::fabs(det) >= 0.01) {
    const double cx = (k2 * d1y - d2y * k1) / det, cy = (d2x * k1 - k2 * d1x) / det;
    if (!std::isfinite(cx) || !std::isfinite(cy)) return 0;  // huge coordinates overflowed
    center.x = cx;
    center.y = cy;
    return 1;
  }
  if (Distance2d(p3, p1) < 1.0) {
    center = (p1 + p2) / 2.0;
    return 2;
  }
  center = (p1 + p3) / 2.0;
  return 0;
}

namespace {

// a t^2 + b t + c = 0. c counts as 0 when it is negligible against b or a. Returns 0 (no root),
// 1 (the linear case: -c / b, or 0 when everything vanishes), 2 (two roots) or 3 (touching:
// discriminant below 1e-7). The tests are exact on purpose; the caller's tolerance lies in the
// coefficients.
int SolveQuadratic(double a, double b, double c, double& t1, double& t2) {
  if (b + 0.01 * c == b || a + 0.01 * c == a) c = 0.0;
  if (a == 0.0) {
    if (b != 0.0) {
      t1 = t2 = -c / b;
      return 1;
    }
    if (c == 0.0) {
      t1 = t2 = 0.0;
      return 1;
    }
    return 0;
  }
  const double disc = b * b - 4.0 * a * c;
  if (!(disc >= 0.0)) return 0;
  const double root = std::sqrt(disc);
  t1 = (root - b) / (2.0 * a);
  t2 = (-b - root) / (2.0 * a);
  return disc < 1e-7 ? 3 : 2;
}

}  // namespace

int KrsGerSchnitt(KvGePoint2d center, double radius, KvGePoint2d p1, KvGePoint2d p2, KvGePoint2d& s1, KvGePoint2d& s2) {
  const double dx = p1.x - center.x, dy = p1.y - center.y;
  const double vx = p2.x - p1.x, vy = p2.y - p1.y;
  double t1 = 0.0, t2 = 0.0;
  const int code =
      SolveQuadratic(vx * vx + vy * vy, 2.0 * (dx * vx + dy * vy), dx * dx + dy * dy - radius * radius, t1, t2);
  if (code < 1) return 0;
  const KvGePoint2d a(p1.x + t1 * vx, p1.y + t1 * vy, 0), b(p1.x + t2 * vx, p1.y + t2 * vy, 0);
  if (!KvGeDetail::IsFinitePoint(a) || !KvGeDetail::IsFinitePoint(b) || !std::isfinite(radius)) return 0;
  s1 = a;
  s2 = b;
  return code;
}

namespace {

constexpr double kMaxCircleStep = 0.6971317007977318;  // 40 degrees less 0.001 rad
constexpr double kCircleRadiusFactor = 0.991768322919766;

}  // namespace

int CreateCircle(const KvGePoint2dArray& points, KvGeCircle2d& circle) {
  const int n = points.GetSize();
  if (n < 5) return 0;
  const KvGePoint2d* p = points.GetData();
  KvGeCircle2d c = circle;
  if (c.By3Points(p[1], p[n / 2], p[n - 2])) {
    const KvGePoint2d& center = c.Center();
    for (int i = 0; i < n; ++i)
      if (IsNotEqual(Distance2d(p[i], center), c.Radius(), kKvGeLinearTol)) return 0;
    KvGeAngle prev = Angle2d(center, p[0]).Normalize(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 1);
    for (int i = 1; i < n; ++i) {
      const KvGeAngle cur = Angle2d(center, p[i]).Normalize(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 1);
      double step = std::fabs(cur.Rad() - prev.Rad());
      if (step > KvGeDetail::kKvGePi) step = kKvGeTwoPi - step;
      if (step > kMaxCircleStep) return 0;
      prev = cur;
    }
  }
  c.Radius() *= kCircleRadiusFactor;
  circle = c;
  return 1;
}

int GetCircleFormStrZug(const KvGePoint2dArray& points, KvGeCircle2d& circle) {
  const int n = points.GetSize();
  if (n < 5) return 0;
  const KvGePoint2d* p = points.GetData();
  KvGeCircle2d c;
  if (!c.By3Points(p[1], p[n / 2], p[n - 2])) return 0;
  const double cx = c.Center().x, cy = c.Center().y, r = c.Radius();
  const double cosMaxStep = std::cos(kMaxCircleStep);
  double px = 0.0, py = 0.0, pl = 0.0;
  for (int i = 0; i < n; ++i) {
    const double ux = p[i].x - cx, uy = p[i].y - cy;
    const double len = std::sqrt(ux * ux + uy * uy);
    if (IsNotEqual(len, r, kKvGeLinearTol)) return 0;
    if (i > 0 && ux * px + uy * py < cosMaxStep * len * pl) return 0;
    px = ux;
    py = uy;
    pl = len;
  }
  c.Radius() *= kCircleRadiusFactor;
  circle = c;
  return 1;
}

int ClipArc(KvGeArc2d arc, KvGeBox2d box, KvBtSmallArray<KvGeArc2d>& pieces, KvGeAngle minSweep, double eps) {
  const int clockwise = arc.Sense() == -1;
  if (clockwise) arc.Invert();
  // A sweep beyond one turn would cover the circle twice; one turn is clipped.
  if (arc.End() - arc.Beg() > KvGeAngle_Deg360()) arc.End() = arc.Beg() + KvGeAngle_Deg360();
  box.Expand(eps);

  const KvGeAngle beg = arc.Beg(), end = arc.End(), upper = beg + KvGeAngle_Deg360();
  const KvGePoint2d& center = arc.Center();
  // The start, at most two cuts with each of the four edge lines, the end.
  KvGeAngle cut[10];
  int n = 0;
  cut[n++] = beg;
  const KvGePoint2d& lo = box.Min();
  const KvGePoint2d& hi = box.Max();
  // The corners counter-clockwise from the minimum, as KvGeBox2d::Points lists them.
  const KvGePoint2d corner[4] = {KvGePoint2d(lo.x, lo.y), KvGePoint2d(hi.x, lo.y), KvGePoint2d(hi.x, hi.y),
                                 KvGePoint2d(lo.x, hi.y)};
  for (int i = 0; i < 4; ++i) {
    KvGePoint2d s1, s2;
    if (!KrsGerSchnitt(center, arc.Radius(), corner[i], corner[(i + 1) % 4], s1, s2)) continue;
    cut[n++] = Angle2d(center, s1).Normalize(upper, beg, 1);
    // A touching line contributes one cut.
    if (s2 != s1) cut[n++] = Angle2d(center, s2).Normalize(upper, beg, 1);
  }
  cut[n++] = end;
  for (int i = 0; i < n; ++i)
    for (int j = i + 1; j < n; ++j)
      if (cut[j] < cut[i]) {
        const KvGeAngle t = cut[i];
        cut[i] = cut[j];
        cut[j] = t;
      }

  const int first = pieces.GetSize();
  if (n < 3) {
    if (end - beg > minSweep && box.IsInside(arc.PointAt((beg + end) / 2.0), 1)) pieces.Add(arc);
  } else {
    for (int i = 0; i + 1 < n; ++i) {
      const KvGeAngle& a0 = cut[i];
      const KvGeAngle& a1 = cut[i + 1];
      if (!(a1 - a0 > minSweep) || !(a0 >= beg && a0 <= end && a1 >= beg && a1 <= end)) continue;
      if (box.IsInside(arc.PointAt((a0 + a1) / 2.0), 1)) pieces.Add(KvGeArc2d(center, arc.Radius(), a0, a1));
    }
  }
  if (clockwise) {
    // Back in the input's direction: each piece inverted, the order reversed.
    for (int i = first, j = pieces.GetSize() - 1; i <= j; ++i, --j) {
      const KvGeArc2d t = pieces[i].Inverted();
      pieces[i] = pieces[j].Inverted();
      pieces[j] = t;
    }
  }
  return pieces.GetSize() > first ? 1 : 0;
}
