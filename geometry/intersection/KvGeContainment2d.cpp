#include "geometry/intersection/KvGeContainment2d.h"

#include <cmath>
#include <cstdint>
#include <vector>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

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

// The index of the lowest set bit of a non-zero mask.
inline int LowestBit(std::uint64_t mask) {
#if defined(__GNUC__) || defined(__clang__)
  return __builtin_ctzll(mask);
#else
  int i = 0;
  while (!(mask & 1)) {
    mask >>= 1;
    ++i;
  }
  return i;
#endif
}

// Calls f(i), in increasing i, for each edge i of the ring v[0..n) (from v[i] to v[i + 1], the
// last back to v[0]) that is not wholly above top or wholly below bottom; stops as soon as f
// answers false. A vertex that is not a number is neither above nor below, so its edges are
// always visited. The vertices are classed in blocks of 64 into two bit masks, two at a time
// where SSE2 is there: a branch per edge cost more than the whole classing, and the edges
// that remain are found by their bits.
template <class F>
void ForEdgesAcross(const KvGePoint2d* v, int n, double top, double bottom, F f) {
#if defined(__SSE2__) || defined(_M_X64)
  const __m128d topv = _mm_set1_pd(top), bottomv = _mm_set1_pd(bottom);
#endif
  for (int base = 0; base < n; base += 64) {
    const int m = n - base < 64 ? n - base : 64;
    const KvGePoint2d* w = v + base;
    std::uint64_t above = 0, below = 0;
    int j = 0;
#if defined(__SSE2__) || defined(_M_X64)
    for (; j + 1 < m; j += 2) {
      const __m128d y = _mm_loadh_pd(_mm_load_sd(&w[j].y), &w[j + 1].y);
      above |= static_cast<std::uint64_t>(_mm_movemask_pd(_mm_cmplt_pd(topv, y))) << j;
      below |= static_cast<std::uint64_t>(_mm_movemask_pd(_mm_cmplt_pd(y, bottomv))) << j;
    }
#endif
    for (; j < m; ++j) {
      above |= static_cast<std::uint64_t>(w[j].y > top) << j;
      below |= static_cast<std::uint64_t>(w[j].y < bottom) << j;
    }
    const double next = v[base + m == n ? 0 : base + m].y;
    const std::uint64_t aboveNext = (above >> 1) | (static_cast<std::uint64_t>(next > top) << (m - 1));
    const std::uint64_t belowNext = (below >> 1) | (static_cast<std::uint64_t>(next < bottom) << (m - 1));
    const std::uint64_t all = m == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << m) - 1;
    for (std::uint64_t left = ~((above & aboveNext) | (below & belowNext)) & all; left != 0; left &= left - 1)
      if (!f(base + LowestBit(left))) return;
  }
}

// Feeds the cuts of the polygon's edges to sink, with the boundary test first on each edge near
// p: 2 when p lies within 0.001 of an edge, 0 when sink gave up, 1 when all edges were fed.
template <class Sink>
int ScanPolygon(const KvGePolygon2d& poly, double px, double py, Sink& sink) {
  const int n = poly.GetSize();
  const KvGePoint2d* v = poly.GetData();
  if (n <= 0) return 1;
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
  // both its ends then lie more than 0.001 off the line, on the same side.
  int result = 1;
  ForEdgesAcross(v, n, py + kBoxBand, py - kBoxBand, [&](int i) {
    result = edge(v[i], v[i + 1 == n ? 0 : i + 1]);
    return result == 1;
  });
  return result;
}

// The cuts of all edges of all rings of the set; 0 when sink gave up.
template <class Sink>
int ScanSet(const KvGePolygon2dArray& set, double py, Sink& sink) {
  const int m = set.GetSize();
  for (int j = 0; j < m; ++j) {
    const KvGePolygon2d& poly = set.GetData()[j];
    const int n = poly.GetSize();
    const KvGePoint2d* v = poly.GetData();
    // An edge with both ends more than 0.0015 above the line, or both below, is not cut.
    bool fed = true;
    ForEdgesAcross(v, n, py + kBoxBand, py - kBoxBand, [&](int i) {
      double x;
      int cut;
      fed = !CutEdge(v[i], v[i + 1 == n ? 0 : i + 1], py, x, cut) || sink.Add(x, cut);
      return fed;
    });
    if (!fed) return 0;
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
