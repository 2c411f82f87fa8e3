// The queries on arbitrary rings: containment, pieces, distances, line crossings, the region
// booleans and the prepared region, with the invariants each of them promises. The input is
// read as fuzz_input.h describes. Every input is run for crashes, leaks and undefined behaviour.
// The prepared region must answer as the free functions wherever the coordinates are finite;
// the geometric invariants are checked where they are within 1e4 (always so in the three grid
// codings), so that rounding stays far below the 0.001 band. Non-finite input has answers of its
// own and is left to the table of those.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/intersection/KvGePreparedRegion2d.h"

namespace {

bool IsPointAnswer(unsigned short c) { return c == 1 || c == 2 || c == 4; }

// The rounding allowance of a computed point near coordinates of magnitude m.
double Slack(double m) { return 1e-9 * (1.0 + m); }

double Magnitude(const KvGePoint2d& p) { return std::max(std::fabs(p.x), std::fabs(p.y)); }

bool Finite(const KvGePoint2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

bool Finite(const KvGePolygon2dArray& set) {
  for (const KvGePolygon2d& ring : set)
    for (const KvGePoint2d& p : ring)
      if (!Finite(p)) return false;
  return true;
}

bool Small(const KvGePoint2d& p) { return std::fabs(p.x) <= 1e4 && std::fabs(p.y) <= 1e4; }

bool Small(const KvGePolygon2dArray& set) {
  for (const KvGePolygon2d& ring : set)
    for (const KvGePoint2d& p : ring)
      if (!Small(p)) return false;
  return true;
}

bool OnLine(const KvGeLine2d& l, const KvGePoint2d& p) {
  const double m = std::max({Magnitude(l.P1()), Magnitude(l.P2()), Magnitude(p)});
  // A line no longer than 0.001 has no direction: nothing lies on it by measure.
  if (l.P1().DistanceSqr(l.P2()) <= 1e-6) return true;
  const double tol = 1e3 * Slack(m);
  return DistanceSqrToLine2d(l.P1(), l.P2(), p) <= tol * tol;
}

// The distance of p along l from its start.
double Along(const KvGeLine2d& l, const KvGePoint2d& p) {
  const double dx = l.P2().x - l.P1().x, dy = l.P2().y - l.P1().y;
  return ((p.x - l.P1().x) * dx + (p.y - l.P1().y) * dy) / std::sqrt(dx * dx + dy * dy);
}

bool SameBits(const KvGePoint2d& a, const KvGePoint2d& b) {
  return std::memcmp(&a.x, &b.x, sizeof a.x) == 0 && std::memcmp(&a.y, &b.y, sizeof a.y) == 0;
}

bool SameRings(const KvGePolygon2dArray& a, const KvGePolygon2dArray& b) {
  if (a.GetSize() != b.GetSize() || a.Tag() != b.Tag()) return false;
  for (int r = 0; r < a.GetSize(); ++r) {
    if (a[r].GetSize() != b[r].GetSize()) return false;
    for (int i = 0; i < a[r].GetSize(); ++i)
      if (!SameBits(a[r][i], b[r][i])) return false;
  }
  return true;
}

double Perimeter(const KvGePolygon2dArray& set) {
  double sum = 0.0;
  for (const KvGePolygon2d& ring : set) sum += ring.Perimeter();
  return sum;
}

// Whether the crossings of the unbounded line with the region's edges form a chain from a to b
// with no gap wider than 0.001: within such a cluster the tolerant sort may leave crossings in
// any order, as the library's comparison allows.
bool TolerantCluster(const KvGeLine2d& l, const KvGePolygon2dArray& region, double a, double b, double slack) {
  KvGeIntrPoint2dArray crossings;
  for (const KvGePolygon2d& ring : region)
    Intersection2d(KvGeLine2d(l.P1(), l.P2(), 0), static_cast<const KvGePoint2dArray&>(ring), crossings, 1);
  std::vector<double> t;
  for (const KvGeIntrPoint2d& c : crossings) t.push_back(c.Param0());
  std::sort(t.begin(), t.end());
  double reached = a;
  for (double v : t)
    if (v <= reached + 0.001 + slack && v > reached) reached = v;
  return reached >= b - 0.001 - slack;
}

// Pieces come as bounded lines of at least 0.001 running the way l runs, on it and, when l is
// bounded, within its segment (the 0.001 band included); in order along it, but for clusters of
// crossings closer than 0.001.
void CheckPieces(const KvGeLine2d& l, const KvGePolygon2dArray& region, const KvBtDynArray<KvGeLine2d>& pieces) {
  const double len = std::sqrt(l.P1().DistanceSqr(l.P2()));
  if (len <= 0.001) return;
  double last = -HUGE_VAL;
  const double slack = Slack(std::max(Magnitude(l.P1()), Magnitude(l.P2()))) * 1e3;
  for (const KvGeLine2d& piece : pieces) {
    UG_FUZZ_REQUIRE(piece.Segment() == 1 && piece.Sense() == 1);
    UG_FUZZ_REQUIRE(OnLine(l, piece.P1()) && OnLine(l, piece.P2()));
    const double t1 = Along(l, piece.P1()), t2 = Along(l, piece.P2());
    UG_FUZZ_REQUIRE(t2 - t1 >= 0.001 - slack);
    if (t1 < last - 0.001 - slack) UG_FUZZ_REQUIRE(TolerantCluster(l, region, t1, last, slack));
    last = t2;
    if (l.Segment()) UG_FUZZ_REQUIRE(t1 >= -0.001 - slack && t2 <= len + 0.001 + slack);
  }
}

bool SamePieces(const KvBtDynArray<KvGeLine2d>& a, const KvBtDynArray<KvGeLine2d>& b) {
  if (a.GetSize() != b.GetSize()) return false;
  for (int i = 0; i < a.GetSize(); ++i)
    if (!SameBits(a[i].P1(), b[i].P1()) || !SameBits(a[i].P2(), b[i].P2())) return false;
  return true;
}

struct Regions {
  KvGePolygon2dArray set;
  KvGePolygon2d poly;
  KvGePreparedRegion2d preparedPoly, preparedSet;
  bool finite, checked;
};

void PointQuery(const Regions& r, const KvGePoint2d& p, bool checked) {
  const unsigned short inPoly = Containment(p, r.poly), inSet = Containment(p, r.set);
  UG_FUZZ_REQUIRE(IsPointAnswer(inPoly) && IsPointAnswer(inSet));
  if (r.finite && Finite(p))
    UG_FUZZ_REQUIRE(r.preparedPoly.Containment(p) == inPoly && r.preparedSet.Containment(p) == inSet);
  const double d = DistanceSqr2d(r.poly, p);
  const int nearest = NearestLineIndex2d(r.poly, p);
  UG_FUZZ_REQUIRE(nearest >= -1 && nearest < r.poly.GetSize());
  if (!checked) return;
  UG_FUZZ_REQUIRE(d >= 0.0);
  // Within the band (with a margin for the two ways of rounding) a point is on the boundary.
  if (d <= 0.98e-6) UG_FUZZ_REQUIRE(inPoly == 2);
  if (nearest >= 0) {
    const KvGePoint2d& a = r.poly[nearest];
    const KvGePoint2d& b = r.poly[(nearest + 1) % r.poly.GetSize()];
    const double seg = DistanceSqrToLineseg2d(a, b, p), line = DistanceSqrToLine2d(a, b, p);
    UG_FUZZ_REQUIRE(seg == d);
    UG_FUZZ_REQUIRE(seg >= line - Slack(Magnitude(p)) * 1e3);
  }
}

void LineQuery(const Regions& r, const KvGeLine2d& l, int mode, bool checked) {
  KvBtDynArray<KvGeLine2d> polyPieces, setPieces, prepared;
  const int n = Intersection2d(l, static_cast<const KvGePoint2dArray&>(r.poly), polyPieces, mode);
  UG_FUZZ_REQUIRE(n == polyPieces.GetSize());
  Intersection2d(l, r.set, setPieces, mode);
  KvBtDynArray<KvGeLine2d> preparedSet;
  r.preparedPoly.Intersection2d(l, prepared, mode);
  r.preparedSet.Intersection2d(l, preparedSet, mode);
  const unsigned short inPoly = Containment(l, r.poly), inSet = Containment(l, r.set);
  UG_FUZZ_REQUIRE(inPoly <= 7 && inSet <= 7);
  if (r.finite && Finite(l.P1()) && Finite(l.P2()))
    UG_FUZZ_REQUIRE(r.preparedPoly.Containment(l) == inPoly && r.preparedSet.Containment(l) == inSet);
  KvGeIntrPoint2dArray crossings;
  const int k = Intersection2d(l, static_cast<const KvGePoint2dArray&>(r.poly), crossings, 0);
  UG_FUZZ_REQUIRE(k == crossings.GetSize());
  for (const KvGeIntrPoint2d& c : crossings)
    UG_FUZZ_REQUIRE(c.Segment1() < static_cast<std::uint32_t>(r.poly.GetSize()));
  const double dl = DistanceSqr2d(l, l.P1() + KvGePoint2d(0.5, -0.25));
  if (!checked) return;
  UG_FUZZ_REQUIRE(SamePieces(prepared, polyPieces) && SamePieces(preparedSet, setPieces));
  UG_FUZZ_REQUIRE(dl >= 0.0);
  KvGePolygon2dArray polyAsSet;
  polyAsSet.Add(r.poly);
  CheckPieces(l, polyAsSet, polyPieces);
  CheckPieces(l, r.set, setPieces);
  for (const KvGeIntrPoint2d& c : crossings)
    UG_FUZZ_REQUIRE(OnLine(l, c) && (c.CrossSense() == 1 || c.CrossSense() == -1));
  // An inside piece is an inside part of the line.
  if (mode == 0 && polyPieces.GetSize() > 0) UG_FUZZ_REQUIRE(inPoly & 4);
}

void PolylineQuery(const Regions& r, const KvGePolyline2d& pl, int mode) {
  KvGePolyline2dArray out;
  const int n = Intersection2d(pl, r.poly, out, mode);
  UG_FUZZ_REQUIRE(n == out.GetSize());
  Intersection2d(pl, r.set, out, mode);
  const unsigned short c = Containment(pl, r.poly);
  const unsigned short s = Containment(pl, r.set);
  UG_FUZZ_REQUIRE(c <= 7 && s <= 7);
  bool finite = r.finite;
  for (const KvGePoint2d& p : pl) finite = finite && Finite(p);
  if (finite) UG_FUZZ_REQUIRE(r.preparedPoly.Containment(pl) == c && r.preparedSet.Containment(pl) == s);
}

void TwoLines(const KvGeLine2d& a, const KvGeLine2d& b, bool checked) {
  KvGeIntrPoint2d ab, ba;
  const int found = Intersection2d(a, b, ab), back = Intersection2d(b, a, ba);
  KvGePoint2d s;
  IntrLineLine2d(a.P1(), a.P2(), b.P1(), b.P2(), s, a.Segment() && b.Segment(), 1);
  if (!checked) return;
  // The same crossing seen from either line, with the opposite sense.
  UG_FUZZ_REQUIRE(found == back);
  if (!found) return;
  UG_FUZZ_REQUIRE(ab.CrossSense() == -ba.CrossSense() && (ab.CrossSense() == 1 || ab.CrossSense() == -1));
  UG_FUZZ_REQUIRE(std::fabs(ab.Param0() - ba.Param1()) <= 1e-9 * (1 + std::fabs(ab.Param0())));
  UG_FUZZ_REQUIRE(OnLine(a, ab) && OnLine(b, ab));
  if (a.Segment())
    UG_FUZZ_REQUIRE(ab.Param0() >= -0.0011 && ab.Param0() <= std::sqrt(a.P1().DistanceSqr(a.P2())) + 0.0011);
}

// Booleans of two sets: a failure leaves the set as it was; where both operands normalise, the
// union's area is at least each operand's and the intersection's at most each one's.
void Booleans(const KvGePolygon2dArray& a, const KvGePolygon2dArray& b, bool checked) {
  KvGePolygon2dArray na(a), nb(b);
  const int okA = na.Normalize(), okB = nb.Normalize();
  if (!okA) UG_FUZZ_REQUIRE(SameRings(na, a));
  if (!okB) UG_FUZZ_REQUIRE(SameRings(nb, b));
  const KvGePolygon2dArray u = a | b, i = a & b, d = a - b;
  if (!checked || !okA || !okB || a.GetSize() == 0 || b.GetSize() == 0) return;
  // Normalising moves vertices to a grid of 1e-6 and drops vertices within 0.001 of the line
  // through their neighbours: each may shift an edge by up to 0.001.
  const double eps = 0.001 * (Perimeter(a) + Perimeter(b)) + 1e-6;
  const double areaA = na.Area(), areaB = nb.Area();
  UG_FUZZ_REQUIRE(areaA >= -eps && areaB >= -eps);
  UG_FUZZ_REQUIRE(u.Area() >= areaA - eps && u.Area() >= areaB - eps);
  UG_FUZZ_REQUIRE(i.Area() <= std::min(areaA, areaB) + eps && i.Area() >= -eps);
  UG_FUZZ_REQUIRE(d.Area() <= areaA + eps && d.Area() >= -eps);
}

// With UG_FUZZ_VERBOSE set, the decoded input is printed, to turn a crash into a test case.
const bool kVerbose = std::getenv("UG_FUZZ_VERBOSE") != nullptr;

void Print(const char* what, const KvGePolygon2dArray& set) {
  if (!kVerbose) return;
  std::fprintf(stderr, "%s:\n", what);
  for (const KvGePolygon2d& ring : set) {
    std::fprintf(stderr, "  ring");
    for (const KvGePoint2d& p : ring) std::fprintf(stderr, " {%.17g, %.17g}", p.x, p.y);
    std::fprintf(stderr, "\n");
  }
}

void Print(const char* what, const KvGePoint2d& p, const KvGePoint2d& q, int a, int b) {
  if (kVerbose) std::fprintf(stderr, "%s {%.17g, %.17g} {%.17g, %.17g} %d %d\n", what, p.x, p.y, q.x, q.y, a, b);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ugfuzz::Reader in(data, size);
  in.SetCoding(in.Byte());
  Regions r;
  r.set = in.Set();
  const KvGePolygon2dArray other = in.Set();
  Print("set", r.set);
  Print("other", other);
  r.poly = r.set[0];
  r.preparedPoly.Set(r.poly);
  r.preparedSet.Set(r.set);
  r.finite = Finite(r.set);
  r.checked = in.Coding() != 3 || (Small(r.set) && Small(other));
  Booleans(r.set, other, r.checked);
  for (int q = 0; q < ugfuzz::kMaxQueries && !in.Empty(); ++q) {
    const int kind = in.Byte();
    switch (kind % ugfuzz::kQueryKinds) {
      case ugfuzz::kPoint: {
        const KvGePoint2d p = in.Point();
        Print("point", p, p, 0, 0);
        PointQuery(r, p, r.checked && Small(p));
        break;
      }
      case ugfuzz::kLine: {
        const KvGePoint2d p = in.Point(), q = in.Point();
        Print("line, segment, mode", p, q, (kind >> 2) & 1, (kind >> 3) & 1);
        LineQuery(r, KvGeLine2d(p, q, (kind >> 2) & 1), (kind >> 3) & 1, r.checked && Small(p) && Small(q));
        break;
      }
      case ugfuzz::kPolyline: {
        KvGePolyline2d pl;
        const int n = (kind >> 2) % 6;
        for (int i = 0; i < n; ++i) pl.Add(in.Point());
        if (n > 0) Print("polyline from, to, vertices, mode", pl[0], pl[n - 1], n, (kind >> 5) & 1);
        PolylineQuery(r, pl, (kind >> 5) & 1);
        break;
      }
      default: {
        const KvGePoint2d p1 = in.Point(), p2 = in.Point(), q1 = in.Point(), q2 = in.Point();
        Print("line a, segment", p1, p2, (kind >> 2) & 1, 0);
        Print("line b, segment", q1, q2, (kind >> 3) & 1, 0);
        TwoLines(KvGeLine2d(p1, p2, (kind >> 2) & 1), KvGeLine2d(q1, q2, (kind >> 3) & 1),
                 in.Coding() != 3 || (Small(p1) && Small(p2) && Small(q1) && Small(q2)));
      }
    }
  }
  return 0;
}
