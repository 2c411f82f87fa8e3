#pragma once
/// @file
/// KvGePolyVert2d: a polygon vertex that carries a shape code and a bulge. Shape 1 marks a vertex
/// whose following segment is an arc given by the bulge; other codes are carried unchanged.
/// Equality takes the point rule (within 0.001, same kind), equal shapes and exactly equal
/// bulges (no tolerance on the bulge).

#include <cstdint>
#include <iosfwd>

#include "basics/UtilityGeometryExport.h"
#include "geometry/points/KvGePoint2d.h"

class KvGeModMat2d;

/// A polygon vertex with a shape code and a bulge (shape 1: the following segment is an arc of that bulge). Equal when
/// the points are equal within 0.001 (same kind), the shapes equal and the bulges exactly equal.
class KVGE_API KvGePolyVert2d {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  KvGePolyVert2d() = default;
  /// A vertex at point with the given shape and bulge.
  KvGePolyVert2d(const KvGePoint2d& point, std::uint16_t shape, double bulge)
      : m_Point(point), m_Shape(shape), m_Bulge(bulge) {}
  /// A vertex at the ordinary point (x, y) with the given shape and bulge.
  KvGePolyVert2d(double x, double y, std::uint16_t shape, double bulge)
      : m_Point(x, y, 0), m_Shape(shape), m_Bulge(bulge) {}
  /// Copies point, shape and bulge.
  KvGePolyVert2d(const KvGePolyVert2d&) = default;
  /// Copies point, shape and bulge.
  KvGePolyVert2d& operator=(const KvGePolyVert2d&) = default;
  virtual ~KvGePolyVert2d();

  /// Replaces point, shape and bulge.
  KvGePolyVert2d& Set(const KvGePoint2d& point, std::uint16_t shape, double bulge) {
    m_Point = point;
    m_Shape = shape;
    m_Bulge = bulge;
    return *this;
  }
  /// Replaces point (ordinary (x, y)), shape and bulge.
  KvGePolyVert2d& Set(double x, double y, std::uint16_t shape, double bulge) {
    return Set(KvGePoint2d(x, y, 0), shape, bulge);
  }

  /// The point.
  KvGePoint2d& Point() { return m_Point; }
  /// The point.
  const KvGePoint2d& Point() const { return m_Point; }
  /// The shape code: 1 for an arc to the next vertex, other codes carried unchanged.
  std::uint16_t& Shape() { return m_Shape; }
  /// The shape code: 1 for an arc to the next vertex, other codes carried unchanged.
  std::uint16_t Shape() const { return m_Shape; }
  /// The bulge tan(sweep / 4) of the arc to the next vertex (shape 1).
  double& Bulge() { return m_Bulge; }
  /// The bulge tan(sweep / 4) of the arc to the next vertex (shape 1).
  double Bulge() const { return m_Bulge; }

  /// 1 when the points are equal within 0.001 (same kind), the shapes equal and the bulges exactly equal.
  int operator==(const KvGePolyVert2d& o) const {
    return (m_Point == o.m_Point && m_Shape == o.m_Shape && m_Bulge == o.m_Bulge) ? 1 : 0;
  }
  /// The negation of operator==.
  int operator!=(const KvGePolyVert2d& o) const { return (*this == o) ? 0 : 1; }

  /// An arc vertex (shape 1) changes the sign of its bulge; any other vertex stays as it is.
  KvGePolyVert2d& Invert() {
    if (m_Shape == 1) m_Bulge = -m_Bulge;
    return *this;
  }
  /// An inverted copy.
  KvGePolyVert2d Inverted() const { return KvGePolyVert2d(*this).Invert(); }
  /// The point transformed; shape and bulge kept.
  KvGePolyVert2d& Transform(const KvGeModMat2d& m) {
    m_Point.Transform(m);
    return *this;
  }
  /// A transformed copy.
  KvGePolyVert2d Transformed(const KvGeModMat2d& m) const { return KvGePolyVert2d(*this).Transform(m); }

 private:
  KvGePoint2d m_Point;
  std::uint16_t m_Shape = 0;
  double m_Bulge = 0.0;
};

/// Writes "VERTEX (x y) shape s bulge b".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePolyVert2d& v);
