#include <gtest/gtest.h>

#include <random>

#include "geometry/intersection/KvGeDistance2d.h"

#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/intersection/KvGePreparedRegion2d.h"

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

// The pieces step by step as stated, through a full calculator: the unbounded copy cut with
// every edge, sorted, cut into parts; then clipped, kept or joined by the mode.
int SlowPieces(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  out.RemoveAll();
  KvGeIntrCalculator2d calc;
  const KvGeLine2d unbounded(l.P1(), l.P2(), 0, 1);
  for (const KvGePolygon2d& ring : region)
    for (int i = 0; i < ring.GetSize(); ++i) {
      KvGeIntrPoint2d r;
      if (!Intersection2d(unbounded, KvGeLine2d(ring[i], ring[mod(i + 1, ring.GetSize())], 1, 1), r)) continue;
      r.Segment1() = static_cast<unsigned>(i);
      calc.Add(r);
    }
  calc.SortIntrPoints0();
  calc.CalculateParts0();
  const KvGeIntrPart2d segment(KvGeIntrPoint2d(l.P1(), 0, -1, 0, 0.0, 0.0, 0, 0, 0),
                               KvGeIntrPoint2d(l.P2(), 0, 1, 0, std::sqrt(DistanceSqr2d(l.P1(), l.P2())), 0.0, 0, 0, 0),
                               0);
  const auto add = [&](const KvGeIntrPart2d& part) {
    if (part.Min().Compare0(part.Max()) < 0)
      out.Add(KvGeLine2d(static_cast<const KvGePoint2d&>(part.Min()), static_cast<const KvGePoint2d&>(part.Max())));
  };
  bool open = false;
  KvGeIntrPart2d run;
  for (int i = 0; i < calc.GetSize0(); ++i) {
    KvGeIntrPart2d part = calc.Part0(i);
    if (mode == 0) {
      if (!l.Segment() && i + 1 == calc.GetSize0()) continue;  // ends at the sentinel
      if (l.Segment()) part.Intersect0(segment);
      if (part.Type() == 1) add(part);
    } else if (part.Min().Compare0(part.Max()) < 0) {
      if (part.Type() != -1) {
        if (!open) run = part;
        run.Max() = part.Max();
        open = true;
      } else if (open) {
        if (l.Segment()) run.Intersect0(segment);
        add(run);
        open = false;
      }
    }
  }
  return out.GetSize();
}

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
  } rows[] = {{"through the hole", &holed, KvGeLine2d({-5, 5}, {15, 5}), {{0, 3}, {7, 10}}, {{0, 3}, {7, 10}}},
              {"unbounded", &holed, KvGeLine2d({40, 5}, {41, 5}, 0), {{0, 3}, {7, 10}}, {{0, 3}, {7, 10}}},
              {"clipped", &holed, KvGeLine2d({1, 5}, {8, 5}), {{1, 3}, {7, 8}}, {{1, 3}, {7, 8}}},
              {"backwards", &holed, KvGeLine2d({8, 5}, {1, 5}), {{8, 7}, {3, 1}}, {{8, 7}, {3, 1}}},
              {"touching a hole's corner", &touched, KvGeLine2d({-5, 5}, {15, 5}), {{0, 5}, {5, 10}}, {{0, 10}}},
              {"along an edge", &holed, KvGeLine2d({-5, 0}, {15, 0}), {}, {{0, 10}}},
              {"along a hole's edge", &holed, KvGeLine2d({-5, 3}, {15, 3}), {{0, 3}, {7, 10}}, {{0, 10}}},
              {"outside", &holed, KvGeLine2d({-5, 20}, {15, 20}), {}, {}}};
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

