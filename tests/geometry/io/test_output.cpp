#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <string>

#include "UtilityGeometry.h"

namespace {
template <class T>
std::string Text(const T& v) {
  std::ostringstream os;
  os << v;
  return os.str();
}
}  // namespace

TEST(Output, ReadableFormsOfTheValueTypes) {
  KvGeLine2d reversed(KvGePoint2d(0, 0), KvGePoint2d(3, 4));
  reversed.Sense() = -1;
  boost::shared_ptr<Simple2dPolygonData> block(new Simple2dPolygonData(2));
  double* g = block->getGeo();
  g[0] = 1, g[1] = 2, g[2] = 3, g[3] = 4;
  KvTlFunktion2d step(5.0);
  KvGeIntrPoint2d record;
  record.x = 1;
  record.y = 2;
  const struct {
    std::string got, expected;
  } rows[] = {
      {Text(KvGePoint2d(1.5, -2)), "POINT (1.5 -2)"},
      {Text(KvGePoint2d(1, 0, 1)), "DIRECTION (1 0)"},
      {Text(KvGePoint3d(1, 2, 3)), "POINT Z (1 2 3)"},
      {Text(KvGePoint2d(-0.0, 1)), "POINT (0 1)"},
      {Text(KvGeVector3(1, 2, 3)), "(1, 2, 3)"},
      {Text(KvGeMatrix2X2(1, 2, 3, 4)), "[[1, 2], [3, 4]]"},
      {Text(KvGeAngle().SetDeg(30)), "30 deg"},
      {Text(KvGeBox2d(KvGePoint2d(0, 1), KvGePoint2d(2, 3))), "BOX (0 1, 2 3)"},
      {Text(KvGeLine2d(KvGePoint2d(0, 0), KvGePoint2d(3, 4))), "LINESTRING (0 0, 3 4)"},
      {Text(reversed), "LINESTRING (0 0, 3 4) sense -1"},
      {Text(KvGePolygon2d{{0, 0}, {10, 0}, {10, 10}}), "POLYGON ((0 0, 10 0, 10 10, 0 0))"},
      {Text(KvGePolygon2d()), "POLYGON EMPTY"},
      {Text(KvGePolygon2dArray{{{0, 0}, {1, 0}, {0, 1}}, {}}),
       "GEOMETRYCOLLECTION (POLYGON ((0 0, 1 0, 0 1, 0 0)), "
       "POLYGON EMPTY)"},
      {Text(KvGePolyline2d{{0, 0}, {1, 1}}), "LINESTRING (0 0, 1 1)"},
      {Text(KvGePoint3dArray{{0, 0, 1}}), "MULTIPOINT Z ((0 0 1))"},
      {Text(KvGePoint2dArray()), "MULTIPOINT EMPTY"},
      {Text(KvGeCircle2d(KvGePoint2d(1, 2), 3, -1)), "CIRCLE (1 2, 3) sense -1"},
      {Text(KvGeArc23d(KvGePoint3d(1, 2, 3), 4, KvGeAngle_Deg90(), KvGeAngle_Deg0())),
       "ARC Z (1 2 3, 4, 90 deg, 0 deg)"},
      {Text(step), "FUNCTION ((-1e+09 5, 1e+09 5))"},
      {Text(Simple2dPolygon(block)), "POLYGON ((1 2, 3 4, 1 2))"},
      {Text(Simple2dPolygon()), "POLYGON EMPTY"},
      {Text(record), "INTERSECTION (1 2) sense 0 ends 0 0 params 0 0 segments 0 0 info 0"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.got, row.expected);

  // Numbers keep the stream's format.
  std::ostringstream os;
  os << std::fixed << std::setprecision(3) << KvGePoint2d(1.0 / 3.0, 2);
  EXPECT_EQ(os.str(), "POINT (0.333 2.000)");
}

TEST(Output, InitializerListsAndRangeFor) {
  // Braces around one point make a one-vertex ring, not a conversion of the point.
  EXPECT_EQ(KvGePolygon2d{KvGePoint2d(1, 2)}.GetSize(), 1);
  EXPECT_EQ(KvGePolygon23d({{0, 0, 5}}).Height(), 0.0);
  const KvGePolygon2dArray region{{{0, 0}, {10, 0}, {10, 10}}, KvGePolygon2d{{2, 2}, {2, 4}, {4, 4}}};
  ASSERT_EQ(region.GetSize(), 2);
  EXPECT_DOUBLE_EQ(region.Area(), 48.0);  // the second ring runs clockwise

  KvGePoint2dArray points{{1, 1}, {2, 2}};
  for (KvGePoint2d& p : points) p.x += 1;  // non-const iteration writes through
  double sum = 0;
  for (const KvGePoint2d& p : static_cast<const KvGePoint2dArray&>(points)) sum += p.x;
  EXPECT_DOUBLE_EQ(sum, 5.0);
  KvBtRealArray reals;
  reals.Add(1.5);
  for (double& r : reals) r *= 2;
  EXPECT_DOUBLE_EQ(reals[0], 3.0);
}
