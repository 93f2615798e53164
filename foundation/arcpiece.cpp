#include "foundation/detail/axes.h"
#include "foundation/detail/ellipsenearest.h"
#include "foundation/detail/ellipticintegral.h"
#include "foundation/outline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

// Pieces of ellipses.

namespace
{

/// The piece in the frame of its axes: (rx cos s, ry sin s), turned by the angle and moved to the center.
struct Axes {
  explicit Axes(gx_ArcPiece const &piece)
      : shape(gf_ellipseAxes(gxMatrix<2>(piece.u.x(), piece.v.x(), piece.u.y(), piece.v.y()), 0.0))
  {
  }
  /// The angle in the frame that belongs to the parameter angle @p t of the piece, and back.
  double fromParam(double t) const { return shape.mirrored ? -(t + shape.phase) : t + shape.phase; }
  double toParam(double s) const { return (shape.mirrored ? -s : s) - shape.phase; }
  double speed(double s) const { return std::hypot(shape.rx * std::sin(s), shape.ry * std::cos(s)); }
  /// By how much the tangent at s is turned against that of a circle at s.
  double tangentLead(double s) const
  {
    double const sine = std::sin(s), cosine = std::cos(s);
    gxVector<2> const onCircle(-sine, cosine);
    gxVector<2> const here(-shape.rx * sine, shape.ry * cosine);
    return std::atan2(onCircle.cross(here), onCircle * here);
  }

  gx_EllipseAxes shape;
};

double angleAt(gx_ArcPiece const &piece, double param)
{
  return piece.start + piece.span * param;
}

/// The place on the piece of the angle @p t, with any number of turns; beyond 1 if the angle is not on the piece.
double placeOf(gx_ArcPiece const &piece, double t)
{
  double const span = std::abs(piece.span);
  double const along = gxRadian(piece.span < 0.0 ? piece.start - t : t - piece.start).norm().value();
  return span > 0.0 ? along / span : (along == 0.0 ? 0.0 : 2.0);
}

/// Length between two angles of the frame that are so close that differences of long arcs would lose digits: Gauss
/// and Legendre's rule of ten points, exact to rounding while the interval is short against the distance of the
/// integrand's singularities from the real axis (Davis and Rabinowitz, Methods of Numerical Integration).
double shortLength(Axes const &axes, double from, double to)
{
  constexpr std::array<double, 5> place = {0.1488743389816312, 0.4333953941292472, 0.6794095682990244,
                                           0.8650633666889845, 0.9739065285171717};
  constexpr std::array<double, 5> weight = {0.2955242247147529, 0.2692667193099963, 0.2190863625159820,
                                            0.1494513491505806, 0.0666713443086881};
  double const middle = 0.5 * (from + to), half = 0.5 * (to - from);
  double sum = 0.0;
  for (std::size_t i = 0; i < place.size(); ++i)
    sum += weight[i] * (axes.speed(middle - half * place[i]) + axes.speed(middle + half * place[i]));
  return std::abs(half) * sum;
}

double lengthBetween(Axes const &axes, double from, double to)
{
  double const rx = axes.shape.rx, ry = axes.shape.ry;
  if (rx == ry)
    return rx * std::abs(to - from);
  double const roundness = std::min(rx, ry) / std::max(rx, ry);
  if (std::abs(to - from) <= 0.5 * roundness)
    return shortLength(axes, from, to);
  if (std::abs(to - from) >= gf_turnRadians)
    return gf_ellipseLength(rx, ry) * (std::abs(to - from) / gf_turnRadians);
  return std::abs(gf_ellipseLengthTo(rx, ry, to) - gf_ellipseLengthTo(rx, ry, from));
}

}  // namespace

gxVector<2> gf_point(gx_ArcPiece const &piece, double param)
{
  return piece.at(angleAt(piece, param));
}

