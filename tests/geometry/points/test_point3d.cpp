#include <gtest/gtest.h>

#include <cmath>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/points/KvGePoint3d.h"

namespace {
using P = KvGePoint3d;

::testing::AssertionResult Near(const P& got, const P& want, double tol = 1e-9) {
  if (got.IsEqualTo(want, tol)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << got.x << ", " << got.y << ", " << got.z << ", " << got.m_bInfinite
                                       << ") != (" << want.x << ", " << want.y << ", " << want.z << ", "
                                       << want.m_bInfinite << ")";
}
}  // namespace

TEST(Point3d, EqualityConversionsAndFlags) {
  EXPECT_TRUE(P(1, 1, 1) == P(1.0005, 1.0005, 1.0005));   // about 0.00087
  EXPECT_FALSE(P(1, 1, 1) == P(1.0006, 1.0006, 1.0006));  // about 0.00104
  EXPECT_EQ(P(1, 2, 3, 1).Point2d().m_bInfinite, 0);      // the plan point is always ordinary
  EXPECT_EQ(KvGePoint2d(1, 2, 1).Point3d().m_bInfinite, 1);
  EXPECT_TRUE(P(1, 2, 3, 1).Vector4() == KvGeVector4(1, 2, 3, 0));
  KvGeMatrix4X4 m(1.0);
  m(3, 0) = 5;
  m(0, 3) = 9;  // ignored: no division by a weight
  struct Row {
    const char* what;
    P got, want;
  };
  const Row rows[] = {
      {"weight 2", P(KvGeVector4(2, 4, 6, 2)), P(1, 2, 3)},
      {"weight within the band", P(KvGeVector4(2, 4, 6, -0.0009)), P(2, 4, 6, 1)},
      {"plan point lifted", P(KvGePoint2d(1, 2, 1), 5), P(1, 2, 5, 1)},
      {"o - i (the flag rules are the plane ones)", P(1, 1, 1) - P(0, 0, 1, 1), P(0, 0, -1, 1)},
      {"o & o", P(1, 5, 3) & P(2, 0, 3), P(1, 0, 3)},
      {"/ 0", P(1, 2, 3) / 0.0, P(1, 2, 3)},
      {"sphere: not on it", P().SetSphere(2, KvGeAngle_Deg0(), KvGeAngle_Deg90()), P(2, 0, 2)},
      {"cylinder", P().SetCylinder(2, KvGeAngle_Deg90(), 7), P(0, 2, 7)},
      {"multiply", P(1, 2, 3, 1).multiply(m), P(6, 2, 3)},
  };
  for (const Row& r : rows) EXPECT_TRUE(Near(r.got, r.want)) << r.what;
  EXPECT_EQ(P(1, 2, 3).IsEqualCoorTo(P(1.0005, 2, 3.0005), 0.001, 0.0), 1);
  EXPECT_EQ(P(1000, 2, 3).IsEqualCoorTo(P(1000.5, 2, 3), 0.001, 1e-3), 1);
  EXPECT_EQ(P(1, 2, 3, 1).IsEqualCoorTo(P(1, 2, 3), 0.001, 0.0), 1);  // flags not compared

  KvGePoint23d p(0, 0, 2, 0, 3);
  p.SetZ(1);  // the top stays
  EXPECT_EQ(p.Height(), 4.0);
  p.SetTop(10);  // the base stays
  EXPECT_EQ(p.Height(), 9.0);
  EXPECT_EQ(p.z, 1.0);
  KvGePoint23d q = p;
  q.Height() += 0.0009;
  EXPECT_TRUE(p == q);
  q.Height() += 0.0002;
  EXPECT_TRUE(p != q);
  EXPECT_EQ(KvGePoint23d(0, 0, 0, 0, 0.0009).HasHeight(), 0);
  EXPECT_EQ(KvGePoint23d(0, 0, 0, 0, 0.0011).HasHeight(), 1);
}

TEST(Point3d, ClippingInPlanInSpaceAndInTheViewVolume) {
  const P lo(0, 0, 0), hi(10, 10, 10);
  struct Row {
    const char* what;
    int (*clip)(P&, P&);
    P p1, p2;
    int result;
    P want1, want2;
  };
  const auto plan = [](P& a, P& b) { return Clip2d(a, b, P(0, 0, -9), P(10, 10, -9)); };
  const auto space = [](P& a, P& b) { return Clip3d(a, b, P(0, 0, 0), P(10, 10, 10)); };
  const auto cone = [](P& a, P& b) { return ClipConical3d(a, b, 0.1); };
  const Row rows[] = {
      // Each end keeps its own z, also when the plan clip exchanged the ends.
      {"plan, exchanged", plan, P(5, 5, 1), P(15, 5, 9), 1, P(10, 5, 1), P(5, 5, 9)},
      {"plan, rejected", plan, P(-5, 1, 1, 1), P(1, -5, 2), 0, P(-5, 1, 1, 1), P(1, -5, 2)},
      {"space, both ends move", space, P(-5, 5, 5), P(15, 5, 5), 1, P(10, 5, 5), P(0, 5, 5)},
      {"space, through z", space, P(5, 5, -10), P(5, 5, 30), 1, P(5, 5, 10), P(5, 5, 0)},
      {"space, end in the band", space, P(5, 5, 10.0009), P(5, 5, 20), 1, P(5, 5, 10), P(5, 5, 10.0009)},
      {"cone, beyond the far plane", cone, P(0, 0, 2), P(0, 0, 3), 0, P(0, 0, 2), P(0, 0, 3)},
      {"cone, far plane", cone, P(0, 0, 0.5), P(0, 0, 3), 1, P(0, 0, 1), P(0, 0, 0.5)},
      {"cone, slanted plane x = -z", cone, P(-2, 0, 0.5), P(0, 0, 0.5), 1, P(-0.5, 0, 0.5), P(0, 0, 0.5)},
      {"cone, slanted plane y = z", cone, P(0.2, 3, 0.5), P(0.2, 0, 0.5), 1, P(0.2, 0.5, 0.5), P(0.2, 0, 0.5)},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    P p1 = r.p1, p2 = r.p2;
    EXPECT_EQ(r.clip(p1, p2), r.result);
    EXPECT_TRUE(Near(p1, r.want1, 1e-12));
    EXPECT_TRUE(Near(p2, r.want2, 1e-12));
  }
  P t1(11, 0, 0), t2(0, 11, 11);
  EXPECT_EQ(Clip3d(t1, t2, lo, hi), 1);
  EXPECT_EQ(P(-0.0011, 0, 10.0011).OutCode(lo, hi), 1 | 32);
  EXPECT_EQ(P(0, 0, 0.05).OutCode(0.1), 16);
  EXPECT_EQ(P(2, -2, 1.5).OutCode(0.1), 2 | 4 | 32);
}

// With the other end near 4e16 the step's denominator cancelled: 1 with NaN or wrong ends. The
// exact crossing is (2/3, 0, 1): the segment leaves through the far plane first.
TEST(Point3d, ClipConicalWithAFarEnd) {
  for (double far : {4e16, 1e17, 1e300}) {
    SCOPED_TRACE(far);
    P a(0, 0, 0.5), b(far, 0, 0.75 * far);
    ASSERT_EQ(ClipConical3d(a, b, 0.1), 1);
    EXPECT_TRUE(Near(a, P(2.0 / 3.0, 0, 1), 1e-12));
    EXPECT_TRUE(Near(b, P(0, 0, 0.5)));
    // Along the slanted side x = z, leaving through the far plane at (0.5, 0, 1).
    P c(0, 0, 0.5), d(far, 0, far);
    ASSERT_EQ(ClipConical3d(c, d, 0.1), 1);
    EXPECT_TRUE(Near(c, P(0.5, 0, 1), 1e-12));
  }
}

TEST(Point3d, ProjectionsAndBetweenness) {
  const P a(0, 0, 0), b(10, 0, 10);
  EXPECT_TRUE(Near(Project2d(a, b, P(3, 4, 7)), P(3, 0, 7)));  // plan foot, z of p
  EXPECT_TRUE(Near(Project3d(a, b, P(0, 5, 10)), P(5, 0, 5)));
  EXPECT_TRUE(Near(Project3d(a, P(0, 0, 0.0009), P(4, 4, 4)), a));
  EXPECT_TRUE(Near(Normal(P(0, 1, 0), P(1, 0, 0)), P(0, 0, -1)));
  EXPECT_TRUE(Near(Mean(P(0, 0, 0), P(4, 4, 4), 0.75), P(1, 1, 1)));
  const int codes[][2] = {{Between2d(a, b, P(10.0005, 3, -50)), 2},
                          {Between3d(a, b, P(10, 0, 10.0005)), 2},
                          {Between3d(a, b, P(-1, 0, 0)), -1},
                          {Between3d(a, b, P(5, 99, 5)), 0},
                          {Between3d(a, b, P(11, 0, 11)), -2},
                          {IsParallel(P(1, 0, 5), P(-1, 0, -7)), 1},
                          {IsNormal(P(1, 0, 0), P(0, 1, 9)), 1},  // z plays no part in these two
                          {IsSimelarlyDirected(P(0, 0, 1), P(1, 0, 0)), 1}};
  for (const auto& c : codes) EXPECT_EQ(c[0], c[1]) << (&c - codes);
  EXPECT_EQ(Distance2d(P(0, 0, 5), P(3, 4, 9)), 5.0);
  EXPECT_EQ(DotProduct2d(P(1, 2, 3), P(4, 5, 6)), 14.0);
  EXPECT_NEAR(Determinate(P(1, 2, 3), P(0, 1, 4), P(5, 6, 0)), 1.0, 1e-12);
}

TEST(Point3d, PiercingBasisIntersectionCircle) {
  P r(7, 7, 7);
  EXPECT_EQ(PenetrationPoint(r, P(0, 0, 5), P(0, 0, 2), P(1, 1, 0), P(0, 0, 0.0005), 0.001), 0);
  EXPECT_EQ(PenetrationPoint(r, P(0, 0, 5), P(0, 0, 2), P(1, 1, 0), P(1, 0, 0), 0.001), 0);  // parallel
  EXPECT_TRUE(Near(r, P(7, 7, 7)));
  ASSERT_EQ(PenetrationPoint(r, P(0, 0, 5), P(0, 0, 2), P(1, 1, 0), P(0, 1, 3), 0.001), 1);
  EXPECT_TRUE(Near(r, P(1, 2.6666666666666667, 5)));

  P e1(9, 9, 9), e2, e3;
  EXPECT_EQ(OrthonormalBasis(P(), P(0.02, 0, 0), P(), P(0, 1, 0), e1, e2, e3), 0);  // |u|^2 = 0.0004
  EXPECT_TRUE(Near(e1, P(9, 9, 9)));
  ASSERT_EQ(OrthonormalBasis(P(), P(0.04, 0, 0), P(), P(3, 2, 0), e1, e2, e3), 1);
  EXPECT_TRUE(Near(e1, P(1, 0, 0)) && Near(e2, P(0, 1, 0)) && Near(e3, P(0, 0, 1)));
  ASSERT_EQ(OrthonormalBasis(P(), P(2, 0, 0), P(), P(-4, 0, 0), e1, e2, e3), 1);
  EXPECT_TRUE(Near(e2, P(0, 0, 0)));  // parallel: e2 stays short

  struct Row {
    const char* what;
    P c, d;
    int segment, result;
    P meet;  // (5, 5, 5): untouched
  };
  const Row rows[] = {
      {"crossing", P(1, -1, 0), P(1, 1, 0), 1, 1, P(1, 0, 0)},
      {"beyond a-b", P(3, -1, 0), P(3, 1, 0), 1, 0, P(5, 5, 5)},
      {"beyond a-b, lines", P(3, -1, 0), P(3, 1, 0), 0, 1, P(3, 0, 0)},
      {"uneven c-d", P(1, -1, 0), P(1, 3, 0), 1, 1, P(1, 0, 0)},
      {"beyond c-d", P(1, 2, 0), P(1, 3, 0), 1, 0, P(5, 5, 5)},
      {"parallel", P(0, 1, 0), P(2, 1, 0), 0, 0, P(5, 5, 5)},
      {"skew", P(1, -1, 1), P(1, 1, 1), 0, 0, P(5, 5, 5)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    P m(5, 5, 5);
    EXPECT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), row.c, row.d, m, row.segment, 0.001), row.result);
    EXPECT_TRUE(Near(m, row.meet));
  }

  P c(8, 8, 8);
  EXPECT_EQ(CircleMatch3Points(P(0, 0, 0), P(1, 0, 0), P(2, 0, 0), c), 0.0);
  EXPECT_EQ(CircleMatch3Points(P(1, 1, 1), P(1, 1, 1), P(2, 0, 0), c), 0.0);
  EXPECT_NEAR(CircleMatch3Points(P(1, 0, 0), P(0, 1, 0), P(-1, 0, 0), c), 1.0, 1e-12);
  EXPECT_TRUE(Near(c, P(0, 0, 0)));
  EXPECT_NEAR(CircleMatch3Points(P(3, 0, 5), P(0, 3, 5), P(-3, 0, 5), c), 3.0, 1e-12);
  EXPECT_TRUE(Near(c, P(0, 0, 5)));
}
