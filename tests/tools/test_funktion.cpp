#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <utility>

#include "tools/KvTlFunktion2d.h"

namespace {
using F = KvTlFunktion2d;
using L = KvTlLinear2d;

// Ordered pieces that meet, each wider than minWidth (none of 0.001 or less unless told),
// spanning first .. last.
void ExpectWellFormed(const F& f, double first = -1e9, double last = 1e9, double minWidth = 0.001) {
  const int n = f.Pieces().GetSize();
  ASSERT_GT(n, 0);
  EXPECT_EQ(f.Pieces()[0].x0, first);
  EXPECT_EQ(f.Pieces()[n - 1].x1, last);
  for (int k = 0; k < n; ++k) {
    SCOPED_TRACE(k);
    EXPECT_GT(f.Pieces()[k].x1 - f.Pieces()[k].x0, minWidth);
    if (k > 0) {
      EXPECT_EQ(f.Pieces()[k].x0, f.Pieces()[k - 1].x1);
    }
  }
}

// The values of r from both sides equal op applied to the values of f and g, at every break of
// either operand, just beside each break and midway between.
template <class Op>
void ExpectPointwise(const F& r, const F& f, const F& g, Op op) {
  for (const F* h : {&f, &g}) {
    for (const L& q : h->Pieces()) {
      for (double x : {q.x0, q.x0 + 0.01, 0.5 * (q.x0 + q.x1), q.x1 - 0.01}) {
        if (std::fabs(x) > 1e8) continue;
        SCOPED_TRACE(x);
        EXPECT_NEAR(r.LinksWert(x), op(f.LinksWert(x), g.LinksWert(x)), 1e-9);
        EXPECT_NEAR(r.RechtsWert(x), op(f.RechtsWert(x), g.RechtsWert(x)), 1e-9);
      }
    }
  }
}

struct Case {
  const char* name;
  double got, want;
};
void Check(std::initializer_list<Case> cases) {
  for (const Case& c : cases) EXPECT_NEAR(c.got, c.want, 1e-9) << c.name;
}

// The value from the left and from the right at x.
void ExpectSides(const F& f, double x, double left, double right) {
  EXPECT_NEAR(f.LinksWert(x), left, 1e-9) << "left of " << x;
  EXPECT_NEAR(f.RechtsWert(x), right, 1e-9) << "right of " << x;
}

// 0 up to 0, rising to 10 at 10, a jump down to 5 held up to 20, 0 after.
F Profile() { return F(0, 0, 10, 10, 0) + F(10, 5, 20, 5, 0); }
}  // namespace

TEST(Linear, VerticalAndLevelPiecesAndMirrors) {
  const L vertical(3, 1, 3, 5), slope(1, 0, 3, 2), level(2, 4, 10, 4);
  Check({
      {"vertical, inside the band", vertical.Wert(3.0009), 1},
      {"vertical, outside the band", vertical.Wert(3.0011), 0},
      {"vertical, far off", vertical.Wert(4), 0},
      {"not clamped to the piece", slope.Wert(5), 4},
      {"level, inside the band", level.Argument(4.0009), 2},
      {"level, outside the band", level.Argument(4.0011), 0},
      {"sloped: no band", L(0, 1, 10, 5).Argument(5.0005), 10.00125},
  });
  EXPECT_NEAR(L(3, 1, 3 + 1e-14, 5).Wert(3 + 0.5e-14), 3, 0.1);  // wider than 1e-15: the slope is used

  L m = slope;
  m.SpiegelX(0);  // the x range is mirrored, the slope kept
  EXPECT_TRUE(m.IsEqualTo(L(-3, 0, -1, 2), 0));
  m.SpiegelY(1);
  EXPECT_TRUE(m.IsEqualTo(L(-3, 2, -1, 0), 0));
  EXPECT_TRUE(slope == L(1.0009, 0, 3, 2.0009));
  EXPECT_TRUE(slope != L(1, 0, 3.0011, 2));
}

