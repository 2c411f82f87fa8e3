#pragma once
/// @file
/// Point sequences: KvGePoint2dArray and KvGePoint3dArray, on the dynamic array template.
///
/// Area, perimeter, orientation and centre of gravity read the points as a closed ring: point i
/// is joined to point (i + 1) mod n, with no closing duplicate expected (KvGePoint3dArray's
/// Orientate2d tolerates one). The signed area is positive for counter-clockwise order. The 3D
/// array answers the plane questions in plan (x and y) under the names ending in 2d.
///
/// KvGePoint2dArray::Serialize writes the library's one persisted format: the version word 1 and
/// one string of four-character "%4x" fields, x then y for each point, each a signed 16-bit
/// sign-and-magnitude number in tenths (the value rounded to 0.1, clamped to -3276.7 .. 3276.7;
/// the flag of a point at infinity is not stored). 1.2 is stored as three blanks and "c", -0.1
/// as "8001", 5000.0 as "7fff", -5000.0 as "ffff"; infinities are clamped like any value out of
/// range. A NaN coordinate has no code in the format: an array holding one is refused, nothing is
/// written and the archive goes into its failure state, so a stored array always loads back as
/// what was stored.
/// Loading accepts versions 1 and 2 and replaces the content by the decoded points; a remainder
/// shorter than 8 characters is ignored. Loading is fed untrusted bytes and never reads outside
/// the string: each field is read as by sscanf("%4x") on those four characters alone (leading
/// blanks skipped; a field with no hexadecimal digit at its start reads 0; an embedded zero byte
/// ends the field; what a sign or "0x" prefix makes of it is taken modulo 0x10000). A version
/// other than 1 or 2, or an archive that fails before the whole string is read, leaves the array
/// unchanged.

/// \file
/// Non-finite input and range: Area, Perimeter and Schwerpunkt propagate NaN; Area rescales when
/// its sums overflow, so rings near the largest double have their finite areas. The stored form
/// refuses an array holding NaN (nothing written, the archive fails) and clamps infinities. See
/// docs/non-finite-policy.md.

#include <initializer_list>
#include <iosfwd>

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

class KvBtArchive;
class KvGeBox2d;
class KvGeBox3d;
class KvGeModMat2d;
class KvGeModMat3d;

/// A sequence of plane points, read as a closed ring by the area, orientation and centroid members (positive area
/// counter-clockwise); it has the library's persisted format (Serialize).
class KVGE_API KvGePoint2dArray : public KvBtDynArray<KvGePoint2d> {
 public:
  KvGePoint2dArray() = default;
  /// The points in the order given: KvGePoint2dArray points{{0, 0}, {10, 0}}.
  KvGePoint2dArray(std::initializer_list<KvGePoint2d> points) : KvBtDynArray(points) {}
  /// Copies the points.
  KvGePoint2dArray(const KvGePoint2dArray&) = default;
  /// Takes over the points of the other array.
  KvGePoint2dArray(KvGePoint2dArray&&) noexcept = default;
  /// Copies the points.
  KvGePoint2dArray& operator=(const KvGePoint2dArray&) = default;
  /// Takes over the points of the other array.
  KvGePoint2dArray& operator=(KvGePoint2dArray&&) = default;
  ~KvGePoint2dArray() override;

  /// 0.5 * sum of (y(i) + y(i+1)) (x(i) - x(i+1)); 0 for an empty array.
  double Area() const;
  /// sgn(Area()): 1 counter-clockwise, -1 clockwise, 0 degenerate.
  int Sense() const;
  /// The whole sequence reversed.
  KvGePoint2dArray& Invert();
  /// A reversed copy.
  KvGePoint2dArray Inverted() const;
  /// Reverses the order while keeping the first point first, unless Sense() equals sense.
  KvGePoint2dArray& Orientate(int sense);
  /// An orientated copy.
  KvGePoint2dArray Orientated(int sense) const;
  /// Starts at the lowest point (IndexMinYX) and runs counter-clockwise; a ring of area 0 is
  /// reversed as well, deliberately.
  KvGePoint2dArray& Normalize();
  /// A normalized copy.
  KvGePoint2dArray Normalized() const;
  /// The point with the smallest x, x values within 0.001 counting as equal and broken by the
  /// smaller y (exactly); the first of equal points wins; -1 for an empty array.
  int IndexMinXY() const;
  /// The same with y first.
  int IndexMinYX() const;
  /// Sets x of every point to v.
  KvGePoint2dArray& SetX(double v);
  /// Sets y of every point to v.
  KvGePoint2dArray& SetY(double v);
  /// The closed perimeter, closing edge included.
  double Perimeter() const;
  /// The centre of gravity of the ring's area (triangle fan from the origin); (0, 0) when the
  /// total area is exactly degenerate (within 1e-15).
  KvGePoint2d Schwerpunkt() const;
  /// The box of the points; the empty box for an empty array.
  KvGeBox2d BoundingBox() const;
  /// The box of the points transformed by m.
  KvGeBox2d BoundingBox(const KvGeModMat2d& m) const;
  /// Transforms every point by m.
  KvGePoint2dArray& Transform(const KvGeModMat2d& m);
  /// A transformed copy.
  KvGePoint2dArray Transformed(const KvGeModMat2d& m) const;
  /// In place by x then y (or y then x), coordinates tying when iqrkor says they are equal; not
  /// stable.
  void sortByXY();
  /// In place by y then x, likewise.
  void sortByYX();

