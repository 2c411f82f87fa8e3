#include "basics/general/UtilityGeneral.h"

#include <cmath>

int iqrkor(double a, double b) { return std::fabs(a - b) <= 0.001 ? 1 : 0; }

double distance2Points2D(double x1, double y1, double x2, double y2) {
  const double dx = x2 - x1;
  const double dy = y2 - y1;
  return std::sqrt(dx * dx + dy * dy);
}
