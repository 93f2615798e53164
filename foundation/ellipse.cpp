#include "foundation/ellipse.h"

#include "foundation/circle.h"
#include "foundation/detail/axes.h"
#include "foundation/detail/ellipsenearest.h"
#include "foundation/detail/finite.h"
#include "foundation/ellipse2.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <cmath>

namespace
{

/// From the plane of the unit circle to that of the ellipse, without regard to a phase and the center.
gxMatrix<2> axesMatrix(gxEllipse::gxEllipseGeom const &geom)
{
  double const c = std::cos(geom.angle.value()), s = std::sin(geom.angle.value());
  double const rx = geom.radii.x(), ry = geom.reversed != 0 ? -geom.radii.y() : geom.radii.y();
  return {c * rx, -s * ry, s * rx, c * ry};
}

/// The ellipse that a matrix makes of the unit circle, and the angle on it of the image of angle 0.
struct Image {
  gxEllipse ellipse;
  gxRadian phase;
};

Image imageOfUnitCircle(gxVector<2> const &center, gxMatrix<2> const &fromUnit)
{
  gx_EllipseAxes const axes = gf_ellipseAxes(fromUnit, 0.0);
  Image image{gxEllipse(center, {axes.rx, axes.ry}, gxRadian(axes.angle)), gxRadian(axes.phase)};
  image.ellipse.isReversed(axes.mirrored);
  return image;
}

}  // namespace

gxEllipse::gxEllipse(gxCircle const &circle) : gxEllipse(circle.center(), {circle.radius(), circle.radius()}, {}) {}

gxEllipse::gxEllipse(gxEllipseUnit const &unit)
{
  Image const image = imageOfUnitCircle(unit.center(), unit.matrix().inverse());
  *this = image.ellipse;
  phase_ = image.phase;
}

void gxEllipse::throwBadRadius()
{
  throw gxShapesError::BadRadius();
}

gxEllipse::gxEllipseUnit gxEllipse::unit() const
{
  return {geom_.center, fromUnit().matrix().inverse()};
}

gxXform<2> gxEllipse::fromUnit() const
{
  if (phase_.value() == 0.0)
    return {axesMatrix(geom_), geom_.center};
  double const c = std::cos(phase_.value()), s = std::sin(phase_.value());
  return {axesMatrix(geom_) * gxMatrix<2>(c, -s, s, c), geom_.center};
}

gxVector<2> gxEllipse::point(gxRadian t) const
{
  return fromUnit() * gxVector<2>(1.0, t);
}

gxEllipse gxEllipse::map(gxXform<2> const &xform) const
{
  double const a = xform.matrix().element(0, 0), b = xform.matrix().element(0, 1);
  double const c = xform.matrix().element(1, 0), d = xform.matrix().element(1, 1);
  bool const isSimilar = a == d && b == -c;
  gxEllipse image;
  image.phase_ = phase_;
  if (isSimilar || (a == -d && b == c)) {
    // A similarity keeps the axes, so that nothing is left to rounding but scale and angle; one that does not turn
    // either needs no functions for them.
    bool const isUpright = c == 0.0 && a > 0.0;
    gxRadian const turn(isUpright ? 0.0 : std::atan2(c, a));
    image.set(xform * geom_.center, geom_.radii * (isUpright ? a : std::hypot(a, c)),
              isSimilar ? geom_.angle + turn : turn - geom_.angle);
    image.isReversed(isSimilar == isReversed());
  } else {
    Image const general = imageOfUnitCircle(xform * geom_.center, xform.matrix() * axesMatrix(geom_));
    image.geom_ = general.ellipse.geom_;
    image.phase_ = phase_ + general.phase;
  }
  return image;
}

gx_ArcPiece gxEllipse::piece(gxRadian start, gxRadian span) const
{
  gxXform<2> const x = fromUnit();
  return {x.translation(), x.mapVector({1.0, 0.0}), x.mapVector({0.0, 1.0}), start.value(), span.value()};
}

gxRect gxEllipse::boundingBox() const
{
  return gf_finite(piece(gxRadian(), gxRadian(gf_turnRadians)).bounds());
}

gxVector<2> gxEllipse::nearestPoint(gxVector<2> const &p) const
{
  std::optional<gxVector<2>> const only = gf_onlyNearest(center(), radii(), angle(), p);
  return gf_finite(only ? *only : piece(gxRadian(), gxRadian(gf_turnRadians)).nearest(p).point);
}

double gxEllipse::distToPoint(gxVector<2> const &p) const
{
  return p.distance(nearestPoint(p));
}

bool gxEllipse::within(gxVector<2> const &p) const
{
  return gxEllipse2(radii(), angle(), center()).within(p);
}

double gxEllipse::perimeter() const
{
  return gf_finite(piece(gxRadian(), gxRadian(gf_turnRadians)).lengthTo(1.0));
}

gxArchive &operator||(gxArchive &archive, gxEllipse &ellipse)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxEllipse");
  gxVector<2> center = ellipse.center(), radii = ellipse.radii();
  gxRadian angle = ellipse.angle(), phase = ellipse.phase();
  bool reversed = ellipse.isReversed();
  archive || center || radii || angle || reversed || phase;
  if (archive.isLoading()) {
    if (radii.x() < 0.0 || radii.y() < 0.0)
      archive.fail("an ellipse of negative radius");
    ellipse = gxEllipse(center, radii, angle);
    ellipse.isReversed(reversed);
    ellipse.phase_ = phase;
  }
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxEllipse const &e)
{
  return os << "ellipse at " << e.center() << " of radii " << e.radii() << " turned by " << e.angle()
            << (e.isReversed() ? ", reversed" : "");
}
