// Region union, difference and offset of the library against Boost.Geometry, GEOS (when found)
// and the clipping library called directly on the same integer data, in one run on the same
// generated data. Each contender gets the data prepared in its own types before timing; the
// library's figures include the copy of its input set, its conversion to and from integers, the
// placing of holes after their outer rings and the clean-up into the normalised form. The direct
// clipping calls return the plain list of rings, their cheapest form.
//
// Before timing, the area of every contender's result is printed next to the library's (the
// offsets may differ a little: each library cuts a miter at the limit in its own way). The cases
// run three times, interleaved; the summary gives the median CPU time of each and the ratio of
// the library's time to it: below 1 for Boost.Geometry and GEOS, at most 1.5 for the direct
// clipping calls is the aim.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <clipper.hpp>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
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

// ---- the cases ----------------------------------------------------------------------------

// One contender of one case: runs the operation once; with area set it returns the area of the
// result (outside the timing), else 0.
using Contender = std::function<double(bool area)>;

struct Entry {
  std::string name;
  Contender run;
};
std::vector<Entry> g_cases;

void Add(const std::string& group, const std::string& impl, Contender run) {
  g_cases.push_back(Entry{group + "/" + impl, run});
  benchmark::RegisterBenchmark(g_cases.back().name.c_str(), [run](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(run(false));
  })->Unit(benchmark::kMillisecond);
}

double ClipperArea(const CL::Paths& paths) {
  double a = 0.0;
  for (const CL::Path& p : paths) a += CL::Area(p);
  return a / (kKvGeRegionScale * kKvGeRegionScale);
}

Contender OursUnion(const KvGePolygon2dArray& set) {
  return [&set](bool area) {
    KvGePolygon2dArray region = set;
    region.Normalize();
    return area ? region.Area() : 0.0;
  };
}

Contender ClipperUnion(const KvGePolygon2dArray& set) {
  auto paths = std::make_shared<CL::Paths>(ToClipper(set));
  return [paths](bool area) {
    CL::Clipper c;
    c.AddPaths(*paths, CL::ptSubject, true);
    CL::Paths out;
    c.Execute(CL::ctUnion, out, CL::pftPositive, CL::pftPositive);
    return area ? ClipperArea(out) : 0.0;
  };
}

Contender BoostUnion(const KvGePolygon2dArray& set) {
  auto pieces = std::make_shared<std::vector<BMulti>>(ToBoostPieces(set));
  return [pieces](bool area) {
    const BMulti out = BoostCascade(*pieces);
    return area ? bg::area(out) : 0.0;
  };
}

void AddUnion(const std::string& group, const KvGePolygon2dArray& set) {
  Add(group, "library", OursUnion(set));
  Add(group, "clipper", ClipperUnion(set));
  Add(group, "boost_geometry", BoostUnion(set));
}

void AddDifference(const KvGePolygon2dArray& rooms, const KvGePolygon2dArray& holes) {
  Add("difference", "library", [&](bool area) {
    KvGePolygon2dArray result = rooms;
    result -= holes;
    return area ? result.Area() : 0.0;
  });
  auto a = std::make_shared<CL::Paths>(ToClipper(rooms)), b = std::make_shared<CL::Paths>(ToClipper(holes));
  Add("difference", "clipper", [a, b](bool area) {
    CL::Clipper c;
    c.AddPaths(*a, CL::ptSubject, true);
    c.AddPaths(*b, CL::ptClip, true);
    CL::Paths out;
    c.Execute(CL::ctDifference, out, CL::pftPositive, CL::pftPositive);
    return area ? ClipperArea(out) : 0.0;
  });
  auto ba = std::make_shared<BMulti>();
  for (const BMulti& m : ToBoostPieces(rooms)) ba->push_back(m[0]);
  auto bb = std::make_shared<BPolygon>(ToBoostWithHoles(holes));
  Add("difference", "boost_geometry", [ba, bb](bool area) {
    BMulti out;
    bg::difference(*ba, *bb, out);
    return area ? bg::area(out) : 0.0;
  });
}

