#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "UtilityGeometry.h"

namespace {
// Counts live objects, so that element lifetimes can be checked across growth, insertion and
// removal. The checks count from the number live when the test began: an out-of-range access of
// an empty array creates the shared scratch element, which lives on to the end of the program.
struct Counted {
  static int live;
  int value;
  Counted(int v = -1) : value(v) { ++live; }  // NOLINT: implicit for brevity in tables
  Counted(const Counted& o) : value(o.value) { ++live; }
  Counted& operator=(const Counted&) = default;
  ~Counted() { --live; }
  bool operator==(const Counted& o) const { return value == o.value; }
  using KvBtBitwiseRelocatable = void;  // the count is static, nothing points into the object
};
int Counted::live = 0;

using Array = KvBtDynArray<Counted>;

std::vector<int> Values(const Array& a) {
  std::vector<int> v;
  for (int i = 0; i < a.GetSize(); ++i) v.push_back(a.GetAt(i).value);
  return v;
}

Array Make(std::initializer_list<int> values) {
  Array a;
  for (int v : values) a.Add(v);
  return a;
}
}  // namespace

TEST(Array, GrowthSequence) {
  KvBtArray<int, int> a;
  std::vector<int> capacities;
  for (int i = 0; i < 60; ++i) {
    a.Add(i);
    if (capacities.empty() || capacities.back() != a.GetCapacity()) capacities.push_back(a.GetCapacity());
  }
  // Steps of 4 while size / 8 is below 4, then size / 8.
  const std::vector<int> expected = {1, 5, 9, 13, 17, 21, 25, 29, 33, 37, 41, 46, 51, 57, 64};
  EXPECT_EQ(capacities, expected);

  KvBtArray<int, int> b;
  b.SetSize(5, 10);
  b.SetSize(6);
  EXPECT_EQ(b.GetCapacity(), 15);
  // A fixed step is kept for later growth; a negative size counts as 0.
  b.SetSize(16);
  EXPECT_EQ(b.GetCapacity(), 25);
  b.SetSize(-3);
  EXPECT_EQ(b.GetSize(), 0);
  EXPECT_EQ(b.GetData(), nullptr);
  // With many elements the automatic step is capped at 1024.
  KvBtArray<char, char> c;
  c.SetSize(20000);
  c.SetSize(20001);
  EXPECT_EQ(c.GetCapacity(), 21024);
}

TEST(Array, InsertAndRemove) {
  const int live = Counted::live;
  {
    Array a = Make({0, 1, 2, 3, 4});
    a.RemoveAt(2, 100);
    EXPECT_EQ(Values(a), (std::vector<int>{0, 1}));
    a.RemoveAt(-1);
    a.RemoveAt(5);
    a.RemoveAt(0, -1);
    EXPECT_EQ(Values(a), (std::vector<int>{0, 1}));
  }
  {
    Array a = Make({0, 1, 2, 3, 4});
    a.InsertAt(7, Counted(9), 2);
    EXPECT_EQ(Values(a), (std::vector<int>{0, 1, 2, 3, 4, -1, -1, 9, 9}));
    a.InsertAt(1, Counted(8), 2);
    EXPECT_EQ(Values(a), (std::vector<int>{0, 8, 8, 1, 2, 3, 4, -1, -1, 9, 9}));
    a.InsertAt(-1, Counted(5));
    a.InsertAt(0, Counted(5), 0);
    EXPECT_EQ(a.GetSize(), 11);
    // Inserting an element of the array itself, across a reallocation.
    Array b = Make({1, 2, 3, 4, 5});
    b.FreeExtra();
    b.InsertAt(0, b[4], 3);
    EXPECT_EQ(Values(b), (std::vector<int>{5, 5, 5, 1, 2, 3, 4, 5}));
    b.SetAtGrow(9, b[0]);
    EXPECT_EQ(b.GetAt(9).value, 5);
    b.InsertAt(2, &b);
    EXPECT_EQ(b.GetSize(), 20);
    EXPECT_EQ(b.GetAt(2).value, 5);
    EXPECT_EQ(b.GetAt(10).value, -1);
    EXPECT_EQ(b.GetAt(11).value, 5);
  }
  EXPECT_EQ(Counted::live, live);
}

TEST(Array, OutOfRangeAccessIsAbsorbed) {
  Array a = Make({10, 20, 30});
  EXPECT_EQ(a.GetAt(10).value, 30);
  EXPECT_EQ(a.GetAt(-1).value, 30);
  a.SetAt(5, Counted(33));
  EXPECT_EQ(Values(a), (std::vector<int>{10, 20, 33}));
  a.ElementAt(-7).value = 34;
  EXPECT_EQ(a[2].value, 34);
  // Cyclic access of the dynamic array.
  EXPECT_EQ(a.Element(-1).value, 34);
  EXPECT_EQ(a.Element(3).value, 10);
  EXPECT_EQ(a(-4).value, 34);
  EXPECT_EQ(a.Index(-1), 2);

  Array empty;
  EXPECT_EQ(empty.GetAt(0).value, -1);
  empty[0].value = 99;  // lands in the scratch element
  empty.Element(5).value = 98;
  EXPECT_EQ(empty.GetSize(), 0);
  EXPECT_EQ(empty.ElementAt(0).value, -1);
  EXPECT_EQ(empty.Index(3), 0);
}

