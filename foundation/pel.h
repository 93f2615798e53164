#pragma once

#include "foundation/export.h"
#include "foundation/pelerror.h"

#include <cstdint>

/// @file
/// The types of a pel. A pel buffer holds `unsigned char`, `unsigned short`, gxPackedRGB16Pel or gxPackedRGB32Pel.

/// A pel of 16 bits: red in the top 5 bits, green in the middle 6, blue in the low 5.
class GX_API gxPackedRGB16Pel
{
 public:
  /// Black.
  constexpr gxPackedRGB16Pel() = default;
  /// The 16 bits as they stand.
  constexpr explicit gxPackedRGB16Pel(unsigned short value) : value_(value) {}
  /// From components of 0 to 255, of which the high bits are kept.
  constexpr gxPackedRGB16Pel(unsigned char r, unsigned char g, unsigned char b)
      : value_(static_cast<std::uint16_t>((r >> 3) << 11 | (g >> 2) << 5 | b >> 3))
  {
  }

  constexpr unsigned short value() const { return value_; }
  /// Components of 0 to 255; the high bits are repeated below, so that full intensity gives 255.
  constexpr unsigned char red() const { return widen5(value_ >> 11); }
  constexpr unsigned char green() const
  {
    int const g = value_ >> 5 & 63;
    return static_cast<unsigned char>(g << 2 | g >> 4);
  }
  constexpr unsigned char blue() const { return widen5(value_ & 31); }

  friend constexpr bool operator==(gxPackedRGB16Pel, gxPackedRGB16Pel) = default;

 private:
  static constexpr unsigned char widen5(int c) { return static_cast<unsigned char>(c << 3 | c >> 2); }

  std::uint16_t value_ = 0;
};

/// A pel of 32 bits: the bytes red, green, blue and a spare one, in this order in memory. The spare byte is carried
/// along by every operation and has no meaning of its own.
class GX_API gxPackedRGB32Pel
{
 public:
  /// Black.
  constexpr gxPackedRGB32Pel() = default;
  constexpr gxPackedRGB32Pel(unsigned char r, unsigned char g, unsigned char b, unsigned char spare = 0)
      : r_(r), g_(g), b_(b), spare_(spare)
  {
  }
  /// From a number as value() gives it; bits above the 32nd are ignored.
  constexpr explicit gxPackedRGB32Pel(unsigned long value)
      : r_(static_cast<unsigned char>(value)),
        g_(static_cast<unsigned char>(value >> 8)),
        b_(static_cast<unsigned char>(value >> 16)),
        spare_(static_cast<unsigned char>(value >> 24))
  {
  }

  /// The pel as a number, the same on every machine: red + 256 green + 65536 blue + 16777216 spare.
  constexpr std::uint32_t value() const
  {
    return static_cast<std::uint32_t>(r_) | static_cast<std::uint32_t>(g_) << 8 | static_cast<std::uint32_t>(b_) << 16 |
           static_cast<std::uint32_t>(spare_) << 24;
  }
  constexpr unsigned char red() const { return r_; }
  constexpr unsigned char green() const { return g_; }
  constexpr unsigned char blue() const { return b_; }
  constexpr unsigned char spare() const { return spare_; }
  /// The grey of equal brightness: 0.299 red + 0.587 green + 0.114 blue, with the weights rounded to 1/256. A pel of
  /// equal components keeps its value.
  constexpr unsigned char luminance() const
  {
    return static_cast<unsigned char>((77 * r_ + 150 * g_ + 29 * b_ + 128) >> 8);
  }

  friend constexpr bool operator==(gxPackedRGB32Pel a, gxPackedRGB32Pel b) { return a.value() == b.value(); }

 private:
  alignas(std::uint32_t) unsigned char r_ = 0;
  unsigned char g_ = 0, b_ = 0, spare_ = 0;
};

static_assert(sizeof(gxPackedRGB16Pel) == 2 && sizeof(gxPackedRGB32Pel) == 4 && alignof(gxPackedRGB32Pel) == 4);
