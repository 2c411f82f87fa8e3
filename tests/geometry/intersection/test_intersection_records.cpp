#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <utility>

#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"

namespace {
using R = KvGeIntrPoint2d;

R Rec(unsigned segment, double param, int crossSense = 0, int endCode1 = 1, unsigned info = 0) {
  return R(KvGePoint2d(param, 0), crossSense, 1, endCode1, param, -param, segment, 7, info);
}
std::pair<double, double> Span(const KvGeIntrPart2d& q) { return {q.Min().Param0(), q.Max().Param0()}; }
}  // namespace

TEST(IntrRecord, OrderAlongAnObject) {
  const double nan = std::nan("");
  struct Row {
    const char* name;
    R a, b;
    int along, expected;
  } rows[] = {{"0.0009 apart: equal", Rec(0, 1.0), Rec(0, 1.0009), 0, 0},
              {"0.0011 apart", Rec(0, 1.0), Rec(0, 1.0011), 0, -1},
              {"segment first", Rec(2, 0.0), Rec(1, 5.0), 0, 1},
              {"along object 1", Rec(1, 5.0), Rec(1, 5.0), 1, 0},
              {"Param1 is -param here", Rec(0, 1.0), Rec(0, 2.0), 1, 1},
              {"before the first", R::kNegInfinity, Rec(0, -1e8), 0, -1},
              {"after the last", R::kPosInfinity, Rec(0x7FFFFFFE, 1e12), 0, 1},
              {"unsigned segments", Rec(0xFFFFFFFFu, 0), Rec(1, 0), 0, 1},
              // NaN compared equal to every parameter, so 0.5, NaN, 0.2 passed for sorted.
              {"NaN after every number", Rec(0, nan), Rec(0, 1e300), 0, 1},
              {"every number before NaN", Rec(0, -1e300), Rec(0, nan), 0, -1},
              {"NaN equals NaN", Rec(0, nan), Rec(0, nan), 1, 0},
              {"NaN: the segment still first", Rec(0, nan), Rec(1, 0), 0, -1}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    EXPECT_EQ(r.along ? r.a.Compare1(r.b) : r.a.Compare0(r.b), r.expected);
  }

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
  EXPECT_EQ(Span(q), std::make_pair(0.5, 6.0));
  q.Intersect0(KvGeIntrPart2d(Rec(0, 2), Rec(0, 3), 0));
  EXPECT_EQ(Span(q), std::make_pair(2.0, 3.0));
  q.Include0(p);
  EXPECT_EQ(Span(q), std::make_pair(1.0, 4.0));
  // Along object 1 the parameters run the other way here.
  EXPECT_EQ(p.IsEmpty1(1), 1);
  EXPECT_EQ(q == q, 0);
}

TEST(IntrCalculator, CountsCrossingsIntoTypedParts) {
  struct Row {
    const char* what;
    std::vector<R> records;
    std::vector<int> types;
  };
  // Crossings on object 1's segment ends count once, inside its segments twice.
  const Row rows[] = {
      {"at segment ends: counts once", {Rec(0, 0.7, 1, 1), Rec(0, 0.3, -1, 1)}, {-1, 0, -1}},
      {"inside segments: twice, entering", {Rec(0, 0.3, -1, 0), Rec(0, 0.7, 1, 0)}, {-1, 1, -1}},
      {"vertex seen twice: counts once", {Rec(0, 0.3, -1, 1), Rec(0, 0.3, -1, -1), Rec(0, 0.7, 1, 0)}, {-1, 0, 1, -1}},
      {"other orientation: middle outside", {Rec(0, 0.3, 1, 0), Rec(0, 0.7, -1, 0)}, {-1, -1, -1}},
      {"0.0005 apart: no length, type 0", {Rec(0, 0.3, -1, 0), Rec(0, 0.3005, 1, 0)}, {-1, 0, -1}},
      {"other segment, same parameter: 0", {Rec(0, 0.5, -1, 0), Rec(1, 0.5, 1, 0)}, {-1, 0, -1}},
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
  EXPECT_EQ(calc.GetSize(), 2);
  EXPECT_EQ(calc.GetSize0(), 0);
  EXPECT_EQ(calc.Part0(0).Type(), 0);  // before a Calculate: a default part, no stray memory
  calc.Calculate0();
  ASSERT_EQ(calc.GetSize0(), 1);  // a fresh calculator has one part, outside, over everything
  EXPECT_EQ(calc.Part0(0).Type(), -1);
  EXPECT_EQ(Span(calc.Part0(0)), std::make_pair(-1e9, 1e9));

  calc = KvGeIntrCalculator2d();
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

// Numbers, infinities and 1e308 included, sort by value and NaN after every number; the order
// is total, so every record comes out once, and the parts follow it.
TEST(IntrCalculator, NaNParameterSortsAfterEveryNumber) {
  const double nan = std::nan(""), inf = HUGE_VAL;
  KvGeIntrCalculator2d calc;
  for (double t : {0.5, nan, 0.2, inf, nan, -1e308, 0.9, -inf, 1e308, -0.0}) calc.Add(Rec(0, t));
  calc.Calculate();
  const double want[] = {-inf, -1e308, -1e9, -0.0, 0.2, 0.5, 0.9, 1e308, inf};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(calc.Element0(i).Param0(), want[i]) << i;
  EXPECT_TRUE(std::isnan(calc.Element0(9).Param0()));
  EXPECT_TRUE(std::isnan(calc.Element0(10).Param0()));
  EXPECT_EQ(calc.Element0(11).Param0(), 1e9);
  EXPECT_EQ(calc.GetSize0(), calc.GetSize() - 1);
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
}
