#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeCircle23d.h"
#include "geometry/curves/KvGeCircle2d.h"
#include "geometry/points/KvGePoint2dArray.h"

namespace {
using P = KvGePoint2d;
using Q = KvGePoint3d;
using C = KvGeCircle2d;
using A = KvGeArc2d;
constexpr double kPi = 3.141592653589793;

// The box of the arc by brute force: many points of it, each transformed.
template <class B, class Arc, class M>
B SampledBox(const Arc& arc, const M& m) {
  B box;
  const int n = 20000;
  const double sweep = arc.End().Rad() - arc.Beg().Rad();
  for (int i = 0; i <= n; ++i) box.Include(arc.PointAt(arc.Beg().Rad() + sweep * i / n).Transformed(m));
  return box;
}

KvGePoint2dArray Polygon(int n, double r, double cx, double cy, int sense = 1) {
  KvGePoint2dArray a;
  for (int i = 0; i < n; ++i) {
    const double t = sense * 2.0 * kPi * i / n;
    a.Add(P(cx + r * std::cos(t), cy + r * std::sin(t)));
  }
  return a;
}
}  // namespace

TEST(Circle, ThreePointsBands) {
  struct Row {
    P p1, p2, p3;
    int ok;  // and the sense
  };
  const Row rows[] = {
      {P(0, 0), P(1, 0), P(1, 1), 1},      {P(1, 1), P(1, 0), P(0, 0), -1},
      {P(0, 0), P(1, 0), P(2, 0), 0},      {P(0, 0), P(0.0009, 0), P(1, 1), 0},
      {P(0, 0), P(0.0011, 0), P(1, 1), 1}, {P(0, 0), P(1, 0), P(2, 0.9e-6), 0},  // sine of the turn 1e-6
      {P(0, 0), P(1, 0), P(2, 1.1e-6), 1}, {P(0, 0), P(1, 0), P(std::nan(""), 1), 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.p2.x << " " << r.p3.y);
    C c(P(7, 7), 3, -1);
    A a(P(7, 7), 3, 1, 2);
    EXPECT_EQ(c.By3Points(r.p1, r.p2, r.p3), r.ok != 0);
    EXPECT_EQ(a.By3Points(r.p1, r.p2, r.p3), r.ok != 0);
    EXPECT_TRUE(r.ok || (c == C(P(7, 7), 3, -1) && a == A(P(7, 7), 3, 1, 2)));  // untouched on failure
    if (!r.ok) continue;
    EXPECT_NEAR(Distance2d(c.Center(), r.p3), c.Radius(), 1e-6 * c.Radius());
    EXPECT_TRUE(c.Sense() == r.ok && a.Sense() == r.ok) << c.Sense() << " " << a.Sense();
    EXPECT_TRUE(a.BegPoint() == r.p1 && a.EndPoint() == r.p3);
  }
}

