#pragma once
/// @file
/// A byte string of the companion basics library. It holds any bytes, embedded zeros included;
/// c_str() is always zero-terminated. Positions and counts out of range are clamped, never
/// reported.

#include <cstddef>
#include <string>
#include <utility>

#include "basics/companion/UtilityBasicsClassExport.h"

/// A byte string: any bytes, embedded zeros included; c_str() is always zero-terminated. Positions and counts out of
/// range are clamped. Comparison is bytewise and exact.
class KVBT_API KvBtString {
 public:
  KvBtString() = default;
  /// The bytes up to the terminating zero; a null pointer gives the empty string.
  KvBtString(const char* text) : m_Text(text ? text : "") {}  // NOLINT: implicit on purpose
  /// length bytes from bytes (zeros included); a null pointer or a length of 0 or less gives the empty string.
  KvBtString(const char* bytes, int length)
      : m_Text(bytes && length > 0 ? std::string(bytes, static_cast<std::size_t>(length)) : std::string()) {}
  /// The bytes of text.
  explicit KvBtString(std::string text) : m_Text(std::move(text)) {}
  /// Copies the bytes.
  KvBtString(const KvBtString&) = default;
  /// Takes over the bytes of the other string.
  KvBtString(KvBtString&&) noexcept = default;
  /// Copies the bytes.
  KvBtString& operator=(const KvBtString&) = default;
  /// Takes over the bytes of the other string.
  KvBtString& operator=(KvBtString&&) noexcept = default;
  /// The bytes up to the terminating zero; a null pointer gives the empty string.
  KvBtString& operator=(const char* text) {
    m_Text = text ? text : "";
    return *this;
  }
  virtual ~KvBtString();

  /// The bytes, zero-terminated.
  const char* c_str() const { return m_Text.c_str(); }
  /// The bytes, zero-terminated.
  operator const char*() const { return m_Text.c_str(); }  // NOLINT: implicit on purpose
  /// The number of bytes.
  int GetLength() const { return static_cast<int>(m_Text.size()); }
  /// 1 when there are no bytes.
  int IsEmpty() const { return m_Text.empty() ? 1 : 0; }
  /// Removes every byte.
  void Empty() { m_Text.clear(); }
  /// The byte at i; 0 for an index out of range.
  char GetAt(int i) const { return (i >= 0 && i < GetLength()) ? m_Text[static_cast<std::size_t>(i)] : '\0'; }

  /// The first count bytes (all when count exceeds the length, none when negative).
  KvBtString Left(int count) const;
  /// The bytes from first on, count of them or up to the end.
  KvBtString Mid(int first) const;
  /// count bytes from first on (fewer at the end); positions and counts out of range are clamped.
  KvBtString Mid(int first, int count) const;
  /// The last count bytes.
  KvBtString Right(int count) const;

  /// Appends the bytes of other.
  KvBtString& operator+=(const KvBtString& other) {
    m_Text += other.m_Text;
    return *this;
  }
  /// Appends the byte c.
  KvBtString& operator+=(char c) {
    m_Text += c;
    return *this;
  }
  /// The bytes of a followed by those of b.
  friend KvBtString operator+(KvBtString a, const KvBtString& b) { return a += b; }

  /// 1 when the bytes are equal.
  int operator==(const KvBtString& o) const { return m_Text == o.m_Text ? 1 : 0; }
  /// 1 when the bytes differ.
  int operator!=(const KvBtString& o) const { return m_Text != o.m_Text ? 1 : 0; }
  /// 1 when the bytes sort before those of o (bytewise).
  int operator<(const KvBtString& o) const { return m_Text < o.m_Text ? 1 : 0; }

  /// The bytes as a std::string.
  const std::string& Str() const { return m_Text; }

 private:
  std::string m_Text;
};
