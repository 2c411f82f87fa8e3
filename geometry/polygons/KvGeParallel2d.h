#pragma once
/// @file
/// Offsets and clean-up of polygons and polylines.
///
/// The offsets and the loop removal of rings compute on the integer grid of the region
/// operations of polygon sets: every coordinate is rounded to kKvGeRegionScale (1e6) units per
/// drawing unit, a grid of 1e-6, and must lie within +-kKvGeRegionRange (1e9) drawing units,
/// bounds included; a coordinate beyond that or not finite makes the call fail with 0 and the
/// output unchanged. Nothing of the clipping library and no failed allocation leaves these
/// functions: such a failure is the result 0 as well.
///
/// Their polygon set results are normalised as the set's operators leave them: outer rings
/// counter-clockwise, each followed by its holes clockwise; no ring crosses itself or another
/// (rings may touch at single vertices); no two consecutive vertices within 0.001; no vertex
/// within 0.001 of the line through its neighbours; no ring of area below 1e-6.
///
/// The polyline correction and the loop removal of open polylines compute on the coordinates as
/// they are (any finite value).

#include "basics/UtilityGeometryExport.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

/// The shape of an offset corner, as a code (any other value is refused with 0):
/// - kKvGeJoinMiter (0): the two offset edges run on to their crossing, unless the tip would lie
///   farther than miterLimit * |distance| from the corner; such a tip is cut off square at that
///   distance.
/// - kKvGeJoinRound (1): an arc around the corner, flattened into chords whose sagitta is at most
///   eps.
/// - kKvGeJoinSquare (2): the corner cut off square at |distance| from it.
/// The underlying type is fixed, so that any int cast to it is a value the offsets can refuse.
enum KvGeJoin2d : int { kKvGeJoinMiter = 0, kKvGeJoinRound = 1, kKvGeJoinSquare = 2 };

/// The shape of the ends of a band around an open polyline, as a code (any other value is
/// refused with 0):
/// - kKvGeEndButt (0): cut square at the end points.
/// - kKvGeEndSquare (1): cut square halfWidth beyond the end points.
/// - kKvGeEndRound (2): a half circle of radius halfWidth, flattened within eps.
enum KvGeEnd2d : int { kKvGeEndButt = 0, kKvGeEndSquare = 1, kKvGeEndRound = 2 };

/// The region of the polygon grown by distance (> 0) or shrunk by -distance (< 0): the points
/// within distance of the region, or those farther than -distance from its complement, with the
/// corners shaped by join (see KvGeJoin2d); distance 0 gives the region itself. The polygon is
/// taken counter-clockwise whatever its orientation, so a clockwise polygon on its own grows and
/// shrinks like the same polygon counter-clockwise (a self-crossing ring is oriented by the sign
/// of its area, then read by winding). miterLimit is in multiples of |distance|; values below 2
/// act as 2. eps (> 0) is the largest sagitta of the chords of round joins.
/// result: the normalised polygon set (empty when the polygon shrinks away); its further value
/// is kept. 1 on success; 0, result unchanged, for a coordinate or |distance| beyond 1e9, a
/// non-finite argument, an unknown join, eps not above 0, or a rounding that would take more
/// than a million chords per full turn.
KVGE_API int ParallelPolygon2d(const KvGePolygon2d& polygon, double distance, KvGePolygon2dArray& result,
                               KvGeJoin2d join = kKvGeJoinMiter, double miterLimit = 2.0, double eps = 0.001);
/// The region of the set grown or shrunk as for a single polygon, the rings read by winding as
/// the set's own operators read them: a clockwise ring inside a counter-clockwise one is a hole,
/// which shrinks as the region grows; a clockwise ring on its own encloses nothing, so a set of
/// only clockwise rings gives an empty result (and 1). result is the normalised set with the
/// set's further value; it may be the set itself. 1 on success; 0, result unchanged, on the same
/// failures as for a single polygon.
KVGE_API int ParallelPolygon2d(const KvGePolygon2dArray& set, double distance, KvGePolygon2dArray& result,
                               KvGeJoin2d join = kKvGeJoinMiter, double miterLimit = 2.0, double eps = 0.001);
/// The band of the points within halfWidth (> 0) of the open polyline (n points, n - 1 lines,
/// no closing line): a wall outline from its axis. Its ends are shaped by ends (see KvGeEnd2d),
/// its corners by join, miterLimit and eps as for a polygon. A polyline of one point (or of
/// points all on one grid point) gives a square of side 2 halfWidth for square ends, a circle
/// flattened within eps for round ends, and an empty result (and 1) for butt ends. result is the
/// normalised set; its further value is kept. 1 on success; 0, result unchanged, for an empty
/// polyline, halfWidth not above 0 or beyond 1e9, an unknown end or join code, or the failures
/// listed for a polygon.
KVGE_API int ParallelPolygon2d(const KvGePolyline2d& axis, double halfWidth, KvGePolygon2dArray& result,
                               KvGeEnd2d ends = kKvGeEndButt, KvGeJoin2d join = kKvGeJoinMiter, double miterLimit = 2.0,
                               double eps = 0.001);

