#pragma once
/// @file
/// Intersection records. When two objects (object 0 and object 1) are intersected, each meeting
/// point is kept as a record that knows where it lies on both: the point itself, the crossing
/// sense, an end code per object (-1 at the start of its segment, 0 inside, +1 at the end), the
/// parameter within the segment and the segment index per object, and a number for the producer.
///
/// Records are ordered along an object by segment index (unsigned), then by parameter with the
/// fixed tolerance 0.001: parameters no more than 0.001 apart on one segment compare equal.
/// A NaN parameter sorts after every number on the same segment. kNegInfinity (segment 0,
/// parameter -1e9) sorts before and kPosInfinity (segment 0x7FFFFFFF, parameter 1e9) after every
/// real record. operator== and != of records and parts always answer
/// 0, deliberately: they exist so that the array templates can hold records, which are compared
/// only through Compare0 and Compare1.
///
/// A part is the piece between two records along an object, with the type the calculator gave it
/// (+1 inside, 0 on the boundary, -1 outside). Its tests take a closed flag: a part whose ends
/// compare equal is empty when open and not empty when closed.

/// \file
/// Non-finite input: a NaN parameter sorts after every number and equal to another NaN, so the
/// order stays total; crossing senses saturate instead of overflowing. See docs/non-finite-
/// policy.md.

#include <climits>
#include <cmath>
#include <cstdint>
#include <iosfwd>

#include "basics/KvBtArray.h"
#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtCompare.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

namespace KvGeDetail {

/// The order of records along one object: by segment index (unsigned), then by parameter with
/// the tolerance 0.001. A NaN parameter sorts after every number on its segment and equal to
/// another NaN, so that the order stays total; the tolerant comparison alone would call NaN
/// equal to everything. Code that sorts records of its own in the calculator's place uses it too.
inline int OrderOnObject(std::uint32_t s, double t, std::uint32_t os, double ot) {
  if (s < os) return -1;
  if (s > os) return 1;
  const int c = KvBtRealCompare(t, ot, kKvGeLinearTol);
  if (c != 0) return c;
  const bool nan = std::isnan(t), otherNan = std::isnan(ot);
  return nan == otherNan ? 0 : (nan ? 1 : -1);
}

/// The members every intersection record has (P is the point type, R the record class): the meeting point, the crossing
/// sense, and per object the end code, the parameter and the segment index.
template <class P, class R>
class IntrPointBase : public P {
 public:
  IntrPointBase() = default;
  /// A record at point with the given sense, end codes (-1 start, 0 inside, +1 end), parameters, segment indices and
  /// producer number.
  IntrPointBase(const P& point, int crossSense, int endCode0, int endCode1, double param0, double param1,
                std::uint32_t segment0, std::uint32_t segment1, std::uint32_t info)
      : P(point),
        m_CrossSense(crossSense),
        m_EndCode0(endCode0),
        m_EndCode1(endCode1),
        m_Param0(param0),
        m_Param1(param1),
        m_Segment0(segment0),
        m_Segment1(segment1),
        m_Info(info) {}

  /// Replaces every field, as the constructor of the same arguments.
  R& Set(const P& point, int crossSense, int endCode0, int endCode1, double param0, double param1,
         std::uint32_t segment0, std::uint32_t segment1, std::uint32_t info) {
    return Self() = R(point, crossSense, endCode0, endCode1, param0, param1, segment0, segment1, info);
  }

