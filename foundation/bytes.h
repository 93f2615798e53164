#pragma once

/// @file
/// Numbers as little-endian bytes without alignment: the coding of streams on every machine.

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

/// Writes the bytes of @p v to @p to; returns the address behind them.
template <class T>
inline unsigned char *gf_putLittle(unsigned char *to, T v)
{
  static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
  auto bytes = std::bit_cast<std::array<unsigned char, sizeof(T)>>(v);
  if constexpr (std::endian::native == std::endian::big)
    std::reverse(bytes.begin(), bytes.end());
  std::memcpy(to, bytes.data(), sizeof(T));
  return to + sizeof(T);
}

/// Reads a number from @p from. T is no bool: a byte of a stream may hold any value.
template <class T>
inline T gf_getLittle(unsigned char const *from)
{
  static_assert((std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) || std::is_enum_v<T>);
  std::array<unsigned char, sizeof(T)> bytes;
  std::memcpy(bytes.data(), from, sizeof(T));
  if constexpr (std::endian::native == std::endian::big)
    std::reverse(bytes.begin(), bytes.end());
  return std::bit_cast<T>(bytes);
}
