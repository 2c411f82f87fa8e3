#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "geometry/polygons/Simple2dPolygon.h"

namespace {
using Block = boost::shared_ptr<Simple2dPolygonData>;

// The open chain (0, 0) - (10, 0) - (10, 10), in a block of its own.
Simple2dPolygon Chain() {
  Block data(new Simple2dPolygonData(3));
  const double xy[] = {0, 0, 10, 0, 10, 10};
  for (int k = 0; k < 6; ++k) data->geo[k] = xy[k];
  return Simple2dPolygon(data);
}
}  // namespace

TEST(Simple2dPolygon, HandlesShareUntilDetached) {
  Simple2dPolygon a = Chain(), b(a), c;
  c = b;
  EXPECT_EQ(a.use_count(), 3);
  b.x(2) = 7;
  EXPECT_EQ(a[4], 7.0);  // doubles, not vertices: 2k is x of vertex k

  EXPECT_EQ(b.detach(), 1);
  EXPECT_EQ(a.use_count(), 2);
  b.y(1) = -1;
  EXPECT_EQ(c.y(1), 0.0);
  EXPECT_EQ(b.x(2), 7.0);  // the private block holds the coordinates
  const double* own = b.getGeo();
  EXPECT_EQ(b.detach(), 1);  // sole owner: nothing is copied
  EXPECT_EQ(b.getGeo(), own);

  Simple2dPolygon none, e1(Block(new Simple2dPolygonData(0))), e2(e1);
  EXPECT_EQ(none.detach(), 1);
  EXPECT_EQ(none.getSize(), 0u);
  EXPECT_EQ(e1.detach(), 1);  // no vertices to write: stays shared
  EXPECT_EQ(e1.use_count(), 2);
}

TEST(Simple2dPolygon, CopyAndRotate) {
  Simple2dPolygon a = Chain(), shared(a), out = Chain();
  const double* before = out.getGeo();
  EXPECT_EQ(Simple2dPolygon().copy(out), 1);
  EXPECT_EQ(Simple2dPolygon(Block(new Simple2dPolygonData(0))).copy(out), 1);
  EXPECT_EQ(out.getGeo(), before);  // untouched

  ASSERT_EQ(a.copy(out), 1);
  EXPECT_EQ(out.use_count(), 1);
  a.rotate(M_PI / 2);  // in place: every handle on the block sees it, the copy does not
  for (const Simple2dPolygon* p : {&a, &shared}) {
    EXPECT_NEAR(p->x(1), 0, 1e-12);
    EXPECT_NEAR(p->y(1), 10, 1e-12);
    EXPECT_NEAR(p->x(2), -10, 1e-12);
  }
  EXPECT_EQ(out.x(1), 10.0);
}

TEST(Simple2dPolygon, PointOnEdgeHasNoClosingEdge) {
  const Simple2dPolygon p = Chain();
  struct Row {
    const char* name;
    unsigned int i;
    double x, y;
    bool on;
  } rows[] = {
      {"inside the first edge", 0, 5, 0, true},
      {"end point of the last edge", 1, 10, 10, true},
      {"beyond the end: d1 + d2 - d3 = 0.0009", 1, 10, 10.00045, true},
      {"beyond the end: 0.0011", 1, 10, 10.00055, false},
      {"the last vertex starts no edge", 2, 10, 10, false},
      {"on the closing side", 2, 5, 5, false},
      {"index far beyond", 7, 5, 0, false},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    EXPECT_EQ(p.IsPointOnEdge(r.i, r.x, r.y, 0.001), r.on);
  }
  EXPECT_TRUE(p.IsPointOnEdge(0, 5, 0.1, 0.01));  // 2 (sqrt(25.01) - 5) = 0.002
  EXPECT_FALSE(Simple2dPolygon().IsPointOnEdge(0, 0, 0));
}

TEST(Simple2dPolygonData, AssignmentIsShallowAndMovesHandOver) {
  Simple2dPolygonData a(3), b;
  a.set(4, 5);
  b = a;  // shallow: both now point at one block
  EXPECT_EQ(b.getGeo(), a.getGeo());
  EXPECT_EQ(b.getGeo()[5], 5.0);
  b.geo = nullptr;  // a alone frees it

  Simple2dPolygonData c(2);
  c = Simple2dPolygonData(4);  // the temporary takes c's old block along and frees it
  const Simple2dPolygonData d(std::move(c));
  EXPECT_EQ(c.getGeo(), nullptr);
  EXPECT_EQ(d.n, 4u);
}
