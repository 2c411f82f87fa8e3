#pragma once
/// @file
/// Internal: the members that vectors and points of 2, 3 and 4 components share, written once.
/// CoordBase<N, D, R> holds the named components (x, y, z, w as the size has them) and gives
/// component access, scaling, the dot product, norms and normalisation; D is the named class
/// (vector or point) that derives from it and keeps the static m_vDummy, the double handed out
/// for a component index out of range (a write through a bad index lands there and corrupts no
/// object). R is the family's rule for a const read through a bad index: vectors read 0.0,
/// points read the value of m_vDummy, in the same way as their non-const access hands it out.
/// Every access by index, operator[] included, checks the index; loops over 0 .. N - 1 lose the
/// check to the optimiser.
///
/// Tolerances: IsZeroLength compares the squared length with tol * tol; Normalize treats a
/// length within 0.001 of 0 (inclusive) as no direction and leaves the object unchanged; scaling
/// by 1 / s with s exactly 0 leaves the object unchanged, in place of an error.

#include <cmath>
#include <limits>

#include "basics/KvGeTolerance.h"
#include "basics/companion/KvBtCompare.h"

namespace KvGeDetail {

/// The named components of each size, with a table that reaches them by index.
template <unsigned N>
struct CoordData;

template <>
struct CoordData<2> {
  /// The components.
  double x, y;
  /// The components in order.
  constexpr CoordData(double a, double b) : x(a), y(b) {}
  /// The components by index.
  static constexpr double CoordData::*kAt[2] = {&CoordData::x, &CoordData::y};
};

template <>
struct CoordData<3> {
  /// The components.
  double x, y, z;
  /// The components in order.
  constexpr CoordData(double a, double b, double c) : x(a), y(b), z(c) {}
  /// The components by index.
  static constexpr double CoordData::*kAt[3] = {&CoordData::x, &CoordData::y, &CoordData::z};
};

template <>
struct CoordData<4> {
  /// The components.
  double x, y, z, w;
  /// The components in order.
  constexpr CoordData(double a, double b, double c, double d) : x(a), y(b), z(c), w(d) {}
  /// The components by index.
  static constexpr double CoordData::*kAt[4] = {&CoordData::x, &CoordData::y, &CoordData::z, &CoordData::w};
};

/// What a const access reads for a component index out of range.
enum class BadIndexRead { kZero, kDummy };

/// The members that vectors and points share (N components, D the named class, R the const read
/// through a bad index). The components are the public fields x, y (z, w as the size has them).
/// Component access absorbs a bad index; a length within 0.001 of 0 has no direction.
template <unsigned N, class D, BadIndexRead R>
class CoordBase : public CoordData<N> {
  using Data = CoordData<N>;

 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  /// The components in order.
  using Data::Data;

  /// The number of components, N.
  unsigned Dim() const { return N; }

  /// Component i; an index >= N refers to D::m_vDummy, and its const read follows R.
  double& operator[](unsigned i) { return i < N ? this->*Data::kAt[i] : D::m_vDummy; }
  /// The number of components, N.
  double operator[](unsigned i) const {
    if (i < N) return this->*Data::kAt[i];
    return R == BadIndexRead::kDummy ? D::m_vDummy : 0.0;
  }
  /// Component i, as operator[].
  double& Element(unsigned i) { return (*this)[i]; }
  /// Component i, as operator[].
  double Element(unsigned i) const { return (*this)[i]; }
  /// Component i, as operator[].
  double& operator()(unsigned i) { return (*this)[i]; }
  /// Component i, as operator[].
  double operator()(unsigned i) const { return (*this)[i]; }

