#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

#include "geometry/io/KvGeSvg.h"

namespace {

int Count(const std::string& text, const std::string& what) {
  int n = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

testing::AssertionResult Has(const std::string& text, const std::string& what) {
  if (text.find(what) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no \"" << what << "\" in\n" << text;
}

TEST(Svg, ViewFittedWithMarginAndYUp) {
  KvGePolygon2dArray region;
  ASSERT_EQ(KvGeReadWkt("POLYGON ((0 0, 100 0, 100 60, 0 60, 0 0), (40 20, 40 40, 60 40, 60 20, 40 20))", region), 1);
  KvGeSvgWriter svg;
  svg.AddRegion(region);
  const std::string text = svg.Write();
  // 110 x 70 drawing units (5% margin) on 800 pixels: (0, 0) is bottom left, 5 units in.
  EXPECT_TRUE(Has(text, "width=\"800\" height=\"509\" viewBox=\"0 0 800 509\""));
  EXPECT_TRUE(Has(text, "d=\"M36.36 472.73 763.64 472.73 763.64 36.36 36.36 36.36 Z M327.27 327.27 "));
  EXPECT_EQ(Count(text, " Z"), 2);  // the hole is a second subpath of the same path
  EXPECT_TRUE(Has(text, "fill-rule:evenodd"));
  EXPECT_TRUE(Has(text, "vector-effect:non-scaling-stroke"));
  EXPECT_EQ(svg.BoundingBox().Max().y, 60.0);
}

TEST(Svg, StylesPointsLabelsAndDegenerateContent) {
  KvGeSvgWriter svg;
  svg.AddPoint(KvGePoint2d(5, 5), KvGeSvgStyle::kBoundary);
  svg.AddPoint(KvGePoint2d(NAN, 1.0));
  svg.AddLine(KvGeLine2d(KvGePoint2d(5, 5), KvGePoint2d(INFINITY, 5)), KvGeSvgStyle::kOutside);
  svg.AddLabel(KvGePoint2d(5, 5), "a<b & \"c\"");
  // Only the finite point counts: a view of 1 drawing unit (plus margin) around it.
  EXPECT_EQ(svg.BoundingBox().Min().x, 5.0);
  EXPECT_EQ(svg.BoundingBox().Max().x, 5.0);
  std::string text;
  EXPECT_EQ(svg.Write(text), 1);
  EXPECT_TRUE(Has(text, "<circle class=\"d boundary\" cx=\"400\" cy=\"400\" r=\"4\"/>"));
  EXPECT_EQ(Count(text, "<circle"), 1);
  EXPECT_EQ(Count(text, "nan") + Count(text, "inf"), 0);
  EXPECT_TRUE(Has(text, "a&lt;b &amp; &quot;c&quot;</text>"));
  EXPECT_LT(text.find("<circle"), text.find("<text"));  // labels above the shapes

  KvGeWktGeometry g;
  ASSERT_EQ(KvGeReadWkt("MULTILINESTRING ((0 0, 1 1), (2 2, 3 3))", g), 1);
  KvGeSvgWriter lines;
  lines.AddGeometry(g, KvGeSvgStyle::kInside).AddLine(KvGeLine2d(KvGePoint2d(0, 3), KvGePoint2d(3, 0)));
  const std::string l = lines.Write();
  EXPECT_EQ(Count(l, "<path class=\"o inside\""), 1);
  EXPECT_EQ(Count(l, " M"), 1);  // two polylines: two subpaths of one path
  EXPECT_EQ(Count(l, "<path class=\"o line\""), 1);
  EXPECT_TRUE(Has(KvGeSvgWriter().Write(), "</svg>"));  // nothing added: still a document
}

// Far from the origin (survey coordinates in millimetres) the view is the content's own box.
TEST(Svg, FarContent) {
  KvGeSvgWriter svg;
  svg.AddPoint(KvGePoint2d(2e9, -3e9)).AddPoint(KvGePoint2d(2e9 + 100, -3e9 + 50));
  EXPECT_EQ(svg.BoundingBox().Min().x, 2e9);
  EXPECT_EQ(svg.BoundingBox().Max().y, -3e9 + 50);
  EXPECT_TRUE(Has(svg.Write(), "cx=\"36.36\" cy=\"400\""));
  EXPECT_TRUE(Has(svg.Write(), "cx=\"763.64\" cy=\"36.36\""));

  // Finite content whose extent overflows a double still gets finite pixels.
  KvGeSvgWriter huge;
  huge.AddPoint(KvGePoint2d(-1e308, -1e308)).AddPoint(KvGePoint2d(1.5e308, 1e308)).SetMargin(1e300);
  const std::string h = huge.Write();
  EXPECT_EQ(Count(h, "nan") + Count(h, "inf"), 0) << h;
  EXPECT_EQ(Count(h, "<circle"), 2);
  EXPECT_TRUE(Has(h, "height=\"800\""));  // margins of 1e6 extents: square
}

// Text that XML cannot hold (control bytes, bytes that are not UTF-8) is replaced, so that the
// document stays well-formed; the file holds what Write gives.
TEST(Svg, TextXmlCannotHoldAndFiles) {
  KvGeSvgWriter svg;
  svg.SetTitle(std::string("a\x01"
                           "b\xff\tc\xc3\xa9"))
      .AddLabel(KvGePoint2d(0, 0), std::string("x\0y\xe2\x82", 5));
  const std::string text = svg.Write();
  const std::string replaced = "\xef\xbf\xbd";  // U+FFFD
  EXPECT_TRUE(Has(text, "<title>a" + replaced + "b" + replaced + "\tc\xc3\xa9</title>"));
  EXPECT_TRUE(Has(text, ">x" + replaced + "y" + replaced + "</text>"));

  const std::string path = testing::TempDir() + "ug_svg_test.svg";
  ASSERT_EQ(svg.WriteFile(path), 1);
  std::stringstream read;
  read << std::ifstream(path).rdbuf();
  EXPECT_EQ(read.str(), text);
  EXPECT_EQ(svg.WriteFile("/nonexistent-directory/x.svg"), 0);
  EXPECT_EQ(svg.WriteFile(static_cast<const char*>(nullptr)), 0);
}

}  // namespace
