#include "foundation/line.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/lineseg.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"

gxRect gx_EndlessLine::boundingBox() const
{
  throw gxShapesError::InfiniteShape();
}

gxVector<2> gx_EndlessLine::nearestPoint(gxVector<2> const &p) const
{
  if (!hasTangent())
    throw gxShapesError::DegenerateShape();
  gxVector<2> const along = dir_.unit();
  return gf_finite(pos_ + along * (along * (p - pos_)));
}

double gx_EndlessLine::perimeter() const
{
  throw gxShapesError::InfiniteShape();
}

gxPtrHandle<gxShape> gx_EndlessLine::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  if (!hasTangent())
    throw gxShapesError::DegenerateShape();
  // the foot of the box's center, and from there beyond the box on both sides
  gxRect const box = region.boundingBox();
  gxVector<2> const foot = nearestPoint(box.center());
  gxVector<2> const reach = dir_.unit() * (box.center().distance(foot) + box.size().len() + 1.0);
  gxPtrHandle<gxShape> const part = gxLineSeg(foot - reach, foot + reach).clip(region, info);
  info.set(true, info.isOutside());
  return part;
}

void gx_EndlessLine::appendOutline(gx_Outline &) const
{
  throw gxShapesError::InfiniteShape();
}

GX_SHAPE_IMPL(gxLine, gxShape)

void gxLine::passFields_(gxArchive &archive)
{
  archive || pos_ || dir_;
}

gxRadian gxLine::angle() const
{
  if (!hasTangent())
    throw gxShapesError::DegenerateShape();
  return dir_.angle();
}

gxVector<2> gxLine::intersect(gxLine const &other) const
{
  if (!hasTangent() || !other.hasTangent())
    throw gxShapesError::DegenerateShape();
  // unit directions, so that very long or very short ones neither overflow nor vanish in the product
  gxVector<2> const along = dir_.unit();
  gxVector<2> const across = other.dir_.unit();
  double const sine = along.cross(across);
  if (sine == 0.0)
    throw gxShapesError::NoIntersection();
  return pos_ + along * ((other.pos_ - pos_).cross(across) / sine);
}

gxPtrHandle<gxShape> gxLine::mapShape(gxXform<2> const &xform) const
{
  return new gxLine(map(xform));
}

gxPtrHandle<gxShape> gxLine::reverse_() const
{
  return new gxLine(-dir_, pos_);
}
