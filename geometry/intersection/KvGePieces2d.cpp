#include "geometry/intersection/KvGePieces2d.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include "basics/companion/KvTlPermVector.h"

#include "geometry/intersection/KvGeIntrLine2d.h"

namespace KvGeDetail {

void CutUnbounded(const KvGeLine2d& l, const KvGePoint2dArray& region, KvGeIntrCalculator2d& calc) {
  const KvGeLine2d unbounded(l.P1(), l.P2(), 0, 1);
  Intersection2d(unbounded, region, calc, 1);
  calc.SortIntrPoints0();
  calc.CalculateParts0();
}

void CutUnbounded(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvGeIntrCalculator2d& calc) {
  const KvGeLine2d unbounded(l.P1(), l.P2(), 0, 1);
  const int m = region.GetSize();
  for (int j = 0; j < m; ++j) Intersection2d(unbounded, region.GetData()[j], calc, 1);
  calc.SortIntrPoints0();
  calc.CalculateParts0();
}

KvGeIntrPart2d SegmentPart(const KvGeLine2d& l) {
  const double dx = l.P2().x - l.P1().x, dy = l.P2().y - l.P1().y;
  return KvGeIntrPart2d(KvGeIntrPoint2d(l.P1(), 0, -1, 0, 0.0, 0.0, 0, 0, 0),
                        KvGeIntrPoint2d(l.P2(), 0, 1, 0, std::sqrt(dx * dx + dy * dy), 0.0, 0, 0, 0), 0);
}

}  // namespace KvGeDetail

namespace {

// The calculator of the line's cut, reduced to what the pieces read: each record keeps its
// parameter and segment index along the line (the order of the full calculator's records), its
// crossing count with respect to the edge, and its point. Records sit in the full calculator's
// order (the two sentinels, then the crossings in edge order, ring after ring), are sorted by the
// same quicksort with the same comparison, and the parts are formed, typed, clipped and joined as
// from the full calculator, so the pieces are the same. Storage is inline for the first kInline
// records; out keeps its storage from call to call.
struct Rec {
  double param;
  std::uint32_t segment;
  int cut;
  double x, y;
  int infinite;
};

int Compare0(const Rec& a, const Rec& b) { return KvGeDetail::OrderOnObject(a.segment, a.param, b.segment, b.param); }

class LineCut {
 public:
  LineCut() {
    const KvGeIntrPoint2d& lo = KvGeIntrPoint2d::kNegInfinity;
    const KvGeIntrPoint2d& hi = KvGeIntrPoint2d::kPosInfinity;
    Push(Rec{lo.Param0(), lo.Segment0(), lo.CutCode1(), lo.x, lo.y, lo.m_bInfinite});
    Push(Rec{hi.Param0(), hi.Segment0(), hi.CutCode1(), hi.x, hi.y, hi.m_bInfinite});
  }
  LineCut(const LineCut&) = delete;
  LineCut& operator=(const LineCut&) = delete;

  // The crossings of the unbounded copy of l with the closed sequence.
  void Cross(const KvGeLine2d& unbounded, const KvGePoint2dArray& ring) {
    KvGeDetail::CrossClosedSequence(unbounded, ring.GetData(), ring.GetSize(),
                                    [this](const KvGeDetail::Crossing& c, int) {
                                      Push(Rec{c.t0, 0, c.code1 != 0 ? c.sense : 2 * c.sense, c.x, c.y, 0});
                                    });
  }

  // Sorts, cuts into typed parts and writes the pieces of the mode.
  int Pieces(const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out, int mode) {
    Rec* rec = m_Heap.empty() ? m_Inline : m_Heap.data();
    const int n = m_Size;
    const double dx = l.P2().x - l.P1().x, dy = l.P2().y - l.P1().y;
    const Rec segMin{0.0, 0, 0, l.P1().x, l.P1().y, l.P1().m_bInfinite};
    const Rec segMax{std::sqrt(dx * dx + dy * dy), 0, 0, l.P2().x, l.P2().y, l.P2().m_bInfinite};
    const bool bounded = l.Segment() != 0;
    KvTlSortRange(rec, n, Compare0, [](int, int) { return false; });
    bool open = false;
    const Rec* runMin = nullptr;
    const Rec* runMax = nullptr;
    int s = 0;
    for (int i = 0; i + 1 < n; ++i) {
      const Rec& p = rec[i];
      const Rec& q = rec[i + 1];
      s += p.cut;
      const int type = IsEqual(q.param, p.param, kKvGeLinearTol) ? 0 : (s <= -2 ? 1 : (s == -1 ? 0 : -1));
      if (mode == 0) {
        if (type != 1) continue;
        // Clipping as the part's Intersect0: the later start and the earlier end, a tie giving the
        // segment's end.
        const Rec* a = &p;
        const Rec* b = &q;
        if (bounded) Clip(a, b, segMin, segMax);
        Add(*a, *b, out);
        continue;
      }
      if (Compare0(p, q) >= 0) continue;
      if (type != -1) {
        if (!open) runMin = &p;
        runMax = &q;
        open = true;
      } else if (open) {
        const Rec* a = runMin;
        const Rec* b = runMax;
        if (bounded) Clip(a, b, segMin, segMax);
        Add(*a, *b, out);
        open = false;
      }
    }
    return out.GetSize();
  }

