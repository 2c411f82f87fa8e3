#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "geometry/polygons/Simple2dPolygon.h"

namespace {
// The open chain (0, 0) - (10, 0) - (10, 10), in a block of its own.
Simple2dPolygon Chain() {
  boost::shared_ptr<Simple2dPolygonData> data(new Simple2dPolygonData(3));
  const double xy[] = {0, 0, 10, 0, 10, 10};
  for (int k = 0; k < 6; ++k) data->geo[k] = xy[k];
  return Simple2dPolygon(data);
}
}  // namespace

TEST(Simple2dPolygon, HandlesShareUntilDetached) {
  Simple2dPolygon a = Chain();
  Simple2dPolygon b(a), c;
  c = b;
  EXPECT_EQ(a.use_count(), 3);
  EXPECT_EQ(a.getSize(), 3u);
  b.x(2) = 7;
  EXPECT_EQ(a[4], 7.0);  // doubles, not vertices: 2k is x of vertex k
  EXPECT_EQ(c.getConstGeo(), a.getGeo());

  EXPECT_EQ(b.detach(), 1);
  EXPECT_NE(b.getGeo(), a.getGeo());
  EXPECT_EQ(a.use_count(), 2);
  b.y(1) = -1;
  EXPECT_EQ(a.y(1), 0.0);
  EXPECT_EQ(b.x(2), 7.0);  // the copy holds the coordinates

  const double* own = b.getGeo();
  EXPECT_EQ(b.detach(), 1);  // sole owner: nothing is copied
  EXPECT_EQ(b.getGeo(), own);

  Simple2dPolygon none;
  EXPECT_EQ(none.detach(), 1);
  EXPECT_EQ(none.getSize(), 0u);
  EXPECT_EQ(none.getGeo(), nullptr);
  none.rotate(1.0);
  boost::shared_ptr<Simple2dPolygonData> empty(new Simple2dPolygonData(0));
  Simple2dPolygon e1(empty), e2(e1);
  EXPECT_EQ(e1.detach(), 1);  // no vertices to write: stays shared
  EXPECT_EQ(e1.use_count(), 3);
}

TEST(Simple2dPolygon, CopyAndRotate) {
  Simple2dPolygon a = Chain(), shared(a), out;
  Simple2dPolygon none;
  EXPECT_EQ(none.copy(out), 1);
  EXPECT_EQ(out.getGeo(), nullptr);  // untouched
  out = Chain();
  const double* before = out.getGeo();
  EXPECT_EQ(Simple2dPolygon(boost::shared_ptr<Simple2dPolygonData>(new Simple2dPolygonData(0))).copy(out), 1);
  EXPECT_EQ(out.getGeo(), before);

  ASSERT_EQ(a.copy(out), 1);
  EXPECT_EQ(out.use_count(), 1);
  a.rotate(M_PI / 2);  // in place: every handle on the block sees it, the copy does not
  for (const Simple2dPolygon* p : {&a, &shared}) {
    EXPECT_NEAR(p->x(1), 0, 1e-12);
    EXPECT_NEAR(p->y(1), 10, 1e-12);
    EXPECT_NEAR(p->x(2), -10, 1e-12);
  }
  EXPECT_EQ(out.x(1), 10.0);
  EXPECT_EQ(out.y(1), 0.0);

  boost::shared_ptr<Simple2dPolygonData> other(new Simple2dPolygonData(2));
  other->set(1, 2);
  out.setGeo(other);
  EXPECT_EQ(out.getSize(), 2u);
  EXPECT_EQ(out[3], 2.0);
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
      {"start point of an edge", 1, 10, 0, true},
      {"beyond the end: d1 + d2 - d3 = 0.0009", 1, 10, 10.00045, true},
      {"beyond the end: 0.0011", 1, 10, 10.00055, false},
      {"the last vertex starts no edge", 2, 10, 10, false},
      {"on the closing side", 2, 5, 5, false},
      {"index far beyond", 7, 5, 0, false},
      {"off the edge", 0, 5, 1, false},
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
  EXPECT_EQ(a.n, 3u);
  EXPECT_EQ(a.getGeo()[5], 5.0);
  b = a;  // shallow: both now point at one block
  EXPECT_EQ(b.getGeo(), a.getGeo());
  EXPECT_EQ(b.n, 3u);
  b.geo = nullptr;  // hand ownership back to a alone

  Simple2dPolygonData c(2);
  c = Simple2dPolygonData(4);  // the temporary takes c's old block along and frees it
  EXPECT_EQ(c.n, 4u);
  Simple2dPolygonData d(std::move(c));
  EXPECT_EQ(c.getGeo(), nullptr);
  EXPECT_EQ(d.n, 4u);
}
