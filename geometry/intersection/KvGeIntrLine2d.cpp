#include "geometry/intersection/KvGeIntrLine2d.h"

#include "basics/companion/KvBtCompare.h"

namespace {

KvGeIntrPoint2d Record2d(const KvGeDetail::Crossing& c, unsigned segment1) {
  return KvGeIntrPoint2d(KvGePoint2d(c.x, c.y), c.sense, c.code0, c.code1, c.t0, c.t1, 0, segment1, 0);
}

// The line crossing on plan coordinates: 0 when the pair is degenerate or parallel (s is not to
// be written); otherwise 1 with the crossing and the function's result.
inline int LineLine(double p1x, double p1y, double p2x, double p2y, double q1x, double q1y, double q2x, double q2y,
                    int segments, int inclusive, double& sx, double& sy, int& result) {
  double c, l1, l2;
  if (!KvGeDetail::CrossInfiniteLines(p1x, p1y, p2x, p2y, q1x, q1y, q2x, q2y, sx, sy, c, l1, l2)) return 0;
  if (!segments) {
    result = sgn(c);
    return 1;
  }
  const double t1 = ((sx - p1x) * (p2x - p1x) + (sy - p1y) * (p2y - p1y)) / l1;
  const double t2 = ((sx - q1x) * (q2x - q1x) + (sy - q1y) * (q2y - q1y)) / l2;
  if (inclusive)
    result = IsLessOrEqual(0.0, t1, kKvGeLinearTol) && IsLessOrEqual(t1, l1, kKvGeLinearTol) &&
             IsLessOrEqual(0.0, t2, kKvGeLinearTol) && IsLessOrEqual(t2, l2, kKvGeLinearTol);
  else
    result = IsLess(0.0, t1, kKvGeLinearTol) && IsLess(t1, l1, kKvGeLinearTol) && IsLess(0.0, t2, kKvGeLinearTol) &&
             IsLess(t2, l2, kKvGeLinearTol);
  return 1;
}

}  // namespace

int IntrLineLine2d(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& q1, const KvGePoint2d& q2,
                   KvGePoint2d& s, int segments, int inclusive) {
  double sx, sy;
  int result;
  if (!LineLine(p1.x, p1.y, p2.x, p2.y, q1.x, q1.y, q2.x, q2.y, segments, inclusive, sx, sy, result)) return 0;
  s.Set(sx, sy, 0);
  return result;
}

int IntrLineLine2d(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& q1, const KvGePoint3d& q2,
                   KvGePoint3d& s, int segments) {
  double sx, sy;
  int result;
  if (!LineLine(p1.x, p1.y, p2.x, p2.y, q1.x, q1.y, q2.x, q2.y, segments, 1, sx, sy, result)) return 0;
  s.Set(sx, sy, 0.0, 0);
  return result;
}

int Intersection2d(const KvGeLine2d& a, const KvGeLine2d& b, KvGeIntrPoint2d& r) {
  r = KvGeIntrPoint2d();
  KvGeDetail::Crossing c;
  if (!KvGeDetail::CrossLines(a.P1().x, a.P1().y, a.P2().x, a.P2().y, a.Segment(), b.P1().x, b.P1().y, b.P2().x,
                              b.P2().y, b.Segment(), c))
    return 0;
  r = Record2d(c, 0);
  return 1;
}

int Intersection2d(const KvGeLine23d& a, const KvGeLine23d& b, KvGeIntrPoint3d& r) {
  r = KvGeIntrPoint3d();
  KvGeDetail::Crossing c;
  if (!KvGeDetail::CrossLines(a.P1().x, a.P1().y, a.P2().x, a.P2().y, a.Segment(), b.P1().x, b.P1().y, b.P2().x,
                              b.P2().y, b.Segment(), c))
    return 0;
  r = KvGeIntrPoint3d(KvGePoint3d(c.x, c.y, 0.0), c.sense, c.code0, c.code1, c.t0, c.t1, 0, 0, 0);
  return 1;
}

int Intersection2d(const KvGeLine2d& a, const KvGeLine2d& b, KvGeIntrPoint2dArray& out, int append) {
  if (!append) out.RemoveAll();
  KvGeIntrPoint2d r;
  if (!Intersection2d(a, b, r)) return 0;
  out.Add(r);
  return 1;
}

int Intersection2d(const KvGeLine23d& a, const KvGeLine23d& b, KvBtDynArray<KvGeIntrPoint3d>& out, int append) {
  if (!append) out.RemoveAll();
  KvGeIntrPoint3d r;
  if (!Intersection2d(a, b, r)) return 0;
  out.Add(r);
  return 1;
}

