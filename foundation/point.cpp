#include "foundation/point.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/line.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"

gxLine gxPoint::connect(gxVector<2> const &to) const
{
  if (to == *this)
    throw gxShapesError::DegenerateShape();
  return {to - *this, *this};
}

gxRect gxPoint::boundingBox() const
{
  return {*this, {0.0, 0.0}};
}

gxArchive &operator||(gxArchive &archive, gxPoint &point)
{
  return archive || static_cast<gxVector<2> &>(point);
}

GX_SHAPE_IMPL(gx2Point, gxShape)

void gx2Point::passFields_(gxArchive &archive)
{
  archive || point_;
}

gxRect gx2Point::boundingBox() const
{
  return {gf_finite(point_), {0.0, 0.0}};
}

gxVector<2> gx2Point::nearestPoint(gxVector<2> const &) const
{
  return gf_finite(point_);
}

gxPtrHandle<gxShape> gx2Point::mapShape(gxXform<2> const &xform) const
{
  return new gx2Point(map(xform));
}

gxPtrHandle<gxShape> gx2Point::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  bool const isInside = region.within(point_);
  info.set(!isInside, !isInside);
  return isInside ? clone() : gxPtrHandle<gxShape>(new gxPolyline);
}

void gx2Point::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  params.check();
  if (static_cast<long>(result.positions().size()) + 1 > params.maxPoints())
    throw gxShapesError::SampleOverflow();
  gf_finite(point_);
  result.beginContour();
  result.append(point_);
}

void gx2Point::appendOutline(gx_Outline &) const {}
