#include "geometry/intersection/KvGeContainment2d.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include "basics/companion/KvBtCompare.h"
#include "basics/companion/KvTlPermVector.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"
#include "geometry/intersection/KvGePieces2d.h"

namespace {

// The cut of the edge s-e with the horizontal line at height py: each end is below (-1), on (0,
// within 0.001) or above (1) the line; an edge whose ends share a class gives none. A cut at the
// edge's start or end counts once (end code -1 or 1), one inside the edge counts twice, so that
// the two edges meeting at a vertex on the line add up to one crossing.
inline bool CutEdge(const KvGePoint2d& s, const KvGePoint2d& e, double py, double& x, int& cut) {
  const int cs = KvBtRealCompare(s.y, py, kKvGeLinearTol);
  const int ce = KvBtRealCompare(e.y, py, kKvGeLinearTol);
  if (cs == ce) return false;
  if (cs == 0) {
    x = s.x;
    cut = ce;
  } else if (ce == 0) {
    x = e.x;
    cut = -cs;
  } else {
    x = s.x + (py - s.y) * (e.x - s.x) / (e.y - s.y);
    cut = 2 * ce;
  }
  return true;
}

// The answer without storing or sorting the records, when it cannot depend on their order: no
// record lies within 0.001 of p.x. Then every record below p.x ends before every record above it
// in the calculator's order: the sort leaves a record after a greater one only where a chain of
// records, each within 0.001 of the next, links the two (a pivot lets only records within 0.001
// of it pass to its other side; an exchange stops only at a neighbour within 0.001), and no
// such chain crosses the gap of 0.002 around p.x. So the only part that covers p.x runs from the
// last record below to the first above, more than 0.001 apart, and its count is the sum over the
// records below. Add answers false as soon as a record falls within 0.001 of p.x (or is not
// finite); Answer gives 0 for a p.x so large that the sentinels' parameters come near.
class DirectScan {
 public:
  explicit DirectScan(double px) : m_X(px) {}

  bool Add(double x, int cut) {
    if (KvBtRealCompare(x, m_X, kKvGeLinearTol) == 0 || !(std::fabs(x) < HUGE_VAL)) return false;
    if (x < m_X) m_Count += cut;
    return true;
  }

  unsigned short Answer() const {
    if (!(std::fabs(m_X) < 1e8)) return 0;
    return m_Count <= -2 ? 4 : (m_Count == -1 ? 2 : 1);
  }

 private:
  double m_X;
  int m_Count = 0;
};

// The calculator of the horizontal scan line, reduced to what the point test reads: each record
// keeps its parameter (x), its segment index on the scan line and its crossing count with
// respect to the edge. The records sit in the order the full calculator would hold them (the two
// sentinels, then the edges' crossings in edge order), are sorted by the same quicksort with the
// same tolerant comparison (moving the records instead of their indices changes nothing: the
// sort never compares an item with itself), and the parts are walked as the calculator cuts
// them, so the answer is the calculator's own. Storage is inline for the first kInline records.
//
// Only the parts that cover p.x are read, and their running counts are sums over the records
// before them, which do not depend on how those records are ordered among themselves. So a
// range of the sort holding only records far to the left of p.x (more than 0.003 before it), or
// only records far to the right (or the far sentinel), is left unordered: no part inside it
// covers p.x, and the part that leaves or enters it has the same start, type and end whichever
// of its records comes first or last, because its neighbour that covers p.x lies more than
// 0.002 away from all of them.
class ScanLine {
 public:
  ScanLine() {
    Push(KvGeIntrPoint2d::kNegInfinity.Param0(), KvGeIntrPoint2d::kNegInfinity.Segment0(), 0);
    Push(KvGeIntrPoint2d::kPosInfinity.Param0(), KvGeIntrPoint2d::kPosInfinity.Segment0(), 0);
  }
  ScanLine(const ScanLine&) = delete;
  ScanLine& operator=(const ScanLine&) = delete;

  bool Add(double x, int cut) {
    Push(x, 0, cut);
    return true;
  }

