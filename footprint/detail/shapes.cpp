#include "footprint/detail/shapes.h"

#include "dispc/wrfm/arc.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace gx_shapes
{

namespace
{

using Pad = gxFootprint::Pad;
using Point = gxVector<2>;

Vertices cornersOf(std::vector<Point> const &points)
{
  Vertices vertices;
  vertices.reserve(points.size());
  for (Point const &p : points)
    vertices.push_back(vertexOf(p));
  return vertices;
}

Vertices stadium(Point const &a, Point const &b, double radius)
{
  if (a == b)
    return circle(a, radius);
  Point const along = (b - a).unit(), side = Point(-along.y(), along.x()) * radius;
  return {vertexOf(a - side, 180), vertexOf(b - side), vertexOf(b + side, 180), vertexOf(a + side)};
}

Vertices oval(Point const &size)
{
  double const x = size.x() / 2.0, y = size.y() / 2.0;
  Point const end = x > y ? Point(x - y, 0.0) : Point(0.0, y - x);
  return stadium(end * -1.0, end, std::min(x, y));
}

/// A corner of a pad, and the ways from it along the sides before and behind.
struct PadCorner {
  Point at, before, behind;
  bool isCut;
};

/// Whether fillets find room: each has half of a side.
bool canBeFillets(std::array<PadCorner, 4> const &corners, double radius, double cut)
{
  for (std::size_t i = 0; i < corners.size(); ++i) {
    PadCorner const &a = corners[i], &b = corners[(i + 1) % corners.size()];
    double const left = a.at.distance(b.at) - cut * (double(a.isCut) + double(b.isCut));
    if (!(a.isCut && b.isCut) && !(2.0 * radius < left * (1.0 - 1e-9)))
      return false;
  }
  return true;
}

/// With rounded and cut corners, from top left to bottom left.
Vertices cornered(Pad const &pad)
{
  double const x = pad.size.x() / 2.0, y = pad.size.y() / 2.0, shorter = std::min(pad.size.x(), pad.size.y());
  double const radius = pad.shape == Pad::roundedRectangle ? std::clamp(pad.roundRatio, 0.0, 0.5) * shorter : 0.0;
  double const cut = std::clamp(pad.chamferRatio, 0.0, 0.5) * shorter;
  bool const isCut = cut > 0.0 && std::any_of(pad.chamfer.begin(), pad.chamfer.end(), [](bool c) { return c; });
  if (!isCut && radius == shorter / 2.0)
    return oval(pad.size);
  std::array<PadCorner, 4> const corners = {{{{-x, -y}, {0, 1}, {1, 0}, isCut && pad.chamfer[0]},
                                             {{x, -y}, {-1, 0}, {0, 1}, isCut && pad.chamfer[1]},
                                             {{x, y}, {0, -1}, {-1, 0}, isCut && pad.chamfer[3]},
                                             {{-x, y}, {1, 0}, {0, -1}, isCut && pad.chamfer[2]}}};
  bool const fillets = radius == 0.0 || canBeFillets(corners, radius, cut);
  Vertices vertices;
  vertices.reserve(8);
  auto const add = [&](gxSMDGDPolyVertex const &v) {  // two corners may meet in the middle of a side
    if (vertices.empty() || v.point().distance(vertices.back().point()) > 1e-9 * shorter)
      vertices.push_back(v);
  };
  for (PadCorner const &c : corners) {
    if (!c.isCut && fillets) {
      add(vertexOf(c.at, 0.0, radius));
      continue;
    }
    double const away = c.isCut ? cut : radius;
    add(vertexOf(c.at + c.before * away));
    add(vertexOf(c.at + c.behind * away, c.isCut ? 0.0 : 90.0));
  }
  if (vertices.size() > 1 && vertices.front().point().distance(vertices.back().point()) <= 1e-9 * shorter)
    vertices.erase(vertices.begin());
  return vertices;
}

Vertices trapezoid(Pad const &pad)
{
  Point const h = pad.size * 0.5, d = pad.taper * 0.5;
  return cornersOf({{-h.x() - d.y(), h.y() + d.x()},
                    {h.x() + d.y(), h.y() - d.x()},
                    {h.x() - d.y(), -h.y() + d.x()},
                    {-h.x() + d.y(), -h.y() - d.x()}});
}

}  // namespace

gxSMDGDPolyVertex vertexOf(Point const &p, double span, double radius)
{
  static gxDimTol const none;
  return {p, radius, gxDegree(span), 0.5, 0.5, -1, none};
}

Piece arcThrough(Point const &start, Point const &mid, Point const &end)
{
  Point const a = mid - start, b = end - start;
  double const twice = 2.0 * a.cross(b), size = std::max(a.len(), b.len());
  if (std::abs(twice) <= 1e-9 * size * size)
    return {start, end, 0.0};
  double const aa = a.len() * a.len(), bb = b.len() * b.len();
  Point const center = start + Point(b.y() * aa - a.y() * bb, a.x() * bb - b.x() * aa) * (1.0 / twice);
  auto const turn = [&](Point const &p) { return gxDegree((p - center).angle() - (start - center).angle()).norm(); };
  double const whole = turn(end).value();
  return {start, end, turn(mid).value() <= whole ? whole : whole - 360.0};
}

std::vector<Piece> sidesOf(gxFootprint::Graphic const &polygon)
{
  std::vector<Piece> sides;
  sides.reserve(polygon.points.size());
  auto bulge = polygon.bulges.begin();
  for (std::size_t i = 0; i < polygon.points.size(); ++i) {
    Point const &end = polygon.points[i], &start = i == 0 ? polygon.points.back() : polygon.points[i - 1];
    bool const isArc = bulge != polygon.bulges.end() && bulge->corner == i;
    sides.push_back(isArc ? arcThrough(start, bulge++->through, end) : Piece{start, end, 0.0});
  }
  return sides;
}

Vertices circle(Point const &center, double radius)
{
  return {vertexOf(center - Point(radius, 0), 180), vertexOf(center + Point(radius, 0), 180)};
}

Vertices rectangle(Point const &a, Point const &b)
{
  return cornersOf({a, {b.x(), a.y()}, b, {a.x(), b.y()}});
}

Vertices chain(std::vector<Piece> const &pieces)
{
  Vertices vertices;
  vertices.reserve(pieces.size());
  for (Piece const &piece : pieces)
    if (!(piece.start == piece.end))
      vertices.push_back(vertexOf(piece.end, piece.span));
  return vertices;
}

Vertices thick(Piece const &piece, double radius)
{
  if (piece.span == 0.0)
    return stadium(piece.start, piece.end, radius);
  gx2SegmentArc const middle(piece.start, piece.end, gxDegree(piece.span));
  Point const c = middle.center(), out0 = (piece.start - c).unit() * radius, out1 = (piece.end - c).unit() * radius;
  double const cap = piece.span > 0.0 ? 180.0 : -180.0;
  return {vertexOf(piece.start + out0, cap), vertexOf(piece.end + out1, piece.span), vertexOf(piece.end - out1, cap),
          vertexOf(piece.start - out0, -piece.span)};
}

Vertices ofPad(Pad const &pad)
{
  switch (pad.shape) {
    case Pad::oval:
      return oval(pad.size);
    case Pad::circle:
      return circle({0.0, 0.0}, pad.size.x() / 2.0);
    case Pad::trapezoid:
      return trapezoid(pad);
    case Pad::custom:
      return pad.hasCircleAnchor ? circle({0.0, 0.0}, pad.size.x() / 2.0) : rectangle(pad.size * -0.5, pad.size * 0.5);
    default:
      return cornered(pad);
  }
}

bool areAlike(Pad const &a, Pad const &b)
{
  return a.shape == b.shape && a.size == b.size && a.taper == b.taper && a.roundRatio == b.roundRatio &&
         a.chamferRatio == b.chamferRatio && a.chamfer == b.chamfer && a.hasCircleAnchor == b.hasCircleAnchor;
}

}  // namespace gx_shapes