  /// Stores (version 1, one string of "%4x" fields in tenths) or loads (versions 1 and 2; a failed load leaves the
  /// array unchanged) by the direction of the archive.
  virtual void Serialize(KvBtArchive& ar);
};

/// A sequence of space points; the plane questions are answered in plan (x and y) by the members ending in 2d.
class KVGE_API KvGePoint3dArray : public KvBtDynArray<KvGePoint3d> {
 public:
  KvGePoint3dArray() = default;
  /// The points in the order given: KvGePoint3dArray points{{0, 0, 0}, {10, 0, 5}}.
  KvGePoint3dArray(std::initializer_list<KvGePoint3d> points) : KvBtDynArray(points) {}
  /// Copies the points.
  KvGePoint3dArray(const KvGePoint3dArray&) = default;
  /// Takes over the points of the other array.
  KvGePoint3dArray(KvGePoint3dArray&&) noexcept = default;
  /// Copies the points.
  KvGePoint3dArray& operator=(const KvGePoint3dArray&) = default;
  /// Takes over the points of the other array.
  KvGePoint3dArray& operator=(KvGePoint3dArray&&) = default;
  ~KvGePoint3dArray() override;

  /// The signed plan area of the ring, positive counter-clockwise; 0 for an empty array.
  double Area2d() const;
  /// sgn(Area2d()): 1 counter-clockwise, -1 clockwise, 0 degenerate.
  int Sense2d() const;
  /// The whole sequence reversed.
  KvGePoint3dArray& Invert();
  /// A reversed copy.
  KvGePoint3dArray Inverted() const;
  /// As the plane Orientate, in plan; a last point equal to the first (same kind, within 0.001)
  /// is set aside meanwhile, so a closed ring keeps its closing point last.
  KvGePoint3dArray& Orientate2d(int sense);
  /// An orientated copy.
  KvGePoint3dArray Orientated2d(int sense) const;
  /// Starts at the lowest point (IndexMinYX) and runs counter-clockwise in plan, as the plane Normalize.
  KvGePoint3dArray& Normalize2d();
  /// A normalized copy.
  KvGePoint3dArray Normalized2d() const;
  /// The point with the smallest x, x within 0.001 counting as equal and broken by the smaller y; -1 for an empty
  /// array.
  int IndexMinXY() const;
  /// The same with y first.
  int IndexMinYX() const;
  /// Sets x of every point to v.
  KvGePoint3dArray& SetX(double v);
  /// Sets y of every point to v.
  KvGePoint3dArray& SetY(double v);
  /// Sets z of every point to v.
  KvGePoint3dArray& SetZ(double v);
  /// The closed perimeter in plan, closing edge included.
  double Perimeter2d() const;
  /// The closed perimeter in space, closing edge included.
  double Perimeter3d() const;
  /// 0.5 * sum of p(i) x p(i+1): the area vector of the ring (normal by the right-hand rule,
  /// length the area).
  KvGePoint3d NormalVector() const;
  /// The area of the ring in space: the length of NormalVector().
  double Area3d() const;
  /// The centre of gravity in space: the fan triangles from the first point, each weighted by
  /// the length of its area vector projected on the ring's normal (so a planar ring gets its
  /// area centroid); the mean of the points when the ring has no area.
  KvGePoint3d Schwerpunkt() const;
  /// The box of the points; the empty box for an empty array.
  KvGeBox3d BoundingBox() const;
  /// The box of the points transformed by m.
  KvGeBox3d BoundingBox(const KvGeModMat3d& m) const;
  /// Transforms every point by m.
  KvGePoint3dArray& Transform(const KvGeModMat3d& m);
  /// A transformed copy.
  KvGePoint3dArray Transformed(const KvGeModMat3d& m) const;
  /// In place by x then y, coordinates tying when iqrkor says they are equal; not stable.
  void sortByXY();
  /// In place by y then x, likewise.
  void sortByYX();
};

/// Writes WKT, "MULTIPOINT ((x y), ...)", or "MULTIPOINT EMPTY".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePoint2dArray& v);
/// Writes WKT, "MULTIPOINT Z ((x y z), ...)", or "MULTIPOINT Z EMPTY".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvGePoint3dArray& v);
