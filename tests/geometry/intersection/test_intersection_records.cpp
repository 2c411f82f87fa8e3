#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"

namespace {
using R = KvGeIntrPoint2d;

R Rec(unsigned segment, double param, int crossSense = 0, int endCode1 = 1, unsigned info = 0) {
  return R(KvGePoint2d(param, 0), crossSense, 1, endCode1, param, -param, segment, 7, info);
}
}  // namespace

TEST(IntrRecord, OrderAlongAnObject) {
  EXPECT_EQ(Rec(0, 1.0).Compare0(Rec(0, 1.0009)), 0);
  EXPECT_EQ(Rec(0, 1.0).Compare0(Rec(0, 1.0011)), -1);
  EXPECT_EQ(Rec(2, 0.0).Compare0(Rec(1, 5.0)), 1);  // segment first
  EXPECT_EQ(Rec(1, 5.0).Compare1(Rec(1, 5.0)), 0);
  EXPECT_EQ(Rec(0, 1.0).Compare1(Rec(0, 2.0)), 1);  // Param1 is -param here
  EXPECT_EQ(R::kNegInfinity.Compare0(Rec(0, -1e8)), -1);
  EXPECT_EQ(R::kPosInfinity.Compare0(Rec(0x7FFFFFFE, 1e12)), 1);
  EXPECT_EQ(R::kPosInfinity.Segment0(), 0x7FFFFFFFu);
  EXPECT_EQ(Rec(0xFFFFFFFFu, 0).Compare0(Rec(1, 0)), 1);  // unsigned comparison

  const R a = Rec(0, 1.0, 0, 1, 1), b = Rec(0, 1.0005, 0, 1, 2);
  EXPECT_EQ(Min0(a, b).Info(), 2u);  // a tie gives the second argument
  EXPECT_EQ(Max0(a, b).Info(), 2u);
  EXPECT_EQ(Min1(a, b).Info(), 2u);
  EXPECT_EQ(Min0(a, Rec(0, 3, 0, 1, 3)).Info(), 1u);
  EXPECT_EQ(Max0(a, Rec(0, 3, 0, 1, 3)).Info(), 3u);
  EXPECT_EQ(a == a, 0);  // records are never equal by ==
  EXPECT_EQ(a != a, 0);

  R c = Rec(0, 0, -1, 0);
  c.EndCode0() = 0;
  EXPECT_EQ(c.CutCode0(), -2);
  EXPECT_EQ(c.CutCode1(), -2);
  c.EndCode1() = -1;
  EXPECT_EQ(c.CutCode1(), -1);
  EXPECT_TRUE(static_cast<const KvGePoint2d&>(c) == KvGePoint2d(0, 0));
}

TEST(IntrRecord, PartsAlongAnObject) {
  const KvGeIntrPart2d single(Rec(0, 1), Rec(0, 1), 0);
  EXPECT_EQ(single.IsEmpty0(0), 1);
  EXPECT_EQ(single.IsEmpty0(1), 0);
  KvGeIntrPart2d p(Rec(0, 1), Rec(0, 4), 1);
  EXPECT_EQ(p.IsInside0(Rec(0, 4.0005), 1), 1);
  EXPECT_EQ(p.IsInside0(Rec(0, 4.0005), 0), 0);
  EXPECT_EQ(p.IsInside0(Rec(0, 2), 0), 1);
  EXPECT_EQ(p.IsInside0(KvGeIntrPart2d(Rec(0, 2), Rec(0, 5), 0), 1), 0);
  EXPECT_EQ(p.IsDisjoint0(KvGeIntrPart2d(Rec(0, 4), Rec(0, 9), 0), 1), 0);  // touching at 4
  EXPECT_EQ(p.IsDisjoint0(KvGeIntrPart2d(Rec(0, 4), Rec(0, 9), 0), 0), 1);
  EXPECT_EQ(p.IsDisjoint0(KvGeIntrPart2d(Rec(1, 0), Rec(1, 9), 0), 1), 1);
  KvGeIntrPart2d q = p;
  q.Include0(Rec(0, 6));
  q.Include0(Rec(0, 0.5));
  EXPECT_EQ(q.Min().Param0(), 0.5);
  EXPECT_EQ(q.Max().Param0(), 6.0);
  q.Intersect0(KvGeIntrPart2d(Rec(0, 2), Rec(0, 3), 0));
  EXPECT_EQ(q.Min().Param0(), 2.0);
  EXPECT_EQ(q.Max().Param0(), 3.0);
  q.Include0(p);
  EXPECT_EQ(q.Min().Param0(), 1.0);
  EXPECT_EQ(q.Max().Param0(), 4.0);
  // Along object 1 the parameters run the other way here.
  EXPECT_EQ(p.IsEmpty1(1), 1);
  EXPECT_EQ(q == q, 0);
  const KvGeIntrPart2d fresh;
  EXPECT_EQ(fresh.Type(), 0);
  EXPECT_EQ(fresh.Min().Param0(), 0.0);
}

