#include "geometry/io/KvGeWkt.h"

#include <charconv>
#include <climits>
#include <cstring>
#include <new>
#include <vector>

#include "geometry/intersection/KvGeContainment2d.h"

namespace {

enum Type { kTNone = 0, kTPoint, kTLineString, kTPolygon, kTMultiPoint, kTMultiLineString, kTMultiPolygon };

const char* const kTypeNames[] = {"",           "POINT",           "LINESTRING",  "POLYGON",
                                  "MULTIPOINT", "MULTILINESTRING", "MULTIPOLYGON"};

// The text read, before it is given a class: points (three doubles each, z 0 for plane text),
// grouped into lists (a linestring, a ring, or the one point of a point or multipoint member),
// grouped into polygons.
struct Parsed {
  Type type = kTNone;
  int z = 0;           // a Z tag or three numbers per point
  int empty = 0;       // "<TYPE> EMPTY"
  std::size_t at = 0;  // offset of the type keyword
  std::vector<double> xyz;
  std::vector<int> listEnd;  // per list: the end of its points
  std::vector<int> polyEnd;  // per polygon: the end of its lists

  int Points() const { return static_cast<int>(xyz.size() / 3); }
  int ListBegin(int l) const { return l == 0 ? 0 : listEnd[static_cast<std::size_t>(l - 1)]; }
  int ListSize(int l) const { return listEnd[static_cast<std::size_t>(l)] - ListBegin(l); }
  int Lists() const { return static_cast<int>(listEnd.size()); }
  int PolyBegin(int q) const { return q == 0 ? 0 : polyEnd[static_cast<std::size_t>(q - 1)]; }
  int Polys() const { return static_cast<int>(polyEnd.size()); }
  const double* P(int i) const { return xyz.data() + 3 * static_cast<std::size_t>(i); }
};

int IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }
int IsAlpha(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
int IsDigit(char c) { return c >= '0' && c <= '9'; }
char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

int SameWord(const char* w, std::size_t n, const char* keyword) {
  const std::size_t k = std::strlen(keyword);
  if (n != k) return 0;
  for (std::size_t i = 0; i < n; ++i)
    if (Upper(w[i]) != keyword[i]) return 0;
  return 1;
}

// Recursive descent over the fixed depth of WKT: geometry, polygon, list, point, number.
class Parser {
 public:
  Parser(const char* text, std::size_t n, int allowZ) : m_T(text), m_N(n), m_AllowZ(allowZ) {}

  int Parse(Parsed& out) {
    m_Out = &out;
    SkipBlanks();
    std::size_t w = 0, wn = 0;
    out.at = m_Pos;
    if (!Word(w, wn)) return Fail("expected a geometry type");
    int tagged = 0;
    for (int t = kTPoint; t <= kTMultiPolygon; ++t) {
      const std::size_t k = std::strlen(kTypeNames[t]);
      if (SameWord(m_T + w, wn, kTypeNames[t]) ||
          (wn == k + 1 && SameWord(m_T + w, k, kTypeNames[t]) && Upper(m_T[w + k]) == 'Z')) {
        out.type = static_cast<Type>(t);
        tagged = wn == k + 1;
        break;
      }
    }
    if (out.type == kTNone) {
      m_Pos = w;
      if (SameWord(m_T + w, wn, "GEOMETRYCOLLECTION")) return Fail("GEOMETRYCOLLECTION is not supported");
      return FailWord("unknown geometry type", w, wn);
    }
    SkipBlanks();
    const std::size_t tagAt = m_Pos;
    std::size_t t = 0, tn = 0;
    if (!tagged && Word(t, tn)) {
      if (SameWord(m_T + t, tn, "Z")) {
        tagged = 1;
      } else if (SameWord(m_T + t, tn, "M") || SameWord(m_T + t, tn, "ZM")) {
        m_Pos = tagAt;
        return Fail("M coordinates are not supported");
      } else {
        m_Pos = tagAt;  // EMPTY or a wrong word, read below
      }
    }
    if (tagged) {
      if (!m_AllowZ) {
        m_Pos = tagAt;
        return Fail("Z coordinates are not accepted by a plane target");
      }
      m_Dim = 3;
      out.z = 1;
    }
    if (Empty()) {
      out.empty = 1;
    } else {
      int ok = 0;
      switch (out.type) {
        case kTPoint:
          ok = Expect('(') && Point() && Expect(')') && EndList();
          break;
        case kTLineString:
          ok = List();
          break;
        case kTPolygon:
          ok = Polygon();
          break;
        case kTMultiPoint:
          ok = MultiPoint();
          break;
        case kTMultiLineString:
          ok = Expect('(') && Members(&Parser::ListOrEmpty);
          break;
        case kTMultiPolygon:
          ok = Expect('(') && Members(&Parser::PolygonOrEmpty);
          break;
        default:
          break;
      }
      if (!ok) return 0;
    }
    if (m_Dim == 3) out.z = 1;
    SkipBlanks();
    if (m_Pos < m_N) return Fail("unexpected text after the geometry");
    return 1;
  }

  std::string m_Message;

 private:
  void SkipBlanks() {
    while (m_Pos < m_N && IsBlank(m_T[m_Pos])) ++m_Pos;
  }
  int Word(std::size_t& start, std::size_t& n) {
    start = m_Pos;
    while (m_Pos < m_N && IsAlpha(m_T[m_Pos])) ++m_Pos;
    n = m_Pos - start;
    return n > 0;
  }
  int Empty() {
    SkipBlanks();
    const std::size_t at = m_Pos;
    std::size_t w = 0, wn = 0;
    if (Word(w, wn) && SameWord(m_T + w, wn, "EMPTY")) return 1;
    m_Pos = at;
    return 0;
  }
  int Next(char c) {
    SkipBlanks();
    return m_Pos < m_N && m_T[m_Pos] == c;
  }
  int Expect(char c) {
    if (Next(c)) {
      ++m_Pos;
      return 1;
    }
    char what[16] = "expected ' '";
    what[10] = c;
    return Fail(what);
  }
  // "<what> at offset N", with " (end of text)" when the text ended there.
  int Fail(const char* what) {
    if (!m_Message.empty()) return 0;
    m_Message = what;
    m_Message += " at offset ";
    m_Message += std::to_string(m_Pos);
    if (m_Pos >= m_N) m_Message += " (end of text)";
    return 0;
  }
  int FailWord(const char* what, std::size_t w, std::size_t wn) {
    std::string text = what;
    text += " '";
    text.append(m_T + w, wn > 24 ? 24 : wn);
    if (wn > 24) text += "...";
    text += '\'';
    m_Pos = w;
    return Fail(text.c_str());
  }

  int Number(double& v) {
    SkipBlanks();
    const std::size_t at = m_Pos;
    std::size_t p = m_Pos;
    if (p < m_N && m_T[p] == '+') ++p;
    std::size_t q = p;
    if (q < m_N && m_T[q] == '-' && p == m_Pos) ++q;
    if (q >= m_N || !(IsDigit(m_T[q]) || (m_T[q] == '.' && q + 1 < m_N && IsDigit(m_T[q + 1])))) {
      std::size_t w = q, wn = 0;
      m_Pos = q;
      if (Word(w, wn) &&
          (SameWord(m_T + w, wn, "NAN") || SameWord(m_T + w, wn, "INF") || SameWord(m_T + w, wn, "INFINITY"))) {
        m_Pos = at;
        return Fail("NaN and infinity are not accepted as numbers");
      }
      m_Pos = at;
      return Fail("expected a number");
    }
    const std::from_chars_result r = std::from_chars(m_T + p, m_T + m_N, v);
    if (r.ec == std::errc::result_out_of_range) {
      m_Pos = at;
      return Fail("number out of the range of a double");
    }
    if (r.ec != std::errc()) {
      m_Pos = at;
      return Fail("expected a number");
    }
    m_Pos = static_cast<std::size_t>(r.ptr - m_T);
    if (m_Pos < m_N) {
      const char c = m_T[m_Pos];
      if (!(IsBlank(c) || c == ',' || c == ')' || c == '(')) {
        m_Pos = at;
        return Fail("malformed number");
      }
    }
    return 1;
  }
  // Two or three numbers; the first point without a Z tag decides for all.
  int Point() {
    double c[3] = {0.0, 0.0, 0.0};
    if (!Number(c[0]) || !Number(c[1])) return 0;
    if (m_Dim == 0) {
      SkipBlanks();
      m_Dim = 2;
      if (m_AllowZ && m_Pos < m_N && m_T[m_Pos] != ',' && m_T[m_Pos] != ')') m_Dim = 3;
    }
    if (m_Dim == 3 && !Number(c[2])) return 0;
    if (m_Out->xyz.size() >= static_cast<std::size_t>(INT_MAX / 4)) return Fail("too many points");
    m_Out->xyz.insert(m_Out->xyz.end(), c, c + 3);
    return 1;
  }
  int EndList() {
    m_Out->listEnd.push_back(m_Out->Points());
    return 1;
  }
  // ( point {, point} )
  int List() {
    if (!Expect('(')) return 0;
    for (;;) {
      if (!Point()) return 0;
      if (Next(',')) {
        ++m_Pos;
        continue;
      }
      if (!Next(')')) return Fail("expected ',' or ')'");
      ++m_Pos;
      return EndList();
    }
  }
  int ListOrEmpty() { return Empty() ? EndList() : List(); }
  // ( list {, list} ), a ring may be EMPTY
  int Polygon() {
    if (!Expect('(')) return 0;
    if (!Members(&Parser::ListOrEmpty)) return 0;
    m_Out->polyEnd.push_back(m_Out->Lists());
    return 1;
  }
  int PolygonOrEmpty() {
    if (Empty()) {
      m_Out->polyEnd.push_back(m_Out->Lists());
      return 1;
    }
    return Polygon();
  }
  // member {, member} ) after the opening parenthesis
  int Members(int (Parser::*member)()) {
    for (;;) {
      if (!(this->*member)()) return 0;
      if (Next(',')) {
        ++m_Pos;
        continue;
      }
      if (!Next(')')) return Fail("expected ',' or ')'");
      ++m_Pos;
      return 1;
    }
  }
  // ((x y), (x y)) or the bare form (x y, x y); each point a list of its own.
  int MultiPoint() {
    if (!Expect('(')) return 0;
    for (;;) {
      if (Next('(')) {
        ++m_Pos;
        if (!Point() || !Expect(')')) return 0;
      } else {
        SkipBlanks();
        const std::size_t at = m_Pos;
        if (Empty()) {
          m_Pos = at;
          return Fail("a point of a MULTIPOINT cannot be EMPTY");
        }
        if (!Point()) return 0;
      }
      EndList();
      if (Next(',')) {
        ++m_Pos;
        continue;
      }
      if (!Next(')')) return Fail("expected ',' or ')'");
      ++m_Pos;
      return 1;
    }
  }

  const char* m_T;
  std::size_t m_N;
  std::size_t m_Pos = 0;
  int m_AllowZ;
  int m_Dim = 0;
  Parsed* m_Out = nullptr;
};

void SetMessage(std::string* message, const std::string& text) {
  if (message != nullptr) *message = text;
}

// "<what> at offset N" for a fault found after parsing, at the keyword.
int Reject(std::string* message, const Parsed& p, const std::string& what) {
  SetMessage(message, what + " at offset " + std::to_string(p.at));
  return 0;
}

int Parse(const char* text, std::size_t n, int allowZ, Parsed& p, std::string* message) {
  if (text == nullptr) {
    SetMessage(message, "expected a geometry type at offset 0 (no text)");
    return 0;
  }
  Parser parser(text, n, allowZ);
  if (parser.Parse(p)) return 1;
  SetMessage(message, parser.m_Message);
  return 0;
}

// Parses and checks that the type is one of the accepted ones (a bit per type).
int ParseAs(const char* text, std::size_t n, int allowZ, unsigned accepted, const char* expected, Parsed& p,
            std::string* message) {
  if (!Parse(text, n, allowZ, p, message)) return 0;
  if ((accepted & (1u << p.type)) == 0)
    return Reject(message, p, std::string("expected ") + expected + ", got " + kTypeNames[p.type]);
  return 1;
}

unsigned Bit(Type t) { return 1u << t; }

int SameBits(const double* a, const double* b) {
  return std::memcmp(a, b, 2 * sizeof(double)) == 0 && std::memcmp(a + 2, b + 2, sizeof(double)) == 0;
}

void Make(const double* c, KvGePoint2d& p) { p.Set(c[0], c[1]); }
void Make(const double* c, KvGePoint3d& p) { p.Set(c[0], c[1], c[2]); }

// The points of list l, a closing point equal (bit for bit) to the first dropped for rings.
template <class A, class P>
void FillList(const Parsed& p, int l, int ring, A& out) {
  const int b = p.ListBegin(l);
  int n = p.ListSize(l);
  if (ring && n >= 2 && SameBits(p.P(b), p.P(b + n - 1))) --n;
  out.SetSize(n);
  P* d = out.GetData();
  for (int i = 0; i < n; ++i) {
    Make(p.P(b + i), d[i]);
  }
}

// Reverses all but the first point when the area (areaOf: plane or plan) has the wrong sign. A
// ring with area 0 keeps its order, and so does a ring whose orientation rounding leaves unclear
// (its reverse has an area of the wrong sign as well, as a sliver of area 1e-33 may): turning it
// would not orient it, and the text read back would turn it again on every round.
template <class A, class AreaOf>
void Orient(A& ring, const AreaOf& areaOf, int sense) {
  const double area = areaOf(ring);
  if (!((area > 0.0 && sense < 0) || (area < 0.0 && sense > 0))) return;
  auto* d = ring.GetData();
  const int n = ring.GetSize();
  const auto reverse = [d, n] {
    for (int i = 1, j = n - 1; i < j; ++i, --j) {
      const auto t = d[i];
      d[i] = d[j];
      d[j] = t;
    }
  };
  reverse();
  const double turned = areaOf(ring);
  if (!((turned > 0.0 && sense > 0) || (turned < 0.0 && sense < 0))) reverse();
}

int BuildRegion(const Parsed& p, KvGePolygon2dArray& out) {
  out.SetSize(0);
  KvGePolygon2d ring;
  for (int q = 0; q < p.Polys(); ++q) {
    const int first = p.PolyBegin(q);
    for (int l = first; l < p.polyEnd[static_cast<std::size_t>(q)]; ++l) {
      if (p.ListSize(l) == 0) continue;
      FillList<KvGePoint2dArray, KvGePoint2d>(p, l, 1, ring);
      Orient(
          ring, [](const auto& r) { return r.Area(); }, l == first ? 1 : -1);
      out.Add(ring);
    }
  }
  return 1;
}

// A polygon of one ring: the parsed text must have at most one ring.
template <class A, class P>
int BuildOneRing(const Parsed& p, A& ring, std::string* message) {
  if (p.Lists() > 1)
    return Reject(message, p, "expected a POLYGON without holes, got " + std::to_string(p.Lists()) + " rings");
  if (p.Lists() == 0) {
    ring.SetSize(0);
    return 1;
  }
  FillList<A, P>(p, 0, 1, ring);
  return 1;
}

template <class L, class P>
int BuildLine(const Parsed& p, L& line, std::string* message) {
  if (p.empty || p.ListSize(0) != 2)
    return Reject(message, p, "expected a LINESTRING of 2 points, got " + std::to_string(p.empty ? 0 : p.ListSize(0)));
  P a, b;
  Make(p.P(0), a);
  Make(p.P(1), b);
  line = L(a, b);
  return 1;
}

// Runs the reading body; an allocation failure becomes a failure with a message.
template <class F>
int Guarded(std::string* message, F&& body) {
  try {
    return body();
  } catch (...) {
    SetMessage(message, "out of memory");
    return 0;
  }
}

// ---- writing ----

void Num(double v, std::string& out) {
  char buf[40];
  const std::to_chars_result r = std::to_chars(buf, buf + sizeof buf, v);
  out.append(buf, static_cast<std::size_t>(r.ptr - buf));
}

void Pt(const KvGePoint2d& p, std::string& out) {
  Num(p.x, out);
  out += ' ';
  Num(p.y, out);
}

void Pt(const KvGePoint3d& p, std::string& out) {
  Num(p.x, out);
  out += ' ';
  Num(p.y, out);
  out += ' ';
  Num(p.z, out);
}

// (p, p, ...), closed by the first point again for rings.
template <class A>
void Seq(const A& a, int ring, std::string& out) {
  out += '(';
  const int n = a.GetSize();
  for (int i = 0; i < n; ++i) {
    if (i) out += ", ";
    Pt(a.GetData()[i], out);
  }
  if (ring && n > 0) {
    out += ", ";
    Pt(a.GetData()[0], out);
  }
  out += ')';
}

template <class A>
void WriteMultiPoint(const A& points, const char* keyword, std::string& out) {
  out += keyword;
  if (points.GetSize() == 0) {
    out += " EMPTY";
    return;
  }
  out += " (";
  for (int i = 0; i < points.GetSize(); ++i) {
    if (i) out += ", ";
    out += '(';
    Pt(points.GetData()[i], out);
    out += ')';
  }
  out += ')';
}

template <class A>
void WriteSeq(const A& a, int ring, const char* keyword, std::string& out) {
  out += keyword;
  if (a.GetSize() == 0) {
    out += " EMPTY";
    return;
  }
  out += ' ';
  if (ring) out += '(';
  Seq(a, ring, out);
  if (ring) out += ')';
}

// Which shell each ring of a set is written under: -1 for a shell (and for a clockwise ring
// that no shell contains, written on its own), else the index of the shell.
std::vector<int> GroupRings(const KvGePolygon2dArray& region) {
  const int n = region.GetSize();
  std::vector<int> owner(static_cast<std::size_t>(n), -1);
  std::vector<double> area(static_cast<std::size_t>(n));
  std::vector<KvGeBox2d> box(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    area[static_cast<std::size_t>(i)] = region.GetData()[i].Area();
    box[static_cast<std::size_t>(i)] = region.GetData()[i].BoundingBox();
  }
  for (int h = 0; h < n; ++h) {
    const KvGePolygon2d& hole = region.GetData()[h];
    if (!(area[static_cast<std::size_t>(h)] < 0.0) || hole.GetSize() == 0) continue;
    const KvGeBox2d& hb = box[static_cast<std::size_t>(h)];
    double best = 0.0;
    for (int s = 0; s < n; ++s) {
      const double a = area[static_cast<std::size_t>(s)];
      if (a < 0.0 || region.GetData()[s].GetSize() == 0) continue;
      const KvGeBox2d& sb = box[static_cast<std::size_t>(s)];
      if (hb.Min().x < sb.Min().x - 0.001 || hb.Min().y < sb.Min().y - 0.001 || hb.Max().x > sb.Max().x + 0.001 ||
          hb.Max().y > sb.Max().y + 0.001)
        continue;
      const KvGePolygon2d& shell = region.GetData()[s];
      unsigned short bits = Containment(hole, shell);
      if (bits == 0) bits = Containment(hole.GetData()[0], shell);
      if ((bits & 1) != 0) continue;
      if (owner[static_cast<std::size_t>(h)] < 0 || a < best) {
        owner[static_cast<std::size_t>(h)] = s;
        best = a;
      }
    }
  }
  return owner;
}

void WriteRegion(const KvGePolygon2dArray& region, std::string& out) {
  const int n = region.GetSize();
  const std::vector<int> owner = GroupRings(region);
  int polygons = 0;
  for (int i = 0; i < n; ++i)
    if (owner[static_cast<std::size_t>(i)] < 0 && region.GetData()[i].GetSize() > 0) ++polygons;
  if (polygons == 0) {
    out += "POLYGON EMPTY";
    return;
  }
  out += polygons == 1 ? "POLYGON (" : "MULTIPOLYGON (";
  int written = 0;
  for (int s = 0; s < n; ++s) {
    const KvGePolygon2d& shell = region.GetData()[s];
    if (owner[static_cast<std::size_t>(s)] >= 0 || shell.GetSize() == 0) continue;
    if (written++) out += ", ";
    if (polygons > 1) out += '(';
    Seq(shell, 1, out);
    for (int h = 0; h < n; ++h) {
      if (owner[static_cast<std::size_t>(h)] != s) continue;
      out += ", ";
      Seq(region.GetData()[h], 1, out);
    }
    if (polygons > 1) out += ')';
  }
  out += ')';
}

}  // namespace

