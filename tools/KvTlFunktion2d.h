#pragma once
/// @file
/// Piecewise linear functions y(x) for load and height profiles along a distance.
///
/// KvTlLinear2d is one straight piece from (x0, y0) to (x1, y1). KvTlFunktion2d is a sequence of
/// such pieces in ascending x: each piece has x0 <= x1, each piece starts where the one before
/// ends, and together they cover -1e9 to +1e9 (a mirror in x moves that range to 2c - 1e9 ..
/// 2c + 1e9). The function may jump at a break: the piece that ends there gives the value from the
/// left, the piece that starts there the value from the right.
///
/// Positions closer than 0.001 count as the same x (a difference of exactly 0.001 included): a
/// break, bound or crossing within 0.001 of an existing break is taken as that break, so the
/// operations never create pieces of 0.001 or less. The one exception is the segment given to Set,
/// which is stored as given however short: the other operations carry such a piece along,
/// Integral takes nothing from it, and the searches of Index pass over it at its own ends but may
/// pick it up to 0.001 beyond them, where its line is extrapolated. Values are compared with the
/// same 0.001.

#include <iosfwd>

/// \file
/// Non-finite input and range: values propagate NaN; the pieces cover -1e9 .. 1e9 and beyond that
/// the outermost piece answers. See docs/non-finite-policy.md.

#include "basics/KvBtArray.h"
#include "basics/KvGeTolerance.h"
#include "basics/UtilityGeometryExport.h"
#include "basics/companion/KvBtCompare.h"

/// One straight piece of a profile, from (x0, y0) to (x1, y1). Equal when all four values agree within 0.001
/// (inclusive).
class KVGE_API KvTlLinear2d {
 public:
  /// Holds no pointer into itself, so the array templates may relocate it bitwise.
  using KvBtBitwiseRelocatable = void;
  KvTlLinear2d() = default;
  /// The piece from (xa, ya) to (xb, yb).
  KvTlLinear2d(double xa, double ya, double xb, double yb) : x0(xa), y0(ya), x1(xb), y1(yb) {}
  /// Copies the four values.
  KvTlLinear2d(const KvTlLinear2d&) = default;
  /// Copies the four values.
  KvTlLinear2d& operator=(const KvTlLinear2d&) = default;
  virtual ~KvTlLinear2d();

  /// All four values 0.
  KvTlLinear2d& Set() { return Set(0.0, 0.0, 0.0, 0.0); }
  /// The piece from (xa, ya) to (xb, yb).
  KvTlLinear2d& Set(double xa, double ya, double xb, double yb) {
    x0 = xa;
    y0 = ya;
    x1 = xb;
    y1 = yb;
    return *this;
  }

  /// The value on the line through both ends, extrapolated beyond them. A vertical piece (x0 and
  /// x1 within 1e-15) gives y0 at x0 and y1 at x1, each within 0.001, and 0.0 elsewhere.
  double Wert(double x) const {
    if (IsNotEqual(x0, x1, 1e-15)) return y0 + (y1 - y0) / (x1 - x0) * (x - x0);
    if (IsEqual(x, x0, kKvGeLinearTol)) return y0;
    if (IsEqual(x, x1, kKvGeLinearTol)) return y1;
    return 0.0;
  }
  /// Wert(x).
  double operator()(double x) const { return Wert(x); }
  /// The inverse of Wert: the x at which the line reaches y. A level piece (y0 and y1 within
  /// 1e-15) gives x0 for y0 and x1 for y1, each within 0.001, and 0.0 for any other y.
  double Argument(double y) const {
    if (IsNotEqual(y0, y1, 1e-15)) return x0 + (x1 - x0) / (y1 - y0) * (y - y0);
    if (IsEqual(y, y0, kKvGeLinearTol)) return x0;
    if (IsEqual(y, y1, kKvGeLinearTol)) return x1;
    return 0.0;
  }

