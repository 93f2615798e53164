#include "foundation/angle.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

double normWithin(double v, double turn)
{
  if (v >= 0.0 && v < turn)
    return v + 0.0;               // spares most angles a slow function
  double r = std::fmod(v, turn);  // exact, and of the sign of v
  if (r < 0.0)
    r += turn;
  return r < turn || r != r ? r + 0.0 : 0.0;  // + 0.0 turns a negative zero into 0
}

double signedNormWithin(double v, double turn)
{
  if (v > -turn / 2.0 && v <= turn / 2.0)
    return v + 0.0;
  double const r = std::remainder(v, turn);  // exact, in [-turn / 2, turn / 2]
  return r <= -turn / 2.0 ? -r : r + 0.0;
}

}  // namespace

gxRadian gxRadian::norm() const
{
  return gxRadian(normWithin(value_, gf_turnRadians));
}
gxRadian gxRadian::signedNorm() const
{
  return gxRadian(signedNormWithin(value_, gf_turnRadians));
}
gxDegree gxDegree::norm() const
{
  return gxDegree(normWithin(value_, gf_turnDegrees));
}
gxDegree gxDegree::signedNorm() const
{
  return gxDegree(signedNormWithin(value_, gf_turnDegrees));
}

bool gxAngleRange::isWithin(gxRadian const &a) const
{
  double const span = std::abs(span_.value());
  if (span >= gf_turnRadians)
    return a.value() == a.value();
  double const along = span_.value() < 0.0 ? (start_ - a).norm().value() : (a - start_).norm().value();
  // An end that was computed as start + span is met only up to the rounding of these numbers.
  double const largest = std::max({std::abs(a.value()), std::abs(start_.value()), gf_turnRadians});
  double const slack = 2.0 * std::numeric_limits<double>::epsilon() * largest;
  return along <= span + slack || along >= gf_turnRadians - slack;
}
