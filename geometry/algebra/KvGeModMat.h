#pragma once
/// @file
/// Modelling matrices: affine transforms of points in space (KvGeModMat3d, a 4x4 matrix) and in
/// the plane (KvGeModMat2d, a 3x3 matrix).
///
/// Points are row vectors: (x, y, z, 1) x M, so the translation stands in the last row. A Set...
/// member replaces the matrix by an elementary transform E; a Cat... member sets it to
/// (matrix x E), so after A.Cat(B) a point undergoes A first, then B. A positive angle turns
/// counter-clockwise seen from the tip of the axis; a rotation about a null axis is the identity.
/// The relative forms are composed as translation by -centre, the transform, translation by
/// +centre. Unlike the plain matrices, a default modelling matrix is the identity.
///
/// KvGeModMat3dpArray holds pointers to matrices that others own. Its destructor ends the life of
/// the pointed matrices without releasing their storage: for indices 0 .. n - 2 it destroys each
/// pointee that differs from the pointer at the next index (a run of equal neighbours is
/// destroyed once), then the last. Equal pointers that are not neighbours are not detected; these
/// rules are deliberate. Only elements in use are read: an empty array destroys nothing, even
/// when it still has storage, and a null pointer is skipped.

/// \file
/// Non-finite input: a rotation axis that is not finite has no direction and gives the identity, as
/// a null axis does; an axis of any finite length is a direction. NaN angles, scales and offsets
/// propagate into the matrix. See docs/non-finite-policy.md.

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/algebra/KvGeMatrix.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint3d.h"

/// An affine transform of space points as a 4x4 matrix (row vectors, translation in the last row); the identity by
/// default. Cat... appends a transform (this first, then the new one).
class KVGE_API KvGeModMat3d : public KvGeMatrix4X4 {
 public:
  /// The identity.
  KvGeModMat3d() : KvGeMatrix4X4(1.0) {}
  /// s on the diagonal, 0 elsewhere.
  explicit KvGeModMat3d(double s) : KvGeMatrix4X4(s) {}
  /// a, b, c and d on the diagonal.
  KvGeModMat3d(double a, double b, double c, double d) : KvGeMatrix4X4(a, b, c, d) {}
  /// The elements in row order.
  KvGeModMat3d(double m00, double m01, double m02, double m03, double m10, double m11, double m12, double m13,
               double m20, double m21, double m22, double m23, double m30, double m31, double m32, double m33)
      : KvGeMatrix4X4(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33) {}
  /// 16 doubles in row order.
  explicit KvGeModMat3d(const double* elements) { Set(elements); }
  /// The plain matrix as a modelling matrix.
  KvGeModMat3d(const KvGeMatrix4X4& m) : KvGeMatrix4X4(m) {}  // NOLINT: a plain matrix converts
  /// Copies the elements.
  KvGeModMat3d(const KvGeModMat3d&) = default;
  /// Copies the elements.
  KvGeModMat3d& operator=(const KvGeModMat3d&) = default;
  ~KvGeModMat3d() override;

  /// Replaces the matrix by the identity.
  KvGeModMat3d& SetIdent();
  /// Replaces the matrix by the translation (dx, dy, dz).
  KvGeModMat3d& SetTran(double dx, double dy, double dz);
  /// Replaces the matrix by the translation by d.
  KvGeModMat3d& SetTran(const KvGePoint3d& d) { return SetTran(d.x, d.y, d.z); }
  /// Replaces the matrix by the scaling (sx, sy, sz) about the origin.
  KvGeModMat3d& SetScale(double sx, double sy, double sz);
  /// Rotation by a about the axis through the origin; rows (row-vector form, n the unit axis,
  /// c = cos a, s = sin a, t = 1 - c): (t x x + c, t x y + s z, t x z - s y), (t x y - s z,
  /// t y y + c, t y z + s x), (t x z + s y, t y z - s x, t z z + c). A null axis gives the identity.
  KvGeModMat3d& SetRotate(const KvGeAngle& a, const KvGePoint3d& axis);
  /// Replaces the matrix by the rotation by a about the axis through centre.
  KvGeModMat3d& SetRotRel(const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis);
  /// Replaces the matrix by the scaling (sx, sy, sz) about centre.
  KvGeModMat3d& SetEnlRel(double sx, double sy, double sz, const KvGePoint3d& centre);

