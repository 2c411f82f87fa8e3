#include <gtest/gtest.h>

#include "geometry/intersection/KvGeIntrLine2d.h"

TEST(LineCrossing, SegmentsAndTheEndBand) {
  // p1-p2 = (0,0)-(10,0); q runs down from (x, 5) to (x, y2): it reaches y = 0 at its end.
  struct Row {
    double x, y2;
    int inclusive, expected;
  } rows[] = {{5, 0, 1, 1},        {5, 0, 0, 0},  // meeting at q's end point
              {5, -0.0009, 0, 0},  {5, -0.0011, 0, 1},  {5, 0.0009, 1, 1},  {5, 0.0011, 1, 0},
              {10.0009, -5, 1, 1}, {10.0011, -5, 1, 0}, {9.9989, -5, 0, 1}, {9.9991, -5, 0, 0}};
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.x << " " << r.y2 << " " << r.inclusive);
    KvGePoint2d s(7, 7, 1);
    EXPECT_EQ(IntrLineLine2d(KvGePoint2d(0, 0), KvGePoint2d(10, 0), KvGePoint2d(r.x, 5), KvGePoint2d(r.x, r.y2), s, 1,
                             r.inclusive),
              r.expected);
    EXPECT_NEAR(s.x, r.x, 1e-12);  // the crossing of the infinite lines, whatever the result
    EXPECT_NEAR(s.y, 0, 1e-12);
    EXPECT_EQ(s.m_bInfinite, 0);
  }
  KvGePoint3d s3(1, 2, 3);
  EXPECT_EQ(IntrLineLine2d(KvGePoint3d(0, 0, 4), KvGePoint3d(10, 0, 4), KvGePoint3d(5, 5, 9), KvGePoint3d(5, 0.0009, 9),
                           s3, 1),
            1);  // always inclusive
  EXPECT_NEAR(s3.x, 5, 1e-12);
  EXPECT_EQ(s3.z, 0.0);
}

TEST(LineCrossing, SenseDegenerateAndParallel) {
  KvGePoint2d s;
  const KvGePoint2d o(0, 0), ex(10, 0);
  EXPECT_EQ(IntrLineLine2d(o, ex, KvGePoint2d(20, -1), KvGePoint2d(20, 1), s, 0, 1), 1);  // right to left
  EXPECT_EQ(IntrLineLine2d(o, ex, KvGePoint2d(20, 1), KvGePoint2d(20, -1), s, 0, 1), -1);
  EXPECT_NEAR(s.x, 20, 1e-12);

  struct Row {
    KvGePoint2d q1, q2;
  } none[] = {
      {{2, 0}, {15, 0}},           // collinear and overlapping
      {{0, 1}, {10, 1}},           // parallel
      {{5, 5}, {5, 5.0009}},       // no longer than 0.001
      {{-1e6, 1}, {1e6, 1 - 1.8}}  // sine 0.9e-6: parallel, though the long lines cross
  };
  for (const Row& r : none) {
    SCOPED_TRACE(r.q2.y);
    KvGePoint2d t(7, 7);
    EXPECT_EQ(IntrLineLine2d(KvGePoint2d(-1e6, 0), KvGePoint2d(1e6, 0), r.q1, r.q2, t, 0, 1), 0);
    EXPECT_EQ(t.x, 7.0);  // untouched
    KvGeIntrPoint2d rec(KvGePoint2d(3, 3), 1, 1, 1, 1, 1, 1, 1, 1);
    EXPECT_EQ(Intersection2d(KvGeLine2d(KvGePoint2d(-1e6, 0), KvGePoint2d(1e6, 0)), KvGeLine2d(r.q1, r.q2), rec), 0);
    EXPECT_EQ(rec.CrossSense(), 0);  // cleared
    EXPECT_EQ(rec.x, 0.0);
  }
  // sine 1.1e-6 crosses.
  EXPECT_EQ(IntrLineLine2d(KvGePoint2d(-1e6, 0), KvGePoint2d(1e6, 0), KvGePoint2d(-1e6, 1), KvGePoint2d(1e6, 1 - 2.2),
                           s, 1, 1),
            1);
  EXPECT_NEAR(s.x, 1e6 / 1.1 - 1e6, 1e-3);
}

