#include "geometry/intersection/KvGePreparedRegion2d.h"

#include <algorithm>
#include <cmath>

#include "basics/companion/KvBtCompare.h"
#include "basics/companion/KvTlPermVector.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"
#include "geometry/intersection/KvGePieces2d.h"

namespace {

// Edges per run and children per node.
constexpr int kFan = 8;
constexpr int kFanShift = 3;
// An edge whose box lies farther than this above, below or beside the point is neither measured
// for the 0.001 band nor cut by the scan line: the same band the free point test skips by, so
// the edges measured are the same.
constexpr double kBand = 0.0015;
// A crossing farther than this from the point is ordered on its side of the point by the
// tolerant sort whatever the other crossings: the partition keeps values more than two
// tolerances apart in order, and the exchange sort of a range of at most 8 entries leaves an
// inversion of at most seven tolerances. Nearer crossings send the query to the exact path.
constexpr double kClear = 0.004;
// Coordinates up to this size keep the rounding of a crossing's x (a few units in the last
// place) far inside the margins above.
constexpr double kLimit = 1e8;

inline int Class(double y, double py) { return KvBtRealCompare(y, py, kKvGeLinearTol); }

void AddPiece(const KvGeIntrPart2d& part, KvBtDynArray<KvGeLine2d>& out) {
  if (part.Min().Compare0(part.Max()) < 0)
    out.Add(KvGeLine2d(KvGePoint2d(part.Min().x, part.Min().y, part.Min().m_bInfinite),
                       KvGePoint2d(part.Max().x, part.Max().y, part.Max().m_bInfinite), 1, 1));
}

// A stack of tree nodes (level, index) visited depth first, children in ascending order, so
// that edges come out in their own order.
struct NodeStack {
  int level[kFan * 16];
  int index[kFan * 16];
  int top = 0;
  void Push(int l, int i) {
    level[top] = l;
    index[top] = i;
    ++top;
  }
};

}  // namespace

// The scan line's crossings as the free point test keeps them: parameter (x), segment index on
// the line (0, the far sentinel 0x7FFFFFFF) and crossing count. Inline storage for 64 records,
// beyond that storage kept per thread, so that a query allocates only when a thread first meets
// a longer scan line.
struct KvGePreparedRegion2d::Scan {
  struct Record {
    double param;
    std::uint32_t segment;
    int cut;
  };
  static constexpr int kInline = 64;

  Scan() {
    Push(KvGeIntrPoint2d::kNegInfinity.Param0(), KvGeIntrPoint2d::kNegInfinity.Segment0(), 0);
    Push(KvGeIntrPoint2d::kPosInfinity.Param0(), KvGeIntrPoint2d::kPosInfinity.Segment0(), 0);
  }
  Scan(const Scan&) = delete;
  Scan& operator=(const Scan&) = delete;

  void Push(double param, std::uint32_t segment, int cut) {
    if (size == capacity) Grow();
    rec[size++] = Record{param, segment, cut};
  }
  // The cut of the edge s-e with the line y = py, by the free test's rule.
  void Edge(double sx, double sy, double ex, double ey, double py) {
    const int cs = Class(sy, py);
    const int ce = Class(ey, py);
    if (cs == ce) return;
    if (cs == 0)
      Push(sx, 0, ce);
    else if (ce == 0)
      Push(ex, 0, -cs);
    else
      Push(sx + (py - sy) * (ex - sx) / (ey - sy), 0, 2 * ce);
  }

  unsigned short Classify(double px) {
    const int n = size;
    const Record* r = rec;
    for (int i = 0; i < n; ++i) perm[i] = i;
    // The calculator's whole sort: the free function may leave far ranges unordered, which
    // changes no part that covers the point.
    KvTlSortRange(
        perm, n,
        [r](int a, int b) { return KvGeDetail::OrderOnObject(r[a].segment, r[a].param, r[b].segment, r[b].param); },
        [](int, int) { return false; });
    bool outside = false, boundary = false, inside = false;
    int s = 0;
    for (int i = 0; i + 1 < n; ++i) {
      const Record& p = r[perm[i]];
      const Record& q = r[perm[i + 1]];
      s += p.cut;
      if (p.segment != 0 || KvBtRealCompare(p.param, px, kKvGeLinearTol) > 0) continue;
      if (q.segment == 0 && KvBtRealCompare(q.param, px, kKvGeLinearTol) < 0) continue;
      const int type = IsEqual(q.param, p.param, kKvGeLinearTol) ? 0 : (s <= -2 ? 1 : (s == -1 ? 0 : -1));
      if (type == -1)
        outside = true;
      else if (type == 1)
        inside = true;
      else
        boundary = true;
    }
    if (boundary) return 2;
    if (!inside) return 1;
    return outside ? 2 : 4;
  }

