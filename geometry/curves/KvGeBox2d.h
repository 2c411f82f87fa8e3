#pragma once
/// @file
/// Axis-aligned boxes: KvGeBox2d (corners KvGePoint2d) and KvGeBox3d (corners KvGePoint3d).
///
/// A box is its two corners Min and Max, carrying the homogeneous flags of the points; union and
/// intersection are the point minimum and maximum operators with their flag rules. The empty box
/// runs from (1e9, ...) to (-1e9, ...), both ordinary; folding points in turns it into their box.
/// Nothing is sorted when corners are set, and there is no emptiness flag: IsEmpty decides.
///
/// Tolerance 0.001 throughout, and each test names its side of the band:
/// - IsEmpty(strict): strict non-zero asks Min.c > Max.c + 0.001 on some axis (a box collapsed
///   to a line or a point is not empty); strict 0 asks Min.c >= Max.c - 0.001 (it is).
/// - IsInside(p, closed): closed non-zero accepts a point up to 0.001 outside the border; closed
///   0 demands more than 0.001 inside.
/// The family shares KvGeDetail::BoxBase<N, B, P>; the named classes add the conversions and the
/// members that take their own point arrays and matrices.

/// \file
/// Non-finite input: IsInside answers 0 for a NaN coordinate; folding a NaN coordinate into a box
/// leaves the bound as it was, since the comparison is false. See docs/non-finite-policy.md.

#include <iosfwd>

#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtCompare.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

class KvGeBox2d;
class KvGeBox3d;
class KvGePoint2dArray;
class KvGePoint3dArray;
class KvGeModMat2d;
class KvGeModMat3d;

namespace KvGeDetail {

/// The members every axis-aligned box has (N axes, B the box class, P its corner point). Tests use 0.001:
/// IsEmpty(strict) and IsInside(p, closed) say which side of the band counts.
template <unsigned N, class B, class P>
class BoxBase {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  /// The empty box, from (1e9, ...) to (-1e9, ...).
  BoxBase() : m_Min(1e9), m_Max(-1e9) {}
  /// The box with the given corners, taken as they are (not sorted).
  BoxBase(const P& min, const P& max) : m_Min(min), m_Max(max) {}

  /// The number of axes, N.
  unsigned Dim() const { return N; }
  /// The minimum corner.
  P& Min() { return m_Min; }
  /// The minimum corner.
  const P& Min() const { return m_Min; }
  /// The maximum corner.
  P& Max() { return m_Max; }
  /// The maximum corner.
  const P& Max() const { return m_Max; }

  /// The empty box.
  B& Set() {
    m_Min = P(1e9);
    m_Max = P(-1e9);
    return Self();
  }
  /// The given corners, taken as they are (not sorted).
  B& Set(const P& min, const P& max) {
    m_Min = min;
    m_Max = max;
    return Self();
  }

  /// Intersection: the larger minima and the smaller maxima.
  B& operator&=(const B& o) {
    m_Min |= o.m_Min;
    m_Max &= o.m_Max;
    return Self();
  }
  /// Union: the smaller minima and the larger maxima.
  B& operator|=(const B& o) {
    m_Min &= o.m_Min;
    m_Max |= o.m_Max;
    return Self();
  }
  /// The intersection: the larger minima and the smaller maxima (may be empty).
  B operator&(const B& o) const { return B(Self()) &= o; }
  /// The union: the smaller minima and the larger maxima.
  B operator|(const B& o) const { return B(Self()) |= o; }

  /// 1 when both corners are equal within tol (inclusive, same kind).
  int IsEqualTo(const B& o, double tol = kKvGeLinearTol) const {
    return (m_Min.IsEqualTo(o.m_Min, tol) && m_Max.IsEqualTo(o.m_Max, tol)) ? 1 : 0;
  }
  /// IsEqualTo with 0.001 (inclusive).
  int operator==(const B& o) const { return IsEqualTo(o, kKvGeLinearTol); }
  /// The negation of operator==.
  int operator!=(const B& o) const { return IsEqualTo(o, kKvGeLinearTol) ? 0 : 1; }
  /// The same comparisons with both operands of the derived type, so that C++20 finds no equally
  /// good reversed candidate.
  friend int operator==(const B& a, const B& b) { return static_cast<const BoxBase&>(a).operator==(b); }
  /// The negation of the operator== above, both operands of the derived type.
  friend int operator!=(const B& a, const B& b) { return static_cast<const BoxBase&>(a).operator!=(b); }

  /// Max - Min.
  P Extents() const { return m_Max - m_Min; }
  /// Max.x - Min.x.
  double XExtent() const { return m_Max.x - m_Min.x; }
  /// Max.y - Min.y.
  double YExtent() const { return m_Max.y - m_Min.y; }

