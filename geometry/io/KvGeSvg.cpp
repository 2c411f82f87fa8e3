#include "geometry/io/KvGeSvg.h"

#include <cmath>
#include <cstdio>

namespace {

const char* const kStyleNames[] = {"region", "inside", "boundary", "outside", "line", "point", "label", "highlight"};

// Stroke widths, dashes and sizes are in pixels of the picture, which are its user units; every
// stroke is non-scaling as well, so it keeps its width when a viewer zooms.
const char kStyleSheet[] =
    "path,circle{vector-effect:non-scaling-stroke;stroke-linejoin:round;stroke-linecap:round}\n"
    ".region{fill:#9ec3e6;stroke:#2b5d8f}\n"
    ".inside{fill:#1a9641;stroke:#1a9641}\n"
    ".boundary{fill:#f28e00;stroke:#f28e00}\n"
    ".outside{fill:#d7191c;stroke:#d7191c}\n"
    ".line{fill:#555;stroke:#555}\n"
    ".point{fill:#111;stroke:#111}\n"
    ".label{fill:#333;stroke:none}\n"
    ".highlight{fill:#c2188b;stroke:#c2188b}\n"
    ".a{fill-rule:evenodd;fill-opacity:.4;stroke-width:1.5}\n"
    ".o{fill:none;stroke-width:1.5}\n"
    ".o.inside{stroke-width:3}\n"
    ".o.boundary{stroke-width:5}\n"
    ".o.outside{stroke-width:2.5;stroke-dasharray:7 5}\n"
    ".o.highlight{stroke-width:3}\n"
    ".d{stroke:#fff;stroke-width:1}\n"
    "text{font-family:sans-serif;font-size:13px}\n";

int Finite(double x, double y) { return std::isfinite(x) && std::isfinite(y); }

void Num(double v, std::string& out) { KvGeWriteWktNumber(v + 0.0, out); }

// The length of the well-formed UTF-8 sequence at s[i] (1 to 4 bytes, no overlong forms, no
// surrogates, at most U+10FFFF), or 0.
std::size_t Utf8Length(const std::string& s, std::size_t i) {
  const unsigned char c = static_cast<unsigned char>(s[i]);
  std::size_t n = 0;
  unsigned lo = 0x80, hi = 0xBF;  // the range of the second byte
  if (c < 0x80) return 1;
  if (c >= 0xC2 && c <= 0xDF) {
    n = 2;
  } else if (c >= 0xE0 && c <= 0xEF) {
    n = 3;
    if (c == 0xE0) lo = 0xA0;
    if (c == 0xED) hi = 0x9F;
  } else if (c >= 0xF0 && c <= 0xF4) {
    n = 4;
    if (c == 0xF0) lo = 0x90;
    if (c == 0xF4) hi = 0x8F;
  } else {
    return 0;
  }
  if (i + n > s.size()) return 0;
  for (std::size_t k = 1; k < n; ++k) {
    const unsigned char b = static_cast<unsigned char>(s[i + k]);
    if (b < (k == 1 ? lo : 0x80) || b > (k == 1 ? hi : 0xBF)) return 0;
  }
  return n;
}

// Text as XML character data. What XML 1.0 cannot hold - control bytes other than tab, line
// feed and carriage return, and bytes that are not well-formed UTF-8 - becomes U+FFFD, so that a
// title or label taken from anywhere leaves the document well-formed.
void Escaped(const std::string& text, std::string& out) {
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    const std::size_t n = Utf8Length(text, i);
    if (n == 0 || (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r')) {
      out += "\xEF\xBF\xBD";
      // A broken sequence is replaced as a whole: its lead byte and the continuation bytes after it.
      ++i;
      while (n == 0 && i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) ++i;
      continue;
    }
    if (n > 1) {
      out.append(text, i, n);
    } else if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else if (c == '"') {
      out += "&quot;";
    } else {
      out += c;
    }
    i += n;
  }
}

}  // namespace

KvGeSvgWriter::~KvGeSvgWriter() = default;

