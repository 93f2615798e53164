#include "backends/cairo/cairoscope.h"
#include "backends/cairo/detail/cairopainter.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"

#include <array>

void gxCairoScope::draw(gxPoint const &point, gxGraphicProps const &props)
{
  Painter painter(*this);
  painter.dot(painter.pelCenterOf(point), props);
}

void gxCairoScope::draw(gxLineSeg const &segment, gxGraphicProps const &props)
{
  Painter painter(*this);
  std::array const points{segment.start(), segment.end()};
  gxGraphicProps line = props;
  line.fill(false);
  painter.shape(gf_cairoLines(points, false), line);
}

void gxCairoScope::drawTo(gxPoint const &to, gxGraphicProps const &props)
{
  Painter painter(*this);
  std::array const points{painter.pelCenterOf(drawPoint()), painter.pelCenterOf(to)};
  painter.stroke(gf_cairoLines(points, false), props);
  drawStart(to);
}

void gxCairoScope::drawToRelPels(long dx, long dy, gxGraphicProps const &props)
{
  Painter painter(*this);
  gxVector<2> const pen = painter.pelCenterOf(drawPoint());
  std::array const points{pen, pen + gxVector<2>(gxPair<long>(dx, dy))};
  painter.stroke(gf_cairoLines(points, false), props);
  moveToRel(dx, dy);
}

void gxCairoScope::draw(gxPolyline const &polyline, gxGraphicProps const &props)
{
  gxGraphicProps line = props;
  line.fill(false);
  Painter(*this).shape(gf_cairoLines(polyline.vertices(), polyline.isClosed()), line);
}

void gxCairoScope::draw(gxPolygon const &polygon, gxGraphicProps const &props)
{
  Painter painter(*this);
  std::vector<gx_Contour> contours = gf_cairoLines(polygon.vertices(), true);
  if (!props.fill() || polygon.fillMode() == gxPolygon::winding)
    return painter.shape(contours, props);
  for (gx_Piece &piece : contours.front().pieces)
    piece = piece.mapped(painter.areaXform());
  painter.fill(contours, CAIRO_FILL_RULE_EVEN_ODD, props.penColor());
}

void gxCairoScope::draw(gxEllipse const &ellipse, gxGraphicProps const &props)
{
  Painter(*this).shape({{{ellipse.piece(gxRadian(0.0), gxRadian(gf_turnRadians))}, true}}, props);
}

void gxCairoScope::draw(gxEllipse2 const &ellipse, gxGraphicProps const &props)
{
  Painter(*this).shape({{{ellipse.piece()}, true}}, props);
}

void gxCairoScope::draw(gxEllipseArc const &arc, gxGraphicProps const &props)
{
  gxGraphicProps line = props;
  line.fill(false);
  Painter(*this).shape({{{arc.piece()}, false}}, line);
}

void gxCairoScope::draw(gxEllipseArc2 const &arc, gxGraphicProps const &props)
{
  gxGraphicProps line = props;
  line.fill(false);
  Painter(*this).shape({{{arc.piece()}, false}}, line);
}

void gxCairoScope::draw(gxGenRect const &rect, gxGraphicProps const &props)
{
  gx_Outline outline;
  rect.appendOutline(outline);
  Painter(*this).shape(outline.contours, props);
}

void gxCairoScope::set(gxUIRect const &rect, gxColor const &color)
{
  Painter(*this).rectangle(rect - org(), color);
}

void gxCairoScope::set(gxColor const &color)
{
  Painter(*this).rectangle(gxUIRect(gxPair<long>(), size_), color);
}
