#pragma once
/// @file
/// Internal: the rules that 2D and 3D points share, written once.
///
/// A point is homogeneous: its coordinates and a flag m_bInfinite (non-zero for a point at
/// infinity, that is the direction of its coordinates with weight 0). Where two points meet, the
/// flag decides:
///
///   operator   same kind              left infinite, right ordinary   left ordinary, right infinite
///   a + b      coordinate sums        a                               b
///   a - b      coordinate differences a                               -b (infinite)
///   a & b      coordinate minima      b (the ordinary one)            a (the ordinary one)
///   a | b      coordinate maxima      a (the infinite one)            b (the infinite one)
///
/// so an infinite point absorbs ordinary ones under + and -, loses under the minimum and wins
/// under the maximum. Same kind means both flags zero or both non-zero; a combined result keeps
/// the left flag.
///
/// Equality compares the squared distance with tol * tol (operator== with 1e-6: a distance of at
/// most 0.001, inclusive, on the distance and not per coordinate) and demands the same kind.
/// OutCode sets, for each axis k, bit 1 << 2k when the coordinate is below min by more than tol
/// and bit 2 << 2k when it is above max by more than tol: a point within tol outside counts as
/// inside.

#include <cmath>

#include "basics/KvGeTolerance.h"
#include "basics/companion/KvBtCompare.h"
#include "geometry/algebra/KvGeCoordBase.h"

namespace KvGeDetail {

/// The rules that plane and space points share (N coordinates, P the named point class): the flag m_bInfinite of a
/// point at infinity, arithmetic with the flag rules, equality within 0.001 (inclusive, on the distance) between points
/// of the same kind, and the region code against a box.
template <unsigned N, class P>
class PointBase : public CoordBase<N, P, BadIndexRead::kDummy> {
  using Base = CoordBase<N, P, BadIndexRead::kDummy>;

 public:
  /// A point of the given flag and coordinates.
  template <class... C>
  constexpr PointBase(int infinite, C... coords) : Base(coords...), m_bInfinite(infinite) {}

  /// 1 when both are ordinary or both are at infinity.
  int IsSameKind(const P& o) const { return (m_bInfinite != 0) == (o.m_bInfinite != 0) ? 1 : 0; }

  /// The coordinate sums for the same kind; an infinite point absorbs an ordinary one (the result keeps the infinite
  /// operand).
  P& operator+=(const P& o) {
    if (IsSameKind(o))
      this->AddCoords(o);
    else if (!m_bInfinite)
      this->Self() = o;
    return this->Self();
  }
  /// The coordinate differences for the same kind; an infinite left side stays, an infinite right side gives -o.
  P& operator-=(const P& o) {
    if (IsSameKind(o)) {
      this->SubCoords(o);
    } else if (!m_bInfinite) {
      this->Self() = o;
      this->Negate();
    }
    return this->Self();
  }
  /// The coordinate minima for the same kind; otherwise the ordinary operand.
  P& operator&=(const P& o) {
    if (IsSameKind(o))
      this->MinCoords(o);
    else if (m_bInfinite)
      this->Self() = o;
    return this->Self();
  }
  /// The coordinate maxima for the same kind; otherwise the infinite operand.
  P& operator|=(const P& o) {
    if (IsSameKind(o))
      this->MaxCoords(o);
    else if (!m_bInfinite)
      this->Self() = o;
    return this->Self();
  }
  /// The sum, as operator+=.
  P operator+(const P& o) const { return P(this->Self()) += o; }
  /// The difference, as operator-=.
  P operator-(const P& o) const { return P(this->Self()) -= o; }
  /// The minimum, as operator&=.
  P operator&(const P& o) const { return P(this->Self()) &= o; }
  /// The maximum, as operator|=.
  P operator|(const P& o) const { return P(this->Self()) |= o; }
  using Base::operator-;

  /// 1 when the distance is at most tol (squared distance <= tol * tol, inclusive) and the kinds agree.
  int IsEqualTo(const P& o, double tol = kKvGeLinearTol) const {
    return (this->DistanceSqr(o) <= tol * tol && IsSameKind(o)) ? 1 : 0;
  }
  /// 1 when the distance is at most 0.001 (squared distance <= 1e-6, inclusive) and the kinds agree.
  int operator==(const P& o) const { return (this->DistanceSqr(o) <= kKvGeLinearTolSqr && IsSameKind(o)) ? 1 : 0; }
  /// The negation of operator==.
  int operator!=(const P& o) const { return (*this == o) ? 0 : 1; }
  /// The same comparisons with both operands of the derived type, so that C++20 finds no equally
  /// good reversed candidate.
  friend int operator==(const P& a, const P& b) { return static_cast<const PointBase&>(a).operator==(b); }
  /// The negation of the operator== above, both operands of the derived type.
  friend int operator!=(const P& a, const P& b) { return static_cast<const PointBase&>(a).operator!=(b); }

  /// Bit 1 << 2k when coordinate k is below min by more than tol, bit 2 << 2k when above max by more than tol: a point
  /// within tol outside counts as inside.
  int OutCode(const P& min, const P& max, double tol = kKvGeLinearTol) const {
    int code = 0;
    for (unsigned k = 0; k < N; ++k) {
      if (IsLess((*this)[k], min[k], tol)) code |= 1 << (2 * k);
      if (IsGreater((*this)[k], max[k], tol)) code |= 2 << (2 * k);
    }
    return code;
  }

