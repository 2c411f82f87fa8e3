#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <string>

#include "basics/companion/KvBtArchive.h"
#include "basics/companion/KvBtString.h"
#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/points/KvGePoint2dArray.h"

namespace {
using P = KvGePoint2d;

KvGePoint2dArray Make(std::initializer_list<P> points) {
  KvGePoint2dArray a;
  for (const P& p : points) a.Add(p);
  return a;
}

std::string Store(const KvGePoint2dArray& a) {
  std::ostringstream out;
  KvBtArchive ar(out);
  KvGePoint2dArray(a).Serialize(ar);
  return out.str();
}

// Loads raw archive bytes into a array that held one marker point.
KvGePoint2dArray Load(const std::string& bytes, int* failed = nullptr) {
  std::istringstream in(bytes);
  KvBtArchive ar(in);
  KvGePoint2dArray a = Make({P(77, 77)});
  a.Serialize(ar);
  if (failed) *failed = ar.IsFailed();
  return a;
}

std::string Stored(std::uint16_t version, const std::string& text) {
  std::ostringstream out;
  KvBtArchive ar(out);
  ar << version << KvBtString(text);
  return out.str();
}
}  // namespace

TEST(PointArray, AreaOrientationAndIndices) {
  const KvGePoint2dArray square = Make({P(0, 0), P(1, 0), P(1, 1), P(0, 1)});
  EXPECT_EQ(square.Area(), 1.0);
  EXPECT_EQ(square.Sense(), 1);
  EXPECT_EQ(square.Inverted().Area(), -1.0);
  EXPECT_TRUE(square.Inverted()[0] == P(0, 1));  // the whole sequence reversed
  EXPECT_EQ(KvGePoint2dArray().Area(), 0.0);
  EXPECT_TRUE(square.Orientated(-1)[0] == P(0, 0));  // first point kept
  EXPECT_TRUE(square.Orientated(-1)[1] == P(0, 1));
  EXPECT_TRUE(square.Orientated(1) == square);

  const KvGePoint2dArray cw = Make({P(5, 0), P(0, 0), P(0, 5)});
  EXPECT_TRUE(cw.Normalized() == Make({P(0, 0), P(5, 0), P(0, 5)}));
  const KvGePoint2dArray line = Make({P(0, 0), P(1, 1), P(2, 2)});
  EXPECT_TRUE(line.Normalized() == Make({P(0, 0), P(2, 2), P(1, 1)}));  // area 0: reversed as well

  EXPECT_EQ(Make({P(0, 5), P(0.0005, 1)}).IndexMinXY(), 1);  // x within 0.001: the smaller y wins
  EXPECT_EQ(Make({P(0, 5), P(0.0011, 1)}).IndexMinXY(), 0);
  EXPECT_EQ(Make({P(3, 1), P(2, 1.0005), P(2, 1)}).IndexMinYX(), 1);  // y ties, x equal: the first
  EXPECT_EQ(Make({P(1, 1), P(1, 1)}).IndexMinYX(), 0);
  EXPECT_EQ(KvGePoint2dArray().IndexMinXY(), -1);

  EXPECT_NEAR(square.Perimeter(), 4.0, 1e-15);
  EXPECT_EQ(Make({P(3, 3)}).Perimeter(), 0.0);
  EXPECT_TRUE(square.Schwerpunkt().IsEqualTo(P(0.5, 0.5), 1e-12));
  EXPECT_TRUE(square.Inverted().Schwerpunkt().IsEqualTo(P(0.5, 0.5), 1e-12));
  EXPECT_TRUE(Make({P(1, 1), P(3, 5)}).Schwerpunkt() == P(0, 0));
  EXPECT_TRUE(KvGePoint2dArray().BoundingBox() == KvGeBox2d());  // empty
  EXPECT_TRUE(square.BoundingBox(KvGeModMat2d().SetTran(2, 3)) == KvGeBox2d(P(2, 3), P(3, 4)));
}