 private:
  void Grow() {
    static thread_local std::vector<Record> spillRec;
    static thread_local std::vector<int> spillPerm;
    const int grown = capacity * 2;
    if (rec == inlineRec) spillRec.assign(inlineRec, inlineRec + size);
    spillRec.resize(static_cast<std::size_t>(grown));
    spillPerm.resize(static_cast<std::size_t>(grown));
    rec = spillRec.data();
    perm = spillPerm.data();
    capacity = grown;
  }

  Record inlineRec[kInline];
  int inlinePerm[kInline];
  Record* rec = inlineRec;
  int* perm = inlinePerm;
  int size = 0;
  int capacity = kInline;
};

KvGePreparedRegion2d::KvGePreparedRegion2d() { Build(); }
KvGePreparedRegion2d::KvGePreparedRegion2d(const KvGePolygon2d& poly) { Set(poly); }
KvGePreparedRegion2d::KvGePreparedRegion2d(const KvGePolygon2dArray& set) { Set(set); }
KvGePreparedRegion2d::~KvGePreparedRegion2d() = default;

void KvGePreparedRegion2d::Set(const KvGePolygon2d& poly) {
  const int n = poly.GetSize();
  m_bSet = false;
  m_X.resize(static_cast<std::size_t>(n));
  m_Y.resize(static_cast<std::size_t>(n));
  m_Next.resize(static_cast<std::size_t>(n));
  const KvGePoint2d* v = poly.GetData();
  for (int i = 0; i < n; ++i) {
    m_X[i] = v[i].x;
    m_Y[i] = v[i].y;
    m_Next[i] = i + 1 == n ? 0 : i + 1;
  }
  m_Box = poly.BoundingBox();
  Build();
}

void KvGePreparedRegion2d::Set(const KvGePolygon2dArray& set) {
  m_bSet = true;
  std::size_t total = 0;
  for (int j = 0; j < set.GetSize(); ++j) total += static_cast<std::size_t>(set.GetData()[j].GetSize());
  m_X.resize(total);
  m_Y.resize(total);
  m_Next.resize(total);
  m_Box = KvGeBox2d();
  std::int32_t k = 0;
  for (int j = 0; j < set.GetSize(); ++j) {
    const KvGePolygon2d& poly = set.GetData()[j];
    const int n = poly.GetSize();
    const KvGePoint2d* v = poly.GetData();
    const std::int32_t first = k;
    for (int i = 0; i < n; ++i, ++k) {
      m_X[k] = v[i].x;
      m_Y[k] = v[i].y;
      m_Next[k] = i + 1 == n ? first : k + 1;
      m_Box.Include(v[i]);
    }
  }
  Build();
}

int KvGePreparedRegion2d::NodeFirstEdge(int level, int i) const {
  return static_cast<int>(static_cast<long long>(i) << (kFanShift * (level + 1)));
}

int KvGePreparedRegion2d::NodeLastEdge(int level, int i) const {
  const long long end = static_cast<long long>(i + 1) << (kFanShift * (level + 1));
  const long long edges = static_cast<long long>(m_X.size());
  return static_cast<int>((end < edges ? end : edges) - 1);
}