// ---- reading ----

int KvGeReadWkt(const char* text, std::size_t length, KvGePoint2d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTPoint), "POINT", p, message)) return 0;
    if (p.empty) return Reject(message, p, "expected a point, got POINT EMPTY");
    out.Set(p.P(0)[0], p.P(0)[1]);
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePoint3d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 1, Bit(kTPoint), "POINT", p, message)) return 0;
    if (p.empty) return Reject(message, p, "expected a point, got POINT EMPTY");
    out.Set(p.P(0)[0], p.P(0)[1], p.P(0)[2]);
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePoint2dArray& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTMultiPoint), "MULTIPOINT", p, message)) return 0;
    KvGePoint2dArray a;
    a.SetSize(p.Points());
    for (int i = 0; i < p.Points(); ++i) a.GetData()[i] = KvGePoint2d(p.P(i)[0], p.P(i)[1]);
    out = a;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePoint3dArray& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 1, Bit(kTMultiPoint), "MULTIPOINT", p, message)) return 0;
    KvGePoint3dArray a;
    a.SetSize(p.Points());
    for (int i = 0; i < p.Points(); ++i) a.GetData()[i] = KvGePoint3d(p.P(i)[0], p.P(i)[1], p.P(i)[2]);
    out = a;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGeLine2d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    KvGeLine2d line;
    if (!ParseAs(text, length, 0, Bit(kTLineString), "LINESTRING", p, message)) return 0;
    if (!BuildLine<KvGeLine2d, KvGePoint2d>(p, line, message)) return 0;
    out = line;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGeLine3d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    KvGeLine3d line;
    if (!ParseAs(text, length, 1, Bit(kTLineString), "LINESTRING", p, message)) return 0;
    if (!BuildLine<KvGeLine3d, KvGePoint3d>(p, line, message)) return 0;
    out = line;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGeLine23d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    KvGeLine23d line;
    if (!ParseAs(text, length, 1, Bit(kTLineString), "LINESTRING", p, message)) return 0;
    if (!BuildLine<KvGeLine23d, KvGePoint3d>(p, line, message)) return 0;
    out = line;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePolyline2d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTLineString), "LINESTRING", p, message)) return 0;
    KvGePolyline2d a;
    if (!p.empty) FillList<KvGePoint2dArray, KvGePoint2d>(p, 0, 0, a);
    out = a;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePolyline2dArray& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTLineString) | Bit(kTMultiLineString), "MULTILINESTRING or LINESTRING", p,
                 message))
      return 0;
    KvGePolyline2dArray a;
    a.SetSize(p.Lists());
    for (int l = 0; l < p.Lists(); ++l) FillList<KvGePoint2dArray, KvGePoint2d>(p, l, 0, a.GetData()[l]);
    out = a;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvBtDynArray<KvGeLine2d>& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTLineString) | Bit(kTMultiLineString), "MULTILINESTRING or LINESTRING", p,
                 message))
      return 0;
    KvBtDynArray<KvGeLine2d> a;
    a.SetSize(p.Lists());
    for (int l = 0; l < p.Lists(); ++l) {
      if (p.ListSize(l) != 2)
        return Reject(
            message, p,
            "expected lines of 2 points, got " + std::to_string(p.ListSize(l)) + " in line " + std::to_string(l + 1));
      KvGePoint2d a1, a2;
      Make(p.P(p.ListBegin(l)), a1);
      Make(p.P(p.ListBegin(l) + 1), a2);
      a.GetData()[l] = KvGeLine2d(a1, a2);
    }
    out = a;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon2d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTPolygon), "POLYGON", p, message)) return 0;
    KvGePolygon2d ring;
    if (!BuildOneRing<KvGePoint2dArray, KvGePoint2d>(p, ring, message)) return 0;
    Orient(
        ring, [](const auto& r) { return r.Area(); }, 1);
    out = ring;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon3d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 1, Bit(kTPolygon), "POLYGON", p, message)) return 0;
    KvGePolygon3d ring;
    if (!BuildOneRing<KvGePoint3dArray, KvGePoint3d>(p, ring, message)) return 0;
    out = ring;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon23d& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 1, Bit(kTPolygon), "POLYGON", p, message)) return 0;
    KvGePolygon23d ring;
    if (!BuildOneRing<KvGePoint3dArray, KvGePoint3d>(p, ring, message)) return 0;
    Orient(
        ring, [](const auto& r) { return r.Area2d(); }, 1);
    out = ring;
    return 1;
  });
}

