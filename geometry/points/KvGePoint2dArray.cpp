#include "geometry/points/KvGePoint2dArray.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "basics/companion/KvBtArchive.h"
#include "basics/companion/KvBtCompare.h"
#include "basics/companion/KvBtString.h"
#include "basics/general/UtilityGeneral.h"
#include "geometry/algebra/KvGeModMat.h"
#include "geometry/curves/KvGeBox2d.h"

KvGePoint2dArray::~KvGePoint2dArray() = default;
KvGePoint3dArray::~KvGePoint3dArray() = default;

namespace {

// The ring algorithms that the plane and space arrays share; A is the array, B its box type.

template <class A>
double PlanArea(const A& a) {
  const int n = a.GetSize();
  const auto* p = a.GetData();
  double s = 0.0;
  for (int i = 0; i < n; ++i) {
    const auto& q = p[i];
    const auto& r = p[i + 1 < n ? i + 1 : 0];
    s += (q.y + r.y) * (q.x - r.x);
  }
  if (std::isfinite(s)) return 0.5 * s;
  // The sums or products overflowed (coordinates near the largest double), or a coordinate is
  // not finite. Finite rings are summed again scaled by a power of two near their largest
  // coordinate, exactly, and scaled back: the area is then infinite only when it is.
  double m = 0.0;
  for (int i = 0; i < n; ++i) m = std::fmax(m, std::fmax(std::fabs(p[i].x), std::fabs(p[i].y)));
  if (!std::isfinite(m) || std::isnan(s)) {
    for (int i = 0; i < n; ++i)
      if (!std::isfinite(p[i].x) || !std::isfinite(p[i].y)) return std::numeric_limits<double>::quiet_NaN();
  }
  const int e = std::ilogb(m);
  s = 0.0;
  for (int i = 0; i < n; ++i) {
    const auto& q = p[i];
    const auto& r = p[i + 1 < n ? i + 1 : 0];
    s += (std::ldexp(q.y, -e) + std::ldexp(r.y, -e)) * (std::ldexp(q.x, -e) - std::ldexp(r.x, -e));
  }
  return std::ldexp(0.5 * s, 2 * e);
}

// The index of the smallest point by axis `first` (values within 0.001 tie) then by axis
// `second` exactly; the first of equal points wins.
template <class A>
int IndexMin(const A& a, unsigned first, unsigned second) {
  const int n = a.GetSize();
  if (n == 0) return -1;
  const auto* p = a.GetData();
  int best = 0;
  for (int i = 1; i < n; ++i) {
    const int c = KvBtRealCompare(p[i][first], p[best][first], kKvGeLinearTol);
    if (c < 0 || (c == 0 && p[i][second] < p[best][second])) best = i;
  }
  return best;
}

// The closed perimeter over the first `axes` coordinates.
template <class A>
double Perimeter(const A& a, unsigned axes) {
  const int n = a.GetSize();
  if (n < 2) return 0.0;
  const auto* p = a.GetData();
  double s = 0.0;
  for (int i = 0; i < n; ++i) {
    const auto& q = p[i];
    const auto& r = p[i + 1 < n ? i + 1 : 0];
    double d = 0.0;
    for (unsigned k = 0; k < axes; ++k) d += (r[k] - q[k]) * (r[k] - q[k]);
    s += std::sqrt(d);
  }
  return s;
}

template <class B, class A>
B FoldBox(const A& a) {
  B box;
  for (const auto& p : a) box.Include(p);
  return box;
}

template <class B, class A, class M>
B FoldBox(const A& a, const M& m) {
  B box;
  for (const auto& p : a) box.Include(p.Transformed(m));
  return box;
}

template <class A, class M>
void TransformAll(A& a, const M& m) {
  for (auto& p : a) p.Transform(m);
}

template <class A>
void ReverseAll(A& a) {
  auto* p = a.GetData();
  std::reverse(p, p + a.GetSize());
}

// Sorts by axis `first`, then `second`, coordinates tying when iqrkor says so. The tolerant
// comparison is not a strict ordering; a merge sort stays within the array whatever it answers.
template <class A>
void SortBy(A& a, unsigned first, unsigned second) {
  auto* p = a.GetData();
  using P = std::remove_reference_t<decltype(*p)>;
  std::stable_sort(p, p + a.GetSize(), [first, second](const P& u, const P& v) {
    if (!iqrkor(u[first], v[first])) return u[first] < v[first];
    if (!iqrkor(u[second], v[second])) return u[second] < v[second];
    return false;
  });
}

template <class A>
void SetAxis(A& a, unsigned k, double v) {
  for (auto& p : a) p[k] = v;
}

// The persisted coordinate: sign and magnitude in tenths, clamped, as four "%4x" characters.
void EncodeCoordinate(double v, char out[5]) {
  const double tenths = runden(v, 0.1, 0.001) * 10.0;
  unsigned n;
  if (tenths >= 32768.0)
    n = 32767;
  else if (tenths < -32767.0)
    n = 0xffff;
  else if (tenths < 0.0)
    n = static_cast<unsigned>(-static_cast<int>(tenths)) | 0x8000u;
  else if (tenths >= 0.0)
    n = static_cast<unsigned>(static_cast<int>(tenths));
  else
    n = 0;  // NaN: Serialize refuses it before, this keeps the cast defined all the same
  std::snprintf(out, 5, "%4x", n);
}

double DecodeCoordinate(const char* field) {
  char buffer[5] = {field[0], field[1], field[2], field[3], '\0'};
  unsigned n = 0;
  if (std::sscanf(buffer, "%4x", &n) != 1) n = 0;
  n &= 0xffffu;
  const int value = (n & 0x8000u) ? 32768 - static_cast<int>(n) : static_cast<int>(n);
  return value * 0.1;
}

}  // namespace

