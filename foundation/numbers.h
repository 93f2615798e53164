#pragma once

/// @file
/// Narrowing and rounding. Each rule stands here once; nothing else in the library writes one of these formulas.

#include <cmath>
#include <cstdint>
#include <limits>

/// Narrows a whole number to the 32 bits that are stored: the low 32 bits, so that arithmetic wraps.
constexpr std::int32_t gf_narrow(long v)
{
  return static_cast<std::int32_t>(v);
}

/// Truncates @p v towards zero to 32 bits. Saturates at the ends of the range; NaN gives 0.
constexpr std::int32_t gf_truncate(double v)
{
  constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
  if (v >= static_cast<double>(highest))
    return highest;
  if (v <= static_cast<double>(lowest))
    return lowest;
  return v == v ? static_cast<std::int32_t>(v) : 0;
}

/// Floor as a 32-bit number, saturating; NaN gives 0. Without std::floor, which is a slow call on some machines.
constexpr std::int32_t gf_floor(double v)
{
  std::int32_t const t = gf_truncate(v);
  return t - (static_cast<double>(t) > v && t != std::numeric_limits<std::int32_t>::min());
}

/// The same under the name that users know.
inline long gfIFloor(double v)
{
  return gf_floor(v);
}

/// Ceiling as a 32-bit number, saturating; NaN gives 0.
inline long gfICeil(double v)
{
  return gf_truncate(std::ceil(v));
}

/// Nearest whole number, halves away from zero, saturating; NaN gives 0.
inline long gf_roundHalfAway(double v)
{
  return gf_truncate(std::round(v));
}

/// The pel of a device coordinate is the floor of the coordinate after a relative nudge of 1e-11 upwards (a positive
/// value grows, a negative one shrinks), so that a whole number that arrives a hair short of itself (2.99999999999)
/// is found again. Saturates; NaN gives 0.
inline std::int32_t gf_nudgedFloor(double v)
{
  return gf_floor((1.0 + std::copysign(1e-11, v)) * v);
}

/// The mirror image of gf_nudgedFloor(): a relative nudge of 1e-11 downwards, then the ceiling.
inline std::int32_t gf_nudgedCeil(double v)
{
  return gf_truncate(std::ceil((1.0 - std::copysign(1e-11, v)) * v));
}
