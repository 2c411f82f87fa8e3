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
bool Removable(const std::vector<Pt>& pts, std::vector<char>& spike, int a, int c, double eps) {
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

// The indices of an open run that survive the removal of repeated points, collinear middle
// vertices and spikes; the first and the last point always stay. Fewer than two indices when
// every point lies within eps of the first.
void CleanOpen(const std::vector<Pt>& pts, double eps, std::vector<int>& keep) {
  keep.clear();
  const int n = static_cast<int>(pts.size());
  const double epsSqr = eps * eps;
  std::vector<char> spike(pts.size(), 0);
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
      if (keep.size() >= 2 && Removable(pts, spike, keep[keep.size() - 2], i, eps)) {
        keep.pop_back();
        continue;
      }
      break;
    }
    if (!skip) keep.push_back(i);
  }
}

// The same for a closed ring: the run starts and ends at its sharpest corner, which no rule
// removes. The result lists the kept ring indices without a closing duplicate; fewer than three
// when the ring collapses.
void CleanClosed(const std::vector<Pt>& ring, double eps, std::vector<Pt>& run, std::vector<int>& keep) {
  keep.clear();
  const int n = static_cast<int>(ring.size());
  if (n < 3) return;
  int start = -1;
  double best = eps * eps;
  for (int i = 0; i < n; ++i) {
    const Pt& a = ring[(i + n - 1) % n];
    const Pt& c = ring[(i + 1) % n];
    if (DistSqr(a, c) <= eps * eps) continue;
    const double d = LineDistSqr(a, c, ring[i]);
    if (d > best) {
      best = d;
      start = i;
    }
  }
  if (start < 0) return;
  run.resize(static_cast<std::size_t>(n) + 1);
  for (int i = 0; i <= n; ++i) run[static_cast<std::size_t>(i)] = ring[(start + i) % n];
  CleanOpen(run, eps, keep);
  if (keep.size() < 2) {
    keep.clear();
    return;
  }
  keep.pop_back();  // the closing duplicate of the start
  for (int& k : keep) k = (k + start) % n;
}

bool InRange(double v) { return std::fabs(v) <= kKvGeRegionRange; }

CL::cInt ToGrid(double v) { return static_cast<CL::cInt>(std::llround(v * kKvGeRegionScale)); }

bool ToPath(const KvGePoint2dArray& ring, CL::Path& path) {
  path.resize(static_cast<std::size_t>(ring.GetSize()));
  std::size_t k = 0;
  for (const KvGePoint2d& p : ring) {
    if (!InRange(p.x) || !InRange(p.y)) return false;
    path[k++] = CL::IntPoint(ToGrid(p.x), ToGrid(p.y));
  }
  return true;
}

