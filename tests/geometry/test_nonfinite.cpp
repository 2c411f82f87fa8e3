// The non-finite and range policy, family by family (docs/non-finite-policy.md): every
// coordinate of every input in turn is NaN, +-infinity, +-1e308, -0.0 and the smallest
// denormal. Constructions and tests that can fail answer 0 and leave their outputs bit for bit
// as they were when an input is not finite; values propagate NaN; large finite input gives the
// true result where it is representable.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <string>

#include "UtilityGeometry.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

struct Special {
  const char* name;
  double v;
};
const Special kSpecials[] = {{"NaN", kNaN},      {"+inf", kInf}, {"-inf", -kInf},       {"+1e308", 1e308},
                             {"-1e308", -1e308}, {"-0.0", -0.0}, {"denormal", 4.9e-324}};

bool Finite(double v) { return std::isfinite(v); }
// Bit for bit, so that an output said to stay untouched did not even change a sign of zero.
bool Same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
template <class V>
bool SameCoords(const V& a, const V& b) {
  for (unsigned i = 0; i < a.Dim(); ++i)
    if (!Same(a[i], b[i])) return false;
  return true;
}
bool Same(const KvGePoint2d& a, const KvGePoint2d& b) { return SameCoords(a, b) && a.m_bInfinite == b.m_bInfinite; }
bool Same(const KvGePoint3d& a, const KvGePoint3d& b) { return SameCoords(a, b) && a.m_bInfinite == b.m_bInfinite; }
bool Same(const KvGeVector3& a, const KvGeVector3& b) { return SameCoords(a, b); }
bool Same(const KvGeMatrix3X3& a, const KvGeMatrix3X3& b) {
  for (unsigned i = 0; i < 9; ++i)
    if (!Same(a(i / 3, i % 3), b(i / 3, i % 3))) return false;
  return true;
}
bool Same(const KvGeCircle2d& a, const KvGeCircle2d& b) {
  return Same(a.Center(), b.Center()) && Same(a.Radius(), b.Radius()) && a.Sense() == b.Sense();
}
template <class P>
bool FinitePoint(const P& p) {
  for (unsigned i = 0; i < p.Dim(); ++i)
    if (!Finite(p[i])) return false;
  return true;
}
template <class... Ps>
bool AllFinite(const Ps&... p) {
  return (FinitePoint(p) && ...);
}
// A value the policy says propagates: NaN for NaN, not finite for an infinity.
void ExpectPropagates(double special, double result) {
  if (std::isnan(special)) {
    EXPECT_TRUE(std::isnan(result)) << result;
  } else if (std::isinf(special)) {
    EXPECT_FALSE(Finite(result)) << result;
  }
}
double RelErr(double got, double want) {
  return want == 0.0 ? std::fabs(got) : std::fabs(got - want) / std::fabs(want);
}
// A value: within relErr of the true one where the input is finite, else propagated.
void ExpectValue(double special, double got, double want, double relErr) {
  if (Finite(special)) {
    EXPECT_LE(RelErr(got, want), relErr) << got;
  } else {
    ExpectPropagates(special, got);
  }
}
// A construction or test that can fail: it must answer 0 and keep its outputs bit for bit where
// mustFail; a success gives finite outputs; where keptOnFailure, every failure keeps them.
void ExpectPolicy(const char* what, bool mustFail, int r, bool outputsFinite, bool outputsKept,
                  bool keptOnFailure = false) {
  SCOPED_TRACE(what);
  EXPECT_FALSE(mustFail && r != 0) << r;
  if (r) {
    EXPECT_TRUE(outputsFinite);
  } else if (mustFail || keptOnFailure) {
    EXPECT_TRUE(outputsKept);
  }
}

// Runs body(trace, special, index) for every special value in every one of n coordinates.
template <class Body>
void ForEachSpecial(unsigned n, Body body) {
  for (const Special& s : kSpecials)
    for (unsigned k = 0; k < n; ++k) {
      SCOPED_TRACE(testing::Message() << s.name << " in coordinate " << k);
      body(s.v, k);
    }
}

using P2 = KvGePoint2d;
using P3 = KvGePoint3d;

}  // namespace

