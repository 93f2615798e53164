#include "foundation/rigid.h"

#include <cmath>

namespace
{

gxMatrix<2> rotation(gxDegree angle)
{
  double const turned = angle.norm().value();
  if (turned == 0.0)
    return {};
  if (turned == 90.0)
    return {0.0, -1.0, 1.0, 0.0};
  if (turned == 180.0)
    return {-1.0, 0.0, 0.0, -1.0};
  if (turned == 270.0)
    return {0.0, 1.0, -1.0, 0.0};
  double const c = std::cos(gxRadian(angle).value());
  double const s = std::sin(gxRadian(angle).value());
  return {c, -s, s, c};
}

}  // namespace

gxXform<2> gx2Rigid::linear() const
{
  return {rotation(angle_), translation_};
}

gxVector<2> gx2Rigid::mapVector(gxVector<2> const &v) const
{
  return rotation(angle_) * v;
}

gx2Rigid gx2Rigid::inverse() const
{
  return {-angle_, -(rotation(-angle_) * translation_)};
}