TEST(LineCrossing, RecordsEndCodesAndParameters) {
  const KvGeLine2d a(KvGePoint2d(0, 0), KvGePoint2d(10, 0));
  struct Row {
    double x;  // b runs upwards through (x, 0) from (x, -0.0005) or from (x, -5)
    double yb;
    int code0, code1, ok;
  } rows[] = {{5, -5, 0, 0, 1},      {0.0009, -5, -1, 0, 1}, {-0.0011, -5, 0, 0, 0},
              {9.9995, -5, 1, 0, 1}, {5, -0.0005, 0, -1, 1}, {10, 0, 1, -1, 1}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.x);
    KvGeIntrPoint2d rec;
    const KvGeLine2d b(KvGePoint2d(r.x, r.yb), KvGePoint2d(r.x, 5));
    ASSERT_EQ(Intersection2d(a, b, rec), r.ok);
    if (!r.ok) continue;
    EXPECT_EQ(rec.EndCode0(), r.code0);
    EXPECT_EQ(rec.EndCode1(), r.code1);
    EXPECT_EQ(rec.CrossSense(), 1);
    EXPECT_NEAR(rec.Param0(), r.x, 1e-12);
    EXPECT_NEAR(rec.Param1(), -r.yb, 1e-12);
  }
  // Unbounded: end code 0 wherever the crossing lies; the array form empties or appends.
  KvGeIntrPoint2dArray arr;
  arr.Add(KvGeIntrPoint2d());
  const KvGeLine2d far(KvGePoint2d(50, -1), KvGePoint2d(50, 1), 1);
  EXPECT_EQ(Intersection2d(KvGeLine2d(a.P1(), a.P2(), 0), far, arr, 1), 1);
  ASSERT_EQ(arr.GetSize(), 2);
  EXPECT_EQ(arr[1].EndCode0(), 0);
  EXPECT_NEAR(arr[1].Param0(), 50, 1e-12);
  EXPECT_EQ(Intersection2d(a, far, arr, 0), 0);
  EXPECT_EQ(arr.GetSize(), 0);

  KvGeIntrPoint3d r3;
  EXPECT_EQ(Intersection2d(KvGeLine23d(KvGePoint3d(0, 0, 1), KvGePoint3d(10, 0, 2)),
                           KvGeLine23d(KvGePoint3d(4, 4, 3), KvGePoint3d(4, -4, 5)), r3),
            1);
  EXPECT_EQ(r3.CrossSense(), -1);
  EXPECT_NEAR(r3.Param1(), 4, 1e-12);
  KvBtDynArray<KvGeIntrPoint3d> arr3;
  EXPECT_EQ(Intersection2d(KvGeLine23d(KvGePoint3d(0, 0, 1), KvGePoint3d(10, 0, 2)),
                           KvGeLine23d(KvGePoint3d(40, 4, 3), KvGePoint3d(40, -4, 5)), arr3, 0),
            0);
  EXPECT_EQ(arr3.GetSize(), 0);
}

TEST(LineCrossing, ClosedSequence) {
  // Through vertex (10, 5) of the diamond: both edges meeting there report it.
  const KvGePoint2dArray diamond{{5, 0}, {10, 5}, {5, 10}, {0, 5}};
  const KvGeLine2d l(KvGePoint2d(-5, 5), KvGePoint2d(20, 5), 0);
  KvGeIntrPoint2dArray out;
  ASSERT_EQ(Intersection2d(l, diamond, out, 0), 4);
  EXPECT_EQ(out[0].Segment1(), 0u);
  EXPECT_EQ(out[0].EndCode1(), 1);
  EXPECT_EQ(out[1].Segment1(), 1u);
  EXPECT_EQ(out[1].EndCode1(), -1);
  EXPECT_EQ(out[3].Segment1(), 3u);  // the closing edge
  EXPECT_NEAR(out[3].Param0(), 5, 1e-12);

  // A repeated closing vertex adds a zero-length edge that crosses nothing; append keeps.
  const KvGePoint2dArray closed{{5, 0}, {10, 5}, {5, 10}, {0, 5}, {5, 0}};
  const KvGeLine2d low(KvGePoint2d(-5, 1), KvGePoint2d(20, 1), 0);
  EXPECT_EQ(Intersection2d(closed, low, out, 1), 2);
  EXPECT_EQ(out.GetSize(), 6);
  EXPECT_EQ(Intersection2d(KvGeLine2d(KvGePoint2d(5, 0), KvGePoint2d(5, 0.0009), 0), closed, out, 0), 0);

  // Each edge reports what its own crossing with the line reports, also where the rounding of
  // the crossing formula on coordinates near 1e6, next to a line 0.03 long, puts the crossing
  // into the band of an edge whose ends both lie 0.0016 or more off the line.
  const double x = 1000004.81, y = 1e6;
  const KvGePoint2dArray spike{{x + 0.01, y + 5}, {x + 0.01, y + 0.0016}, {x - 3, y + 2}};
  for (const int segment : {0, 1}) {
    SCOPED_TRACE(segment);
    const KvGeLine2d line(KvGePoint2d(x, y), KvGePoint2d(x + 0.03, y), segment);
    KvGeIntrPoint2dArray each;
    for (int i = 0; i < 3; ++i) {
      KvGeIntrPoint2d r;
      if (Intersection2d(line, KvGeLine2d(spike[i], spike[(i + 1) % 3]), r)) each.Add(r);
    }
    ASSERT_GT(each.GetSize(), 0);
    ASSERT_EQ(Intersection2d(line, spike, out, 0), each.GetSize());
    for (int i = 0; i < each.GetSize(); ++i) {
      EXPECT_EQ(out[i].Param0(), each[i].Param0());
      EXPECT_EQ(out[i].EndCode1(), each[i].EndCode1());
    }
  }
}

