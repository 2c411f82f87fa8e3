// Region operations of polygon sets, offsets and loop removal on the clipping library, and the
// clean-up of point runs that both the normalised results and the polyline correction use.
//
// The clipping library computes on 64-bit integers and reports misuse by exceptions. Every call
// into it sits inside one try block per operation, and the library's results are written to
// the caller's objects only after that block has completed, so a failure leaves them as they
// were.

#include <clipper.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

#include "geometry/algebra/KvGeModMat.h"
#include "geometry/polygons/KvGeParallel2d.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

namespace CL = ClipperLib;

namespace {

constexpr double kTol = 0.001;
// The tolerance and the smallest ring area of normalised results, on the integer grid.
constexpr double kGridTol = kTol * kKvGeRegionScale;
constexpr double kGridMinArea = 1e-6 * kKvGeRegionScale * kKvGeRegionScale;
// Rounds of re-union after a clean-up that changed a ring, before the cleaned rings are taken
// as they stand; one round settles nearly every case.
constexpr int kTidyRounds = 4;
constexpr double kMaxChordsPerTurn = 1e6;
constexpr double kPi = 3.14159265358979323846;
// The clipping library rounds the number of chords of each corner, so one chord of a corner may
// span up to 1.5 regular steps and rise 1.5^2 times the tolerance it was given; it is given
// eps / 2.25 to keep every chord within eps.
constexpr double kArcShare = 1.0 / 2.25;

struct Pt {
  double x, y;
};

double Cross(const Pt& o, const Pt& a, const Pt& b) { return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x); }
double DistSqr(const Pt& a, const Pt& b) { return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y); }

// Squared distance of p from the infinite line through a and b (|ab| > 0).
double LineDistSqr(const Pt& a, const Pt& b, const Pt& p) {
  const double c = Cross(a, b, p);
  return c * c / DistSqr(a, b);
}

// Whether the points strictly between a and c may go: all lie within eps of the line through
// pts[a] and pts[c], or, when that line is undefined (pts[a] and pts[c] within eps: a spike out
// and back), of the line from pts[a] through the farthest of them. The points of a spike are
// marked, since they lie off every later line and have gone for their own reason.
bool RemovableScan(const std::vector<Pt>& pts, std::vector<char>& spike, int a, int c, double eps) {
  const double epsSqr = eps * eps;
  Pt lineEnd = pts[c];
  bool outAndBack = false;
  if (DistSqr(pts[a], pts[c]) <= epsSqr) {
    double far = -1.0;
    for (int k = a + 1; k < c; ++k) {
      const double d = DistSqr(pts[a], pts[k]);
      if (d > far) {
        far = d;
        lineEnd = pts[k];
      }
    }
    if (far <= epsSqr) return true;
    outAndBack = true;
  }
  for (int k = a + 1; k < c; ++k)
    if (!(spike[k] && !outAndBack) && LineDistSqr(pts[a], lineEnd, pts[k]) > epsSqr) return false;
  if (outAndBack) std::fill(spike.begin() + a + 1, spike.begin() + c, 1);
  return true;
}

// The directions of the lines through one kept point that pass within eps of every point after
// it up to covered: an arc [lo, hi] of angles relative to ref, modulo pi. A point at distance d
// allows the directions within asin(eps / d) of its own; a point within eps allows all. The arc
// decides the scan's question for a long run in constant time; near its ends, or when a point
// closer than 2.6 eps (whose allowed arc is too wide to intersect safely) makes it unusable, the
// scan decides.
struct Cone {
  int covered = -1, generation = -1;
  double ref = 0, lo = 0, hi = 0;
  bool any = false, usable = true;
};
// Runs of at most this many points are scanned: cheaper than the arc's trigonometry.
constexpr int kShortRun = 32;
// Angles within this of an end of the arc are left to the scan.
constexpr double kConeMargin = 1e-9;
// A point closer than eps / sin(pi / 8) gives an arc too wide for the cone.
constexpr double kConeNear = 2.6131259297527532;

double NearestTurn(double delta, double mid) { return delta - kPi * std::nearbyint((delta - mid) / kPi); }

bool Removable(const std::vector<Pt>& pts, std::vector<char>& spike, std::vector<Cone>& cones, int& generation, int a,
               int c, double eps) {
  if (DistSqr(pts[a], pts[c]) <= eps * eps) {
    ++generation;  // spikes may be marked: every cone is built anew
    return RemovableScan(pts, spike, a, c, eps);
  }
  if (c - a <= kShortRun) return RemovableScan(pts, spike, a, c, eps);
  Cone& cone = cones[static_cast<std::size_t>(a)];
  if (cone.generation != generation) cone = Cone{a, generation};
  for (int k = cone.covered + 1; k < c && cone.usable; ++k) {
    cone.covered = k;
    const double d = std::sqrt(DistSqr(pts[a], pts[k]));
    if (spike[k] || d <= eps) continue;
    if (d < kConeNear * eps) {
      cone.usable = false;
      break;
    }
    const double phi = std::atan2(pts[k].y - pts[a].y, pts[k].x - pts[a].x), alpha = std::asin(eps / d);
    if (!cone.any) {
      cone.any = true;
      cone.ref = phi;
      cone.lo = -alpha;
      cone.hi = alpha;
      continue;
    }
    const double delta = NearestTurn(phi - cone.ref, (cone.lo + cone.hi) / 2);
    cone.lo = std::max(cone.lo, delta - alpha);
    cone.hi = std::min(cone.hi, delta + alpha);
  }
  if (cone.usable && cone.covered >= c - 1) {
    if (!cone.any) return true;  // every point between within eps of pts[a]
    if (cone.lo > cone.hi + kConeMargin) return false;
    const double phi = std::atan2(pts[c].y - pts[a].y, pts[c].x - pts[a].x);
    const double delta = NearestTurn(phi - cone.ref, (cone.lo + cone.hi) / 2);
    if (delta >= cone.lo + kConeMargin && delta <= cone.hi - kConeMargin) return true;
    if (delta < cone.lo - kConeMargin || delta > cone.hi + kConeMargin) return false;
  }
  return RemovableScan(pts, spike, a, c, eps);
}

// The indices of an open run that survive the removal of repeated points, collinear middle
// vertices and spikes; the first and the last point always stay. Fewer than two indices when
// every point lies within eps of the first.
void CleanOpen(const std::vector<Pt>& pts, double eps, std::vector<int>& keep, std::vector<char>& spike,
               std::vector<Cone>& cones) {
  keep.clear();
  const int n = static_cast<int>(pts.size());
  const double epsSqr = eps * eps;
  spike.assign(pts.size(), 0);
  cones.assign(pts.size(), Cone{});
  int generation = 0;
  for (int i = 0; i < n; ++i) {
    bool skip = false;
    for (;;) {
      if (!keep.empty() && DistSqr(pts[keep.back()], pts[i]) <= epsSqr) {
        // A repeated point goes, except the last one, which stays exactly in place of its
        // near neighbour.
        if (i != n - 1 || keep.size() < 2) {
          skip = true;
          break;
        }
        keep.pop_back();
        continue;
      }
      if (keep.size() >= 2 && Removable(pts, spike, cones, generation, keep[keep.size() - 2], i, eps)) {
        keep.pop_back();
        continue;
      }
      break;
    }
    if (!skip) keep.push_back(i);
  }
}

// The same for a closed ring. The run starts and ends at its sharpest corner, which the open
// rules keep; once the others are settled, that corner goes too when it and every point removed
// around it lie within eps of the line through its kept neighbours (a finely digitised circle
// has no corner beyond eps at all). The result lists the kept ring indices without a closing
// duplicate; fewer than three when the ring collapses.
void CleanClosed(const std::vector<Pt>& ring, double eps, std::vector<Pt>& run, std::vector<int>& keep,
                 std::vector<char>& spike, std::vector<Cone>& cones) {
  keep.clear();
  const int n = static_cast<int>(ring.size());
  if (n < 3) return;
  const double epsSqr = eps * eps;
  int start = -1;
  double best = -1.0;
  for (int i = 0; i < n; ++i) {
    const Pt& a = ring[(i + n - 1) % n];
    const Pt& c = ring[(i + 1) % n];
    if (DistSqr(a, c) <= epsSqr) continue;
    const double d = LineDistSqr(a, c, ring[i]);
    if (d > best) {
      best = d;
      start = i;
    }
  }
  if (start < 0) return;
  run.resize(static_cast<std::size_t>(n) + 1);
  for (int i = 0; i <= n; ++i) run[static_cast<std::size_t>(i)] = ring[(start + i) % n];
  CleanOpen(run, eps, keep, spike, cones);
  if (keep.size() < 2) {
    keep.clear();
    return;
  }
  keep.pop_back();  // the closing duplicate of the start
  if (keep.size() > 3) {
    const Pt& prev = run[static_cast<std::size_t>(keep.back())];
    const Pt& next = run[static_cast<std::size_t>(keep[1])];
    bool straight = DistSqr(prev, next) > epsSqr;
    for (int k = keep.back() + 1; straight && k <= n; ++k) straight = LineDistSqr(prev, next, run[k]) <= epsSqr;
    for (int k = 1; straight && k < keep[1]; ++k) straight = LineDistSqr(prev, next, run[k]) <= epsSqr;
    if (straight) keep.erase(keep.begin());
  }
  for (int& k : keep) k = (k + start) % n;
}

