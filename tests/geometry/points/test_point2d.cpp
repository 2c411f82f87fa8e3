#include <gtest/gtest.h>

#include <cmath>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

namespace {
using P = KvGePoint2d;
const double kPi = 3.141592653589793;

void ExpectPoint(const P& got, double x, double y, int infinite) {
  EXPECT_NEAR(got.x, x, 1e-12);
  EXPECT_NEAR(got.y, y, 1e-12);
  EXPECT_EQ(got.m_bInfinite != 0, infinite != 0);
}
}  // namespace

TEST(Point2d, EqualityIsOnTheDistanceAndTheKind) {
  EXPECT_TRUE(P(1, 2) == P(1.0007, 2.0007));   // about 0.00099 apart
  EXPECT_FALSE(P(1, 2) == P(1.0008, 2.0008));  // about 0.00113 apart, each coordinate within 0.001
  EXPECT_EQ(P(0, 0).IsEqualTo(P(3, 4), 5.0), 1);
  EXPECT_EQ(P(0, 0).IsEqualTo(P(3, 4), 4.99), 0);
  // An ordinary and an infinite point at the same coordinates are never equal.
  EXPECT_FALSE(P(1, 2) == P(1, 2, 1));
  EXPECT_EQ(P(1, 2).IsEqualTo(P(1, 2, 1), 1e9), 0);
  EXPECT_TRUE(P(1, 2, 1) == P(1, 2, 7));  // any non-zero flag is at infinity
}

TEST(Point2d, FlagTable) {
  const P o(1, 1), i(0, 1, 1), o2(3, -2), i2(2, 5, 1);
  struct Row {
    const char* what;
    P got;
    double x, y;
    int infinite;
  };
  const Row rows[] = {
      {"o + o", o + o2, 4, -1, 0}, {"i + i", i + i2, 2, 6, 1},  {"o + i", o + i, 0, 1, 1},  {"i + o", i + o, 0, 1, 1},
      {"o - i", o - i, 0, -1, 1},  {"i - o", i - o, 0, 1, 1},   {"i - i", i2 - i, 2, 4, 1}, {"o & i", o & i, 1, 1, 0},
      {"i & o", i & o, 1, 1, 0},   {"o | i", o | i, 0, 1, 1},   {"i | o", i | o, 0, 1, 1},  {"o & o", o & o2, 1, -2, 0},
      {"i | i", i | i2, 2, 5, 1},  {"2 * i", 2.0 * i, 0, 2, 1}, {"-i", -i, 0, -1, 1},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    ExpectPoint(r.got, r.x, r.y, r.infinite);
  }
  ExpectPoint(Mean(P(0, 0), P(10, 20), 0.25), 7.5, 15, 0);
  ExpectPoint(Mean(P(2, 2), P(10, 20)), 6, 11, 0);
  ExpectPoint(Mean(o, i, 1.0), 0, 0, 1);  // an infinite b absorbs the weighted sum
}

TEST(Point2d, ConversionsAndScalars) {
  ExpectPoint(P(KvGeVector3(2, 4, 2)), 1, 2, 0);
  ExpectPoint(P(KvGeVector3(2, 4, 0.0005)), 2, 4, 1);
  ExpectPoint(P(KvGeVector3(2, 4, 0.0011)), 2 / 0.0011, 4 / 0.0011, 0);
  EXPECT_TRUE(P(1, 2, 1).Vector3() == KvGeVector3(1, 2, 0));
  EXPECT_TRUE(P(1, 2).Vector3() == KvGeVector3(1, 2, 1));
  ExpectPoint(P(KvGePoint3d(1, 2, 3, 1)), 1, 2, 1);
  ExpectPoint(P(5, 6) / 0.0, 5, 6, 0);
  EXPECT_NEAR((P(5, 6) / 1e-300).y / 6e300, 1.0, 1e-15);
  ExpectPoint(P().SetPolar(2, KvGeAngle_Deg90(), 1), 0, 2, 1);
  P n(0.0005, 0);
  EXPECT_EQ(n.Normalize(), 0);
  EXPECT_EQ(n.x, 0.0005);
  P m(0, 3, 1);
  EXPECT_EQ(m.Normalize(), 1);
  ExpectPoint(m, 0, 1, 1);
}

template <class Q>
class PointFamily : public testing::Test {};
using PointTypes = testing::Types<KvGePoint2d, KvGePoint3d>;
TYPED_TEST_SUITE(PointFamily, PointTypes);

// One writable static shared by all points of a class: the const access reads what a write
// through a bad index left there, and no point changes.
TYPED_TEST(PointFamily, BadIndexSharesOneDummy) {
  using Q = TypeParam;
  Q a(1.0), b(2.0);
  const Q& cb = b;
  const unsigned n = a.Dim();
  a.Element(n) = 3.0;
  EXPECT_EQ(cb.Element(n + 4), 3.0);
  EXPECT_EQ(cb(n), 3.0);
  EXPECT_EQ(cb[1000], 3.0);
  b[n] = 4.0;
  EXPECT_EQ(Q::m_vDummy, 4.0);
  a(n + 1) = 5.0;
  EXPECT_EQ(cb[n], 5.0);
  EXPECT_TRUE(a.IsEqualTo(Q(1.0), 0.0));
  EXPECT_TRUE(b.IsEqualTo(Q(2.0), 0.0));
}

