#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "basics/companion/KvBtArchive.h"
#include "basics/companion/KvBtString.h"

namespace {
std::string Store(const KvBtString& s) {
  std::ostringstream out;
  KvBtArchive ar(out);
  ar << s;
  EXPECT_EQ(ar.IsFailed(), 0);
  return out.str();
}

std::string Bytes(std::initializer_list<int> bytes) {
  std::string s;
  for (int b : bytes) s += static_cast<char>(b);
  return s;
}
}  // namespace

TEST(Archive, WordsAreLittleEndian) {
  std::ostringstream out;
  KvBtArchive ar(out);
  ar << std::uint16_t{0x1234} << std::int16_t{-2} << std::uint32_t{0xA1B2C3D4u} << std::uint8_t{7};
  EXPECT_EQ(out.str(), Bytes({0x34, 0x12, 0xFE, 0xFF, 0xD4, 0xC3, 0xB2, 0xA1, 7}));
}

TEST(Archive, StringLengthPrefixForms) {
  struct Row {
    std::size_t length;
    std::string prefix;
  };
  const Row rows[] = {
      {0, Bytes({0})},
      {254, Bytes({0xFE})},
      {255, Bytes({0xFF, 0xFF, 0x00})},
      {0xFFFD, Bytes({0xFF, 0xFD, 0xFF})},
      {0xFFFE, Bytes({0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00})},
      {70000, Bytes({0xFF, 0xFF, 0xFF, 0x70, 0x11, 0x01, 0x00})},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.length);
    const KvBtString s(std::string(r.length, 'a'));
    const std::string bytes = Store(s);
    ASSERT_EQ(bytes.size(), r.prefix.size() + r.length);
    EXPECT_EQ(bytes.substr(0, r.prefix.size()), r.prefix);
    std::istringstream in(bytes);
    KvBtArchive ar(in);
    KvBtString back("old");
    ar >> back;
    EXPECT_EQ(ar.IsFailed(), 0);
    EXPECT_TRUE(back == s);
  }
}

TEST(Archive, RoundTripOfEveryType) {
  std::stringstream io;
  {
    KvBtArchive ar(io, KvBtArchive::kStore);
    ar << std::uint8_t{200} << std::uint16_t{65535} << std::int16_t{-32768} << std::uint32_t{4000000000u}
       << std::int32_t{-123456789} << -0.1 << KvBtString("with\0zero", 9);
  }
  KvBtArchive ar(io, KvBtArchive::kLoad);
  std::uint8_t a = 0;
  std::uint16_t b = 0;
  std::int16_t c = 0;
  std::uint32_t d = 0;
  std::int32_t e = 0;
  double f = 0;
  KvBtString g;
  ar >> a >> b >> c >> d >> e >> f >> g;
  EXPECT_EQ(ar.IsFailed(), 0);
  EXPECT_TRUE(a == 200 && b == 65535 && c == -32768 && d == 4000000000u && e == -123456789 && f == -0.1)
      << int(a) << " " << b << " " << c << " " << d << " " << e << " " << f;
  EXPECT_TRUE(g == KvBtString("with\0zero", 9));

  // Reading from a storing archive is a failure, not a crash.
  std::ostringstream out;
  KvBtArchive store(out);
  std::uint16_t v = 9;
  store >> v;
  EXPECT_EQ(v, 9);
  EXPECT_EQ(store.IsFailed(), 1);
}

TEST(Archive, TruncatedOrMalformedInputFailsAndLeavesTargetUnchanged) {
  std::vector<std::string> inputs = {
      Bytes({0xFF, 0xFE, 0xFF}),                          // 0xFFFE is not a length this format writes
      Bytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}),  // 4 GiB announced, nothing follows
      Bytes({0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x80}),  // more than a string can hold
      Bytes({0xFF, 0x00, 0x10}) + std::string(100, 'y'),  // 4096 announced, 100 supplied
  };
  // Every proper prefix of a stored string is a truncated stream.
  const std::string full = Store(KvBtString(std::string(300, 'x')));
  for (std::size_t cut = 0; cut < full.size(); cut += (cut < 10 ? 1 : 37)) inputs.push_back(full.substr(0, cut));
  for (const std::string& input : inputs) {
    SCOPED_TRACE(testing::Message() << (&input - inputs.data()) << ": " << input.size() << " bytes");
    std::istringstream in(input);
    KvBtArchive ar(in);
    KvBtString target("keep");
    ar >> target;
    EXPECT_EQ(ar.IsFailed(), 1);
    EXPECT_TRUE(target == KvBtString("keep"));
  }
  std::istringstream in(Bytes({0x34}));
  KvBtArchive ar(in);
  std::uint16_t w = 5;
  ar >> w;
  EXPECT_EQ(w, 5);
  EXPECT_EQ(ar.IsFailed(), 1);
}

TEST(Archive, FailureIsSticky) {
  std::istringstream in(Bytes({1}) + "a" + Bytes({0x02, 0x00}));
  KvBtArchive ar(in);
  KvBtString s;
  std::uint32_t tooWide = 77;
  std::uint16_t word = 0;
  ar >> s >> tooWide >> word;  // the 32-bit read runs out; the word after it is not read
  EXPECT_TRUE(s == KvBtString("a"));
  EXPECT_EQ(tooWide, 77u);
  EXPECT_EQ(word, 0);
  EXPECT_EQ(ar.IsFailed(), 1);
}
