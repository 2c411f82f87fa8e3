#pragma once
// The subcommands of ugeo, each one function over the parsed command line. What each prints is
// stated in its --help text in main.cpp; every line of output answers one input geometry (or the
// whole command for union, intersection and difference), in the order the inputs were given.

#include <string>
#include <vector>

/// The parsed command line of one subcommand.
struct UgeoOptions {
  bool json = false;
  /// The subcommand's fixed leading arguments (REGION, A, OUT.svg; D of offset) ...
  std::string first;
  std::string second;
  /// ... and its repeated ones (GEOM..., LINE..., B...).
  std::vector<std::string> rest;
  int mode = 0;
  std::string join = "miter";
  std::string ends = "butt";
  double miterLimit = 2.0;
  double eps = 0.001;
  bool state = false;
  int width = 800;
  std::string title;
};

/// Lines of output on standard output: each either plain text (WKT, numbers, words) or, with
/// --json, one JSON object.
class UgeoOutput {
 public:
  explicit UgeoOutput(bool json) : m_bJson(json) {}
  bool Json() const { return m_bJson; }
  /// The line being built; Emit writes it with a line break and clears it.
  std::string& Line() { return m_Line; }
  void Emit();
  /// Appends v in the shortest form that reads back to the same double; in JSON a number that
  /// is not finite is written as null.
  void Number(double v);
  /// Appends text as a JSON string (quoted and escaped).
  void JsonString(const std::string& text);
  /// Flushes standard output; throws UgeoError when writing failed.
  void Finish();

 private:
  bool m_bJson;
  std::string m_Line;
};

void UgeoArea(const UgeoOptions& o, UgeoOutput& out);
void UgeoBbox(const UgeoOptions& o, UgeoOutput& out);
void UgeoContains(const UgeoOptions& o, UgeoOutput& out);
void UgeoPieces(const UgeoOptions& o, UgeoOutput& out);
void UgeoDistance(const UgeoOptions& o, UgeoOutput& out);
/// op: 1 union, 2 intersection, 3 difference.
void UgeoBoolean(const UgeoOptions& o, UgeoOutput& out, int op);
void UgeoOffset(const UgeoOptions& o, UgeoOutput& out);
void UgeoClean(const UgeoOptions& o, UgeoOutput& out);
void UgeoSvg(const UgeoOptions& o, UgeoOutput& out);
