#pragma once
/// @file
/// The growable arrays behind every collection class of the library.
///
/// KvBtArray<TYPE, ARG_TYPE> holds size elements in storage for capacity elements. Growing by
/// SetSize uses the step growBy, or when growBy is 0 one eighth of the size, at least 4 and at
/// most 1024 elements: adding one by one gives the capacities 1, 5, 9, 13, ... Elements are
/// relocated bitwise (a memory move, no copy constructor) when the storage grows and when
/// elements are inserted or removed, so TYPE must not point into itself; every element type of
/// the library is relocatable that way.
///
/// Out-of-range indices do not fail: reads and writes fall back on the last element. On an
/// empty array a read gives a default element and a reference refers to a scratch element
/// (reset to the default on every such access), so no access touches storage that is not there.
///
/// Nothing throws, also when memory runs out: an operation whose storage cannot be had leaves
/// the array exactly as it was (size, capacity and elements) and reports it where it returns
/// something: Add and Append give -1; SetSize, Copy and InsertAt show it in the unchanged size.
///
/// KvBtDynArray<TYPE> adds element-wise equality, cyclic access (index taken modulo the size,
/// so -1 is the last element), deep copying and the cyclic reordering NewFirstElement.

/// \file
/// Failure: nothing throws. When memory runs out the array keeps its elements, size and capacity,
/// and Add and Append answer -1. See docs/non-finite-policy.md.

#include <climits>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <type_traits>
#include <utility>

#include "basics/companion/KvBtCompare.h"

/// Whether T may be an element of the array templates, which move elements with memmove when
/// storage grows and on insertion and removal. True for trivially copyable types and for classes
/// that declare (or inherit) the member alias KvBtBitwiseRelocatable; specialise it as
/// std::true_type for another type that holds no pointer into itself. Types such as std::string
/// (whose short-string buffer is such a pointer) must not be marked.
template <class T, class = void>
struct KvBtIsRelocatable : std::is_trivially_copyable<T> {};
template <class T>
struct KvBtIsRelocatable<T, std::void_t<typename T::KvBtBitwiseRelocatable>> : std::true_type {};

/// A growable array of TYPE, passed in as ARG_TYPE; elements are relocated bitwise. Out-of-range indices fall back on
/// the last element; an empty array reads a default element.
template <class TYPE, class ARG_TYPE>
class KvBtArray {
  static_assert(KvBtIsRelocatable<TYPE>::value,
                "the array templates relocate elements bitwise (memmove): TYPE must not point into itself; "
                "mark a type that is safe with 'using KvBtBitwiseRelocatable = void;' or specialise "
                "KvBtIsRelocatable, and keep other types in std::vector");

 public:
  /// The array holds a pointer to its storage only, so arrays of arrays relocate bitwise too.
  using KvBtBitwiseRelocatable = void;

  KvBtArray() = default;
  /// Copies the elements of other.
  KvBtArray(const KvBtArray& other) { Copy(other); }
  /// Takes over the storage of other, which is left empty.
  KvBtArray(KvBtArray&& other) noexcept { Steal(other); }
  /// Copies the elements of other; the growth step and, when large enough, the storage are kept.
  KvBtArray& operator=(const KvBtArray& other) {
    Copy(other);
    return *this;
  }
  /// Assignment is Copy also from a temporary: the target keeps its growth step, and its storage
  /// when that is large enough. Only the elements of the temporary are moved, not its storage.
  KvBtArray& operator=(KvBtArray&& other) {
    if (this != &other && Resize(other.m_nSize))
      for (int k = 0; k < other.m_nSize; ++k) m_pData[k] = std::move(other.m_pData[k]);
    return *this;
  }
  virtual ~KvBtArray() { Release(); }

  /// The number of elements.
  int GetSize() const { return m_nSize; }
  /// The last index, size - 1 (-1 when empty).
  int GetUpperBound() const { return m_nSize - 1; }
  /// The number of elements the storage holds.
  int GetCapacity() const { return m_nMaxSize; }
  /// 1 when there are no elements.
  int IsEmpty() const { return m_nSize == 0 ? 1 : 0; }