bool InRange(double v) { return std::fabs(v) <= kKvGeRegionRange; }

// Rounds to the grid half away from zero, as llround does, without its library call: within
// the range the scaled value stays below 2^53, so the truncation and the remainder are exact.
CL::cInt ToGrid(double v) {
  const double s = v * kKvGeRegionScale;
  const CL::cInt t = static_cast<CL::cInt>(s);
  const double f = s - static_cast<double>(t);
  return t + (f >= 0.5) - (f <= -0.5);
}

// The ring on the grid; reversed, it runs as KvGePolygon2d::Invert leaves it (the first vertex
// first, the others backwards).
bool ToPath(const KvGePoint2dArray& ring, CL::Path& path, bool reversed = false) {
  const std::size_t n = static_cast<std::size_t>(ring.GetSize());
  path.resize(n);
  const KvGePoint2d* p = ring.GetData();
  for (std::size_t k = 0; k < n; ++k) {
    if (!InRange(p[k].x) || !InRange(p[k].y)) return false;
    path[reversed && k != 0 ? n - k : k] = CL::IntPoint(ToGrid(p[k].x), ToGrid(p[k].y));
  }
  return true;
}

bool ToPaths(const KvGePolygon2dArray& set, int first, CL::Paths& paths, bool reversed = false) {
  paths.clear();
  paths.resize(static_cast<std::size_t>(std::max(0, set.GetSize() - first)));
  for (int i = first; i < set.GetSize(); ++i)
    if (!ToPath(set.GetData()[i], paths[static_cast<std::size_t>(i - first)], reversed)) return false;
  return true;
}

void FromPath(const CL::Path& path, KvGePolygon2d& ring) {
  ring.SetSize(static_cast<int>(path.size()));
  KvGePoint2d* out = ring.GetData();
  if (static_cast<std::size_t>(ring.GetSize()) != path.size()) return;  // no memory
  for (std::size_t k = 0; k < path.size(); ++k)
    out[k].Set(static_cast<double>(path[k].X) / kKvGeRegionScale, static_cast<double>(path[k].Y) / kKvGeRegionScale, 0);
}

bool Less(const CL::IntPoint& a, const CL::IntPoint& b) { return a.X < b.X || (a.X == b.X && a.Y < b.Y); }

// Appends the ring, split into simple loops where it passes a vertex twice: the clipping
// library lets a ring touch itself at a vertex (two lobes, or a hole pinched onto its outer
// ring), and splitting there keeps every winding number while no ring touches itself. Loops
// that enclose go before the holes that a split may give.
// A ring of at most kFewVertices is searched for repeated vertices pair by pair, without sorting
// a copy.
constexpr std::size_t kFewVertices = 16;

void AppendSplit(CL::Path ring, CL::Paths& out, CL::Path& scratch) {
  bool repeats = false;
  if (ring.size() <= kFewVertices) {
    for (std::size_t i = 0; i < ring.size() && !repeats; ++i)
      for (std::size_t j = i + 1; j < ring.size() && !repeats; ++j) repeats = ring[i] == ring[j];
    if (!repeats) {
      out.push_back(std::move(ring));
      return;
    }
  }
  scratch = ring;
  std::sort(scratch.begin(), scratch.end(), Less);
  std::size_t dups = 0;
  for (std::size_t i = 1; i < scratch.size(); ++i)
    if (scratch[i] == scratch[i - 1] && (dups == 0 || !(scratch[dups - 1] == scratch[i]))) scratch[dups++] = scratch[i];
  if (dups == 0) {
    out.push_back(std::move(ring));
    return;
  }
  scratch.resize(dups);
  const std::size_t first = out.size();
  CL::Path stack;
  stack.reserve(ring.size());
  for (const CL::IntPoint& p : ring) {
    if (std::binary_search(scratch.begin(), scratch.end(), p, Less)) {
      for (std::size_t k = stack.size(); k-- > 0;)
        if (stack[k] == p) {
          out.emplace_back(stack.begin() + static_cast<std::ptrdiff_t>(k), stack.end());
          stack.resize(k);
          break;
        }
    }
    stack.push_back(p);
  }
  out.push_back(stack);
  std::stable_partition(out.begin() + static_cast<std::ptrdiff_t>(first), out.end(),
                        [](const CL::Path& loop) { return CL::Area(loop) >= 0; });
}

// Outer rings in the order of the tree, each followed by its holes, then the islands inside
// those holes; rings that touch themselves split.
void TreeToPaths(const CL::PolyTree& tree, CL::Paths& paths) {
  paths.clear();
  paths.reserve(static_cast<std::size_t>(tree.Total()));
  CL::Path scratch;
  std::vector<const CL::PolyNode*> outers;
  outers.reserve(static_cast<std::size_t>(tree.Total()));
  for (const CL::PolyNode* outer : tree.Childs) outers.push_back(outer);
  for (std::size_t i = 0; i < outers.size(); ++i) {
    const CL::PolyNode* outer = outers[i];
    AppendSplit(outer->Contour, paths, scratch);
    for (const CL::PolyNode* hole : outer->Childs) {
      AppendSplit(hole->Contour, paths, scratch);
      outers.insert(outers.end(), hole->Childs.begin(), hole->Childs.end());
    }
  }
}

// Collapses every edge no longer than eps into one vertex: where the neighbouring edges meet
// when that lies within 2 eps of both ends, else the middle of the edge. Dropping either end
// instead would swing a long neighbouring edge by up to eps and change the area by up to half
// its length times eps; the collapse moves the ring only inside the tiny corner. True when
// anything changed.
// Each pass walks the ring once, collapsing an edge and going on after it, and writes the ring
// as it then stands to out: the vertices passed, then those still ahead (an edge that closes
// the ring collapses into its last vertex, and the first goes). out is scratch.
bool CollapseShortEdges(std::vector<Pt>& ring, double eps, std::vector<Pt>& out) {
  bool any = false;
  const double epsSqr = eps * eps;
  for (bool changed = true; changed && ring.size() >= 3;) {
    changed = false;
    out.clear();
    out.reserve(ring.size());
    const std::size_t n = ring.size();
    std::size_t r = 0;
    while (r < n && out.size() + (n - r) >= 3) {
      const Pt cur = ring[r];
      const bool closing = r + 1 == n;  // the edge back to the first vertex
      const Pt nx = closing ? out[0] : ring[r + 1];
      if (DistSqr(cur, nx) > epsSqr) {
        out.push_back(cur);
        ++r;
        continue;
      }
      const Pt prev = out.empty() ? ring[n - 1] : out.back();
      const Pt next = closing ? out[1] : r + 2 < n ? ring[r + 2] : out[0];
      const Pt d1{cur.x - prev.x, cur.y - prev.y}, d2{next.x - nx.x, next.y - nx.y};
      const double den = d1.x * d2.y - d1.y * d2.x;
      Pt v{(cur.x + nx.x) / 2, (cur.y + nx.y) / 2};
      if (den != 0.0) {
        const double t = ((nx.x - prev.x) * d2.y - (nx.y - prev.y) * d2.x) / den;
        const Pt meet{prev.x + t * d1.x, prev.y + t * d1.y};
        if (DistSqr(meet, cur) <= 4 * epsSqr && DistSqr(meet, nx) <= 4 * epsSqr) v = meet;
      }
      out.push_back(Pt{std::nearbyint(v.x), std::nearbyint(v.y)});
      if (closing) {
        out.erase(out.begin());
        ++r;
      } else {
        r += 2;
      }
      changed = any = true;
    }
    out.insert(out.end(), ring.begin() + static_cast<std::ptrdiff_t>(r), ring.end());  // below 3, left as is
    ring.swap(out);
  }
  return any;
}

struct Seg {
  Pt a, b;
};

bool LessPt(const Pt& p, const Pt& q) { return p.x < q.x || (p.x == q.x && p.y < q.y); }
bool LessSeg(const Seg& s, const Seg& t) { return LessPt(s.a, t.a) || (!LessPt(t.a, s.a) && LessPt(s.b, t.b)); }

