#include "backends/cairo/cairoscope.h"
#include "backends/cairo/detail/cairopainter.h"

#include <algorithm>
#include <cmath>

namespace
{

double sizeOf(gxUIFormat const &format)
{
  constexpr double unit = 12.0;
  long const id = format.fontId();
  return unit * static_cast<double>(id >= 1 && id <= 8 ? id : 1);
}

/// Length of the UTF-8 character that a text begins with, or 0 if it begins with none that can be shown.
std::size_t characterLength(std::string_view text)
{
  auto const at = [&](std::size_t i) { return static_cast<unsigned char>(i < text.size() ? text[i] : 0); };
  unsigned char const first = at(0), second = at(1);
  if (first < 0x80)
    return first >= 0x20 && first != 0x7F;
  auto const follows = [&](std::size_t i) { return (at(i) & 0xC0) == 0x80; };
  if (first >= 0xC2 && first < 0xE0)
    return follows(1) ? 2 : 0;
  if (first >= 0xE0 && first < 0xF0) {
    bool const isTooLong = first == 0xE0 && second < 0xA0, isSurrogate = first == 0xED && second >= 0xA0;
    return follows(1) && follows(2) && !isTooLong && !isSurrogate ? 3 : 0;
  }
  if (first >= 0xF0 && first < 0xF5) {
    bool const isTooLong = first == 0xF0 && second < 0x90, isTooLarge = first == 0xF4 && second >= 0x90;
    return follows(1) && follows(2) && follows(3) && !isTooLong && !isTooLarge ? 4 : 0;
  }
  return 0;
}

/// The lines of a text as cairo takes them: it refuses texts that are not UTF-8.
std::vector<std::string> linesOf(std::string const &text)
{
  std::vector<std::string> lines(1);
  for (std::string_view rest = text; !rest.empty();) {
    std::size_t const length = characterLength(rest);
    if (rest.front() == '\n')
      lines.emplace_back();
    else if (length)
      lines.back() += rest.substr(0, length);
    else
      lines.back() += "\xEF\xBF\xBD";  // U+FFFD
    rest.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return lines;
}

/// Room for a text, with a margin of one pel at both sides. It is measured on a surface of pels for every kind of
/// surface, so that a drawing takes the same room on all of them.
gxPair<long> roomFor(std::vector<std::string> const &lines, double size)
{
  static gx_CairoImage const ground(1, 1);
  gx_CairoContext const context(cairo_create(ground.surface()));
  cairo_select_font_face(context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(context.get(), size);
  cairo_font_extents_t font;
  cairo_font_extents(context.get(), &font);
  double width = 0.0;
  for (std::string const &line : lines) {
    cairo_text_extents_t extents;
    cairo_text_extents(context.get(), line.c_str(), &extents);
    width = std::max({width, extents.x_advance, extents.x_bearing + extents.width});
  }
  double const height = font.ascent + font.descent + font.height * static_cast<double>(lines.size() - 1);
  constexpr double most = 0x1p30;
  return gxPair<long>(gxPair<double>(std::min(std::ceil(width) + 2.0, most), std::min(std::ceil(height), most)));
}

}  // namespace

void gxCairoScope::draw(std::string const &text, gxPoint const &at, gxColor const &foreground,
                        gxColor const &background, gxUIFormat const &format)
{
  gxUIRect device;
  gxUIRect const rect = textRect(text, at, format, device) - org();
  if (rect.isNull())
    return Painter(*this).report(rect, false);
  Painter(*this).text(linesOf(text), sizeOf(format), rect, foreground, background);
}

gxUIRect gxCairoScope::textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect)
{
  bool const isPlaced = std::abs(at.x()) < 0x1p30 && std::abs(at.y()) < 0x1p30 && !text.empty();
  gxPair<long> const corner = gxPair<long>(xCoord(at), yCoord(at)) + org();
  rect = isPlaced ? format.alignRect(gxUIRect(corner, roomFor(linesOf(text), sizeOf(format)))) : gxUIRect();
  return rect;
}
