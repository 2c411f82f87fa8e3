#include <gtest/gtest.h>

#include <random>

#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGePieces2d.h"

namespace {

KvGePolygon2d Poly(std::initializer_list<KvGePoint2d> pts) {
  KvGePolygon2d a;
  for (const KvGePoint2d& p : pts) a.Add(p);
  return a;
}

// The pieces as x ranges (the lines below run along y = const).
std::vector<std::pair<double, double>> Ranges(const KvBtDynArray<KvGeLine2d>& out) {
  std::vector<std::pair<double, double>> r;
  for (const KvGeLine2d& l : out) {
    EXPECT_EQ(l.Segment(), 1);
    EXPECT_EQ(l.Sense(), 1);
    r.emplace_back(l.P1().x, l.P2().x);
  }
  return r;
}

using Ranges_t = std::vector<std::pair<double, double>>;

}  // namespace

TEST(Pieces, ModesHolesAndBoundary) {
  const KvGePolygon2d sq = Poly({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  KvGePolygon2dArray holed;
  holed.Add(sq);
  holed.Add(Poly({{3, 3}, {3, 7}, {7, 7}, {7, 3}}));
  // A clockwise diamond hole whose bottom vertex (5, 5) the line y = 5 touches from below.
  KvGePolygon2dArray touched;
  touched.Add(sq);
  touched.Add(Poly({{5, 5}, {3, 7}, {5, 9}, {7, 7}}));
  KvBtDynArray<KvGeLine2d> out;
  out.Add(KvGeLine2d());

  struct Row {
    const char* name;
    const KvGePolygon2dArray* region;
    KvGeLine2d line;
    Ranges_t mode0, mode1;
  } rows[] = {
      {"through the hole", &holed, KvGeLine2d({-5, 5}, {15, 5}), {{0, 3}, {7, 10}}, {{0, 3}, {7, 10}}},
      {"unbounded", &holed, KvGeLine2d({40, 5}, {41, 5}, 0), {{0, 3}, {7, 10}}, {{0, 3}, {7, 10}}},
      {"clipped", &holed, KvGeLine2d({1, 5}, {8, 5}), {{1, 3}, {7, 8}}, {{1, 3}, {7, 8}}},
      {"backwards", &holed, KvGeLine2d({8, 5}, {1, 5}), {{8, 7}, {3, 1}}, {{8, 7}, {3, 1}}},
      {"touching a hole's corner", &touched, KvGeLine2d({-5, 5}, {15, 5}), {{0, 5}, {5, 10}}, {{0, 10}}},
      {"along an edge", &holed, KvGeLine2d({-5, 0}, {15, 0}), {}, {{0, 10}}},
      {"along a hole's edge", &holed, KvGeLine2d({-5, 3}, {15, 3}), {{0, 3}, {7, 10}}, {{0, 10}}},
      {"outside", &holed, KvGeLine2d({-5, 20}, {15, 20}), {}, {}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    EXPECT_EQ(Intersection2d(r.line, *r.region, out, 0), static_cast<int>(r.mode0.size()));
    const Ranges_t got0 = Ranges(out);
    ASSERT_EQ(got0.size(), r.mode0.size());
    for (size_t i = 0; i < got0.size(); ++i) {
      EXPECT_NEAR(got0[i].first, r.mode0[i].first, 1e-9);
      EXPECT_NEAR(got0[i].second, r.mode0[i].second, 1e-9);
    }
    EXPECT_EQ(Intersection2d(*r.region, r.line, out, 1), static_cast<int>(r.mode1.size()));
    const Ranges_t got1 = Ranges(out);
    ASSERT_EQ(got1.size(), r.mode1.size());
    for (size_t i = 0; i < got1.size(); ++i) {
      EXPECT_NEAR(got1[i].first, r.mode1[i].first, 1e-9);
      EXPECT_NEAR(got1[i].second, r.mode1[i].second, 1e-9);
    }
  }
  // The two-point form; the single polygon in both orientations and with its closing vertex
  // repeated; a clockwise ring alone encloses nothing.
  EXPECT_EQ(Intersection2d(KvGePoint2d(-5, 5), KvGePoint2d(15, 5), holed, out, 0), 2);
  KvGePolygon2d repeated = sq;
  repeated.Add(sq[0]);
  EXPECT_EQ(Intersection2d(KvGeLine2d({-5, 5}, {15, 5}), repeated, out, 0), 1);
  EXPECT_NEAR(out[0].P2().x, 10, 1e-9);
  EXPECT_EQ(Intersection2d(sq.Inverted(), KvGeLine2d({-5, 5}, {15, 5}), out, 1), 0);
  EXPECT_EQ(Intersection2d(KvGeLine2d({5, 5}, {5.0009, 5}), sq, out, 0), 0);
}

TEST(Pieces, PolylinesChain) {
  const KvGePolygon2d sq = Poly({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  KvGePolygon2dArray holed;
  holed.Add(sq);
  holed.Add(Poly({{3, 3}, {3, 7}, {7, 7}, {7, 3}}));
  KvGePolyline2d pl;
  for (const KvGePoint2d& p : {KvGePoint2d(-5, 1), KvGePoint2d(2, 1), KvGePoint2d(2, 5), KvGePoint2d(15, 5)}) pl.Add(p);
  KvGePolyline2dArray out;
  // One polyline up to the hole, continued across the vertex (2, 1); a new one after the hole.
  ASSERT_EQ(Intersection2d(pl, holed, out, 0), 2);
  ASSERT_EQ(out[0].GetSize(), 4);
  EXPECT_NEAR(out[0][0].x, 0, 1e-9);
  EXPECT_NEAR(out[0][3].x, 3, 1e-9);
  EXPECT_NEAR(out[0][2].y, 5, 1e-9);
  ASSERT_EQ(out[1].GetSize(), 2);
  EXPECT_NEAR(out[1][0].x, 7, 1e-9);
  ASSERT_EQ(Intersection2d(sq, pl, out, 1), 1);  // the single square: no hole
  EXPECT_EQ(out[0].GetSize(), 4);
  EXPECT_EQ(Intersection2d(holed, KvGePolyline2d(), out, 0), 0);
}

// The crossings of a line with a closed sequence, where edges lying clearly on one side of the
// line are skipped, against crossing every edge one by one.
TEST(Pieces, CrossingsMatchEdgeByEdge) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double offsets[] = {0.0, 0.0009, -0.0009, 0.0011, -0.0011, 0.0014, -0.0016, 0.0005};
  KvGeIntrPoint2dArray fast;
  for (int shape = 0; shape < 200; ++shape) {
    KvGePoint2dArray ring;
    const int n = 3 + static_cast<int>(unit(rng) * 20);
    for (int i = 0; i < n; ++i) {
      const double a = 6.283185307179586 * (i + unit(rng)) / n, r = 5 + 20 * unit(rng);
      ring.Add(KvGePoint2d(std::round(r * std::cos(a) * 4) / 4, std::round(r * std::sin(a) * 4) / 4));
    }
    for (int k = 0; k < 40; ++k) {
      // Lines through or just past a vertex, at a random slope, bounded or not.
      const KvGePoint2d v = ring[static_cast<int>(unit(rng) * n) % n];
      const double a = k % 3 ? 3.14159 * unit(rng) : 0.0, off = offsets[k % 8];
      const KvGePoint2d d(std::cos(a), std::sin(a));
      const KvGePoint2d base(v.x - d.y * off, v.y + d.x * off);
      const double back = 30 * unit(rng);
      const KvGeLine2d l(base - d * back, base + d * (30 * unit(rng)), k % 2);
      Intersection2d(l, ring, fast, 0);
      int slow = 0;
      for (int i = 0; i < n; ++i) {
        KvGeIntrPoint2d r;
        if (!Intersection2d(l, KvGeLine2d(ring[i], ring[mod(i + 1, n)]), r)) continue;
        ASSERT_LT(slow, fast.GetSize());
        const KvGeIntrPoint2d& f = fast[slow++];
        EXPECT_EQ(f.Segment1(), static_cast<unsigned>(i));
        EXPECT_EQ(f.Param0(), r.Param0());
        EXPECT_EQ(f.EndCode0(), r.EndCode0());
        EXPECT_EQ(f.EndCode1(), r.EndCode1());
        EXPECT_EQ(f.CrossSense(), r.CrossSense());
      }
      ASSERT_EQ(slow, fast.GetSize()) << shape << " " << k;
    }
  }
}
