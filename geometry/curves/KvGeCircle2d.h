#pragma once
/// @file
/// Circles and arcs in the plane: KvGeCircle2d (centre, radius and a sense, +1 counter-clockwise,
/// -1 clockwise) and KvGeArc2d (centre, radius, begin and end angle), with the free functions that
/// find a circle's centre, cut a circle with a line, recognise a circle in sampled points and clip
/// an arc to a box.
///
/// An arc has no direction field: its direction is the sign of End - Beg, taken with the angle
/// band of 1e-6 radians (a smaller difference is sense 0). The sweep End - Beg is not reduced to
/// one turn, so the full counter-clockwise circle is Beg 0, End 2 pi and the full clockwise one
/// Beg 0, End -2 pi. Every arc construction normalises End into the turn after Beg
/// (counter-clockwise, Beg < End <= Beg + 2 pi) or before it (clockwise, Beg - 2 pi <= End < Beg),
/// so that End - Beg carries the direction.
///
/// Constructions return 1 on success and 0 on failure, leaving the object unchanged then; the one
/// exception is KvGeArc2d::By2PointsCenter, which never touches the radius (the caller sets it).
///
/// Matrix3X3 is the placement of the unit circle (scale by the radius, then move to the centre),
/// so the unit circle's point at angle t lands on the circle's point at angle t. A transformed
/// circle's box is that of the ellipse the matrix makes of it: its extreme points lie at the
/// angles given by the matrix's columns. Transform keeps a circle a circle: it is exact for the
/// similarities (moves, rotations, mirrors, uniform scales); under a non-uniform scale or a shear,
/// which have no circle as image, the radius becomes that of the circle of equal area, and an
/// arc's ends stay on the rays through the transformed end points. A mirror reverses the sense.

/// \file
/// Non-finite input and range: By3Points, By2PointsRadius, By2PointsBulge, KrsMittelpunkt and
/// KrsGerSchnitt return 0 and write nothing when an input is not finite or the result overflows.
/// See docs/non-finite-policy.md.

#include <cmath>
#include <iosfwd>

#include "basics/KvBtArray.h"
#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/algebra/KvGeMatrix.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

class KvGeModMat2d;
class KvGePoint2dArray;

namespace KvGeDetail {

/// The direction of the arc beg -> end: -1 when beg - 1e-6 > end, +1 when end > beg + 1e-6,
/// otherwise 0. The band is applied to the angles as they stand, not to end - beg, so an End
/// written 1e-6 beside Beg is sense 0 whatever the rounding of the difference.
inline int ArcSense(const KvGeAngle& beg, const KvGeAngle& end) {
  if (beg.Rad() - kKvGeAngularTol > end.Rad()) return -1;
  if (end.Rad() > beg.Rad() + kKvGeAngularTol) return 1;
  return 0;
}

/// Centre and radius, shared by the circles of the plane and of the plan.
template <class P>
class CircleBase {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  CircleBase() = default;
  /// A circle of the given centre and radius.
  CircleBase(const P& center, double radius) : m_Center(center), m_Radius(radius) {}

  /// The centre.
  P& Center() { return m_Center; }
  /// The centre.
  const P& Center() const { return m_Center; }
  /// The radius, stored as passed.
  double& Radius() { return m_Radius; }
  /// The radius, stored as passed.
  double Radius() const { return m_Radius; }

 protected:
  /// The centre.
  P m_Center;
  /// The radius.
  double m_Radius = 0.0;
};

/// Centre, radius and the two angles, with the members that follow from them alone.
template <class P, class A>
class ArcBase : public CircleBase<P> {
 public:
  ArcBase() = default;
  /// An arc of the given centre, radius and angles, taken as they are (not normalised).
  ArcBase(const P& center, double radius, const KvGeAngle& beg, const KvGeAngle& end)
      : CircleBase<P>(center, radius), m_Beg(beg), m_End(end) {}

  /// The begin angle.
  KvGeAngle& Beg() { return m_Beg; }
  /// The begin angle.
  const KvGeAngle& Beg() const { return m_Beg; }
  /// The end angle; End - Beg carries the direction.
  KvGeAngle& End() { return m_End; }
  /// The end angle; End - Beg carries the direction.
  const KvGeAngle& End() const { return m_End; }

  /// -1 when Beg - 1e-6 > End, +1 when End > Beg + 1e-6, otherwise 0.
  int Sense() const { return ArcSense(m_Beg, m_End); }
  /// tan(sweep / 4) of the sweep taken without its direction (End - Beg for sense +1, Beg - End
  /// otherwise): a clockwise arc gives a non-negative bulge too, deliberately.
  double Bulge() const { return std::tan((Sense() == 1 ? (m_End - m_Beg) : (m_Beg - m_End)).Rad() / 4.0); }

