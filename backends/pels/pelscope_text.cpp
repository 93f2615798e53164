#include "backends/pels/detail/pelfont.h"
#include "backends/pels/detail/pelpainter.h"
#include "backends/pels/pelscope.h"

#include <cmath>

void gxPelScope::draw(std::string const &text, gxPoint const &at, gxColor const &foreground, gxColor const &background,
                      gxUIFormat const &format)
{
  gxUIRect device;
  gxUIRect const rect = textRect(text, at, format, device) - org();
  Painter painter(*this);
  if (rect.isNull())
    return painter.rectangle(rect, foreground);
  bool const letsThrough = background.isIndexColor() && background.index() == gxColor::passColor().index();
  if (!letsThrough)
    painter.rectangle(rect, background);
  painter.paint(
      foreground, false,
      [&](gx_PelCanvas &canvas) { gx_PelFont(format.fontId()).draw(canvas, rect.left(), rect.top(), text); },
      [&] { return gf_pelBox(rect); });
}

gxUIRect gxPelScope::textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect)
{
  gxVector<2> const pel = Painter(*this).pelOf(at) + gxVector<2>(org());
  bool const isPlaced = std::abs(pel.x()) < 0x1p30 && std::abs(pel.y()) < 0x1p30;
  gxPair<long> const origin{gxPair<double>(pel)};
  rect = isPlaced ? format.alignRect(gxUIRect(origin, gx_PelFont(format.fontId()).size(text))) : gxUIRect();
  return rect;
}
