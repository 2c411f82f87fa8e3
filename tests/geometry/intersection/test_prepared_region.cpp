#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/intersection/KvGePreparedRegion2d.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// Alternating radii; a = b gives a regular polygon. Counter-clockwise.
KvGePolygon2d Star(int n, double cx, double cy, double a, double b) {
  KvGePolygon2d p;
  for (int i = 0; i < n; ++i) {
    const double t = 2 * kPi * i / n, r = i % 2 ? b : a;
    p.Add(KvGePoint2d(cx + r * std::cos(t), cy + r * std::sin(t)));
  }
  return p;
}

// Teeth of width 1 with many horizontal edges; some tops differ by only 0.0005, and two
// neighbouring tops are level, so horizontal edges follow each other.
KvGePolygon2d Comb() {
  KvGePolygon2d p;
  p.Add(KvGePoint2d(0, 0));
  p.Add(KvGePoint2d(20, 0));
  for (int i = 19; i >= 0; --i) {
    const double h = 3 + (i % 3 == 0 ? 2 : 0) + (i % 5 == 0 ? 0.0005 : 0) + (i == 7 || i == 8 ? 1 : 0);
    p.Add(KvGePoint2d(i + 1, h));
    p.Add(KvGePoint2d(i, h));
  }
  return p;
}

// A circle of radius 5 with vertices 0.1 apart, jittered by up to 0.003, with a repeated
// vertex, a collinear run and a slit 0.0016 wide: crossings cluster within a few tolerances.
KvGePolygon2d Noisy() {
  std::mt19937_64 rng(7);
  std::uniform_real_distribution<double> jitter(-0.003, 0.003);
  KvGePolygon2d p;
  const int n = 314;
  for (int i = 0; i < n; ++i) {
    const double t = 2 * kPi * i / n, r = 5 + jitter(rng);
    p.Add(KvGePoint2d(r * std::cos(t), r * std::sin(t)));
    if (i == 40) p.Add(p.GetData()[p.GetUpperBound()]);
    if (i == 100) {
      p.Add(KvGePoint2d(0, 0.0008));
      p.Add(KvGePoint2d(0, -0.0008));
    }
  }
  p.Add(KvGePoint2d(5.2, 0.0));
  p.Add(KvGePoint2d(5.4, 0.0));
  p.Add(KvGePoint2d(5.6, 0.0));
  return p;
}

KvGePolygon2dArray Holes() {
  return {{{0, 0}, {20, 0}, {20, 20}, {0, 20}},
          {{4, 4}, {4, 9}, {9, 9}, {9, 4}},                       // clockwise hole
          {{5, 5}, {8, 5}, {8, 8}, {5, 8}},                       // island in the hole
          KvGePolygon2d(),                                        // empty ring
          KvGePolygon2d{{15, 15}},                                // a lone vertex
          {{12, 2}, {14, 6}, {16, 2}},                            // clockwise triangle
          {{20, 10}, {17, 12}, {17, 8}},                          // hole touching the outline
          {{9, 9}, {9, 12}, {12, 12}, {12, 9}},                   // hole meeting another at a corner
          {{2, 14}, {6, 14.0007}, {6, 16}, {2, 16}},              // an island, nearly level edge
          {{2, 14.0012}, {2, 15.5}, {5.5, 15.5}, {6, 14.0004}}};  // a hole inside it
}

struct Shape {
  const char* name;
  KvGePolygon2dArray rings;
  bool set;
};

std::vector<Shape> Shapes() {
  using A = KvGePolygon2dArray;
  return {{"convex 120", A{Star(120, 3, -2, 40, 40)}, false},
          {"star 520", A{Star(520, 0, 0, 30, 14)}, false},
          {"star 300 as a set", A{Star(300, 0, 0, 30, 14)}, true},
          {"comb", A{Comb()}, false},
          {"comb as a set", A{Comb()}, true},
          {"clockwise star", A{Star(80, 0, 0, 10, 4).Inverted()}, false},
          {"noisy", A{Noisy()}, false},
          {"noisy as a set", A{Noisy()}, true},
          {"bow tie", A{KvGePolygon2d{{0, 0}, {4, 4}, {4, 0}, {0, 4}}}, false},
          {"two vertices", A{KvGePolygon2d{{0, 0}, {3, 1}}}, false},
          {"holes", Holes(), true}};
}

