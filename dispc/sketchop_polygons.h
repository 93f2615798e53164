#pragma once

#include "dispc/sketchop.h"
#include "dispc/wrfm/wirefrm.h"

/// @file
/// Op objects of polygons and wireframes. They hold the values.

/// A polygon, whether its vertices were shown or not.
class GX_API gx_UISketchOpGenPoly final : public gx_UISketchOpData
{
 public:
  gxGenPoly const &polygon() const { return polygon_; }

 private:
  gxGenPoly polygon_;

  GX_SKETCH_OP(gx_UISketchOpGenPoly);
};

/// A wireframe, without its polarity.
class GX_API gx_UISketchOpWireframe final : public gx_UISketchOpData
{
 public:
  gx2Wireframe const &wireframe() const { return wireframe_; }

 private:
  gx2Wireframe wireframe_;

  GX_SKETCH_OP(gx_UISketchOpWireframe);
};
