#include "basics/companion/KvBtCompare.h"

#include <cmath>

int IsEqualRelative(double a, double b, double absEps, double relEps) {
  const double diff = std::fabs(a - b);
  if (diff <= absEps) return 1;
  const double scale = std::fmax(std::fabs(a), std::fabs(b));
  return diff <= relEps * scale ? 1 : 0;
}

double runden(double value, double step, double eps) {
  if (step == 0.0) return value;
  const double q = std::fabs(value) / std::fabs(step);
  const double n = std::floor(q + 0.5 + eps);
  const double magnitude = n * std::fabs(step);
  return value < 0.0 ? -magnitude : magnitude;
}

int mod(int a, int b) {
  if (b == 0) return 0;
  // Widened so that INT_MIN and a divisor of INT_MIN cannot overflow.
  const long long m = b < 0 ? -static_cast<long long>(b) : static_cast<long long>(b);
  long long r = static_cast<long long>(a) % m;
  if (r < 0) r += m;
  return static_cast<int>(r);
}
