#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeCircle23d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/points/KvGePointHelpers.h"

namespace {
using Q = KvGePoint3d;
using Out = std::vector<double>;

Out V(const Q& p) { return {p.x, p.y, p.z, double(p.m_bInfinite)}; }
Out Cat(Out a, const Out& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
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

// The clip result and both ends after f clipped the case's a-b.
template <class F>
Out Clipped(const Case& k, F f) {
  Q p1 = k.a, p2 = k.b;
  const int r = f(p1, p2);
  return Cat(Cat(Out{double(r)}, V(p1)), V(p2));
}
}  // namespace

// Each routine against the function it hands its work to, over every case.
TEST(PointHelpers, AgreeWithTheFunctionsTheyForwardTo) {
  struct Row {
    const char* name;
    std::function<Out(const Case&)> helper, target;
    bool ordinaryOnly = false;  // an independent answer that knows no points at infinity
  };
  const KvGeAngle a30(0.5235987755982988), a200(3.490658503988659);
  const Row rows[] = {
      // The plan turn is the z of the space cross product.
      {"CrossZ", [](const Case& k) { return Out{CrossZ(k.a, k.b, k.c)}; },
       [](const Case& k) {
         Q r;
         CrossProd(k.a, k.b, k.c, r);
         return Out{r.z};
       },
       true},
      // (b - a) . (c - b) by the law of cosines.
      {"DotProd", [](const Case& k) { return Out{DotProd(k.a, k.b, k.c)}; },
       [](const Case& k) {
         const double ab = LineLen3(k.a, k.b), bc = LineLen3(k.b, k.c), ac = LineLen3(k.a, k.c);
         return Out{0.5 * (ac * ac - ab * ab - bc * bc)};
       },
       true},
      {"Angle", [](const Case& k) { return Out{Angle(k.a, k.c).Rad()}; },
       [](const Case& k) { return Out{Angle2d(k.a, k.c).Rad()}; }},
      {"Distance", [](const Case& k) { return Out{Distance(k.a, k.c)}; },
       [](const Case& k) { return Out{Distance2d(k.a, k.c)}; }},
      {"LineLen3", [](const Case& k) { return Out{LineLen3(k.a, k.c)}; },
       [](const Case& k) { return Out{Distance3d(k.a, k.c)}; }},
      {"Project",
       [](const Case& k) {
         Q p = k.c;
         Project(k.a, k.b, p);
         return V(p);
       },
       [](const Case& k) { return V(Project2d(k.a, k.b, k.c)); }},
      {"Between", [](const Case& k) { return Out{double(Between(k.a, k.b, k.c))}; },
       [](const Case& k) { return Out{double(Between2d(k.a, k.b, k.c))}; }},
      // Both modes at once: plan, then space.
      {"Clip",
       [](const Case& k) {
         return Cat(Clipped(k, [](Q& p1, Q& p2) { return Clip(p1, p2, kMin, kMax, 0); }),
                    Clipped(k, [](Q& p1, Q& p2) { return Clip(p1, p2, kMin, kMax, 2); }));
       },
       [](const Case& k) {
         return Cat(Clipped(k, [](Q& p1, Q& p2) { return Clip2d(p1, p2, kMin, kMax); }),
                    Clipped(k, [](Q& p1, Q& p2) { return Clip3d(p1, p2, kMin, kMax); }));
       }},
      {"Circ3Pt",
       [](const Case& k) {
         Q centre(-7);
         double r = -7;
         return Cat(Out{double(Circ3Pt(k.a, k.b, k.c, centre, r)), r}, V(centre));
       },
       [](const Case& k) {
         KvGeCircle23d circle(Q(-7), -7);
         return Cat(Out{double(circle.By3Points(k.a, k.b, k.c)), circle.Radius()}, V(circle.Center()));
       }},
      {"DisFromLine", [](const Case& k) { return Out{DisFromLine(k.a, k.b, k.c)}; },
       [](const Case& k) { return Out{DistanceSqr2d(k.c, Project2d(k.a, k.b, k.c))}; }},
      {"DisFromSeg", [](const Case& k) { return Out{DisFromSeg(k.a, k.b, k.c)}; },
       [](const Case& k) { return Out{DistanceSqrToLineseg2d(k.a, k.b, k.c)}; }},
      {"DisFromCrc", [](const Case& k) { return Out{DisFromCrc(k.a, 2.5, k.c)}; },
       [](const Case& k) { return Out{DistanceSqr2d(KvGeCircle23d(k.a, 2.5), k.c)}; }},
      {"DisFromArc", [&](const Case& k) { return Out{DisFromArc(k.a, 2.5, a200, a30, k.c)}; },
       [&](const Case& k) { return Out{DistanceSqr2d(KvGeArc23d(k.a, 2.5, a200, a30), k.c)}; }},
      // Infinite lines, then segments.
      {"IntrLinLin",
       [](const Case& k) {
         Q r0(-7), r1(-7);
         return Cat(Cat(Out{double(IntrLinLin(k.a, k.b, k.c, k.d, r0, 0))}, V(r0)),
                    Cat(Out{double(IntrLinLin(k.a, k.b, k.c, k.d, r1, 1))}, V(r1)));
       },
       [](const Case& k) {
         Q r0(-7), r1(-7);
         return Cat(Cat(Out{double(IntrLineLine2d(k.a, k.b, k.c, k.d, r0, 0))}, V(r0)),
                    Cat(Out{double(IntrLineLine2d(k.a, k.b, k.c, k.d, r1, 1))}, V(r1)));
       }},
      {"CylindCart",
       [&](const Case& k) {
         double x, y, z;
         CylindCart(k.c.x, a200, k.c.z, x, y, z);
         return Out{x, y, z};
       },
       [&](const Case& k) {
         const Q p = Q().SetCylinder(k.c.x, a200, k.c.z);
         return Out{p.x, p.y, p.z};
       }},
      {"SphereCart",
       [&](const Case& k) {
         double x, y, z;
         SphereCart(k.c.x, a200, a30, x, y, z);
         return Out{x, y, z};
       },
       [&](const Case& k) {
         const Q p = Q().SetSphere(k.c.x, a200, a30);
         return Out{p.x, p.y, p.z};
       }},
  };
  for (const Row& row : rows) {
    for (const Case& k : kCases) {
      if (row.ordinaryOnly && (k.a.m_bInfinite || k.b.m_bInfinite || k.c.m_bInfinite)) continue;
      SCOPED_TRACE(::testing::Message() << row.name << " case " << (&k - kCases));
      const Out got = row.helper(k), want = row.target(k);
      ASSERT_EQ(got.size(), want.size());
      for (size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(got[i], want[i], 1e-9) << "at " << i;
    }
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
  EXPECT_NEAR(x, 1.0, 1e-12);
  EXPECT_NEAR(y, 0.0, 1e-12);
  EXPECT_NEAR(z, 1.0, 1e-12);

  // Polar keeps p's height and is ordinary; from a direction it copies the direction, also when
  // the output is the input.
  Q out;
  Polar(Q(1, 2, 7), KvGeAngle_Deg90(), 2, out);
  EXPECT_TRUE(out.IsEqualTo(Q(1, 4, 7), 1e-12));
  EXPECT_EQ(out.m_bInfinite, 0);
  Q dir(3, 4, 5, 1);
  Polar(dir, KvGeAngle_Deg90(), 2, dir);
  EXPECT_EQ(dir.x, 3.0);
  EXPECT_EQ(dir.y, 4.0);
  EXPECT_EQ(dir.z, 5.0);
  EXPECT_EQ(dir.m_bInfinite, 1);

  // Turned in plan; z and the flag stay.
  Q n(1, 2, 3, 1);
  NorVkt(n);
  EXPECT_EQ(n.x, -2.0);
  EXPECT_EQ(n.y, 1.0);
  EXPECT_EQ(n.z, 3.0);
  EXPECT_EQ(n.m_bInfinite, 1);

  // Circle through three points: centre at their mean height; on failure nothing is written.
  Q centre(-7, -7, -7);
  double radius = -7;
  EXPECT_EQ(Circ3Pt(Q(0, 0, 0), Q(2, 0, 3), Q(1, 1, 6), centre, radius), 1);
  EXPECT_TRUE(centre.IsEqualTo(Q(1, 0, 3), 1e-9));
  EXPECT_NEAR(radius, 1.0, 1e-9);
  centre.Set(-7);
  radius = -7;
  EXPECT_EQ(Circ3Pt(Q(0, 0, 0), Q(1, 1, 0), Q(2, 2, 5), centre, radius), 0);
  EXPECT_EQ(Circ3Pt(Q(0, 0, 0), Q(0.0005, 0, 0), Q(2, 2, 5), centre, radius), 0);
  EXPECT_EQ(centre.x, -7.0);
  EXPECT_EQ(centre.z, -7.0);
  EXPECT_EQ(radius, -7.0);

  // Mode 0 clips in plan: a segment above the box in z survives it, and not in space.
  Q p1(1, 1, 8), p2(2, 2, 9);
  EXPECT_EQ(Clip(p1, p2, Q(0, 0, 0), Q(3, 3, 3), 0), 1);
  EXPECT_EQ(Clip(p1, p2, Q(0, 0, 0), Q(3, 3, 3), -1), 0);

  // PolyFix normalises first (lowest point first, counter-clockwise), then takes the box;
  // PolyExtents leaves the array alone.
  KvGePoint3dArray ring;
  ring.Add(Q(4, 4, 1));
  ring.Add(Q(4, 0, 2));
  ring.Add(Q(0, 0, 3));
  ring.Add(Q(0, 4, -1));
  const KvGePoint3dArray before = ring;
  Q lo, hi;
  PolyExtents(ring, lo, hi);
  EXPECT_TRUE(ring[0] == before[0] && ring[1] == before[1]);
  PolyFix(ring, lo, hi);
  const KvGePoint3dArray want = before.Normalized2d();
  ASSERT_EQ(ring.GetSize(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(ring[i] == want[i]) << i;
  EXPECT_TRUE(ring[0] == Q(0, 0, 3));
  EXPECT_EQ(ring.Sense2d(), 1);
  EXPECT_TRUE(lo == Q(0, 0, -1));
  EXPECT_TRUE(hi == Q(4, 4, 3));
  KvGePoint3dArray empty;
  PolyFix(empty, lo, hi);
  EXPECT_EQ(lo.x, 1e9);
  EXPECT_EQ(hi.z, -1e9);
}
