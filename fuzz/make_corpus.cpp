// Writes the seed corpus of the fuzz targets: fuzz_make_corpus <folder> fills <folder>/archive,
// <folder>/operations and <folder>/wkt with small files made by the library itself (stored point
// arrays and archive values; rings, holes and queries on vertices, edges and the 0.001 band; the
// WKT the library writes for each class).
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "basics/companion/KvBtArchive.h"
#include "basics/companion/KvBtString.h"
#include "fuzz/fuzz_input.h"
#include "geometry/io/KvGeWkt.h"
#include "geometry/points/KvGePoint2dArray.h"

namespace fs = std::filesystem;

namespace {

void Write(const fs::path& dir, int index, const std::string& bytes) {
  fs::create_directories(dir);
  char name[32];
  std::snprintf(name, sizeof name, "seed-%02d", index);
  std::ofstream(dir / name, std::ios::binary) << bytes;
}

KvGePolygon2d Ring(std::initializer_list<KvGePoint2d> points) {
  KvGePolygon2d ring;
  for (const KvGePoint2d& p : points) ring.Add(p);
  return ring;
}

KvGePolygon2d Square(double x0, double y0, double side) {
  return Ring({{x0, y0}, {x0 + side, y0}, {x0 + side, y0 + side}, {x0, y0 + side}});
}

KvGePolygon2d Star(double cx, double cy, double r0, double r1, int n) {
  KvGePolygon2d ring;
  for (int i = 0; i < n; ++i) {
    const double a = 6.283185307179586 * i / n, r = i % 2 ? r0 : r1;
    ring.Add(KvGePoint2d(cx + r * std::cos(a), cy + r * std::sin(a)));
  }
  return ring;
}

KvGePolygon2dArray Set(std::initializer_list<KvGePolygon2d> rings) {
  KvGePolygon2dArray set;
  for (const KvGePolygon2d& r : rings) set.Add(r);
  return set;
}

// Two sets, then queries on the first one's vertices, edges, band and outside.
std::string Operations(int coding, const KvGePolygon2dArray& a, const KvGePolygon2dArray& b) {
  ugfuzz::Writer w(coding);
  w.Set(a);
  w.Set(b);
  const KvGePolygon2d& ring = a[0];
  const int n = ring.GetSize();
  for (int i = 0; i < n && i < 6; ++i) {
    const KvGePoint2d& p = ring[i];
    const KvGePoint2d& q = ring[(i + 1) % n];
    const KvGePoint2d mid((p.x + q.x) / 2, (p.y + q.y) / 2);
    w.Byte(ugfuzz::kPoint);
    w.Point(p);
    w.Byte(ugfuzz::kPoint);
    w.Point(mid + KvGePoint2d(0.0009, 0.0011));
    // Bounded through a vertex, unbounded along an edge in mode 1.
    w.Byte(ugfuzz::kLine | 4);
    w.Point(p + KvGePoint2d(-7, -3));
    w.Point(p + KvGePoint2d(7, 3));
    w.Byte(ugfuzz::kLine | 8);
    w.Point(p);
    w.Point(q);
    w.Byte(ugfuzz::kTwoLines | 4 | 8);
    w.Point(p);
    w.Point(q);
    w.Point(mid + KvGePoint2d(-2, 1));
    w.Point(mid + KvGePoint2d(2, -1));
  }
  w.Byte(ugfuzz::kPolyline | 4 << 2);
  w.Point(KvGePoint2d(-20, -20));
  w.Point(ring[0]);
  w.Point(KvGePoint2d(1.5, 2.5));
  w.Point(KvGePoint2d(30, 1));
  return w.Bytes();
}

std::string StoredPoints(const KvGePoint2dArray& a, std::uint16_t version) {
  std::ostringstream out;
  KvBtArchive ar(out);
  KvGePoint2dArray(a).Serialize(ar);
  std::string bytes = out.str();
  bytes[0] = static_cast<char>(version);
  return std::string(1, '\0') + bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: fuzz_make_corpus <folder>\n");
    return 2;
  }
  const fs::path root(argv[1]);

