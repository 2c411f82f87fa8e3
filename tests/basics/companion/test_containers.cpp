#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "basics/companion/KvBtSimpleArray.h"
#include "basics/companion/KvBtString.h"
#include "basics/companion/KvTlPermVector.h"

TEST(String, SlicesClampTheirArguments) {
  const KvBtString s("abcdef");
  struct Row {
    KvBtString got;
    const char* want;
  };
  const Row rows[] = {
      {s.Left(2), "ab"},    {s.Left(-1), ""},        {s.Left(99), "abcdef"}, {s.Mid(4), "ef"},
      {s.Mid(-3, 2), "ab"}, {s.Mid(5, 99), "f"},     {s.Mid(9), ""},         {s.Mid(2, -1), ""},
      {s.Right(2), "ef"},   {s.Right(99), "abcdef"}, {s.Right(-2), ""},
  };
  for (const Row& r : rows) EXPECT_STREQ(r.got.c_str(), r.want);
  EXPECT_EQ(s.GetAt(6), '\0');
  EXPECT_EQ(KvBtString(nullptr).GetLength(), 0);
  EXPECT_TRUE(KvBtString("ab", 1) == KvBtString("a"));
  EXPECT_TRUE(KvBtString("a\0b", 3) != KvBtString("a"));
}

TEST(SimpleArray, OutOfRangeFallsBackOnTheLastElement) {
  KvBtRealArray a;
  EXPECT_EQ(a.GetAt(0), 0.0);  // empty: a default value
  a[3] = 5.0;                  // empty: the write lands in a scratch element
  EXPECT_EQ(a.GetSize(), 0);
  EXPECT_EQ(a[0], 0.0);
  a.Add(1.0);
  a.Add(2.0);
  EXPECT_EQ(a.GetAt(-1), 2.0);
  EXPECT_EQ(a.GetAt(7), 2.0);
  a.SetAt(9, 4.0);
  EXPECT_EQ(a.GetAt(1), 4.0);
  a.InsertAt(4, 9.0);
  EXPECT_EQ(a.GetSize(), 5);
  EXPECT_EQ(a.GetAt(2), 0.0);
  a.RemoveAt(1, 100);
  EXPECT_EQ(a.GetSize(), 1);
  EXPECT_EQ(a.Append(a), 1);
  KvBtIntegerArray ints;
  ints.InsertAt(-1, 3);
  EXPECT_EQ(ints.GetSize(), 0);
}

// Values running up and then down (a line through a spiral) made the middle pivot split off a
// few entries at a time, n^2 / 4 comparisons; now no pattern needs more than 5 n log2 n. The
// result is a permutation in the order of std::stable_sort up to ties (with distinct keys the
// very same order), also at the small sizes around the cut-offs of the sort.
TEST(PermVector, SortsLikeStdSortWithoutAQuadraticWorstCase) {
  std::mt19937 rng(7);
  static std::vector<double> drawn(1000);
  for (double& k : drawn) k = static_cast<double>(rng() % 50);  // many ties
  struct Row {
    const char* what;
    double (*key)(int i, int n);
    std::vector<int> sizes;
    bool distinct;
  };
  const Row rows[] = {
      {"random, ties", [](int i, int) { return drawn[static_cast<std::size_t>(i)]; }, {0, 1, 2, 8, 9, 17, 1000}, false},
      {"up then down, distinct", [](int i, int m) { return i < m / 2 ? 2.0 * i : 2.0 * (m - i) + 1; }, {20000}, true},
      {"up then down, ties", [](int i, int m) { return i < m / 2 ? 1.0 * i : 1.0 * (m - i); }, {20000}, false},
      {"down then up", [](int i, int m) { return i < m / 2 ? -1.0 * i : 1.0 * (i - m); }, {20000}, false},
      {"sawtooth", [](int i, int) { return 1.0 * (i % 100); }, {20000}, false},
      {"ascending", [](int i, int) { return 1.0 * i; }, {9, 20000}, true},
  };
  for (const Row& r : rows) {
    for (const int n : r.sizes) {
      SCOPED_TRACE(testing::Message() << r.what << ", " << n);
      std::vector<double> keys(static_cast<std::size_t>(n));
      for (int i = 0; i < n; ++i) keys[static_cast<std::size_t>(i)] = r.key(i, n);
      long long comparisons = 0;
      KvTlPermVector p(n);
      p.Sort([&](int a, int b) {
        ++comparisons;
        return keys[a] < keys[b] ? -1 : (keys[a] > keys[b] ? 1 : 0);
      });
      EXPECT_LE(comparisons, n < 2 ? 0 : static_cast<long long>(5 * n * std::log2(n)));
      std::vector<int> want(static_cast<std::size_t>(n)), entries(p.GetData(), p.GetData() + n);
      for (int i = 0; i < n; ++i) want[static_cast<std::size_t>(i)] = i;
      std::stable_sort(want.begin(), want.end(), [&](int a, int b) { return keys[a] < keys[b]; });
      for (int i = 0; i < n; ++i) ASSERT_EQ(keys[p[i]], keys[want[i]]) << i;
      if (r.distinct) {
        EXPECT_TRUE(std::equal(want.begin(), want.end(), p.GetData()));
      }
      std::sort(entries.begin(), entries.end());
      for (int i = 0; i < n; ++i) ASSERT_EQ(entries[i], i);  // still a permutation
    }
  }
}

TEST(PermVector, InconsistentComparisonEndsAndKeepsAPermutation) {
  std::mt19937 rng(3);
  KvTlPermVector p(300);
  p.Sort([&](int, int) { return static_cast<int>(rng() % 3) - 1; });
  std::vector<int> entries(p.GetData(), p.GetData() + p.GetSize());
  std::sort(entries.begin(), entries.end());
  for (int i = 0; i < 300; ++i) EXPECT_EQ(entries[i], i);
}

TEST(PermVector, AbsorbedIndices) {
  KvTlPermVector p;
  EXPECT_EQ(p.GetAt(0), -1);
  p.SetSize(3);
  EXPECT_EQ(p[2], 2);
  EXPECT_EQ(p[5], 2);
  EXPECT_EQ(p[-1], 2);
  p.SetAt(7, 0);
  p.Swap(0, 9);
  EXPECT_EQ(p[0], 0);
  p.Swap(0, 2);
  EXPECT_EQ(p[0], 2);
  p.SetIdentity();
  EXPECT_EQ(p[0], 0);
}
