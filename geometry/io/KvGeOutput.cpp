// Readable forms of the value types for debugging and test messages: WKT where WKT has the
// geometry, a short keyword form otherwise. Numbers follow the stream's own format (precision,
// fixed or scientific), so a caller who needs more digits sets them on the stream.
#include <ostream>

#include "UtilityGeometry.h"

namespace {

// Adding 0.0 turns a -0 (a crossing computed as -0, say) into 0, so equal values print alike.
double Num(double v) { return v + 0.0; }

// Coordinates separated by blanks, as WKT writes them.
void Coords(std::ostream& os, const KvGePoint2d& p) { os << Num(p.x) << ' ' << Num(p.y); }
void Coords(std::ostream& os, const KvGePoint3d& p) { os << Num(p.x) << ' ' << Num(p.y) << ' ' << Num(p.z); }

const char* Dim(const KvGePoint2d*) { return ""; }
const char* Dim(const KvGePoint3d*) { return " Z"; }

template <class P>
void Point(std::ostream& os, const P& p) {
  os << (p.m_bInfinite ? "DIRECTION" : "POINT") << Dim(&p) << " (";
  Coords(os, p);
  os << ')';
}

// "(x y, ..., x y)", repeating the first point at the end when closed.
template <class Points>
void Sequence(std::ostream& os, const Points& points, bool closed) {
  os << '(';
  for (int i = 0; i < points.GetSize(); ++i) {
    if (i > 0) os << ", ";
    Coords(os, points[i]);
  }
  if (closed) {
    os << ", ";
    Coords(os, points[0]);
  }
  os << ')';
}

template <class Points>
std::ostream& MultiPoint(std::ostream& os, const Points& points) {
  os << "MULTIPOINT" << Dim(points.GetData());
  if (points.GetSize() == 0) return os << " EMPTY";
  os << " (";
  for (int i = 0; i < points.GetSize(); ++i) {
    os << (i > 0 ? ", (" : "(");
    Coords(os, points[i]);
    os << ')';
  }
  return os << ')';
}

template <class Points>
std::ostream& Polygon(std::ostream& os, const Points& ring) {
  os << "POLYGON" << Dim(ring.GetData());
  if (ring.GetSize() == 0) return os << " EMPTY";
  os << " (";
  Sequence(os, ring, true);
  return os << ')';
}

template <class Line>
void LineString(std::ostream& os, const Line& l) {
  os << "LINESTRING" << Dim(&l.P1()) << " (";
  Coords(os, l.P1());
  os << ", ";
  Coords(os, l.P2());
  os << ')';
  if (l.Segment() != 1) os << " segment " << l.Segment();
}

template <class V>
std::ostream& Vector(std::ostream& os, const V& v) {
  os << '(';
  for (unsigned i = 0; i < v.Dim(); ++i) os << (i > 0 ? ", " : "") << Num(v[i]);
  return os << ')';
}

template <unsigned N, class M>
std::ostream& Matrix(std::ostream& os, const M& m) {
  os << '[';
  for (unsigned i = 0; i < N; ++i) {
    os << (i > 0 ? ", [" : "[");
    for (unsigned j = 0; j < N; ++j) os << (j > 0 ? ", " : "") << Num(m(i, j));
    os << ']';
  }
  return os << ']';
}

template <class R>
std::ostream& Record(std::ostream& os, const R& r) {
  os << "INTERSECTION (";
  Coords(os, r);
  return os << ") sense " << r.CrossSense() << " ends " << r.EndCode0() << ' ' << r.EndCode1() << " params "
            << Num(r.Param0()) << ' ' << Num(r.Param1()) << " segments " << r.Segment0() << ' ' << r.Segment1()
            << " info " << r.Info();
}

template <class Part>
std::ostream& PartOf(std::ostream& os, const Part& p) {
  os << "PART type " << p.Type() << " from ";
  Record(os, p.Min()) << " to ";
  return Record(os, p.Max());
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const KvGeVector2& v) { return Vector(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeVector3& v) { return Vector(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeVector4& v) { return Vector(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeMatrix2X2& v) { return Matrix<2>(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeMatrix3X3& v) { return Matrix<3>(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeMatrix4X4& v) { return Matrix<4>(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeAngle& v) { return os << Num(v.Deg()) << " deg"; }

std::ostream& operator<<(std::ostream& os, const KvGePoint2d& v) {
  Point(os, v);
  return os;
}
std::ostream& operator<<(std::ostream& os, const KvGePoint3d& v) {
  Point(os, v);
  return os;
}
std::ostream& operator<<(std::ostream& os, const KvGePoint23d& v) {
  Point(os, static_cast<const KvGePoint3d&>(v));
  return os << " height " << Num(v.Height());
}
std::ostream& operator<<(std::ostream& os, const KvGePoint2dArray& v) { return MultiPoint(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGePoint3dArray& v) { return MultiPoint(os, v); }

std::ostream& operator<<(std::ostream& os, const KvGeBox2d& v) {
  os << "BOX (";
  Coords(os, v.Min());
  os << ", ";
  Coords(os, v.Max());
  return os << ')';
}
std::ostream& operator<<(std::ostream& os, const KvGeBox3d& v) {
  os << "BOX3D (";
  Coords(os, v.Min());
  os << ", ";
  Coords(os, v.Max());
  return os << ')';
}

std::ostream& operator<<(std::ostream& os, const KvGeLine2d& v) {
  LineString(os, v);
  if (v.Sense() != 1) os << " sense " << v.Sense();
  return os;
}
std::ostream& operator<<(std::ostream& os, const KvGeLine3d& v) {
  LineString(os, v);
  return os;
}
std::ostream& operator<<(std::ostream& os, const KvGeLine23d& v) {
  LineString(os, v);
  if (v.Height() != 0.0) os << " height " << Num(v.Height());
  if (v.Sense() != 1) os << " sense " << v.Sense();
  return os;
}

std::ostream& operator<<(std::ostream& os, const KvGePolygon2d& v) { return Polygon(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGePolygon3d& v) { return Polygon(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGePolygon23d& v) {
  return Polygon(os, static_cast<const KvGePoint3dArray&>(v)) << " height " << Num(v.Height());
}
std::ostream& operator<<(std::ostream& os, const KvGePolygon2dArray& v) {
  if (v.GetSize() == 0) return os << "GEOMETRYCOLLECTION EMPTY";
  os << "GEOMETRYCOLLECTION (";
  for (int i = 0; i < v.GetSize(); ++i) Polygon(os << (i > 0 ? ", " : ""), v[i]);
  return os << ')';
}
std::ostream& operator<<(std::ostream& os, const KvGePolyline2d& v) {
  os << "LINESTRING";
  if (v.GetSize() == 0) return os << " EMPTY";
  os << ' ';
  Sequence(os, v, false);
  return os;
}
std::ostream& operator<<(std::ostream& os, const KvGePolyVert2d& v) {
  os << "VERTEX (";
  Coords(os, v.Point());
  return os << ") shape " << v.Shape() << " bulge " << Num(v.Bulge());
}

std::ostream& operator<<(std::ostream& os, const KvGeIntrPoint2d& v) { return Record(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeIntrPoint3d& v) { return Record(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeIntrPart2d& v) { return PartOf(os, v); }
std::ostream& operator<<(std::ostream& os, const KvGeIntrPart3d& v) { return PartOf(os, v); }

template <class Circle>
std::ostream& CircleOf(std::ostream& os, const char* keyword, const Circle& c) {
  os << keyword << " (";
  Coords(os, c.Center());
  return os << ", " << Num(c.Radius());
}

std::ostream& operator<<(std::ostream& os, const KvGeCircle2d& v) {
  CircleOf(os, "CIRCLE", v) << ')';
  if (v.Sense() != 1) os << " sense " << v.Sense();
  return os;
}
std::ostream& operator<<(std::ostream& os, const KvGeArc2d& v) {
  return CircleOf(os, "ARC", v) << ", " << v.Beg() << ", " << v.End() << ')';
}
std::ostream& operator<<(std::ostream& os, const KvGeCircle23d& v) { return CircleOf(os, "CIRCLE Z", v) << ')'; }
std::ostream& operator<<(std::ostream& os, const KvGeArc23d& v) {
  return CircleOf(os, "ARC Z", v) << ", " << v.Beg() << ", " << v.End() << ')';
}

std::ostream& operator<<(std::ostream& os, const KvTlLinear2d& v) {
  return os << "LINEAR (" << Num(v.x0) << ' ' << Num(v.y0) << ", " << Num(v.x1) << ' ' << Num(v.y1) << ')';
}
std::ostream& operator<<(std::ostream& os, const KvTlFunktion2d& v) {
  os << "FUNCTION (";
  const char* separator = "";
  for (const KvTlLinear2d& p : v.Pieces()) {
    os << separator << '(' << Num(p.x0) << ' ' << Num(p.y0) << ", " << Num(p.x1) << ' ' << Num(p.y1) << ')';
    separator = ", ";
  }
  return os << ')';
}

std::ostream& operator<<(std::ostream& os, const Simple2dPolygon& v) {
  const unsigned n = v.getSize();
  if (n == 0) return os << "POLYGON EMPTY";
  os << "POLYGON ((";
  for (unsigned i = 0; i < n; ++i) os << (i > 0 ? ", " : "") << Num(v.x(i)) << ' ' << Num(v.y(i));
  return os << ", " << Num(v.x(0)) << ' ' << Num(v.y(0)) << "))";
}
