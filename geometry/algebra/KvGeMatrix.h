#pragma once
/// @file
/// Square matrices of 2x2, 3x3 and 4x4 doubles: KvGeMatrix2X2, KvGeMatrix3X3, KvGeMatrix4X4,
/// stored row by row; element (i, j) is row i, column j.
///
/// Vectors are rows: v x M has the components r(j) = sum over i of v(i) * M(i, j), and in
/// v x A x B the matrix A acts first. Solving, inverting, the determinant and the singularity
/// test rest on one decomposition M = T x Q^T by N - 1 Householder reflections applied from the
/// right, T lower triangular. Det is the product of T's diagonal times (-1)^(N - 1), the sign of
/// the reflections (the 4x4 identity gives the diagonal -1, -1, -1, 1 and determinant 1).
/// Singularity is tested on T's diagonal with the absolute 0.001, not scaled to the size of the
/// matrix: a matrix with diagonal 0.0005, 1, 1 is singular although its determinant is 0.0005.
/// Solve writes its output only on success, so dividing by a singular matrix leaves the dividend
/// unchanged.
///
/// The names of the norms are the interface's own: Norm1 is the largest row sum and
/// NormInfinity the largest column sum, the reverse of the textbook names. Norm is the largest
/// absolute element, and two matrices are equal when no element differs by more than 0.001.
///
/// The family shares one implementation, KvGeDetail::MatrixBase<N, M, V>; the named classes add
/// the constructors and setters that list their elements and the sub-matrix members.

/// \file
/// Non-finite input and range: an element or right-hand side that is not finite makes Solve, Invert
/// and division fail (0, nothing written); IsSingular is then 1 and Det NaN. Each reflection is
/// scaled by a power of two, so huge or tiny finite elements decompose exactly (diag(1e200, 1) is
/// regular, determinant 1e200); a determinant beyond the largest double is infinite. See
/// docs/non-finite-policy.md.

#include <cmath>
#include <iosfwd>
#include <limits>

#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtCompare.h"
#include "geometry/algebra/KvGeVector.h"

class KvGeMatrix2X2;
class KvGeMatrix3X3;
class KvGeMatrix4X4;

namespace KvGeDetail {

/// The members every square matrix has (N rows and columns, M the matrix class, V its row vector), stored row by row;
/// equality and singularity use the absolute tolerance 0.001.
template <unsigned N, class M, class V>
class MatrixBase {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  /// The zero matrix.
  MatrixBase() {
    for (double& e : m_Elements) e = 0.0;
  }

  /// The number of rows and columns, N.
  unsigned Dim() const { return N; }

  /// s on the diagonal, 0 elsewhere.
  M& Set(double s) {
    for (unsigned i = 0; i < N; ++i)
      for (unsigned j = 0; j < N; ++j) At(i, j) = i == j ? s : 0.0;
    return Self();
  }
  /// s on the diagonal, 0 elsewhere.
  M& Set(int s) { return Set(static_cast<double>(s)); }
  /// N * N doubles in row order.
  M& Set(const double* elements) {
    for (unsigned k = 0; k < N * N; ++k) m_Elements[k] = elements[k];
    return Self();
  }
  /// The diagonal matrix of the vector's components.
  M& Set(const V& diagonal) {
    Set(0.0);
    for (unsigned i = 0; i < N; ++i) At(i, i) = diagonal[i];
    return Self();
  }

  /// Row i or column j; an index >= N changes nothing (setters) or gives the zero vector.
  M& SetRow(unsigned i, const V& v) {
    if (i < N)
      for (unsigned j = 0; j < N; ++j) At(i, j) = v[j];
    return Self();
  }
  /// Column j; an index >= N changes nothing.
  M& SetCol(unsigned j, const V& v) {
    if (j < N)
      for (unsigned i = 0; i < N; ++i) At(i, j) = v[i];
    return Self();
  }
  /// Row i; the zero vector for an index >= N.
  V Row(unsigned i) const {
    V r;
    if (i < N)
      for (unsigned j = 0; j < N; ++j) r[j] = At(i, j);
    return r;
  }
  /// Column j; the zero vector for an index >= N.
  V Col(unsigned j) const {
    V r;
    if (j < N)
      for (unsigned i = 0; i < N; ++i) r[i] = At(i, j);
    return r;
  }

