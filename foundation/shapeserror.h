#pragma once

#include "foundation/exception.h"

/// The errors of shapes. All derive from gxShapesError::Errors, so that a caller may catch the family.
class gxShapesError
{
 public:
  /// Base of the family.
  GX_EXCEPTION(Errors, gxException);

  // What the shape is not.
  GX_EXCEPTION(NotOpenContour, Errors);   ///< asked for the start, end or turning of what is no open contour
  GX_EXCEPTION(NotRegion, Errors);        ///< asked for the inside or handedness of what is no region
  GX_EXCEPTION(NotContour, Errors);       ///< asked for a place along the outline of what has no outline
  GX_EXCEPTION(NotReversible, Errors);    ///< asked to run backward what has one direction only
  GX_EXCEPTION(NotLinear, Errors);        ///< a linear transform was needed
  GX_EXCEPTION(EmptyShape, Errors);       ///< the shape has no points
  GX_EXCEPTION(InfiniteShape, Errors);    ///< the shape has no bounds
  GX_EXCEPTION(DegenerateShape, Errors);  ///< the shape has collapsed: coinciding ends, no direction, no area
  GX_EXCEPTION(NoTangent, Errors);        ///< the shape has no direction at the place

  // What an argument is not.
  GX_EXCEPTION(BadCoef, Errors);    ///< an index or a coefficient is out of range
  GX_EXCEPTION(BadGeom, Errors);    ///< the geometry does not allow the operation
  GX_EXCEPTION(BadParams, Errors);  ///< sampling parameters make no sense
  GX_EXCEPTION(BadRadius, Errors);  ///< a radius or rounding is negative or too large
  GX_EXCEPTION(BadWeight, Errors);  ///< a weight of a rational curve is not positive
  GX_EXCEPTION(BadKnots, Errors);   ///< knots of a spline do not grow

  // What did not come out.
  GX_EXCEPTION(NoIntersection, Errors);  ///< the lines do not meet in one point
  GX_EXCEPTION(SampleOverflow, Errors);  ///< sampling would give more points than allowed
};
