#include <gtest/gtest.h>

#include <cmath>

#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/polygons/KvGeParallel2d.h"
#include "region_check.h"

using namespace regiontest;
using P = KvGePoint2d;

namespace {
constexpr double kPi = 3.141592653589793;

KvGePolyline2d Line(std::initializer_list<P> points) {
  KvGePolyline2d line;
  for (const P& p : points) line.Add(p);
  return line;
}
}  // namespace

TEST(ParallelPolygon, JoinsGrowAndShrink) {
  const KvGePolygon2d square = Rect(0, 0, 10, 10);
  struct Row {
    const char* name;
    KvGePolygon2d polygon;
    double distance;
    KvGeJoin2d join;
    double area, tol;
  } rows[] = {
      {"miter", square, 1.0, kKvGeJoinMiter, 144.0, 1e-9},
      {"round", square, 1.0, kKvGeJoinRound, 140.0 + kPi - 0.001 * (20 + kPi), 0.001 * (20 + kPi)},
      {"square", square, 1.0, kKvGeJoinSquare, 144.0 - 4 * (3.0 - 2 * std::sqrt(2.0)), 1e-5},
      {"clockwise input grows all the same", square.Inverted(), 1.0, kKvGeJoinMiter, 144.0, 1e-9},
      {"shrink", square, -1.0, kKvGeJoinRound, 64.0, 1e-9},
      {"shrunk away", square, -5.0, kKvGeJoinMiter, 0.0, 0.0},
      {"distance 0 keeps the region", square, 0.0, kKvGeJoinMiter, 100.0, 1e-9},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KvGePolygon2dArray out = Set({Rect(0, 0, 1, 1)});
    ASSERT_EQ(ParallelPolygon2d(row.polygon, row.distance, out, row.join), 1);
    EXPECT_NEAR(out.Area(), row.area, row.tol);
    ExpectNormalised(out);
  }
}

TEST(ParallelPolygon, SingleRingGrowsAsItsRegion) {
  // n points counter-clockwise on the circle about the origin through (10, -10), from angle
  // from to angle to, both ends included.
  const auto arc = [](KvGePolygon2d& ring, int n, double from, double to) {
    for (int k = 0; k < n; ++k) {
      const double a = (from + (to - from) * k / (n - 1)) * kPi / 180;
      ring.Add(P(std::sqrt(200.0) * std::cos(a), std::sqrt(200.0) * std::sin(a)));
    }
  };
  KvGePolygon2d circle, crossing, onEdge = Ring({P(-10, -10), P(10, -10)});
  arc(circle, 24, 0, 345);
  crossing = circle;
  std::swap(crossing[3], crossing[9]);
  arc(onEdge, 7, -45 + 16.875, 90 - 16.875);
  onEdge.Add(P(0, -10));  // on the edge from (-10, -10) to (10, -10)
  arc(onEdge, 7, 90 + 16.875, 225 - 16.875);
  struct Row {
    const char* name;
    const KvGePolygon2d& ring;
  } rows[] = {{"simple", circle}, {"crossing itself", crossing}, {"vertex on an edge", onEdge}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    // A clockwise ring far away encloses nothing but makes the set's region a union.
    const KvGePolygon2dArray alone = Set({row.ring}), withUnion = Set({row.ring, Rect(900, 900, 901, 901).Inverted()});
    KvGePolygon2dArray grown, expected;
    ASSERT_EQ(ParallelPolygon2d(alone, 0.5, grown), 1);
    ASSERT_EQ(ParallelPolygon2d(withUnion, 0.5, expected), 1);
    ExpectNormalised(grown);
    EXPECT_EQ(grown.GetSize(), expected.GetSize());
    EXPECT_NEAR(grown.Area(), expected.Area(), 1e-9 * expected.Area());
  }
}

TEST(ParallelPolygon, RoundJoinsStayWithinTheirTolerance) {
  KvGePolygon2dArray out;
  ASSERT_EQ(ParallelPolygon2d(Rect(0, 0, 10, 10), 5.0, out, kKvGeJoinRound, 2.0, 0.001), 1);
  // Every vertex lies on the true offset (distance 5 from the square) and every chord's middle
  // no more than 0.001 inside it.
  const KvGePolygon2d& ring = out.GetData()[0];
  const KvGePolygon2d square = Rect(0, 0, 10, 10);
  auto distance = [&](const P& p) {
    double best = 1e300;
    for (int i = 0; i < 4; ++i) best = std::min(best, DistanceSqrToLineseg2d(square[i], square[(i + 1) % 4], p));
    return std::sqrt(best);
  };
  for (int i = 0; i < ring.GetSize(); ++i) {
    const P a = ring[i], b = ring[(i + 1) % ring.GetSize()];
    EXPECT_NEAR(distance(a), 5.0, 1e-5);
    EXPECT_GE(distance(P((a.x + b.x) / 2, (a.y + b.y) / 2)), 5.0 - 0.001 - 1e-5);
  }
}

TEST(ParallelPolygon, MiterLimitCutsSharpCorners) {
  // A needle of tip angle about 11.4 degrees: its miter reaches 10 distances out.
  const KvGePolygon2d needle = Ring({P(0, 0), P(10, 1), P(0, 2)});
  KvGePolygon2dArray limited, free;
  ASSERT_EQ(ParallelPolygon2d(needle, 1.0, limited, kKvGeJoinMiter, 2.0), 1);
  ASSERT_EQ(ParallelPolygon2d(needle, 1.0, free, kKvGeJoinMiter, 20.0), 1);
  EXPECT_NEAR(free.BoundingBox().Max().x, 10.0 + std::hypot(10.0, 1.0), 1e-3);
  EXPECT_LE(limited.BoundingBox().Max().x, 10.0 + 2.0 + 1e-6);
  ExpectNormalised(limited);
}

TEST(ParallelPolygon, SetsKeepHolesAndMayBeTheirOwnResult) {
  KvGePolygon2dArray wall = Set({Rect(0, 0, 10, 10), Rect(3, 3, 7, 7).Inverted()});
  wall.Tag() = 9;
  ASSERT_EQ(ParallelPolygon2d(wall, 1.0, wall), 1);
  EXPECT_EQ(wall.Tag(), 9);
  ASSERT_EQ(wall.GetSize(), 2);
  EXPECT_NEAR(wall.Area(), 144.0 - 4.0, 1e-9);  // the hole shrinks as the outline grows
  ExpectNormalised(wall);
  // Growing two rooms 1 apart by 0.5 joins them.
  KvGePolygon2dArray rooms = Set({Rect(0, 0, 4, 4), Rect(5, 0, 9, 4)}), joined;
  ASSERT_EQ(ParallelPolygon2d(rooms, 0.5, joined), 1);
  EXPECT_EQ(joined.GetSize(), 1);
}

TEST(ParallelPolygon, BandAroundAnOpenPolyline) {
  const KvGePolyline2d axis = Line({P(0, 0), P(10, 0)});
  struct Row {
    const char* name;
    KvGePolyline2d axis;
    KvGeEnd2d ends;
    double area, tol;
  } rows[] = {
      {"butt", axis, kKvGeEndButt, 20.0, 1e-9},
      {"square", axis, kKvGeEndSquare, 24.0, 1e-9},
      {"round", axis, kKvGeEndRound, 20.0 + kPi - 0.001 * (10 + kPi), 0.001 * (10 + kPi)},
      {"corner with miter join", Line({P(0, 0), P(10, 0), P(10, 10)}), kKvGeEndButt, 40.0, 1e-9},
      {"single point, round", Line({P(3, 3)}), kKvGeEndRound, kPi - 0.001 * kPi, 0.001 * kPi},
      {"single point, butt", Line({P(3, 3)}), kKvGeEndButt, 0.0, 0.0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KvGePolygon2dArray band;
    ASSERT_EQ(ParallelPolygon2d(row.axis, 1.0, band, row.ends), 1);
    EXPECT_NEAR(band.Area(), row.area, row.tol);
    ExpectNormalised(band);
  }
}

TEST(ParallelPolygon, RefusesBadArgumentsAndKeepsTheResult) {
  const KvGePolygon2d square = Rect(0, 0, 10, 10);
  const KvGePolyline2d axis = Line({P(0, 0), P(10, 0)});
  const KvGePolygon2dArray before = Set({Rect(0, 0, 1, 1)});
  struct Row {
    const char* name;
    int result;
  };
  KvGePolygon2dArray out = before;
  const Row rows[] = {
      {"distance beyond the range", ParallelPolygon2d(square, 2e9, out)},
      {"distance not a number", ParallelPolygon2d(square, std::nan(""), out)},
      {"eps 0", ParallelPolygon2d(square, 1.0, out, kKvGeJoinRound, 2.0, 0.0)},
      {"too many chords", ParallelPolygon2d(square, 1e9, out, kKvGeJoinRound, 2.0, 1e-6)},
      {"unknown join", ParallelPolygon2d(square, 1.0, out, static_cast<KvGeJoin2d>(7))},
      {"coordinate beyond the range", ParallelPolygon2d(Rect(0, 0, 2e9, 1), 1.0, out)},
      {"band of half-width 0", ParallelPolygon2d(axis, 0.0, out)},
      {"band of an empty polyline", ParallelPolygon2d(KvGePolyline2d(), 1.0, out)},
      {"unknown end", ParallelPolygon2d(axis, 1.0, out, static_cast<KvGeEnd2d>(-1))},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.result, 0);
  }
  ASSERT_EQ(out.GetSize(), 1);
  EXPECT_TRUE(out.GetData()[0] == before.GetData()[0]);
}

TEST(RemoveSchlaufen, RingsKeepTheLobesOfTheirOwnOrientation) {
  // A square whose corner at (10, 10) carries a small reversed loop, as a raw offset leaves it.
  const KvGePolygon2d tail = Ring({P(0, 0), P(10, 0), P(10, 11), P(11, 10), P(0, 10)});
  KvGePolygon2dArray out;
  ASSERT_EQ(RemoveSchlaufen2d(tail, out), 1);
  ASSERT_EQ(out.GetSize(), 1);
  EXPECT_NEAR(out.Area(), 100.0, 1e-9);
  ASSERT_EQ(RemoveSchlaufen2d(tail.Inverted(), out), 1);
  EXPECT_NEAR(out.Area(), -100.0, 1e-9);  // a clockwise ring stays clockwise

  KvGePolygon2d inPlace = tail;
  EXPECT_EQ(RemoveSchlaufen2d(inPlace), 1);
  EXPECT_EQ(inPlace.GetSize(), 4);
  // Two lobes of the same sense: no single ring, the in-place form refuses.
  KvGePolygon2d twoLobes =
      Ring({P(0, 0), P(4, 0), P(4, 4), P(6, 6), P(10, 6), P(10, 10), P(6, 10), P(6, 6), P(4, 4), P(0, 4)});
  const KvGePolygon2d kept = twoLobes;
  EXPECT_EQ(RemoveSchlaufen2d(twoLobes), 0);
  EXPECT_TRUE(twoLobes == kept);
  // A bow tie of equal lobes has no orientation.
  EXPECT_EQ(RemoveSchlaufen2d(Ring({P(0, 0), P(10, 10), P(10, 0), P(0, 10)}), out), 0);

  KvGePolygon2dArray set = Set({tail, Rect(2, 2, 4, 4).Inverted(), Ring({P(0, 0), P(1, 0), P(2, 0)})});
  ASSERT_EQ(RemoveSchlaufen2d(set), 1);
  EXPECT_EQ(set.GetSize(), 2);
  EXPECT_NEAR(set.Area(), 96.0, 1e-9);
}