int KvGeReadWkt(const char* text, std::size_t length, KvGePolygon2dArray& out, std::string* message) {
  return Guarded(message, [&] {
    Parsed p;
    if (!ParseAs(text, length, 0, Bit(kTPolygon) | Bit(kTMultiPolygon), "POLYGON or MULTIPOLYGON", p, message))
      return 0;
    KvGePolygon2dArray region;
    BuildRegion(p, region);
    out = region;
    return 1;
  });
}

struct KvGeWktAccess {
  static int Read(const char* text, std::size_t length, KvGeWktGeometry& out, std::string* message) {
    Parsed p;
    if (!Parse(text, length, 1, p, message)) return 0;
    KvGeWktGeometry g;
    if (p.z) {
      switch (p.type) {
        case kTPoint:
          g.m_Kind = KvGeWktGeometry::kPointZ;
          g.m_Empty = p.empty;
          if (!p.empty) g.m_Point3.Set(p.P(0)[0], p.P(0)[1], p.P(0)[2]);
          break;
        case kTMultiPoint:
        case kTLineString:
          g.m_Kind = p.type == kTMultiPoint ? KvGeWktGeometry::kMultiPointZ : KvGeWktGeometry::kLineStringZ;
          g.m_Points3.SetSize(p.Points());
          for (int i = 0; i < p.Points(); ++i) g.m_Points3.GetData()[i].Set(p.P(i)[0], p.P(i)[1], p.P(i)[2]);
          break;
        case kTPolygon:
          if (!BuildOneRing<KvGePoint3dArray, KvGePoint3d>(p, g.m_Points3, message)) return 0;
          g.m_Kind = KvGeWktGeometry::kPolygonZ;
          break;
        default:
          return Reject(message, p, std::string(kTypeNames[p.type]) + " Z is not supported");
      }
    } else {
      switch (p.type) {
        case kTPoint:
          g.m_Kind = KvGeWktGeometry::kPoint;
          g.m_Empty = p.empty;
          if (!p.empty) g.m_Point.Set(p.P(0)[0], p.P(0)[1]);
          break;
        case kTMultiPoint:
          g.m_Kind = KvGeWktGeometry::kMultiPoint;
          g.m_Points.SetSize(p.Points());
          for (int i = 0; i < p.Points(); ++i) g.m_Points.GetData()[i].Set(p.P(i)[0], p.P(i)[1]);
          break;
        case kTLineString:
          g.m_Kind = KvGeWktGeometry::kLineString;
          if (!p.empty) FillList<KvGePoint2dArray, KvGePoint2d>(p, 0, 0, g.m_Polyline);
          break;
        case kTMultiLineString:
          g.m_Kind = KvGeWktGeometry::kMultiLineString;
          g.m_Lines.SetSize(p.Lists());
          for (int l = 0; l < p.Lists(); ++l) FillList<KvGePoint2dArray, KvGePoint2d>(p, l, 0, g.m_Lines.GetData()[l]);
          break;
        case kTPolygon:
        case kTMultiPolygon:
          g.m_Kind = p.type == kTPolygon ? KvGeWktGeometry::kPolygon : KvGeWktGeometry::kMultiPolygon;
          BuildRegion(p, g.m_Region);
          break;
        default:
          return 0;
      }
    }
    out = g;
    return 1;
  }
};

