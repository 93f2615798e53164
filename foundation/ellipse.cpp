#include "foundation/ellipse.h"

#include "foundation/circle.h"
#include "foundation/detail/axes.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <cmath>

namespace
{

/// The record of the ellipse that @p fromUnit makes of the unit circle.
gxEllipse::gxEllipseGeom imageOfUnitCircle(gxVector<2> const &center, gxMatrix<2> const &fromUnit, gxRadian &phase)
{
  gx_EllipseAxes const axes = gf_ellipseAxes(fromUnit, 0.0);
  gxEllipse::gxEllipseGeom geom;
  geom.center = center;
  geom.radii = {axes.rx, axes.ry};
  geom.angle = gxRadian(axes.angle);
  geom.reversed = axes.mirrored ? 1 : 0;
  phase = gxRadian(axes.phase);
  return geom;
}

}  // namespace

gxEllipse::gxEllipse(gxCircle const &circle) : gxEllipse(circle.center(), {circle.radius(), circle.radius()}, {}) {}

gxEllipse::gxEllipse(gxEllipseGeom const &geom) : gxEllipse(geom.center, geom.radii, geom.angle)
{
  isReversed(geom.reversed != 0);
}

gxEllipse::gxEllipse(gxEllipseUnit const &unit)
{
  gxRadian phase;
  *this = gxEllipse(imageOfUnitCircle(unit.center(), unit.matrix().inverse(), phase));
}

gxEllipse::gxEllipse(gxVector<2> const &center, gxVector<2> const &radii, gxRadian angle)
{
  if (radii.x() < 0.0 || radii.y() < 0.0)
    throw gxShapesError::BadRadius();
  geom_.center = center;
  geom_.radii = radii;
  geom_.angle = angle;
  geom_.degenerate = radii.x() == 0.0 || radii.y() == 0.0 ? 1 : 0;
}

gxEllipse::gxEllipseUnit gxEllipse::unit() const
{
  return {geom_.center, fromUnit().matrix().inverse()};
}

gxXform<2> gxEllipse::fromUnit() const
{
  double const c = std::cos(geom_.angle.value()), s = std::sin(geom_.angle.value());
  double const rx = geom_.radii.x(), ry = isReversed() ? -geom_.radii.y() : geom_.radii.y();
  return {gxMatrix<2>(c * rx, -s * ry, s * rx, c * ry), geom_.center};
}

gxVector<2> gxEllipse::point(gxRadian t) const
{
  return fromUnit() * gxVector<2>(1.0, t);
}

gxEllipse gxEllipse::map(gxXform<2> const &xform) const
{
  gxRadian phase;
  return map(xform, phase);
}

gxEllipse gxEllipse::map(gxXform<2> const &xform, gxRadian &phase) const
{
  double const a = xform.matrix().element(0, 0), b = xform.matrix().element(0, 1);
  double const c = xform.matrix().element(1, 0), d = xform.matrix().element(1, 1);
  bool const isSimilar = a == d && b == -c;
  if (!isSimilar && !(a == -d && b == c))
    return gxEllipse(imageOfUnitCircle(xform * geom_.center, xform.matrix() * fromUnit().matrix(), phase));
  // a similarity keeps the axes, so that nothing is left to rounding but scale and angle
  gxRadian const turn(std::atan2(c, a));
  phase = gxRadian();
  gxEllipse image(xform * geom_.center, geom_.radii * std::hypot(a, c),
                  isSimilar ? geom_.angle + turn : turn - geom_.angle);
  image.isReversed(isSimilar == isReversed());
  return image;
}

gx_ArcPiece gxEllipse::piece(gxRadian start, gxRadian span) const
{
  gxXform<2> const x = fromUnit();
  return {x.translation(), x.mapVector({1.0, 0.0}), x.mapVector({0.0, 1.0}), start.value(), span.value()};
}

gxRect gxEllipse::boundingBox() const
{
  return piece(gxRadian(), gxRadian(gf_turnRadians)).bounds();
}

gxVector<2> gxEllipse::nearestPoint(gxVector<2> const &p) const
{
  return piece(gxRadian(), gxRadian(gf_turnRadians)).nearest(p).point;
}

double gxEllipse::distToPoint(gxVector<2> const &p) const
{
  return p.distance(nearestPoint(p));
}

double gxEllipse::perimeter() const
{
  return piece(gxRadian(), gxRadian(gf_turnRadians)).lengthTo(1.0);
}

gxArchive &operator||(gxArchive &archive, gxEllipse &ellipse)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxEllipse");
  gxVector<2> center = ellipse.center(), radii = ellipse.radii();
  gxRadian angle = ellipse.angle();
  bool reversed = ellipse.isReversed();
  archive || center || radii || angle || reversed;
  if (archive.isLoading()) {
    if (radii.x() < 0.0 || radii.y() < 0.0)
      archive.fail("an ellipse of negative radius");
    ellipse = gxEllipse(center, radii, angle);
    ellipse.isReversed(reversed);
  }
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxEllipse const &e)
{
  return os << "ellipse at " << e.center() << " of radii " << e.radii() << " turned by " << e.angle()
            << (e.isReversed() ? ", reversed" : "");
}
