#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "geometry/io/KvGeWkt.h"

namespace {

using P = KvGePoint2d;
using P3 = KvGePoint3d;

int Bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
template <class T>
auto Bits(const T& a, const T& b) -> decltype(a.Dim(), 0) {
  for (unsigned i = 0; i < a.Dim(); ++i)
    if (!Bits(a[i], b[i])) return 0;
  return a.m_bInfinite == b.m_bInfinite;
}
template <class L>
auto Bits(const L& a, const L& b) -> decltype(a.P1(), 0) {
  return Bits(a.P1(), b.P1()) && Bits(a.P2(), b.P2());
}
template <class A>
auto Bits(const A& a, const A& b) -> decltype(a.GetSize(), 0) {
  if (a.GetSize() != b.GetSize()) return 0;
  for (int i = 0; i < a.GetSize(); ++i)
    if (!Bits(a.GetData()[i], b.GetData()[i])) return 0;
  return 1;
}

// Doubles from every corner of the format: plain decimals with all mantissa bits used, any
// finite bit pattern (huge, tiny, subnormal), small integers and both zeros.
double AnyDouble(std::mt19937_64& rng) {
  switch (const int kind = static_cast<int>(rng() % 8)) {
    case 0:    // any finite bit pattern: an all-ones exponent loses its top bit
    case 1: {  // a subnormal: the exponent cleared
      std::uint64_t u = rng();
      const std::uint64_t exponent = u >> 52 & 0x7ff;
      u &= ~(std::uint64_t{kind == 1 ? 0x7ffu : exponent == 0x7ff ? 0x400u : 0u} << 52);
      double d;
      std::memcpy(&d, &u, sizeof d);
      return d;
    }
    case 2:
      return static_cast<double>(static_cast<int>(rng() % 2001) - 1000);
    case 3:
      return (rng() & 1) ? 0.0 : -0.0;
    default:
      return std::uniform_real_distribution<double>(-1e4, 1e4)(rng);
  }
}

P AnyPoint(std::mt19937_64& rng) { return P(AnyDouble(rng), AnyDouble(rng)); }
P3 AnyPoint3(std::mt19937_64& rng) { return P3(AnyDouble(rng), AnyDouble(rng), AnyDouble(rng)); }

template <class A, class F>
A AnySequence(std::mt19937_64& rng, int most, F point) {
  A a;
  const int n = static_cast<int>(rng() % static_cast<std::uint64_t>(most + 1));
  for (int i = 0; i < n; ++i) a.Add(point(rng));
  return a;
}

// Reading orients a lone ring counter-clockwise, so the generated rings are made so (a ring
// whose area is 0 or not a number keeps its order). Where rounding gives the ring and its
// inverse areas of the same sign, the orientation is undefined and the ring is drawn again.
template <class G>
auto CounterClockwise(std::mt19937_64& rng, G draw) -> decltype(draw(rng)) {
  for (;;) {
    auto ring = draw(rng);
    if (ring.Area() < 0.0) ring.Invert();
    if (!(ring.Area() < 0.0)) return ring;
  }
}

// A star-shaped ring around c: n >= 6 vertices at evenly spread angles with jitter, so that every
// edge stays farther than 0.7 r from c. Counter-clockwise.
KvGePolygon2d Star(std::mt19937_64& rng, P c, double r) {
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const int n = 6 + static_cast<int>(rng() % 6);
  KvGePolygon2d ring;
  for (int i = 0; i < n; ++i) {
    const double a = 2.0 * 3.141592653589793 * (i + 0.5 * unit(rng)) / n;
    const double q = r * (0.99 + 0.01 * unit(rng));
    ring.Add(P(c.x + q * std::cos(a), c.y + q * std::sin(a)));
  }
  return ring;
}

// One to three shells in cells 1000 apart, each with up to two clockwise holes near its centre,
// in the order the writer puts them (shell, then its holes).
KvGePolygon2dArray AnyRegion(std::mt19937_64& rng) {
  std::uniform_real_distribution<double> jitter(-30.0, 30.0), big(100.0, 400.0), small(5.0, 20.0);
  KvGePolygon2dArray region;
  const int shells = 1 + static_cast<int>(rng() % 3);
  for (int s = 0; s < shells; ++s) {
    const P c(1000.0 * s + jitter(rng), jitter(rng));
    region.Add(Star(rng, c, big(rng)));
    const int holes = static_cast<int>(rng() % 3);
    for (int h = 0; h < holes; ++h) region.Add(Star(rng, P(c.x + jitter(rng), c.y + jitter(rng)), small(rng)).Invert());
  }
  return region;
}

// Writes, reads back and compares bit for bit; the text read as any geometry writes the same.
template <class T, class G>
void RoundTrip(const char* name, G generate) {
  std::mt19937_64 rng(20261123);
  std::string text, again;
  for (int i = 0; i < 10000; ++i) {
    const T original = generate(rng);
    text.clear();
    KvGeWriteWkt(original, text);
    T back;
    std::string message;
    ASSERT_EQ(KvGeReadWkt(text, back, &message), 1) << name << ": " << text << ": " << message;
    ASSERT_TRUE(Bits(original, back)) << name << ": " << text;
    KvGeWktGeometry any;
    ASSERT_EQ(KvGeReadWkt(text, any, &message), 1) << name << ": " << text << ": " << message;
    again.clear();
    KvGeWriteWkt(any, again);
    ASSERT_EQ(again, text) << name;
  }
}

TEST(Wkt, RandomObjectsRoundTripBitIdentically) {
  RoundTrip<P>("point", [](std::mt19937_64& r) { return AnyPoint(r); });
  RoundTrip<P3>("point z", [](std::mt19937_64& r) { return AnyPoint3(r); });
  RoundTrip<KvGePoint2dArray>("multipoint",
                              [](std::mt19937_64& r) { return AnySequence<KvGePoint2dArray>(r, 6, AnyPoint); });
  RoundTrip<KvGePoint3dArray>("multipoint z",
                              [](std::mt19937_64& r) { return AnySequence<KvGePoint3dArray>(r, 6, AnyPoint3); });
  RoundTrip<KvGeLine2d>("line", [](std::mt19937_64& r) { return KvGeLine2d(AnyPoint(r), AnyPoint(r)); });
  RoundTrip<KvGeLine3d>("line z", [](std::mt19937_64& r) { return KvGeLine3d(AnyPoint3(r), AnyPoint3(r)); });
  RoundTrip<KvGeLine23d>("plan line", [](std::mt19937_64& r) { return KvGeLine23d(AnyPoint3(r), AnyPoint3(r)); });
  RoundTrip<KvGePolyline2d>("polyline", [](std::mt19937_64& r) { return AnySequence<KvGePolyline2d>(r, 8, AnyPoint); });
  RoundTrip<KvGePolyline2dArray>("multilinestring", [](std::mt19937_64& r) {
    return AnySequence<KvGePolyline2dArray>(
        r, 3, [](std::mt19937_64& q) { return AnySequence<KvGePolyline2d>(q, 5, AnyPoint); });
  });
  RoundTrip<KvBtDynArray<KvGeLine2d>>("lines", [](std::mt19937_64& r) {
    return AnySequence<KvBtDynArray<KvGeLine2d>>(
        r, 3, [](std::mt19937_64& q) { return KvGeLine2d(AnyPoint(q), AnyPoint(q)); });
  });
  RoundTrip<KvGePolygon2d>("polygon", [](std::mt19937_64& r) {
    return CounterClockwise(r, [](std::mt19937_64& q) { return AnySequence<KvGePolygon2d>(q, 8, AnyPoint); });
  });
  RoundTrip<KvGePolygon3d>(
      "polygon z", [](std::mt19937_64& r) { return KvGePolygon3d(AnySequence<KvGePoint3dArray>(r, 8, AnyPoint3)); });
  RoundTrip<KvGePolygon23d>("plan polygon", [](std::mt19937_64& r) {
    return CounterClockwise(
        r, [](std::mt19937_64& q) { return KvGePolygon23d(AnySequence<KvGePoint3dArray>(q, 8, AnyPoint3), 0.0); });
  });
  RoundTrip<KvGePolygon2dArray>("polygon set", [](std::mt19937_64& r) { return AnyRegion(r); });
}

// Every proper prefix of a valid text, and a list of broken ones: each fails with a message
// that names an offset, and leaves the target as it was.
template <class T>
void ExpectRejected(const std::string& text, const T& sentinel, int& count) {
  T target = sentinel;
  std::string message;
  EXPECT_EQ(KvGeReadWkt(text, target, &message), 0) << text;
  EXPECT_NE(message.find(" at offset "), std::string::npos) << text << ": " << message;
  EXPECT_EQ(KvGeWriteWkt(target), KvGeWriteWkt(sentinel)) << text;
  ++count;
}

TEST(Wkt, MalformedTextsFailWithAMessageAndLeaveTheTarget) {
  const KvGePolygon2dArray sentinel = [] {
    KvGePolygon2dArray s;
    KvGeReadWkt("POLYGON ((7 7, 8 7, 8 8, 7 7))", s);
    return s;
  }();
  KvGeWktGeometry anySentinel;
  anySentinel.Set(sentinel);
  int count = 0;

  const char* valid[] = {
      "MULTIPOLYGON (((0 0, 10 0, 10 10, 0 10, 0 0), (2 2, 2 4, 4 4, 4 2, 2 2)), EMPTY, ((20 0, 30 0, 25 5, 20 0)))",
      "POLYGON Z ((0 0 1, 1 0 1, 1 1 2, 0 0 1))",
      "MULTILINESTRING ((1.5e3 -2, 3 4), EMPTY)",
      "MULTIPOINT (1 2, (3 4))",
      "POINT EMPTY",
  };
  for (const char* v : valid) {
    const std::string full(v);
    KvGeWktGeometry check;
    ASSERT_EQ(KvGeReadWkt(full, check), 1) << full;
    for (std::size_t n = 0; n < full.size(); ++n) ExpectRejected(full.substr(0, n), anySentinel, count);
  }

  // Unbalanced; wrong keywords and forms; NaN, infinities and numbers out of range; empty and garbage.
  // The texts are separated by '|'.
  const std::string broken =
      "POINT ((1 2)|POINT (1 2))|POINT 1 2)|LINESTRING (0 0, 1 1|LINESTRING ((0 0, 1 1))|"
      "POLYGON (0 0, 1 0, 1 1, 0 0)|POLYGON ((0 0, 1 0, 1 1, 0 0)|POLYGON ((0 0, 1 0, 1 1, 0 0)))|"
      "MULTIPOLYGON ((0 0, 1 0, 1 1, 0 0))|MULTIPOLYGON (((0 0, 1 0, 1 1, 0 0))|MULTILINESTRING (0 0, 1 1)|"
      "MULTIPOINT ((1 2), (3 4)|)|(|((((|PIONT (1 2)|POINTS (1 2)|LINESTRIN (0 0, 1 1)|CIRCLE (0 0, 1)|"
      "GEOMETRYCOLLECTION (POINT (1 2))|POINT M (1 2 3)|POINT ZM (1 2 3 4)|POINT Q (1 2)|POINT EMPTY EMPTY|"
      "POINT EMTPY|EMPTY|MULTIPOINT (EMPTY, (1 2))|MULTILINESTRING Z ((0 0 0, 1 1 1))|MULTIPOLYGON Z EMPTY|"
      "POLYGON Z ((0 0 0, 1 0 0, 1 1 0, 0 0 0), (0 0 0, 1 0 0, 1 1 0, 0 0 0))|POINT Z (1 2)|"
      "POINT (1 2 3 4)|LINESTRING (0 0, 1 1 1, 2 2)|LINESTRING Z (0 0 0, 1 1)|POINT (nan 1)|POINT (1 NaN)|"
      "POINT (inf 0)|POINT (-inf 0)|POINT (+Infinity 0)|LINESTRING (0 0, 1 nan)|POINT (1e999 0)|"
      "POINT (0 -1e400)|POINT (1e-400 0)|POINT (1e309 1)|| |\n\t|1 2|POINT|POINT (|POINT ()|POINT (1)|"
      "POINT (1,2)|POINT (1 2,)|POINT (0x10 1)|POINT (1..2 3)|POINT (1e 2)|POINT (- 1 2)|POINT (+-1 2)|"
      "POINT (.e1 2)|POINT (1 2) POINT (3 4)|POINT (1 2);|POINT (1 2) x|LINESTRING (0 0,, 1 1)|"
      "LINESTRING (0 0 1 1)|LINESTRING (,0 0)|POINT (1\xc3\xa9 2)|POINT\x01(1 2)|\xef\xbb\xbfPOINT (1 2)";
  for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 1) {
    end = broken.find('|', at);
    ExpectRejected(broken.substr(at, end == std::string::npos ? end : end - at), anySentinel, count);
  }
  // A zero byte inside the given length is a stray character, not an end.
  ExpectRejected(std::string("POINT (1 2)\0", 12), anySentinel, count);
  ExpectRejected(std::string("POINT (1\0 2)", 12), anySentinel, count);