TEST(Funktion, SegmentWithConstantAndItsLimits) {
  const F f(10, 2, 0, 1, 0);  // ends swapped
  ASSERT_EQ(f.Pieces().GetSize(), 3);
  EXPECT_TRUE(f.Pieces()[1] == L(0, 1, 10, 2));
  ExpectWellFormed(f);

  // name, function, piece count, value just after -1e9
  auto check = [](const char* name, const F& g, int pieces, double first) {
    SCOPED_TRACE(name);
    ExpectWellFormed(g);
    EXPECT_EQ(g.Pieces().GetSize(), pieces);
    EXPECT_NEAR(g.RechtsWert(-1e9), first, 1e-6);
  };
  check("end within 1.0 of the limit", F(-1e9 + 0.9, 3, 0, 3, 7), 2, 3);
  check("end 1.1 from the limit", F(-1e9 + 1.1, 3, 0, 3, 7), 3, 7);
  check("end beyond: cut at the limit", F(-2e9, 0, 0, 2, 5), 2, 1);
  check("both ends beyond the right limit", F(2e9, 1, 3e9, 1, 5), 1, 5);
  check("not finite", F(NAN, 1, 3, 1, 5), 1, 5);
  check("the whole range", F(-1e9, 1, 1e9, 3, 5), 1, 1);

  // A segment of 0.001 or less is stored as given, and both searches pass over it at its ends. A
  // bound that falls onto its start leaves a kept part that still meets the constant before it.
  for (const F& sliver : {F(5, 1, 5.0005, 3, 7), F(5, 1, 5, 3, 7)}) {
    SCOPED_TRACE(sliver.Pieces()[2].x0);
    EXPECT_EQ(sliver.Pieces().GetSize(), 3);
    ExpectWellFormed(sliver, -1e9, 1e9, -1);
    ExpectSides(sliver, 5, 7, 7);
    ExpectSides(sliver, 5.0005, 7, 7);
    EXPECT_NEAR(sliver.Integral(0, 10), 70 - 7 * (sliver.Pieces()[2].x0 - 5), 1e-9);  // its width adds nothing
    F kept = sliver;
    kept.RestrictX(5.0002, 8, 0);
    ExpectWellFormed(kept, -1e9, 1e9, -1);
    ExpectSides(kept, 6, 7, 7);
  }
}

TEST(Funktion, ValuesLeftAndRightOfAJump) {
  const F step(0, 1, 10, 1, 0);
  const double rows[][3] = {
      {0.0, 0, 1},  {-0.0009, 0, 1}, {0.0009, 0, 1}, {-0.0011, 0, 0}, {0.0011, 1, 1},
      {10.0, 1, 0}, {5, 1, 1},       {-1e9, 0, 0},   {2e9, 0, 0},  // beyond: the last piece
  };
  for (const auto& r : rows) {
    ExpectSides(step, r[0], r[1], r[2]);
    EXPECT_EQ(step.MinWert(r[0]), std::min(r[1], r[2]));
    EXPECT_EQ(step.MaxWert(r[0]), std::max(r[1], r[2]));
  }
  EXPECT_NEAR(F(-1e9, 0, 1e9, 2e9, 0).RechtsWert(2e9), 3e9, 1e-3);  // extrapolated

  F gone(5);
  const F taken(std::move(gone));
  EXPECT_EQ(gone.Index(0, 1), -1);  // the pieces went with the move
  EXPECT_EQ(gone.RechtsWert(1), 0.0);
}

TEST(Funktion, IntegralAndCentroid) {
  const F five(5), step(0, 1, 10, 1, 0);
  const F signedSteps = F(0, -1, 10, -1, 0) + F(10, 3, 20, 3, 0);
  Check({
      {"constant", five.Integral(0, 2), 10},
      {"reversed bounds", five.Integral(2, 0), -10},
      {"across the step", step.Integral(-5, 5), 5},
      {"across a jump, reversed", Profile().Integral(25, 5), -(37.5 + 50)},
      {"values within 0.001 of 0 add nothing", F(0.0009).Integral(0, 1000), 0},
      {"0.0011 counts", F(0.0011).Integral(0, 1000), 1.1},
      {"a sliver of 0.001 adds nothing", five.Integral(1, 1.001), 0},
      {"centroid of a rectangle", F(0, 2, 10, 2, 0).SchwerpunktX(-5, 50), 5},
      {"centroid of a triangle", F(0, 0, 10, 10, 0).SchwerpunktX(10, 0), 20.0 / 3.0},
      {"centroid across a jump", Profile().SchwerpunktX(0, 20), (50 * 20.0 / 3.0 + 50 * 15) / 100},
      {"negative parts count negatively", signedSteps.SchwerpunktX(0, 20), (-10 * 5 + 30 * 15) / 20.0},
      {"no net area: the middle", (F(-1, -1, 0, -1, 0) + F(0, 1, 1, 1, 0)).SchwerpunktX(-4, 2), -1},
  });
}

