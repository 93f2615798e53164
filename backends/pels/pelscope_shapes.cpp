#include "backends/pels/detail/pelfill.h"
#include "backends/pels/detail/pelpainter.h"
#include "backends/pels/detail/pelstroke.h"
#include "backends/pels/pelscope.h"
#include "dispc/dispprop.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"

#include <array>

void gxPelScope::draw(gxPoint const &point, gxGraphicProps const &props)
{
  Painter painter(*this);
  painter.dot(painter.pelOf(point), props);
}

void gxPelScope::draw(gxLineSeg const &segment, gxGraphicProps const &props)
{
  Painter painter(*this);
  painter.lines(std::array{painter.pelOf(segment.start()), painter.pelOf(segment.end())}, false, props);
}

void gxPelScope::drawTo(gxPoint const &to, gxGraphicProps const &props)
{
  Painter painter(*this);
  painter.lines(std::array{painter.pelOf(drawPoint()), painter.pelOf(to)}, false, props);
  drawStart(to);
}

void gxPelScope::drawToRelPels(long dx, long dy, gxGraphicProps const &props)
{
  Painter painter(*this);
  gxVector<2> const pen = painter.pelOf(drawPoint());
  painter.lines(std::array{pen, pen + gxVector<2>(gxPair<long>(dx, dy))}, false, props);
  moveToRel(dx, dy);
}

void gxPelScope::draw(gxPolyline const &polyline, gxGraphicProps const &props)
{
  Painter painter(*this);
  painter.lines(painter.pelsOf(polyline.vertices()), polyline.isClosed(), props);
}

void gxPelScope::draw(gxPolygon const &polygon, gxGraphicProps const &props)
{
  Painter painter(*this);
  if (!props.fill())
    return painter.lines(painter.pelsOf(polygon.vertices()), true, props);
  painter.area(painter.placesOf(polygon.vertices()),
               polygon.fillMode() == gxPolygon::winding ? gx_PelFillRule::winding : gx_PelFillRule::evenOdd,
               props.penColor());
}

void gxPelScope::draw(gxEllipse const &ellipse, gxGraphicProps const &props)
{
  Painter(*this).ellipse(ellipse.piece(gxRadian(0.0), gxRadian(gf_turnRadians)), props);
}

void gxPelScope::draw(gxEllipse2 const &ellipse, gxGraphicProps const &props)
{
  Painter(*this).ellipse(ellipse.piece(), props);
}

void gxPelScope::draw(gxEllipseArc const &arc, gxGraphicProps const &props)
{
  Painter(*this).arc(arc.piece(), props);
}

void gxPelScope::draw(gxEllipseArc2 const &arc, gxGraphicProps const &props)
{
  Painter(*this).arc(arc.piece(), props);
}

void gxPelScope::draw(gxGenRect const &rect, gxGraphicProps const &props)
{
  gx_Outline outline;
  rect.appendOutline(outline);
  Painter painter(*this);
  for (gx_Contour const &contour : outline.contours) {
    if (props.fill())
      painter.area(painter.placesOf(gf_contourPoints(contour.pieces, {})), gx_PelFillRule::winding, props.penColor());
    else
      painter.contour(contour.pieces, gxGenRect::gxGenRectData(rect).corner(0), props);
  }
}

void gxPelScope::set(gxUIRect const &rect, gxColor const &color)
{
  Painter(*this).rectangle(rect - org(), color);
}

void gxPelScope::set(gxColor const &color)
{
  Painter(*this).rectangle(gxUIRect(gxPair<long>(), size_), color);
}