TEST(NonFinite, Vectors) {
  ForEachSpecial(3, [](double s, unsigned k) {
    KvGeVector3 v(3, 4, 12);
    v[k] = s;
    const double want = std::hypot(std::hypot(v.x, v.y), v.z);
    ExpectValue(s, v.Length(), want, 1e-15);
    KvGeVector3 n = v;
    ASSERT_EQ(n.Normalize(), Finite(s) ? 1 : 0);
    for (unsigned i = 0; i < 3; ++i) EXPECT_TRUE(Finite(s) ? std::fabs(n[i] - v[i] / want) <= 1e-15 : Same(n[i], v[i]));
  });
}

TEST(NonFinite, Matrices) {
  // 9 elements of the matrix, then 3 of the right-hand side.
  ForEachSpecial(12, [](double s, unsigned k) {
    KvGeMatrix3X3 m(4, 1, 0, 1, 3, 1, 0, 1, 2);
    KvGeVector3 b(1, 2, 3);
    (k < 9 ? m(k / 3, k % 3) : b[k - 9]) = s;
    const KvGeVector3 x0(7, 7, 7);
    KvGeVector3 x = x0;
    const int solved = m.Solve(b, x);
    KvGeMatrix3X3 inv = m;
    const int inverted = inv.Invert();
    // Finite: success only with a finite result, and then a true one.
    const KvGeVector3 r = x * m;
    bool solves = FinitePoint(x);
    for (unsigned i = 0; i < 3; ++i) solves = solves && std::fabs(r[i] - b[i]) <= 1e-12 * (b.NormInfinity() + 1.0);
    ExpectPolicy("Solve", !Finite(s), solved, solves, Same(x, x0), true);
    bool invFinite = true;
    for (unsigned i = 0; i < 9; ++i) invFinite = invFinite && Finite(inv(i / 3, i % 3));
    ExpectPolicy("Invert", !Finite(s) && k < 9, inverted, invFinite, Same(inv, m), true);
    EXPECT_TRUE(k >= 9 || (m.IsSingular() == 1 && std::isnan(m.Det())) == !Finite(s));
    EXPECT_FALSE(Finite(s) && std::isnan(m.Det()));
  });
}

TEST(NonFinite, ModellingMatrices) {
  const KvGeAngle quarter(M_PI / 2);
  ForEachSpecial(3, [&](double s, unsigned k) {
    P3 axis(0, 0, 1);
    axis[k] = s;
    KvGeModMat3d m;
    m.SetRotate(quarter, axis);
    P3 unit = axis;
    if (!unit.Normalize()) {
      // No direction (not finite, or -0.0 or a denormal in place of the only 1): the identity,
      // as for a null axis.
      EXPECT_TRUE(!Finite(s) || k == 2);
      EXPECT_TRUE(m.IsEqualTo(KvGeModMat3d(), 0.0));
      return;
    }
    // A rotation: orthonormal, and the axis stays where it is.
    EXPECT_TRUE((m * m.Transposed()).IsEqualTo(KvGeMatrix4X4(1.0), 1e-12));
    EXPECT_TRUE(unit.Transformed(m).IsEqualTo(unit, 1e-12));
  });
  // A NaN angle cannot fail: it propagates into the matrix.
  KvGeModMat3d m;
  m.SetRotate(KvGeAngle(kNaN), P3(0, 0, 1));
  EXPECT_TRUE(std::isnan(m(0, 0)));
}

