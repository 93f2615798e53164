#pragma once

#include "backends/pels/pelsurface.h"
#include "dispc/uitablet.h"
#include "foundation/lineseg.h"

#include <string>

/// Draws on a surface of 640 x 480, in panels with scales of their own.
class Sheet
{
 public:
  Sheet()
  {
    tablet.visible(true);
    tablet.set(gxColor(24, 24, 32), gxUITablet::image);
    tablet.recordOn() = true;
  }
  void panel(gxVector<2> const &origin, double scale)
  {
    tablet.baseMap(gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), origin));
  }
  void line(gxVector<2> const &a, gxVector<2> const &b, gxGraphicProps const &pen)
  {
    tablet.draw(gxLineSeg(a, b), pen, gxUITablet::overlay);
  }
  void text(std::string const &words, gxVector<2> const &at, gxColor const &color, gxUIFormat::Alignment alignment)
  {
    tablet.draw(words, at, color, gxColor::passColor(), gxUIFormat(alignment), gxUITablet::overlay);
  }

  gxPelSurface surface{640, 480};
  gxUITablet tablet{&surface.imageScope(), &surface.overlayScope()};
};