  /// this = this x m: m acts after the present transform.
  KvGeModMat3d& Cat(const KvGeMatrix4X4& m);
  /// Appends the translation (dx, dy, dz).
  KvGeModMat3d& CatTran(double dx, double dy, double dz) { return Cat(KvGeModMat3d().SetTran(dx, dy, dz)); }
  /// Appends the translation by d.
  KvGeModMat3d& CatTran(const KvGePoint3d& d) { return CatTran(d.x, d.y, d.z); }
  /// Appends the scaling about the origin.
  KvGeModMat3d& CatScale(double sx, double sy, double sz) { return Cat(KvGeModMat3d().SetScale(sx, sy, sz)); }
  /// Appends the rotation by a about the axis through the origin (identity for a null axis).
  KvGeModMat3d& CatRotate(const KvGeAngle& a, const KvGePoint3d& axis) {
    return Cat(KvGeModMat3d().SetRotate(a, axis));
  }
  /// Appends the rotation by a about the axis through centre.
  KvGeModMat3d& CatRotRel(const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis) {
    return Cat(KvGeModMat3d().SetRotRel(a, centre, axis));
  }
  /// Appends the scaling about centre.
  KvGeModMat3d& CatEnlRel(double sx, double sy, double sz, const KvGePoint3d& centre) {
    return Cat(KvGeModMat3d().SetEnlRel(sx, sy, sz, centre));
  }
};

/// An affine transform of plane points as a 3x3 matrix (row vectors, translation in the last row); the identity by
/// default. Cat... appends a transform (this first, then the new one).
class KVGE_API KvGeModMat2d : public KvGeMatrix3X3 {
 public:
  /// The identity.
  KvGeModMat2d() : KvGeMatrix3X3(1.0) {}
  /// The plain matrix as a modelling matrix.
  KvGeModMat2d(const KvGeMatrix3X3& m) : KvGeMatrix3X3(m) {}  // NOLINT: a plain matrix converts
  /// Copies the elements.
  KvGeModMat2d(const KvGeModMat2d&) = default;
  /// Copies the elements.
  KvGeModMat2d& operator=(const KvGeModMat2d&) = default;
  ~KvGeModMat2d() override;

  /// Replaces the matrix by the identity.
  KvGeModMat2d& SetIdent();
  /// Replaces the matrix by the translation (dx, dy).
  KvGeModMat2d& SetTran(double dx, double dy);
  /// Replaces the matrix by the translation by d.
  KvGeModMat2d& SetTran(const KvGePoint2d& d) { return SetTran(d.x, d.y); }
  /// Rows (cos a, sin a, 0), (-sin a, cos a, 0), (0, 0, 1).
  KvGeModMat2d& SetRotate(const KvGeAngle& a);
  /// Replaces the matrix by the rotation by a about centre.
  KvGeModMat2d& SetRotRel(const KvGeAngle& a, const KvGePoint2d& centre);
  /// Replaces the matrix by the scaling (sx, sy) about the origin.
  KvGeModMat2d& SetScale(double sx, double sy);
  /// Replaces the matrix by the scaling (sx, sy) about centre.
  KvGeModMat2d& SetEnlRel(double sx, double sy, const KvGePoint2d& centre);

  /// this = this x m: m acts after the present transform.
  KvGeModMat2d& Cat(const KvGeMatrix3X3& m);
  /// Appends the translation (dx, dy).
  KvGeModMat2d& CatTran(double dx, double dy) { return Cat(KvGeModMat2d().SetTran(dx, dy)); }
  /// Appends the translation by d.
  KvGeModMat2d& CatTran(const KvGePoint2d& d) { return CatTran(d.x, d.y); }
  /// Appends the rotation by a about the origin.
  KvGeModMat2d& CatRotate(const KvGeAngle& a) { return Cat(KvGeModMat2d().SetRotate(a)); }
  /// Appends the rotation by a about centre.
  KvGeModMat2d& CatRotRel(const KvGeAngle& a, const KvGePoint2d& centre) {
    return Cat(KvGeModMat2d().SetRotRel(a, centre));
  }
  /// Appends the scaling about the origin.
  KvGeModMat2d& CatScale(double sx, double sy) { return Cat(KvGeModMat2d().SetScale(sx, sy)); }
  /// Appends the scaling about centre.
  KvGeModMat2d& CatEnlRel(double sx, double sy, const KvGePoint2d& centre) {
    return Cat(KvGeModMat2d().SetEnlRel(sx, sy, centre));
  }
};

