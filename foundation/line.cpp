#include "foundation/line.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/lineseg.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

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

gxRect gxLine::boundingBox() const
{
  throw gxShapesError::InfiniteShape();
}

gxVector<2> gxLine::nearestPoint(gxVector<2> const &p) const
{
  if (!hasTangent())
    throw gxShapesError::DegenerateShape();
  gxVector<2> const along = dir_.unit();
  return gf_finite(pos_ + along * (along * (p - pos_)));
}

double gxLine::perimeter() const
{
  throw gxShapesError::InfiniteShape();
}

gxPtrHandle<gxShape> gxLine::mapShape(gxXform<2> const &xform) const
{
  return new gxLine(map(xform));
}

gxPtrHandle<gxShape> gxLine::reverse_() const
{
  return new gxLine(-dir_, pos_);
}

gxPtrHandle<gxShape> gxLine::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  if (!hasTangent())
    throw gxShapesError::DegenerateShape();
  return gxLineSeg::clipLine(dir_, pos_, region, info);
}

void gxLine::appendOutline(gx_Outline &) const
{
  throw gxShapesError::InfiniteShape();
}
