#include "foundation/xform.h"

gxVector<2> gxXform<2>::invMapPoint(gxVector<2> const &p) const
{
  return matrix_.inverse() * (p - translation_);
}

gxRadian gxXform<2>::mapAngle(gxRadian a) const
{
  return (matrix_ * gxVector<2>(1.0, a)).angle();
}

gxRadian gxXform<2>::invMapAngle(gxRadian a) const
{
  return (matrix_.inverse() * gxVector<2>(1.0, a)).angle();
}

gxXform<2> gxXform<2>::inverse() const
{
  gxMatrix<2> const m = matrix_.inverse();
  return {m, -(m * translation_)};
}
