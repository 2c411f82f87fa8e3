#include "geometry/intersection/KvGePieces2d.h"

#include <cmath>

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

// Adds the part as a piece when it has length (its start sorts before its end along the line).
void AddPiece(const KvGeIntrPart2d& part, KvBtDynArray<KvGeLine2d>& out) {
  if (part.Min().Compare0(part.Max()) < 0)
    out.Add(KvGeLine2d(KvGePoint2d(part.Min().x, part.Min().y, part.Min().m_bInfinite),
                       KvGePoint2d(part.Max().x, part.Max().y, part.Max().m_bInfinite), 1, 1));
}

template <class Region>
int Pieces(const KvGeLine2d& l, const Region& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  out.RemoveAll();
  KvGeIntrCalculator2d calc;
  KvGeDetail::CutUnbounded(l, region, calc);
  const KvGeIntrPart2d segment = KvGeDetail::SegmentPart(l);
  const int n = calc.GetSize0();
  if (mode == 0) {
    for (int i = 0; i < n; ++i) {
      KvGeIntrPart2d part = calc.Part0(static_cast<unsigned>(i));
      if (l.Segment()) part.Intersect0(segment);
      if (part.Type() == 1) AddPiece(part, out);
    }
    return out.GetSize();
  }
  // Runs of parts of positive length that are not outside; an outside part closes the run. A
  // run still open after the last part is dropped: the last part of an unbounded line reaches
  // the far sentinel and is outside for any closed region.
  bool open = false;
  KvGeIntrPart2d run;
  for (int i = 0; i < n; ++i) {
    const KvGeIntrPart2d& part = calc.Part0(static_cast<unsigned>(i));
    if (part.Min().Compare0(part.Max()) >= 0) continue;
    if (part.Type() != -1) {
      if (!open) run.Set(part.Min(), part.Max(), part.Type());
      run.Max() = part.Max();
      open = true;
    } else if (open) {
      if (l.Segment()) run.Intersect0(segment);
      AddPiece(run, out);
      open = false;
    }
  }
  return out.GetSize();
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
