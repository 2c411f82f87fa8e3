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
  EXPECT_FALSE(P(1, 2, 3) == P(1, 2, 3, 1));
  EXPECT_EQ(P(1, 2, 3, 1).Point2d().m_bInfinite, 0);  // the plan point is always ordinary
  EXPECT_EQ(KvGePoint2d(1, 2, 1).Point3d().m_bInfinite, 1);
  EXPECT_TRUE(Near(P(KvGeVector4(2, 4, 6, 2)), P(1, 2, 3)));
  EXPECT_TRUE(Near(P(KvGeVector4(2, 4, 6, -0.0009)), P(2, 4, 6, 1)));
  EXPECT_TRUE(Near(P(KvGePoint2d(1, 2, 1), 5), P(1, 2, 5, 1)));
  EXPECT_TRUE(P(1, 2, 3, 1).Vector4() == KvGeVector4(1, 2, 3, 0));
  EXPECT_TRUE(Near(P(1, 1, 1) + P(0, 0, 1, 1), P(0, 0, 1, 1)));
  EXPECT_TRUE(Near(P(1, 1, 1) - P(0, 0, 1, 1), P(0, 0, -1, 1)));
  EXPECT_TRUE(Near(P(1, 1, 1) & P(0, 0, 1, 1), P(1, 1, 1)));
  EXPECT_TRUE(Near(P(1, 1, 1) | P(0, 0, 1, 1), P(0, 0, 1, 1)));
  EXPECT_TRUE(Near(P(1, 5, 3) & P(2, 0, 3), P(1, 0, 3)));
  EXPECT_TRUE(Near(P(1, 2, 3) / 0.0, P(1, 2, 3)));
  EXPECT_TRUE(Near(P().SetSphere(2, KvGeAngle_Deg0(), KvGeAngle_Deg90()), P(2, 0, 2)));  // not on the sphere
  EXPECT_TRUE(Near(P().SetCylinder(2, KvGeAngle_Deg90(), 7), P(0, 2, 7)));
  EXPECT_EQ(P(1, 1, 5).Angle().Rad(), KvGeAngle(1.0, 1.0).Rad());
  EXPECT_EQ(P(1, 2, 3).IsEqualCoorTo(P(1.0005, 2, 3.0005), 0.001, 0.0), 1);
  EXPECT_EQ(P(1000, 2, 3).IsEqualCoorTo(P(1000.5, 2, 3), 0.001, 1e-3), 1);
  EXPECT_EQ(P(1, 2, 3, 1).IsEqualCoorTo(P(1, 2, 3), 0.001, 0.0), 1);  // flags not compared
  EXPECT_TRUE(KvGePoint3d_XAxis() + KvGePoint3d_YAxis() + KvGePoint3d_ZAxis() == P(1, 1, 1));
  EXPECT_TRUE(KvGePoint3d_Origin() == P());
  KvGeMatrix4X4 m(1.0);
  m(3, 0) = 5;
  m(0, 3) = 9;  // ignored: no division by a weight
  EXPECT_TRUE(Near(P(1, 2, 3, 1).multiply(m), P(6, 2, 3)));
}

