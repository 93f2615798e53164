#pragma once

#include "foundation/outline.h"

#include <cairo.h>

#include <vector>

/// Adds contours to the path of a context, after @p xform. Curves stay curves where cairo can take them; what lies
/// farther off than its numbers reach is cut away.
/// @param areas the contours bound an area, and are cut as areas
/// False, with nothing added, if a number is not finite.
bool gf_addCairoPath(cairo_t *context, std::vector<gx_Contour> const &contours, gxXform<2> const &xform, bool areas);