  /// Element (i, j); an index >= N reads 0.0 and writes to a scratch double of no matrix.
  double& Element(unsigned i, unsigned j) { return (i < N && j < N) ? At(i, j) : M::m_vDummy; }
  /// Element (i, j); 0.0 for an index >= N.
  double Element(unsigned i, unsigned j) const { return (i < N && j < N) ? At(i, j) : 0.0; }
  /// Element (i, j) as Element(i, j), with its handling of an index out of range.
  double& operator()(unsigned i, unsigned j) { return Element(i, j); }
  /// Element (i, j) as Element(i, j), with its handling of an index out of range.
  double operator()(unsigned i, unsigned j) const { return Element(i, j); }

  /// Adds o element by element.
  M& operator+=(const M& o) {
    for (unsigned k = 0; k < N * N; ++k) m_Elements[k] += o.m_Elements[k];
    return Self();
  }
  /// Subtracts o element by element.
  M& operator-=(const M& o) {
    for (unsigned k = 0; k < N * N; ++k) m_Elements[k] -= o.m_Elements[k];
    return Self();
  }
  /// Multiplies every element by s.
  M& operator*=(double s) {
    for (double& e : m_Elements) e *= s;
    return Self();
  }
  /// Division by exactly 0 leaves the matrix unchanged.
  M& operator/=(double s) {
    if (s != 0.0)
      for (double& e : m_Elements) e /= s;
    return Self();
  }
  /// This x o (the product with this acting first on a row vector).
  M& operator*=(const M& o) { return Self() = *this * o; }
  /// X with X x B = this; a singular B leaves the matrix unchanged.
  M& operator/=(const M& b) {
    b.Solve(Self(), Self());
    return Self();
  }
  /// Negates every element.
  M& Negate() {
    for (double& e : m_Elements) e = -e;
    return Self();
  }

  /// The element-wise sum.
  M operator+(const M& o) const { return M(Self()) += o; }
  /// The element-wise difference.
  M operator-(const M& o) const { return M(Self()) -= o; }
  /// Every element times s.
  M operator*(double s) const { return M(Self()) *= s; }
  /// Every element divided by s; s exactly 0 gives an unchanged copy.
  M operator/(double s) const { return M(Self()) /= s; }
  /// X with X x b = this; a singular b (diagonal of the decomposition within 0.001 of 0) gives an unchanged copy.
  M operator/(const M& b) const { return M(Self()) /= b; }
  /// Every element negated.
  M operator-() const { return M(Self()).Negate(); }
  /// Every element of m times s.
  friend M operator*(double s, const M& m) { return m * s; }
  /// The matrix product this x o.
  M operator*(const M& o) const {
    M r;
    for (unsigned i = 0; i < N; ++i)
      for (unsigned j = 0; j < N; ++j) {
        double s = 0.0;
        for (unsigned k = 0; k < N; ++k) s += At(i, k) * o.At(k, j);
        r.At(i, j) = s;
      }
    return r;
  }

  /// Exchanges rows and columns in place.
  M& Transpose() {
    for (unsigned i = 0; i < N; ++i)
      for (unsigned j = i + 1; j < N; ++j) {
        const double t = At(i, j);
        At(i, j) = At(j, i);
        At(j, i) = t;
      }
    return Self();
  }
  /// A transposed copy.
  M Transposed() const { return M(Self()).Transpose(); }

  /// The largest absolute element.
  double Norm() const {
    double r = 0.0;
    for (double e : m_Elements) r = std::fmax(r, std::fabs(e));
    return r;
  }
  /// The largest sum of absolute values along a row.
  double Norm1() const { return LargestLineSum(true); }
  /// The largest sum of absolute values down a column.
  double NormInfinity() const { return LargestLineSum(false); }
  /// 1 when no element differs by more than eps.
  int IsEqualTo(const M& o, double eps = kKvGeLinearTol) const {
    for (unsigned k = 0; k < N * N; ++k)
      if (!(std::fabs(m_Elements[k] - o.m_Elements[k]) <= eps)) return 0;
    return 1;
  }
  /// 1 when no element differs by more than 0.001 (inclusive).
  int operator==(const M& o) const { return IsEqualTo(o, kKvGeLinearTol); }
  /// 1 when some element differs by more than 0.001.
  int operator!=(const M& o) const { return IsEqualTo(o, kKvGeLinearTol) ? 0 : 1; }
  /// The same comparisons with both operands of the derived type, so that C++20 finds no equally
  /// good reversed candidate.
  friend int operator==(const M& a, const M& b) { return static_cast<const MatrixBase&>(a).operator==(b); }
  /// The negation of the operator== above, both operands of the derived type.
  friend int operator!=(const M& a, const M& b) { return static_cast<const MatrixBase&>(a).operator!=(b); }

