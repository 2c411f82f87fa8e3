#pragma once
/// @file
/// SVG pictures of plane geometry, for looking at a result rather than for printing.
///
/// A KvGeSvgWriter collects regions, polygons, lines, polylines, points and labels, each drawn in
/// one style of a small fixed palette, and writes them as one SVG document:
/// - the view box is fitted to the box of everything added, widened by a margin on every side
///   (a fraction of the larger extent; a content of no extent gets a view of 1 drawing unit);
/// - y points up, as in drawings. Drawing coordinates are mapped to pixels of the picture, which
///   are its user units (viewBox "0 0 width height"), rounded to 0.01 pixel: so stroke widths,
///   point marks and text have their intended screen size in every renderer, and strokes keep
///   that width when a viewer zooms (vector-effect="non-scaling-stroke");
/// - regions are drawn as one path per polygon set with fill-rule="evenodd", so holes show as
///   holes (the writer draws the rings; it does not apply the counting rule of the region
///   operations: a clockwise ring on its own is drawn filled).
/// Elements are drawn in the order added; labels last, so text stays readable above the shapes.
/// Coordinates that are not finite are left out of the box and of the picture.

#include <string>
#include <vector>

#include "basics/KvBtArray.h"
#include "basics/UtilityGeometryExport.h"
#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeLine2d.h"
#include "geometry/io/KvGeWkt.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

/// The fixed palette. The three piece styles are told apart by colour and by line form as well
/// (inside solid green, boundary wide orange, outside dashed red), so that they stay apart for
/// colour-blind readers and in grey print.
enum class KvGeSvgStyle {
  kRegion,    // light blue fill, blue outline: a region or polygon
  kInside,    // green, solid: what lies inside
  kBoundary,  // orange, wide: what lies on the boundary
  kOutside,   // red, dashed: what lies outside
  kLine,      // dark grey, thin: a line or polyline as given
  kPoint,     // black: a point
  kLabel,     // dark grey text
  kHighlight  // magenta: anything to draw attention to
};

/// Collects plane geometry in the styles of a fixed palette and writes it as one SVG document, y up, the view fitted to
/// the content plus a margin.
class KVGE_API KvGeSvgWriter {
 public:
  KvGeSvgWriter() = default;
  /// Copies the settings and the elements.
  KvGeSvgWriter(const KvGeSvgWriter&) = default;
  /// Copies the settings and the elements.
  KvGeSvgWriter& operator=(const KvGeSvgWriter&) = default;
  virtual ~KvGeSvgWriter();

  /// The width of the picture in screen pixels (default 800; values below 16 count as 16); the
  /// height follows from the content's aspect ratio.
  KvGeSvgWriter& SetWidth(int pixels);
  /// The margin around the content as a fraction of its larger extent (default 0.05; negative
  /// values count as 0, values above 1e6 as 1e6).
  KvGeSvgWriter& SetMargin(double fraction);
  /// A title shown by viewers (the SVG title element); empty for none. Text is escaped; bytes
  /// that XML cannot hold (control bytes, malformed UTF-8) become U+FFFD.
  KvGeSvgWriter& SetTitle(const std::string& title);

  /// A polygon set as one region: every ring a subpath, holes shown by the even-odd rule.
  KvGeSvgWriter& AddRegion(const KvGePolygon2dArray& region, KvGeSvgStyle style = KvGeSvgStyle::kRegion);
  /// One closed ring.
  KvGeSvgWriter& AddPolygon(const KvGePolygon2d& polygon, KvGeSvgStyle style = KvGeSvgStyle::kRegion);
  /// A line from P1 to P2 (drawn as its segment, whatever its Segment attribute).
  KvGeSvgWriter& AddLine(const KvGeLine2d& line, KvGeSvgStyle style = KvGeSvgStyle::kLine);
  /// Every line, each from P1 to P2.
  KvGeSvgWriter& AddLines(const KvBtDynArray<KvGeLine2d>& lines, KvGeSvgStyle style = KvGeSvgStyle::kLine);
  /// A polyline as an open path.
  KvGeSvgWriter& AddPolyline(const KvGePolyline2d& polyline, KvGeSvgStyle style = KvGeSvgStyle::kLine);
  /// Every polyline, each as an open path.
  KvGeSvgWriter& AddPolylines(const KvGePolyline2dArray& polylines, KvGeSvgStyle style = KvGeSvgStyle::kLine);
  /// A point as a small disc of constant screen size.
  KvGeSvgWriter& AddPoint(const KvGePoint2d& p, KvGeSvgStyle style = KvGeSvgStyle::kPoint);
  /// Every point, each as a small disc.
  KvGeSvgWriter& AddPoints(const KvGePoint2dArray& points, KvGeSvgStyle style = KvGeSvgStyle::kPoint);
  /// Text whose lower left corner sits a little up and right of the point; the point itself
  /// counts for the view box, the text does not. Text is escaped; bytes XML cannot hold (control
  /// bytes, malformed UTF-8) become U+FFFD.
  KvGeSvgWriter& AddLabel(const KvGePoint2d& at, const std::string& text, KvGeSvgStyle style = KvGeSvgStyle::kLabel);
  /// Any geometry read from WKT, in plan for the Z kinds: areas as regions, lines as polylines,
  /// points as points. Nothing for kNone.
  KvGeSvgWriter& AddGeometry(const KvGeWktGeometry& geometry, KvGeSvgStyle style = KvGeSvgStyle::kRegion);

  /// Forgets every element (the width, margin and title stay).
  KvGeSvgWriter& Clear();
  /// The number of elements added.
  int GetSize() const { return static_cast<int>(m_Items.size()); }
  /// The box of the content, without the margin; the empty box when nothing finite was added.
  KvGeBox2d BoundingBox() const;

  /// Appends the SVG document to out: 1, or 0 when memory ran out (out then ends in an
  /// incomplete document).
  int Write(std::string& out) const;
  /// The SVG document (empty when memory ran out).
  std::string Write() const;
  /// Writes the document to the file at path (replacing it). 1 on success, 0 when the file
  /// cannot be written (then the file may be missing or incomplete).
  int WriteFile(const char* path) const;
  /// Writes the document to the file at path, as WriteFile(const char*).
  int WriteFile(const std::string& path) const { return WriteFile(path.c_str()); }

 private:
  struct Item {
    enum Shape { kArea, kOpen, kDot, kText };
    Shape shape;
    KvGeSvgStyle style;
    /// Coordinates as x, y pairs; each subpath (ring or polyline) ends at the next entry of
    /// breaks. A dot or text has one point.
    std::vector<double> xy;
    std::vector<int> breaks;
    std::string text;
  };
  Item& NewItem(Item::Shape shape, KvGeSvgStyle style);
  void AddPath(Item& item, const KvGePoint2d* points, int n);
  void Render(std::string& out) const;

  std::vector<Item> m_Items;
  int m_Width = 800;
  double m_Margin = 0.05;
  std::string m_Title;
};