TEST(NonFinite, PointsAndClipping) {
  // The ends (2 x 3 coordinates) and the corners of the box (2 x 3).
  ForEachSpecial(12, [](double s, unsigned k) {
    P3 in[4] = {P3(-5, 5, 5), P3(15, 5, 5), P3(0, 0, 0), P3(10, 10, 10)};
    in[k / 3][k % 3] = s;
    const bool finite = Finite(s);
    const P3 box0 = in[2], box1 = in[3];
    P2 a2(in[0].x, in[0].y), b2(in[1].x, in[1].y);
    const int r2 = Clip2d(a2, b2, P2(box0.x, box0.y), P2(box1.x, box1.y));
    // z is not read in the plane.
    ExpectPolicy("Clip2d", !finite && k % 3 != 2, r2, AllFinite(a2, b2),
                 Same(a2, P2(in[0].x, in[0].y)) && Same(b2, P2(in[1].x, in[1].y)), true);
    P3 a = in[0], b = in[1];
    const int r3 = Clip3d(a, b, box0, box1);
    ExpectPolicy("Clip3d", !finite, r3, AllFinite(a, b) && (a.OutCode(box0, box1) | b.OutCode(box0, box1)) == 0,
                 Same(a, in[0]) && Same(b, in[1]), true);
    if (k >= 6) return;
    a = in[0] * 0.1, b = in[1] * 0.1;
    a[k % 3] = in[0][k % 3];
    if (k >= 3) b[k % 3] = in[1][k % 3], a[k % 3] = in[0][k % 3] * 0.1;
    const P3 a0 = a, b0 = b;
    const int rc = ClipConical3d(a, b, 0.1);  // each result before the outputs are read
    ExpectPolicy("ClipConical3d", !finite, rc, AllFinite(a, b) && (a.OutCode(0.1) | b.OutCode(0.1)) == 0,
                 Same(a, a0) && Same(b, b0), true);
    // The space constructions: a piercing point, a frame, the meeting of two lines.
    const P3 keep(-1, -1, -1);
    P3 p = keep, e1 = keep, e2 = keep, e3 = keep, m = keep;
    const int pierced = PenetrationPoint(p, P3(0, 0, 0), P3(0, 0, 1), in[0], in[1]);
    const int frame = OrthonormalBasis(in[0], in[1], P3(0, 0, 0), P3(0, 1, 1), e1, e2, e3);
    const int met = Intersection(in[0], in[1], P3(0, 0, 5), P3(0, 10, 5), m, 0);
    ExpectPolicy("PenetrationPoint", !finite, pierced, AllFinite(p), Same(p, keep));
    ExpectPolicy("OrthonormalBasis", !finite, frame, AllFinite(e1, e2, e3),
                 Same(e1, keep) && Same(e2, keep) && Same(e3, keep));
    ExpectPolicy("Intersection", !finite, met, AllFinite(m), Same(m, keep));
    // Distances propagate; Between2d, a test, answers outside (-1 or -2) or the degenerate 0 for
    // NaN, never a position on the segment.
    ExpectValue(s, Distance3d(in[0], in[1]),
                std::hypot(std::hypot(in[1].x - in[0].x, in[1].y - in[0].y), in[1].z - in[0].z), 1e-15);
    EXPECT_TRUE(!std::isnan(s) || Between2d(P2(0, 0), P2(10, 0), P2(in[0].x, in[0].y)) <= 0);
  });
}

TEST(NonFinite, PointArrays) {
  ForEachSpecial(8, [](double s, unsigned k) {
    KvGePoint2dArray ring{{0, 0}, {4, 0}, {4, 3}, {0, 3}};
    ring[static_cast<int>(k / 2)][k % 2] = s;
    // The shoelace in long double, exact enough to judge the area at the ends of the range.
    long double want = 0.0L;
    for (int i = 0; i < 4; ++i) {
      const P2 &q = ring[i], &r = ring[(i + 1) % 4];
      want += (static_cast<long double>(q.y) + r.y) * (static_cast<long double>(q.x) - r.x);
    }
    want *= 0.5L;
    const double area = ring.Area();
    if (!Finite(s)) {
      EXPECT_TRUE(std::isnan(area));
    } else if (std::fabs(want) <= std::numeric_limits<double>::max()) {
      EXPECT_LE(RelErr(area, static_cast<double>(want)), 1e-15) << area;
    } else {
      EXPECT_TRUE(std::isinf(area));
    }
    ExpectPropagates(s, ring.Perimeter());
    // The stored form keeps what it can hold and refuses NaN; what it keeps loads and stores
    // again to the same bytes.
    std::stringstream bytes, again;
    {
      KvBtArchive out(bytes, KvBtArchive::kStore);
      ring.Serialize(out);
      EXPECT_EQ(out.IsFailed(), std::isnan(s) ? 1 : 0);
    }
    if (std::isnan(s)) {
      EXPECT_TRUE(bytes.str().empty());
      return;
    }
    KvGePoint2dArray loaded;
    {
      KvBtArchive in(bytes, KvBtArchive::kLoad);
      loaded.Serialize(in);
      ASSERT_EQ(in.IsFailed(), 0);
    }
    ASSERT_EQ(loaded.GetSize(), 4);
    EXPECT_DOUBLE_EQ(loaded[static_cast<int>(k / 2)][k % 2], s > 3276.7 ? 3276.7 : s < -3276.7 ? -3276.7 : 0.0);
    {
      KvBtArchive out(again, KvBtArchive::kStore);
      loaded.Serialize(out);
    }
    EXPECT_EQ(again.str(), bytes.str());
  });
}

