#pragma once
/// @file
/// Scalar helpers of the geometry library. They do not guard their input: a negative square
/// root or a step of 0 gives what the hardware gives. Conversions to int saturate at the int
/// range (NaN gives 0) rather than overflow.

/// \file
/// Non-finite input: NaN makes no tolerant comparison hold and rounds to 0; rounding to int
/// saturates at the int range. See docs/non-finite-policy.md.

#include <cstdint>

#include "basics/UtilityGeometryExport.h"

/// |x|.
KVGE_API double AbsR(double x);
/// The square root; a negative x gives NaN.
KVGE_API double Sqrt(double x);

/// i as a double.
KVGE_API double KVMATH_Float(int i);
/// b when b <= a, otherwise a.
KVGE_API double KVMATH_Min(double a, double b);
/// a when a > b, otherwise b.
KVGE_API double KVMATH_Max(double a, double b);
/// Half away from zero: 2.5 -> 3, -2.5 -> -3, -2.4 -> -2.
KVGE_API int KVMATH_Round(double x);
/// Toward zero: -2.9 -> -2.
KVGE_API int KVMATH_Trunc(double x);
/// Direction of (x, y) in -pi .. pi, y first; 0 when both are exactly 0.
KVGE_API double KVMATH_ATan3(double y, double x);
/// Bits 0 .. 15 address the word; a larger bit number leaves the word alone (test: 0).
KVGE_API std::uint16_t KVMATH_BitClear(std::uint16_t value, unsigned int bit);
/// value with the bit set; a bit number beyond 15 leaves the word alone.
KVGE_API std::uint16_t KVMATH_BitSet(std::uint16_t value, unsigned int bit);
/// 1 when the bit is set; 0 for a bit number beyond 15.
KVGE_API int KVMATH_BitTest(std::uint16_t value, unsigned int bit);

/// Rounds x to the nearest multiple of step, halves away from zero. The branch is chosen by the
/// sign of x, not of the quotient, so with a negative step the two halves swap their direction;
/// this is the required behaviour, deliberately kept. The rule applies to the computed quotient:
/// round(0.3, 0.2) is 0.2 because 0.3 / 0.2 evaluates just below 1.5.
KVGE_API double round(double x, double step);

/// 1 when the direction a lies on the counter-clockwise sweep from start to end (both ends
/// included, within 1e-6 radians); equal start and end sweep the full turn.
KVGE_API int BetweenAng(double a, double start, double end);
