#pragma once

#include "dispc/detail/pelscale.h"
#include "foundation/affine.h"

namespace gx_scale
{
/// Interpolation is worth while for sources that have this many pels each way, beyond the margins.
constexpr long leastInterpolated = 8;

/// The part of the scaled image that the axes say, interpolated bilinearly or bicubically. A sample needs 2 pels of the
/// source around it, or 3 for the bicubic kernel; where they would lie beyond the border of the source, the result is
/// @p background. @p scale is above 1.
template <class T>
gxPelBuffer<T> interpolated(gxPelBuffer_const<T> const &src, double scale, Axis const &x, Axis const &y,
                            gxAffineSamplingParams::Interpolation interpolation, T background);
}  // namespace gx_scale
