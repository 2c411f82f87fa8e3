// Point containment against Boost.Geometry on random star-shaped polygons, with and without a
// clockwise hole, away from the 0.001 band where the two models differ by design.
#include <gtest/gtest.h>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <random>

#include "geometry/intersection/KvGeContainment2d.h"

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

double RingDistance(const KvGePolygon2d& ring, const BPoint& p) {
  BLine l;
  Fill(ring, l);
  l.push_back(l.front());
  return bg::distance(p, l);
}

}  // namespace

TEST(ContainmentCrossCheck, AgreesWithBoostGeometryAwayFromTheBand) {
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
    for (int k = 0; k < 50; ++k) {
      const double x = -45 + 90 * unit(rng);
      const KvGePoint2d p(x, -45 + 90 * unit(rng));
      const BPoint bp(p.x, p.y);
      if (RingDistance(outer, bp) <= 0.01 || (holed && RingDistance(hole, bp) <= 0.01)) continue;
      const bool bin = bg::within(bp, b);
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
}