TEST(Point3d, PlanPointWithHeight) {
  KvGePoint23d p(0, 0, 2, 0, 3);
  p.SetZ(1);
  EXPECT_EQ(p.z, 1.0);
  EXPECT_EQ(p.Height(), 4.0);
  EXPECT_EQ(p.Top(), 5.0);
  p.SetTop(10);
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
  {
    // Each end keeps its own z, also when the plan clip exchanged the ends.
    P p1(5, 5, 1), p2(15, 5, 9);
    ASSERT_EQ(Clip2d(p1, p2, P(0, 0, -9), P(10, 10, -9)), 1);
    EXPECT_TRUE(Near(p1, P(10, 5, 1)));
    EXPECT_TRUE(Near(p2, P(5, 5, 9)));
    P q1(-5, 1, 1, 1), q2(1, -5, 2);
    EXPECT_EQ(Clip2d(q1, q2, P(0, 0, 0), P(10, 10, 0)), 0);
    EXPECT_TRUE(Near(q1, P(-5, 1, 1, 1)));  // untouched on 0
  }
  {
    P p1(-5, 5, 5), p2(15, 5, 5);
    ASSERT_EQ(Clip3d(p1, p2, P(0, 0, 0), P(10, 10, 10)), 1);
    EXPECT_TRUE(Near(p1, P(10, 5, 5)));
    EXPECT_TRUE(Near(p2, P(0, 5, 5)));
    P r1(5, 5, -10), r2(5, 5, 30);
    ASSERT_EQ(Clip3d(r1, r2, P(0, 0, 0), P(10, 10, 10)), 1);
    EXPECT_TRUE(Near(r1, P(5, 5, 10)));
    EXPECT_TRUE(Near(r2, P(5, 5, 0)));
    P s1(5, 5, 10.0009), s2(5, 5, 20);
    ASSERT_EQ(Clip3d(s1, s2, P(0, 0, 0), P(10, 10, 10)), 1);
    EXPECT_TRUE(Near(s1, P(5, 5, 10)));
    EXPECT_TRUE(Near(s2, P(5, 5, 10.0009)));
    P t1(11, 0, 0), t2(0, 11, 11);
    EXPECT_EQ(Clip3d(t1, t2, P(0, 0, 0), P(10, 10, 10)), 1);
    EXPECT_EQ(P(-0.0011, 0, 10.0011).OutCode(P(0, 0, 0), P(10, 10, 10)), 1 | 32);
  }
  {
    P p1(0, 0, 2), p2(0, 0, 3);  // beyond the far plane
    EXPECT_EQ(ClipConical3d(p1, p2, 0.1), 0);
    P q1(0, 0, 0.5), q2(0, 0, 3);
    ASSERT_EQ(ClipConical3d(q1, q2, 0.1), 1);
    EXPECT_TRUE(Near(q1, P(0, 0, 1)));
    EXPECT_TRUE(Near(q2, P(0, 0, 0.5)));
    P r1(-2, 0, 0.5), r2(0, 0, 0.5);  // x < -z: lands on the slanted plane x = -z
    ASSERT_EQ(ClipConical3d(r1, r2, 0.1), 1);
    EXPECT_NEAR(r1.z, -r1.x, 1e-12);
    EXPECT_NEAR(r1.x, -0.5, 1e-12);
    P s1(0.2, 3, 0.5), s2(0.2, 0, 0.5);  // y > z
    ASSERT_EQ(ClipConical3d(s1, s2, 0.1), 1);
    EXPECT_NEAR(s1.y, 0.5, 1e-12);
    EXPECT_NEAR(s1.z, s1.y, 1e-12);
    EXPECT_EQ(P(0, 0, 0.05).OutCode(0.1), 16);
    EXPECT_EQ(P(2, -2, 1.5).OutCode(0.1), 2 | 4 | 32);
  }
}

TEST(Point3d, ProjectionsAndBetweenness) {
  const P a(0, 0, 0), b(10, 0, 10);
  EXPECT_TRUE(Near(Project2d(a, b, P(3, 4, 7)), P(3, 0, 7)));  // plan foot, z of p
  EXPECT_TRUE(Near(Project3d(a, b, P(0, 5, 10)), P(5, 0, 5)));
  EXPECT_TRUE(Near(Project3d(a, P(0, 0, 0.0009), P(4, 4, 4)), a));
  EXPECT_EQ(Between2d(a, b, P(10.0005, 3, -50)), 2);
  EXPECT_EQ(Between3d(a, b, P(10, 0, 10.0005)), 2);
  EXPECT_EQ(Between3d(a, b, P(-1, 0, 0)), -1);
  EXPECT_EQ(Between3d(a, b, P(5, 99, 5)), 0);
  EXPECT_EQ(Between3d(a, b, P(11, 0, 11)), -2);
  EXPECT_EQ(Distance2d(P(0, 0, 5), P(3, 4, 9)), 5.0);
  EXPECT_EQ(DotProduct2d(P(1, 2, 3), P(4, 5, 6)), 14.0);
  EXPECT_TRUE(Near(Normal(P(0, 1, 0), P(1, 0, 0)), P(0, 0, -1)));
  EXPECT_NEAR(Determinate(P(1, 0, 0), P(0, 1, 0), P(0, 0, 1)), 1.0, 1e-12);
  EXPECT_NEAR(Determinate(P(1, 2, 3), P(0, 1, 4), P(5, 6, 0)), 1.0, 1e-12);
  EXPECT_TRUE(Near(Mean(P(0, 0, 0), P(4, 4, 4), 0.75), P(1, 1, 1)));
  EXPECT_EQ(IsParallel(P(1, 0, 5), P(-1, 0, -7)), 1);
  EXPECT_EQ(IsNormal(P(1, 0, 0), P(0, 1, 9)), 1);
  EXPECT_EQ(IsSimelarlyDirected(P(0, 0, 1), P(1, 0, 0)), 1);  // z plays no part
}

