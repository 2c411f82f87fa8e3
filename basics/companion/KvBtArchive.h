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

/// \file
/// Non-finite values: a double is stored as its bit pattern, NaN and infinities included, and loads
/// back the same. A writer that refuses a value its format cannot hold sets the failure state with
/// SetFailed. See docs/non-finite-policy.md.

#include <cstdint>
#include <iosfwd>

#include "basics/companion/UtilityBasicsClassExport.h"

class KvBtString;

/// A binary archive on a standard stream, storing or loading (fixed for its lifetime), little-endian. A failed read or
/// write puts it into a failure state in which every further operation does nothing; the target of a failed load is
/// unchanged.
class KVBT_API KvBtArchive {
 public:
  /// An archive that stores to out.
  explicit KvBtArchive(std::ostream& out);
  /// An archive that loads from in.
  explicit KvBtArchive(std::istream& in);
  /// A stream that can do both is given its direction explicitly.
  enum Mode { kStore, kLoad };
  /// An archive on io that stores (kStore) or loads (kLoad).
  KvBtArchive(std::iostream& io, Mode mode);
  KvBtArchive(const KvBtArchive&) = delete;
  KvBtArchive& operator=(const KvBtArchive&) = delete;
  virtual ~KvBtArchive();

  /// 1 when the archive stores.
  int IsStoring() const { return m_pOut != nullptr ? 1 : 0; }
  /// 1 when the archive loads.
  int IsLoading() const { return m_pIn != nullptr ? 1 : 0; }
  /// 1 once a read ran short, a length prefix was malformed, the stream failed or the wrong direction was used.
  int IsFailed() const { return m_bFailed ? 1 : 0; }
  /// Puts the archive into its failure state, in which every further operation does nothing:
  /// what a writer does that refuses a value its format cannot hold, so that no stored form
  /// stands for something it was not given.
  void SetFailed() { m_bFailed = true; }

  /// Stores one byte. Storing on a loading archive sets the failure state.
  KvBtArchive& operator<<(std::uint8_t v);
  /// Stores two bytes, low byte first.
  KvBtArchive& operator<<(std::uint16_t v);
  /// Stores two bytes, low byte first.
  KvBtArchive& operator<<(std::int16_t v);
  /// Stores four bytes, little-endian.
  KvBtArchive& operator<<(std::uint32_t v);
  /// Stores four bytes, little-endian.
  KvBtArchive& operator<<(std::int32_t v);
  /// Stores the 64-bit IEEE pattern, little-endian.
  KvBtArchive& operator<<(double v);
  /// Stores the length prefix (1, 3 or 7 bytes) and the bytes, no terminator.
  KvBtArchive& operator<<(const KvBtString& s);

  /// Loads one byte; v is unchanged on failure. Loading on a storing archive sets the failure state.
  KvBtArchive& operator>>(std::uint8_t& v);
  /// Loads two bytes, low byte first; v unchanged on failure.
  KvBtArchive& operator>>(std::uint16_t& v);
  /// Loads two bytes, low byte first; v unchanged on failure.
  KvBtArchive& operator>>(std::int16_t& v);
  /// Loads four bytes, little-endian; v unchanged on failure.
  KvBtArchive& operator>>(std::uint32_t& v);
  /// Loads four bytes, little-endian; v unchanged on failure.
  KvBtArchive& operator>>(std::int32_t& v);
  /// Loads the 64-bit IEEE pattern; v unchanged on failure.
  KvBtArchive& operator>>(double& v);
  /// Loads a length-prefixed string in bounded chunks; s unchanged on failure.
  KvBtArchive& operator>>(KvBtString& s);

 private:
  KVBT_NO_EXPORT void WriteBytes(const unsigned char* bytes, std::size_t n);
  KVBT_NO_EXPORT int ReadBytes(unsigned char* bytes, std::size_t n);
  KVBT_NO_EXPORT void WriteUnsigned(std::uint64_t v, std::size_t width);
  KVBT_NO_EXPORT int ReadUnsigned(std::uint64_t& v, std::size_t width);

  std::ostream* m_pOut = nullptr;
  std::istream* m_pIn = nullptr;
  bool m_bFailed = false;
};
