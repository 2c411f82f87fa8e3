#pragma once
/// @file
/// Plain growable arrays of the companion basics library: KvBtSimpleArray<T> and its double and
/// int forms. They offer the common array interface (GetSize, GetAt, operator[], SetAt, Add,
/// InsertAt, RemoveAt, Append, RemoveAll, GetData). Out-of-range access falls back on the last
/// element, as in every array of the application; on an empty array a read gives a default
/// value and a reference refers to a scratch element, so no access touches missing memory.
/// Growing does not throw: when memory runs out the array keeps its elements, Add and Append
/// answer -1 and SetSize and InsertAt leave the size as it was.

#include <vector>

#include "basics/companion/UtilityBasicsClassExport.h"

/// A plain growable array of T on std::vector; an index out of range falls back on the last element, an empty array
/// reads a default value.
template <class T>
class KvBtSimpleArray {
 public:
  KvBtSimpleArray() = default;
  /// Copies the elements.
  KvBtSimpleArray(const KvBtSimpleArray&) = default;
  /// Takes over the elements of the other array.
  KvBtSimpleArray(KvBtSimpleArray&&) noexcept = default;
  /// Copies the elements.
  KvBtSimpleArray& operator=(const KvBtSimpleArray&) = default;
  /// Takes over the elements of the other array.
  KvBtSimpleArray& operator=(KvBtSimpleArray&&) noexcept = default;
  virtual ~KvBtSimpleArray() = default;

  /// The number of elements.
  int GetSize() const { return static_cast<int>(m_Items.size()); }
  /// The last index, size - 1 (-1 when empty).
  int GetUpperBound() const { return GetSize() - 1; }
  /// 1 when there are no elements.
  int IsEmpty() const { return m_Items.empty() ? 1 : 0; }
  /// Resizes to n elements (a negative n counts as 0); new elements are default values. When memory runs out the size
  /// stays as it was.
  void SetSize(int n) {
    try {
      m_Items.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
    } catch (...) {  // no memory: unchanged
    }
  }
  /// Removes every element.
  void RemoveAll() { m_Items.clear(); }

  /// Element i; an index out of range reads the last element, an empty array a default value.
  T GetAt(int i) const { return m_Items.empty() ? T() : m_Items[Clamp(i)]; }
  /// Element i, as GetAt.
  T operator[](int i) const { return GetAt(i); }
  /// Element i for writing; an index out of range refers to the last element, an empty array to a scratch element.
  T& ElementAt(int i) {
    if (m_Items.empty()) return Scratch();
    return m_Items[Clamp(i)];
  }
  /// Element i for writing, as ElementAt.
  T& operator[](int i) { return ElementAt(i); }
  /// Assigns element i (the last for an index out of range; a scratch element when empty).
  void SetAt(int i, const T& v) { ElementAt(i) = v; }
  /// Appends v and returns its index.
  int Add(const T& v) {
    try {
      m_Items.push_back(v);
    } catch (...) {
      return -1;
    }
    return GetUpperBound();
  }
  /// Appends the elements of o and returns the index of the first of them; appending the array to itself does nothing.
  int Append(const KvBtSimpleArray& o) {
    const int first = GetSize();
    try {
      if (&o != this) m_Items.insert(m_Items.end(), o.m_Items.begin(), o.m_Items.end());
    } catch (...) {
      return -1;
    }
    return first;
  }
  /// Inserts count copies of v before index i; an index past the end pads with default values.
  void InsertAt(int i, const T& v, int count = 1) {
    if (i < 0 || count <= 0) return;
    const T copy(v);
    const std::size_t size = m_Items.size();
    try {
      if (static_cast<std::size_t>(i) > size) m_Items.resize(static_cast<std::size_t>(i));
      m_Items.insert(m_Items.begin() + i, static_cast<std::size_t>(count), copy);
    } catch (...) {
      if (m_Items.size() > size) m_Items.resize(size);  // drops the padding again, no allocation
    }
  }
  /// Removes count elements from index i on (fewer at the end); an index out of range does nothing.
  void RemoveAt(int i, int count = 1) {
    if (i < 0 || count < 0 || i >= GetSize()) return;
    const int n = count > GetSize() - i ? GetSize() - i : count;
    m_Items.erase(m_Items.begin() + i, m_Items.begin() + i + n);
  }
  /// The elements (the storage of the vector).
  const T* GetData() const { return m_Items.data(); }
  /// The elements.
  T* GetData() { return m_Items.data(); }
  /// The first element, for range-for.
  const T* begin() const { return m_Items.data(); }
  /// Past the last element, for range-for.
  const T* end() const { return m_Items.data() + m_Items.size(); }
  /// The first element, for range-for.
  T* begin() { return m_Items.data(); }
  /// Past the last element, for range-for.
  T* end() { return m_Items.data() + m_Items.size(); }

  /// 1 when both hold the same elements (exact comparison).
  int operator==(const KvBtSimpleArray& o) const { return m_Items == o.m_Items ? 1 : 0; }
  /// The negation of operator==.
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

/// A plain growable array of doubles.
class KVBT_API KvBtRealArray : public KvBtSimpleArray<double> {
 public:
  using KvBtSimpleArray<double>::KvBtSimpleArray;
  ~KvBtRealArray() override;
};

/// A plain growable array of ints.
class KVBT_API KvBtIntegerArray : public KvBtSimpleArray<int> {
 public:
  using KvBtSimpleArray<int>::KvBtSimpleArray;
  ~KvBtIntegerArray() override;
};