 private:
  static constexpr int kInline = 32;

  static void Clip(const Rec*& a, const Rec*& b, const Rec& segMin, const Rec& segMax) {
    if (Compare0(*a, segMin) <= 0) a = &segMin;
    if (Compare0(*b, segMax) >= 0) b = &segMax;
  }
  static void Add(const Rec& a, const Rec& b, KvBtDynArray<KvGeLine2d>& out) {
    if (Compare0(a, b) < 0)
      out.Add(KvGeLine2d(KvGePoint2d(a.x, a.y, a.infinite), KvGePoint2d(b.x, b.y, b.infinite), 1, 1));
  }
  void Push(const Rec& r) {
    if (m_Size < kInline) {
      m_Inline[m_Size++] = r;
      return;
    }
    if (m_Heap.empty()) {
      m_Heap.reserve(4 * kInline);
      m_Heap.assign(m_Inline, m_Inline + kInline);
    }
    m_Heap.push_back(r);
    ++m_Size;
  }

  int m_Size = 0;
  Rec m_Inline[kInline];
  std::vector<Rec> m_Heap;
};

int Pieces(const KvGeLine2d& l, const KvGePoint2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  out.RemoveAt(0, out.GetSize());
  LineCut cut;
  cut.Cross(KvGeLine2d(l.P1(), l.P2(), 0, 1), region);
  return cut.Pieces(l, out, mode);
}

int Pieces(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  out.RemoveAt(0, out.GetSize());
  LineCut cut;
  const KvGeLine2d unbounded(l.P1(), l.P2(), 0, 1);
  for (const KvGePolygon2d& ring : region) cut.Cross(unbounded, ring);
  return cut.Pieces(l, out, mode);
}

// Chains the pieces of each edge of the polyline: a piece starting at the end of the last
// polyline continues it.
template <class Region>
int PolylinePieces(const KvGePolyline2d& l, const Region& region, KvGePolyline2dArray& out, int mode) {
  out.RemoveAll();
  KvBtDynArray<KvGeLine2d> pieces;
  const int n = l.GetSize();
  for (int i = 0; i + 1 < n; ++i) {
    const KvGeLine2d edge(l.GetData()[i], l.GetData()[i + 1], 1, 1);
    Pieces(edge, region, pieces, mode);
    for (const KvGeLine2d& piece : pieces) {
      if (out.GetSize() > 0) {
        KvGePolyline2d& last = out.ElementAt(out.GetUpperBound());
        if (last.GetSize() > 0 && last.GetData()[last.GetUpperBound()] == piece.P1()) {
          last.Add(piece.P2());
          continue;
        }
      }
      KvGePolyline2d chain;
      chain.Add(piece.P1());
      chain.Add(piece.P2());
      out.Add(chain);
    }
  }
  return out.GetSize();
}

}  // namespace

int Intersection2d(const KvGeLine2d& l, const KvGePoint2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(l, region, out, mode);
}
int Intersection2d(const KvGePoint2dArray& region, const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(l, region, out, mode);
}
int Intersection2d(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(l, region, out, mode);
}
int Intersection2d(const KvGePolygon2dArray& region, const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(l, region, out, mode);
}
int Intersection2d(KvGePoint2d p1, KvGePoint2d p2, KvGePolygon2dArray region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(KvGeLine2d(p1, p2, 1, 1), region, out, mode);
}
int Intersection2d(const KvGePolyline2d& l, const KvGePolygon2d& region, KvGePolyline2dArray& out, int mode) {
  return PolylinePieces(l, region, out, mode);
}
int Intersection2d(const KvGePolygon2d& region, const KvGePolyline2d& l, KvGePolyline2dArray& out, int mode) {
  return PolylinePieces(l, region, out, mode);
}
int Intersection2d(const KvGePolyline2d& l, const KvGePolygon2dArray& region, KvGePolyline2dArray& out, int mode) {
  return PolylinePieces(l, region, out, mode);
}
int Intersection2d(const KvGePolygon2dArray& region, const KvGePolyline2d& l, KvGePolyline2dArray& out, int mode) {
  return PolylinePieces(l, region, out, mode);
}
