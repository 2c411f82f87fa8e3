#pragma once
/// @file
/// A region prepared for many queries: a polygon or a polygon set copied once into flat arrays
/// with an index over its edges, answering point and line containment and line pieces with the
/// same results as the free Containment and Intersection2d functions on the region it was built
/// from, bit for bit, band and degenerate cases included.
///
/// The index. The edges keep their order (ring after ring, each ring closed back to its first
/// vertex) and are grouped into runs of 8 consecutive edges; runs are grouped 8 to a node, and so
/// on up to at most 8 top nodes. Every run and node keeps the bounding box of its edges. A run of
/// consecutive edges is a chain, and the crossing count that a horizontal line collects from a
/// chain telescopes: each edge counts the class (below, on or above the line within 0.001) of
/// its end minus that of its start, so the whole chain counts the class of its last end minus
/// that of its first start (plus the same for ring seams inside the run). A point query therefore
/// walks the tree from the top, takes a node lying wholly left of the point in O(1) from four
/// vertex classes, drops one wholly right of it, above or below it, and opens only the nodes
/// whose box reaches the point, down to single edges, where the boundary band of a polygon is
/// measured exactly as the free function measures it. The few nodes whose boxes contain the point
/// make the query logarithmic for polygons whose edges are short next to their extent (convex
/// and star-shaped outlines, floor plans, contours).
///
/// Degenerate queries. The free function sorts the scan line's crossings with a tolerant
/// comparison and an unstable sort, so where crossings lie within a few tolerances of each other
/// and of the point, the answer depends on the order the sort leaves them in, which depends on
/// every crossing of the line. When any crossing lies within 0.004 of the point (and, for a
/// polygon, no edge lies within the 0.001 band, which answers 2 at once), the query collects the
/// crossings of the whole scan line from the tree in edge order and runs the free function's
/// sort and walk on them: O(k log k) for k edges crossing the line. The same exact path, over all
/// edges, answers queries at coordinates beyond 1e8 in magnitude or not finite, and every query
/// of a region holding such coordinates. Lines collect their crossings the same way (nodes whose
/// box lies wholly on one side of the line are skipped, unless the rounding of the crossing
/// formula, large where coordinates are large next to the line's or an edge's length, could
/// bring a crossing into the band) and go through an intersection calculator as the free
/// functions do: O(log n + k log k) for k crossings, with the calculator's storage.
///
/// Costs: building is linear (one pass over the vertices, one over the runs) and holds about 30
/// bytes per edge: two coordinates and the next vertex's index per edge, and per run or node
/// (about one seventh as many as the edges) a box, the heights of its chain's two ends and the
/// length of its shortest edge. A
/// point query opens O(log n) nodes on such outlines, and all of them only where the boxes of
/// every run hold the point (long interleaved spikes); it allocates nothing, the exact path
/// using a stack buffer and, beyond 64 crossings, storage kept per thread.
///
/// Concurrency: the object is not changed after it is built; every const member may be called
/// from any number of threads on one shared object without a lock.

/// \file
/// Non-finite input and range: every query answers as the free function does; coordinates beyond
/// 1e8 or not finite take the exact path. See docs/non-finite-policy.md.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

class KvGeIntrCalculator2d;

/// A polygon or a polygon set prepared for repeated containment and pieces queries. Answers are
/// those of the free functions on the region it was built from: a polygon measures the 0.001
/// boundary band (inclusive) before its scan line, a set decides by the scan line alone. The
/// object keeps its own copy; later changes to the caller's region do not reach it.
class KVGE_API KvGePreparedRegion2d {
 public:
  /// An empty polygon: every point is outside (1).
  KvGePreparedRegion2d();
  /// Prepares a copy of the polygon (with its 0.001 boundary band).
  explicit KvGePreparedRegion2d(const KvGePolygon2d& poly);
  /// Prepares a copy of the set as one region (no separate boundary band).
  explicit KvGePreparedRegion2d(const KvGePolygon2dArray& set);
  /// Copies the prepared region.
  KvGePreparedRegion2d(const KvGePreparedRegion2d&) = default;
  /// Takes over the prepared region of the other object.
  KvGePreparedRegion2d(KvGePreparedRegion2d&&) = default;
  /// Copies the prepared region.
  KvGePreparedRegion2d& operator=(const KvGePreparedRegion2d&) = default;
  /// Takes over the prepared region of the other object.
  KvGePreparedRegion2d& operator=(KvGePreparedRegion2d&&) = default;
  virtual ~KvGePreparedRegion2d();

