#pragma once
/// @file
/// Where lines cross: two lines, a line and a circle, a line and the edges of a closed point
/// sequence; the parallel of a segment and the piercing point of a line through a plane.
///
/// Two lines p1 + d1 t and q1 + d2 u (d1 = p2 - p1, d2 = q2 - q1) are crossed as infinite lines
/// first. A line no longer than 0.001 gives no crossing, nor do lines whose directions differ
/// by a sine of at most 1e-6 (parallel or collinear; overlapping collinear segments are not told
/// apart and give no crossing either, even when long). The crossing point is computed with one
/// reciprocal of the cross product c = d1 x d2; its sign is the crossing sense: +1 when the
/// second line crosses the first from its right to its left.
///
/// Parameters are distances in drawing units from the start point of each line along it. On a
/// bounded line (Segment non-zero) a crossing within 0.001 of an end point (inclusive) lies at
/// that end: end code -1 at the start, +1 at the end, 0 strictly inside; farther outside it is
/// no crossing. An unbounded line has end code 0 everywhere.
///
/// The "23d" and KvGePoint3d forms work in plan (x and y); their crossing point has z = 0.

/// \file
/// Non-finite input: a crossing with a coordinate that is not finite, or one that overflows, is no
/// crossing: 0, outputs untouched (a record stays cleared); ParalellLine2d returns 0 the same way.
/// See docs/non-finite-policy.md.

#include <cmath>
#include <cstddef>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeCircle2d.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/points/KvGePoint3d.h"

/// \cond
// For this header only. KVGE_ALWAYS_INLINE keeps the edge scan over rings in the function that
// calls it, and KVGE_LAMBDA_INLINE keeps its step for an edge that may cross (called from two
// places) in the scan's loop: GCC would otherwise make each a function of its own, whose calls
// cost the scan more than the step, as the line's numbers then go through memory on every edge.
#if defined(__GNUC__) || defined(__clang__)
#define KVGE_ALWAYS_INLINE __attribute__((always_inline)) inline
#define KVGE_LAMBDA_INLINE __attribute__((always_inline))
#elif defined(_MSC_VER)
#define KVGE_ALWAYS_INLINE __forceinline
#define KVGE_LAMBDA_INLINE
#else
#define KVGE_ALWAYS_INLINE inline
#define KVGE_LAMBDA_INLINE
#endif
/// \endcond

namespace KvGeDetail {

/// The first of two lines to be crossed, with what does not depend on the second one, so that a
/// line crossed with many edges measures itself once (the results are the same bit for bit).
struct FirstLine {
  FirstLine(double p1x_, double p1y_, double p2x_, double p2y_)
      : p1x(p1x_),
        p1y(p1y_),
        p2x(p2x_),
        p2y(p2y_),
        d1x(p2x_ - p1x_),
        d1y(p2y_ - p1y_),
        l1(std::sqrt(d1x * d1x + d1y * d1y)),
        k1(p1x_ * p2y_ - p1y_ * p2x_),
        r(Max(Max(std::fabs(p1x_), std::fabs(p1y_)), Max(std::fabs(p2x_), std::fabs(p2y_)))) {}

  /// The crossing with the infinite line through q1 and q2: 0 for a line no longer than 0.001
  /// or a sine of the angle within 1e-6; otherwise 1 with the crossing (sx, sy), the cross
  /// product c and the length l2.
  int CrossInfinite(double q1x, double q1y, double q2x, double q2y, double& sx, double& sy, double& c,
                    double& l2) const {
    const double d2x = q2x - q1x, d2y = q2y - q1y;
    l2 = std::sqrt(d2x * d2x + d2y * d2y);
    if (IsEqual(l1, 0.0, kKvGeLinearTol) || IsEqual(l2, 0.0, kKvGeLinearTol)) return 0;
    c = d1x * d2y - d2x * d1y;
    if (IsEqual(c / (l1 * l2), 0.0, kKvGeAngularTol)) return 0;
    const double k2 = q1x * q2y - q1y * q2x;
    const double f = 1.0 / c;
    sx = (d1x * k2 - d2x * k1) * f;
    sy = (d1y * k2 - d2y * k1) * f;
    // A coordinate that is not finite (or huge ones that overflow) gives no crossing.
    return std::isfinite(sx) && std::isfinite(sy) ? 1 : 0;
  }

  /// The side of q from the line: its distance times l1, positive to the left.
  double Side(double qx, double qy) const { return d1x * (qy - p1y) - d1y * (qx - p1x); }

