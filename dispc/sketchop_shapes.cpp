#include "dispc/sketchop_shapes.h"

#include "dispc/detail/sketchop_impl.h"

GX_SKETCH_OP_OF_FIELD(gx_UISketchOpPoint, point_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpPointIcon, point_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpLineSeg, segment_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpLine, line_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpCircle, circle_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpEllipse, ellipse_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpEllipseArc, arc_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpCoordAxes, axes_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpRect, rect_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpCross, cross_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpEllipse2, ellipse_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpEllipseArc2, arc_)
GX_SKETCH_OP_OF_FIELD(gx_UISketchOpClipRect, rect_)