  /// The crossing sense: the sign with which object 1 crosses object 0 here (0 for a touch).
  int& CrossSense() { return m_CrossSense; }
  /// The crossing sense: the sign with which object 1 crosses object 0 here (0 for a touch).
  int CrossSense() const { return m_CrossSense; }
  /// The end code on object 0: -1 at the start of its segment, 0 inside, +1 at the end.
  int& EndCode0() { return m_EndCode0; }
  /// The end code on object 0: -1 at the start of its segment, 0 inside, +1 at the end.
  int EndCode0() const { return m_EndCode0; }
  /// The end code on object 1: -1 at the start of its segment, 0 inside, +1 at the end.
  int& EndCode1() { return m_EndCode1; }
  /// The end code on object 1: -1 at the start of its segment, 0 inside, +1 at the end.
  int EndCode1() const { return m_EndCode1; }
  /// The parameter within the segment of object 0.
  double& Param0() { return m_Param0; }
  /// The parameter within the segment of object 0.
  double Param0() const { return m_Param0; }
  /// The parameter within the segment of object 1.
  double& Param1() { return m_Param1; }
  /// The parameter within the segment of object 1.
  double Param1() const { return m_Param1; }
  /// The segment index on object 0.
  std::uint32_t& Segment0() { return m_Segment0; }
  /// The segment index on object 0.
  std::uint32_t Segment0() const { return m_Segment0; }
  /// The segment index on object 1.
  std::uint32_t& Segment1() { return m_Segment1; }
  /// The segment index on object 1.
  std::uint32_t Segment1() const { return m_Segment1; }
  /// The number of the producer, stored and handed out as passed.
  std::uint32_t& Info() { return m_Info; }
  /// The number of the producer, stored and handed out as passed.
  std::uint32_t Info() const { return m_Info; }

  /// The crossing count with respect to object 0: CrossSense at a segment end, twice CrossSense
  /// inside a segment, so that a crossing at a shared vertex, reported by both neighbouring
  /// segments, adds up to the same count. A sense of 2^30 or more in size doubles to the end of
  /// the int range (INT_MAX or INT_MIN) instead of overflowing.
  int CutCode0() const { return m_EndCode0 != 0 ? m_CrossSense : Doubled(m_CrossSense); }
  /// The crossing count with respect to object 1, as CutCode0 with EndCode1.
  int CutCode1() const { return m_EndCode1 != 0 ? m_CrossSense : Doubled(m_CrossSense); }

  /// -1, 0 or 1 along object 0: by segment index, then by parameter within 0.001.
  int Compare0(const R& o) const { return Order(m_Segment0, m_Param0, o.m_Segment0, o.m_Param0); }
  /// -1, 0 or 1 along object 1: by segment index, then by parameter within 0.001.
  int Compare1(const R& o) const { return Order(m_Segment1, m_Param1, o.m_Segment1, o.m_Param1); }

  /// Always 0: records are compared only by Compare0 and Compare1.
  int operator==(const R&) const { return 0; }
  /// Always 0, as operator==.
  int operator!=(const R&) const { return 0; }
  /// The same comparisons with both operands of the derived type, so that C++20 finds no equally
  /// good reversed candidate.
  friend int operator==(const R& a, const R& b) { return static_cast<const IntrPointBase&>(a).operator==(b); }
  /// The negation of the operator== above, both operands of the derived type.
  friend int operator!=(const R& a, const R& b) { return static_cast<const IntrPointBase&>(a).operator!=(b); }

 private:
  static int Order(std::uint32_t s, double t, std::uint32_t os, double ot) { return OrderOnObject(s, t, os, ot); }
  R& Self() { return static_cast<R&>(*this); }
  static int Doubled(int v) {
    if (v > INT_MAX / 2) return INT_MAX;
    if (v < INT_MIN / 2) return INT_MIN;
    return 2 * v;
  }