  /// Exchanges Beg and End.
  A& Invert() {
    const KvGeAngle t = m_Beg;
    m_Beg = m_End;
    m_End = t;
    return Self();
  }
  /// Exchanges Beg and End when Sense() differs from sense; an arc of sense 0 is therefore
  /// inverted by Orientate(1) and Orientate(-1) alike.
  A& Orientate(int sense) { return Sense() == sense ? Self() : Invert(); }
  /// An inverted copy.
  A Inverted() const { return A(Self()).Invert(); }
  /// An orientated copy.
  A Orientated(int sense) const { return A(Self()).Orientate(sense); }

 protected:
  /// This as the named arc class.
  A& Self() { return static_cast<A&>(*this); }
  /// This as the named arc class.
  const A& Self() const { return static_cast<const A&>(*this); }

  /// The begin angle.
  KvGeAngle m_Beg;
  /// The end angle.
  KvGeAngle m_End;
};

}  // namespace KvGeDetail

/// A circle in the plane: centre, radius and a sense (+1 counter-clockwise, -1 clockwise). Equal when the centres are
/// equal within 0.001 (same kind), the radii within 0.001 (inclusive) and the senses equal.
class KVGE_API KvGeCircle2d : public KvGeDetail::CircleBase<KvGePoint2d> {
 public:
  KvGeCircle2d() = default;
  /// A circle of the given centre, radius and sense.
  KvGeCircle2d(const KvGePoint2d& center, double radius, int sense = 1) : CircleBase(center, radius), m_Sense(sense) {}
  /// Copies centre, radius and sense.
  KvGeCircle2d(const KvGeCircle2d&) = default;
  /// Copies centre, radius and sense.
  KvGeCircle2d& operator=(const KvGeCircle2d&) = default;
  virtual ~KvGeCircle2d();

  /// Replaces centre, radius and sense.
  KvGeCircle2d& Set(const KvGePoint2d& center, double radius, int sense = 1) {
    return *this = KvGeCircle2d(center, radius, sense);
  }
  /// The sense: +1 counter-clockwise, -1 clockwise, stored as passed.
  int& Sense() { return m_Sense; }
  /// The sense: +1 counter-clockwise, -1 clockwise, stored as passed.
  int Sense() const { return m_Sense; }

  /// Centres by the point rule (within 0.001, same kind), radii within 0.001, equal senses.
  int IsEqualTo(const KvGeCircle2d& c, double tol = kKvGeLinearTol) const {
    return (m_Center.IsEqualTo(c.m_Center, tol) && IsEqual(m_Radius, c.m_Radius, tol) && m_Sense == c.m_Sense) ? 1 : 0;
  }
  /// IsEqualTo with 0.001 (inclusive).
  int operator==(const KvGeCircle2d& c) const { return IsEqualTo(c, kKvGeLinearTol); }
  /// The negation of operator==.
  int operator!=(const KvGeCircle2d& c) const { return IsEqualTo(c, kKvGeLinearTol) ? 0 : 1; }

  /// Negates the sense.
  KvGeCircle2d& Invert() {
    m_Sense = -m_Sense;
    return *this;
  }
  /// Negates the sense when it differs from sense.
  KvGeCircle2d& Orientate(int sense) { return m_Sense == sense ? *this : Invert(); }
  /// An inverted copy.
  KvGeCircle2d Inverted() const { return KvGeCircle2d(*this).Invert(); }
  /// An orientated copy.
  KvGeCircle2d Orientated(int sense) const { return KvGeCircle2d(*this).Orientate(sense); }

  /// Rows (r, 0, 0), (0, r, 0), (cx, cy, 1): the unit circle placed onto this one.
  KvGeMatrix3X3 Matrix3X3() const;
  /// centre -+ radius; the centre alone when the radius is within 0.001 of 0.
  KvGeBox2d BoundingBox() const;
  /// The box of the ellipse m makes of the circle (four extreme points); the transformed centre
  /// alone when the radius is within 0.001 of 0.
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const;

  /// The circle through three points, sense +1 when they turn left. 0 when p1-p2 or p2-p3 is no
  /// longer than 0.001, or when the sine of the turn between the chords is within 1e-6 of 0.
  int By3Points(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& p3);
  /// The circle of the given radius through p1 and p2, its centre on the side `side` (+1 left of
  /// p1 -> p2, -1 right); sense stored as passed. 0 when the chord is no longer than 0.001 or
  /// longer than the diameter by more than 0.001; a chord up to 0.001 too long gives the chord's
  /// midpoint as centre.
  int By2PointsRadius(const KvGePoint2d& p1, const KvGePoint2d& p2, double radius, int side, int sense);
  /// The circle through p1 and p2 with the bulge tan(sweep / 4) of the arc from p1 to p2, sense
  /// the sign of the bulge. 0 when the bulge is within 0.001 of 0.
  int By2PointsBulge(const KvGePoint2d& p1, const KvGePoint2d& p2, double bulge);

