// ugeo: the library's queries and region operations from the shell, on WKT.
//
// The command line is parsed with CLI11 (Debian libcli11-dev). It is header-only, so the tool
// links nothing more than the library and the installed package carries no further runtime
// dependency; it has subcommands with their own positionals, options and --help built in,
// accepts negative numbers as positionals (offset REGION -0.5), and reports every parse error
// as an exception that main turns into one "error:" line. Boost.Program_options would need its
// compiled library and a hand-made dispatch of subcommands and their help.
//
// Exit status: 0 on success, 2 on any error (bad WKT, a wrong kind of geometry, a bad option, a
// file that cannot be read or written), with one line "error: ..." on standard error. No
// exception leaves main.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "UgeoCommands.h"
#include "UgeoInput.h"

namespace {

const char* const kInputs =
    "Geometries are given as WKT text (quote it), as @FILE (every line of the file one WKT), or as - "
    "(every line of standard input one WKT); blank lines and lines starting with # are skipped. "
    "Z forms are taken in plan. A region is a POLYGON (one ring is a polygon, with a boundary band "
    "of 0.001) or a POLYGON with holes or MULTIPOLYGON (a polygon set); reading orients shells "
    "counter-clockwise and holes clockwise.";

const char* const kErrors =
    "Bad input ends the run with exit status 2 and one line on standard error: \"error: <argument>: "
    "<what was expected> at offset <n>\", n counting bytes of that WKT text.";

struct Sub {
  const char* name;
  const char* brief;
  const char* prints;
};

const Sub kSubs[] = {
    {"area", "area of each geometry",
     "Prints one line per GEOM: the area of its region, the sum of the signed ring areas (holes "
     "subtract; overlapping shells count twice: unite them first). Points and lines have area 0. "
     "--json: {\"area\":A}."},
    {"bbox", "bounding box of each geometry",
     "Prints one line per GEOM: its box in plan as POLYGON ((xmin ymin, xmax ymin, xmax ymax, xmin ymax, "
     "xmin ymin)), a ring of no area when the box is flat; POLYGON EMPTY for an empty geometry. "
     "--json: {\"xmin\":..,\"ymin\":..,\"xmax\":..,\"ymax\":..} or {\"empty\":true}."},
    {"contains", "where each geometry lies in REGION",
     "Prints one line per GEOM: where it lies, as words and the bit value of the library's "
     "Containment: outside 1, boundary 2, inside 4; a line, polyline or polygon gives the union of "
     "its pieces, e.g. \"outside+boundary+inside 7\"; \"none 0\" for an empty geometry or a line no "
     "longer than 0.001. A polygon region measures the band of 0.001 around its edges (inclusive); "
     "a polygon set decides on its scan line. A MULTIPOINT or MULTILINESTRING gives the union over "
     "its members. A POLYGON with holes or a MULTIPOLYGON tested, or a POLYGON tested against a set, "
     "answers 1 whatever it is, as the library deliberately does: test its rings as LINESTRINGs. "
     "With more than 4 GEOMs or any @FILE or - the region is prepared once (same answers). "
     "--json: {\"containment\":\"inside\",\"bits\":4}."},
    {"pieces", "pieces of each LINE inside REGION",
     "Prints one line per LINE (LINESTRING or MULTILINESTRING): its pieces inside REGION as a "
     "MULTILINESTRING, in order along the line; --mode 0 (default) gives the inside pieces, --mode 1 "
     "the inside and boundary pieces joined into runs. A LINESTRING of two points is cut as a "
     "segment, a longer one edge by edge with the pieces chained into polylines. Pieces shorter "
     "than 0.001 are dropped. --json: {\"pieces\":N,\"wkt\":\"MULTILINESTRING (...)\"}."},
    {"distance", "distance from A to each B",
     "Prints one line per B: the distance in plan between A and B as point sets: 0 when they touch "
     "(segments crossing within 0.001, or a vertex of one inside or on an area of the other), else "
     "the least distance between their segments and points. --json: {\"distance\":D}."},
    {"union", "union of the regions",
     "Prints one region: the union of all GEOM regions (the library's operator|=), normalised; a "
     "single GEOM is printed as read. --json: {\"wkt\":\"...\"}."},
    {"intersection", "intersection of the regions",
     "Prints one region: the intersection of all GEOM regions (operator&=), normalised; an empty "
     "GEOM empties the result. --json: {\"wkt\":\"...\"}."},
    {"difference", "first region minus the others",
     "Prints one region: the first GEOM minus each further one (operator-=). As in the library, an "
     "empty region subtracted has an empty complement and so empties the result. "
     "--json: {\"wkt\":\"...\"}."},
    {"offset", "region grown or shrunk by D",
     "Prints one line per REGION: the region grown by D > 0 or shrunk by D < 0 (ParallelPolygon2d), "
     "corners by --join, as a normalised region. A LINESTRING or POINT gives the band of half-width "
     "D > 0 around it, its ends by --ends. --json: {\"wkt\":\"...\"}."},
    {"clean", "repair each geometry",
     "Prints one line per GEOM, cleaned: in every ring or line, repeated points, collinear middle "
     "vertices and spikes within --eps removed (StreckenzugKorrigieren2d), then loops removed "
     "(RemoveSchlaufen2d: a ring keeps the parts that wind as it does, rings without area go). "
     "Points are printed as read. --json: {\"wkt\":\"...\"}."},
    {"svg", "draw the geometries into OUT.svg",
     "Writes an SVG picture of all GEOMs to OUT.svg, y pointing up: regions filled with their holes "
     "open, lines as lines, points as dots, the view fitted to the content. With --state the first "
     "GEOM is a region and the lines after it are drawn cut into their parts inside (green, solid), "
     "on the boundary (orange, wide) and outside (red, dashed), the points coloured the same way by "
     "their containment. Prints nothing."},
};

// Paragraphs broken into lines of at most 78 characters.
std::string Wrap(const std::string& text) {
  std::string out, word;
  std::size_t column = 0;
  const auto flush = [&] {
    if (word.empty()) return;
    if (column > 0 && column + 1 + word.size() > 78) {
      out += '\n';
      column = 0;
    }
    if (column > 0) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
    word.clear();
  };
  for (const char c : text) {
    if (c == ' ') {
      flush();
    } else if (c == '\n') {
      flush();
      out += '\n';
      column = 0;
    } else {
      word += c;
    }
  }
  flush();
  return out;
}

std::string Footer(const Sub& s) { return "\n" + Wrap(std::string(s.prints) + "\n\n" + kInputs + "\n\n" + kErrors); }

int Run(int argc, char** argv) {
  CLI::App app{"ugeo: the queries and region operations of UtilityGeometry on WKT geometries."};
  app.name("ugeo");
  app.require_subcommand(1);
  app.fallthrough();
  app.footer("\n" + Wrap(std::string(kInputs) +
                         "\n\nOutput is WKT (or a number or words) by default, one line per answer; --json "
                         "prints one JSON object per line instead. 'ugeo <subcommand> --help' tells what each "
                         "prints.\n\n" +
                         kErrors));
  UgeoOptions o;
  app.add_flag("--json", o.json, "one JSON object per line instead of WKT");

  std::function<void(UgeoOutput&)> action;
  for (const Sub& s : kSubs) {
    CLI::App* sub = app.add_subcommand(s.name, s.brief);
    sub->footer(Footer(s));
    const std::string name = s.name;
    if (name == "contains") {
      sub->add_option("REGION", o.first, "the region")->required();
      sub->add_option("GEOM", o.rest, "geometries to test")->required();
      sub->callback([&] { action = [&](UgeoOutput& out) { UgeoContains(o, out); }; });
    } else if (name == "pieces") {
      sub->add_option("REGION", o.first, "the region")->required();
      sub->add_option("LINE", o.rest, "lines to cut")->required();
      sub->add_option("--mode", o.mode, "0: inside pieces; 1: inside and boundary joined")
          ->check(CLI::IsMember({0, 1}));
      sub->callback([&] { action = [&](UgeoOutput& out) { UgeoPieces(o, out); }; });
    } else if (name == "distance") {
      sub->add_option("A", o.first, "a geometry")->required();
      sub->add_option("B", o.rest, "geometries to measure to")->required();
      sub->callback([&] { action = [&](UgeoOutput& out) { UgeoDistance(o, out); }; });
    } else if (name == "offset") {
      sub->add_option("REGION", o.first, "the region, line or point")->required();
      sub->add_option("D", o.second, "the distance (negative shrinks)")->required();
      sub->add_option("--join", o.join, "corners: miter (default), round or square")
          ->check(CLI::IsMember({"miter", "round", "square"}));
      sub->add_option("--ends", o.ends, "ends of a line's band: butt (default), round or square")
          ->check(CLI::IsMember({"butt", "round", "square"}));
      sub->add_option("--miter-limit", o.miterLimit, "miter tips beyond this many times |D| are cut (default 2)");
      sub->add_option("--eps", o.eps, "the chord tolerance of round corners (default 0.001)");
      sub->callback([&] { action = [&](UgeoOutput& out) { UgeoOffset(o, out); }; });
    } else if (name == "svg") {
      sub->add_option("OUT", o.first, "the SVG file to write")->required();
      sub->add_option("GEOM", o.rest, "geometries to draw")->required();
      sub->add_option("--width", o.width, "picture width in pixels (default 800)");
      sub->add_option("--title", o.title, "a title for the picture");
      sub->add_flag("--state", o.state, "colour lines and points by where they lie in the first GEOM");
      sub->callback([&] { action = [&](UgeoOutput& out) { UgeoSvg(o, out); }; });
    } else {
      sub->add_option("GEOM", o.rest, "geometries")->required();
      if (name == "clean") sub->add_option("--eps", o.eps, "the tolerance of the clean-up (default 0.001)");
      const int op = name == "union" ? 1 : name == "intersection" ? 2 : name == "difference" ? 3 : 0;
      void (*f)(const UgeoOptions&, UgeoOutput&) = name == "area" ? UgeoArea : name == "bbox" ? UgeoBbox : UgeoClean;
      sub->callback([&o, &action, op, f] {
        if (op != 0)
          action = [&o, op](UgeoOutput& out) { UgeoBoolean(o, out, op); };
        else
          action = [&o, f](UgeoOutput& out) { f(o, out); };
      });
    }
  }

  // CLI11 would call an unknown subcommand a missing one.
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (a.empty() || a[0] == '-') continue;
    bool known = false;
    for (const Sub& s : kSubs) known = known || a == s.name;
    if (known) break;
    std::fprintf(stderr, "error: unknown subcommand '%s' (see ugeo --help)\n", a.c_str());
    return 2;
  }