TEST(NonFinite, LinesAndCrossings) {
  // The four end coordinates of the first line, then those of the second.
  ForEachSpecial(8, [](double s, unsigned k) {
    P2 e[4] = {P2(0, 0), P2(10, 0), P2(5, -5), P2(5, 5)};
    e[k / 2][k % 2] = s;
    const bool finite = Finite(s);
    const P2 s0(-1, -1);
    P2 x = s0, a1 = s0, b1 = s0;
    const int r = IntrLineLine2d(e[0], e[1], e[2], e[3], x, 1, 1);
    ExpectPolicy("IntrLineLine2d", !finite, r, AllFinite(x), Same(x, s0));
    KvGeIntrPoint2d rec;
    const int r2 = Intersection2d(KvGeLine2d(e[0], e[1]), KvGeLine2d(e[2], e[3]), rec);
    ExpectPolicy("Intersection2d", !finite, r2, AllFinite(rec) && Finite(rec.Param0()) && Finite(rec.Param1()), true);
    const int par = ParalellLine2d(e[0], e[1], 1.0, a1, b1);
    ExpectPolicy("ParalellLine2d", !finite && k < 4, par, AllFinite(a1, b1), Same(a1, s0) && Same(b1, s0));
    // The line through the circle and the closed sequence: only finite crossings.
    KvGeIntrPoint2dArray cuts;
    const int nc = Intersection2d(KvGeLine2d(e[0], e[1]), KvGeCircle2d(e[2], 3.0), cuts, 0);
    const int nr = Intersection2d(KvGeLine2d(e[0], e[1]), KvGePoint2dArray{e[2], e[3], P2(0, 5)}, cuts, 1);
    EXPECT_EQ(cuts.GetSize(), nc + nr);
    for (const KvGeIntrPoint2d& c : cuts) EXPECT_TRUE(FinitePoint(c) && Finite(c.Param0()));
    if (finite && std::fabs(s) < 1e-300) {  // -0.0 and the denormal answer as 0.0 does
      e[k / 2][k % 2] = 0.0;
      P2 z = s0;
      EXPECT_EQ(IntrLineLine2d(e[0], e[1], e[2], e[3], z, 1, 1), r);
      EXPECT_TRUE(z.IsEqualTo(x, 1e-300));
    }
  });
}

TEST(NonFinite, Circles) {
  ForEachSpecial(6, [](double s, unsigned k) {
    P2 p[3] = {P2(10, 0), P2(0, 10), P2(-10, 0)};
    p[k / 2][k % 2] = s;
    const bool finite = Finite(s);
    const KvGeCircle2d c0(P2(1, 2), 3.0);
    KvGeCircle2d c = c0, c2 = c0, c3 = c0;
    const P2 sx(-1, -1);
    P2 centre = sx, s1 = sx, s2 = sx;
    const int by3 = c.By3Points(p[0], p[1], p[2]);
    ExpectPolicy("By3Points", !finite, by3, AllFinite(c.Center()) && Finite(c.Radius()), Same(c, c0));
    const int mid = KrsMittelpunkt(p[0], p[1], p[2], centre);
    const int cut = KrsGerSchnitt(P2(0, 0), 10.0, p[0], p[1], s1, s2);
    const int by2 = c2.By2PointsRadius(p[0], p[1], 20.0, 1, 1);
    const int bulge = c3.By2PointsBulge(p[0], p[1], 1.0);
    ExpectPolicy("KrsMittelpunkt", !finite, mid, AllFinite(centre), Same(centre, sx));
    // The rest read only the first two points.
    ExpectPolicy("KrsGerSchnitt", !finite && k < 4, cut, AllFinite(s1, s2), Same(s1, sx) && Same(s2, sx));
    ExpectPolicy("By2PointsRadius", !finite && k < 4, by2, AllFinite(c2.Center()) && Finite(c2.Radius()), Same(c2, c0));
    ExpectPolicy("By2PointsBulge", !finite && k < 4, bulge, AllFinite(c3.Center()) && Finite(c3.Radius()),
                 Same(c3, c0));
    if (finite && std::fabs(s) < 1e-300) {  // -0.0 and the denormal answer as 0.0 does
      p[k / 2][k % 2] = 0.0;
      KvGeCircle2d z = c0;
      EXPECT_EQ(z.By3Points(p[0], p[1], p[2]), by3);
      EXPECT_TRUE(z.IsEqualTo(c, 1e-300));
    }
  });
}