TEST(Point3d, PiercingBasisIntersectionCircle) {
  P r(7, 7, 7);
  EXPECT_EQ(PenetrationPoint(r, P(0, 0, 5), P(0, 0, 2), P(1, 1, 0), P(0, 0, 0.0005), 0.001), 0);
  EXPECT_TRUE(Near(r, P(7, 7, 7)));
  EXPECT_EQ(PenetrationPoint(r, P(0, 0, 5), P(0, 0, 2), P(1, 1, 0), P(1, 0, 0), 0.001), 0);  // parallel
  ASSERT_EQ(PenetrationPoint(r, P(0, 0, 5), P(0, 0, 2), P(1, 1, 0), P(0, 1, 3), 0.001), 1);
  EXPECT_TRUE(Near(r, P(1, 2.6666666666666667, 5)));

  P e1(9, 9, 9), e2, e3;
  EXPECT_EQ(OrthonormalBasis(P(), P(0.02, 0, 0), P(), P(0, 1, 0), e1, e2, e3), 0);  // |u|^2 = 0.0004
  EXPECT_TRUE(Near(e1, P(9, 9, 9)));
  ASSERT_EQ(OrthonormalBasis(P(), P(0.04, 0, 0), P(), P(3, 2, 0), e1, e2, e3), 1);
  EXPECT_TRUE(Near(e1, P(1, 0, 0)));
  EXPECT_TRUE(Near(e2, P(0, 1, 0)));
  EXPECT_TRUE(Near(e3, P(0, 0, 1)));
  ASSERT_EQ(OrthonormalBasis(P(), P(2, 0, 0), P(), P(-4, 0, 0), e1, e2, e3), 1);
  EXPECT_TRUE(Near(e2, P(0, 0, 0)));  // parallel: e2 stays short

  P m(5, 5, 5);
  ASSERT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(1, -1, 0), P(1, 1, 0), m, 1, 0.001), 1);
  EXPECT_TRUE(Near(m, P(1, 0, 0)));
  m.Set(5.0);
  EXPECT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(3, -1, 0), P(3, 1, 0), m, 1, 0.001), 0);  // beyond a-b
  ASSERT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(3, -1, 0), P(3, 1, 0), m, 0, 0.001), 1);
  EXPECT_TRUE(Near(m, P(3, 0, 0)));
  EXPECT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(1, -1, 0), P(1, 3, 0), m, 1, 0.001), 1);
  EXPECT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(1, 2, 0), P(1, 3, 0), m, 1, 0.001), 0);   // beyond c-d
  EXPECT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(0, 1, 0), P(2, 1, 0), m, 0, 0.001), 0);   // parallel
  EXPECT_EQ(Intersection(P(0, 0, 0), P(2, 0, 0), P(1, -1, 1), P(1, 1, 1), m, 0, 0.001), 0);  // skew

  P c(8, 8, 8);
  EXPECT_EQ(CircleMatch3Points(P(0, 0, 0), P(1, 0, 0), P(2, 0, 0), c), 0.0);
  EXPECT_EQ(CircleMatch3Points(P(1, 1, 1), P(1, 1, 1), P(2, 0, 0), c), 0.0);
  EXPECT_NEAR(CircleMatch3Points(P(1, 0, 0), P(0, 1, 0), P(-1, 0, 0), c), 1.0, 1e-12);
  EXPECT_TRUE(Near(c, P(0, 0, 0)));
  EXPECT_NEAR(CircleMatch3Points(P(3, 0, 5), P(0, 3, 5), P(-3, 0, 5), c), 3.0, 1e-12);
  EXPECT_TRUE(Near(c, P(0, 0, 5)));
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
  // An end that is not finite fails and leaves both ends alone.
  P e(0, 0, 0.5), f(std::nan(""), 0, 3);
  EXPECT_EQ(ClipConical3d(e, f, 0.1), 0);
  EXPECT_TRUE(Near(e, P(0, 0, 0.5)));
  EXPECT_TRUE(std::isnan(f.x));
}
