// The library's core queries against the peer libraries, all on the same generated data in one
// run: point containment in a convex and in a star-shaped polygon, the pieces of segments inside
// a square region with holes, and the crossing of two segments. Every case reports the time of
// one query and, as the counter allocs, the heap allocations per query (counted by the global
// operator new replaced below, so allocations inside the peers' shared libraries count too).
// Compare the times as ratios. Peers missing at configure time are skipped with a message.
//
// The prepared region answers the same point queries through its index; its build cases give the
// CPU time and the bytes it holds per edge.
//
// Before timing, every peer's answers are checked against the plain crossing loop or the
// library on the same data, so that the cases compare equal work; disagreements are printed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "UtilityGeometry.h"

#if UG_BENCH_HAVE_BOOST_GEOMETRY
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/multi_linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#endif
#if UG_BENCH_HAVE_CGAL
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Polygon_2_algorithms.h>
#include <CGAL/intersections.h>
#endif
#if UG_BENCH_HAVE_GEOS
#include <geos_c.h>
#endif

// ---------------------------------------------------------------------------------------------
// Allocation counting. Single-threaded on purpose: an atomic increment would add its own cost to
// every peer that allocates.

namespace {
std::uint64_t g_allocations = 0;

void* CountedAlloc(std::size_t n) {
  ++g_allocations;
  return std::malloc(n == 0 ? 1 : n);
}
void* CountedAlignedAlloc(std::size_t n, std::align_val_t al) {
  ++g_allocations;
  const std::size_t a = static_cast<std::size_t>(al) < sizeof(void*) ? sizeof(void*) : static_cast<std::size_t>(al);
  const std::size_t rounded = ((n == 0 ? 1 : n) + a - 1) / a * a;
  return std::aligned_alloc(a, rounded);
}
// Out of line, so that the compiler does not pair an inlined free with operator new.
[[gnu::noinline]] void CountedFree(void* p) noexcept { std::free(p); }
}  // namespace