static_assert(sizeof(KvGeModMat3d) == sizeof(KvGeMatrix4X4), "KvGeModMat3d adds no data");
static_assert(sizeof(KvGeModMat2d) == sizeof(KvGeMatrix3X3), "KvGeModMat2d adds no data");

/// The members of the same names, on m.
KVGE_API void SetIdent(KvGeModMat3d& m);
/// m.SetTran(dx, dy, dz).
KVGE_API void SetTran(KvGeModMat3d& m, double dx, double dy, double dz);
/// m.SetRotate(a, axis).
KVGE_API void SetRotate(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& axis);
/// m.SetScale(sx, sy, sz).
KVGE_API void SetScale(KvGeModMat3d& m, double sx, double sy, double sz);
/// m.SetEnlRel(sx, sy, sz, centre).
KVGE_API void SetEnlRel(KvGeModMat3d& m, double sx, double sy, double sz, const KvGePoint3d& centre);
/// m.SetRotRel(a, centre, axis).
KVGE_API void SetRotRel(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis);
/// m.CatTran(dx, dy, dz).
KVGE_API void CatTran(KvGeModMat3d& m, double dx, double dy, double dz);
/// m.CatRotate(a, axis).
KVGE_API void CatRotate(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& axis);
/// m.CatScale(sx, sy, sz).
KVGE_API void CatScale(KvGeModMat3d& m, double sx, double sy, double sz);
/// m.CatEnlRel(sx, sy, sz, centre).
KVGE_API void CatEnlRel(KvGeModMat3d& m, double sx, double sy, double sz, const KvGePoint3d& centre);
/// m.CatRotRel(a, centre, axis).
KVGE_API void CatRotRel(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis);
/// out = a x b.
KVGE_API void MatMMat(const KvGeModMat3d& a, const KvGeModMat3d& b, KvGeModMat3d& out);
/// m = m x n.
KVGE_API void CatMat(KvGeModMat3d& m, const KvGeModMat3d& n);
/// out = p transformed by m.
KVGE_API void XFormPt(const KvGePoint3d& p, const KvGeModMat3d& m, KvGePoint3d& out);
/// dst = src, det = its determinant, then dst is inverted in place; 1 on success, 0 when singular
/// (dst then stays a copy of src).
KVGE_API int Invert(const KvGeModMat3d& src, KvGeModMat3d& dst, double& det);
/// Transposes m in place.
KVGE_API void Transpose(KvGeModMat3d& m);
/// The rotation that carries the direction n onto the z axis: its columns are a horizontal unit
/// vector perpendicular to n, the unit vector perpendicular to both, and n. A null direction, or
/// one within 0.001 of vertical (upward or downward), gives the identity: a downward direction is
/// deliberately not flipped.
KVGE_API KvGeModMat3d ZAchsenDrehmatrix(const KvGePoint3d& n);
/// The rigid motion about p0 that carries the frame of OrthonormalBasis(p0, p1, p0, p3) onto that
/// of OrthonormalBasis(p0, p2, p0, p4), axis to axis, with p0 as fixed point. 0 and m unchanged
/// when either frame cannot be built.
KVGE_API int GetRotationMatrix(const KvGePoint3d& p0, const KvGePoint3d& p1, const KvGePoint3d& p2,
                               const KvGePoint3d& p3, const KvGePoint3d& p4, KvGeMatrix4X4& m);

/// Pointers to modelling matrices owned elsewhere; the destructor ends the life of the pointees without releasing their
/// storage (a run of equal neighbours once, null pointers skipped).
class KVGE_API KvGeModMat3dpArray : public KvBtArray<KvGeModMat3d*, KvGeModMat3d*> {
 public:
  KvGeModMat3dpArray() = default;
  /// Copies the pointers (not the matrices).
  KvGeModMat3dpArray(const KvGeModMat3dpArray&) = default;
  /// Copies the pointers (not the matrices).
  KvGeModMat3dpArray& operator=(const KvGeModMat3dpArray&) = default;
  ~KvGeModMat3dpArray() override;
};
