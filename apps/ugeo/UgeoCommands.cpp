#include "UgeoCommands.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>

#include "UgeoInput.h"
#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/intersection/KvGePreparedRegion2d.h"
#include "geometry/io/KvGeSvg.h"
#include "geometry/io/KvGeWkt.h"
#include "geometry/polygons/KvGeParallel2d.h"

// Output.

void UgeoOutput::Emit() {
  m_Line.push_back('\n');
  std::fwrite(m_Line.data(), 1, m_Line.size(), stdout);
  m_Line.clear();
}

void UgeoOutput::Number(double v) {
  // -0 (a crossing computed as negative zero) prints as 0.
  v += 0.0;
  if (m_bJson && !std::isfinite(v)) {
    m_Line += "null";
    return;
  }
  KvGeWriteWktNumber(v, m_Line);
}

void UgeoOutput::JsonString(const std::string& text) {
  static const char kHex[] = "0123456789abcdef";
  m_Line.push_back('"');
  for (const char ch : text) {
    const unsigned char c = static_cast<unsigned char>(ch);
    if (c == '"' || c == '\\') {
      m_Line.push_back('\\');
      m_Line.push_back(ch);
    } else if (c < 0x20) {
      m_Line += "\\u00";
      m_Line.push_back(kHex[c >> 4]);
      m_Line.push_back(kHex[c & 15]);
    } else {
      m_Line.push_back(ch);
    }
  }
  m_Line.push_back('"');
}

void UgeoOutput::Finish() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) throw UgeoError("standard output: write failed");
}

namespace {

// Results are printed with -0 as 0: the library's crossings can give a negative zero, which
// tells a reader nothing. Adding 0.0 changes no other value.
void PositiveZeros(KvGePoint2dArray& points) {
  for (KvGePoint2d& p : points) {
    p.x += 0.0;
    p.y += 0.0;
  }
}
template <class Rings>
void PositiveZerosAll(Rings& rings) {
  for (auto& r : rings) PositiveZeros(r);
}

// Calls f(geometry, source) for every geometry of the arguments, numbered from position on.
template <class F>
void ForEachGeometry(const char* role, int position, const std::vector<std::string>& args, F&& f) {
  UgeoProgress progress;
  KvGeWktGeometry g;
  for (std::size_t i = 0; i < args.size(); ++i) {
    UgeoSource src(role, position + static_cast<int>(i), args[i], &progress);
    while (src.Next(g)) f(static_cast<const KvGeWktGeometry&>(g), static_cast<const UgeoSource&>(src));
  }
}

// Many queries against one region go through the prepared region: its answers are those of the
// free functions, bit for bit, at logarithmic cost per query instead of linear.
int WantPrepared(const std::vector<std::string>& args) {
  if (args.size() > 4) return 1;
  for (const std::string& a : args)
    if (a == "-" || (!a.empty() && a[0] == '@')) return 1;
  return 0;
}

void WriteWktLine(UgeoOutput& out, const std::string& wkt) {
  if (out.Json()) {
    out.Line() += "{\"wkt\":";
    out.JsonString(wkt);
    out.Line() += "}";
  } else {
    out.Line() += wkt;
  }
  out.Emit();
}

// The region of a query. A region of one ring is taken as a polygon (KvGePolygon2d), which
// measures the 0.001 boundary band of its edges; a region of several rings as a polygon set,
// whose boundary is found by its scan line alone.
struct Region {
  KvGePolygon2dArray set;
  KvGePolygon2d ring;
  bool single = false;
  std::unique_ptr<KvGePreparedRegion2d> prepared;

  Region(const KvGePolygon2dArray& s, bool prepare) : set(s), single(s.GetSize() == 1) {
    if (single) ring = s[0];
    if (prepare) prepared.reset(single ? new KvGePreparedRegion2d(ring) : new KvGePreparedRegion2d(set));
  }