  /// x0, y0, x1, y1 each within eps (inclusive).
  int IsEqualTo(const KvTlLinear2d& o, double eps = kKvGeLinearTol) const {
    return (IsEqual(x0, o.x0, eps) && IsEqual(y0, o.y0, eps) && IsEqual(x1, o.x1, eps) && IsEqual(y1, o.y1, eps)) ? 1
                                                                                                                  : 0;
  }
  /// IsEqualTo with 0.001 (inclusive).
  int operator==(const KvTlLinear2d& o) const { return IsEqualTo(o); }
  /// The negation of operator==.
  int operator!=(const KvTlLinear2d& o) const { return IsEqualTo(o) ? 0 : 1; }

  /// Mirrors the x range about x = c so that it still ascends; y0 and y1 stay at their ends, so
  /// the piece keeps its slope instead of reversing it. Deliberate: functions are mirrored this
  /// way.
  KvTlLinear2d& SpiegelX(double c) {
    const double a = x0;
    x0 = 2.0 * c - x1;
    x1 = 2.0 * c - a;
    return *this;
  }
  /// Mirrors both values about the line y = c.
  KvTlLinear2d& SpiegelY(double c) {
    y0 = 2.0 * c - y0;
    y1 = 2.0 * c - y1;
    return *this;
  }

  /// x of the start.
  double x0 = 0.0;
  /// y at the start.
  double y0 = 0.0;
  /// x of the end.
  double x1 = 0.0;
  /// y at the end.
  double y1 = 0.0;
};

static_assert(sizeof(KvTlLinear2d) == sizeof(void*) + 4 * sizeof(double), "KvTlLinear2d layout");

/// A piecewise linear function y(x) over -1e9 .. +1e9, pieces in ascending x and meeting, possibly jumping at a break.
/// Positions and values closer than 0.001 (inclusive) count as equal.
class KVGE_API KvTlFunktion2d {
 public:
  /// The array of pieces.
  using PieceArray = KvBtDynArray<KvTlLinear2d>;

  /// The zero function.
  KvTlFunktion2d() { Set(); }
  /// The constant c; implicit, so that a constant can stand wherever a function is combined.
  KvTlFunktion2d(double c) { Set(c); }
  /// The segment (xa, ya) - (xb, yb) with the constant c left and right of it, as Set(xa, ya, xb, yb, c).
  KvTlFunktion2d(double xa, double ya, double xb, double yb, double c) { Set(xa, ya, xb, yb, c); }
  /// Copies the pieces.
  KvTlFunktion2d(const KvTlFunktion2d&) = default;
  /// Takes over the pieces of the other function.
  KvTlFunktion2d(KvTlFunktion2d&&) noexcept = default;
  /// Copies the pieces.
  KvTlFunktion2d& operator=(const KvTlFunktion2d&) = default;
  /// Takes over the pieces of the other function.
  KvTlFunktion2d& operator=(KvTlFunktion2d&&) noexcept = default;
  virtual ~KvTlFunktion2d();

  /// The zero function.
  KvTlFunktion2d& Set() { return Set(0.0); }
  /// The constant c over the whole range.
  KvTlFunktion2d& Set(double c);
  /// The segment (xa, ya) - (xb, yb), ends in either order, with the constant c left and right of
  /// it. An end within 1.0 of -1e9 or +1e9 counts as that limit (the outside piece is left out and
  /// the end moved onto the limit, its value kept); an end beyond a limit by more than that is cut
  /// there with the segment's value at the limit. A segment that lies entirely at or beyond one
  /// limit, or has an x that is not finite, leaves the constant c alone. A segment of 0.001 or
  /// less (even a vertical one) stays a piece of its own.
  KvTlFunktion2d& Set(double xa, double ya, double xb, double yb, double c);

  /// The pieces in ascending x. Read only: every member keeps the pieces ordered and meeting.
  const PieceArray& Pieces() const { return m_Pieces; }

