#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_draw.h"
#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/xformbase.h"

#include <vector>

// Drawing of ellipses as shapes, of elliptical arcs, and of rectangles that are turned, sheared or rounded.

void gxUITablet::draw(gxEllipseArc const &arc, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::ellipseArc, gf_ellipseArcBlock,
      [&](gxUIScope &scope) { scope.draw(arc.map(scaledMap_), props); },
      [&](gx_StreamWriter &payload) { gf_writeBlock(payload, arc); });
}

void gxUITablet::draw(gxEllipseArc const &arc, gxColor const &color, Layers layer)
{
  draw(arc, gf_penProps(color), layer);
}

void gxUITablet::draw(gxEllipse2 const &ellipse, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::ellipse2, 40,
      [&](gxUIScope &scope) { scope.draw(ellipse.map(gx2XformLinear(scaledMap_)), props); },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, ellipse); });
}

void gxUITablet::draw(gxEllipseArc2 const &arc, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::ellipseArc2, 65,
      [&](gxUIScope &scope) { scope.draw(arc.map(gx2XformLinear(scaledMap_)), props); },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, arc); });
}

namespace
{
bool isRound(gxGenRect const &r, double rounding)
{
  return r.round() == gxVector<2>(rounding, rounding);
}

/// The ellipse that a fully rounded rectangle is.
gxEllipse ellipseOf(gxGenRect const &r)
{
  return gxEllipse(gxCircle(gxVector<2>(), 1.0)).map(gxXform<2>(r.matrix(), r.center()));
}

void drawSharp(gxUIScope &scope, gxGenRect const &r, gxGraphicProps const &props)
{
  gxGenRect::gxGenRectData const data(r);
  auto const &corners = data.corners();
  if (props.fill()) {
    scope.draw(gxPolygon({corners.begin(), corners.end()}, gxPolygon::alternate), props);
    return;
  }
  scope.drawStart(gxPoint(corners[0]));
  for (std::size_t const i : {1u, 2u, 3u, 0u})
    scope.drawTo(gxPoint(corners[i]), props);
}
}  // namespace

void gxUITablet::draw(gxGenRect const &rect, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, props.fill() ? gx_SketchCode::genRectFilled : gx_SketchCode::genRect, gf_genRectBlock,
      [&](gxUIScope &scope) {
        gxGenRect const mapped = rect.map(scaledMap_);
        gx_ScreenLocked const locked(scope);
        if (isRound(mapped, 1.0))
          scope.draw(ellipseOf(mapped), props);
        else if (isRound(mapped, 0.0))
          drawSharp(scope, mapped, props);
        else
          scope.draw(mapped, props);
      },
      [&](gx_StreamWriter &payload) { gf_writeBlock(payload, rect); });
}

void gxUITablet::draw(gxGenRect const &rect, gxColor const &color, Layers layer, bool fill)
{
  draw(rect, gf_penProps(color, fill), layer);
}

void gxUITablet::draw(gxAffineRectangle const &rect, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::affineRectangle, gf_affineRectangleBlock,
      [&](gxUIScope &scope) {
        gxAffineRectangle const r = rect.map(scaledMap_);
        scope.draw(gxPolygon({r.cornerPo(), r.cornerPx(), r.cornerPopp(), r.cornerPy(), r.cornerPo()},
                             props.fill() ? gxPolygon::alternate : gxPolygon::noFill),
                   props);
      },
      [&](gx_StreamWriter &payload) { gf_writeBlock(payload, rect); });
}

void gxUITablet::draw(gxAffineRectangle const &rect, gxColor const &color, Layers layer)
{
  draw(rect, gf_penProps(color), layer);
}