  unsigned short Contain(const KvGePoint2d& p) const {
    if (prepared) return prepared->Containment(p);
    return single ? Containment(p, ring) : Containment(p, set);
  }
  unsigned short Contain(const KvGePolyline2d& l) const {
    if (l.GetSize() == 2) {
      const KvGeLine2d line(l[0], l[1]);
      if (prepared) return prepared->Containment(line);
      return single ? Containment(line, ring) : Containment(line, set);
    }
    if (prepared) return prepared->Containment(l);
    return single ? Containment(l, ring) : Containment(l, set);
  }
  unsigned short Contain(const KvGePolygon2dArray& tested) const {
    if (tested.GetSize() == 1) {
      if (prepared) return prepared->Containment(tested[0]);
      return single ? Containment(tested[0], ring) : Containment(tested[0], set);
    }
    // A polygon set tested answers 1 whatever it is: the library does not make this test.
    return single ? Containment(tested, ring) : Containment(tested, set);
  }
  unsigned short Contain(const KvGeWktGeometry& g) const {
    if (g.IsEmpty()) return 0;
    unsigned short bits = 0;
    switch (g.GetKind()) {
      case KvGeWktGeometry::kPoint:
      case KvGeWktGeometry::kPointZ: {
        KvGePoint2d p;
        g.GetPoint(p);
        return Contain(p);
      }
      case KvGeWktGeometry::kMultiPoint:
      case KvGeWktGeometry::kMultiPointZ: {
        KvGePoint2dArray points;
        g.GetPoints(points);
        for (const KvGePoint2d& p : points) bits |= Contain(p);
        return bits;
      }
      case KvGeWktGeometry::kLineString:
      case KvGeWktGeometry::kLineStringZ:
      case KvGeWktGeometry::kMultiLineString: {
        KvGePolyline2dArray lines;
        g.GetPolylines(lines);
        for (const KvGePolyline2d& l : lines) bits |= Contain(l);
        return bits;
      }
      default: {
        KvGePolygon2dArray tested;
        g.GetRegion(tested);
        return Contain(tested);
      }
    }
  }

  // The pieces of l (mode 0 inside, else inside and boundary joined), appended to out; returns
  // their number.
  int Pieces(const KvGePolyline2d& l, int mode, KvBtDynArray<KvGeLine2d>& lines, KvGePolyline2dArray& polys,
             KvGePolyline2dArray& out) const {
    if (l.GetSize() < 2) return 0;
    if (l.GetSize() == 2) {
      const KvGeLine2d line(l[0], l[1]);
      if (prepared)
        prepared->Intersection2d(line, lines, mode);
      else if (single)
        Intersection2d(line, static_cast<const KvGePoint2dArray&>(ring), lines, mode);
      else
        Intersection2d(line, set, lines, mode);
      KvGePolyline2d piece;
      for (const KvGeLine2d& p : lines) {
        piece.SetSize(0);
        piece.Add(p.P1());
        piece.Add(p.P2());
        out.Add(piece);
      }
      return lines.GetSize();
    }
    if (single)
      Intersection2d(l, ring, polys, mode);
    else
      Intersection2d(l, set, polys, mode);
    for (const KvGePolyline2d& p : polys) out.Add(p);
    return polys.GetSize();
  }
};

Region ReadRegion(const std::string& arg, bool prepare) {
  UgeoOrigin origin;
  const KvGeWktGeometry g = UgeoReadOne("REGION", 1, arg, origin);
  return Region(UgeoRegion(g, origin), prepare);
}

void ContainmentWords(unsigned short bits, std::string& s) {
  if (bits == 0) {
    s += "none";
    return;
  }
  const std::size_t start = s.size();
  const char* words[3] = {"outside", "boundary", "inside"};
  for (int k = 0; k < 3; ++k) {
    if ((bits & (1u << k)) == 0) continue;
    if (s.size() != start) s.push_back('+');
    s += words[k];
  }
}

}  // namespace

void UgeoArea(const UgeoOptions& o, UgeoOutput& out) {
  KvGePolygon2dArray region;
  ForEachGeometry("GEOM", 1, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource&) {
    const double area = g.GetRegion(region) ? region.Area() : 0.0;
    if (out.Json()) out.Line() += "{\"area\":";
    out.Number(area);
    if (out.Json()) out.Line() += "}";
    out.Emit();
  });
}

void UgeoBbox(const UgeoOptions& o, UgeoOutput& out) {
  ForEachGeometry("GEOM", 1, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource&) {
    const KvGeBox2d box = g.BoundingBox();
    const bool empty = g.IsEmpty() || box.Min().x > box.Max().x;
    if (out.Json()) {
      if (empty) {
        out.Line() += "{\"empty\":true}";
      } else {
        const double v[4] = {box.Min().x, box.Min().y, box.Max().x, box.Max().y};
        const char* keys[4] = {"{\"xmin\":", ",\"ymin\":", ",\"xmax\":", ",\"ymax\":"};
        for (int k = 0; k < 4; ++k) {
          out.Line() += keys[k];
          out.Number(v[k]);
        }
        out.Line() += "}";
      }
      out.Emit();
      return;
    }
    KvGePolygon2d ring;
    if (!empty) {
      ring.Add(box.Min());
      ring.Add(KvGePoint2d(box.Max().x, box.Min().y));
      ring.Add(box.Max());
      ring.Add(KvGePoint2d(box.Min().x, box.Max().y));
    }
    KvGeWriteWkt(ring, out.Line());
    out.Emit();
  });
}

