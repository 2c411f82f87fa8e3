#include "basics/companion/KvTlPermVector.h"

KvTlPermVector::~KvTlPermVector() = default;

void KvTlPermVector::SetSize(int n) {
  const int old = GetSize();
  try {
    m_Perm.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
  } catch (...) {
    return;  // no memory: the permutation stays as it was
  }
  for (int i = old; i < GetSize(); ++i) m_Perm[static_cast<std::size_t>(i)] = i;
}

void KvTlPermVector::SetIdentity() {
  for (int i = 0; i < GetSize(); ++i) m_Perm[static_cast<std::size_t>(i)] = i;
}

int KvTlPermVector::GetAt(int i) const {
  if (m_Perm.empty()) return -1;
  if (i < 0 || i >= GetSize()) return m_Perm.back();
  return m_Perm[static_cast<std::size_t>(i)];
}

void KvTlPermVector::SetAt(int i, int value) {
  if (i >= 0 && i < GetSize()) m_Perm[static_cast<std::size_t>(i)] = value;
}

void KvTlPermVector::Swap(int i, int j) {
  if (i < 0 || j < 0 || i >= GetSize() || j >= GetSize()) return;
  const int t = m_Perm[static_cast<std::size_t>(i)];
  m_Perm[static_cast<std::size_t>(i)] = m_Perm[static_cast<std::size_t>(j)];
  m_Perm[static_cast<std::size_t>(j)] = t;
}