// Whether the clean-up leaves the ring as it is: no edge within kGridTol, and every vertex
// farther than kGridTol from the line through its neighbours, which stand farther apart than
// that. Then no run of vertices is removable either (each removal test first meets a single
// vertex off its neighbours' line), so CollapseShortEdges and CleanClosed would change nothing.
bool Settled(const CL::Path& path) {
  const std::size_t n = path.size();
  if (n < 3) return false;
  constexpr double tolSqr = kGridTol * kGridTol;
  for (std::size_t i = 0; i < n; ++i) {
    const CL::IntPoint& a = path[i == 0 ? n - 1 : i - 1];
    const CL::IntPoint& b = path[i];
    const CL::IntPoint& c = path[i + 1 == n ? 0 : i + 1];
    const Pt ab{static_cast<double>(b.X - a.X), static_cast<double>(b.Y - a.Y)};
    const Pt ac{static_cast<double>(c.X - a.X), static_cast<double>(c.Y - a.Y)};
    const double acSqr = ac.x * ac.x + ac.y * ac.y, cross = ab.x * ac.y - ab.y * ac.x;
    if (ab.x * ab.x + ab.y * ab.y <= tolSqr || acSqr <= tolSqr || cross * cross <= tolSqr * acSqr) return false;
  }
  return true;
}

// Twice the signed area of the ring, taken relative to o so that far coordinates keep their
// precision.
double Area2About(const CL::Path& path, const CL::IntPoint& o) {
  double a = 0.0;
  for (std::size_t k = 0, n = path.size(); k < n; ++k) {
    const CL::IntPoint& p = path[k];
    const CL::IntPoint& q = path[k + 1 == n ? 0 : k + 1];
    a += static_cast<double>(p.X - o.X) * static_cast<double>(q.Y - o.Y) -
         static_cast<double>(q.X - o.X) * static_cast<double>(p.Y - o.Y);
  }
  return a;
}

// Whether vertex k of the ring keeps the local rules: both its edges longer than kGridTol, its
// neighbours farther apart than that, and itself farther than that from their line.
bool LocallyClean(const CL::Path& path, std::size_t k) {
  const std::size_t n = path.size();
  const CL::IntPoint& a = path[(k + n - 1) % n];
  const CL::IntPoint& b = path[k % n];
  const CL::IntPoint& c = path[(k + 1) % n];
  const Pt ab{static_cast<double>(b.X - a.X), static_cast<double>(b.Y - a.Y)};
  const Pt ac{static_cast<double>(c.X - a.X), static_cast<double>(c.Y - a.Y)};
  const Pt bc{ac.x - ab.x, ac.y - ab.y};
  constexpr double tolSqr = kGridTol * kGridTol;
  const double acSqr = ac.x * ac.x + ac.y * ac.y, cross = ab.x * ac.y - ab.y * ac.x;
  return ab.x * ab.x + ab.y * ab.y > tolSqr && bc.x * bc.x + bc.y * bc.y > tolSqr && acSqr > tolSqr &&
         cross * cross > tolSqr * acSqr;
}

// The clean-up moves edges by up to 0.001 and so the area of a ring by up to half an edge's
// length times that; were that left, each result of a region operation would carry its own
// error, and the areas of union, intersection and difference would no longer add up (a vertex
// 0.0009 off a 28 units long chord in one result alone moves 0.0127). So the area is given
// back: the corners with the longest chords between their neighbours move across those chords,
// each by at most 0.001 (so that the ring stays within the tolerance of the exact boundary) and
// only where the move keeps the local rules at the corner and its neighbours. One corner
// usually suffices; a ring thinned a lot (a finely digitised arc) may keep a remainder.
constexpr double kMaxAreaMove = kGridTol;
constexpr int kAreaMoveCorners = 8;

void RestoreArea(CL::Path& path, double missing2) {
  const std::size_t n = path.size();
  if (n < 3) return;
  const auto chordSqr = [&](std::size_t k) {
    const CL::IntPoint& a = path[(k + n - 1) % n];
    const CL::IntPoint& c = path[(k + 1) % n];
    const double dx = static_cast<double>(c.X - a.X), dy = static_cast<double>(c.Y - a.Y);
    return dx * dx + dy * dy;
  };
  // The corners with the longest chords, longest first, in one pass.
  std::pair<double, std::size_t> best[kAreaMoveCorners];
  std::size_t found = 0;
  for (std::size_t k = 0; k < n; ++k) {
    const double c = chordSqr(k);
    if (found == kAreaMoveCorners && c <= best[found - 1].first) continue;
    std::size_t at = found < kAreaMoveCorners ? found++ : found - 1;
    for (; at > 0 && best[at - 1].first < c; --at) best[at] = best[at - 1];
    best[at] = {c, k};
  }
  for (std::size_t t = 0; t < found; ++t) {
    const std::size_t k = best[t].second;
    // Moving the corner by f (dy, -dx) changes twice the area by f |chord|^2.
    const CL::IntPoint& a = path[(k + n - 1) % n];
    const CL::IntPoint& c = path[(k + 1) % n];
    const double dx = static_cast<double>(c.X - a.X), dy = static_cast<double>(c.Y - a.Y);
    const double lenSqr = dx * dx + dy * dy;
    if (lenSqr == 0.0) return;
    const double cap = kMaxAreaMove / std::sqrt(lenSqr);
    const double f = std::max(-cap, std::min(cap, missing2 / lenSqr));
    const CL::IntPoint old = path[k];
    const CL::IntPoint moved(old.X + static_cast<CL::cInt>(std::nearbyint(f * dy)),
                             old.Y + static_cast<CL::cInt>(std::nearbyint(-f * dx)));
    if (moved == old) return;  // what is missing is below the grid
    path[k] = moved;
    if (!LocallyClean(path, k + n - 1) || !LocallyClean(path, k) || !LocallyClean(path, k + 1)) {
      path[k] = old;
      continue;
    }
    missing2 -= static_cast<double>(moved.X - old.X) * dy - static_cast<double>(moved.Y - old.Y) * dx;
  }
}

// Collapses short edges, removes near-collinear vertices and spikes (within 0.001) and drops
// rings below the smallest area; true when anything changed. The edges that a changed ring did
// not have before go to fresh.
bool CleanPaths(CL::Paths& paths, std::vector<Seg>& fresh) {
  bool changed = false;
  fresh.clear();
  std::vector<Pt> ring, run, scratch;
  std::vector<int> keep;
  std::vector<char> spike;
  std::vector<Cone> cones;
  std::vector<Seg> before;
  std::size_t out = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    CL::Path& path = paths[i];
    if (Settled(path)) {
      if (std::fabs(CL::Area(path)) < kGridMinArea) {
        changed = true;
        continue;
      }
      if (out != i) paths[out].swap(path);
      ++out;
      continue;
    }
    ring.resize(path.size());
    for (std::size_t k = 0; k < path.size(); ++k)
      ring[k] = Pt{static_cast<double>(path[k].X), static_cast<double>(path[k].Y)};
    const bool collapsed = CollapseShortEdges(ring, kGridTol, scratch);
    CleanClosed(ring, kGridTol, run, keep, spike, cones);
    if (collapsed || keep.size() != path.size()) {
      changed = true;
      before.clear();
      for (std::size_t k = 0; k < path.size(); ++k) {
        const CL::IntPoint& p = path[k];
        const CL::IntPoint& q = path[(k + 1) % path.size()];
        before.push_back(Seg{Pt{static_cast<double>(p.X), static_cast<double>(p.Y)},
                             Pt{static_cast<double>(q.X), static_cast<double>(q.Y)}});
      }
      std::sort(before.begin(), before.end(), LessSeg);
      const CL::IntPoint origin = path[0];
      const double area2 = Area2About(path, origin);
      path.resize(keep.size());
      for (std::size_t k = 0; k < keep.size(); ++k) {
        const Pt& p = ring[static_cast<std::size_t>(keep[k])];
        path[k] = CL::IntPoint(static_cast<CL::cInt>(p.x), static_cast<CL::cInt>(p.y));
      }
      if (path.size() >= 3) {
        RestoreArea(path, area2 - Area2About(path, origin));
        for (std::size_t k = 0; k < path.size(); ++k) {
          const CL::IntPoint& p = path[k];
          const CL::IntPoint& q = path[(k + 1) % path.size()];
          const Seg e{Pt{static_cast<double>(p.X), static_cast<double>(p.Y)},
                      Pt{static_cast<double>(q.X), static_cast<double>(q.Y)}};
          if (!std::binary_search(before.begin(), before.end(), e, LessSeg)) fresh.push_back(e);
        }
      }
    }
    if (path.size() < 3 || std::fabs(CL::Area(path)) < kGridMinArea) {
      changed = true;
      continue;
    }
    if (out != i) paths[out].swap(path);
    ++out;
  }
  paths.resize(out);
  return changed;
}

// Squared distance of p from the segment from a to b.
double SegDistSqr(const Pt& a, const Pt& b, const Pt& p) {
  const double dx = b.x - a.x, dy = b.y - a.y, len = dx * dx + dy * dy;
  double t = len > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / len : 0.0;
  t = std::min(1.0, std::max(0.0, t));
  const Pt q{a.x + t * dx - p.x, a.y + t * dy - p.y};
  return q.x * q.x + q.y * q.y;
}

