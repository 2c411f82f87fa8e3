#include <gtest/gtest.h>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/points/KvGePoint2dArray.h"

namespace {
using P = KvGePoint2d;
using B = KvGeBox2d;
}  // namespace

TEST(Box, EmptinessAndContainmentBands) {
  const B empty;
  EXPECT_TRUE(empty.IsEmpty(0) && empty.IsEmpty(1) && empty.Expanded(1).IsEmpty(1));
  EXPECT_EQ(empty.IsInside(P(0, 0), 1), 0);
  EXPECT_TRUE(empty.Normalized() == B(P(-1e9), P(1e9)));  // callers must not normalise an empty box

  // A box from (0, 0) to (x, 5): x, IsEmpty(0), IsEmpty(1). Strict 0 counts a collapsed box (width
  // within 0.001 of 0) as empty, strict 1 only a width below -0.001.
  const double widths[][3] = {{0, 1, 0}, {0.0011, 0, 0}, {-0.0009, 1, 0}, {-0.0011, 1, 1}, {3, 0, 0}};
  for (const auto& r : widths) {
    SCOPED_TRACE(r[0]);
    EXPECT_EQ(B(P(0, 0), P(r[0], 5)).IsEmpty(0), r[1]);
    EXPECT_EQ(B(P(0, 0), P(r[0], 5)).IsEmpty(1), r[2]);
  }

  const B box(P(0, 0), P(10, 10));
  // x, y; inside the closed box, inside the open one.
  const double points[][4] = {{10.0005, 5, 1, 0}, {10.0011, 5, 0, 0}, {10, 5, 1, 0},
                              {9.9989, 5, 1, 1},  {5, -0.0009, 1, 0}, {5, 5, 1, 1}};
  for (const auto& r : points) {
    SCOPED_TRACE(testing::Message() << r[0] << "," << r[1]);
    EXPECT_EQ(box.IsInside(P(r[0], r[1]), 1), r[2]);
    EXPECT_EQ(box.IsInside(P(r[0], r[1]), 0), r[3]);
  }
  EXPECT_EQ(box.IsInsideTol(P(10.4, 5), 1, 0.5), 1);
  EXPECT_EQ(box.IsInsideTol(B(P(1, 1), P(10.6, 5)), 1, 0.5), 0);
  EXPECT_EQ(box.IsInside(B(P(1, 1), P(2, 2)), 0), 1);
}

TEST(Box, UnionIntersectionAndFlags) {
  const B a(P(0, 0), P(10, 10)), b(P(5, 5), P(20, 20)), far(P(30, 30), P(40, 40));
  EXPECT_TRUE((a | B()) == a);
  EXPECT_TRUE((a & b) == B(P(5, 5), P(10, 10)));
  EXPECT_TRUE((a | b) == B(P(0, 0), P(20, 20)));
  EXPECT_EQ(a.IsDisjoint(far, 0), 1);
  EXPECT_EQ(a.IsDisjoint(b, 0), 0);
  EXPECT_EQ(a.IsDisjoint(B(P(10, 0), P(20, 10)), 1), 0);  // touching: disjoint only when not strict
  EXPECT_EQ(a.IsDisjoint(B(P(10, 0), P(20, 10)), 0), 1);
  // An infinite maximum wins the union; an infinite corner is not expanded.
  const B open(P(0, 0), P(1, 0, 1));
  EXPECT_EQ((a | open).Max().m_bInfinite, 1);
  const B grown = open.Expanded(2);
  EXPECT_TRUE(grown.Min() == P(-2, -2));
  EXPECT_TRUE(grown.Max() == P(1, 0, 1));
  EXPECT_TRUE(B().Include(P(3, 4)).Include(P(-1, 7)) == B(P(-1, 4), P(3, 7)));
  EXPECT_TRUE(a.Shifted(P(1, 2)) == B(P(1, 2), P(11, 12)));
  EXPECT_TRUE(B(P(5, 0), P(0, 5)).Normalized() == B(P(0, 0), P(5, 5)));
  EXPECT_EQ(a.IsEqualTo(B(P(0.0009, 0), P(10, 10.0009))), 1);
  EXPECT_TRUE(a != B(P(0.0011, 0), P(10, 10)));
}

TEST(Box, CornersTransformsAndPlanForms) {
  KvGePoint2dArray corners;
  B(P(0, 0), P(2, 1)).Points(corners);
  ASSERT_EQ(corners.GetSize(), 4);
  EXPECT_TRUE(corners[1] == P(2, 0));
  EXPECT_TRUE(corners[3] == P(0, 1));
  EXPECT_EQ(corners.Sense(), 1);
  const KvGeModMat2d turn = KvGeModMat2d().SetRotate(KvGeAngle_Deg45());
  const B box(P(0, 0), P(1, 1));
  const B bound = box.BoundingBox(turn);
  const double h = std::sqrt(0.5);
  EXPECT_TRUE(bound.IsEqualTo(B(P(-h, 0), P(h, 2 * h)), 1e-12));
  EXPECT_TRUE(box.Transformed(turn).Max().IsEqualTo(P(0, 2 * h), 1e-12));  // not axis-aligned any more

  const KvGeBox3d space(KvGePoint3d(0, 0, 0), KvGePoint3d(1, 2, 3, 1));
  EXPECT_TRUE(space.Box2d() == B(P(0, 0), P(1, 2, 1)));
  const KvGeBox3d lifted(B(P(0, 0), P(1, 1)), -1, 4);
  EXPECT_EQ(B(P(0, 0), P(1, 1)).Box3d().IsEmpty(0), 1);
  EXPECT_EQ(B(P(0, 0), P(1, 1)).Box3d().IsEmpty2d(1), 0);
  EXPECT_EQ(lifted.IsInside(KvGePoint3d(0.5, 0.5, 5), 1), 0);
  EXPECT_EQ(lifted.IsInside2d(KvGePoint3d(0.5, 0.5, 5), 1), 1);
  EXPECT_EQ(lifted.IsDisjoint2d(KvGeBox3d(KvGePoint3d(0, 0, 9), KvGePoint3d(1, 1, 10)), 0), 0);
  const KvGeBox3d turned = lifted.BoundingBox(KvGeModMat3d().SetRotate(KvGeAngle_Deg90(), KvGePoint3d(1, 0, 0)));
  EXPECT_TRUE(turned.IsEqualTo(KvGeBox3d(KvGePoint3d(0, -4, 0), KvGePoint3d(1, 1, 1)), 1e-12));
  KvGePoint3dArray eight;
  lifted.Points(eight);
  ASSERT_EQ(eight.GetSize(), 8);
  EXPECT_TRUE(eight[6] == KvGePoint3d(1, 1, 4));
  EXPECT_TRUE(eight.BoundingBox() == lifted);
}