gxVector<2> gf_tangent(gx_ArcPiece const &piece, double param)
{
  gxVector<2> const tangent = piece.derivativeAt(angleAt(piece, param)) * piece.span;
  constexpr double vanishing = 1e-9;  // of the radius: there a flat ellipse turns back and has no derivative
  double const radius = std::max(piece.u.len(), piece.v.len());
  if (tangent.len() > vanishing * radius * std::abs(piece.span))
    return tangent;
  double const inward = (param < 0.5 ? 1e-4 : -1e-4);
  return piece.derivativeAt(angleAt(piece, param + inward)) * piece.span;
}

gx_Nearest gf_nearest(gx_ArcPiece const &piece, gxVector<2> const &p)
{
  Axes const axes(piece);
  gxVector<2> const offset = p - piece.center;
  gxVector<2> const axis(1.0, gxRadian(axes.shape.angle));
  std::array<double, 2> const angles =
      gf_ellipseNearAngles(axes.shape.rx, axes.shape.ry, {axis * offset, axis.cross(offset)});
  std::array<double, 4> places = {0.0, placeOf(piece, axes.toParam(angles[0])), placeOf(piece, axes.toParam(angles[1])),
                                  1.0};
  std::sort(places.begin(), places.end());
  gx_Nearest best{piece.at(piece.start), 0.0, p.distance(piece.at(piece.start))};
  for (double const place : places) {
    if (!(place <= 1.0))
      continue;
    gxVector<2> const point = gf_point(piece, place);
    double const distance = p.distance(point);
    if (distance < best.distance)
      best = {point, place, distance};
  }
  return best;
}

gxRect gf_bounds(gx_ArcPiece const &piece)
{
  if (std::abs(piece.span) >= gf_turnRadians) {
    gxVector<2> const half(std::hypot(piece.u.x(), piece.v.x()), std::hypot(piece.u.y(), piece.v.y()));
    return {piece.center - half, half * 2.0};
  }
  gxVector<2> const first = gf_point(piece, 0.0), last = gf_point(piece, 1.0);
  double lowX = std::min(first.x(), last.x()), highX = std::max(first.x(), last.x());
  double lowY = std::min(first.y(), last.y()), highY = std::max(first.y(), last.y());
  double const topX = std::atan2(piece.v.x(), piece.u.x()), topY = std::atan2(piece.v.y(), piece.u.y());
  double const halfX = std::hypot(piece.u.x(), piece.v.x()), halfY = std::hypot(piece.u.y(), piece.v.y());
  if (placeOf(piece, topX) <= 1.0)
    highX = std::max(highX, piece.center.x() + halfX);
  if (placeOf(piece, topX + std::numbers::pi) <= 1.0)
    lowX = std::min(lowX, piece.center.x() - halfX);
  if (placeOf(piece, topY) <= 1.0)
    highY = std::max(highY, piece.center.y() + halfY);
  if (placeOf(piece, topY + std::numbers::pi) <= 1.0)
    lowY = std::min(lowY, piece.center.y() - halfY);
  return {{lowX, lowY}, {highX - lowX, highY - lowY}};
}

double gf_lengthTo(gx_ArcPiece const &piece, double param)
{
  Axes const axes(piece);
  return lengthBetween(axes, axes.fromParam(piece.start), axes.fromParam(angleAt(piece, param)));
}

double gf_paramAtLength(gx_ArcPiece const &piece, double length)
{
  Axes const axes(piece);
  double const whole = gf_length(piece);
  if (!(length > 0.0) || !(whole > 0.0))
    return 0.0;
  if (!(length < whole))
    return 1.0;
  double low = 0.0, high = 1.0;
  double param = length / whole;
  constexpr int maxSteps = 100;
  for (int i = 0; i < maxSteps; ++i) {
    double const s = axes.fromParam(angleAt(piece, param));
    double const excess = lengthBetween(axes, axes.fromParam(piece.start), s) - length;
    (excess > 0.0 ? high : low) = param;
    double next = param - excess / (axes.speed(s) * std::abs(piece.span));
    if (!(low < next && next < high) || i % 4 == 3)
      next = 0.5 * (low + high);
    if (next == param || std::abs(excess) <= 1e-15 * whole)
      return next;
    param = next;
  }
  return param;
}