// How two edges meet: 0 not at all (not closer than two grid units), 1 at an end point they
// share and nowhere else, 2 elsewhere (crossing, touching, or one running along the other):
// where a clean-up may have made rings cross or touch. Computed relative to one end point, so
// that far coordinates keep their precision.
int EdgesMeet(const Seg& f, const Seg& e) {
  const Pt a{0, 0}, b{f.b.x - f.a.x, f.b.y - f.a.y};
  const Pt c{e.a.x - f.a.x, e.a.y - f.a.y}, d{e.b.x - f.a.x, e.b.y - f.a.y};
  constexpr double kNearSqr = 4.0;
  const bool ac = c.x == a.x && c.y == a.y, ad = d.x == a.x && d.y == a.y;
  const bool bc = c.x == b.x && c.y == b.y, bd = d.x == b.x && d.y == b.y;
  if ((ac && bd) || (ad && bc)) return 0;  // the same edge
  if (ac || ad || bc || bd) {
    // Sharing an end point, they meet elsewhere only when one runs along the other.
    const Pt& fFar = (ac || ad) ? b : a;
    const Pt& eFar = (ac || bc) ? d : c;
    return SegDistSqr(c, d, fFar) <= kNearSqr || SegDistSqr(a, b, eFar) <= kNearSqr ? 2 : 1;
  }
  const double o1 = Cross(a, b, c), o2 = Cross(a, b, d), o3 = Cross(c, d, a), o4 = Cross(c, d, b);
  if (((o1 < 0 && o2 > 0) || (o1 > 0 && o2 < 0)) && ((o3 < 0 && o4 > 0) || (o3 > 0 && o4 < 0))) return 2;
  return SegDistSqr(a, b, c) <= kNearSqr || SegDistSqr(a, b, d) <= kNearSqr || SegDistSqr(c, d, a) <= kNearSqr ||
                 SegDistSqr(c, d, b) <= kNearSqr
             ? 2
             : 0;
}

// Beyond this many pairs of a new edge and an edge of the result, a new union settles the
// clean-up without looking.
constexpr double kMaxFreshPairs = 2e7;

// Whether an edge that the clean-up made may cross or touch another edge of the rings; false
// only when every new edge was checked against every edge near it.
bool FreshEdgesMeet(const CL::Paths& paths, const std::vector<Seg>& fresh) {
  if (fresh.empty()) return false;
  double edges = 0;
  for (const CL::Path& p : paths) edges += static_cast<double>(p.size());
  if (edges * static_cast<double>(fresh.size()) > kMaxFreshPairs) return true;
  for (const Seg& f : fresh) {
    // Its two neighbours in its own ring share an end point each; a third edge at an end point
    // makes a ring touch itself there, or another ring, which a new union settles.
    int shared = 0;
    const double x0 = std::min(f.a.x, f.b.x) - 2, x1 = std::max(f.a.x, f.b.x) + 2;
    const double y0 = std::min(f.a.y, f.b.y) - 2, y1 = std::max(f.a.y, f.b.y) + 2;
    for (const CL::Path& path : paths)
      for (std::size_t k = 0; k < path.size(); ++k) {
        const CL::IntPoint& p = path[k];
        const CL::IntPoint& q = path[(k + 1) % path.size()];
        const double px = static_cast<double>(p.X), py = static_cast<double>(p.Y);
        const double qx = static_cast<double>(q.X), qy = static_cast<double>(q.Y);
        if (std::max(px, qx) < x0 || std::min(px, qx) > x1 || std::max(py, qy) < y0 || std::min(py, qy) > y1) continue;
        const int meet = EdgesMeet(f, Seg{Pt{px, py}, Pt{qx, qy}});
        if (meet == 2 || (meet == 1 && ++shared > 2)) return true;
      }
  }
  return false;
}

// Whether the hole lies inside the outer ring (rings of a clipping result: they do not cross,
// but may touch at vertices): judged at the first vertex of the hole that is not on the ring.
bool HoleInside(const CL::Path& hole, const CL::Path& outer) {
  for (const CL::IntPoint& p : hole) {
    const int inside = CL::PointInPolygon(p, outer);
    if (inside >= 0) return inside == 1;
  }
  return true;  // every vertex on the ring, and the boxes nested: the hole is the ring's own
}

struct GridBox {
  CL::cInt x0, y0, x1, y1;
  bool Holds(const GridBox& b) const { return x0 <= b.x0 && y0 <= b.y0 && b.x1 <= x1 && b.y1 <= y1; }
};

GridBox BoxOf(const CL::Path& path) {
  GridBox b{path[0].X, path[0].Y, path[0].X, path[0].Y};
  for (const CL::IntPoint& p : path) {
    b.x0 = std::min(b.x0, p.X);
    b.y0 = std::min(b.y0, p.Y);
    b.x1 = std::max(b.x1, p.X);
    b.y1 = std::max(b.y1, p.Y);
  }
  return b;
}

// Beyond this many pairs of outer ring and hole the holes are placed by a second union in tree
// form, whose cost grows with the rings' size rather than with the pairs.
constexpr double kMaxHolePairs = 4e6;

// The rings of a clipping result in the normalised order: each outer ring followed by its
// holes; rings that touch themselves split. The clipping library is asked for a plain list: its
// tree form costs it a pass over all rings at every join of two (quadratic on a floor of many
// rooms sharing walls). A hole belongs to the smallest outer ring around it; when there are too
// many pairs to try, a second union into the tree form sorts them. The rings of list are moved
// out.
void Arrange(CL::Paths& list, CL::Paths& paths, std::vector<double>& area, std::vector<std::size_t>& outers,
             std::vector<std::size_t>& holes, std::vector<std::size_t>& owner) {
  area.resize(list.size());
  outers.clear();
  holes.clear();
  for (std::size_t i = 0; i < list.size(); ++i) {
    area[i] = list[i].empty() ? 0.0 : CL::Area(list[i]);
    (area[i] >= 0 ? outers : holes).push_back(i);
  }
  paths.clear();
  paths.reserve(list.size());
  CL::Path scratch;
  if (holes.empty()) {
    for (CL::Path& ring : list) AppendSplit(std::move(ring), paths, scratch);
    return;
  }
  owner.assign(list.size(), list.size());
  if (static_cast<double>(holes.size()) * static_cast<double>(outers.size()) <= kMaxHolePairs) {
    std::sort(outers.begin(), outers.end(), [&](std::size_t a, std::size_t b) { return area[a] < area[b]; });
    std::vector<GridBox> box(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
      if (!list[i].empty()) box[i] = BoxOf(list[i]);
    // Every hole of a clipping result lies in some outer ring, so the last outer ring whose box
    // holds the hole's box is its owner without a look at its edges.
    for (const std::size_t h : holes) {
      if (list[h].empty()) continue;
      std::size_t last = list.size();
      for (const std::size_t o : outers) {
        if (list[o].empty() || !box[o].Holds(box[h])) continue;
        if (last != list.size() && HoleInside(list[h], list[last])) break;
        last = o;
      }
      owner[h] = last;
    }
  }
  if (std::any_of(holes.begin(), holes.end(), [&](std::size_t h) { return owner[h] == list.size(); })) {
    CL::Clipper c;
    c.AddPaths(list, CL::ptSubject, true);
    CL::PolyTree tree;
    c.Execute(CL::ctUnion, tree, CL::pftPositive, CL::pftPositive);
    TreeToPaths(tree, paths);
    return;
  }
  // Each outer ring in the order of the list, its holes after it in the same order.
  std::stable_sort(holes.begin(), holes.end(), [&](std::size_t a, std::size_t b) { return owner[a] < owner[b]; });
  std::size_t next = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (area[i] < 0) continue;
    AppendSplit(std::move(list[i]), paths, scratch);
    for (; next < holes.size() && owner[holes[next]] == i; ++next)
      AppendSplit(std::move(list[holes[next]]), paths, scratch);
  }
}

// The sign of the turn from a to b to c, exact on the whole grid.
int Turn(const CL::IntPoint& a, const CL::IntPoint& b, const CL::IntPoint& c) {
  const __int128 t = static_cast<__int128>(b.X - a.X) * (c.Y - a.Y) - static_cast<__int128>(b.Y - a.Y) * (c.X - a.X);
  return t > 0 ? 1 : t < 0 ? -1 : 0;
}

// Whether v lies inside the edge from p to q (not at an end).
bool InsideEdge(const CL::IntPoint& p, const CL::IntPoint& q, const CL::IntPoint& v) {
  if (v == p || v == q) return false;
  if (v.X < std::min(p.X, q.X) || v.X > std::max(p.X, q.X) || v.Y < std::min(p.Y, q.Y) || v.Y > std::max(p.Y, q.Y))
    return false;
  return Turn(p, q, v) == 0;
}

// Marks the rings of at most small vertices whose box meets no other ring's box (boxes that
// touch meet). The boxes are swept in the order of their left sides; when the pairs to compare
// grow beyond a few per ring (a column of rings sharing one x range), no ring is marked.
constexpr std::size_t kAloneVertices = 32;
constexpr std::size_t kAlonePairsPerRing = 16;