  /// Resizes to newSize elements (a negative size counts as 0; 0 releases the storage); new elements are default
  /// values. growBy, unless -1, sets the growth step (0: one eighth of the size, 4 to 1024). When memory runs out the
  /// array stays as it was.
  void SetSize(int newSize, int growBy = -1) { Resize(newSize, growBy); }
  /// Shrinks the storage to the size.
  void FreeExtra();
  /// Removes every element and releases the storage.
  void RemoveAll() { SetSize(0); }

  /// Element i; an index out of range reads the last element, an empty array a default element.
  TYPE GetAt(int i) const { return m_nSize == 0 ? TYPE() : m_pData[Clamp(i)]; }
  /// Element i; an index out of range reads the last element, an empty array a default element.
  TYPE operator[](int i) const { return GetAt(i); }
  /// Element i for writing; an index out of range refers to the last element, an empty array to a scratch element.
  TYPE& ElementAt(int i) { return m_nSize == 0 ? Scratch() : m_pData[Clamp(i)]; }
  /// Element i for writing; an index out of range refers to the last element, an empty array to a scratch element.
  const TYPE& ElementAt(int i) const { return m_nSize == 0 ? Scratch() : m_pData[Clamp(i)]; }
  /// Element i for writing; an index out of range refers to the last element, an empty array to a scratch element.
  TYPE& operator[](int i) { return ElementAt(i); }
  /// Assigns element i (the last for an index out of range; a scratch element when empty).
  void SetAt(int i, ARG_TYPE value) { ElementAt(i) = value; }

  /// The storage; null until storage is first allocated (and after RemoveAll).
  const TYPE* GetData() const { return m_pData; }
  /// The storage; null until storage is first allocated (and after RemoveAll).
  TYPE* GetData() { return m_pData; }
  /// The first element, for range-for.
  const TYPE* begin() const { return m_pData; }
  /// Past the last element, for range-for.
  const TYPE* end() const { return m_pData + m_nSize; }
  /// The first element, for range-for.
  TYPE* begin() { return m_pData; }
  /// Past the last element, for range-for.
  TYPE* end() { return m_pData + m_nSize; }

  /// Assigns element i, growing the array with default elements when i is past the end; a negative i is ignored.
  void SetAtGrow(int i, ARG_TYPE value);
  /// The index of the new element; -1 when there is no memory for it.
  int Add(ARG_TYPE value) {
    const int i = m_nSize;
    SetAtGrow(i, value);
    return m_nSize > i ? i : -1;
  }
  /// Appends the elements of other and returns the index of the first of them; appending the array to itself does
  /// nothing.
  int Append(const KvBtArray& other);
  /// Makes the array a copy of other.
  void Copy(const KvBtArray& other);
  /// Inserts count copies of value before index i; an index past the end pads with default elements. A negative i or
  /// count does nothing.
  void InsertAt(int i, ARG_TYPE value, int count = 1);
  /// Inserts the elements of other before index i; a null or empty other does nothing.
  void InsertAt(int i, const KvBtArray* other);
  /// Removes count elements from index i on (fewer at the end); an index out of range does nothing.
  void RemoveAt(int i, int count = 1);

 protected:
  /// i, or the last index when i is out of range.
  int Clamp(int i) const { return (i < 0 || i >= m_nSize) ? m_nSize - 1 : i; }
  /// A scratch element reset to the default, for access to an empty array.
  static TYPE& Scratch() {
    thread_local TYPE scratch;
    scratch = TYPE();
    return scratch;
  }

  /// The storage.
  TYPE* m_pData = nullptr;
  /// The number of elements.
  int m_nSize = 0;
  /// The number of elements the storage holds.
  int m_nMaxSize = 0;
  /// The growth step; 0 for one eighth of the size, 4 to 1024.
  int m_nGrowBy = 0;

