// The archive and the point array's stored form fed untrusted bytes.
//
// The first byte picks the case (its low bit):
//   0  the rest is an archive holding a point array: it is loaded into an array holding one
//      marker point. A failed load must leave the marker; a load that succeeds is stored and
//      loaded again and must give the same points, and storing that copy the same bytes.
//   1  a script: a byte n (n % 24 values), n bytes naming the type of each value (% 7: the
//      unsigned and signed integers, the double, the string), then the archive. The values are
//      loaded in turn; a failed load leaves its value untouched. The values that loaded are
//      stored and loaded again and must come back the same (a double bit for bit).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "basics/companion/KvBtArchive.h"
#include "basics/companion/KvBtString.h"
#include "fuzz/fuzz_input.h"
#include "geometry/points/KvGePoint2dArray.h"

namespace {

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

bool SamePoints(const KvGePoint2dArray& a, const KvGePoint2dArray& b) {
  if (a.GetSize() != b.GetSize()) return false;
  for (int i = 0; i < a.GetSize(); ++i)
    if (!SameBits(a[i].x, b[i].x) || !SameBits(a[i].y, b[i].y) || a[i].m_bInfinite != b[i].m_bInfinite) return false;
  return true;
}

std::string Store(const KvGePoint2dArray& a) {
  std::ostringstream out;
  KvBtArchive ar(out);
  KvGePoint2dArray(a).Serialize(ar);
  UG_FUZZ_REQUIRE(!ar.IsFailed());
  return out.str();
}

void PointArray(const std::string& bytes) {
  KvGePoint2dArray marker;
  marker.Add(KvGePoint2d(77, 77));
  KvGePoint2dArray a(marker);
  std::istringstream in(bytes);
  KvBtArchive ar(in);
  a.Serialize(ar);
  std::uint16_t version = 0;
  if (bytes.size() >= 2) std::memcpy(&version, bytes.data(), 2);  // the tests run little-endian
  if (ar.IsFailed() || (version != 1 && version != 2)) {
    UG_FUZZ_REQUIRE(SamePoints(a, marker));
    return;
  }
  // Every decoded coordinate is a whole number of tenths within the stored range.
  for (const KvGePoint2d& p : a)
    UG_FUZZ_REQUIRE(std::abs(p.x) <= 3276.71 && std::abs(p.y) <= 3276.71 && !p.m_bInfinite);
  const std::string stored = Store(a);
  KvGePoint2dArray b(marker);
  std::istringstream again(stored);
  KvBtArchive ar2(again);
  b.Serialize(ar2);
  UG_FUZZ_REQUIRE(!ar2.IsFailed());
  UG_FUZZ_REQUIRE(b.GetSize() == a.GetSize());
  for (int i = 0; i < a.GetSize(); ++i) UG_FUZZ_REQUIRE(a[i].x == b[i].x && a[i].y == b[i].y);
  UG_FUZZ_REQUIRE(Store(b) == stored);
}

struct Value {
  int type;
  std::uint8_t u8 = 0xA5;
  std::uint16_t u16 = 0xA5A5;
  std::int16_t i16 = -0x5A5A;
  std::uint32_t u32 = 0xA5A5A5A5u;
  std::int32_t i32 = -0x5A5A5A5A;
  double d = -12345.5;
  KvBtString s = KvBtString("marker");
};

void Load(KvBtArchive& ar, Value& v) {
  switch (v.type) {
    case 0:
      ar >> v.u8;
      break;
    case 1:
      ar >> v.u16;
      break;
    case 2:
      ar >> v.i16;
      break;
    case 3:
      ar >> v.u32;
      break;
    case 4:
      ar >> v.i32;
      break;
    case 5:
      ar >> v.d;
      break;
    default:
      ar >> v.s;
      break;
  }
}

void Store(KvBtArchive& ar, const Value& v) {
  switch (v.type) {
    case 0:
      ar << v.u8;
      break;
    case 1:
      ar << v.u16;
      break;
    case 2:
      ar << v.i16;
      break;
    case 3:
      ar << v.u32;
      break;
    case 4:
      ar << v.i32;
      break;
    case 5:
      ar << v.d;
      break;
    default:
      ar << v.s;
      break;
  }
}

bool Same(const Value& a, const Value& b) {
  return a.u8 == b.u8 && a.u16 == b.u16 && a.i16 == b.i16 && a.u32 == b.u32 && a.i32 == b.i32 && SameBits(a.d, b.d) &&
         a.s.Str() == b.s.Str();
}

void Script(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const std::size_t n = std::min<std::size_t>(data[0] % 24, size - 1);
  Value values[24];
  for (std::size_t k = 0; k < n; ++k) values[k].type = data[1 + k] % 7;
  std::istringstream in(std::string(reinterpret_cast<const char*>(data + 1 + n), size - 1 - n));
  KvBtArchive ar(in);
  std::size_t loaded = 0;
  for (std::size_t k = 0; k < n; ++k) {
    const Value before = values[k];
    Load(ar, values[k]);
    if (ar.IsFailed()) {
      UG_FUZZ_REQUIRE(Same(values[k], before));
      break;
    }
    ++loaded;
  }
  std::ostringstream out;
  KvBtArchive store(out);
  for (std::size_t k = 0; k < loaded; ++k) Store(store, values[k]);
  UG_FUZZ_REQUIRE(!store.IsFailed());
  std::istringstream again(out.str());
  KvBtArchive load(again);
  for (std::size_t k = 0; k < loaded; ++k) {
    Value copy;
    copy.type = values[k].type;
    Load(load, copy);
    UG_FUZZ_REQUIRE(!load.IsFailed() && Same(copy, values[k]));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  if (data[0] & 1)
    Script(data + 1, size - 1);
  else
    PointArray(std::string(reinterpret_cast<const char*>(data + 1), size - 1));
  return 0;
}
