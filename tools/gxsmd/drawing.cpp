#include "tools/gxsmd/drawing.h"

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/polyline.h"
#include "foundation/rigid.h"

#include <algorithm>
#include <cmath>

namespace
{

using Graphic = gxFootprint::Graphic;
using Point = gxVector<2>;
using P = gxSMDGDPolyPrivate;

gxSMDGDPoly withoutFillets(gxSMDGDPoly const &poly)
{
  std::vector<gxSMDGDPolyVertex> vertices;
  for (int v = 0; v < poly.numVertices(); ++v) {
    vertices.push_back(poly.vertex(v, false));
    vertices.back().vertexRadius(0.0);
  }
  return P::outline(std::move(vertices), poly.isClosed());
}

/// Points along a curve about a centre, without the first one; the chords stay within 0.0004 of the radius.
void addTurn(std::vector<Point> &points, Point const &center, Point const &start, double turn)
{
  constexpr double chord = 0.05;
  auto const n = static_cast<int>(std::abs(turn) / chord) + 1;
  Point const d = start - center;
  for (int i = 1; i <= n; ++i) {
    double const a = turn * i / n, c = std::cos(a), s = std::sin(a);
    points.push_back(center + Point(d.x() * c - d.y() * s, d.x() * s + d.y() * c));
  }
}

/// An arc from the last of the points through a point to another one; lines if the three lie on one.
void addArc(std::vector<Point> &points, Point const &through, Point const &end)
{
  Point const start = points.back(), a = through - start, b = end - start;
  double const twice = 2.0 * a.cross(b), size = std::max(a.len(), b.len());
  if (std::abs(twice) <= 1e-9 * size * size) {
    points.insert(points.end(), {through, end});
    return;
  }
  double const aa = a * a, bb = b * b;
  Point const center = start + Point(b.y() * aa - a.y() * bb, a.x() * bb - b.x() * aa) * (1.0 / twice);
  auto const angle = [&](Point const &p) { return gxRadian((p - center).angle() - (start - center).angle()).norm(); };
  double const whole = angle(end).value();
  addTurn(points, center, start, angle(through).value() <= whole ? whole : whole - gf_turnRadians);
}

/// Where the pen goes.
std::vector<Point> pathOf(Graphic const &g)
{
  std::vector<Point> points = {g.points[0]};
  switch (g.kind) {
    case Graphic::arc:
      addArc(points, g.points[1], g.points[2]);
      break;
    case Graphic::circle:
      points = {g.points[1]};
      addTurn(points, g.points[0], g.points[1], gf_turnRadians);
      break;
    case Graphic::rectangle: {
      Point const a = g.points[0], b = g.points[1];
      points = {a, {b.x(), a.y()}, b, {a.x(), b.y()}, a};
      break;
    }
    default: {
      auto bulge = g.bulges.begin();
      for (std::size_t i = 1; i < g.points.size(); ++i) {
        if (bulge != g.bulges.end() && bulge->corner == i)
          addArc(points, bulge++->through, g.points[i]);
        else
          points.push_back(g.points[i]);
      }
      if (g.kind == Graphic::polygon)
        points.push_back(g.points[0]);
    }
  }
  return points;
}

gxGraphicProps penOf(gxColor const &color, long width, gxGraphicProps::gePenStyle style = gxGraphicProps::penSolid)
{
  gxGraphicProps pen(color, width, style, false);
  pen.arrowHead(false);
  return pen;
}

}  // namespace

void DeviceDrawing::outline(gxSMDGDPoly const &poly, gxColor const &color, long penWidth) const
{
  auto const draw = [&](gxSMDGDPoly const &p) {
    tablet_.draw(P::wireframe(p).map(map_), penOf(color, penWidth), gxUITablet::overlay);
  };
  if (!isSharp_)
    return draw(poly);
  try {
    draw(withoutFillets(poly));
  } catch (gxException const &) {  // what crosses itself where it is not rounded
    draw(poly);
  }
}

void DeviceDrawing::outlines(gxSMDGDModel const &model, gxColor const &color) const
{
  for (gxSMDGDPoly const &poly : model.polys())
    outline(poly, color);
}

bool DeviceDrawing::layer(std::string const &name, gxColor const &color, double scale) const
{
  bool isDrawn = false;
  gx2Rigid const place(-device_.footprint.angle, device_.footprint.at);
  for (Graphic const &g : device_.footprint.graphics) {
    if (g.layer != name)
      continue;
    isDrawn = true;
    std::vector<Point> points = pathOf(g);
    for (Point &p : points)
      p = place * p;
    gxGraphicProps pen = penOf(color, std::lround(std::clamp(g.width * scale, 1.0, 1000.0)));
    pen.fill(g.isFilled);
    path(std::move(points), pen);
  }
  return isDrawn;
}

void DeviceDrawing::path(std::vector<Point> points, gxGraphicProps const &props) const
{
  for (Point &p : points)
    p = map_ * p;
  gxGraphicProps pen = props;
  if (pen.fill()) {
    tablet_.draw(gxPolygon(points, gxPolygon::alternate), pen, gxUITablet::overlay);
    pen.fill(false);
  }
  tablet_.draw(gxPolyline(std::move(points)), pen, gxUITablet::overlay);
}

void DeviceDrawing::ring(Point const &center, double radius, gxGraphicProps const &props) const
{
  Point const start = center + Point(radius, 0.0);
  std::vector<Point> points = {start};
  addTurn(points, center, start, gf_turnRadians);
  path(std::move(points), props);
}

void DeviceDrawing::mark(Finding const &finding, gxColor const &color) const
{
  gxGraphicProps const pen = penOf(color, 2), dashed = penOf(color, 2, gxGraphicProps::penDash);
  for (std::size_t const i : finding.pads)
    outline(device_.models.pads.polys()[i], color, 2);
  for (gxRect const &box : finding.boxes) {
    Point const a = box.origin(), b = a + box.size();
    path({a, {b.x(), a.y()}, b, {a.x(), b.y()}, a}, &box == &finding.boxes.front() ? pen : dashed);
  }
  constexpr double pels = 7.0;
  double const scale = map_.matrix().scale();
  if (finding.places.size() == 2)
    path(finding.places, dashed);
  for (Point const &place : finding.places)
    ring(place, pels / scale, pen);
}

std::vector<std::string> drawnLayers(gxFootprint const &footprint)
{
  std::vector<std::string> names;
  for (Graphic const &g : footprint.graphics)
    if (std::find(names.begin(), names.end(), g.layer) == names.end())
      names.push_back(g.layer);
  return names;
}
