#pragma once
/// @file
/// Well-known text (WKT) for the plane and plan classes.
///
///   KvGePoint2d           POINT (x y)
///   KvGePoint2dArray      MULTIPOINT ((x y), (x y))     (reads the bare form (x y, x y) too)
///   KvGeLine2d            LINESTRING (x1 y1, x2 y2)     (exactly two points)
///   KvGePolyline2d        LINESTRING (x y, ...)
///   KvGePolyline2dArray   MULTILINESTRING ((x y, ...), ...)
///   lines (KvBtDynArray<KvGeLine2d>, as the pieces functions give them)
///                         MULTILINESTRING ((x1 y1, x2 y2), ...)   (two points each)
///   KvGePolygon2d         POLYGON ((x y, ..., x0 y0))   (one ring, no holes)
///   KvGePolygon2dArray    POLYGON with holes, or MULTIPOLYGON when it has more than one shell
///   KvGePoint3d           POINT Z (x y z)
///   KvGePoint3dArray      MULTIPOINT Z ((x y z), ...)
///   KvGeLine3d            LINESTRING Z (two points)
///   KvGeLine23d           LINESTRING Z (two points)
///   KvGePolygon3d         POLYGON Z ((x y z, ...))      (one ring)
///   KvGePolygon23d        POLYGON Z ((x y z, ...))      (one ring)
///
/// What WKT has no form for is neither written nor read: the flag of a point at infinity (points
/// read are finite), the Segment and Sense of lines (read as 1 and 1), the height of the plan
/// classes (read as 0) and the further value of a polygon set (read as 0). Reading into an
/// existing object replaces it as a whole.
///
/// Writing gives the shortest text of each double that reads back to the same bits
/// (std::to_chars), so that reading what was written gives bit-identical coordinates, -0 and
/// subnormal numbers included. Rings are written closed (the first point repeated at the end);
/// reading drops a last point that equals the first exactly, and takes an unclosed ring as it
/// stands. A coordinate that is not finite is written as nan, inf or -inf, which the reader
/// rejects: WKT has no number for it. An empty array is written as "<TYPE> EMPTY".
///
/// Reading is a hand-written recursive-descent parser over the text. It was chosen over
/// Boost.Geometry's WKT reader because that one reports errors by throwing, names the offending
/// token rather than its offset, and builds each number through a stream; this one never throws,
/// reports "expected ')' at offset 23" (offsets count bytes from the start of the text), and reads
/// each number in place with std::from_chars, with no allocation per number (bench_wkt: about 17
/// times less CPU time than Boost.Geometry's reader on polygons of 64 vertices). Keywords are case-
/// insensitive; blanks, tabs and line breaks separate tokens. Numbers follow the C locale form with
/// an optional sign and exponent; NaN, infinities and numbers out of the range of a double (1e999,
/// and 1e-400, which would read as 0; subnormal numbers are read) are rejected with a message. EMPTY
/// is read wherever WKT allows it: as a whole (an empty array, polyline or polygon; no point or line
/// can be empty) and as a member of a MULTILINESTRING or MULTIPOLYGON or a ring of a POLYGON (an
/// empty polyline; no ring, for a polygon set). Z tags are accepted by the Z forms, which also
/// accept three numbers without the tag and two numbers (z read as 0); the plane forms reject a
/// third coordinate. M and ZM forms and GEOMETRYCOLLECTION are rejected.
///
/// Orientation: reading makes every shell counter-clockwise and every hole clockwise, as the
/// counting rule of the containment and the region operations reads them (a ring with area 0
/// keeps its order; an inverted ring keeps its first vertex, as KvGePolygon2d::Invert does).
/// KvGePolygon23d rings are oriented in plan; KvGePolygon3d rings are read as they stand. Writing
/// keeps the order of every ring. A polygon set is written as POLYGON when it has at most one
/// shell and as MULTIPOLYGON otherwise: its rings with positive area (counter-clockwise) and
/// those with area 0 are shells, its clockwise rings holes, and each hole is written under the
/// smallest shell that contains it (containment by the counting rule, a hole touching its shell's
/// boundary within 0.001 counts as contained). A clockwise ring that no shell contains encloses
/// nothing under the counting rule; it is written as a polygon of its own, so that no ring is
/// lost, and so reads back counter-clockwise. Rings without points are not written.
///
/// Every function returns 1 on success and 0 on failure; on failure the target is unchanged and,
/// when message is not null, *message is set to one line such as
/// "expected ')' at offset 23" or "expected POLYGON, got LINESTRING at offset 0". Nothing throws
/// (an allocation failure is reported as a failure).

