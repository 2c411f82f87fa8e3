#include <gtest/gtest.h>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/polygons/KvGePolyVert2d.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

namespace {
using P = KvGePoint2d;
using Q = KvGePoint3d;

template <class A>
A Make(std::initializer_list<P> points) {
  A a;
  for (const P& p : points) a.Add(p);
  return a;
}
}  // namespace

TEST(Polygons, EachClassKeepsItsReversalRule) {
  const P a(0, 0), b(1, 0), c(1, 1), d(0, 1);
  const KvGePolygon2d ring = Make<KvGePolygon2d>({a, b, c, d});
  EXPECT_TRUE(ring.Inverted() == Make<KvGePoint2dArray>({a, d, c, b}));
  EXPECT_TRUE(Make<KvGePolyline2d>({a, b, c, d}).Inverted() == Make<KvGePoint2dArray>({d, c, b, a}));
  EXPECT_TRUE(Make<KvGePoint2dArray>({a, b, c, d}).Inverted() == Make<KvGePoint2dArray>({d, c, b, a}));
  EXPECT_TRUE(ring.Orientated(-1) == ring.Inverted());
  EXPECT_TRUE(ring.Orientated(1) == ring);
  const KvGePolygon2d flat = Make<KvGePolygon2d>({a, b, P(2, 0)});
  EXPECT_TRUE(flat.Orientated(1) == flat.Inverted());  // area 0: reversed for both senses
  EXPECT_TRUE(flat.Orientated(-1) == flat.Inverted());
  EXPECT_TRUE(Make<KvGePolygon2d>({c, d, a, b}).Normalized() == ring);
  EXPECT_TRUE(ring.Transformed(KvGeModMat2d().SetTran(1, 1))[0] == P(1, 1));

  KvGePolygon3d space;
  space.Add(Q(1, 2, 3, 1));
  space.Add(Q(4, 5, 6));
  const KvGePolygon2d plan(space);
  EXPECT_TRUE(plan[0] == P(1, 2));  // flags cleared
  KvGePolyline2d line{static_cast<const KvGePoint3dArray&>(space)};
  EXPECT_TRUE(line[0] == P(1, 2, 1));  // flags kept
  EXPECT_EQ(line.NumberOfLines(), 1u);
  EXPECT_NEAR(line.Length(), std::sqrt(9.0 + 9.0), 1e-12);
  const KvGePolyline2d single = Make<KvGePolyline2d>({a});
  EXPECT_EQ(single.Length(), 0.0);
  EXPECT_EQ(single.NumberOfLines(), 0u);
  EXPECT_EQ(Make<KvGePolyline2d>({a, b, c}).Length(), 2.0);  // no closing line
  KvGePolyline2dArray lines(single);
  lines.Add(line);
  lines.Set(line);
  ASSERT_EQ(lines.GetSize(), 1);
  EXPECT_EQ(lines[0].GetSize(), 2);
}

TEST(Polygons, PlanPolygonHeightAndBoxes) {
  KvGePoint3dArray pts;
  for (const Q& q : {Q(0, 0, 10), Q(2, 0, 10), Q(2, 2, 10)}) pts.Add(q);
  const KvGePolygon23d down(pts, -3), up(pts, 3);
  EXPECT_EQ(down.BoundingBox().Min().z, 7.0);
  EXPECT_EQ(down.BoundingBox().Max().z, 10.0);
  EXPECT_EQ(up.BoundingBox().Max().z, 13.0);
  EXPECT_EQ(up.Area(), 2.0);
  EXPECT_EQ(up.Inverted().Sense(), -1);
  EXPECT_TRUE(up.Inverted()[0] == Q(0, 0, 10));
  KvGePolygon23d copy;
  copy = up;
  EXPECT_EQ(copy.Height(), 3.0);
  EXPECT_EQ(copy.Transformed(KvGeModMat3d().SetTran(0, 0, 1)).Height(), 3.0);
  // Lying on its side, the height runs along -y.
  const KvGeModMat3d side = KvGeModMat3d().SetRotate(KvGeAngle_Deg90(), Q(1, 0, 0));
  const KvGeBox3d box = up.BoundingBox(side);
  EXPECT_TRUE(box.IsEqualTo(KvGeBox3d(Q(0, -13, 0), Q(2, -10, 2)), 1e-9));
}

TEST(Polygons, VerticesAndPolygonSets) {
  KvGePolyVert2d arc(P(1, 2), 1, 0.5), other(1, 2, 2, 0.5);
  EXPECT_EQ(arc.Inverted().Bulge(), -0.5);
  EXPECT_EQ(other.Inverted().Bulge(), 0.5);
  EXPECT_TRUE(arc != other);
  KvGePolyVert2d near = arc;
  near.Point().x += 0.0009;
  EXPECT_TRUE(arc == near);
  near.Bulge() += 1e-12;
  EXPECT_TRUE(arc != near);
  EXPECT_TRUE(arc.Transformed(KvGeModMat2d().SetTran(1, 0)).Point() == P(2, 2));

  KvGePolygon2dArray set;
  EXPECT_EQ(set.Area(), 0.0);
  set.Add(Make<KvGePolygon2d>({P(0, 0), P(4, 0), P(4, 4), P(0, 4)}));
  set.Add(Make<KvGePolygon2d>({P(1, 1), P(1, 2), P(2, 2), P(2, 1)}));  // a clockwise hole
  EXPECT_EQ(set.Area(), 15.0);
  set.Tag() = 42;
  KvGePolygon2dArray copy(set);
  EXPECT_EQ(copy.Tag(), 42);
  KvGePolygon2dArray assigned;
  assigned = set;
  EXPECT_EQ(assigned.Tag(), 42);
  copy[0][0].x = -1;
  EXPECT_EQ(set[0][0].x, 0.0);  // deep
}