int KvGeReadWkt(const char* text, std::size_t length, KvGeWktGeometry& out, std::string* message) {
  return Guarded(message, [&] { return KvGeWktAccess::Read(text, length, out, message); });
}

#define KVGE_WKT_ZERO_TERMINATED(T)                                                  \
  int KvGeReadWkt(const char* text, T& out, std::string* message) {                  \
    return KvGeReadWkt(text, text == nullptr ? 0 : std::strlen(text), out, message); \
  }
KVGE_WKT_ZERO_TERMINATED(KvGePoint2d)
KVGE_WKT_ZERO_TERMINATED(KvGePoint2dArray)
KVGE_WKT_ZERO_TERMINATED(KvGeLine2d)
KVGE_WKT_ZERO_TERMINATED(KvGePolyline2d)
KVGE_WKT_ZERO_TERMINATED(KvGePolyline2dArray)
KVGE_WKT_ZERO_TERMINATED(KvBtDynArray<KvGeLine2d>)
KVGE_WKT_ZERO_TERMINATED(KvGePolygon2d)
KVGE_WKT_ZERO_TERMINATED(KvGePolygon2dArray)
KVGE_WKT_ZERO_TERMINATED(KvGePoint3d)
KVGE_WKT_ZERO_TERMINATED(KvGePoint3dArray)
KVGE_WKT_ZERO_TERMINATED(KvGeLine3d)
KVGE_WKT_ZERO_TERMINATED(KvGeLine23d)
KVGE_WKT_ZERO_TERMINATED(KvGePolygon3d)
KVGE_WKT_ZERO_TERMINATED(KvGePolygon23d)
KVGE_WKT_ZERO_TERMINATED(KvGeWktGeometry)
#undef KVGE_WKT_ZERO_TERMINATED

