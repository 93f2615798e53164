#include "foundation/fline.h"

#include "foundation/geomarchive.h"
#include "foundation/rigid.h"
#include "foundation/shapeserror.h"

GX_SHAPE_IMPL(gxFLine, gxShape)

void gxFLine::passFields_(gxArchive &archive)
{
  gxVector<2> dir = dir_, pos = pos_;
  archive || dir || pos;
  constexpr double tolerance = 1e-9;  // far beyond rounding; the vector itself is kept to the last bit
  if (!(std::abs(dir.len() - 1.0) <= tolerance))
    archive.fail("a line whose direction is no unit vector");
  dir_ = dir;
  pos_ = pos;
}

gxFLine::gxFLine(gxDegree angle, gxVector<2> const &pos)
    : gx_EndlessLine(gx2Rigid(angle, {}).mapVector({1.0, 0.0}), pos)  // right angles give exact directions
{
}

gxFLine::gxFLine(gxVector<2> const &from, gxVector<2> const &to) : gx_EndlessLine((to - from).unit(), from)
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