bool ToPaths(const KvGePolygon2dArray& set, int first, CL::Paths& paths) {
  paths.clear();
  paths.reserve(static_cast<std::size_t>(std::max(0, set.GetSize() - first)));
  for (int i = first; i < set.GetSize(); ++i) {
    paths.emplace_back();
    if (!ToPath(set.GetData()[i], paths.back())) return false;
  }
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
void AppendSplit(const CL::Path& ring, CL::Paths& out, CL::Path& scratch) {
  scratch = ring;
  std::sort(scratch.begin(), scratch.end(), Less);
  std::size_t dups = 0;
  for (std::size_t i = 1; i < scratch.size(); ++i)
    if (scratch[i] == scratch[i - 1] && (dups == 0 || !(scratch[dups - 1] == scratch[i]))) scratch[dups++] = scratch[i];
  if (dups == 0) {
    out.push_back(ring);
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
  std::vector<const CL::PolyNode*> outers(tree.Childs.begin(), tree.Childs.end());
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
bool CollapseShortEdges(std::vector<Pt>& ring, double eps) {
  bool any = false;
  for (bool changed = true; changed && ring.size() >= 3;) {
    changed = false;
    for (std::size_t i = 0; i < ring.size() && ring.size() >= 3; ++i) {
      const std::size_t n = ring.size(), j = (i + 1) % n;
      if (DistSqr(ring[i], ring[j]) > eps * eps) continue;
      const Pt& prev = ring[(i + n - 1) % n];
      const Pt& next = ring[(j + 1) % n];
      const Pt d1{ring[i].x - prev.x, ring[i].y - prev.y}, d2{next.x - ring[j].x, next.y - ring[j].y};
      const double den = d1.x * d2.y - d1.y * d2.x;
      Pt v{(ring[i].x + ring[j].x) / 2, (ring[i].y + ring[j].y) / 2};
      if (den != 0.0) {
        const double t = ((ring[j].x - prev.x) * d2.y - (ring[j].y - prev.y) * d2.x) / den;
        const Pt meet{prev.x + t * d1.x, prev.y + t * d1.y};
        if (DistSqr(meet, ring[i]) <= 4 * eps * eps && DistSqr(meet, ring[j]) <= 4 * eps * eps) v = meet;
      }
      ring[i] = Pt{std::nearbyint(v.x), std::nearbyint(v.y)};
      ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(j));
      changed = any = true;
    }
  }
  return any;
}

// Collapses short edges, removes near-collinear vertices and spikes (within 0.001) and drops
// rings below the smallest area; true when anything changed.
bool CleanPaths(CL::Paths& paths) {
  bool changed = false;
  std::vector<Pt> ring, run;
  std::vector<int> keep;
  std::size_t out = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    CL::Path& path = paths[i];
    ring.resize(path.size());
    for (std::size_t k = 0; k < path.size(); ++k)
      ring[k] = Pt{static_cast<double>(path[k].X), static_cast<double>(path[k].Y)};
    const bool collapsed = CollapseShortEdges(ring, kGridTol);
    CleanClosed(ring, kGridTol, run, keep);
    if (collapsed || keep.size() != path.size()) {
      changed = true;
      path.resize(keep.size());
      for (std::size_t k = 0; k < keep.size(); ++k) {
        const Pt& p = ring[static_cast<std::size_t>(keep[k])];
        path[k] = CL::IntPoint(static_cast<CL::cInt>(p.x), static_cast<CL::cInt>(p.y));
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

// Takes a clipping result in tree form to the normalised ring list: clean-up, a new union of
// the cleaned rings while the clean-up changes anything, and a last clean-up, so the local
// rules hold on every result. Rings that a clean-up made touch are valid as they stand.
void Tidy(const CL::PolyTree& first, CL::Paths& paths) {
  TreeToPaths(first, paths);
  bool changed = CleanPaths(paths);
  for (int round = 0; changed && round < kTidyRounds; ++round) {
    CL::Clipper c;
    c.AddPaths(paths, CL::ptSubject, true);
    CL::PolyTree tree;
    c.Execute(CL::ctUnion, tree, CL::pftPositive, CL::pftPositive);
    TreeToPaths(tree, paths);
    changed = CleanPaths(paths);
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
    CL::PolyTree tree;
    if (!c.Execute(type, tree, CL::pftPositive, clipFill)) return false;
    Tidy(tree, result);
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

// The region of a set as normalised integer rings, for the offsets.
bool RegionPaths(const KvGePolygon2dArray& set, CL::Paths& region) {
  CL::Paths raw;
  if (!ToPaths(set, 0, raw)) return false;
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
    CL::PolyTree tree;
    co.Execute(tree, distance * kKvGeRegionScale);
    Tidy(tree, result);
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

int KvGePolygon2dArray::VereinigeOderDurchschnitt(const KvGePolygon2dArray& other, int mode) {
  return Guarded([&] {
    if (mode != 1 && mode != 2) return 0;
    // A complement made by Negate is read without its frame: intersecting with it is the
    // difference from the reversed rings, which keeps the frame's huge coordinates out of the
    // integer arithmetic.
    const bool complement = mode == 2 && StartsWithFrame(other);
    CL::Paths a, b, result;
    if (!ToPaths(*this, 0, a) || !ToPaths(other, complement ? 1 : 0, b)) return 0;
    const CL::ClipType type = mode == 1 ? CL::ctUnion : complement ? CL::ctDifference : CL::ctIntersection;
    if (!Clip(a, &b, type, complement ? CL::pftNegative : CL::pftPositive, result)) return 0;
    ToSet(result, *this);
    return 1;
  });
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

KvGePolygon2dArray& KvGePolygon2dArray::operator-=(const KvGePolygon2dArray& other) {
  Guarded([&] {
    const KvGePolygon2dArray complement = -other;
    if (complement.GetSize() == 0) {
      SetSize(0);
      return 1;
    }
    return GetSize() != 0 ? VereinigeOderDurchschnitt(complement, 2) : 1;
  });
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

int ParallelPolygon2d(const KvGePolygon2dArray& set, double distance, KvGePolygon2dArray& result, KvGeJoin2d join,
                      double miterLimit, double eps) {
  return Guarded([&] {
    if (!ValidOffsetArgs(distance, join, join == kKvGeJoinRound, miterLimit, eps)) return 0;
    CL::Paths region, grown;
    if (!RegionPaths(set, region)) return 0;
    if (!Offset(region, distance, ToJoin(join), CL::etClosedPolygon, miterLimit, eps, grown)) return 0;
    const std::int32_t tag = set.Tag();
    ToSet(grown, result);
    result.Tag() = tag;
    return 1;
  });
}

int ParallelPolygon2d(const KvGePolygon2d& polygon, double distance, KvGePolygon2dArray& result, KvGeJoin2d join,
                      double miterLimit, double eps) {
  return Guarded([&] {
    KvGePolygon2dArray set;
    set.Add(polygon);
    if (polygon.Area() < 0) set[0].Invert();
    const std::int32_t tag = result.Tag();
    if (!ParallelPolygon2d(set, distance, result, join, miterLimit, eps)) return 0;
    result.Tag() = tag;
    return 1;
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
    CleanOpen(pts, eps, keep);
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
    CleanClosed(ring, eps, run, keep);
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
