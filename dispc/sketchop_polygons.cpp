#include "dispc/sketchop_polygons.h"

#include "dispc/detail/polygonfields.h"
#include "dispc/detail/sketchop_impl.h"
#include "dispc/detail/sketchop_table.h"
#include "dispc/uitablet.h"

// A stream has the fields of a polygon, an archive the object as it passes by itself.

GX_SKETCH_OP_OF_FIELD(gx_UISketchOpGenPoly, polygon_)

template <class Io, class Op>
void gx_UISketchOpWireframe::describe(Io &io, Op &op)
{
  if constexpr (Io::archives)
    io("", op.wireframe_);
  else
    io("", static_cast<gx_Field<Io, gxGenPoly> &>(op.wireframe_));
}
GX_SKETCH_OP_IMPL(gx_UISketchOpWireframe)

void gx_UISketchOpGenPoly::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(polygon_, header.props(), header.layer());
}

void gx_UISketchOpWireframe::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(wireframe_, header.props(), header.layer());
}

gx_UISketchOpData *gf_makeGenPolyOp()
{
  return new gx_UISketchOpGenPoly;
}

gx_UISketchOpData *gf_makeWireframeOp()
{
  return new gx_UISketchOpWireframe;
}
