#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrCalculator2d.h"

namespace {

// The point test step by step as stated, through a full calculator: boundary first, then the
// records of the horizontal line, sorted and cut, and the parts that cover p.x.
unsigned short SlowContainment(const KvGePoint2d& p, const KvGePolygon2dArray& set, bool boundaryFirst) {
  if (boundaryFirst)
    for (const KvGePolygon2d& poly : set)
      for (int i = 0; i < poly.GetSize(); ++i)
        if (IsEqual(DistanceSqrToLineseg2d(poly[i], poly[mod(i + 1, poly.GetSize())], p), 0, 1e-6)) return 2;
  KvGeIntrCalculator2d calc;
  for (const KvGePolygon2d& poly : set) {
    for (int i = 0; i < poly.GetSize(); ++i) {
      const KvGePoint2d s = poly[i], e = poly[mod(i + 1, poly.GetSize())];
      const int cs = KvBtRealCompare(s.y, p.y, 0.001), ce = KvBtRealCompare(e.y, p.y, 0.001);
      if (cs == ce) continue;
      double x;
      int code, sense;
      if (cs == 0) {
        x = s.x, code = -1, sense = ce;
      } else if (ce == 0) {
        x = e.x, code = 1, sense = -cs;
      } else {
        x = s.x + (p.y - s.y) * (e.x - s.x) / (e.y - s.y), code = 0, sense = ce;
      }
      calc.Add(KvGeIntrPoint2d(KvGePoint2d(x, p.y), sense, 0, code, x, 0.0, 0, static_cast<unsigned>(i), 0));
    }
  }
  calc.SortIntrPoints0();
  calc.CalculateParts0();
  bool out = false, on = false, in = false;
  for (int i = 0; i < calc.GetSize0(); ++i) {
    const KvGeIntrPart2d& part = calc.Part0(i);
    if (part.Min().Segment0() == 0 && KvBtRealCompare(part.Min().Param0(), p.x, 0.001) <= 0 &&
        (part.Max().Segment0() != 0 || KvBtRealCompare(part.Max().Param0(), p.x, 0.001) >= 0)) {
      if (part.Type() == -1)
        out = true;
      else if (part.Type() == 1)
        in = true;
      else
        on = true;
    }
  }
  if (on) return 2;
  if (!in) return 1;
  return out ? 2 : 4;
}

}  // namespace

TEST(Containment, PointBandVerticesAndHorizontalEdges) {
  const KvGePolygon2d shapes[] = {
      {{0, 0}, {10, 0}, {10, 10}, {0, 10}},
      KvGePolygon2d{{5, 0}, {10, 5}, {5, 10}, {0, 5}},            // scan lines through side vertices and apexes
      KvGePolygon2d{{0, 0}, {10, 0}, {10, 10}, {5, 5}, {0, 10}},  // reflex vertex (5, 5) touching from above
      KvGePolygon2d{{0, 0}, {10, 0}, {10, 5}, {20, 5}, {20, 10}, {0, 10}},  // horizontal edge (10,5)-(20,5)
      KvGePolygon2d{{0, 0}, {10, 0}, {10, 10}},
  };
  struct Row {
    const char* name;
    int shape;
    double x, y;
    unsigned short ccw;  // a clockwise ring turns 4 into 1
  } rows[] = {{"inside", 0, 5, 5, 4},
              {"0.0009 inside an edge", 0, 5, 0.0009, 2},
              {"0.0009 outside", 0, 5, -0.0009, 2},
              {"0.0011 inside", 0, 5, 0.0011, 4},
              {"0.0011 outside", 0, 5, -0.0011, 1},
              {"level with the top", 0, 15, 10, 1},
              {"off a corner, square to an edge", 0, 10.0008, 10.0008, 2},
              {"farther off a corner", 0, 10.0011, 10.0011, 1},
              {"level, inside", 1, 3, 5, 4},
              {"level, left", 1, -3, 5, 1},
              {"level, right", 1, 12, 5, 1},
              {"apex level, left", 1, 2, 10, 1},
              {"apex level, right", 1, 8, 10, 1},
              {"under the apex", 1, 5, 9.9991, 2},
              {"left of the notch", 2, 2, 5, 4},
              {"right of the notch", 2, 8, 5, 4},
              {"in the notch", 2, 5, 6, 1},
              {"near the reflex vertex", 2, 5, 5.0005, 2},
              {"level, left of the step", 3, 5, 5, 4},
              {"on the step", 3, 15, 5, 2},
              {"level, right", 3, 25, 5, 1},
              {"under the step", 3, 15, 4, 1},
              {"over the step", 3, 15, 6, 4},
              // 0.0009 from the line of the edge (10,10)-(0,0), measured square beyond its end, though
              // 0.00127 from the segment and from its box.
              {"beyond an end, square to the edge", 4, -0.00127, 0, 2},
              {"farther beyond", 4, -0.0016, 0, 1}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    const KvGePoint2d p(r.x, r.y);
    KvGePolygon2d repeated = shapes[r.shape];
    repeated.Add(repeated[0]);
    EXPECT_EQ(Containment(p, shapes[r.shape]), r.ccw);
    EXPECT_EQ(Containment(p, shapes[r.shape].Inverted()), r.ccw == 4 ? 1 : r.ccw);
    EXPECT_EQ(Containment(p, repeated), r.ccw);
  }
  EXPECT_EQ(Containment(KvGePoint2d(1, 1), KvGePolygon2d()), 1);
}