  /// The determinant; 0 when the decomposition fails, NaN when an element is not finite.
  double Det() const {
    M t, qt;
    if (!Decompose(t, qt)) return IsFinite() ? 0.0 : std::numeric_limits<double>::quiet_NaN();
    double d = (N - 1) % 2 ? -1.0 : 1.0;
    for (unsigned i = 0; i < N; ++i) d *= t.At(i, i);
    return d;
  }
  /// 1 when every element is finite.
  int IsFinite() const {
    for (double e : m_Elements)
      if (!std::isfinite(e)) return 0;
    return 1;
  }
  /// 1 when the decomposition fails (an element not finite included) or a diagonal element of T
  /// is within 0.001 of 0.
  int IsSingular() const {
    M t, qt;
    if (!Decompose(t, qt)) return 1;
    for (unsigned i = 0; i < N; ++i)
      if (IsEqual(t.At(i, i), 0.0, kKvGeLinearTol)) return 1;
    return 0;
  }

  /// Solves x x M = b; 1 on success, 0 when singular or when M, b or the solution is not finite
  /// (x is then not written). b and x may be the same vector.
  int Solve(const V& b, V& x) const {
    M t, qt;
    if (!Decompose(t, qt)) return 0;
    return t.SolveStaggerdSystem(Times(b, qt), x);
  }
  /// Solves X x M = B row by row; X is written only when every row succeeds.
  int Solve(const M& b, M& x) const {
    M t, qt;
    if (!Decompose(t, qt)) return 0;
    M bq;
    for (unsigned i = 0; i < N; ++i) bq.SetRow(i, Times(b.Row(i), qt));
    return t.SolveStaggerdSystem(bq, x);
  }
  /// The inverse; 0 and the matrix unchanged when it is singular.
  int Invert() {
    M identity(1.0), x;
    if (!Solve(identity, x)) return 0;
    Self() = x;
    return 1;
  }
  /// The inverse, or an unchanged copy when the matrix is singular (as IsSingular, within 0.001).
  M Inverted() const {
    M r(Self());
    r.Invert();
    return r;
  }

 protected:
  /// M = T x Qt with T lower triangular and Qt orthogonal; 0 when an element is not finite or a
  /// reflection cannot be formed (the rest of a row from the diagonal on is zero within 1e-15).
  int Decompose(M& t, M& qt) const {
    M tt(Self());
    M q(1.0);
    double u[N];
    if (!IsFinite()) return 0;
    for (unsigned k = 0; k + 1 < N; ++k) {
      // The reflection is formed from the row scaled near its largest element (the reflection
      // does not change with the scale of u), so that entries up to the largest double neither
      // overflow nor underflow when squared.
      double largest = 0.0;
      for (unsigned j = k; j < N; ++j) largest = std::fmax(largest, std::fabs(tt.At(k, j)));
      // A power of two: the scaling is exact, and ordinary rows give the unscaled result bit
      // for bit.
      const double scale = largest > 0.0 && std::isfinite(largest) ? std::ldexp(1.0, std::ilogb(largest)) : 1.0;
      double sigma = 0.0;
      for (unsigned j = k; j < N; ++j) sigma += (tt.At(k, j) / scale) * (tt.At(k, j) / scale);
      sigma = std::sqrt(sigma);
      const double beta = (std::fabs(tt.At(k, k) / scale) + sigma) * sigma;
      if (IsEqual(beta * scale * scale, 0.0, 1e-15)) return 0;
      for (unsigned j = 0; j < N; ++j) u[j] = j < k ? 0.0 : tt.At(k, j) / scale;
      u[k] += tt.At(k, k) < 0.0 ? -sigma : sigma;
      // X x H = X - (X u) u^T / beta, for X = T and X = Q.
      ReflectRows(tt, u, k, beta);
      ReflectRows(q, u, k, beta);
    }
    if (!tt.IsFinite()) return 0;
    t = tt;
    qt = q.Transposed();
    return 1;
  }
  /// Solves x x T = b for this lower-triangular T, from the last component up; 0 (x untouched)
  /// when a diagonal element is within 0.001 of 0.
  int SolveStaggerdSystem(const V& b, V& x) const {
    V r;
    for (unsigned i = N; i-- > 0;) {
      if (IsEqual(At(i, i), 0.0, kKvGeLinearTol)) return 0;
      double s = b[i];
      for (unsigned j = i + 1; j < N; ++j) s -= r[j] * At(j, i);
      r[i] = s / At(i, i);
      if (!std::isfinite(r[i])) return 0;
    }
    x = r;
    return 1;
  }
  /// Solves X x T = B row by row for this lower-triangular T; 0 (x untouched) as soon as a row fails.
  int SolveStaggerdSystem(const M& b, M& x) const {
    M r;
    for (unsigned i = 0; i < N; ++i) {
      V row;
      if (!SolveStaggerdSystem(b.Row(i), row)) return 0;
      r.SetRow(i, row);
    }
    x = r;
    return 1;
  }

