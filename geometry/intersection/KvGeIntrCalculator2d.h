#pragma once
/// @file
/// Intersection calculators: collect the intersection records of two objects, order them along
/// each object and cut each object into typed parts between consecutive records.
///
/// A new calculator holds the two sentinels kNegInfinity and kPosInfinity, so every order begins
/// and ends with them and the parts cover the whole object. Sorting builds a permutation of the
/// records (quicksort, middle entry as pivot above 8 entries, exchange sort below, heap sort for
/// a range split too deeply, so never quadratic; not stable). Cutting walks the n records in the
/// order held (n - 1 parts) and sums the crossing counts with respect to the other
/// object (the crossover is deliberate: walking along object 0 counts how it crosses object 1,
/// CutCode1). A part whose end parameters are equal within 0.001 has type 0 (no length; segment
/// indices are not compared); otherwise the running count s gives +1 (inside) when s <= -2, 0
/// (on the boundary) when s = -1 and -1 (outside) when s >= 0.
///
/// Accessors clamp: an index at or beyond the size (an unsigned index "below 0" included) gives
/// the last element, and so does a permutation entry outside the record array. Reading parts
/// before any Calculate call gives a default part rather than touching missing storage.
///
/// The calculator is built once per query: records, parts and permutations keep their storage
/// between sorts and cuts, and growing follows the arrays' geometric policy. Copies are deep and
/// own their own permutations.

/// \file
/// Non-finite input: records with NaN parameters come last in each order; the running crossing
/// count is 64-bit and cannot overflow. See docs/non-finite-policy.md.

#include <memory>

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvTlPermVector.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"

class KvGeIntrCalculator2d;
class KvGeIntrCalculator23d;

/// Orders two record indices of a calculator along object 0 or 1 (Compare0 or Compare1); equal
/// indices compare 0.
class KVGE_API KvGeIntrPoint2dCO {
 public:
  /// The calculator whose records are ordered.
  using Calculator = KvGeIntrCalculator2d;
  /// Orders the records of calculator along object 0 or 1.
  KvGeIntrPoint2dCO(const KvGeIntrCalculator2d& calculator, int object) : m_Calculator(&calculator), m_Object(object) {}
  virtual ~KvGeIntrPoint2dCO();
  /// -1, 0 or 1 as record a sorts before, with or after record b (parameters within 0.001 equal).
  int operator()(int a, int b) const;

 private:
  const KvGeIntrCalculator2d* m_Calculator;
  int m_Object;
};

/// Orders two record indices of a space calculator along object 0 or 1; equal indices compare 0.
class KVGE_API KvGeIntrPoint3dCO {
 public:
  /// The calculator whose records are ordered.
  using Calculator = KvGeIntrCalculator23d;
  /// Orders the records of calculator along object 0 or 1.
  KvGeIntrPoint3dCO(const KvGeIntrCalculator23d& calculator, int object)
      : m_Calculator(&calculator), m_Object(object) {}
  virtual ~KvGeIntrPoint3dCO();
  /// -1, 0 or 1 as record a sorts before, with or after record b (parameters within 0.001 equal).
  int operator()(int a, int b) const;

 private:
  const KvGeIntrCalculator23d* m_Calculator;
  int m_Object;
};

