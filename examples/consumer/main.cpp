// A short tour of the library, built against the installed package.
#include <UtilityGeometry.h>

#include <cstdio>
#include <sstream>

namespace {
void Print(const char* label, const KvGeVector3& v) { std::printf("  %-34s (%g, %g, %g)\n", label, v.x, v.y, v.z); }
}  // namespace

int main() {
  std::printf("UtilityGeometry demonstration\n\n");

  std::printf("Tolerant comparisons (0.001 drawing units, inclusive):\n");
  std::printf("  IsEqual(1.0, 1.0009)             %d\n", IsEqual(1.0, 1.0009));
  std::printf("  IsEqual(1.0, 1.0011)             %d\n", IsEqual(1.0, 1.0011));
  std::printf("  mod(-1, 4)                       %d\n", mod(-1, 4));
  std::printf("  round(-0.25, 0.1)                %g\n", round(-0.25, 0.1));
  std::printf("  KVMATH_Round(-2.5)               %d\n\n", KVMATH_Round(-2.5));

  std::printf("Vectors:\n");
  const KvGeVector3 a(1, 2, 2), b(0, 1, 0);
  Print("a", a);
  Print("a + b", a + b);
  Print("a x b (Normal)", Normal(a, b));
  std::printf("  %-34s %g\n", "|a|", a.Length());
  Print("a normalised", a.Normalized());
  Print("a / 0 (unchanged)", a / 0.0);
  std::printf("  %-34s %d\n", "(0,0,0) == (0.0009,0,0)", KvGeVector3() == KvGeVector3(0.0009, 0, 0));
  std::printf("  %-34s %d\n\n", "(0,0,0) == (0.0011,0,0)", KvGeVector3() == KvGeVector3(0.0011, 0, 0));

  std::printf("Arrays (cyclic access, growth 1, 5, 9, ...):\n");
  KvBtDynArray<KvGeVector2> ring;
  for (int i = 0; i < 6; ++i) ring.Add(KvGeVector2(i, i * i));
  std::printf("  size %d, capacity %d, Element(-1) = (%g, %g), GetAt(99) = (%g, %g)\n", ring.GetSize(),
              ring.GetCapacity(), ring.Element(-1).x, ring.Element(-1).y, ring.GetAt(99).x, ring.GetAt(99).y);
  ring.NewFirstElement(2, 1);
  std::printf("  NewFirstElement(2, reversed): first x values %g %g %g\n\n", ring[0].x, ring[1].x, ring[2].x);

  std::printf("Archive (length-prefixed strings, little-endian words):\n");
  std::stringstream stream;
  {
    KvBtArchive out(stream, KvBtArchive::kStore);
    out << static_cast<std::uint16_t>(1) << KvBtString("   c8001");
  }
  std::uint16_t version = 0;
  KvBtString text;
  KvBtArchive in(stream, KvBtArchive::kLoad);
  in >> version >> text;
  std::printf("  read back version %u and \"%s\"; failed: %d\n", version, text.c_str(), in.IsFailed());
  std::uint16_t more = 7;
  in >> more;
  std::printf("  reading past the end: failed %d, target unchanged %u\n", in.IsFailed(), more);
  return 0;
}
