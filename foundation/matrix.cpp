#include "foundation/matrix.h"

#include "foundation/matherror.h"

#include <cmath>

gxMatrix<2>::gxMatrix(gxRadian xRot, gxRadian yRot, double xScale, double yScale)
    : gxMatrix(xScale * std::cos(xRot.value()), -yScale * std::sin(yRot.value()), xScale * std::sin(xRot.value()),
               yScale * std::cos(yRot.value()))
{
}

gxMatrix<2> gxMatrix<2>::inverse() const
{
  if (det_ == 0.0 || !std::isfinite(det_))
    throw gxMathError::Singular();
  return {d_ / det_, -b_ / det_, -c_ / det_, a_ / det_};
}

double gxMatrix<2>::scale() const
{
  return std::sqrt(std::abs(det_));
}

gxRadian gxMatrix<2>::xRot() const
{
  return gxRadian(std::atan2(c_, a_));
}

gxRadian gxMatrix<2>::yRot() const
{
  return gxRadian(std::atan2(-b_, d_));
}
