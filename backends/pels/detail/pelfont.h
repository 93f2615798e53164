#pragma once

#include "backends/pels/detail/pelcanvas.h"
#include "foundation/export.h"
#include "foundation/pair.h"

#include <string_view>
#include <vector>

/// A small bitmap font: the printable characters of ASCII, 5 pels wide and 9 high, two of them below the base line, in
/// cells of 6 x 10. Every other character shows as a box. Larger sizes are whole multiples.
///
/// A text is split into lines at '\n'. Its bytes are taken as UTF-8, so that a character of several bytes is one box.
/// The rectangle of a text has a margin of one (enlarged) pel on all sides.
class GX_API gx_PelFont
{
 public:
  /// @param fontId  the size from 1 to 8; any other number, as the default id -1, means size 1
  explicit gx_PelFont(long fontId) : scale_(fontId >= 1 && fontId <= 8 ? static_cast<std::int32_t>(fontId) : 1) {}

  /// Width and height of a text; (0, 0) for an empty one.
  gxPair<long> size(std::string_view text) const;
  /// Draws a text into the rectangle of size() at (@p x, @p y).
  void draw(gx_PelCanvas &canvas, std::int64_t x, std::int64_t y, std::string_view text) const;

 private:
  void drawGlyph(gx_PelCanvas &canvas, std::int64_t x, std::int64_t y, unsigned char character) const;

  std::int32_t scale_;
};
