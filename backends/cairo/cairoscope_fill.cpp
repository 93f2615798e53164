#include "backends/cairo/cairoscope.h"
#include "backends/cairo/detail/cairopainter.h"

#include <utility>
#include <vector>

namespace
{

/// Marks the pels that hang together with a seed over common sides: they become 1 in @p marks, and 0 elsewhere.
/// @param value of the boundary, or of the area
gxUIRect flood(gx_CairoImage const &pels, gx_CairoImage const &marks, gxPair<long> const &size,
               gxPair<long> const &seed, std::uint32_t value, bool toBoundary, std::uint32_t mark)
{
  gxUIRect const whole(gxPair<long>(), size);
  gxUIRect touched;
  std::vector<gxPair<long>> open{seed};
  auto const isOpen = [&](long x, long y) {
    return whole.within(gxPair<long>(x, y)) && !marks.row(y)[x] && (pels.row(y)[x] == value) != toBoundary;
  };
  while (!open.empty()) {
    gxPair<long> const at = open.back();
    open.pop_back();
    long const y = at.y();
    if (!isOpen(at.x(), y))
      continue;
    long left = at.x(), right = at.x() + 1;
    while (isOpen(left - 1, y))
      --left;
    while (isOpen(right, y))
      ++right;
    for (long x = left; x < right; ++x)
      marks.row(y)[x] = mark;
    touched |= gxUIRect(left, y, right - left, 1);
    for (long const row : {y - 1, y + 1})
      for (long x = left; x < right; ++x)
        if (isOpen(x, row) && (x == left || !isOpen(x - 1, row)))
          open.emplace_back(x, row);
  }
  return touched;
}

}  // namespace

void gxCairoScope::fill(gxPair<long> const &seed, gxColor const &fillColor, gxColor const &boundary, bool toBoundary)
{
  Painter painter(*this);
  gxUIRect const shows = painter.shows();
  gxPair<long> const at = seed - org();
  if (!shows.within(at))
    return painter.report(clientChangeEnable() ? gxUIRect(at, gxPair<long>(1, 1)) : gxUIRect(), false);
  auto const valueOf = [&](gxColor const &color) -> std::uint32_t {
    gxRGB const rgb = painter.rgbOf(color);
    return painter.isPass(color) ? 0u : 0xFF000000u | static_cast<std::uint32_t>(rgb.rgb());
  };
  gx_CairoImage const pels = painter.pels(), marks(shows.width(), shows.height());
  marks.flush();
  gxPair<long> const first = at - shows.ul();
  std::uint32_t const value = toBoundary ? valueOf(boundary) : pels.row(first.y())[first.x()];
  gxUIRect const touched = flood(pels, marks, shows.sz(), first, value, toBoundary, 0xFFFFFFFFu);
  if (!touched.isNull())
    painter.mask(marks, shows, fillColor);
  painter.report(touched + shows.ul(), false);
}
