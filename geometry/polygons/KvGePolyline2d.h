#pragma once
/// @file
/// Polylines: open point sequences in the plane. n points give n - 1 lines, with no closing
/// line. A polyline's Invert reverses the whole sequence (start and end change places), unlike
/// the polygon's, which keeps its first vertex. Built from 3D points it keeps each point's flag
/// of a point at infinity.

#include <initializer_list>
#include <iosfwd>

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/points/KvGePoint2dArray.h"

class KvGeModMat2d;

/// An open sequence of plane points: n points give n - 1 lines, no closing line. Invert reverses the whole sequence.
class KVGE_API KvGePolyline2d : public KvGePoint2dArray {
 public:
  KvGePolyline2d() = default;
  /// The points in the order given.
  KvGePolyline2d(std::initializer_list<KvGePoint2d> points) : KvGePoint2dArray(points) {}
  /// A deep copy of the points.
  explicit KvGePolyline2d(const KvGePoint2dArray& points) { Set(points); }
  /// x, y and the flag of each 3D point.
  explicit KvGePolyline2d(const KvGePoint3dArray& points) { Set(points); }
  /// A deep copy of the points.
  KvGePolyline2d(const KvGePolyline2d& other) : KvGePoint2dArray() { Set(other); }
  /// A deep copy of the points; assigning the polyline to itself does nothing.
  KvGePolyline2d& operator=(const KvGePolyline2d& other) { return Set(other); }
  ~KvGePolyline2d() override;

  /// A deep copy of the points; assigning the polyline to itself does nothing.
  KvGePolyline2d& Set(const KvGePoint2dArray& points) {
    DeepCopy(points);
    return *this;
  }
  /// x, y and the flag of each 3D point.
  KvGePolyline2d& Set(const KvGePoint3dArray& points);

  /// The summed length of the n - 1 lines; 0 for fewer than two points.
  double Length() const;
  /// n - 1 for n points; 0 for fewer than two.
  unsigned NumberOfLines() const { return GetSize() > 1 ? static_cast<unsigned>(GetSize() - 1) : 0u; }
  /// The whole order reversed: the last point becomes the first.
  KvGePolyline2d& Invert() {
    NewFirstElement(-1, 1);
    return *this;
  }
  /// An inverted copy.
  KvGePolyline2d Inverted() const { return KvGePolyline2d(*this).Invert(); }
  /// Transforms every point by m.
  KvGePolyline2d& Transform(const KvGeModMat2d& m) {
    KvGePoint2dArray::Transform(m);
    return *this;
  }
  /// A transformed copy.
  KvGePolyline2d Transformed(const KvGeModMat2d& m) const { return KvGePolyline2d(*this).Transform(m); }
};

/// A growable array of polylines.
class KVGE_API KvGePolyline2dArray : public KvBtDynArray<KvGePolyline2d> {
 public:
  KvGePolyline2dArray() = default;
  /// The polylines in the order given, each deep-copied.
  KvGePolyline2dArray(std::initializer_list<KvGePolyline2d> polylines) : KvBtDynArray(polylines) {}
  /// An array holding one copy of the polyline.
  explicit KvGePolyline2dArray(const KvGePolyline2d& polyline) { Set(polyline); }
  /// Copies the polylines.
  KvGePolyline2dArray(const KvGePolyline2dArray&) = default;
  /// Copies the polylines.
  KvGePolyline2dArray& operator=(const KvGePolyline2dArray&) = default;
  ~KvGePolyline2dArray() override;

  /// Empties the array and adds one copy of the polyline.
  KvGePolyline2dArray& Set(const KvGePolyline2d& polyline) {
    SetSize(0);
    Add(polyline);
    return *this;
  }
};

/// Writes WKT, "LINESTRING (x y, ...)", or "LINESTRING EMPTY".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePolyline2d& v);
