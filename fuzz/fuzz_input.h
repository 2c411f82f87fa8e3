#pragma once
// The byte format of the operations target, read by the target and written by the seed
// generator. A reader past the end reads zero bytes, so every input decodes to something.
//
// The first byte picks how a coordinate is coded (its low two bits):
//   0  one signed byte, whole units: a coarse grid full of shared vertices and collinear edges;
//   1  a signed 16-bit word in 1/64 units (low byte first);
//   2  two signed bytes: whole units plus steps of 0.00025, which lands on both sides of the
//      0.001 band;
//   3  the raw 64-bit pattern of a double: any value, NaN, infinities and 1e308 included.
// Then two polygon sets, each a byte r (1 + r % 3 rings), every ring a byte v (v % 24 vertices)
// and its coordinates, x before y. The rest are queries, each a byte that picks the query and
// then its operands.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "geometry/points/KvGePoint2d.h"
#include "geometry/polygons/KvGePolygon2d.h"

// An invariant of a target: a violation is reported with its text and stops the run.
#define UG_FUZZ_REQUIRE(condition)                                                               \
  do {                                                                                           \
    if (!(condition)) {                                                                          \
      std::fprintf(stderr, "invariant violated at %s:%d: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                              \
    }                                                                                            \
  } while (0)

namespace ugfuzz {

constexpr int kMaxRings = 3;
constexpr int kMaxVertices = 24;
constexpr int kMaxQueries = 32;

enum Query { kPoint = 0, kLine = 1, kPolyline = 2, kTwoLines = 3, kQueryKinds = 4 };

class Reader {
 public:
  Reader(const std::uint8_t* data, std::size_t size) : m_p(data), m_n(size) {}
  bool Empty() const { return m_n == 0; }
  std::uint8_t Byte() {
    if (m_n == 0) return 0;
    --m_n;
    return *m_p++;
  }
  void SetCoding(int coding) { m_coding = coding & 3; }
  int Coding() const { return m_coding; }
  double Coordinate() {
    switch (m_coding) {
      case 0:
        return static_cast<std::int8_t>(Byte());
      case 1: {
        const int lo = Byte(), hi = Byte();
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(lo | hi << 8)) / 64.0;
      }
      case 2: {
        const double whole = static_cast<std::int8_t>(Byte());
        return whole + 0.00025 * static_cast<std::int8_t>(Byte());
      }
      default: {
        std::uint64_t bits = 0;
        for (int k = 0; k < 8; ++k) bits |= static_cast<std::uint64_t>(Byte()) << (8 * k);
        double v;
        std::memcpy(&v, &bits, sizeof v);
        return v;
      }
    }
  }
  KvGePoint2d Point() {
    const double x = Coordinate();
    return KvGePoint2d(x, Coordinate());
  }
  KvGePolygon2dArray Set() {
    KvGePolygon2dArray set;
    const int rings = 1 + Byte() % kMaxRings;
    for (int r = 0; r < rings; ++r) {
      KvGePolygon2d ring;
      const int n = Byte() % kMaxVertices;
      for (int i = 0; i < n; ++i) ring.Add(Point());
      set.Add(ring);
    }
    return set;
  }

 private:
  const std::uint8_t* m_p;
  std::size_t m_n;
  int m_coding = 0;
};

class Writer {
 public:
  explicit Writer(int coding) : m_coding(coding & 3) { Byte(m_coding); }
  void Byte(int b) { m_bytes += static_cast<char>(b & 0xFF); }
  // Coordinates are rounded to what the coding can hold.
  void Coordinate(double v) {
    switch (m_coding) {
      case 0:
        Byte(static_cast<int>(Clamp(v, 127)));
        break;
      case 1: {
        const int w = static_cast<int>(Clamp(v * 64.0, 32767));
        Byte(w);
        Byte(w >> 8);
        break;
      }
      case 2: {
        const double whole = Clamp(v, 127);
        Byte(static_cast<int>(whole));
        Byte(static_cast<int>(Clamp((v - whole) / 0.00025, 127)));
        break;
      }
      default: {
        std::uint64_t bits;
        std::memcpy(&bits, &v, sizeof v);
        for (int k = 0; k < 8; ++k) Byte(static_cast<int>(bits >> (8 * k)));
      }
    }
  }
  void Point(const KvGePoint2d& p) {
    Coordinate(p.x);
    Coordinate(p.y);
  }
  void Set(const KvGePolygon2dArray& set) {
    Byte(set.GetSize() - 1);
    for (const KvGePolygon2d& ring : set) {
      Byte(ring.GetSize());
      for (const KvGePoint2d& p : ring) Point(p);
    }
  }
  const std::string& Bytes() const { return m_bytes; }

 private:
  static double Clamp(double v, double m) { return v < -m ? -m : (v > m ? m : std::round(v)); }
  int m_coding;
  std::string m_bytes;
};

}  // namespace ugfuzz
