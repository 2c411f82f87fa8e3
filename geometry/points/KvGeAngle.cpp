#include "geometry/points/KvGeAngle.h"

#include <cmath>

#include "basics/KvMath.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

KvGeAngle::~KvGeAngle() = default;

KvGeAngle& KvGeAngle::Set(double dx, double dy) {
  m_Rad = KVMATH_ATan3(dy, dx);
  return *this;
}

double KvGeAngle::Cos() const { return std::cos(m_Rad); }
double KvGeAngle::Sin() const { return std::sin(m_Rad); }
double KvGeAngle::Tan() const { return std::tan(m_Rad); }
double KvGeAngle::Cot() const { return 1.0 / std::tan(m_Rad); }

KvGeAngle& KvGeAngle::ArcCos(double x) {
  m_Rad = std::acos(x);
  return *this;
}

KvGeAngle& KvGeAngle::ArcSin(double x) {
  m_Rad = std::asin(x);
  return *this;
}

KvGeAngle& KvGeAngle::ArcTan(double x) {
  m_Rad = std::atan2(x, 1.0);
  return *this;
}

KvGeAngle& KvGeAngle::ArcCot(double x) {
  m_Rad = x == 0.0 ? std::copysign(1.5707963267948966, x) : std::atan2(1.0 / x, 1.0);
  return *this;
}

namespace {
// How many spans from lower an angle may lie and still be normalised by literal stepping.
constexpr double kMaxStepSpans = 16777216.0;
}  // namespace

KvGeAngle& KvGeAngle::Normalize(const KvGeAngle& upper, const KvGeAngle& lower, int lowerIncluded) {
  const KvGeAngle span = upper - lower;
  if (!(span > KvGeAngle_Deg0())) {
    m_Rad = lowerIncluded ? lower.m_Rad : upper.m_Rad;
    return *this;
  }
  // The entry tests of the two loops: an angle already in the range takes no step and comes
  // back as it is, also when a bound is infinite.
  const bool outside = lowerIncluded ? (*this < lower || *this >= upper) : (*this > upper || *this <= lower);
  if (!outside) return *this;
  // Outside, an infinite bound leaves no whole number of spans to step by, and a NaN or
  // infinite angle would step for ever.
  if (!std::isfinite(m_Rad) || !std::isfinite(span.m_Rad)) {
    m_Rad = std::nan("");
    return *this;
  }
  // Up to kMaxStepSpans spans from lower the loops step literally. Farther out the remainders
  // of the angle and of lower bring the angle within two spans of lower first (they cannot
  // overflow, unlike the difference of two huge values). The step limit is a last guard for
  // spans so small against the angle that adding one no longer moves it.
  if (std::fabs(m_Rad - lower.m_Rad) / span.m_Rad > kMaxStepSpans)
    m_Rad = lower.m_Rad + (std::fmod(m_Rad, span.m_Rad) - std::fmod(lower.m_Rad, span.m_Rad));
  constexpr long kMaxSteps = 2 * static_cast<long>(kMaxStepSpans) + 64;
  long steps = 0;
  if (lowerIncluded) {
    while (*this < lower && ++steps < kMaxSteps) *this += span;
    while (*this >= upper && ++steps < kMaxSteps) *this -= span;
  } else {
    while (*this > upper && ++steps < kMaxSteps) *this -= span;
    while (*this <= lower && ++steps < kMaxSteps) *this += span;
  }
  return *this;
}

int KvGeAngle::IsBetween(const KvGeAngle& a, const KvGeAngle& b, int counterClockwise) const {
  const KvGeAngle& start = counterClockwise ? a : b;
  const KvGeAngle& end = counterClockwise ? b : a;
  const KvGeAngle u = (*this - start).Normalized(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 1);
  const KvGeAngle v = (end - start).Normalized(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 0);
  return u <= v;
}

