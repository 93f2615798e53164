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

gxVector<2> gx_ArcPiece::point(double param) const
{
  return at(angleAt(*this, param));
}

gxVector<2> gx_ArcPiece::tangent(double param) const
{
  gxVector<2> const tangent = derivativeAt(angleAt(*this, param)) * span;
  constexpr double vanishing = 1e-9;  // of the radius: there a flat ellipse turns back and has no derivative
  double const radius = std::max(u.len(), v.len());
  if (tangent.len() > vanishing * radius * std::abs(span))
    return tangent;
  double const inward = (param < 0.5 ? 1e-4 : -1e-4);
  return derivativeAt(angleAt(*this, param + inward)) * span;
}

gx_Nearest gx_ArcPiece::nearest(gxVector<2> const &p) const
{
  Axes const axes(*this);
  gxVector<2> const offset = p - center;
  gxVector<2> const axis(1.0, gxRadian(axes.shape.angle));
  gx_EllipseNear const valleys(axes.shape.rx, axes.shape.ry, {axis * offset, axis.cross(offset)});
  auto const at = [&](double place) {
    gxVector<2> const found = point(place);
    return gx_Nearest{found, place, p.distance(found)};
  };
  auto const placeOnPiece = [&](gxVector<2> const &onUnit) {
    return placeOf(*this, axes.toParam(onUnit.angle().value()));
  };
  if (valleys.isCenter())
    return at(0.0);
  gx_Nearest best = at(0.0);
  if (double const place = placeOnPiece(valleys.nearest()); place <= 1.0) {
    best = at(place);
    if (!valleys.hasTwin())
      return best;
    gx_Nearest const twin = at(placeOnPiece(valleys.twin()));
    double const rounding = 1e-15 * (axes.shape.rx + axes.shape.ry + offset.len());
    return twin.param < best.param && twin.distance <= best.distance + rounding ? twin : best;
  }
  // the nearest point of the ellipse is not on the arc
  for (double const place : {placeOnPiece(valleys.second()), 1.0})
    if (place <= 1.0)
      if (gx_Nearest const found = at(place); found.distance < best.distance)
        best = found;
  return best;
}

gxRect gx_ArcPiece::bounds() const
{
  if (std::abs(span) >= gf_turnRadians) {
    gxVector<2> const half(std::hypot(u.x(), v.x()), std::hypot(u.y(), v.y()));
    return {center - half, half * 2.0};
  }
  gxVector<2> const first = point(0.0), last = point(1.0);
  double lowX = std::min(first.x(), last.x()), highX = std::max(first.x(), last.x());
  double lowY = std::min(first.y(), last.y()), highY = std::max(first.y(), last.y());
  double const topX = std::atan2(v.x(), u.x()), topY = std::atan2(v.y(), u.y());
  double const halfX = std::hypot(u.x(), v.x()), halfY = std::hypot(u.y(), v.y());
  if (placeOf(*this, topX) <= 1.0)
    highX = std::max(highX, center.x() + halfX);
  if (placeOf(*this, topX + std::numbers::pi) <= 1.0)
    lowX = std::min(lowX, center.x() - halfX);
  if (placeOf(*this, topY) <= 1.0)
    highY = std::max(highY, center.y() + halfY);
  if (placeOf(*this, topY + std::numbers::pi) <= 1.0)
    lowY = std::min(lowY, center.y() - halfY);
  return {{lowX, lowY}, {highX - lowX, highY - lowY}};
}

double gx_ArcPiece::lengthTo(double param) const
{
  Axes const axes(*this);
  return lengthBetween(axes, axes.fromParam(start), axes.fromParam(angleAt(*this, param)));
}