void MarkAlone(const CL::Paths& paths, std::size_t small, std::vector<char>& alone) {
  std::vector<GridBox> box(paths.size());
  std::vector<std::size_t> order;
  order.reserve(paths.size());
  for (std::size_t r = 0; r < paths.size(); ++r)
    if (!paths[r].empty()) {
      box[r] = BoxOf(paths[r]);
      order.push_back(r);
    }
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return box[a].x0 < box[b].x0; });
  std::vector<char> meets(paths.size(), 0);
  std::vector<std::size_t> active;
  std::size_t budget = kAlonePairsPerRing * paths.size();
  for (const std::size_t r : order) {
    const GridBox& b = box[r];
    std::size_t kept = 0;
    for (const std::size_t a : active) {
      if (box[a].x1 < b.x0) continue;  // left behind for good
      active[kept++] = a;
      if (budget-- == 0) return;
      if (box[a].y0 <= b.y1 && b.y0 <= box[a].y1) meets[a] = meets[r] = 1;
    }
    active.resize(kept);
    active.push_back(r);
  }
  for (std::size_t r = 0; r < paths.size(); ++r) alone[r] = !meets[r] && paths[r].size() <= small;
}

// Where the clipping library lets rings meet along an edge: a vertex inside an edge of its own
// ring (the ring touches itself there; it is split at that vertex, as at a vertex it passes
// twice), and a vertex inside an edge of another ring with one of its edges running along it,
// or an edge found twice (the rings are merged by a new union). Returns 2 when a new union
// is needed, 1 when rings were split, else 0. The edges are sorted into a grid of about as many
// cells as edges; an edge whose box spans more than kLongEdgeCells cells is tried against every
// vertex instead.
constexpr std::size_t kLongEdgeCells = 64;

int ResolveTouches(CL::Paths& paths) {
  struct Insert {
    std::size_t ring, index;
    CL::IntPoint p;
  };
  std::vector<Insert> inserts;
  // Vertex at, between prev and next, against the edge from p to q (not one of its own): 2 when
  // a new union is needed (at inside another ring's edge with an edge of its own running along
  // it, or one of its edges found in another place), 1 when at lies inside an edge of its own
  // ring, else 0.
  const auto meet = [](const CL::IntPoint& p, const CL::IntPoint& q, const CL::IntPoint& at, const CL::IntPoint& prev,
                       const CL::IntPoint& next, bool sameRing) {
    if (at == p || at == q) {
      const CL::IntPoint& other = at == p ? q : p;
      return other == next || other == prev ? 2 : 0;
    }
    if (!InsideEdge(p, q, at)) return 0;
    if (sameRing) return 1;
    return Turn(p, q, next) == 0 || Turn(p, q, prev) == 0 ? 2 : 0;
  };
  // A small ring whose box meets no other ring's box can only touch itself: its vertices are
  // tried against its own edges here; the others go into one flat list for the grid.
  std::vector<char> alone(paths.size(), 0);
  MarkAlone(paths, kAloneVertices, alone);
  std::size_t count = 0;
  for (std::size_t r = 0; r < paths.size(); ++r) {
    const CL::Path& path = paths[r];
    const std::size_t n = path.size();
    if (!alone[r]) {
      count += n;
      continue;
    }
    for (std::size_t v = 0; v < n; ++v)
      for (std::size_t e = 0; e < n; ++e) {
        if (e == v || (e + 1) % n == v) continue;  // v's own edges
        const int m = meet(path[e], path[(e + 1) % n], path[v], path[(v + n - 1) % n], path[(v + 1) % n], true);
        if (m == 2) return 2;
        if (m == 1) inserts.push_back(Insert{r, e, path[v]});
      }
  }
  // The other vertices in one flat list; vertex i starts the edge to next[i].
  std::vector<CL::IntPoint> pts;
  std::vector<std::size_t> ringOf, next, prev, firstOf(paths.size());
  pts.reserve(count);
  ringOf.reserve(count);
  next.reserve(count);
  prev.reserve(count);
  for (std::size_t r = 0; r < paths.size(); ++r) {
    if (alone[r]) continue;
    const std::size_t first = pts.size(), n = paths[r].size();
    firstOf[r] = first;
    for (std::size_t k = 0; k < n; ++k) {
      pts.push_back(paths[r][k]);
      ringOf.push_back(r);
      next.push_back(k + 1 == n ? first : first + k + 1);
      prev.push_back(k == 0 ? first + n - 1 : first + k - 1);
    }
  }
  if (count != 0) {
    CL::cInt minX = pts[0].X, maxX = pts[0].X, minY = pts[0].Y, maxY = pts[0].Y;
    for (const CL::IntPoint& p : pts) {
      minX = std::min(minX, p.X);
      maxX = std::max(maxX, p.X);
      minY = std::min(minY, p.Y);
      maxY = std::max(maxY, p.Y);
    }
    // The cell of every vertex: the edge from vertex i spans the cells between those of its ends.
    const std::size_t side = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count))));
    const double x0 = static_cast<double>(minX), y0 = static_cast<double>(minY);
    const double perX = 1.0 / ((static_cast<double>(maxX) - x0) / static_cast<double>(side) + 1.0);
    const double perY = 1.0 / ((static_cast<double>(maxY) - y0) / static_cast<double>(side) + 1.0);
    std::vector<std::size_t> cellX(count), cellY(count);
    for (std::size_t i = 0; i < count; ++i) {
      cellX[i] = std::min(side - 1, static_cast<std::size_t>((static_cast<double>(pts[i].X) - x0) * perX));
      cellY[i] = std::min(side - 1, static_cast<std::size_t>((static_cast<double>(pts[i].Y) - y0) * perY));
    }
    std::vector<std::size_t> start(side * side + 1, 0), fill, cells, longEdges;
    for (int pass = 0; pass < 2; ++pass) {
      for (std::size_t i = 0; i < count; ++i) {
        const std::size_t j = next[i];
        const std::size_t cx0 = std::min(cellX[i], cellX[j]), cx1 = std::max(cellX[i], cellX[j]);
        const std::size_t cy0 = std::min(cellY[i], cellY[j]), cy1 = std::max(cellY[i], cellY[j]);
        if ((cx1 - cx0 + 1) * (cy1 - cy0 + 1) > kLongEdgeCells) {
          if (pass == 0) longEdges.push_back(i);
          continue;
        }
        for (std::size_t cy = cy0; cy <= cy1; ++cy)
          for (std::size_t cx = cx0; cx <= cx1; ++cx) {
            const std::size_t c = cy * side + cx;
            if (pass == 0)
              ++start[c + 1];
            else
              cells[fill[c]++] = i;
          }
      }
      if (pass == 0) {
        for (std::size_t c = 0; c < side * side; ++c) start[c + 1] += start[c];
        cells.resize(start[side * side]);
        fill.assign(start.begin(), start.end() - 1);
      }
    }
    const auto check = [&](std::size_t e, std::size_t v) {
      if (e == v || e == prev[v]) return 0;  // v's own edges
      const int m = meet(pts[e], pts[next[e]], pts[v], pts[prev[v]], pts[next[v]], ringOf[e] == ringOf[v]);
      if (m == 1) inserts.push_back(Insert{ringOf[e], e - firstOf[ringOf[e]], pts[v]});
      return m;
    };
    for (std::size_t v = 0; v < count; ++v) {
      const std::size_t c = cellY[v] * side + cellX[v];
      for (std::size_t k = start[c]; k < start[c + 1]; ++k)
        if (check(cells[k], v) == 2) return 2;
      for (const std::size_t e : longEdges)
        if (check(e, v) == 2) return 2;
    }
  }
  if (inserts.empty()) return 0;

  // Each ring with vertices of its own inside its edges gets them as vertices, in order along
  // the edge, and is split there.
  std::sort(inserts.begin(), inserts.end(), [&](const Insert& a, const Insert& b) {
    if (a.ring != b.ring) return a.ring < b.ring;
    if (a.index != b.index) return a.index < b.index;
    const CL::IntPoint& p = paths[a.ring][a.index];
    const double da = std::fabs(static_cast<double>(a.p.X - p.X)) + std::fabs(static_cast<double>(a.p.Y - p.Y));
    const double db = std::fabs(static_cast<double>(b.p.X - p.X)) + std::fabs(static_cast<double>(b.p.Y - p.Y));
    return da < db;
  });
  CL::Paths out;
  out.reserve(paths.size() + inserts.size());
  CL::Path ring, scratch;
  std::size_t done = 0;
  for (std::size_t r = 0; r < paths.size(); ++r) {
    if (done == inserts.size() || inserts[done].ring != r) {
      out.push_back(std::move(paths[r]));
      continue;
    }
    ring.clear();
    for (std::size_t k = 0; k < paths[r].size(); ++k) {
      ring.push_back(paths[r][k]);
      for (; done < inserts.size() && inserts[done].ring == r && inserts[done].index == k; ++done)
        ring.push_back(inserts[done].p);
    }
    AppendSplit(std::move(ring), out, scratch);
  }
  paths.swap(out);
  return 1;
}

