#include "geometry/curves/KvGeBox2d.h"

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/points/KvGePoint2dArray.h"

KvGeBox2d::~KvGeBox2d() = default;
KvGeBox3d::~KvGeBox3d() = default;

KvGeBox2d::KvGeBox2d(const KvGeBox3d& b) : BoxBase(KvGePoint2d(b.Min()), KvGePoint2d(b.Max())) {}

KvGeBox2d& KvGeBox2d::Set(const KvGeBox3d& b) {
  m_Min.Set(b.Min());
  m_Max.Set(b.Max());
  return *this;
}

KvGeBox3d KvGeBox2d::Box3d() const { return KvGeBox3d(*this, 1e9, -1e9); }

void KvGeBox2d::Points(KvGePoint2dArray& points) const {
  points.SetSize(4);
  points[0].Set(m_Min.x, m_Min.y, 0);
  points[1].Set(m_Max.x, m_Min.y, 0);
  points[2].Set(m_Max.x, m_Max.y, 0);
  points[3].Set(m_Min.x, m_Max.y, 0);
}

KvGeBox2d& KvGeBox2d::Transform(const KvGeModMat2d& m) {
  m_Min.Transform(m);
  m_Max.Transform(m);
  return *this;
}

KvGeBox2d KvGeBox2d::BoundingBox(const KvGeModMat2d& m) const { return CornerBox(m); }

void KvGeBox3d::Points(KvGePoint3dArray& points) const {
  points.SetSize(8);
  const double xs[4] = {m_Min.x, m_Max.x, m_Max.x, m_Min.x};
  const double ys[4] = {m_Min.y, m_Min.y, m_Max.y, m_Max.y};
  for (int k = 0; k < 4; ++k) {
    points[k].Set(xs[k], ys[k], m_Min.z, 0);
    points[k + 4].Set(xs[k], ys[k], m_Max.z, 0);
  }
}

KvGeBox3d& KvGeBox3d::Transform(const KvGeModMat3d& m) {
  m_Min.Transform(m);
  m_Max.Transform(m);
  return *this;
}

KvGeBox3d KvGeBox3d::BoundingBox(const KvGeModMat3d& m) const { return CornerBox(m); }