double gx_ArcPiece::paramAtLength(double length) const
{
  Axes const axes(*this);
  double const whole = lengthTo(1.0);
  if (!(length > 0.0) || !(whole > 0.0))
    return 0.0;
  if (!(length < whole))
    return 1.0;
  double low = 0.0, high = 1.0;
  double param = length / whole;
  constexpr int maxSteps = 100;
  for (int i = 0; i < maxSteps; ++i) {
    double const s = axes.fromParam(angleAt(*this, param));
    double const excess = lengthBetween(axes, axes.fromParam(start), s) - length;
    if (std::abs(excess) <= 1e-15 * whole)
      break;
    (excess > 0.0 ? high : low) = param;
    double next = param - excess / (axes.speed(s) * std::abs(span));
    if (!(low < next && next < high) || i % 4 == 3)
      next = 0.5 * (low + high);
    if (next == param)
      break;
    param = next;
  }
  return param;
}

double gx_ArcPiece::rotation() const
{
  Axes const axes(*this);
  double const from = axes.fromParam(start), to = axes.fromParam(angleAt(*this, 1.0));
  return to - from + axes.tangentLead(to) - axes.tangentLead(from);
}

double gx_ArcPiece::winding(gxVector<2> const &p) const
{
  gxVector<2> const a = point(0.0) - p, b = point(1.0) - p;
  double const chord = std::atan2(a.cross(b), a * b);
  double const area = u.cross(v);
  gxVector<2> const offset = p - center;
  // in the frame of the unit circle, where a point inside sees the arc run one way only
  gxVector<2> const onUnit(offset.cross(v), u.cross(offset));
  if (!(onUnit.len() < std::abs(area)))
    return chord;
  double const sense = (area < 0.0) == (span < 0.0) ? 1.0 : -1.0;
  if (std::abs(span) >= gf_turnRadians)
    return sense * gf_turnRadians;
  return sense * gxRadian(sense * chord).norm().value();
}

double gx_ArcPiece::doubleArea() const
{
  gxVector<2> const chord = point(1.0) - point(0.0);
  return center.cross(chord) + u.cross(v) * span;
}

gx_ArcPiece gx_ArcPiece::part(double begin, double end) const
{
  return {center, u, v, angleAt(*this, begin), span * (end - begin)};
}

gx_ArcPiece gx_ArcPiece::mapped(gxXform<2> const &xform) const
{
  return {xform * center, xform.mapVector(u), xform.mapVector(v), start, span};
}

bool gx_ArcPiece::isFinite() const
{
  return center.isFinite() && u.isFinite() && v.isFinite() && std::isfinite(start) && std::isfinite(span);
}

double gx_ArcPiece::chords(double tolerance) const
{
  constexpr double whole = 1e-12;  // a span that is a hair over a whole number of steps does not take one more
  double const turn = std::abs(span);
  double step = std::numbers::pi / 2.0;
  if (tolerance > 0.0) {
    Axes const axes(*this);
    double const radius = std::max(axes.shape.rx, axes.shape.ry);
    // the sagitta of a chord of step w on a circle of that radius is radius (1 - cos(w / 2)); the ellipse, its image
    // under a map that does not stretch, stays nearer to its chords
    if (tolerance < radius && std::isfinite(radius))
      step = std::min(step, 4.0 * std::asin(std::sqrt(0.5 * tolerance / radius)));
  }
  return std::max(1.0, std::ceil(turn / step - whole));
}

std::vector<double> gx_ArcPiece::crossings(gxVector<2> const &a, gxVector<2> const &b) const
{
  gxVector<2> const along = b - a;
  double const square = along * along;
  double const onU = along.cross(u), onV = along.cross(v), rest = along.cross(center - a);
  double const reach = std::hypot(onU, onV);  // onU cos t + onV sin t + rest = 0 on the line
  if (!(std::abs(rest) <= reach) || reach == 0.0)
    return {};
  double const middle = std::atan2(onV, onU), half = std::acos(-rest / reach);
  std::vector<double> places;
  for (double const t : {middle - half, middle + half}) {
    double const place = placeOf(*this, t);
    double const onSegment = along * (at(t) - a);
    if (place <= 1.0 && onSegment >= 0.0 && onSegment <= square && (places.empty() || places[0] != place))
      places.push_back(place);
  }
  std::sort(places.begin(), places.end());
  return places;
}