double KvGePoint2dArray::Area() const { return PlanArea(*this); }
int KvGePoint2dArray::Sense() const { return sgn(Area()); }

KvGePoint2dArray& KvGePoint2dArray::Invert() {
  ReverseAll(*this);
  return *this;
}
KvGePoint2dArray KvGePoint2dArray::Inverted() const { return KvGePoint2dArray(*this).Invert(); }

KvGePoint2dArray& KvGePoint2dArray::Orientate(int sense) {
  if (Sense() != sense) NewFirstElement(0, 1);
  return *this;
}
KvGePoint2dArray KvGePoint2dArray::Orientated(int sense) const { return KvGePoint2dArray(*this).Orientate(sense); }

KvGePoint2dArray& KvGePoint2dArray::Normalize() {
  NewFirstElement(IndexMinYX(), Sense() != 1);
  return *this;
}
KvGePoint2dArray KvGePoint2dArray::Normalized() const { return KvGePoint2dArray(*this).Normalize(); }

int KvGePoint2dArray::IndexMinXY() const { return IndexMin(*this, 0, 1); }
int KvGePoint2dArray::IndexMinYX() const { return IndexMin(*this, 1, 0); }

KvGePoint2dArray& KvGePoint2dArray::SetX(double v) {
  SetAxis(*this, 0, v);
  return *this;
}
KvGePoint2dArray& KvGePoint2dArray::SetY(double v) {
  SetAxis(*this, 1, v);
  return *this;
}

double KvGePoint2dArray::Perimeter() const { return ::Perimeter(*this, 2); }

KvGePoint2d KvGePoint2dArray::Schwerpunkt() const {
  if (GetSize() == 0) return KvGePoint2d(0.0, 0.0);
  KvGePoint2d prev = GetAt(GetUpperBound());
  KvGePoint2d sum(0.0, 0.0);
  double total = 0.0;
  for (const KvGePoint2d& cur : *this) {
    const double a = 0.5 * (prev.x * cur.y - cur.x * prev.y);
    total += a;
    sum += ((prev + cur) / 3.0) * a;
    prev = cur;
  }
  if (IsNotEqual(total, 0.0, 1e-15)) return sum / total;
  return KvGePoint2d(0.0, 0.0);
}

KvGeBox2d KvGePoint2dArray::BoundingBox() const { return FoldBox<KvGeBox2d>(*this); }
KvGeBox2d KvGePoint2dArray::BoundingBox(const KvGeModMat2d& m) const { return FoldBox<KvGeBox2d>(*this, m); }

KvGePoint2dArray& KvGePoint2dArray::Transform(const KvGeModMat2d& m) {
  TransformAll(*this, m);
  return *this;
}
KvGePoint2dArray KvGePoint2dArray::Transformed(const KvGeModMat2d& m) const {
  return KvGePoint2dArray(*this).Transform(m);
}

void KvGePoint2dArray::sortByXY() { SortBy(*this, 0, 1); }
void KvGePoint2dArray::sortByYX() { SortBy(*this, 1, 0); }

void KvGePoint2dArray::Serialize(KvBtArchive& ar) {
  if (ar.IsStoring()) {
    if (ar.IsFailed()) return;
    // Each point takes 8 characters; a string holds at most INT_MAX of them.
    const int count = GetSize() < INT_MAX / 8 ? GetSize() : INT_MAX / 8;
    for (int i = 0; i < count; ++i)
      if (std::isnan(m_pData[i].x) || std::isnan(m_pData[i].y)) {
        ar.SetFailed();
        return;
      }
    std::string text(static_cast<std::size_t>(count) * 8, ' ');
    char field[5];
    for (int i = 0; i < count; ++i) {
      EncodeCoordinate(m_pData[i].x, field);
      text.replace(static_cast<std::size_t>(i) * 8, 4, field, 4);
      EncodeCoordinate(m_pData[i].y, field);
      text.replace(static_cast<std::size_t>(i) * 8 + 4, 4, field, 4);
    }
    ar << static_cast<std::uint16_t>(1) << KvBtString(std::move(text));
  } else if (ar.IsLoading()) {
    std::uint16_t version = 0;
    ar >> version;
    if (ar.IsFailed() || (version != 1 && version != 2)) return;
    KvBtString text;
    ar >> text;
    if (ar.IsFailed()) return;
    const std::string& s = text.Str();
    const int count = static_cast<int>(s.size() / 8);
    KvGePoint2dArray loaded;
    loaded.SetSize(count);
    if (loaded.GetSize() != count) return;  // no memory: unchanged
    for (int i = 0; i < count; ++i) {
      const char* field = s.data() + static_cast<std::size_t>(i) * 8;
      loaded.m_pData[i].Set(DecodeCoordinate(field), DecodeCoordinate(field + 4), 0);
    }
    *this = std::move(loaded);
  }
}