TEST(Circle, TwoPointConstructions) {
  struct Row {
    double radius;
    int side, sense, ok;
    P center;
    double sweep;  // of the arc
  };
  const Row rows[] = {
      {std::sqrt(2.0), 1, 1, 1, P(1, 1), 0.5 * kPi},
      {std::sqrt(2.0), -1, 1, 1, P(1, -1), 1.5 * kPi},
      {std::sqrt(2.0), 1, -1, 1, P(1, 1), -1.5 * kPi},
      {std::sqrt(2.0), 1, 0, 1, P(1, 1), -1.5 * kPi},  // counter-clockwise only for sense 1
      {1.0, 1, 1, 1, P(1, 0), kPi},                    // chord equal to the diameter
      {0.99955, 1, 1, 1, P(1, 0), kPi},                // 0.0009 longer: the midpoint
      {0.99945, 1, 1, 0, P(), 0},                      // 0.0011 longer
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.radius << " side " << r.side << " sense " << r.sense);
    C c(P(9, 9), 4, 1);
    A a(P(9, 9), 4, 0, 1);
    EXPECT_EQ(c.By2PointsRadius(P(0, 0), P(2, 0), r.radius, r.side, r.sense), r.ok);
    EXPECT_EQ(a.By2PointsRadius(P(0, 0), P(2, 0), r.radius, r.side, r.sense), r.ok);
    EXPECT_TRUE(r.ok || (c == C(P(9, 9), 4, 1) && a == A(P(9, 9), 4, 0, 1)));  // untouched on failure
    if (!r.ok) continue;
    EXPECT_TRUE(c.Center() == r.center);
    EXPECT_EQ(c.Sense(), r.sense);
    EXPECT_NEAR(a.End().Rad() - a.Beg().Rad(), r.sweep, 1e-9);
  }
  EXPECT_EQ(C().By2PointsRadius(P(0, 0), P(0.0009, 0), 1, 1, 1), 0);

  // Bulge, centre y (x is 1) and sense; a bulge within 0.001 of 0 fails.
  const double bulges[][3] = {{1, 0, 1}, {-1, 0, -1}, {0.5, 0.75, 1}, {0.0009, 0, 0}, {0.0011, 454.5, 1}};
  for (const auto& r : bulges) {
    SCOPED_TRACE(r[0]);
    C c(P(9, 9), 4, 1);
    A a;
    EXPECT_EQ(c.By2PointsBulge(P(0, 0), P(2, 0), r[0]), r[2] != 0);
    EXPECT_EQ(a.By2PointsBulge(P(0, 0), P(2, 0), r[0]), r[2] != 0);
    EXPECT_TRUE(r[2] != 0 || c == C(P(9, 9), 4, 1));  // untouched on failure
    if (r[2] == 0) continue;
    EXPECT_TRUE(c.Center().IsEqualTo(P(1, r[1]), 1e-3 * c.Radius()));
    EXPECT_TRUE(c.Sense() == r[2] && a.Sense() == r[2]) << c.Sense() << " " << a.Sense();
    EXPECT_NEAR(a.Bulge(), std::fabs(r[0]), 1e-9);  // the bulge carries no direction
    EXPECT_TRUE(a.EndPoint() == P(2, 0));
  }

  A a(P(), 7, 0, 0);
  EXPECT_EQ(a.By2PointsCenter(P(1, 0), P(0, 1), P(1.0009, 0), 1), 0);
  EXPECT_EQ(a.By2PointsCenter(P(1, 0), P(0, 1), P(0, 0.9995), 1), 0);
  ASSERT_EQ(a.By2PointsCenter(P(1, 0), P(0, 1), P(0, 0), 1), 1);
  EXPECT_EQ(a.Radius(), 7);  // left as it was, deliberately
  EXPECT_NEAR(a.End().Rad(), 0.5 * kPi, 1e-12);
}

