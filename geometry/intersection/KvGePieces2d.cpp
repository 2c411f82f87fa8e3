#include "geometry/intersection/KvGePieces2d.h"

#include <cmath>
#include <cstdint>
#include <utility>
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

// Keeps a rarely taken path out of its caller, so that the caller stays small enough to inline.
#if defined(_MSC_VER)
#define KVGE_PIECES_COLD __declspec(noinline)
#else
#define KVGE_PIECES_COLD __attribute__((noinline, cold))
#endif

// The calculator of the line's cut, reduced to what the pieces read: each record keeps its
// parameter and segment index along the line (the order of the full calculator's records), its
// crossing count with respect to the edge, and its point. Records sit in the full calculator's
// order (the two sentinels, then the crossings in edge order, ring after ring), are sorted by the
// same quicksort with the same comparison, and the parts are formed, typed, clipped and joined as
// from the full calculator, so the pieces are the same. Storage is inline for the first kInline
// records.
//
// A bounded line is first cut the short way. Only parts within 0.001 of the segment can give a
// piece, and the crossings far before its start count only through their sum (the state at the
// start). So a crossing more than kFar before the start is only counted, one more than kFar
// beyond the end is dropped in mode 0 (in mode non-zero it is kept: it may end a run), and the
// rest is stored and sorted. That gives the full calculator's pieces when the order of the kept
// records does not depend on the ones left out: when they are strictly ordered (each more than
// 0.001 from the next) and lie more than 0.002 from every record left out. The sort lets a
// record pass a pivot only within 0.001 of it, so two records more than 0.002 apart never
// change sides, whatever the pivots; the records left out then come before (or after) all kept
// ones in any order, and the part that joins them to the kept ones starts before the segment
// (or ends after it) with the same count. Kept records must therefore lie within kNear of the
// segment's span; one between kNear and kFar, two kept records within 0.001, or a kept record
// within 0.001 of the end sentinel's parameter (whose part to it would have no type), sends the
// line the long way, through every crossing.
struct Rec {
  double param;
  std::uint32_t segment;
  int cut;
  double x, y;
  int infinite;
};

int Compare0(const Rec& a, const Rec& b) { return KvGeDetail::OrderOnObject(a.segment, a.param, b.segment, b.param); }

constexpr double kNear = 0.003;
constexpr double kFar = 0.0055;

class LineCut {
 public:
  // shortWay: try the short way (a bounded line).
  LineCut(const KvGeLine2d& l, bool shortWay, int mode)
      : m_Line(l.P1().x, l.P1().y, l.P2().x, l.P2().y),
        m_Short(shortWay),
        m_DropAfter(mode == 0 ? m_Line.l1 + kFar : HUGE_VAL),
        m_KeepTo(mode == 0 ? m_Line.l1 + kNear : HUGE_VAL),
        m_Parallel(1.000001e-12 * (m_Line.l1 * m_Line.l1)) {
    // The short way keeps the end sentinel back until its records are sorted.
    Push(Sentinels()[0]);
    if (!m_Short) Push(Sentinels()[1]);
  }
  LineCut(const LineCut&) = delete;
  LineCut& operator=(const LineCut&) = delete;

  // The crossings of the unbounded copy of l with the closed sequences [first, last). false
  // when the short way failed (the cut must be made again the long way).
  template <class Ring>
  bool Cross(const Ring* first, const Ring* last) {
    const auto add = [this](const KvGeDetail::Crossing& c, int) {
      const Rec r{c.t0, 0, c.code1 != 0 ? c.sense : 2 * c.sense, c.x, c.y, 0};
      if (m_Short)
        Keep(r);
      else
        Push(r);
    };
    const KvGeDetail::EdgeScan scan(m_Line);
    if (m_Short) {
      auto take = [this](const KvGeDetail::FirstLine& a, const KvGePoint2d& s, const KvGePoint2d& e) {
        return TakeStraddling(a, s, e);
      };
      scan.Cross(0, first, last, Size, Data, add, take);
    } else {
      auto none = [](const KvGeDetail::FirstLine&, const KvGePoint2d&, const KvGePoint2d&) { return false; };
      scan.Cross(0, first, last, Size, Data, add, none);
    }
    return !m_Unsure;
  }

