// WKT reading and writing: the library's reader and writer against Boost.Geometry's read_wkt and
// wkt on the same texts (polygons of 64 vertices with full-precision coordinates). Both read
// into their own polygon types; Boost.Geometry's reader reports errors by throwing.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>

#include "geometry/io/KvGeWkt.h"

namespace {

namespace bg = boost::geometry;
using BoostPolygon = bg::model::polygon<bg::model::d2::point_xy<double>>;

const std::vector<std::string>& Texts() {
  static const std::vector<std::string> texts = [] {
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<std::string> t;
    for (int i = 0; i < 256; ++i) {
      KvGePolygon2d ring;
      for (int k = 0; k < 64; ++k) {
        const double a = 6.283185307179586 * k / 64, r = 100.0 + 10.0 * u(rng);
        ring.Add(KvGePoint2d(1000.0 * u(rng) + r * std::cos(a), r * std::sin(a)));
      }
      t.push_back(KvGeWriteWkt(ring.Orientated(1)));
    }
    return t;
  }();
  return texts;
}

void BM_ReadLibrary(benchmark::State& state) {
  const auto& texts = Texts();
  KvGePolygon2d ring;
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(KvGeReadWkt(texts[i++ % texts.size()], ring));
    benchmark::DoNotOptimize(ring.GetData());
  }
}
BENCHMARK(BM_ReadLibrary);

void BM_ReadBoostGeometry(benchmark::State& state) {
  const auto& texts = Texts();
  std::size_t i = 0;
  for (auto _ : state) {
    BoostPolygon polygon;
    try {
      bg::read_wkt(texts[i++ % texts.size()], polygon);
    } catch (...) {
    }
    benchmark::DoNotOptimize(polygon.outer().data());
  }
}
BENCHMARK(BM_ReadBoostGeometry);

void BM_WriteLibrary(benchmark::State& state) {
  std::vector<KvGePolygon2d> rings(Texts().size());
  for (std::size_t k = 0; k < rings.size(); ++k) KvGeReadWkt(Texts()[k], rings[k]);
  std::string out;
  std::size_t i = 0;
  for (auto _ : state) {
    out.clear();
    KvGeWriteWkt(rings[i++ % rings.size()], out);
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_WriteLibrary);

// Boost.Geometry's wkt() writes through a stream; at precision 17 it round-trips as well.
void BM_WriteBoostGeometry(benchmark::State& state) {
  std::vector<BoostPolygon> polygons(Texts().size());
  for (std::size_t k = 0; k < polygons.size(); ++k) bg::read_wkt(Texts()[k], polygons[k]);
  std::size_t i = 0;
  for (auto _ : state) {
    std::ostringstream out;
    out.precision(17);
    out << bg::wkt(polygons[i++ % polygons.size()]);
    benchmark::DoNotOptimize(out.str().data());
  }
}
BENCHMARK(BM_WriteBoostGeometry);

}  // namespace

BENCHMARK_MAIN();
