#include "geometry/algebra/KvGeModMat.h"

#include <cmath>

KvGeModMat3d::~KvGeModMat3d() = default;
KvGeModMat2d::~KvGeModMat2d() = default;

KvGeModMat3d& KvGeModMat3d::SetIdent() {
  Set(1.0);
  return *this;
}

KvGeModMat3d& KvGeModMat3d::SetTran(double dx, double dy, double dz) {
  Set(1.0);
  (*this)(3, 0) = dx;
  (*this)(3, 1) = dy;
  (*this)(3, 2) = dz;
  return *this;
}

KvGeModMat3d& KvGeModMat3d::SetScale(double sx, double sy, double sz) {
  Set(sx, sy, sz, 1.0);
  return *this;
}

KvGeModMat3d& KvGeModMat3d::SetRotate(const KvGeAngle& a, const KvGePoint3d& axis) {
  KvGePoint3d n = axis;
  if (!n.Normalize()) return SetIdent();
  const double c = a.Cos(), s = a.Sin(), t = 1.0 - c;
  const double x = n.x, y = n.y, z = n.z;
  Set(t * x * x + c, t * x * y + s * z, t * x * z - s * y, 0.0,  //
      t * x * y - s * z, t * y * y + c, t * y * z + s * x, 0.0,  //
      t * x * z + s * y, t * y * z - s * x, t * z * z + c, 0.0,  //
      0.0, 0.0, 0.0, 1.0);
  return *this;
}

KvGeModMat3d& KvGeModMat3d::SetRotRel(const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis) {
  return SetTran(-centre).CatRotate(a, axis).CatTran(centre);
}

KvGeModMat3d& KvGeModMat3d::SetEnlRel(double sx, double sy, double sz, const KvGePoint3d& centre) {
  return SetTran(-centre).CatScale(sx, sy, sz).CatTran(centre);
}

KvGeModMat3d& KvGeModMat3d::Cat(const KvGeMatrix4X4& m) {
  KvGeMatrix4X4::operator=(*this* m);
  return *this;
}

KvGeModMat2d& KvGeModMat2d::SetIdent() {
  Set(1.0);
  return *this;
}

KvGeModMat2d& KvGeModMat2d::SetTran(double dx, double dy) {
  Set(1.0);
  (*this)(2, 0) = dx;
  (*this)(2, 1) = dy;
  return *this;
}

KvGeModMat2d& KvGeModMat2d::SetRotate(const KvGeAngle& a) {
  const double c = a.Cos(), s = a.Sin();
  Set(c, s, 0.0, -s, c, 0.0, 0.0, 0.0, 1.0);
  return *this;
}

KvGeModMat2d& KvGeModMat2d::SetRotRel(const KvGeAngle& a, const KvGePoint2d& centre) {
  return SetTran(-centre).CatRotate(a).CatTran(centre);
}

KvGeModMat2d& KvGeModMat2d::SetScale(double sx, double sy) {
  Set(sx, sy, 1.0);
  return *this;
}

KvGeModMat2d& KvGeModMat2d::SetEnlRel(double sx, double sy, const KvGePoint2d& centre) {
  return SetTran(-centre).CatScale(sx, sy).CatTran(centre);
}

KvGeModMat2d& KvGeModMat2d::Cat(const KvGeMatrix3X3& m) {
  KvGeMatrix3X3::operator=(*this* m);
  return *this;
}