  unsigned short Classify(double px) {
    Record* rec = m_Heap.empty() ? m_Inline : m_Heap.data();
    const int n = m_Size;
    // Far from p.x by more than three tolerances; nothing is far for a p.x beyond 1e8 (near the
    // sentinels' parameters) or not a number.
    const bool prune = std::fabs(px) < 1e8;
    const double left = px - 3 * kKvGeLinearTol, right = px + 3 * kKvGeLinearTol;
    const auto side = [&](const Record& r) {
      if (r.segment != 0 || r.param > right) return 1;
      return r.param < left ? -1 : 0;
    };
    KvTlSortRange(
        rec, n,
        [](const Record& a, const Record& b) {
          return KvGeDetail::OrderOnObject(a.segment, a.param, b.segment, b.param);
        },
        [&](int lo, int hi) {
          if (!prune) return false;
          const int first = side(rec[lo]);
          if (first == 0) return false;
          for (int i = lo + 1; i <= hi; ++i)
            if (side(rec[i]) != first) return false;
          return true;
        });
    bool outside = false, boundary = false, inside = false;
    int s = 0;
    for (int i = 0; i + 1 < n; ++i) {
      const Record& p = rec[i];
      const Record& q = rec[i + 1];
      s += p.cut;
      if (p.segment != 0 || KvBtRealCompare(p.param, px, kKvGeLinearTol) > 0) continue;
      if (q.segment == 0 && KvBtRealCompare(q.param, px, kKvGeLinearTol) < 0) continue;
      const int type = IsEqual(q.param, p.param, kKvGeLinearTol) ? 0 : (s <= -2 ? 1 : (s == -1 ? 0 : -1));
      if (type == -1)
        outside = true;
      else if (type == 1)
        inside = true;
      else
        boundary = true;
    }
    if (boundary) return 2;
    if (!inside) return 1;
    return outside ? 2 : 4;
  }

 private:
  struct Record {
    double param;
    std::uint32_t segment;
    int cut;
  };
  static constexpr int kInline = 64;

  void Push(double param, std::uint32_t segment, int cut) {
    if (m_Size < kInline) {
      m_Inline[m_Size++] = Record{param, segment, cut};
      return;
    }
    if (m_Heap.empty()) {
      m_Heap.reserve(4 * kInline);
      m_Heap.assign(m_Inline, m_Inline + kInline);
    }
    m_Heap.push_back(Record{param, segment, cut});
    ++m_Size;
  }

  int m_Size = 0;
  Record m_Inline[kInline];
  std::vector<Record> m_Heap;
};

// The point measures within 0.001 of an edge only when the edge's box lies within this band of
// it: the foot of the perpendicular may lie up to 0.001 beyond the end point, so a point up to
// sqrt(2) * 0.001 from the segment can still measure 0.001. The margin absorbs rounding. An
// edge whose box lies farther off takes no square root.
constexpr double kBoxBand = 0.0015;

template <class Region>
unsigned short LineContainment(const KvGeLine2d& l, const Region& region) {
  KvGeIntrCalculator2d calc;
  KvGeDetail::CutUnbounded(l, region, calc);
  return KvGeDetail::LineBits(l, calc);
}

// Edge by edge, as bounded lines; stops once every bit is set.
template <class Region>
unsigned short EdgesContainment(const KvGePoint2dArray& tested, int closed, const Region& region) {
  const int n = tested.GetSize();
  const int edges = closed ? n : n - 1;
  unsigned short bits = 0;
  for (int i = 0; i < edges && bits != 7; ++i) {
    const KvGeLine2d edge(tested.GetData()[i], tested.GetData()[mod(i + 1, n)], 1, 1);
    bits |= LineContainment(edge, region);
  }
  return bits;
}

// Feeds the cuts of the polygon's edges to sink, with the boundary test first on each edge near
// p: 2 when p lies within 0.001 of an edge, 0 when sink gave up, 1 when all edges were fed.
template <class Sink>
int ScanPolygon(const KvGePolygon2d& poly, double px, double py, Sink& sink) {
  const int n = poly.GetSize();
  const KvGePoint2d* v = poly.GetData();
  if (n <= 0) return 1;
  const double top = py + kBoxBand, bottom = py - kBoxBand;
  // 2 when p lies within 0.001 of the edge s-e, 0 when sink gave up, 1 otherwise.
  const auto edge = [&](const KvGePoint2d& s, const KvGePoint2d& e) {
    if (!(((s.x - px > kBoxBand) & (e.x - px > kBoxBand)) | ((px - s.x > kBoxBand) & (px - e.x > kBoxBand))) &&
        IsEqual(KvGeDetail::SegmentDistanceSqr(s.x, s.y, e.x, e.y, px, py), 0.0, kKvGeLinearTolSqr))
      return 2;
    double x;
    int cut;
    return CutEdge(s, e, py, x, cut) && !sink.Add(x, cut) ? 0 : 1;
  };
  // An edge wholly above or below the band can neither be near p nor be cut by the scan line:
  // both its ends then lie more than 0.001 off the line, on the same side. Each vertex is classed
  // once and its class carried to the next edge; an end that is not a number is neither above
  // nor below, so its edges are never skipped. One branch per edge, taken unpredictably on a
  // ragged outline.
  const bool firstAbove = v[0].y > top, firstBelow = v[0].y < bottom;
  bool sAbove = firstAbove, sBelow = firstBelow;
  for (int i = 0; i + 1 < n; ++i) {
    const double ey = v[i + 1].y;
    const bool eAbove = ey > top, eBelow = ey < bottom;
    const bool skip = (sAbove & eAbove) | (sBelow & eBelow);
    sAbove = eAbove;
    sBelow = eBelow;
    if (skip) continue;
    const int r = edge(v[i], v[i + 1]);
    if (r != 1) return r;
  }
  if ((sAbove & firstAbove) | (sBelow & firstBelow)) return 1;
  return edge(v[n - 1], v[0]);
}

// The cuts of all edges of all rings of the set; 0 when sink gave up.
template <class Sink>
int ScanSet(const KvGePolygon2dArray& set, double py, Sink& sink) {
  const int m = set.GetSize();
  for (int j = 0; j < m; ++j) {
    const KvGePolygon2d& poly = set.GetData()[j];
    const int n = poly.GetSize();
    const KvGePoint2d* v = poly.GetData();
    for (int i = 0; i < n; ++i) {
      double x;
      int cut;
      if (CutEdge(v[i], v[i + 1 == n ? 0 : i + 1], py, x, cut) && !sink.Add(x, cut)) return 0;
    }
  }
  return 1;
}

}  // namespace