TEST(Arc, SenseOrientationAndEquality) {
  const A ccw(C(P(1, 1), 2, 1)), cw(C(P(1, 1), 2, -1));
  EXPECT_TRUE(ccw.End().Rad() == 2 * kPi && ccw.Sense() == 1);
  EXPECT_TRUE(cw.End().Rad() == -2 * kPi && cw.Sense() == -1);

  struct Row {
    double beg, end;
    int sense;
  };
  // End exactly 1e-6 from Beg, as the caller computes it, is still sense 0: the band is
  // inclusive, whatever the rounding of End - Beg.
  const Row rows[] = {{1, 1 + 0.9e-6, 0}, {1, 1 + 1.1e-6, 1}, {1, 1 - 0.9e-6, 0}, {1, 1 - 1.1e-6, -1}, {1, 1 - 1e-6, 0},
                      {5, 5 - 1e-6, 0},   {5, 5 + 1e-6, 0},   {-3, -3 - 1e-6, 0}, {-3, -3 + 1e-6, 0}};
  for (const Row& r : rows) {
    SCOPED_TRACE(::testing::Message() << r.beg << " -> " << r.end);
    const A a(P(), 1, r.beg, r.end);
    EXPECT_EQ(a.Sense(), r.sense);
    EXPECT_EQ(KvGeArc23d(Q(), 1, r.beg, r.end).Sense(), r.sense);
    // Orientate(1) swaps whenever the sense is not 1, also for sense 0.
    EXPECT_EQ(a.Orientated(1).Beg().Rad(), r.sense == 1 ? r.beg : r.end);
    EXPECT_EQ(a.Orientated(-1).Beg().Rad(), r.sense == -1 ? r.beg : r.end);
  }

  const A a(P(1, 1), 2, 0.5, 1.5);
  EXPECT_TRUE(a == A(P(1.0009, 1), 2.0009, 0.5 + 0.9e-6, 1.5));
  EXPECT_TRUE(a != A(P(1.0011, 1), 2, 0.5, 1.5));
  EXPECT_TRUE(a != A(P(1, 1), 2.0011, 0.5, 1.5));
  EXPECT_TRUE(a != A(P(1, 1), 2, 0.5, 1.5 + 1.1e-6));
  EXPECT_TRUE(a != A(P(1, 1, 1), 2, 0.5, 1.5));           // centre status word
  EXPECT_TRUE(A(P(), 1, 0, 2 * kPi) != A(P(), 1, 0, 0));  // no wrap-around in the comparison
}

// Every matrix with every arc: the box against sampling; the transformed arc keeps its ends (on
// the rays through the transformed end points when the matrix is not a similarity), its sweep
// under a similarity, a full turn, and its sense unless the matrix mirrors.
TEST(Arc, BoxesAndTransformsUnderMatrices) {
  KvGeModMat2d shear;
  shear(1, 0) = 0.7;
  struct Row {
    KvGeModMat2d m;
    int similar, mirror;
  };
  const Row rows[] = {{KvGeModMat2d(), 1, 0},
                      {KvGeModMat2d().SetRotate(kPi / 2).CatTran(3, 4), 1, 0},
                      {KvGeModMat2d().SetScale(-1, 1), 1, 1},
                      {KvGeModMat2d().SetScale(-2, 2), 1, 1},
                      {KvGeModMat2d().SetScale(2, 1), 0, 0},
                      {KvGeModMat2d().SetScale(2, 1).CatRotate(kPi / 4).CatTran(3, -1), 0, 0},
                      {KvGeModMat2d().SetRotate(0.3).CatScale(0.5, 3), 0, 0},
                      {shear, 0, 0}};
  const A arcs[] = {A(P(1, 2), 3, 0, 2 * kPi), A(P(1, 2), 3, 0, -2 * kPi),    A(P(0, 0), 1, 0, kPi / 2),
                    A(P(0, 0), 1, kPi / 2, 0), A(P(0, 0), 1, 0, -1.5 * kPi),  A(P(5, 5), 2, kPi / 4, 3 * kPi / 4),
                    A(P(5, 5), 2, 5.5, 7.0),   A(P(-1, 0), 2, 3.0, -3.0),     A(P(1, 2), 3, 0.2, 1.7),
                    A(P(1, 2), 3, 0.2, -4.0),  A(P(1, 2), 3, 1, 1 + 2 * kPi), A(P(0, 0), 1, -1, -1 - 2 * kPi),
                    A(P(0, 0), 1, 2, 2)};
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << "matrix " << (&r - rows));
    EXPECT_TRUE(C(P(1, 2), 3).BoundingBox(r.m).IsEqualTo(SampledBox<KvGeBox2d>(A(C(P(1, 2), 3)), r.m), 1e-6));
    for (const A& a : arcs) {
      SCOPED_TRACE(testing::Message() << "arc " << a.Beg().Rad() << " .. " << a.End().Rad());
      EXPECT_TRUE(a.BoundingBox(r.m).IsEqualTo(SampledBox<KvGeBox2d>(a, r.m), 1e-6));
      const A t = a.Transformed(r.m);
      EXPECT_EQ(t.Sense(), r.mirror ? -a.Sense() : a.Sense());
      const double sweep = std::fabs(a.End().Rad() - a.Beg().Rad()), tsweep = std::fabs(t.End().Rad() - t.Beg().Rad());
      EXPECT_EQ(tsweep >= 2 * kPi - 1e-9, sweep >= 2 * kPi - 1e-9);  // a full turn stays one
      if (r.similar) {
        EXPECT_TRUE(t.BegPoint() == a.BegPoint().Transformed(r.m) && t.EndPoint() == a.EndPoint().Transformed(r.m));
        EXPECT_NEAR(tsweep, sweep, 1e-9);
      } else {
        EXPECT_TRUE(IsSimelarlyDirected(t.Beg(), Angle2d(t.Center(), a.BegPoint().Transformed(r.m))));
        EXPECT_TRUE(IsSimelarlyDirected(t.End(), Angle2d(t.Center(), a.EndPoint().Transformed(r.m))));
      }
    }
  }
  EXPECT_TRUE(C(P(2, 3), 0.0009, 1).BoundingBox() == KvGeBox2d(P(2, 3), P(2, 3)));
  EXPECT_TRUE(A(P(2, 3), 1, 1, 1.0000005).BoundingBox() == KvGeBox2d(P(2.5403, 3.8415), P(2.5403, 3.8415)));
  EXPECT_EQ(C(P(1, 1), 2, 1).Transformed(KvGeModMat2d().SetScale(-1, 1)).Sense(), -1);
  EXPECT_NEAR(C(P(1, 1), 2, 1).Transformed(KvGeModMat2d().SetScale(2, 8)).Radius(), 8, 1e-12);  // equal area
}

