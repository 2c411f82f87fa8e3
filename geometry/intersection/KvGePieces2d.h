#pragma once
/// @file
/// Pieces: the parts of a line or polyline that lie inside (and, on request, on the boundary of)
/// a closed point sequence, a polygon or a polygon set.
///
/// The line is cut as an infinite line (its end points fix its direction and the origin of its
/// parameter) with every edge of the region, the crossings are sorted along it and the
/// calculator types the parts between them by their crossing count: inside, on the boundary or
/// outside. As in containment, a counter-clockwise ring encloses its inside and a clockwise ring
/// inside it is a hole; a clockwise ring on its own encloses nothing and yields no pieces. A
/// line that runs along an edge is not cut by it (collinear edges give no crossing).
///
/// mode 0: each inside part becomes one piece, clipped to the segment when the line is bounded;
/// parts meeting at a crossing (a hole touched at a corner, a vertex passed through) stay
/// separate pieces. mode non-zero: consecutive parts inside or on the boundary are joined into
/// one run, which ends at the next outside part; the run is clipped to the segment when the line
/// is bounded. Pieces shorter than 0.001 are dropped. Every piece is a bounded line (Segment 1,
/// Sense 1) running the way the line runs, and pieces come in order along the line.
///
/// Polylines are cut edge by edge and the pieces chained: a piece that starts where the last
/// output polyline ends (within 0.001) continues that polyline, otherwise it starts a new one. So
/// a polyline that stays inside across its vertices comes back as one polyline, and each time it
/// leaves the region and comes back a new one begins; a polyline ending where it started is not
/// closed up. The polyline forms answer the number of polylines written.

/// \file
/// Non-finite input: a line with an end that is not finite yields no pieces, since none of its
/// crossings is finite. See docs/non-finite-policy.md.

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

namespace KvGeDetail {

/// Internal to the library (not exported): the crossings of the unbounded copy of l with the
/// edges of the region added to calc, sorted and cut into parts; and the part that runs from
/// l.P1 (parameter 0, end code -1) to l.P2 (its length, end code 1), to clip parts to l.
void CutUnbounded(const KvGeLine2d& l, const KvGePoint2dArray& region, KvGeIntrCalculator2d& calc);
void CutUnbounded(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvGeIntrCalculator2d& calc);
KvGeIntrPart2d SegmentPart(const KvGeLine2d& l);
/// Internal: the containment bits of l read from calc, cut along its unbounded copy (the line
/// containment's reading, shared by the free function and the prepared region).
unsigned short LineBits(const KvGeLine2d& l, const KvGeIntrCalculator2d& calc);

}  // namespace KvGeDetail

/// The pieces of l inside the closed sequence (mode 0), or inside and on its boundary joined
/// (mode non-zero), into out (emptied first); returns their number.
KVGE_API int Intersection2d(const KvGeLine2d& l, const KvGePoint2dArray& region, KvBtDynArray<KvGeLine2d>& out,
                            int mode);
/// The same with the arguments in the other order.
KVGE_API int Intersection2d(const KvGePoint2dArray& region, const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out,
                            int mode);
/// The same with all rings of the set as one region (clockwise rings inside are holes).
KVGE_API int Intersection2d(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvBtDynArray<KvGeLine2d>& out,
                            int mode);
/// The same with the arguments in the other order.
KVGE_API int Intersection2d(const KvGePolygon2dArray& region, const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out,
                            int mode);
/// The segment p1-p2 against the set; the set is taken by value.
KVGE_API int Intersection2d(KvGePoint2d p1, KvGePoint2d p2, KvGePolygon2dArray region, KvBtDynArray<KvGeLine2d>& out,
                            int mode);
/// The pieces of the polyline's edges, chained into polylines (see above); returns the number
/// of polylines in out (emptied first).
KVGE_API int Intersection2d(const KvGePolyline2d& l, const KvGePolygon2d& region, KvGePolyline2dArray& out, int mode);
/// The same with the arguments in the other order.
KVGE_API int Intersection2d(const KvGePolygon2d& region, const KvGePolyline2d& l, KvGePolyline2dArray& out, int mode);
/// The pieces of the polyline's edges in the set as one region, chained into polylines.
KVGE_API int Intersection2d(const KvGePolyline2d& l, const KvGePolygon2dArray& region, KvGePolyline2dArray& out,
                            int mode);
/// The same with the arguments in the other order.
KVGE_API int Intersection2d(const KvGePolygon2dArray& region, const KvGePolyline2d& l, KvGePolyline2dArray& out,
                            int mode);
