#include <gtest/gtest.h>

#include <cmath>
#include <new>

#include "geometry/algebra/KvGeModMat.h"

namespace {
using P = KvGePoint3d;

::testing::AssertionResult Near(const P& got, const P& want) {
  if (got.IsEqualTo(want, 1e-9)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << got.x << ", " << got.y << ", " << got.z << ")";
}
}  // namespace

TEST(ModMat, ElementaryTransformsAndOrder) {
  EXPECT_TRUE(KvGeModMat3d().IsEqualTo(KvGeMatrix4X4(1.0), 0.0));  // identity by default
  const KvGeAngle& d90 = KvGeAngle_Deg90();
  EXPECT_TRUE(Near(P(1, 0, 0).Transformed(KvGeModMat3d().SetRotate(d90, P(0, 0, 1))), P(0, 1, 0)));
  EXPECT_TRUE(Near(P(1, 0, 0).Transformed(KvGeModMat3d().SetRotate(d90, P(0, 0, -1))), P(0, -1, 0)));
  EXPECT_TRUE(Near(P(0, 1, 0).Transformed(KvGeModMat3d().SetRotate(d90, P(5, 0, 0))), P(0, 0, 1)));
  EXPECT_TRUE(Near(P(0, 0, 1).Transformed(KvGeModMat3d().SetRotate(d90, P(0, 2, 0))), P(1, 0, 0)));
  EXPECT_TRUE(KvGeModMat3d(3.0).SetRotate(d90, P(0, 0, 0)).IsEqualTo(KvGeModMat3d(), 0.0));
  EXPECT_TRUE(KvGeModMat3d(3.0).SetRotate(d90, P(0, 0, 0.0009)).IsEqualTo(KvGeModMat3d(), 0.0));
  // Post-multiplication: A.Cat(B) applies A first.
  EXPECT_TRUE(Near(P().Transformed(KvGeModMat3d().SetTran(1, 2, 3).CatScale(2, 2, 2)), P(2, 4, 6)));
  EXPECT_TRUE(Near(P().Transformed(KvGeModMat3d().SetScale(2, 2, 2).CatTran(1, 2, 3)), P(1, 2, 3)));
  const KvGeModMat3d enl = KvGeModMat3d().SetEnlRel(2, 2, 2, P(1, 1, 1));
  EXPECT_TRUE(Near(P(1, 1, 1).Transformed(enl), P(1, 1, 1)));
  EXPECT_TRUE(Near(P(2, 1, 1).Transformed(enl), P(3, 1, 1)));
  const KvGeModMat3d rel = KvGeModMat3d().SetRotRel(KvGeAngle_Deg180(), P(1, 0, 0), P(0, 0, 1));
  EXPECT_TRUE(Near(P(2, 0, 0).Transformed(rel), P(0, 0, 0)));
  EXPECT_TRUE(Near(P(2, 0, 0).Transformed(KvGeModMat3d().SetTran(P(1, 0, 0)).CatRotRel(d90, P(3, 0, 0), P(0, 0, 1))),
                   P(3, 0, 0)));
  EXPECT_TRUE(Near(P(2, 0, 0).Transformed(KvGeModMat3d().CatEnlRel(3, 1, 1, P(1, 0, 0))), P(4, 0, 0)));
  // A direction turns but does not move.
  EXPECT_TRUE(
      Near(P(1, 0, 0, 1).Transformed(KvGeModMat3d().SetTran(5, 5, 5).CatRotate(d90, P(0, 0, 1))), P(0, 1, 0, 1)));
}

TEST(ModMat, FreeFunctions) {
  KvGeModMat3d m;
  SetTran(m, 1, 0, 0);
  CatScale(m, 2, 2, 2);
  CatRotate(m, KvGeAngle_Deg90(), P(0, 0, 1));
  P out;
  XFormPt(P(0, 0, 0), m, out);
  EXPECT_TRUE(Near(out, P(0, 2, 0)));
  KvGeModMat3d inv;
  double det = 0;
  ASSERT_EQ(Invert(m, inv, det), 1);
  EXPECT_NEAR(det, 8.0, 1e-12);
  KvGeModMat3d prod;
  MatMMat(m, inv, prod);
  EXPECT_TRUE(prod.IsEqualTo(KvGeModMat3d(), 1e-12));
  KvGeModMat3d zero(0.0), dst(5.0);
  EXPECT_EQ(Invert(zero, dst, det), 0);
  EXPECT_EQ(det, 0.0);
  EXPECT_TRUE(dst.IsEqualTo(zero, 0.0));
  KvGeModMat3d t = m;
  Transpose(t);
  EXPECT_EQ(t(0, 3), m(3, 0));
  CatMat(t, KvGeModMat3d());
  EXPECT_EQ(t(0, 3), m(3, 0));
  KvGeModMat3d s;
  SetIdent(s);
  SetScale(s, 1, 2, 3);
  CatTran(s, 1, 1, 1);
  EXPECT_TRUE(Near(P(1, 1, 1).Transformed(s), P(2, 3, 4)));
  SetRotate(s, KvGeAngle_Deg180(), P(0, 0, 1));
  EXPECT_TRUE(Near(P(1, 0, 0).Transformed(s), P(-1, 0, 0)));
  SetEnlRel(s, 2, 2, 2, P(1, 0, 0));
  CatEnlRel(s, 0.5, 0.5, 0.5, P(1, 0, 0));
  EXPECT_TRUE(s.IsEqualTo(KvGeModMat3d(), 1e-12));
  SetRotRel(s, KvGeAngle_Deg90(), P(1, 0, 0), P(0, 0, 1));
  CatRotRel(s, KvGeAngle_Deg270(), P(1, 0, 0), P(0, 0, 1));
  EXPECT_TRUE(s.IsEqualTo(KvGeModMat3d(), 1e-12));
}

TEST(ModMat, ZAxisRotationAndFrameToFrame) {
  EXPECT_TRUE(ZAchsenDrehmatrix(P(0, 0, -5)).IsEqualTo(KvGeModMat3d(), 0.0));  // downward: not flipped
  EXPECT_TRUE(ZAchsenDrehmatrix(P(0.0005, 0, 1)).IsEqualTo(KvGeModMat3d(), 0.0));
  EXPECT_TRUE(ZAchsenDrehmatrix(P(0, 0, 0)).IsEqualTo(KvGeModMat3d(), 0.0));
  EXPECT_TRUE(Near(P(1, 0, 0).Transformed(ZAchsenDrehmatrix(P(1, 0, 0))), P(0, 0, 1)));
  const P n(1, 2, 2);
  const KvGeModMat3d z = ZAchsenDrehmatrix(n);
  EXPECT_TRUE(Near(P(1, 2, 2).Transformed(z), P(0, 0, 3)));
  EXPECT_NEAR(z.Det(), 1.0, 1e-12);

  KvGeMatrix4X4 m(2.0);
  EXPECT_EQ(GetRotationMatrix(P(), P(0.01, 0, 0), P(0, 1, 0), P(0, 1, 0), P(1, 0, 0), m), 0);
  EXPECT_TRUE(m.IsEqualTo(KvGeMatrix4X4(2.0), 0.0));
  const P p0(1, 1, 1);
  ASSERT_EQ(GetRotationMatrix(p0, P(2, 1, 1), P(1, 2, 1), P(1, 2, 1), P(0, 1, 1), m), 1);
  const KvGeModMat3d r(m);
  EXPECT_TRUE(Near(p0.Transformed(r), p0));
  EXPECT_TRUE(Near(P(2, 1, 1).Transformed(r), P(1, 2, 1)));  // first axis onto first axis
  EXPECT_TRUE(Near(P(1, 2, 1).Transformed(r), P(0, 1, 1)));  // second onto second
  EXPECT_TRUE(Near(P(1, 1, 2).Transformed(r), P(1, 1, 2)));  // third onto third
}

namespace {
// A modelling matrix that counts its destructions, kept in storage that the test owns.
int g_destroyed = 0;
struct CountedMat : KvGeModMat3d {
  ~CountedMat() override { ++g_destroyed; }
};
}  // namespace

TEST(ModMat, PointerArrayDestroysDistinctNeighboursOnly) {
  alignas(CountedMat) unsigned char storage[3][sizeof(CountedMat)];
  struct Row {
    std::vector<int> which;
    int destroyed;
  };
  const Row rows[] = {
      {{0, 1, 2}, 3}, {{0, 0, 1}, 2}, {{0, 1, 1}, 2}, {{0}, 1}, {{}, 0}, {{0, 0, 0}, 1},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.which.size());
    CountedMat* mats[3];
    for (int k = 0; k < 3; ++k) mats[k] = new (storage[k]) CountedMat;
    g_destroyed = 0;
    {
      KvGeModMat3dpArray a;
      for (int k : r.which) a.Add(mats[k]);
    }
    EXPECT_EQ(g_destroyed, r.destroyed);
    // The array ran destructors only; the storage is still ours (trivially reusable).
  }
  KvGeModMat3dpArray withStorage;
  withStorage.Add(nullptr);
  withStorage.RemoveAll();
}

// The axis of length 1e200 overflowed when normalised, and the rotation was no rotation.
TEST(ModMat3d, RotationAboutAHugeAxis) {
  KvGeModMat3d m;
  m.SetRotate(KvGeAngle(M_PI / 2), P(0, 0, 1e200));
  EXPECT_TRUE(Near(P(1, 0, 0).Transformed(m), P(0, 1, 0)));
  m.SetRotate(KvGeAngle(M_PI / 2), P(1e300, 0, 0));
  EXPECT_TRUE(Near(P(0, 1, 0).Transformed(m), P(0, 0, 1)));
}
