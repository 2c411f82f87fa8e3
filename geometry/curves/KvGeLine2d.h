#pragma once
/// @file
/// Straight pieces between two points: KvGeLine2d in the plane, KvGeLine3d in space and
/// KvGeLine23d in space with plan handling and a height. Segment is an attribute stored and
/// handed out as passed (the intersection functions give it its meaning); Sense is an orientation
/// sign, +1 or -1. Invert negates any stored sense within the int range: INT_MIN becomes INT_MAX.
///
/// The equality rules differ deliberately: KvGeLine2d compares the end points (within 0.001, same
/// kind) and Sense and ignores Segment; KvGeLine3d compares the end points and Segment and has no
/// Sense; KvGeLine23d has no equality. No line equals its own inverse. The plan line's box adds
/// the height to the top when it is positive, otherwise to the bottom.

/// \file
/// Non-finite input: lengths and directions propagate NaN; Invert and Orientate are defined for
/// every stored sense (INT_MIN becomes INT_MAX). See docs/non-finite-policy.md.

#include <climits>
#include <cmath>
#include <iosfwd>

#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/algebra/KvGeVector.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

class KvGeModMat2d;
class KvGeModMat3d;

namespace KvGeDetail {

/// The end points and the Segment attribute, with the members that every line has.
template <class P, class B>
class LineBase {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  LineBase() = default;
  /// A line from p1 to p2 with the given Segment attribute.
  LineBase(const P& p1, const P& p2, int segment) : m_P1(p1), m_P2(p2), m_Segment(segment) {}

  /// The start point.
  P& P1() { return m_P1; }
  /// The start point.
  const P& P1() const { return m_P1; }
  /// The end point.
  P& P2() { return m_P2; }
  /// The end point.
  const P& P2() const { return m_P2; }
  /// The Segment attribute, stored and handed out as passed.
  int& Segment() { return m_Segment; }
  /// The Segment attribute, stored and handed out as passed.
  int Segment() const { return m_Segment; }

  /// The empty box with both end points folded in.
  B PointBox() const {
    B box;
    box.Include(m_P1);
    box.Include(m_P2);
    return box;
  }

 protected:
  /// Exchanges the end points.
  void SwapEnds() {
    const P t = m_P1;
    m_P1 = m_P2;
    m_P2 = t;
  }
  /// -sense; INT_MIN, which has no negative in an int, gives INT_MAX.
  static int NegatedSense(int sense) { return sense == INT_MIN ? INT_MAX : -sense; }

  /// The start point.
  P m_P1;
  /// The end point.
  P m_P2;
  /// The Segment attribute.
  int m_Segment = 1;
};

}  // namespace KvGeDetail

/// A straight piece between two plane points, with the Segment attribute and an orientation Sense (+1 or -1). Equal
/// when both end points are equal within 0.001 (inclusive, same kind) and Sense is equal.
class KVGE_API KvGeLine2d : public KvGeDetail::LineBase<KvGePoint2d, KvGeBox2d> {
 public:
  KvGeLine2d() = default;
  /// A line from p1 to p2 with the given Segment and Sense.
  KvGeLine2d(const KvGePoint2d& p1, const KvGePoint2d& p2, int segment = 1, int sense = 1)
      : LineBase(p1, p2, segment), m_Sense(sense) {}
  /// Copies the end points, Segment and Sense.
  KvGeLine2d(const KvGeLine2d&) = default;
  /// Copies the end points, Segment and Sense.
  KvGeLine2d& operator=(const KvGeLine2d&) = default;
  virtual ~KvGeLine2d();

  /// Replaces the end points, Segment and Sense.
  KvGeLine2d& Set(const KvGePoint2d& p1, const KvGePoint2d& p2, int segment = 1, int sense = 1) {
    return *this = KvGeLine2d(p1, p2, segment, sense);
  }
  /// The orientation sign, +1 or -1 as stored.
  int& Sense() { return m_Sense; }
  /// The orientation sign, +1 or -1 as stored.
  int Sense() const { return m_Sense; }

