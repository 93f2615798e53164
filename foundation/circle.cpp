#include "foundation/circle.h"

#include "foundation/detail/finite.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

GX_SHAPE_IMPL(gxCircle, gxShape)

void gxCircle::passFields_(gxArchive &archive)
{
  gxVector<2> center = center_;
  double radius = radius_;
  archive || center || radius;
  if (radius < 0.0)
    archive.fail("a circle of negative radius");
  center_ = center;
  radius_ = radius;
}

gxCircle::gxCircle(gxVector<2> const &center, double radius) : center_(center), radius_(radius)
{
  if (radius < 0.0)
    throw gxShapesError::BadRadius();
}

void gxCircle::radius(double v)
{
  if (v < 0.0)
    throw gxShapesError::BadRadius();
  mutating();
  radius_ = v;
}

gxEllipse gxCircle::map(gxXform<2> const &xform) const
{
  return gxEllipse(*this).map(xform);
}

gxRect gxCircle::boundingBox() const
{
  gxVector<2> const half(radius_, radius_);
  return gf_finite(gxRect(center_ - half, half * 2.0));
}

gxVector<2> gxCircle::nearestPoint(gxVector<2> const &p) const
{
  gxVector<2> const towards = (p - center_).unit();
  return gf_finite(center_ + (towards == gxVector<2>() ? gxVector<2>(1.0, 0.0) : towards) * radius_);
}

double gxCircle::perimeter() const
{
  return gf_finite(gf_turnRadians * radius_);
}

bool gxCircle::within(gxVector<2> const &p) const
{
  return center_.distance(p) <= radius_;
}

gxPtrHandle<gxShape> gxCircle::mapShape(gxXform<2> const &xform) const
{
  return new gxEllipse2(gxEllipse2(*this).map(xform));
}

gxPtrHandle<gxShape> gxCircle::reverse_() const
{
  return new gxEllipse2({radius_, radius_}, gxRadian(), center_, false, gxRadian());
}

void gxCircle::appendOutline(gx_Outline &outline) const
{
  outline.addContour(true).pieces.push_back(gx_ArcPiece{center_, {radius_, 0.0}, {0.0, radius_}});
}