double KvGePoint3dArray::Area2d() const { return PlanArea(*this); }
int KvGePoint3dArray::Sense2d() const { return sgn(Area2d()); }

KvGePoint3dArray& KvGePoint3dArray::Invert() {
  ReverseAll(*this);
  return *this;
}
KvGePoint3dArray KvGePoint3dArray::Inverted() const { return KvGePoint3dArray(*this).Invert(); }

KvGePoint3dArray& KvGePoint3dArray::Orientate2d(int sense) {
  if (Sense2d() == sense) return *this;
  const int n = GetSize();
  if (n >= 2 && m_pData[n - 1] == m_pData[0]) {
    const KvGePoint3d closing = m_pData[n - 1];
    SetSize(n - 1);
    NewFirstElement(0, 1);
    Add(closing);
  } else {
    NewFirstElement(0, 1);
  }
  return *this;
}
KvGePoint3dArray KvGePoint3dArray::Orientated2d(int sense) const { return KvGePoint3dArray(*this).Orientate2d(sense); }

KvGePoint3dArray& KvGePoint3dArray::Normalize2d() {
  NewFirstElement(IndexMinYX(), Sense2d() != 1);
  return *this;
}
KvGePoint3dArray KvGePoint3dArray::Normalized2d() const { return KvGePoint3dArray(*this).Normalize2d(); }

int KvGePoint3dArray::IndexMinXY() const { return IndexMin(*this, 0, 1); }
int KvGePoint3dArray::IndexMinYX() const { return IndexMin(*this, 1, 0); }

KvGePoint3dArray& KvGePoint3dArray::SetX(double v) {
  SetAxis(*this, 0, v);
  return *this;
}
KvGePoint3dArray& KvGePoint3dArray::SetY(double v) {
  SetAxis(*this, 1, v);
  return *this;
}
KvGePoint3dArray& KvGePoint3dArray::SetZ(double v) {
  SetAxis(*this, 2, v);
  return *this;
}

double KvGePoint3dArray::Perimeter2d() const { return ::Perimeter(*this, 2); }
double KvGePoint3dArray::Perimeter3d() const { return ::Perimeter(*this, 3); }

KvGePoint3d KvGePoint3dArray::NormalVector() const {
  KvGePoint3d sum(0.0, 0.0, 0.0);
  const int n = GetSize();
  for (int i = 0; i < n; ++i) sum += CrossProduct(m_pData[i], m_pData[i + 1 < n ? i + 1 : 0]);
  return sum * 0.5;
}

double KvGePoint3dArray::Area3d() const { return NormalVector().Length(); }

KvGePoint3d KvGePoint3dArray::Schwerpunkt() const {
  const int n = GetSize();
  if (n == 0) return KvGePoint3d(0.0, 0.0, 0.0);
  const KvGeVector3 origin = m_pData[0].Vector3();
  const KvGeVector3 normal = NormalVector().Vector3().Normalized();
  KvGeVector3 sum, mean;
  double total = 0.0;
  for (int i = 0; i < n; ++i) mean += m_pData[i].Vector3();
  for (int i = 1; i + 1 < n; ++i) {
    const KvGeVector3 b = m_pData[i].Vector3(), c = m_pData[i + 1].Vector3();
    const double w = 0.5 * (Normal(b - origin, c - origin) * normal);
    total += w;
    sum += (origin + b + c) * (w / 3.0);
  }
  const KvGeVector3 r = IsNotEqual(total, 0.0, 1e-15) ? sum / total : mean / n;
  return KvGePoint3d(r);
}

KvGeBox3d KvGePoint3dArray::BoundingBox() const { return FoldBox<KvGeBox3d>(*this); }
KvGeBox3d KvGePoint3dArray::BoundingBox(const KvGeModMat3d& m) const { return FoldBox<KvGeBox3d>(*this, m); }

KvGePoint3dArray& KvGePoint3dArray::Transform(const KvGeModMat3d& m) {
  TransformAll(*this, m);
  return *this;
}
KvGePoint3dArray KvGePoint3dArray::Transformed(const KvGeModMat3d& m) const {
  return KvGePoint3dArray(*this).Transform(m);
}

void KvGePoint3dArray::sortByXY() { SortBy(*this, 0, 1); }
void KvGePoint3dArray::sortByYX() { SortBy(*this, 1, 0); }
