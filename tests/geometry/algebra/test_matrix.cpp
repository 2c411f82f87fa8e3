#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geometry/algebra/KvGeMatrix.h"

namespace {
// Reference determinant by cofactor expansion, independent of the decomposition.
template <class M>
double Cofactor(const M& m, unsigned n, const unsigned* rows, const unsigned* cols) {
  if (n == 1) return m(rows[0], cols[0]);
  double r = 0.0;
  for (unsigned k = 0; k < n; ++k) {
    unsigned sub[4], s = 0;
    for (unsigned c = 0; c < n; ++c)
      if (c != k) sub[s++] = cols[c];
    const double minor = Cofactor(m, n - 1, rows + 1, sub);
    r += (k % 2 ? -1.0 : 1.0) * m(rows[0], cols[k]) * minor;
  }
  return r;
}
template <class M>
double ReferenceDet(const M& m) {
  const unsigned idx[4] = {0, 1, 2, 3};
  return Cofactor(m, m.Dim(), idx, idx);
}

template <class M>
M Random(std::mt19937& rng) {
  std::uniform_real_distribution<double> u(-5, 5);
  M m;
  for (unsigned i = 0; i < m.Dim(); ++i)
    for (unsigned j = 0; j < m.Dim(); ++j) m(i, j) = u(rng);
  return m;
}
}  // namespace

template <class M>
class MatrixFamily : public testing::Test {};
using MatrixTypes = testing::Types<KvGeMatrix2X2, KvGeMatrix3X3, KvGeMatrix4X4>;
TYPED_TEST_SUITE(MatrixFamily, MatrixTypes);

TYPED_TEST(MatrixFamily, DeterminantSolveAndInverseAgreeWithReferences) {
  using M = TypeParam;
  std::mt19937 rng(42);
  for (int trial = 0; trial < 200; ++trial) {
    const M m = Random<M>(rng);
    const double ref = ReferenceDet(m);
    EXPECT_NEAR(m.Det(), ref, 1e-9 * (1 + std::fabs(ref)));
    if (m.IsSingular()) continue;
    M inv = m;
    ASSERT_EQ(inv.Invert(), 1);
    EXPECT_TRUE((m * inv).IsEqualTo(M(1.0), 1e-9));
    auto b = m.Row(0) * 2.0 - m.Row(1);  // x x M = b has the solution (2, -1, 0, ...)
    decltype(b) x;
    ASSERT_EQ(m.Solve(b, x), 1);
    EXPECT_NEAR(x(0), 2.0, 1e-9);
    EXPECT_NEAR(x(1), -1.0, 1e-9);
    EXPECT_TRUE((b / m).IsEqualTo(x, 1e-12));
    EXPECT_TRUE(((m * 3.0) / m).IsEqualTo(M(3.0), 1e-9));
  }
  // The identity's reflections leave the diagonal -1, ..., -1, 1: the sign rule makes it 1.
  EXPECT_DOUBLE_EQ(M(1.0).Det(), 1.0);
  EXPECT_DOUBLE_EQ(M(2.0).Det(), std::pow(2.0, M().Dim()));
  EXPECT_EQ(M().Det(), 0.0);  // the decomposition of the zero matrix fails
  EXPECT_EQ(M().IsSingular(), 1);
}

TYPED_TEST(MatrixFamily, SingularMatricesLeaveOutputsUntouched) {
  using M = TypeParam;
  M m(1.0);
  m(0, 0) = 0.0005;  // diagonal 0.0005, 1, ...: singular by the absolute 0.001 rule
  EXPECT_EQ(m.IsSingular(), 1);
  EXPECT_NEAR(m.Det(), 0.0005, 1e-15);
  const M before = m;
  EXPECT_EQ(m.Invert(), 0);
  EXPECT_TRUE(m.IsEqualTo(before, 0.0));
  EXPECT_TRUE(m.Inverted().IsEqualTo(before, 0.0));
  auto b = M(1.0).Row(1), x = M(1.0).Row(0);
  const auto xBefore = x;
  EXPECT_EQ(m.Solve(b, x), 0);
  EXPECT_TRUE(x.IsEqualTo(xBefore, 0.0));
  EXPECT_TRUE((b / m).IsEqualTo(b, 0.0));
  const M dividend(7.0);
  EXPECT_TRUE((dividend / m).IsEqualTo(dividend, 0.0));
  M out(5.0);
  EXPECT_EQ(m.Solve(dividend, out), 0);
  EXPECT_TRUE(out.IsEqualTo(M(5.0), 0.0));
  m(0, 0) = 0.0011;
  EXPECT_EQ(m.IsSingular(), 0);
}