// ---- writing ----

void KvGeWriteWktNumber(double v, std::string& out) { Num(v, out); }

void KvGeWriteWkt(const KvGePoint2d& p, std::string& out) {
  out += "POINT (";
  Pt(p, out);
  out += ')';
}

void KvGeWriteWkt(const KvGePoint3d& p, std::string& out) {
  out += "POINT Z (";
  Pt(p, out);
  out += ')';
}

void KvGeWriteWkt(const KvGePoint2dArray& points, std::string& out) { WriteMultiPoint(points, "MULTIPOINT", out); }
void KvGeWriteWkt(const KvGePoint3dArray& points, std::string& out) { WriteMultiPoint(points, "MULTIPOINT Z", out); }

void KvGeWriteWkt(const KvGeLine2d& line, std::string& out) {
  out += "LINESTRING (";
  Pt(line.P1(), out);
  out += ", ";
  Pt(line.P2(), out);
  out += ')';
}

void KvGeWriteWkt(const KvGeLine3d& line, std::string& out) {
  out += "LINESTRING Z (";
  Pt(line.P1(), out);
  out += ", ";
  Pt(line.P2(), out);
  out += ')';
}

void KvGeWriteWkt(const KvGeLine23d& line, std::string& out) {
  out += "LINESTRING Z (";
  Pt(line.P1(), out);
  out += ", ";
  Pt(line.P2(), out);
  out += ')';
}