  // Typed targets reject what they cannot hold.
  ExpectRejected("LINESTRING (0 0, 1 1, 2 2)", KvGeLine2d(P(5, 5), P(6, 6)), count);
  ExpectRejected("LINESTRING EMPTY", KvGeLine2d(P(5, 5), P(6, 6)), count);
  ExpectRejected("MULTILINESTRING ((0 0, 1 1), (0 0, 1 1, 2 2))", KvBtDynArray<KvGeLine2d>(), count);
  ExpectRejected("POINT EMPTY", P(5, 5), count);
  ExpectRejected("POLYGON ((0 0, 9 0, 9 9, 0 0), (1 1, 2 1, 2 2, 1 1))", sentinel.GetAt(0), count);
  ExpectRejected("MULTIPOINT ((1 2))", P(5, 5), count);
  ExpectRejected("POLYGON ((0 0, 1 0, 1 1, 0 0))", KvGePolyline2d(), count);
  ExpectRejected("LINESTRING (0 0, 1 0)", sentinel, count);
  ExpectRejected("POINT Z (1 2 3)", KvGePoint2dArray(), count);
  EXPECT_GE(count, 200);

  KvGePoint2d p(5, 5);
  std::string message = "untouched";
  EXPECT_EQ(KvGeReadWkt(static_cast<const char*>(nullptr), p, &message), 0);
  EXPECT_NE(message, "untouched");
  EXPECT_EQ(KvGeReadWkt("POINT (", p), 0);  // no message wanted
}

