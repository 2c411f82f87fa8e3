#include "geometry/intersection/KvGeIntrPoint2d.h"

#include "geometry/intersection/KvGeIntrCalculator2d.h"

KvGeIntrPoint2d::~KvGeIntrPoint2d() = default;
KvGeIntrPoint3d::~KvGeIntrPoint3d() = default;
KvGeIntrPart2d::~KvGeIntrPart2d() = default;
KvGeIntrPart3d::~KvGeIntrPart3d() = default;
KvGeIntrPoint2dArray::~KvGeIntrPoint2dArray() = default;
KvGeIntrPoint2dCO::~KvGeIntrPoint2dCO() = default;
KvGeIntrPoint3dCO::~KvGeIntrPoint3dCO() = default;
KvGeIntrCalculator2d::~KvGeIntrCalculator2d() = default;
KvGeIntrCalculator23d::~KvGeIntrCalculator23d() = default;

const KvGeIntrPoint2d KvGeIntrPoint2d::kNegInfinity(KvGePoint2d(0.0, 0.0), 0, 0, 0, -1e9, -1e9, 0, 0, 0);
const KvGeIntrPoint2d KvGeIntrPoint2d::kPosInfinity(KvGePoint2d(0.0, 0.0), 0, 0, 0, 1e9, 1e9, 0x7FFFFFFF, 0x7FFFFFFF,
                                                    0);
const KvGeIntrPoint3d KvGeIntrPoint3d::kNegInfinity(KvGePoint3d(0.0, 0.0, 0.0), 0, 0, 0, -1e9, -1e9, 0, 0, 0);
const KvGeIntrPoint3d KvGeIntrPoint3d::kPosInfinity(KvGePoint3d(0.0, 0.0, 0.0), 0, 0, 0, 1e9, 1e9, 0x7FFFFFFF,
                                                    0x7FFFFFFF, 0);

KvGeIntrPoint2d Min0(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b) { return KvGeDetail::MinOf0(a, b); }
KvGeIntrPoint2d Max0(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b) { return KvGeDetail::MaxOf0(a, b); }
KvGeIntrPoint2d Min1(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b) { return KvGeDetail::MinOf1(a, b); }
KvGeIntrPoint2d Max1(const KvGeIntrPoint2d& a, const KvGeIntrPoint2d& b) { return KvGeDetail::MaxOf1(a, b); }
KvGeIntrPoint3d Min0(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b) { return KvGeDetail::MinOf0(a, b); }
KvGeIntrPoint3d Max0(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b) { return KvGeDetail::MaxOf0(a, b); }
KvGeIntrPoint3d Min1(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b) { return KvGeDetail::MinOf1(a, b); }
KvGeIntrPoint3d Max1(const KvGeIntrPoint3d& a, const KvGeIntrPoint3d& b) { return KvGeDetail::MaxOf1(a, b); }

int KvGeIntrPoint2dCO::operator()(int a, int b) const {
  if (a == b) return 0;
  const KvGeIntrPoint2d& ra = m_Calculator->ElementAt(a);
  const KvGeIntrPoint2d& rb = m_Calculator->ElementAt(b);
  return m_Object == 0 ? ra.Compare0(rb) : ra.Compare1(rb);
}

int KvGeIntrPoint3dCO::operator()(int a, int b) const {
  if (a == b) return 0;
  const KvGeIntrPoint3d& ra = m_Calculator->ElementAt(a);
  const KvGeIntrPoint3d& rb = m_Calculator->ElementAt(b);
  return m_Object == 0 ? ra.Compare0(rb) : ra.Compare1(rb);
}
