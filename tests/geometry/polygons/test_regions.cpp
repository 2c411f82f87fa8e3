#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/polygons/KvGeParallel2d.h"
#include "region_check.h"

using namespace regiontest;
using P = KvGePoint2d;

namespace {

double RegionArea(const KvGePolygon2dArray& set) { return set.Normalized().Area(); }

// A star-shaped ring around a random centre, counter-clockwise, or clockwise, or with its
// vertices shuffled so that it crosses itself.
KvGePolygon2d RandomRing(std::mt19937& rng) {
  std::uniform_real_distribution<double> pos(0.0, 100.0), rad(3.0, 40.0), unit(0.0, 1.0);
  std::uniform_int_distribution<int> count(3, 9);
  const double cx = pos(rng), cy = pos(rng);
  const int n = count(rng);
  KvGePolygon2d ring;
  double angle = 0.0;
  for (int i = 0; i < n; ++i) {
    angle += (0.3 + unit(rng)) * 2.0 * 3.141592653589793 / (n + 0.5);
    const double r = rad(rng);
    ring.Add(P(cx + r * std::cos(angle), cy + r * std::sin(angle)));
  }
  const double kind = unit(rng);
  if (kind < 0.15) {
    ring.Invert();
  } else if (kind < 0.25) {
    std::shuffle(ring.begin(), ring.end(), rng);
  }
  return ring;
}

KvGePolygon2dArray RandomSet(std::mt19937& rng) {
  KvGePolygon2dArray set;
  const int rings = 1 + static_cast<int>(rng() % 3);
  for (int i = 0; i < rings; ++i) set.Add(RandomRing(rng));
  return set;
}

double EdgeDistanceSqr(const KvGePolygon2dArray& set, const P& p) {
  double best = 1e300;
  for (const KvGePolygon2d& ring : set)
    for (int i = 0; i < ring.GetSize(); ++i)
      best = std::min(best, DistanceSqrToLineseg2d(ring.GetData()[i], ring.GetData()[(i + 1) % ring.GetSize()], p));
  return best;
}

bool Inside(const P& p, const KvGePolygon2dArray& set) { return Containment(p, set) == 4; }

// Ring for ring, vertex for vertex, without tolerance.
bool Identical(const KvGePolygon2dArray& s, const KvGePolygon2dArray& t) {
  if (s.GetSize() != t.GetSize()) return false;
  for (int i = 0; i < s.GetSize(); ++i) {
    const KvGePolygon2d &r = s.GetData()[i], &q = t.GetData()[i];
    if (r.GetSize() != q.GetSize()) return false;
    for (int k = 0; k < r.GetSize(); ++k)
      if (r.GetData()[k].x != q.GetData()[k].x || r.GetData()[k].y != q.GetData()[k].y) return false;
  }
  return true;
}

// The complement as the set's operators define it: a counter-clockwise frame along the bounds of
// the coordinate range, then every ring reversed.
KvGePolygon2dArray Complement(const KvGePolygon2dArray& set) {
  const double r = kKvGeRegionRange;
  KvGePolygon2dArray c = Set({Rect(-r, -r, r, r)});
  for (const KvGePolygon2d& ring : set) c.Add(ring.Inverted());
  return c;
}

}  // namespace

TEST(PolygonSetOperators, CallingRulesOfEmptyOperands) {
  KvGePolygon2dArray empty, a = Set({Rect(0, 0, 2, 2)}), b = Set({Rect(1, 1, 3, 3)});
  empty.Tag() = 7;
  a.Tag() = 1;
  b.Tag() = 2;

  KvGePolygon2dArray u = empty;
  u |= b;  // an empty set becomes a copy of the other, its further value included
  EXPECT_EQ(u.Tag(), 2);
  EXPECT_TRUE(u.GetData()[0] == b.GetData()[0]);
  EXPECT_EQ((a | empty).GetSize(), 1);
  EXPECT_EQ((a | b).Tag(), 1);
  EXPECT_NEAR((a | b).Area(), 7.0, 1e-9);

  EXPECT_EQ((a & empty).GetSize(), 0);
  EXPECT_EQ((empty & a).GetSize(), 0);
  EXPECT_NEAR((a & b).Area(), 1.0, 1e-9);

  // The complement of an empty set has no rings, so the difference empties the set.
  EXPECT_EQ((a - empty).GetSize(), 0);
  EXPECT_EQ((a - empty).Tag(), 1);
  EXPECT_EQ((empty - a).GetSize(), 0);
  EXPECT_NEAR((a - b).Area(), 3.0, 1e-9);
  EXPECT_NEAR((a - a).Area(), 0.0, 1e-9);
  KvGePolygon2dArray self = a;
  const KvGePolygon2dArray& alias = self;
  self |= alias;
  EXPECT_NEAR(self.Area(), 4.0, 1e-9);
}

