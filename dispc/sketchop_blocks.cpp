#include "dispc/sketchop_blocks.h"

#include "dispc/detail/sketchop_impl.h"

/// Defines an op that is a view of a block, and what gives its shape.
#define GX_SKETCH_OP_OF_BLOCK(Class, Shape, getter) \
  template <class Io, class Op>                     \
  void Class::describe(Io &io, Op &op)              \
  {                                                 \
    io.template block<Shape>("", op.block_);        \
  }                                                 \
  Shape Class::getter() const                       \
  {                                                 \
    return gf_fromBlock<Shape>(block_);             \
  }                                                 \
  GX_SKETCH_OP_IMPL(Class)

GX_SKETCH_OP_OF_BLOCK(gx_UISketchOpEllipseAnnSect, gxEllipseAnnulusSection, section)
GX_SKETCH_OP_OF_BLOCK(gx_UISketchOpGenRect, gxGenRect, rect)
GX_SKETCH_OP_OF_BLOCK(gx_UISketchOpGenAnn, gxGenAnnulus, annulus)
GX_SKETCH_OP_OF_BLOCK(gx_UISketchOpAffineRect, gxAffineRectangle, rect)

template <class Io, class Op>
void gx_UISketchOpEllipseAnnSectArrowheadFlag::describe(Io &io, Op &op)
{
  io("", op.section_);
  io("arrow head", op.arrowHead_);
  io("points forward", op.arrowHeadForward_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpEllipseAnnSectArrowheadFlag)
