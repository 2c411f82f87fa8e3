#include <gtest/gtest.h>

#include <utility>

#include "geometry/intersection/KvGeDistance2d.h"

TEST(Distance, SegmentBandAtTheEnds) {
  // Segment (0,0)-(10,0): a foot up to 0.001 beyond an end is still measured perpendicularly.
  const KvGePoint2d a(0, 0), b(10, 0);
  struct Row {
    double px, py, expected;
  } rows[] = {{5, 1, 1},
              {-0.0009, 1, 1},
              {-0.0011, 1, 1 + 0.0011 * 0.0011},
              {10.0009, 1, 1},
              {10.0011, 1, 1 + 0.0011 * 0.0011},
              {13, 4, 25}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.px);
    EXPECT_NEAR(DistanceSqrToLineseg2d(a, b, KvGePoint2d(r.px, r.py)), r.expected, 1e-12);
    EXPECT_NEAR(DistanceSqrToLineseg2d(KvGePoint3d(0, 0, 7), KvGePoint3d(10, 0, -3), KvGePoint3d(r.px, r.py, 99)),
                r.expected, 1e-12);
  }
  // A segment no longer than 0.001 is its start point.
  EXPECT_NEAR(DistanceSqrToLineseg2d(a, KvGePoint2d(0.0009, 0), KvGePoint2d(-1, 0)), 1.0, 1e-12);
  EXPECT_NEAR(DistanceSqrToLineseg2d(a, KvGePoint2d(0.0011, 0), KvGePoint2d(1, 1)), quadrat(1 - 0.0011) + 1, 1e-9);
}

TEST(Distance, FootAndInfiniteLine) {
  KvGePoint2d foot;
  const KvGePoint2d a(0, 0), b(10, 0, 1);
  EXPECT_NEAR(DistanceSqrPrjPointToLineseg2d(a, KvGePoint2d(10, 0), KvGePoint2d(3, 2), foot), 4, 1e-12);
  EXPECT_NEAR(foot.x, 3, 1e-12);
  EXPECT_NEAR(DistanceSqrPrjPointToLineseg2d(a, b, KvGePoint2d(12, 0), foot), 4, 1e-12);
  EXPECT_EQ(foot.m_bInfinite, 1);  // the end point itself, with its flag
  EXPECT_NEAR(DistanceSqrPrjPointToLineseg2d(a, b, KvGePoint2d(-3, 4), foot), 25, 1e-12);
  EXPECT_EQ(foot.x, 0.0);

  const KvGeLine2d seg(a, KvGePoint2d(10, 0), 1), line(a, KvGePoint2d(10, 0), 0);
  EXPECT_NEAR(DistanceSqr2d(seg, KvGePoint2d(20, 1)), 101, 1e-9);
  EXPECT_NEAR(DistanceSqr2d(KvGePoint2d(20, 1), line), 1, 1e-9);
  EXPECT_NEAR(DistanceSqrToLine2d(a, KvGePoint2d(0.0005, 0), KvGePoint2d(3, 4)), 25, 1e-9);  // degenerate: from a
  const KvGeLine23d plan(KvGePoint3d(0, 0, 5), KvGePoint3d(10, 0, -5), 0);
  EXPECT_NEAR(DistanceSqr2d(plan, KvGePoint3d(20, 2, 100)), 4, 1e-9);
  EXPECT_NEAR(DistanceSqr2d(KvGePoint3d(20, 2, 100), KvGeLine23d(plan.P1(), plan.P2(), 1)), 104, 1e-9);
}

TEST(Distance, ClosedSequencesAndNearestEdges) {
  const KvGePoint2dArray sq{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  EXPECT_NEAR(DistanceSqr2d(sq, KvGePoint2d(-2, 5)), 4, 1e-12);  // the closing edge counts
  EXPECT_NEAR(DistanceSqr2d(KvGePoint2d(5, 4), sq), 16, 1e-12);
  EXPECT_EQ(DistanceSqr2d(KvGePoint2dArray(), KvGePoint2d(1, 1)), 1e18);

  EXPECT_EQ(NearestLineIndex2d(sq, KvGePoint2d(-2, 5)), 3);
  EXPECT_EQ(NearestLineIndex2d(sq, KvGePoint2d(-1, -1)), 0);  // tie of edges 3 and 0: lower index
  EXPECT_EQ(NearestLineIndex2d(KvGePoint2dArray(), KvGePoint2d(1, 1)), -1);

  // A set answers the polygon and the edge; -1, -1 for none.
  auto nearest = [](const KvGePolygon2dArray& set, const KvGePoint2d& p) {
    const KvBtIntegerArray r = NearestLineIndex2d(set, p);
    return r.GetSize() == 2 ? std::make_pair(r.GetAt(0), r.GetAt(1)) : std::make_pair(-9, -9);
  };
  EXPECT_EQ(nearest(KvGePolygon2dArray(), KvGePoint2d(1, 1)), std::make_pair(-1, -1));
  const KvGePolygon2dArray set{KvGePolygon2d(sq), {{3, 3}, {3, 7}, {7, 7}, {7, 3}}};
  EXPECT_EQ(nearest(set, KvGePoint2d(6, 5)), std::make_pair(1, 2));
  EXPECT_EQ(nearest(set, KvGePoint2d(5, 1.5)).first, 0);  // 1.5 from both: lower polygon

  // From (103, 4): edge 0 (length 100) lies 5 away, edge 1 (length 10) 3 away, edge 2 farther.
  const KvGePoint2dArray a{{0, 0}, {100, 0}, {100, 10}, {0, 10}};
  const KvGePoint2d p(103, 4);
  EXPECT_EQ(NearestLongestPolyLineIndex2d(a, p, 5.5), 0);  // both within: the longer, though farther
  EXPECT_EQ(NearestLongestPolyLineIndex2d(a, p, 5.0), 1);  // exactly 5 away is not within
  EXPECT_EQ(NearestLongestPolyLineIndex2d(a, p, 2.0), 1);  // none within: the nearest
  EXPECT_EQ(NearestLongestPolyLineIndex2d(KvGePoint2dArray(), KvGePoint2d(1, 1), 5), -1);
}

TEST(Distance, PlanCircleAndArc) {
  const KvGeCircle23d c(KvGePoint3d(0, 0, 5), 2);
  EXPECT_NEAR(DistanceSqr2d(c, KvGePoint3d(3, 0, 99)), 1, 1e-12);
  EXPECT_NEAR(DistanceSqr2d(KvGePoint3d(0, 0, 0), c), 4, 1e-12);

  const double pi = 3.141592653589793;
  struct Row {
    const char* name;
    double beg, end, px, py, expected;
  } rows[] = {{"within", 0, pi / 2, 2, 2, quadrat(std::sqrt(8.0) - 1)},
              {"beyond: nearer end", 0, pi / 2, -1, 0, 2},
              {"clockwise arc, same set", pi / 2, 0, -1, 0, 2},
              {"across angle 0", -pi / 4, pi / 4, 3, -0.5, quadrat(std::sqrt(9.25) - 1)},
              {"past 2 pi", 1.5 * pi, 2.5 * pi, 3, 0, 4},
              {"past 2 pi, outside", 1.5 * pi, 2.5 * pi, -3, 0.1, quadrat(3 - 0.0) + quadrat(0.1 - 1)}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    const KvGeArc23d a(KvGePoint3d(0, 0, -7), 1, r.beg, r.end);
    EXPECT_NEAR(DistanceSqr2d(a, KvGePoint3d(r.px, r.py, 3)), r.expected, 1e-9);
    EXPECT_NEAR(DistanceSqr2d(KvGePoint3d(r.px, r.py, 3), a), r.expected, 1e-9);
  }
}