  // Sorts, cuts into typed parts and writes the pieces of the mode; false when the short way
  // failed (out is then untouched).
  bool Pieces(const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out, int mode) {
    if (m_Short) {
      if (m_Unsure) return false;
      Rec* rec = m_Heap.empty() ? m_Inline : m_Heap.data();
      const int n = m_Size;
      // The kept records lie between the sentinels (segment 0 and parameters from -0.003, where
      // the start sentinel lies at -1e9 and the end sentinel on a later segment). Sorted by
      // parameter, they are in the full calculator's order when each lies more than 0.001
      // from the next: no two of them are then equal to the tolerant comparison, so every sort
      // by it gives this one order. A kept parameter is never a NaN (Keep lets none through),
      // so on segment 0 the comparison is that of the parameters alone.
      for (int i = 2; i < n; ++i)
        for (int j = i; j > 1 && rec[j].param < rec[j - 1].param; --j) std::swap(rec[j], rec[j - 1]);
      for (int i = 1; i + 1 < n; ++i)
        if (!(rec[i + 1].param - rec[i].param > kKvGeLinearTol)) return false;
      // A kept record within 0.001 of the end sentinel's parameter (on a segment about 1e9
      // long) would make the last part here one of no type, where the full calculator may have
      // a dropped crossing after that record and a typed part.
      if (n > 1 && IsEqual(Sentinels()[1].param, rec[n - 1].param, kKvGeLinearTol)) return false;
      // The start sentinel stands for the crossings counted before the segment.
      rec[0].cut += m_Before;
      if (mode == 0) {
        WalkShort0(l, rec, n, out);
      } else {
        Push(Sentinels()[1]);
        Walk(l, m_Heap.empty() ? m_Inline : m_Heap.data(), n + 1, out, mode);
      }
      return true;
    }
    Rec* rec = m_Heap.empty() ? m_Inline : m_Heap.data();
    const int n = m_Size;
    KvTlSortRange(rec, n, Compare0, [](int, int) { return false; });
    Walk(l, rec, n, out, mode);
    return true;
  }

 private:
  static constexpr int kInline = 32;

  static Rec Sentinel(const KvGeIntrPoint2d& p) {
    return Rec{p.Param0(), p.Segment0(), p.CutCode1(), p.x, p.y, p.m_bInfinite};
  }
  // The records of the start and end sentinels, made once.
  static const Rec* Sentinels() {
    static const Rec sentinels[2] = {Sentinel(KvGeIntrPoint2d::kNegInfinity), Sentinel(KvGeIntrPoint2d::kPosInfinity)};
    return sentinels;
  }
  static int Size(const KvGePoint2dArray& ring) { return ring.GetSize(); }
  static const KvGePoint2d* Data(const KvGePoint2dArray& ring) { return ring.GetData(); }

