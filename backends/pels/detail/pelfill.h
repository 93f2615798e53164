#pragma once

#include "backends/pels/detail/pelcanvas.h"
#include "foundation/export.h"
#include "foundation/vector.h"

#include <cmath>
#include <span>

/// @file
/// Areas. A pel belongs to an area if its center does. Where an outline runs through the center itself, the pel belongs
/// to the area on its right, and where that outline is level, to the area below: so areas that share an outline share
/// no pel and leave none out. Coordinates are those of the surface: pel (i, j) covers i <= x < i + 1, j <= y < j + 1.
///
/// An area with a coordinate that is not finite, or beyond gx_farthest, is empty.

inline constexpr double gx_farthest = 1e100;

/// True if both coordinates are finite and not beyond gx_farthest.
inline bool gf_isDrawable(gxVector<2> const &p)
{
  return std::abs(p.x()) <= gx_farthest && std::abs(p.y()) <= gx_farthest;
}

/// Length by a square root alone, which every machine rounds in the same way.
inline double gf_length(gxVector<2> const &v)
{
  return std::sqrt(v * v);
}

/// The first of the pels @p low to @p high whose center does not lie before @p v; high if there is none. v is a number.
inline std::int32_t gf_firstCenter(double v, std::int32_t low, std::int32_t high)
{
  double const first = v - 0.5;
  if (!(first > low))
    return low;
  if (!(first < high))
    return high;
  auto const whole = static_cast<std::int32_t>(first);
  return whole + (whole < first);
}

/// Which points a polygon that crosses itself encloses.
enum class gx_PelFillRule {
  evenOdd,  ///< those from which a ray crosses the outline an odd number of times
  winding   ///< those round which the outline turns a number of times other than 0
};

/// Fills the polygon through the points; the last one is joined to the first.
GX_API void gf_fillPolygon(gx_PelCanvas &canvas, std::span<gxVector<2> const> points, gx_PelFillRule rule);

/// The same for a convex polygon of any sense of rotation. Of one that is not convex, each row is filled from the
/// leftmost to the rightmost crossing.
GX_API void gf_fillConvex(gx_PelCanvas &canvas, std::span<gxVector<2> const> points);

/// Fills the ellipse with the point center + u cos(t) + v sin(t) on its outline; u and v are any two conjugate half
/// diameters.
GX_API void gf_fillEllipse(gx_PelCanvas &canvas, gxVector<2> const &center, gxVector<2> const &u, gxVector<2> const &v);

/// Fills a disk.
inline void gf_fillDisk(gx_PelCanvas &canvas, gxVector<2> const &center, double radius)
{
  gf_fillEllipse(canvas, center, {radius, 0.0}, {0.0, radius});
}
