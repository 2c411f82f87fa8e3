// The typical request: which pieces of a line lie inside a region with a hole, which run along
// its boundary and which lie outside; and where a few points lie. Built against the installed
// package. Also draws the answer: the region with its hole, the line's pieces coloured by where
// they lie and the tested points, written as SVG to the path given as the first argument, or to
// typical.svg in the current directory.
#include <UtilityGeometry.h>

#include <cstdio>
#include <string>

namespace {

KvGePolygon2d Ring(std::initializer_list<KvGePoint2d> pts) {
  KvGePolygon2d ring;
  for (const KvGePoint2d& p : pts) ring.Add(p);
  return ring;
}

// Adding 0.0 prints a crossing computed as -0 as 0.
void PrintLine(const KvGeLine2d& l, const char* what) {
  char text[96];
  std::snprintf(text, sizeof text, "(%g, %g) - (%g, %g)", l.P1().x + 0.0, l.P1().y + 0.0, l.P2().x + 0.0,
                l.P2().y + 0.0);
  std::printf("  %-24s %s\n", text, what);
}

const char* Where(unsigned short bits) {
  switch (bits) {
    case 1:
      return "outside";
    case 2:
      return "on the boundary";
    case 4:
      return "inside";
    default:
      return "partly inside, on and outside";
  }
}

}  // namespace

int main(int argc, char** argv) {
  const char* picture = argc > 1 ? argv[1] : "typical.svg";
  KvGeSvgWriter svg;
  // Counter-clockwise rings enclose, a clockwise ring inside one is a hole.
  KvGePolygon2dArray region;
  region.Add(Ring({{0, 0}, {100, 0}, {100, 60}, {0, 60}}));
  region.Add(Ring({{40, 20}, {40, 40}, {60, 40}, {60, 20}}));
  // The line runs along the hole's lower edge from x = 40 to 60.
  const KvGeLine2d line(KvGePoint2d(-20, 20), KvGePoint2d(120, 20));

  std::printf("Region: ring (0,0)-(100,0)-(100,60)-(0,60) counter-clockwise,\n");
  std::printf("        hole (40,20)-(40,40)-(60,40)-(60,20) clockwise\n");
  std::printf("Line:   (-20, 20) - (120, 20)\n\n");

  KvBtDynArray<KvGeLine2d> pieces;
  std::printf("Pieces inside (mode 0): %d\n", Intersection2d(line, region, pieces, 0));
  for (const KvGeLine2d& l : pieces) PrintLine(l, "");
  std::printf("Pieces inside or on the boundary, joined (mode 1): %d\n", Intersection2d(line, region, pieces, 1));
  for (const KvGeLine2d& l : pieces) PrintLine(l, "");

  // The same cut, read part by part: the line's crossings with every edge sorted by a calculator,
  // each part typed by the crossing count and clipped to the segment.
  KvGeIntrCalculator2d calc;
  const KvGeLine2d unbounded(line.P1(), line.P2(), 0);
  for (const KvGePolygon2d& ring : region) Intersection2d(unbounded, ring, calc, 1);
  calc.Calculate0();
  const double length = Distance2d(line.P1(), line.P2());
  const KvGeIntrPart2d segment(KvGeIntrPoint2d(line.P1(), 0, -1, 0, 0.0, 0.0, 0, 0, 0),
                               KvGeIntrPoint2d(line.P2(), 0, 1, 0, length, 0.0, 0, 0, 0), 0);
  std::printf("The line in typed parts:\n");
  svg.SetTitle("A line against a region with a hole: pieces inside, on the boundary and outside");
  svg.AddRegion(region);
  svg.AddLine(line);
  for (int i = 0; i < calc.GetSize0(); ++i) {
    KvGeIntrPart2d part = calc.Part0(i);
    part.Intersect0(segment);
    if (part.Min().Compare0(part.Max()) >= 0) continue;  // outside the segment, or no length
    const int type = part.Type();
    PrintLine(KvGeLine2d(part.Min(), part.Max()), type == 1 ? "inside" : (type == 0 ? "on the boundary" : "outside"));
    svg.AddLine(KvGeLine2d(part.Min(), part.Max()),
                type == 1 ? KvGeSvgStyle::kInside : (type == 0 ? KvGeSvgStyle::kBoundary : KvGeSvgStyle::kOutside));
  }
  std::printf("Containment of the whole line: %d (%s)\n\n", Containment(line, region),
              Where(Containment(line, region)));

  std::printf("Points (1 outside, 2 on the boundary within 0.001, 4 inside):\n");
  const struct {
    KvGePoint2d p;
    const char* note;
  } points[] = {
      {{20, 30}, "in the ring"},
      {{0.0009, 30}, "0.0009 inside the left edge"},
      {{-0.0009, 30}, "0.0009 outside the left edge"},
      {{-0.0011, 30}, "0.0011 outside the left edge"},
      {{50, 30}, "in the hole"},
      {{50, 20.0005}, "0.0005 into the hole"},
      {{120, 30}, "beyond the ring"},
  };
  int number = 1;
  std::string label;
  KvGePoint2d labelAt, previous;
  for (const auto& q : points) {
    const unsigned short c = Containment(q.p, region);
    char text[48];
    std::snprintf(text, sizeof text, "(%g, %g)", q.p.x, q.p.y);
    std::printf("  %d %-16s %-30s %d %s\n", number, text, q.note, c, Where(c));
    svg.AddPoint(q.p, c == 4 ? KvGeSvgStyle::kInside : (c == 2 ? KvGeSvgStyle::kBoundary : KvGeSvgStyle::kOutside));
    // Points closer than a drawing unit share one label.
    if (number == 1 || Distance2d(q.p, previous) > 1.0) {
      if (!label.empty()) svg.AddLabel(labelAt, label);
      label.clear();
      labelAt = q.p;
    }
    label += (label.empty() ? "" : ",") + std::to_string(number++);
    previous = q.p;
  }
  svg.AddLabel(labelAt, label);
  svg.AddLabel(KvGePoint2d(-20, -10), "pieces: green inside, orange on the boundary, red dashed outside");
  // The outer ring alone, and the same ring run clockwise, which encloses nothing.
  std::printf("  (20, 30) in the ring alone: %d; in the ring run clockwise: %d\n",
              Containment(KvGePoint2d(20, 30), region[0]), Containment(KvGePoint2d(20, 30), region[0].Inverted()));
  if (!svg.WriteFile(picture)) {
    std::printf("Could not write the picture to %s\n", picture);
    return 1;
  }
  std::printf("Picture: %s (the region with its hole, the line's pieces, the numbered points)\n", picture);
  return 0;
}
