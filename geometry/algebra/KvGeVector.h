#pragma once
// Row vectors of 2, 3 and 4 doubles: KvGeVector2 (x, y), KvGeVector3 (x, y, z) and
// KvGeVector4 (x, y, z, w).
//
// The three classes are one family. Every member they share is written once in
// KvGeVectorBase<N, V>, which loops over the components; the named classes add their
// constructors, their component setters and the few members that only one size has.
//
// Tolerances: operator== compares the sum of squared component differences with 1e-6 (a
// distance of at most 0.001, inclusive) and IsEqualTo(v, eps) with eps * eps, so neither takes
// a square root. Normalize treats a vector no longer than 0.001 as having no direction and
// leaves it unchanged. Division by exactly 0 leaves the vector unchanged, deliberately, in
// place of an error. A component index out of range reads 0.0 and writes to a scratch double
// that belongs to no vector.

#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtCompare.h"

#include <cmath>

class KvGeVector2;
class KvGeVector3;
class KvGeVector4;

namespace KvGeDetail {

// The named components of each size, with a table that reaches them by index.
template <unsigned N>
struct VectorData;

template <>
struct VectorData<2> {
  double x, y;
  constexpr VectorData(double a, double b) : x(a), y(b) {}
  static constexpr double VectorData::*kAt[2] = {&VectorData::x, &VectorData::y};
};

template <>
struct VectorData<3> {
  double x, y, z;
  constexpr VectorData(double a, double b, double c) : x(a), y(b), z(c) {}
  static constexpr double VectorData::*kAt[3] = {&VectorData::x, &VectorData::y, &VectorData::z};
};

template <>
struct VectorData<4> {
  double x, y, z, w;
  constexpr VectorData(double a, double b, double c, double d) : x(a), y(b), z(c), w(d) {}
  static constexpr double VectorData::*kAt[4] = {&VectorData::x, &VectorData::y, &VectorData::z, &VectorData::w};
};

template <unsigned N, class V>
class VectorBase : public VectorData<N> {
  using Data = VectorData<N>;

 public:
  using Data::Data;

  unsigned Dim() const { return N; }

  // Component i without a range check; i < N is the caller's promise.
  double& operator[](unsigned i) { return this->*Data::kAt[i]; }
  double operator[](unsigned i) const { return this->*Data::kAt[i]; }

  V& Set(double s) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] = s;
    return Self();
  }

  // Component i; an index >= N reads 0.0 and writes to the scratch double.
  double& Element(unsigned i) { return i < N ? (*this)[i] : Scratch(); }
  double Element(unsigned i) const { return i < N ? (*this)[i] : 0.0; }
  double& operator()(unsigned i) { return Element(i); }
  double operator()(unsigned i) const { return Element(i); }

  V& operator+=(const V& o) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] += o[i];
    return Self();
  }
  V& operator-=(const V& o) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] -= o[i];
    return Self();
  }
  V& operator*=(double s) {
    for (unsigned i = 0; i < N; ++i) (*this)[i] *= s;
    return Self();
  }
  // Multiplies by 1 / s; s exactly 0 leaves the vector unchanged.
  V& operator/=(double s) {
    if (s != 0.0) *this *= 1.0 / s;
    return Self();
  }
  // Component-wise minimum and maximum; a tie takes the argument's component.
  V& operator&=(const V& o) {
    for (unsigned i = 0; i < N; ++i)
      if (o[i] <= (*this)[i]) (*this)[i] = o[i];
    return Self();
  }
  V& operator|=(const V& o) {
    for (unsigned i = 0; i < N; ++i)
      if (o[i] >= (*this)[i]) (*this)[i] = o[i];
    return Self();
  }
  V& Negate() {
    for (unsigned i = 0; i < N; ++i) (*this)[i] = -(*this)[i];
    return Self();
  }

  V operator+(const V& o) const { return V(Self()) += o; }
  V operator-(const V& o) const { return V(Self()) -= o; }
  V operator*(double s) const { return V(Self()) *= s; }
  V operator/(double s) const { return V(Self()) /= s; }
  V operator&(const V& o) const { return V(Self()) &= o; }
  V operator|(const V& o) const { return V(Self()) |= o; }
  V operator-() const { return V(Self()).Negate(); }
  friend V operator*(double s, const V& v) { return v * s; }

  // Dot product.
  double operator*(const V& o) const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) r += (*this)[i] * o[i];
    return r;
  }

  double DistanceSqr(const V& o) const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) {
      const double d = (*this)[i] - o[i];
      r += d * d;
    }
    return r;
  }
  // 1 when the squared distance is <= eps * eps.
  int IsEqualTo(const V& o, double eps = kKvGeLinearTol) const { return DistanceSqr(o) <= eps * eps ? 1 : 0; }
  // 1 when the squared distance is <= 1e-6.
  int operator==(const V& o) const { return DistanceSqr(o) <= kKvGeLinearTolSqr ? 1 : 0; }
  int operator!=(const V& o) const { return DistanceSqr(o) <= kKvGeLinearTolSqr ? 0 : 1; }
  int IsZeroLength(double eps = kKvGeLinearTol) const { return LengthSqr() <= eps * eps ? 1 : 0; }
  int IsUnitLength(double eps = kKvGeLinearTol) const { return IsEqual(Length(), 1.0, eps); }

  double LengthSqr() const { return *this * Self(); }
  double Length() const { return std::sqrt(LengthSqr()); }
  double Norm2() const { return Length(); }
  double Norm1() const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) r += std::fabs((*this)[i]);
    return r;
  }
  double NormInfinity() const {
    double r = 0.0;
    for (unsigned i = 0; i < N; ++i) {
      const double a = std::fabs((*this)[i]);
      if (a > r) r = a;
    }
    return r;
  }
  // Scales to length 1 and returns 1; a vector whose length is within 0.001 of 0 stays as it
  // is and 0 is returned.
  int Normalize() {
    const double len = Length();
    if (IsEqual(len, 0.0, kKvGeLinearTol)) return 0;
    *this *= 1.0 / len;
    return 1;
  }
  V Normalized() const {
    V r(Self());
    r.Normalize();
    return r;
  }

 protected:
  V& Self() { return static_cast<V&>(*this); }
  const V& Self() const { return static_cast<const V&>(*this); }
  static double& Scratch() {
    thread_local double scratch;
    scratch = 0.0;
    return scratch;
  }
};

}  // namespace KvGeDetail

