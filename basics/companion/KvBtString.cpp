#include "basics/companion/KvBtString.h"

KvBtString::~KvBtString() = default;

namespace {
KvBtString Slice(const std::string& s, long long first, long long count) {
  const long long n = static_cast<long long>(s.size());
  if (first < 0) first = 0;
  if (first > n) first = n;
  if (count < 0) count = 0;
  if (count > n - first) count = n - first;
  return KvBtString(s.data() + first, static_cast<int>(count));
}
}  // namespace

KvBtString KvBtString::Left(int count) const { return Slice(m_Text, 0, count); }
KvBtString KvBtString::Mid(int first) const { return Slice(m_Text, first, static_cast<long long>(m_Text.size())); }
KvBtString KvBtString::Mid(int first, int count) const { return Slice(m_Text, first, count); }
KvBtString KvBtString::Right(int count) const {
  const long long n = static_cast<long long>(m_Text.size());
  const long long c = count < 0 ? 0 : (count > n ? n : count);
  return Slice(m_Text, n - c, c);
}