  // CLI11 takes "-5" for a number but "-.5" for an option; "-0.5" is the same number. D gets
  // its text back after parsing, so that a message about it counts offsets in what was typed.
  std::vector<std::string> args;
  std::vector<std::pair<std::string, std::string>> widened;
  for (int i = argc - 1; i > 0; --i) {
    std::string a = argv[i];
    if (a.size() > 2 && a[0] == '-' && a[1] == '.' && a[2] >= '0' && a[2] <= '9') {
      widened.emplace_back(std::string(a).insert(1, "0"), a);
      a.insert(1, "0");
    }
    args.push_back(a);
  }

  try {
    app.parse(args);
  } catch (const CLI::CallForHelp&) {
    // The help of the subcommand given, else of the tool.
    std::fputs(app.help().c_str(), stdout);
    return 0;
  } catch (const CLI::CallForAllHelp&) {
    std::fputs(app.help("", CLI::AppFormatMode::All).c_str(), stdout);
    return 0;
  } catch (const CLI::ParseError& e) {
    std::string what = e.what();
    for (char& c : what)
      if (c == '\n') c = ' ';
    std::fprintf(stderr, "error: %s (see ugeo --help)\n", what.c_str());
    return 2;
  }
  for (const auto& w : widened)
    if (o.second == w.first) o.second = w.second;
  UgeoOutput out(o.json);
  if (action) action(out);
  out.Finish();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const UgeoError& e) {
    std::fprintf(stderr, "error: %s\n", e.what());
  } catch (const std::bad_alloc&) {
    std::fputs("error: out of memory\n", stderr);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "error: %s\n", e.what());
  } catch (...) {
    std::fputs("error: unexpected failure\n", stderr);
  }
  // What was printed before the error stays; the status tells that the run did not complete.
  std::fflush(stdout);
  return 2;
}