TEST(Array, CopyAppendAndFreeExtra) {
  const int live = Counted::live;
  Array a = Make({1, 2, 3});
  EXPECT_EQ(a.Append(a), 3);
  EXPECT_EQ(Values(a), (std::vector<int>{1, 2, 3}));
  Array b = Make({7});
  EXPECT_EQ(b.Append(a), 1);
  EXPECT_EQ(Values(b), (std::vector<int>{7, 1, 2, 3}));
  b.Copy(b);
  EXPECT_EQ(Values(b), (std::vector<int>{7, 1, 2, 3}));
  b.Copy(a);
  EXPECT_EQ(Values(b), Values(a));
  EXPECT_TRUE(a == b);
  b[1].value = 0;
  EXPECT_TRUE(a != b);
  EXPECT_TRUE(Make({1, 2}) != Make({1, 2, 3}));

  Array c = Make({1, 2, 3, 4, 5, 6});
  c.RemoveAt(0, 6);
  c.FreeExtra();
  EXPECT_EQ(c.GetCapacity(), 9);  // an empty array keeps its storage
  c = Make({1, 2, 3, 4, 5, 6});
  c.RemoveAt(0, 2);
  c.FreeExtra();
  EXPECT_EQ(c.GetCapacity(), 4);
  c.RemoveAll();
  EXPECT_EQ(c.GetCapacity(), 0);
  // Assigning a temporary copies too: the growth step stays, and so does large enough storage.
  c.SetSize(1, 100);
  c = Make({1, 2, 3});
  EXPECT_EQ(c.GetCapacity(), 101);
  const Counted* storage = c.GetData();
  c = Make({4, 5});
  EXPECT_EQ(c.GetData(), storage);
  EXPECT_EQ(Values(c), (std::vector<int>{4, 5}));
  c.SetSize(102);
  EXPECT_EQ(c.GetCapacity(), 201);
  c.RemoveAll();

  Array moved(std::move(b));
  EXPECT_EQ(moved.GetSize(), 3);
  EXPECT_EQ(b.GetSize(), 0);
  EXPECT_EQ(Counted::live - live, 6);  // a and moved; nothing leaked or destroyed twice
}

TEST(Array, NewFirstElement) {
  const Array abcd = Make({0, 1, 2, 3});
  struct Row {
    int index, reverse;
    std::vector<int> want;
  };
  const Row rows[] = {
      {2, 0, {2, 3, 0, 1}},  {2, 1, {2, 1, 0, 3}}, {0, 1, {0, 3, 2, 1}},
      {-1, 0, {3, 0, 1, 2}}, {6, 0, {2, 3, 0, 1}}, {-2147483647 - 1, 1, {0, 3, 2, 1}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.index << "," << r.reverse);
    Array a(abcd);
    a.NewFirstElement(r.index, r.reverse);
    EXPECT_EQ(Values(a), r.want);
  }
  Array empty;
  empty.NewFirstElement(3, 1);
  EXPECT_EQ(empty.GetSize(), 0);
}

TEST(Array, DeepCopyUsesTheElementsOwnDeepCopy) {
  KvBtDynArray<Array> outer;
  outer.Add(Make({1, 2}));
  outer.Add(Make({3}));
  KvBtDynArray<Array> copy;
  copy.DeepCopy(outer);
  ASSERT_EQ(copy.GetSize(), 2);
  EXPECT_EQ(Values(copy[1]), (std::vector<int>{3}));
  copy[0][0].value = 42;
  EXPECT_EQ(outer[0][0].value, 1);
  outer.NewFirstElement(1, 0);
  EXPECT_EQ(Values(outer[0]), (std::vector<int>{3}));
}

// The element types the library stores in its arrays opt into bitwise relocation (directly or
// through a base); types that may point into themselves do not.
static_assert(KvBtIsRelocatable<int>::value && KvBtIsRelocatable<KvGeModMat3d*>::value);
static_assert(KvBtIsRelocatable<KvGePoint2d>::value && KvBtIsRelocatable<KvGePoint23d>::value);
static_assert(KvBtIsRelocatable<KvGeVector4>::value && KvBtIsRelocatable<KvGeMatrix4X4>::value);
static_assert(KvBtIsRelocatable<KvGeIntrPoint3d>::value && KvBtIsRelocatable<KvGeIntrPart2d>::value);
static_assert(KvBtIsRelocatable<KvGePolygon2d>::value && KvBtIsRelocatable<KvGePolyline2d>::value);
static_assert(KvBtIsRelocatable<KvGeLine23d>::value && KvBtIsRelocatable<KvGeBox3d>::value);
static_assert(KvBtIsRelocatable<KvGeAngle>::value && KvBtIsRelocatable<KvGePolyVert2d>::value);
static_assert(!KvBtIsRelocatable<std::string>::value && !KvBtIsRelocatable<KvBtString>::value);
static_assert(!KvBtIsRelocatable<std::vector<int>>::value);

// Under AddressSanitizer an allocation beyond what the machine has must come back as nullptr,
// as it does from the C library, instead of ending the program: the test below asks for one.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }

// Reallocate threw std::bad_alloc out of the library. Running out of memory now leaves the array
// as it was and reports -1 where a result is returned.
TEST(Array, OutOfMemoryKeepsTheArrayAndThrowsNothing) {
  struct Block {
    char bytes[1 << 16];
  };
  KvBtArray<Block, const Block&> a;
  a.SetSize(3);
  a[1].bytes[0] = 'x';
  const Block* data = a.GetData();
  a.SetSize(INT_MAX);  // 2^47 bytes
  EXPECT_EQ(a.GetSize(), 3);
  EXPECT_EQ(a.GetCapacity(), 3);
  EXPECT_EQ(a.GetData(), data);
  EXPECT_EQ(a[1].bytes[0], 'x');
  a.InsertAt(1, a[0], INT_MAX - 3);
  EXPECT_EQ(a.GetSize(), 3);
  EXPECT_EQ(a[1].bytes[0], 'x');
  KvBtArray<Block, const Block&> empty;
  empty.SetSize(INT_MAX);
  EXPECT_EQ(empty.GetSize(), 0);
  EXPECT_EQ(empty.GetData(), nullptr);
}
