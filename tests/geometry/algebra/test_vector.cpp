#include <gtest/gtest.h>

#include <cmath>

#include "geometry/algebra/KvGeVector.h"

namespace {
// Builds a vector of any size from its first components; the rest are 0.
template <class V>
V Make(double a, double b = 0, double c = 0, double d = 0) {
  const double all[4] = {a, b, c, d};
  V v;
  for (unsigned i = 0; i < v.Dim(); ++i) v(i) = all[i];
  return v;
}
}  // namespace

template <class V>
class VectorFamily : public testing::Test {};
using VectorTypes = testing::Types<KvGeVector2, KvGeVector3, KvGeVector4>;
TYPED_TEST_SUITE(VectorFamily, VectorTypes);

TYPED_TEST(VectorFamily, EqualityUsesTheSquaredDistanceBand) {
  using V = TypeParam;
  const V o;
  EXPECT_TRUE(o == Make<V>(0.0009));
  EXPECT_FALSE(o == Make<V>(0.0011));
  // The band is on the distance, not per component: 0.0008 in two components is 0.00113 apart.
  EXPECT_FALSE(o == Make<V>(0.0008, 0.0008));
  EXPECT_TRUE(o == Make<V>(0.0007, 0.0007));
  EXPECT_EQ(o.IsEqualTo(Make<V>(0.3, 0.4), 0.5), 1);
  EXPECT_EQ(o.IsEqualTo(Make<V>(0.3, 0.4), 0.49), 0);
  EXPECT_EQ(o.IsEqualTo(Make<V>(1e-12), 0.0), 0);
  EXPECT_EQ(Make<V>(0.0006, 0.0008).IsZeroLength(), 1);
  EXPECT_EQ(Make<V>(0.0006, 0.0009).IsZeroLength(), 0);
  EXPECT_EQ(Make<V>(0.6, 0.8009).IsUnitLength(), 1);
  EXPECT_EQ(Make<V>(0.6, 0.802).IsUnitLength(), 0);
}

TYPED_TEST(VectorFamily, NormalizeNeedsMoreThanTheLinearToleranceAndDivisionByZeroKeeps) {
  using V = TypeParam;
  V shortOne = Make<V>(0.0005);
  EXPECT_EQ(shortOne.Normalize(), 0);
  EXPECT_EQ(shortOne(0), 0.0005);
  V atBand = Make<V>(0.001);
  EXPECT_EQ(atBand.Normalize(), 0);  // length equal to the tolerance counts as zero
  V longer = Make<V>(0.002);
  EXPECT_EQ(longer.Normalize(), 1);
  EXPECT_NEAR(longer(0), 1.0, 1e-15);
  EXPECT_TRUE(Make<V>(0.0005).Normalized() == Make<V>(0.0005));
  EXPECT_TRUE((Make<V>(1, 2, 3, 4) / 0.0) == Make<V>(1, 2, 3, 4));  // division by exactly 0 leaves it
  const V n = Make<V>(3, -4).Normalized();
  EXPECT_NEAR(n(0), 0.6, 1e-15);
  EXPECT_NEAR(n(1), -0.8, 1e-15);
}

TYPED_TEST(VectorFamily, BadIndexReadsZeroAndWritesNowhere) {
  using V = TypeParam;
  V v = Make<V>(1, 2, 3, 4);
  const V before = v;
  const unsigned n = v.Dim();
  v.Element(n) = 99.0;
  v(n + 5) = 98.0;
  v[n] = 97.0;
  for (unsigned i = 0; i < n; ++i) EXPECT_EQ(v[i], before(i));
  const V& cv = v;
  EXPECT_EQ(cv.Element(n), 0.0);
  EXPECT_EQ(cv(1000), 0.0);
  EXPECT_EQ(cv[n], 0.0);
  EXPECT_EQ(cv[~0u], 0.0);
}

TEST(Vector, FamilyMembers) {
  EXPECT_TRUE(Normal(KvGeVector2(2, 3)) == KvGeVector2(-3, 2));
  EXPECT_EQ(Determinate(KvGeVector2(1, 2), KvGeVector2(3, 4)), -2.0);
  EXPECT_TRUE(Normal(KvGeVector3(1, 0, 0), KvGeVector3(0, 1, 0)) == KvGeVector3(0, 0, 1));
  EXPECT_TRUE(Normal(KvGeVector3(0, 1, 0), KvGeVector3(1, 0, 0)) == KvGeVector3(0, 0, -1));

  const KvGeVector3 v(1, 2, 3);
  const KvGeVector2 sub[] = {v.SubVector2(0), v.SubVector2(1), v.SubVector2(2), v.SubVector2(3), v.SubVector2(99)};
  const KvGeVector2 want[] = {{2, 3}, {1, 3}, {1, 2}, {1, 2}, {1, 2}};
  for (int k = 0; k < 5; ++k) EXPECT_TRUE(sub[k] == want[k]) << k;
  KvGeVector3 w(1, 2, 3);
  EXPECT_TRUE(w.SetSubVector2(KvGeVector2(8, 9), 1) == KvGeVector3(8, 2, 9));
  EXPECT_TRUE(w.SetSubVector2(KvGeVector2(5, 6), 7) == KvGeVector3(5, 6, 9));

  const KvGeVector4 q(1, 2, 3, 4);
  EXPECT_TRUE(q.SubVector3(0) == KvGeVector3(2, 3, 4));
  EXPECT_TRUE(q.SubVector3(2) == KvGeVector3(1, 2, 4));
  EXPECT_TRUE(q.SubVector3(4) == KvGeVector3(1, 2, 3));
  KvGeVector4 r(1, 2, 3, 4);
  EXPECT_TRUE(r.SetSubVector3(KvGeVector3(7, 8, 9), 0) == KvGeVector4(1, 7, 8, 9));
  EXPECT_TRUE(r.SetSubVector3(KvGeVector3(5, 5, 5), 9) == KvGeVector4(5, 5, 5, 9));
}

// Normalize of (1e200, 0, 0) squared the component into infinity, returned 1 and left a zero
// vector. Lengths scale before squaring now.
TEST(Vector, HugeAndTinyComponents) {
  KvGeVector3 v(1e200, 0.0, 0.0);
  EXPECT_EQ(v.Length(), 1e200);
  ASSERT_EQ(v.Normalize(), 1);
  EXPECT_EQ(v.x, 1.0);
  EXPECT_DOUBLE_EQ(KvGeVector2(3e307, 4e307).Length(), 5e307);
  EXPECT_DOUBLE_EQ(KvGeVector2(3e-200, 4e-200).Length(), 5e-200);  // no underflow either
  EXPECT_DOUBLE_EQ(KvGeVector4(1e150, 1e150, 1e150, 1e150).Length(), 2e150);
  KvGeVector2 w(1e308, 1e308);
  ASSERT_EQ(w.Normalize(), 1);
  EXPECT_DOUBLE_EQ(w.x, std::sqrt(0.5));
}