class KvGeMatrix2X2;
class KvGeMatrix3X3;
class KvGeMatrix4X4;

class KVGE_API KvGeVector2 : public KvGeDetail::VectorBase<2, KvGeVector2> {
 public:
  KvGeVector2() : VectorBase(0.0, 0.0) {}
  explicit KvGeVector2(double s) : VectorBase(s, s) {}
  KvGeVector2(double x_, double y_) : VectorBase(x_, y_) {}
  KvGeVector2(const KvGeVector2&) = default;
  KvGeVector2& operator=(const KvGeVector2&) = default;
  virtual ~KvGeVector2();

  using VectorBase::Set;
  KvGeVector2& Set(double x_, double y_) {
    x = x_;
    y = y_;
    return *this;
  }
};

class KVGE_API KvGeVector3 : public KvGeDetail::VectorBase<3, KvGeVector3> {
 public:
  KvGeVector3() : VectorBase(0.0, 0.0, 0.0) {}
  explicit KvGeVector3(double s) : VectorBase(s, s, s) {}
  KvGeVector3(double x_, double y_, double z_) : VectorBase(x_, y_, z_) {}
  KvGeVector3(const KvGeVector3&) = default;
  KvGeVector3& operator=(const KvGeVector3&) = default;
  virtual ~KvGeVector3();

  using VectorBase::Set;
  KvGeVector3& Set(double x_, double y_, double z_) {
    x = x_;
    y = y_;
    z = z_;
    return *this;
  }

  // The two components other than component k, in order; k >= 3 gives (x, y).
  KvGeVector2 SubVector2(unsigned k) const;
  // Writes v into the two components other than k, in order; k >= 3 writes x and y.
  KvGeVector3& SetSubVector2(const KvGeVector2& v, unsigned k);
};

class KVGE_API KvGeVector4 : public KvGeDetail::VectorBase<4, KvGeVector4> {
 public:
  KvGeVector4() : VectorBase(0.0, 0.0, 0.0, 0.0) {}
  explicit KvGeVector4(double s) : VectorBase(s, s, s, s) {}
  KvGeVector4(double x_, double y_, double z_, double w_) : VectorBase(x_, y_, z_, w_) {}
  KvGeVector4(const KvGeVector4&) = default;
  KvGeVector4& operator=(const KvGeVector4&) = default;
  virtual ~KvGeVector4();

  using VectorBase::Set;
  KvGeVector4& Set(double x_, double y_, double z_, double w_) {
    x = x_;
    y = y_;
    z = z_;
    w = w_;
    return *this;
  }

  // The three components other than component k, in order; k >= 4 gives (x, y, z).
  KvGeVector3 SubVector3(unsigned k) const;
  // Writes v into the three components other than k, in order; k >= 4 writes x, y and z.
  KvGeVector4& SetSubVector3(const KvGeVector3& v, unsigned k);
};

// A virtual destructor followed by the components: the layout callers rely on.
static_assert(sizeof(KvGeVector2) == sizeof(void*) + 2 * sizeof(double), "KvGeVector2 layout");
static_assert(sizeof(KvGeVector3) == sizeof(void*) + 3 * sizeof(double), "KvGeVector3 layout");
static_assert(sizeof(KvGeVector4) == sizeof(void*) + 4 * sizeof(double), "KvGeVector4 layout");

// (-y, x): v turned a quarter turn counter-clockwise.
inline KvGeVector2 Normal(const KvGeVector2& v) { return KvGeVector2(-v.y, v.x); }
// a.x * b.y - a.y * b.x.
inline double Determinate(const KvGeVector2& a, const KvGeVector2& b) { return a.x * b.y - a.y * b.x; }
// The cross product a x b.
inline KvGeVector3 Normal(const KvGeVector3& a, const KvGeVector3& b) {
  return KvGeVector3(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
}