  /// Multiplies every component by s.
  D& operator*=(double s) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] *= s;
    return Self();
  }
  /// Multiplies by 1 / s; s exactly 0 leaves the object unchanged.
  D& operator/=(double s) {
    if (s != 0.0) *this *= 1.0 / s;
    return Self();
  }
  /// Negates every component.
  D& Negate() {
    for (unsigned i = 0; i < N; ++i) (*this)[i] = -(*this)[i];
    return Self();
  }
  /// Every component times s.
  D operator*(double s) const { return D(Self()) *= s; }
  /// Every component divided by s; s exactly 0 gives an unchanged copy.
  D operator/(double s) const { return D(Self()) /= s; }
  /// Every component negated.
  D operator-() const { return D(Self()).Negate(); }

  /// Dot product.
  double operator*(const D& o) const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) r += (*this)[i] * o[i];
    return r;
  }
  /// The squared distance to o.
  double DistanceSqr(const D& o) const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) {
      const double d = (*this)[i] - o[i];
      r += d * d;
    }
    return r;
  }

  /// The squared length.
  double LengthSqr() const { return *this * Self(); }
  /// The square root of LengthSqr while that neither overflows nor underflows; beyond, the
  /// components are scaled by the largest one first, so a component of 1e200 has its length.
  double Length() const {
    const double s = LengthSqr();
    if (s <= 1e300 && s >= 1e-300) return std::sqrt(s);
    const double m = NormInfinity();
    if (!(m > 0.0) || m > std::numeric_limits<double>::max()) return std::sqrt(s);  // 0, NaN, infinity
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) {
      const double c = (*this)[i] / m;
      r += c * c;
    }
    return m * std::sqrt(r);
  }
  /// The length (Euclidean norm).
  double Norm2() const { return Length(); }
  /// The sum of the absolute components.
  double Norm1() const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) r += std::fabs((*this)[i]);
    return r;
  }
  /// The largest absolute component.
  double NormInfinity() const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) {
      const double a = std::fabs((*this)[i]);
      if (a > r) r = a;
    }
    return r;
  }
  /// 1 when the squared length is at most tol * tol (inclusive).
  int IsZeroLength(double tol = kKvGeLinearTol) const { return LengthSqr() <= tol * tol ? 1 : 0; }
  /// 1 when the length differs from 1 by no more than tol (inclusive).
  int IsUnitLength(double tol = kKvGeLinearTol) const { return IsEqual(Length(), 1.0, tol); }

  /// Scales to length 1 and returns 1; a length within 0.001 of 0, or a component that is not
  /// finite, leaves it as it is and returns 0.
  int Normalize() {
    const double len = Length();
    if (IsEqual(len, 0.0, kKvGeLinearTol) || !std::isfinite(len)) return 0;
    *this *= 1.0 / len;
    return 1;
  }
  /// A normalized copy (unchanged when the length is within 0.001 of 0).
  D Normalized() const {
    D r(Self());
    r.Normalize();
    return r;
  }

 protected:
  /// Every component s.
  void SetAll(double s) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] = s;
  }
  /// Adds o component by component.
  void AddCoords(const D& o) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] += o[i];
  }
  /// Subtracts o component by component.
  void SubCoords(const D& o) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] -= o[i];
  }
  /// Component-wise minimum and maximum; a tie takes the argument's component.
  void MinCoords(const D& o) {
    for (unsigned i = 0; i < N; ++i)
      if (o[i] <= (*this)[i]) (*this)[i] = o[i];
  }
  /// Component-wise maximum; a tie takes the argument's component.
  void MaxCoords(const D& o) {
    for (unsigned i = 0; i < N; ++i)
      if (o[i] >= (*this)[i]) (*this)[i] = o[i];
  }

  /// This as the named class.
  D& Self() { return static_cast<D&>(*this); }
  /// This as the named class.
  const D& Self() const { return static_cast<const D&>(*this); }
};

/// s * v, the same as v * s.
template <unsigned N, class D, BadIndexRead R>
D operator*(double s, const CoordBase<N, D, R>& v) {
  return static_cast<const D&>(v) * s;
}

}  // namespace KvGeDetail
