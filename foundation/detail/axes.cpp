#include "foundation/detail/axes.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace
{

/// Axes of a matrix whose determinant is not negative.
gx_EllipseAxes unmirroredAxes(double a, double b, double c, double d, double nearPhase)
{
  if (b == 0.0 && c == 0.0 && nearPhase == 0.0)
    return {std::abs(a), std::abs(d), a < 0.0 || d < 0.0 ? std::numbers::pi : 0.0, 0.0, false};

  // the matrix is the sum of a similarity (e, h) and a mirrored similarity (f, g); their lengths are half the sum and
  // half the difference of the singular values, their angles the sum and the difference of the two rotations
  double const e = (a + d) / 2.0, h = (c - b) / 2.0;
  double const f = (a - d) / 2.0, g = (c + b) / 2.0;
  double const q = std::hypot(e, h), r = std::hypot(f, g);
  double const angleSum = std::atan2(h, e);
  constexpr double circleTolerance = 1e-15;  // relative: below it the direction of the axes is rounding noise
  if (r <= q * circleTolerance)
    return {q, q, angleSum - nearPhase, nearPhase, false};

  double const angleDifference = std::atan2(g, f);
  double const longRadius = q + r;
  double const shortRadius = std::abs(a * d - b * c) / longRadius;
  double const phase = (angleSum - angleDifference) / 2.0;
  double const quarters = std::round((nearPhase - phase) / (std::numbers::pi / 2.0));
  gx_EllipseAxes axes{longRadius, shortRadius, (angleSum + angleDifference) / 2.0 - quarters * std::numbers::pi / 2.0,
                      phase + quarters * std::numbers::pi / 2.0, false};
  if (std::fmod(quarters, 2.0) != 0.0)
    std::swap(axes.rx, axes.ry);
  return axes;
}

}  // namespace

gx_EllipseAxes gf_ellipseAxes(gxMatrix<2> const &m, double nearPhase)
{
  double const a = m.element(0, 0), b = m.element(0, 1), c = m.element(1, 0), d = m.element(1, 1);
  if (!(m.det() < 0.0))
    return unmirroredAxes(a, b, c, d, nearPhase);
  gx_EllipseAxes axes = unmirroredAxes(a, -b, c, -d, -nearPhase);
  axes.phase = -axes.phase;
  axes.mirrored = true;
  return axes;
}