#include <cstddef>
#include <string>

#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/points/KvGePoint3d.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

class KvGeWktGeometry;

/// @{
/// Reads the WKT text (zero-terminated; or the given number of bytes) into out. 1 on success;
/// 0 with out unchanged and *message (when given) naming the offset and what was expected.
KVGE_API int KvGeReadWkt(const char* text, KvGePoint2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePoint2dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGeLine2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePolyline2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePolyline2dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvBtDynArray<KvGeLine2d>& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePolygon2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePolygon2dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePoint3d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePoint3dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGeLine3d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGeLine23d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePolygon3d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGePolygon23d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, KvGeWktGeometry& out, std::string* message = nullptr);
/// @}

/// @{
/// The same on a text of length bytes that need not be zero-terminated (a zero byte inside it
/// is an error like any other stray character).
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePoint2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePoint2dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGeLine2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePolyline2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePolyline2dArray& out,
                         std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvBtDynArray<KvGeLine2d>& out,
                         std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon2d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon2dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePoint3d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePoint3dArray& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGeLine3d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGeLine23d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon3d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon23d& out, std::string* message = nullptr);
KVGE_API int KvGeReadWkt(const char* text, std::size_t length, KvGeWktGeometry& out, std::string* message = nullptr);
/// @}

/// The same on a std::string (its whole length).
template <class T>
int KvGeReadWkt(const std::string& text, T& out, std::string* message = nullptr) {
  return KvGeReadWkt(text.data(), text.size(), out, message);
}

/// @{
/// Appends the WKT of the object to out (for loops that reuse one string), or returns it.
KVGE_API void KvGeWriteWkt(const KvGePoint2d& p, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePoint2dArray& points, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGeLine2d& line, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePolyline2d& polyline, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePolyline2dArray& polylines, std::string& out);
KVGE_API void KvGeWriteWkt(const KvBtDynArray<KvGeLine2d>& lines, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePolygon2d& polygon, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePolygon2dArray& region, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePoint3d& p, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePoint3dArray& points, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGeLine3d& line, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGeLine23d& line, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePolygon3d& polygon, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGePolygon23d& polygon, std::string& out);
KVGE_API void KvGeWriteWkt(const KvGeWktGeometry& geometry, std::string& out);
/// @}

/// The WKT of the object as a new string.
template <class T>
std::string KvGeWriteWkt(const T& object) {
  std::string out;
  KvGeWriteWkt(object, out);
  return out;
}

/// Appends the shortest text of v that reads back to the same double (std::to_chars).
KVGE_API void KvGeWriteWktNumber(double v, std::string& out);

/// Any one geometry that the WKT reader understands, with its kind: what a program that takes
/// WKT from its user reads before it knows what it was given. An empty text of a kind (such as
/// "LINESTRING EMPTY") keeps its kind and has IsEmpty() 1.
class KVGE_API KvGeWktGeometry {
 public:
  /// The kinds of geometry the reader understands.
  enum Kind {
    kNone = 0,  // nothing read yet
    kPoint,
    kMultiPoint,
    kLineString,
    kMultiLineString,
    kPolygon,
    kMultiPolygon,
    kPointZ,
    kMultiPointZ,
    kLineStringZ,
    kPolygonZ,
  };

  KvGeWktGeometry() = default;
  /// Copies the kind and the content.
  KvGeWktGeometry(const KvGeWktGeometry&) = default;
  /// Copies the kind and the content.
  KvGeWktGeometry& operator=(const KvGeWktGeometry&) = default;
  virtual ~KvGeWktGeometry();