double gf_rotation(gx_ArcPiece const &piece)
{
  Axes const axes(piece);
  double const from = axes.fromParam(piece.start), to = axes.fromParam(angleAt(piece, 1.0));
  return to - from + axes.tangentLead(to) - axes.tangentLead(from);
}

double gf_winding(gx_ArcPiece const &piece, gxVector<2> const &p)
{
  gxVector<2> const a = gf_point(piece, 0.0) - p, b = gf_point(piece, 1.0) - p;
  double const chord = std::atan2(a.cross(b), a * b);
  double const area = piece.u.cross(piece.v);
  gxVector<2> const offset = p - piece.center;
  // in the frame of the unit circle, where a point inside sees the arc run one way only
  gxVector<2> const onUnit(offset.cross(piece.v), piece.u.cross(offset));
  if (!(onUnit.len() < std::abs(area)))
    return chord;
  double const sense = (area < 0.0) == (piece.span < 0.0) ? 1.0 : -1.0;
  if (std::abs(piece.span) >= gf_turnRadians)
    return sense * gf_turnRadians;
  return sense * gxRadian(sense * chord).norm().value();
}

double gf_doubleArea(gx_ArcPiece const &piece)
{
  gxVector<2> const chord = gf_point(piece, 1.0) - gf_point(piece, 0.0);
  return piece.center.cross(chord) + piece.u.cross(piece.v) * piece.span;
}

gx_ArcPiece gf_part(gx_ArcPiece const &piece, double from, double to)
{
  return {piece.center, piece.u, piece.v, angleAt(piece, from), piece.span * (to - from)};
}

gx_ArcPiece gf_mapped(gx_ArcPiece const &piece, gxXform<2> const &xform)
{
  return {xform * piece.center, xform.mapVector(piece.u), xform.mapVector(piece.v), piece.start, piece.span};
}

double gf_chords(gx_ArcPiece const &piece, double tolerance)
{
  constexpr double whole = 1e-12;  // a span that is a hair over a whole number of steps does not take one more
  double const span = std::abs(piece.span);
  double step = std::numbers::pi / 2.0;
  if (tolerance > 0.0) {
    Axes const axes(piece);
    double const radius = std::max(axes.shape.rx, axes.shape.ry);
    // the sagitta of a chord of step w on a circle of that radius is radius (1 - cos(w / 2)); the ellipse, its image
    // under a map that does not stretch, stays nearer to its chords
    if (tolerance < radius)
      step = std::min(step, 4.0 * std::asin(std::sqrt(0.5 * tolerance / radius)));
  }
  return std::max(1.0, std::ceil(span / step - whole));
}

std::vector<double> gf_crossings(gx_ArcPiece const &piece, gxVector<2> const &a, gxVector<2> const &b)
{
  gxVector<2> const along = b - a;
  double const square = along * along;
  double const onU = along.cross(piece.u), onV = along.cross(piece.v), rest = along.cross(piece.center - a);
  double const reach = std::hypot(onU, onV);  // onU cos t + onV sin t + rest = 0 on the line
  if (!(std::abs(rest) <= reach) || reach == 0.0)
    return {};
  double const middle = std::atan2(onV, onU), half = std::acos(-rest / reach);
  std::vector<double> places;
  for (double const t : {middle - half, middle + half}) {
    double const place = placeOf(piece, t);
    double const onSegment = along * (piece.at(t) - a);
    if (place <= 1.0 && onSegment >= 0.0 && onSegment <= square && (places.empty() || places[0] != place))
      places.push_back(place);
  }
  std::sort(places.begin(), places.end());
  return places;
}