void* operator new(std::size_t n) {
  if (void* p = CountedAlloc(n)) return p;
  throw std::bad_alloc();
}
void* operator new[](std::size_t n) {
  if (void* p = CountedAlloc(n)) return p;
  throw std::bad_alloc();
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return CountedAlloc(n); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return CountedAlloc(n); }
void* operator new(std::size_t n, std::align_val_t al) {
  if (void* p = CountedAlignedAlloc(n, al)) return p;
  throw std::bad_alloc();
}
void* operator new[](std::size_t n, std::align_val_t al) {
  if (void* p = CountedAlignedAlloc(n, al)) return p;
  throw std::bad_alloc();
}
void* operator new(std::size_t n, std::align_val_t al, const std::nothrow_t&) noexcept {
  return CountedAlignedAlloc(n, al);
}
void* operator new[](std::size_t n, std::align_val_t al, const std::nothrow_t&) noexcept {
  return CountedAlignedAlloc(n, al);
}
void operator delete(void* p) noexcept { CountedFree(p); }
void operator delete[](void* p) noexcept { CountedFree(p); }
void operator delete(void* p, std::size_t) noexcept { CountedFree(p); }
void operator delete[](void* p, std::size_t) noexcept { CountedFree(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { CountedFree(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { CountedFree(p); }
void operator delete(void* p, std::align_val_t) noexcept { CountedFree(p); }
void operator delete[](void* p, std::align_val_t) noexcept { CountedFree(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { CountedFree(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { CountedFree(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { CountedFree(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept { CountedFree(p); }

namespace {

// Runs the timed loop of one case: body(i) is query i of a cycle of `count` (a power of two).
template <class Body>
void TimedQueries(benchmark::State& state, std::size_t count, Body body) {
  const std::size_t mask = count - 1;
  std::size_t i = 0;
  const std::uint64_t before = g_allocations;
  for (auto _ : state) {
    body(i & mask);
    ++i;
  }
  state.counters["allocs"] =
      benchmark::Counter(static_cast<double>(g_allocations - before), benchmark::Counter::kAvgIterations);
}

// The cases in the order they are registered: the order of the summary.
std::vector<std::string> g_caseOrder;

template <class Fn>
void Register(const std::string& name, Fn fn) {
  benchmark::RegisterBenchmark(name.c_str(), fn);
  g_caseOrder.push_back(name);
}

// ---------------------------------------------------------------------------------------------
// Generated data, the same for every implementation.

struct XY {
  double x, y;
};

// splitmix64: the same numbers on every platform and standard library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_State(seed) {}
  double Uniform(double lo, double hi) {
    std::uint64_t z = (m_State += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    return lo + (hi - lo) * static_cast<double>(z >> 11) * 0x1.0p-53;
  }

 private:
  std::uint64_t m_State;
};

constexpr double kPi = 3.14159265358979323846;
constexpr double kRadius = 1000.0;
constexpr std::size_t kPointCount = 4096;
constexpr std::size_t kSegmentCount = 256;
constexpr std::size_t kPairCount = 4096;

enum class Shape { kConvex, kStar };

// A counter-clockwise ring of n vertices around the origin, no vertex repeated. The convex one
// is a regular polygon; the star-shaped one has seven lobes (radius between 0.35 and 1 of the
// full radius) so that a horizontal line crosses a few dozen edges at most, whatever n is.
std::vector<XY> MakeRing(Shape shape, int n) {
  std::vector<XY> ring(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    const double a = 2.0 * kPi * i / n + 0.1;  // turned a little: no vertex level with the centre
    const double r = shape == Shape::kConvex ? kRadius : kRadius * (0.675 + 0.325 * std::cos(7.0 * a));
    ring[static_cast<std::size_t>(i)] = {r * std::cos(a), r * std::sin(a)};
  }
  return ring;
}

// Query points spread over the polygon's box grown by a tenth: about 80 % (convex) or 40 %
// (star) of them inside.
std::vector<XY> MakeQueryPoints(std::uint64_t seed) {
  Random rnd(seed);
  std::vector<XY> pts(kPointCount);
  for (XY& p : pts) p = {rnd.Uniform(-1.1 * kRadius, 1.1 * kRadius), rnd.Uniform(-1.1 * kRadius, 1.1 * kRadius)};
  return pts;
}

// The square [0, 1000]^2 counter-clockwise with k = g * g square holes, one centred in each cell
// of a g x g grid, half as wide as the cell, clockwise.
std::vector<std::vector<XY>> MakeRegion(int k) {
  const int g = static_cast<int>(std::lround(std::sqrt(static_cast<double>(k))));
  const double side = 1000.0, cell = side / g, h = cell / 4.0;
  std::vector<std::vector<XY>> rings;
  rings.push_back({{0.0, 0.0}, {side, 0.0}, {side, side}, {0.0, side}});
  for (int i = 0; i < g; ++i)
    for (int j = 0; j < g; ++j) {
      const double cx = (i + 0.5) * cell, cy = (j + 0.5) * cell;
      rings.push_back({{cx - h, cy - h}, {cx - h, cy + h}, {cx + h, cy + h}, {cx + h, cy - h}});
    }
  return rings;
}

// Segments with both ends anywhere in the region's box grown by a tenth on each side: most run
// through the region, many from outside to outside.
std::vector<std::pair<XY, XY>> MakeSegments(std::size_t count, double lo, double hi, std::uint64_t seed) {
  Random rnd(seed);
  std::vector<std::pair<XY, XY>> segs(count);
  for (auto& s : segs) s = {{rnd.Uniform(lo, hi), rnd.Uniform(lo, hi)}, {rnd.Uniform(lo, hi), rnd.Uniform(lo, hi)}};
  return segs;
}

// ---------------------------------------------------------------------------------------------
// The floor: the classic crossing-parity loop on packed coordinates, no boundary band.

int PlainCrossing(const std::vector<XY>& ring, XY p) {
  const std::size_t n = ring.size();
  int inside = 0;
  for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
    const XY a = ring[i], b = ring[j];
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside ^= 1;
  }
  return inside;
}

// ---------------------------------------------------------------------------------------------
// Each implementation's form of the data.

KvGePolygon2d LibraryPolygon(const std::vector<XY>& ring) {
  KvGePolygon2d poly;
  for (const XY& v : ring) poly.Add(KvGePoint2d(v.x, v.y));
  return poly;
}

#if UG_BENCH_HAVE_BOOST_GEOMETRY
namespace bg = boost::geometry;
using BgPoint = bg::model::d2::point_xy<double>;
using BgPolygon = bg::model::polygon<BgPoint, false, true>;  // counter-clockwise, closed
using BgLine = bg::model::linestring<BgPoint>;
using BgLines = bg::model::multi_linestring<BgLine>;

BgPolygon BoostPolygon(const std::vector<std::vector<XY>>& rings) {
  BgPolygon poly;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    auto& ring = r == 0 ? poly.outer() : (poly.inners().emplace_back(), poly.inners().back());
    for (const XY& v : rings[r]) ring.push_back(BgPoint(v.x, v.y));
    ring.push_back(ring.front());
  }
  return poly;
}
#endif

#if UG_BENCH_HAVE_CGAL
using CgKernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using CgPoint = CgKernel::Point_2;
using CgSegment = CgKernel::Segment_2;
#endif

#if UG_BENCH_HAVE_GEOS
GEOSContextHandle_t g_geos = nullptr;

GEOSGeometry* GeosPolygon(const std::vector<XY>& ring) {
  const unsigned n = static_cast<unsigned>(ring.size());
  GEOSCoordSequence* seq = GEOSCoordSeq_create_r(g_geos, n + 1, 2);
  for (unsigned i = 0; i <= n; ++i) GEOSCoordSeq_setXY_r(g_geos, seq, i, ring[i % n].x, ring[i % n].y);
  return GEOSGeom_createPolygon_r(g_geos, GEOSGeom_createLinearRing_r(g_geos, seq), nullptr, 0);
}
#endif

// ---------------------------------------------------------------------------------------------
// Point containment.

struct ContainmentData {
  std::string name;
  std::vector<XY> ring, points;
  // Edges the horizontal line through a query point crosses, on average: the work of the scan
  // line beyond the loop over the edges.
  double crossed = 0.0;
  KvGePolygon2d poly;
  KvGePreparedRegion2d prepared;
  KvBtDynArray<KvGePoint2d> libPoints;
#if UG_BENCH_HAVE_BOOST_GEOMETRY
  BgPolygon bgPoly;
  std::vector<BgPoint> bgPoints;
#endif
#if UG_BENCH_HAVE_CGAL
  std::vector<CgPoint> cgRing, cgPoints;
#endif
#if UG_BENCH_HAVE_GEOS
  GEOSGeometry* geosPoly = nullptr;
  const GEOSPreparedGeometry* geosPrepared = nullptr;
  std::vector<GEOSGeometry*> geosPoints;
#endif
};

std::unique_ptr<ContainmentData> MakeContainmentData(Shape shape, int n) {
  auto d = std::make_unique<ContainmentData>();
  d->name = std::string(shape == Shape::kConvex ? "convex" : "star") + "/n:" + std::to_string(n);
  d->ring = MakeRing(shape, n);
  d->points = MakeQueryPoints(0x5eed0000u + static_cast<unsigned>(n) + (shape == Shape::kStar ? 1u : 0u));
  d->poly = LibraryPolygon(d->ring);
  d->prepared.Set(d->poly);
  std::size_t crossed = 0;
  for (const XY& p : d->points)
    for (std::size_t k = 0, j = d->ring.size() - 1; k < d->ring.size(); j = k++)
      crossed += (d->ring[k].y > p.y) != (d->ring[j].y > p.y);
  d->crossed = static_cast<double>(crossed) / static_cast<double>(kPointCount);
  for (const XY& p : d->points) d->libPoints.Add(KvGePoint2d(p.x, p.y));
#if UG_BENCH_HAVE_BOOST_GEOMETRY
  d->bgPoly = BoostPolygon({d->ring});
  for (const XY& p : d->points) d->bgPoints.emplace_back(p.x, p.y);
#endif
#if UG_BENCH_HAVE_CGAL
  for (const XY& v : d->ring) d->cgRing.emplace_back(v.x, v.y);
  for (const XY& p : d->points) d->cgPoints.emplace_back(p.x, p.y);
#endif
#if UG_BENCH_HAVE_GEOS
  d->geosPoly = GeosPolygon(d->ring);
  d->geosPrepared = GEOSPrepare_r(g_geos, d->geosPoly);
  for (const XY& p : d->points) d->geosPoints.push_back(GEOSGeom_createPointFromXY_r(g_geos, p.x, p.y));
  // The prepared form builds its edge index on the first query: not part of a query's cost.
  GEOSPreparedContains_r(g_geos, d->geosPrepared, d->geosPoints[0]);
#endif
  return d;
}

// Inside answers of each implementation, 1 inside and 0 not (the library's boundary answer 2
// counts as inside, as covered_by does).
int LibraryInside(const ContainmentData& d, std::size_t i) {
  const unsigned short c = Containment(d.libPoints.GetData()[i], d.poly);
  return c == 4 || c == 2 ? 1 : 0;
}

void CheckContainment(const ContainmentData& d) {
  int disagree[4] = {0, 0, 0, 0};
  for (std::size_t i = 0; i < kPointCount; i += 4) {
    const int floor = PlainCrossing(d.ring, d.points[i]);
    disagree[0] += LibraryInside(d, i) != floor;
#if UG_BENCH_HAVE_BOOST_GEOMETRY
    disagree[1] += (bg::covered_by(d.bgPoints[i], d.bgPoly) ? 1 : 0) != floor;
#endif
#if UG_BENCH_HAVE_CGAL
    disagree[2] +=
        (CGAL::bounded_side_2(d.cgRing.begin(), d.cgRing.end(), d.cgPoints[i], CgKernel()) != CGAL::ON_UNBOUNDED_SIDE
             ? 1
             : 0) != floor;
#endif
#if UG_BENCH_HAVE_GEOS
    disagree[3] += (GEOSPreparedContains_r(g_geos, d.geosPrepared, d.geosPoints[i]) == 1 ? 1 : 0) != floor;
#endif
  }
  // The prepared region must give the free function's answer, boundary band included.
  int preparedDiffers = 0;
  for (std::size_t i = 0; i < kPointCount; ++i)
    preparedDiffers +=
        d.prepared.Containment(d.libPoints.GetData()[i]) != Containment(d.libPoints.GetData()[i], d.poly);
  if (preparedDiffers)
    std::printf("containment %s: prepared answers differing from the library: %d\n", d.name.c_str(), preparedDiffers);
  if (disagree[0] || disagree[1] || disagree[2] || disagree[3])
    std::printf("containment %s: answers differing from the plain loop (library, Boost, CGAL, GEOS): %d %d %d %d\n",
                d.name.c_str(), disagree[0], disagree[1], disagree[2], disagree[3]);
}

void RegisterContainment(const ContainmentData* d) {
  const std::string base = "containment/" + d->name + "/";
  Register(base + "library", [d](benchmark::State& state) {
    TimedQueries(state, kPointCount,
                 [d](std::size_t i) { benchmark::DoNotOptimize(Containment(d->libPoints.GetData()[i], d->poly)); });
  });
  Register(base + "prepared", [d](benchmark::State& state) {
    TimedQueries(state, kPointCount,
                 [d](std::size_t i) { benchmark::DoNotOptimize(d->prepared.Containment(d->libPoints.GetData()[i])); });
  });
  // One fresh build per iteration, its storage allocated and freed; in a group of its own, as
  // its time is not a query's. Reports the CPU time per edge and the bytes held per edge.
  Register("prepared_build/" + d->name + "/build", [d](benchmark::State& state) {
    const std::clock_t start = std::clock();
    for (auto _ : state) {
      const KvGePreparedRegion2d built(d->poly);
      benchmark::DoNotOptimize(built.NumberOfEdges());
    }
    const double edges = static_cast<double>(state.iterations()) * d->poly.GetSize();
    state.counters["ns_per_edge"] = 1e9 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / edges;
    const KvGePreparedRegion2d region(d->poly);
    state.counters["bytes_per_edge"] =
        static_cast<double>(sizeof(KvGePreparedRegion2d) + region.MemoryUsage()) / d->poly.GetSize();
  });
  Register(base + "plain_loop", [d](benchmark::State& state) {
    TimedQueries(state, kPointCount,
                 [d](std::size_t i) { benchmark::DoNotOptimize(PlainCrossing(d->ring, d->points[i])); });
    state.counters["crossed"] = d->crossed;
  });
#if UG_BENCH_HAVE_BOOST_GEOMETRY
  Register(base + "boost_covered_by", [d](benchmark::State& state) {
    TimedQueries(state, kPointCount,
                 [d](std::size_t i) { benchmark::DoNotOptimize(bg::covered_by(d->bgPoints[i], d->bgPoly)); });
  });
#endif
#if UG_BENCH_HAVE_CGAL
  Register(base + "cgal_bounded_side_2", [d](benchmark::State& state) {
    TimedQueries(state, kPointCount, [d](std::size_t i) {
      benchmark::DoNotOptimize(CGAL::bounded_side_2(d->cgRing.begin(), d->cgRing.end(), d->cgPoints[i], CgKernel()));
    });
  });
#endif
#if UG_BENCH_HAVE_GEOS
  Register(base + "geos_prepared_contains", [d](benchmark::State& state) {
    TimedQueries(state, kPointCount, [d](std::size_t i) {
      benchmark::DoNotOptimize(GEOSPreparedContains_r(g_geos, d->geosPrepared, d->geosPoints[i]));
    });
  });
#endif
}

// ---------------------------------------------------------------------------------------------
// Pieces of segments inside a region with holes.

struct PiecesData {
  std::string name;
  std::vector<std::pair<XY, XY>> segments;
  std::vector<std::vector<XY>> rings;
  KvGePolygon2dArray region;
  KvBtDynArray<KvGeLine2d> lines;
#if UG_BENCH_HAVE_BOOST_GEOMETRY
  BgPolygon bgRegion;
  std::vector<BgLine> bgLines;
#endif
};

std::unique_ptr<PiecesData> MakePiecesData(int k) {
  auto d = std::make_unique<PiecesData>();
  d->name = "k:" + std::to_string(k);
  d->rings = MakeRegion(k);
  const std::vector<std::vector<XY>>& rings = d->rings;
  for (const auto& ring : rings) d->region.Add(LibraryPolygon(ring));
  d->segments = MakeSegments(kSegmentCount, -100.0, 1100.0, 0x9ece5000u + static_cast<unsigned>(k));
  for (const auto& s : d->segments)
    d->lines.Add(KvGeLine2d(KvGePoint2d(s.first.x, s.first.y), KvGePoint2d(s.second.x, s.second.y)));
#if UG_BENCH_HAVE_BOOST_GEOMETRY
  d->bgRegion = BoostPolygon(rings);
  for (const auto& s : d->segments)
    d->bgLines.push_back({BgPoint(s.first.x, s.first.y), BgPoint(s.second.x, s.second.y)});
#endif
  return d;
}

// The floor of the pieces: the segment's parameters at the edges it crosses (ends strictly on
// either side of its line), the parity of those before its start, and the inside runs between the
// sorted ones on it, written as parameter pairs. No band, no degenerate cases; storage sized once.
class PlainPieces {
 public:
  explicit PlainPieces(const std::vector<std::vector<XY>>& rings) : m_Rings(rings) {
    std::size_t edges = 0;
    for (const auto& ring : rings) edges += ring.size();
    m_Params.resize(edges);
    m_Pieces.resize(edges + 1);
  }
  std::size_t Cut(XY a, XY b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    std::size_t count = 0;
    int before = 0;
    for (const auto& ring : m_Rings) {
      XY s = ring.back();
      double hs = dx * (s.y - a.y) - dy * (s.x - a.x);
      for (const XY& e : ring) {
        const double he = dx * (e.y - a.y) - dy * (e.x - a.x);
        if ((hs < 0) != (he < 0)) {
          // The parameter along a-b (0 at a, 1 at b) where the edge meets its line.
          const double ex = e.x - s.x, ey = e.y - s.y;
          const double t = ((s.x - a.x) * ey - (s.y - a.y) * ex) / (dx * ey - dy * ex);
          if (t <= 0.0)
            before ^= 1;
          else if (t < 1.0)
            m_Params[count++] = t;
        }
        s = e;
        hs = he;
      }
    }
    std::sort(m_Params.begin(), m_Params.begin() + static_cast<std::ptrdiff_t>(count));
    std::size_t pieces = 0;
    double start = 0.0;
    int inside = before;
    for (std::size_t i = 0; i <= count; ++i) {
      const double t = i < count ? m_Params[i] : 1.0;
      if (inside) m_Pieces[pieces++] = {start, t};
      start = t;
      inside ^= 1;
    }
    return pieces;
  }
  // The summed length of the first `pieces` pieces of the last cut of a-b.
  double InsideLength(std::size_t pieces, XY a, XY b) const {
    double t = 0.0;
    for (std::size_t i = 0; i < pieces; ++i) t += m_Pieces[i].second - m_Pieces[i].first;
    return t * std::hypot(b.x - a.x, b.y - a.y);
  }

 private:
  const std::vector<std::vector<XY>>& m_Rings;
  std::vector<double> m_Params;
  std::vector<std::pair<double, double>> m_Pieces;
};

double TotalLength(const KvBtDynArray<KvGeLine2d>& pieces) {
  double sum = 0.0;
  for (int i = 0; i < pieces.GetSize(); ++i) {
    const KvGeLine2d& l = pieces.GetData()[i];
    sum += std::hypot(l.P2().x - l.P1().x, l.P2().y - l.P1().y);
  }
  return sum;
}

void CheckPieces(const PiecesData& d) {
  KvBtDynArray<KvGeLine2d> out;
  PlainPieces plain(d.rings);
  int differ[2] = {0, 0};
  for (std::size_t i = 0; i < kSegmentCount; ++i) {
    Intersection2d(d.lines.GetData()[i], d.region, out, 0);
    const double library = TotalLength(out);
    const XY a = d.segments[i].first, b = d.segments[i].second;
    differ[0] += std::fabs(plain.InsideLength(plain.Cut(a, b), a, b) - library) > 0.01;
#if UG_BENCH_HAVE_BOOST_GEOMETRY
    BgLines bgOut;
    bg::intersection(d.bgLines[i], d.bgRegion, bgOut);
    differ[1] += std::fabs(bg::length(bgOut) - library) > 0.01;
#endif
  }
  if (differ[0] || differ[1])
    std::printf(
        "pieces %s: inside lengths differing by more than 0.01 from the library's (plain loop, Boost) on %d %d "
        "of %zu segments\n",
        d.name.c_str(), differ[0], differ[1], kSegmentCount);
}

void RegisterPieces(const PiecesData* d) {
  const std::string base = "pieces/" + d->name + "/";
  Register(base + "library", [d](benchmark::State& state) {
    KvBtDynArray<KvGeLine2d> out;
    std::size_t pieces = 0, calls = 0;
    TimedQueries(state, kSegmentCount, [&](std::size_t i) {
      pieces += static_cast<std::size_t>(Intersection2d(d->lines.GetData()[i], d->region, out, 0));
      ++calls;
    });
    state.counters["pieces"] = static_cast<double>(pieces) / static_cast<double>(calls);
  });
  Register(base + "plain_loop", [d](benchmark::State& state) {
    PlainPieces plain(d->rings);
    std::size_t pieces = 0, calls = 0;
    TimedQueries(state, kSegmentCount, [&](std::size_t i) {
      pieces += plain.Cut(d->segments[i].first, d->segments[i].second);
      ++calls;
    });
    state.counters["pieces"] = static_cast<double>(pieces) / static_cast<double>(calls);
  });
#if UG_BENCH_HAVE_BOOST_GEOMETRY
  Register(base + "boost_intersection", [d](benchmark::State& state) {
    BgLines out;
    std::size_t pieces = 0, calls = 0;
    TimedQueries(state, kSegmentCount, [&](std::size_t i) {
      out.clear();
      bg::intersection(d->bgLines[i], d->bgRegion, out);
      pieces += out.size();
      ++calls;
    });
    state.counters["pieces"] = static_cast<double>(pieces) / static_cast<double>(calls);
  });
#endif
}

// ---------------------------------------------------------------------------------------------
// Crossing of two segments.

struct PairsData {
  std::vector<std::pair<XY, XY>> a, b;
  KvBtDynArray<KvGePoint2d> p;  // p1, p2, q1, q2 of each pair, in a row
#if UG_BENCH_HAVE_CGAL
  std::vector<CgSegment> cgA, cgB;
#endif
};

std::unique_ptr<PairsData> MakePairsData() {
  auto d = std::make_unique<PairsData>();
  d->a = MakeSegments(kPairCount, 0.0, 1000.0, 0xc0ffee01u);
  d->b = MakeSegments(kPairCount, 0.0, 1000.0, 0xc0ffee02u);
  for (std::size_t i = 0; i < kPairCount; ++i) {
    for (const XY& v : {d->a[i].first, d->a[i].second, d->b[i].first, d->b[i].second}) d->p.Add(KvGePoint2d(v.x, v.y));
#if UG_BENCH_HAVE_CGAL
    d->cgA.emplace_back(CgPoint(d->a[i].first.x, d->a[i].first.y), CgPoint(d->a[i].second.x, d->a[i].second.y));
    d->cgB.emplace_back(CgPoint(d->b[i].first.x, d->b[i].first.y), CgPoint(d->b[i].second.x, d->b[i].second.y));
#endif
  }
  return d;
}

int LibraryCross(const PairsData& d, std::size_t i, KvGePoint2d& s) {
  const KvGePoint2d* v = d.p.GetData() + 4 * i;
  return IntrLineLine2d(v[0], v[1], v[2], v[3], s, 1, 1);
}

#if UG_BENCH_HAVE_CGAL
// 1 with the crossing point when the segments cross in one point; an overlap counts as none, as
// the library does not report overlaps either.
int CgalCross(const PairsData& d, std::size_t i, CgPoint& s) {
  if (!CGAL::do_intersect(d.cgA[i], d.cgB[i])) return 0;
  const auto r = CGAL::intersection(d.cgA[i], d.cgB[i]);
  if (!r) return 0;
  const CgPoint* p = boost::get<CgPoint>(&*r);
  if (!p) return 0;
  s = *p;
  return 1;
}
#endif

void CheckPairs(const PairsData& d) {
#if UG_BENCH_HAVE_CGAL
  int differ = 0;
  for (std::size_t i = 0; i < kPairCount; ++i) {
    KvGePoint2d s;
    CgPoint t;
    const int a = LibraryCross(d, i, s), b = CgalCross(d, i, t);
    differ += a != b || (a && std::hypot(s.x - t.x(), s.y - t.y()) > 1e-6);
  }
  if (differ) std::printf("segment pairs: %d of %zu differ from CGAL\n", differ, kPairCount);
#else
  (void)d;
#endif
}

void RegisterPairs(const PairsData* d) {
  Register("segment_pairs/library", [d](benchmark::State& state) {
    KvGePoint2d s;
    TimedQueries(state, kPairCount, [&](std::size_t i) {
      benchmark::DoNotOptimize(LibraryCross(*d, i, s));
      benchmark::DoNotOptimize(s);
    });
  });
#if UG_BENCH_HAVE_CGAL
  Register("segment_pairs/cgal_do_intersect_intersection", [d](benchmark::State& state) {
    CgPoint s;
    TimedQueries(state, kPairCount, [&](std::size_t i) {
      benchmark::DoNotOptimize(CgalCross(*d, i, s));
      benchmark::DoNotOptimize(s);
    });
  });
#endif
}

// One line per case once all have run (their repetitions are interleaved, so that load on the
// machine that comes and goes weighs on every case alike): the CPU time per query (the median over
// the repetitions), the allocations per query, and for a peer or the plain loop the ratio of the
// library's time on the same data to its time.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  bool ReportContext(const Context& context) override { return ConsoleReporter::ReportContext(context); }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      if (!single && !median && !run.error_occurred) continue;
      Result& r = m_Results[run.run_name.function_name];
      r.error = run.error_occurred ? run.error_message : std::string();
      r.ns = run.GetAdjustedCPUTime() * NanosecondsPer(run.time_unit);
      r.counters = run.counters;
    }
  }
  void Finalize() override {
    std::printf("%-52s %14s %8s %15s\n", "case (CPU time per query)", "time", "allocs", "library / this");
    std::map<std::string, double> library;
    for (const std::string& name : g_caseOrder) {
      const auto found = m_Results.find(name);
      if (found == m_Results.end()) continue;
      const Result& r = found->second;
      if (!r.error.empty()) {
        std::printf("%-52s %s\n", name.c_str(), r.error.c_str());
        continue;
      }
      const std::size_t slash = name.rfind('/');
      const std::string group = name.substr(0, slash), impl = name.substr(slash + 1);
      const auto allocs = r.counters.find("allocs");
      std::printf("%-52s %11.1f ns %8.2f", name.c_str(), r.ns, allocs == r.counters.end() ? 0.0 : allocs->second.value);
      if (impl == "library")
        library[group] = r.ns;
      else if (library.count(group) != 0)
        std::printf(" %14.2fx", library[group] / r.ns);
      for (const auto& counter : r.counters)
        if (counter.first != "allocs") std::printf("  %s %.2f", counter.first.c_str(), counter.second.value);
      std::printf("\n");
    }
    std::fflush(stdout);
  }

 private:
  struct Result {
    double ns = 0.0;
    std::string error;
    benchmark::UserCounters counters;
  };
  static double NanosecondsPer(benchmark::TimeUnit unit) {
    switch (unit) {
      case benchmark::kSecond:
        return 1e9;
      case benchmark::kMillisecond:
        return 1e6;
      case benchmark::kMicrosecond:
        return 1e3;
      default:
        return 1.0;
    }
  }
  std::map<std::string, Result> m_Results;
};

}  // namespace

int main(int argc, char** argv) {
  // Three runs of 0.05 s CPU time per case, interleaved in random order, unless the command line
  // says otherwise (a later flag wins): the whole program then stays well under two minutes.
  std::vector<char*> args(argv, argv + argc);
  char defaultMinTime[] = "--benchmark_min_time=0.05";
  char defaultRepetitions[] = "--benchmark_repetitions=3";
  char defaultAggregates[] = "--benchmark_display_aggregates_only=true";
  char defaultInterleaving[] = "--benchmark_enable_random_interleaving=true";
  args.insert(args.begin() + 1, {defaultMinTime, defaultRepetitions, defaultAggregates, defaultInterleaving});
  int count = static_cast<int>(args.size());
  benchmark::Initialize(&count, args.data());
  if (benchmark::ReportUnrecognizedArguments(count, args.data())) return 1;
#if !UG_BENCH_HAVE_BOOST_GEOMETRY
  std::printf("Boost.Geometry was not found at configure time: its cases are skipped\n");
#endif
#if !UG_BENCH_HAVE_CGAL
  std::printf("CGAL was not found at configure time: its cases are skipped\n");
#endif
#if UG_BENCH_HAVE_GEOS
  g_geos = GEOS_init_r();
#else
  std::printf("GEOS was not found at configure time: its cases are skipped\n");
#endif

  std::vector<std::unique_ptr<ContainmentData>> containment;
  for (Shape shape : {Shape::kConvex, Shape::kStar})
    for (int n : {16, 256, 4096, 65536}) {
      containment.push_back(MakeContainmentData(shape, n));
      CheckContainment(*containment.back());
      RegisterContainment(containment.back().get());
    }
  std::vector<std::unique_ptr<PiecesData>> pieces;
  for (int k : {1, 16, 256}) {
    pieces.push_back(MakePiecesData(k));
    CheckPieces(*pieces.back());
    RegisterPieces(pieces.back().get());
  }
  const std::unique_ptr<PairsData> pairs = MakePairsData();
  CheckPairs(*pairs);
  RegisterPairs(pairs.get());

  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();

#if UG_BENCH_HAVE_GEOS
  for (const auto& d : containment) {
    for (GEOSGeometry* p : d->geosPoints) GEOSGeom_destroy_r(g_geos, p);
    GEOSPreparedGeom_destroy_r(g_geos, d->geosPrepared);
    GEOSGeom_destroy_r(g_geos, d->geosPoly);
  }
  GEOS_finish_r(g_geos);
#endif
  return 0;
}
