#include "basics/KvMath.h"

#include <cmath>

double AbsR(double x) { return std::fabs(x); }
double Sqrt(double x) { return std::sqrt(x); }
double KVMATH_Float(int i) { return static_cast<double>(i); }
double KVMATH_Min(double a, double b) { return b <= a ? b : a; }
double KVMATH_Max(double a, double b) { return a > b ? a : b; }

namespace {
// Conversion of an integral double to int that saturates instead of overflowing; NaN gives 0.
int ToInt(double v) {
  if (!(v == v)) return 0;
  if (v >= 2147483647.0) return 2147483647;
  if (v <= -2147483648.0) return -2147483647 - 1;
  return static_cast<int>(v);
}
}  // namespace

int KVMATH_Round(double x) {
  if (x >= 0.0) return ToInt(std::floor(x + 0.5));
  return ToInt(-std::floor(0.5 - x));
}

int KVMATH_Trunc(double x) { return ToInt(x); }

double KVMATH_ATan3(double y, double x) {
  if (y == 0.0 && x == 0.0) return 0.0;
  return std::atan2(y, x);
}

std::uint16_t KVMATH_BitClear(std::uint16_t value, unsigned int bit) {
  if (bit > 15) return value;
  return static_cast<std::uint16_t>(value & ~(1u << bit));
}

std::uint16_t KVMATH_BitSet(std::uint16_t value, unsigned int bit) {
  if (bit > 15) return value;
  return static_cast<std::uint16_t>(value | (1u << bit));
}

int KVMATH_BitTest(std::uint16_t value, unsigned int bit) {
  if (bit > 15) return 0;
  return (value >> bit) & 1u;
}

double round(double x, double step) {
  const double q = x / step;
  if (x >= 0.0) return std::floor(q + 0.5) * step;
  return -std::floor(0.5 - q) * step;
}