void AddOffset(const KvGePolygon2d& star) {
  Add("star_offset", "library", [&](bool area) {
    KvGePolygon2dArray out;
    ParallelPolygon2d(star, kStarOffset, out, kKvGeJoinMiter, 2.0);
    return area ? out.Area() : 0.0;
  });
  KvGePolygon2dArray set;
  set.Add(star);
  auto paths = std::make_shared<CL::Paths>(ToClipper(set));
  Add("star_offset", "clipper", [paths](bool area) {
    CL::ClipperOffset co(2.0);
    co.AddPaths(*paths, CL::jtMiter, CL::etClosedPolygon);
    CL::Paths out;
    co.Execute(out, kStarOffset * kKvGeRegionScale);
    return area ? ClipperArea(out) : 0.0;
  });
  auto bstar = std::make_shared<BPolygon>();
  bstar->outer() = ToBoostRing(star);
  Add("star_offset", "boost_geometry", [bstar](bool area) {
    BMulti out;
    bg::buffer(*bstar, out, bg::strategy::buffer::distance_symmetric<double>(kStarOffset),
               bg::strategy::buffer::side_straight(), bg::strategy::buffer::join_miter(2.0),
               bg::strategy::buffer::end_flat(), bg::strategy::buffer::point_circle(8));
    return area ? bg::area(out) : 0.0;
  });
}

// ---- GEOS ---------------------------------------------------------------------------------
#ifdef UG_BENCH_HAVE_GEOS

GEOSContextHandle_t g_geos = nullptr;

GEOSGeometry* GeosRing(const KvGePolygon2d& ring) {
  const unsigned n = static_cast<unsigned>(ring.GetSize());
  GEOSCoordSequence* seq = GEOSCoordSeq_create_r(g_geos, n + 1, 2);
  for (unsigned i = 0; i <= n; ++i) {
    const KvGePoint2d& p = ring.GetData()[i % n];
    GEOSCoordSeq_setXY_r(g_geos, seq, i, p.x, p.y);
  }
  return GEOSGeom_createLinearRing_r(g_geos, seq);
}

GEOSGeometry* GeosPolygon(const KvGePolygon2d& outer) {
  return GEOSGeom_createPolygon_r(g_geos, GeosRing(outer), nullptr, 0);
}

// Every ring its own polygon, in one collection of the given type.
GEOSGeometry* GeosCollection(const KvGePolygon2dArray& set, int type) {
  std::vector<GEOSGeometry*> parts;
  for (const KvGePolygon2d& ring : set) parts.push_back(GeosPolygon(ring));
  return GEOSGeom_createCollection_r(g_geos, type, parts.data(), static_cast<unsigned>(parts.size()));
}

GEOSGeometry* GeosWithHoles(const KvGePolygon2dArray& set) {
  std::vector<GEOSGeometry*> holes;
  for (int i = 1; i < set.GetSize(); ++i) holes.push_back(GeosRing(set.GetData()[i]));
  return GEOSGeom_createPolygon_r(g_geos, GeosRing(set.GetData()[0]), holes.data(),
                                  static_cast<unsigned>(holes.size()));
}

// The geometries live until the program ends.
std::vector<GEOSGeometry*> g_geosInputs;

double GeosArea(GEOSGeometry* g, bool area) {
  double a = 0.0;
  if (area) GEOSArea_r(g_geos, g, &a);
  GEOSGeom_destroy_r(g_geos, g);
  return a;
}

void AddGeos(const KvGePolygon2dArray& grid, const KvGePolygon2dArray& rects, const KvGePolygon2dArray& rooms,
             const KvGePolygon2dArray& holes, const KvGePolygon2d& star) {
  GEOSGeometry* g = GeosCollection(grid, GEOS_GEOMETRYCOLLECTION);
  GEOSGeometry* r = GeosCollection(rects, GEOS_GEOMETRYCOLLECTION);
  GEOSGeometry* a = GeosCollection(rooms, GEOS_MULTIPOLYGON);
  GEOSGeometry* b = GeosWithHoles(holes);
  GEOSGeometry* s = GeosPolygon(star);
  g_geosInputs = {g, r, a, b, s};
  Add("grid_union", "geos", [g](bool area) { return GeosArea(GEOSUnaryUnion_r(g_geos, g), area); });
  Add("rect_union", "geos", [r](bool area) { return GeosArea(GEOSUnaryUnion_r(g_geos, r), area); });
  Add("difference", "geos", [a, b](bool area) { return GeosArea(GEOSDifference_r(g_geos, a, b), area); });
  Add("star_offset", "geos", [s](bool area) {
    return GeosArea(GEOSBufferWithStyle_r(g_geos, s, kStarOffset, 8, GEOSBUF_CAP_FLAT, GEOSBUF_JOIN_MITRE, 2.0), area);
  });
}

