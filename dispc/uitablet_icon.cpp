#include "dispc/detail/uitablet_draw.h"
#include "foundation/numbers.h"
#include "foundation/pelbuf.h"
#include "foundation/rlebuf.h"

#include <cstring>
#include <string_view>
#include <vector>

// Icons: small bitmaps described by a text, which a client can also hit without any image.

namespace
{

/// The rows of a pattern: the first character is the delimiter that closes each row; the end of the text closes a row
/// that has at least one pel.
std::vector<std::string_view> rowsOf(char const *pattern)
{
  std::vector<std::string_view> rows;
  if (!pattern || !*pattern)
    return rows;
  char const delimiter = *pattern;
  std::string_view rest(pattern + 1);
  while (!rest.empty()) {
    std::size_t const end = std::min(rest.find(delimiter), rest.size());
    rows.push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return rows;
}

bool isDigit(char c)
{
  return c >= '0' && c <= '9';
}

bool isTransparent(char c)
{
  return c == '+' || c == '.' || c == ' ';
}

constexpr char const *pointIconData =
    "/.....+0+...../.....+0+...../.....+0+...../...+00000+.../...0++0++0.../+++0++0++0+++/0000000000000/"
    "+++0++0++0+++/...0++0++0.../...+00000+.../.....+0+...../.....+0+...../.....+0+...../";
constexpr long pointIconSize = 13;
constexpr long pointIconCenter = 6;

}  // namespace

gxRLEBuffer gxUITablet::makeIcon(char const *pattern, std::vector<unsigned char> const &colorMap)
{
  std::vector<std::string_view> const rows = rowsOf(pattern);
  if (rows.empty())
    throw gxUIError::BadIconPattern();
  for (std::string_view const row : rows) {
    if (row.size() != rows.front().size())
      throw gxUIError::BadIconPattern();
    for (char const c : row)
      if (!isDigit(c) && !isTransparent(c))
        throw gxUIError::BadIconPattern();
  }
  unsigned char const pass = gxColor::pass.index();
  gxPelBuffer<unsigned char> pels(static_cast<long>(rows.front().size()), static_cast<long>(rows.size()), 32);
  for (std::size_t y = 0; y < rows.size(); ++y)
    for (std::size_t x = 0; x < rows[y].size(); ++x) {
      auto const digit = static_cast<std::size_t>(rows[y][x] - '0');
      unsigned char value = pass;
      if (isDigit(rows[y][x]))
        value = digit < colorMap.size() ? colorMap[digit] : static_cast<unsigned char>(digit);
      pels.put(static_cast<long>(x), static_cast<long>(y), value);
    }
  gxRLEBuffer icon;
  icon.encode(pels);
  return icon;
}

bool gxUITablet::iconTouched(char const *pattern, gxPair<long> const &pos, long width)
{
  if (!pattern || !*pattern)
    return false;
  width = gf_narrow(width);  // so that 64 bits hold every index
  std::string_view const text(pattern + 1);
  if (width == -1)
    width = static_cast<long>(std::min(text.find(*pattern), text.size())) + 1;
  if (pos.x() < 0 || pos.x() >= width - 1)
    return false;
  long const i = pos.y() * width + pos.x();
  if (i < 0 || i >= static_cast<long>(text.size()))
    return false;
  char const c = text[static_cast<std::size_t>(i)];
  return c != ' ' && c != '.';
}

bool gxUITablet::pointIconTouched(gxPair<long> const &pos)
{
  gxPair<long> const fromCorner = pos + gxPair<long>(pointIconCenter, pointIconCenter);
  return iconTouched(pointIconData, fromCorner, pointIconSize + 1);
}

gxRLEBuffer const &gxUITablet::pointIcon()
{
  static gxRLEBuffer const icon = makeIcon(pointIconData, {0});
  return icon;
}

void gxUITablet::drawPointIcon(gxPoint const &p, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::pointIcon, 16,
      [&](gxUIScope &scope) {
        constexpr double center = pointIconCenter;
        gxPoint tmp;
        gxPoint const topLeft(mapPoint(p, layer, tmp) - gxVector<2>(center, center));
        scope.draw(pointIcon(), topLeft, std::vector<gxColor>{props.penColor()}, true, gxColor::pass.index());
      },
      [&](gx_StreamWriter &payload) { payload.vector(p); });
}

void gxUITablet::drawPointIcon(gxPoint const &p, gxColor const &color, Layers layer)
{
  drawPointIcon(p, gf_penProps(color), layer);
}
