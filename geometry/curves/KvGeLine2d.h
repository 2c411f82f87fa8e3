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

#include <climits>
#include <cmath>

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
  LineBase() = default;
  LineBase(const P& p1, const P& p2, int segment) : m_P1(p1), m_P2(p2), m_Segment(segment) {}

  P& P1() { return m_P1; }
  const P& P1() const { return m_P1; }
  P& P2() { return m_P2; }
  const P& P2() const { return m_P2; }
  int& Segment() { return m_Segment; }
  int Segment() const { return m_Segment; }

  /// The empty box with both end points folded in.
  B PointBox() const {
    B box;
    box.Include(m_P1);
    box.Include(m_P2);
    return box;
  }

 protected:
  void SwapEnds() {
    const P t = m_P1;
    m_P1 = m_P2;
    m_P2 = t;
  }
  /// -sense; INT_MIN, which has no negative in an int, gives INT_MAX.
  static int NegatedSense(int sense) { return sense == INT_MIN ? INT_MAX : -sense; }

  P m_P1;
  P m_P2;
  int m_Segment = 1;
};

}  // namespace KvGeDetail

class KVGE_API KvGeLine2d : public KvGeDetail::LineBase<KvGePoint2d, KvGeBox2d> {
 public:
  KvGeLine2d() = default;
  KvGeLine2d(const KvGePoint2d& p1, const KvGePoint2d& p2, int segment = 1, int sense = 1)
      : LineBase(p1, p2, segment), m_Sense(sense) {}
  KvGeLine2d(const KvGeLine2d&) = default;
  KvGeLine2d& operator=(const KvGeLine2d&) = default;
  virtual ~KvGeLine2d();

  KvGeLine2d& Set(const KvGePoint2d& p1, const KvGePoint2d& p2, int segment = 1, int sense = 1) {
    return *this = KvGeLine2d(p1, p2, segment, sense);
  }
  int& Sense() { return m_Sense; }
  int Sense() const { return m_Sense; }

  /// End points within tol (same kind) and equal Sense; Segment is not compared.
  int IsEqualTo(const KvGeLine2d& l, double tol = kKvGeLinearTol) const {
    return (m_P1.IsEqualTo(l.m_P1, tol) && m_P2.IsEqualTo(l.m_P2, tol) && m_Sense == l.m_Sense) ? 1 : 0;
  }
  int operator==(const KvGeLine2d& l) const { return IsEqualTo(l, kKvGeLinearTol); }
  int operator!=(const KvGeLine2d& l) const { return IsEqualTo(l, kKvGeLinearTol) ? 0 : 1; }

  /// Exchanges the end points and negates Sense.
  KvGeLine2d& Invert() {
    SwapEnds();
    m_Sense = NegatedSense(m_Sense);
    return *this;
  }
  KvGeLine2d Inverted() const { return KvGeLine2d(*this).Invert(); }
  KvGeLine2d& Orientate(int sense) { return m_Sense == sense ? *this : Invert(); }
  KvGeLine2d Orientated(int sense) const { return KvGeLine2d(*this).Orientate(sense); }

  KvGeBox2d BoundingBox() const { return PointBox(); }
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const { return Transformed(m).BoundingBox(); }
  KvGeLine2d& Transform(const KvGeModMat2d& m);
  KvGeLine2d Transformed(const KvGeModMat2d& m) const { return KvGeLine2d(*this).Transform(m); }

 private:
  int m_Sense = 1;
};

class KVGE_API KvGeLine3d : public KvGeDetail::LineBase<KvGePoint3d, KvGeBox3d> {
 public:
  KvGeLine3d() = default;
  KvGeLine3d(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1) : LineBase(p1, p2, segment) {}
  KvGeLine3d(double x1, double y1, double z1, double x2, double y2, double z2, int segment = 1)
      : LineBase(KvGePoint3d(x1, y1, z1), KvGePoint3d(x2, y2, z2), segment) {}
  KvGeLine3d(const KvGeLine3d&) = default;
  KvGeLine3d& operator=(const KvGeLine3d&) = default;
  virtual ~KvGeLine3d();

  KvGeLine3d& Set(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1) {
    return *this = KvGeLine3d(p1, p2, segment);
  }
  KvGeLine3d& Set(double x1, double y1, double z1, double x2, double y2, double z2, int segment = 1) {
    return *this = KvGeLine3d(x1, y1, z1, x2, y2, z2, segment);
  }

  /// The same object, or equal end points (point ==) and equal Segment.
  int operator==(const KvGeLine3d& l) const {
    return (this == &l || (m_P1 == l.m_P1 && m_P2 == l.m_P2 && m_Segment == l.m_Segment)) ? 1 : 0;
  }
  int operator!=(const KvGeLine3d& l) const { return (*this == l) ? 0 : 1; }
  /// Exchanges the end points (there is no Sense to change).
  KvGeLine3d& negate() {
    SwapEnds();
    return *this;
  }

  KvGeBox3d BoundingBox() const { return PointBox(); }
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const { return Transformed(m).BoundingBox(); }
  KvGeLine3d& Transform(const KvGeModMat3d& m);
  KvGeLine3d Transformed(const KvGeModMat3d& m) const { return KvGeLine3d(*this).Transform(m); }

  KvGeVector3 vector() const { return KvGeVector3(m_P2.x - m_P1.x, m_P2.y - m_P1.y, m_P2.z - m_P1.z); }
  /// |P2 - P1| in space.
  double lenght() const { return vector().Length(); }
  /// Move P1 towards P2 by d, P2 towards P1 by d, or both along P1 -> P2 by d; a negative d
  /// lengthens or moves backwards. A line of length exactly 0 stays; the flags are not touched.
  KvGeLine3d& trimP1(double d);
  KvGeLine3d& trimP2(double d);
  KvGeLine3d& move(double d);
};

class KVGE_API KvGeLine23d : public KvGeDetail::LineBase<KvGePoint3d, KvGeBox3d> {
 public:
  KvGeLine23d() = default;
  KvGeLine23d(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1, double height = 0.0, int sense = 1)
      : LineBase(p1, p2, segment), m_Height(height), m_Sense(sense) {}
  KvGeLine23d(const KvGeLine23d&) = default;
  KvGeLine23d& operator=(const KvGeLine23d&) = default;
  virtual ~KvGeLine23d();

  KvGeLine23d& Set(const KvGePoint3d& p1, const KvGePoint3d& p2, int segment = 1, double height = 0.0, int sense = 1) {
    return *this = KvGeLine23d(p1, p2, segment, height, sense);
  }
  double& Height() { return m_Height; }
  double Height() const { return m_Height; }
  int& Sense() { return m_Sense; }
  int Sense() const { return m_Sense; }

  KvGeLine23d& Invert() {
    SwapEnds();
    m_Sense = NegatedSense(m_Sense);
    return *this;
  }
  KvGeLine23d Inverted() const { return KvGeLine23d(*this).Invert(); }
  KvGeLine23d& Orientate(int sense) { return m_Sense == sense ? *this : Invert(); }
  KvGeLine23d Orientated(int sense) const { return KvGeLine23d(*this).Orientate(sense); }

  /// The box of the end points with the height added to the top (height > 0) or else to the
  /// bottom.
  KvGeBox3d BoundingBox() const;
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const { return Transformed(m).BoundingBox(); }
  /// The end points transformed; the height is kept.
  KvGeLine23d& Transform(const KvGeModMat3d& m);
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