unsigned short Containment(const KvGePoint2d& p, const KvGePolygon2d& poly) {
  const double px = p.x, py = p.y;
  if (!std::isfinite(px) || !std::isfinite(py)) return 1;  // a point that is nowhere lies outside
  DirectScan direct(px);
  const int first = ScanPolygon(poly, px, py, direct);
  if (first == 2) return 2;
  if (first == 1) {
    if (const unsigned short answer = direct.Answer()) return answer;
  }
  ScanLine scan;
  if (ScanPolygon(poly, px, py, scan) == 2) return 2;
  return scan.Classify(px);
}

unsigned short Containment(const KvGePoint2d& p, const KvGePolygon2dArray& set) {
  if (!std::isfinite(p.x) || !std::isfinite(p.y)) return 1;
  DirectScan direct(p.x);
  if (ScanSet(set, p.y, direct)) {
    if (const unsigned short answer = direct.Answer()) return answer;
  }
  ScanLine scan;
  ScanSet(set, p.y, scan);
  return scan.Classify(p.x);
}

unsigned short Containment(const KvGeLine2d& l, const KvGePolygon2d& poly) { return LineContainment(l, poly); }
unsigned short Containment(const KvGeLine2d& l, const KvGePolygon2dArray& set) { return LineContainment(l, set); }

unsigned short Containment(const KvGePolyline2d& l, const KvGePolygon2d& poly) { return EdgesContainment(l, 0, poly); }
unsigned short Containment(const KvGePolyline2d& l, const KvGePolygon2dArray& set) {
  return EdgesContainment(l, 0, set);
}
unsigned short Containment(const KvGePolygon2d& tested, const KvGePolygon2d& poly) {
  return EdgesContainment(tested, 1, poly);
}

unsigned short Containment(const KvGePolygon2dArray&, const KvGePolygon2d&) { return 1; }
unsigned short Containment(const KvGePolygon2d&, const KvGePolygon2dArray&) { return 1; }
unsigned short Containment(const KvGePolygon2dArray&, const KvGePolygon2dArray&) { return 1; }

namespace KvGeDetail {

// Part states: -1 sets the outside bit, 1 the inside bit, anything else the boundary bit.
static unsigned short StateBit(int type) { return type == -1 ? 1 : (type == 1 ? 4 : 2); }

unsigned short LineBits(const KvGeLine2d& l, const KvGeIntrCalculator2d& calc) {
  const KvGeIntrPart2d segment = KvGeDetail::SegmentPart(l);
  unsigned short bits = 0;
  bool touchesInside = false, touchesOutside = false;
  const int n = calc.GetSize0();
  for (int i = 0; i < n; ++i) {
    KvGeIntrPart2d part = calc.Part0(static_cast<unsigned>(i));
    if (l.Segment()) part.Intersect0(segment);
    const int c = part.Min().Compare0(part.Max());
    if (c < 0) bits |= StateBit(part.Type());
    if (c <= 0) {
      if (part.Type() == -1) touchesOutside = true;
      if (part.Type() == 1) touchesInside = true;
    }
  }
  if (touchesInside && touchesOutside) bits |= 2;
  return bits;
}

}  // namespace KvGeDetail
