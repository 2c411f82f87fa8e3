#include <gtest/gtest.h>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/polygons/KvGePolyVert2d.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

namespace {
using P = KvGePoint2d;
using Q = KvGePoint3d;
}  // namespace

TEST(Polygons, EachClassKeepsItsReversalRule) {
  const KvGePolygon2d ring{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, flat{{0, 0}, {1, 0}, {2, 0}};
  EXPECT_TRUE(ring.Inverted() == KvGePoint2dArray({{0, 0}, {0, 1}, {1, 1}, {1, 0}}));  // first vertex kept
  EXPECT_TRUE(KvGePolyline2d({{0, 0}, {1, 0}, {1, 1}}).Inverted() == KvGePoint2dArray({{1, 1}, {1, 0}, {0, 0}}));
  EXPECT_TRUE(ring.Orientated(-1) == ring.Inverted());
  EXPECT_TRUE(ring.Orientated(1) == ring);
  EXPECT_TRUE(flat.Orientated(1) == flat.Inverted());  // area 0: reversed for both senses
  EXPECT_TRUE(flat.Orientated(-1) == flat.Inverted());
  EXPECT_TRUE(KvGePolygon2d({{1, 1}, {0, 1}, {0, 0}, {1, 0}}).Normalized() == ring);
  EXPECT_TRUE(ring.Transformed(KvGeModMat2d().SetTran(1, 1))[0] == P(1, 1));

  KvGePolygon3d space;
  space.Add(Q(1, 2, 3, 1));
  space.Add(Q(4, 5, 6));
  EXPECT_TRUE(KvGePolygon2d(space)[0] == P(1, 2));  // flags cleared
  KvGePolyline2d line{static_cast<const KvGePoint3dArray&>(space)};
  EXPECT_TRUE(line[0] == P(1, 2, 1));  // flags kept
  EXPECT_EQ(line.NumberOfLines(), 1u);
  EXPECT_NEAR(line.Length(), std::sqrt(18.0), 1e-12);
  const KvGePolyline2d single{P(0, 0)};
  EXPECT_EQ(single.Length(), 0.0);
  EXPECT_EQ(single.NumberOfLines(), 0u);
  EXPECT_EQ(KvGePolyline2d({{0, 0}, {1, 0}, {1, 1}}).Length(), 2.0);  // no closing line
  KvGePolyline2dArray lines(single);
  lines.Add(line);
  lines.Set(line);
  ASSERT_EQ(lines.GetSize(), 1);
  EXPECT_EQ(lines[0].GetSize(), 2);
}

TEST(Polygons, PlanPolygonHeightAndBoxes) {
  const KvGePoint3dArray pts{{0, 0, 10}, {2, 0, 10}, {2, 2, 10}};
  const KvGePolygon23d down(pts, -3), up(pts, 3);
  EXPECT_EQ(down.BoundingBox().Min().z, 7.0);
  EXPECT_EQ(down.BoundingBox().Max().z, 10.0);
  EXPECT_EQ(up.BoundingBox().Max().z, 13.0);
  EXPECT_EQ(up.Area(), 2.0);
  EXPECT_EQ(up.Inverted().Sense(), -1);
  EXPECT_TRUE(up.Inverted()[0] == Q(0, 0, 10));
  KvGePolygon23d copy;
  copy = up;
  EXPECT_EQ(copy.Transformed(KvGeModMat3d().SetTran(0, 0, 1)).Height(), 3.0);
  // Lying on its side, the height runs along -y.
  const KvGeModMat3d side = KvGeModMat3d().SetRotate(KvGeAngle_Deg90(), Q(1, 0, 0));
  EXPECT_TRUE(up.BoundingBox(side).IsEqualTo(KvGeBox3d(Q(0, -13, 0), Q(2, -10, 2)), 1e-9));
}

TEST(Polygons, VerticesAndPolygonSets) {
  KvGePolyVert2d arc(P(1, 2), 1, 0.5), other(1, 2, 2, 0.5);
  EXPECT_EQ(arc.Inverted().Bulge(), -0.5);
  EXPECT_EQ(other.Inverted().Bulge(), 0.5);
  EXPECT_TRUE(arc != other);
  KvGePolyVert2d near = arc;
  near.Point().x += 0.0009;
  EXPECT_TRUE(arc == near);
  near.Bulge() += 1e-12;  // the bulge compares exactly
  EXPECT_TRUE(arc != near);
  EXPECT_TRUE(arc.Transformed(KvGeModMat2d().SetTran(1, 0)).Point() == P(2, 2));

  KvGePolygon2dArray set;
  EXPECT_EQ(set.Area(), 0.0);
  set.Add(KvGePolygon2d{{0, 0}, {4, 0}, {4, 4}, {0, 4}});
  set.Add(KvGePolygon2d{{1, 1}, {1, 2}, {2, 2}, {2, 1}});  // a clockwise hole
  EXPECT_EQ(set.Area(), 15.0);
  set.Tag() = 42;
  KvGePolygon2dArray copy(set), assigned;
  assigned = set;
  EXPECT_EQ(copy.Tag(), 42);
  EXPECT_EQ(assigned.Tag(), 42);
  copy[0][0].x = -1;
  EXPECT_EQ(set[0][0].x, 0.0);  // deep
}
