#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "basics/KvMath.h"

TEST(Math, RoundAndTruncate) {
  // x, rounded (halves away from zero), truncated.
  const double rows[][3] = {{2.5, 3, 2},   {-2.5, -3, -2}, {-2.4, -2, -2}, {0.49, 0, 0},  {0.5, 1, 0},
                            {-0.5, -1, 0}, {-0.49, 0, 0},  {2.9, 3, 2},    {-2.9, -3, -2}};
  for (const auto& r : rows) {
    SCOPED_TRACE(r[0]);
    EXPECT_EQ(KVMATH_Round(r[0]), static_cast<int>(r[1]));
    EXPECT_EQ(KVMATH_Trunc(r[0]), static_cast<int>(r[2]));
  }
  // Out of the int range the conversions saturate instead of overflowing.
  EXPECT_EQ(KVMATH_Round(1e300), INT_MAX);
  EXPECT_EQ(KVMATH_Trunc(-1e300), INT_MIN);
  EXPECT_EQ(KVMATH_Round(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(Math, MinMaxAndAtan) {
  // For equal arguments the tie goes to b in Min and to b in Max; -0.0 and 0.0 show which.
  EXPECT_TRUE(std::signbit(KVMATH_Min(0.0, -0.0)));
  EXPECT_TRUE(std::signbit(KVMATH_Max(0.0, -0.0)));
  EXPECT_EQ(KVMATH_ATan3(0, 0), 0.0);
  EXPECT_EQ(KVMATH_ATan3(-0.0, -0.0), 0.0);
  EXPECT_NEAR(KVMATH_ATan3(1, 0), M_PI / 2, 1e-15);
  EXPECT_NEAR(KVMATH_ATan3(0, -1), M_PI, 1e-15);
  EXPECT_TRUE(std::isnan(Sqrt(-1.0)));
}

TEST(Math, BitsOutsideTheWordAreIgnored) {
  EXPECT_EQ(KVMATH_BitTest(0x8000, 15), 1);
  EXPECT_EQ(KVMATH_BitTest(0x8000, 14), 0);
  EXPECT_EQ(KVMATH_BitSet(0, 0), 1);
  EXPECT_EQ(KVMATH_BitSet(0, 15), 0x8000);
  EXPECT_EQ(KVMATH_BitClear(0xFFFF, 3), 0xFFF7);
  for (unsigned bit : {16u, 20u, 31u, 32u, 1000u}) {
    SCOPED_TRACE(bit);
    EXPECT_EQ(KVMATH_BitSet(0, bit), 0);
    EXPECT_EQ(KVMATH_BitClear(0xFFFF, bit), 0xFFFF);
    EXPECT_EQ(KVMATH_BitTest(0xFFFF, bit), 0);
  }
}

TEST(Math, RoundToStep) {
  // x, step, result. The rule acts on the computed quotient: 0.3 / 0.2 is just below 1.5. The
  // branch follows the sign of x, not of the quotient: with a negative step halves go toward
  // zero instead of away from it.
  const double rows[][3] = {{0.25, 0.1, 0.3}, {-0.25, 0.1, -0.3}, {7.0, 5.0, 5.0},   {7.5, 5.0, 10.0},  {0.3, 0.2, 0.2},
                            {0.25, 0.5, 0.5}, {-0.25, 0.5, -0.5}, {0.25, -0.5, 0.0}, {-0.25, -0.5, 0.0}};
  for (const auto& r : rows) EXPECT_NEAR(round(r[0], r[1]), r[2], 1e-12) << r[0] << " by " << r[1];
}
