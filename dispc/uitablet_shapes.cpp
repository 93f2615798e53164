#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_draw.h"
#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/point.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"

#include <array>
#include <cmath>
#include <utility>
#include <vector>

// Drawing of single shapes. Each operation says what the scope gets and what the record holds; the pattern around them
// is drawShape().

void gxUITablet::draw(gxPoint const &point, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::point, 16,
      [&](gxUIScope &scope) {
        gxPoint tmp;
        scope.draw(mapPoint(point, layer, tmp), props);
      },
      [&](gx_StreamWriter &payload) { payload.vector(point); });
}

void gxUITablet::draw(gxPoint const &point, gxColor const &color, Layers layer)
{
  draw(point, gf_penProps(color), layer);
}

void gxUITablet::draw(gx2Point const &point, gxGraphicProps const &props, Layers layer)
{
  draw(gxPoint(point.point()), props, layer);
}

void gxUITablet::draw(gxLineSeg const &segment, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::lineSeg, 32, [&](gxUIScope &scope) { scope.draw(segment.map(scaledMap_), props); },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, segment); });
}

void gxUITablet::draw(gxLineSeg const &segment, gxColor const &color, Layers layer)
{
  draw(segment, gf_penProps(color), layer);
}

namespace
{

/// The parameters at which a line of position @p p and direction @p d, in one axis, enters and leaves the pels from
/// @p start on: at the centres of the first pel and of the one behind the last.
std::pair<double, double> crossings(double p, double d, long start, long length)
{
  double const first = static_cast<double>(start);
  return {(first - p + 0.5) / d, (first + static_cast<double>(length) - p + 0.5) / d};
}

std::pair<double, double> sorted(std::pair<double, double> t)
{
  if (t.first > t.second)
    std::swap(t.first, t.second);
  return t;
}

/// The stretch of a line that a rectangle of pels shows. A line that misses it gives a stretch that runs backwards,
/// and one parallel to an axis is cut by that axis alone: the scope clips what is drawn.
std::pair<double, double> stretchWithin(gxUIRect const &r, gxVector<2> const &p, gxVector<2> const &d)
{
  constexpr double parallel = 1e-12;  // a component of the mapped direction that counts as none
  bool const alongX = std::abs(d.x()) > parallel;
  bool const alongY = std::abs(d.y()) > parallel;
  if (alongX && alongY) {
    auto const [t0, t1] = sorted(crossings(p.x(), d.x(), r.left(), r.width()));
    auto const [u0, u1] = sorted(crossings(p.y(), d.y(), r.top(), r.height()));
    return {t0 < u0 ? u0 : t0, t1 > u1 ? u1 : t1};
  }
  if (alongX)
    return crossings(p.x(), d.x(), r.left(), r.width());
  return crossings(p.y(), d.y(), r.top(), r.height());
}

}  // namespace

void gxUITablet::draw(gxLine const &line, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::line, 32,
      [&](gxUIScope &scope) {
        gxLine const mapped = line.map(scaledMap_);
        auto const [from, to] = stretchWithin(activeScope(layer), mapped.pos(), mapped.dir());
        scope.drawStart(gxPoint(mapped.pos() + mapped.dir() * from));
        scope.drawTo(gxPoint(mapped.pos() + mapped.dir() * to), props);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, line); });
}

void gxUITablet::draw(gxLine const &line, gxColor const &color, Layers layer)
{
  draw(line, gf_penProps(color), layer);
}

void gxUITablet::draw(gxRect const &rect, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::rect, 32,
      [&](gxUIScope &scope) {
        gxVector<2> const o = rect.origin();
        gxVector<2> const s = rect.size();
        std::array<gxPoint, 4> const corners = {scaledMap_ * o, scaledMap_ * (o + gxVector<2>(s.x(), 0.0)),
                                                scaledMap_ * (o + s), scaledMap_ * (o + gxVector<2>(0.0, s.y()))};
        if (props.fill()) {
          scope.draw(gxPolygon({corners.begin(), corners.end()}, gxPolygon::alternate), props);
          return;
        }
        gx_ScreenLocked const locked(scope);
        scope.drawStart(corners[0]);
        for (std::size_t const i : {1u, 2u, 3u, 0u})
          scope.drawTo(corners[i], props);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, rect); });
}

void gxUITablet::draw(gxRect const &rect, gxColor const &color, Layers layer, bool fill)
{
  draw(rect, gf_penProps(color, fill), layer);
}

void gxUITablet::draw(gxCircle const &circle, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, props.fill() ? gx_SketchCode::circleFilled : gx_SketchCode::circle, 24,
      [&](gxUIScope &) {
        gxFlagPush const unrecorded(recordOn_, false);
        draw(gxEllipse(circle), props, layer);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, circle); });
}

void gxUITablet::draw(gxCircle const &circle, gxColor const &color, Layers layer, bool fill)
{
  draw(circle, gf_penProps(color, fill), layer);
}

void gxUITablet::draw(gxEllipse const &ellipse, gxGraphicProps const &props, Layers layer)
{
  drawShape(
      layer, props, props.fill() ? gx_SketchCode::ellipseFilled : gx_SketchCode::ellipse, gf_ellipseGeomBlock,
      [&](gxUIScope &scope) { scope.draw(ellipse.map(scaledMap_), props); },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, ellipse); });
}

void gxUITablet::draw(gxEllipse const &ellipse, gxColor const &color, Layers layer, bool fill)
{
  draw(ellipse, gf_penProps(color, fill), layer);
}

void gxUITablet::draw(gxPolygon const &polygon, gxGraphicProps const &props, Layers layer)
{
  long const n = polygon.size();
  drawShape(
      layer, props, gx_SketchCode::polygon, 8 + 16 * n,
      [&](gxUIScope &scope) { scope.draw(polygon.map(scaledMap_), props); },
      [&](gx_StreamWriter &payload) {
        payload.word(polygon.fillMode()).word(n);
        for (gxVector<2> const &v : polygon.vertices())
          payload.vector(v);
      });
}

void gxUITablet::draw(gxPolygon const &polygon, gxColor const &color, Layers layer)
{
  draw(polygon, gf_penProps(color), layer);
}

void gxUITablet::draw(gxPolyline const &polyline, gxGraphicProps const &props, Layers layer)
{
  long const n = polyline.numVertices();
  drawShape(
      layer, props, gx_SketchCode::polyline, 5 + 16 * n,
      [&](gxUIScope &scope) { scope.draw(polyline.map(scaledMap_), props); },
      [&](gx_StreamWriter &payload) {
        payload.word(n);
        for (gxVector<2> const &v : polyline.vertices())
          payload.vector(v);
        payload.flag(polyline.isClosed());
      });
}
