#include "foundation/detail/ellipsenearest.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

// With a >= b the half axes and p = (x, y) in the first quadrant, half the squared distance from p to
// (a cos t, b sin t) falls where
//   g(t) = (a^2 - b^2) sin t cos t - a x sin t + b y cos t
// is positive. In the first quadrant g changes sign once, from positive to negative: the nearest point. In the second
// it is negative, in the third it becomes positive: the farthest point. In the fourth, with t = -w,
//   g = -sin w cos w ((a^2 - b^2) - a x / cos w - b y / sin w),
// and the bracket is greatest where tan^3 w = b y / a x; if it is positive there, p lies inside the evolute and the
// second minimum is between that w and a quarter turn.

namespace
{

constexpr double quarterTurn = std::numbers::pi / 2.0;

struct Ellipse {
  double focal;  ///< a^2 - b^2
  double ax;     ///< a x
  double by;     ///< b y

  double fall(double t) const
  {
    double const s = std::sin(t), c = std::cos(t);
    return focal * s * c - ax * s + by * c;
  }
  double fallSlope(double t) const
  {
    double const s = std::sin(t), c = std::cos(t);
    return focal * (c - s) * (c + s) - ax * c - by * s;
  }
  /// Where `fall` changes from positive at @p low to negative at @p high: Newton's steps, kept in a bracket that
  /// shrinks by bisection where they leave it or are slow.
  double sinkBetween(double low, double high) const
  {
    double t = 0.5 * (low + high);
    constexpr int maxSteps = 200;  // far more than the 60 halvings that doubles allow plus their Newton steps
    for (int i = 0; i < maxSteps; ++i) {
      double const value = fall(t);
      (value > 0.0 ? low : high) = t;
      double next = t - value / fallSlope(t);
      bool const isGoodStep = low < next && next < high && (i % 4 != 3);
      if (!isGoodStep)
        next = 0.5 * (low + high);
      if (next == t || !(low < next && next < high))
        return next == next ? next : t;
      t = next;
    }
    return t;
  }
};

}  // namespace

std::array<double, 2> gf_ellipseNearAngles(double rx, double ry, gxVector<2> const &p)
{
  bool const isTall = rx < ry;
  double a = std::max(rx, ry), b = std::min(rx, ry);
  double x = std::abs(isTall ? p.y() : p.x()), y = std::abs(isTall ? p.x() : p.y());
  double const scale = std::max({a, x, y});
  if (!(scale > 0.0) || !std::isfinite(scale))
    return {0.0, 0.0};
  a /= scale;
  b /= scale;
  x /= scale;
  y /= scale;

  Ellipse const ellipse{(a - b) * (a + b), a * x, b * y};
  double const nearest = ellipse.sinkBetween(0.0, quarterTurn);
  double second = -quarterTurn;
  if (ellipse.ax > 0.0) {
    double const w = std::atan(std::cbrt(ellipse.by / ellipse.ax));
    second = ellipse.fall(-w) < 0.0 || w == 0.0 ? ellipse.sinkBetween(-quarterTurn, -w) : nearest;
  }

  auto const restored = [&](double t) {  // back to the quadrant and the axes of p
    double along = std::cos(t), across = std::sin(t);
    if (isTall)
      std::swap(along, across);
    return std::atan2(std::copysign(1.0, p.y()) * across, std::copysign(1.0, p.x()) * along);
  };
  return {restored(nearest), restored(second)};
}