void UgeoContains(const UgeoOptions& o, UgeoOutput& out) {
  const Region region = ReadRegion(o.first, WantPrepared(o.rest) != 0);
  ForEachGeometry("GEOM", 2, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource&) {
    const unsigned short bits = region.Contain(g);
    if (out.Json()) {
      out.Line() += "{\"containment\":\"";
      ContainmentWords(bits, out.Line());
      out.Line() += "\",\"bits\":" + std::to_string(bits) + "}";
    } else {
      ContainmentWords(bits, out.Line());
      out.Line() += " " + std::to_string(bits);
    }
    out.Emit();
  });
}

void UgeoPieces(const UgeoOptions& o, UgeoOutput& out) {
  const Region region = ReadRegion(o.first, WantPrepared(o.rest) != 0);
  KvBtDynArray<KvGeLine2d> lines;
  KvGePolyline2dArray polys, pieces, members;
  std::string wkt;
  ForEachGeometry("LINE", 2, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource& src) {
    const KvGeWktGeometry::Kind kind = g.GetKind();
    if (kind != KvGeWktGeometry::kLineString && kind != KvGeWktGeometry::kLineStringZ &&
        kind != KvGeWktGeometry::kMultiLineString)
      src.Origin().Fail(std::string("expected LINESTRING or MULTILINESTRING, got ") + g.KindName());
    members.SetSize(0);
    g.GetPolylines(members);
    pieces.SetSize(0);
    int count = 0;
    for (const KvGePolyline2d& l : members) count += region.Pieces(l, o.mode, lines, polys, pieces);
    wkt.clear();
    PositiveZerosAll(pieces);
    KvGeWriteWkt(pieces, wkt);
    if (out.Json()) {
      out.Line() += "{\"pieces\":" + std::to_string(count) + ",\"wkt\":";
      out.JsonString(wkt);
      out.Line() += "}";
    } else {
      out.Line() += wkt;
    }
    out.Emit();
  });
}

namespace {

// A geometry as what a distance needs: its segments (a point as a segment of no length) and,
// for an area, its region.
struct Shape {
  std::vector<KvGePoint2d> a, b;
  KvGePolygon2dArray set;
  bool area = false;

  void Add(const KvGePoint2d& p, const KvGePoint2d& q) {
    a.push_back(p);
    b.push_back(q);
  }

  Shape(const KvGeWktGeometry& g, const UgeoOrigin& origin) {
    if (g.IsEmpty()) origin.Fail("a distance needs a geometry that is not empty");
    if (g.Dimension() == 2) {
      area = true;
      g.GetRegion(set);
      for (const KvGePolygon2d& r : set)
        for (int i = 0; i < r.GetSize(); ++i) Add(r[i], r[i + 1 == r.GetSize() ? 0 : i + 1]);
    } else if (g.Dimension() == 1) {
      KvGePolyline2dArray lines;
      g.GetPolylines(lines);
      for (const KvGePolyline2d& l : lines) {
        if (l.GetSize() == 1) Add(l[0], l[0]);
        for (int i = 0; i + 1 < l.GetSize(); ++i) Add(l[i], l[i + 1]);
      }
    } else {
      KvGePoint2dArray points;
      g.GetPoints(points);
      for (const KvGePoint2d& p : points) Add(p, p);
    }
  }

  // 1 when a vertex of other lies inside this area or on its boundary.
  bool Covers(const Shape& other) const {
    if (!area) return false;
    const bool single = set.GetSize() == 1;
    for (const KvGePoint2d& p : other.a)
      if ((single ? Containment(p, set[0]) : Containment(p, set)) != 1) return true;
    return false;
  }
};

double Distance(const Shape& s, const Shape& t) {
  if (s.Covers(t) || t.Covers(s)) return 0.0;
  double d2 = std::numeric_limits<double>::infinity();
  KvGePoint2d x;
  for (std::size_t i = 0; i < s.a.size(); ++i) {
    for (std::size_t j = 0; j < t.a.size(); ++j) {
      // Segments that cross (within 0.001 beyond their ends, as the library's crossings count)
      // touch; otherwise the nearest pair involves an end point.
      if (IntrLineLine2d(s.a[i], s.b[i], t.a[j], t.b[j], x, 1, 1)) return 0.0;
      d2 = std::min(d2, DistanceSqrToLineseg2d(s.a[i], s.b[i], t.a[j]));
      d2 = std::min(d2, DistanceSqrToLineseg2d(s.a[i], s.b[i], t.b[j]));
      d2 = std::min(d2, DistanceSqrToLineseg2d(t.a[j], t.b[j], s.a[i]));
      d2 = std::min(d2, DistanceSqrToLineseg2d(t.a[j], t.b[j], s.b[i]));
    }
  }
  return std::sqrt(d2);
}

}  // namespace

