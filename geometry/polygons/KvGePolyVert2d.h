#pragma once
/// @file
/// KvGePolyVert2d: a polygon vertex that carries a shape code and a bulge. Shape 1 marks a vertex
/// whose following segment is an arc given by the bulge; other codes are carried unchanged.
/// Equality takes the point rule (within 0.001, same kind), equal shapes and exactly equal
/// bulges (no tolerance on the bulge).

#include <cstdint>

#include "basics/UtilityGeometryExport.h"
#include "geometry/points/KvGePoint2d.h"

class KvGeModMat2d;

class KVGE_API KvGePolyVert2d {
 public:
  KvGePolyVert2d() = default;
  KvGePolyVert2d(const KvGePoint2d& point, std::uint16_t shape, double bulge)
      : m_Point(point), m_Shape(shape), m_Bulge(bulge) {}
  KvGePolyVert2d(double x, double y, std::uint16_t shape, double bulge)
      : m_Point(x, y, 0), m_Shape(shape), m_Bulge(bulge) {}
  KvGePolyVert2d(const KvGePolyVert2d&) = default;
  KvGePolyVert2d& operator=(const KvGePolyVert2d&) = default;
  virtual ~KvGePolyVert2d();

  KvGePolyVert2d& Set(const KvGePoint2d& point, std::uint16_t shape, double bulge) {
    m_Point = point;
    m_Shape = shape;
    m_Bulge = bulge;
    return *this;
  }
  KvGePolyVert2d& Set(double x, double y, std::uint16_t shape, double bulge) {
    return Set(KvGePoint2d(x, y, 0), shape, bulge);
  }

  KvGePoint2d& Point() { return m_Point; }
  const KvGePoint2d& Point() const { return m_Point; }
  std::uint16_t& Shape() { return m_Shape; }
  std::uint16_t Shape() const { return m_Shape; }
  double& Bulge() { return m_Bulge; }
  double Bulge() const { return m_Bulge; }

  int operator==(const KvGePolyVert2d& o) const {
    return (m_Point == o.m_Point && m_Shape == o.m_Shape && m_Bulge == o.m_Bulge) ? 1 : 0;
  }
  int operator!=(const KvGePolyVert2d& o) const { return (*this == o) ? 0 : 1; }

  /// An arc vertex (shape 1) changes the sign of its bulge; any other vertex stays as it is.
  KvGePolyVert2d& Invert() {
    if (m_Shape == 1) m_Bulge = -m_Bulge;
    return *this;
  }
  KvGePolyVert2d Inverted() const { return KvGePolyVert2d(*this).Invert(); }
  /// The point transformed; shape and bulge kept.
  KvGePolyVert2d& Transform(const KvGeModMat2d& m) {
    m_Point.Transform(m);
    return *this;
  }
  KvGePolyVert2d Transformed(const KvGeModMat2d& m) const { return KvGePolyVert2d(*this).Transform(m); }

 private:
  KvGePoint2d m_Point;
  std::uint16_t m_Shape = 0;
  double m_Bulge = 0.0;
};
