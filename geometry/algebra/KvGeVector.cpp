#include "geometry/algebra/KvGeVector.h"

KvGeVector2::~KvGeVector2() = default;
KvGeVector3::~KvGeVector3() = default;
KvGeVector4::~KvGeVector4() = default;

double KvGeVector2::m_vDummy = 0.0;
double KvGeVector3::m_vDummy = 0.0;
double KvGeVector4::m_vDummy = 0.0;

namespace {
// The components of a vector of size n other than component k, in order; k >= n leaves out
// the last component.
template <class Big, class Small, unsigned n>
void CopyAllBut(const Big& from, Small& to, unsigned k) {
  if (k >= n) k = n - 1;
  for (unsigned i = 0, j = 0; i < n; ++i)
    if (i != k) to[j++] = from[i];
}
template <class Big, class Small, unsigned n>
void WriteAllBut(Big& to, const Small& from, unsigned k) {
  if (k >= n) k = n - 1;
  for (unsigned i = 0, j = 0; i < n; ++i)
    if (i != k) to[i] = from[j++];
}
}  // namespace

KvGeVector2 KvGeVector3::SubVector2(unsigned k) const {
  KvGeVector2 r;
  CopyAllBut<KvGeVector3, KvGeVector2, 3>(*this, r, k);
  return r;
}

KvGeVector3& KvGeVector3::SetSubVector2(const KvGeVector2& v, unsigned k) {
  WriteAllBut<KvGeVector3, KvGeVector2, 3>(*this, v, k);
  return *this;
}

KvGeVector3 KvGeVector4::SubVector3(unsigned k) const {
  KvGeVector3 r;
  CopyAllBut<KvGeVector4, KvGeVector3, 4>(*this, r, k);
  return r;
}

KvGeVector4& KvGeVector4::SetSubVector3(const KvGeVector3& v, unsigned k) {
  WriteAllBut<KvGeVector4, KvGeVector3, 4>(*this, v, k);
  return *this;
}
