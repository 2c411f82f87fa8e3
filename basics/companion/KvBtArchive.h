#pragma once
/// @file
/// A binary archive on a standard stream. An archive built on an output stream stores, one
/// built on an input stream loads; the direction is fixed for its lifetime.
///
/// Byte format: integers little-endian in their width (a 16-bit word is two bytes, low byte
/// first); a double is its 64-bit IEEE pattern, little-endian; a string is length-prefixed:
/// one byte when the length is below 255, else 0xFF and a 16-bit length when below 0xFFFE,
/// else 0xFF, 0xFFFF and a 32-bit length; then the bytes, no terminator.
///
/// Loading never trusts the stream: a read that runs past the end, or a malformed length prefix
/// (0xFF 0xFFFE), leaves the target unchanged and puts the archive into its failure state, in
/// which every further operation does nothing. A long string is read in bounded chunks, so a
/// length prefix larger than the rest of the stream cannot make the archive allocate more than
/// the stream supplies. Storing to a stream that fails sets the failure state as well.

#include <cstdint>
#include <iosfwd>

#include "basics/companion/UtilityBasicsClassExport.h"

class KvBtString;

class KVBT_API KvBtArchive {
 public:
  explicit KvBtArchive(std::ostream& out);
  explicit KvBtArchive(std::istream& in);
  /// A stream that can do both is given its direction explicitly.
  enum Mode { kStore, kLoad };
  KvBtArchive(std::iostream& io, Mode mode);
  KvBtArchive(const KvBtArchive&) = delete;
  KvBtArchive& operator=(const KvBtArchive&) = delete;
  virtual ~KvBtArchive();

  int IsStoring() const { return m_pOut != nullptr ? 1 : 0; }
  int IsLoading() const { return m_pIn != nullptr ? 1 : 0; }
  int IsFailed() const { return m_bFailed ? 1 : 0; }

  KvBtArchive& operator<<(std::uint8_t v);
  KvBtArchive& operator<<(std::uint16_t v);
  KvBtArchive& operator<<(std::int16_t v);
  KvBtArchive& operator<<(std::uint32_t v);
  KvBtArchive& operator<<(std::int32_t v);
  KvBtArchive& operator<<(double v);
  KvBtArchive& operator<<(const KvBtString& s);

  KvBtArchive& operator>>(std::uint8_t& v);
  KvBtArchive& operator>>(std::uint16_t& v);
  KvBtArchive& operator>>(std::int16_t& v);
  KvBtArchive& operator>>(std::uint32_t& v);
  KvBtArchive& operator>>(std::int32_t& v);
  KvBtArchive& operator>>(double& v);
  KvBtArchive& operator>>(KvBtString& s);

 private:
  void WriteBytes(const unsigned char* bytes, std::size_t n);
  int ReadBytes(unsigned char* bytes, std::size_t n);
  void WriteUnsigned(std::uint64_t v, std::size_t width);
  int ReadUnsigned(std::uint64_t& v, std::size_t width);

  std::ostream* m_pOut = nullptr;
  std::istream* m_pIn = nullptr;
  bool m_bFailed = false;
};
