#include <gtest/gtest.h>

#include <climits>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeLine2d.h"

namespace {
using P = KvGePoint2d;
using Q = KvGePoint3d;
}  // namespace

TEST(Line, EqualityRulesDifferByClass) {
  const KvGeLine2d l(P(0, 0), P(1, 0));
  EXPECT_TRUE(l == KvGeLine2d(P(0.0005, 0), P(1, 0.0005)));
  EXPECT_TRUE(l != KvGeLine2d(P(0.0011, 0), P(1, 0)));
  EXPECT_TRUE(l != l.Inverted());                     // ends exchanged and Sense -1
  EXPECT_TRUE(l == KvGeLine2d(P(0, 0), P(1, 0), 0));  // Segment ignored
  EXPECT_TRUE(l != KvGeLine2d(P(0, 0), P(1, 0), 1, -1));
  EXPECT_TRUE(l != KvGeLine2d(P(0, 0, 1), P(1, 0)));  // the kind of an end counts
  EXPECT_EQ(l.IsEqualTo(KvGeLine2d(P(0.3, 0), P(1, 0.4)), 0.5), 1);

  const KvGeLine3d s(Q(0, 0, 0), Q(1, 0, 0));
  EXPECT_TRUE(s == KvGeLine3d(0.0005, 0, 0, 1, 0, 0.0005));
  EXPECT_TRUE(s != KvGeLine3d(0, 0, 0, 1, 0, 0, 0));  // Segment compared
  EXPECT_TRUE(s != KvGeLine3d(s).negate());
  EXPECT_TRUE(KvGeLine3d(s).negate().P1() == Q(1, 0, 0));
}

TEST(Line, OrientationBoxesAndTransforms) {
  const KvGeLine2d l(P(1, 2), P(3, -4, 1));
  EXPECT_TRUE(l.Orientated(1) == l);
  const KvGeLine2d o = l.Orientated(-1);
  EXPECT_TRUE(o.P1() == P(3, -4, 1));
  EXPECT_EQ(o.Sense(), -1);
  EXPECT_TRUE(KvGeLine2d(P(1, 2), P(3, -4)).BoundingBox() == KvGeBox2d(P(1, -4), P(3, 2)));
  EXPECT_EQ(l.BoundingBox().Max().m_bInfinite, 1);  // the infinite end wins the maximum
  const KvGeModMat2d shift = KvGeModMat2d().SetTran(10, 0);
  EXPECT_TRUE(KvGeLine2d(P(1, 2), P(3, -4)).BoundingBox(shift) == KvGeBox2d(P(11, -4), P(13, 2)));
  EXPECT_TRUE(l.Transformed(shift).P1() == P(11, 2));
  EXPECT_TRUE(l.Transformed(shift).P2() == P(3, -4, 1));  // a direction does not move

  KvGeLine23d plan(Q(0, 0, 5), Q(1, 1, 5), 1, -2);
  EXPECT_TRUE(plan.BoundingBox() == KvGeBox3d(Q(0, 0, 3), Q(1, 1, 5)));
  plan.Height() = 2;
  EXPECT_TRUE(plan.BoundingBox() == KvGeBox3d(Q(0, 0, 5), Q(1, 1, 7)));
  EXPECT_TRUE(plan.BoundingBox(KvGeModMat3d().SetTran(0, 0, 1)) == KvGeBox3d(Q(0, 0, 6), Q(1, 1, 8)));
  EXPECT_EQ(plan.Inverted().Sense(), -1);
  EXPECT_TRUE(plan.Orientated(-1).P1() == Q(1, 1, 5));
  EXPECT_EQ(plan.Transformed(KvGeModMat3d().SetScale(2, 2, 2)).Height(), 2.0);
  EXPECT_TRUE(KvGeLine3d(Q(0, 0, 0), Q(1, 2, 3)).BoundingBox(KvGeModMat3d().SetScale(-1, 1, 1)) ==
              KvGeBox3d(Q(-1, 0, 0), Q(0, 2, 3)));
}

// INT_MIN has no negative in an int: inverting such a sense saturates instead of overflowing.
TEST(Line, InvertOfIntMinSenseSaturates) {
  const KvGeLine2d l(P(0, 0), P(1, 0), 1, INT_MIN);
  EXPECT_EQ(l.Inverted().Sense(), INT_MAX);
  EXPECT_EQ(l.Orientated(1).Sense(), INT_MAX);
  EXPECT_EQ(l.Orientated(1).Inverted().Sense(), -INT_MAX);
  const KvGeLine23d plan(Q(0, 0, 0), Q(1, 0, 0), 1, 0.0, INT_MIN);
  EXPECT_EQ(plan.Inverted().Sense(), INT_MAX);
  EXPECT_EQ(plan.Orientated(-1).Sense(), INT_MAX);
  EXPECT_EQ(KvGeLine2d(P(0, 0), P(1, 0), 1, INT_MAX).Inverted().Sense(), -INT_MAX);
}

TEST(Line, TrimAndMoveInSpace) {
  struct Row {
    const char* what;
    KvGeLine3d got;
    Q p1, p2;
  };
  const KvGeLine3d l(0, 0, 0, 10, 0, 0);
  const Row rows[] = {
      {"trimP1(1)", KvGeLine3d(l).trimP1(1), Q(1, 0, 0), Q(10, 0, 0)},
      {"trimP2(-1)", KvGeLine3d(l).trimP2(-1), Q(0, 0, 0), Q(11, 0, 0)},
      {"trimP2(2)", KvGeLine3d(l).trimP2(2), Q(0, 0, 0), Q(8, 0, 0)},
      {"move(-3)", KvGeLine3d(l).move(-3), Q(-3, 0, 0), Q(7, 0, 0)},
      {"zero trimP1", KvGeLine3d(2, 2, 2, 2, 2, 2).trimP1(1), Q(2, 2, 2), Q(2, 2, 2)},
      {"zero trimP2", KvGeLine3d(2, 2, 2, 2, 2, 2).trimP2(1), Q(2, 2, 2), Q(2, 2, 2)},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    EXPECT_TRUE(r.got.P1().IsEqualTo(r.p1, 1e-12));
    EXPECT_TRUE(r.got.P2().IsEqualTo(r.p2, 1e-12));
  }
  EXPECT_NEAR(KvGeLine3d(0, 0, 0, 1, 2, 2).lenght(), 3.0, 1e-15);
}
