// Compiled, never run, by scripts/check-headers.sh under the strict flags with both compilers in
// C++17 and C++20: every comparison a user writes on the value types must be unambiguous, also
// against the reversed forms that C++20 adds.
#include "UtilityGeometry.h"

template <class T>
int Compare(const T& a, const T& b) {
  return (a == b) + (a != b);
}

int CompareAll() {
  int n = 0;
  n += Compare(KvGeVector2(), KvGeVector2());
  n += Compare(KvGeVector3(), KvGeVector3());
  n += Compare(KvGeVector4(), KvGeVector4());
  n += Compare(KvGeMatrix2X2(), KvGeMatrix2X2());
  n += Compare(KvGeMatrix3X3(), KvGeMatrix3X3());
  n += Compare(KvGeMatrix4X4(), KvGeMatrix4X4());
  n += Compare(KvGeModMat2d(), KvGeModMat2d());
  n += Compare(KvGeModMat3d(), KvGeModMat3d());
  n += Compare(KvGeAngle(), KvGeAngle());
  n += Compare(KvGePoint2d(), KvGePoint2d());
  n += Compare(KvGePoint3d(), KvGePoint3d());
  n += Compare(KvGePoint23d(), KvGePoint23d());
  n += Compare(KvGeBox2d(), KvGeBox2d());
  n += Compare(KvGeBox3d(), KvGeBox3d());
  n += Compare(KvGeLine2d(), KvGeLine2d());
  n += Compare(KvGeLine3d(), KvGeLine3d());
  n += Compare(KvGePolyVert2d(), KvGePolyVert2d());
  n += Compare(KvGePoint2dArray(), KvGePoint2dArray());
  n += Compare(KvGePoint3dArray(), KvGePoint3dArray());
  n += Compare(KvGePolygon2d(), KvGePolygon2d());
  n += Compare(KvGePolygon23d(), KvGePolygon23d());
  n += Compare(KvGePolyline2d(), KvGePolyline2d());
  n += Compare(KvGeIntrPoint2d(), KvGeIntrPoint2d());
  n += Compare(KvGeIntrPoint3d(), KvGeIntrPoint3d());
  n += Compare(KvGeIntrPart2d(), KvGeIntrPart2d());
  n += Compare(KvGeIntrPart3d(), KvGeIntrPart3d());
  n += Compare(KvBtString(), KvBtString());
  n += Compare(KvBtRealArray(), KvBtRealArray());
  return n;
}