  // Walk in mode 0 over the strictly ordered records rec[0 .. n-1] of the short way: the start
  // sentinel and the kept records on segment 0 (each more than 0.001 beyond the one before),
  // followed by the end sentinel (not stored) on a later segment, more than 0.001 beyond them
  // all. So no part has ends equal to the tolerance, and clipping is by the parameters alone: a
  // start no more than 0.001 after the segment's start, and an end no more than 0.001 before its
  // end (the end sentinel always), give way to the segment's ends, as in Walk.
  void WalkShort0(const KvGeLine2d& l, const Rec* rec, int n, KvBtDynArray<KvGeLine2d>& out) const {
    const double len = m_Line.l1;
    int written = 0;
    int s = 0;
    for (int i = 0; i < n; ++i) {
      s += rec[i].cut;
      if (s > -2) continue;
      const Rec& p = rec[i];
      const Rec& q = rec[i + 1 < n ? i + 1 : i];  // the end sentinel's point is never read
      const bool clipStart = !(p.param > kKvGeLinearTol);
      const bool clipEnd = i + 1 == n || !(len - q.param > kKvGeLinearTol);
      const double ta = clipStart ? 0.0 : p.param, tb = clipEnd ? len : q.param;
      if (!(tb - ta > kKvGeLinearTol)) continue;
      Write(clipStart ? l.P1().x : p.x, clipStart ? l.P1().y : p.y, clipStart ? l.P1().m_bInfinite : p.infinite,
            clipEnd ? l.P2().x : q.x, clipEnd ? l.P2().y : q.y, clipEnd ? l.P2().m_bInfinite : q.infinite, out,
            written);
    }
    if (written < out.GetSize()) out.RemoveAt(written, out.GetSize() - written);
  }

