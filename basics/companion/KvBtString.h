#pragma once
/// @file
/// A byte string of the companion basics library. It holds any bytes, embedded zeros included;
/// c_str() is always zero-terminated. Positions and counts out of range are clamped, never
/// reported.

#include <cstddef>
#include <string>
#include <utility>

#include "basics/companion/UtilityBasicsClassExport.h"

class KVBT_API KvBtString {
 public:
  KvBtString() = default;
  KvBtString(const char* text) : m_Text(text ? text : "") {}  // NOLINT: implicit on purpose
  KvBtString(const char* bytes, int length)
      : m_Text(bytes && length > 0 ? std::string(bytes, length) : std::string()) {}
  explicit KvBtString(std::string text) : m_Text(std::move(text)) {}
  KvBtString(const KvBtString&) = default;
  KvBtString(KvBtString&&) noexcept = default;
  KvBtString& operator=(const KvBtString&) = default;
  KvBtString& operator=(KvBtString&&) noexcept = default;
  KvBtString& operator=(const char* text) {
    m_Text = text ? text : "";
    return *this;
  }
  virtual ~KvBtString();

  const char* c_str() const { return m_Text.c_str(); }
  operator const char*() const { return m_Text.c_str(); }  // NOLINT: implicit on purpose
  int GetLength() const { return static_cast<int>(m_Text.size()); }
  int IsEmpty() const { return m_Text.empty() ? 1 : 0; }
  void Empty() { m_Text.clear(); }
  /// The byte at i; 0 for an index out of range.
  char GetAt(int i) const { return (i >= 0 && i < GetLength()) ? m_Text[static_cast<std::size_t>(i)] : '\0'; }

  /// The first count bytes (all when count exceeds the length, none when negative).
  KvBtString Left(int count) const;
  /// The bytes from first on, count of them or up to the end.
  KvBtString Mid(int first) const;
  KvBtString Mid(int first, int count) const;
  /// The last count bytes.
  KvBtString Right(int count) const;

  KvBtString& operator+=(const KvBtString& other) {
    m_Text += other.m_Text;
    return *this;
  }
  KvBtString& operator+=(char c) {
    m_Text += c;
    return *this;
  }
  friend KvBtString operator+(KvBtString a, const KvBtString& b) { return a += b; }

  int operator==(const KvBtString& o) const { return m_Text == o.m_Text ? 1 : 0; }
  int operator!=(const KvBtString& o) const { return m_Text != o.m_Text ? 1 : 0; }
  int operator<(const KvBtString& o) const { return m_Text < o.m_Text ? 1 : 0; }

  const std::string& Str() const { return m_Text; }

 private:
  std::string m_Text;
};