struct Edge {
  KvGePoint2d s, e;
};

std::vector<Edge> Edges(const KvGePolygon2dArray& rings) {
  std::vector<Edge> edges;
  for (int j = 0; j < rings.GetSize(); ++j) {
    const KvGePolygon2d& p = rings.GetData()[j];
    for (int i = 0; i < p.GetSize(); ++i) edges.push_back({p.GetData()[i], p.GetData()[(i + 1) % p.GetSize()]});
  }
  return edges;
}

// Random and near-degenerate points: near edges (0.0009, 0.001, 0.0011 and the width of a
// crossing cluster away, beyond the ends too), level with vertices, around vertices, on and
// beside horizontal edges, and anywhere in the box.
std::vector<KvGePoint2d> Points(const KvGePolygon2dArray& rings, int count, unsigned seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  const std::vector<Edge> edges = Edges(rings);
  std::vector<Edge> flat;
  for (const Edge& e : edges)
    if (std::fabs(e.e.y - e.s.y) <= 0.001 && std::fabs(e.e.x - e.s.x) > 0.001) flat.push_back(e);
  KvGeBox2d box;
  for (const Edge& e : edges) box.Include(e.s);
  const double x0 = box.Min().x - 1, x1 = box.Max().x + 1, y0 = box.Min().y - 1, y1 = box.Max().y + 1;
  const double offsets[] = {0, 0.0009, -0.0009, 0.001, -0.001, 0.0011, -0.0011, 0.0035, -0.0045, 0.0021};
  auto offset = [&]() { return u(rng) < 0.8 ? offsets[rng() % 10] : (u(rng) - 0.5) * 0.02; };
  std::vector<KvGePoint2d> pts;
  pts.reserve(static_cast<std::size_t>(count));
  while (static_cast<int>(pts.size()) < count) {
    const int kind = static_cast<int>(rng() % 5);
    if (kind == 0 || edges.empty()) {
      pts.emplace_back(x0 + (x1 - x0) * u(rng), y0 + (y1 - y0) * u(rng));
      continue;
    }
    const Edge& e = edges[rng() % edges.size()];
    if (kind == 1 || (kind == 3 && flat.empty())) {
      const double dx = e.e.x - e.s.x, dy = e.e.y - e.s.y, l = std::sqrt(dx * dx + dy * dy);
      const double t = -0.05 + 1.1 * u(rng), d = offset();
      const double nx = l > 0 ? -dy / l : 0, ny = l > 0 ? dx / l : 1;
      pts.emplace_back(e.s.x + t * dx + d * nx, e.s.y + t * dy + d * ny);
    } else if (kind == 2) {
      const double x = u(rng) < 0.5 ? e.s.x + offset() * 3 : x0 + (x1 - x0) * u(rng);
      pts.emplace_back(x, e.s.y + offsets[rng() % 7]);
    } else if (kind == 3) {
      const Edge& h = flat[rng() % flat.size()];
      const double t = -0.05 + 1.1 * u(rng);
      pts.emplace_back(h.s.x + t * (h.e.x - h.s.x), h.s.y + t * (h.e.y - h.s.y) + offsets[rng() % 7]);
    } else {
      const double a = 2 * kPi * u(rng), r = std::fabs(offset()) * 1.5;
      pts.emplace_back(e.s.x + r * std::cos(a), e.s.y + r * std::sin(a));
    }
  }
  return pts;
}

// f applied to the shape as the free functions take it: the set, or its one polygon.
template <class F>
auto OnShape(const Shape& s, F f) {
  return s.set ? f(s.rings) : f(s.rings.GetData()[0]);
}

unsigned short Free(const KvGePoint2d& p, const Shape& s) {
  return OnShape(s, [&](const auto& r) { return Containment(p, r); });
}

