#pragma once
/// @file
/// Row vectors of 2, 3 and 4 doubles: KvGeVector2 (x, y), KvGeVector3 (x, y, z) and
/// KvGeVector4 (x, y, z, w).
///
/// The three classes are one family. Every member they share is written once in
/// KvGeVectorBase<N, V>, which loops over the components; the named classes add their
/// constructors, their component setters and the few members that only one size has.
///
/// Tolerances: operator== compares the sum of squared component differences with 1e-6 (a
/// distance of at most 0.001, inclusive) and IsEqualTo(v, eps) with eps * eps, so neither takes
/// a square root. Normalize treats a vector no longer than 0.001 as having no direction and
/// leaves it unchanged. Division by exactly 0 leaves the vector unchanged, deliberately, in
/// place of an error. A component index out of range reads 0.0 and writes to a scratch double
/// that belongs to no vector.

/// \file
/// Non-finite input and range: Length and the norms propagate NaN and infinities; Normalize returns
/// 0 and leaves the vector unchanged when a component is not finite. Length and Normalize scale by
/// the largest component before squaring, so they do not overflow for any finite vector. See
/// docs/non-finite-policy.md.

#include <iosfwd>

#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtCompare.h"
#include "geometry/algebra/KvGeCoordBase.h"

class KvGeVector2;
class KvGeVector3;
class KvGeVector4;
class KvGeMatrix2X2;
class KvGeMatrix3X3;
class KvGeMatrix4X4;

namespace KvGeDetail {

/// The square matrix that multiplies a vector of each size.
template <unsigned N>
struct MatrixOf;
template <>
struct MatrixOf<2> {
  using type = KvGeMatrix2X2;
};
template <>
struct MatrixOf<3> {
  using type = KvGeMatrix3X3;
};
template <>
struct MatrixOf<4> {
  using type = KvGeMatrix4X4;
};

/// The members every vector has (N components, V the vector class): arithmetic, the products with the square matrix of
/// its size, and equality within 0.001 (squared distance at most 1e-6).
template <unsigned N, class V>
class VectorBase : public CoordBase<N, V, BadIndexRead::kZero> {
  using Base = CoordBase<N, V, BadIndexRead::kZero>;
  using Matrix = typename MatrixOf<N>::type;

 public:
  using Base::Base;
  using Base::operator*;
  using Base::operator-;

  /// Every component s.
  V& Set(double s) {
    this->SetAll(s);
    return this->Self();
  }

  /// Adds o component by component.
  V& operator+=(const V& o) {
    this->AddCoords(o);
    return this->Self();
  }
  /// Subtracts o component by component.
  V& operator-=(const V& o) {
    this->SubCoords(o);
    return this->Self();
  }
  /// Component-wise minimum (&) and maximum (|); a tie takes the argument's component.
  V& operator&=(const V& o) {
    this->MinCoords(o);
    return this->Self();
  }
  /// Component-wise maximum; a tie takes the argument's component.
  V& operator|=(const V& o) {
    this->MaxCoords(o);
    return this->Self();
  }
  /// The sum.
  V operator+(const V& o) const { return V(this->Self()) += o; }
  /// The difference.
  V operator-(const V& o) const { return V(this->Self()) -= o; }
  /// The component-wise minimum.
  V operator&(const V& o) const { return V(this->Self()) &= o; }
  /// The component-wise maximum.
  V operator|(const V& o) const { return V(this->Self()) |= o; }

  /// Row vector times matrix: r(j) = sum over i of v(i) * M(i, j). Needs KvGeMatrix.h.
  V operator*(const Matrix& m) const { return Times(m); }
  /// this = this x m.
  V& operator*=(const Matrix& m) { return this->Self() = Times(m); }
  using Base::operator*=;
  /// The solution x of x x M = v; a singular M leaves the vector unchanged. Needs KvGeMatrix.h.
  V operator/(const Matrix& m) const { return Over(m); }
  /// this = the solution x of x x m = this; a singular m leaves the vector unchanged.
  V& operator/=(const Matrix& m) { return this->Self() = Over(m); }
  using Base::operator/;
  using Base::operator/=;

  /// 1 when the squared distance is <= eps * eps.
  int IsEqualTo(const V& o, double eps = kKvGeLinearTol) const { return this->DistanceSqr(o) <= eps * eps ? 1 : 0; }
  /// 1 when the squared distance is <= 1e-6.
  int operator==(const V& o) const { return this->DistanceSqr(o) <= kKvGeLinearTolSqr ? 1 : 0; }
  /// 1 when the squared distance exceeds 1e-6.
  int operator!=(const V& o) const { return this->DistanceSqr(o) <= kKvGeLinearTolSqr ? 0 : 1; }
  /// The same comparisons with both operands of the derived type, so that C++20 finds no equally
  /// good reversed candidate.
  friend int operator==(const V& a, const V& b) { return static_cast<const VectorBase&>(a).operator==(b); }
  /// The negation of the operator== above, both operands of the derived type.
  friend int operator!=(const V& a, const V& b) { return static_cast<const VectorBase&>(a).operator!=(b); }

