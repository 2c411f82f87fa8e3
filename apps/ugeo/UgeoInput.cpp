#include "UgeoInput.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }

// Standard input is one stream: a second - would find it used up.
bool g_StdinTaken = false;

}  // namespace

UgeoProgress::UgeoProgress() : m_bEnabled(isatty(STDERR_FILENO) == 1) {
  if (m_bEnabled) m_Start = m_Last = Now();
}

UgeoProgress::~UgeoProgress() {
  // Clears the progress line so that what follows on the terminal starts clean.
  if (m_bShown) std::fputs("\r\033[K", stderr);
}

void UgeoProgress::Tick() {
  ++m_nLines;
  // The clock is read every 1024 lines only, so that a fast run pays nothing for it.
  if (!m_bEnabled || (m_nLines & 1023) != 0) return;
  const double now = Now();
  if (now - m_Start < 1.0 || now - m_Last < 0.25) return;
  m_Last = now;
  m_bShown = true;
  std::fprintf(stderr, "\rugeo: %lld lines read", m_nLines);
  std::fflush(stderr);
}

void UgeoOrigin::Fail(const std::string& what) const {
  throw UgeoError(where + ": " + what + " at offset " + std::to_string(offset));
}

UgeoSource::UgeoSource(const char* role, int position, const std::string& arg, UgeoProgress* progress)
    : m_Role(role), m_Position(position), m_Arg(arg), m_Progress(progress) {
  if (arg == "-") {
    if (g_StdinTaken) throw UgeoError(Origin().where + ": standard input is read by an earlier argument already");
    g_StdinTaken = true;
    m_Kind = kStdin;
    m_File = stdin;
  } else if (!arg.empty() && arg[0] == '@') {
    m_Kind = kFile;
    m_File = std::fopen(arg.c_str() + 1, "rb");
    if (m_File == nullptr) throw UgeoError(Origin().where + ": cannot open: " + std::strerror(errno));
  }
}

UgeoSource::~UgeoSource() {
  if (m_Kind == kFile && m_File != nullptr) std::fclose(m_File);
}

UgeoOrigin UgeoSource::Origin() const {
  UgeoOrigin o;
  o.where = std::string(m_Role) + " argument " + std::to_string(m_Position);
  const std::string line = m_nLine > 0 ? " line " + std::to_string(m_nLine) : std::string();
  if (m_Kind == kStdin) o.where += ", standard input" + line;
  if (m_Kind == kFile) o.where += ", " + m_Arg.substr(1) + line;
  o.offset = m_KeywordOffset;
  return o;
}

int UgeoSource::ReadLine(std::string& line) {
  line.clear();
  int c = 0;
  bool any = false;
  while ((c = getc_unlocked(m_File)) != EOF) {
    any = true;
    if (c == '\n') break;
    line.push_back(static_cast<char>(c));
  }
  if (std::ferror(m_File)) throw UgeoError(Origin().where + ": read error: " + std::strerror(errno));
  if (!any) return 0;
  ++m_nLine;
  if (m_Progress != nullptr) m_Progress->Tick();
  return 1;
}

int UgeoSource::Next(KvGeWktGeometry& out) {
  if (m_bDone) return 0;
  if (m_Kind == kText) {
    m_bDone = true;
    m_Line = m_Arg;
  } else {
    for (;;) {
      if (!ReadLine(m_Line)) {
        m_bDone = true;
        return 0;
      }
      std::size_t i = 0;
      while (i < m_Line.size() && IsBlank(m_Line[i])) ++i;
      if (i < m_Line.size() && m_Line[i] != '#') break;
    }
  }
  m_KeywordOffset = 0;
  while (m_KeywordOffset < m_Line.size() && IsBlank(m_Line[m_KeywordOffset])) ++m_KeywordOffset;
  std::string message;
  if (!KvGeReadWkt(m_Line, out, &message)) throw UgeoError(Origin().where + ": " + message);
  return 1;
}

KvGeWktGeometry UgeoReadOne(const char* role, int position, const std::string& arg, UgeoOrigin& origin) {
  UgeoSource src(role, position, arg);
  KvGeWktGeometry g;
  if (!src.Next(g)) throw UgeoError(src.Origin().where + ": no geometry given");
  origin = src.Origin();
  KvGeWktGeometry more;
  if (src.Next(more)) throw UgeoError(src.Origin().where + ": one geometry expected, found a second one");
  return g;
}

KvGePolygon2dArray UgeoRegion(const KvGeWktGeometry& g, const UgeoOrigin& origin) {
  KvGePolygon2dArray region;
  if (!g.GetRegion(region)) origin.Fail(std::string("expected POLYGON or MULTIPOLYGON, got ") + g.KindName());
  return region;
}

int UgeoInRegionRange(const KvGePolygon2dArray& region) {
  for (const KvGePolygon2d& ring : region)
    for (const KvGePoint2d& p : ring)
      // Written so that NaN fails too.
      if (!(std::fabs(p.x) <= kKvGeRegionRange && std::fabs(p.y) <= kKvGeRegionRange)) return 0;
  return 1;
}

double UgeoNumber(const char* role, int position, const std::string& arg) {
  const std::string where = std::string(role) + " argument " + std::to_string(position);
  const char* s = arg.c_str();
  std::size_t i = 0;
  while (s[i] != '\0' && IsBlank(s[i])) ++i;
  char* end = nullptr;
  errno = 0;
  const double v = std::strtod(s + i, &end);
  std::size_t stop = static_cast<std::size_t>(end - s);
  if (stop == i) throw UgeoError(where + ": expected a number at offset " + std::to_string(i));
  while (s[stop] != '\0' && IsBlank(s[stop])) ++stop;
  if (stop != arg.size()) throw UgeoError(where + ": unexpected character at offset " + std::to_string(stop));
  // Overflow gives an infinity; a number so small that it reads as 0 (1e-400) is refused as the
  // WKT reader refuses it, a subnormal one is taken.
  if (!std::isfinite(v) || (errno == ERANGE && v == 0.0))
    throw UgeoError(where + ": expected a finite number in the range of a double at offset " + std::to_string(i));
  return v;
}
