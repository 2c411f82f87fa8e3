#include <gtest/gtest.h>

#include "basics/general/UtilityGeneral.h"

TEST(General, IqrkorTiesWithinTheLinearTolerance) {
  EXPECT_EQ(iqrkor(10.0, 10.0009), 1);
  EXPECT_EQ(iqrkor(10.0, 10.0011), 0);
  EXPECT_EQ(iqrkor(-0.0005, 0.0004), 1);
  EXPECT_EQ(iqrkor(1.0, 1.5), 0);
}

TEST(General, DistanceOfTwoPlanePoints) {
  EXPECT_NEAR(distance2Points2D(1, 1, 4, 5), 5.0, 1e-12);
  EXPECT_EQ(distance2Points2D(2, 3, 2, 3), 0.0);
}