TYPED_TEST(MatrixFamily, NormsEqualityAndAbsorbedIndices) {
  using M = TypeParam;
  M m;
  const unsigned n = m.Dim();
  for (unsigned i = 0; i < n; ++i)
    for (unsigned j = 0; j < n; ++j) m(i, j) = (i == 0 ? 10.0 : 1.0) * (j == 0 ? -1.0 : 1.0) + (j == 1 ? 5.0 : 0.0);
  // Row 0 is (-10, 15, 10, ...), column 1 is (15, 6, 6, ...).
  EXPECT_EQ(m.Norm(), 15.0);
  EXPECT_EQ(m.Norm1(), 10.0 + 15.0 + 10.0 * (n - 2));  // largest row sum
  EXPECT_EQ(m.NormInfinity(), 15.0 + 6.0 * (n - 1));   // largest column sum
  M close = m;
  close(1, 1) += 0.0009;
  EXPECT_TRUE(m == close);
  close(1, 1) += 0.0003;
  EXPECT_TRUE(m != close);
  EXPECT_EQ(m.IsEqualTo(m + M(1e-12), 0.0), 0);
  const M before = m;
  m.Element(n, 0) = 99.0;
  m(0, n + 3) = 98.0;
  EXPECT_TRUE(m.IsEqualTo(before, 0.0));
  EXPECT_EQ(static_cast<const M&>(m)(n, n), 0.0);
  EXPECT_TRUE(m.Row(n + 1) == decltype(m.Row(0))());
  EXPECT_TRUE(m.Col(n) == decltype(m.Row(0))());
  m.SetRow(n, decltype(m.Row(0))(1.0)).SetCol(n, decltype(m.Row(0))(1.0));
  EXPECT_TRUE(m.IsEqualTo(before, 0.0));
  EXPECT_EQ(m.Transposed()(1, 0), m(0, 1));
  EXPECT_TRUE((m / 0.0).IsEqualTo(m, 0.0));
  EXPECT_TRUE((2.0 * m - m * 2.0).IsEqualTo(M(), 0.0));
}

TEST(Matrix, RowVectorConvention) {
  const KvGeMatrix3X3 translate(KvGeVector3(1, 0, 0), KvGeVector3(0, 1, 0), KvGeVector3(5, 6, 1));
  EXPECT_TRUE(KvGeVector3(1, 2, 3) * translate == KvGeVector3(16, 20, 3));
  const KvGeMatrix3X3 rows(1, 2, 3, 4, 5, 6, 7, 8, 10);
  EXPECT_TRUE(KvGeVector3(1, 0, 0) * rows == rows.Row(0));
  // In v x A x B, A acts first.
  const KvGeMatrix2X2 swap(0, 1, 1, 0), scaleX(2, 1);
  EXPECT_TRUE(KvGeVector2(1, 0) * swap * scaleX == KvGeVector2(0, 1));
  EXPECT_TRUE(KvGeVector2(1, 0) * (swap * scaleX) == KvGeVector2(0, 1));
}

