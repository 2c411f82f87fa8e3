#pragma once
// Shared by the region tests: building sets, and an independent check of the normalised form
// through Boost.Geometry's validity test plus the local rules it does not know (0.001 bands).

#include <gtest/gtest.h>

// g++ sees Boost.Geometry's envelope boxes as maybe uninitialised once inlined at -O2; the
// boxes are always filled before use.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <cmath>
#include <initializer_list>
#include <string>

#include "geometry/polygons/KvGePolygon2d.h"

namespace regiontest {

namespace bg = boost::geometry;
using BPoint = bg::model::d2::point_xy<double>;
using BPolygon = bg::model::polygon<BPoint, false, false>;  // counter-clockwise, open
using BMulti = bg::model::multi_polygon<BPolygon>;

inline KvGePolygon2d Ring(std::initializer_list<KvGePoint2d> points) {
  KvGePolygon2d ring;
  for (const KvGePoint2d& p : points) ring.Add(p);
  return ring;
}

inline KvGePolygon2d Rect(double x0, double y0, double x1, double y1) {
  return Ring({KvGePoint2d(x0, y0), KvGePoint2d(x1, y0), KvGePoint2d(x1, y1), KvGePoint2d(x0, y1)});
}

inline KvGePolygon2dArray Set(std::initializer_list<KvGePolygon2d> rings) {
  KvGePolygon2dArray set;
  for (const KvGePolygon2d& r : rings) set.Add(r);
  return set;
}

// A normalised set as Boost.Geometry polygons: each counter-clockwise ring starts a polygon and
// a clockwise ring is a hole of the nearest counter-clockwise ring before it that contains it.
inline bool ToBoost(const KvGePolygon2dArray& set, BMulti& out) {
  out.clear();
  for (const KvGePolygon2d& ring : set) {
    BPolygon::ring_type r;
    for (const KvGePoint2d& p : ring) r.push_back(BPoint(p.x, p.y));
    if (ring.Area() > 0) {
      out.emplace_back();
      out.back().outer() = r;
      continue;
    }
    BPolygon::ring_type outerOrder(r.rbegin(), r.rend());
    std::size_t k = out.size();
    while (k > 0 && !bg::covered_by(outerOrder, out[k - 1].outer())) --k;
    if (k == 0) return false;
    out[k - 1].inners().push_back(r);
  }
  return true;
}

inline double BoostArea(const KvGePolygon2dArray& normalised) {
  BMulti m;
  return ToBoost(normalised, m) ? bg::area(m) : -1.0;
}

// Non-fatal checks of every rule of the normalised form.
inline void ExpectNormalised(const KvGePolygon2dArray& set) {
  for (int r = 0; r < set.GetSize(); ++r) {
    const KvGePolygon2d& ring = set.GetData()[r];
    const int n = ring.GetSize();
    ASSERT_GE(n, 3) << "ring " << r;
    EXPECT_GE(std::fabs(ring.Area()), 1e-6) << "ring " << r;
    for (int i = 0; i < n; ++i) {
      const KvGePoint2d& a = ring.GetData()[(i + n - 1) % n];
      const KvGePoint2d& b = ring.GetData()[i];
      const KvGePoint2d& c = ring.GetData()[(i + 1) % n];
      EXPECT_GT(std::hypot(b.x - a.x, b.y - a.y), 0.001) << "ring " << r << " vertex " << i;
      const double cross = (c.x - a.x) * (b.y - a.y) - (c.y - a.y) * (b.x - a.x);
      EXPECT_GT(std::fabs(cross) / std::hypot(c.x - a.x, c.y - a.y), 0.001) << "ring " << r << " vertex " << i;
    }
  }
  BMulti m;
  ASSERT_TRUE(ToBoost(set, m)) << "a clockwise ring before any outer ring";
  std::string why;
  EXPECT_TRUE(bg::is_valid(m, why)) << why;
}

}  // namespace regiontest