  void Walk(const KvGeLine2d& l, const Rec* rec, int n, KvBtDynArray<KvGeLine2d>& out, int mode) const {
    const Rec segMin{0.0, 0, 0, l.P1().x, l.P1().y, l.P1().m_bInfinite};
    const Rec segMax{m_Line.l1, 0, 0, l.P2().x, l.P2().y, l.P2().m_bInfinite};
    const bool bounded = l.Segment() != 0;
    int written = 0;
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
        // The last part runs out to the end sentinel, which has no point on the line. Its count
        // is inside only where rounding at a nearly collinear edge lost half a crossing; an
        // unbounded line is outside at its ends, so that part is no piece (in mode 1 such a run
        // is never closed and dropped as well).
        if (type != 1 || (!bounded && i + 2 == n)) continue;
        // Clipping as the part's Intersect0: the later start and the earlier end, a tie giving the
        // segment's end.
        const Rec* a = &p;
        const Rec* b = &q;
        if (bounded) Clip(a, b, segMin, segMax);
        Add(*a, *b, out, written);
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
        Add(*a, *b, out, written);
        open = false;
      }
    }
    if (written < out.GetSize()) out.RemoveAt(written, out.GetSize() - written);
  }

  // A crossing computed as the full calculator does, on the short way: counted when more than
  // kFar before the start, dropped when more than kFar beyond the end in mode 0, kept within
  // kNear of the segment's span (and beyond its end in mode non-zero); elsewhere (or not a
  // number) the short way fails.
  void Keep(const Rec& r) {
    const double t = r.param;
    if (t < -kFar) {
      m_Before += r.cut;
    } else if (t > m_DropAfter) {
    } else if (t >= -kNear && t <= m_KeepTo) {
      Push(r);
    } else {
      m_Unsure = true;
    }
  }

  // An edge whose ends lie on opposite sides beyond the side band, line and edge within the
  // plain range (the edges the scan offers), and not parallel by a clear margin, is crossed
  // here rather than by CrossLines: its crossing lies more than 0.0011 inside the edge whatever
  // the rounding (the argument of SkipEdge), so its end code is 0 and its cut twice its sense,
  // and the edge's length, the parallel test's quotient and the parameter along the edge need
  // not be computed. The crossing point and its parameter along the line are computed by the
  // same operations as in CrossLines, so the record is the same bit for bit; Keep then counts,
  // drops or keeps it. false leaves the edge to CrossLines.
  bool TakeStraddling(const KvGeDetail::FirstLine& a, const KvGePoint2d& s, const KvGePoint2d& e) {
    const double d2x = e.x - s.x, d2y = e.y - s.y;
    const double c = a.d1x * d2y - d2x * a.d1y;
    // Surely beyond the parallel band of a sine of 1e-6, as the full calculator tests it.
    if (!(c * c > m_Parallel * (d2x * d2x + d2y * d2y))) return false;
    const double k2 = s.x * e.y - s.y * e.x;
    const double f = 1.0 / c;
    // Finite without a test: c * c did not underflow, so |f| < 1e162, and with coordinates
    // within the plain range the factors before it stay below 1e13.
    const double sx = (a.d1x * k2 - d2x * a.k1) * f;
    const double sy = (a.d1y * k2 - d2y * a.k1) * f;
    const double t0 = ((sx - a.p1x) * a.d1x + (sy - a.p1y) * a.d1y) / a.l1;
    Keep(Rec{t0, 0, c > 0 ? 2 : -2, sx, sy, 0});
    return true;
  }

  static void Clip(const Rec*& a, const Rec*& b, const Rec& segMin, const Rec& segMax) {
    if (Compare0(*a, segMin) <= 0) a = &segMin;
    if (Compare0(*b, segMax) >= 0) b = &segMax;
  }
  // The piece from a to b, unless they lie within 0.001 of each other along the line.
  static void Add(const Rec& a, const Rec& b, KvBtDynArray<KvGeLine2d>& out, int& written) {
    if (Compare0(a, b) >= 0) return;
    Write(a.x, a.y, a.infinite, b.x, b.y, b.infinite, out, written);
  }
  // Writes over the pieces out holds from an earlier call before it grows, so that a reused
  // array neither frees nor builds its lines again; a new line is built in place.
  static void Write(double ax, double ay, int ainf, double bx, double by, int binf, KvBtDynArray<KvGeLine2d>& out,
                    int& written) {
    if (written >= out.GetSize()) {
      out.SetSize(written + 1);
      if (written >= out.GetSize()) return;  // out of memory: the piece is lost, as Add would lose it
    }
    KvGeLine2d& piece = out.GetData()[written];
    piece.P1().Set(ax, ay, ainf);
    piece.P2().Set(bx, by, binf);
    piece.Segment() = 1;
    piece.Sense() = 1;
    ++written;
  }
  void Push(const Rec& r) {
    if (m_Size < kInline)
      m_Inline[m_Size++] = r;
    else
      Spill(r);
  }
  // Beyond the inline storage.
  KVGE_PIECES_COLD void Spill(const Rec& r) {
    if (m_Heap.empty()) {
      m_Heap.reserve(4 * kInline);
      m_Heap.assign(m_Inline, m_Inline + kInline);
    }
    m_Heap.push_back(r);
    ++m_Size;
  }

  // The unbounded copy of the line, measured once for all rings.
  const KvGeDetail::FirstLine m_Line;
  bool m_Short;
  // Keep's bounds beyond the end: nothing is dropped in mode non-zero, nor is a kept record
  // bounded there.
  double m_DropAfter, m_KeepTo;
  // The parallel test's factor, 1.000001e-12 l1^2 (the product as TakeStraddling formed it).
  double m_Parallel;
  bool m_Unsure = false;
  int m_Before = 0;
  int m_Size = 0;
  Rec m_Inline[kInline];
  std::vector<Rec> m_Heap;
};

// The pieces of l in the rings [first, last): the short way when l is bounded, and the long way
// when that fails or l is unbounded.
template <class Ring>
int Pieces(const KvGeLine2d& l, const Ring* first, const Ring* last, KvBtDynArray<KvGeLine2d>& out, int mode) {
  if (l.Segment() != 0) {
    LineCut cut(l, true, mode);
    if (cut.Cross(first, last) && cut.Pieces(l, out, mode)) return out.GetSize();
  }
  LineCut cut(l, false, mode);
  cut.Cross(first, last);
  cut.Pieces(l, out, mode);
  return out.GetSize();
}

int Pieces(const KvGeLine2d& l, const KvGePoint2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(l, &region, &region + 1, out, mode);
}

int Pieces(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return Pieces(l, region.GetData(), region.GetData() + region.GetSize(), out, mode);
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