  /// End points within tol (same kind) and equal Sense; Segment is not compared.
  int IsEqualTo(const KvGeLine2d& l, double tol = kKvGeLinearTol) const {
    return (m_P1.IsEqualTo(l.m_P1, tol) && m_P2.IsEqualTo(l.m_P2, tol) && m_Sense == l.m_Sense) ? 1 : 0;
  }
  /// IsEqualTo with the tolerance 0.001 (inclusive).
  int operator==(const KvGeLine2d& l) const { return IsEqualTo(l, kKvGeLinearTol); }
  /// The negation of operator==.
  int operator!=(const KvGeLine2d& l) const { return IsEqualTo(l, kKvGeLinearTol) ? 0 : 1; }

  /// Exchanges the end points and negates Sense.
  KvGeLine2d& Invert() {
    SwapEnds();
    m_Sense = NegatedSense(m_Sense);
    return *this;
  }
  /// An inverted copy.
  KvGeLine2d Inverted() const { return KvGeLine2d(*this).Invert(); }
  /// Inverts when Sense differs from sense, so that Sense becomes sense (or the line is unchanged when it already has
  /// it).
  KvGeLine2d& Orientate(int sense) { return m_Sense == sense ? *this : Invert(); }
  /// An orientated copy.
  KvGeLine2d Orientated(int sense) const { return KvGeLine2d(*this).Orientate(sense); }

  /// The box of the two end points.
  KvGeBox2d BoundingBox() const { return PointBox(); }
  /// The box of the line transformed by m.
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const { return Transformed(m).BoundingBox(); }
  /// Transforms both end points by m; Segment and Sense are kept.
  KvGeLine2d& Transform(const KvGeModMat2d& m);
  /// A transformed copy.
  KvGeLine2d Transformed(const KvGeModMat2d& m) const { return KvGeLine2d(*this).Transform(m); }

 private:
  int m_Sense = 1;
};

/// A straight piece between two space points with the Segment attribute; no Sense. Equal when the end points are equal
/// as points (within 0.001) and Segment is equal.
class KVGE_API KvGeLine3d : public KvGeDetail::LineBase<KvGePoint3d, KvGeBox3d> {
 public:
  KvGeLine3d() = default;
  /// A line from p1 to p2 with the given Segment.
  KvGeLine3d(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1) : LineBase(p1, p2, segment) {}
  /// A line from (x1, y1, z1) to (x2, y2, z2) with the given Segment.
  KvGeLine3d(double x1, double y1, double z1, double x2, double y2, double z2, int segment = 1)
      : LineBase(KvGePoint3d(x1, y1, z1), KvGePoint3d(x2, y2, z2), segment) {}
  /// Copies the end points and Segment.
  KvGeLine3d(const KvGeLine3d&) = default;
  /// Copies the end points and Segment.
  KvGeLine3d& operator=(const KvGeLine3d&) = default;
  virtual ~KvGeLine3d();

  /// Replaces the end points and Segment.
  KvGeLine3d& Set(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1) {
    return *this = KvGeLine3d(p1, p2, segment);
  }
  /// Replaces the end points and Segment.
  KvGeLine3d& Set(double x1, double y1, double z1, double x2, double y2, double z2, int segment = 1) {
    return *this = KvGeLine3d(x1, y1, z1, x2, y2, z2, segment);
  }

  /// The same object, or equal end points (point ==) and equal Segment.
  int operator==(const KvGeLine3d& l) const {
    return (this == &l || (m_P1 == l.m_P1 && m_P2 == l.m_P2 && m_Segment == l.m_Segment)) ? 1 : 0;
  }
  /// The negation of operator==.
  int operator!=(const KvGeLine3d& l) const { return (*this == l) ? 0 : 1; }
  /// Exchanges the end points (there is no Sense to change).
  KvGeLine3d& negate() {
    SwapEnds();
    return *this;
  }

  /// The box of the two end points.
  KvGeBox3d BoundingBox() const { return PointBox(); }
  /// The box of the line transformed by m.
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const { return Transformed(m).BoundingBox(); }
  /// Transforms both end points by m; Segment is kept.
  KvGeLine3d& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGeLine3d Transformed(const KvGeModMat3d& m) const { return KvGeLine3d(*this).Transform(m); }