TEST(PolygonSetOperators, ReadsRingsByWindingLikeContainment) {
  const KvGePolygon2dArray outer = Set({Rect(0, 0, 10, 10)});
  struct Row {
    const char* name;
    KvGePolygon2dArray set;
    double area;
  } rows[] = {
      {"clockwise ring alone encloses nothing", Set({Rect(0, 0, 4, 4).Inverted()}), 0.0},
      {"clockwise hole", Set({Rect(0, 0, 10, 10), Rect(2, 2, 4, 4).Inverted()}), 96.0},
      {"counter-clockwise inner ring is no hole", Set({Rect(0, 0, 10, 10), Rect(2, 2, 4, 4)}), 100.0},
      {"overlapping rooms count once", Set({Rect(0, 0, 6, 10), Rect(4, 0, 10, 10)}), 100.0},
      {"hole that sticks out", Set({Rect(0, 0, 10, 10), Rect(8, 2, 12, 4).Inverted()}), 96.0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KvGePolygon2dArray n = row.set;
    EXPECT_EQ(n.Normalize(), 1);
    EXPECT_NEAR(n.Area(), row.area, 1e-9);
    ExpectNormalised(n);
    EXPECT_NEAR((outer & row.set).Area(), row.area, 1e-9);
  }
}

TEST(PolygonSetOperators, CentreOfAreaAndBoxes) {
  // A 10 x 10 room with a 2 x 10 strip cut out on the right: centre at x = 4.
  const KvGePolygon2dArray room = Set({Rect(0, 0, 10, 10)}) - Set({Rect(8, -1, 11, 11)});
  EXPECT_NEAR(room.Schwerpunkt().x, 4.0, 1e-9);
  EXPECT_NEAR(room.Schwerpunkt().y, 5.0, 1e-9);
  // Overlaps count once, a hole is subtracted, far coordinates do not cancel.
  const KvGePolygon2dArray far = Set({Rect(1e8, 1e8, 1e8 + 4, 1e8 + 2), Rect(1e8, 1e8, 1e8 + 2, 1e8 + 2),
                                      Rect(1e8 + 3, 1e8 + 0.5, 1e8 + 3.5, 1e8 + 1.5).Inverted()});
  const double area = 8.0 - 0.5;
  EXPECT_NEAR(far.Schwerpunkt().x, 1e8 + (8.0 * 2.0 - 0.5 * 3.25) / area, 1e-6);
  EXPECT_NEAR(far.Schwerpunkt().y, 1e8 + 1.0, 1e-6);
  EXPECT_TRUE(Set({Rect(0, 0, 4, 4).Inverted()}).Schwerpunkt() == P(0, 0));
  EXPECT_TRUE(KvGePolygon2dArray().Schwerpunkt() == P(0, 0));

  const KvGeBox2d box = far.BoundingBox();
  EXPECT_TRUE(box.Min() == P(1e8, 1e8));
  EXPECT_TRUE(box.Max() == P(1e8 + 4, 1e8 + 2));
  EXPECT_TRUE(KvGePolygon2dArray().BoundingBox().Min() == P(1e9, 1e9));  // the empty box
  const KvGeBox2d moved = Set({Rect(0, 0, 1, 1)}).BoundingBox(KvGeModMat2d().SetTran(5, 0));
  EXPECT_TRUE(moved.Min() == P(5, 0));
}

TEST(PolygonSetOperators, AgreesWithPointContainmentAndAreaIdentities) {
  std::mt19937 rng(20240601u);
  std::uniform_real_distribution<double> pos(-10.0, 110.0);
  int disagreements[3] = {0, 0, 0}, identityFaults = 0, peerFaults = 0, compared = 0, notLiteral = 0;
  for (int c = 0; c < 10000; ++c) {
    const KvGePolygon2dArray a = RandomSet(rng), b = RandomSet(rng);
    const KvGePolygon2dArray u = a | b, i = a & b, d = a - b;
    P p;
    do {
      p = P(pos(rng), pos(rng));
    } while (EdgeDistanceSqr(a, p) <= 1e-4 || EdgeDistanceSqr(b, p) <= 1e-4);
    const bool inA = Inside(p, a), inB = Inside(p, b);
    disagreements[0] += Inside(p, u) != (inA || inB);
    disagreements[1] += Inside(p, i) != (inA && inB);
    disagreements[2] += Inside(p, d) != (inA && !inB);
    // The difference is the intersection with the complement, though it never builds it.
    notLiteral += !Identical(d, a & Complement(b));

    // The clean-up keeps the area of every ring it changes, so the areas add up as the sets do.
    const double areaA = RegionArea(a), areaB = RegionArea(b), scale = std::max(1.0, areaA + areaB);
    identityFaults += std::fabs(u.Area() + i.Area() - areaA - areaB) > 1e-6 * scale;
    identityFaults += std::fabs(d.Area() - (areaA - i.Area())) > 1e-6 * scale;
    if (c % 10 == 0) {
      BMulti ba, bb, bu, bi, bd;
      ASSERT_TRUE(ToBoost(a.Normalized(), ba) && ToBoost(b.Normalized(), bb));
      bg::union_(ba, bb, bu);
      bg::intersection(ba, bb, bi);
      bg::difference(ba, bb, bd);
      const double peer[] = {bg::area(bu) - u.Area(), bg::area(bi) - i.Area(), bg::area(bd) - d.Area()};
      for (const double e : peer) peerFaults += std::fabs(e) > 1e-6 * scale;
      compared += 3;
      for (const KvGePolygon2dArray* result : {&u, &i, &d}) ExpectNormalised(*result);
    }
  }
  EXPECT_EQ(disagreements[0], 0) << "union";
  EXPECT_EQ(disagreements[1], 0) << "intersection";
  EXPECT_EQ(disagreements[2], 0) << "difference";
  EXPECT_EQ(notLiteral, 0);
  EXPECT_EQ(identityFaults, 0) << "of 20000";
  EXPECT_EQ(peerFaults, 0) << "of " << compared;
}

// ---- near-degenerate input ---------------------------------------------------------------

TEST(RegionCorpus, ResultsOfNearDegenerateInput) {
  const double r = kKvGeRegionRange, any = std::nan("");
  KvGePolygon2dArray floor, rooms;
  for (int i = 0; i < 5; ++i)
    for (int j = 0; j < 5; ++j) floor |= Set({Rect(i, j, i + 1, j + 1)});
  const KvGeModMat2d turn = KvGeModMat2d().SetRotate(KvGeAngle(1e-7));
  for (int i = 0; i < 10; ++i)
    for (int j = 0; j < 10; ++j) rooms.Add(Rect(i * 3.0, j * 3.0, i * 3.0 + 3.0, j * 3.0 + 3.0).Transformed(turn));
  const KvGePolygon2dArray square = Set({Rect(0, 0, 4, 4)}), wedge = Set({Ring({P(4, 2), P(8, 0), P(8, 4)})});
  const KvGePolygon2dArray wall = Set({Rect(0, 0, 10, 10), Ring({P(0, 5), P(3, 7), P(3, 3)})});
  const KvGePolygon2dArray a = Set({Rect(0, 0, 6, 2)}), above = Set({Rect(3, 2, 9, 5)}),
                           beside = Set({Rect(3, 0, 9, 2)});
  const KvGePolygon2dArray bow = Set({Ring({P(0, 0), P(10, 10), P(10, 0), P(0, 10)})});
  const KvGePolygon2dArray twice =
      Set({Ring({P(0, 0), P(4, 0), P(4, 4), P(0, 4), P(0, 0), P(4, 0), P(4, 4), P(0, 4)})});
  const KvGePolygon2dArray atLimit = Set({Rect(r - 10, r - 10, r, r)});
  // rings and vertices (of the first ring) < 0 and an area of NaN are not checked.
  struct Row {
    const char* name;
    KvGePolygon2dArray result;
    int rings, vertices;
    double area, tol;
  } rows[] = {
      // The shared walls leave no vertex behind.
      {"25 rooms sharing edges", floor, 1, 4, 25.0, 1e-9},
      {"vertex touching an edge: union", square | wedge, -1, -1, 24.0, 1e-9},
      {"vertex touching an edge: intersection", square & wedge, 0, -1, 0.0, 0.0},
      {"vertex touching an edge: difference", square - wedge, -1, -1, 16.0, 1e-9},
      {"hole touching its outer ring", wall.Normalized(), -1, -1, 100.0 - 6.0, 1e-9},
      {"hole touching its outer ring, room over the corner", wall | Set({Rect(9, 9, 12, 12)}), -1, -1, any, 0.0},
      {"collinear edges: union", a | above, -1, -1, 30.0, 1e-9},
      {"collinear edges: only an edge in common", a & above, 0, -1, 0.0, 0.0},
      {"collinear overlapping edges: intersection", a & beside, -1, -1, 6.0, 1e-9},
      {"collinear overlapping edges: difference", a - beside, -1, -1, 6.0, 1e-9},
      // Two rooms whose tops differ by a step: a step within 0.001 leaves a plain rectangle.
      {"step of 0.0009", Set({Rect(0, 0, 5, 5)}) | Set({Rect(5, 0, 10, 5 - 0.0009)}), 1, 4, any, 0.0},
      {"step of 0.0011", Set({Rect(0, 0, 5, 5)}) | Set({Rect(5, 0, 10, 5 - 0.0011)}), 1, 6, any, 0.0},
      {"difference leaving a sliver 0.0005 wide", Set({Rect(0, 0, 5, 5)}) - Set({Rect(-1, -1, 4.9995, 6)}), 0, -1, 0.0,
       0.0},
      // A spike of zero width goes, but its area stays.
      {"spike", Set({Ring({P(0, 0), P(4, 0), P(4, 2), P(7, 2), P(4, 2.0004), P(4, 4), P(0, 4)})}).Normalized(), -1, -1,
       16.0 + 0.0006, 1e-5},
      // The bumps of 0.0005 and 0.0004 go, but their area stays: a corner moves out instead, on the
      // grid of 1e-6.
      {"repeated vertices",
       Set({Ring({P(0, 0), P(0, 0), P(4, 0), P(4.0005, 0), P(4, 4), P(2, 4.0004), P(0, 4), P(0, 0)})}).Normalized(), 1,
       4, 16.0 + 0.001 + 0.0008, 1e-5},
      // Each lobe of a bow tie is read by its own winding: only the counter-clockwise one is region.
      {"bow tie", bow.Normalized(), -1, -1, 25.0, 1e-9},
      {"ring running twice around: winding 2 is inside once", twice.Normalized(), -1, -1, 16.0, 1e-9},
      {"bow tie with the double ring", bow | twice, -1, -1, any, 0.0},
      {"grid rotated by 1e-7 rad", rooms.Normalized(), 1, 4, 900.0, 1e-6 * 900.0},
      {"cut by the rotated grid", Set({Rect(-1, -1, 31, 31)}) - rooms, -1, -1, 1024.0 - 900.0, 1e-6 * 1024.0},
      {"union at the range limit", atLimit | Set({Rect(r - 5, r - 20, r, r - 5)}), -1, -1, 150.0, 1e-6},
      {"whole range less a room at its corner", Set({Rect(-r, -r, r, r)}) - atLimit, -1, -1, 4.0 * r * r - 100.0,
       1e-6 * 4.0 * r * r},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectNormalised(row.result);
    if (row.rings >= 0) {
      EXPECT_EQ(row.result.GetSize(), row.rings);
    }
    if (row.vertices >= 0 && row.result.GetSize() > 0) {
      EXPECT_EQ(row.result.GetData()[0].GetSize(), row.vertices);
    }
    if (!std::isnan(row.area)) {
      EXPECT_NEAR(row.result.Area(), row.area, row.tol);
    }
  }
}

TEST(RegionCorpus, CoordinatesBeyondTheRangeAreRefused) {
  const double r = kKvGeRegionRange;
  const KvGePolygon2dArray atLimit = Set({Rect(r - 10, r - 10, r, r)});
  struct Row {
    const char* name;
    double beyond;
  } rows[] = {{"just beyond", r * (1 + 1e-15) + 1.0}, {"far beyond", 1e300}, {"not a number", std::nan("")}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const KvGePolygon2dArray bad = Set({Ring({P(r - 10, r - 10), P(row.beyond, r - 10), P(r, r)})});
    KvGePolygon2dArray s = atLimit;
    s |= bad;
    EXPECT_TRUE(s.GetData()[0] == atLimit.GetData()[0]);
    s &= bad;
    s -= bad;
    EXPECT_EQ(s.GetSize(), 1);
    EXPECT_TRUE(s.GetData()[0] == atLimit.GetData()[0]);
    KvGePolygon2dArray n = bad;
    EXPECT_EQ(n.Normalize(), 0);
    EXPECT_EQ(n.GetData()[0].GetSize(), 3);
  }
}

TEST(RegionCorpus, FinelyDigitisedCircle) {
  // No vertex lies farther than 0.001 from its neighbours' line, yet the ring bends all round:
  // it is thinned to chords within 0.001 of every input vertex, never dropped.
  KvGePolygon2d circle;
  for (int k = 0; k < 20000; ++k)
    circle.Add(P(100 * std::cos(k * 2 * 3.141592653589793 / 20000), 100 * std::sin(k * 2 * 3.141592653589793 / 20000)));
  KvGePolygon2dArray n = Set({circle});
  ASSERT_EQ(n.Normalize(), 1);
  ExpectNormalised(n);
  ASSERT_EQ(n.GetSize(), 1);
  EXPECT_LT(n.GetData()[0].GetSize(), 2000);
  EXPECT_NEAR(n.Area(), circle.Area(), 0.001 * circle.Perimeter());
  for (int k = 0; k < circle.GetSize(); k += 97) EXPECT_LE(std::sqrt(EdgeDistanceSqr(n, circle[k])), 0.001 + 1e-6);
  KvGePolygon2d cleaned = circle;
  ASSERT_EQ(StreckenzugKorrigieren2d(cleaned), 1);
  EXPECT_NEAR(cleaned.Area(), circle.Area(), 0.001 * circle.Perimeter());
}

TEST(RegionCorpus, EveryOperationGivesTheNormalFormOrACleanZero) {
  const double r = kKvGeRegionRange;
  KvGePolygon2dArray rotated;
  const KvGeModMat2d turn = KvGeModMat2d().SetRotate(KvGeAngle(1e-7));
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) rotated.Add(Rect(i, j, i + 1, j + 1).Transformed(turn));
  struct Row {
    const char* name;
    KvGePolygon2dArray a, b;
    bool inRange;
  } rows[] = {
      {"shared edges", Set({Rect(0, 0, 1, 1), Rect(1, 0, 2, 1)}), Set({Rect(1, 0, 3, 1)}), true},
      {"vertex touching an edge", Set({Rect(0, 0, 4, 4)}), Set({Ring({P(4, 2), P(8, 0), P(8, 4)})}), true},
      {"hole touching its outer ring", Set({Rect(0, 0, 10, 10), Ring({P(0, 5), P(3, 7), P(3, 3)})}),
       Set({Rect(2, 4, 12, 6)}), true},
      {"collinear overlapping edges", Set({Rect(0, 0, 6, 2)}), Set({Rect(3, 2, 9, 5), Rect(3, 0, 9, 2)}), true},
      {"sliver thinner than 0.001", Set({Rect(0, 0, 5, 0.0005)}), Set({Rect(0, 0.0004, 5, 3)}), true},
      {"repeated vertices", Set({Ring({P(0, 0), P(0, 0), P(4, 0), P(4.0005, 0), P(4, 4), P(0, 4), P(0, 0)})}),
       Set({Rect(2, 2, 6, 6)}), true},
      {"self-intersecting", Set({Ring({P(0, 0), P(10, 10), P(10, 0), P(0, 10)})}), Set({Rect(2, -1, 8, 11)}), true},
      {"grid rotated by 1e-7 rad", rotated, Set({Rect(0.5, 0.5, 3.5, 3.5)}), true},
      {"at +-1e9", Set({Rect(-r, -r, -r + 10, -r + 10), Rect(r - 10, r - 10, r, r)}), Set({Rect(-r, -r, r, -r + 5)}),
       true},
      {"just beyond 1e9", Set({Rect(r - 10, r - 10, r + 0.001, r)}), Set({Rect(r - 20, r - 20, r - 5, r - 5)}), false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KvGePolygon2dArray n = row.a;
    ASSERT_EQ(n.Normalize(), row.inRange ? 1 : 0);
    if (!row.inRange) {
      EXPECT_TRUE(n == row.a);
      EXPECT_TRUE((row.a | row.b) == row.a);
      EXPECT_TRUE((row.a & row.b) == row.a);
      EXPECT_TRUE((row.a - row.b) == row.a);
      KvGePolygon2dArray out = row.b;
      EXPECT_EQ(ParallelPolygon2d(row.a, 0.3, out), 0);
      EXPECT_TRUE(out == row.b);
      continue;
    }
    const auto check = [](const char* what, const KvGePolygon2dArray& result) {
      SCOPED_TRACE(what);
      ExpectNormalised(result);
    };
    check("normalised", n);
    check("union", row.a | row.b);
    check("intersection", row.a & row.b);
    check("difference", row.a - row.b);
    check("reverse difference", row.b - row.a);
    for (const double d : {0.3, -0.3, 0.0006}) {
      KvGePolygon2dArray out;
      ASSERT_EQ(ParallelPolygon2d(row.a, d, out, kKvGeJoinRound), 1) << d;
      check("offset", out);
    }
  }
}