KvGePreparedRegion2d Prepare(const Shape& s) {
  return OnShape(s, [](const auto& r) { return KvGePreparedRegion2d(r); });
}

std::string Where(const KvGePoint2d& p) {
  char buf[96];
  std::snprintf(buf, sizeof buf, "(%.17g, %.17g)", p.x, p.y);
  return buf;
}

bool SameLine(const KvGeLine2d& a, const KvGeLine2d& b) {
  return a.P1().x == b.P1().x && a.P1().y == b.P1().y && a.P2().x == b.P2().x && a.P2().y == b.P2().y &&
         a.Segment() == b.Segment() && a.Sense() == b.Sense();
}

}  // namespace

// Through the batch form, which answers each point by the single one.
TEST(PreparedRegion, PointsAnswerAsTheFreeFunction) {
  for (const Shape& s : Shapes()) {
    SCOPED_TRACE(s.name);
    const KvGePreparedRegion2d prepared = Prepare(s);
    KvGePoint2dArray pts;
    for (const KvGePoint2d& p : Points(s.rings, 100000, 11)) pts.Add(p);
    KvBtDynArray<unsigned short> got;
    got.Add(9);
    ASSERT_EQ(prepared.Containment(pts, got), 100000);
    ASSERT_EQ(got.GetSize(), 100000);
    int differences = 0;
    int bits[8] = {0};
    for (int i = 0; i < pts.GetSize(); ++i) {
      const unsigned short expected = Free(pts[i], s);
      bits[expected & 7]++;
      if (got[i] != expected && ++differences <= 5)
        ADD_FAILURE() << Where(pts[i]) << " free " << expected << " prepared " << got[i];
    }
    EXPECT_EQ(differences, 0);
    // The sample reaches every answer on every shape with an inside.
    EXPECT_TRUE(bits[4] > 0 || s.name == std::string("clockwise star") || s.name == std::string("two vertices"));
    EXPECT_GT(bits[2], 0);
    EXPECT_GT(bits[1], 0);
  }
}

TEST(PreparedRegion, LinesAnswerAsTheFreeFunctions) {
  for (const Shape& s : Shapes()) {
    SCOPED_TRACE(s.name);
    const KvGePreparedRegion2d prepared = Prepare(s);
    const std::vector<KvGePoint2d> pts = Points(s.rings, 4000, 23);
    const std::vector<Edge> edges = Edges(s.rings);
    std::mt19937_64 rng(5);
    int differences = 0;
    KvBtDynArray<KvGeLine2d> freePieces, preparedPieces;
    for (int i = 0; i < 2000; ++i) {
      KvGePoint2d a = pts[2 * i], b = pts[2 * i + 1];
      const int kind = static_cast<int>(rng() % 4);
      const Edge& e = edges[rng() % edges.size()];
      if (kind == 1) b = KvGePoint2d(a.x + 1, a.y);  // horizontal, often level with a vertex
      if (kind == 2) {                               // along an edge, or through two vertices
        a = e.s;
        b = rng() % 2 ? e.e : edges[rng() % edges.size()].s;
      }
      if (kind == 3) b = KvGePoint2d(a.x + 0.0006, a.y + 0.0006);  // no longer than 0.001
      const KvGeLine2d l(a, b, static_cast<int>(rng() % 2), 1);
      bool same = prepared.Containment(l) == OnShape(s, [&](const auto& r) { return Containment(l, r); });
      for (int mode = 0; mode < 2 && same; ++mode) {
        const int nFree = OnShape(s, [&](const auto& r) { return Intersection2d(l, r, freePieces, mode); });
        same = prepared.Intersection2d(l, preparedPieces, mode) == nFree && preparedPieces.GetSize() == nFree;
        for (int k = 0; k < nFree && same; ++k) same = SameLine(freePieces[k], preparedPieces[k]);
      }
      if (!same && ++differences <= 5) ADD_FAILURE() << Where(a) << " - " << Where(b) << " segment " << l.Segment();
    }
    EXPECT_EQ(differences, 0);
    // Polylines and polygons are tested edge by edge; a set answers 1 for a polygon.
    for (int i = 0; i + 6 <= 600; i += 6) {
      const KvGePolyline2d pl{pts[i], pts[i + 1], pts[i + 2], pts[i + 3], pts[i + 4], pts[i + 5]};
      const KvGePolygon2d pg(pl);
      EXPECT_EQ(prepared.Containment(pl), OnShape(s, [&](const auto& r) { return Containment(pl, r); }));
      EXPECT_EQ(prepared.Containment(pg), OnShape(s, [&](const auto& r) { return Containment(pg, r); }));
    }
  }
}