  /// P2 - P1.
  KvGeVector3 vector() const { return KvGeVector3(m_P2.x - m_P1.x, m_P2.y - m_P1.y, m_P2.z - m_P1.z); }
  /// |P2 - P1| in space.
  double lenght() const { return vector().Length(); }
  /// Move P1 towards P2 by d, P2 towards P1 by d, or both along P1 -> P2 by d; a negative d
  /// lengthens or moves backwards. A line of length exactly 0 stays; the flags are not touched.
  KvGeLine3d& trimP1(double d);
  /// Moves P2 towards P1 by d (a negative d lengthens); a line of length exactly 0 stays.
  KvGeLine3d& trimP2(double d);
  /// Moves both end points along P1 -> P2 by d (backwards for a negative d); a line of length exactly 0 stays.
  KvGeLine3d& move(double d);
};

/// A straight piece in space with plan handling: Segment, an orientation Sense and a height added to the box. Has no
/// equality.
class KVGE_API KvGeLine23d : public KvGeDetail::LineBase<KvGePoint3d, KvGeBox3d> {
 public:
  KvGeLine23d() = default;
  /// A line from p1 to p2 with the given Segment, height and Sense.
  KvGeLine23d(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1, double height = 0.0, int sense = 1)
      : LineBase(p1, p2, segment), m_Height(height), m_Sense(sense) {}
  /// Copies the end points, Segment, height and Sense.
  KvGeLine23d(const KvGeLine23d&) = default;
  /// Copies the end points, Segment, height and Sense.
  KvGeLine23d& operator=(const KvGeLine23d&) = default;
  virtual ~KvGeLine23d();

  /// Replaces the end points, Segment, height and Sense.
  KvGeLine23d& Set(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1, double height = 0.0, int sense = 1) {
    return *this = KvGeLine23d(p1, p2, segment, height, sense);
  }
  /// The height, stored as passed; the box adds it to the top when positive, else to the bottom.
  double& Height() { return m_Height; }
  /// The height, stored as passed; the box adds it to the top when positive, else to the bottom.
  double Height() const { return m_Height; }
  /// The orientation sign, +1 or -1 as stored.
  int& Sense() { return m_Sense; }
  /// The orientation sign, +1 or -1 as stored.
  int Sense() const { return m_Sense; }

  /// Exchanges the end points and negates Sense (INT_MIN becomes INT_MAX).
  KvGeLine23d& Invert() {
    SwapEnds();
    m_Sense = NegatedSense(m_Sense);
    return *this;
  }
  /// An inverted copy.
  KvGeLine23d Inverted() const { return KvGeLine23d(*this).Invert(); }
  /// Inverts when Sense differs from sense.
  KvGeLine23d& Orientate(int sense) { return m_Sense == sense ? *this : Invert(); }
  /// An orientated copy.
  KvGeLine23d Orientated(int sense) const { return KvGeLine23d(*this).Orientate(sense); }

  /// The box of the end points with the height added to the top (height > 0) or else to the
  /// bottom.
  KvGeBox3d BoundingBox() const;
  /// The box of the line transformed by m.
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const { return Transformed(m).BoundingBox(); }
  /// The end points transformed; the height is kept.
  KvGeLine23d& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGeLine23d Transformed(const KvGeModMat3d& m) const { return KvGeLine23d(*this).Transform(m); }

 private:
  double m_Height = 0.0;
  int m_Sense = 1;
};

// A virtual destructor followed by the fields as a plain record would lay them out.
static_assert(sizeof(KvGeLine2d) == sizeof(void*) + 2 * sizeof(KvGePoint2d) + 2 * sizeof(int), "KvGeLine2d layout");
static_assert(sizeof(KvGeLine3d) == sizeof(void*) + 2 * sizeof(KvGePoint3d) + sizeof(double), "KvGeLine3d layout");
static_assert(sizeof(KvGeLine23d) == sizeof(void*) + 2 * sizeof(KvGePoint3d) + 3 * sizeof(double),
              "KvGeLine23d layout");

/// Writes WKT, "LINESTRING (x1 y1, x2 y2)", followed by " segment s" and " sense s" when they are not 1.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeLine2d& v);
/// Writes WKT, "LINESTRING Z (x1 y1 z1, x2 y2 z2)", followed by " segment s" when it is not 1.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeLine3d& v);
/// As KvGeLine3d, followed by " height h" and " sense s" when they are not 0 and 1.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeLine23d& v);