TEST(Wkt, MessagesNameTheOffsetAndWhatWasExpected) {
  const struct {
    const char* text;
    const char* message;
  } rows[] = {
      {"POINT (1 2", "expected ')' at offset 10 (end of text)"},
      {"POINT (1 2 3)", "expected ')' at offset 11"},
      {"POLYGON ((0 0, 1 0", "expected ',' or ')' at offset 18 (end of text)"},
      {"POINT (nan 1)", "NaN and infinity are not accepted as numbers at offset 7"},
      {"POINT (1 1e999)", "number out of the range of a double at offset 9"},
      {"  PIONT (1 2)", "unknown geometry type 'PIONT' at offset 2"},
      {"LINESTRING (0 0, 1 1)", "expected POINT, got LINESTRING at offset 0"},
      {"POINT Z (1 2 3)", "Z coordinates are not accepted by a plane target at offset 6"},
      {"POINT (1 2) x", "unexpected text after the geometry at offset 12"},
      {"POINT (1x 2)", "malformed number at offset 7"},
      {"POINT EMPTY", "expected a point, got POINT EMPTY at offset 0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    KvGePoint2d p;
    std::string message;
    EXPECT_EQ(KvGeReadWkt(row.text, p, &message), 0);
    EXPECT_EQ(message, row.message);
  }
}

TEST(Wkt, ReadingOrientsShellsCounterClockwiseAndHolesClockwise) {
  KvGePolygon2dArray region;
  // A clockwise shell and a counter-clockwise hole, closed and written in lower case.
  ASSERT_EQ(KvGeReadWkt("\tpolygon((0 0,0 10,10 10,10 0,0 0),(2 2,4 2,4 4,2 4,2 2))\n", region), 1);
  ASSERT_EQ(region.GetSize(), 2);
  EXPECT_EQ(region[0].GetSize(), 4);  // the closing point is dropped
  // Both rings turned, each first vertex staying first; the writer keeps the order it is given.
  EXPECT_EQ(KvGeWriteWkt(region), "POLYGON ((0 0, 10 0, 10 10, 0 10, 0 0), (2 2, 2 4, 4 4, 4 2, 2 2))");

  KvGePolygon2d ring;
  ASSERT_EQ(KvGeReadWkt("POLYGON ((0 0, 0 1, 1 0))", ring), 1);  // unclosed, clockwise
  EXPECT_EQ(ring.GetSize(), 3);
  EXPECT_GT(ring.Area(), 0.0);
  ASSERT_EQ(KvGeReadWkt("POLYGON ((0 0, 1 1, 2 2, 0 0))", ring), 1);  // no area: kept as given
  EXPECT_TRUE(Bits(ring[1], P(1, 1)));
  // A sliver whose reverse rounds to an area of the same sign cannot be oriented: kept as given,
  // so that reading what was written does not turn it again on every round.
  const char* sliver = "MULTIPOLYGON (((0 0, 10 0, 10 10, 0 10, 0 0)), ((3 5e-34, 0 0, 22 3, 0 0, 0 0, 3 5e-34)))";
  ASSERT_EQ(KvGeReadWkt(sliver, region), 1);
  EXPECT_EQ(KvGeWriteWkt(region), sliver);

  KvGePolygon23d plan;
  ASSERT_EQ(KvGeReadWkt("POLYGON Z ((0 0 5, 0 1 6, 1 0 7, 0 0 5))", plan), 1);
  EXPECT_GT(plan.Area(), 0.0);
  EXPECT_EQ(plan[1].z, 7.0);
  KvGePolygon3d space;
  ASSERT_EQ(KvGeReadWkt("POLYGON ((0 0, 0 1, 1 0, 0 0))", space), 1);  // plane text: z = 0, order kept
  EXPECT_LT(space.Area2d(), 0.0);
}

TEST(Wkt, WritingGroupsEachHoleUnderTheSmallestShellAroundIt) {
  auto square = [](double x0, double y0, double x1, double y1, int ccw) {
    const KvGePolygon2d r{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
    return ccw ? r : r.Inverted();
  };
  KvGePolygon2dArray region;
  region.Add(square(0, 0, 100, 100, 1));   // 0 shell
  region.Add(square(40, 40, 60, 60, 0));   // 1 hole of the island 3
  region.Add(square(10, 10, 90, 90, 0));   // 2 hole of the shell 0
  region.Add(square(20, 20, 80, 80, 1));   // 3 island inside the hole 2
  region.Add(square(200, 0, 210, 10, 0));  // 4 clockwise and in no shell
  region.Add(square(0, 0, 10, 10, 0));     // 5 hole touching the shell's corner: still its hole
  // The exact grouping: shell 0 with holes 2 and 5, island 3 with hole 1, ring 4 on its own.
  const std::string text = KvGeWriteWkt(region);
  EXPECT_EQ(text,
            "MULTIPOLYGON (((0 0, 100 0, 100 100, 0 100, 0 0), (10 10, 10 90, 90 90, 90 10, 10 10), "
            "(0 0, 0 10, 10 10, 10 0, 0 0)), "
            "((20 20, 80 20, 80 80, 20 80, 20 20), (40 40, 40 60, 60 60, 60 40, 40 40)), "
            "((200 0, 200 10, 210 10, 210 0, 200 0)))");
  KvGePolygon2dArray back;
  ASSERT_EQ(KvGeReadWkt(text, back), 1);
  EXPECT_EQ(back.GetSize(), 6);
  EXPECT_GT(back[5].Area(), 0.0);  // the lone clockwise ring reads back as a shell

  EXPECT_EQ(KvGeWriteWkt(KvGePolygon2dArray{square(0, 0, 1, 1, 1)}), "POLYGON ((0 0, 1 0, 1 1, 0 1, 0 0))");
  EXPECT_EQ(KvGeWriteWkt(KvGePolygon2dArray()), "POLYGON EMPTY");
}

TEST(Wkt, FormsAndConversions) {
  KvGePoint3d p3;
  ASSERT_EQ(KvGeReadWkt("POINT (1 2)", p3), 1);  // a plane text into a Z target: z = 0
  EXPECT_EQ(p3.z, 0.0);
  ASSERT_EQ(KvGeReadWkt("pointz(1 2 3)", p3), 1);
  EXPECT_EQ(p3.z, 3.0);
  KvGeLine2d line(P(9, 9), P(9, 9), 0, -1);
  ASSERT_EQ(KvGeReadWkt("LINESTRING (+1 2, -3 .5)", line), 1);
  EXPECT_EQ(line.Segment(), 1);
  EXPECT_EQ(line.Sense(), 1);
  EXPECT_EQ(line.P2().y, 0.5);
  KvGePoint2dArray points;
  ASSERT_EQ(KvGeReadWkt("MULTIPOINT (1 2, (3 4))", points), 1);
  EXPECT_EQ(points.GetSize(), 2);
  EXPECT_EQ(KvGeWriteWkt(KvGePoint2d(1e300, -2.5e-8)), "POINT (1e+300 -2.5e-08)");
  EXPECT_EQ(KvGeWriteWkt(KvGePoint2d(0.1 + 0.2, -0.0)), "POINT (0.30000000000000004 -0)");

  KvGeWktGeometry g;
  ASSERT_EQ(KvGeReadWkt("LINESTRING Z (0 0 1, 3 4 2)", g), 1);
  EXPECT_EQ(g.GetKind(), KvGeWktGeometry::kLineStringZ);
  EXPECT_STREQ(g.KindName(), "LINESTRING Z");
  EXPECT_EQ(g.Dimension(), 1);
  KvGeLine2d l;
  ASSERT_EQ(g.GetLine(l), 1);
  EXPECT_EQ(l.P2().x, 3.0);
  KvGePolygon2dArray region;
  EXPECT_EQ(g.GetRegion(region), 0);
  ASSERT_EQ(KvGeReadWkt("MULTIPOLYGON (((0 0, 4 0, 4 4, 0 0)), ((10 0, 14 0, 14 4, 10 0)))", g), 1);
  EXPECT_EQ(g.GetKind(), KvGeWktGeometry::kMultiPolygon);
  ASSERT_EQ(g.GetRegion(region), 1);
  EXPECT_EQ(region.GetSize(), 2);
  KvGePolyline2dArray rings;
  ASSERT_EQ(g.GetPolylines(rings), 1);
  EXPECT_EQ(rings[1].GetSize(), 4);  // closed: the first point repeated
  EXPECT_EQ(g.BoundingBox().Max().x, 14.0);
  ASSERT_EQ(KvGeReadWkt("POINT EMPTY", g), 1);
  EXPECT_EQ(g.IsEmpty(), 1);
  EXPECT_EQ(g.GetPoint(l.P1()), 0);
  EXPECT_EQ(KvGeWriteWkt(g), "POINT EMPTY");
  const KvBtDynArray<KvGeLine2d> pieces{KvGeLine2d(P(0, 20), P(40, 20)), KvGeLine2d(P(60, 20), P(100.5, 20))};
  EXPECT_EQ(KvGeWriteWkt(pieces), "MULTILINESTRING ((0 20, 40 20), (60 20, 100.5 20))");
  EXPECT_EQ(KvGeWriteWkt(KvGeWktGeometry().Set(pieces)), KvGeWriteWkt(pieces));
  EXPECT_EQ(KvGeWktGeometry().Set(KvGePolygon2dArray{KvGePolygon2d()}).IsEmpty(), 1);
}

}  // namespace