  /// Whether the edge q1-q2, whose ends lie hs and he (Side) from the line, cannot meet it within
  /// 0.001 of the edge, so that CrossInfinite and the end test need not run: both ends lie more
  /// than kSideBand on one side (the crossing of the infinite lines then lies at least that far
  /// beyond the nearer end, measured along the edge), and the crossing formula is conditioned
  /// well enough that its rounding cannot bring the computed crossing back into the band. That
  /// formula works on products of absolute coordinates (k1, k2): their rounding, about
  /// eps * r^2 for coordinates up to r, shifts each line sideways by that over its length, and
  /// moves the crossing along the edge by the shifts over the sine of the angle between the
  /// lines, against a margin of (distance - 0.001) over the same sine. So the edge is skipped
  /// only when kRound * r^2 * (1 / l1 + 1 / l2) plus 2 * kRound * r (the rounding of the cross
  /// product, of the sides and of the lengths) stays below the nearer end's distance less 0.0011.
  /// Monotone in r, in that distance and in l2, so a box of edges may be tested with bounds.
  /// Not a number or coordinates beyond 1e50 never skip.
  bool SkipEdge(double hs, double he, double q1x, double q1y, double q2x, double q2y) const {
    const double band = kSideBand * l1;
    const bool left = (hs > band) & (he > band);
    const bool right = (hs < -band) & (he < -band);
    if (!(left | right)) return false;
    const double m = Min(std::fabs(hs), std::fabs(he));
    const double dx = q2x - q1x, dy = q2y - q1y;
    return Conditioned(Max(Max(r, Max(std::fabs(q1x), std::fabs(q1y))), Max(std::fabs(q2x), std::fabs(q2y))), m,
                       dx * dx + dy * dy);
  }

  static double Max(double a, double b) { return a < b ? b : a; }
  static double Min(double a, double b) { return b < a ? b : a; }

  /// The rounding test of SkipEdge for coordinates up to rq, the nearer end's side m (beyond the
  /// band) and the edge's squared length l2sq; without a square root or a division.
  bool Conditioned(double rq, double m, double l2sq) const {
    const double k = kRound * rq * rq;
    const double slack = m - 1.1 * kKvGeLinearTol * l1;  // (distance - 0.0011) * l1
    // k / l1 + 2 kRound r and k / l2 within half the margin each.
    const double lhs = 2 * k * l1;
    return (rq < 1e50) & (2 * (k + 2 * kRound * rq * l1) <= slack) & (lhs * lhs <= slack * slack * l2sq);
  }

  /// Edges no longer than this squared cross nothing (their length is within 0.001 of 0); the
  /// bound is taken a little lower, 0.0009 squared.
  static constexpr double kCrossingLenSqr = 0.81e-6;
  /// Within this range of the origin (line and edge) SkipEdge's rounding test holds for every
  /// edge that its side test passes and that is long enough to cross at all: kRound * r^2 stays
  /// below 1.35e-7, so k / l1 + k / l2 (l1, l2 > 0.0009) and 2 * kRound * r stay within the
  /// margin of 0.0004 (less rounding) that the side band leaves.
  static constexpr double kPlainRange = 8192;
  /// Both ends this far (times l1) on one side of the line: outside the 0.001 band of the edge
  /// by a margin of 0.0005 that absorbs the rounding of the sides.
  static constexpr double kSideBand = 0.0015;
  /// Eight units of rounding: the first-order bound of the crossing formula's error, doubled.
  static constexpr double kRound = 8 * 2.220446049250313e-16;