// Takes a clipping result to the normalised ring list: clean-up, rings split where they touch
// themselves along an edge, and while the clean-up made an edge that may cross or touch another,
// or two rings run along one another, a new union of the cleaned rings and a new clean-up, so
// the local rules hold on every result. Rings that a last clean-up made touch are valid as they
// stand. list is scratch.
void Tidy(CL::Paths& list, CL::Paths& paths) {
  std::vector<double> area;
  std::vector<std::size_t> outers, holes, owner;
  Arrange(list, paths, area, outers, holes, owner);
  std::vector<Seg> fresh;
  for (int round = 0;; ++round) {
    const bool changed = CleanPaths(paths, fresh);
    const bool meet = changed && FreshEdgesMeet(paths, fresh);
    const int touch = meet ? 2 : ResolveTouches(paths);
    if (touch == 1) CleanPaths(paths, fresh);
    if (touch != 2 || round == kTidyRounds) return;
    CL::Clipper c;
    c.AddPaths(paths, CL::ptSubject, true);
    c.Execute(CL::ctUnion, list, CL::pftPositive, CL::pftPositive);
    Arrange(list, paths, area, outers, holes, owner);
  }
}

void ToSet(const CL::Paths& paths, KvGePolygon2dArray& set) {
  set.SetSize(static_cast<int>(paths.size()));
  if (static_cast<std::size_t>(set.GetSize()) != paths.size()) return;  // no memory
  for (std::size_t i = 0; i < paths.size(); ++i) FromPath(paths[i], set.GetData()[i]);
}

// One clipping operation into normalised rings; false when the library refuses or throws.
bool Clip(const CL::Paths& subject, const CL::Paths* clip, CL::ClipType type, CL::PolyFillType clipFill,
          CL::Paths& result) {
  try {
    CL::Clipper c;
    c.AddPaths(subject, CL::ptSubject, true);
    if (clip) c.AddPaths(*clip, CL::ptClip, true);
    CL::Paths list;
    if (!c.Execute(type, list, CL::pftPositive, clipFill)) return false;
    Tidy(list, result);
    return true;
  } catch (...) {
    return false;
  }
}

// The frame ring that Negate puts first: the bounds of the coordinate range, counter-clockwise.
const double kFrame[4][2] = {{-kKvGeRegionRange, -kKvGeRegionRange},
                             {kKvGeRegionRange, -kKvGeRegionRange},
                             {kKvGeRegionRange, kKvGeRegionRange},
                             {-kKvGeRegionRange, kKvGeRegionRange}};

bool StartsWithFrame(const KvGePolygon2dArray& set) {
  if (set.GetSize() == 0 || set.GetData()[0].GetSize() != 4) return false;
  const KvGePolygon2d& ring = set.GetData()[0];
  for (int i = 0; i < 4; ++i)
    if (ring.GetData()[i].x != kFrame[i][0] || ring.GetData()[i].y != kFrame[i][1]) return false;
  return true;
}

// Whether v, on the line through p and q, lies on the segment between them (ends included).
bool OnSegment(const CL::IntPoint& p, const CL::IntPoint& q, const CL::IntPoint& v) {
  return std::min(p.X, q.X) <= v.X && v.X <= std::max(p.X, q.X) && std::min(p.Y, q.Y) <= v.Y &&
         v.Y <= std::max(p.Y, q.Y);
}

// Whether the segments from a to b and from c to d have a point in common, exactly.
bool SegmentsMeet(const CL::IntPoint& a, const CL::IntPoint& b, const CL::IntPoint& c, const CL::IntPoint& d) {
  const int d1 = Turn(a, b, c), d2 = Turn(a, b, d), d3 = Turn(c, d, a), d4 = Turn(c, d, b);
  if (d1 * d2 < 0 && d3 * d4 < 0) return true;
  return (d1 == 0 && OnSegment(a, b, c)) || (d2 == 0 && OnSegment(a, b, d)) || (d3 == 0 && OnSegment(c, d, a)) ||
         (d4 == 0 && OnSegment(c, d, b));
}

// Whether the ring is simple: no vertex passed twice and no two edges meet but neighbours at
// their common vertex, whose edges must not run along each other (as Settled ensures). A sweep
// from left to right keeps the edges across the sweep line in their order along it; the first
// place where two edges meet lies between two that were neighbours in that order before it, so
// only neighbours are tried (Shamos and Hoey), in O(n log n). Where the order itself is in
// doubt (an end point on another edge's line) the answer is no, which only costs the caller a
// union.
bool SimpleRing(const CL::Path& path) {
  const std::size_t n = path.size();
  if (n < 3) return false;
  struct Edge {
    CL::IntPoint l, r;  // the ends, l before r from left to right (then upwards)
  };
  struct Event {
    CL::IntPoint p;
    std::size_t edge;
    bool start;
  };
  std::vector<Edge> edges(n);
  std::vector<Event> events;
  events.reserve(2 * n);
  for (std::size_t k = 0; k < n; ++k) {
    CL::IntPoint a = path[k], b = path[k + 1 == n ? 0 : k + 1];
    if (a == b) return false;
    if (Less(b, a)) std::swap(a, b);
    edges[k] = Edge{a, b};
    events.push_back(Event{a, k, true});
    events.push_back(Event{b, k, false});
  }
  // At one point, edges leave the sweep before others enter it.
  std::sort(events.begin(), events.end(),
            [](const Event& e, const Event& f) { return Less(e.p, f.p) || (e.p == f.p && !e.start && f.start); });
  for (std::size_t i = 2; i < events.size(); ++i)
    if (events[i].p == events[i - 2].p) return false;  // a vertex passed twice

  bool doubt = false;
  // Whether edge a lies below edge b where both cross the sweep line: the end that enters
  // later is placed against the other edge's line.
  const auto below = [&](std::size_t a, std::size_t b) {
    if (a == b) return false;
    const Edge& s = edges[a];
    const Edge& t = edges[b];
    const bool sLater = !Less(s.l, t.l);
    const Edge& early = sLater ? t : s;
    const Edge& late = sLater ? s : t;
    int turn = Turn(early.l, early.r, late.l);
    if (turn == 0 && early.l == late.l) turn = Turn(early.l, early.r, late.r);
    if (turn == 0) {
      doubt = true;
      return a < b;
    }
    return sLater ? turn < 0 : turn > 0;
  };
  const auto neighbours = [&](std::size_t a, std::size_t b) { return (a + 1) % n == b || (b + 1) % n == a; };
  const auto meet = [&](std::size_t a, std::size_t b) {
    return !neighbours(a, b) && SegmentsMeet(edges[a].l, edges[a].r, edges[b].l, edges[b].r);
  };
  std::set<std::size_t, decltype(below)> sweep(below);
  std::vector<std::set<std::size_t, decltype(below)>::iterator> at(n);
  for (const Event& e : events) {
    if (e.start) {
      const auto it = sweep.insert(e.edge).first;
      if (doubt) return false;
      at[e.edge] = it;
      if (it != sweep.begin() && meet(*std::prev(it), e.edge)) return false;
      if (std::next(it) != sweep.end() && meet(e.edge, *std::next(it))) return false;
    } else {
      const auto it = at[e.edge];
      if (it != sweep.begin() && std::next(it) != sweep.end() && meet(*std::prev(it), *std::next(it))) return false;
      sweep.erase(it);
    }
  }
  return true;
}

// Below this many vertices the union costs less than the test for simplicity saves.
constexpr std::size_t kSimpleRingTest = 16;

// The region of rings on the grid as normalised rings, for the offsets; raw is scratch. A single simple ring,
// counter-clockwise, that the clean-up leaves as it is is its own region: the union would give
// it back unchanged (up to where it starts), so it is not asked for.
bool RegionPaths(CL::Paths& raw, CL::Paths& region) {
  if (raw.size() == 1 && raw[0].size() >= kSimpleRingTest && Settled(raw[0]) &&
      Area2About(raw[0], raw[0][0]) >= 2 * kGridMinArea && SimpleRing(raw[0])) {
    region.swap(raw);
    return true;
  }
  return Clip(raw, nullptr, CL::ctUnion, CL::pftPositive, region);
}

bool ValidOffsetArgs(double distance, KvGeJoin2d join, int round, double miterLimit, double eps) {
  if (!std::isfinite(distance) || std::fabs(distance) > kKvGeRegionRange) return false;
  if (!(eps > 0.0) || !std::isfinite(eps) || !std::isfinite(miterLimit)) return false;
  if (join != kKvGeJoinMiter && join != kKvGeJoinRound && join != kKvGeJoinSquare) return false;
  if (round && distance != 0.0) {
    // The chord count per full turn that the clipping library will choose.
    const double r = std::fabs(distance);
    const double y = std::min(eps * kArcShare, 0.25 * r);
    const double steps = kPi / std::acos(1.0 - y / r);
    if (!(steps <= kMaxChordsPerTurn)) return false;
  }
  return true;
}

