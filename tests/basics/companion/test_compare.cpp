#include <gtest/gtest.h>

#include <climits>

#include "basics/companion/KvBtCompare.h"

TEST(Compare, ToleranceBandIsInclusive) {
  struct Row {
    double a, b;
    int equal, less, lessOrEqual, greater, compare;
  };
  // Just inside and just outside the band of 0.001, in both argument orders.
  const Row rows[] = {
      {1.0, 1.0009, 1, 0, 1, 0, 0}, {1.0009, 1.0, 1, 0, 1, 0, 0}, {1.0, 1.0011, 0, 1, 1, 0, -1},
      {1.0011, 1.0, 0, 0, 0, 1, 1}, {-3.0, -3.0, 1, 0, 1, 0, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.a << " vs " << r.b);
    EXPECT_EQ(IsEqual(r.a, r.b, 0.001), r.equal);
    EXPECT_EQ(IsNotEqual(r.a, r.b, 0.001), 1 - r.equal);
    EXPECT_EQ(IsLess(r.a, r.b, 0.001), r.less);
    EXPECT_EQ(IsLessOrEqual(r.a, r.b, 0.001), r.lessOrEqual);
    EXPECT_EQ(IsGreater(r.a, r.b, 0.001), r.greater);
    EXPECT_EQ(IsGreaterOrEqual(r.a, r.b, 0.001), 1 - r.less);
    EXPECT_EQ(KvBtRealCompare(r.a, r.b, 0.001), r.compare);
  }
  // A difference exactly equal to eps counts as equal (0.5 and 0.25 are exact in binary).
  EXPECT_EQ(IsEqual(1.0, 1.5, 0.5), 1);
  EXPECT_EQ(IsLess(1.0, 1.5, 0.5), 0);
  EXPECT_EQ(IsGreater(1.5, 1.0, 0.5), 0);
  EXPECT_EQ(KvBtRealCompare(1.0, 1.25, 0.25), 0);
  EXPECT_EQ(IsEqual(0.0, 0.0, 0.0), 1);
}

TEST(Compare, ModIsNonNegativeForEveryDividend) {
  const int rows[][3] = {{-1, 4, 3}, {-4, 4, 0}, {-5, 4, 3},  {7, 4, 3}, {0, 4, 0},
                         {3, 1, 0},  {5, -3, 2}, {-1, -3, 2}, {7, 0, 0}};
  for (const auto& r : rows) {
    SCOPED_TRACE(testing::Message() << "mod(" << r[0] << ", " << r[1] << ")");
    EXPECT_EQ(mod(r[0], r[1]), r[2]);
  }
  EXPECT_EQ(mod(INT_MIN, 3), 1);
  EXPECT_EQ(mod(INT_MIN, INT_MIN), 0);
  EXPECT_EQ(mod(INT_MAX, INT_MIN), INT_MAX);
}

TEST(Compare, RundenRoundsToNearestStepAwayFromZero) {
  const double rows[][2] = {{1.2, 1.2},    {0.25, 0.3},  {-0.25, -0.3},    {0.249, 0.2},      {0.14, 0.1},
                            {-0.05, -0.1}, {-0.04, 0.0}, {5000.0, 5000.0}, {3276.74, 3276.7}, {0.0, 0.0}};
  for (const auto& r : rows) {
    SCOPED_TRACE(r[0]);
    EXPECT_NEAR(runden(r[0], 0.1, 0.001), r[1], 1e-12);
  }
  EXPECT_EQ(runden(2.5, 0.0, 0.001), 2.5);
}

TEST(Compare, SmallHelpers) {
  EXPECT_EQ(sgn(-0.1), -1);
  EXPECT_EQ(sgn(0.0), 0);
  EXPECT_EQ(sgn(1e-300), 1);
  EXPECT_EQ(quadrat(-3.0), 9.0);
  double lo = 0, hi = 0;
  CalcMinMax(5.0, -2.0, lo, hi);
  EXPECT_EQ(lo, -2.0);
  EXPECT_EQ(hi, 5.0);
  CalcMinMax(-2.0, 5.0, lo, hi);
  EXPECT_EQ(lo, -2.0);
  EXPECT_EQ(hi, 5.0);
  // Absolute band first, then relative to the larger magnitude.
  EXPECT_EQ(IsEqualRelative(1000.0, 1000.5, 0.001, 1e-3), 1);
  EXPECT_EQ(IsEqualRelative(1000.0, 1002.0, 0.001, 1e-3), 0);
  EXPECT_EQ(IsEqualRelative(0.0, 0.0005, 0.001, 0.0), 1);
}
