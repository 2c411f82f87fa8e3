#include "geometry/intersection/KvGeDistance2d.h"

#include <cmath>

#include "basics/companion/KvBtCompare.h"

namespace {

constexpr double kFar = 1e9;

double EdgeDistanceSqr(const KvGePoint2dArray& a, int i, int n, const KvGePoint2d& p) {
  const KvGePoint2d& s = a.GetData()[i];
  const KvGePoint2d& e = a.GetData()[i + 1 == n ? 0 : i + 1];
  return KvGeDetail::SegmentDistanceSqr(s.x, s.y, e.x, e.y, p.x, p.y);
}

}  // namespace

double DistanceSqrToLine2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p) {
  const KvGePoint2d f = Project2d(a, b, p);
  return (p.x - f.x) * (p.x - f.x) + (p.y - f.y) * (p.y - f.y);
}

double DistanceSqrToLine2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return DistanceSqrToLine2d(KvGePoint2d(a.x, a.y), KvGePoint2d(b.x, b.y), KvGePoint2d(p.x, p.y));
}

double DistanceSqrToLineseg2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p) {
  return KvGeDetail::SegmentDistanceSqr(a.x, a.y, b.x, b.y, p.x, p.y);
}

double DistanceSqrToLineseg2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p) {
  return KvGeDetail::SegmentDistanceSqr(a.x, a.y, b.x, b.y, p.x, p.y);
}

double DistanceSqrPrjPointToLineseg2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p,
                                      KvGePoint2d& foot) {
  double mx, my;
  int which;
  const double d = KvGeDetail::SegmentDistanceSqr(a.x, a.y, b.x, b.y, p.x, p.y, mx, my, which);
  if (which == 1)
    foot = a;
  else if (which == 2)
    foot = b;
  else
    foot.Set(mx, my, 0);
  return d;
}

double DistanceSqr2d(const KvGeLine2d& l, const KvGePoint2d& p) {
  return l.Segment() ? DistanceSqrToLineseg2d(l.P1(), l.P2(), p) : DistanceSqrToLine2d(l.P1(), l.P2(), p);
}
double DistanceSqr2d(const KvGePoint2d& p, const KvGeLine2d& l) { return DistanceSqr2d(l, p); }

double DistanceSqr2d(const KvGeLine23d& l, const KvGePoint3d& p) {
  return l.Segment() ? DistanceSqrToLineseg2d(l.P1(), l.P2(), p) : DistanceSqrToLine2d(l.P1(), l.P2(), p);
}
double DistanceSqr2d(const KvGePoint3d& p, const KvGeLine23d& l) { return DistanceSqr2d(l, p); }

double DistanceSqr2d(const KvGeCircle23d& c, const KvGePoint3d& p) {
  const double dx = p.x - c.Center().x, dy = p.y - c.Center().y;
  return quadrat(std::sqrt(dx * dx + dy * dy) - c.Radius());
}
double DistanceSqr2d(const KvGePoint3d& p, const KvGeCircle23d& c) { return DistanceSqr2d(c, p); }

double DistanceSqr2d(const KvGeArc23d& a, const KvGePoint3d& p) {
  const double vx = p.x - a.Center().x, vy = p.y - a.Center().y;
  const KvGeAngle lo = a.Beg() < a.End() ? a.Beg() : a.End();
  const KvGeAngle hi = a.Beg() < a.End() ? a.End() : a.Beg();
  const KvGeAngle dir = KvGeAngle(vx, vy).Normalized(lo + KvGeAngle_Deg360(), lo, 1);
  const double r = a.Radius();
  if (lo <= dir && dir <= hi) return quadrat(std::sqrt(vx * vx + vy * vy) - r);
  const double d0 = quadrat(vx - r * lo.Cos()) + quadrat(vy - r * lo.Sin());
  const double d1 = quadrat(vx - r * hi.Cos()) + quadrat(vy - r * hi.Sin());
  return d0 < d1 ? d0 : d1;
}
double DistanceSqr2d(const KvGePoint3d& p, const KvGeArc23d& a) { return DistanceSqr2d(a, p); }

double DistanceSqr2d(const KvGePoint2dArray& a, const KvGePoint2d& p) {
  double best = quadrat(kFar);
  const int n = a.GetSize();
  // The comparison below skips NaN; a point that is not finite propagates instead: NaN, or
  // infinity for an infinite coordinate.
  if (n > 0 && !(std::isfinite(p.x) && std::isfinite(p.y))) return quadrat(std::fabs(p.x) + std::fabs(p.y));
  for (int i = 0; i < n; ++i) {
    const double d = EdgeDistanceSqr(a, i, n, p);
    if (d < best) best = d;
  }
  return best;
}
double DistanceSqr2d(const KvGePoint2d& p, const KvGePoint2dArray& a) { return DistanceSqr2d(a, p); }

int NearestLineIndex2d(const KvGePoint2dArray& a, const KvGePoint2d& p) {
  double best = quadrat(kFar);
  int index = -1;
  const int n = a.GetSize();
  for (int i = 0; i < n; ++i) {
    const double d = EdgeDistanceSqr(a, i, n, p);
    if (d < best) {
      best = d;
      index = i;
    }
  }
  return index;
}

KvBtIntegerArray NearestLineIndex2d(const KvGePolygon2dArray& a, const KvGePoint2d& p) {
  const int m = a.GetSize();
  KvBtIntegerArray nearest;
  nearest.SetSize(m);
  for (int j = 0; j < m; ++j) nearest.SetAt(j, NearestLineIndex2d(a.GetData()[j], p));
  double best = quadrat(kFar);
  int polygon = -1, edge = -1;
  for (int j = 0; j < m; ++j) {
    const int i = nearest.GetAt(j);
    if (i < 0) continue;
    const KvGePolygon2d& poly = a.GetData()[j];
    const double d = EdgeDistanceSqr(poly, i, poly.GetSize(), p);
    if (d < best) {
      best = d;
      polygon = j;
      edge = i;
    }
  }
  KvBtIntegerArray r;
  r.Add(polygon);
  r.Add(edge);
  return r;
}

int NearestLongestPolyLineIndex2d(const KvGePoint2dArray& a, const KvGePoint2d& p, double maxDistance) {
  int nearest = -1, longest = -1;
  double minimum = kFar, maximum = 0.0;
  const int n = a.GetSize();
  for (int i = 0; i < n; ++i) {
    const double d = std::sqrt(EdgeDistanceSqr(a, i, n, p));
    if (d < minimum) {
      minimum = d;
      nearest = i;
    }
    const KvGePoint2d& s = a.GetData()[i];
    const KvGePoint2d& e = a.GetData()[i + 1 == n ? 0 : i + 1];
    const double len = std::sqrt((e.x - s.x) * (e.x - s.x) + (e.y - s.y) * (e.y - s.y));
    if (d < maxDistance && len > maximum) {
      maximum = len;
      longest = i;
    }
  }
  return longest >= 0 ? longest : nearest;
}