TEST(LineCrossing, ParallelAndPiercing) {
  KvGePoint2d a1(9, 9), b1(9, 9);
  EXPECT_EQ(ParalellLine2d(KvGePoint2d(0, 0), KvGePoint2d(10, 0), 2, a1, b1), 1);
  EXPECT_NEAR(a1.y, 2, 1e-12);  // positive: to the left
  EXPECT_NEAR(b1.x, 10, 1e-12);
  EXPECT_EQ(ParalellLine2d(KvGePoint2d(0, 0), KvGePoint2d(0.0009, 0), 2, a1, b1), 0);
  EXPECT_NEAR(a1.y, 2, 1e-12);  // untouched
  KvGePoint3d a3, b3;
  EXPECT_EQ(ParalellLine2d(KvGePoint3d(0, 0, 1), KvGePoint3d(0, 10, 2), -3, a3, b3), 1);
  EXPECT_NEAR(a3.x, 3, 1e-12);
  EXPECT_EQ(b3.z, 2.0);

  const KvGePoint3d p =
      Durchstosspunkt(KvGePoint3d(0, 0, 2), KvGePoint3d(0, 0, 1), KvGePoint3d(1, 2, 5), KvGePoint3d(1, 0, -1));
  EXPECT_NEAR(p.x, 4, 1e-12);
  EXPECT_NEAR(p.z, 2, 1e-12);
  EXPECT_EQ(p.m_bInfinite, 0);
  const KvGePoint3d q =
      Durchstosspunkt(KvGePoint3d(0, 0, 2), KvGePoint3d(0, 0, 1), KvGePoint3d(1, 2, 5), KvGePoint3d(1, 1, 1e-16));
  EXPECT_EQ(q.m_bInfinite, 1);  // parallel: the direction itself
  EXPECT_EQ(q.x, 1.0);
}

TEST(LineCrossing, Circle) {
  // Circle (0,0) radius 5; lines y = h from (-10, h). The touching band applies to the squared
  // half chord h2 = 25 - h^2, not to a length.
  const KvGeCircle2d k(KvGePoint2d(0, 0), 5, 1);
  struct Row {
    double h, xEnd;
    int segment, count, lastCode;
  } rows[] = {{3, 10, 1, 2, 0},       {3, 4.0005, 1, 2, 1},   {3, 3, 1, 1, 0},
              {3, 3, 0, 2, 0},        {5, 10, 1, 1, 0},       {5.00009, 10, 1, 1, 0},
              {5.00011, 10, 1, 0, 0}, {4.99991, 10, 1, 1, 0}, {4.99989, 10, 1, 2, 0}};
  KvGeIntrPoint2dArray out;
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.h << " " << r.xEnd);
    ASSERT_EQ(Intersection2d(KvGeLine2d(KvGePoint2d(-10, r.h), KvGePoint2d(r.xEnd, r.h), r.segment), k, out, 0),
              r.count);
    if (r.count == 0) continue;
    const KvGeIntrPoint2d& last = out[r.count - 1];
    EXPECT_EQ(last.EndCode0(), r.lastCode);
    EXPECT_NEAR(last.Param0(), last.x + 10, 1e-9);
    if (r.count == 2) {
      EXPECT_LT(out[0].Param0(), out[1].Param0());  // along the line
    }
  }
  EXPECT_EQ(Intersection2d(KvGeLine2d(KvGePoint2d(-10, 3), KvGePoint2d(10, 3)), k, out, 1), 2);
  EXPECT_EQ(out.GetSize(), 4);
  EXPECT_EQ(Intersection2d(KvGeLine2d(KvGePoint2d(1, 1), KvGePoint2d(1, 1.0009)), k, out, 0), 0);
  EXPECT_EQ(out.GetSize(), 0);
}
