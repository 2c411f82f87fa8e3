#pragma once
/// @file
/// Squared distances in the plane, and the nearest edge of a closed point sequence.
///
/// A segment a-b is parametrised by the distance t of the foot of the perpendicular from a,
/// measured along a-b. A foot that falls up to 0.001 before a or beyond b (inclusive) is still
/// measured perpendicularly; farther out the distance is the one to the nearer end point. So a
/// point just off the end of a segment may measure closer than it really lies, by design: a
/// segment seen with the drawing tolerance is a little longer than its end points. A segment no
/// longer than 0.001 is measured as its start point.
///
/// Closed sequences of n points are read as n edges, the last closing back to the first point.
/// The "23d" and KvGePoint3d forms measure in plan, by x and y only. Flags of points at infinity
/// are ignored: the coordinates are measured as they stand. Every function answers the squared
/// distance and takes no tolerance argument.

/// \file
/// Non-finite input: distances propagate NaN and infinities. See docs/non-finite-policy.md.

#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtSimpleArray.h"
#include "geometry/curves/KvGeCircle23d.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/points/KvGePoint3d.h"
#include "geometry/polygons/KvGePolygon2d.h"

namespace KvGeDetail {

/// The segment distance on raw coordinates. which tells the point measured to: 1 the start a,
/// 2 the end b, 0 the foot (mx, my).
inline double SegmentDistanceSqr(double ax, double ay, double bx, double by, double px, double py, double& mx,
                                 double& my, int& which) {
  const double dx = bx - ax, dy = by - ay;
  const double l = std::sqrt(dx * dx + dy * dy);
  which = 1;
  mx = ax;
  my = ay;
  if (IsGreater(l, 0.0, kKvGeLinearTol)) {
    const double t = ((px - ax) * dx + (py - ay) * dy) * (1.0 / l);
    // Before a by more than 0.001 keeps the start point.
    if (!IsLess(t, 0.0, kKvGeLinearTol)) {
      if (IsGreater(t, l, kKvGeLinearTol)) {
        which = 2;
        mx = bx;
        my = by;
      } else {
        const double f = t / l;
        which = 0;
        mx = ax + dx * f;
        my = ay + dy * f;
      }
    }
  }
  return (px - mx) * (px - mx) + (py - my) * (py - my);
}

inline double SegmentDistanceSqr(double ax, double ay, double bx, double by, double px, double py) {
  double mx, my;
  int which;
  return SegmentDistanceSqr(ax, ay, bx, by, px, py, mx, my, which);
}

}  // namespace KvGeDetail

/// Squared distance of p from the infinite line through a and b (from a when a and b lie within
/// 0.001 of each other).
KVGE_API double DistanceSqrToLine2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p);
/// In plan: x and y only.
KVGE_API double DistanceSqrToLine2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// Squared distance of p from the segment a-b; a foot up to 0.001 beyond an end (inclusive) is
/// measured perpendicularly.
KVGE_API double DistanceSqrToLineseg2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p);
/// In plan: x and y only.
KVGE_API double DistanceSqrToLineseg2d(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// As DistanceSqrToLineseg2d; foot receives the point measured to: a, b (with its flag) or the
/// foot of the perpendicular (an ordinary point).
KVGE_API double DistanceSqrPrjPointToLineseg2d(const KvGePoint2d& a, const KvGePoint2d& b, const KvGePoint2d& p,
                                               KvGePoint2d& foot);

/// From a bounded line (Segment non-zero) as from a segment, from an unbounded one as from the
/// infinite line.
KVGE_API double DistanceSqr2d(const KvGeLine2d& l, const KvGePoint2d& p);
/// The same with the arguments in the other order.
KVGE_API double DistanceSqr2d(const KvGePoint2d& p, const KvGeLine2d& l);
/// The same in plan.
KVGE_API double DistanceSqr2d(const KvGeLine23d& l, const KvGePoint3d& p);
/// The same with the arguments in the other order.
KVGE_API double DistanceSqr2d(const KvGePoint3d& p, const KvGeLine23d& l);
/// From the circle line in plan: the square of |p - centre| - radius.
KVGE_API double DistanceSqr2d(const KvGeCircle23d& c, const KvGePoint3d& p);
/// The same with the arguments in the other order.
KVGE_API double DistanceSqr2d(const KvGePoint3d& p, const KvGeCircle23d& c);
/// From the arc in plan. The arc is taken as the angles from the smaller to the larger of Beg
/// and End, whatever its direction; a direction within that range (in the angle band of 1e-6
/// radians, inclusive) is measured to the circle line, any other to the nearer of the two end
/// points.
KVGE_API double DistanceSqr2d(const KvGeArc23d& a, const KvGePoint3d& p);
/// The same with the arguments in the other order.
KVGE_API double DistanceSqr2d(const KvGePoint3d& p, const KvGeArc23d& a);
/// From the nearest edge of the closed sequence; 1e18 (the square of 1e9) for an empty one, NaN
/// or infinity for a point with a NaN or infinite coordinate.
KVGE_API double DistanceSqr2d(const KvGePoint2dArray& a, const KvGePoint2d& p);
/// The same with the arguments in the other order.
KVGE_API double DistanceSqr2d(const KvGePoint2d& p, const KvGePoint2dArray& a);

/// The index of the edge of the closed sequence nearest to p (edge i runs from point i to point
/// i + 1, the last one back to point 0); -1 for an empty sequence. Ties keep the lower index.
KVGE_API int NearestLineIndex2d(const KvGePoint2dArray& a, const KvGePoint2d& p);
/// The polygon of the set whose nearest edge lies nearest to p, then that edge: two elements,
/// (-1, -1) for an empty set. Ties keep the lower polygon index.
KVGE_API KvBtIntegerArray NearestLineIndex2d(const KvGePolygon2dArray& a, const KvGePoint2d& p);
/// The longest edge among those nearer to p than maxDistance (plain comparisons, no tolerance:
/// an edge exactly maxDistance away does not count); when no edge of positive length is that
/// near, the nearest edge. -1 for an empty sequence.
KVGE_API int NearestLongestPolyLineIndex2d(const KvGePoint2dArray& a, const KvGePoint2d& p, double maxDistance);