 private:
  /// SetSize that tells whether it succeeded; false leaves the elements and the storage as they
  /// were.
  bool Resize(int newSize, int growBy = -1);
  /// Storage comes from malloc so that growing can be a realloc: the relocation is bitwise
  /// anyway, and a large block is then remapped instead of copied. Exhaustion gives nullptr and
  /// leaves data as it was.
  static TYPE* Reallocate(TYPE* data, int n) {
    return static_cast<TYPE*>(std::realloc(static_cast<void*>(data), sizeof(TYPE) * static_cast<std::size_t>(n)));
  }
  static void Relocate(TYPE* to, const TYPE* from, int n) {
    if (n > 0)
      std::memmove(static_cast<void*>(to), static_cast<const void*>(from), sizeof(TYPE) * static_cast<std::size_t>(n));
  }
  static void Construct(TYPE* p, int n) {
    for (int k = 0; k < n; ++k) ::new (static_cast<void*>(p + k)) TYPE();
  }
  static void Destroy(TYPE* p, int n) {
    for (int k = 0; k < n; ++k) p[k].~TYPE();
  }
  void Release() {
    Destroy(m_pData, m_nSize);
    std::free(static_cast<void*>(m_pData));
    m_pData = nullptr;
    m_nSize = m_nMaxSize = 0;
  }
  void Steal(KvBtArray& other) {
    m_pData = other.m_pData;
    m_nSize = other.m_nSize;
    m_nMaxSize = other.m_nMaxSize;
    m_nGrowBy = other.m_nGrowBy;
    other.m_pData = nullptr;
    other.m_nSize = other.m_nMaxSize = 0;
  }
};

template <class TYPE, class ARG_TYPE>
bool KvBtArray<TYPE, ARG_TYPE>::Resize(int newSize, int growBy) {
  if (newSize < 0) newSize = 0;
  if (growBy != -1) m_nGrowBy = growBy;

  if (newSize == 0) {
    Release();
  } else if (m_pData == nullptr) {
    TYPE* data = Reallocate(nullptr, newSize);
    if (data == nullptr) return false;
    m_pData = data;
    Construct(m_pData, newSize);
    m_nSize = m_nMaxSize = newSize;
  } else if (newSize <= m_nMaxSize) {
    if (newSize > m_nSize)
      Construct(m_pData + m_nSize, newSize - m_nSize);
    else
      Destroy(m_pData + newSize, m_nSize - newSize);
    m_nSize = newSize;
  } else {
    long long step = m_nGrowBy;
    if (step == 0) {
      step = m_nSize / 8;
      if (step < 4) step = 4;
      if (step > 1024) step = 1024;
    }
    long long capacity = static_cast<long long>(m_nMaxSize) + step;
    if (capacity < newSize) capacity = newSize;
    if (capacity < m_nMaxSize) capacity = m_nMaxSize;
    if (capacity > INT_MAX) capacity = INT_MAX;
    TYPE* data = Reallocate(m_pData, static_cast<int>(capacity));
    if (data == nullptr && capacity > newSize) data = Reallocate(m_pData, static_cast<int>(capacity = newSize));
    if (data == nullptr) return false;
    m_pData = data;
    Construct(m_pData + m_nSize, newSize - m_nSize);
    m_nSize = newSize;
    m_nMaxSize = static_cast<int>(capacity);
  }
  return true;
}

template <class TYPE, class ARG_TYPE>
void KvBtArray<TYPE, ARG_TYPE>::FreeExtra() {
  if (m_nSize == m_nMaxSize || m_nSize == 0) return;
  TYPE* data = Reallocate(m_pData, m_nSize);
  if (data == nullptr) return;  // the larger block stays
  m_pData = data;
  m_nMaxSize = m_nSize;
}

