#include "dispc/sketchop_areas.h"

#include "dispc/detail/sketchop_impl.h"

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gx_FormRect> &r)
{
  io("in pels", r.inPels);
  if (r.inPels)
    io("", r.pels);
  else if constexpr (Io::archives)
    io("", r.client);
  else
    gf_describeBlock(io, r.client);
}

GX_SKETCH_OP_OF_FIELD(gx_UISketchOpSet, rect_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpSetComp, rect_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpDrawStart, point_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpDrawTo, point_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpDrawToRelPels, step_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpMoveToRelPels, step_)

template <class Io, class Op>
void gx_UISketchOpSetAll::describe(Io &, Op &)
{
}
GX_SKETCH_OP_IMPL(gx_UISketchOpSetAll)

template <class Io, class Op>
void gx_UISketchOpFill::describe(Io &io, Op &op)
{
  io("in pels", op.inPels_);
  if (!op.inPels_) {
    io("seed", op.seed_);
  } else {
    if constexpr (Io::archives)
      gf_refuseVersion(gf_passVersion(io.archive(), 0), "gx_UISketchOpFill");
    io("seed", op.pelSeed_);
  }
  io("boundary", op.boundary_);
  io("type", op.type_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpFill)

template <class Io, class Op>
void gx_UISketchOpOutline3d::describe(Io &io, Op &op)
{
  io("", op.rect_);
  if (!io.version0())
    io("first", op.first_);
  else if constexpr (Io::reads)
    op.first_ = gxColor();
  io("second", op.second_);
  io("width", op.width_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpOutline3d)

template <class Io, class Op>
void gx_UISketchOpArrow::describe(Io &io, Op &op)
{
  io("tip", op.tip_);
  io("direction", op.dir_);
  io("arm", op.armLength_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpArrow)