const KvGeAngle& KvGeAngle_Deg0() {
  static const KvGeAngle a(0.0);
  return a;
}
const KvGeAngle& KvGeAngle_Deg30() {
  static const KvGeAngle a(0.5235987755982988);
  return a;
}
const KvGeAngle& KvGeAngle_Deg45() {
  static const KvGeAngle a(0.7853981633974483);
  return a;
}
const KvGeAngle& KvGeAngle_Deg60() {
  static const KvGeAngle a(1.0471975511965976);
  return a;
}
const KvGeAngle& KvGeAngle_Deg90() {
  static const KvGeAngle a(1.5707963267948966);
  return a;
}
const KvGeAngle& KvGeAngle_Deg180() {
  static const KvGeAngle a(3.141592653589793);
  return a;
}
const KvGeAngle& KvGeAngle_Deg270() {
  static const KvGeAngle a(4.71238898038469);
  return a;
}
const KvGeAngle& KvGeAngle_Deg360() {
  static const KvGeAngle a(6.283185307179586);
  return a;
}

void CalcMinMax(const KvGeAngle& a, const KvGeAngle& b, KvGeAngle& min, KvGeAngle& max) {
  if (b.Rad() > a.Rad()) {
    min = a;
    max = b;
  } else {
    min = b;
    max = a;
  }
}

int IsSimelarlyDirected(const KvGeAngle& a, const KvGeAngle& b) {
  return (b - a).Normalized(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 1) == KvGeAngle_Deg0();
}

int IsNormal(const KvGeAngle& a, const KvGeAngle& b) {
  return (b - a).Normalized(KvGeAngle_Deg180(), KvGeAngle_Deg0(), 1) == KvGeAngle_Deg90();
}

int IsParallel(const KvGeAngle& a, const KvGeAngle& b, double eps) {
  KvGeAngle d = b - a;
  if (eps > kKvGeAngularTol) {
    const KvGeAngle& pi = KvGeAngle_Deg180();
    if (d < KvGeAngle(eps) && d >= KvGeAngle(-eps)) d = 0.0;
    if (d > pi - KvGeAngle(eps) && d <= pi + KvGeAngle(eps)) d = pi + KvGeAngle(0.1 * eps);
  }
  d.Normalize(KvGeAngle_Deg180(), KvGeAngle_Deg0(), 1);
  return !(-eps > d.Rad()) && !(d.Rad() > eps);
}

void CartCylind(double x, double y, double z, double& r, KvGeAngle& angle, double& h) {
  r = std::sqrt(x * x + y * y);
  angle = KvGeAngle(x, y);
  h = z;
}

void CartSphere(double x, double y, double z, double& r, KvGeAngle& azimuth, KvGeAngle& elevation) {
  const double plan = std::sqrt(x * x + y * y);
  azimuth = KvGeAngle(x, y);
  elevation = KvGeAngle(plan, z);
  r = plan;
}

int BetweenAng(double a, double start, double end) {
  const KvGeAngle u = KvGeAngle(a - start).Normalized(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 1);
  const KvGeAngle v = KvGeAngle(end - start).Normalized(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 0);
  return u <= v;
}

KvGeAngle& KvGeAngle::Set(const KvGePoint2d& p) { return Set(p.x, p.y); }
KvGeAngle& KvGeAngle::Set(const KvGePoint2d& from, const KvGePoint2d& to) { return Set(to.x - from.x, to.y - from.y); }
KvGeAngle& KvGeAngle::Set(const KvGePoint3d& p) { return Set(p.x, p.y); }
KvGeAngle& KvGeAngle::Set(const KvGePoint3d& from, const KvGePoint3d& to) { return Set(to.x - from.x, to.y - from.y); }

KvGePoint2d KvGeAngle::Point2d() const { return KvGePoint2d(Cos(), Sin()); }
KvGePoint2d KvGeAngle::Point2d(double r) const { return KvGePoint2d(r * Cos(), r * Sin()); }
KvGePoint3d KvGeAngle::Point3d() const { return KvGePoint3d(Cos(), Sin(), 0.0); }
KvGePoint3d KvGeAngle::Point3d(double r, double z) const { return KvGePoint3d(r * Cos(), r * Sin(), z); }