  /// Transforms the circle: exact for the similarities; otherwise the radius of the circle of equal area. A mirror
  /// reverses the sense.
  KvGeCircle2d& Transform(const KvGeModMat2d& m);
  /// A transformed copy.
  KvGeCircle2d Transformed(const KvGeModMat2d& m) const { return KvGeCircle2d(*this).Transform(m); }

 private:
  int m_Sense = 1;
};

/// An arc in the plane: centre, radius, begin and end angle; its direction is the sign of End - Beg (angle band 1e-6).
/// Equal when centres and radii agree within 0.001 and both angles within 1e-6.
class KVGE_API KvGeArc2d : public KvGeDetail::ArcBase<KvGePoint2d, KvGeArc2d> {
 public:
  KvGeArc2d() = default;
  /// An arc of the given centre, radius and angles, taken as they are (not normalised).
  KvGeArc2d(const KvGePoint2d& center, double radius, const KvGeAngle& beg, const KvGeAngle& end)
      : ArcBase(center, radius, beg, end) {}
  /// The whole circle: Beg 0, End sense x 2 pi.
  explicit KvGeArc2d(const KvGeCircle2d& c);
  /// Copies centre, radius and angles.
  KvGeArc2d(const KvGeArc2d&) = default;
  /// Copies centre, radius and angles.
  KvGeArc2d& operator=(const KvGeArc2d&) = default;
  virtual ~KvGeArc2d();

  /// Replaces centre, radius and angles, taken as they are.
  KvGeArc2d& Set(const KvGePoint2d& center, double radius, const KvGeAngle& beg, const KvGeAngle& end) {
    return *this = KvGeArc2d(center, radius, beg, end);
  }
  /// The whole circle c: Beg 0, End sense x 2 pi.
  KvGeArc2d& Set(const KvGeCircle2d& c) { return *this = KvGeArc2d(c); }

  /// Centres within 0.001 of the same kind, radii within 0.001 and both angles within 1e-6.
  int operator==(const KvGeArc2d& a) const {
    return (m_Center == a.m_Center && m_Beg == a.m_Beg && m_End == a.m_End &&
            IsEqual(m_Radius, a.m_Radius, kKvGeLinearTol))
               ? 1
               : 0;
  }
  /// The negation of operator==.
  int operator!=(const KvGeArc2d& a) const { return (*this == a) ? 0 : 1; }

  /// The point of the circle at angle a, and the arc's start and end points.
  KvGePoint2d PointAt(const KvGeAngle& a) const {
    return KvGePoint2d(m_Center.x + m_Radius * a.Cos(), m_Center.y + m_Radius * a.Sin());
  }
  /// The point at Beg.
  KvGePoint2d BegPoint() const { return PointAt(m_Beg); }
  /// The point at End.
  KvGePoint2d EndPoint() const { return PointAt(m_End); }

  /// The placement of the unit circle, as for the circle.
  KvGeMatrix3X3 Matrix3X3() const;
  /// The box of the arc (its end points and the extreme points that it passes), not of its
  /// circle; the centre alone when the radius is within 0.001 of 0.
  KvGeBox2d BoundingBox() const;
  /// The box of the arc transformed by m.
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const;

  /// The circle constructions, then Beg towards the first point and End towards the last, End
  /// normalised into the turn in the circle's sense. By2PointsRadius runs counter-clockwise
  /// exactly when sense is 1.
  int By3Points(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& p3);
  /// The arc through p1 and p2 of the given radius, centre on side `side`, counter-clockwise exactly when sense is 1; 0
  /// (unchanged) under the circle's failure conditions.
  int By2PointsRadius(const KvGePoint2d& p1, const KvGePoint2d& p2, double radius, int side, int sense);
  /// The arc from p1 to p2 with the bulge tan(sweep / 4), counter-clockwise for a positive bulge; 0 (unchanged) when
  /// the bulge is within 0.001 of 0.
  int By2PointsBulge(const KvGePoint2d& p1, const KvGePoint2d& p2, double bulge);
  /// Centre as passed, Beg towards p1, End towards p2, counter-clockwise when sense is 1. 0 when
  /// the centre equals p1 or p2 (point rule). The radius is deliberately left as it was.
  int By2PointsCenter(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& center, int sense);

  /// Transforms centre and end points: exact for the similarities; the ends stay on the rays through the transformed
  /// end points otherwise. A mirror reverses the direction.
  KvGeArc2d& Transform(const KvGeModMat2d& m);
  /// A transformed copy.
  KvGeArc2d Transformed(const KvGeModMat2d& m) const { return KvGeArc2d(*this).Transform(m); }

