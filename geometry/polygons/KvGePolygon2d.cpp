#include "geometry/polygons/KvGePolygon2d.h"

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/polygons/KvGePolyVert2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

KvGePolygon3d::~KvGePolygon3d() = default;
KvGePolygon2d::~KvGePolygon2d() = default;
KvGePolygon23d::~KvGePolygon23d() = default;
KvGePolygon2dArray::~KvGePolygon2dArray() = default;
KvGePolyline2d::~KvGePolyline2d() = default;
KvGePolyline2dArray::~KvGePolyline2dArray() = default;
KvGePolyVert2d::~KvGePolyVert2d() = default;

KvGePolygon2d::KvGePolygon2d(const KvGePolygon3d& polygon) {
  SetSize(polygon.GetSize());
  if (GetSize() != polygon.GetSize()) return;  // no memory: stays empty
  for (int i = 0; i < polygon.GetSize(); ++i) m_pData[i].Set(polygon[i].x, polygon[i].y, 0);
}

KvGeBox3d KvGePolygon23d::BoundingBox() const {
  KvGeBox3d box = KvGePoint3dArray::BoundingBox();
  if (m_Height > 0.0)
    box.Max().z += m_Height;
  else
    box.Min().z += m_Height;
  return box;
}

KvGeBox3d KvGePolygon23d::BoundingBox(const KvGeModMat3d& m) const {
  const KvGeBox3d box = KvGePoint3dArray::BoundingBox(m);
  const KvGePoint3d h(m_Height * m(2, 0), m_Height * m(2, 1), m_Height * m(2, 2));
  return box | box.Shifted(h);
}

double KvGePolygon2dArray::Area() const {
  double area = 0.0;
  for (const KvGePolygon2d& ring : *this) area += ring.Area();
  return area;
}

KvGePolyline2d& KvGePolyline2d::Set(const KvGePoint3dArray& points) {
  SetSize(points.GetSize());
  if (GetSize() != points.GetSize()) return *this;  // no memory: unchanged
  for (int i = 0; i < points.GetSize(); ++i) m_pData[i].Set(points[i].x, points[i].y, points[i].m_bInfinite);
  return *this;
}

double KvGePolyline2d::Length() const {
  double length = 0.0;
  for (int i = 0; i + 1 < GetSize(); ++i) length += Distance2d(m_pData[i], m_pData[i + 1]);
  return length;
}
