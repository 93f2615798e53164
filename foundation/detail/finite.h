#pragma once

/// @file
/// Answers of shapes. Shapes keep whatever numbers they are given; but where an answer would not be finite, because
/// the shape or the question is not or because the numbers are too large, there is none. These pass an answer on, or
/// throw gxShapesError::BadGeom.

#include "foundation/rect.h"
#include "foundation/shapeserror.h"
#include "foundation/vector.h"

#include <cmath>

inline double gf_finite(double v)
{
  if (!std::isfinite(v))
    throw gxShapesError::BadGeom();
  return v;
}

inline gxVector<2> gf_finite(gxVector<2> const &v)
{
  if (!v.isFinite())
    throw gxShapesError::BadGeom();
  return v;
}

/// By reference, since a rectangle is a shape and costs as much as one.
inline gxRect const &gf_finite(gxRect const &r)
{
  if (!r.origin().isFinite() || !r.size().isFinite())
    throw gxShapesError::BadGeom();
  return r;
}
