#pragma once

#include "foundation/exception.h"

/// The errors of numeric operations.
class gxMathError
{
 public:
  /// Base of the family.
  GX_EXCEPTION(Errors, gxException);
  /// A matrix whose determinant is 0 or not finite has no inverse.
  GX_EXCEPTION(Singular, Errors);
  /// An iteration did not reach its bound.
  GX_EXCEPTION(NoConvergence, Errors);
};
