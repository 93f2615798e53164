#pragma once

#include <cstdint>

/// A color in the records of the flat drawing list: one 32-bit word. With bit 7 clear it is the code of a stock color,
/// the enumerators below. With bit 7 set, bits 31 to 24 are red, 23 to 16 green, 15 to 8 blue, and the other low bits
/// mean nothing. Any word may be cast to it.
enum gxr_color : std::uint32_t {
  gxr_black,
  gxr_dkGrey,
  gxr_grey,
  gxr_ltGrey,
  gxr_white,
  gxr_red,
  gxr_dkRed,
  gxr_orange,
  gxr_yellow,
  gxr_green,
  gxr_dkGreen,
  gxr_cyan,
  gxr_blue,
  gxr_purple,
  gxr_magenta,
  gxr_pass
};
