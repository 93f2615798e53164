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

double gx_EllipseNear::restored(double s) const
{
  double along = std::cos(s), across = std::sin(s);
  if (isTall_)
    std::swap(along, across);
  return std::atan2(std::signbit(point_.y()) ? -across : across, std::signbit(point_.x()) ? -along : along);
}

double gx_EllipseNear::nearest() const
{
  // far from the ellipse the direction to the point, in the frame of the unit circle, comes near
  return restored(sinkBetween(0.0, quarterTurn, std::atan2(by_ + focal_ * 0.5, ax_)));
}

double gx_EllipseNear::second() const
{
  double s = -quarterTurn;
  if (ax_ > 0.0) {
    double const w = std::atan(std::cbrt(by_ / ax_));
    if (w == 0.0 || fall(-w) < 0.0)
      s = sinkBetween(-quarterTurn, -w, -0.5 * (w + quarterTurn));
  }
  return restored(s);
}