namespace KvGeDetail {

/// The members every intersection calculator has: the records (an array of R, beginning with the two sentinels), their
/// orders along object 0 and 1 and the parts between consecutive records. A part with end parameters within 0.001 has
/// type 0; otherwise the running crossing count s gives +1 (s <= -2), 0 (s = -1) or -1 (s >= 0).
template <class Records, class R, class Part, class CO>
class IntrCalculatorBase : public Records {
 public:
  /// Only the two sentinels kNegInfinity and kPosInfinity.
  IntrCalculatorBase() : m_Perm0(new KvTlPermVector), m_Perm1(new KvTlPermVector) {
    this->Add(R::kNegInfinity);
    this->Add(R::kPosInfinity);
  }
  /// A deep copy, with its own permutations.
  IntrCalculatorBase(const IntrCalculatorBase& o)
      : Records(o),
        m_Parts0(o.m_Parts0),
        m_Parts1(o.m_Parts1),
        m_Perm0(new KvTlPermVector(*o.m_Perm0)),
        m_Perm1(new KvTlPermVector(*o.m_Perm1)) {}
  /// A deep copy, with its own permutations.
  IntrCalculatorBase& operator=(const IntrCalculatorBase& o) {
    if (this != &o) {
      Records::operator=(o);
      m_Parts0 = o.m_Parts0;
      m_Parts1 = o.m_Parts1;
      *m_Perm0 = *o.m_Perm0;
      *m_Perm1 = *o.m_Perm1;
    }
    return *this;
  }

  /// Sorts the records along both objects and cuts both into parts.
  void Calculate() {
    SortIntrPoints0();
    CalculateParts0();
    SortIntrPoints1();
    CalculateParts1();
  }
  /// Sorts along object 0 and cuts object 0 into parts.
  void Calculate0() {
    SortIntrPoints0();
    CalculateParts0();
  }
  /// Sorts along object 1 and cuts object 1 into parts.
  void Calculate1() {
    SortIntrPoints1();
    CalculateParts1();
  }

  /// The number of parts (not of records).
  int GetSize0() const { return m_Parts0.GetSize(); }
  /// The number of parts along object 1.
  int GetSize1() const { return m_Parts1.GetSize(); }
  /// The i-th record in the order along object 0 or 1.
  R& Element0(unsigned i) { return Record(*m_Perm0, i); }
  /// The i-th record in the order along object 0; an index out of range gives the last.
  const R& Element0(unsigned i) const { return Record(*m_Perm0, i); }
  /// The i-th record in the order along object 1; an index out of range gives the last.
  R& Element1(unsigned i) { return Record(*m_Perm1, i); }
  /// The i-th record in the order along object 1; an index out of range gives the last.
  const R& Element1(unsigned i) const { return Record(*m_Perm1, i); }
  /// The i-th part along object 0 or 1.
  Part& Part0(unsigned i) { return m_Parts0.ElementAt(Clamp(i, m_Parts0.GetSize())); }
  /// The i-th part along object 0; an index out of range gives the last.
  const Part& Part0(unsigned i) const { return m_Parts0.ElementAt(Clamp(i, m_Parts0.GetSize())); }
  /// The i-th part along object 1; an index out of range gives the last.
  Part& Part1(unsigned i) { return m_Parts1.ElementAt(Clamp(i, m_Parts1.GetSize())); }
  /// The i-th part along object 1; an index out of range gives the last.
  const Part& Part1(unsigned i) const { return m_Parts1.ElementAt(Clamp(i, m_Parts1.GetSize())); }

  /// The parts along object 0.
  const KvBtDynArray<Part>& Parts0() const { return m_Parts0; }
  /// The parts along object 1.
  const KvBtDynArray<Part>& Parts1() const { return m_Parts1; }
  /// The order of the records along object 0: position to record index.
  const KvTlPermVector& Perm0() const { return *m_Perm0; }
  /// The order of the records along object 1: position to record index.
  const KvTlPermVector& Perm1() const { return *m_Perm1; }

  /// Sorts the records along object 0. Reachable by the intersection and containment functions,
  /// which fill a calculator and may cut along an order they have set up themselves.
  void SortIntrPoints0() { Sort(*m_Perm0, 0); }
  /// Sorts the records along object 1.
  void SortIntrPoints1() { Sort(*m_Perm1, 1); }
  /// Cuts object 0 into parts along the order held (n records give n - 1 parts).
  void CalculateParts0() { Cut(*m_Perm0, m_Parts0, 0); }
  /// Cuts object 1 into parts along the order held.
  void CalculateParts1() { Cut(*m_Perm1, m_Parts1, 1); }

 private:
  static int Clamp(unsigned i, int size) { return i >= static_cast<unsigned>(size) ? size - 1 : static_cast<int>(i); }

