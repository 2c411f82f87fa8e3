#include "geometry/intersection/KvGeIntrLine2d.h"

#include "basics/companion/KvBtCompare.h"

namespace {

// Where parameter t lies on a segment of length len: end code 0 strictly inside, -1 at the
// start, +1 at the end (within 0.001, the start tested first); 0 when it lies outside.
int SegmentEndCode(double t, double len, int& code) {
  if (KvBtRealCompare(0.0, t, kKvGeLinearTol) < 0 && KvBtRealCompare(t, len, kKvGeLinearTol) < 0)
    code = 0;
  else if (KvBtRealCompare(0.0, t, kKvGeLinearTol) == 0)
    code = -1;
  else if (KvBtRealCompare(t, len, kKvGeLinearTol) == 0)
    code = 1;
  else
    return 0;
  return 1;
}

// The record of the crossing of a (bounded when segA) and b (bounded when segB) in plan
// coordinates; 0 when there is none.
struct Crossing {
  double x, y;
  int sense, code0, code1;
  double t0, t1;
};

int CrossLines(double p1x, double p1y, double p2x, double p2y, int segA, double q1x, double q1y, double q2x, double q2y,
               int segB, Crossing& r) {
  double sx, sy, c, l1, l2;
  if (!KvGeDetail::CrossInfiniteLines(p1x, p1y, p2x, p2y, q1x, q1y, q2x, q2y, sx, sy, c, l1, l2)) return 0;
  const double t0 = ((sx - p1x) * (p2x - p1x) + (sy - p1y) * (p2y - p1y)) / l1;
  const double t1 = ((sx - q1x) * (q2x - q1x) + (sy - q1y) * (q2y - q1y)) / l2;
  int code0 = 0, code1 = 0;
  if (segA && !SegmentEndCode(t0, l1, code0)) return 0;
  if (segB && !SegmentEndCode(t1, l2, code1)) return 0;
  r = Crossing{sx, sy, sgn(c), code0, code1, t0, t1};
  return 1;
}

KvGeIntrPoint2d Record2d(const Crossing& c, unsigned segment1) {
  return KvGeIntrPoint2d(KvGePoint2d(c.x, c.y), c.sense, c.code0, c.code1, c.t0, c.t1, 0, segment1, 0);
}

// An edge whose end points both lie more than this far on the same side of a line cannot meet
// it within 0.001 of the edge: the crossing of the infinite lines lies at least as far beyond
// the nearer end, measured along the edge. The margin over 0.001 absorbs rounding.
constexpr double kSideBand = 0.0015;

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
  Crossing c;
  if (!CrossLines(a.P1().x, a.P1().y, a.P2().x, a.P2().y, a.Segment(), b.P1().x, b.P1().y, b.P2().x, b.P2().y,
                  b.Segment(), c))
    return 0;
  r = Record2d(c, 0);
  return 1;
}

int Intersection2d(const KvGeLine23d& a, const KvGeLine23d& b, KvGeIntrPoint3d& r) {
  r = KvGeIntrPoint3d();
  Crossing c;
  if (!CrossLines(a.P1().x, a.P1().y, a.P2().x, a.P2().y, a.Segment(), b.P1().x, b.P1().y, b.P2().x, b.P2().y,
                  b.Segment(), c))
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
  const int n = a.GetSize();
  const KvGePoint2d* v = a.GetData();
  const double p1x = l.P1().x, p1y = l.P1().y, p2x = l.P2().x, p2y = l.P2().y;
  const double dx = p2x - p1x, dy = p2y - p1y;
  const double len = std::sqrt(dx * dx + dy * dy);
  // A line no longer than 0.001 crosses nothing.
  if (IsEqual(len, 0.0, kKvGeLinearTol)) return 0;
  const double band = kSideBand * len;
  int added = 0;
  for (int i = 0; i < n; ++i) {
    const KvGePoint2d& s = v[i];
    const KvGePoint2d& e = v[i + 1 == n ? 0 : i + 1];
    // Cross products with the direction: the distances of the edge's ends from the line, times
    // its length.
    const double hs = dx * (s.y - p1y) - dy * (s.x - p1x);
    const double he = dx * (e.y - p1y) - dy * (e.x - p1x);
    if ((hs > band && he > band) || (hs < -band && he < -band)) continue;
    Crossing c;
    if (!CrossLines(p1x, p1y, p2x, p2y, l.Segment(), s.x, s.y, e.x, e.y, 1, c)) continue;
    out.Add(Record2d(c, static_cast<unsigned>(i)));
    ++added;
  }
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
    if (l.Segment() && !SegmentEndCode(ts[i], len, code)) continue;
    const KvGePoint2d at = n == 1 ? KvGePoint2d(fx, fy) : KvGePoint2d(l.P1().x + ux * ts[i], l.P1().y + uy * ts[i]);
    out.Add(KvGeIntrPoint2d(at, 0, code, 0, ts[i], 0.0, 0, 0, 0));
    ++added;
  }
  return added;
}

int ParalellLine2d(const KvGePoint2d& a, const KvGePoint2d& b, double distance, KvGePoint2d& a1, KvGePoint2d& b1) {
  KvGePoint2d dir = b - a;
  if (!dir.Normalize()) return 0;
  const KvGePoint2d n = Normal(dir);
  a1 = a + n * distance;
  b1 = b + n * distance;
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
