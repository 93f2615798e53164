#include "foundation/detail/ellipsenearest.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

// With a >= b the half axes and p = (x, y) in the first quadrant, half the squared distance from p to
// (a cos s, b sin s) falls where
//   g(s) = (a^2 - b^2) sin s cos s - a x sin s + b y cos s
// is positive. In the first quadrant g changes sign once, from positive to negative: the nearest point. In the second
// it is negative, in the third it becomes positive: the farthest point. In the fourth, with s = -w,
//   g = -sin w cos w ((a^2 - b^2) - a x / cos w - b y / sin w),
// and the bracket is greatest where tan^3 w = b y / a x; if it is positive there, p lies inside the evolute and the
// second valley is between that w and a quarter turn.

namespace
{

constexpr double quarterTurn = std::numbers::pi / 2.0;

}  // namespace

gx_EllipseNear::gx_EllipseNear(double rx, double ry, gxVector<2> const &p) : point_(p), isTall_(rx < ry)
{
  double const a = std::max(rx, ry), b = std::min(rx, ry);
  double const x = std::abs(isTall_ ? p.y() : p.x()), y = std::abs(isTall_ ? p.x() : p.y());
  double const scale = std::max({a, x, y});
  if (!(scale > 0.0) || !std::isfinite(scale))
    return;
  focal_ = (a - b) / scale * ((a + b) / scale);
  ax_ = a / scale * (x / scale);
  by_ = b / scale * (y / scale);
}

double gx_EllipseNear::fall(double s) const
{
  double const sine = std::sin(s), cosine = std::cos(s);
  return focal_ * sine * cosine - ax_ * sine + by_ * cosine;
}

/// Where `fall` changes from positive at @p low to negative at @p high: Newton's steps, kept in a bracket that shrinks
/// by bisection where they leave it or are slow.
double gx_EllipseNear::sinkBetween(double low, double high, double guess) const
{
  constexpr double converged = 2e-16;  // radians, on an ellipse of size 1
  constexpr int maxSteps = 200;        // more than three of Newton's steps to each of the halvings that doubles allow
  double s = guess;
  for (int i = 0; i < maxSteps && high - low > converged; ++i) {
    double const sine = std::sin(s), cosine = std::cos(s);
    double const value = focal_ * sine * cosine - ax_ * sine + by_ * cosine;
    double const slope = focal_ * (cosine - sine) * (cosine + sine) - ax_ * cosine - by_ * sine;
    (value > 0.0 ? low : high) = s;
    double const step = value / slope;
    double next = s - step;
    if (std::abs(step) <= converged && low <= next && next <= high)
      return next;
    if (!(low < next && next < high) || i % 4 == 3)
      next = 0.5 * (low + high);
    s = next;
  }
  return s;
}

gxVector<2> gx_EllipseNear::restored(double along, double across) const
{
  if (isTall_)
    std::swap(along, across);
  return {std::signbit(point_.x()) ? -along : along, std::signbit(point_.y()) ? -across : across};
}

// The line from p to its nearest point is a normal there: with (c, s) on the unit circle,
//   c (u + a^2 - b^2) = a x  and  s u = b y  for some u > 0,
// so that u makes N(u) = |(a x / (u + a^2 - b^2), b y / u)| equal to 1. N falls, and 1 / N is concave, so that Newton's
// steps for 1 / N = 1 from below stay below and are few (A. Conn, N. Gould, P. Toint, Trust-Region Methods, 7.3). Near
// a cusp of the evolute they would be many: then the bracket is halved, by the logarithm.
gxVector<2> gx_EllipseNear::nearest() const
{
  if (!(by_ > 0.0)) {
    double const c = ax_ < focal_ ? ax_ / focal_ : 1.0;
    return restored(c, std::sqrt((1.0 - c) * (1.0 + c)));
  }
  constexpr double converged = 4.5e-16;  // two units in the last place
  constexpr double exactStep = 1e-16;    // a step leaves at most 3/2 (c / s)^2 times the square of the excess
  constexpr int patience = 8;            // steps between two halvings
  constexpr int maxSteps = 200;          // far more than halvings of the logarithms of all doubles need
  double low = std::max(by_, ax_ - focal_), high = ax_ + by_;
  // what u is for nearly a circle, to the first order of the difference of the axes
  double const square = ax_ * ax_ + by_ * by_;
  double const guess = std::sqrt(square) - focal_ * (ax_ * ax_ / square);
  double u = low < guess ? guess : low, c = 1.0, s = 0.0, excess = 0.0;
  for (int i = 1; i <= maxSteps; ++i) {
    double const inverse = 1.0 / u, inverseFocal = 1.0 / (u + focal_);
    c = ax_ * inverseFocal;
    s = by_ * inverse;
    double const norm = std::sqrt(c * c + s * s);
    excess = norm - 1.0;
    if (std::abs(excess) <= converged)
      break;
    (excess > 0.0 ? low : high) = u;
    double const cc = c * c, ss = s * s;
    double next = u + excess * norm * norm / (cc * inverseFocal + ss * inverse);
    if (next == u)
      break;
    bool const isInside = low < next && next < high;
    if (isInside && excess * excess * cc <= exactStep * ss)
      return restored(ax_ / (next + focal_), by_ / next);
    if (!isInside || i % patience == 0)
      next = std::sqrt(low) * std::sqrt(high);
    u = next;
  }
  return restored(c - c * excess, s - s * excess);
}

gxVector<2> gx_EllipseNear::twin() const
{
  gxVector<2> const n = nearest();
  return isTall_ ? gxVector<2>(-n.x(), n.y()) : gxVector<2>(n.x(), -n.y());
}

gxVector<2> gx_EllipseNear::second() const
{
  double s = -quarterTurn;
  if (ax_ > 0.0) {
    double const w = std::atan(std::cbrt(by_ / ax_));
    if (w == 0.0 || fall(-w) < 0.0)
      s = sinkBetween(-quarterTurn, -w, -0.5 * (w + quarterTurn));
  }
  return restored(std::cos(s), std::sin(s));
}

std::optional<gxVector<2>> gf_onlyNearest(gxVector<2> const &center, gxVector<2> const &radii, gxRadian angle,
                                          gxVector<2> const &p)
{
  gxVector<2> const along(1.0, angle), across(-along.y(), along.x()), offset = p - center;
  gx_EllipseNear const valleys(radii.x(), radii.y(), {along * offset, across * offset});
  if (valleys.hasTwin())
    return std::nullopt;
  gxVector<2> const n = valleys.nearest();
  return center + along * (n.x() * radii.x()) + across * (n.y() * radii.y());
}