void KvGeWriteWkt(const KvGePolyline2d& polyline, std::string& out) { WriteSeq(polyline, 0, "LINESTRING", out); }

void KvGeWriteWkt(const KvGePolyline2dArray& polylines, std::string& out) {
  out += "MULTILINESTRING";
  if (polylines.GetSize() == 0) {
    out += " EMPTY";
    return;
  }
  out += " (";
  for (int l = 0; l < polylines.GetSize(); ++l) {
    if (l) out += ", ";
    if (polylines.GetData()[l].GetSize() == 0)
      out += "EMPTY";
    else
      Seq(polylines.GetData()[l], 0, out);
  }
  out += ')';
}

void KvGeWriteWkt(const KvBtDynArray<KvGeLine2d>& lines, std::string& out) {
  out += "MULTILINESTRING";
  if (lines.GetSize() == 0) {
    out += " EMPTY";
    return;
  }
  out += " (";
  for (int l = 0; l < lines.GetSize(); ++l) {
    out += l ? ", (" : "(";
    Pt(lines.GetData()[l].P1(), out);
    out += ", ";
    Pt(lines.GetData()[l].P2(), out);
    out += ')';
  }
  out += ')';
}

void KvGeWriteWkt(const KvGePolygon2d& polygon, std::string& out) { WriteSeq(polygon, 1, "POLYGON", out); }
void KvGeWriteWkt(const KvGePolygon3d& polygon, std::string& out) { WriteSeq(polygon, 1, "POLYGON Z", out); }
void KvGeWriteWkt(const KvGePolygon23d& polygon, std::string& out) { WriteSeq(polygon, 1, "POLYGON Z", out); }
void KvGeWriteWkt(const KvGePolygon2dArray& region, std::string& out) { WriteRegion(region, out); }