  /// The geometries of a kind, each replacing what the object held.
  KvGeWktGeometry& Set(const KvGePoint2d& p);
  /// A MULTIPOINT of the points.
  KvGeWktGeometry& Set(const KvGePoint2dArray& points);  // MULTIPOINT
  /// A LINESTRING of the line's two points.
  KvGeWktGeometry& Set(const KvGeLine2d& line);  // LINESTRING of two points
  /// A LINESTRING of the polyline's points.
  KvGeWktGeometry& Set(const KvGePolyline2d& polyline);
  /// A MULTILINESTRING of the polylines.
  KvGeWktGeometry& Set(const KvGePolyline2dArray& polylines);
  /// A MULTILINESTRING of two-point lines.
  KvGeWktGeometry& Set(const KvBtDynArray<KvGeLine2d>& lines);  // MULTILINESTRING
  /// A POLYGON of the one ring.
  KvGeWktGeometry& Set(const KvGePolygon2d& polygon);
  /// POLYGON or MULTIPOLYGON by the number of shells, as the writer counts them.
  KvGeWktGeometry& Set(const KvGePolygon2dArray& region);
  /// A POINT Z.
  KvGeWktGeometry& Set(const KvGePoint3d& p);
  /// A MULTIPOINT Z of the points.
  KvGeWktGeometry& Set(const KvGePoint3dArray& points);  // MULTIPOINT Z
  /// A LINESTRING Z of the line's two points.
  KvGeWktGeometry& Set(const KvGeLine3d& line);  // LINESTRING Z
  /// A POLYGON Z of the one ring.
  KvGeWktGeometry& Set(const KvGePolygon3d& polygon);  // POLYGON Z
  /// A LINESTRING Z of the plan line's two points (the height is not kept).
  KvGeWktGeometry& Set(const KvGeLine23d& line);  // LINESTRING Z
  /// A POLYGON Z of the plan polygon's ring (the height is not kept).
  KvGeWktGeometry& Set(const KvGePolygon23d& polygon);  // POLYGON Z
  /// Back to kNone.
  KvGeWktGeometry& Clear();

  /// The kind held; kNone before anything was set or read.
  Kind GetKind() const { return m_Kind; }
  /// The WKT keyword of the kind ("POINT", "MULTIPOLYGON", "LINESTRING Z", ...; "" for kNone).
  const char* KindName() const;
  /// 0 for points, 1 for lines, 2 for areas, -1 for kNone.
  int Dimension() const;
  /// 1 for the Z kinds.
  int Is3d() const;
  /// 1 for kNone and for an empty geometry of any kind.
  int IsEmpty() const;

  /// The content of each kind. For other kinds they return an empty object (a point at the
  /// origin), so check GetKind() or use the conversions below.
  const KvGePoint2d& Point() const { return m_Point; }  // kPoint
  /// The points of kMultiPoint.
  const KvGePoint2dArray& Points() const { return m_Points; }  // kMultiPoint
  /// The polyline of kLineString.
  const KvGePolyline2d& Polyline() const { return m_Polyline; }  // kLineString
  /// The polylines of kMultiLineString.
  const KvGePolyline2dArray& Polylines() const { return m_Lines; }  // kMultiLineString
  /// The region of kPolygon and kMultiPolygon.
  const KvGePolygon2dArray& Region() const { return m_Region; }  // kPolygon, kMultiPolygon
  /// The point of kPointZ.
  const KvGePoint3d& Point3d() const { return m_Point3; }  // kPointZ
  /// kMultiPointZ, kLineStringZ and kPolygonZ (the ring without its closing point).
  const KvGePoint3dArray& Points3d() const { return m_Points3; }

  /// Conversions across kinds, in plan for the Z kinds (z dropped). Each gives 1 and fills
  /// out when the kind has that form, else 0 with out unchanged:
  /// a point from kPoint or kPointZ (not empty);
  int GetPoint(KvGePoint2d& out) const;
  /// the points of every kind (vertices of lines and rings, closing points not repeated);
  int GetPoints(KvGePoint2dArray& out) const;
  /// a line from a LINESTRING (plane or Z) of exactly two points;
  int GetLine(KvGeLine2d& out) const;
  /// a polyline from kLineString or kLineStringZ;
  int GetPolyline(KvGePolyline2d& out) const;
  /// polylines from kLineString, kMultiLineString or kLineStringZ, and the closed boundary rings
  /// (first point repeated at the end) of kPolygon, kMultiPolygon and kPolygonZ;
  int GetPolylines(KvGePolyline2dArray& out) const;
  /// a region from kPolygon, kMultiPolygon or kPolygonZ (its ring oriented counter-clockwise
  /// in plan; Points3d() keeps it as read, as KvGePolygon3d does).
  int GetRegion(KvGePolygon2dArray& out) const;

  /// The box of all coordinates in plan, however far from the origin; the empty box when there
  /// are none.
  KvGeBox2d BoundingBox() const;

 private:
  Kind m_Kind = kNone;
  int m_Empty = 0;  // POINT EMPTY and POINT Z EMPTY, which have no point
  KvGePoint2d m_Point;
  KvGePoint2dArray m_Points;
  KvGePolyline2d m_Polyline;
  KvGePolyline2dArray m_Lines;
  KvGePolygon2dArray m_Region;
  KvGePoint3d m_Point3;
  KvGePoint3dArray m_Points3;

  friend struct KvGeWktAccess;
};