template <class TYPE, class ARG_TYPE>
void KvBtArray<TYPE, ARG_TYPE>::SetAtGrow(int i, ARG_TYPE value) {
  if (i < 0) return;
  if (i >= m_nSize) {
    if (i == INT_MAX) return;
    // value may refer into this array; keep a copy across the reallocation.
    const TYPE keep(value);
    if (Resize(i + 1)) m_pData[i] = keep;
    return;
  }
  m_pData[i] = value;
}

template <class TYPE, class ARG_TYPE>
int KvBtArray<TYPE, ARG_TYPE>::Append(const KvBtArray& other) {
  const int first = m_nSize;
  if (&other == this || other.m_nSize == 0) return first;
  if (static_cast<long long>(m_nSize) + other.m_nSize > INT_MAX) return first;
  if (!Resize(m_nSize + other.m_nSize)) return -1;
  for (int k = 0; k < other.m_nSize; ++k) m_pData[first + k] = other.m_pData[k];
  return first;
}

template <class TYPE, class ARG_TYPE>
void KvBtArray<TYPE, ARG_TYPE>::Copy(const KvBtArray& other) {
  if (&other == this || !Resize(other.m_nSize)) return;
  for (int k = 0; k < other.m_nSize; ++k) m_pData[k] = other.m_pData[k];
}

template <class TYPE, class ARG_TYPE>
void KvBtArray<TYPE, ARG_TYPE>::InsertAt(int i, ARG_TYPE value, int count) {
  if (i < 0 || count <= 0) return;
  if (static_cast<long long>(i < m_nSize ? m_nSize : i) + count > INT_MAX) return;
  const TYPE keep(value);
  if (i < m_nSize) {
    const int oldSize = m_nSize;
    if (!Resize(m_nSize + count)) return;
    Destroy(m_pData + oldSize, count);
    Relocate(m_pData + i + count, m_pData + i, oldSize - i);
    Construct(m_pData + i, count);
  } else if (!Resize(i + count)) {
    return;
  }
  for (int k = 0; k < count; ++k) m_pData[i + k] = keep;
}

template <class TYPE, class ARG_TYPE>
void KvBtArray<TYPE, ARG_TYPE>::InsertAt(int i, const KvBtArray* other) {
  if (other == nullptr || other->m_nSize == 0 || i < 0) return;
  if (other == this) {
    const KvBtArray copy(*this);
    InsertAt(i, &copy);
    return;
  }
  const int oldSize = this->m_nSize;
  InsertAt(i, other->m_pData[0], other->m_nSize);
  if (this->m_nSize == oldSize) return;
  for (int k = 1; k < other->m_nSize; ++k) m_pData[i + k] = other->m_pData[k];
}

template <class TYPE, class ARG_TYPE>
void KvBtArray<TYPE, ARG_TYPE>::RemoveAt(int i, int count) {
  if (i < 0 || count < 0 || i >= m_nSize) return;
  if (count > m_nSize - i) count = m_nSize - i;
  Destroy(m_pData + i, count);
  Relocate(m_pData + i, m_pData + i + count, m_nSize - i - count);
  m_nSize -= count;
}

/// A growable array of TYPE with element-wise equality, cyclic access (index modulo the size, -1 is the last element),
/// deep copying and cyclic reordering.
template <class TYPE>
class KvBtDynArray : public KvBtArray<TYPE, TYPE> {
  using Base = KvBtArray<TYPE, TYPE>;

 public:
  KvBtDynArray() = default;
  /// The elements in the order given, each deep-copied.
  KvBtDynArray(std::initializer_list<TYPE> items) {
    if (items.size() > static_cast<std::size_t>(INT_MAX)) return;
    this->SetSize(static_cast<int>(items.size()));
    int k = 0;
    for (const TYPE& item : items) DeepCopyElement(this->m_pData[k++], item);
  }
  /// Copies the elements.
  KvBtDynArray(const KvBtDynArray&) = default;
  /// Takes over the storage of the other array.
  KvBtDynArray(KvBtDynArray&&) noexcept = default;
  /// Copies the elements, as KvBtArray's assignment.
  KvBtDynArray& operator=(const KvBtDynArray&) = default;
  /// Copies the elements, as KvBtArray's assignment.
  KvBtDynArray& operator=(KvBtDynArray&&) = default;
  ~KvBtDynArray() override = default;