KvGeSvgWriter& KvGeSvgWriter::SetWidth(int pixels) {
  m_Width = pixels < 16 ? 16 : pixels;
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::SetMargin(double fraction) {
  m_Margin = (fraction > 0.0 && std::isfinite(fraction)) ? std::fmin(fraction, 1e6) : 0.0;
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::SetTitle(const std::string& title) {
  m_Title = title;
  return *this;
}

KvGeSvgWriter::Item& KvGeSvgWriter::NewItem(Item::Shape shape, KvGeSvgStyle style) {
  m_Items.push_back(Item{shape, style, {}, {}, {}});
  return m_Items.back();
}

void KvGeSvgWriter::AddPath(Item& item, const KvGePoint2d* points, int n) {
  for (int i = 0; i < n; ++i) {
    if (!Finite(points[i].x, points[i].y)) continue;
    item.xy.push_back(points[i].x);
    item.xy.push_back(points[i].y);
  }
  item.breaks.push_back(static_cast<int>(item.xy.size() / 2));
}

KvGeSvgWriter& KvGeSvgWriter::AddRegion(const KvGePolygon2dArray& region, KvGeSvgStyle style) {
  Item& item = NewItem(Item::kArea, style);
  for (const KvGePolygon2d& ring : region) AddPath(item, ring.GetData(), ring.GetSize());
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddPolygon(const KvGePolygon2d& polygon, KvGeSvgStyle style) {
  AddPath(NewItem(Item::kArea, style), polygon.GetData(), polygon.GetSize());
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddLine(const KvGeLine2d& line, KvGeSvgStyle style) {
  const KvGePoint2d ends[2] = {line.P1(), line.P2()};
  AddPath(NewItem(Item::kOpen, style), ends, 2);
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddLines(const KvBtDynArray<KvGeLine2d>& lines, KvGeSvgStyle style) {
  Item& item = NewItem(Item::kOpen, style);
  for (const KvGeLine2d& line : lines) {
    const KvGePoint2d ends[2] = {line.P1(), line.P2()};
    AddPath(item, ends, 2);
  }
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddPolyline(const KvGePolyline2d& polyline, KvGeSvgStyle style) {
  AddPath(NewItem(Item::kOpen, style), polyline.GetData(), polyline.GetSize());
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddPolylines(const KvGePolyline2dArray& polylines, KvGeSvgStyle style) {
  Item& item = NewItem(Item::kOpen, style);
  for (const KvGePolyline2d& l : polylines) AddPath(item, l.GetData(), l.GetSize());
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddPoint(const KvGePoint2d& p, KvGeSvgStyle style) {
  AddPath(NewItem(Item::kDot, style), &p, 1);
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddPoints(const KvGePoint2dArray& points, KvGeSvgStyle style) {
  for (const KvGePoint2d& p : points) AddPoint(p, style);
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddLabel(const KvGePoint2d& at, const std::string& text, KvGeSvgStyle style) {
  Item& item = NewItem(Item::kText, style);
  AddPath(item, &at, 1);
  item.text = text;
  return *this;
}

KvGeSvgWriter& KvGeSvgWriter::AddGeometry(const KvGeWktGeometry& geometry, KvGeSvgStyle style) {
  switch (geometry.Dimension()) {
    case 2: {
      KvGePolygon2dArray region;
      geometry.GetRegion(region);
      return AddRegion(region, style);
    }
    case 1: {
      KvGePolyline2dArray lines;
      geometry.GetPolylines(lines);
      return AddPolylines(lines, style);
    }
    case 0: {
      KvGePoint2dArray points;
      geometry.GetPoints(points);
      return AddPoints(points, style);
    }
    default:
      return *this;
  }
}

KvGeSvgWriter& KvGeSvgWriter::Clear() {
  m_Items.clear();
  return *this;
}

KvGeBox2d KvGeSvgWriter::BoundingBox() const {
  // Started at the first point rather than folded into the empty box, whose corners at 1e9 would
  // otherwise stretch the view of content lying beyond them.
  KvGeBox2d box;
  bool any = false;
  for (const Item& item : m_Items) {
    for (std::size_t i = 0; i + 1 < item.xy.size(); i += 2) {
      const KvGePoint2d p(item.xy[i], item.xy[i + 1]);
      if (!any) box.Set(p, p);
      box.Include(p);
      any = true;
    }
  }
  return box;
}

void KvGeSvgWriter::Render(std::string& out) const {
  // The view: the content's box, at least 2% of its larger extent in each direction (a single
  // point gets 1 drawing unit), and the margin around it.
  const KvGeBox2d box = BoundingBox();
  const int empty = box.Min().x > box.Max().x || box.Min().y > box.Max().y;
  double x0 = empty ? 0.0 : box.Min().x, x1 = empty ? 1.0 : box.Max().x;
  double y0 = empty ? 0.0 : box.Min().y, y1 = empty ? 1.0 : box.Max().y;
  // Content whose extent, with the margin and times the width in pixels, overflows a double
  // (finite coordinates near 1e308 on both sides) is viewed in units scaled down by a power of
  // two, so that no pixel is NaN.
  double s = 1.0;
  for (int k = 0; k < 5; ++k) {
    if (std::isfinite(0x1p32 * (1.0 + 2.0 * m_Margin) * std::fmax(x1 * s - x0 * s, y1 * s - y0 * s))) break;
    s *= 1.0 / 256.0;
  }
  x0 *= s;
  x1 *= s;
  y0 *= s;
  y1 *= s;
  const double extent = std::fmax(x1 - x0, y1 - y0);
  const double least = (extent > 1e-290 && std::isfinite(extent)) ? 0.02 * extent : 1.0;
  if (x1 - x0 < least) {
    const double c = 0.5 * (x0 + x1);
    x0 = c - 0.5 * least;
    x1 = c + 0.5 * least;
  }
  if (y1 - y0 < least) {
    const double c = 0.5 * (y0 + y1);
    y0 = c - 0.5 * least;
    y1 = c + 0.5 * least;
  }
  const double margin = m_Margin * std::fmax(x1 - x0, y1 - y0);
  const double left = x0 - margin, top = y1 + margin;
  const double vw = x1 - x0 + 2.0 * margin, vh = y1 - y0 + 2.0 * margin;
  double height = std::round(m_Width * vh / vw);
  if (!(height >= 16.0)) height = 16.0;
  if (height > 100000.0) height = 100000.0;
  const double scale = m_Width / vw;  // pixels per (scaled) drawing unit
  // Pixels from the top left corner, y turned downward as SVG counts it, moved by a number of
  // pixels right (dx) and up (dy).
  const auto px = [&](double x, std::string& to, double dx = 0.0) {
    Num(std::round(((x * s - left) * scale + dx) * 100.0) / 100.0, to);
  };
  const auto py = [&](double y, std::string& to, double dy = 0.0) {
    Num(std::round(((top - y * s) * scale - dy) * 100.0) / 100.0, to);
  };

  out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"";
  out += std::to_string(m_Width);
  out += "\" height=\"";
  out += std::to_string(static_cast<int>(height));
  out += "\" viewBox=\"0 0 ";
  out += std::to_string(m_Width);
  out += ' ';
  out += std::to_string(static_cast<int>(height));
  out += "\">\n";
  if (!m_Title.empty()) {
    out += "<title>";
    Escaped(m_Title, out);
    out += "</title>\n";
  }
  out += "<style>\n";
  out += kStyleSheet;
  out += "</style>\n";

  for (int pass = 0; pass < 2; ++pass) {
    for (const Item& item : m_Items) {
      if ((item.shape == Item::kText) != (pass == 1)) continue;
      const char* style = kStyleNames[static_cast<int>(item.style)];
      if (item.shape == Item::kDot || item.shape == Item::kText) {
        if (item.xy.size() < 2) continue;
        const double x = item.xy[0], y = item.xy[1];
        if (item.shape == Item::kDot) {
          out += "<circle class=\"d ";
          out += style;
          out += "\" cx=\"";
          px(x, out);
          out += "\" cy=\"";
          py(y, out);
          out += "\" r=\"4";
          out += "\"/>\n";
        } else {
          out += "<text class=\"";
          out += style;
          out += "\" x=\"";
          px(x, out, 5.0);
          out += "\" y=\"";
          py(y, out, 5.0);
          out += "\">";
          Escaped(item.text, out);
          out += "</text>\n";
        }
        continue;
      }
      std::string d;
      int begin = 0;
      for (const int end : item.breaks) {
        for (int i = begin; i < end; ++i) {
          d += i == begin ? (d.empty() ? "M" : " M") : " ";
          px(item.xy[2 * static_cast<std::size_t>(i)], d);
          d += ' ';
          py(item.xy[2 * static_cast<std::size_t>(i) + 1], d);
        }
        if (item.shape == Item::kArea && end > begin) d += " Z";
        begin = end;
      }
      if (d.empty()) continue;
      out += "<path class=\"";
      out += item.shape == Item::kArea ? "a " : "o ";
      out += style;
      out += "\" d=\"";
      out += d;
      out += "\"/>\n";
    }
  }
  out += "</svg>\n";
}

int KvGeSvgWriter::Write(std::string& out) const {
  try {
    Render(out);
    return 1;
  } catch (...) {
    return 0;
  }
}

std::string KvGeSvgWriter::Write() const {
  std::string out;
  if (!Write(out)) out.clear();
  return out;
}

int KvGeSvgWriter::WriteFile(const char* path) const {
  if (path == nullptr) return 0;
  std::string text;
  if (!Write(text)) return 0;
  std::FILE* f = std::fopen(path, "wb");
  if (f == nullptr) return 0;
  const int written = std::fwrite(text.data(), 1, text.size(), f) == text.size();
  const int closed = std::fclose(f) == 0;
  return written && closed ? 1 : 0;
}