  /// Element (i, j) without a range check.
  double& At(unsigned i, unsigned j) { return m_Elements[i * N + j]; }
  /// Element (i, j) without a range check.
  double At(unsigned i, unsigned j) const { return m_Elements[i * N + j]; }
  /// This as the named matrix class.
  M& Self() { return static_cast<M&>(*this); }
  /// This as the named matrix class.
  const M& Self() const { return static_cast<const M&>(*this); }
  /// The matrix without row i and column j, rows and columns kept in order.
  template <class S>
  S SubMatrix(unsigned i, unsigned j) const {
    S s;
    for (unsigned r = 0, sr = 0; r < N; ++r) {
      if (r == i) continue;
      for (unsigned c = 0, sc = 0; c < N; ++c) {
        if (c == j) continue;
        if (sr < N - 1 && sc < N - 1) s(sr, sc) = At(r, c);
        ++sc;
      }
      ++sr;
    }
    return s;
  }
  /// Writes s into the elements outside row i and column j; nothing when i or j >= N.
  template <class S>
  M& SetSubMatrix(const S& s, unsigned i, unsigned j) {
    if (i >= N || j >= N) return Self();
    for (unsigned r = 0, sr = 0; r < N; ++r) {
      if (r == i) continue;
      for (unsigned c = 0, sc = 0; c < N; ++c) {
        if (c == j) continue;
        At(r, c) = s(sr, sc++);
      }
      ++sr;
    }
    return Self();
  }

  /// The N * N elements in row order.
  double m_Elements[N * N];

 private:
  /// The largest sum of absolute values along a row (rows set) or down a column.
  double LargestLineSum(bool rows) const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) {
      double s = 0.0;
      for (unsigned j = 0; j < N; ++j) s += std::fabs(rows ? At(i, j) : At(j, i));
      r = std::fmax(r, s);
    }
    return r;
  }
  /// b x Q where Qt is given: component j is the dot product of b with row j of Qt.
  static V Times(const V& b, const M& qt) {
    V r;
    for (unsigned j = 0; j < N; ++j) {
      double s = 0.0;
      for (unsigned i = 0; i < N; ++i) s += b[i] * qt.At(j, i);
      r[j] = s;
    }
    return r;
  }
  static void ReflectRows(M& x, const double* u, unsigned k, double beta) {
    for (unsigned r = 0; r < N; ++r) {
      double d = 0.0;
      for (unsigned j = k; j < N; ++j) d += x.At(r, j) * u[j];
      d /= beta;
      for (unsigned j = k; j < N; ++j) x.At(r, j) -= d * u[j];
    }
  }

  template <unsigned, class, class>
  friend class MatrixBase;
  template <unsigned, class>
  friend class VectorBase;
};

}  // namespace KvGeDetail

/// A 2x2 matrix of doubles, row by row; elements equal within 0.001.
class KVGE_API KvGeMatrix2X2 : public KvGeDetail::MatrixBase<2, KvGeMatrix2X2, KvGeVector2> {
 public:
  /// The zero matrix.
  KvGeMatrix2X2() = default;
  /// s on the diagonal, 0 elsewhere.
  explicit KvGeMatrix2X2(double s) { Set(s); }
  /// a and b on the diagonal.
  KvGeMatrix2X2(double a, double b) { Set(a, b); }
  /// The elements in row order.
  KvGeMatrix2X2(double m00, double m01, double m10, double m11) { Set(m00, m01, m10, m11); }
  /// The vector's components on the diagonal.
  explicit KvGeMatrix2X2(const KvGeVector2& diagonal) { Set(diagonal); }
  /// The rows r0 and r1.
  KvGeMatrix2X2(const KvGeVector2& r0, const KvGeVector2& r1) { Set(r0, r1); }
  /// Copies the elements.
  KvGeMatrix2X2(const KvGeMatrix2X2&) = default;
  /// Copies the elements.
  KvGeMatrix2X2& operator=(const KvGeMatrix2X2&) = default;
  /// The destructor (the matrices are polymorphic).
  virtual ~KvGeMatrix2X2();