void SetIdent(KvGeModMat3d& m) { m.SetIdent(); }
void SetTran(KvGeModMat3d& m, double dx, double dy, double dz) { m.SetTran(dx, dy, dz); }
void SetRotate(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& axis) { m.SetRotate(a, axis); }
void SetScale(KvGeModMat3d& m, double sx, double sy, double sz) { m.SetScale(sx, sy, sz); }
void SetEnlRel(KvGeModMat3d& m, double sx, double sy, double sz, const KvGePoint3d& centre) {
  m.SetEnlRel(sx, sy, sz, centre);
}
void SetRotRel(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis) {
  m.SetRotRel(a, centre, axis);
}
void CatTran(KvGeModMat3d& m, double dx, double dy, double dz) { m.CatTran(dx, dy, dz); }
void CatRotate(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& axis) { m.CatRotate(a, axis); }
void CatScale(KvGeModMat3d& m, double sx, double sy, double sz) { m.CatScale(sx, sy, sz); }
void CatEnlRel(KvGeModMat3d& m, double sx, double sy, double sz, const KvGePoint3d& centre) {
  m.CatEnlRel(sx, sy, sz, centre);
}
void CatRotRel(KvGeModMat3d& m, const KvGeAngle& a, const KvGePoint3d& centre, const KvGePoint3d& axis) {
  m.CatRotRel(a, centre, axis);
}

void MatMMat(const KvGeModMat3d& a, const KvGeModMat3d& b, KvGeModMat3d& out) { out = a * b; }
void CatMat(KvGeModMat3d& m, const KvGeModMat3d& n) { m.Cat(n); }
void XFormPt(const KvGePoint3d& p, const KvGeModMat3d& m, KvGePoint3d& out) { out = p.Transformed(m); }

int Invert(const KvGeModMat3d& src, KvGeModMat3d& dst, double& det) {
  dst = src;
  det = dst.Det();
  return dst.Invert();
}

void Transpose(KvGeModMat3d& m) { m.Transpose(); }

KvGeModMat3d ZAchsenDrehmatrix(const KvGePoint3d& n) {
  KvGeModMat3d m;
  KvGePoint3d u = n;
  if (!u.Normalize()) return m;
  const double x = u.x, y = u.y, z = u.z;
  const double h = std::sqrt(x * x + y * y);
  if (IsEqual(h, 0.0, kKvGeLinearTol)) return m;
  const double k = 1.0 / h;
  m.Set(-y * k, -x * z * k, x, 0.0,  //
        x * k, -y * z * k, y, 0.0,   //
        0.0, h, z, 0.0,              //
        0.0, 0.0, 0.0, 1.0);
  return m;
}

int GetRotationMatrix(const KvGePoint3d& p0, const KvGePoint3d& p1, const KvGePoint3d& p2, const KvGePoint3d& p3,
                      const KvGePoint3d& p4, KvGeMatrix4X4& m) {
  KvGePoint3d a[3], b[3];
  if (!OrthonormalBasis(p0, p1, p0, p3, a[0], a[1], a[2])) return 0;
  if (!OrthonormalBasis(p0, p2, p0, p4, b[0], b[1], b[2])) return 0;
  // (A's axes as columns) x (B's axes as rows): a row vector along A's axis k comes out along B's
  // axis k.
  KvGeMatrix4X4 columnsA(1.0), rowsB(1.0);
  for (unsigned k = 0; k < 3; ++k) {
    for (unsigned i = 0; i < 3; ++i) {
      columnsA(i, k) = a[k][i];
      rowsB(k, i) = b[k][i];
    }
  }
  KvGeMatrix4X4 r = columnsA * rowsB;
  const KvGeVector4 moved = KvGeVector4(p0.x, p0.y, p0.z, 0.0) * r;
  r(3, 0) = p0.x - moved.x;
  r(3, 1) = p0.y - moved.y;
  r(3, 2) = p0.z - moved.z;
  m = r;
  return 1;
}

KvGeModMat3dpArray::~KvGeModMat3dpArray() {
  const int n = GetSize();
  for (int i = 0; i + 1 < n; ++i) {
    KvGeModMat3d* p = m_pData[i];
    if (p != nullptr && p != m_pData[i + 1]) p->~KvGeModMat3d();
  }
  if (n > 0 && m_pData[n - 1] != nullptr) m_pData[n - 1]->~KvGeModMat3d();
}