TEST(Matrix, SubMatricesAndConversions) {
  const KvGeMatrix4X4 m(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  EXPECT_TRUE(m.SubMatrix3X3(1, 2).IsEqualTo(KvGeMatrix3X3(0, 1, 3, 8, 9, 11, 12, 13, 15), 0.0));
  EXPECT_TRUE(m.SubMatrix3X3(3, 3).IsEqualTo(KvGeMatrix3X3(0, 1, 2, 4, 5, 6, 8, 9, 10), 0.0));
  EXPECT_TRUE(m.SubMatrix3X3(9, 9).IsEqualTo(m.SubMatrix3X3(3, 3), 0.0));
  KvGeMatrix4X4 w = m;
  w.SetSubMatrix3X3(KvGeMatrix3X3(-1.0), 0, 0);
  EXPECT_EQ(w(0, 0), 0.0);
  EXPECT_EQ(w(1, 1), -1.0);
  EXPECT_EQ(w(1, 2), 0.0);
  EXPECT_EQ(w(0, 3), 3.0);
  w.SetSubMatrix3X3(KvGeMatrix3X3(5.0), 4, 0);
  EXPECT_EQ(w(1, 1), -1.0);
  const KvGeMatrix3X3 t(1, 2, 3, 4, 5, 6, 7, 8, 9);
  EXPECT_TRUE(t.SubMatrix2X2(0, 1).IsEqualTo(KvGeMatrix2X2(4, 6, 7, 9), 0.0));
  KvGeMatrix3X3 t2 = t;
  EXPECT_EQ(t2.SetSubMatrix2X2(KvGeMatrix2X2(0.0), 2, 2)(2, 2), 9.0);
  double rowOrder[16], colOrder[16];
  KvGeMatrix4X4 p;
  p(0, 3) = 7.0;
  p.ConvertToPmat(rowOrder);
  p.ConvertToPmat4x4(colOrder);
  EXPECT_EQ(rowOrder[3], 7.0);
  EXPECT_EQ(colOrder[12], 7.0);
  // GetMember read outside the matrix for an index of 4 or more.
  EXPECT_EQ(m.GetMember(2, 1), 9.0);
  EXPECT_EQ(m.GetMember(4, 0), 0.0);
  EXPECT_EQ(m.GetMember(0, 4), 0.0);
  EXPECT_EQ(m.GetMember(~0u, ~0u), 0.0);
  EXPECT_TRUE(KvGeMatrix4X4(KvGeVector4(1, 2, 3, 4)).IsEqualTo(KvGeMatrix4X4(1, 2, 3, 4), 0.0));
}

TEST(Matrix, VectorDeterminantsAndFourDimensionalNormal) {
  const KvGeVector3 a(1, 2, 3), b(0, 1, 4), c(5, 6, 0);
  EXPECT_NEAR(Determinate(a, b, c), 1.0, 1e-12);
  EXPECT_NEAR(Determinate(a, c, b), -1.0, 1e-12);
  EXPECT_EQ(Determinate(a, a, c), 0.0);
  const KvGeVector4 p(1, 0, 2, 1), q(0, 1, 1, 3), r(2, 1, 0, 1);
  const KvGeVector4 n = Normal(p, q, r);
  EXPECT_NEAR(n * p, 0.0, 1e-12);
  EXPECT_NEAR(n * q, 0.0, 1e-12);
  EXPECT_NEAR(n * r, 0.0, 1e-12);
  EXPECT_GT(n.Length(), 1.0);
  EXPECT_NEAR(Determinate(p, q, r, n), n.LengthSqr(), 1e-9);
  EXPECT_NEAR(
      Determinate(KvGeVector4(2, 0, 0, 0), KvGeVector4(0, 3, 0, 0), KvGeVector4(0, 0, 1, 0), KvGeVector4(0, 0, 0, -1)),
      -6.0, 1e-12);
}

// diag(1e200, 1) overflowed the squares of the decomposition: it passed for regular with a NaN
// determinant, and Solve and Invert returned 1 with NaN results.
TEST(Matrix, HugeFiniteEntriesDecomposeExactly) {
  const KvGeMatrix2X2 m(1e200, 1.0);
  EXPECT_EQ(m.IsSingular(), 0);
  EXPECT_DOUBLE_EQ(m.Det(), 1e200);
  KvGeVector2 x;
  ASSERT_EQ(m.Solve(KvGeVector2(1e200, 3.0), x), 1);
  EXPECT_DOUBLE_EQ(x.x, 1.0);
  EXPECT_DOUBLE_EQ(x.y, 3.0);
  KvGeMatrix2X2 inv = m;
  ASSERT_EQ(inv.Invert(), 1);
  EXPECT_DOUBLE_EQ(inv(0, 0), 1e-200);
  EXPECT_DOUBLE_EQ(inv(1, 1), 1.0);
  // A product beyond the largest double is an infinite determinant, and the solution is still
  // finite.
  const KvGeMatrix3X3 big(1e200, 1e200, 1.0);
  EXPECT_TRUE(std::isinf(big.Det()));
  KvGeVector3 y;
  ASSERT_EQ(big.Solve(KvGeVector3(1e200, 2e200, 3.0), y), 1);
  EXPECT_DOUBLE_EQ(y.x, 1.0);
  EXPECT_DOUBLE_EQ(y.y, 2.0);
  EXPECT_DOUBLE_EQ(y.z, 3.0);
  EXPECT_EQ(KvGeMatrix4X4(1e-160, 1e-160, 1e-160, 1e-160).Det(), 0.0);  // 1e-640 underflows to 0
}