void UgeoDistance(const UgeoOptions& o, UgeoOutput& out) {
  UgeoOrigin origin;
  const Shape a(UgeoReadOne("A", 1, o.first, origin), origin);
  ForEachGeometry("B", 2, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource& src) {
    const double d = Distance(a, Shape(g, src.Origin()));
    if (out.Json()) out.Line() += "{\"distance\":";
    out.Number(d);
    if (out.Json()) out.Line() += "}";
    out.Emit();
  });
}

void UgeoBoolean(const UgeoOptions& o, UgeoOutput& out, int op) {
  KvGePolygon2dArray result;
  bool first = true;
  ForEachGeometry("GEOM", 1, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource& src) {
    const KvGePolygon2dArray region = UgeoRegion(g, src.Origin());
    if (!UgeoInRegionRange(region)) src.Origin().Fail("coordinate beyond the range of the region operations (1e9)");
    if (first)
      result = region;
    else if (op == 1)
      result |= region;
    else if (op == 2)
      result &= region;
    else
      result -= region;
    first = false;
  });
  PositiveZerosAll(result);
  WriteWktLine(out, KvGeWriteWkt(result));
}

void UgeoOffset(const UgeoOptions& o, UgeoOutput& out) {
  // The options are checked here, so that a refusal below can only concern the region or D.
  if (!std::isfinite(o.miterLimit)) throw UgeoError("--miter-limit: expected a finite number");
  if (!(o.eps > 0.0) || !std::isfinite(o.eps)) throw UgeoError("--eps: expected a finite number above 0");
  const double d = UgeoNumber("D", 2, o.second);
  const KvGeJoin2d join = o.join == "round" ? kKvGeJoinRound : o.join == "square" ? kKvGeJoinSquare : kKvGeJoinMiter;
  const KvGeEnd2d ends = o.ends == "round" ? kKvGeEndRound : o.ends == "square" ? kKvGeEndSquare : kKvGeEndButt;
  KvGePolygon2dArray result;
  ForEachGeometry("REGION", 1, {o.first}, [&](const KvGeWktGeometry& g, const UgeoSource& src) {
    int ok = 0;
    result.SetSize(0);
    const KvGeWktGeometry::Kind kind = g.GetKind();
    if (g.Dimension() == 2) {
      const KvGePolygon2dArray region = UgeoRegion(g, src.Origin());
      ok = region.GetSize() == 1 ? ParallelPolygon2d(region[0], d, result, join, o.miterLimit, o.eps)
                                 : ParallelPolygon2d(region, d, result, join, o.miterLimit, o.eps);
    } else if (kind == KvGeWktGeometry::kLineString || kind == KvGeWktGeometry::kLineStringZ ||
               kind == KvGeWktGeometry::kPoint || kind == KvGeWktGeometry::kPointZ) {
      KvGePoint2dArray points;
      g.GetPoints(points);
      if (!(d > 0.0)) throw UgeoError("D argument 2: the band around a line or point needs D > 0 at offset 0");
      ok = ParallelPolygon2d(KvGePolyline2d(points), d, result, ends, join, o.miterLimit, o.eps);
    } else {
      src.Origin().Fail(std::string("expected POLYGON, MULTIPOLYGON, LINESTRING or POINT, got ") + g.KindName());
    }
    if (!ok)
      src.Origin().Fail(
          "offset refused (a coordinate or D beyond the range of the region operations, 1e9, or --eps too small)");
    PositiveZerosAll(result);
    WriteWktLine(out, KvGeWriteWkt(result));
  });
}