TEST(Containment, PointInSetWithHole) {
  const KvGePolygon2dArray set{{{0, 0}, {10, 0}, {10, 10}, {0, 10}},
                               {{3, 3}, {3, 7}, {7, 7}, {7, 3}}};  // a clockwise hole
  KvGePolygon2dArray islands = set;
  islands[1].Invert();  // counter-clockwise inside counter-clockwise: no hole
  const KvGePolygon2dArray cwOnly{set[0].Inverted()};
  struct Row {
    const char* name;
    double x, y;
    unsigned short hole, island, cw;
  } rows[] = {{"in the hole", 5, 5, 1, 4, 1},
              {"in the ring", 1, 5, 4, 4, 1},
              {"on the hole's edge", 3, 5, 2, 4, 1},
              {"0.0005 into the hole", 3.0005, 5, 2, 4, 1},
              {"0.0011 into the hole", 3.0011, 5, 1, 4, 1},
              {"outside", 12, 5, 1, 1, 1},
              {"level with the hole's corner", 5, 3, 2, 4, 1}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    EXPECT_EQ(Containment(KvGePoint2d(r.x, r.y), set), r.hole);
    EXPECT_EQ(Containment(KvGePoint2d(r.x, r.y), islands), r.island);
    EXPECT_EQ(Containment(KvGePoint2d(r.x, r.y), cwOnly), r.cw);
  }
  EXPECT_EQ(Containment(KvGePoint2d(1, 1), KvGePolygon2dArray()), 1);
}