  /// 1 when other is this array, or has the same size and every pair of elements is equal
  /// under TYPE's operator== (point arrays so compare with the point tolerance).
  int operator==(const KvBtDynArray& other) const {
    if (&other == this) return 1;
    if (other.m_nSize != this->m_nSize) return 0;
    for (int k = 0; k < this->m_nSize; ++k)
      if (!(this->m_pData[k] == other.m_pData[k])) return 0;
    return 1;
  }
  /// The negation of operator==.
  int operator!=(const KvBtDynArray& other) const { return (*this == other) ? 0 : 1; }

  /// The cyclic index mod(i, size); 0 for an empty array.
  int Index(int i) const { return mod(i, this->m_nSize); }
  /// Element mod(i, size); a scratch element when empty.
  TYPE& Element(int i) { return this->m_nSize == 0 ? Base::Scratch() : this->m_pData[Index(i)]; }
  /// Element mod(i, size); a scratch element when empty.
  const TYPE& Element(int i) const { return this->m_nSize == 0 ? Base::Scratch() : this->m_pData[Index(i)]; }
  /// Element mod(i, size); a scratch element when empty.
  TYPE& operator()(int i) { return Element(i); }
  /// Element mod(i, size); a scratch element when empty.
  const TYPE& operator()(int i) const { return Element(i); }

  /// Size of other, then each element deep-copied from the element at the same index: by the
  /// element's own DeepCopy where it has one (arrays of arrays), by assignment otherwise.
  void DeepCopy(const KvBtDynArray& other) {
    if (&other == this) return;
    this->SetSize(other.m_nSize);
    if (this->m_nSize != other.m_nSize) return;  // no memory: unchanged
    for (int k = 0; k < other.m_nSize; ++k) DeepCopyElement(this->m_pData[k], other.m_pData[k]);
  }

  /// Reorders cyclically so that the element at index comes first; the order is kept when
  /// reverse is 0 and reversed otherwise: element k becomes the old element index + k (or
  /// index - k), taken modulo the size.
  void NewFirstElement(int index, int reverse) {
    const int n = this->m_nSize;
    if (n == 0) return;
    KvBtDynArray copy;
    copy.DeepCopy(*this);
    if (copy.m_nSize != n) return;  // no memory: the order stays
    for (int k = 0; k < n; ++k) {
      const long long src = reverse ? static_cast<long long>(index) - k : static_cast<long long>(index) + k;
      DeepCopyElement(this->m_pData[k], copy.m_pData[mod(static_cast<int>(src % n), n)]);
    }
  }

 private:
  template <class T, class = void>
  struct HasDeepCopy : std::false_type {};
  template <class T>
  struct HasDeepCopy<T, std::void_t<decltype(std::declval<T&>().DeepCopy(std::declval<const T&>()))>> : std::true_type {
  };

  static void DeepCopyElement(TYPE& to, const TYPE& from) {
    if (&to == &from) return;
    if constexpr (HasDeepCopy<TYPE>::value)
      to.DeepCopy(from);
    else
      to = from;
  }
};

/// A short array for small element counts; the same interface as KvBtArray.
template <class TYPE>
class KvBtSmallArray : public KvBtArray<TYPE, const TYPE&> {
 public:
  KvBtSmallArray() = default;
  /// Copies the elements.
  KvBtSmallArray(const KvBtSmallArray&) = default;
  /// Takes over the storage of the other array.
  KvBtSmallArray(KvBtSmallArray&&) noexcept = default;
  /// Copies the elements, as KvBtArray's assignment.
  KvBtSmallArray& operator=(const KvBtSmallArray&) = default;
  /// Copies the elements, as KvBtArray's assignment.
  KvBtSmallArray& operator=(KvBtSmallArray&&) = default;
  ~KvBtSmallArray() override = default;
};
