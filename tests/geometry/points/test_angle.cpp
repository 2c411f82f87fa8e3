#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "basics/KvMath.h"
#include "geometry/points/KvGeAngle.h"

namespace {
const double kPi = 3.141592653589793;
const KvGeAngle& k0 = KvGeAngle_Deg0();
const KvGeAngle& k180 = KvGeAngle_Deg180();
const KvGeAngle& k360 = KvGeAngle_Deg360();
}  // namespace

TEST(Angle, ConstructionArithmeticAndTrigonometry) {
  EXPECT_EQ(KvGeAngle(0.0, 0.0).Rad(), 0.0);
  EXPECT_DOUBLE_EQ(KvGeAngle(-1.0, 0.0).Rad(), kPi);
  EXPECT_DOUBLE_EQ(KvGeAngle(0.0, -1.0).Rad(), -kPi / 2);  // not normalised on construction
  double r = 0, h = 0;
  KvGeAngle a, b;
  CartCylind(3, 4, 7, r, a, h);
  EXPECT_EQ(r, 5.0);
  EXPECT_NEAR(a.Rad(), std::atan2(4, 3), 1e-15);
  EXPECT_EQ(h, 7.0);
  CartSphere(3, 4, 12, r, a, b);
  EXPECT_EQ(r, 5.0);  // the plan distance, not 13
  EXPECT_NEAR(b.Rad(), std::atan2(12, 5), 1e-15);
  CartSphere(0, 0, 0, r, a, b);
  EXPECT_EQ(a.Rad(), 0.0);
  EXPECT_EQ(b.Rad(), 0.0);

  const KvGeAngle c(1.5);
  EXPECT_EQ((c / 0.0).Rad(), 1.5);
  EXPECT_EQ((c & KvGeAngle(-7.0)).Rad(), -7.0);
  EXPECT_EQ((c | KvGeAngle(-7.0)).Rad(), 1.5);
  EXPECT_NEAR(KvGeAngle().ArcCot(-1).Rad(), -kPi / 4, 1e-15);
  EXPECT_NEAR(KvGeAngle().ArcCot(0.0).Rad(), kPi / 2, 1e-15);
  EXPECT_NEAR(KvGeAngle().ArcCot(-0.0).Rad(), -kPi / 2, 1e-15);
  EXPECT_NEAR(KvGeAngle().ArcCot(-1e-3).Rad(), std::atan(-1e3), 1e-15);  // not pi/2 - arctan x
  EXPECT_NEAR(KvGeAngle_Deg45().Cot(), 1.0, 1e-15);
  KvGeAngle lo, hi;
  CalcMinMax(KvGeAngle(2.0), KvGeAngle(1.0), lo, hi);
  EXPECT_EQ(lo.Rad(), 1.0);
  EXPECT_EQ(hi.Rad(), 2.0);
}

TEST(Angle, ComparisonsUseTheRawBand) {
  struct Row {
    double t, o;
    int cmp;
  };
  const Row rows[] = {{1.0, 1.0000009, 0}, {1.0, 1.000002, -1}, {1.000002, 1.0, 1}, {0.0, 2 * kPi, -1}};
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.t << " vs " << r.o);
    const KvGeAngle t(r.t), o(r.o);
    EXPECT_EQ(t.Compare(o), r.cmp);
    EXPECT_EQ(t == o, r.cmp == 0);
    EXPECT_EQ(t != o, r.cmp != 0);
    EXPECT_EQ(t < o, r.cmp < 0);
    EXPECT_EQ(t <= o, r.cmp <= 0);
    EXPECT_EQ(t > o, r.cmp > 0);
    EXPECT_EQ(t >= o, r.cmp >= 0);
  }
  EXPECT_EQ(KvGeAngle(1.0).Compare(KvGeAngle(1.4), 0.5), 0);
  EXPECT_EQ(KvGeAngle(-9e-7).Sgn(), 0);
  EXPECT_EQ(KvGeAngle(-1.1e-6).Sgn(), -1);
  EXPECT_EQ(KvGeAngle(1.1e-6).Sgn(), 1);
}

TEST(Angle, NormalizeStepsWithTolerantBounds) {
  const KvGeAngle inf(std::numeric_limits<double>::infinity()), negInf(-inf.Rad());
  struct Row {
    double angle;
    const KvGeAngle& upper;
    const KvGeAngle& lower;
    int lowerIncluded;
    double want;
  };
  const Row rows[] = {
      {-kPi / 2, k360, k0, 1, 3 * kPi / 2},
      {0.0, k360, k0, 0, 2 * kPi},           // a sweep of 0 becomes a full turn
      {7 * kPi, k180, k0, 1, 0.0},           // up to rounding
      {2 * kPi - 5e-7, k360, k0, 1, -5e-7},  // within the band below the excluded bound: moved across
      {2 * kPi + 5e-7, k360, k0, 0, 2 * kPi + 5e-7},
      {5e-7, k360, k0, 0, 2 * kPi + 5e-7},  // within the band above the excluded lower bound
      {-5e-7, k360, k0, 1, -5e-7},          // within the band below the included lower bound: stays
      {1.0, k0, k0, 1, 0.0},                // no span: the included bound
      {1.0, k0, k0, 0, 0.0},
      {1.0, KvGeAngle(2.0), KvGeAngle(3.0), 0, 2.0},
      {-1000 * kPi, k360, k0, 1, 0.0},
      {1.0, inf, k0, 1, 1.0},  // already inside a range with an infinite bound: no step
      {1.0, inf, k0, 0, 1.0},
      {-1.0, k0, negInf, 1, -1.0},
      {-1.0, k0, negInf, 0, -1.0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.angle << " in " << r.lower.Rad() << ".." << r.upper.Rad() << " "
                                    << r.lowerIncluded);
    EXPECT_NEAR(KvGeAngle(r.angle).Normalized(r.upper, r.lower, r.lowerIncluded).Rad(), r.want, 1e-9);
  }
}

