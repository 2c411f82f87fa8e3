#pragma once
/// @file
/// A light handle on a plane polygon whose coordinates lie in one flat block of doubles
/// (x0, y0, x1, y1, ...), shared between handles by a reference-counted pointer.
///
/// Copying a handle shares the block, and a write through one handle is seen through all of them;
/// detach gives a handle a private block before it writes, copy makes an independent polygon,
/// and rotate turns the shared block in place for every handle. The reference count is atomic, so
/// handles that share a block may live in different threads; the coordinates are not protected.
///
/// The accessors do not check their index: an index beyond the block, or access through a handle
/// without data, is the caller's fault. getSize, getGeo, detach, copy, rotate and IsPointOnEdge
/// accept a handle without data.

#include <cstddef>
#include <iosfwd>

#include <boost/shared_ptr.hpp>

#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"

/// The coordinate block: 2 n doubles, owned and freed by the destructor. Assignment is shallow on
/// purpose: it copies the pointer and the count only, so two objects then share one block and the
/// caller must make sure that only one of them frees it (by setting the other's geo to null
/// before it dies). Copy construction is not offered, since it would hand out a second owner
/// without any assignment in sight; moving transfers the block and leaves the source empty.
class KVGE_API Simple2dPolygonData {
 public:
  /// Allocates 2 n doubles, not initialised. When the block cannot be had, geo is null and n 0.
  explicit Simple2dPolygonData(unsigned int count = 0);
  Simple2dPolygonData(const Simple2dPolygonData&) = delete;
  /// Takes the block of other, which is left empty.
  Simple2dPolygonData(Simple2dPolygonData&& other) noexcept : geo(other.geo), n(other.n) {
    other.geo = nullptr;
    other.n = 0;
  }
  /// Shallow on purpose: copies the pointer and the count only, so both objects then share one block.
  Simple2dPolygonData& operator=(const Simple2dPolygonData& other) {
    geo = other.geo;
    n = other.n;
    return *this;
  }
  /// Takes other's block and hands this object's former block to other, which frees it: an
  /// assigned temporary never leaves its block behind to be freed twice.
  Simple2dPolygonData& operator=(Simple2dPolygonData&& other) noexcept {
    double* g = geo;
    const unsigned int c = n;
    geo = other.geo;
    n = other.n;
    other.geo = g;
    other.n = c;
    return *this;
  }
  ~Simple2dPolygonData();

  /// The block, null when there is none.
  double* getGeo() { return geo; }
  /// The block, null when there is none.
  const double* getGeo() const { return geo; }
  /// Sets every vertex to (x, y).
  void set(double x, double y);

  /// The coordinates, 2 n doubles (x0, y0, x1, y1, ...); null when there is no block.
  double* geo = nullptr;
  /// The number of vertices.
  unsigned int n = 0;
};

/// A handle on a plane polygon whose coordinates lie in a shared, reference-counted block of doubles; copies share the
/// block, detach and copy make it private. The accessors do not check their index.
class KVGE_API Simple2dPolygon {
 public:
  Simple2dPolygon() = default;
  /// A handle on data (shared).
  explicit Simple2dPolygon(const boost::shared_ptr<Simple2dPolygonData>& data) : m_Data(data) {}
  /// Shares the block of the other handle.
  Simple2dPolygon(const Simple2dPolygon&) = default;
  /// Shares the block of the other handle.
  Simple2dPolygon& operator=(const Simple2dPolygon&) = default;
  virtual ~Simple2dPolygon();

  /// Makes the handle share data.
  void setGeo(const boost::shared_ptr<Simple2dPolygonData>& data) { m_Data = data; }

  /// The i-th double of the block: 2k is x of vertex k, 2k + 1 its y.
  double& operator[](unsigned int i) { return m_Data->geo[i]; }
  /// The i-th double of the block, unchecked.
  double operator[](unsigned int i) const { return m_Data->geo[i]; }
  /// x of vertex i, unchecked.
  double& x(unsigned int i) { return m_Data->geo[2 * static_cast<std::size_t>(i)]; }
  /// x of vertex i, unchecked.
  double x(unsigned int i) const { return m_Data->geo[2 * static_cast<std::size_t>(i)]; }
  /// y of vertex i, unchecked.
  double& y(unsigned int i) { return m_Data->geo[2 * static_cast<std::size_t>(i) + 1]; }
  /// y of vertex i, unchecked.
  double y(unsigned int i) const { return m_Data->geo[2 * static_cast<std::size_t>(i) + 1]; }

  /// The block, null without data.
  double* getGeo() { return m_Data ? m_Data->geo : nullptr; }
  /// The block, null without data.
  const double* getGeo() const { return getConstGeo(); }
  /// The block, null without data.
  const double* getConstGeo() const { return m_Data ? m_Data->geo : nullptr; }
  /// The number of vertices, 0 without data.
  unsigned int getSize() const { return m_Data ? m_Data->n : 0u; }
  /// The number of handles that share the data (0 without data).
  long use_count() const { return m_Data.use_count(); }

  /// Copy-on-write: when other handles share the data and it holds vertices, this handle gets a
  /// private copy of the block. Returns 1 when this handle may write without being seen by
  /// others (also when it was not shared, or has no vertices to write), 0 only when the copy
  /// could not be allocated; the handle is then unchanged.
  int detach();
  /// Fills out with an independent copy when this handle has at least one vertex; without data
  /// or vertices out is left untouched. Returns 1, or 0 when the copy could not be allocated.
  int copy(Simple2dPolygon& out) const;
  /// Turns every vertex about the origin by angle (radians, counter-clockwise), in place on the
  /// shared block: every handle that shares it sees the turn. Call detach first to turn only
  /// this handle's polygon.
  void rotate(double angle);
  /// True when (x, y) lies on the edge from vertex i to vertex i + 1: the distances to both ends
  /// add up to the edge length within tol (a difference equal to tol counts as on the edge).
  /// There is no closing edge: i >= n - 1 is false, as is a handle without data.
  bool IsPointOnEdge(unsigned int i, double x, double y, double tol = kKvGeLinearTol) const;

 private:
  boost::shared_ptr<Simple2dPolygonData> m_Data;
};

static_assert(sizeof(Simple2dPolygon) == sizeof(void*) + sizeof(boost::shared_ptr<Simple2dPolygonData>),
              "Simple2dPolygon layout");

/// Writes WKT, "POLYGON ((x y, ..., x y))" closed by its first point, or "POLYGON EMPTY".
KVGE_API std::ostream& operator<<(std::ostream& os, const Simple2dPolygon& v);
