#include "foundation/detail/ellipticintegral.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace
{

/// Duplication brings the arguments together by a factor of 4 a round; the truncated series is then exact to double
/// precision. The bound is far above what the relative spread of finite arguments needs.
constexpr int maxDuplications = 600;
constexpr double seriesSpread = 2e-3;

/// Carlson's R_F(x, y, z); at most one argument is 0.
double carlsonRF(double x, double y, double z)
{
  double mean = 0.0, dx = 0.0, dy = 0.0, dz = 0.0;
  for (int i = 0; i < maxDuplications; ++i) {
    mean = (x + y + z) / 3.0;
    dx = 1.0 - x / mean;
    dy = 1.0 - y / mean;
    dz = 1.0 - z / mean;
    if (!(std::max({std::abs(dx), std::abs(dy), std::abs(dz)}) > seriesSpread))
      break;
    double const lambda = std::sqrt(x * y) + std::sqrt(y * z) + std::sqrt(z * x);
    x = (x + lambda) / 4.0;
    y = (y + lambda) / 4.0;
    z = (z + lambda) / 4.0;
  }
  double const e2 = dx * dy - dz * dz, e3 = dx * dy * dz;
  return (1.0 - e2 / 10.0 + e3 / 14.0 + e2 * e2 / 24.0 - 3.0 * e2 * e3 / 44.0) / std::sqrt(mean);
}

/// Carlson's R_D(x, y, z); z > 0 and at most one of x and y is 0.
double carlsonRD(double x, double y, double z)
{
  double sum = 0.0, power = 1.0;
  double mean = 0.0, dx = 0.0, dy = 0.0, dz = 0.0;
  for (int i = 0; i < maxDuplications; ++i) {
    mean = (x + y + 3.0 * z) / 5.0;
    dx = 1.0 - x / mean;
    dy = 1.0 - y / mean;
    dz = 1.0 - z / mean;
    if (!(std::max({std::abs(dx), std::abs(dy), std::abs(dz)}) > seriesSpread))
      break;
    double const lambda = std::sqrt(x * y) + std::sqrt(y * z) + std::sqrt(z * x);
    sum += power / (std::sqrt(z) * (z + lambda));
    power /= 4.0;
    x = (x + lambda) / 4.0;
    y = (y + lambda) / 4.0;
    z = (z + lambda) / 4.0;
  }
  double const xy = dx * dy, zz = dz * dz;
  double const e2 = xy - 6.0 * zz, e3 = (3.0 * xy - 8.0 * zz) * dz, e4 = 3.0 * (xy - zz) * zz, e5 = xy * zz * dz;
  double const series = 1.0 - 3.0 * e2 / 14.0 + e3 / 6.0 + 9.0 * e2 * e2 / 88.0 - 3.0 * e4 / 22.0 -
                        9.0 * e2 * e3 / 52.0 + 3.0 * e5 / 26.0;
  return 3.0 * sum + power * series / (mean * std::sqrt(mean));
}

/// Length of (a cos t, b sin t) from t = 0 to t in [0, pi / 2], for a quarter of known length.
double quarterLengthTo(double a, double b, double t)
{
  if (a < b)  // count from the end of the other axis, where the formula below is well conditioned
    return gf_ellipseLength(a, b) / 4.0 - quarterLengthTo(b, a, std::numbers::pi / 2.0 - t);
  // the speed is a sqrt(1 - m sin^2 phi), counted from the other end of the quarter
  double const phi = std::numbers::pi / 2.0 - t;
  double const s = std::sin(phi), c = std::cos(phi);
  double const ratio = b / a, rest = ratio * ratio;  // rest = 1 - m
  double const m = (1.0 - ratio) * (1.0 + ratio);
  double const q = c * c + rest * s * s;
  // the form whose terms are all positive (NIST Digital Library of Mathematical Functions, 19.25.10)
  double const fromOther = a * (rest * s * carlsonRF(c * c, q, 1.0) +
                                m * rest * s * s * s / 3.0 * carlsonRD(c * c, 1.0, q) + m * s * c / std::sqrt(q));
  return gf_ellipseLength(a, b) / 4.0 - fromOther;
}

}  // namespace

double gf_ellipseLength(double a, double b)
{
  double const longer = std::max(a, b), shorter = std::min(a, b);
  if (!(longer > 0.0) || !std::isfinite(longer))
    return 4.0 * longer;
  if (shorter == 0.0)
    return 4.0 * longer;
  double x = 1.0, y = shorter / longer;
  double sum = 1.0 - (1.0 - y) * (1.0 + y) / 2.0;  // 1 minus half the squares of the differences, doubled each round
  double weight = 1.0;
  constexpr double converged = 4.0 * std::numeric_limits<double>::epsilon();
  for (int i = 0; i < 64 && std::abs(x - y) > converged * x; ++i) {
    double const difference = (x - y) / 2.0;
    double const mean = (x + y) / 2.0;
    y = std::sqrt(x * y);
    x = mean;
    sum -= weight * difference * difference;
    weight *= 2.0;
  }
  return longer * 2.0 * std::numbers::pi / x * sum;
}

double gf_ellipseLengthTo(double a, double b, double t)
{
  double const quarter = std::numbers::pi / 2.0;
  double const whole = gf_ellipseLength(a, b);
  double const quarters = std::floor(t / quarter);
  double const rest = std::clamp(t - quarters * quarter, 0.0, quarter);
  if (!std::isfinite(quarters))
    return std::numeric_limits<double>::quiet_NaN();
  bool const isOdd = std::fmod(quarters, 2.0) != 0.0;  // there the axes change places
  double const within = isOdd ? quarterLengthTo(b, a, rest) : quarterLengthTo(a, b, rest);
  return quarters * (whole / 4.0) + within;
}
