// The WKT reader fed arbitrary text. The first byte picks the target type (% 9: any geometry,
// then the plane and plan classes); the rest is the text, given with its length (it need not
// be zero-terminated). A failed read leaves the target as it was and says why; a read that
// succeeds is written, read again and written again, and both texts must be the same, but for
// the orientation of holes outside every shell (see below).
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "geometry/io/KvGeWkt.h"

namespace {

// The numbers of a written text as they are spelt, sorted.
std::vector<std::string> SortedNumbers(const std::string& text) {
  std::vector<std::string> numbers;
  std::string current;
  for (const char c : text) {
    if ((c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E') {
      current += c;
    } else if (!current.empty()) {
      numbers.push_back(current);
      current.clear();
    }
  }
  if (!current.empty()) numbers.push_back(current);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

// The largest magnitude of the numbers in a written text; not a number counts as infinite.
double LargestNumber(const std::string& text) {
  double largest = 0;
  const char* p = text.c_str();
  while (*p) {
    if ((*p >= '0' && *p <= '9') || *p == '-' || *p == '.') {
      char* end = nullptr;
      const double v = std::strtod(p, &end);
      if (end == p) break;
      if (!(std::fabs(v) <= largest)) largest = std::isnan(v) ? HUGE_VAL : std::fabs(v);
      p = end;
    } else {
      ++p;
    }
  }
  return largest;
}

template <class T>
void RoundTrip(const std::string& text, const T& marker) {
  T target(marker);
  const std::string before = KvGeWriteWkt(target);
  std::string message;
  if (!KvGeReadWkt(text.data(), text.size(), target, &message)) {
    UG_FUZZ_REQUIRE(!message.empty());
    UG_FUZZ_REQUIRE(KvGeWriteWkt(target) == before);
    return;
  }
  const std::string written = KvGeWriteWkt(target);
  // Orientation reads the sign of the area. Beyond the supported coordinate range (1e9) its
  // rounding, or its overflow, may turn a ring over on every round: such text must read back,
  // nothing more.
  const bool inRange = LargestNumber(written) <= kKvGeRegionRange;
  T again(marker);
  UG_FUZZ_REQUIRE(KvGeReadWkt(written, again, &message));
  const std::string rewritten = KvGeWriteWkt(again);
  if (rewritten == written || !inRange) return;
  // The one change a second round may make, by design: a hole that no shell contains is written
  // as a polygon of its own, still clockwise, and reads back counter-clockwise; as a shell it
  // may then take in another lone hole, one whose orientation rounding leaves unclear (a sliver
  // of area 1e-29 that neither order makes counter-clockwise), which is then written under it.
  // The same numbers, grouped and ordered otherwise; the text after that is final.
  UG_FUZZ_REQUIRE(SortedNumbers(written) == SortedNumbers(rewritten));
  T third(marker);
  UG_FUZZ_REQUIRE(KvGeReadWkt(rewritten, third, &message));
  UG_FUZZ_REQUIRE(KvGeWriteWkt(third) == rewritten);
}

KvGePolygon2d Square() {
  KvGePolygon2d ring;
  ring.Add(KvGePoint2d(0, 0));
  ring.Add(KvGePoint2d(1, 0));
  ring.Add(KvGePoint2d(1, 1));
  return ring;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  switch (data[0] % 9) {
    case 0: {
      KvGeWktGeometry marker;
      marker.Set(KvGePoint2d(7, 7));
      RoundTrip(text, marker);
      break;
    }
    case 1: {
      KvGePolygon2dArray marker;
      marker.Add(Square());
      RoundTrip(text, marker);
      break;
    }
    case 2:
      RoundTrip(text, Square());
      break;
    case 3: {
      KvGePolyline2dArray marker;
      marker.Add(KvGePolyline2d(Square()));
      RoundTrip(text, marker);
      break;
    }
    case 4: {
      KvBtDynArray<KvGeLine2d> marker;
      marker.Add(KvGeLine2d(KvGePoint2d(1, 2), KvGePoint2d(3, 4)));
      RoundTrip(text, marker);
      break;
    }
    case 5:
      RoundTrip(text, static_cast<const KvGePoint2dArray&>(Square()));
      break;
    case 6:
      RoundTrip(text, KvGeLine2d(KvGePoint2d(1, 2), KvGePoint2d(3, 4)));
      break;
    case 7: {
      KvGePoint3dArray ring;
      ring.Add(KvGePoint3d(0, 0, 1));
      ring.Add(KvGePoint3d(2, 0, 1));
      ring.Add(KvGePoint3d(0, 2, 3));
      RoundTrip(text, KvGePolygon23d(ring, 2.5));
      break;
    }
    default:
      RoundTrip(text, KvGePoint3d(1, 2, 3));
  }
  return 0;
}
