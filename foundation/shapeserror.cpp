#include "foundation/shapeserror.h"

#include "foundation/archive.h"

GX_EXCEPTION_IMPL(gxShapesError::Errors, gxException, Errors, 0x10001200, "a shape operation failed")

#define GX_SHAPES_ERROR(Leaf, number, text) \
  GX_EXCEPTION_IMPL(gxShapesError::Leaf, gxShapesError::Errors, Leaf, number, text)

GX_SHAPES_ERROR(NotOpenContour, 0x10001201, "the shape is not an open contour")
GX_SHAPES_ERROR(NotRegion, 0x10001202, "the shape is not a region")
GX_SHAPES_ERROR(NotContour, 0x10001203, "the shape has no outline")
GX_SHAPES_ERROR(NotReversible, 0x10001204, "the shape cannot run backward")
GX_SHAPES_ERROR(NotLinear, 0x10001205, "the transform is not linear")
GX_SHAPES_ERROR(EmptyShape, 0x10001206, "the shape has no points")
GX_SHAPES_ERROR(InfiniteShape, 0x10001207, "the shape has no bounds")
GX_SHAPES_ERROR(DegenerateShape, 0x10001208, "the shape is degenerate")
GX_SHAPES_ERROR(NoTangent, 0x10001209, "the shape has no tangent there")
GX_SHAPES_ERROR(BadCoef, 0x1000120a, "an index or coefficient is out of range")
GX_SHAPES_ERROR(BadGeom, 0x1000120b, "the geometry does not allow the operation")
GX_SHAPES_ERROR(BadParams, 0x1000120c, "the sampling parameters are not usable")
GX_SHAPES_ERROR(BadRadius, 0x1000120d, "a radius or rounding is out of range")
GX_SHAPES_ERROR(BadWeight, 0x1000120e, "a weight is not positive")
GX_SHAPES_ERROR(BadKnots, 0x1000120f, "the knots do not grow")
GX_SHAPES_ERROR(NoIntersection, 0x10001210, "there is no single point of intersection")
GX_SHAPES_ERROR(SampleOverflow, 0x10001211, "the sampling needs more points than allowed")