int Intersection2d(const KvGeLine2d& l, const KvGePoint2dArray& a, KvGeIntrPoint2dArray& out, int append) {
  if (!append) out.RemoveAll();
  int added = 0;
  KvGeDetail::CrossClosedSequence(l, a.GetData(), a.GetSize(), [&](const KvGeDetail::Crossing& c, int i) {
    out.Add(Record2d(c, static_cast<unsigned>(i)));
    ++added;
  });
  return added;
}

int Intersection2d(const KvGePoint2dArray& a, const KvGeLine2d& l, KvGeIntrPoint2dArray& out, int append) {
  return Intersection2d(l, a, out, append);
}

int Intersection2d(const KvGeLine2d& l, const KvGeCircle2d& k, KvGeIntrPoint2dArray& out, int append) {
  if (!append) out.RemoveAll();
  const double dx = l.P2().x - l.P1().x, dy = l.P2().y - l.P1().y;
  const double len = std::sqrt(dx * dx + dy * dy);
  if (IsEqual(len, 0.0, kKvGeLinearTol)) return 0;
  const double ux = dx / len, uy = dy / len;
  const double t0 = (k.Center().x - l.P1().x) * ux + (k.Center().y - l.P1().y) * uy;
  const double fx = l.P1().x + ux * t0, fy = l.P1().y + uy * t0;
  const double h2 = quadrat(k.Radius()) - (quadrat(k.Center().x - fx) + quadrat(k.Center().y - fy));
  if (IsLess(h2, 0.0, kKvGeLinearTol)) return 0;
  double ts[2];
  int n = 0;
  if (!IsGreater(h2, 0.0, kKvGeLinearTol)) {
    ts[n++] = t0;
  } else {
    const double h = std::sqrt(h2);
    ts[n++] = t0 - h;
    ts[n++] = t0 + h;
  }
  int added = 0;
  for (int i = 0; i < n; ++i) {
    int code = 0;
    if (l.Segment() && !KvGeDetail::SegmentEndCode(ts[i], len, code)) continue;
    const KvGePoint2d at = n == 1 ? KvGePoint2d(fx, fy) : KvGePoint2d(l.P1().x + ux * ts[i], l.P1().y + uy * ts[i]);
    // NaN passes neither tolerant test above; a crossing that is not finite is no crossing.
    if (!std::isfinite(ts[i]) || !KvGeDetail::IsFinitePoint(at)) continue;
    out.Add(KvGeIntrPoint2d(at, 0, code, 0, ts[i], 0.0, 0, 0, 0));
    ++added;
  }
  return added;
}

int ParalellLine2d(const KvGePoint2d& a, const KvGePoint2d& b, double distance, KvGePoint2d& a1, KvGePoint2d& b1) {
  KvGePoint2d dir = b - a;
  if (!dir.Normalize()) return 0;
  const KvGePoint2d n = Normal(dir);
  const KvGePoint2d a2 = a + n * distance, b2 = b + n * distance;
  if (!KvGeDetail::IsFinitePoint(a2) || !KvGeDetail::IsFinitePoint(b2)) return 0;
  a1 = a2;
  b1 = b2;
  return 1;
}

int ParalellLine2d(const KvGePoint3d& a, const KvGePoint3d& b, double distance, KvGePoint3d& a1, KvGePoint3d& b1) {
  KvGePoint2d a2, b2;
  if (!ParalellLine2d(KvGePoint2d(a.x, a.y, a.m_bInfinite), KvGePoint2d(b.x, b.y, b.m_bInfinite), distance, a2, b2))
    return 0;
  a1.Set(a2.x, a2.y, a.z, a2.m_bInfinite);
  b1.Set(b2.x, b2.y, b.z, b2.m_bInfinite);
  return 1;
}

KvGePoint3d Durchstosspunkt(const KvGePoint3d& planePoint, const KvGePoint3d& planeNormal, const KvGePoint3d& linePoint,
                            const KvGePoint3d& lineDirection) {
  const KvGePoint3d& n = planeNormal;
  const KvGePoint3d& d = lineDirection;
  const double den = n.x * d.x + n.y * d.y + n.z * d.z;
  if (!IsNotEqual(den, 0.0, 1e-15)) return KvGePoint3d(d.x, d.y, d.z, 1);
  const KvGePoint3d& q = linePoint;
  const double f = ((q.x - planePoint.x) * n.x + (q.y - planePoint.y) * n.y + (q.z - planePoint.z) * n.z) / den;
  return KvGePoint3d(q.x - d.x * f, q.y - d.y * f, q.z - d.z * f);
}