void KvGeWriteWkt(const KvGeWktGeometry& g, std::string& out) {
  switch (g.GetKind()) {
    case KvGeWktGeometry::kNone:
      break;
    case KvGeWktGeometry::kPoint:
      if (g.IsEmpty())
        out += "POINT EMPTY";
      else
        KvGeWriteWkt(g.Point(), out);
      break;
    case KvGeWktGeometry::kMultiPoint:
      KvGeWriteWkt(g.Points(), out);
      break;
    case KvGeWktGeometry::kLineString:
      KvGeWriteWkt(g.Polyline(), out);
      break;
    case KvGeWktGeometry::kMultiLineString:
      KvGeWriteWkt(g.Polylines(), out);
      break;
    case KvGeWktGeometry::kPolygon:
    case KvGeWktGeometry::kMultiPolygon:
      KvGeWriteWkt(g.Region(), out);
      break;
    case KvGeWktGeometry::kPointZ:
      if (g.IsEmpty())
        out += "POINT Z EMPTY";
      else
        KvGeWriteWkt(g.Point3d(), out);
      break;
    case KvGeWktGeometry::kMultiPointZ:
      WriteMultiPoint(g.Points3d(), "MULTIPOINT Z", out);
      break;
    case KvGeWktGeometry::kLineStringZ:
      WriteSeq(g.Points3d(), 0, "LINESTRING Z", out);
      break;
    case KvGeWktGeometry::kPolygonZ:
      WriteSeq(g.Points3d(), 1, "POLYGON Z", out);
      break;
  }
}

// ---- KvGeWktGeometry ----

KvGeWktGeometry::~KvGeWktGeometry() = default;

KvGeWktGeometry& KvGeWktGeometry::Clear() { return *this = KvGeWktGeometry(); }

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePoint2d& p) {
  Clear();
  m_Kind = kPoint;
  m_Point = p;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePoint2dArray& points) {
  Clear();
  m_Kind = kMultiPoint;
  m_Points = points;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGeLine2d& line) {
  Clear();
  m_Kind = kLineString;
  m_Polyline.Add(line.P1());
  m_Polyline.Add(line.P2());
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePolyline2d& polyline) {
  Clear();
  m_Kind = kLineString;
  m_Polyline = polyline;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePolyline2dArray& polylines) {
  Clear();
  m_Kind = kMultiLineString;
  m_Lines = polylines;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvBtDynArray<KvGeLine2d>& lines) {
  Clear();
  m_Kind = kMultiLineString;
  m_Lines.SetSize(lines.GetSize());
  for (int l = 0; l < lines.GetSize(); ++l) {
    m_Lines.GetData()[l].Add(lines.GetData()[l].P1());
    m_Lines.GetData()[l].Add(lines.GetData()[l].P2());
  }
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePolygon2d& polygon) {
  Clear();
  m_Kind = kPolygon;
  if (polygon.GetSize() > 0) m_Region.Add(polygon);
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePolygon2dArray& region) {
  Clear();
  const std::vector<int> owner = GroupRings(region);
  int polygons = 0;
  for (int i = 0; i < region.GetSize(); ++i)
    if (owner[static_cast<std::size_t>(i)] < 0 && region.GetData()[i].GetSize() > 0) ++polygons;
  m_Kind = polygons > 1 ? kMultiPolygon : kPolygon;
  m_Region = region;
  m_Region.Tag() = 0;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePoint3d& p) {
  Clear();
  m_Kind = kPointZ;
  m_Point3 = p;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePoint3dArray& points) {
  Clear();
  m_Kind = kMultiPointZ;
  m_Points3 = points;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGeLine3d& line) {
  Clear();
  m_Kind = kLineStringZ;
  m_Points3.Add(line.P1());
  m_Points3.Add(line.P2());
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGeLine23d& line) {
  Clear();
  m_Kind = kLineStringZ;
  m_Points3.Add(line.P1());
  m_Points3.Add(line.P2());
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePolygon23d& polygon) {
  Clear();
  m_Kind = kPolygonZ;
  m_Points3 = polygon;
  return *this;
}

KvGeWktGeometry& KvGeWktGeometry::Set(const KvGePolygon3d& polygon) {
  Clear();
  m_Kind = kPolygonZ;
  m_Points3 = polygon;
  return *this;
}

const char* KvGeWktGeometry::KindName() const {
  switch (m_Kind) {
    case kPoint:
      return "POINT";
    case kMultiPoint:
      return "MULTIPOINT";
    case kLineString:
      return "LINESTRING";
    case kMultiLineString:
      return "MULTILINESTRING";
    case kPolygon:
      return "POLYGON";
    case kMultiPolygon:
      return "MULTIPOLYGON";
    case kPointZ:
      return "POINT Z";
    case kMultiPointZ:
      return "MULTIPOINT Z";
    case kLineStringZ:
      return "LINESTRING Z";
    case kPolygonZ:
      return "POLYGON Z";
    default:
      return "";
  }
}

