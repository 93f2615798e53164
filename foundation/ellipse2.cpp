#include "foundation/ellipse2.h"

#include "foundation/circle.h"
#include "foundation/detail/axes.h"
#include "foundation/detail/ellipsenearest.h"
#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <cmath>

GX_SHAPE_IMPL(gxEllipse2, gxShape)

void gxEllipse2::passFields_(gxArchive &archive)
{
  gxVector<2> radii = radii_, center = center_;
  gxRadian angle = angle_, phase = phase_;
  bool rightHanded = rightHanded_;
  archive || radii || angle || center || rightHanded || phase;
  if (radii.x() < 0.0 || radii.y() < 0.0)
    archive.fail("an ellipse of negative radius");
  radii_ = radii;
  angle_ = angle;
  center_ = center;
  rightHanded_ = rightHanded;
  phase_ = phase;
}

gxEllipse2::gxEllipse2(gx2XformLinear const &fromUnitCirc) : center_(fromUnitCirc.translation())
{
  gx_EllipseAxes const axes = gf_ellipseAxes(fromUnitCirc.matrix(), 0.0);
  radii_ = {axes.rx, axes.ry};
  angle_ = gxRadian(axes.angle);
  rightHanded_ = !axes.mirrored;
  phase_ = gxRadian(axes.phase);
}

gxEllipse2::gxEllipse2(gxCircle const &circle) : radii_(circle.radius(), circle.radius()), center_(circle.center()) {}

gxEllipse2::gxEllipse2(gxVector<2> const &radii, gxRadian angle, gxVector<2> const &center, bool rightHanded,
                       gxRadian phase)
    : radii_(radii), angle_(angle), center_(center), rightHanded_(rightHanded), phase_(phase)
{
  if (radii.x() < 0.0 || radii.y() < 0.0)
    throw gxShapesError::BadRadius();
}

gxVector<2> gxEllipse2::point(gxRadian phi) const
{
  return ellFromUnitCirc().mapPoint({1.0, phi});
}

gx2XformLinear gxEllipse2::ellFromUnitCirc() const
{
  double const c = std::cos(angle_.value()), s = std::sin(angle_.value());
  gxMatrix<2> const turnedAxes(c * radii_.x(), -s * radii_.y(), s * radii_.x(), c * radii_.y());
  double const pc = std::cos(phase_.value()), ps = std::sin(phase_.value());
  gxMatrix<2> const fromPhi = rightHanded_ ? gxMatrix<2>(pc, -ps, ps, pc) : gxMatrix<2>(pc, -ps, -ps, -pc);
  return {turnedAxes * fromPhi, center_};
}

gxEllipse2 gxEllipse2::map(gx2XformLinear const &xform) const
{
  gxEllipse2 image(*this);
  image.center_ = xform.mapPoint(center_);
  double const a = xform.matrix().element(0, 0), b = xform.matrix().element(0, 1);
  double const c = xform.matrix().element(1, 0), d = xform.matrix().element(1, 1);
  bool const isSimilar = a == d && b == -c;
  bool const isMirroredSimilar = a == -d && b == c;
  if (isSimilar || isMirroredSimilar) {  // keeps the axes, so that nothing is left to rounding but scale and angle
    gxRadian const turn(std::atan2(c, a));
    image.radii_ = radii_ * std::hypot(a, c);
    image.angle_ = isSimilar ? angle_ + turn : turn - angle_;
    image.rightHanded_ = isSimilar == rightHanded_;
    return image;
  }
  gx_EllipseAxes const axes = gf_ellipseAxes(xform.matrix() * ellFromUnitCirc().matrix(), phase_.value());
  image.radii_ = {axes.rx, axes.ry};
  image.angle_ = gxRadian(axes.angle);
  image.rightHanded_ = !axes.mirrored;
  image.phase_ = gxRadian(axes.phase);
  return image;
}

gx_ArcPiece gxEllipse2::piece() const
{
  gxXform<2> const x = ellFromUnitCirc().xform();
  return {x.translation(), x.mapVector({1.0, 0.0}), x.mapVector({0.0, 1.0})};
}

gxRect gxEllipse2::boundingBox() const
{
  return gf_finite(piece().bounds());
}

gxVector<2> gxEllipse2::nearestPoint(gxVector<2> const &p) const
{
  std::optional<gxVector<2>> const only = gf_onlyNearest(center_, radii_, angle_, p);
  return gf_finite(only ? *only : piece().nearest(p).point);
}

bool gxEllipse2::within(gxVector<2> const &p) const
{
  if (isDegenerate())
    return nearestPoint(p) == p;
  gxVector<2> const along(1.0, angle_);
  gxVector<2> const offset = p - center_;
  return std::hypot(along * offset / radii_.x(), along.cross(offset) / radii_.y()) <= 1.0;
}

gxPtrHandle<gxShape> gxEllipse2::mapShape(gxXform<2> const &xform) const
{
  return new gxEllipse2(map(xform));
}

gxPtrHandle<gxShape> gxEllipse2::reverse_() const
{
  gxEllipse2 *const turned = new gxEllipse2(*this);
  turned->rightHanded_ = !rightHanded_;
  turned->phase_ = -phase_;
  return turned;
}

void gxEllipse2::appendOutline(gx_Outline &outline) const
{
  outline.addContour(true).pieces.push_back(piece());
}