TEST(RemoveSchlaufen, OpenPolylinesLoseLoopsBetweenCrossingAndReturn) {
  struct Row {
    const char* name;
    KvGePolyline2d in, out;
  } rows[] = {
      {"crossing inside segments", Line({P(0, 0), P(10, 0), P(10, 5), P(5, 5), P(5, -5)}),
       Line({P(0, 0), P(5, 0), P(5, -5)})},
      {"crossing at a vertex", Line({P(0, 0), P(5, 0), P(10, 0), P(10, 5), P(5, 5), P(5, -5)}),
       Line({P(0, 0), P(5, 0), P(5, -5)})},
      {"two loops", Line({P(0, 0), P(4, 0), P(4, 2), P(2, 2), P(2, -2), P(8, -2), P(8, 2), P(6, 2), P(6, -4)}),
       Line({P(0, 0), P(2, 0), P(2, -2), P(6, -2), P(6, -4)})},
      {"closed outline only touches its start", Line({P(0, 0), P(10, 0), P(10, 10), P(0, 0)}),
       Line({P(0, 0), P(10, 0), P(10, 10), P(0, 0)})},
      {"touching an earlier segment", Line({P(0, 0), P(10, 0), P(5, 5), P(5, 0)}),
       Line({P(0, 0), P(10, 0), P(5, 5), P(5, 0)})},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KvGePolyline2d line = row.in;
    ASSERT_EQ(RemoveSchlaufen2d(line), 1);
    EXPECT_TRUE(line == row.out);
  }
  KvGePolyline2d one = Line({P(0, 0)});
  EXPECT_EQ(RemoveSchlaufen2d(one), 0);
  // In an array each polyline loses its own loops; a single point stays as it is.
  KvGePolyline2dArray lines;
  lines.Add(rows[0].in);
  lines.Add(one);
  ASSERT_EQ(RemoveSchlaufen2d(lines), 1);
  ASSERT_EQ(lines.GetSize(), 2);
  EXPECT_TRUE(lines[0] == rows[0].out);
  EXPECT_EQ(lines[1].GetSize(), 1);
}

TEST(StreckenzugKorrigieren, RepeatsCollinearVerticesAndSpikesAtTheBand) {
  struct Row {
    const char* name;
    KvGePolyline2d in, out;
  } rows[] = {
      {"repeat within 0.001", Line({P(0, 0), P(5, 0), P(5.0009, 0), P(5, 5)}), Line({P(0, 0), P(5, 0), P(5, 5)})},
      {"repeat beyond 0.001", Line({P(0, 0), P(5, 0), P(5.0011, 3), P(5, 5)}),
       Line({P(0, 0), P(5, 0), P(5.0011, 3), P(5, 5)})},
      {"collinear within 0.001", Line({P(0, 0), P(5, 0.0009), P(10, 0)}), Line({P(0, 0), P(10, 0)})},
      {"collinear beyond 0.001", Line({P(0, 0), P(5, 0.0011), P(10, 0)}), Line({P(0, 0), P(5, 0.0011), P(10, 0)})},
      {"spike", Line({P(0, 0), P(10, 0), P(5, 0), P(5, 5)}), Line({P(0, 0), P(5, 0), P(5, 5)})},
      {"spike out and back", Line({P(0, 0), P(4, 0), P(4, 6), P(4, 0.0005), P(8, 0)}), Line({P(0, 0), P(8, 0)})},
      {"last point kept exactly", Line({P(0, 0), P(5, 5), P(5.0005, 5)}), Line({P(0, 0), P(5.0005, 5)})},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KvGePolyline2d line = row.in;
    ASSERT_EQ(StreckenzugKorrigieren2d(line), 1);
    EXPECT_TRUE(line == row.out) << line.GetSize();
    EXPECT_TRUE(line[-1] == row.in[-1]);
  }
  KvGePolyline2d dot = Line({P(0, 0), P(0.0005, 0), P(0, 0.0009)});
  EXPECT_EQ(StreckenzugKorrigieren2d(dot), 0);
  EXPECT_EQ(dot.GetSize(), 3);
  EXPECT_EQ(StreckenzugKorrigieren2d(dot, 0.0), 0);
}