void KvGePreparedRegion2d::Build() {
  const int edges = static_cast<int>(m_X.size());
  m_Nodes.clear();
  m_LevelStart.clear();
  m_bFast = true;
  for (int k = 0; k < edges && m_bFast; ++k) m_bFast = std::fabs(m_X[k]) <= kLimit && std::fabs(m_Y[k]) <= kLimit;
  if (edges == 0) return;

  // Runs of consecutive edges; the ring's first vertex is known from the seams, where an edge's
  // end is not the next vertex.
  const int runs = (edges + kFan - 1) / kFan;
  m_LevelStart.push_back(0);
  m_Nodes.reserve(static_cast<std::size_t>(runs + runs / (kFan - 1) + kFan));
  std::int32_t ringFirst = 0;
  for (int i = 0; i < runs; ++i) {
    const int a = i * kFan, b = std::min(a + kFan, edges) - 1;
    Node nd{m_X[a], m_X[a], m_Y[a], m_Y[a], m_Y[a], m_Y[m_Next[b]], HUGE_VAL, ringFirst, ringFirst};
    for (int k = a; k <= b; ++k) {
      if (k > 0 && m_Next[k - 1] != k) ringFirst = k;
      if (k == a) nd.firstA = ringFirst;
      const int e = m_Next[k];
      // Edges up to 0.0009 long are left out: no line crosses an edge no longer than 0.001.
      const double lenSqr = quadrat(m_X[e] - m_X[k]) + quadrat(m_Y[e] - m_Y[k]);
      if (lenSqr > KvGeDetail::FirstLine::kCrossingLenSqr) nd.minLenSqr = std::fmin(nd.minLenSqr, lenSqr);
      nd.xmin = std::min(nd.xmin, std::min(m_X[k], m_X[e]));
      nd.xmax = std::max(nd.xmax, std::max(m_X[k], m_X[e]));
      nd.ymin = std::min(nd.ymin, std::min(m_Y[k], m_Y[e]));
      nd.ymax = std::max(nd.ymax, std::max(m_Y[k], m_Y[e]));
    }
    nd.firstB = ringFirst;
    m_Nodes.push_back(nd);
  }
  int count = runs;
  while (count > kFan) {
    const int below = m_LevelStart.back();
    m_LevelStart.push_back(static_cast<std::int32_t>(m_Nodes.size()));
    const int parents = (count + kFan - 1) / kFan;
    for (int i = 0; i < parents; ++i) {
      const int c0 = i * kFan, c1 = std::min(c0 + kFan, count) - 1;
      Node nd = m_Nodes[below + c0];
      for (int c = c0 + 1; c <= c1; ++c) {
        const Node& ch = m_Nodes[below + c];
        nd.xmin = std::min(nd.xmin, ch.xmin);
        nd.xmax = std::max(nd.xmax, ch.xmax);
        nd.ymin = std::min(nd.ymin, ch.ymin);
        nd.ymax = std::max(nd.ymax, ch.ymax);
        nd.minLenSqr = std::fmin(nd.minLenSqr, ch.minLenSqr);
      }
      nd.firstB = m_Nodes[below + c1].firstB;
      nd.yEnd = m_Nodes[below + c1].yEnd;
      m_Nodes.push_back(nd);
    }
    count = parents;
  }
  m_LevelStart.push_back(static_cast<std::int32_t>(m_Nodes.size()));
}

std::size_t KvGePreparedRegion2d::MemoryUsage() const {
  return m_X.capacity() * sizeof(double) + m_Y.capacity() * sizeof(double) + m_Next.capacity() * sizeof(std::int32_t) +
         m_Nodes.capacity() * sizeof(Node) + m_LevelStart.capacity() * sizeof(std::int32_t);
}

