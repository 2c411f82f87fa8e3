// Point containment and distance against Boost.Geometry and GEOS (when it was found at configure
// time) on random star-shaped polygons, with and without a clockwise hole: 10^5 points. The
// containment must agree wherever a point lies more than 0.01 from every ring (the 0.001 band
// decides the others, by design). The distance to the outer ring may fall short of the true one
// by up to 0.001 and by no more: a foot up to 0.001 beyond an edge's end is measured
// perpendicularly.
#include <gtest/gtest.h>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <cmath>
#include <cstdio>
#include <random>

#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"

#ifdef UG_TEST_HAVE_GEOS
#include <geos_c.h>
#endif

namespace bg = boost::geometry;
using BPoint = bg::model::d2::point_xy<double>;
using BPolygon = bg::model::polygon<BPoint, false, false>;  // counter-clockwise, open
using BLine = bg::model::linestring<BPoint>;

namespace {

// At least four vertices, so that every gap between neighbouring directions stays below pi and
// the ring runs counter-clockwise around the centre.
KvGePolygon2d Star(std::mt19937& rng, double cx, double cy, double rmin, double rmax, int n) {
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  KvGePolygon2d ring;
  for (int i = 0; i < n; ++i) {
    const double a = 6.283185307179586 * (i + 0.9 * unit(rng)) / n, r = rmin + (rmax - rmin) * unit(rng);
    ring.Add(KvGePoint2d(cx + r * std::cos(a), cy + r * std::sin(a)));
  }
  return ring;
}

template <class Ring>
void Fill(const KvGePolygon2d& from, Ring& to) {
  for (const KvGePoint2d& p : from) to.push_back(BPoint(p.x, p.y));
}

// The ring closed back to its first vertex, as a line string.
BLine Closed(const KvGePolygon2d& ring) {
  BLine l;
  Fill(ring, l);
  l.push_back(l.front());
  return l;
}

#ifdef UG_TEST_HAVE_GEOS
// One shape in GEOS: its polygon, prepared, and its outer ring.
class Geos {
 public:
  Geos(GEOSContextHandle_t ctx, const KvGePolygon2d& outer, const KvGePolygon2d* hole)
      : m_ctx(ctx), m_ring(Ring(outer)) {
    GEOSGeometry* holes[1] = {hole ? Ring(*hole) : nullptr};
    m_polygon = GEOSGeom_createPolygon_r(m_ctx, Ring(outer), holes, hole ? 1 : 0);
    m_prepared = GEOSPrepare_r(m_ctx, m_polygon);
  }
  ~Geos() {
    GEOSPreparedGeom_destroy_r(m_ctx, m_prepared);
    GEOSGeom_destroy_r(m_ctx, m_polygon);
    GEOSGeom_destroy_r(m_ctx, m_ring);
  }
  Geos(const Geos&) = delete;
  Geos& operator=(const Geos&) = delete;
  // 1 inside, 0 outside; 2 when GEOS fails.
  int Contains(const KvGePoint2d& p, double& distance) const {
    GEOSGeometry* point = GEOSGeom_createPointFromXY_r(m_ctx, p.x, p.y);
    const char inside = GEOSPreparedContains_r(m_ctx, m_prepared, point);
    if (GEOSDistance_r(m_ctx, m_ring, point, &distance) != 1) distance = -1;
    GEOSGeom_destroy_r(m_ctx, point);
    return inside;
  }

 private:
  GEOSGeometry* Ring(const KvGePolygon2d& ring) const {
    const int n = ring.GetSize();
    GEOSCoordSequence* seq = GEOSCoordSeq_create_r(m_ctx, static_cast<unsigned>(n + 1), 2);
    for (int i = 0; i <= n; ++i)
      GEOSCoordSeq_setXY_r(m_ctx, seq, static_cast<unsigned>(i), ring[i % n].x, ring[i % n].y);
    return GEOSGeom_createLinearRing_r(m_ctx, seq);
  }
  GEOSContextHandle_t m_ctx;
  GEOSGeometry* m_ring;
  GEOSGeometry* m_polygon;
  const GEOSPreparedGeometry* m_prepared;
};
#endif

// The library's distance lies within [peer - 0.001, peer], with room for rounding.
bool DistanceAgrees(double ours, double peer) { return ours <= peer + 1e-9 && ours >= peer - 0.001 - 1e-9; }

}  // namespace