TEST(CircleFunctions, KrsMittelpunktCodes) {
  struct Row {
    P p1, p2, p3;
    int code;
    P center;
  };
  const Row rows[] = {
      {P(0, 0), P(1, 0), P(1, 1), 1, P(0.5, 0.5)},
      {P(0, 0), P(5, 0.0011), P(10, 0), 1, P(5, -11363.6)},     // |cross| 0.011: absolute threshold 0.01
      {P(0, 0), P(5, 0.0009), P(10, 0), 0, P(5, 0)},            // 0.009, p3 far from p1: (p1 + p3) / 2
      {P(0, 0), P(0.5, 0.001), P(0.9, 0), 2, P(0.25, 0.0005)},  // p3 near p1: (p1 + p2) / 2
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.p2.y);
    P c(3, 3, 1);
    EXPECT_EQ(KrsMittelpunkt(r.p1, r.p2, r.p3, c), r.code);
    EXPECT_TRUE(std::fabs(c.x - r.center.x) < 1e-9 && std::fabs(c.y - r.center.y) < 0.1) << c.x << "," << c.y;
    EXPECT_EQ(c.m_bInfinite, r.code == 1 ? 1 : 0);  // code 1 writes x and y only
  }
}

TEST(CircleFunctions, KrsGerSchnittRootCodes) {
  struct Row {
    P p1, p2;
    int code;
    P s1, s2;
  };
  const double h = std::sqrt(0.75);
  const Row rows[] = {
      {P(-2, 0.5), P(2, 0.5), 2, P(h, 0.5), P(-h, 0.5)},      // in the line's direction: s2 first
      {P(2, 0.5), P(3, 0.5), 2, P(h, 0.5), P(-h, 0.5)},       // the line is unbounded
      {P(-2, 1), P(2, 1), 3, P(0, 1), P(0, 1)},               // touching
      {P(0, 1 - 1e-8), P(1, 1 - 1e-8), 3, P(0, 1), P(0, 1)},  // discriminant 8e-8: touching
      {P(0, 1 - 2e-8), P(1, 1 - 2e-8), 2, P(0, 1), P(0, 1)},  // 1.6e-7: two crossings
      {P(-2, 1.1), P(2, 1.1), 0, P(), P()},
      {P(1, 0), P(1, 0), 1, P(1, 0), P(1, 0)},  // a point on the circle
      // c negligible against a long defining segment counts as 0, deliberately: "touching" at p1
      {P(0, 0), P(1e9, 0), 3, P(0, 0), P(0, 0)},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.p1.x << "," << r.p1.y);
    P s1(9, 9), s2(9, 9);
    EXPECT_EQ(KrsGerSchnitt(P(0, 0), 1, r.p1, r.p2, s1, s2), r.code);
    EXPECT_TRUE(r.code ? (s1 == r.s1 && s2 == r.s2) : (s1 == P(9, 9) && s2 == P(9, 9)));  // untouched on 0
  }
}