  /// Non-zero for a point at infinity (a direction with weight 0).
  int m_bInfinite;

 protected:
  /// Takes the coordinates of a homogeneous vector of N + 1 components: divided by the weight
  /// (as a multiplication by 1 / w) when the weight is not within 0.001 of 0, else kept as a
  /// direction with the flag set.
  template <class V>
  void SetHomogeneous(const V& v) {
    const double w = v[N];
    if (IsEqual(w, 0.0, kKvGeLinearTol)) {
      for (unsigned i = 0; i < N; ++i) (*this)[i] = v[i];
      m_bInfinite = 1;
    } else {
      const double f = 1.0 / w;
      for (unsigned i = 0; i < N; ++i) (*this)[i] = v[i] * f;
      m_bInfinite = 0;
    }
  }
  /// The coordinates with the weight appended: 0 for a point at infinity, 1 otherwise.
  template <class V>
  V Homogeneous() const {
    V v;
    for (unsigned i = 0; i < N; ++i) v[i] = (*this)[i];
    v[N] = m_bInfinite ? 0.0 : 1.0;
    return v;
  }
};

/// 1 when every coordinate of p is finite.
template <class P>
bool IsFinitePoint(const P& p) {
  for (unsigned i = 0; i < p.Dim(); ++i)
    if (!std::isfinite(p[i])) return false;
  return true;
}

/// Foot of p on the infinite line through a and b: a when the line is no longer than 0.001
/// (squared length <= 1e-6); not clamped to the segment.
template <class P>
P ProjectOnLine(const P& a, const P& b, const P& p) {
  const P d = b - a;
  const double s = d * d;
  if (s <= kKvGeLinearTolSqr) return a;
  const double t = ((p - a) * d) / s;
  return a + d * t;
}

/// Where the foot of p falls on the segment a-b: -1 before a, 1 at a, 0 strictly between, 2 at
/// b, -2 beyond b (ends within 0.001 along the segment); 0 for a segment no longer than 0.001
/// and for a NaN coordinate. The distance of p from the line is not looked at.
template <class P>
int BetweenOnSegment(const P& a, const P& b, const P& p) {
  const P d = b - a;
  const double len = d.Length();
  if (!IsGreater(len, 0.0, kKvGeLinearTol)) return 0;
  const double t = ((p - a) * d) / len;
  if (std::isnan(t)) return 0;  // no position: the answer of a degenerate segment
  int c = KvBtRealCompare(t, 0.0, kKvGeLinearTol);
  if (c < 0) return -1;
  if (c == 0) return 1;
  c = KvBtRealCompare(t, len, kKvGeLinearTol);
  if (c > 0) return -2;
  if (c == 0) return 2;
  return 0;
}

/// The Cohen-Sutherland loop shared by the box and view-volume clippers: code(p) gives a point's
/// region code, step(p1, p2, c1) moves p1 onto the first boundary that c1 names. The segment is
/// rejected (0) when both codes share a bit and accepted (1) when both are 0; when only p2 is
/// outside the ends are exchanged and stay so: the caller gets the segment, not its orientation.
/// The ends are written only on success: a coordinate that is not finite, at the start or
/// after a step (a step that overflows), fails the clip with 0 and leaves both ends as they
/// were, and so does a rejection after steps. A bounded number of passes guards the loop.
template <class P, class Code, class Step>
int CohenSutherland(P& p1, P& p2, Code code, Step step) {
  P a = p1, b = p2;
  for (int pass = 0; pass < 64; ++pass) {
    if (!IsFinitePoint(a) || !IsFinitePoint(b)) return 0;
    int c1 = code(a);
    const int c2 = code(b);
    if (c1 & c2) return 0;
    if (c1 == 0) {
      if (c2 == 0) {
        p1 = a;
        p2 = b;
        return 1;
      }
      const P t = a;
      a = b;
      b = t;
      c1 = c2;
    }
    step(a, b, c1);
  }
  return 0;
}

/// Clipping of p1-p2 to the box min-max with the tolerance 0.001; 1 when a part remains. An end
/// within 0.001 outside the box is not moved. The plane form moves an end as
/// y += (y2 - y1) (X - x1) / (x2 - x1); the space form through the parameter
/// t = (X - x1) / (x2 - x1).
template <class P, unsigned N>
int ClipToBox(P& p1, P& p2, const P& min, const P& max) {
  if (!IsFinitePoint(min) || !IsFinitePoint(max)) return 0;
  const auto code = [&](const P& p) { return p.OutCode(min, max, kKvGeLinearTol); };
  const auto step = [&](P& a, const P& b, int c) {
    for (unsigned k = 0; k < N; ++k) {
      double edge;
      if (c & (1 << (2 * k)))
        edge = min[k];
      else if (c & (2 << (2 * k)))
        edge = max[k];
      else
        continue;
      if constexpr (N == 2) {
        const unsigned o = 1 - k;
        a[o] += (b[o] - a[o]) * (edge - a[k]) / (b[k] - a[k]);
      } else {
        const double t = (edge - a[k]) / (b[k] - a[k]);
        for (unsigned o = 0; o < N; ++o)
          if (o != k) a[o] += (b[o] - a[o]) * t;
      }
      a[k] = edge;
      return;
    }
  };
  return CohenSutherland(p1, p2, code, step);
}

}  // namespace KvGeDetail