TEST(PointArray, SortingTiesWithinTheTolerance) {
  KvGePoint2dArray a = Make({P(2, 0), P(1.0005, 3), P(1, 2), P(0, 9)});
  a.sortByXY();
  EXPECT_TRUE(a == Make({P(0, 9), P(1, 2), P(1.0005, 3), P(2, 0)}));
  a.sortByYX();
  EXPECT_TRUE(a[0] == P(2, 0));
  EXPECT_TRUE(a[3] == P(0, 9));
  // Many near-ties: the tolerant comparison is not a strict order, yet the sort stays in bounds.
  std::mt19937 rng(5);
  KvGePoint2dArray noisy;
  for (int i = 0; i < 500; ++i) noisy.Add(P((rng() % 4) * 0.0006, (rng() % 4) * 0.0006));
  noisy.sortByXY();
  EXPECT_EQ(noisy.GetSize(), 500);
}

TEST(PointArray, StoredFormBytes) {
  const std::string text = Store(Make({P(1.2, -0.1), P(5000, -5000), P(0.04, -0.05)}));
  // Version word 1, one length byte, then 8 characters per point.
  EXPECT_EQ(text, Stored(1,
                         "   c8001"
                         "7fffffff"
                         "   08001"));
  const KvGePoint2dArray back = Load(text);
  ASSERT_EQ(back.GetSize(), 3);
  EXPECT_NEAR(back[0].x, 1.2, 1e-12);
  EXPECT_NEAR(back[0].y, -0.1, 1e-12);
  EXPECT_NEAR(back[1].x, 3276.7, 1e-9);
  EXPECT_NEAR(back[1].y, -3276.7, 1e-9);
  EXPECT_NEAR(back[2].y, -0.1, 1e-12);
  EXPECT_EQ(Store(Make({P(0, 0, 1)})), Stored(1, "   0   0"));  // the flag is not stored
}

TEST(PointArray, StoredFormRoundTripOfRandomArrays) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> u(-4000, 4000);
  for (int trial = 0; trial < 300; ++trial) {
    KvGePoint2dArray a;
    const int n = static_cast<int>(rng() % 40);
    for (int i = 0; i < n; ++i) a.Add(P(u(rng), u(rng) * (rng() % 2 ? 1e-3 : 1.0)));
    const KvGePoint2dArray back = Load(Store(a));
    ASSERT_EQ(back.GetSize(), n);
    for (int i = 0; i < n; ++i) {
      for (unsigned k = 0; k < 2; ++k) {
        const double v = a[i][k];
        const double clamped = v > 3276.7 ? 3276.7 : (v < -3276.7 ? -3276.7 : v);
        // Rounded to 0.1; runden takes values within 1e-4 below a half-way point up.
        EXPECT_NEAR(back[i][k], clamped, 0.05 + 1e-4) << i << " " << k;
        EXPECT_NEAR(back[i][k] * 10, std::round(back[i][k] * 10), 1e-6);  // a multiple of 0.1
      }
    }
  }
}

TEST(PointArray, LoadingUntrustedBytes) {
  struct Row {
    std::string bytes;
    int size;  // -1: the array is left as it was
  };
  const Row rows[] = {
      {Stored(1, "   1   2   3"), 1},  // a short remainder is ignored
      {Stored(2, "   1   2"), 1},
      {Stored(3, "   1   2"), -1},  // unknown version
      {Stored(0, ""), -1},
      {Stored(1, ""), 0},  // an empty string empties the array
      {Stored(1, std::string("\0\0\0\0zzzz", 8)), 1},
      {Stored(1, "0x1f-001 1 2ffff"), 2},
      {Stored(1, std::string(100000, 'f')), 12500},
      {Stored(1, "   1   2").substr(0, 6), -1},  // truncated archive
      {std::string("\x01"), -1},
      {std::string("\x01\x00\xFF\xFF\xFF\xFF\xFF\xFF\x7F", 9), -1},  // a huge length with nothing behind it
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.bytes.size());
    const KvGePoint2dArray a = Load(r.bytes);
    if (r.size < 0) {
      ASSERT_EQ(a.GetSize(), 1);
      EXPECT_TRUE(a[0] == P(77, 77));
    } else {
      EXPECT_EQ(a.GetSize(), r.size);
    }
  }
  const KvGePoint2dArray odd = Load(Stored(1, "0x1f-001 1 2ffff"));
  EXPECT_NEAR(odd[0].x, 3.1, 1e-12);     // "0x1f" reads as sscanf reads it
  EXPECT_NEAR(odd[1].y, -3276.7, 1e-9);  // "ffff"
  const KvGePoint2dArray zeros = Load(Stored(1, std::string("\0\0\0\0zzzz", 8)));
  EXPECT_TRUE(zeros[0] == P(0, 0));
  std::mt19937 rng(99);
  for (int trial = 0; trial < 2000; ++trial) {
    std::string text(rng() % 40, ' ');
    for (char& c : text) c = static_cast<char>(rng() & 0xFF);
    const KvGePoint2dArray a = Load(Stored(1, text));
    EXPECT_EQ(a.GetSize(), static_cast<int>(text.size() / 8));
  }
}