bool Offset(const CL::Paths& paths, double distance, CL::JoinType jt, CL::EndType et, double miterLimit, double eps,
            CL::Paths& result) {
  try {
    CL::ClipperOffset co(miterLimit, eps * kArcShare * kKvGeRegionScale);
    co.AddPaths(paths, jt, et);
    CL::Paths list;
    co.Execute(list, distance * kKvGeRegionScale);
    Tidy(list, result);
    return true;
  } catch (...) {
    return false;
  }
}

CL::JoinType ToJoin(KvGeJoin2d join) {
  return join == kKvGeJoinRound ? CL::jtRound : join == kKvGeJoinSquare ? CL::jtSquare : CL::jtMiter;
}

// The ring without loops, in the counting sense of its own orientation; the result rings run
// as the ring did.
bool RingWithoutLoops(const KvGePolygon2d& ring, CL::Paths& result) {
  if (ring.GetSize() < 3) return false;
  const double area = ring.Area();
  if (!(std::fabs(area) > 1e-6)) return false;
  CL::Paths raw(1);
  if (!ToPath(ring, raw[0])) return false;
  if (area < 0) CL::ReversePath(raw[0]);
  if (!Clip(raw, nullptr, CL::ctUnion, CL::pftPositive, result)) return false;
  if (area < 0) CL::ReversePaths(result);
  return true;
}

bool Finite(const KvGePoint2dArray& points) {
  for (const KvGePoint2d& p : points)
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
  return true;
}

// Nothing of the clipping library, and no failed allocation, leaves the library: such a
// failure is the result 0.
template <class F>
int Guarded(F&& f) {
  try {
    return f();
  } catch (...) {
    return 0;
  }
}

}  // namespace

// ---- polygon set -------------------------------------------------------------------------

namespace {

// The region operation of set with the rings of other from index first on, those read reversed
// when asked; the set takes the normalised result, or stays unchanged on failure.
int Combine(KvGePolygon2dArray& set, const KvGePolygon2dArray& other, int first, bool reversed, CL::ClipType type,
            CL::PolyFillType clipFill) {
  return Guarded([&] {
    CL::Paths a, b, result;
    if (!ToPaths(set, 0, a) || !ToPaths(other, first, b, reversed)) return 0;
    if (!Clip(a, &b, type, clipFill, result)) return 0;
    ToSet(result, set);
    return 1;
  });
}

}  // namespace

int KvGePolygon2dArray::VereinigeOderDurchschnitt(const KvGePolygon2dArray& other, int mode) {
  if (mode == 1) return Combine(*this, other, 0, false, CL::ctUnion, CL::pftPositive);
  if (mode != 2) return 0;
  // A complement made by Negate is read without its frame: intersecting with it is the
  // difference from the reversed rings, which keeps the frame's huge coordinates out of the
  // integer arithmetic.
  if (StartsWithFrame(other)) return Combine(*this, other, 1, false, CL::ctDifference, CL::pftNegative);
  return Combine(*this, other, 0, false, CL::ctIntersection, CL::pftPositive);
}

KvGePolygon2dArray& KvGePolygon2dArray::Negate() {
  if (GetSize() == 0) return *this;
  KvGePolygon2d frame;
  frame.SetSize(4);
  for (int i = 0; i < frame.GetSize(); ++i) frame.GetData()[i].Set(kFrame[i][0], kFrame[i][1], 0);
  for (KvGePolygon2d& ring : *this) ring.Invert();
  InsertAt(0, frame);
  return *this;
}

KvGePolygon2dArray& KvGePolygon2dArray::operator|=(const KvGePolygon2dArray& other) {
  if (other.GetSize() == 0) return *this;
  if (GetSize() == 0) return *this = other;
  VereinigeOderDurchschnitt(other, 1);
  return *this;
}

KvGePolygon2dArray& KvGePolygon2dArray::operator&=(const KvGePolygon2dArray& other) {
  if (other.GetSize() == 0) {
    SetSize(0);
    return *this;
  }
  if (GetSize() == 0) return *this;
  VereinigeOderDurchschnitt(other, 2);
  return *this;
}

// The intersection with the complement -other, without making it: the complement has no rings
// exactly when other has none (which empties this set, deliberately), and otherwise
// VereinigeOderDurchschnitt reads it as its frame and then the rings of other as Negate
// reverses them; those are read here from other directly, in the same order, so the clipping
// library gets the same input and the result is the same ring for ring.
KvGePolygon2dArray& KvGePolygon2dArray::operator-=(const KvGePolygon2dArray& other) {
  if (other.GetSize() == 0) {
    SetSize(0);
    return *this;
  }
  if (GetSize() != 0) Combine(*this, other, 0, true, CL::ctDifference, CL::pftNegative);
  return *this;
}

int KvGePolygon2dArray::Normalize() {
  return Guarded([&] {
    CL::Paths raw, result;
    if (!ToPaths(*this, 0, raw) || !Clip(raw, nullptr, CL::ctUnion, CL::pftPositive, result)) return 0;
    ToSet(result, *this);
    return 1;
  });
}

KvGePoint2d KvGePolygon2dArray::Schwerpunkt() const {
  try {
    KvGePolygon2dArray region(*this);
    region.Normalize();
    // Fan triangles from one vertex of the set, so that far coordinates do not cancel.
    const KvGePoint2d* origin = nullptr;
    for (const KvGePolygon2d& ring : region)
      if (ring.GetSize() > 0) {
        origin = ring.GetData();
        break;
      }
    if (!origin) return KvGePoint2d(0, 0, 0);
    const double ox = origin->x, oy = origin->y;
    double area2 = 0.0, sx = 0.0, sy = 0.0;
    for (const KvGePolygon2d& ring : region) {
      const int n = ring.GetSize();
      const KvGePoint2d* p = ring.GetData();
      for (int i = 0; i < n; ++i) {
        const double ax = p[i].x - ox, ay = p[i].y - oy;
        const double bx = p[(i + 1) % n].x - ox, by = p[(i + 1) % n].y - oy;
        const double c = ax * by - ay * bx;
        area2 += c;
        sx += c * (ax + bx);
        sy += c * (ay + by);
      }
    }
    if (std::fabs(area2) <= 2e-15) return KvGePoint2d(0, 0, 0);
    return KvGePoint2d(ox + sx / (3.0 * area2), oy + sy / (3.0 * area2), 0);
  } catch (...) {
    return KvGePoint2d(0, 0, 0);  // no memory for the normalised copy
  }
}

KvGeBox2d KvGePolygon2dArray::BoundingBox() const {
  KvGeBox2d box;
  for (const KvGePolygon2d& ring : *this)
    if (ring.GetSize() > 0) box |= ring.BoundingBox();
  return box;
}

KvGeBox2d KvGePolygon2dArray::BoundingBox(const KvGeModMat2d& m) const {
  KvGeBox2d box;
  for (const KvGePolygon2d& ring : *this)
    if (ring.GetSize() > 0) box |= ring.BoundingBox(m);
  return box;
}

// ---- offsets -----------------------------------------------------------------------------

namespace {

// The offset of the region of the rings raw into result, which keeps its further value.
int OffsetRegion(CL::Paths& raw, double distance, KvGePolygon2dArray& result, KvGeJoin2d join, double miterLimit,
                 double eps) {
  CL::Paths region, grown;
  if (!RegionPaths(raw, region)) return 0;
  if (!Offset(region, distance, ToJoin(join), CL::etClosedPolygon, miterLimit, eps, grown)) return 0;
  const std::int32_t tag = result.Tag();
  ToSet(grown, result);
  result.Tag() = tag;
  return 1;
}

}  // namespace

int ParallelPolygon2d(const KvGePolygon2dArray& set, double distance, KvGePolygon2dArray& result, KvGeJoin2d join,
                      double miterLimit, double eps) {
  return Guarded([&] {
    if (!ValidOffsetArgs(distance, join, join == kKvGeJoinRound, miterLimit, eps)) return 0;
    CL::Paths raw;
    if (!ToPaths(set, 0, raw)) return 0;
    const std::int32_t tag = set.Tag();  // set may be result itself
    if (!OffsetRegion(raw, distance, result, join, miterLimit, eps)) return 0;
    result.Tag() = tag;
    return 1;
  });
}

int ParallelPolygon2d(const KvGePolygon2d& polygon, double distance, KvGePolygon2dArray& result, KvGeJoin2d join,
                      double miterLimit, double eps) {
  return Guarded([&] {
    if (!ValidOffsetArgs(distance, join, join == kKvGeJoinRound, miterLimit, eps)) return 0;
    // A clockwise polygon is read counter-clockwise, as KvGePolygon2d::Invert would turn it.
    CL::Paths raw(1);
    if (!ToPath(polygon, raw[0], polygon.Area() < 0)) return 0;
    return OffsetRegion(raw, distance, result, join, miterLimit, eps);
  });
}