  int m_CrossSense = 0;
  int m_EndCode0 = 0;
  int m_EndCode1 = 0;
  double m_Param0 = 0.0;
  double m_Param1 = 0.0;
  std::uint32_t m_Segment0 = 0;
  std::uint32_t m_Segment1 = 0;
  std::uint32_t m_Info = 0;
};

/// The selectors; on a tie each returns its second argument.
template <class R>
R MinOf0(const R& a, const R& b) {
  return a.Compare0(b) < 0 ? a : b;
}
/// The record that sorts last along object 0 (the second on a tie).
template <class R>
R MaxOf0(const R& a, const R& b) {
  return a.Compare0(b) <= 0 ? b : a;
}
/// The record that sorts first along object 1 (the second on a tie).
template <class R>
R MinOf1(const R& a, const R& b) {
  return a.Compare1(b) < 0 ? a : b;
}
/// The record that sorts last along object 1 (the second on a tie).
template <class R>
R MaxOf1(const R& a, const R& b) {
  return a.Compare1(b) <= 0 ? b : a;
}

/// The members every intersection part has: the records at its ends along an object and its type (+1 inside, 0 on the
/// boundary, -1 outside). The 0 and 1 forms order along object 0 or object 1, with the records' tolerance of 0.001 on
/// the parameter.
template <class R, class Part>
class IntrPartBase {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  IntrPartBase() = default;
  /// A part from min to max of the given type.
  IntrPartBase(const R& min, const R& max, int type) : m_Type(type), m_Min(min), m_Max(max) {}

  /// Replaces the ends and the type.
  Part& Set(const R& min, const R& max, int type) {
    m_Type = type;
    m_Min = min;
    m_Max = max;
    return static_cast<Part&>(*this);
  }
  /// The type: +1 inside, 0 on the boundary, -1 outside.
  int& Type() { return m_Type; }
  /// The type: +1 inside, 0 on the boundary, -1 outside.
  int Type() const { return m_Type; }
  /// The record at the start of the part.
  R& Min() { return m_Min; }
  /// The record at the start of the part.
  const R& Min() const { return m_Min; }
  /// The record at the end of the part.
  R& Max() { return m_Max; }
  /// The record at the end of the part.
  const R& Max() const { return m_Max; }

  /// Widens the part along object 0 (Include0) or 1 (Include1) so that it covers the record or the other part; ends
  /// that compare equal within 0.001 are kept.
  void Include0(const R& p) { Include(p, p, &R::Compare0); }
  /// Widens the part along object 0 (Include0) or 1 (Include1) so that it covers the record or the other part; ends
  /// that compare equal within 0.001 are kept.
  void Include0(const Part& q) { Include(q.m_Min, q.m_Max, &R::Compare0); }
  /// Widens the part along object 0 (Include0) or 1 (Include1) so that it covers the record or the other part; ends
  /// that compare equal within 0.001 are kept.
  void Include1(const R& p) { Include(p, p, &R::Compare1); }
  /// Widens the part along object 0 (Include0) or 1 (Include1) so that it covers the record or the other part; ends
  /// that compare equal within 0.001 are kept.
  void Include1(const Part& q) { Include(q.m_Min, q.m_Max, &R::Compare1); }
  /// Narrows the part to its overlap with q along object 0 (Intersect0) or 1 (Intersect1); the result may be empty.
  void Intersect0(const Part& q) {
    m_Min = MaxOf0(m_Min, q.m_Min);
    m_Max = MinOf0(m_Max, q.m_Max);
  }
  /// Narrows the part to its overlap with q along object 0 (Intersect0) or 1 (Intersect1); the result may be empty.
  void Intersect1(const Part& q) {
    m_Min = MaxOf1(m_Min, q.m_Min);
    m_Max = MinOf1(m_Max, q.m_Max);
  }
  /// 1 when the end sorts before the start (closed) or not after it (open), ends within 0.001 comparing equal.
  int IsEmpty0(int closed) const { return IsEmpty(closed, &R::Compare0); }
  /// 1 when the end sorts before the start (closed) or not after it (open), ends within 0.001 comparing equal.
  int IsEmpty1(int closed) const { return IsEmpty(closed, &R::Compare1); }
  /// 1 when the overlap with q is empty in the sense of IsEmpty0 / IsEmpty1.
  int IsDisjoint0(const Part& q, int closed) const {
    Part c(static_cast<const Part&>(*this));
    c.Intersect0(q);
    return c.IsEmpty0(closed);
  }
  /// 1 when the overlap with q is empty in the sense of IsEmpty0 / IsEmpty1.
  int IsDisjoint1(const Part& q, int closed) const {
    Part c(static_cast<const Part&>(*this));
    c.Intersect1(q);
    return c.IsEmpty1(closed);
  }
  /// 1 when the record (or both ends of the part) lies between the ends: ends within 0.001 count when closed and do not
  /// when open.
  int IsInside0(const R& p, int closed) const { return IsInside(p, closed, &R::Compare0); }
  /// 1 when the record (or both ends of the part) lies between the ends: ends within 0.001 count when closed and do not
  /// when open.
  int IsInside0(const Part& q, int closed) const { return IsInside0(q.m_Min, closed) && IsInside0(q.m_Max, closed); }
  /// 1 when the record (or both ends of the part) lies between the ends: ends within 0.001 count when closed and do not
  /// when open.
  int IsInside1(const R& p, int closed) const { return IsInside(p, closed, &R::Compare1); }
  /// 1 when the record (or both ends of the part) lies between the ends: ends within 0.001 count when closed and do not
  /// when open.
  int IsInside1(const Part& q, int closed) const { return IsInside1(q.m_Min, closed) && IsInside1(q.m_Max, closed); }

