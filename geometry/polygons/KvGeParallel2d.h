#pragma once
/// @file
/// Offsets and clean-up of polygons and polylines.
///
/// ParallelPolygon2d grows a region by a positive distance and shrinks it by a negative one: the
/// result is the set of points whose distance from the region (for growing) or from its
/// complement (for shrinking) is at least |distance|, with the corners shaped by the join.
/// Miter joins run the two offset edges to their crossing unless the tip would lie farther than
/// miterLimit * |distance| from the corner; such a corner and every square join are cut off at
/// |distance| from the corner. Round joins (and round ends of a band) are flattened into chords
/// whose sagitta is at most eps. An open polyline gives the band of points within halfWidth of
/// it, its ends cut square at the end points (butt), extended by halfWidth (square) or rounded.
///
/// Offsets compute on the integer grid of the region operations (kKvGeRegionScale,
/// kKvGeRegionRange in KvGePolygon2d.h) and write a normalised polygon set. They return 1 on
/// success (an empty result included: a region shrunk away) and 0, with the result unchanged,
/// for a coordinate or distance beyond the range, a non-finite argument, an eps not above 0, or
/// a rounding that would need more than a million chords per full turn.
///
/// RemoveSchlaufen2d removes loops. A ring keeps the parts whose winding agrees with its own
/// orientation (the sign of its area): the little reversed loops that a raw offset leaves at a
/// concave corner, and the twisted lobes of a digitised outline, go; the result keeps the ring's
/// orientation (outer rings run as the ring did, holes against it). An open polyline loses every
/// closed loop between a crossing of two of its segments and the return to that crossing: the
/// path runs from the first crossing straight on along the later segment. Only true crossings
/// count (a segment passing from one side of the other to the other side, a vertex on the way
/// included); touching without crossing is no loop, so a polyline ending where it began keeps
/// its shape.
///
/// StreckenzugKorrigieren2d removes, within eps (inclusive), repeated points, middle vertices
/// that lie on the line through their neighbours, and zero-width spikes (a vertex where the path
/// turns back on itself along one line). A vertex is removed only when every vertex removed
/// between the same two kept neighbours lies within eps of the line through them, so a finely
/// digitised arc is not straightened by steps that are each small. A polyline keeps its first
/// and last point exactly.

#include "basics/UtilityGeometryExport.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

/// The shape of an offset corner. The underlying type is fixed so that any int cast to it is a
/// valid value, which the offsets refuse unless it is one of these.
enum KvGeJoin2d : int { kKvGeJoinMiter = 0, kKvGeJoinRound = 1, kKvGeJoinSquare = 2 };
/// The shape of the ends of a band around an open polyline.
enum KvGeEnd2d : int { kKvGeEndButt = 0, kKvGeEndSquare = 1, kKvGeEndRound = 2 };

/// The polygon grown (distance > 0) or shrunk (distance < 0), taken counter-clockwise whatever
/// its orientation (a self-crossing ring by the sign of its area). miterLimit is in multiples of
/// |distance|; values below 2 act as 2. eps is the flattening tolerance of round joins.
KVGE_API int ParallelPolygon2d(const KvGePolygon2d& polygon, double distance, KvGePolygon2dArray& result,
                               KvGeJoin2d join = kKvGeJoinMiter, double miterLimit = 2.0, double eps = 0.001);
/// The region of the set (read by winding, as the set's own operators read it) grown or shrunk;
/// the result carries the set's further value. The result may be the set itself.
KVGE_API int ParallelPolygon2d(const KvGePolygon2dArray& set, double distance, KvGePolygon2dArray& result,
                               KvGeJoin2d join = kKvGeJoinMiter, double miterLimit = 2.0, double eps = 0.001);
/// The band of half-width halfWidth (> 0) around the open polyline. A single point gives a
/// square or a flattened circle for square or round ends and nothing for butt ends.
KVGE_API int ParallelPolygon2d(const KvGePolyline2d& axis, double halfWidth, KvGePolygon2dArray& result,
                               KvGeEnd2d ends = kKvGeEndButt, KvGeJoin2d join = kKvGeJoinMiter, double miterLimit = 2.0,
                               double eps = 0.001);

/// The ring without its loops, as a normalised set oriented like the ring (may hold several
/// rings, or none). 0 (result unchanged) for a ring of fewer than three vertices, of area no
/// larger than 1e-6 in absolute value (no orientation), or beyond the coordinate range.
KVGE_API int RemoveSchlaufen2d(const KvGePolygon2d& ring, KvGePolygon2dArray& result);
/// In place: 1 when the ring without its loops is exactly one ring, which replaces it; otherwise
/// 0 and the ring is unchanged.
KVGE_API int RemoveSchlaufen2d(KvGePolygon2d& ring);
/// Every ring of the set by its own orientation; rings that vanish are dropped. 0 (set
/// unchanged) when a ring is beyond the coordinate range.
KVGE_API int RemoveSchlaufen2d(KvGePolygon2dArray& set);
/// The open polyline without its loops. 0 (unchanged) for fewer than two points or a
/// non-finite coordinate.
KVGE_API int RemoveSchlaufen2d(KvGePolyline2d& polyline);

/// Repeated points, collinear middle vertices and spikes removed within eps (> 0). 0 (unchanged)
/// for fewer than two points, a non-finite coordinate or eps, or a polyline whose points all
/// lie within eps of its first point.
KVGE_API int StreckenzugKorrigieren2d(KvGePolyline2d& polyline, double eps = 0.001);
/// The same on the closed ring (the closing edge included; a closing duplicate of the first
/// point is removed). 0 (unchanged) when fewer than three vertices would remain.
KVGE_API int StreckenzugKorrigieren2d(KvGePolygon2d& polygon, double eps = 0.001);
