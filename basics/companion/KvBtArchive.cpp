#include "basics/companion/KvBtArchive.h"

#include <cstring>
#include <istream>
#include <ostream>
#include <string>
#include <utility>

#include "basics/companion/KvBtString.h"

KvBtArchive::KvBtArchive(std::ostream& out) : m_pOut(&out) {}
KvBtArchive::KvBtArchive(std::istream& in) : m_pIn(&in) {}
KvBtArchive::KvBtArchive(std::iostream& io, Mode mode) {
  if (mode == kStore)
    m_pOut = &io;
  else
    m_pIn = &io;
}
KvBtArchive::~KvBtArchive() = default;

void KvBtArchive::WriteBytes(const unsigned char* bytes, std::size_t n) {
  if (m_bFailed || !m_pOut) {
    m_bFailed = true;
    return;
  }
  m_pOut->write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(n));
  if (!*m_pOut) m_bFailed = true;
}

int KvBtArchive::ReadBytes(unsigned char* bytes, std::size_t n) {
  if (m_bFailed || !m_pIn) {
    m_bFailed = true;
    return 0;
  }
  m_pIn->read(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(n));
  if (static_cast<std::size_t>(m_pIn->gcount()) != n) {
    m_bFailed = true;
    return 0;
  }
  return 1;
}

void KvBtArchive::WriteUnsigned(std::uint64_t v, std::size_t width) {
  unsigned char bytes[8];
  for (std::size_t i = 0; i < width; ++i) bytes[i] = static_cast<unsigned char>((v >> (8 * i)) & 0xFFu);
  WriteBytes(bytes, width);
}

int KvBtArchive::ReadUnsigned(std::uint64_t& v, std::size_t width) {
  unsigned char bytes[8];
  if (!ReadBytes(bytes, width)) return 0;
  std::uint64_t r = 0;
  for (std::size_t i = 0; i < width; ++i) r |= static_cast<std::uint64_t>(bytes[i]) << (8 * i);
  v = r;
  return 1;
}

KvBtArchive& KvBtArchive::operator<<(std::uint8_t v) { return WriteUnsigned(v, 1), *this; }
KvBtArchive& KvBtArchive::operator<<(std::uint16_t v) { return WriteUnsigned(v, 2), *this; }
KvBtArchive& KvBtArchive::operator<<(std::int16_t v) { return WriteUnsigned(static_cast<std::uint16_t>(v), 2), *this; }
KvBtArchive& KvBtArchive::operator<<(std::uint32_t v) { return WriteUnsigned(v, 4), *this; }
KvBtArchive& KvBtArchive::operator<<(std::int32_t v) { return WriteUnsigned(static_cast<std::uint32_t>(v), 4), *this; }
KvBtArchive& KvBtArchive::operator<<(double v) {
  std::uint64_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  return WriteUnsigned(bits, 8), *this;
}

KvBtArchive& KvBtArchive::operator<<(const KvBtString& s) {
  const std::size_t n = s.Str().size();
  if (n > 0xFFFFFFFFu) {
    m_bFailed = true;
    return *this;
  }
  if (n < 0xFF) {
    WriteUnsigned(n, 1);
  } else if (n < 0xFFFE) {
    WriteUnsigned(0xFF, 1);
    WriteUnsigned(n, 2);
  } else {
    WriteUnsigned(0xFF, 1);
    WriteUnsigned(0xFFFF, 2);
    WriteUnsigned(n, 4);
  }
  WriteBytes(reinterpret_cast<const unsigned char*>(s.Str().data()), n);
  return *this;
}

KvBtArchive& KvBtArchive::operator>>(std::uint8_t& v) {
  std::uint64_t r;
  if (ReadUnsigned(r, 1)) v = static_cast<std::uint8_t>(r);
  return *this;
}
KvBtArchive& KvBtArchive::operator>>(std::uint16_t& v) {
  std::uint64_t r;
  if (ReadUnsigned(r, 2)) v = static_cast<std::uint16_t>(r);
  return *this;
}
KvBtArchive& KvBtArchive::operator>>(std::int16_t& v) {
  std::uint64_t r;
  if (ReadUnsigned(r, 2)) v = static_cast<std::int16_t>(static_cast<std::uint16_t>(r));
  return *this;
}
KvBtArchive& KvBtArchive::operator>>(std::uint32_t& v) {
  std::uint64_t r;
  if (ReadUnsigned(r, 4)) v = static_cast<std::uint32_t>(r);
  return *this;
}
KvBtArchive& KvBtArchive::operator>>(std::int32_t& v) {
  std::uint64_t r;
  if (ReadUnsigned(r, 4)) v = static_cast<std::int32_t>(static_cast<std::uint32_t>(r));
  return *this;
}
KvBtArchive& KvBtArchive::operator>>(double& v) {
  std::uint64_t r;
  if (ReadUnsigned(r, 8)) std::memcpy(&v, &r, sizeof v);
  return *this;
}

KvBtArchive& KvBtArchive::operator>>(KvBtString& s) {
  std::uint64_t n;
  if (!ReadUnsigned(n, 1)) return *this;
  if (n == 0xFF) {
    if (!ReadUnsigned(n, 2)) return *this;
    if (n == 0xFFFE) {  // not a length this format writes
      m_bFailed = true;
      return *this;
    }
    if (n == 0xFFFF && !ReadUnsigned(n, 4)) return *this;
  }
  if (n > 0x7FFFFFFFu) {  // more than a string of this library can hold
    m_bFailed = true;
    return *this;
  }
  // Read in bounded chunks: the buffer grows only as far as the stream really delivers.
  std::string text;
  constexpr std::size_t kChunk = 1 << 16;
  unsigned char buffer[kChunk];
  std::uint64_t left = n;
  while (left > 0) {
    const std::size_t take = left < kChunk ? static_cast<std::size_t>(left) : kChunk;
    if (!ReadBytes(buffer, take)) return *this;
    text.append(reinterpret_cast<const char*>(buffer), take);
    left -= take;
  }
  s = KvBtString(std::move(text));
  return *this;
}
