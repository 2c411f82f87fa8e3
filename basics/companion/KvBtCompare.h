#pragma once
/// @file
/// Tolerant scalar comparisons and the small numeric routines of the companion basics library.
///
/// Every comparison takes an absolute tolerance eps and is inclusive: two values whose
/// difference equals eps are equal. "a is less than b" means that a lies below b by more than
/// eps, so IsLess and IsGreaterOrEqual are exact negations of each other, as are IsGreater and
/// IsLessOrEqual. The default 0.001 is the drawing-unit tolerance of the geometry library.

/// \file
/// Non-finite input: IsEqual, IsLess, IsGreater and their kin answer 0 for NaN, KvBtRealCompare
/// answers 0 and sgn answers 0; infinities compare as the largest numbers. See docs/non-finite-
/// policy.md.

#include "basics/companion/UtilityBasicsClassExport.h"

/// 1 when |a - b| <= eps.
inline int IsEqual(double a, double b, double eps = 0.001) { return (a - b <= eps && b - a <= eps) ? 1 : 0; }
/// 1 when |a - b| > eps: the exact negation of IsEqual.
inline int IsNotEqual(double a, double b, double eps = 0.001) { return IsEqual(a, b, eps) ? 0 : 1; }
/// 1 when a < b - eps: a is smaller than b by more than eps.
inline int IsLess(double a, double b, double eps = 0.001) { return (b - a > eps) ? 1 : 0; }
/// 1 when a <= b + eps: a is not greater than b by more than eps.
inline int IsLessOrEqual(double a, double b, double eps = 0.001) { return (a - b <= eps) ? 1 : 0; }
/// 1 when a > b + eps.
inline int IsGreater(double a, double b, double eps = 0.001) { return (a - b > eps) ? 1 : 0; }
/// 1 when a >= b - eps.
inline int IsGreaterOrEqual(double a, double b, double eps = 0.001) { return (b - a <= eps) ? 1 : 0; }

/// Three-way tolerant comparison: -1 when a < b - eps, 1 when a > b + eps, 0 within the band.
inline int KvBtRealCompare(double a, double b, double eps = 0.001) {
  if (b - a > eps) return -1;
  if (a - b > eps) return 1;
  return 0;
}

/// Equality relative to the size of the values: 1 when |a - b| <= absEps or
/// |a - b| <= relEps * max(|a|, |b|). Both bands are inclusive.
KVBT_API int IsEqualRelative(double a, double b, double absEps, double relEps);

/// Rounds value to the nearest multiple of step, halves away from zero. eps is a fraction of
/// the step added at the half-way point so that a quotient that lands just below .5 through
/// binary representation (0.25 / 0.1 = 2.4999999999999996) still rounds away from zero; the
/// geometry library calls runden(v, 0.1, 0.001). A step of 0 returns the value unchanged.
KVBT_API double runden(double value, double step, double eps);

/// x * x.
inline double quadrat(double x) { return x * x; }

/// -1, 0 or 1 by the exact sign of x; NaN gives 0.
inline int sgn(double x) { return x > 0.0 ? 1 : (x < 0.0 ? -1 : 0); }

/// Remainder of a by b in 0 .. |b| - 1, also for negative dividends (mod(-1, 4) == 3), so that
/// the result can index a cyclic sequence. mod(a, 0) is 0.
KVBT_API int mod(int a, int b);

/// Writes the smaller of a and b to min and the larger to max.
inline void CalcMinMax(double a, double b, double& min, double& max) {
  if (b < a) {
    min = b;
    max = a;
  } else {
    min = a;
    max = b;
  }
}