unsigned short KvGePreparedRegion2d::Containment(const KvGePoint2d& p) const {
  const double px = p.x, py = p.y;
  if (!std::isfinite(px) || !std::isfinite(py)) return 1;  // as the free function
  if (!m_bFast || !(std::fabs(px) <= kLimit && std::fabs(py) <= kLimit)) return ExactPoint(px, py, false);
  if (m_Nodes.empty()) return 1;
  const double* X = m_X.data();
  const double* Y = m_Y.data();
  const std::int32_t* next = m_Next.data();
  const Node* nodes = m_Nodes.data();
  const std::int32_t* levelStart = m_LevelStart.data();
  int s = 0;
  bool unclear = false;
  // Whether the node must be opened; a node wholly left of the point adds its chain's count,
  // which telescopes, one wholly right of, above or below it adds nothing.
  auto open = [&](const Node& nd) {
    if (nd.ymin - py > kBand || py - nd.ymax > kBand || nd.xmin - px > kClear) return false;
    if (px - nd.xmax > kClear) {
      s += Class(nd.yEnd, py) - Class(nd.yStart, py);
      if (nd.firstA != nd.firstB) s += Class(Y[nd.firstA], py) - Class(Y[nd.firstB], py);
      return false;
    }
    return true;
  };
  NodeStack stack;
  const int top = static_cast<int>(m_LevelStart.size()) - 2;
  for (int i = levelStart[top]; i < levelStart[top + 1]; ++i)
    if (open(nodes[i])) stack.Push(top, i - levelStart[top]);
  while (stack.top > 0) {
    --stack.top;
    const int level = stack.level[stack.top], i = stack.index[stack.top];
    if (level > 0) {
      const int c0 = i * kFan;
      const int c1 = std::min(c0 + kFan, levelStart[level] - levelStart[level - 1]);
      const Node* children = nodes + levelStart[level - 1];
      for (int c = c0; c < c1; ++c)
        if (open(children[c])) stack.Push(level - 1, c);
      continue;
    }
    const int b = NodeLastEdge(0, i);
    for (int k = NodeFirstEdge(0, i); k <= b; ++k) {
      const double sx = X[k], sy = Y[k], ex = X[next[k]], ey = Y[next[k]];
      const double ylo = sy < ey ? sy : ey, yhi = sy < ey ? ey : sy;
      if (ylo - py > kBand || py - yhi > kBand) continue;
      if (!m_bSet) {
        const double xlo = sx < ex ? sx : ex, xhi = sx < ex ? ex : sx;
        if (!(xlo - px > kBand || px - xhi > kBand) &&
            IsEqual(KvGeDetail::SegmentDistanceSqr(sx, sy, ex, ey, px, py), 0.0, kKvGeLinearTolSqr))
          return 2;
      }
      const int cs = Class(sy, py), ce = Class(ey, py);
      if (cs == ce) continue;
      const double x = cs == 0 ? sx : (ce == 0 ? ex : sx + (py - sy) * (ex - sx) / (ey - sy));
      if (x - px > kClear) continue;
      if (px - x > kClear)
        s += ce - cs;
      else
        unclear = true;
    }
  }
  // No edge is within the band (a polygon would have answered 2). With every crossing clear of
  // the point, the one part covering it has length and its count is that of the crossings left
  // of it.
  if (unclear) return ExactPoint(px, py, true);
  return s <= -2 ? 4 : (s == -1 ? 2 : 1);
}

unsigned short KvGePreparedRegion2d::ExactPoint(double px, double py, bool viaTree) const {
  const int edges = static_cast<int>(m_X.size());
  const double* X = m_X.data();
  const double* Y = m_Y.data();
  const std::int32_t* next = m_Next.data();
  Scan scan;
  if (!viaTree) {
    // The free functions' own loop: a polygon measures its band edge by edge first.
    for (int k = 0; k < edges; ++k) {
      const double sx = X[k], sy = Y[k], ex = X[next[k]], ey = Y[next[k]];
      if (!m_bSet) {
        // Both ends beyond the band on one side, as the free function tests it: an end that is
        // not a number is on neither side, so its edges are measured and cut.
        if (((sy - py > kBand) & (ey - py > kBand)) | ((py - sy > kBand) & (py - ey > kBand))) continue;
        if (!(((sx - px > kBand) & (ex - px > kBand)) | ((px - sx > kBand) & (px - ex > kBand))) &&
            IsEqual(KvGeDetail::SegmentDistanceSqr(sx, sy, ex, ey, px, py), 0.0, kKvGeLinearTolSqr))
          return 2;
      }
      scan.Edge(sx, sy, ex, ey, py);
    }
    return scan.Classify(px);
  }
  // Only the nodes the scan line reaches: a node lying wholly more than 0.001 above or below it
  // has every vertex in one class and no crossing.
  const int levels = static_cast<int>(m_LevelStart.size()) - 1;
  NodeStack stack;
  const int top = levels - 1;
  for (int i = m_LevelStart[top + 1] - m_LevelStart[top] - 1; i >= 0; --i) stack.Push(top, i);
  while (stack.top > 0) {
    --stack.top;
    const int level = stack.level[stack.top], i = stack.index[stack.top];
    const Node& nd = m_Nodes[m_LevelStart[level] + i];
    if (Class(nd.ymin, py) > 0 || Class(nd.ymax, py) < 0) continue;
    if (level > 0) {
      const int c0 = i * kFan;
      const int c1 = std::min(c0 + kFan, m_LevelStart[level] - m_LevelStart[level - 1]) - 1;
      for (int c = c1; c >= c0; --c) stack.Push(level - 1, c);
      continue;
    }
    const int b = NodeLastEdge(0, i);
    for (int k = NodeFirstEdge(0, i); k <= b; ++k) scan.Edge(X[k], Y[k], X[next[k]], Y[next[k]], py);
  }
  return scan.Classify(px);
}

