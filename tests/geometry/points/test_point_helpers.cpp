#include <gtest/gtest.h>

#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeCircle23d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/points/KvGePointHelpers.h"

namespace {
using Q = KvGePoint3d;

// Coordinates and flag alike, to 1e-9.
::testing::AssertionResult Same(const Q& got, const Q& want) {
  if (got.IsEqualTo(want, 1e-9) && got.m_bInfinite == want.m_bInfinite) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << got.x << ", " << got.y << ", " << got.z << ", " << got.m_bInfinite
                                       << ")";
}

// Four points per case: ordinary, a segment of 0.0009 in plan, ends in the 0.001 band of the
// clip box, a point at infinity, collinear points.
struct Case {
  Q a, b, c, d;
};
const Case kCases[] = {
    {Q(0, 0, 0), Q(10, 0, 5), Q(4, 3, -2), Q(6, -1, 1)},
    {Q(1, 1, 1), Q(1.0009, 1, 7), Q(3, -2, 0), Q(-1, 2, 2)},
    {Q(-0.0009, 2, 0.5), Q(3.0011, 1, 2), Q(2, 5, -4), Q(1, -3, 9)},
    {Q(2, 3, 1, 1), Q(1, 1, 1), Q(-2, 0.5, 3), Q(2, 3, 1)},
    {Q(0, 0, 0), Q(1, 1, 1), Q(2, 2, 2), Q(3, 3, 0)},
};
const Q kMin(-0.0005, 0, 0), kMax(3, 3, 3);
}  // namespace

// Each routine against the function it hands its work to, over every case.
TEST(PointHelpers, AgreeWithTheFunctionsTheyForwardTo) {
  const KvGeAngle a30(0.5235987755982988), a200(3.490658503988659);
  for (const Case& k : kCases) {
    SCOPED_TRACE(::testing::Message() << "case " << (&k - kCases));
    if (!k.a.m_bInfinite && !k.b.m_bInfinite && !k.c.m_bInfinite) {
      // Independent answers that know no points at infinity: the plan turn is the z of the space
      // cross product; (b - a) . (c - b) by the law of cosines.
      Q cross;
      CrossProd(k.a, k.b, k.c, cross);
      EXPECT_NEAR(CrossZ(k.a, k.b, k.c), cross.z, 1e-9);
      const double ab = LineLen3(k.a, k.b), bc = LineLen3(k.b, k.c), ac = LineLen3(k.a, k.c);
      EXPECT_NEAR(DotProd(k.a, k.b, k.c), 0.5 * (ac * ac - ab * ab - bc * bc), 1e-9);
    }
    Q sum, difference, scaled;
    AddPnt(k.a, k.b, sum);
    SubPnt(k.a, k.b, difference);
    MulPnt(k.a, 2.5, scaled);
    EXPECT_TRUE(Same(sum, k.a + k.b) && Same(difference, k.a - k.b) && Same(scaled, k.a * 2.5));
    Q set = k.a;
    SetPoint(set, -2.5);  // all three coordinates, and an ordinary point even from one at infinity
    EXPECT_TRUE(Same(set, Q(-2.5, -2.5, -2.5)));
    EXPECT_NEAR(Angle(k.a, k.c).Rad(), Angle2d(k.a, k.c).Rad(), 1e-9);
    EXPECT_NEAR(Distance(k.a, k.c), Distance2d(k.a, k.c), 1e-9);
    EXPECT_NEAR(LineLen3(k.a, k.c), Distance3d(k.a, k.c), 1e-9);
    Q p = k.c;
    Project(k.a, k.b, p);
    EXPECT_TRUE(Same(p, Project2d(k.a, k.b, k.c)));
    EXPECT_EQ(Between(k.a, k.b, k.c), Between2d(k.a, k.b, k.c));
    // Mode 0 clips in plan, mode 2 in space.
    for (int mode : {0, 2}) {
      Q h1 = k.a, h2 = k.b, t1 = k.a, t2 = k.b;
      EXPECT_EQ(Clip(h1, h2, kMin, kMax, mode), mode ? Clip3d(t1, t2, kMin, kMax) : Clip2d(t1, t2, kMin, kMax));
      EXPECT_TRUE(Same(h1, t1) && Same(h2, t2)) << "mode " << mode;
    }
    Q centre(-7);
    double r = -7;
    KvGeCircle23d circle(Q(-7), -7);
    EXPECT_EQ(Circ3Pt(k.a, k.b, k.c, centre, r), circle.By3Points(k.a, k.b, k.c));
    EXPECT_NEAR(r, circle.Radius(), 1e-9);
    EXPECT_TRUE(Same(centre, circle.Center()));
    EXPECT_NEAR(DisFromLine(k.a, k.b, k.c), DistanceSqr2d(k.c, Project2d(k.a, k.b, k.c)), 1e-9);
    EXPECT_NEAR(DisFromSeg(k.a, k.b, k.c), DistanceSqrToLineseg2d(k.a, k.b, k.c), 1e-9);
    EXPECT_NEAR(DisFromCrc(k.a, 2.5, k.c), DistanceSqr2d(KvGeCircle23d(k.a, 2.5), k.c), 1e-9);
    EXPECT_NEAR(DisFromArc(k.a, 2.5, a200, a30, k.c), DistanceSqr2d(KvGeArc23d(k.a, 2.5, a200, a30), k.c), 1e-9);
    for (int segments : {0, 1}) {  // infinite lines, then segments
      Q h(-7), t(-7);
      EXPECT_EQ(IntrLinLin(k.a, k.b, k.c, k.d, h, segments), IntrLineLine2d(k.a, k.b, k.c, k.d, t, segments));
      EXPECT_TRUE(Same(h, t)) << "segments " << segments;
    }
    double x, y, z;
    CylindCart(k.c.x, a200, k.c.z, x, y, z);
    EXPECT_TRUE(Same(Q(x, y, z), Q().SetCylinder(k.c.x, a200, k.c.z)));
    SphereCart(k.c.x, a200, a30, x, y, z);
    EXPECT_TRUE(Same(Q(x, y, z), Q().SetSphere(k.c.x, a200, a30)));
  }
}

