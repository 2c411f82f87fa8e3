#include "geometry/curves/KvGeCircle23d.h"

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeCircleDetail.h"

KvGeCircle23d::~KvGeCircle23d() = default;
KvGeArc23d::~KvGeArc23d() = default;

namespace {
double MeanHeight(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& p3) {
  return (p1.z + p2.z + p3.z) / 3.0;
}
}  // namespace

int KvGeCircle23d::By3Points(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& p3) {
  KvGeCircle2d c;
  if (!c.By3Points(p1.Point2d(), p2.Point2d(), p3.Point2d())) return 0;
  m_Center.Set(c.Center(), MeanHeight(p1, p2, p3));
  m_Radius = c.Radius();
  return 1;
}

KvGeBox3d KvGeCircle23d::BoundingBox() const { return BoundingBox(KvGeModMat3d()); }

KvGeBox3d KvGeCircle23d::BoundingBox(const KvGeModMat3d& m) const {
  return KvGeDetail::ArcBox<KvGeBox3d>(m_Center, m_Radius, 1, KvGeAngle(), KvGeAngle(), m, 3);
}

KvGeCircle23d& KvGeCircle23d::Transform(const KvGeModMat3d& m) {
  m_Center.Transform(m);
  m_Radius *= KvGeDetail::PlanMap(m).Scale();
  return *this;
}

int KvGeArc23d::By3Points(const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& p3) {
  KvGeArc2d a;
  if (!a.By3Points(p1.Point2d(), p2.Point2d(), p3.Point2d())) return 0;
  m_Center.Set(a.Center(), MeanHeight(p1, p2, p3));
  m_Radius = a.Radius();
  m_Beg = a.Beg();
  m_End = a.End();
  return 1;
}

KvGeBox3d KvGeArc23d::BoundingBox() const { return BoundingBox(KvGeModMat3d()); }

KvGeBox3d KvGeArc23d::BoundingBox(const KvGeModMat3d& m) const {
  return KvGeDetail::ArcBox<KvGeBox3d>(m_Center, m_Radius, 0, m_Beg, m_End, m, 3);
}

KvGeArc23d& KvGeArc23d::Transform(const KvGeModMat3d& m) {
  const KvGeDetail::PlanMap map(m);
  m_Center.Transform(m);
  m_Radius *= map.Scale();
  map.MapArc(m_Beg, m_End);
  return *this;
}
