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

  std::printf("Matrices (row vectors, one Householder decomposition):\n");
  const KvGeMatrix3X3 translate(KvGeVector3(1, 0, 0), KvGeVector3(0, 1, 0), KvGeVector3(5, 6, 1));
  Print("(1, 2, 3) x translation by (5, 6)", KvGeVector3(1, 2, 3) * translate);
  std::printf("  %-34s %g\n", "Det of the 4x4 identity", KvGeMatrix4X4_Identity().Det());
  const KvGeMatrix3X3 nearlySingular(0.0005, 1, 1);
  std::printf("  %-34s %d (Det %g)\n\n", "diag(0.0005, 1, 1) singular", nearlySingular.IsSingular(),
              nearlySingular.Det());

  std::printf("Angles (band 1e-6 rad, never normalised implicitly):\n");
  const KvGeAngle almostFull(2 * 3.141592653589793 - 5e-7);
  std::printf("  %-34s %g\n", "2pi - 5e-7 into [0, 2pi)",
              almostFull.Normalized(KvGeAngle_Deg360(), KvGeAngle_Deg0(), 1).Rad());
  std::printf("  %-34s %d\n\n", "IsParallel(0, pi, 0.001)", IsParallel(KvGeAngle_Deg0(), KvGeAngle_Deg180(), 0.001));

  std::printf("Points and modelling matrices:\n");
  KvGePoint2d p1(5, 5), p2(15, 5);
  const int kept = Clip2d(p1, p2, KvGePoint2d(0, 0), KvGePoint2d(10, 10));
  std::printf("  Clip2d (5,5)-(15,5) to 0..10: %d, now (%g,%g)-(%g,%g) (ends exchanged)\n", kept, p1.x, p1.y, p2.x,
              p2.y);
  const KvGePoint2d sum = KvGePoint2d(1, 1) + KvGePoint2d(0, 1, 1);
  std::printf("  ordinary (1,1) + infinite (0,1) = (%g,%g) infinite %d\n", sum.x, sum.y, sum.m_bInfinite);
  KvGeModMat3d m;
  m.SetTran(1, 2, 3).CatScale(2, 2, 2).CatRotate(KvGeAngle_Deg90(), KvGePoint3d(0, 0, 1));
  const KvGePoint3d moved = KvGePoint3d_Origin().Transformed(m);
  std::printf("  origin, translated, scaled, turned: (%g, %g, %g)\n", moved.x, moved.y, moved.z);
  KvGePoint3d centre;
  const double radius = CircleMatch3Points(KvGePoint3d(1, 0, 0), KvGePoint3d(0, 1, 0), KvGePoint3d(-1, 0, 0), centre);
  std::printf("  circle through three points: centre (%g, %g, %g), radius %g\n\n", centre.x, centre.y, centre.z,
              radius);

  std::printf("Intersection calculator (a line entering and leaving a region):\n");
  KvGeIntrCalculator2d calc;
  calc.Add(KvGeIntrPoint2d(KvGePoint2d(3, 0), -1, 0, 0, 0.3, 0.0, 0, 0, 0));
  calc.Add(KvGeIntrPoint2d(KvGePoint2d(7, 0), 1, 0, 0, 0.7, 0.0, 0, 2, 0));
  calc.Calculate0();
  for (int i = 0; i < calc.GetSize0(); ++i)
    std::printf("  part %g .. %g: %s\n", calc.Part0(i).Min().Param0(), calc.Part0(i).Max().Param0(),
                calc.Part0(i).Type() > 0 ? "inside" : (calc.Part0(i).Type() == 0 ? "boundary" : "outside"));
  std::printf("\n");

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