TEST(ContainmentCrossCheck, AgreesWithBoostGeometryAndGeosAwayFromTheBand) {
#ifdef UG_TEST_HAVE_GEOS
  const GEOSContextHandle_t ctx = GEOS_init_r();
  int geosCompared = 0;
#else
  std::printf("GEOS (libgeos-dev) was not found when the tests were configured: compared with Boost.Geometry only\n");
#endif
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  int disagreements = 0, compared = 0, inside = 0;
  for (int shape = 0; shape < 2000; ++shape) {
    const int n = 4 + static_cast<int>(unit(rng) * 40);
    const KvGePolygon2d outer = Star(rng, 0, 0, 10, 40, n);
    const bool holed = shape % 2 == 1;
    KvGePolygon2d hole = Star(rng, 0, 0, 2, 8, 4 + shape % 9);
    hole.Invert();  // clockwise
    KvGePolygon2dArray set;
    set.Add(outer);
    BPolygon b;
    Fill(outer, b.outer());
    if (holed) {
      set.Add(hole);
      b.inners().resize(1);
      Fill(hole, b.inners()[0]);
    }
    const KvGePolygon2d clockwise = outer.Inverted();
    const BLine outerLine = Closed(outer), holeLine = Closed(hole);
#ifdef UG_TEST_HAVE_GEOS
    const Geos geos(ctx, outer, holed ? &hole : nullptr);
#endif
    for (int k = 0; k < 50; ++k) {
      const double x = -45 + 90 * unit(rng);
      const KvGePoint2d p(x, -45 + 90 * unit(rng));
      const BPoint bp(p.x, p.y);
      const double outerDistance = bg::distance(bp, outerLine), ours = std::sqrt(DistanceSqr2d(outer, p));
      if (!DistanceAgrees(ours, outerDistance) && ++disagreements <= 5)
        ADD_FAILURE() << "distance of (" << p.x << ", " << p.y << "): " << ours << ", Boost.Geometry " << outerDistance;
#ifdef UG_TEST_HAVE_GEOS
      double geosDistance = -1;
      const int geosInside = geos.Contains(p, geosDistance);
      if (!DistanceAgrees(ours, geosDistance) && ++disagreements <= 5)
        ADD_FAILURE() << "distance of (" << p.x << ", " << p.y << "): " << ours << ", GEOS " << geosDistance;
#endif
      if (outerDistance <= 0.01 || (holed && bg::distance(bp, holeLine) <= 0.01)) continue;
      const bool bin = bg::within(bp, b);
#ifdef UG_TEST_HAVE_GEOS
      ++geosCompared;
      if (geosInside != (bin ? 1 : 0) && ++disagreements <= 5)
        ADD_FAILURE() << "shape " << shape << " point (" << p.x << ", " << p.y << "): GEOS " << geosInside;
#endif
      const unsigned short expected = bin ? 4 : 1;
      inside += bin;
      ++compared;
      const unsigned short single = holed ? Containment(p, set) : Containment(p, outer);
      if (single != expected && ++disagreements <= 5)
        ADD_FAILURE() << "shape " << shape << " point (" << p.x << ", " << p.y << "): " << single;
      if (!holed && Containment(p, set) != expected) ++disagreements;
      if (!holed && Containment(p, clockwise) != 1) ++disagreements;  // a clockwise ring alone encloses nothing
    }
  }
  EXPECT_EQ(disagreements, 0);
  EXPECT_GT(compared, 95000);
  EXPECT_GT(inside, 20000);
#ifdef UG_TEST_HAVE_GEOS
  GEOS_finish_r(ctx);
  EXPECT_EQ(geosCompared, compared);
#endif
}
