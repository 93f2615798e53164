#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/detail/genpoly.h"
#include "dispc/wrfm/genpoly.h"
#include "foundation/annulus.h"
#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"
#include "foundation/polygon.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <cmath>

// Polygons of other shapes. Curves that are no circles are made in a frame where they are, and mapped.

namespace
{

constexpr gxRadian straight;

}  // namespace

gxGenPoly::gxGenPoly(gxCircle const &circle)
{
  ask_([&] { poly_ = gxSMDGDPoly::circle(circle.radius(), circle.center()); });
}

gxGenPoly::gxGenPoly(gxLineSeg const &segment)
{
  insertVertex(segment.start(), 0.0, straight);
  insertVertex(segment.end(), 0.0, straight);
}

gxGenPoly::gxGenPoly(gxRect const &rect)
{
  gxVector<2> const &o = rect.origin(), &size = rect.size();
  gxVector<2> const along(size.x(), 0.0), across(0.0, size.y());
  for (gxVector<2> const &corner : {o, o + along, o + size, o + across})
    insertVertex(corner, 0.0, straight);
  close(straight);
}

gxGenPoly::gxGenPoly(gxPolygon const &polygon)
{
  if (polygon.degen())
    throw gxShapesError::BadGeom();
  for (gxVector<2> const &p : polygon.vertices())
    insertVertex(p, 0.0, straight);
  close(straight);
}

gxGenPoly::gxGenPoly(gxEllipse const &ellipse) : gxGenPoly(gxCircle({0.0, 0.0}, 1.0))
{
  if (ellipse.degen())
    throw gxShapesError::BadGeom();
  becomeImage_(ellipse.fromUnit());
}

gxGenPoly::gxGenPoly(gxEllipse2 const &ellipse) : gxGenPoly(gxCircle({0.0, 0.0}, 1.0))
{
  becomeImage_(ellipse.ellFromUnitCirc().xform());
}

gxGenPoly::gxGenPoly(gxEllipseArc const &arc)
{
  if (arc.ellipse().degen())
    throw gxShapesError::BadGeom();
  appendArc_(gx2SegmentArc(arc));
}

gxGenPoly::gxGenPoly(gxEllipseArc2 const &arc)
{
  if (arc.ellipse().isDegenerate())
    throw gxShapesError::BadGeom();
  appendArc_(gx2SegmentArc(arc));
}

void gxGenPoly::becomeImage_(gxXform<2> const &xform)
{
  double const det = xform.matrix().det();
  if (!(std::abs(det) > 0.0) || !std::isfinite(det))
    throw gxShapesError::BadGeom();
  xform_ = xform;
  mutable_ = false;
}

// In the arc's own frame, where it is circular. A segment has two ends, so it cannot be a whole turn.
void gxGenPoly::appendArc_(gx2SegmentArc const &arc)
{
  if (!(std::abs(arc.angleSpan_.value()) < gf_turnDegrees))
    throw gxShapesError::BadGeom();
  insertVertex(arc.p1_(), 0.0, straight);
  insertVertex(arc.p2_(), 0.0, arc.angleSpan_);
  becomeImage_(arc.xform_);
}

// The roundings are quarters of ellipses; in a frame where they are circles of radius 1, the sides are 1 / rounding
// long, each way. A rounding of 1 leaves nothing of a side.
gxGenPoly::gxGenPoly(gxGenRect const &rect)
{
  gxVector<2> const &r = rect.round();
  bool const isSharp = r.x() == 0.0 || r.y() == 0.0;
  double const x = isSharp ? 1.0 : 1.0 / r.x(), y = isSharp ? 1.0 : 1.0 / r.y();
  double const rounding = isSharp ? 0.0 : 1.0;
  gxRadian const half(gf_turnRadians / 2.0);
  auto const bent = [&](gxVector<2> const &p, bool isEndOfArc) { insertVertex(p, 0.0, isEndOfArc ? half : straight); };
  if (x == 1.0 && y == 1.0 && !isSharp) {
    ask_([&] { poly_ = gxSMDGDPoly::circle(1.0, gxVector<2>()); });
  } else if (y == 1.0 && !isSharp) {
    bent({1.0 - x, -1.0}, false);
    bent({x - 1.0, -1.0}, false);
    bent({x - 1.0, 1.0}, true);
    bent({1.0 - x, 1.0}, false);
    close(half);
  } else if (x == 1.0 && !isSharp) {
    bent({1.0, 1.0 - y}, false);
    bent({1.0, y - 1.0}, false);
    bent({-1.0, y - 1.0}, true);
    bent({-1.0, 1.0 - y}, false);
    close(half);
  } else {
    for (gxVector<2> const &corner : {gxVector<2>(-x, -y), {x, -y}, {x, y}, {-x, y}})
      insertVertex(corner, rounding, straight);
    close(straight);
  }
  gxXform<2> const shape(rect.matrix(), rect.center());
  becomeImage_(shape * gxXform<2>(gxMatrix<2>(1.0 / x, 0.0, 0.0, 1.0 / y), gxVector<2>()));
}

gxGenPoly::gxGenPoly(gxEllipseAnnulusSection const &section)
{
  gxEllipseAnnulus const &annulus = section.annulus();
  if (section.isWholeTurn() || annulus.innerEllipse().degen() || annulus.outerEllipse().degen())
    throw gxShapesError::BadGeom();
  gx2SegmentArc const outer(gxEllipseArc(annulus.outerEllipse(), section.start(), section.end()));
  gxXform<2> const back = outer.xform_.inverse();
  gx2SegmentArc const inner =
      back * gx2SegmentArc(gxEllipseArc(annulus.innerEllipse(), section.start(), section.end()));
  // Circles about one centre, up to rounding, or nothing that this polygon could be.
  constexpr double nearly = 1e-9;
  double const radius = inner.radius(gxDegree(0.0));
  gxVector<2> const middle = inner.center() - outer.center_;
  if (!(std::abs(inner.radius(gxDegree(90.0)) - radius) <= nearly * radius) ||
      !(std::abs(inner.radius(gxDegree(45.0)) - radius) <= nearly * radius) ||
      !(std::abs(middle.x()) + std::abs(middle.y()) <= nearly))
    throw gxShapesError::BadGeom();
  insertVertex(outer.p1_(), 0.0, straight);
  insertVertex(outer.p2_(), 0.0, outer.angleSpan_);
  insertVertex(inner.p2(), 0.0, straight);
  insertVertex(inner.p1(), 0.0, gxRadian(-gxRadian(inner.angleSpan()).value()));
  close(straight);
  becomeImage_(outer.xform_);
}

std::vector<gxGenPoly> gxGenPoly::convert(gxAnnulus const &annulus)
{
  return {gxGenPoly(annulus.innerCircle()), gxGenPoly(annulus.outerCircle())};
}

std::vector<gxGenPoly> gxGenPoly::convert(gxGenAnnulus const &annulus)
{
  return {gxGenPoly(annulus.innerRect()), gxGenPoly(annulus.outerRect())};
}

std::vector<gxGenPoly> gxGenPoly::convert(gxEllipseAnnulus const &annulus)
{
  return {gxGenPoly(annulus.innerEllipse()), gxGenPoly(annulus.outerEllipse())};
}