  double p1x, p1y, p2x, p2y, d1x, d1y, l1, k1;
  /// The largest magnitude of the line's coordinates.
  double r;
};

inline int CrossInfiniteLines(double p1x, double p1y, double p2x, double p2y, double q1x, double q1y, double q2x,
                              double q2y, double& sx, double& sy, double& c, double& l1, double& l2) {
  const FirstLine a(p1x, p1y, p2x, p2y);
  l1 = a.l1;
  return a.CrossInfinite(q1x, q1y, q2x, q2y, sx, sy, c, l2);
}

/// Where parameter t lies on a segment of length len: end code 0 strictly inside, -1 at the
/// start, +1 at the end (within 0.001, the start tested first); 0 when it lies outside.
inline int SegmentEndCode(double t, double len, int& code) {
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

/// The record of the crossing of a (bounded when segA) and b (bounded when segB) in plan
/// coordinates; 0 when there is none.
struct Crossing {
  double x, y;
  int sense, code0, code1;
  double t0, t1;
};

inline int CrossLines(const FirstLine& a, int segA, double q1x, double q1y, double q2x, double q2y, int segB,
                      Crossing& r) {
  double sx, sy, c, l2;
  if (!a.CrossInfinite(q1x, q1y, q2x, q2y, sx, sy, c, l2)) return 0;
  const double t0 = ((sx - a.p1x) * a.d1x + (sy - a.p1y) * a.d1y) / a.l1;
  const double t1 = ((sx - q1x) * (q2x - q1x) + (sy - q1y) * (q2y - q1y)) / l2;
  int code0 = 0, code1 = 0;
  if (segA && !SegmentEndCode(t0, a.l1, code0)) return 0;
  if (segB && !SegmentEndCode(t1, l2, code1)) return 0;
  r = Crossing{sx, sy, sgn(c), code0, code1, t0, t1};
  return 1;
}

inline int CrossLines(double p1x, double p1y, double p2x, double p2y, int segA, double q1x, double q1y, double q2x,
                      double q2y, int segB, Crossing& r) {
  return CrossLines(FirstLine(p1x, p1y, p2x, p2y), segA, q1x, q1y, q2x, q2y, segB, r);
}

/// What the edge scan of one line needs, computed once for all the closed sequences it is
/// crossed with: the side band and the plain range (negative for a line far out, so that no
/// vertex passes and SkipEdge weighs every edge). A line no longer than 0.001 crosses nothing,
/// nor does one with a coordinate that is not finite (CrossInfinite would find no finite
/// crossing with any edge).
struct EdgeScan {
  /// The scan of the line a_, which must outlive it.
  explicit EdgeScan(const FirstLine& a_)
      : a(a_),
        band(FirstLine::kSideBand * a_.l1),
        range(a_.r <= FirstLine::kPlainRange ? FirstLine::kPlainRange : -1.0),
        none(IsEqual(a_.l1, 0.0, kKvGeLinearTol) != 0 ||
             !(std::isfinite(a_.p1x) && std::isfinite(a_.p1y) && std::isfinite(a_.p2x) && std::isfinite(a_.p2y))) {}

  /// Calls add(crossing, i) for every edge i of the closed sequence v[0 .. n-1] that the line
  /// crosses (edge bounded, the line bounded when segment is non-zero), in edge order. Edges
  /// that could not cross are skipped without a square root: both ends beyond the side band
  /// suffice where the line and the edge lie within kPlainRange of the origin; farther out
  /// SkipEdge also weighs the rounding. An edge whose ends lie within kPlainRange, as the line
  /// does, and beyond the side band on opposite sides is first offered to taken(a, s, e) (the
  /// line and the ends); when it answers true the caller has dealt with that edge.
  template <class Add, class Taken>
  void Cross(int segment, const KvGePoint2d* v, int n, Add& add, Taken& taken) const {
    Cross(
        segment, &v, &v + 1, [n](const KvGePoint2d*) { return n; }, [](const KvGePoint2d* p) { return p; }, add, taken);
  }

  /// Cross with each of the closed sequences [first, last) in turn: data(ring) and size(ring)
  /// give their vertices. The line's numbers are held in locals across the rings, so that
  /// nothing the callbacks store can make the compiler read them again for every vertex.
  template <class Ring, class Size, class Data, class Add, class Taken>
  KVGE_ALWAYS_INLINE void Cross(int segment, const Ring* first, const Ring* last, Size&& size, Data&& data, Add& add,
                                Taken& taken) const {
    if (none) return;
    const double px = a.p1x, py = a.p1y, dx = a.d1x, dy = a.d1y, hi = band, lo = -band, lim = range;
    // FirstLine::Side, on the locals.
    const auto side = [px, py, dx, dy](const KvGePoint2d& p) { return dx * (p.y - py) - dy * (p.x - px); };
    const auto near = [lim](const KvGePoint2d& p) {
      const double ax = std::fabs(p.x), ay = std::fabs(p.y);
      return (ax < ay ? ay : ax) <= lim;  // not a number fails
    };
    // A vertex's side g where it lies within the range, else 0, which passes over no edge, and
    // its class: 1 beyond the band to the left (g > hi), 2 to the right (g < lo), else 0. An
    // edge whose ends share a class lies beside the line; one with classes 1 and 2 has plain
    // ends on opposite sides.
#if defined(__SSE2__) || defined(_M_X64)
    // Two lanes, x and y, the same operations: dx (y - py) + (-dy) (x - px) is the side bit for
    // bit (the negation and the sum are exact), and g > hi, -g > hi are the two classes.
    static_assert(offsetof(CoordData<2>, y) == offsetof(CoordData<2>, x) + sizeof(double), "x and y adjacent");
    const __m128d origin = _mm_set_pd(py, px), normal = _mm_set_pd(dx, -dy), limit = _mm_set1_pd(lim),
                  bound = _mm_set1_pd(hi), flip = _mm_set_pd(-0.0, 0.0),
                  magnitude = _mm_castsi128_pd(_mm_set1_epi64x(0x7fffffffffffffffLL));
    const auto classify = [&](const KvGePoint2d& p, double& g) {
      const __m128d xy = _mm_loadu_pd(&p.x);
      const __m128d in = _mm_cmple_pd(_mm_and_pd(xy, magnitude), limit);
      const __m128d m = _mm_mul_pd(_mm_sub_pd(xy, origin), normal);
      const __m128d gv = _mm_and_pd(_mm_add_sd(_mm_unpackhi_pd(m, m), m), _mm_and_pd(in, _mm_shuffle_pd(in, in, 1)));
      g = _mm_cvtsd_f64(gv);
      return static_cast<unsigned>(_mm_movemask_pd(_mm_cmpgt_pd(_mm_xor_pd(_mm_unpacklo_pd(gv, gv), flip), bound)));
    };
#else
    const auto classify = [&](const KvGePoint2d& p, double& g) {
      g = near(p) ? side(p) : 0.0;
      return static_cast<unsigned>(g > hi) | (static_cast<unsigned>(g < lo) << 1);
    };
#endif
    // An edge the loop could not pass over, from the ends' plain sides and classes (a side of 0
    // is computed again: the vertex may lie out of range).
    const auto edge = [&](int i, const KvGePoint2d& s, const KvGePoint2d& e, double gs, double ge, unsigned cs,
                          unsigned ce) KVGE_LAMBDA_INLINE {
      if ((cs | ce) == 3) {
        if (taken(a, s, e)) return;
      } else if (gs == 0.0 || ge == 0.0) {
        const double hs = gs != 0.0 ? gs : side(s), he = ge != 0.0 ? ge : side(e);
        const bool plain = (gs != 0.0 || near(s)) && (ge != 0.0 || near(e));
        if (((hs > hi) & (he > hi)) | ((hs < lo) & (he < lo)))
          if (plain || a.SkipEdge(hs, he, s.x, s.y, e.x, e.y)) return;
      }
      Crossing c;
      if (CrossLines(a, segment, s.x, s.y, e.x, e.y, 1, c)) add(c, i);
    };
    for (const Ring* ring = first; ring != last; ++ring) {
      const KvGePoint2d* v = data(*ring);
      const int n = size(*ring);
      if (n <= 0) continue;
      double g0;
      const unsigned c0 = classify(v[0], g0);
      double gs = g0;
      unsigned cs = c0;
      for (int i = 0; i + 1 < n; ++i) {
        double ge;
        const unsigned ce = classify(v[i + 1], ge);
        if (!(cs & ce)) edge(i, v[i], v[i + 1], gs, ge, cs, ce);
        gs = ge;
        cs = ce;
      }
      if (!(cs & c0)) edge(n - 1, v[n - 1], v[0], gs, g0, cs, c0);
    }
  }

  /// The line.
  const FirstLine& a;
  /// FirstLine::kSideBand times the line's length.
  double band;
  /// FirstLine::kPlainRange, or -1 for a line beyond it.
  double range;
  /// Whether the line crosses nothing at all.
  bool none;
};

/// EdgeScan::Cross of the line a with one closed sequence.
template <class Add, class Taken>
void CrossClosedSequence(const FirstLine& a, int segment, const KvGePoint2d* v, int n, Add&& add, Taken&& taken) {
  EdgeScan(a).Cross(segment, v, n, add, taken);
}

/// Every crossing, as above, with no edge taken by the caller.
template <class Add>
void CrossClosedSequence(const KvGeLine2d& l, const KvGePoint2d* v, int n, Add&& add) {
  CrossClosedSequence(FirstLine(l.P1().x, l.P1().y, l.P2().x, l.P2().y), l.Segment(), v, n, add,
                      [](const FirstLine&, const KvGePoint2d&, const KvGePoint2d&) { return false; });
}

}  // namespace KvGeDetail

#undef KVGE_ALWAYS_INLINE
#undef KVGE_LAMBDA_INLINE

/// Crosses p1-p2 with q1-q2. On a degenerate or parallel pair 0, s untouched. Otherwise s is the
/// crossing of the infinite lines (an ordinary point) and, with segments 0, the result is +1
/// when q1-q2 crosses p1-p2 from its right to its left, else -1. With segments non-zero the
/// result is 1 when s lies on both segments: with inclusive non-zero up to 0.001 beyond an end
/// still counts; with inclusive 0 it must lie more than 0.001 inside both; else 0 (s is written
/// all the same).
KVGE_API int IntrLineLine2d(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& q1, const KvGePoint2d& q2,
                            KvGePoint2d& s, int segments, int inclusive);
/// In plan; the ends always count (inclusive). s gets z = 0.
KVGE_API int IntrLineLine2d(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& q1, const KvGePoint3d& q2,
                            KvGePoint3d& s, int segments);

/// The crossing of a (object 0) and b (object 1) as a record: point, crossing sense, end codes
/// and parameters on both lines, segment indices 0. r is cleared first; 0 when the lines are
/// degenerate or parallel or the crossing lies outside a bounded line (r stays cleared).
KVGE_API int Intersection2d(const KvGeLine2d& a, const KvGeLine2d& b, KvGeIntrPoint2d& r);
/// In plan: the crossing of a and b as a space record with z = 0; 0 under the plane form's conditions.
KVGE_API int Intersection2d(const KvGeLine23d& a, const KvGeLine23d& b, KvGeIntrPoint3d& r);
/// The same, added to out (emptied first when append is 0); 1 when a record was added.
KVGE_API int Intersection2d(const KvGeLine2d& a, const KvGeLine2d& b, KvGeIntrPoint2dArray& out, int append);
/// In plan: the same, added to out (emptied first when append is 0); 1 when a record was added.
KVGE_API int Intersection2d(const KvGeLine23d& a, const KvGeLine23d& b, KvBtDynArray<KvGeIntrPoint3d>& out, int append);

/// The crossings of l (object 0) with the circle k, in the line's direction: none when the
/// squared half chord h2 (radius squared minus the squared distance of the centre from the
/// line) is below -0.001, one touching record at the foot when h2 is within 0.001 of 0 (the band
/// applies to h2, not to a length, deliberately), else two. On a bounded line a crossing more
/// than 0.001 outside the segment is dropped. Records carry the point, the parameter and end
/// code on the line; their crossing sense and the fields of object 1 are 0. A line no longer
/// than 0.001 gives none. out is emptied first when append is 0; returns the number added.
KVGE_API int Intersection2d(const KvGeLine2d& l, const KvGeCircle2d& k, KvGeIntrPoint2dArray& out, int append);

/// Every crossing of l (object 0) with the edges of the closed sequence (object 1, edge i from
/// point i to point i + 1, the last closing back to point 0), in edge order, with the edge
/// index as segment 1. A crossing at a vertex is reported by both edges that meet there (end
/// code +1 on the one, -1 on the other); a repeated closing vertex gives a zero-length edge
/// that crosses nothing. out is emptied first when append is 0; returns the number added.
KVGE_API int Intersection2d(const KvGeLine2d& l, const KvGePoint2dArray& a, KvGeIntrPoint2dArray& out, int append);
/// The same with the closed sequence as object 0 and l as object 1.
KVGE_API int Intersection2d(const KvGePoint2dArray& a, const KvGeLine2d& l, KvGeIntrPoint2dArray& out, int append);

/// The segment a-b shifted sideways by distance (positive to the left of a -> b); 1, or 0 when
/// a and b lie within 0.001 of each other (outputs untouched).
KVGE_API int ParalellLine2d(const KvGePoint2d& a, const KvGePoint2d& b, double distance, KvGePoint2d& a1,
                            KvGePoint2d& b1);
/// In plan; the heights of a and b are kept.
KVGE_API int ParalellLine2d(const KvGePoint3d& a, const KvGePoint3d& b, double distance, KvGePoint3d& a1,
                            KvGePoint3d& b1);

/// The point where the line through linePoint with lineDirection pierces the plane through
/// planePoint with normal planeNormal. When the direction is parallel to the plane (|n . d| no
/// greater than 1e-15) the result is the direction itself as a point at infinity.
KVGE_API KvGePoint3d Durchstosspunkt(const KvGePoint3d& planePoint, const KvGePoint3d& planeNormal,
                                     const KvGePoint3d& linePoint, const KvGePoint3d& lineDirection);