int KvGeWktGeometry::Dimension() const {
  switch (m_Kind) {
    case kPoint:
    case kMultiPoint:
    case kPointZ:
    case kMultiPointZ:
      return 0;
    case kLineString:
    case kMultiLineString:
    case kLineStringZ:
      return 1;
    case kPolygon:
    case kMultiPolygon:
    case kPolygonZ:
      return 2;
    default:
      return -1;
  }
}

int KvGeWktGeometry::Is3d() const {
  return (m_Kind == kPointZ || m_Kind == kMultiPointZ || m_Kind == kLineStringZ || m_Kind == kPolygonZ) ? 1 : 0;
}

int KvGeWktGeometry::IsEmpty() const {
  switch (m_Kind) {
    case kPoint:
    case kPointZ:
      return m_Empty;
    case kMultiPoint:
      return m_Points.GetSize() == 0;
    case kLineString:
      return m_Polyline.GetSize() == 0;
    case kMultiLineString:
      for (const KvGePolyline2d& l : m_Lines)
        if (l.GetSize() > 0) return 0;
      return 1;
    case kPolygon:
    case kMultiPolygon:
      for (const KvGePolygon2d& r : m_Region)
        if (r.GetSize() > 0) return 0;
      return 1;
    case kMultiPointZ:
    case kLineStringZ:
    case kPolygonZ:
      return m_Points3.GetSize() == 0;
    default:
      return 1;
  }
}

int KvGeWktGeometry::GetPoint(KvGePoint2d& out) const {
  if (m_Empty) return 0;
  if (m_Kind == kPoint) {
    out = m_Point;
    return 1;
  }
  if (m_Kind == kPointZ) {
    out.Set(m_Point3.x, m_Point3.y);
    return 1;
  }
  return 0;
}

int KvGeWktGeometry::GetPoints(KvGePoint2dArray& out) const {
  KvGePoint2dArray a;
  switch (m_Kind) {
    case kPoint:
    case kPointZ: {
      KvGePoint2d p;
      if (GetPoint(p)) a.Add(p);
      break;
    }
    case kMultiPoint:
      a = m_Points;
      break;
    case kLineString:
      a = m_Polyline;
      break;
    case kMultiLineString:
      for (const KvGePolyline2d& l : m_Lines) a.Append(l);
      break;
    case kPolygon:
    case kMultiPolygon:
      for (const KvGePolygon2d& r : m_Region) a.Append(r);
      break;
    case kMultiPointZ:
    case kLineStringZ:
    case kPolygonZ:
      for (const KvGePoint3d& p : m_Points3) a.Add(KvGePoint2d(p.x, p.y));
      break;
    default:
      return 0;
  }
  out = a;
  return 1;
}

int KvGeWktGeometry::GetLine(KvGeLine2d& out) const {
  KvGePolyline2d l;
  if (!GetPolyline(l) || l.GetSize() != 2) return 0;
  out = KvGeLine2d(l.GetData()[0], l.GetData()[1]);
  return 1;
}

int KvGeWktGeometry::GetPolyline(KvGePolyline2d& out) const {
  if (m_Kind == kLineString) {
    out = m_Polyline;
    return 1;
  }
  if (m_Kind == kLineStringZ) {
    out.Set(m_Points3);
    for (KvGePoint2d& p : out) p.m_bInfinite = 0;
    return 1;
  }
  return 0;
}

int KvGeWktGeometry::GetPolylines(KvGePolyline2dArray& out) const {
  KvGePolyline2dArray a;
  KvGePolyline2d l;
  switch (m_Kind) {
    case kLineString:
    case kLineStringZ:
      GetPolyline(l);
      a.Add(l);
      break;
    case kMultiLineString:
      a = m_Lines;
      break;
    case kPolygon:
    case kMultiPolygon:
      for (const KvGePolygon2d& r : m_Region) {
        l.Set(r);
        if (r.GetSize() > 0) l.Add(r.GetData()[0]);
        a.Add(l);
      }
      break;
    case kPolygonZ:
      l.Set(m_Points3);
      for (KvGePoint2d& p : l) p.m_bInfinite = 0;
      if (l.GetSize() > 0) l.Add(l.GetData()[0]);
      a.Add(l);
      break;
    default:
      return 0;
  }
  out = a;
  return 1;
}

int KvGeWktGeometry::GetRegion(KvGePolygon2dArray& out) const {
  if (m_Kind == kPolygon || m_Kind == kMultiPolygon) {
    out = m_Region;
    return 1;
  }
  if (m_Kind == kPolygonZ) {
    KvGePolygon2dArray a;
    if (m_Points3.GetSize() > 0) {
      KvGePolygon2d ring{KvGePolygon3d(m_Points3)};
      Orient(
          ring, [](const auto& r) { return r.Area(); }, 1);
      a.Add(ring);
    }
    out = a;
    return 1;
  }
  return 0;
}

KvGeBox2d KvGeWktGeometry::BoundingBox() const {
  // Started at the first point rather than folded into the empty box, whose corners at 1e9 would
  // otherwise reach into the box of coordinates lying beyond them.
  KvGeBox2d box;
  KvGePoint2dArray points;
  if (GetPoints(points) && points.GetSize() > 0) {
    box.Set(points[0], points[0]);
    for (const KvGePoint2d& p : points) box.Include(p);
  }
  return box;
}