TEST(IntrCalculator, FreshCalculatorHasOneOutsidePart) {
  KvGeIntrCalculator2d calc;
  EXPECT_EQ(calc.GetSize(), 2);
  EXPECT_EQ(calc.GetSize0(), 0);
  EXPECT_EQ(calc.Part0(0).Type(), 0);  // before a Calculate: a default part, no stray memory
  calc.Calculate0();
  ASSERT_EQ(calc.GetSize0(), 1);
  EXPECT_EQ(calc.Part0(0).Type(), -1);
  EXPECT_EQ(calc.Part0(0).Min().Param0(), -1e9);
  EXPECT_EQ(calc.Part0(0).Max().Param0(), 1e9);
}

TEST(IntrCalculator, CountsCrossingsIntoTypedParts) {
  struct Row {
    const char* what;
    std::vector<R> records;
    std::vector<int> types;
  };
  const Row rows[] = {
      // Crossings at segment ends of object 1 count once each.
      {"ends", {Rec(0, 0.7, 1, 1), Rec(0, 0.3, -1, 1)}, {-1, 0, -1}},
      // Inside segments of object 1 they count twice: entering makes the middle part inside.
      {"inside", {Rec(0, 0.3, -1, 0), Rec(0, 0.7, 1, 0)}, {-1, 1, -1}},
      // A shared vertex reported by both neighbouring segments adds up to one crossing.
      {"vertex", {Rec(0, 0.3, -1, 1), Rec(0, 0.3, -1, -1), Rec(0, 0.7, 1, 0)}, {-1, 0, 1, -1}},
      // The other orientation of the same ring: the middle part is outside.
      {"reversed", {Rec(0, 0.3, 1, 0), Rec(0, 0.7, -1, 0)}, {-1, -1, -1}},
      // Parameters closer than 0.001: a part without length, whatever the count.
      {"close", {Rec(0, 0.3, -1, 0), Rec(0, 0.3005, 1, 0)}, {-1, 0, -1}},
      // Different segments at the same parameter: type 0 as well.
      {"segments", {Rec(0, 0.5, -1, 0), Rec(1, 0.5, 1, 0)}, {-1, 0, -1}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    KvGeIntrCalculator2d calc;
    for (const R& rec : r.records) calc.Add(rec);
    calc.Calculate0();
    ASSERT_EQ(calc.GetSize0(), static_cast<int>(r.types.size()));
    for (int i = 0; i < calc.GetSize0(); ++i) EXPECT_EQ(calc.Part0(i).Type(), r.types[i]) << i;
    EXPECT_EQ(calc.Element0(0).Param0(), -1e9);
    EXPECT_EQ(calc.Element0(static_cast<unsigned>(calc.GetSize() - 1)).Param0(), 1e9);
  }
}

TEST(IntrCalculator, SortsAlongBothObjectsAndClamps) {
  KvGeIntrCalculator2d calc;
  for (int i = 0; i < 40; ++i) calc.Add(Rec(static_cast<unsigned>(i % 3), (i * 7) % 11, 0, 1, i));
  calc.Calculate();
  for (int i = 0; i + 1 < calc.GetSize(); ++i) EXPECT_LE(calc.Element0(i).Compare0(calc.Element0(i + 1)), 0) << i;
  for (int i = 0; i + 1 < calc.GetSize(); ++i) EXPECT_LE(calc.Element1(i).Compare1(calc.Element1(i + 1)), 0) << i;
  EXPECT_EQ(calc.GetSize0(), calc.GetSize() - 1);
  EXPECT_EQ(calc.Element0(1000).Param0(), 1e9);  // clamped to the last in order
  EXPECT_EQ(calc.Element0(static_cast<unsigned>(-1)).Param0(), 1e9);
  EXPECT_EQ(&calc.Part0(static_cast<unsigned>(-1)), &calc.Part0(calc.GetSize0() - 1));
  EXPECT_EQ(calc.Perm0().GetSize(), calc.GetSize());

  // A deep copy owns its permutations and parts.
  KvGeIntrCalculator2d copy(calc);
  calc.Add(Rec(0, -5, 0, 1, 99));
  calc.Calculate0();
  EXPECT_EQ(copy.GetSize0(), copy.GetSize() - 1);
  EXPECT_NE(copy.Element0(1).Info(), 99u);
  EXPECT_EQ(calc.Element0(1).Info(), 99u);
  KvGeIntrCalculator2d assigned;
  assigned = calc;
  EXPECT_EQ(assigned.Element0(1).Info(), 99u);
  EXPECT_NE(&assigned.Perm0(), &calc.Perm0());
  // Records added after sorting: the stale permutation still reads only existing records.
  assigned.SetSize(3);
  EXPECT_EQ(assigned.Element0(40).Info(), assigned.GetAt(2).Info());
}

TEST(IntrCalculator, CutAloneGivesOnePartPerPairOfRecords) {
  KvGeIntrCalculator2d calc;
  calc.Add(Rec(0, 0.3, -1, 0));
  calc.CalculateParts0();  // never sorted
  EXPECT_EQ(calc.GetSize0(), 2);
  calc.Calculate0();
  calc.Add(Rec(0, 0.7, 1, 0));
  calc.CalculateParts0();  // one record more than the order holds: read as the last in order
  ASSERT_EQ(calc.GetSize0(), 3);
  EXPECT_EQ(calc.Part0(1).Type(), 1);
  EXPECT_EQ(calc.Part0(2).Type(), 0);
  calc.RemoveAt(2, 2);
  calc.CalculateParts0();  // two fewer
  ASSERT_EQ(calc.GetSize0(), 1);
  EXPECT_EQ(calc.Part0(0).Max().Param0(), 1e9);
}

// A crossing sense of 2^30 or beyond doubles to the end of the int range, and the running count
// of many such records does not overflow.
TEST(IntrCalculator, CrossSenseOf2To30DoesNotOverflow) {
  const R big(KvGePoint2d(0, 0), 0x40000000, 0, 0, .5, .5, 0, 0, 0);
  EXPECT_EQ(big.CutCode0(), INT_MAX);
  EXPECT_EQ(Rec(0, 0.5, INT_MIN, 0).CutCode1(), INT_MIN);
  EXPECT_EQ(Rec(0, 0.5, 0x3FFFFFFF, 0).CutCode1(), 0x7FFFFFFE);  // still exact below 2^30
  EXPECT_EQ(Rec(0, 0.5, -0x40000000, 0).CutCode1(), INT_MIN);
  KvGeIntrCalculator2d calc;
  calc.Add(big);
  calc.Calculate();
  EXPECT_EQ(calc.Part0(1).Type(), -1);
  calc.RemoveAt(2);
  for (int i = 1; i <= 3; ++i) calc.Add(Rec(0, 0.1 * i, INT_MIN, 1));  // a sum far below INT_MIN
  calc.Calculate();
  ASSERT_EQ(calc.GetSize0(), 4);
  for (int i = 1; i < 4; ++i) EXPECT_EQ(calc.Part0(i).Type(), 1) << i;
}

// NaN compared equal to every parameter, so 0.5, NaN, 0.2 passed for sorted.
TEST(IntrCalculator, NaNParameterSortsAfterEveryNumber) {
  const double nan = std::nan("");
  EXPECT_EQ(Rec(0, nan).Compare0(Rec(0, 1e300)), 1);
  EXPECT_EQ(Rec(0, -1e300).Compare0(Rec(0, nan)), -1);
  EXPECT_EQ(Rec(0, nan).Compare1(Rec(0, nan)), 0);
  EXPECT_EQ(Rec(0, nan).Compare0(Rec(1, 0)), -1);  // the segment still comes first
  KvGeIntrCalculator2d calc;
  for (double t : {0.5, nan, 0.2, nan, 0.9}) calc.Add(Rec(0, t));
  calc.SortIntrPoints0();
  const double want[] = {-1e9, 0.2, 0.5, 0.9};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(calc.Element0(i).Param0(), want[i]) << i;
  EXPECT_TRUE(std::isnan(calc.Element0(4).Param0()));
  EXPECT_TRUE(std::isnan(calc.Element0(5).Param0()));
  EXPECT_EQ(calc.Element0(6).Param0(), 1e9);
}

TEST(IntrCalculator, SpaceRecordsInPlan) {
  KvGeIntrCalculator23d calc;
  calc.Add(KvGeIntrPoint3d(KvGePoint3d(1, 2, 3), -1, 1, 0, 0.2, 0.0, 0, 0, 0));
  calc.Add(KvGeIntrPoint3d(KvGePoint3d(1, 2, 3), 1, 1, 0, 0.6, 0.0, 0, 0, 0));
  calc.Calculate();
  ASSERT_EQ(calc.GetSize0(), 3);
  EXPECT_EQ(calc.Part0(1).Type(), 1);
  const KvGeIntrPart3d part = calc.Part0(1);
  EXPECT_EQ(part.IsInside0(calc.Element0(1), 1), 1);
  EXPECT_EQ(Min0(calc.Element0(1), calc.Element0(2)).Param0(), 0.2);
  EXPECT_EQ(KvGeIntrPoint3d::kNegInfinity.Param1(), -1e9);
}
