// Region union, difference and offset of the library against Boost.Geometry, GEOS (when found)
// and the clipping library called directly on the same integer data. Every contender gets the
// same generated data, prepared in its own types before timing; the library's own figures
// include its conversion to and from integers and its normalisation. Compare as ratios:
//   ours / Boost.Geometry, ours / GEOS (both should be below 1), ours / direct clipping (at
//   most 1.5).
#include <benchmark/benchmark.h>

#include <clipper.hpp>
#include <cmath>
#include <random>
#include <vector>

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>

#ifdef UG_BENCH_HAVE_GEOS
#include <geos_c.h>
#endif

#include "UtilityGeometry.h"

namespace {

namespace bg = boost::geometry;
using BPoint = bg::model::d2::point_xy<double>;
using BPolygon = bg::model::polygon<BPoint, false, false>;
using BMulti = bg::model::multi_polygon<BPolygon>;
namespace CL = ClipperLib;

constexpr double kPi = 3.14159265358979323846;

// ---- data ---------------------------------------------------------------------------------

KvGePolygon2d Rect(double x0, double y0, double x1, double y1) {
  KvGePolygon2d r;
  r.Add(KvGePoint2d(x0, y0));
  r.Add(KvGePoint2d(x1, y0));
  r.Add(KvGePoint2d(x1, y1));
  r.Add(KvGePoint2d(x0, y1));
  return r;
}

KvGePolygon2dArray Grid() {
  KvGePolygon2dArray set;
  for (int i = 0; i < 100; ++i)
    for (int j = 0; j < 100; ++j) set.Add(Rect(i, j, i + 1, j + 1));
  return set;
}

KvGePolygon2dArray RandomRects() {
  std::mt19937 rng(17u);
  std::uniform_real_distribution<double> pos(0.0, 1000.0), size(1.0, 20.0);
  KvGePolygon2dArray set;
  for (int i = 0; i < 10000; ++i) {
    const double x = pos(rng), y = pos(rng);
    set.Add(Rect(x, y, x + size(rng), y + size(rng)));
  }
  return set;
}

// 1,000 rooms on a 40 x 25 grid, and one slab with 1,000 clockwise holes, each hole cutting a
// corner of a room.
KvGePolygon2dArray Rooms() {
  KvGePolygon2dArray set;
  for (int i = 0; i < 40; ++i)
    for (int j = 0; j < 25; ++j) set.Add(Rect(i * 10.0, j * 10.0, i * 10.0 + 8.0, j * 10.0 + 8.0));
  return set;
}

KvGePolygon2dArray Holes() {
  KvGePolygon2dArray set;
  set.Add(Rect(-5, -5, 405, 255));
  for (int i = 0; i < 40; ++i)
    for (int j = 0; j < 25; ++j) {
      KvGePolygon2d hole;
      const double cx = i * 10.0 + 7.0, cy = j * 10.0 + 7.0;
      for (int k = 0; k < 8; ++k)
        hole.Add(KvGePoint2d(cx + 2.0 * std::cos(-k * kPi / 4), cy + 2.0 * std::sin(-k * kPi / 4)));
      set.Add(hole);
    }
  return set;
}

KvGePolygon2d Star() {
  KvGePolygon2d star;
  for (int k = 0; k < 10000; ++k) {
    const double r = (k % 2) ? 80.0 : 100.0;
    star.Add(KvGePoint2d(r * std::cos(k * 2 * kPi / 10000), r * std::sin(k * 2 * kPi / 10000)));
  }
  return star;
}
constexpr double kStarOffset = 0.5;

// ---- conversions, done before timing -------------------------------------------------------

CL::Paths ToClipper(const KvGePolygon2dArray& set) {
  CL::Paths paths;
  for (const KvGePolygon2d& ring : set) {
    CL::Path path;
    for (const KvGePoint2d& p : ring)
      path.emplace_back(std::llround(p.x * kKvGeRegionScale), std::llround(p.y * kKvGeRegionScale));
    paths.push_back(path);
  }
  return paths;
}

BPolygon::ring_type ToBoostRing(const KvGePolygon2d& ring) {
  BPolygon::ring_type r;
  for (const KvGePoint2d& p : ring) r.push_back(BPoint(p.x, p.y));
  return r;
}

// Each ring its own polygon (the inputs of the unions), or, with holes, the first ring the
// outer one and the others its holes.
std::vector<BMulti> ToBoostPieces(const KvGePolygon2dArray& set) {
  std::vector<BMulti> pieces;
  for (const KvGePolygon2d& ring : set) {
    pieces.emplace_back();
    pieces.back().resize(1);
    pieces.back()[0].outer() = ToBoostRing(ring);
  }
  return pieces;
}

BPolygon ToBoostWithHoles(const KvGePolygon2dArray& set) {
  BPolygon poly;
  poly.outer() = ToBoostRing(set.GetData()[0]);
  for (int i = 1; i < set.GetSize(); ++i) poly.inners().push_back(ToBoostRing(set.GetData()[i]));
  return poly;
}

// The usual way to unite many polygons with Boost.Geometry: pairwise, level by level.
BMulti BoostCascade(std::vector<BMulti> pieces) {
  while (pieces.size() > 1) {
    std::vector<BMulti> next;
    for (std::size_t i = 0; i + 1 < pieces.size(); i += 2) {
      next.emplace_back();
      bg::union_(pieces[i], pieces[i + 1], next.back());
    }
    if (pieces.size() % 2) next.push_back(pieces.back());
    pieces.swap(next);
  }
  return pieces.empty() ? BMulti() : pieces[0];
}

// ---- our library --------------------------------------------------------------------------

void OursUnion(benchmark::State& state, const KvGePolygon2dArray& set) {
  for (auto _ : state) {
    KvGePolygon2dArray region = set;
    benchmark::DoNotOptimize(region.Normalize());
    benchmark::DoNotOptimize(region.GetData());
  }
}

void ClipperUnion(benchmark::State& state, const CL::Paths& paths) {
  for (auto _ : state) {
    CL::Clipper c;
    c.AddPaths(paths, CL::ptSubject, true);
    CL::Paths out;
    c.Execute(CL::ctUnion, out, CL::pftPositive, CL::pftPositive);
    benchmark::DoNotOptimize(out.data());
  }
}

void BoostUnion(benchmark::State& state, const std::vector<BMulti>& pieces) {
  for (auto _ : state) {
    BMulti out = BoostCascade(pieces);
    benchmark::DoNotOptimize(out.data());
  }
}

const KvGePolygon2dArray& GridData() {
  static const KvGePolygon2dArray data = Grid();
  return data;
}
const KvGePolygon2dArray& RectData() {
  static const KvGePolygon2dArray data = RandomRects();
  return data;
}
const KvGePolygon2dArray& RoomData() {
  static const KvGePolygon2dArray data = Rooms();
  return data;
}
const KvGePolygon2dArray& HoleData() {
  static const KvGePolygon2dArray data = Holes();
  return data;
}
const KvGePolygon2d& StarData() {
  static const KvGePolygon2d data = Star();
  return data;
}

void BM_GridUnion_Ours(benchmark::State& s) { OursUnion(s, GridData()); }
void BM_GridUnion_Clipper(benchmark::State& s) { ClipperUnion(s, ToClipper(GridData())); }
void BM_GridUnion_Boost(benchmark::State& s) { BoostUnion(s, ToBoostPieces(GridData())); }
void BM_RectUnion_Ours(benchmark::State& s) { OursUnion(s, RectData()); }
void BM_RectUnion_Clipper(benchmark::State& s) { ClipperUnion(s, ToClipper(RectData())); }
void BM_RectUnion_Boost(benchmark::State& s) { BoostUnion(s, ToBoostPieces(RectData())); }

void BM_Difference_Ours(benchmark::State& state) {
  for (auto _ : state) {
    KvGePolygon2dArray rooms = RoomData();
    rooms -= HoleData();
    benchmark::DoNotOptimize(rooms.GetData());
  }
}
void BM_Difference_Clipper(benchmark::State& state) {
  const CL::Paths a = ToClipper(RoomData()), b = ToClipper(HoleData());
  for (auto _ : state) {
    CL::Clipper c;
    c.AddPaths(a, CL::ptSubject, true);
    c.AddPaths(b, CL::ptClip, true);
    CL::Paths out;
    c.Execute(CL::ctDifference, out, CL::pftPositive, CL::pftPositive);
    benchmark::DoNotOptimize(out.data());
  }
}
void BM_Difference_Boost(benchmark::State& state) {
  BMulti a;
  for (const BMulti& m : ToBoostPieces(RoomData())) a.push_back(m[0]);
  const BPolygon b = ToBoostWithHoles(HoleData());
  for (auto _ : state) {
    BMulti out;
    bg::difference(a, b, out);
    benchmark::DoNotOptimize(out.data());
  }
}

void BM_StarOffset_Ours(benchmark::State& state) {
  for (auto _ : state) {
    KvGePolygon2dArray out;
    benchmark::DoNotOptimize(ParallelPolygon2d(StarData(), kStarOffset, out, kKvGeJoinMiter, 2.0));
    benchmark::DoNotOptimize(out.GetData());
  }
}
void BM_StarOffset_Clipper(benchmark::State& state) {
  KvGePolygon2dArray star;
  star.Add(StarData());
  const CL::Paths paths = ToClipper(star);
  for (auto _ : state) {
    CL::ClipperOffset co(2.0);
    co.AddPaths(paths, CL::jtMiter, CL::etClosedPolygon);
    CL::Paths out;
    co.Execute(out, kStarOffset * kKvGeRegionScale);
    benchmark::DoNotOptimize(out.data());
  }
}
void BM_StarOffset_Boost(benchmark::State& state) {
  BPolygon star;
  star.outer() = ToBoostRing(StarData());
  for (auto _ : state) {
    BMulti out;
    bg::buffer(star, out, bg::strategy::buffer::distance_symmetric<double>(kStarOffset),
               bg::strategy::buffer::side_straight(), bg::strategy::buffer::join_miter(2.0),
               bg::strategy::buffer::end_flat(), bg::strategy::buffer::point_circle(8));
    benchmark::DoNotOptimize(out.data());
  }
}

BENCHMARK(BM_GridUnion_Ours)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GridUnion_Clipper)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GridUnion_Boost)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RectUnion_Ours)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RectUnion_Clipper)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RectUnion_Boost)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Difference_Ours)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Difference_Clipper)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Difference_Boost)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StarOffset_Ours)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StarOffset_Clipper)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StarOffset_Boost)->Unit(benchmark::kMillisecond);