  // The archive target: stored point arrays (case 0), then scripts of stored values (case 1).
  const fs::path archive = root / "archive";
  int k = 0;
  KvGePoint2dArray points;
  Write(archive, k++, StoredPoints(points, 1));
  points.Add(KvGePoint2d(1.2, -0.1));
  Write(archive, k++, StoredPoints(points, 1));
  points.Add(KvGePoint2d(5000, -5000));
  points.Add(KvGePoint2d(-3276.7, 0.05));
  Write(archive, k++, StoredPoints(points, 2));
  for (int i = 0; i < 40; ++i) points.Add(KvGePoint2d(i * 81.9, -i * 7.3));
  Write(archive, k++, StoredPoints(points, 1));
  {
    const std::uint8_t types[] = {0, 1, 2, 3, 4, 5, 6, 6, 6, 5};
    std::ostringstream out;
    KvBtArchive ar(out);
    ar << std::uint8_t{7} << std::uint16_t{0x1234} << std::int16_t{-2} << std::uint32_t{0xA1B2C3D4u}
       << std::int32_t{-123456} << 2.5 << KvBtString("point") << KvBtString(std::string(300, 'x'))
       << KvBtString(std::string(1000, 'y')) << std::numeric_limits<double>::quiet_NaN();
    std::string script(1, '\1');
    script += static_cast<char>(sizeof types);
    for (std::uint8_t t : types) script += static_cast<char>(t);
    Write(archive, k++, script + out.str());
  }

  // The operations target.
  const fs::path ops = root / "operations";
  k = 0;
  KvGePolygon2d hole = Square(3, 3, 3);
  hole.Invert();
  const KvGePolygon2dArray holed = Set({Square(0, 0, 10), hole});
  const KvGePolygon2dArray shifted = Set({Square(5, 5, 10)});
  Write(ops, k++, Operations(0, holed, shifted));
  Write(ops, k++, Operations(1, Set({Star(0, 0, 4, 9, 14)}), Set({Star(3, 1, 2, 6, 10), Square(-2, -2, 4)})));
  Write(ops, k++, Operations(2, Set({Square(0, 0, 1), Square(1, 0, 1)}), holed));
  // Rings touching at a vertex, a clockwise ring on its own, a self-crossing bow tie.
  Write(ops, k++,
        Operations(0, Set({Square(0, 0, 4), Square(4, 4, 4)}),
                   Set({Square(1, 1, 2).Inverted(), Ring({{0, 0}, {6, 6}, {6, 0}, {0, 6}})})));
  Write(ops, k++, Operations(1, Set({Ring({{0, 0}, {10, 0}, {10, 0.001}, {0, 0.0015}})}), shifted));
  Write(ops, k++, Operations(3, holed, Set({Square(1e300, -1e300, 1e300)})));

  // The WKT target: a byte naming the target type, then the text the library writes for it.
  const fs::path wkt = root / "wkt";
  k = 0;
  const auto text = [&](int type, const std::string& written) {
    Write(wkt, k++, std::string(1, char(type)) + written);
  };
  KvGePolygon2dArray two = holed;
  two.Add(Square(20, 0, 3));
  KvGePolyline2dArray chains;
  chains.Add(KvGePolyline2d(static_cast<const KvGePoint2dArray&>(Star(0, 0, 1, 2, 5))));
  chains.Add(KvGePolyline2d());
  KvBtDynArray<KvGeLine2d> lines;
  lines.Add(KvGeLine2d(KvGePoint2d(0, 0), KvGePoint2d(-0.0, 4.9e-324)));
  KvGePoint3dArray ring3;
  ring3.Add(KvGePoint3d(0, 0, 1));
  ring3.Add(KvGePoint3d(1e308, 0, -2));
  ring3.Add(KvGePoint3d(0, 1.5, 3));
  text(0, KvGeWriteWkt(holed));
  text(0, KvGeWriteWkt(KvGePoint3d(1, 2, 3)));
  text(0, KvGeWriteWkt(KvGePolygon2dArray()));
  text(1, KvGeWriteWkt(two));
  text(2, KvGeWriteWkt(Star(1, 1, 0.1, 0.3, 8)));
  text(3, KvGeWriteWkt(chains));
  text(4, KvGeWriteWkt(lines));
  text(5, KvGeWriteWkt(static_cast<const KvGePoint2dArray&>(Square(-1, 2, 0.5))));
  text(6, KvGeWriteWkt(KvGeLine2d(KvGePoint2d(1.25, -3), KvGePoint2d(1e-9, 7e12))));
  text(7, KvGeWriteWkt(KvGePolygon23d(ring3, 2)));
  text(8, "point z (1 2 3)");
  return 0;
}
