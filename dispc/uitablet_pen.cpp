#include "dispc/detail/uitablet_draw.h"
#include "dispc/detail/uitablet_layers.h"
#include "foundation/numbers.h"

// The pen: a position held by the scope of each layer, and lines drawn from it.

namespace
{

/// A whole-pel step of length @p length in a mapped direction, truncated.
gxPair<long> pelStep(gxVector<2> const &mapped, double length)
{
  gxVector<2> const step = mapped.unit() * length;
  return {gf_truncate(step.x()), gf_truncate(step.y())};
}

}  // namespace

void gxUITablet::drawStart(gxPoint const &p, Layers layer)
{
  drawRecorded(
      layer, {gx_SketchCode::drawStart, gxGraphicProps(), gxColor(0)}, 16,
      [&](gxUIScope &scope) {
        gxPoint tmp;
        scope.drawStart(mapPoint(p, layer, tmp));
      },
      [&](gx_StreamWriter &payload) { payload.vector(p); });
}

void gxUITablet::drawTo(gxPoint const &p, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::drawTo, 16,
      [&](gxUIScope &scope) {
        gxPoint tmp;
        scope.drawTo(mapPoint(p, layer, tmp), props);
      },
      [&](gx_StreamWriter &payload) { payload.vector(p); });
}

void gxUITablet::drawTo(gxPoint const &p, gxColor const &color, Layers layer)
{
  drawTo(p, gf_penProps(color), layer);
}

void gxUITablet::drawToRelPels(long dx, long dy, gxGraphicProps const &props, Layers layer)
{
  gxPair<long> const step(dx, dy);
  drawShape(
      layer, props, gx_SketchCode::drawToRelPels, 8,
      [&](gxUIScope &scope) { scope.drawToRelPels(step.x(), step.y(), props); },
      [&](gx_StreamWriter &payload) { payload.pair(step); });
}

void gxUITablet::drawToRelPels(long dx, long dy, gxColor const &color, Layers layer)
{
  drawToRelPels(dx, dy, gf_penProps(color), layer);
}

void gxUITablet::drawToRelPels(gxVector<2> const &dir, float len, gxGraphicProps const &props, Layers layer)
{
  gxPair<long> const step = pelStep(scaledMap_.mapVector(dir), len);
  drawToRelPels(step.x(), step.y(), props, layer);
}

void gxUITablet::drawToRelPels(gxVector<2> const &dir, float len, gxColor const &color, Layers layer)
{
  drawToRelPels(dir, len, gf_penProps(color), layer);
}

void gxUITablet::moveToRelPels(long dx, long dy, Layers layer)
{
  gxPair<long> const step(dx, dy);
  drawRecorded(
      layer, {gx_SketchCode::moveToRelPels, gxGraphicProps(), gxColor(0)}, 8,
      [&](gxUIScope &scope) { scope.moveToRel(step.x(), step.y()); },
      [&](gx_StreamWriter &payload) { payload.pair(step); });
}

void gxUITablet::moveToRelPels(gxVector<2> const &dir, float len, Layers layer)
{
  gxPair<long> const step = pelStep(scaledMap_.mapVector(dir), len);
  moveToRelPels(step.x(), step.y(), layer);
}

gxPoint gxUITablet::drawingPoint(Layers layer) const
{
  gf_needSingleLayer(layer);
  gxUIScope const *const scope = activeScope_[layer];
  return scope ? gxPoint(scaledMap_.inverse().mapPoint(scope->drawPoint())) : gxPoint();
}
