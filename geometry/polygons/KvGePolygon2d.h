#pragma once
/// @file
/// Polygons: closed rings of points.
///
/// - KvGePolygon2d: a plane ring on KvGePoint2dArray; n points give n edges, the last closing to
///   the first. Its Invert keeps the first vertex and reverses the rest (A, B, C, D becomes A, D,
///   C, B), so a ring keeps its start point when its orientation changes; the point array's own
///   Invert reverses the whole sequence. Built from a KvGePolygon3d it takes x and y and clears
///   every flag of a point at infinity, deliberately: a plan polygon has only finite vertices.
/// - KvGePolygon23d: a ring of 3D points handled in plan, with a height (may be negative): the
///   vertical extent of the prism it sweeps. Its box adds the height to the top when it is
///   positive, otherwise to the bottom.
/// - KvGePolygon3d: a ring of 3D points.
/// - KvGePolygon2dArray: a polygon set (one region of several rings, inner rings as holes) with a
///   further 32-bit value that every copy carries along.
///
/// Region operations of the set (union, intersection, difference, Normalize, Schwerpunkt) read
/// the rings by their crossing senses, as the point containment does: a point is inside where
/// the counter-clockwise rings around it outnumber the clockwise ones (winding number >= 1), so
/// a clockwise ring inside a counter-clockwise one is a hole and a clockwise ring on its own
/// encloses nothing. They compute on integers: coordinates are rounded to kKvGeRegionScale units
/// per drawing unit (a grid of 1e-6), and every coordinate must lie within +-kKvGeRegionRange
/// (1e9) drawing units, bounds included. A coordinate beyond that range or not finite makes the
/// operation fail: the set is left as it was. The flag of a point at infinity is not looked at.
///
/// Their results are normalised: outer rings counter-clockwise, each followed by its holes
/// clockwise; no ring crosses itself or another; no two consecutive vertices lie within 0.001;
/// no vertex lies within 0.001 of the line through its neighbours; no ring has an area below
/// 1e-6. Rings may touch at single vertices. The clean-up that gives those rules moves edges by
/// up to 0.001 but gives the area it takes back: up to eight corners of a changed ring move
/// across the chords of their neighbours, each by at most 0.001. So normalised rings keep the
/// area of the exact region to the integer grid, and the areas of union, intersection and
/// difference add up as the sets do (|A u B| + |A n B| = |A| + |B|), except where a ring is thinned
/// by more than those corners can give back (a finely digitised arc keeps up to 0.001 times its
/// length).

/// \file
/// Non-finite input and range: the region booleans and Normalize refuse a coordinate beyond 1e9 or
/// not finite and leave the set unchanged; areas propagate NaN. See docs/non-finite-policy.md.

#include <cstdint>
#include <initializer_list>
#include <iosfwd>

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/points/KvGePoint2dArray.h"

class KvGeModMat2d;
class KvGeModMat3d;

/// Integer units per drawing unit in the region operations of polygon sets, offsets and loop
/// removal.
constexpr double kKvGeRegionScale = 1e6;
/// The largest absolute coordinate (inclusive) that region operations accept, in drawing units.
constexpr double kKvGeRegionRange = 1e9;

/// A closed ring of space points.
class KVGE_API KvGePolygon3d : public KvGePoint3dArray {
 public:
  KvGePolygon3d() = default;
  /// The vertices in the order given.
  KvGePolygon3d(std::initializer_list<KvGePoint3d> points) : KvGePoint3dArray(points) {}
  /// The ring of the given points.
  explicit KvGePolygon3d(const KvGePoint3dArray& points) : KvGePoint3dArray(points) {}
  /// Copies the points.
  KvGePolygon3d(const KvGePolygon3d&) = default;
  /// Copies the points.
  KvGePolygon3d& operator=(const KvGePolygon3d&) = default;
  ~KvGePolygon3d() override;
};

/// A closed plane ring: n points give n edges, the last closing to the first; counter-clockwise encloses. Invert keeps
/// the first vertex.
class KVGE_API KvGePolygon2d : public KvGePoint2dArray {
 public:
  KvGePolygon2d() = default;
  /// The vertices in the order given, as Set takes them: KvGePolygon2d ring{{0, 0}, {10, 0}, {10, 10}}. The ring
  /// closes by itself; a repeated first point would stay a vertex of its own.
  KvGePolygon2d(std::initializer_list<KvGePoint2d> points) : KvGePoint2dArray(points) {}
  /// A deep copy of the points.
  explicit KvGePolygon2d(const KvGePoint2dArray& points) { Set(points); }
  /// x and y of the space ring's points, every flag of a point at infinity cleared (deliberate).
  explicit KvGePolygon2d(const KvGePolygon3d& polygon);
  /// A deep copy of the points.
  KvGePolygon2d(const KvGePolygon2d& other) : KvGePoint2dArray() { Set(other); }
  /// A deep copy of the points.
  KvGePolygon2d& operator=(const KvGePolygon2d& other) { return Set(other); }
  ~KvGePolygon2d() override;