  /// Rebuilds from a polygon or a set.
  void Set(const KvGePolygon2d& poly);
  /// Rebuilds from a set.
  void Set(const KvGePolygon2dArray& set);

  /// 1 outside, 2 on the boundary, 4 inside: as Containment(p, polygon) or Containment(p, set).
  unsigned short Containment(const KvGePoint2d& p) const;
  /// The union of the bits of the line's parts, as the free line containment.
  unsigned short Containment(const KvGeLine2d& l) const;
  /// Edge by edge, as the free polyline containment; 0 for fewer than two vertices.
  unsigned short Containment(const KvGePolyline2d& l) const;
  /// Edge by edge, as the free polygon containment; a set answers 1 whatever the polygon, as the
  /// free function does.
  unsigned short Containment(const KvGePolygon2d& tested) const;
  /// One result per point, in order, into results (resized to the number of points); returns
  /// that number.
  int Containment(const KvGePoint2dArray& points, KvBtDynArray<unsigned short>& results) const;
  /// The pieces of l inside (mode 0) or inside and on the boundary joined (mode non-zero), as the
  /// free Intersection2d; out is emptied first; returns the number of pieces.
  int Intersection2d(const KvGeLine2d& l, KvBtDynArray<KvGeLine2d>& out, int mode) const;

  /// The box of all vertices; the empty box for an empty region.
  KvGeBox2d BoundingBox() const { return m_Box; }
  /// 1 when built from a polygon set (no boundary band), 0 for a polygon.
  int IsPolygonSet() const { return m_bSet ? 1 : 0; }
  /// The number of edges: the number of vertices of all rings.
  int NumberOfEdges() const { return static_cast<int>(m_X.size()); }
  /// Bytes held by the index and the copied coordinates (not counting the object itself).
  std::size_t MemoryUsage() const;

 private:
  struct Node {
    double xmin, xmax, ymin, ymax;
    /// y of the start of the node's first edge and of the end of its last edge: the chain's
    /// crossing count needs no other vertex unless the node holds a ring seam.
    double yStart, yEnd;
    /// The squared length of the node's shortest edge longer than 0.0009 (HUGE_VAL if none): a
    /// line's cut skips the node only when it may skip that edge.
    double minLenSqr;
    /// The first vertex of the ring of the node's first edge and of its last edge.
    std::int32_t firstA, firstB;
  };
  /// Hidden with its per-thread spill storage: a detail of the queries, not of the interface.
  struct KVGE_NO_EXPORT Scan;

  KVGE_NO_EXPORT void Build();
  KVGE_NO_EXPORT int NodeFirstEdge(int level, int i) const;
  KVGE_NO_EXPORT int NodeLastEdge(int level, int i) const;
  KVGE_NO_EXPORT unsigned short ExactPoint(double px, double py, bool viaTree) const;
  KVGE_NO_EXPORT void CutLine(const KvGeLine2d& l, KvGeIntrCalculator2d& calc) const;

  std::vector<double> m_X, m_Y;
  /// The index of the end vertex of edge k (k + 1, or the ring's first vertex).
  std::vector<std::int32_t> m_Next;
  /// Levels of the tree, finest first: m_Nodes[m_LevelStart[l] ...].
  std::vector<Node> m_Nodes;
  std::vector<std::int32_t> m_LevelStart;
  KvGeBox2d m_Box;
  bool m_bSet = false;
  /// All coordinates finite and within the range where the tree's pruning is exact.
  bool m_bFast = true;
};