TEST(Angle, NormalizeStepsUpTo2To24SpansAndTerminatesBeyond) {
  // The stated loop into [0, 2 pi), one span at a time.
  const auto stepwise = [](double a) {
    while (!(2 * kPi - 1e-6 > a)) a -= 2 * kPi;
    return a;
  };
  // 1e7 is where a remainder would already be 1.5e-4 off; 2^24 - 1 spans is the last stepped.
  for (double spans : {1e7 / (2 * kPi), 16777215.0}) {
    const double a = spans * 2 * kPi + 0.5;
    SCOPED_TRACE(a);
    EXPECT_EQ(KvGeAngle(a).Normalized(k360, k0, 1).Rad(), stepwise(a));
  }
  // Beyond 2^24 spans the documented remainder: in range, and near the exact value.
  const double beyond = 16777217.0 * 2 * kPi + 0.5;
  EXPECT_EQ(KvGeAngle(beyond).Normalized(k360, k0, 1).Rad(), std::fmod(beyond, 2 * kPi));
  for (double huge : {-1e9, 1e20, -1e300, std::numeric_limits<double>::max()}) {
    SCOPED_TRACE(huge);
    const double r = KvGeAngle(huge).Normalized(k360, k0, 1).Rad();
    EXPECT_GE(r, -1e-6);
    EXPECT_LT(r, 2 * kPi);
  }
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(KvGeAngle(-1.0).Normalized(KvGeAngle(inf), k0, 1).Rad()));  // outside, infinite span
  EXPECT_EQ(KvGeAngle(1.0).Normalized(KvGeAngle(std::nan("")), k0, 1).Rad(), 0.0);   // a NaN span is not positive
  // Bounds so large that a span of 1 is below their precision end after the step limit.
  const double r = KvGeAngle(0.0).Normalized(KvGeAngle(1e17 + 16), KvGeAngle(1e17), 1).Rad();
  EXPECT_TRUE(std::isfinite(r));
}

TEST(Angle, BetweenParallelNormal) {
  const KvGeAngle x(0.0);
  EXPECT_EQ(x.IsBetween(KvGeAngle_Deg270(), KvGeAngle_Deg90(), 1), 1);
  EXPECT_EQ(x.IsBetween(KvGeAngle_Deg270(), KvGeAngle_Deg90(), 0), 0);
  EXPECT_EQ(KvGeAngle(5.0).IsBetween(KvGeAngle(1.0), KvGeAngle(1.0), 1), 1);  // full sweep
  EXPECT_EQ(KvGeAngle_Deg90().IsBetween(k0, KvGeAngle_Deg90(), 1), 1);
  EXPECT_EQ(BetweenAng(1.23, 0.5, 0.5), 1);
  EXPECT_EQ(BetweenAng(kPi, 0, kPi / 2), 0);
  EXPECT_EQ(BetweenAng(kPi / 2 + 5e-7, 0, kPi / 2), 1);
  EXPECT_EQ(BetweenAng(kPi / 2 + 2e-6, 0, kPi / 2), 0);
  EXPECT_EQ(BetweenAng(-0.1, 3 * kPi / 2, kPi / 2), 1);

  struct Row {
    double a, b, eps;
    int parallel;
  };
  const Row rows[] = {
      {0, kPi, 0.001, 1},     {0, kPi / 2, 0.001, 0},      {0, 2 * kPi, 0.001, 1},      {0, 0.0009, 0.001, 1},
      {0, 0.0011, 0.001, 0},  {0, kPi + 0.0009, 0.001, 1}, {0, kPi - 0.0009, 0.001, 1}, {0, -kPi + 0.0009, 0.001, 1},
      {0, -0.0009, 0.001, 1}, {0, kPi - 2e-7, 1e-6, 1},    {0, 3e-6, 1e-6, 0},          {1.0, 1.0 + kPi, 0.01, 1},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.a << ", " << r.b << ", " << r.eps);
    EXPECT_EQ(IsParallel(KvGeAngle(r.a), KvGeAngle(r.b), r.eps), r.parallel);
  }
  EXPECT_EQ(IsNormal(k0, KvGeAngle_Deg270()), 1);
  EXPECT_EQ(IsNormal(k0, k180), 0);
  EXPECT_EQ(IsSimelarlyDirected(k0, k360), 1);
  EXPECT_EQ(IsSimelarlyDirected(k0, k180), 0);
  EXPECT_EQ(IsSimelarlyDirected(KvGeAngle(1.0), KvGeAngle(1.0 - 5e-7)), 1);
}
