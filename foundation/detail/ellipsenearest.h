#pragma once

#include "foundation/vector.h"

#include <array>

/// Angles s of points (rx cos s, ry sin s) among which are all those whose distance from @p p is a local minimum.
/// For finite input all are finite.
std::array<double, 2> gf_ellipseNearAngles(double rx, double ry, gxVector<2> const &p);