 protected:
  /// This row vector times m.
  template <class M>
  V Times(const M& m) const;
  /// The solution x of x x m = this; this unchanged when m is singular.
  template <class M>
  V Over(const M& m) const;
};

}  // namespace KvGeDetail

/// A vector of two doubles (x, y), a row vector for the 2x2 matrices.
class KVGE_API KvGeVector2 : public KvGeDetail::VectorBase<2, KvGeVector2> {
 public:
  /// (0, 0).
  KvGeVector2() : VectorBase(0.0, 0.0) {}
  /// (s, s).
  explicit KvGeVector2(double s) : VectorBase(s, s) {}
  /// (x, y).
  KvGeVector2(double x_, double y_) : VectorBase(x_, y_) {}
  /// Copies the components.
  KvGeVector2(const KvGeVector2&) = default;
  /// Copies the components.
  KvGeVector2& operator=(const KvGeVector2&) = default;
  virtual ~KvGeVector2();

  /// The component handed out for an index out of range.
  static double m_vDummy;

  using VectorBase::Set;
  /// (x, y).
  KvGeVector2& Set(double x_, double y_) {
    x = x_;
    y = y_;
    return *this;
  }
};

/// A vector of three doubles (x, y, z), a row vector for the 3x3 matrices.
class KVGE_API KvGeVector3 : public KvGeDetail::VectorBase<3, KvGeVector3> {
 public:
  /// (0, 0, 0).
  KvGeVector3() : VectorBase(0.0, 0.0, 0.0) {}
  /// (s, s, s).
  explicit KvGeVector3(double s) : VectorBase(s, s, s) {}
  /// (x, y, z).
  KvGeVector3(double x_, double y_, double z_) : VectorBase(x_, y_, z_) {}
  /// Copies the components.
  KvGeVector3(const KvGeVector3&) = default;
  /// Copies the components.
  KvGeVector3& operator=(const KvGeVector3&) = default;
  virtual ~KvGeVector3();

  /// The component handed out for an index out of range.
  static double m_vDummy;

  using VectorBase::Set;
  /// (x, y, z).
  KvGeVector3& Set(double x_, double y_, double z_) {
    x = x_;
    y = y_;
    z = z_;
    return *this;
  }

  /// The two components other than component k, in order; k >= 3 gives (x, y).
  KvGeVector2 SubVector2(unsigned k) const;
  /// Writes v into the two components other than k, in order; k >= 3 writes x and y.
  KvGeVector3& SetSubVector2(const KvGeVector2& v, unsigned k);
};

/// A vector of four doubles (x, y, z, w), a row vector for the 4x4 matrices and the homogeneous form of a space point.
class KVGE_API KvGeVector4 : public KvGeDetail::VectorBase<4, KvGeVector4> {
 public:
  /// (0, 0, 0, 0).
  KvGeVector4() : VectorBase(0.0, 0.0, 0.0, 0.0) {}
  /// (s, s, s, s).
  explicit KvGeVector4(double s) : VectorBase(s, s, s, s) {}
  /// (x, y, z, w).
  KvGeVector4(double x_, double y_, double z_, double w_) : VectorBase(x_, y_, z_, w_) {}
  /// Copies the components.
  KvGeVector4(const KvGeVector4&) = default;
  /// Copies the components.
  KvGeVector4& operator=(const KvGeVector4&) = default;
  virtual ~KvGeVector4();

  /// The component handed out for an index out of range.
  static double m_vDummy;

  using VectorBase::Set;
  /// (x, y, z, w).
  KvGeVector4& Set(double x_, double y_, double z_, double w_) {
    x = x_;
    y = y_;
    z = z_;
    w = w_;
    return *this;
  }

  /// The three components other than component k, in order; k >= 4 gives (x, y, z).
  KvGeVector3 SubVector3(unsigned k) const;
  /// Writes v into the three components other than k, in order; k >= 4 writes x, y and z.
  KvGeVector4& SetSubVector3(const KvGeVector3& v, unsigned k);
};

// A virtual destructor followed by the components: the layout callers rely on.
static_assert(sizeof(KvGeVector2) == sizeof(void*) + 2 * sizeof(double), "KvGeVector2 layout");
static_assert(sizeof(KvGeVector3) == sizeof(void*) + 3 * sizeof(double), "KvGeVector3 layout");
static_assert(sizeof(KvGeVector4) == sizeof(void*) + 4 * sizeof(double), "KvGeVector4 layout");

/// (-y, x): v turned a quarter turn counter-clockwise.
inline KvGeVector2 Normal(const KvGeVector2& v) { return KvGeVector2(-v.y, v.x); }
/// a.x * b.y - a.y * b.x.
inline double Determinate(const KvGeVector2& a, const KvGeVector2& b) { return a.x * b.y - a.y * b.x; }
/// The cross product a x b.
inline KvGeVector3 Normal(const KvGeVector3& a, const KvGeVector3& b) {
  return KvGeVector3(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
}

/// Writes "(x, y)", "(x, y, z)" or "(x, y, z, w)" with the stream's number format.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeVector2& v);
/// Writes "(x, y, z)" with the stream's number format.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeVector3& v);
/// Writes "(x, y, z, w)" with the stream's number format.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeVector4& v);
