#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_draw.h"
#include "foundation/annulus.h"
#include "foundation/circle.h"
#include "foundation/coordaxes.h"
#include "foundation/cross.h"
#include "foundation/genannulus.h"
#include "foundation/lineseg.h"
#include "foundation/linesegset.h"
#include "foundation/numbers.h"
#include "foundation/pointset.h"

#include <cmath>

// Drawing of shapes that are made of others.

void gxUITablet::draw(gxAnnulus const &annulus, gxGraphicProps const &props, Layers layer)
{
  draw(annulus.outerCircle(), props, layer);
  draw(annulus.innerCircle(), props, layer);
}

void gxUITablet::draw(gxAnnulus const &annulus, gxColor const &color, Layers layer)
{
  draw(gxGenAnnulus(annulus), color, layer);
}

void gxUITablet::draw(gxGenAnnulus const &annulus, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::genAnnulus, gf_genAnnulusBlock,
      [&](gxUIScope &scope) {
        gx_ScreenLocked const locked(scope);
        gxFlagPush const unrecorded(recordOn_, false);
        draw(annulus.innerRect(), props, layer);
        draw(annulus.outerRect(), props, layer);
      },
      [&](gx_StreamWriter &payload) { gf_writeBlock(payload, annulus); });
}

void gxUITablet::draw(gxGenAnnulus const &annulus, gxColor const &color, Layers layer)
{
  draw(annulus, gf_penProps(color), layer);
}

void gxUITablet::draw(gxCross const &cross, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::cross, 32,
      [&](gxUIScope &scope) {
        // The arm is a length in pels, whatever the scale of the map.
        gxCross const mapped = cross.map(scaledMap_);
        double const angle = mapped.angle().norm().value();
        auto const arm = static_cast<double>(cross.armLength());
        long const dx = gf_truncate(std::cos(angle) * arm);
        long const dy = gf_truncate(std::sin(angle) * arm);
        gxVector<2> const c = mapped.center();
        scope.drawStart(gxPoint(c + gxVector<2>(gxPair<long>(dx, dy))));
        scope.drawToRelPels(-2 * dx, -2 * dy, props);
        scope.drawStart(gxPoint(c + gxVector<2>(gxPair<long>(-dy, dx))));
        scope.drawToRelPels(2 * dy, -2 * dx, props);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, cross); });
}

void gxUITablet::draw(gxCross const &cross, gxColor const &color, Layers layer)
{
  draw(cross, gf_penProps(color), layer);
}

void gxUITablet::draw(gxCoordAxes const &axes, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::coordAxes, 48,
      [&](gxUIScope &scope) {
        gx_ScreenLocked const locked(scope);
        gxFlagPush const unrecorded(recordOn_, false);
        draw(axes.xAxis(), props, layer);
        draw(axes.yAxis(), props, layer);
        if (axes.degen())
          return;
        float const arm = arrowArmLength(props);
        arrowHead(gxPoint(axes.xEnd()), axes.xEnd() - axes.origin(), arm, props, layer);
        arrowHead(gxPoint(axes.yEnd()), axes.yEnd() - axes.origin(), arm, props, layer);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, axes); });
}

void gxUITablet::draw(gxCoordAxes const &axes, gxColor const &color, Layers layer)
{
  draw(axes, gf_penProps(color), layer);
}

void gxUITablet::draw(gxPointSet const &points, gxGraphicProps const &props, Layers layer)
{
  // Two points or more show the circle through the second round the first, and its radius, decision or not: this is
  // what a point set looks like here.
  if (points.size() > 1) {
    draw(gxCircle(points[0], points[0].distance(points[1])), props, layer);
    draw(gxLineSeg(points[0], points[1]), props, layer);
  }
  if (okToDraw(layer)) {
    gxGraphicProps const onePel(props.penColor(), 1, gxGraphicProps::penSolid, false);
    for (gxVector<2> const &p : points.points()) {
      gxPoint tmp;
      activeScope_[layer]->draw(mapPoint(gxPoint(p), layer, tmp), onePel);
    }
  }
  if (recordOn_)
    for (gxVector<2> const &p : points.points())
      sketch_.record(gx_SketchCode::point, layer, props, props.penColor(), 16).vector(p);
}

void gxUITablet::draw(gxPointSet const &points, gxColor const &color, Layers layer)
{
  draw(points, gf_penProps(color), layer);
}

void gxUITablet::draw(gxLineSegSet const &set, gxGraphicProps const &props, Layers layer)
{
  if (okToDraw(layer))
    for (gxLineSeg const &s : set.segments())
      activeScope_[layer]->draw(s.map(scaledMap_), props);
  if (recordOn_)
    for (gxLineSeg const &s : set.segments())
      sketch_.record(gx_SketchCode::lineSeg, layer, props, props.penColor(), 32).vector(s.start()).vector(s.end());
}