TEST(PointHelpers, KeepTheirOddities) {
  // Squared, not a distance; z plays no part; the line runs on beyond b.
  EXPECT_DOUBLE_EQ(DisFromLine(Q(0, 0, 0), Q(10, 0, 0), Q(5, 3, 40)), 9.0);
  EXPECT_DOUBLE_EQ(DisFromLine(Q(0, 0, 0), Q(10, 0, 0), Q(15, 3, 0)), 9.0);
  EXPECT_DOUBLE_EQ(DisFromSeg(Q(0, 0, 0), Q(10, 0, 0), Q(13, 4, 0)), 25.0);
  EXPECT_DOUBLE_EQ(DisFromCrc(Q(0, 0, 9), 2, Q(5, 0, 0)), 9.0);
  EXPECT_DOUBLE_EQ(DisFromArc(Q(0, 0, 0), 2, KvGeAngle_Deg180(), KvGeAngle_Deg0(), Q(0, 5, 0)), 9.0);
  EXPECT_DOUBLE_EQ(CrossZ(Q(0, 0, 0), Q(1, 0, 0), Q(1, 1, 0)), 1.0);
  EXPECT_DOUBLE_EQ(CrossZ(Q(0, 0, 0), Q(1, 0, 0), Q(1, -1, 0)), -1.0);

  // No cos b on x and y: off the sphere.
  double x = 0, y = 0, z = 0;
  SphereCart(1, KvGeAngle_Deg0(), KvGeAngle_Deg90(), x, y, z);
  EXPECT_TRUE(Same(Q(x, y, z), Q(1, 0, 1)));

  // Polar keeps p's height and is ordinary; from a direction it copies the direction, also when
  // the output is the input. NorVkt turns in plan; z and the flag stay.
  Q out;
  Polar(Q(1, 2, 7), KvGeAngle_Deg90(), 2, out);
  EXPECT_TRUE(Same(out, Q(1, 4, 7)));
  Q dir(3, 4, 5, 1);
  Polar(dir, KvGeAngle_Deg90(), 2, dir);
  EXPECT_TRUE(Same(dir, Q(3, 4, 5, 1)));
  Q n(1, 2, 3, 1);
  NorVkt(n);
  EXPECT_TRUE(Same(n, Q(-2, 1, 3, 1)));

  // Mode 0 clips in plan: a segment above the box in z survives it, and not in space.
  Q p1(1, 1, 8), p2(2, 2, 9);
  EXPECT_EQ(Clip(p1, p2, Q(0, 0, 0), Q(3, 3, 3), 0), 1);
  EXPECT_EQ(Clip(p1, p2, Q(0, 0, 0), Q(3, 3, 3), -1), 0);

  // PolyFix normalises first (lowest point first, counter-clockwise), then takes the box;
  // PolyExtents leaves the array alone.
  KvGePoint3dArray ring;
  for (const Q& q : {Q(4, 4, 1), Q(4, 0, 2), Q(0, 0, 3), Q(0, 4, -1)}) ring.Add(q);
  const KvGePoint3dArray before = ring;
  Q lo, hi;
  PolyExtents(ring, lo, hi);
  EXPECT_TRUE(ring == before);
  PolyFix(ring, lo, hi);
  EXPECT_TRUE(ring == before.Normalized2d());
  EXPECT_TRUE(ring[0] == Q(0, 0, 3));
  EXPECT_EQ(ring.Sense2d(), 1);
  EXPECT_TRUE(lo == Q(0, 0, -1));
  EXPECT_TRUE(hi == Q(4, 4, 3));
  KvGePoint3dArray empty;
  PolyFix(empty, lo, hi);
  EXPECT_EQ(lo.x, 1e9);
  EXPECT_EQ(hi.z, -1e9);
}
