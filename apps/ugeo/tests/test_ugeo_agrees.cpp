// ugeo's answers against the library called directly, on random regions and queries: the tool
// must read, choose the function and print so that nothing of the library's answer is lost.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/io/KvGeWkt.h"
#include "geometry/polygons/KvGeParallel2d.h"

namespace {

using P = KvGePoint2d;

// Runs ugeo with the arguments (each quoted for the shell) and returns its output lines; the
// status goes to *status.
std::vector<std::string> Ugeo(const std::vector<std::string>& args, int* status) {
  std::string cmd = "'" UGEO_PATH "'";
  for (const std::string& a : args) cmd += " '" + a + "'";
  std::vector<std::string> lines;
  FILE* pipe = popen(cmd.c_str(), "r");
  if (pipe == nullptr) {
    *status = -1;
    return lines;
  }
  std::string line;
  for (int c; (c = std::fgetc(pipe)) != EOF;) {
    if (c == '\n') {
      lines.push_back(line);
      line.clear();
    } else {
      line.push_back(static_cast<char>(c));
    }
  }
  const int rc = pclose(pipe);
  *status = WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
  return lines;
}

std::string WriteLines(const std::string& name, const std::vector<std::string>& lines) {
  const std::string path = std::string(UGEO_TEST_DIR) + "/" + name;
  std::ofstream f(path);
  for (const std::string& l : lines) f << l << '\n';
  return "@" + path;
}

double Uniform(std::mt19937_64& rng, double a, double b) { return std::uniform_real_distribution<double>(a, b)(rng); }

// A star-shaped ring around c with radii in [r0, r1], counter-clockwise; inverted when cw.
KvGePolygon2d Star(std::mt19937_64& rng, const P& c, double r0, double r1, int n, bool cw) {
  KvGePolygon2d ring;
  for (int k = 0; k < n; ++k) {
    const double a = 2.0 * M_PI * k / n, r = Uniform(rng, r0, r1);
    ring.Add(P(c.x + r * std::cos(a), c.y + r * std::sin(a)));
  }
  if (cw) ring.Invert();
  return ring;
}

// The region as the tool sees it: written as WKT and read back.
KvGePolygon2dArray ReadBack(const KvGePolygon2dArray& region, std::string& wkt) {
  wkt = KvGeWriteWkt(region);
  KvGePolygon2dArray back;
  EXPECT_TRUE(KvGeReadWkt(wkt, back));
  return back;
}

// Points anywhere in the box and points at 0, 0.0009, 0.0011 and 0.01 from a random edge, on
// either side: the bands where a wrong choice of function would show.
std::vector<P> Queries(std::mt19937_64& rng, const KvGePolygon2dArray& region, int n) {
  std::vector<P> out;
  const double offsets[] = {0.0, 0.0009, -0.0009, 0.0011, -0.0011, 0.01};
  for (int i = 0; i < n; ++i) {
    if (i % 2 == 0) {
      out.emplace_back(Uniform(rng, -12, 12), Uniform(rng, -12, 12));
      continue;
    }
    const KvGePolygon2d& ring = region[static_cast<int>(rng() % region.GetSize())];
    const int e = static_cast<int>(rng() % ring.GetSize());
    const P a = ring[e], b = ring[(e + 1) % ring.GetSize()];
    const double t = Uniform(rng, 0, 1), len = std::hypot(b.x - a.x, b.y - a.y);
    const double d = offsets[rng() % 6];
    out.emplace_back(a.x + t * (b.x - a.x) - d * (b.y - a.y) / len, a.y + t * (b.y - a.y) + d * (b.x - a.x) / len);
  }
  return out;
}

unsigned short Direct(const P& p, const KvGePolygon2dArray& region) {
  return region.GetSize() == 1 ? Containment(p, region[0]) : Containment(p, region);
}

int Pieces(const KvGeLine2d& l, const KvGePolygon2dArray& region, KvBtDynArray<KvGeLine2d>& out, int mode) {
  return region.GetSize() == 1 ? Intersection2d(l, static_cast<const KvGePoint2dArray&>(region[0]), out, mode)
                               : Intersection2d(l, region, out, mode);
}

TEST(UgeoAgrees, ContainmentAndPiecesOfRandomRegions) {
  std::mt19937_64 rng(16);
  for (int shape = 0; shape < 4; ++shape) {
    SCOPED_TRACE(shape);
    KvGePolygon2dArray generated;
    generated.Add(Star(rng, P(0, 0), 6, 10, 40, false));
    if (shape % 2 == 1) generated.Add(Star(rng, P(0.5, -0.5), 1.5, 3, 12, true));  // a hole
    std::string regionWkt;
    const KvGePolygon2dArray region = ReadBack(generated, regionWkt);

    const std::vector<P> points = Queries(rng, region, 400);
    std::vector<std::string> pointWkt, lineWkt;
    for (const P& p : points) pointWkt.push_back(KvGeWriteWkt(p));
    std::vector<KvGeLine2d> lines;
    for (std::size_t i = 0; i + 1 < points.size(); i += 2) {
      lines.emplace_back(points[i], points[i + 1]);
      lineWkt.push_back(KvGeWriteWkt(lines.back()));
    }
    // The first query through the free functions (a few arguments), all through the prepared
    // region (a file).
    int status = 0;
    const std::vector<std::string> few = Ugeo({"contains", regionWkt, pointWkt[0], pointWkt[1]}, &status);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(few.size(), 2u);
    for (int i = 0; i < 2; ++i)
      EXPECT_EQ(std::atoi(few[i].substr(few[i].rfind(' ')).c_str()), Direct(points[i], region));
    const std::vector<std::string> all =
        Ugeo({"contains", regionWkt, WriteLines("agree_points.wkt", pointWkt)}, &status);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(all.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
      SCOPED_TRACE(pointWkt[i]);
      EXPECT_EQ(std::atoi(all[i].substr(all[i].rfind(' ')).c_str()), Direct(points[i], region)) << all[i];
    }

    for (int mode = 0; mode < 2; ++mode) {
      const std::vector<std::string> out =
          Ugeo({"pieces", "--mode", std::to_string(mode), regionWkt, WriteLines("agree_lines.wkt", lineWkt)}, &status);
      ASSERT_EQ(status, 0);
      ASSERT_EQ(out.size(), lines.size());
      KvBtDynArray<KvGeLine2d> expected;
      for (std::size_t i = 0; i < lines.size(); ++i) {
        SCOPED_TRACE(lineWkt[i]);
        Pieces(lines[i], region, expected, mode);
        KvGePolyline2dArray got;
        ASSERT_TRUE(KvGeReadWkt(out[i], got)) << out[i];
        ASSERT_EQ(got.GetSize(), expected.GetSize()) << out[i];
        for (int k = 0; k < got.GetSize(); ++k) {
          ASSERT_EQ(got[k].GetSize(), 2);
          // == on doubles: bit-identical except that the tool prints -0 as 0.
          EXPECT_TRUE(got[k][0].x == expected[k].P1().x && got[k][0].y == expected[k].P1().y &&
                      got[k][1].x == expected[k].P2().x && got[k][1].y == expected[k].P2().y)
              << out[i];
        }
      }
    }
  }
}

TEST(UgeoAgrees, AreaDistanceAndRegionOperations) {
  std::mt19937_64 rng(1616);
  for (int round = 0; round < 6; ++round) {
    SCOPED_TRACE(round);
    KvGePolygon2dArray ga, gb;
    ga.Add(Star(rng, P(0, 0), 4, 8, 24, false));
    if (round % 2 == 0) ga.Add(Star(rng, P(0, 0), 1, 2, 8, true));
    gb.Add(Star(rng, P(Uniform(rng, -6, 6), Uniform(rng, -6, 6)), 3, 6, 16, false));
    std::string wa, wb;
    const KvGePolygon2dArray a = ReadBack(ga, wa), b = ReadBack(gb, wb);

    int status = 0;
    std::vector<std::string> out = Ugeo({"area", wa, wb}, &status);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(std::strtod(out[0].c_str(), nullptr), a.Area());
    EXPECT_EQ(std::strtod(out[1].c_str(), nullptr), b.Area());

    // The distance from a point outside a polygon is that to its nearest edge.
    const P p(Uniform(rng, 9, 20), Uniform(rng, -20, 20));
    out = Ugeo({"distance", wb, KvGeWriteWkt(p)}, &status);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(out.size(), 1u);
    ASSERT_EQ(Containment(p, b[0]), 1);
    EXPECT_EQ(std::strtod(out[0].c_str(), nullptr), std::sqrt(DistanceSqr2d(b[0], p)));

    // Region operations: the same text as the library's result written.
    const KvGePolygon2dArray results[3] = {a | b, a & b, a - b};
    const char* names[3] = {"union", "intersection", "difference"};
    for (int k = 0; k < 3; ++k) {
      SCOPED_TRACE(names[k]);
      out = Ugeo({names[k], wa, wb}, &status);
      ASSERT_EQ(status, 0);
      ASSERT_EQ(out.size(), 1u);
      KvGePolygon2dArray r = results[k];
      for (KvGePolygon2d& ring : r)
        for (P& q : ring) q = P(q.x + 0.0, q.y + 0.0);
      EXPECT_EQ(out[0], KvGeWriteWkt(r));
    }
    const double d = Uniform(rng, -1, 1);
    KvGePolygon2dArray grown;
    ASSERT_TRUE(a.GetSize() == 1 ? ParallelPolygon2d(a[0], d, grown, kKvGeJoinRound)
                                 : ParallelPolygon2d(a, d, grown, kKvGeJoinRound));
    out = Ugeo({"offset", wa, std::to_string(d), "--join", "round"}, &status);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(out.size(), 1u);
    KvGePolygon2dArray got;
    ASSERT_TRUE(KvGeReadWkt(out[0], got));
    // The distance went through its decimal text: compare areas, within the grid of the
    // region operations.
    KvGePolygon2dArray again;
    const double dText = std::strtod(std::to_string(d).c_str(), nullptr);
    ASSERT_TRUE(a.GetSize() == 1 ? ParallelPolygon2d(a[0], dText, again, kKvGeJoinRound)
                                 : ParallelPolygon2d(a, dText, again, kKvGeJoinRound));
    for (KvGePolygon2d& ring : again)
      for (P& q : ring) q = P(q.x + 0.0, q.y + 0.0);
    EXPECT_EQ(out[0], KvGeWriteWkt(again));
    EXPECT_NEAR(got.Area(), grown.Area(), 1e-3);
  }
}

}  // namespace