// ---- GEOS ---------------------------------------------------------------------------------
#ifdef UG_BENCH_HAVE_GEOS

struct Geos {
  GEOSContextHandle_t ctx = GEOS_init_r();
  ~Geos() { GEOS_finish_r(ctx); }
  GEOSGeometry* Ring(const KvGePolygon2d& ring) const {
    const unsigned n = static_cast<unsigned>(ring.GetSize());
    GEOSCoordSequence* seq = GEOSCoordSeq_create_r(ctx, n + 1, 2);
    for (unsigned i = 0; i <= n; ++i) {
      const KvGePoint2d& p = ring.GetData()[i % n];
      GEOSCoordSeq_setXY_r(ctx, seq, i, p.x, p.y);
    }
    return GEOSGeom_createLinearRing_r(ctx, seq);
  }
  GEOSGeometry* Polygon(const KvGePolygon2d& outer) const {
    return GEOSGeom_createPolygon_r(ctx, Ring(outer), nullptr, 0);
  }
  // Every ring its own polygon, in one collection.
  GEOSGeometry* Collection(const KvGePolygon2dArray& set) const {
    std::vector<GEOSGeometry*> parts;
    for (const KvGePolygon2d& ring : set) parts.push_back(Polygon(ring));
    return GEOSGeom_createCollection_r(ctx, GEOS_GEOMETRYCOLLECTION, parts.data(), static_cast<unsigned>(parts.size()));
  }
  GEOSGeometry* WithHoles(const KvGePolygon2dArray& set) const {
    std::vector<GEOSGeometry*> holes;
    for (int i = 1; i < set.GetSize(); ++i) holes.push_back(Ring(set.GetData()[i]));
    return GEOSGeom_createPolygon_r(ctx, Ring(set.GetData()[0]), holes.data(), static_cast<unsigned>(holes.size()));
  }
};