 private:
  /// Takes centre and radius of c and the directions to first and last, End normalised into the
  /// turn after Beg when ccw is non-zero, else into the turn before it.
  void SetFromCircle(const KvGeCircle2d& c, const KvGePoint2d& first, const KvGePoint2d& last, int ccw);
};

static_assert(sizeof(KvGeCircle2d) == sizeof(void*) + sizeof(KvGePoint2d) + 2 * sizeof(double), "KvGeCircle2d layout");
static_assert(sizeof(KvGeArc2d) == sizeof(void*) + sizeof(KvGePoint2d) + sizeof(double) + 2 * sizeof(KvGeAngle),
              "KvGeArc2d layout");

/// The centre of the circle through three points by the perpendicular bisectors, with an absolute
/// threshold of 0.01 on the cross product of the chords (not scaled by their lengths). 1: centre
/// found (only x and y of center written). Below the threshold: 2 with center = (p1 + p2) / 2 when
/// p1 and p3 are less than 1.0 apart, otherwise 0 with center = (p1 + p3) / 2.
KVGE_API int KrsMittelpunkt(const KvGePoint2d& p1, const KvGePoint2d& p2, const KvGePoint2d& p3, KvGePoint2d& center);

/// The circle (center, radius) and the unbounded line through p1 and p2, solved as
/// a t^2 + b t + c = 0 on p1 + t (p2 - p1). A c that is negligible against b or a (adding 0.01 c
/// changes neither) counts as 0, so p1 then lies on the circle. Returns 0 when the line misses
/// (s1, s2 untouched), 2 for two crossings, 3 when the line touches (discriminant below 1e-7; s1
/// and s2 then coincide up to rounding), 1 for p1 = p2 exactly on the circle (s1 = s2 = p1).
KVGE_API int KrsGerSchnitt(KvGePoint2d center, double radius, KvGePoint2d p1, KvGePoint2d p2, KvGePoint2d& s1,
                           KvGePoint2d& s2);

/// Takes a polyline of at least five sample points for a circle: the circle through the points at
/// 1, n / 2 and n - 2 must hold every point within 0.001, and no two consecutive points may lie
/// more than 0.6971317007977318 rad apart seen from the centre (the step folded into 0 .. pi; the
/// polyline is open, so the last point is not paired with the first).
/// On success the circle is written with its radius times 0.991768322919766 and 1 is returned;
/// otherwise 0 and the circle is unchanged. When the three sample points are collinear no circle
/// can be checked, and the given circle's radius is scaled all the same and 1 returned: callers
/// rely on this, so it is kept.
KVGE_API int CreateCircle(const KvGePoint2dArray& points, KvGeCircle2d& circle);

/// The same recognition in its own single pass, without trigonometry: the centre from the three
/// sample points as above, then for each point its distance from the centre (within 0.001 of the
/// radius), and for each pair of consecutive radius vectors u, v the step test
/// u . v >= cos(0.6971317007977318) |u| |v|, which is the folded angle test without an arc
/// tangent. On success the circle is written with the radius times 0.991768322919766. Unlike
/// CreateCircle, collinear sample points are not taken for a circle: 0, circle unchanged.
KVGE_API int GetCircleFormStrZug(const KvGePoint2dArray& points, KvGeCircle2d& circle);

/// Cuts the arc to the box enlarged by eps on every side and appends the pieces inside to pieces.
/// The arc's circle is cut with the four edge lines (as whole lines); the cut angles, the arc's
/// start and its end are sorted, and each span between consecutive angles that lies on the arc,
/// sweeps more than minSweep and has its middle point inside the enlarged box (border included)
/// becomes a piece. An arc that no edge line cuts is kept whole when its middle point is inside
/// and its sweep exceeds minSweep. A counter-clockwise arc (or one of sense 0) gives
/// counter-clockwise pieces in ascending angle from Beg; a clockwise arc is clipped as its inverse
/// and its pieces are handed back clockwise, in order from its Beg. A sweep beyond one turn is
/// clipped as one turn. Sweeps compare with minSweep in the angle band of 1e-6, so two cuts at one
/// corner never make a piece. Returns 1 when a piece was appended, else 0; pieces already in the
/// array stay.
KVGE_API int ClipArc(KvGeArc2d arc, KvGeBox2d box, KvBtSmallArray<KvGeArc2d>& pieces, KvGeAngle minSweep,
                     double eps = kKvGeLinearTol);

/// Writes "CIRCLE (cx cy, r)", followed by " sense s" when it is not 1.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeCircle2d& v);
/// Writes "ARC (cx cy, r, beg deg, end deg)", the angles in degrees as the sweep runs.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGeArc2d& v);
