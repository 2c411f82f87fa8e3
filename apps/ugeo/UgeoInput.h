#pragma once
// The inputs of ugeo: geometry arguments read as WKT, and the few helpers that turn a read
// geometry into the library type a subcommand needs.
//
// A geometry argument is the WKT text itself, @FILE (every line of the file one WKT), or -
// (every line of standard input one WKT; at most one argument may read it). In files and on
// standard input, lines that are blank or whose first non-blank character is # are skipped.
// Bad input is reported by throwing UgeoError with one line that names the argument (its role
// and position among the subcommand's arguments), the file line when there is one, and the byte
// offset within that WKT text. main turns it into "error: ..." and exit status 2.

#include <cstdio>
#include <stdexcept>
#include <string>

#include "geometry/io/KvGeWkt.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"

struct UgeoError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Progress on standard error for a long run over standard input or a file: shown only when
/// standard error is a terminal, and only once the run has taken more than a second.
class UgeoProgress {
 public:
  UgeoProgress();
  ~UgeoProgress();
  UgeoProgress(const UgeoProgress&) = delete;
  UgeoProgress& operator=(const UgeoProgress&) = delete;
  /// One more line read.
  void Tick();

 private:
  bool m_bEnabled;
  bool m_bShown = false;
  long long m_nLines = 0;
  double m_Start = 0.0;
  double m_Last = 0.0;
};

/// Where a geometry came from, to name it in a message.
struct UgeoOrigin {
  /// "GEOM argument 2", "GEOM argument 2, standard input line 7", "REGION argument 1, a.wkt line 3".
  std::string where;
  /// The byte offset of the geometry's first character (its keyword) within its text.
  std::size_t offset = 0;
  /// Throws UgeoError "<where>: <what> at offset <offset>".
  [[noreturn]] void Fail(const std::string& what) const;
};

/// The geometries of one argument, one at a time.
class UgeoSource {
 public:
  /// role is the argument's name in messages ("REGION", "GEOM"), position its place among the
  /// subcommand's arguments (1-based).
  UgeoSource(const char* role, int position, const std::string& arg, UgeoProgress* progress = nullptr);
  ~UgeoSource();
  UgeoSource(const UgeoSource&) = delete;
  UgeoSource& operator=(const UgeoSource&) = delete;

  /// The next geometry into out: 1, or 0 when the argument holds no more. Throws UgeoError on
  /// WKT that does not read, or a file that cannot be opened or read.
  int Next(KvGeWktGeometry& out);
  /// 1 when the argument is a file or standard input (any number of geometries).
  int IsStream() const { return m_Kind != kText ? 1 : 0; }
  /// Where the last geometry came from.
  UgeoOrigin Origin() const;

 private:
  enum Kind { kText, kFile, kStdin };
  int ReadLine(std::string& line);

  const char* m_Role;
  int m_Position;
  std::string m_Arg;
  Kind m_Kind = kText;
  std::FILE* m_File = nullptr;
  bool m_bDone = false;
  long long m_nLine = 0;
  std::size_t m_KeywordOffset = 0;
  std::string m_Line;
  UgeoProgress* m_Progress;
};

/// Reads the single geometry of an argument; throws when it holds none or more than one.
KvGeWktGeometry UgeoReadOne(const char* role, int position, const std::string& arg, UgeoOrigin& origin);

/// A region (POLYGON or MULTIPOLYGON, plane or Z) from g; else origin.Fail(...).
KvGePolygon2dArray UgeoRegion(const KvGeWktGeometry& g, const UgeoOrigin& origin);
/// 1 when every coordinate of the region lies within the range of the region operations
/// (kKvGeRegionRange, inclusive).
int UgeoInRegionRange(const KvGePolygon2dArray& region);

/// A number argument (as D of offset): the whole text must be a finite number; else throws
/// naming the argument and the offset of the first character that does not belong.
double UgeoNumber(const char* role, int position, const std::string& arg);