  /// Always 0, as for the records.
  int operator==(const Part&) const { return 0; }
  /// Always 0, as operator==.
  int operator!=(const Part&) const { return 0; }
  /// The same comparisons with both operands of the derived type, so that C++20 finds no equally
  /// good reversed candidate.
  friend int operator==(const Part& a, const Part& b) { return static_cast<const IntrPartBase&>(a).operator==(b); }
  /// The negation of the operator== above, both operands of the derived type.
  friend int operator!=(const Part& a, const Part& b) { return static_cast<const IntrPartBase&>(a).operator!=(b); }

 private:
  using Order = int (IntrPointBase<typename R::PointType, R>::*)(const R&) const;
  void Include(const R& lo, const R& hi, Order cmp) {
    if ((m_Min.*cmp)(lo) > 0) m_Min = lo;
    if ((m_Max.*cmp)(hi) < 0) m_Max = hi;
  }
  int IsEmpty(int closed, Order cmp) const {
    const int c = (m_Min.*cmp)(m_Max);
    return (closed ? c > 0 : c >= 0) ? 1 : 0;
  }
  int IsInside(const R& p, int closed, Order cmp) const {
    const int lo = (m_Min.*cmp)(p), hi = (p.*cmp)(m_Max);
    return (closed ? (lo <= 0 && hi <= 0) : (lo < 0 && hi < 0)) ? 1 : 0;
  }

  int m_Type = 0;
  R m_Min;
  R m_Max;
};

}  // namespace KvGeDetail

/// An intersection record in the plane: a KvGePoint2d with where it lies on both intersected objects.
class KVGE_API KvGeIntrPoint2d : public KvGeDetail::IntrPointBase<KvGePoint2d, KvGeIntrPoint2d> {
 public:
  /// The point type of the record.
  using PointType = KvGePoint2d;
  using IntrPointBase::IntrPointBase;
  KvGeIntrPoint2d() = default;
  /// Copies all fields.
  KvGeIntrPoint2d(const KvGeIntrPoint2d&) = default;
  /// Copies all fields.
  KvGeIntrPoint2d& operator=(const KvGeIntrPoint2d&) = default;
  ~KvGeIntrPoint2d() override;

  /// A record that sorts before every real record (segment 0, parameter -1e9).
  static const KvGeIntrPoint2d kNegInfinity;
  /// A record that sorts after every real record (segment 0x7FFFFFFF, parameter 1e9).
  static const KvGeIntrPoint2d kPosInfinity;
};

