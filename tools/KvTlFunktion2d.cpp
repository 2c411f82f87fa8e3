#include "tools/KvTlFunktion2d.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kTol = kKvGeLinearTol;
constexpr double kLimit = 1e9;
// A segment end this close to +-1e9 counts as the limit itself.
constexpr double kLimitTol = 1.0;

// The value of a piece at x, exactly y0 (y1) at its own start (end): a vertical piece so keeps
// both of its values, and a piece cut at a break keeps the value stored there.
double StartValue(const KvTlLinear2d& p, double x) { return x == p.x0 ? p.y0 : p.Wert(x); }
double EndValue(const KvTlLinear2d& p, double x) { return x == p.x1 ? p.y1 : p.Wert(x); }

// y lies between u and v (either order), widened by the tolerance on both sides.
bool Reaches(double y, double u, double v) {
  if (v < u) std::swap(u, v);
  return IsLessOrEqual(u, y, kTol) && IsLessOrEqual(y, v, kTol);
}

// The growth step of a result array that will hold about n pieces: one allocation for the
// common case, bounded so that a huge operand does not reserve far ahead.
int GrowStep(long long n) { return static_cast<int>(std::min<long long>(std::max<long long>(n, 4), 1 << 16)); }

}  // namespace

KvTlLinear2d::~KvTlLinear2d() = default;
KvTlFunktion2d::~KvTlFunktion2d() = default;