  /// The element handed out for an index out of range.
  static double m_vDummy;

  using MatrixBase::Set;
  /// a and b on the diagonal, 0 elsewhere.
  KvGeMatrix2X2& Set(double a, double b);
  /// The elements in row order.
  KvGeMatrix2X2& Set(double m00, double m01, double m10, double m11);
  /// The rows r0 and r1.
  KvGeMatrix2X2& Set(const KvGeVector2& r0, const KvGeVector2& r1);
};

/// A 3x3 matrix of doubles, row by row; elements equal within 0.001.
class KVGE_API KvGeMatrix3X3 : public KvGeDetail::MatrixBase<3, KvGeMatrix3X3, KvGeVector3> {
 public:
  /// The zero matrix.
  KvGeMatrix3X3() = default;
  /// s on the diagonal, 0 elsewhere.
  explicit KvGeMatrix3X3(double s) { Set(s); }
  /// a, b and c on the diagonal.
  KvGeMatrix3X3(double a, double b, double c) { Set(a, b, c); }
  /// The elements in row order.
  KvGeMatrix3X3(double m00, double m01, double m02, double m10, double m11, double m12, double m20, double m21,
                double m22) {
    Set(m00, m01, m02, m10, m11, m12, m20, m21, m22);
  }
  /// The vector's components on the diagonal.
  explicit KvGeMatrix3X3(const KvGeVector3& diagonal) { Set(diagonal); }
  /// The rows r0, r1 and r2.
  KvGeMatrix3X3(const KvGeVector3& r0, const KvGeVector3& r1, const KvGeVector3& r2) { Set(r0, r1, r2); }
  /// Copies the elements.
  KvGeMatrix3X3(const KvGeMatrix3X3&) = default;
  /// Copies the elements.
  KvGeMatrix3X3& operator=(const KvGeMatrix3X3&) = default;
  /// The destructor (the matrices are polymorphic).
  virtual ~KvGeMatrix3X3();

  /// The element handed out for an index out of range.
  static double m_vDummy;

  using MatrixBase::Set;
  /// a, b and c on the diagonal, 0 elsewhere.
  KvGeMatrix3X3& Set(double a, double b, double c);
  /// The elements in row order.
  KvGeMatrix3X3& Set(double m00, double m01, double m02, double m10, double m11, double m12, double m20, double m21,
                     double m22);
  /// The rows r0, r1 and r2.
  KvGeMatrix3X3& Set(const KvGeVector3& r0, const KvGeVector3& r1, const KvGeVector3& r2);

  /// Without row i and column j; an index >= 3 drops nothing on that side (the last row or
  /// column of the 2x2 result is then cut off).
  KvGeMatrix2X2 SubMatrix2X2(unsigned i, unsigned j) const { return SubMatrix<KvGeMatrix2X2>(i, j); }
  /// Writes m into the elements outside row i and column j; nothing when i or j >= 3.
  KvGeMatrix3X3& SetSubMatrix2X2(const KvGeMatrix2X2& m, unsigned i, unsigned j) { return SetSubMatrix(m, i, j); }
};

/// A 4x4 matrix of doubles, row by row (the homogeneous transformations of space); elements equal within 0.001.
class KVGE_API KvGeMatrix4X4 : public KvGeDetail::MatrixBase<4, KvGeMatrix4X4, KvGeVector4> {
 public:
  /// The zero matrix.
  KvGeMatrix4X4() = default;
  /// s on the diagonal, 0 elsewhere.
  explicit KvGeMatrix4X4(double s) { Set(s); }
  /// a, b, c and d on the diagonal.
  KvGeMatrix4X4(double a, double b, double c, double d) { Set(a, b, c, d); }
  /// The elements in row order.
  KvGeMatrix4X4(double m00, double m01, double m02, double m03, double m10, double m11, double m12, double m13,
                double m20, double m21, double m22, double m23, double m30, double m31, double m32, double m33) {
    Set(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33);
  }
  /// The vector's components on the diagonal.
  explicit KvGeMatrix4X4(const KvGeVector4& diagonal) { Set(diagonal); }
  /// The rows r0 to r3.
  KvGeMatrix4X4(const KvGeVector4& r0, const KvGeVector4& r1, const KvGeVector4& r2, const KvGeVector4& r3) {
    Set(r0, r1, r2, r3);
  }
  /// Copies the elements.
  KvGeMatrix4X4(const KvGeMatrix4X4&) = default;
  /// Copies the elements.
  KvGeMatrix4X4& operator=(const KvGeMatrix4X4&) = default;
  /// The destructor (the matrices are polymorphic).
  virtual ~KvGeMatrix4X4();

