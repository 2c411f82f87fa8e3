#pragma once
/// @file
/// A permutation of indices 0 .. n - 1 that orders a separate array without moving its items.
/// Sort() orders the entries in place with a comparison object cmp(a, b) on two entries
/// (negative, 0 or positive as item a sorts before, with or after item b): a quicksort that,
/// for ranges of more than 8 entries, swaps the middle entry to the front as pivot and
/// partitions around it, and finishes shorter ranges with an exchange sort. It is not stable.
/// A chain of more than 2 log2(n) partitions (inputs such as values running up and then down,
/// on which the middle pivot keeps splitting off a few entries) hands its range to a heap sort,
/// so no input takes more than n log n time. Where cmp is a strict order the sorted result is
/// unique, so the guard changes no result. The scans are bounded by the range, so even an
/// inconsistent comparison cannot make the sort read outside the permutation or fail to end.

#include <climits>
#include <vector>

#include "basics/companion/UtilityBasicsClassExport.h"

/// A permutation of indices 0 .. n - 1 that orders a separate array without moving its items; Sort is an unstable
/// quicksort guarded by a heap sort, never quadratic.
class KVBT_API KvTlPermVector {
 public:
  KvTlPermVector() = default;
  /// The identity of n entries.
  explicit KvTlPermVector(int n) { SetSize(n); }
  /// Copies the entries.
  KvTlPermVector(const KvTlPermVector&) = default;
  /// Copies the entries.
  KvTlPermVector& operator=(const KvTlPermVector&) = default;
  virtual ~KvTlPermVector();

  /// The number of entries.
  int GetSize() const { return static_cast<int>(m_Perm.size()); }
  /// Resizes; the capacity is kept when shrinking, so a reused permutation does not reallocate.
  /// Entries added by growing hold their own position.
  void SetSize(int n);
  /// 0, 1, 2, ... n - 1.
  void SetIdentity();
  /// Entry i; an index out of range gives the last entry, and -1 on an empty permutation.
  int GetAt(int i) const;
  /// Entry i, as GetAt.
  int operator[](int i) const { return GetAt(i); }
  /// Writes entry i; an index out of range is ignored.
  void SetAt(int i, int value);
  /// Exchanges entries i and j; an index out of range does nothing.
  void Swap(int i, int j);
  /// The entries.
  const int* GetData() const { return m_Perm.data(); }

  /// Orders the entries in place by cmp(a, b) (negative, 0 or positive as item a sorts before, with or after item b);
  /// not stable.
  template <class Compare>
  void Sort(const Compare& cmp);

 private:
  std::vector<int> m_Perm;
};

namespace KvTlDetail {

/// Moves item i of the heap a[0 .. n - 1] down until no child sorts after it.
template <class T, class Compare>
void SiftDown(T* a, int i, int n, const Compare& cmp) {
  const T v = a[i];
  for (;;) {
    long long c = 2LL * i + 1;
    if (c >= n) break;
    if (c + 1 < n && cmp(a[c], a[c + 1]) < 0) ++c;
    if (!(cmp(v, a[c]) < 0)) break;
    a[i] = a[c];
    i = static_cast<int>(c);
  }
  a[i] = v;
}

template <class T, class Compare>
void HeapSort(T* a, int n, const Compare& cmp) {
  for (int i = n / 2 - 1; i >= 0; --i) SiftDown(a, i, n, cmp);
  for (int end = n - 1; end > 0; --end) {
    const T t = a[0];
    a[0] = a[end];
    a[end] = t;
    SiftDown(a, 0, end, cmp);
  }
}

}  // namespace KvTlDetail

/// The sort of KvTlPermVector::Sort on any run of n items, for callers that keep their items in
/// storage of their own: cmp(x, y) compares two items (never an item with itself), and the same
/// comparisons in the same order give the same (unstable) result, whether the items are indices
/// or the records themselves.
///
/// skip(lo, hi) may declare a range lo .. hi whose set of items is final (the range lies between
/// two items already in place, or at an end) as needing no order among its items: the range is
/// then left as it is and the sort goes on with the other ranges, which it orders exactly as
/// without skipping. A caller that reads only some positions of the order uses this to order
/// just those.
template <class T, class Compare, class Skip>
void KvTlSortRange(T* a, int n, const Compare& cmp, const Skip& skip) {
  int lo = 0;
  int hi = n - 1;
  // Partitions left along any chain of ranges: 2 floor(log2 n).
  int depth = 0;
  for (int m = n; m > 1; m >>= 1) depth += 2;
  // Explicit stack of ranges still to sort, each with the partitions left to it: the larger
  // side is pushed and the smaller one is sorted at once, so the range in hand holds at most
  // n / 2^k items while k ranges wait, and never more than log2(n) < 31 ranges wait for any
  // int n.
  struct Range {
    int lo, hi, depth;
  };
  Range stack[64];
  static_assert(sizeof(stack) / sizeof(stack[0]) >= sizeof(int) * CHAR_BIT, "one range per bit of n");
  int top = 0;
  for (;;) {
    bool done = false;
    while (hi - lo + 1 > 8) {
      if (skip(lo, hi)) {
        done = true;
        break;
      }
      if (depth == 0) {
        KvTlDetail::HeapSort(a + lo, hi - lo + 1, cmp);
        done = true;
        break;
      }
      --depth;
      const int mid = lo + (hi - lo) / 2;
      T t = a[lo];
      a[lo] = a[mid];
      a[mid] = t;
      const T pivot = a[lo];
      int i = lo;
      int j = hi + 1;
      for (;;) {
        do ++i;
        while (i <= hi && cmp(a[i], pivot) < 0);
        do --j;
        while (j > lo && cmp(pivot, a[j]) < 0);
        if (i >= j) break;
        t = a[i];
        a[i] = a[j];
        a[j] = t;
      }
      a[lo] = a[j];
      a[j] = pivot;
      if (j - lo < hi - j) {
        stack[top++] = Range{j + 1, hi, depth};
        hi = j - 1;
      } else {
        stack[top++] = Range{lo, j - 1, depth};
        lo = j + 1;
      }
    }
    // Exchange sort of the short range: each item is swapped down past larger ones.
    if (!done && hi > lo && !skip(lo, hi)) {
      for (int k = lo + 1; k <= hi; ++k) {
        for (int m = k; m > lo && cmp(a[m], a[m - 1]) < 0; --m) {
          const T t = a[m];
          a[m] = a[m - 1];
          a[m - 1] = t;
        }
      }
    }
    if (top == 0) break;
    --top;
    lo = stack[top].lo;
    hi = stack[top].hi;
    depth = stack[top].depth;
  }
}

/// Inline, so that each caller's copy stays hidden in its own library instead of being exported.
template <class Compare>
inline void KvTlPermVector::Sort(const Compare& cmp) {
  KvTlSortRange(m_Perm.data(), GetSize(), cmp, [](int, int) { return false; });
}