TEST(Funktion, ScalarOperationsAndMirrors) {
  const F ramp(0, 0, 10, 10, 0);
  F f = ramp;
  f /= 0.0005;
  EXPECT_TRUE(f.IsEqualTo(ramp, 0));
  f /= -0.0011;
  EXPECT_NEAR(f(5), -5 / 0.0011, 1e-6);
  EXPECT_EQ((-ramp)(5), -5.0);

  F zero = ramp;
  zero.Negate();              // the zero function, not the negated one
  EXPECT_FALSE(zero == F());  // same values, different piece counts
  EXPECT_TRUE(zero == F(0, 0, 10, 0, 0));

  F mirrored = ramp;
  mirrored.SpiegelX(5);  // pieces keep their slopes: the ramp still rises
  ExpectWellFormed(mirrored, 10 - 1e9, 10 + 1e9);
  EXPECT_EQ(mirrored(2), 2.0);
  EXPECT_EQ(mirrored.LinksWert(10), 10.0);
  mirrored.SpiegelY(1);
  EXPECT_EQ(mirrored(2), 0.0);
  EXPECT_EQ(mirrored(20), 2.0);
}

TEST(Funktion, PointwiseArithmeticWithBreaksAtDifferentX) {
  const F f = Profile();
  const F g = F(5, 2, 15, -2, 1) + F(-3, 4, 12, 4, 0);
  const F sum = f + g, diff = f - g, prod = f * F(5, 3, 25, 3, 1), self = f + f;
  ExpectWellFormed(sum);
  ExpectPointwise(sum, f, g, [](double a, double b) { return a + b; });
  ExpectPointwise(diff, f, g, [](double a, double b) { return a - b; });
  ExpectPointwise(prod, f, F(5, 3, 25, 3, 1), [](double a, double b) { return a * b; });
  ExpectPointwise(self, f, f, [](double a, double b) { return a + b; });
  EXPECT_EQ(self.Pieces().GetSize(), f.Pieces().GetSize());
  // Each break of either operand is a break of the result: 0, 10, 20 and -3, 5, 12, 15.
  EXPECT_EQ(sum.Pieces().GetSize(), 8);

  // A break within 0.001 of a break falls onto it; one just beyond the band is kept.
  const F near = F(0, 0, 10, 10, 0) + F(10.0009, 1, 30, 1, 0);
  ExpectWellFormed(near);
  EXPECT_EQ(near.Pieces().GetSize(), 4);
  EXPECT_EQ(near.RechtsWert(10), 1.0);
  ExpectWellFormed(F(0, 0, 10, 10, 0) + F(5, 1, 5.0005, 1, 0));  // a sliver of g is absorbed
  const F apart = F(0, 0, 10, 10, 0) + F(10.0011, 1, 30, 1, 0);
  ExpectWellFormed(apart);
  EXPECT_EQ(apart.Pieces().GetSize(), 5);

  // g covers another range after a mirror: this function keeps its values outside it.
  F shifted(1);
  shifted.SpiegelX(1e8);
  const F part = F(0) + shifted;
  EXPECT_EQ(part(0), 1.0);
  EXPECT_EQ(part(-9.5e8), 0.0);
}

TEST(Funktion, MinimumAndMaximumInsertCrossings) {
  const F up(0, 0, 10, 10, 0), down(0, 10, 10, 0, 0);
  struct Row {
    const char* name;
    F f, g;
    double cross;  // a break of both results
  } rows[] = {
      {"crossing ramps", up, down, 5},
      {"ramp and constant", up, F(4), 4},
      {"profile with jumps", Profile(), F(0, 12, 20, 2, 0), 8},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    const F lo = r.f & r.g, hi = r.f | r.g;
    ExpectWellFormed(lo);
    ExpectWellFormed(hi);
    ExpectPointwise(lo, r.f, r.g, [](double a, double b) { return std::min(a, b); });
    ExpectPointwise(hi, r.f, r.g, [](double a, double b) { return std::max(a, b); });
    for (double x : {r.cross - 0.3, r.cross + 0.7}) {  // exact between the breaks too
      EXPECT_NEAR(lo(x), std::min(r.f(x), r.g(x)), 1e-9);
      EXPECT_NEAR(hi(x), std::max(r.f(x), r.g(x)), 1e-9);
    }
    EXPECT_EQ(lo.Index(r.cross, 1), lo.Index(r.cross, 0) + 1);
    EXPECT_EQ(hi.Index(r.cross, 1), hi.Index(r.cross, 0) + 1);
  }
  // A crossing within 0.001 of a break makes no sliver.
  const F touch = up & F(9.9995);
  ExpectWellFormed(touch);
  EXPECT_EQ(touch.Pieces().GetSize(), 3);
}

