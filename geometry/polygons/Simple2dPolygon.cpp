#include "geometry/polygons/Simple2dPolygon.h"

#include <cmath>
#include <cstring>
#include <new>

#include "basics/companion/KvBtCompare.h"
#include "basics/general/UtilityGeneral.h"

Simple2dPolygonData::Simple2dPolygonData(unsigned int count) {
  if (count == 0) return;
  geo = new (std::nothrow) double[2 * static_cast<std::size_t>(count)];
  if (geo != nullptr) n = count;
}

Simple2dPolygonData::~Simple2dPolygonData() {
  delete[] geo;
  geo = nullptr;
  n = 0;
}

void Simple2dPolygonData::set(double x, double y) {
  if (geo == nullptr) return;
  for (std::size_t k = 0; k < 2 * static_cast<std::size_t>(n); k += 2) {
    geo[k] = x;
    geo[k + 1] = y;
  }
}

Simple2dPolygon::~Simple2dPolygon() = default;

namespace {

// A new block holding a copy of data's coordinates; empty when it cannot be allocated.
boost::shared_ptr<Simple2dPolygonData> Duplicate(const Simple2dPolygonData& data) {
  boost::shared_ptr<Simple2dPolygonData> block;
  Simple2dPolygonData* raw = new (std::nothrow) Simple2dPolygonData(data.n);
  if (raw == nullptr) return block;
  if (raw->n != data.n) {
    delete raw;
    return block;
  }
  std::memcpy(raw->geo, data.geo, 2 * static_cast<std::size_t>(data.n) * sizeof(double));
  try {
    block.reset(raw);  // deletes raw itself when the count cannot be allocated
  } catch (...) {
  }
  return block;
}

}  // namespace

int Simple2dPolygon::detach() {
  if (!m_Data || m_Data.use_count() <= 1 || m_Data->n == 0 || m_Data->geo == nullptr) return 1;
  boost::shared_ptr<Simple2dPolygonData> own = Duplicate(*m_Data);
  if (!own) return 0;
  m_Data.swap(own);
  return 1;
}

int Simple2dPolygon::copy(Simple2dPolygon& out) const {
  if (!m_Data || m_Data->n == 0 || m_Data->geo == nullptr) return 1;
  boost::shared_ptr<Simple2dPolygonData> own = Duplicate(*m_Data);
  if (!own) return 0;
  out.m_Data.swap(own);
  return 1;
}

void Simple2dPolygon::rotate(double angle) {
  if (!m_Data || m_Data->geo == nullptr) return;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  double* g = m_Data->geo;
  for (std::size_t k = 0; k < 2 * static_cast<std::size_t>(m_Data->n); k += 2) {
    const double px = g[k];
    const double py = g[k + 1];
    g[k] = px * c - py * s;
    g[k + 1] = px * s + py * c;
  }
}

bool Simple2dPolygon::IsPointOnEdge(unsigned int i, double x, double y, double tol) const {
  if (!m_Data || m_Data->geo == nullptr || m_Data->n < 2 || i >= m_Data->n - 1) return false;
  const double* a = m_Data->geo + 2 * static_cast<std::size_t>(i);
  const double d1 = distance2Points2D(x, y, a[0], a[1]);
  const double d2 = distance2Points2D(x, y, a[2], a[3]);
  const double d3 = distance2Points2D(a[0], a[1], a[2], a[3]);
  return IsEqual(d1 + d2, d3, tol) != 0;
}