TEST(NonFinite, RegionBooleans) {
  // Beyond the coordinate range of 1e9 or not finite: the set operations refuse and leave the
  // set unchanged.
  ForEachSpecial(2, [](double s, unsigned k) {
    KvGePolygon2dArray a{KvGePolygon2d{{0, 0}, {10, 0}, {10, 10}, {0, 10}}};
    KvGePolygon2dArray b = a;
    b[0][2][k] = s;
    const KvGePolygon2dArray before = a;
    a |= b;
    KvGePolygon2dArray n = b;
    const int normalized = n.Normalize();
    if (Finite(s) && std::fabs(s) <= kKvGeRegionRange) {
      EXPECT_EQ(normalized, 1);
      EXPECT_GT(a.Area(), 0.0);
    } else {
      EXPECT_EQ(normalized, 0);
      ASSERT_EQ(n.GetSize(), 1);
      EXPECT_TRUE(Same(n[0][2][k], s));
      ASSERT_EQ(a.GetSize(), 1);
      EXPECT_TRUE(a[0] == before[0]);
    }
  });
}

TEST(NonFinite, BoxesAndQueries) {
  const KvGePolygon2d square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  const KvGePreparedRegion2d prepared(square);
  ForEachSpecial(2, [&](double s, unsigned k) {
    P2 p(5, 5);
    p[k] = s;
    // A point is exactly one of outside, boundary, inside; a point with a coordinate that is not
    // finite, or far beyond the region, is outside; -0.0 and the denormal put it on the edge. A NaN
    // coordinate lies in no box, the infinities and 1e308 outside every finite one.
    const unsigned short c = Containment(p, square);
    EXPECT_EQ(c, std::fabs(s) < 1.0 ? 2 : 1);
    EXPECT_EQ(KvGeBox2d(P2(0, 0), P2(10, 10)).IsInside(p, 1), std::fabs(s) < 1.0 ? 1 : 0);
    EXPECT_EQ(prepared.Containment(p), c);
    // Distances propagate.
    const double d = DistanceSqr2d(square, p);
    if (Finite(s)) {
      EXPECT_TRUE(Finite(d) || std::fabs(s) > 1e150);
    } else {
      ExpectPropagates(s, d);
    }
    // Pieces of a line with that end: none when an end is not finite.
    KvBtDynArray<KvGeLine2d> out;
    P2 q(-5, 5);
    q[k] = s;
    const int n = Intersection2d(KvGeLine2d(q, P2(15, 5)), square, out, 0);
    EXPECT_EQ(n, out.GetSize());
    if (!Finite(s)) {
      EXPECT_EQ(n, 0);
    }
    for (const KvGeLine2d& l : out) EXPECT_TRUE(FinitePoint(l.P1()) && FinitePoint(l.P2()));
    KvBtDynArray<KvGeLine2d> prepOut;
    EXPECT_EQ(prepared.Intersection2d(KvGeLine2d(q, P2(15, 5)), prepOut, 0), n);
  });
}

TEST(NonFinite, AnglesAndPiecewiseFunctions) {
  const KvTlLinear2d piece(0, 0, 10, 5);
  KvTlFunktion2d f;
  f.Set(2.0);
  for (const Special& s : kSpecials) {
    SCOPED_TRACE(s.name);
    // Normalised into [0, 2 pi): NaN when not finite; a value already there, -0.0 included, unchanged bit for bit.
    const double r = KvGeAngle(s.v).Normalized(KvGeAngle(2 * M_PI), KvGeAngle(0.0), 1).Rad();
    EXPECT_TRUE(Finite(s.v) ? r >= 0.0 && r < 2 * M_PI && (std::fabs(s.v) >= 1.0 || Same(r, s.v)) : std::isnan(r)) << r;
    // The direction of a point: atan2 propagates NaN, and the infinities give their directions.
    const double d = KvGeAngle(s.v, 1.0).Rad();
    EXPECT_TRUE(std::isnan(s.v) ? std::isnan(d) : Finite(d)) << d;
    // A piece's value is exact or propagates; a constant function answers NaN for NaN, else its
    // value within the range of 1e9.
    ExpectValue(s.v, piece.Wert(s.v), 0.5 * s.v, 0.0);
    const double fy = f(s.v);
    EXPECT_TRUE(std::isnan(s.v) ? std::isnan(fy) : std::fabs(s.v) > 1e9 || fy == 2.0) << fy;
  }
}