void KvGePreparedRegion2d::CutLine(const KvGeLine2d& l, KvGeIntrCalculator2d& calc) const {
  const KvGeLine2d unbounded(l.P1(), l.P2(), 0, 1);
  const KvGeDetail::FirstLine line(l.P1().x, l.P1().y, l.P2().x, l.P2().y);
  const double p1x = line.p1x, p1y = line.p1y, dx = line.d1x, dy = line.d1y;
  const int edges = static_cast<int>(m_X.size());
  if (edges > 0 && !IsEqual(line.l1, 0.0, kKvGeLinearTol)) {
    const double band = KvGeDetail::FirstLine::kSideBand * line.l1;
    const double* X = m_X.data();
    const double* Y = m_Y.data();
    const std::int32_t* next = m_Next.data();
    // The run's edges as the free cut takes them: the same skip test, then the crossing.
    auto cutRun = [&](int a, int b, std::int32_t ringFirst) {
      for (int k = a; k <= b; ++k) {
        if (k > a && next[k - 1] != k) ringFirst = k;
        const double sx = X[k], sy = Y[k], ex = X[next[k]], ey = Y[next[k]];
        if (line.SkipEdge(line.Side(sx, sy), line.Side(ex, ey), sx, sy, ex, ey)) continue;
        KvGeIntrPoint2d r;
        if (!::Intersection2d(unbounded, KvGeLine2d(KvGePoint2d(sx, sy), KvGePoint2d(ex, ey), 1, 1), r)) continue;
        r.Segment1() = static_cast<std::uint32_t>(k - ringFirst);
        calc.Add(r);
      }
    };
    if (!m_bFast) {
      cutRun(0, edges - 1, 0);
    } else {
      const int levels = static_cast<int>(m_LevelStart.size()) - 1;
      NodeStack stack;
      const int top = levels - 1;
      for (int i = m_LevelStart[top + 1] - m_LevelStart[top] - 1; i >= 0; --i) stack.Push(top, i);
      while (stack.top > 0) {
        --stack.top;
        const int level = stack.level[stack.top], i = stack.index[stack.top];
        const Node& nd = m_Nodes[m_LevelStart[level] + i];
        // The side of the line is linear in the point, so the box's corners bound it; the margin
        // covers the rounding of the vertices' own side values.
        const double h00 = dx * (nd.ymin - p1y) - dy * (nd.xmin - p1x);
        const double h01 = dx * (nd.ymax - p1y) - dy * (nd.xmin - p1x);
        const double h10 = dx * (nd.ymin - p1y) - dy * (nd.xmax - p1x);
        const double h11 = dx * (nd.ymax - p1y) - dy * (nd.xmax - p1x);
        const double hmin = std::min(std::min(h00, h01), std::min(h10, h11));
        const double hmax = std::max(std::max(h00, h01), std::max(h10, h11));
        const double margin =
            1e-12 * (std::fabs(dx) * (kLimit + std::fabs(p1y)) + std::fabs(dy) * (kLimit + std::fabs(p1x)));
        // Skipped only when every edge of the node would be: the rounding test with the box's
        // largest coordinate, its nearest corner and the node's shortest edge that can cross at
        // all (edges no longer than 0.001 cross nothing), each a bound of the edge's own value.
        const double rBox = std::fmax(std::fmax(std::fabs(nd.xmin), std::fabs(nd.xmax)),
                                      std::fmax(std::fabs(nd.ymin), std::fabs(nd.ymax)));
        const double rq = std::fmax(line.r, rBox);
        if (hmin > band + margin && line.Conditioned(rq, hmin - margin, nd.minLenSqr)) continue;
        if (hmax < -band - margin && line.Conditioned(rq, -hmax - margin, nd.minLenSqr)) continue;
        if (level > 0) {
          const int c0 = i * kFan;
          const int c1 = std::min(c0 + kFan, m_LevelStart[level] - m_LevelStart[level - 1]) - 1;
          for (int c = c1; c >= c0; --c) stack.Push(level - 1, c);
          continue;
        }
        cutRun(NodeFirstEdge(0, i), NodeLastEdge(0, i), nd.firstA);
      }
    }
  }
  calc.SortIntrPoints0();
  calc.CalculateParts0();
}