KvTlFunktion2d& KvTlFunktion2d::Set(double c) {
  m_Pieces.SetSize(1);
  m_Pieces[0].Set(-kLimit, c, kLimit, c);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::Set(double xa, double ya, double xb, double yb, double c) {
  Set(c);
  if (!std::isfinite(xa) || !std::isfinite(xb)) return *this;
  if (xa > xb) {
    std::swap(xa, xb);
    std::swap(ya, yb);
  }
  if (!IsLess(-kLimit, xb, kLimitTol) || !IsLess(xa, kLimit, kLimitTol)) return *this;
  const KvTlLinear2d line(xa, ya, xb, yb);
  m_Pieces.RemoveAll();
  const bool left = IsLess(-kLimit, xa, kLimitTol);
  const bool right = IsLess(xb, kLimit, kLimitTol);
  if (left) {
    m_Pieces.Add(KvTlLinear2d(-kLimit, c, xa, c));
  } else {
    if (xa < -kLimit - kLimitTol) ya = line.Wert(-kLimit);
    xa = -kLimit;
  }
  if (!right) {
    if (xb > kLimit + kLimitTol) yb = line.Wert(kLimit);
    xb = kLimit;
  }
  m_Pieces.Add(KvTlLinear2d(xa, ya, xb, yb));
  if (right) m_Pieces.Add(KvTlLinear2d(xb, c, kLimit, c));
  return *this;
}

int KvTlFunktion2d::Index(double x, int right) const {
  int lo = 0;
  int hi = m_Pieces.GetSize() - 1;
  if (hi < 0) return -1;
  const KvTlLinear2d* p = m_Pieces.GetData();
  while (lo < hi) {
    const int mid = lo + (hi - lo) / 2;
    const int before = right ? IsLess(x, p[mid].x1, kTol) : IsLessOrEqual(x, p[mid].x1, kTol);
    if (before)
      hi = mid;
    else
      lo = mid + 1;
  }
  return hi;
}

double KvTlFunktion2d::LinksWert(double x) const {
  const int k = Index(x, 0);
  return k < 0 ? 0.0 : m_Pieces.GetData()[k].Wert(x);
}

double KvTlFunktion2d::RechtsWert(double x) const {
  const int k = Index(x, 1);
  return k < 0 ? 0.0 : m_Pieces.GetData()[k].Wert(x);
}

double KvTlFunktion2d::MinWert(double x) const { return std::min(LinksWert(x), RechtsWert(x)); }
double KvTlFunktion2d::MaxWert(double x) const { return std::max(LinksWert(x), RechtsWert(x)); }

double KvTlFunktion2d::LinksX(double y, double from) const {
  const int n = m_Pieces.GetSize();
  if (n == 0) return from;
  const KvTlLinear2d* p = m_Pieces.GetData();
  const int first = Index(from, 0);
  for (int k = first; k < n; ++k) {
    const KvTlLinear2d& q = p[k];
    if (k > first && Reaches(y, p[k - 1].y1, q.y0)) return q.x0;  // within the jump at the break
    double lo = from;
    if (!(lo > q.x0)) lo = q.x0;
    if (lo > q.x1) lo = q.x1;
    const double va = StartValue(q, lo);
    if (IsEqual(va, y, kTol)) return lo;
    if (Reaches(y, va, q.y1)) return std::min(std::max(q.Argument(y), lo), q.x1);
  }
  return p[n - 1].x1;
}

double KvTlFunktion2d::RechtsX(double y, double from) const {
  const int n = m_Pieces.GetSize();
  if (n == 0) return from;
  const KvTlLinear2d* p = m_Pieces.GetData();
  const int first = Index(from, 1);
  for (int k = first; k >= 0; --k) {
    const KvTlLinear2d& q = p[k];
    if (k < first && Reaches(y, q.y1, p[k + 1].y0)) return q.x1;
    double hi = from;
    if (!(hi < q.x1)) hi = q.x1;
    if (hi < q.x0) hi = q.x0;
    const double vb = EndValue(q, hi);
    if (IsEqual(vb, y, kTol)) return hi;
    if (Reaches(y, q.y0, vb)) return std::max(std::min(q.Argument(y), hi), q.x0);
  }
  return p[0].x0;
}

namespace {

double ExtremeY(const KvTlFunktion2d& f, double a, double b, bool greatest) {
  const KvTlLinear2d* p = f.Pieces().GetData();
  if (f.Pieces().GetSize() == 0) return 0.0;
  if (a > b) std::swap(a, b);
  if (!IsLess(a, b, kTol)) return greatest ? f.MaxWert(a) : f.MinWert(a);
  // Bounds that straddle a break within the tolerance can find the pieces in reverse order.
  int i0 = f.Index(a, 1);
  int i1 = f.Index(b, 0);
  if (i1 < i0) std::swap(i0, i1);
  double r = StartValue(p[i0], a);
  for (int k = i0; k <= i1; ++k) {
    const double va = StartValue(p[k], k == i0 ? a : p[k].x0);
    const double vb = EndValue(p[k], k == i1 ? b : p[k].x1);
    r = greatest ? std::max(r, std::max(va, vb)) : std::min(r, std::min(va, vb));
  }
  return r;
}

}  // namespace

double KvTlFunktion2d::MinY(double a, double b) const { return ExtremeY(*this, a, b, false); }
double KvTlFunktion2d::MaxY(double a, double b) const { return ExtremeY(*this, a, b, true); }

double KvTlFunktion2d::Integral(double a, double b) const {
  double sign = 1.0;
  if (a > b) {
    std::swap(a, b);
    sign = -1.0;
  }
  const int n = m_Pieces.GetSize();
  const KvTlLinear2d* p = m_Pieces.GetData();
  double sum = 0.0;
  // Pieces that end before a (beyond the tolerance) or start at b or later cannot contribute.
  for (int k = std::max(Index(a, 0), 0); k < n && IsLess(p[k].x0, b, kTol); ++k) {
    const double lo = std::max(a, p[k].x0);
    const double hi = std::min(b, p[k].x1);
    if (!IsLess(lo, hi, kTol)) continue;
    const double ya = p[k].Wert(lo);
    const double yb = p[k].Wert(hi);
    if (IsEqual(ya, 0.0, kTol) && IsEqual(yb, 0.0, kTol)) continue;
    sum += (ya + yb) * (hi - lo) / 2.0;
  }
  return sign * sum;
}

double KvTlFunktion2d::SchwerpunktX(double a, double b) const {
  if (a > b) std::swap(a, b);
  // Moments are taken about the middle of the range to keep their digits.
  const double m = 0.5 * (a + b);
  const int n = m_Pieces.GetSize();
  const KvTlLinear2d* p = m_Pieces.GetData();
  double area = 0.0;
  double unsignedArea = 0.0;
  double moment = 0.0;
  for (int k = std::max(Index(a, 0), 0); k < n && IsLess(p[k].x0, b, kTol); ++k) {
    const double lo = std::max(a, p[k].x0);
    const double hi = std::min(b, p[k].x1);
    if (!IsLess(lo, hi, kTol)) continue;
    const double u = p[k].Wert(lo);
    const double v = p[k].Wert(hi);
    if (IsEqual(u, 0.0, kTol) && IsEqual(v, 0.0, kTol)) continue;
    const double w = hi - lo;
    const double s = lo - m;
    const double t = hi - m;
    area += (u + v) * w / 2.0;
    unsignedArea += (std::fabs(u) + std::fabs(v)) * w / 2.0;
    moment += w / 6.0 * (u * (2.0 * s + t) + v * (s + 2.0 * t));
  }
  if (!(std::fabs(area) > 1e-9 * unsignedArea)) return m;
  return m + moment / area;
}

double KvTlFunktion2d::Snap(double x) const {
  const int n = m_Pieces.GetSize();
  const KvTlLinear2d* p = m_Pieces.GetData();
  const double first = p[0].x0;
  const double last = p[n - 1].x1;
  if (!(x > first) || IsEqual(x, first, kTol)) return first;
  if (x >= last || IsEqual(x, last, kTol)) return last;
  const int k = Index(x, 0);
  return IsEqual(x, p[k].x1, kTol) ? p[k].x1 : x;
}

void KvTlFunktion2d::AppendSlice(PieceArray& out, double lo, double hi) const {
  const int n = m_Pieces.GetSize();
  const KvTlLinear2d* p = m_Pieces.GetData();
  // The first piece that reaches beyond lo itself: the right search would pass over a piece of
  // 0.001 or less that Set left at lo, and the slices would then not start at lo.
  int k = std::max(Index(lo, 0), 0);
  while (k < n && !(p[k].x1 > lo)) ++k;
  for (; k < n && p[k].x0 < hi; ++k) {
    const double a = std::max(lo, p[k].x0);
    const double b = std::min(hi, p[k].x1);
    if (a < b) out.Add(KvTlLinear2d(a, StartValue(p[k], a), b, EndValue(p[k], b)));
  }
}

void KvTlFunktion2d::LowerCourse(double a, double b) {
  const int n = m_Pieces.GetSize();
  const double first = m_Pieces.GetData()[0].x0;
  const double last = m_Pieces.GetData()[n - 1].x1;
  const double lo = Snap(a);
  const double hi = Snap(b);
  if (!IsLess(lo, hi, kTol)) return;
  PieceArray mid;
  AppendSlice(mid, lo, hi);
  if (mid.GetSize() == 0) return;
  PieceArray out;
  out.SetSize(0, GrowStep(2LL * n + 2));
  if (lo > first) AppendSlice(out, first, lo);
  const int course = out.GetSize();
  // A level stretch joins the level piece before it when that one ends where it starts.
  auto addLevel = [&out, course](double xa, double xb, double level) {
    const int size = out.GetSize();
    KvTlLinear2d* prev = size > course ? &out[size - 1] : nullptr;
    if (prev != nullptr && prev->x1 == xa && prev->y0 == level && prev->y1 == level)
      prev->x1 = xb;
    else
      out.Add(KvTlLinear2d(xa, level, xb, level));
  };
  double level = mid[0].y0;
  for (const KvTlLinear2d& q : mid) {
    if (q.y0 < level) level = q.y0;  // a jump down is followed at once
    if (!(q.y1 < level)) {
      addLevel(q.x0, q.x1, level);
      continue;
    }
    double start = q.x0;
    if (q.y0 > level) {
      // The piece falls through the level: level up to the crossing, then the piece. A crossing
      // within the tolerance of the end leaves the drop to the break.
      const double xc = q.Argument(level);
      if (!IsLess(xc, q.x1, kTol)) {
        addLevel(q.x0, q.x1, level);
        continue;
      }
      if (IsLess(start, xc, kTol)) {
        addLevel(start, xc, level);
        start = xc;
      }
    }
    out.Add(KvTlLinear2d(start, level, q.x1, q.y1));
    level = q.y1;
  }
  if (hi < last) AppendSlice(out, hi, last);
  m_Pieces = std::move(out);
}

void KvTlFunktion2d::Reflect() {
  const int n = m_Pieces.GetSize();
  KvTlLinear2d* p = m_Pieces.GetData();
  for (int k = 0; k < n; ++k) p[k].Set(-p[k].x1, p[k].y1, -p[k].x0, p[k].y0);
  std::reverse(p, p + n);
}

void KvTlFunktion2d::ScaleValues(double k) {
  for (KvTlLinear2d& q : m_Pieces) {
    q.y0 *= k;
    q.y1 *= k;
  }
}

KvTlFunktion2d& KvTlFunktion2d::MinVerlauf(double a, double b) {
  if (m_Pieces.GetSize() == 0) return *this;
  if (IsLess(a, b, kTol)) {
    LowerCourse(a, b);
  } else if (IsLess(b, a, kTol)) {
    // Travelling leftwards is travelling rightwards on the function mirrored about x = 0.
    Reflect();
    LowerCourse(-a, -b);
    Reflect();
  }
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::MaxVerlauf(double a, double b) {
  ScaleValues(-1.0);
  MinVerlauf(a, b);
  ScaleValues(-1.0);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::RestrictX(double a, double b, double c) {
  const int n = m_Pieces.GetSize();
  if (n == 0) return *this;
  if (a > b) std::swap(a, b);
  const double first = m_Pieces.GetData()[0].x0;
  const double last = m_Pieces.GetData()[n - 1].x1;
  const double lo = Snap(a);
  const double hi = Snap(b);
  PieceArray out;
  if (!IsLess(lo, hi, kTol)) {
    out.Add(KvTlLinear2d(first, c, last, c));
  } else {
    out.SetSize(0, GrowStep(n + 2LL));
    if (lo > first) out.Add(KvTlLinear2d(first, c, lo, c));
    AppendSlice(out, lo, hi);
    if (hi < last) out.Add(KvTlLinear2d(hi, c, last, c));
  }
  m_Pieces = std::move(out);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::RestrictY(double lo, double hi) {
  const int n = m_Pieces.GetSize();
  if (n == 0) return *this;
  if (lo > hi) std::swap(lo, hi);
  // Bounds over exactly this function's range, so that no part of it stays unclamped.
  KvTlFunktion2d bound;
  bound.m_Pieces[0].Set(m_Pieces.GetData()[0].x0, hi, m_Pieces.GetData()[n - 1].x1, hi);
  Combine(bound, Op::Min);
  bound.m_Pieces[0].y0 = bound.m_Pieces[0].y1 = lo;
  Combine(bound, Op::Max);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::SpiegelY(double c) {
  for (KvTlLinear2d& q : m_Pieces) q.SpiegelY(c);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::SpiegelX(double c) {
  for (KvTlLinear2d& q : m_Pieces) q.SpiegelX(c);
  std::reverse(m_Pieces.begin(), m_Pieces.end());
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::operator*=(double k) {
  ScaleValues(k);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::operator/=(double k) {
  if (IsNotEqual(k, 0.0, kTol)) ScaleValues(1.0 / k);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::Negate() {
  for (KvTlLinear2d& q : m_Pieces) q.y0 = q.y1 = 0.0;
  return *this;
}

KvTlFunktion2d KvTlFunktion2d::operator-() const {
  KvTlFunktion2d f(*this);
  f.ScaleValues(-1.0);
  return f;
}

void KvTlFunktion2d::Combine(const KvTlFunktion2d& g, Op op) {
  const int n = m_Pieces.GetSize();
  const int m = g.m_Pieces.GetSize();
  if (n == 0 || m == 0) return;
  // g may be this function: both are only read until the result replaces the pieces.
  const KvTlLinear2d* F = m_Pieces.GetData();
  const KvTlLinear2d* G = g.m_Pieces.GetData();
  const double gFirst = G[0].x0;
  const double gLast = G[m - 1].x1;
  // The cuts of g: the start of its range, then the end of each piece.
  auto cut = [G](int j) { return j == 0 ? G[0].x0 : G[j - 1].x1; };
  PieceArray out;
  out.SetSize(0, GrowStep(2LL * (static_cast<long long>(n) + m) + 2));

  auto emit = [&](const KvTlLinear2d& f, double a, double b) {
    const double fa = StartValue(f, a);
    const double fb = EndValue(f, b);
    if (!IsLess(gFirst, b, kTol) || !IsLess(a, gLast, kTol)) {
      out.Add(KvTlLinear2d(a, fa, b, fb));
      return;
    }
    const double ga = g.RechtsWert(a);
    const double gb = g.LinksWert(b);
    switch (op) {
      case Op::Add:
        out.Add(KvTlLinear2d(a, fa + ga, b, fb + gb));
        return;
      case Op::Sub:
        out.Add(KvTlLinear2d(a, fa - ga, b, fb - gb));
        return;
      case Op::Mul:
        out.Add(KvTlLinear2d(a, fa * ga, b, fb * gb));
        return;
      case Op::Min:
      case Op::Max:
        break;
    }
    const bool lower = op == Op::Min;
    const double ra = lower ? std::min(fa, ga) : std::max(fa, ga);
    const double rb = lower ? std::min(fb, gb) : std::max(fb, gb);
    const double da = fa - ga;
    const double db = fb - gb;
    if ((da < 0.0 && db > 0.0) || (da > 0.0 && db < 0.0)) {
      const double t = da / (da - db);
      const double xc = a + t * (b - a);
      if (IsLess(a, xc, kTol) && IsLess(xc, b, kTol)) {
        const double yc = fa + t * (fb - fa);
        out.Add(KvTlLinear2d(a, ra, xc, yc));
        out.Add(KvTlLinear2d(xc, yc, b, rb));
        return;
      }
    }
    out.Add(KvTlLinear2d(a, ra, b, rb));
  };

  int j = 0;
  for (int i = 0; i < n; ++i) {
    const KvTlLinear2d& f = F[i];
    while (j <= m && !IsLess(f.x0, cut(j), kTol)) ++j;
    double a = f.x0;
    for (; j <= m && IsLess(cut(j), f.x1, kTol); ++j) {
      const double c = cut(j);
      if (!IsLess(a, c, kTol)) continue;  // within the tolerance of the previous cut
      emit(f, a, c);
      a = c;
    }
    emit(f, a, f.x1);
  }
  m_Pieces = std::move(out);
}

KvTlFunktion2d& KvTlFunktion2d::operator+=(const KvTlFunktion2d& g) {
  Combine(g, Op::Add);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::operator-=(const KvTlFunktion2d& g) {
  Combine(g, Op::Sub);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::operator*=(const KvTlFunktion2d& g) {
  Combine(g, Op::Mul);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::operator&=(const KvTlFunktion2d& g) {
  Combine(g, Op::Min);
  return *this;
}

KvTlFunktion2d& KvTlFunktion2d::operator|=(const KvTlFunktion2d& g) {
  Combine(g, Op::Max);
  return *this;
}

int KvTlFunktion2d::IsEqualTo(const KvTlFunktion2d& other, double eps) const {
  const int n = m_Pieces.GetSize();
  if (n != other.m_Pieces.GetSize()) return 0;
  for (int k = 0; k < n; ++k)
    if (!m_Pieces.GetData()[k].IsEqualTo(other.m_Pieces.GetData()[k], eps)) return 0;
  return 1;
}
