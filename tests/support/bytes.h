#pragma once

#include "dispc/uisketch.h"

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

/// Bytes of a stream as a test expects them, put together field by field from the documented layout.
class Bytes
{
 public:
  Bytes &u8(int v)
  {
    bytes_.push_back(static_cast<unsigned char>(v));
    return *this;
  }
  Bytes &i32(long v) { return little(static_cast<std::uint32_t>(v), 4); }
  Bytes &f64(double v) { return little(std::bit_cast<std::uint64_t>(v), 8); }
  Bytes &f32(float v) { return little(std::bit_cast<std::uint32_t>(v), 4); }
  Bytes &zeros(int n)
  {
    bytes_.insert(bytes_.end(), static_cast<std::size_t>(n), 0);
    return *this;
  }
  Bytes &f64s(std::initializer_list<double> vs)
  {
    for (double const v : vs)
      f64(v);
    return *this;
  }
  Bytes &u8s(std::initializer_list<int> vs)
  {
    for (int const v : vs)
      u8(v);
    return *this;
  }
  Bytes &i32s(std::initializer_list<long> vs)
  {
    for (long const v : vs)
      i32(v);
    return *this;
  }
  Bytes &add(Bytes const &other)
  {
    bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
    return *this;
  }
  Bytes &text(std::string const &s)
  {
    bytes_.insert(bytes_.end(), s.begin(), s.end());
    return *this;
  }
  Bytes &rgb(int r, int g, int b) { return u8(2).u8(0).u8(r).u8(g).u8(b).u8(0); }
  Bytes &index(int i) { return u8(4).u8(i).zeros(4); }
  /// Stock cyan, the default pen.
  Bytes &cyan() { return u8(7).u8(254).u8(0).u8(255).u8(255).u8(0); }
  /// The properties of a record: a one-pel solid pen, but for what is given.
  Bytes &prefix(bool fill = false, long width = 1, bool arrow = true)
  {
    return u8(40).u8(0).u8(fill).i32(width).i32(0).i32(0).i32(0).u8(arrow).u8(1).u8(0);
  }
  Bytes &head(int code, int layer) { return u8(code).u8(layer); }
  /// A record in the default pen, and one that has no colour.
  Bytes &drawn(int code, int layer, std::initializer_list<double> vs = {}) { return head(code, layer).cyan().f64s(vs); }
  Bytes &moved(int code, int layer, std::initializer_list<double> vs = {})
  {
    return head(code, layer).index(0).f64s(vs);
  }

  std::vector<unsigned char> const &get() const { return bytes_; }

 private:
  Bytes &little(std::uint64_t v, int n)
  {
    for (int i = 0; i < n; ++i)
      u8(static_cast<int>(v >> (8 * i) & 255));
    return *this;
  }
  std::vector<unsigned char> bytes_;
};

inline std::vector<unsigned char> bytesOf(gxUISketch const &s)
{
  return {s.bytes(), s.bytes() + s.size()};
}

inline gxUISketch sketchOf(std::vector<unsigned char> const &bytes)
{
  gxUISketch sketch;
  sketch.append(bytes.data(), static_cast<long>(bytes.size()));
  return sketch;
}