// Coordinates the tree does not handle (huge, infinite, not a number) take the exact path.
TEST(PreparedRegion, ExtremeCoordinates) {
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<KvGePolygon2d> regions = {
      Star(100, 0, 0, 5, 2), KvGePolygon2d{{0, 0}, {3e9, 0}, {3e9, 2e9}, {0, 2e9}},
      KvGePolygon2d{{0, 0}, {4, 0}, {nan, 2}, {0, 4}}, KvGePolygon2d{{0, 0}, {4, 0}, {4, inf}, {0, 4}},
      KvGePolygon2d{{0, 0}, {10, nan}, {nan, nan}, {nan, nan}}};
  const std::vector<KvGePoint2d> pts = {{1, 1},   {1e9, 1e9}, {-1e9, 0}, {1e12, 3}, {inf, 0},    {0, -inf}, {nan, 1},
                                        {1, nan}, {2e9, 1e9}, {0, 0},    {4, 2},    {1e-300, 2}, {30, 1}};
  for (const KvGePolygon2d& r : regions) {
    const KvGePolygon2dArray set{r};
    const KvGePreparedRegion2d pp(r), ps(set);
    for (const KvGePoint2d& p : pts) {
      SCOPED_TRACE(Where(p));
      EXPECT_EQ(pp.Containment(p), Containment(p, r));
      EXPECT_EQ(ps.Containment(p), Containment(p, set));
      const KvGeLine2d l(p, KvGePoint2d(1, 2), 0, 1);
      EXPECT_EQ(pp.Containment(l), Containment(l, r));
    }
  }
  // Near 1e6 a line 0.03 long crosses, by the rounding of the crossing formula, an edge whose
  // ends lie 0.0016 and more off it: the box of the ring lies beside the line beyond the band,
  // and yet the free cut reports the crossings (the line passes inside the tip), so the tree
  // must not skip it.
  const double x = 1000004.81, y = 1e6;
  const KvGePolygon2d spike{{x - 3, y + 2}, {x + 0.01, y + 0.0016}, {x + 0.01, y + 5}};
  const KvGePreparedRegion2d ps(spike);
  const KvGeLine2d l(KvGePoint2d(x, y), KvGePoint2d(x + 0.03, y), 0, 1);
  KvBtDynArray<KvGeLine2d> free, prepared;
  EXPECT_EQ(ps.Containment(l), Containment(l, spike));
  EXPECT_EQ(ps.Intersection2d(l, prepared, 1), Intersection2d(l, spike, free, 1));
  EXPECT_GT(free.GetSize(), 0);
}

TEST(PreparedRegion, KeepsItsOwnCopyAndStartsEmpty) {
  KvGePolygon2d poly{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  KvGePolygon2dArray set{poly};
  const KvGePreparedRegion2d fromPoly(poly), fromSet(set);
  poly.ElementAt(2) = KvGePoint2d(1, 1);
  set.ElementAt(0).ElementAt(2) = KvGePoint2d(1, 1);
  EXPECT_EQ(fromPoly.Containment(KvGePoint2d(8, 8)), 4);
  EXPECT_EQ(fromSet.Containment(KvGePoint2d(8, 8)), 4);
  EXPECT_EQ(fromPoly.BoundingBox().Max().x, 10);
  const KvGePreparedRegion2d empty;
  EXPECT_EQ(empty.Containment(KvGePoint2d(0, 0)), 1);
  EXPECT_EQ(empty.Containment(KvGePolyline2d()), 0);
  EXPECT_TRUE(empty.BoundingBox().IsEmpty(1));
}
