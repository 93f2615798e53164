#include "dispc/uitablet.h"
#include "foundation/affinerect.h"
#include "foundation/circle.h"
#include "foundation/cross.h"
#include "foundation/ellipse.h"
#include "foundation/ellipsearc.h"
#include "foundation/genrect.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"

// Shapes told by numbers: each is made and drawn in a colour.

void gxUITablet::drawLineSeg(gxPair<double> const &a, gxPair<double> const &b, gxColor const &color, Layers layer)
{
  draw(gxLineSeg(a, b), color, layer);
}

void gxUITablet::drawLine(gxPair<double> const &p, gxRadian angle, gxColor const &color, Layers layer)
{
  draw(gxLine(angle, p), color, layer);
}

void gxUITablet::drawCircle(gxPair<double> const &c, double r, gxColor const &color, Layers layer, bool fill)
{
  draw(gxCircle(c, r), color, layer, fill);
}

void gxUITablet::drawEllipse(gxPair<double> const &c, gxPair<double> const &radii, gxRadian angle, gxColor const &color,
                             Layers layer, bool fill)
{
  draw(gxEllipse(c, radii, angle), color, layer, fill);
}

void gxUITablet::drawEllipseArc(gxPair<double> const &c, gxPair<double> const &radii, gxRadian angle, gxRadian start,
                                gxRadian end, gxColor const &color, Layers layer)
{
  draw(gxEllipseArc(gxEllipse(c, radii, angle), start, end), color, layer);
}

void gxUITablet::drawPolygon(std::vector<gxVector<2>> const &vertices, gxPolygon::PolyFillMode mode,
                             gxColor const &color, Layers layer)
{
  draw(gxPolygon(vertices, mode), color, layer);
}

void gxUITablet::drawGenRect(gxPair<double> const &c, gxPair<double> const &size, gxRadian const &angle,
                             gxPair<double> const &rounding, gxColor const &color, Layers layer)
{
  draw(gxGenRect(c, size, angle, rounding), color, layer, false);
}

void gxUITablet::drawAffineRect(gxPair<double> const &c, double xLength, double yLength, gxRadian const &xRotation,
                                gxRadian const &yRotation, gxColor const &color, Layers layer)
{
  draw(gxAffineRectangle(c, xLength, yLength, xRotation, yRotation), color, layer);
}

void gxUITablet::drawRect(gxPair<double> const &a, gxPair<double> const &b, gxColor const &color, Layers layer,
                          bool fill)
{
  draw(gxRect(a, b - a), color, layer, fill);
}

void gxUITablet::drawCross(gxPair<double> const &c, gxRadian const &angle, gxColor const &color, Layers layer)
{
  constexpr long arm = 7;
  draw(gxCross(c, angle, arm), color, layer);
}

void gxUITablet::drawPixel(gxPair<double> const &p, gxColor const &color, Layers layer)
{
  draw(gxPoint(gxVector<2>(p)), color, layer);
}