  /// The element handed out for an index out of range.
  static double m_vDummy;

  using MatrixBase::Set;
  /// a, b, c and d on the diagonal, 0 elsewhere.
  KvGeMatrix4X4& Set(double a, double b, double c, double d);
  /// The elements in row order.
  KvGeMatrix4X4& Set(double m00, double m01, double m02, double m03, double m10, double m11, double m12, double m13,
                     double m20, double m21, double m22, double m23, double m30, double m31, double m32, double m33);
  /// The rows r0 to r3.
  KvGeMatrix4X4& Set(const KvGeVector4& r0, const KvGeVector4& r1, const KvGeVector4& r2, const KvGeVector4& r3);

  /// Element (i, j); an index >= 4 reads 0.0, as Element does.
  double GetMember(unsigned i, unsigned j) const { return Element(i, j); }
  /// Without row i and column j; an index >= 4 drops nothing on that side (the last row or column of the 3x3 result is
  /// then cut off).
  KvGeMatrix3X3 SubMatrix3X3(unsigned i, unsigned j) const { return SubMatrix<KvGeMatrix3X3>(i, j); }
  /// Writes m into the elements outside row i and column j; nothing when i or j >= 4.
  KvGeMatrix4X4& SetSubMatrix3X3(const KvGeMatrix3X3& m, unsigned i, unsigned j) { return SetSubMatrix(m, i, j); }
  /// The 16 elements in row order.
  void ConvertToPmat(double* out) const;
  /// The 16 elements in column order, out[i * 4 + j] = M(j, i), for consumers of column-major
  /// matrices.
  void ConvertToPmat4x4(double* out) const;
};

static_assert(sizeof(KvGeMatrix2X2) == sizeof(void*) + 4 * sizeof(double), "KvGeMatrix2X2 layout");
static_assert(sizeof(KvGeMatrix3X3) == sizeof(void*) + 9 * sizeof(double), "KvGeMatrix3X3 layout");
static_assert(sizeof(KvGeMatrix4X4) == sizeof(void*) + 16 * sizeof(double), "KvGeMatrix4X4 layout");

/// Exported constants, built once.
KVGE_API const KvGeMatrix4X4& KvGeMatrix4X4_Identity();
/// The 4x4 zero matrix, built once.
KVGE_API const KvGeMatrix4X4& KvGeMatrix4X4_Zero();

/// The determinant of the 3x3 matrix with rows a, b, c.
KVGE_API double Determinate(const KvGeVector3& a, const KvGeVector3& b, const KvGeVector3& c);
/// A vector orthogonal to a, b and c: component k is (-1)^(k + 1) times the determinant of the
/// 3x3 matrix of rows a, b, c without column k, so that Determinate(a, b, c, Normal(a, b, c)) is
/// the squared length of the result, never negative.
KVGE_API KvGeVector4 Normal(const KvGeVector4& a, const KvGeVector4& b, const KvGeVector4& c);
/// The determinant of the 4x4 matrix with rows a, b, c, d.
KVGE_API double Determinate(const KvGeVector4& a, const KvGeVector4& b, const KvGeVector4& c, const KvGeVector4& d);

/// Row vector times matrix, and the solution of x x M = v; declared with the vectors.
template <unsigned N, class V>
template <class M>
V KvGeDetail::VectorBase<N, V>::Times(const M& m) const {
  V r;
  for (unsigned j = 0; j < N; ++j) {
    double s = 0.0;
    for (unsigned i = 0; i < N; ++i) s += (*this)[i] * m.At(i, j);
    r[j] = s;
  }
  return r;
}

template <unsigned N, class V>
template <class M>
V KvGeDetail::VectorBase<N, V>::Over(const M& m) const {
  V r(this->Self());
  m.Solve(r, r);
  return r;
}

/// Writes the rows, "[[a, b], [c, d]]"; the modelling matrices print as their matrix.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeMatrix2X2& v);
/// Writes the rows of the 3x3 matrix, as for the 2x2 one.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeMatrix3X3& v);
/// Writes the rows of the 4x4 matrix, as for the 2x2 one.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeMatrix4X4& v);