#endif

// The area of every contender's result next to the library's, relative difference in brackets.
void PrintAreas() {
  std::printf("%-32s %18s %12s\n", "case (result area)", "area", "vs library");
  std::map<std::string, double> library;
  for (const Entry& e : g_cases) {
    const std::size_t slash = e.name.rfind('/');
    const std::string group = e.name.substr(0, slash), impl = e.name.substr(slash + 1);
    const double a = e.run(true);
    if (impl == "library") library[group] = a;
    std::printf("%-32s %18.6f", e.name.c_str(), a);
    if (impl != "library" && library.count(group) != 0)
      std::printf(" %12.2e", (a - library[group]) / std::max(1.0, std::fabs(library[group])));
    std::printf("\n");
  }
  std::printf("\n");
}

// One line per case once all have run: the median CPU time over the repetitions and, for the
// others, the ratio of the library's time on the same case to theirs.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      if ((single || median) && !run.error_occurred)
        m_ms[run.run_name.function_name] = run.GetAdjustedCPUTime() * Milliseconds(run.time_unit);
    }
  }
  void Finalize() override {
    std::printf("%-32s %12s %15s\n", "case (median CPU time)", "time", "library / this");
    std::map<std::string, double> library;
    for (const Entry& e : g_cases) {
      const auto found = m_ms.find(e.name);
      if (found == m_ms.end()) continue;
      const std::size_t slash = e.name.rfind('/');
      const std::string group = e.name.substr(0, slash), impl = e.name.substr(slash + 1);
      std::printf("%-32s %9.2f ms", e.name.c_str(), found->second);
      if (impl == "library")
        library[group] = found->second;
      else if (library.count(group) != 0)
        std::printf(" %14.2fx", library[group] / found->second);
      std::printf("\n");
    }
    std::fflush(stdout);
  }

 private:
  static double Milliseconds(benchmark::TimeUnit unit) {
    switch (unit) {
      case benchmark::kSecond:
        return 1e3;
      case benchmark::kMillisecond:
        return 1.0;
      case benchmark::kMicrosecond:
        return 1e-3;
      default:
        return 1e-6;
    }
  }
  std::map<std::string, double> m_ms;
};

}  // namespace

int main(int argc, char** argv) {
  // Three runs per case, interleaved in random order, unless the command line says otherwise (a
  // later flag wins).
  std::vector<char*> args(argv, argv + argc);
  char defaultMinTime[] = "--benchmark_min_time=0.2";
  char defaultRepetitions[] = "--benchmark_repetitions=3";
  char defaultAggregates[] = "--benchmark_display_aggregates_only=true";
  char defaultInterleaving[] = "--benchmark_enable_random_interleaving=true";
  args.insert(args.begin() + 1, {defaultMinTime, defaultRepetitions, defaultAggregates, defaultInterleaving});
  int count = static_cast<int>(args.size());
  benchmark::Initialize(&count, args.data());
  if (benchmark::ReportUnrecognizedArguments(count, args.data())) return 1;

  const KvGePolygon2dArray grid = Grid(), rects = RandomRects(), rooms = Rooms(), holes = Holes();
  const KvGePolygon2d star = Star();
  AddUnion("grid_union", grid);
  AddUnion("rect_union", rects);
  AddDifference(rooms, holes);
  AddOffset(star);
#ifdef UG_BENCH_HAVE_GEOS
  g_geos = GEOS_init_r();
  AddGeos(grid, rects, rooms, holes, star);
#else
  std::printf("GEOS was not found when this benchmark was built: its cases are skipped.\n");
#endif
  // The summary lists the cases by case, then by contender.
  std::stable_sort(g_cases.begin(), g_cases.end(), [](const Entry& a, const Entry& b) {
    return a.name.substr(0, a.name.rfind('/')) < b.name.substr(0, b.name.rfind('/'));
  });
  PrintAreas();

  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
#ifdef UG_BENCH_HAVE_GEOS
  for (GEOSGeometry* g : g_geosInputs) GEOSGeom_destroy_r(g_geos, g);
  GEOS_finish_r(g_geos);
#endif
  return 0;
}