  /// The index of the piece that holds x, -1 for a function without pieces. At a break (within
  /// 0.001) right = 0 gives the piece that ends there and right != 0 the piece that starts there.
  /// Beyond the range the first or the last piece is returned, and evaluation extrapolates it.
  int Index(double x, int right) const;
  /// The value from the left (the piece that ends at a break) and from the right (the piece that
  /// starts there); 0.0 for a function without pieces.
  double LinksWert(double x) const;
  /// The value from the right (the piece that starts at a break).
  double RechtsWert(double x) const;
  /// RechtsWert(x).
  double operator()(double x) const { return RechtsWert(x); }
  /// The smaller and the larger of the left and the right value at x: they differ at a jump.
  double MinWert(double x) const;
  /// The larger of the left and the right value at x.
  double MaxWert(double x) const;

  /// The first x at or after from (searching rightwards) at which the function reaches y within
  /// 0.001: on a piece, or within a jump at a break (then the break is the answer). Returns the
  /// end of the covered range when y is not reached (from itself for a function without pieces).
  /// A search from before the range starts at its beginning.
  double LinksX(double y, double from) const;
  /// The last x at or before from (searching leftwards) at which the function reaches y within
  /// 0.001, by the same rules; returns the beginning of the covered range when y is not reached.
  double RechtsX(double y, double from) const;

  /// The least and the greatest value between a and b (either order): the right value at the
  /// lower bound, the left value at the upper bound and both values at every jump between them.
  /// Bounds within 0.001 of each other give MinWert / MaxWert there.
  double MinY(double a, double b) const;
  /// The greatest value between a and b, as MinY.
  double MaxY(double a, double b) const;

  /// The signed area between a and b, negative when a > b. Each piece is clipped to the range;
  /// clipped parts of 0.001 or less and parts whose two end values are both 0 within 0.001 add
  /// nothing. The range is not extended beyond the covered range.
  double Integral(double a, double b) const;
  /// The x of the centroid of the signed area that Integral measures between a and b (either
  /// order): first moment divided by area. Parts below the axis count negatively; when the signed
  /// area vanishes (within 1e-9 of the unsigned area) the middle of a and b is returned.
  double SchwerpunktX(double a, double b) const;

  /// Between a and b (either order) the function is replaced by its running minimum (MinVerlauf)
  /// or maximum (MaxVerlauf) taken from a towards b: the lower or upper course that never rises
  /// (never falls) in the direction of travel, starting with the value from the side of travel at
  /// a. Where the function crosses the running level a break is inserted; a jump down (up) is
  /// followed at once. Outside the two bounds the function is kept, so it may jump at the far
  /// bound. Bounds are clamped to the covered range; bounds within 0.001 change nothing.
  KvTlFunktion2d& MinVerlauf(double a, double b);
  /// The running maximum from a towards b, as MinVerlauf.
  KvTlFunktion2d& MaxVerlauf(double a, double b);

  /// Keeps the function between a and b (either order, clamped to the covered range) and sets
  /// the constant c outside, so it may jump at both bounds. Bounds within 0.001 of each other
  /// keep nothing: the result is the constant c.
  KvTlFunktion2d& RestrictX(double a, double b, double c);
  /// Clamps every value into lo .. hi (either order), inserting a break where a piece crosses a
  /// bound more than 0.001 from its ends.
  KvTlFunktion2d& RestrictY(double lo, double hi);

  /// Every y becomes 2c - y.
  KvTlFunktion2d& SpiegelY(double c);
  /// Mirrors each piece's x range about x = c, y values staying at their ends (so slopes are
  /// kept, deliberately), and reverses the order of the pieces; the range becomes 2c - 1e9 to
  /// 2c + 1e9.
  KvTlFunktion2d& SpiegelX(double c);

  /// Multiplies every value by k.
  KvTlFunktion2d& operator*=(double k);
  /// Divides every value by k; a k within 0.001 of 0 leaves the function unchanged.
  KvTlFunktion2d& operator/=(double k);
  /// Sets every value to 0.0: the result is the zero function, not the negated one. Deliberate;
  /// the unary minus gives the negated copy.
  KvTlFunktion2d& Negate();
  /// The negated copy (every y becomes -y).
  KvTlFunktion2d operator-() const;