/// The ring without its loops: the parts whose winding agrees with the ring's own orientation
/// (the sign of its area) stay, so the little reversed loops that a raw offset leaves at a
/// concave corner and the twisted lobes of a digitised outline go. result is a normalised set
/// oriented like the ring: for a counter-clockwise ring outer rings counter-clockwise (with any
/// holes the ring encloses clockwise); for a clockwise ring, a hole, every ring reversed, so the
/// rings run clockwise. It may hold several rings, or none. Its further value is kept. 1 on
/// success; 0, result unchanged, for fewer than three vertices, an area of 1e-6 or less in
/// absolute value (no orientation: a bow tie of equal lobes), or a coordinate beyond the range.
KVGE_API int RemoveSchlaufen2d(const KvGePolygon2d& ring, KvGePolygon2dArray& result);
/// In place: 1 when the ring without its loops is exactly one ring, which replaces it (oriented
/// like the ring); otherwise 0 and the ring is unchanged (several lobes remain, or none, or the
/// failures of the form above).
KVGE_API int RemoveSchlaufen2d(KvGePolygon2d& ring);
/// Every ring of the set without its loops, each by its own orientation (no union between the
/// rings: use Normalize for the region they enclose together). Rings that vanish, and rings of
/// fewer than three vertices or of area 1e-6 or less, are dropped. 1 on success; 0, set
/// unchanged, when a ring lies beyond the coordinate range.
KVGE_API int RemoveSchlaufen2d(KvGePolygon2dArray& set);
/// The open polyline without its loops: wherever a later line crosses an earlier one, the closed
/// loop between the crossing and the return to it goes, and the path runs from the crossing
/// straight on along the later line (the crossing point becomes a vertex). Only true crossings
/// count (a line passing from one side of the other to the other side, a vertex on the way
/// included); touching without crossing is no loop, so a polyline that ends where it began keeps
/// its shape. The first and last points stay exactly. 1 on success (also when nothing changes);
/// 0, unchanged, for fewer than two points or a non-finite coordinate.
KVGE_API int RemoveSchlaufen2d(KvGePolyline2d& polyline);
/// Every polyline of the array without its loops. 1 on success; 0, array unchanged, when a
/// polyline has a non-finite coordinate. Polylines of fewer than two points stay as they are.
KVGE_API int RemoveSchlaufen2d(KvGePolyline2dArray& polylines);

/// Removes, within eps (> 0, inclusive), repeated points, middle vertices that lie on the line
/// through their neighbours, and zero-width spikes (a vertex where the path turns back on itself
/// along one line). A vertex goes only when every vertex removed between the same two kept
/// neighbours lies within eps of the line through them, so a finely digitised arc is thinned to
/// chords within eps of it, not straightened by steps that are each small. The first and last
/// points stay exactly (of a repeated last point, the last one). 1 on success (also when nothing
/// changes); 0, unchanged, for fewer than two points, a non-finite coordinate or eps, eps not
/// above 0, or a polyline whose points all lie within eps of its first point.
KVGE_API int StreckenzugKorrigieren2d(KvGePolyline2d& polyline, double eps = 0.001);
/// The same on the closed ring, the closing edge included (a closing duplicate of the first
/// point is removed). The kept vertices keep their order and their exact coordinates; the ring
/// keeps its first vertex unless that one is removed. 1 on success; 0, unchanged, for fewer
/// than three vertices before or after, a non-finite coordinate or eps, or eps not above 0.
KVGE_API int StreckenzugKorrigieren2d(KvGePolygon2d& polygon, double eps = 0.001);
/// Every ring of the set corrected as a single ring; rings of fewer than three vertices, before
/// or after, are dropped. Rings are not united or checked against each other: use
/// Normalize for that. The further value is kept. 1 on success; 0, set unchanged, for a
/// non-finite coordinate or eps, or eps not above 0.
KVGE_API int StreckenzugKorrigieren2d(KvGePolygon2dArray& set, double eps = 0.001);
/// Every polyline of the array corrected; polylines that collapse to a point (all their points
/// within eps of the first) are dropped, polylines of fewer than two points too. 1 on success;
/// 0, array unchanged, for a non-finite coordinate or eps, or eps not above 0.
KVGE_API int StreckenzugKorrigieren2d(KvGePolyline2dArray& polylines, double eps = 0.001);
