#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_draw.h"
#include "foundation/bezier.h"
#include "foundation/cubicspline.h"
#include "foundation/genshape.h"
#include "foundation/polyline.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>
#include <memory>

// Drawing of Bezier curves, of splines, and of shapes that a client defines.

namespace
{
constexpr long curveBytes = 96;
constexpr long mostPoints = 5000;

bool isFinite(gxBezierCurve const &curve)
{
  return std::ranges::all_of(curve.controlPoints(), [](gxVector<2> const &p) { return p.isFinite(); }) &&
         std::ranges::all_of(curve.weights(), [](double w) { return std::isfinite(w); });
}

/// The curve as a chain, within a pel at first; where that takes too many points, within twice as much, and so on.
/// Empty if no tolerance helps.
gxShape::gxSampleResult flatten(gxBezierCurve const &curve, double scale)
{
  gxShape::gxSampleResult result;
  result.positionsReserve(500);
  for (double tolerance = scale != 0.0 ? 1.0 / scale : 0.0;; tolerance *= 2.0) {
    result.reset();
    gxShape::gxSampleParams params(0.0, 0.0, 2, false, true);
    params.spacing(0.0);
    params.tolerance(tolerance);
    params.maxPoints(mostPoints);
    params.duplicateCorners(false);
    try {
      curve.sample(params, result);
      return result;
    } catch (gxShapesError::SampleOverflow const &) {
      if (!(tolerance > 0.0) || !std::isfinite(tolerance))
        return result;
    }
  }
}
}  // namespace

void gxUITablet::draw(gxBezierCurve const &curve, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::bezierCurve, curveBytes,
      [&](gxUIScope &scope) {
        double const scale = scaledMap_.matrix().scale();
        if (!isFinite(curve) || !std::isfinite(scale))
          return;
        gxShape::gxSampleResult const chain = flatten(curve, scale);
        gxFlagPush const unrecorded(recordOn_, false);
        scope.draw(gxPolyline(chain.positions(), false).map(scaledMap_), props);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, curve); });
}

void gxUITablet::draw(gxCubicSpline const &spline, gxGraphicProps const &props, Layers layer)
{
  long const n = spline.numBezierCurves();
  drawShape(
      layer, props, gx_SketchCode::cubicSpline, 4 + curveBytes * n,
      [&](gxUIScope &) {
        // Recording is left on: each curve is recorded too, and a replay paints the spline twice. It is to stay so.
        for (long i = 0; i < n; ++i)
          draw(spline.bezierCurve(i), props, layer);
      },
      [&](gx_StreamWriter &payload) {
        payload.word(n);
        for (long i = 0; i < n; ++i)
          gf_writeFields(payload, spline.bezierCurve(i));
      });
}

void gxUITablet::draw(gxGenShape const &shape, gxColor const &color, Layers layer)
{
  if (okToDraw(layer)) {
    std::unique_ptr<gxGenShape> const mapped(shape.map(scaledMap_));
    activeScope_[layer]->draw(*mapped, color);
  }
  if (!recordOn_)
    return;
  long size = 0;
  std::unique_ptr<unsigned char[]> const bytes(shape.save(size));
  gxGenShape::tagShapeID const id = shape.shapeID();
  gxGraphicProps const defaults;
  // The head keeps the default colour, and so a replay draws in that; the caller's is in the payload.
  gx_StreamWriter payload = sketch_.record(gx_SketchCode::genShape, layer, defaults, defaults.penColor(), 26 + size);
  payload.bytes(&color, sizeof color).word(static_cast<long>(id.data1));
  payload.byte(static_cast<unsigned char>(id.data2)).byte(static_cast<unsigned char>(id.data2 >> 8));
  payload.byte(static_cast<unsigned char>(id.data3)).byte(static_cast<unsigned char>(id.data3 >> 8));
  payload.bytes(id.data4, sizeof id.data4).word(size).bytes(bytes.get(), static_cast<std::size_t>(size));
}
