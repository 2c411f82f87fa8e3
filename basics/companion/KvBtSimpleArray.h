#pragma once
/// @file
/// Plain growable arrays of the companion basics library: KvBtSimpleArray<T> and its double and
/// int forms. They offer the common array interface (GetSize, GetAt, operator[], SetAt, Add,
/// InsertAt, RemoveAt, Append, RemoveAll, GetData). Out-of-range access falls back on the last
/// element, as in every array of the application; on an empty array a read gives a default
/// value and a reference refers to a scratch element, so no access touches missing memory.

#include <vector>

#include "basics/companion/UtilityBasicsClassExport.h"

template <class T>
class KvBtSimpleArray {
 public:
  KvBtSimpleArray() = default;
  KvBtSimpleArray(const KvBtSimpleArray&) = default;
  KvBtSimpleArray(KvBtSimpleArray&&) noexcept = default;
  KvBtSimpleArray& operator=(const KvBtSimpleArray&) = default;
  KvBtSimpleArray& operator=(KvBtSimpleArray&&) noexcept = default;
  virtual ~KvBtSimpleArray() = default;

  int GetSize() const { return static_cast<int>(m_Items.size()); }
  int GetUpperBound() const { return GetSize() - 1; }
  int IsEmpty() const { return m_Items.empty() ? 1 : 0; }
  void SetSize(int n) { m_Items.resize(n > 0 ? static_cast<std::size_t>(n) : 0); }
  void RemoveAll() { m_Items.clear(); }

  T GetAt(int i) const { return m_Items.empty() ? T() : m_Items[Clamp(i)]; }
  T operator[](int i) const { return GetAt(i); }
  T& ElementAt(int i) {
    if (m_Items.empty()) return Scratch();
    return m_Items[Clamp(i)];
  }
  T& operator[](int i) { return ElementAt(i); }
  void SetAt(int i, const T& v) { ElementAt(i) = v; }
  int Add(const T& v) {
    m_Items.push_back(v);
    return GetUpperBound();
  }
  int Append(const KvBtSimpleArray& o) {
    const int first = GetSize();
    if (&o != this) m_Items.insert(m_Items.end(), o.m_Items.begin(), o.m_Items.end());
    return first;
  }
  /// Inserts count copies of v before index i; an index past the end pads with default values.
  void InsertAt(int i, const T& v, int count = 1) {
    if (i < 0 || count <= 0) return;
    const T copy(v);
    if (static_cast<std::size_t>(i) > m_Items.size()) m_Items.resize(static_cast<std::size_t>(i));
    m_Items.insert(m_Items.begin() + i, static_cast<std::size_t>(count), copy);
  }
  void RemoveAt(int i, int count = 1) {
    if (i < 0 || count < 0 || i >= GetSize()) return;
    const int n = count > GetSize() - i ? GetSize() - i : count;
    m_Items.erase(m_Items.begin() + i, m_Items.begin() + i + n);
  }
  const T* GetData() const { return m_Items.data(); }
  T* GetData() { return m_Items.data(); }
  const T* begin() const { return m_Items.data(); }
  const T* end() const { return m_Items.data() + m_Items.size(); }

  int operator==(const KvBtSimpleArray& o) const { return m_Items == o.m_Items ? 1 : 0; }
  int operator!=(const KvBtSimpleArray& o) const { return m_Items != o.m_Items ? 1 : 0; }

 private:
  std::size_t Clamp(int i) const {
    return (i < 0 || static_cast<std::size_t>(i) >= m_Items.size()) ? m_Items.size() - 1 : static_cast<std::size_t>(i);
  }
  static T& Scratch() {
    thread_local T scratch;
    scratch = T();
    return scratch;
  }

  std::vector<T> m_Items;
};

class KVBT_API KvBtRealArray : public KvBtSimpleArray<double> {
 public:
  using KvBtSimpleArray<double>::KvBtSimpleArray;
  ~KvBtRealArray() override;
};

class KVBT_API KvBtIntegerArray : public KvBtSimpleArray<int> {
 public:
  using KvBtSimpleArray<int>::KvBtSimpleArray;
  ~KvBtIntegerArray() override;
};