  /// Pointwise sum, difference and product. Every piece of this function is cut at the breaks of
  /// g that lie more than 0.001 inside it (and more than 0.001 after the previous cut), and each
  /// part gets the combined values at its ends, g taken from the inside of the part; a break of g
  /// within 0.001 of a break of this function falls onto that break. Parts of this function
  /// outside g's range keep their values, and g outside this function's range is not used. A
  /// product is joined linearly between its end values, so it is exact only where one factor is
  /// constant on the part.
  KvTlFunktion2d& operator+=(const KvTlFunktion2d& g);
  /// Pointwise difference, cut as operator+=.
  KvTlFunktion2d& operator-=(const KvTlFunktion2d& g);
  /// Pointwise product, cut as operator+= and joined linearly.
  KvTlFunktion2d& operator*=(const KvTlFunktion2d& g);
  /// Pointwise minimum (&=) and maximum (|=) by the same cutting, with a further break wherever
  /// the two functions cross more than 0.001 inside a part, so the result is exact.
  KvTlFunktion2d& operator&=(const KvTlFunktion2d& g);
  /// Pointwise maximum, as operator&=.
  KvTlFunktion2d& operator|=(const KvTlFunktion2d& g);

  /// False when the piece counts differ (even if the values agree), true for two functions
  /// without pieces, otherwise every pair of pieces equal within eps.
  int IsEqualTo(const KvTlFunktion2d& other, double eps = kKvGeLinearTol) const;
  /// IsEqualTo with 0.001 (inclusive).
  int operator==(const KvTlFunktion2d& other) const { return IsEqualTo(other); }
  /// The negation of operator==.
  int operator!=(const KvTlFunktion2d& other) const { return IsEqualTo(other) ? 0 : 1; }

 private:
  enum class Op { Add, Sub, Mul, Min, Max };
  KVGE_NO_EXPORT void Combine(const KvTlFunktion2d& g, Op op);
  KVGE_NO_EXPORT double Snap(double x) const;
  KVGE_NO_EXPORT void AppendSlice(PieceArray& out, double lo, double hi) const;
  KVGE_NO_EXPORT void LowerCourse(double a, double b);
  KVGE_NO_EXPORT void Reflect();
  KVGE_NO_EXPORT void ScaleValues(double k);

  PieceArray m_Pieces;
};

static_assert(sizeof(KvTlFunktion2d) == sizeof(void*) + sizeof(KvTlFunktion2d::PieceArray), "KvTlFunktion2d layout");

/// Pointwise sum, as operator+=.
inline KvTlFunktion2d operator+(KvTlFunktion2d f, const KvTlFunktion2d& g) { return std::move(f += g); }
/// Pointwise difference, as operator-=.
inline KvTlFunktion2d operator-(KvTlFunktion2d f, const KvTlFunktion2d& g) { return std::move(f -= g); }
/// Pointwise product, as operator*=.
inline KvTlFunktion2d operator*(KvTlFunktion2d f, const KvTlFunktion2d& g) { return std::move(f *= g); }
/// Pointwise minimum, as operator&=.
inline KvTlFunktion2d operator&(KvTlFunktion2d f, const KvTlFunktion2d& g) { return std::move(f &= g); }
/// Pointwise maximum, as operator|=.
inline KvTlFunktion2d operator|(KvTlFunktion2d f, const KvTlFunktion2d& g) { return std::move(f |= g); }
/// Every value times k.
inline KvTlFunktion2d operator*(KvTlFunktion2d f, double k) { return std::move(f *= k); }
/// Every value times k.
inline KvTlFunktion2d operator*(double k, KvTlFunktion2d f) { return std::move(f *= k); }
/// Every value divided by k; a k within 0.001 of 0 gives f unchanged.
inline KvTlFunktion2d operator/(KvTlFunktion2d f, double k) { return std::move(f /= k); }

/// Writes "LINEAR (x0 y0, x1 y1)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvTlLinear2d& v);
/// Writes the pieces in ascending x, "FUNCTION ((x0 y0, x1 y1), ...)".
KVGE_API std::ostream& operator<<(std::ostream& os, const KvTlFunktion2d& v);