void GeosUnion(benchmark::State& state, const KvGePolygon2dArray& set) {
  Geos g;
  GEOSGeometry* input = g.Collection(set);
  for (auto _ : state) {
    GEOSGeometry* out = GEOSUnaryUnion_r(g.ctx, input);
    benchmark::DoNotOptimize(out);
    GEOSGeom_destroy_r(g.ctx, out);
  }
  GEOSGeom_destroy_r(g.ctx, input);
}
void BM_GridUnion_Geos(benchmark::State& s) { GeosUnion(s, GridData()); }
void BM_RectUnion_Geos(benchmark::State& s) { GeosUnion(s, RectData()); }

void BM_Difference_Geos(benchmark::State& state) {
  Geos g;
  std::vector<GEOSGeometry*> rooms;
  for (const KvGePolygon2d& ring : RoomData()) rooms.push_back(g.Polygon(ring));
  GEOSGeometry* a =
      GEOSGeom_createCollection_r(g.ctx, GEOS_MULTIPOLYGON, rooms.data(), static_cast<unsigned>(rooms.size()));
  GEOSGeometry* b = g.WithHoles(HoleData());
  for (auto _ : state) {
    GEOSGeometry* out = GEOSDifference_r(g.ctx, a, b);
    benchmark::DoNotOptimize(out);
    GEOSGeom_destroy_r(g.ctx, out);
  }
  GEOSGeom_destroy_r(g.ctx, a);
  GEOSGeom_destroy_r(g.ctx, b);
}

void BM_StarOffset_Geos(benchmark::State& state) {
  Geos g;
  GEOSGeometry* star = g.Polygon(StarData());
  for (auto _ : state) {
    GEOSGeometry* out = GEOSBufferWithStyle_r(g.ctx, star, kStarOffset, 8, GEOSBUF_CAP_FLAT, GEOSBUF_JOIN_MITRE, 2.0);
    benchmark::DoNotOptimize(out);
    GEOSGeom_destroy_r(g.ctx, out);
  }
  GEOSGeom_destroy_r(g.ctx, star);
}

BENCHMARK(BM_GridUnion_Geos)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RectUnion_Geos)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Difference_Geos)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StarOffset_Geos)->Unit(benchmark::kMillisecond);

#endif

}  // namespace

int main(int argc, char** argv) {
#ifndef UG_BENCH_HAVE_GEOS
  std::printf("GEOS was not found when this benchmark was built: its cases are skipped.\n");
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