  /// 1 when empty on some axis: strict non-zero asks Min > Max + 0.001 (a box collapsed to a line or a point is not
  /// empty); strict 0 asks Min >= Max - 0.001 (it is).
  int IsEmpty(int strict) const { return IsEmptyOn(N, strict); }
  /// 1 when the intersection with o is empty in the sense of IsEmpty(strict).
  int IsDisjoint(const B& o, int strict) const { return (Self() & o).IsEmpty(strict); }
  /// 1 when p lies inside: closed non-zero accepts a point up to 0.001 outside the border (inclusive), closed 0 demands
  /// more than 0.001 inside.
  int IsInside(const P& p, int closed) const { return IsInsideOn(N, p, closed, kKvGeLinearTol); }
  /// 1 when both corners of o lie inside in the sense of IsInside(p, closed).
  int IsInside(const B& o, int closed) const { return IsInside(o.m_Min, closed) && IsInside(o.m_Max, closed); }

  /// Exchanges Min.c and Max.c on each axis where Min.c > Max.c; the flags stay.
  B& Normalize() {
    for (unsigned k = 0; k < N; ++k)
      if (m_Min[k] > m_Max[k]) {
        const double t = m_Min[k];
        m_Min[k] = m_Max[k];
        m_Max[k] = t;
      }
    return Self();
  }
  /// Folds p in: the smaller minima and the larger maxima, with the point flag rules.
  B& Include(const P& p) {
    m_Min &= p;
    m_Max |= p;
    return Self();
  }
  /// Moves both corners by p.
  B& Shift(const P& p) {
    m_Min += p;
    m_Max += p;
    return Self();
  }
  /// Grows each ordinary corner by d on every axis; an infinite corner is left alone.
  B& Expand(double d) {
    for (unsigned k = 0; k < N; ++k) {
      if (!m_Min.m_bInfinite) m_Min[k] -= d;
      if (!m_Max.m_bInfinite) m_Max[k] += d;
    }
    return Self();
  }
  /// A normalized copy.
  B Normalized() const { return B(Self()).Normalize(); }
  /// A copy with p folded in.
  B Included(const P& p) const { return B(Self()).Include(p); }
  /// A copy moved by p.
  B Shifted(const P& p) const { return B(Self()).Shift(p); }
  /// A copy grown by d.
  B Expanded(double d) const { return B(Self()).Expand(d); }

 protected:
  /// The tests on the first `axes` coordinates (2 for the plan tests of a space box).
  int IsEmptyOn(unsigned axes, int strict) const {
    for (unsigned k = 0; k < axes; ++k)
      if (strict ? IsGreater(m_Min[k], m_Max[k], kKvGeLinearTol) : IsGreaterOrEqual(m_Min[k], m_Max[k], kKvGeLinearTol))
        return 1;
    return 0;
  }
  /// The point test on the first `axes` coordinates with tolerance tol: closed accepts up to tol outside, open demands
  /// more than tol inside.
  int IsInsideOn(unsigned axes, const P& p, int closed, double tol) const {
    for (unsigned k = 0; k < axes; ++k) {
      const int in = closed ? (IsLessOrEqual(m_Min[k], p[k], tol) && IsLessOrEqual(p[k], m_Max[k], tol))
                            : (IsLess(m_Min[k], p[k], tol) && IsLess(p[k], m_Max[k], tol));
      if (!in) return 0;
    }
    return 1;
  }
  /// Corner i takes, on axis k, Min when bit k of i is set and Max otherwise.
  P Corner(unsigned i) const {
    P c = m_Max;
    for (unsigned k = 0; k < N; ++k)
      if (i & (1u << k)) c[k] = m_Min[k];
    return c;
  }
  /// The box of the 2^N corners transformed by m, folded into the empty box.
  template <class M>
  B CornerBox(const M& m) const {
    B r;
    for (unsigned i = 0; i < (1u << N); ++i) r.Include(Corner(i).Transformed(m));
    return r;
  }

  /// This as the named box class.
  B& Self() { return static_cast<B&>(*this); }
  /// This as the named box class.
  const B& Self() const { return static_cast<const B&>(*this); }

  /// The minimum corner.
  P m_Min;
  /// The maximum corner.
  P m_Max;
};

}  // namespace KvGeDetail

/// An axis-aligned box in the plane, corners KvGePoint2d. With strict 0 a box is empty when an
/// axis has an extent of at most 0.001; with strict non-zero only when inverted by more than 0.001.
/// A point is inside up to 0.001 beyond the border (closed) or only more than 0.001 within (open).
class KVGE_API KvGeBox2d : public KvGeDetail::BoxBase<2, KvGeBox2d, KvGePoint2d> {
 public:
  KvGeBox2d() = default;
  /// The box with the given corners, taken as they are.
  KvGeBox2d(const KvGePoint2d& min, const KvGePoint2d& max) : BoxBase(min, max) {}
  /// The plan box: x, y and the flags of the corners.
  explicit KvGeBox2d(const KvGeBox3d& b);
  /// Copies the corners.
  KvGeBox2d(const KvGeBox2d&) = default;
  /// Copies the corners.
  KvGeBox2d& operator=(const KvGeBox2d&) = default;
  virtual ~KvGeBox2d();