TEST(CircleFunctions, CircleRecognition) {
  const double f = 0.991768322919766;
  KvGePoint2dArray moved = Polygon(10, 5, 1, 2), movedIn = Polygon(10, 5, 1, 2), line;
  moved[3] = moved[3] * (1.0 + 0.0011 / 5.0) + P(1, 2) * (-0.0011 / 5.0);  // 0.0011 off the circle
  movedIn[3] = movedIn[3] * (1.0 + 0.0009 / 5.0) + P(1, 2) * (-0.0009 / 5.0);
  for (int i = 0; i < 6; ++i) line.Add(P(i, 2 * i));
  struct Row {
    const char* name;
    KvGePoint2dArray points;
    int create, strZug;
  };
  const Row rows[] = {
      {"4 points", Polygon(4, 5, 1, 2), 0, 0},
      {"9-gon", Polygon(9, 5, 1, 2), 0, 0},
      {"10-gon", Polygon(10, 5, 1, 2), 1, 1},
      {"10-gon clockwise", Polygon(10, 5, 1, 2, -1), 1, 1},
      {"moved 0.0011", moved, 0, 0},
      {"moved 0.0009", movedIn, 1, 1},
      {"collinear", line, 1, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    C a(P(-7, -7), 2, 1), b(P(-7, -7), 2, 1);
    EXPECT_EQ(CreateCircle(r.points, a), r.create);
    EXPECT_EQ(GetCircleFormStrZug(r.points, b), r.strZug);
    // A collinear run is scaled although no circle was found.
    const C want = !r.create ? C(P(-7, -7), 2, 1) : !r.strZug ? C(P(-7, -7), 2 * f, 1) : C(P(1, 2), 5 * f, a.Sense());
    EXPECT_TRUE(a == want);
    EXPECT_TRUE(b == (r.strZug ? a : C(P(-7, -7), 2, 1)));
  }
}

TEST(CircleFunctions, ClipArcToBox) {
  const KvGeBox2d box(P(0, 0), P(10, 10));
  const double d = std::asin(0.001 / 5);  // where the circle of radius 5 meets an edge moved out by 0.001
  const double g = std::atan2(4.0, 3.0);
  struct Row {
    const char* name;
    A arc;
    double minSweep, eps;
    std::vector<double> pieces;  // begin and end of each
  };
  const Row rows[] = {
      {"inside", A(P(5, 5), 2, 0, kPi), 0, 0.001, {0, kPi}},
      {"outside, no edge line met", A(P(20, 20), 2, 0, 2 * kPi), 0, 0.001, {}},
      {"outside, edge lines met beyond the box", A(P(-5, 15), 7, 0, 2 * kPi), 0, 0.001, {}},
      {"crossing two edges", A(P(0, 0), 5, -kPi / 4, 3 * kPi / 4), 0, 0.001, {-d, kPi / 2 + d}},
      {"clockwise", A(P(0, 0), 5, 3 * kPi / 4, -kPi / 4), 0, 0.001, {kPi / 2 + d, -d}},
      {"through a corner", A(P(-3, 4), 5, -kPi, kPi), 0, 0, {-g, g}},
      {"four", A(P(5, 5), 6, 0, 2 * kPi), 0, 0, {0.5857, 0.9851, 2.1565, 2.5559, 3.7273, 4.1267, 5.2981, 5.6975}},
      {"four cw", A(P(5, 5), 6, 2 * kPi, 0), 0, 0, {5.6975, 5.2981, 4.1267, 3.7273, 2.5559, 2.1565, 0.9851, 0.5857}},
      {"piece kept above the minimum sweep", A(P(5, -2.5), 3, 0, 2 * kPi), 1.1, 0, {0.9851, 2.1565}},
      {"piece dropped below the minimum sweep", A(P(5, -2.5), 3, 0, 2 * kPi), 1.2, 0, {}},
      {"zero sweep", A(P(5, 5), 2, 1, 1), 0, 0.001, {}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    KvBtSmallArray<KvGeArc2d> pieces;
    pieces.Add(A(P(99, 99), 1, 0, 1));  // pieces already there stay
    EXPECT_EQ(ClipArc(r.arc, box, pieces, r.minSweep, r.eps), r.pieces.empty() ? 0 : 1);
    const int n = static_cast<int>(r.pieces.size()) / 2;
    ASSERT_EQ(pieces.GetSize(), 1 + n);
    EXPECT_TRUE(pieces[0] == A(P(99, 99), 1, 0, 1));
    for (int i = 0; i < n; ++i) {
      EXPECT_NEAR(pieces[i + 1].Beg().Rad(), r.pieces[2 * i], 1e-4) << i;
      EXPECT_NEAR(pieces[i + 1].End().Rad(), r.pieces[2 * i + 1], 1e-4) << i;
    }
  }
}

TEST(PlanCircle, ThreePointsBoxesAndTransform) {
  KvGeCircle23d c(Q(5, 5, 5), 1);
  EXPECT_EQ(c.By3Points(Q(0, 0, 1), Q(1, 0, 2), Q(2, 0.0000009, 3)), 0);
  EXPECT_TRUE(c.Center() == Q(5, 5, 5));
  ASSERT_EQ(c.By3Points(Q(0, 0, 1), Q(2, 0, 2), Q(2, 2, 6)), 1);
  EXPECT_TRUE(c.Center() == Q(1, 1, 3));  // at the mean height
  EXPECT_NEAR(c.Radius(), std::sqrt(2.0), 1e-12);

  KvGeArc23d a;
  ASSERT_EQ(a.By3Points(Q(1, 0, 4), Q(0, -1, 4), Q(-1, 0, 4)), 1);
  EXPECT_NEAR(a.End().Rad() - a.Beg().Rad(), -kPi, 1e-12);
  EXPECT_TRUE(a.BoundingBox() == KvGeBox3d(Q(-1, -1, 4), Q(1, 0, 4)));

  const KvGeModMat3d tilt = KvGeModMat3d().SetRotate(0.6, Q(1, 1, 0)).CatScale(2, 2, 2).CatTran(1, 2, 3);
  EXPECT_TRUE(a.BoundingBox(tilt).IsEqualTo(SampledBox<KvGeBox3d>(a, tilt), 1e-6));
  EXPECT_TRUE(c.BoundingBox(tilt).IsEqualTo(SampledBox<KvGeBox3d>(KvGeArc23d(c), tilt), 1e-6));

  const KvGeModMat3d turn = KvGeModMat3d().SetRotate(kPi / 2, Q(0, 0, 1)).CatTran(0, 0, 7);
  const KvGeArc23d t = a.Transformed(turn);
  EXPECT_TRUE(t.BegPoint() == a.BegPoint().Transformed(turn) && t.EndPoint() == a.EndPoint().Transformed(turn));
  EXPECT_EQ(t.Sense(), -1);
  EXPECT_NEAR(c.Transformed(KvGeModMat3d().SetRotate(kPi / 2, Q(1, 0, 0))).Radius(), 0, 1e-7);  // edge-on in plan
}
