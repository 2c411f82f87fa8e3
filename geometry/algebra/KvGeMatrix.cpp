#include "geometry/algebra/KvGeMatrix.h"

KvGeMatrix2X2::~KvGeMatrix2X2() = default;
KvGeMatrix3X3::~KvGeMatrix3X3() = default;
KvGeMatrix4X4::~KvGeMatrix4X4() = default;

double KvGeMatrix2X2::m_vDummy = 0.0;
double KvGeMatrix3X3::m_vDummy = 0.0;
double KvGeMatrix4X4::m_vDummy = 0.0;

KvGeMatrix2X2& KvGeMatrix2X2::Set(double a, double b) { return Set(KvGeVector2(a, b)); }
KvGeMatrix2X2& KvGeMatrix2X2::Set(double m00, double m01, double m10, double m11) {
  const double e[] = {m00, m01, m10, m11};
  return Set(e);
}
KvGeMatrix2X2& KvGeMatrix2X2::Set(const KvGeVector2& r0, const KvGeVector2& r1) { return SetRow(0, r0).SetRow(1, r1); }

KvGeMatrix3X3& KvGeMatrix3X3::Set(double a, double b, double c) { return Set(KvGeVector3(a, b, c)); }
KvGeMatrix3X3& KvGeMatrix3X3::Set(double m00, double m01, double m02, double m10, double m11, double m12, double m20,
                                  double m21, double m22) {
  const double e[] = {m00, m01, m02, m10, m11, m12, m20, m21, m22};
  return Set(e);
}
KvGeMatrix3X3& KvGeMatrix3X3::Set(const KvGeVector3& r0, const KvGeVector3& r1, const KvGeVector3& r2) {
  return SetRow(0, r0).SetRow(1, r1).SetRow(2, r2);
}

KvGeMatrix4X4& KvGeMatrix4X4::Set(double a, double b, double c, double d) { return Set(KvGeVector4(a, b, c, d)); }
KvGeMatrix4X4& KvGeMatrix4X4::Set(double m00, double m01, double m02, double m03, double m10, double m11, double m12,
                                  double m13, double m20, double m21, double m22, double m23, double m30, double m31,
                                  double m32, double m33) {
  const double e[] = {m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33};
  return Set(e);
}
KvGeMatrix4X4& KvGeMatrix4X4::Set(const KvGeVector4& r0, const KvGeVector4& r1, const KvGeVector4& r2,
                                  const KvGeVector4& r3) {
  return SetRow(0, r0).SetRow(1, r1).SetRow(2, r2).SetRow(3, r3);
}

void KvGeMatrix4X4::ConvertToPmat(double* out) const {
  for (unsigned k = 0; k < 16; ++k) out[k] = m_Elements[k];
}

void KvGeMatrix4X4::ConvertToPmat4x4(double* out) const {
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j) out[i * 4 + j] = At(j, i);
}

const KvGeMatrix4X4& KvGeMatrix4X4_Identity() {
  static const KvGeMatrix4X4 identity(1.0);
  return identity;
}

const KvGeMatrix4X4& KvGeMatrix4X4_Zero() {
  static const KvGeMatrix4X4 zero;
  return zero;
}

double Determinate(const KvGeVector3& a, const KvGeVector3& b, const KvGeVector3& c) {
  return KvGeMatrix3X3(a, b, c).Det();
}

KvGeVector4 Normal(const KvGeVector4& a, const KvGeVector4& b, const KvGeVector4& c) {
  const KvGeMatrix4X4 m(a, b, c, KvGeVector4());
  KvGeVector4 r;
  for (unsigned k = 0; k < 4; ++k) {
    const double minor = m.SubMatrix3X3(3, k).Det();
    r[k] = (k % 2 == 0) ? -minor : minor;
  }
  return r;
}

double Determinate(const KvGeVector4& a, const KvGeVector4& b, const KvGeVector4& c, const KvGeVector4& d) {
  return KvGeMatrix4X4(a, b, c, d).Det();
}
