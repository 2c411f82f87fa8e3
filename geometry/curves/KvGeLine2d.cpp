#include "geometry/curves/KvGeLine2d.h"

#include "geometry/algebra/KvGeModMat.h"

KvGeLine2d::~KvGeLine2d() = default;
KvGeLine3d::~KvGeLine3d() = default;
KvGeLine23d::~KvGeLine23d() = default;

KvGeLine2d& KvGeLine2d::Transform(const KvGeModMat2d& m) {
  m_P1.Transform(m);
  m_P2.Transform(m);
  return *this;
}

KvGeLine3d& KvGeLine3d::Transform(const KvGeModMat3d& m) {
  m_P1.Transform(m);
  m_P2.Transform(m);
  return *this;
}

KvGeLine23d& KvGeLine23d::Transform(const KvGeModMat3d& m) {
  m_P1.Transform(m);
  m_P2.Transform(m);
  return *this;
}

KvGeBox3d KvGeLine23d::BoundingBox() const {
  KvGeBox3d box = PointBox();
  if (m_Height > 0.0)
    box.Max().z += m_Height;
  else
    box.Min().z += m_Height;
  return box;
}

namespace {
// Moves the ends of a line along its direction: start by d1 and end by d2 (times P2 - P1 / L).
void MoveEnds(KvGePoint3d& p1, KvGePoint3d& p2, double d1, double d2) {
  const double ux = p2.x - p1.x, uy = p2.y - p1.y, uz = p2.z - p1.z;
  const double len = std::sqrt(ux * ux + uy * uy + uz * uz);
  if (len == 0.0) return;
  const double f1 = d1 / len, f2 = d2 / len;
  p1.x += ux * f1;
  p1.y += uy * f1;
  p1.z += uz * f1;
  p2.x += ux * f2;
  p2.y += uy * f2;
  p2.z += uz * f2;
}
}  // namespace

KvGeLine3d& KvGeLine3d::trimP1(double d) {
  MoveEnds(m_P1, m_P2, d, 0.0);
  return *this;
}

KvGeLine3d& KvGeLine3d::trimP2(double d) {
  MoveEnds(m_P1, m_P2, 0.0, -d);
  return *this;
}

KvGeLine3d& KvGeLine3d::move(double d) {
  MoveEnds(m_P1, m_P2, d, d);
  return *this;
}
