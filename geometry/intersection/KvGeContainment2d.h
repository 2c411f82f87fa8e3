#pragma once
/// @file
/// Containment in a region: whether a point, line, polyline or polygon lies outside, on the
/// boundary of or inside a polygon or a polygon set. The answer is a bit set:
///   1  (some of) the tested object lies outside,
///   2  (some of) it lies on the boundary, or it crosses the boundary,
///   4  (some of) it lies inside.
/// A point yields exactly one of them; a line, polyline or polygon the union over its pieces.
///
/// Orientation is part of the answer. Regions are decided by counting crossing senses, not by
/// parity: a counter-clockwise ring encloses its inside, and a clockwise ring inside it cuts a
/// hole. A clockwise polygon on its own encloses nothing: its inside counts as outside (1), and
/// only its boundary band still answers 2. A counter-clockwise ring inside another one is no
/// hole; its inside stays inside. Rings of a polygon set are taken together as one region, so a
/// set with a counter-clockwise outer ring and clockwise inner rings is a region with holes.
///
/// A point within 0.001 of an edge of a polygon (squared distance no greater than 1e-6; the
/// foot of the perpendicular may lie up to 0.001 beyond the edge's end) is on the boundary (2).
/// Otherwise the horizontal line through the point is cut with the edges: an edge end within
/// 0.001 of the line's height counts as lying on it, so an edge reaching the line at a vertex is
/// cut there, and a horizontal edge on the line is not cut at all. The calculator's parts of the
/// line then tell the point's side; where an inside and an outside part meet at the point
/// (within 0.001), the answer is 2. A polygon set has no separate boundary test: a point is on
/// its boundary only through the parts of that line, that is within 0.001 of a crossing measured
/// along the horizontal, so the band of a slanted edge is narrower there than for a polygon.
///
/// Lines are cut as infinite lines and then clipped to their segment; a part of zero length
/// only tells whether the line touches inside and outside at once (then 2 is set). A line that
/// only touches a convex corner from outside yields 1. A polyline or polygon is tested edge by
/// edge (the polygon's edges closed back to its first point). Testing a polygon set, or a
/// polygon against a polygon set, answers 1 without looking at the arguments: this is
/// deliberate, such tests are not made by this function.

/// \file
/// Non-finite input: a point with a coordinate that is not finite lies nowhere and answers 1
/// (outside). See docs/non-finite-policy.md.

#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

/// 2 when p lies within 0.001 of an edge (inclusive), else 4 inside and 1 outside by the
/// crossing senses (counter-clockwise encloses). 1 for a polygon without vertices. Allocates
/// nothing, unless a crossing of the horizontal line through p lies within 0.001 of it and the
/// line crosses more than 62 edges.
KVGE_API unsigned short Containment(const KvGePoint2d& p, const KvGePolygon2d& poly);
/// The rings of the set as one region (clockwise rings inside counter-clockwise ones are
/// holes); no separate boundary band. 1 for an empty set. Allocates as the polygon form.
KVGE_API unsigned short Containment(const KvGePoint2d& p, const KvGePolygon2dArray& set);
/// The union of the bits of the line's parts (1 to 7); 0 for a bounded line no longer than
/// 0.001, which has no part of positive length. An unbounded line always has outside parts.
KVGE_API unsigned short Containment(const KvGeLine2d& l, const KvGePolygon2d& poly);
/// The line against the set as one region; bits as for the polygon, without a separate boundary band.
KVGE_API unsigned short Containment(const KvGeLine2d& l, const KvGePolygon2dArray& set);
/// The union over the polyline's edges; 0 for fewer than two vertices.
KVGE_API unsigned short Containment(const KvGePolyline2d& l, const KvGePolygon2d& poly);
/// The polyline against the set as one region, edge by edge; 0 for fewer than two vertices.
KVGE_API unsigned short Containment(const KvGePolyline2d& l, const KvGePolygon2dArray& set);
/// The union over the tested polygon's edges, the last closing back to its first vertex; 0 for
/// a polygon without vertices.
KVGE_API unsigned short Containment(const KvGePolygon2d& tested, const KvGePolygon2d& poly);
/// Always 1 (outside), whatever the arguments: deliberate.
KVGE_API unsigned short Containment(const KvGePolygon2dArray& tested, const KvGePolygon2d& poly);
/// Always 1 (outside), whatever the arguments: deliberate.
KVGE_API unsigned short Containment(const KvGePolygon2d& tested, const KvGePolygon2dArray& set);
/// Always 1 (outside), whatever the arguments: deliberate.
KVGE_API unsigned short Containment(const KvGePolygon2dArray& tested, const KvGePolygon2dArray& set);
