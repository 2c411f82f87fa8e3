// The library is re-entrant and only reads its constant objects: eight threads run every query
// at once on the same const polygons, sets and lines, each with output arrays and calculators of
// its own, and must answer exactly as one thread does. The test job runs this under
// ThreadSanitizer, which must report nothing.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/intersection/KvGePreparedRegion2d.h"

namespace {

KvGePolygon2d Star(int n, double cx, double cy, double r0, double r1) {
  KvGePolygon2d ring;
  for (int i = 0; i < n; ++i) {
    const double a = 6.283185307179586 * i / n, r = i % 2 ? r0 : r1;
    ring.Add(KvGePoint2d(cx + r * std::cos(a), cy + r * std::sin(a)));
  }
  return ring;
}

// Everything one thread computes, folded into numbers that must match bit for bit.
using Answers = std::vector<double>;

struct Shared {
  KvGePolygon2d poly;
  KvGePolygon2dArray set, other;
  KvGePreparedRegion2d prepared, deep;  // deep: scan lines cross more edges than a query keeps inline
  std::vector<KvGeLine2d> lines;
  KvGePolyline2d polyline;
};

void AddPieces(const KvBtDynArray<KvGeLine2d>& pieces, Answers& a) {
  a.push_back(pieces.GetSize());
  for (const KvGeLine2d& p : pieces) a.insert(a.end(), {p.P1().x, p.P1().y, p.P2().x, p.P2().y});
}

Answers RunQueries(const Shared& s) {
  Answers a;
  KvBtDynArray<KvGeLine2d> pieces;
  KvGePolyline2dArray chains;
  KvGeIntrPoint2dArray records;
  KvGeIntrCalculator2d calc;
  for (std::size_t k = 0; k < s.lines.size(); ++k) {
    const KvGeLine2d& l = s.lines[k];
    const KvGePoint2d& p = l.P1();
    a.push_back(Containment(p, s.poly));
    a.push_back(Containment(p, s.set));
    a.push_back(s.prepared.Containment(p));
    a.push_back(s.deep.Containment(p));
    a.push_back(DistanceSqr2d(s.poly, p));
    a.push_back(NearestLineIndex2d(s.poly, p));
    a.push_back(Containment(l, s.poly));
    a.push_back(Containment(l, s.set));
    Intersection2d(l, s.set, pieces, static_cast<int>(k % 2));
    AddPieces(pieces, a);
    s.prepared.Intersection2d(l, pieces, static_cast<int>(k % 2));
    AddPieces(pieces, a);
    s.deep.Intersection2d(l, pieces, 1);
    AddPieces(pieces, a);
    a.push_back(Intersection2d(l, static_cast<const KvGePoint2dArray&>(s.poly), records, 0));
    for (const KvGeIntrPoint2d& r : records) a.insert(a.end(), {r.x, r.y, r.Param0()});
    KvGeIntrPoint2d r;
    if (Intersection2d(l, s.lines[(k + 1) % s.lines.size()], r)) a.insert(a.end(), {r.x, r.y});
    // A calculator of the thread's own, cutting the line with the set's outer ring.
    calc.RemoveAll();
    Intersection2d(KvGeLine2d(l.P1(), l.P2(), 0), static_cast<const KvGePoint2dArray&>(s.set[0]), calc, 1);
    calc.SortIntrPoints0();
    calc.CalculateParts0();
    for (int i = 0; i < calc.GetSize0(); ++i) a.push_back(calc.Part0(static_cast<unsigned>(i)).Type());
  }
  a.push_back(Intersection2d(s.polyline, s.set, chains, 1));
  a.push_back(Containment(s.polyline, s.poly));
  const KvGePolygon2dArray u = s.set | s.other, i = s.set & s.other, d = s.set - s.other;
  a.insert(a.end(), {u.Area(), i.Area(), d.Area(), s.set.Normalized().Area()});
  return a;
}

}  // namespace

TEST(QueriesConcurrency, EightThreadsOnSharedConstObjects) {
  Shared shared;
  shared.poly = Star(200, 0, 0, 30, 40);
  shared.set.Add(shared.poly);
  for (int h = 0; h < 3; ++h) shared.set.Add(Star(12, -15 + 15 * h, 0, 3, 5).Inverted());
  shared.other.Add(Star(40, 20, 10, 15, 25));
  shared.prepared.Set(shared.set);
  shared.deep.Set(Star(600, 0, 0, 14, 30));
  for (int k = 0; k < 120; ++k) {
    const double a = 0.05 * k;
    // Through the region, some through vertices and along the band.
    const KvGePoint2d from(45 * std::cos(a), 45 * std::sin(2 * a) + (k % 3 == 0 ? 0.0009 : 0.0));
    shared.lines.emplace_back(from, KvGePoint2d(-40 * std::cos(3 * a), 30 * std::sin(a)), k % 3 != 1);
  }
  for (int i = 0; i < 30; ++i) shared.polyline.Add(KvGePoint2d(-50 + 3.5 * i, 20 * std::sin(0.7 * i)));

  const Shared& s = shared;
  const Answers expected = RunQueries(s);
  std::vector<Answers> got(8);
  std::vector<std::thread> threads;
  // All threads start together, so that their queries overlap.
  std::atomic<int> waiting(8);
  for (int t = 0; t < 8; ++t)
    threads.emplace_back([&s, &got, &waiting, t]() {
      waiting.fetch_sub(1);
      while (waiting.load() > 0) std::this_thread::yield();
      got[t] = RunQueries(s);
    });
  for (std::thread& th : threads) th.join();
  ASSERT_GT(expected.size(), 2000u);
  for (int t = 0; t < 8; ++t) EXPECT_TRUE(got[t] == expected) << "thread " << t;
}