TEST(Containment, LinesPolylinesPolygons) {
  const KvGePolygon2d sq{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  const KvGePolygon2dArray holed{sq, {{3, 3}, {3, 7}, {7, 7}, {7, 3}}};
  struct Row {
    const char* name;
    KvGePoint2d a, b;
    int segment;
    unsigned short poly, set;
  } rows[] = {
      {"outside to outside", {-5, 5}, {15, 5}, 1, 7, 7},     {"inside", {1, 1}, {9, 2}, 1, 4, 4},
      {"through the hole only", {4, 5}, {6, 5}, 1, 4, 1},    {"outside", {-5, -5}, {-1, 20}, 1, 1, 1},
      {"along an edge", {0, 0}, {10, 0}, 1, 2, 2},           {"ending on the boundary", {5, 1}, {10, 1}, 1, 6, 6},
      {"touching a corner", {-5, 5}, {5, -5}, 1, 1, 1},      {"unbounded inside", {4, 1}, {6, 1}, 0, 7, 7},
      {"no longer than 0.001", {5, 1}, {5.0009, 1}, 1, 0, 0}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    const KvGeLine2d l(r.a, r.b, r.segment);
    EXPECT_EQ(Containment(l, sq), r.poly);
    EXPECT_EQ(Containment(l, holed), r.set);
    // A clockwise square encloses nothing: every part of positive length is outside.
    EXPECT_EQ(Containment(l, sq.Inverted()), r.poly == 0 ? 0 : 1);
  }

  EXPECT_EQ(Containment(KvGePolyline2d(), sq), 0);
  EXPECT_EQ(Containment(KvGePolyline2d{{1, 1}}, holed), 0);
  EXPECT_EQ(Containment(KvGePolyline2d{{1, 1}, {2, 1}, {2, 2}}, sq), 4);
  EXPECT_EQ(Containment(KvGePolyline2d{{1, 1}, {2, 1}, {2, 2}}, holed), 4);
  EXPECT_EQ(Containment(KvGePolyline2d{{1, 1}, {2, 1}, {2, 2}, {5, 5}}, holed), 7);

  EXPECT_EQ(Containment(KvGePolygon2d{{1, 1}, {2, 1}, {2, 2}}, sq), 4);
  EXPECT_EQ(Containment(KvGePolygon2d{{1, 1}, {20, 1}, {2, 2}}, sq), 7);
  EXPECT_EQ(Containment(KvGePolygon2d(), sq), 0);
  // Fixed answers, whatever the geometry.
  const KvGePolygon2dArray inner{{{1, 1}, {2, 1}, {2, 2}}};
  EXPECT_EQ(Containment(inner, sq), 1);
  EXPECT_EQ(Containment(inner[0], holed), 1);
  EXPECT_EQ(Containment(inner, holed), 1);
}

// The point test against its slow transcription on random and near-degenerate cases: points
// 0.0009 and 0.0011 off edges, level with vertices, near vertices, horizontal edges, holes.
TEST(Containment, MatchesTheStepByStepAnswer) {
  std::mt19937 rng(20261123);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double offsets[] = {0.0, 0.0009, -0.0009, 0.0011, -0.0011, 0.0005, 0.0014, -0.0016};
  int checked = 0;
  for (int shape = 0; shape < 300; ++shape) {
    // A star-shaped ring around (50, 50), some radii snapped so that edges run horizontally and
    // vertices share heights; every third set has a clockwise hole or a nested island.
    const int n = 3 + static_cast<int>(unit(rng) * 30);
    KvGePolygon2d ring;
    for (int i = 0; i < n; ++i) {
      const double a = 6.283185307179586 * (i + 0.8 * unit(rng)) / n, r = 10 + 30 * unit(rng);
      double x = 50 + r * std::cos(a), y = 50 + r * std::sin(a);
      if (shape % 2 && i > 0 && unit(rng) < 0.4) y = ring[i - 1].y;
      if (shape % 5 == 0) x = std::round(x), y = std::round(y);
      ring.Add(KvGePoint2d(x, y));
    }
    if (shape % 7 == 3) ring.Add(ring[0]);  // an explicitly repeated closing vertex
    KvGePolygon2dArray set{ring};
    if (shape % 3 == 0) {
      KvGePolygon2d hole = KvGePolygon2d{{46, 46}, {46, 54}, {54, 54}, {54, 46}};
      if (shape % 2) hole.Invert();
      set.Add(hole);
    }
    for (int k = 0; k < 60; ++k) {
      KvGePoint2d p;
      const KvGePolygon2d& poly = set[k % set.GetSize()];
      const int i = static_cast<int>(unit(rng) * poly.GetSize()) % poly.GetSize();
      const KvGePoint2d s = poly[i], e = poly[mod(i + 1, poly.GetSize())];
      const double off = offsets[k % 8];
      switch (k % 4) {
        case 0: {  // off an edge, perpendicularly
          const double t = unit(rng), len = std::sqrt(DistanceSqr2d(s, e));
          if (len == 0) continue;
          p.Set(s.x + (e.x - s.x) * t - (e.y - s.y) / len * off, s.y + (e.y - s.y) * t + (e.x - s.x) / len * off);
          break;
        }
        case 1:  // level with a vertex (within the band or just out of it)
          p.Set(10 + 80 * unit(rng), s.y + off);
          break;
        case 2: {  // just before an edge's start, off its line: the band beyond the end
          const double len = std::sqrt(DistanceSqr2d(s, e)), back = std::fabs(offsets[(k / 4) % 8]);
          if (len == 0) continue;
          const double ux = (e.x - s.x) / len, uy = (e.y - s.y) / len;
          p.Set(s.x - ux * back - uy * off, s.y - uy * back + ux * off);
          break;
        }
        default: {
          const double x = 100 * unit(rng);
          p.Set(x, 100 * unit(rng));
        }
      }
      ASSERT_EQ(Containment(p, poly), SlowContainment(p, KvGePolygon2dArray{poly}, true)) << shape << " " << k;
      ASSERT_EQ(Containment(p, set), SlowContainment(p, set, false)) << shape << " " << k;
      ++checked;
    }
  }
  EXPECT_GT(checked, 15000);
}

// The same with scan lines that cross up to hundreds of edges of a comb, whose teeth stand in
// clusters narrower than the tolerance and end at shared heights: the sort's long ranges, the
// records beyond the inline storage, and the ranges it leaves unordered far from the point.
TEST(Containment, ManyCrossingsMatchTheStepByStepAnswer) {
  std::mt19937 rng(4242);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double heights[] = {5, 7, 9, 11, 7.0009, 8.9991};
  const double offsets[] = {0.0, 0.0009, -0.0009, 0.0011, -0.0011, 0.0025, -0.0031, 0.004};
  for (int shape = 0; shape < 120; ++shape) {
    const int m = 10 + static_cast<int>(unit(rng) * 300);
    KvGePolygon2d comb;
    std::vector<double> xs;
    double x = 0;
    for (int i = 0; i <= m; ++i) {
      x += unit(rng) < 0.3 ? 0.0004 + 0.002 * unit(rng) : 0.5 * unit(rng);
      xs.push_back(x);
    }
    comb.Add(KvGePoint2d(x, -5));
    for (int i = m; i >= 0; --i) comb.Add(KvGePoint2d(xs[i], heights[static_cast<int>(unit(rng) * 6) % 6]));
    comb.Add(KvGePoint2d(0, -5));
    if (shape % 2) comb.Invert();
    const KvGePolygon2dArray one{comb}, holed{comb, {{0.2, 6}, {0.2, 8}, {x - 0.2, 8}, {x - 0.2, 6}}};
    for (int k = 0; k < 80; ++k) {
      const double y = heights[k % 6] + offsets[(k / 6) % 8];
      const double px = k % 3 ? xs[static_cast<int>(unit(rng) * m)] + offsets[k % 8] : x * unit(rng);
      const KvGePoint2d p(px, y);
      ASSERT_EQ(Containment(p, comb), SlowContainment(p, one, true)) << shape << " " << k;
      ASSERT_EQ(Containment(p, holed), SlowContainment(p, holed, false)) << shape << " " << k;
    }
  }
}

// Rings of 63 to 129 vertices, whose vertices are classed against the scan line in blocks of
// 64: every edge across a block's end, the closing edge included, must still be visited.
// Points level with vertices (exactly and 0.0012 off) and between them.
TEST(Containment, RingsAcrossVertexBlocksMatchTheStepByStepAnswer) {
  for (const int n : {63, 64, 65, 127, 128, 129}) {
    KvGePolygon2d ring;
    for (int i = 0; i < n; ++i) {
      const double a = 6.283185307179586 * i / n, r = i % 2 ? 10.0 : 7.0;
      ring.Add(KvGePoint2d(r * std::cos(a), r * std::sin(a)));
    }
    const KvGePolygon2dArray set{ring};
    for (int i = 0; i < n; ++i)
      for (const double dy : {0.0, 0.0012, -0.0012, 0.3})
        for (const double x : {-9.5, -6.0, -1.0, 0.5, 6.5, 9.9}) {
          const KvGePoint2d p(x, ring[i].y + dy);
          ASSERT_EQ(Containment(p, ring), SlowContainment(p, set, true)) << n << " " << i << " " << x << " " << dy;
          ASSERT_EQ(Containment(p, set), SlowContainment(p, set, false)) << n << " " << i << " " << x << " " << dy;
        }
  }
}

// A vertex that is not a number puts NaN crossings on the scan line; the fast path sorts them
// last, as the calculator's records do, and so gives the calculator's answer.
TEST(Containment, NotANumberCrossingsSortAsTheCalculatorDoes) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const KvGePolygon2d ring{{0, 0}, {4, 0}, {nan, 2}, {4, 4}, {0, 4}, {2, 2.0005}, {1, 2}};
  const KvGePolygon2dArray set{ring};
  for (const KvGePoint2d& p : {KvGePoint2d(1, 2), KvGePoint2d(0.5, 2), KvGePoint2d(3, 2), KvGePoint2d(5, 2),
                               KvGePoint2d(1.0005, 2), KvGePoint2d(-1, 2), KvGePoint2d(2, 2.0005)}) {
    SCOPED_TRACE(testing::Message() << p.x << " " << p.y);
    EXPECT_EQ(Containment(p, ring), SlowContainment(p, set, true));
    EXPECT_EQ(Containment(p, set), SlowContainment(p, set, false));
  }
}
