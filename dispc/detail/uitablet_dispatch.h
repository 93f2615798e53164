#pragma once

#include "dispc/uitablet.h"
#include "foundation/shape.h"
#include "foundation/xformbase.h"

// What the sources of the general drawing entry share. Internal to the tablet's sources.

/// Where a transform that bends is made linear for a shape: the middle of its box. Of a shape that is not finite any
/// point will do: it is drawn nowhere.
gxVector<2> gf_middleOf(gxShape const &shape);

/// The image of a shape under a transform, linearised at the middle of the shape where it is not linear.
template <class Shape>
auto gf_linearImage(Shape const &shape, gx2XformBase const &xform)
{
  gx2XformLinear const linear = xform.linearXform(xform.isLinear() ? gxVector<2>() : gf_middleOf(shape));
  if constexpr (requires { shape.map(linear.xform()); })
    return shape.map(linear.xform());
  else
    return shape.map(linear);
}

/// Draws a shape through the transform, if there is one, if the shape is a gxGenPoly; false if not. It lives upstairs,
/// with the polygon.
bool gf_drawIfPolygon(gxUITablet &tablet, gxShape const &shape, gx2XformBase const *xform, gxGraphicProps const &props,
                      gxUITablet::Layers layer);