// The pieces against their step-by-step form on random regions with holes, clusters of
// vertices closer than the tolerance, horizontal edges and repeated closing vertices, with lines
// through vertices, 0.0009 and 0.0011 beside them and along edges, bounded and not, both modes.
// Every other line starts or ends at a set distance before or beyond an edge's inner crossing,
// around the bands where a crossing counts, is kept or is dropped before the pieces are formed;
// the regions grow to 10,000 units, past the range where edges are judged without rounding.
TEST(Pieces, MatchTheStepByStepAnswer) {
  std::mt19937 rng(99);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double offsets[] = {0.0, 0.0009, -0.0009, 0.0011, -0.0011, 0.0005};
  const double ends[] = {0.0,    0.0009,  -0.0009, 0.0011,  -0.0011, 0.003, -0.003,
                         0.0045, -0.0045, 0.0055,  -0.0055, 0.006,   -0.006};
  KvBtDynArray<KvGeLine2d> fast, slow;
  int compared = 0;
  for (int shape = 0; shape < 150; ++shape) {
    const double scale = shape % 3 == 0 ? 1.0 : shape % 3 == 1 ? 25.0 : 250.0;
    KvGePolygon2dArray region;
    const int rings = 1 + shape % 4;
    for (int r = 0; r < rings; ++r) {
      KvGePolygon2d ring;
      const int n = 3 + static_cast<int>(unit(rng) * 25);
      const double radius = (r == 0 ? 40 : 4) * scale, cx = (r == 0 ? 0 : -20 + 13 * r) * scale,
                   cy = (r == 0 ? 0 : 3) * scale;
      for (int i = 0; i < n; ++i) {
        const double a = 6.283185307179586 * (i + 0.9 * unit(rng)) / n, rr = radius * (0.5 + 0.5 * unit(rng));
        double x = cx + rr * std::cos(a), y = cy + rr * std::sin(a);
        if (i > 0 && unit(rng) < 0.2) y = ring[i - 1].y;                        // horizontal edge
        if (i > 0 && unit(rng) < 0.1) x = ring[i - 1].x + 0.0004, y += 0.0003;  // a cluster
        ring.Add(KvGePoint2d(x, y));
      }
      if (shape % 5 == 0) ring.Add(ring[0]);
      if (r > 0 && shape % 2) ring.Invert();
      region.Add(ring);
    }
    for (int k = 0; k < 40; ++k) {
      const KvGePolygon2d& ring = region[k % rings];
      const int i = static_cast<int>(unit(rng) * ring.GetSize()) % ring.GetSize();
      const KvGePoint2d v = ring[i], w = ring[mod(i + 1, ring.GetSize())];
      const double a = k % 4 == 0 ? 0.0 : 3.14159 * unit(rng);
      KvGePoint2d d(std::cos(a), std::sin(a));
      const double len = 60 * scale * unit(rng);
      KvGeLine2d l;
      if (k % 2 == 1) {
        // Starting e after the crossing at the edge's middle (odd rows), or ending e before it.
        const KvGePoint2d mid = (v + w) * 0.5;
        const double e = ends[(k / 2) % 13];
        l = k % 4 == 1 ? KvGeLine2d(mid + d * e, mid + d * (e + len)) : KvGeLine2d(mid - d * (e + len), mid - d * e);
      } else {
        if (k % 7 == 0 && DistanceSqr2d(v, w) > 0) d = (w - v) * (1.0 / std::sqrt(DistanceSqr2d(v, w)));  // along
        const double off = offsets[k % 6];
        const KvGePoint2d base(v.x - d.y * off, v.y + d.x * off);
        const double back = k % 5 == 1 ? 0.0 : 60 * scale * unit(rng);  // some start on the boundary
        l = KvGeLine2d(base - d * back, base + d * len, k % 3 != 0);
      }
      for (int mode = 0; mode < 2; ++mode) {
        ASSERT_EQ(Intersection2d(l, region, fast, mode), SlowPieces(l, region, slow, mode)) << shape << " " << k;
        for (int j = 0; j < fast.GetSize(); ++j) {
          ASSERT_EQ(fast[j].P1().x, slow[j].P1().x) << shape << " " << k;
          ASSERT_EQ(fast[j].P1().y, slow[j].P1().y);
          ASSERT_EQ(fast[j].P2().x, slow[j].P2().x);
          ASSERT_EQ(fast[j].P2().y, slow[j].P2().y);
        }
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, 150 * 40 * 2);
}

// A segment about 1e9 long enters a region within 0.001 of the parameter 1e9 that the
// calculator's end sentinel carries, and ends inside it: the part after the entry runs to the
// region's far edge, beyond the segment, and is clipped to a piece (0.0039 long in the first row),
// not taken for a part that ends at the sentinel, equal to the tolerance and of no type.
TEST(Pieces, EntryNearTheEndSentinelsParameterMatchesTheStepByStepAnswer) {
  const double big = 1e9;
  struct Row {
    double entry, length;
  } rows[] = {{-0.0009, 0.003}, {-0.0011, 0.003}, {0.0009, 0.003}, {-0.0009, -0.0005}, {-0.0009, 0.0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.entry << " " << row.length);
    KvGePolygon2dArray region;
    region.Add(Poly({{big + row.entry, -5}, {big + 10, -5}, {big + 10, 5}, {big + row.entry, 5}}));
    const KvGeLine2d l(KvGePoint2d(0, 0), KvGePoint2d(big + row.length, 0));
    KvBtDynArray<KvGeLine2d> fast, slow;
    for (int mode = 0; mode < 2; ++mode) {
      ASSERT_EQ(Intersection2d(l, region, fast, mode), SlowPieces(l, region, slow, mode)) << mode;
      for (int j = 0; j < fast.GetSize(); ++j) {
        EXPECT_EQ(fast[j].P1().x, slow[j].P1().x);
        EXPECT_EQ(fast[j].P2().x, slow[j].P2().x);
      }
    }
  }
}

// Found by the operations fuzz target: an unbounded line nearly along the left edge (a sine of
// 0.00025) crosses that edge inside it, while the vertex below is reported by the bottom edge
// alone, so the counts along the line do not return to zero. The last part then ran out to the
// calculator's end sentinel and became a piece ending at its dummy point (0, 0), off the line
// and running backwards.
TEST(Pieces, UnboundedLineLosingHalfACrossingGivesNoPieceToInfinity) {
  const KvGePolygon2d ring = Poly({{0, 0}, {11, 0}, {1, 1}, {0, 1}});
  KvGePolygon2dArray set;
  set.Add(ring);
  const KvGeLine2d l(KvGePoint2d(0, 0.96825), KvGePoint2d(0.001, 4.99825), 0);
  const KvGePreparedRegion2d preparedPoly(ring), preparedSet(set);
  for (int mode = 0; mode < 2; ++mode) {
    SCOPED_TRACE(mode);
    KvBtDynArray<KvGeLine2d> free, fromSet, prepared;
    Intersection2d(l, static_cast<const KvGePoint2dArray&>(ring), free, mode);
    Intersection2d(l, set, fromSet, mode);
    ASSERT_EQ(free.GetSize(), mode == 0 ? 1 : 0);
    for (const KvGeLine2d& piece : free) {
      EXPECT_LE(DistanceSqrToLine2d(l.P1(), l.P2(), piece.P2()), 1e-12);
      EXPECT_GT(piece.P2().y, piece.P1().y);  // the way the line runs
    }
    ASSERT_EQ(fromSet.GetSize(), free.GetSize());
    preparedPoly.Intersection2d(l, prepared, mode);
    ASSERT_EQ(prepared.GetSize(), free.GetSize());
    preparedSet.Intersection2d(l, prepared, mode);
    ASSERT_EQ(prepared.GetSize(), free.GetSize());
  }
}