/// An intersection record in space: a KvGePoint3d with where it lies on both intersected objects.
class KVGE_API KvGeIntrPoint3d : public KvGeDetail::IntrPointBase<KvGePoint3d, KvGeIntrPoint3d> {
 public:
  /// The point type of the record.
  using PointType = KvGePoint3d;
  using IntrPointBase::IntrPointBase;
  KvGeIntrPoint3d() = default;
  /// Copies all fields.
  KvGeIntrPoint3d(const KvGeIntrPoint3d&) = default;
  /// Copies all fields.
  KvGeIntrPoint3d& operator=(const KvGeIntrPoint3d&) = default;
  ~KvGeIntrPoint3d() override;

  /// A record that sorts before every real record (segment 0, parameter -1e9).
  static const KvGeIntrPoint3d kNegInfinity;
  /// A record that sorts after every real record (segment 0x7FFFFFFF, parameter 1e9).
  static const KvGeIntrPoint3d kPosInfinity;
};

/// A part between two plane intersection records, with its type (+1 inside, 0 on the boundary, -1 outside).
class KVGE_API KvGeIntrPart2d : public KvGeDetail::IntrPartBase<KvGeIntrPoint2d, KvGeIntrPart2d> {
 public:
  using IntrPartBase::IntrPartBase;
  KvGeIntrPart2d() = default;
  /// Copies the ends and the type.
  KvGeIntrPart2d(const KvGeIntrPart2d&) = default;
  /// Copies the ends and the type.
  KvGeIntrPart2d& operator=(const KvGeIntrPart2d&) = default;
  virtual ~KvGeIntrPart2d();
};

/// A part between two space intersection records, with its type (+1 inside, 0 on the boundary, -1 outside).
class KVGE_API KvGeIntrPart3d : public KvGeDetail::IntrPartBase<KvGeIntrPoint3d, KvGeIntrPart3d> {
 public:
  using IntrPartBase::IntrPartBase;
  KvGeIntrPart3d() = default;
  /// Copies the ends and the type.
  KvGeIntrPart3d(const KvGeIntrPart3d&) = default;
  /// Copies the ends and the type.
  KvGeIntrPart3d& operator=(const KvGeIntrPart3d&) = default;
  virtual ~KvGeIntrPart3d();
};

/// A growable array of plane intersection records.
class KVGE_API KvGeIntrPoint2dArray : public KvBtDynArray<KvGeIntrPoint2d> {
 public:
  KvGeIntrPoint2dArray() = default;
  /// Copies the records.
  KvGeIntrPoint2dArray(const KvGeIntrPoint2dArray&) = default;
  /// Copies the records.
  KvGeIntrPoint2dArray& operator=(const KvGeIntrPoint2dArray&) = default;
  ~KvGeIntrPoint2dArray() override;
};

/// Min0(a, b) is a when a sorts before b along object 0, else b; Max0(a, b) is b unless a sorts
/// after b. A tie gives the second argument. Min1 and Max1 order along object 1.
KVGE_API KvGeIntrPoint2d Min0(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b);
/// The record that sorts last along object 0 (b on a tie).
KVGE_API KvGeIntrPoint2d Max0(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b);
/// The record that sorts first along object 1 (b on a tie).
KVGE_API KvGeIntrPoint2d Min1(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b);
/// The record that sorts last along object 1 (b on a tie).
KVGE_API KvGeIntrPoint2d Max1(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b);
/// The record that sorts first along object 0 (b on a tie).
KVGE_API KvGeIntrPoint3d Min0(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b);
/// The record that sorts last along object 0 (b on a tie).
KVGE_API KvGeIntrPoint3d Max0(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b);
/// The record that sorts first along object 1 (b on a tie).
KVGE_API KvGeIntrPoint3d Min1(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b);
/// The record that sorts last along object 1 (b on a tie).
KVGE_API KvGeIntrPoint3d Max1(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b);

/// Writes the point and its attributes: "INTERSECTION (x y) sense c ends e0 e1 params t0 t1 segments s0 s1 info i".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeIntrPoint2d& v);
/// As the plane record, with "(x y z)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeIntrPoint3d& v);
/// Writes "PART type t from <record> to <record>".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeIntrPart2d& v);
/// As the plane part.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeIntrPart3d& v);