unsigned short KvGePreparedRegion2d::Containment(const KvGeLine2d& l) const {
  KvGeIntrCalculator2d calc;
  CutLine(l, calc);
  return KvGeDetail::LineBits(l, calc);
}

unsigned short KvGePreparedRegion2d::Containment(const KvGePolyline2d& l) const {
  const int n = l.GetSize();
  unsigned short bits = 0;
  for (int i = 0; i + 1 < n && bits != 7; ++i)
    bits |= Containment(KvGeLine2d(l.GetData()[i], l.GetData()[i + 1], 1, 1));
  return bits;
}

unsigned short KvGePreparedRegion2d::Containment(const KvGePolygon2d& tested) const {
  // Testing a polygon against a set is answered 1 by the free function, deliberately.
  if (m_bSet) return 1;
  const int n = tested.GetSize();
  unsigned short bits = 0;
  for (int i = 0; i < n && bits != 7; ++i)
    bits |= Containment(KvGeLine2d(tested.GetData()[i], tested.GetData()[mod(i + 1, n)], 1, 1));
  return bits;
}

int KvGePreparedRegion2d::Containment(const KvGePoint2dArray& points, KvBtDynArray<unsigned short>& results) const {
  const int n = points.GetSize();
  results.SetSize(n);
  if (results.GetSize() != n) return 0;  // no memory
  unsigned short* out = results.GetData();
  const KvGePoint2d* p = points.GetData();
  for (int i = 0; i < n; ++i) out[i] = Containment(p[i]);
  return n;
}

int KvGePreparedRegion2d::Intersection2d(const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out, int mode) const {
  out.RemoveAll();
  KvGeIntrCalculator2d calc;
  CutLine(l, calc);
  const KvGeIntrPart2d segment = KvGeDetail::SegmentPart(l);
  const int n = calc.GetSize0();
  if (mode == 0) {
    for (int i = 0; i < n; ++i) {
      KvGeIntrPart2d part = calc.Part0(static_cast<unsigned>(i));
      // The last part ends at the calculator's sentinel, no point of the line: as the free
      // function, an unbounded line takes no piece from it.
      if (!l.Segment() && i + 1 == n) continue;
      if (l.Segment()) part.Intersect0(segment);
      if (part.Type() == 1) AddPiece(part, out);
    }
    return out.GetSize();
  }
  // Runs of parts of positive length that are not outside, closed by the next outside part; a
  // run still open after the last part is dropped, as the free function drops it.
  bool open = false;
  KvGeIntrPart2d run;
  for (int i = 0; i < n; ++i) {
    const KvGeIntrPart2d& part = calc.Part0(static_cast<unsigned>(i));
    if (part.Min().Compare0(part.Max()) >= 0) continue;
    if (part.Type() != -1) {
      if (!open) run.Set(part.Min(), part.Max(), part.Type());
      run.Max() = part.Max();
      open = true;
    } else if (open) {
      if (l.Segment()) run.Intersect0(segment);
      AddPiece(run, out);
      open = false;
    }
  }
  return out.GetSize();
}