TEST(Funktion, SearchesAndExtremesOnAProfileWithJumps) {
  const F h = Profile();
  Check({
      {"on the ramp", h.LinksX(7, -100), 7},
      {"within the jump down", h.LinksX(7, 8), 10},
      {"from a point on a level piece", h.LinksX(5, 12), 12},
      {"within the last jump", h.LinksX(3, 12), 20},
      {"band at the top", h.LinksX(10.0009, -5), 10},
      {"not reached", h.LinksX(10.0011, -5), 1e9},
      {"from the right: the jump", h.RechtsX(7, 100), 10},
      {"from the right on the ramp", h.RechtsX(7, 9), 7},
      {"from the right: the last jump", h.RechtsX(2.5, 25), 20},
      {"from the right: not reached", h.RechtsX(11, 25), -1e9},
      {"greatest up to the jump", h.MaxY(0, 10), 10},
      {"greatest after the jump", h.MaxY(10, 20), 5},
      {"jump inside counts both values", h.MaxY(15, 5), 10},
      {"least with the jump inside", h.MinY(5, 15), 5},
      {"least across the last jump", h.MinY(15, 25), 0},
      {"bounds together", h.MaxY(20, 20.0005), 5},
      {"bounds together, least", h.MinY(20, 20.0005), 0},
  });
}

TEST(Funktion, RestrictionsInXAndY) {
  F f = Profile();
  f.RestrictX(15, 5, -1);
  ExpectWellFormed(f);
  for (const auto& r : {std::array<double, 3>{5, -1, 5}, {10, 10, 5}, {15, 5, -1}, {2, -1, -1}, {12, 5, 5}})
    ExpectSides(f, r[0], r[1], r[2]);
  F snapped = Profile();
  snapped.RestrictX(9.9995, 30, -1);  // the bound falls onto the break at 10
  ExpectWellFormed(snapped);
  ExpectSides(snapped, 10, -1, 5);
  EXPECT_TRUE(F(Profile()).RestrictX(3, 3.0009, 2) == F(2));

  const F ramp(0, 0, 10, 10, 0);
  F clamped = ramp;
  clamped.RestrictY(7, 2);
  ExpectWellFormed(clamped);
  ExpectPointwise(clamped, ramp, F(0), [](double a, double) { return std::min(std::max(a, 2.0), 7.0); });
  EXPECT_EQ(clamped(1), 2.0);
  EXPECT_EQ(clamped.Index(7, 1), clamped.Index(7, 0) + 1);  // a break where the ramp leaves the band
}

TEST(Funktion, LowerAndUpperCourses) {
  // A tent 0 -> 10 -> 0 on 0 .. 20, then 4 up to 30.
  const F tent = F(0, 0, 10, 10, 0) + F(10, 10, 20, 0, 0) + F(20, 4, 30, 4, 0);
  struct Row {
    const char* name;
    F f;
    double x, left, right;
  } rows[] = {
      {"rising course", F(tent).MaxVerlauf(0, 30), 15, 10, 10},
      {"rising course ends at its bound", F(tent).MaxVerlauf(0, 30), 30, 10, 0},
      {"falling course ignores the jump up", F(tent).MinVerlauf(10, 30), 25, 0, 0},
      {"leftwards: starts with the value left of 30", F(tent).MinVerlauf(30, 10), 25, 4, 4},
      {"leftwards: follows the jump down at 20", F(tent).MinVerlauf(30, 10), 15, 0, 0},
      {"leftwards: outside kept", F(tent).MinVerlauf(30, 10), 10, 10, 0},
      {"partial course jumps at its far bound", F(tent).MaxVerlauf(5, 15), 15, 10, 5},
      {"bounds within 0.001 change nothing", F(tent).MaxVerlauf(15, 15.0009), 17, 3, 3},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    ExpectWellFormed(r.f);
    ExpectSides(r.f, r.x, r.left, r.right);
  }

  // Falling 5 -> 1, a jump up to 3 and falling to -1: the level 1 holds until the piece falls
  // through it at 15, where a break is inserted.
  F course = F(0, 5, 10, 1, 0) + F(10, 3, 20, -1, 0);
  course.MinVerlauf(0, 20);
  ExpectWellFormed(course);
  EXPECT_NEAR(course(12), 1, 1e-12);
  EXPECT_NEAR(course(17.5), 0, 1e-12);
  EXPECT_EQ(course.Index(15, 1), course.Index(15, 0) + 1);
  ExpectSides(course, 10, 1, 1);
}