TEST(StreckenzugKorrigieren, FineArcIsNotStraightenedStepByStep) {
  // Points 0.02 apart on a circle of radius 100: each middle vertex lies 5e-7 off its
  // neighbours' line, far inside the band, but the arc as a whole bends far beyond it.
  KvGePolyline2d arc;
  for (int i = 0; i <= 500; ++i) arc.Add(P(100 * std::cos(i * 2e-4), 100 * std::sin(i * 2e-4)));
  KvGePolyline2d cleaned = arc;
  ASSERT_EQ(StreckenzugKorrigieren2d(cleaned), 1);
  EXPECT_LT(cleaned.GetSize(), arc.GetSize());
  for (const P& p : arc) {
    double best = 1e300;
    for (int i = 0; i + 1 < cleaned.GetSize(); ++i)
      best = std::min(best, DistanceSqrToLineseg2d(cleaned[i], cleaned[i + 1], p));
    EXPECT_LE(best, 1e-6 + 1e-12);
  }
}

TEST(StreckenzugKorrigieren, ClosedRingsIncludeTheClosingEdgeAndCollectionsDropWhatCollapses) {
  const KvGePolygon2d ring = Ring({P(0, 0), P(5, 0.0005), P(10, 0), P(10, 10), P(0, 10), P(0, 5), P(0, 0.0004)});
  // Of the two corner points 0.0004 apart the one met first along the ring stays.
  const KvGePolygon2d cleaned = Ring({P(10, 0), P(10, 10), P(0, 10), P(0, 0.0004)});
  const KvGePolygon2d flat = Ring({P(0, 0), P(5, 0), P(10, 0.0005)});
  KvGePolygon2d one = ring, alone = flat;
  ASSERT_EQ(StreckenzugKorrigieren2d(one), 1);
  EXPECT_TRUE(one == cleaned);
  EXPECT_EQ(StreckenzugKorrigieren2d(alone), 0);  // a lone ring that collapses is refused and kept
  EXPECT_TRUE(alone == flat);
  KvGePolygon2dArray set = Set({ring, flat, Rect(20, 0, 21, 1)});
  set.Tag() = 4;
  ASSERT_EQ(StreckenzugKorrigieren2d(set), 1);
  ASSERT_EQ(set.GetSize(), 2);  // in a set it goes
  EXPECT_TRUE(set.GetData()[0] == cleaned);
  EXPECT_TRUE(set.GetData()[1] == Rect(20, 0, 21, 1));
  EXPECT_EQ(set.Tag(), 4);

  KvGePolyline2dArray lines;
  lines.Add(Line({P(0, 0), P(5, 0.0009), P(10, 0)}));
  lines.Add(Line({P(3, 3), P(3.0005, 3)}));
  ASSERT_EQ(StreckenzugKorrigieren2d(lines), 1);
  ASSERT_EQ(lines.GetSize(), 1);
  EXPECT_TRUE(lines[0] == Line({P(0, 0), P(10, 0)}));

  // A non-finite coordinate anywhere leaves everything as it was.
  lines.Add(Line({P(0, 0), P(std::nan(""), 1)}));
  const KvGePolyline2dArray kept = lines;
  EXPECT_EQ(StreckenzugKorrigieren2d(lines), 0);
  EXPECT_EQ(RemoveSchlaufen2d(lines), 0);
  EXPECT_EQ(lines.GetSize(), 2);
  EXPECT_TRUE(lines[0] == kept[0]);
  KvGePolygon2dArray bad = Set({Rect(0, 0, 1, 1), Ring({P(0, 0), P(1, 0), P(1, INFINITY)})});
  EXPECT_EQ(StreckenzugKorrigieren2d(bad), 0);
  EXPECT_EQ(bad.GetSize(), 2);
}