  using BoxBase::Set;
  /// The plan box of b: x, y and the flags of the corners.
  KvGeBox2d& Set(const KvGeBox3d& b);
  /// The plan box with an empty z range (1e9 .. -1e9).
  KvGeBox3d Box3d() const;

  using BoxBase::IsInside;
  /// IsInside with the tolerance tol instead of 0.001, same sides of the band.
  int IsInsideTol(const KvGePoint2d& p, int closed, double tol) const { return IsInsideOn(2, p, closed, tol); }
  /// 1 when both corners of b lie inside in the sense of IsInsideTol(p, closed, tol).
  int IsInsideTol(const KvGeBox2d& b, int closed, double tol) const {
    return IsInsideTol(b.m_Min, closed, tol) && IsInsideTol(b.m_Max, closed, tol);
  }

  /// Four ordinary points counter-clockwise from the minimum corner.
  void Points(KvGePoint2dArray& points) const;
  /// Both corners transformed (the box does not stay axis-aligned under a rotation).
  KvGeBox2d& Transform(const KvGeModMat2d& m);
  /// A transformed copy.
  KvGeBox2d Transformed(const KvGeModMat2d& m) const { return KvGeBox2d(*this).Transform(m); }
  /// The box of the four transformed corners; corner i takes x = Min.x when bit 1 of i is set,
  /// else Max.x, and y = Min.y when bit 2 is set, else Max.y.
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const;
};

/// An axis-aligned box in space, corners KvGePoint3d, with plan tests on x and y; the same 0.001 bands as KvGeBox2d.
class KVGE_API KvGeBox3d : public KvGeDetail::BoxBase<3, KvGeBox3d, KvGePoint3d> {
 public:
  KvGeBox3d() = default;
  /// The box with the given corners, taken as they are.
  KvGeBox3d(const KvGePoint3d& min, const KvGePoint3d& max) : BoxBase(min, max) {}
  /// Corners (b.Min.x, b.Min.y, zmin) and (b.Max.x, b.Max.y, zmax) with the flags of b's corners.
  KvGeBox3d(const KvGeBox2d& b, double zmin, double zmax) { Set(b, zmin, zmax); }
  /// Copies the corners.
  KvGeBox3d(const KvGeBox3d&) = default;
  /// Copies the corners.
  KvGeBox3d& operator=(const KvGeBox3d&) = default;
  virtual ~KvGeBox3d();

  using BoxBase::Set;
  /// Corners (b.Min.x, b.Min.y, zmin) and (b.Max.x, b.Max.y, zmax) with the flags of b's corners.
  KvGeBox3d& Set(const KvGeBox2d& b, double zmin, double zmax) {
    m_Min.Set(b.Min(), zmin);
    m_Max.Set(b.Max(), zmax);
    return *this;
  }
  /// The plan box: x, y and the flags of the corners.
  KvGeBox2d Box2d() const { return KvGeBox2d(*this); }
  /// Max.z - Min.z.
  double ZExtent() const { return m_Max.z - m_Min.z; }

  /// The tests on x and y only.
  int IsEmpty2d(int strict) const { return IsEmptyOn(2, strict); }
  /// 1 when the intersection with b is empty on x or y in the sense of IsEmpty2d(strict).
  int IsDisjoint2d(const KvGeBox3d& b, int strict) const { return (*this & b).IsEmpty2d(strict); }
  /// 1 when p lies inside on x and y, as IsInside(p, closed) with 0.001.
  int IsInside2d(const KvGePoint3d& p, int closed) const { return IsInsideOn(2, p, closed, kKvGeLinearTol); }
  /// 1 when both corners of b lie inside on x and y.
  int IsInside2d(const KvGeBox3d& b, int closed) const {
    return IsInside2d(b.m_Min, closed) && IsInside2d(b.m_Max, closed);
  }

  /// Eight ordinary points: the four plan corners counter-clockwise at Min.z, then at Max.z.
  void Points(KvGePoint3dArray& points) const;
  /// Both corners transformed (the box does not stay axis-aligned under a rotation).
  KvGeBox3d& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGeBox3d Transformed(const KvGeModMat3d& m) const { return KvGeBox3d(*this).Transform(m); }
  /// The box of the eight transformed corners; z = Min.z when bit 4 of the corner index is set.
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const;
};

static_assert(sizeof(KvGeBox2d) == sizeof(void*) + 2 * sizeof(KvGePoint2d), "KvGeBox2d layout");
static_assert(sizeof(KvGeBox3d) == sizeof(void*) + 2 * sizeof(KvGePoint3d), "KvGeBox3d layout");

/// Writes "BOX (minx miny, maxx maxy)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeBox2d& v);
/// Writes "BOX3D (minx miny minz, maxx maxy maxz)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeBox3d& v);