void UgeoClean(const UgeoOptions& o, UgeoOutput& out) {
  if (!(o.eps > 0.0) || !std::isfinite(o.eps)) throw UgeoError("--eps: expected a finite number above 0");
  std::string wkt;
  ForEachGeometry("GEOM", 1, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource& src) {
    wkt.clear();
    const KvGeWktGeometry::Kind kind = g.GetKind();
    if (g.Dimension() == 2) {
      KvGePolygon2dArray region = UgeoRegion(g, src.Origin());
      if (!UgeoInRegionRange(region)) src.Origin().Fail("coordinate beyond the range of the region operations (1e9)");
      // A ring that would keep fewer than three vertices stays as it is; the loop removal then
      // drops it for having no area.
      for (KvGePolygon2d& ring : region) StreckenzugKorrigieren2d(ring, o.eps);
      RemoveSchlaufen2d(region);
      PositiveZerosAll(region);
      KvGeWriteWkt(region, wkt);
    } else if (kind == KvGeWktGeometry::kLineString || kind == KvGeWktGeometry::kLineStringZ) {
      KvGePolyline2d l;
      g.GetPolyline(l);
      StreckenzugKorrigieren2d(l, o.eps);
      RemoveSchlaufen2d(l);
      PositiveZeros(l);
      KvGeWriteWkt(l, wkt);
    } else if (kind == KvGeWktGeometry::kMultiLineString) {
      KvGePolyline2dArray lines;
      g.GetPolylines(lines);
      for (KvGePolyline2d& l : lines) {
        StreckenzugKorrigieren2d(l, o.eps);
        RemoveSchlaufen2d(l);
        PositiveZeros(l);
      }
      KvGeWriteWkt(lines, wkt);
    } else {
      KvGeWriteWkt(g, wkt);
    }
    WriteWktLine(out, wkt);
  });
}

namespace {

// The segment a-b drawn in its parts, each styled by where it lies in the region: the line's
// crossings with every ring sorted by a calculator, each part typed by the crossing count (as
// the pieces are found) and clipped to the segment.
void AddStateParts(KvGeSvgWriter& svg, const KvGePolygon2dArray& region, const KvGePoint2d& a, const KvGePoint2d& b) {
  // A fresh calculator per segment: it starts with its two records at infinity.
  KvGeIntrCalculator2d calc;
  const KvGeLine2d unbounded(a, b, 0);
  for (const KvGePolygon2d& ring : region) Intersection2d(unbounded, ring, calc, 1);
  calc.Calculate0();
  const KvGeIntrPart2d segment(KvGeIntrPoint2d(a, 0, -1, 0, 0.0, 0.0, 0, 0, 0),
                               KvGeIntrPoint2d(b, 0, 1, 0, Distance2d(a, b), 0.0, 0, 0, 0), 0);
  for (int i = 0; i < calc.GetSize0(); ++i) {
    KvGeIntrPart2d part = calc.Part0(static_cast<unsigned>(i));
    part.Intersect0(segment);
    if (part.Min().Compare0(part.Max()) >= 0) continue;  // outside the segment, or no length
    const int type = part.Type();
    svg.AddLine(KvGeLine2d(part.Min(), part.Max()), type == 1   ? KvGeSvgStyle::kInside
                                                    : type == 0 ? KvGeSvgStyle::kBoundary
                                                                : KvGeSvgStyle::kOutside);
  }
}

KvGeSvgStyle StateStyle(unsigned short bits) {
  return bits == 4 ? KvGeSvgStyle::kInside : bits == 1 ? KvGeSvgStyle::kOutside : KvGeSvgStyle::kBoundary;
}

}  // namespace

void UgeoSvg(const UgeoOptions& o, UgeoOutput&) {
  KvGeSvgWriter svg;
  svg.SetWidth(o.width).SetTitle(o.title);
  std::unique_ptr<Region> region;
  KvGePolyline2dArray lines;
  KvGePoint2dArray points;
  ForEachGeometry("GEOM", 2, o.rest, [&](const KvGeWktGeometry& g, const UgeoSource& src) {
    const int dim = g.Dimension();
    if (o.state && !region) {
      region.reset(new Region(UgeoRegion(g, src.Origin()), false));
      svg.AddRegion(region->set);
      return;
    }
    if (!o.state || dim == 2) {
      svg.AddGeometry(g, dim == 2 ? KvGeSvgStyle::kRegion : dim == 1 ? KvGeSvgStyle::kLine : KvGeSvgStyle::kPoint);
      return;
    }
    if (dim == 1) {
      g.GetPolylines(lines);
      for (const KvGePolyline2d& l : lines)
        for (int i = 0; i + 1 < l.GetSize(); ++i) AddStateParts(svg, region->set, l[i], l[i + 1]);
    } else if (dim == 0) {
      g.GetPoints(points);
      for (const KvGePoint2d& p : points) svg.AddPoint(p, StateStyle(region->Contain(p)));
    }
  });
  if (!svg.WriteFile(o.first)) throw UgeoError("OUT argument 1: cannot write " + o.first);
}