TEST(Point2d, ClipCohenSutherland) {
  const P lo(0, 0), hi(10, 10);
  struct Row {
    P p1, p2;
    int result;
    P want1, want2;
  };
  const Row rows[] = {
      {P(5, 5), P(15, 5), 1, P(10, 5), P(5, 5)},              // first inside: the ends come back exchanged
      {P(15, 5), P(5, 5), 1, P(10, 5), P(5, 5)},              // first outside: no exchange
      {P(10.0005, 5), P(20, 5), 1, P(10, 5), P(10.0005, 5)},  // the end within 0.001 outside stays
      {P(10.0011, 5), P(20, 5), 0, P(10.0011, 5), P(20, 5)},
      {P(-5, 5), P(15, 5), 1, P(10, 5), P(0, 5)},  // both ends move; the exchange stays
      {P(-5, -5), P(15, 15), 1, P(10, 10), P(0, 0)},
      {P(-5, 12), P(12, -5), 1, P(7, 0), P(0, 7)},
      {P(-5, 1), P(1, -5), 0, P(-5, 1), P(1, -5)},  // passes the corner outside: rejected after one
                                                    // move, the ends as they were
      {P(2, 2), P(3, 3), 1, P(2, 2), P(3, 3)},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.p1.x << "," << r.p1.y << " - " << r.p2.x << "," << r.p2.y);
    P p1 = r.p1, p2 = r.p2;
    EXPECT_EQ(Clip2d(p1, p2, lo, hi), r.result);
    EXPECT_TRUE(p1.IsEqualTo(r.want1, 1e-9)) << p1.x << "," << p1.y;
    EXPECT_TRUE(p2.IsEqualTo(r.want2, 1e-9)) << p2.x << "," << p2.y;
  }
  EXPECT_EQ(P(-0.0009, 10.0009).OutCode(lo, hi), 0);
  EXPECT_EQ(P(-0.0011, 10.0011).OutCode(lo, hi), 1 | 8);
  EXPECT_EQ(P(10.0011, -0.0011).OutCode(lo, hi), 2 | 4);
}

TEST(Point2d, BetweennessProjectionAndDirections) {
  const P a(0, 0), b(10, 0);
  struct Row {
    P p;
    int code;
  };
  const Row rows[] = {{P(5, 7), 0},       {P(-0.0005, 0), 1}, {P(-0.0011, 3), -1}, {P(10.0009, 0), 2},
                      {P(10.002, 0), -2}, {P(0.0011, -4), 0}, {P(9.9989, 0), 0}};
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.p.x << "," << r.p.y);
    EXPECT_EQ(Between2d(a, b, r.p), r.code);
  }
  EXPECT_EQ(Between2d(a, P(0.0009, 0), P(-5, 0)), 0);  // a degenerate segment answers 0
  EXPECT_EQ(Between2d(b, a, P(12, 0)), -1);
  ExpectPoint(Project2d(a, b, P(-3, 7)), -3, 0, 0);  // not clamped
  ExpectPoint(Project2d(P(1, 1), P(1.0005, 1.0005), P(9, 9)), 1, 1, 0);
  ExpectPoint(Project2d(P(0, 0), P(2, 2), P(2, 0)), 1, 1, 0);
  ExpectPoint(Normal(P(2, 3, 1)), -3, 2, 1);
  EXPECT_NEAR(Angle2d(P(1, 1), P(1, 3)).Rad(), kPi / 2, 1e-15);
  const int directions[][2] = {
      {IsSimelarlyDirected(P(1, 0), P(5, 0.000004)), 1},
      {IsSimelarlyDirected(P(1, 0), P(-1, 0)), 0},
      {IsSimelarlyDirected(P(0, 0), P(1, 0)), 1},  // a zero vector has the direction 0
      {IsParallel(P(1, 0), P(-3, 0)), 1},
      {IsParallel(P(1, 0), P(1, 0.001)), 0},
      {IsNormal(P(1, 0), P(0, -2)), 1},
      {IsNormal(P(1, 0), P(1, 1)), 0},
  };
  for (const auto& d : directions) EXPECT_EQ(d[0], d[1]) << (&d - directions);
}

TEST(Point2d, TransformByModellingMatrix) {
  KvGeModMat2d m;
  m.SetRotate(KvGeAngle_Deg90()).CatTran(1, 0);
  ExpectPoint(P(1, 0).Transformed(m), 1, 1, 0);
  // A direction is rotated but not translated.
  ExpectPoint(P(1, 0, 1).Transformed(m), 0, 1, 1);
  // A projective matrix whose result has a weight within 0.001 of 0 gives a point at infinity.
  KvGeModMat2d proj(KvGeMatrix3X3(1, 0, -1, 0, 1, 0, 0, 0, 1));
  ExpectPoint(P(1.0005, 3).Transformed(proj), 1.0005, 3, 1);
  ExpectPoint(P(3, 4).Transformed(proj), -1.5, -2, 0);
  KvGeModMat2d rel;
  rel.SetRotRel(KvGeAngle_Deg180(), P(1, 1));
  ExpectPoint(P(2, 1).Transformed(rel), 0, 1, 0);
  ExpectPoint(P(2, 1).Transformed(KvGeModMat2d().SetEnlRel(3, 2, P(1, 1))), 4, 1, 0);
  ExpectPoint(P(2, 1).Transformed(KvGeModMat2d().SetScale(3, 2).CatTran(P(1, 1))), 7, 3, 0);
  ExpectPoint(P(2, 1).Transformed(KvGeModMat2d().SetTran(1, 1).CatScale(3, 2)), 9, 4, 0);
}