  /// A deep copy of the points; assigning the polygon to itself does nothing.
  KvGePolygon2d& Set(const KvGePoint2dArray& points) {
    DeepCopy(points);
    return *this;
  }
  /// The first vertex stays first and the others are reversed.
  KvGePolygon2d& Invert() {
    NewFirstElement(0, 1);
    return *this;
  }
  /// An inverted copy.
  KvGePolygon2d Inverted() const { return KvGePolygon2d(*this).Invert(); }
  /// Inverts unless the sense of the ring already equals sense (a ring of area 0 is inverted for
  /// both senses).
  KvGePolygon2d& Orientate(int sense) {
    if (Sense() != sense) Invert();
    return *this;
  }
  /// An orientated copy.
  KvGePolygon2d Orientated(int sense) const { return KvGePolygon2d(*this).Orientate(sense); }
  /// Starts at the lowest point and runs counter-clockwise, as the point array's Normalize.
  KvGePolygon2d& Normalize() {
    KvGePoint2dArray::Normalize();
    return *this;
  }
  /// A normalized copy.
  KvGePolygon2d Normalized() const { return KvGePolygon2d(*this).Normalize(); }
  /// Transforms every vertex by m.
  KvGePolygon2d& Transform(const KvGeModMat2d& m) {
    KvGePoint2dArray::Transform(m);
    return *this;
  }
  /// A transformed copy.
  KvGePolygon2d Transformed(const KvGeModMat2d& m) const { return KvGePolygon2d(*this).Transform(m); }
};

/// A ring of space points handled in plan, with a height (the vertical extent of the prism it sweeps; may be negative).
class KVGE_API KvGePolygon23d : public KvGePoint3dArray {
 public:
  KvGePolygon23d() = default;
  /// The vertices in the order given, with the height 0.
  KvGePolygon23d(std::initializer_list<KvGePoint3d> points) : KvGePoint3dArray(points) {}
  /// A deep copy of the points, with the height.
  KvGePolygon23d(const KvGePoint3dArray& points, double height) { Set(points, height); }
  /// A deep copy of the points and the height.
  KvGePolygon23d(const KvGePolygon23d& other) : KvGePoint3dArray() { Set(other, other.m_Height); }
  /// A deep copy of the points and the height.
  KvGePolygon23d& operator=(const KvGePolygon23d& other) { return Set(other, other.m_Height); }
  ~KvGePolygon23d() override;

  /// Replaces the points (deep copy) and the height.
  KvGePolygon23d& Set(const KvGePoint3dArray& points, double height) {
    DeepCopy(points);
    m_Height = height;
    return *this;
  }
  /// The height, stored as passed.
  double& Height() { return m_Height; }
  /// The height, stored as passed.
  double Height() const { return m_Height; }

  /// The signed plan area, positive counter-clockwise, and its sign.
  double Area() const { return Area2d(); }
  /// sgn(Area()): 1 counter-clockwise, -1 clockwise, 0 degenerate.
  int Sense() const { return Sense2d(); }
  /// The first vertex stays first and the others are reversed.
  KvGePolygon23d& Invert() {
    NewFirstElement(0, 1);
    return *this;
  }
  /// An inverted copy.
  KvGePolygon23d Inverted() const { return KvGePolygon23d(*this).Invert(); }
  /// Inverts (first vertex kept) unless the plan sense already equals sense, as Orientate2d (a closing duplicate is
  /// kept last).
  KvGePolygon23d& Orientate(int sense) {
    Orientate2d(sense);
    return *this;
  }
  /// An orientated copy.
  KvGePolygon23d Orientated(int sense) const { return KvGePolygon23d(*this).Orientate(sense); }
  /// Starts at the lowest point and runs counter-clockwise in plan.
  KvGePolygon23d& Normalize() {
    Normalize2d();
    return *this;
  }
  /// A normalized copy.
  KvGePolygon23d Normalized() const { return KvGePolygon23d(*this).Normalize(); }
  /// The box of the points with the height added to the top (height > 0) or else to the bottom.
  KvGeBox3d BoundingBox() const;
  /// The box B of the transformed points united with B shifted by the image of the height:
  /// height * (m(2,0), m(2,1), m(2,2)), the transformed vertical direction.
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const;
  /// The points transformed; the height is kept.
  KvGePolygon23d& Transform(const KvGeModMat3d& m) {
    KvGePoint3dArray::Transform(m);
    return *this;
  }
  /// A transformed copy.
  KvGePolygon23d Transformed(const KvGeModMat3d& m) const { return KvGePolygon23d(*this).Transform(m); }