  R& Record(const KvTlPermVector& perm, unsigned i) { return this->ElementAt(Entry(perm, i)); }
  const R& Record(const KvTlPermVector& perm, unsigned i) const { return this->ElementAt(Entry(perm, i)); }
  /// The record index of position i of the order; ElementAt clamps an entry out of range.
  static int Entry(const KvTlPermVector& perm, unsigned i) {
    return perm.GetSize() == 0 ? -1 : perm.GetAt(Clamp(i, perm.GetSize()));
  }

  void Sort(KvTlPermVector& perm, int object) {
    perm.SetSize(this->GetSize());
    perm.SetIdentity();
    perm.Sort(CO(static_cast<const typename CO::Calculator&>(*this), object));
  }

  /// One part per neighbouring pair of the n records, walked through the order the permutation
  /// holds. A cut may run alone after records were added or removed since the last sort (or
  /// before any sort): positions and entries beyond the permutation or the records then clamp
  /// to the last, but the number of parts always follows the records.
  void Cut(const KvTlPermVector& perm, KvBtDynArray<Part>& parts, int object) {
    const int records = this->GetSize();
    const int n = records < 2 ? 0 : records - 1;
    // Reuses the storage of the previous cut; grows once when more parts are needed.
    parts.RemoveAt(0, parts.GetSize());
    parts.SetSize(n);
    // 64 bits hold the sum of up to 2^31 counts of any int size, so the count never overflows.
    long long s = 0;
    for (int i = 0; i < n; ++i) {
      const R& p = Record(perm, static_cast<unsigned>(i));
      const R& q = Record(perm, static_cast<unsigned>(i + 1));
      s += object == 0 ? p.CutCode1() : p.CutCode0();
      const double tp = object == 0 ? p.Param0() : p.Param1();
      const double tq = object == 0 ? q.Param0() : q.Param1();
      int type;
      if (IsEqual(tq, tp, kKvGeLinearTol))
        type = 0;
      else if (s <= -2)
        type = 1;
      else if (s == -1)
        type = 0;
      else
        type = -1;
      parts.ElementAt(i).Set(p, q, type);
    }
  }

  KvBtDynArray<Part> m_Parts0;
  KvBtDynArray<Part> m_Parts1;
  std::unique_ptr<KvTlPermVector> m_Perm0;
  std::unique_ptr<KvTlPermVector> m_Perm1;
};

}  // namespace KvGeDetail

/// The intersection calculator of plane objects: KvGeIntrPoint2d records, KvGeIntrPart2d parts.
class KVGE_API KvGeIntrCalculator2d
    : public KvGeDetail::IntrCalculatorBase<KvGeIntrPoint2dArray, KvGeIntrPoint2d, KvGeIntrPart2d, KvGeIntrPoint2dCO> {
 public:
  KvGeIntrCalculator2d() = default;
  /// A deep copy, with its own permutations.
  KvGeIntrCalculator2d(const KvGeIntrCalculator2d&) = default;
  /// A deep copy, with its own permutations.
  KvGeIntrCalculator2d& operator=(const KvGeIntrCalculator2d&) = default;
  ~KvGeIntrCalculator2d() override;
};

/// The intersection calculator of plan objects: KvGeIntrPoint3d records, KvGeIntrPart3d parts.
class KVGE_API KvGeIntrCalculator23d
    : public KvGeDetail::IntrCalculatorBase<KvBtDynArray<KvGeIntrPoint3d>, KvGeIntrPoint3d, KvGeIntrPart3d,
                                            KvGeIntrPoint3dCO> {
 public:
  KvGeIntrCalculator23d() = default;
  /// A deep copy, with its own permutations.
  KvGeIntrCalculator23d(const KvGeIntrCalculator23d&) = default;
  /// A deep copy, with its own permutations.
  KvGeIntrCalculator23d& operator=(const KvGeIntrCalculator23d&) = default;
  ~KvGeIntrCalculator23d() override;
};
