#pragma once
/// @file
/// The plan circle and arc: KvGeCircle23d (centre KvGePoint3d and radius) and KvGeArc23d (centre,
/// radius, begin and end angle). Both lie in the horizontal plane at the height of their centre
/// and are measured in plan, by x and y; the plan distance functions and the point helpers work
/// on them.
///
/// The arc's direction, sense, bulge, inversion and orientation follow the plane arc's rules
/// (KvGeArc2d): the sweep End - Beg carries the direction and is not reduced to one turn. The plan
/// circle has no sense of its own.
///
/// The three-point constructions run the plane construction on x and y (same bands: chords
/// longer than 0.001, sine of the turn beyond 1e-6) and place the centre at the mean height of the
/// three points; they return 0 and leave the object unchanged on failure. A box spans the plan
/// extent at the centre's height. Transform moves the centre by the matrix and treats radius and
/// angles by the matrix's plan part (the rows and columns of x and y), with the plane rule: exact
/// for plan similarities, the circle of equal area otherwise; a tilt that flattens the circle in
/// plan shrinks the radius accordingly.

/// \file
/// Non-finite input: the constructions follow the plane circle's, returning 0 and writing nothing.
/// See docs/non-finite-policy.md.

#include <iosfwd>

#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeCircle2d.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePoint3d.h"

class KvGeModMat3d;

/// A plan circle: centre KvGePoint3d and radius, in the horizontal plane at the centre's height, measured in plan by x
/// and y; no sense.
class KVGE_API KvGeCircle23d : public KvGeDetail::CircleBase<KvGePoint3d> {
 public:
  KvGeCircle23d() = default;
  /// A circle of the given centre and radius.
  KvGeCircle23d(const KvGePoint3d& center, double radius) : CircleBase(center, radius) {}
  /// Copies centre and radius.
  KvGeCircle23d(const KvGeCircle23d&) = default;
  /// Copies centre and radius.
  KvGeCircle23d& operator=(const KvGeCircle23d&) = default;
  virtual ~KvGeCircle23d();

  /// Replaces centre and radius.
  KvGeCircle23d& Set(const KvGePoint3d& center, double radius) { return *this = KvGeCircle23d(center, radius); }

  /// The circle in the plane (sense +1); z is dropped.
  KvGeCircle2d Circle2d() const { return KvGeCircle2d(m_Center.Point2d(), m_Radius, 1); }

  /// The circle through the three points in plan, centre at their mean height.
  int By3Points(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& p3);

  /// The plan square centre -+ radius at the centre's height; the centre alone when the radius
  /// is within 0.001 of 0.
  KvGeBox3d BoundingBox() const;
  /// The box of the ellipse in space that m makes of the circle (six extreme points).
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const;
  /// Moves the centre by m and treats the radius by its plan part: exact for plan similarities, the circle of equal
  /// area otherwise.
  KvGeCircle23d& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGeCircle23d Transformed(const KvGeModMat3d& m) const { return KvGeCircle23d(*this).Transform(m); }
};

/// A plan arc: centre KvGePoint3d, radius, begin and end angle, at the centre's height; direction, sense and bulge as
/// for KvGeArc2d (angle band 1e-6).
class KVGE_API KvGeArc23d : public KvGeDetail::ArcBase<KvGePoint3d, KvGeArc23d> {
 public:
  KvGeArc23d() = default;
  /// An arc of the given centre, radius and angles, taken as they are (not normalised).
  KvGeArc23d(const KvGePoint3d& center, double radius, const KvGeAngle& beg, const KvGeAngle& end)
      : ArcBase(center, radius, beg, end) {}
  /// The whole circle counter-clockwise: Beg 0, End 2 pi.
  explicit KvGeArc23d(const KvGeCircle23d& c) : ArcBase(c.Center(), c.Radius(), 0.0, KvGeAngle_Deg360()) {}
  /// Copies centre, radius and angles.
  KvGeArc23d(const KvGeArc23d&) = default;
  /// Copies centre, radius and angles.
  KvGeArc23d& operator=(const KvGeArc23d&) = default;
  virtual ~KvGeArc23d();

  /// Replaces centre, radius and angles, taken as they are.
  KvGeArc23d& Set(const KvGePoint3d& center, double radius, const KvGeAngle& beg, const KvGeAngle& end) {
    return *this = KvGeArc23d(center, radius, beg, end);
  }
  /// The whole circle c counter-clockwise: Beg 0, End 2 pi.
  KvGeArc23d& Set(const KvGeCircle23d& c) { return *this = KvGeArc23d(c); }

  /// The arc in the plane; z is dropped.
  KvGeArc2d Arc2d() const { return KvGeArc2d(m_Center.Point2d(), m_Radius, m_Beg, m_End); }
  /// The point at angle a on the circle, at the centre's height; and the arc's ends.
  KvGePoint3d PointAt(const KvGeAngle& a) const {
    return KvGePoint3d(m_Center.x + m_Radius * a.Cos(), m_Center.y + m_Radius * a.Sin(), m_Center.z);
  }
  /// The point at Beg, at the centre's height.
  KvGePoint3d BegPoint() const { return PointAt(m_Beg); }
  /// The point at End, at the centre's height.
  KvGePoint3d EndPoint() const { return PointAt(m_End); }

  /// The arc from p1 through p2 to p3 in plan, centre at their mean height.
  int By3Points(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& p3);

  /// The box of the arc, not of its circle, at the centre's height.
  KvGeBox3d BoundingBox() const;
  /// The box of the arc transformed by m.
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const;
  /// Moves the centre by m and treats radius and angles by its plan part, with the plane arc's rule.
  KvGeArc23d& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGeArc23d Transformed(const KvGeModMat3d& m) const { return KvGeArc23d(*this).Transform(m); }
};

static_assert(sizeof(KvGeCircle23d) == sizeof(void*) + sizeof(KvGePoint3d) + sizeof(double), "KvGeCircle23d layout");
static_assert(sizeof(KvGeArc23d) == sizeof(void*) + sizeof(KvGePoint3d) + sizeof(double) + 2 * sizeof(KvGeAngle),
              "KvGeArc23d layout");

/// Writes "CIRCLE Z (cx cy cz, r)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeCircle23d& v);
/// Writes "ARC Z (cx cy cz, r, beg deg, end deg)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeArc23d& v);