int ParallelPolygon2d(const KvGePolyline2d& axis, double halfWidth, KvGePolygon2dArray& result, KvGeEnd2d ends,
                      KvGeJoin2d join, double miterLimit, double eps) {
  return Guarded([&] {
    if (ends != kKvGeEndButt && ends != kKvGeEndSquare && ends != kKvGeEndRound) return 0;
    if (!(halfWidth > 0.0)) return 0;
    if (!ValidOffsetArgs(halfWidth, join, join == kKvGeJoinRound || ends == kKvGeEndRound, miterLimit, eps)) return 0;
    CL::Paths paths(1), band;
    if (axis.GetSize() == 0 || !ToPath(axis, paths[0])) return 0;
    const CL::EndType et = ends == kKvGeEndRound    ? CL::etOpenRound
                           : ends == kKvGeEndSquare ? CL::etOpenSquare
                                                    : CL::etOpenButt;
    CL::JoinType jt = ToJoin(join);
    // A polyline that is one point on the grid: the clipping library shapes it by the join, so
    // the ends are passed as the join; butt ends leave nothing.
    const CL::Path& path = paths[0];
    if (std::all_of(path.begin(), path.end(), [&](const CL::IntPoint& p) { return p == path[0]; })) {
      if (ends == kKvGeEndButt) {
        result.SetSize(0);
        return 1;
      }
      jt = ends == kKvGeEndRound ? CL::jtRound : CL::jtSquare;
    }
    if (!Offset(paths, halfWidth, jt, et, miterLimit, eps, band)) return 0;
    ToSet(band, result);
    return 1;
  });
}

// ---- loops -------------------------------------------------------------------------------

int RemoveSchlaufen2d(const KvGePolygon2d& ring, KvGePolygon2dArray& result) {
  return Guarded([&] {
    CL::Paths paths;
    if (!RingWithoutLoops(ring, paths)) return 0;
    ToSet(paths, result);
    return 1;
  });
}

int RemoveSchlaufen2d(KvGePolygon2d& ring) {
  return Guarded([&] {
    CL::Paths paths;
    if (!RingWithoutLoops(ring, paths) || paths.size() != 1) return 0;
    FromPath(paths[0], ring);
    return 1;
  });
}

int RemoveSchlaufen2d(KvGePolygon2dArray& set) {
  return Guarded([&] {
    CL::Paths all, one;
    for (const KvGePolygon2d& ring : set) {
      if (ring.GetSize() < 3 || !(std::fabs(ring.Area()) > 1e-6)) continue;  // no orientation: nothing to keep
      if (!RingWithoutLoops(ring, one)) return 0;
      all.insert(all.end(), one.begin(), one.end());
    }
    ToSet(all, set);
    return 1;
  });
}

int RemoveSchlaufen2d(KvGePolyline2d& polyline) {
  return Guarded([&] {
    const int n = polyline.GetSize();
    if (n < 2 || !Finite(polyline)) return 0;
    const KvGePoint2d* in = polyline.GetData();
    std::vector<Pt> path;
    path.reserve(static_cast<std::size_t>(n));
    path.push_back(Pt{in[0].x, in[0].y});
    for (int i = 1; i < n; ++i) {
      const Pt d{in[i].x, in[i].y};
      // The new segment from the path's end to d against every earlier, non-adjacent segment;
      // the earliest one it crosses closes the largest loop, and the path is cut back to there.
      const Pt c = path.back();
      const std::size_t m = path.size();
      for (std::size_t j = 0; j + 2 < m; ++j) {
        const Pt& a = path[j];
        const Pt& b = path[j + 1];
        const double oc = Cross(a, b, c), od = Cross(a, b, d);
        if (!((oc < 0 && od > 0) || (oc > 0 && od < 0))) continue;
        const double oa = Cross(c, d, a), ob = Cross(c, d, b);
        // A crossing at a, the start of segment j, counts here; one at b counts for j + 1.
        if (!(oa == 0 || (oa < 0 && ob > 0) || (oa > 0 && ob < 0))) continue;
        const double t = oc / (oc - od);
        const Pt x{c.x + t * (d.x - c.x), c.y + t * (d.y - c.y)};
        path.resize(j + 1);
        if (oa != 0) path.push_back(x);
        break;
      }
      path.push_back(d);
    }
    if (path.size() == static_cast<std::size_t>(n)) return 1;
    polyline.SetSize(static_cast<int>(path.size()));
    if (static_cast<std::size_t>(polyline.GetSize()) != path.size()) return 0;
    for (std::size_t k = 0; k < path.size(); ++k) polyline.GetData()[k].Set(path[k].x, path[k].y, 0);
    return 1;
  });
}

// ---- correction --------------------------------------------------------------------------

int StreckenzugKorrigieren2d(KvGePolyline2d& polyline, double eps) {
  return Guarded([&] {
    const int n = polyline.GetSize();
    if (n < 2 || !(eps > 0.0) || !std::isfinite(eps) || !Finite(polyline)) return 0;
    std::vector<Pt> pts(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) pts[static_cast<std::size_t>(i)] = Pt{polyline.GetData()[i].x, polyline.GetData()[i].y};
    std::vector<int> keep;
    std::vector<char> spike;
    std::vector<Cone> cones;
    CleanOpen(pts, eps, keep, spike, cones);
    if (keep.size() < 2) return 0;
    if (keep.size() == pts.size()) return 1;
    KvGePolyline2d cleaned;
    cleaned.SetSize(static_cast<int>(keep.size()));
    if (static_cast<std::size_t>(cleaned.GetSize()) != keep.size()) return 0;
    for (std::size_t k = 0; k < keep.size(); ++k) cleaned.GetData()[k] = polyline.GetData()[keep[k]];
    polyline = cleaned;
    return 1;
  });
}

int StreckenzugKorrigieren2d(KvGePolygon2d& polygon, double eps) {
  return Guarded([&] {
    const int n = polygon.GetSize();
    if (n < 3 || !(eps > 0.0) || !std::isfinite(eps) || !Finite(polygon)) return 0;
    std::vector<Pt> ring(static_cast<std::size_t>(n)), run;
    for (int i = 0; i < n; ++i) ring[static_cast<std::size_t>(i)] = Pt{polygon.GetData()[i].x, polygon.GetData()[i].y};
    std::vector<int> keep;
    std::vector<char> spike;
    std::vector<Cone> cones;
    CleanClosed(ring, eps, run, keep, spike, cones);
    if (keep.size() < 3) return 0;
    if (keep.size() == ring.size()) return 1;
    // The kept vertices in their old order, so the ring starts where it did when that vertex stays.
    std::sort(keep.begin(), keep.end());
    KvGePolygon2d cleaned;
    cleaned.SetSize(static_cast<int>(keep.size()));
    if (static_cast<std::size_t>(cleaned.GetSize()) != keep.size()) return 0;
    for (std::size_t k = 0; k < keep.size(); ++k) cleaned.GetData()[k] = polygon.GetData()[keep[k]];
    polygon = cleaned;
    return 1;
  });
}

int StreckenzugKorrigieren2d(KvGePolygon2dArray& set, double eps) {
  return Guarded([&] {
    if (!(eps > 0.0) || !std::isfinite(eps)) return 0;
    for (const KvGePolygon2d& ring : set)
      if (!Finite(ring)) return 0;
    KvGePolygon2dArray cleaned;
    cleaned.SetSize(set.GetSize());
    int out = 0;
    for (const KvGePolygon2d& ring : set) {
      KvGePolygon2d& copy = cleaned.GetData()[out];
      copy = ring;
      if (StreckenzugKorrigieren2d(copy, eps)) ++out;
    }
    cleaned.SetSize(out);
    cleaned.Tag() = set.Tag();
    set = cleaned;
    return 1;
  });
}

int StreckenzugKorrigieren2d(KvGePolyline2dArray& polylines, double eps) {
  return Guarded([&] {
    if (!(eps > 0.0) || !std::isfinite(eps)) return 0;
    for (const KvGePolyline2d& polyline : polylines)
      if (!Finite(polyline)) return 0;
    KvGePolyline2dArray cleaned;
    cleaned.SetSize(polylines.GetSize());
    int out = 0;
    for (const KvGePolyline2d& polyline : polylines) {
      KvGePolyline2d& copy = cleaned.GetData()[out];
      copy = polyline;
      if (StreckenzugKorrigieren2d(copy, eps)) ++out;
    }
    cleaned.SetSize(out);
    polylines = cleaned;
    return 1;
  });
}

int RemoveSchlaufen2d(KvGePolyline2dArray& polylines) {
  return Guarded([&] {
    for (const KvGePolyline2d& polyline : polylines)
      if (!Finite(polyline)) return 0;
    KvGePolyline2dArray cleaned(polylines);
    for (KvGePolyline2d& polyline : cleaned)
      if (polyline.GetSize() >= 2 && !RemoveSchlaufen2d(polyline)) return 0;
    polylines = cleaned;
    return 1;
  });
}