 private:
  double m_Height = 0.0;
};

/// A polygon set: one region of several rings (counter-clockwise rings enclose, clockwise rings inside them are holes),
/// with a further 32-bit value that every copy carries.
class KVGE_API KvGePolygon2dArray : public KvBtDynArray<KvGePolygon2d> {
 public:
  KvGePolygon2dArray() = default;
  /// The rings in the order given, each deep-copied: KvGePolygon2dArray region{outer, hole}.
  KvGePolygon2dArray(std::initializer_list<KvGePolygon2d> rings) : KvBtDynArray(rings) {}
  /// Copies the rings and the further value.
  KvGePolygon2dArray(const KvGePolygon2dArray&) = default;
  /// Copies the rings and the further value.
  KvGePolygon2dArray& operator=(const KvGePolygon2dArray&) = default;
  ~KvGePolygon2dArray() override;

  /// The further value of the set, carried by every copy and assignment.
  std::int32_t& Tag() { return m_Tag; }
  /// The further value of the set.
  std::int32_t Tag() const { return m_Tag; }

  /// The sum of the rings' signed areas, as they run: a hole counts negatively only when it runs
  /// clockwise. 0 for an empty set.
  double Area() const;

  /// Union. An empty other set changes nothing; an empty set becomes a copy of the other one,
  /// its further value included; otherwise the normalised union, keeping this set's further
  /// value. Out-of-range coordinates leave the set unchanged.
  KvGePolygon2dArray& operator|=(const KvGePolygon2dArray& other);
  /// Intersection. An empty other set empties this one; an empty set stays empty; otherwise the
  /// normalised intersection. Out-of-range coordinates leave the set unchanged.
  KvGePolygon2dArray& operator&=(const KvGePolygon2dArray& other);
  /// Difference, as the intersection with the complement of the other set. Deliberately, an
  /// empty other set has an empty complement and so empties this set.
  KvGePolygon2dArray& operator-=(const KvGePolygon2dArray& other);
  /// The union, as operator|=.
  KvGePolygon2dArray operator|(const KvGePolygon2dArray& other) const { return KvGePolygon2dArray(*this) |= other; }
  /// The intersection, as operator&=.
  KvGePolygon2dArray operator&(const KvGePolygon2dArray& other) const { return KvGePolygon2dArray(*this) &= other; }
  /// The difference, as operator-=.
  KvGePolygon2dArray operator-(const KvGePolygon2dArray& other) const { return KvGePolygon2dArray(*this) -= other; }

  /// Rewrites the rings into the normalised form of the region they enclose (self-crossings
  /// resolved, overlaps merged, clockwise rings on their own dropped). 1 on success; 0 when a
  /// coordinate is out of range, the set then unchanged. The further value is kept.
  int Normalize();
  /// A normalized copy (unchanged where Normalize fails).
  KvGePolygon2dArray Normalized() const {
    KvGePolygon2dArray copy(*this);
    copy.Normalize();
    return copy;
  }
  /// The centre of area of the region (holes subtracted, overlaps counted once); (0, 0) when
  /// the region has no area. A set beyond the coordinate range is taken ring by ring with
  /// the signed areas as they run.
  KvGePoint2d Schwerpunkt() const;
  /// The box of all vertices of all rings; the empty box for a set without vertices.
  KvGeBox2d BoundingBox() const;
  /// The box of all vertices transformed by m.
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const;

 private:
  /// mode 1 unites, mode 2 intersects; 1 on success, 0 (set unchanged) on failure.
  KVGE_NO_EXPORT int VereinigeOderDurchschnitt(const KvGePolygon2dArray& other, int mode);
  /// The complement: every ring reversed, after a counter-clockwise frame ring along the bounds
  /// of the coordinate range, so that it is a bounded set under the same counting rule. An empty
  /// set stays empty.
  KVGE_NO_EXPORT KvGePolygon2dArray& Negate();
  KvGePolygon2dArray operator-() const { return KvGePolygon2dArray(*this).Negate(); }

  std::int32_t m_Tag = 0;
};

/// Writes WKT, the ring closed by repeating its first point: "POLYGON ((x y, ..., x y))", or "POLYGON EMPTY".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePolygon2d& v);
/// Writes WKT, "POLYGON Z ((x y z, ..., x y z))", or "POLYGON Z EMPTY".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePolygon3d& v);
/// As KvGePolygon3d, followed by " height h".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePolygon23d& v);
/// Writes every ring as a polygon of its own, "GEOMETRYCOLLECTION (POLYGON ((...)), ...)": which rings are holes is
/// decided by the counting rule, not by the order.
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePolygon2dArray& v);