TEST(PointArray, SpaceArrayInPlanAndInSpace) {
  using Q = KvGePoint3d;
  KvGePoint3dArray ring;
  for (const Q& q : {Q(0, 0, 1), Q(0, 2, 1), Q(2, 2, 1), Q(2, 0, 1), Q(0, 0, 1)}) ring.Add(q);
  EXPECT_EQ(ring.Sense2d(), -1);
  ring.Orientate2d(1);  // the closing duplicate stays last
  EXPECT_EQ(ring.Sense2d(), 1);
  EXPECT_TRUE(ring[1] == Q(2, 0, 1));
  EXPECT_TRUE(ring[4] == Q(0, 0, 1));
  EXPECT_NEAR(ring.Area2d(), 4.0, 1e-12);
  EXPECT_TRUE(ring.NormalVector().IsEqualTo(Q(0, 0, 4), 1e-12));
  EXPECT_NEAR(ring.Area3d(), 4.0, 1e-12);
  EXPECT_NEAR(ring.Perimeter2d(), 8.0, 1e-12);
  EXPECT_TRUE(ring.Schwerpunkt().IsEqualTo(Q(1, 1, 1), 1e-12));
  KvGePoint3dArray wall;
  for (const Q& q : {Q(0, 0, 0), Q(3, 0, 0), Q(3, 0, 4), Q(0, 0, 4)}) wall.Add(q);
  EXPECT_EQ(wall.Area2d(), 0.0);
  EXPECT_NEAR(wall.Area3d(), 12.0, 1e-12);
  EXPECT_NEAR(wall.Perimeter3d(), 14.0, 1e-12);
  EXPECT_TRUE(wall.Schwerpunkt().IsEqualTo(Q(1.5, 0, 2), 1e-12));
  EXPECT_TRUE(wall.BoundingBox() == KvGeBox3d(Q(0, 0, 0), Q(3, 0, 4)));
  EXPECT_EQ(wall.Normalized2d()[0].x, 0.0);
  EXPECT_TRUE(KvGePoint3dArray(wall).SetZ(1).BoundingBox(KvGeModMat3d().SetTran(0, 0, 1)).Min() == Q(0, 0, 2));
}

// Rings with coordinates near 1e308 overflowed the sums of the area into infinity or NaN; an
// area beyond every double is infinite. A ring holding NaN is refused by the stored form, and
// the next object is not written after it either.
TEST(PointArray, AreaNearTheLargestDoubleAndStoringNaN) {
  KvGePoint2dArray a = Make({P(0, 1e308), P(1, 1e308), P(1, 1.5e308), P(0, 1.5e308)});
  EXPECT_DOUBLE_EQ(a.Area(), 0.5e308);
  EXPECT_DOUBLE_EQ(a.Inverted().Area(), -0.5e308);
  EXPECT_EQ(a.Inverted().Sense(), -1);
  EXPECT_EQ(Make({P(-1e308, -1e308), P(1e308, -1e308), P(1e308, 1e308)}).Area(), HUGE_VAL);

  std::stringstream bytes;
  KvBtArchive out(bytes, KvBtArchive::kStore);
  Make({P(1.2, std::nan(""))}).Serialize(out);
  EXPECT_EQ(out.IsFailed(), 1);
  Make({P(1, 2)}).Serialize(out);
  EXPECT_TRUE(bytes.str().empty());
}
