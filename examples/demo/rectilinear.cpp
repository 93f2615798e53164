#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"
#include "examples/demo/pages.h"
#include "examples/demo/sheet.h"

#include <cstdio>

// An outline that was drawn by hand, nearly rectilinear, and what snapping makes of it.

namespace
{
using Private = gxSMDGDPolyPrivate;

gxSMDGDPolyVertex corner(double x, double y, double radius = 0.0, double span = 0.0)
{
  return {{x, y}, radius, gxDegree(span), 0.5, 0.5, -1, gxDimTol()};
}

/// A connector with a key, as a hand draws it, turned by 12 degrees.
gxSMDGDPoly drawn()
{
  gxSMDGDPoly poly("connector");
  poly << corner(0, 0.3) << corner(10.3, -0.2) << corner(9.9, 2.8) << corner(14.2, 3.1, 0, -14) << corner(14.1, -0.1)
       << corner(24.3, 0.2) << corner(23.8, 8.3, 1.5) << corner(0.4, 7.9, 1.5);
  poly.close();
  return gx2Rigid(gxDegree(12), gxVector<2>()) * poly;
}

void show(Sheet &sheet, gxSMDGDPoly const &poly, gxColor const &color, gxGraphicProps::gePenStyle style, long width)
{
  gxGraphicProps props(color, width, style, false);
  props.arrowHead(false);
  sheet.tablet.draw(Private::wireframe(poly), props, gxUITablet::overlay);
}

void tell(Sheet &sheet, double y, std::string const &words, gxColor const &color)
{
  sheet.panel({24, y}, 1.0);
  sheet.text(words, {0, 0}, color, gxUIFormat::topLeft);
}
}  // namespace

void rectilinearChapter(Pages &pages)
{
  Sheet sheet;
  gxSMDGDPoly const before = drawn();
  gxSMDGDPoly after = before;
  gxDegree const axes = Private::dominantAngle(before);
  Private::snapRectilinear(after);
  gxSMDGDPoly const level = gx2Rigid(-axes, gxVector<2>()) * after;
  pages.show(
      "rectilinear", "a nearly rectilinear outline, and what snapping makes of it", sheet.surface,
      &sheet.tablet.sketch(), [&] {
        char words[100];
        std::snprintf(words, sizeof words, "drawn by hand (red); its axes are turned by %.2f degrees", axes.value());
        tell(sheet, 16, words, gxColor::whiteColor());
        sheet.panel({60, 50}, 18.0);
        show(sheet, before, gxColor::redColor(), gxGraphicProps::penDash, 1);
        show(sheet, after, gxColor::greenColor(), gxGraphicProps::penSolid, 1);
        tell(sheet, 285, "snapped (green): right angles, the arc a line, the fillets kept", gxColor::greenColor());
        sheet.panel({90, 330}, 14.0);
        show(sheet, level, gxColor::greenColor(), gxGraphicProps::penSolid, 2);
        tell(sheet, 460, "turned back to the axes of the picture", gxColor::whiteColor());
      });
}
