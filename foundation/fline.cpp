#include "foundation/fline.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/lineseg.h"
#include "foundation/rect.h"
#include "foundation/rigid.h"
#include "foundation/shapeserror.h"

GX_SHAPE_IMPL(gxFLine, gxShape)

void gxFLine::passFields_(gxArchive &archive)
{
  gxVector<2> dir = dir_;
  archive || dir || pos_;
  constexpr double tolerance = 1e-9;  // far beyond rounding; the vector itself is kept to the last bit
  if (!(std::abs(dir.len() - 1.0) <= tolerance))
    archive.fail("a line whose direction is no unit vector");
  dir_ = dir;
}

gxFLine::gxFLine(gxDegree angle, gxVector<2> const &pos)
    : dir_(gx2Rigid(angle, {}).mapVector({1.0, 0.0})), pos_(pos)  // right angles give exact directions
{
}

gxFLine::gxFLine(gxVector<2> const &from, gxVector<2> const &to) : dir_((to - from).unit()), pos_(from)
{
  if (dir_ == gxVector<2>())
    throw gxShapesError::DegenerateShape();
}

std::vector<gxVector<2>> gxFLine::intersection(gxFLine const &other) const
{
  double const sine = dir_.cross(other.dir_);
  if (sine == 0.0)
    return {};
  return {pos_ + dir_ * ((other.pos_ - pos_).cross(other.dir_) / sine)};
}

gxFLine gxFLine::map(gxXform<2> const &xform) const
{
  gxFLine image;
  image.dir_ = xform.mapVector(dir_).unit();
  image.pos_ = xform.mapPoint(pos_);
  if (image.dir_ == gxVector<2>())
    throw gxShapesError::DegenerateShape();
  return image;
}

gxRect gxFLine::boundingBox() const
{
  throw gxShapesError::InfiniteShape();
}

gxVector<2> gxFLine::nearestPoint(gxVector<2> const &p) const
{
  return gf_finite(closestPoint(p));
}

double gxFLine::perimeter() const
{
  throw gxShapesError::InfiniteShape();
}

gxPtrHandle<gxShape> gxFLine::mapShape(gxXform<2> const &xform) const
{
  return new gxFLine(map(xform));
}

gxPtrHandle<gxShape> gxFLine::reverse_() const
{
  gxFLine *const turned = new gxFLine(*this);
  turned->dir_ = -dir_;
  return turned;
}

gxPtrHandle<gxShape> gxFLine::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  return gxLineSeg::clipLine(dir_, pos_, region, info);
}

void gxFLine::appendOutline(gx_Outline &) const
{
  throw gxShapesError::InfiniteShape();
}
