#include "dispc/detail/uitablet_dispatch.h"
#include "dispc/uitablet.h"
#include "foundation/affinerect.h"
#include "foundation/annulus.h"
#include "foundation/bezier.h"
#include "foundation/circle.h"
#include "foundation/deboorspline.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"
#include "foundation/hermitespline.h"
#include "foundation/interpspline.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/linesegset.h"
#include "foundation/mappedshape.h"
#include "foundation/polyline.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"
#include "foundation/xformbase.h"

#include <concepts>

// The general entry: any shape, by its class, through the transforms that lie on it.

namespace
{
using Pending = gxPtrHandle_const<gx2XformBase>;

/// One shape on its way: where it is drawn, and the transform that still has to be applied.
class Dispatch
{
 public:
  Dispatch(gxUITablet &tablet, gxGraphicProps const &props, gxUITablet::Layers layer)
      : tablet_(tablet), props_(props), layer_(layer)
  {
  }

  void draw(gxShape const &shape, Pending const &pending)
  {
    if (auto const *const mapped = dynamic_cast<gxMappedShape const *>(&shape)) {
      Pending const &own = mapped->overallMapXform();
      gxShape const &under = *mapped->underlyingShape();
      draw(under, pending.isNull() ? Pending(&*own) : Pending(gx2XformBase::compose(pending, own)));
      return;
    }
    if (auto const *const tree = dynamic_cast<gxShapeTree const *>(&shape)) {
      drawTree(*tree, pending);
      return;
    }
    // In this order; a class that is none of these is left out.
    drawFirst<gx2Point, gxLineSeg, gxLine, gxRect, gxCircle, gxAnnulus, gxEllipseArc2, gxEllipse2, gxGenRect,
              gxGenAnnulus, gxPolyline>(shape, pending) ||
        gf_drawIfPolygon(tablet_, shape, pending.rep(), props_, layer_) ||
        drawFirst<gxAffineRectangle, gxBezierCurve, gxDeBoorSpline, gxInterpSpline, gxHermiteSpline, gxEllipseAnnulus,
                  gxLineSegSet>(shape, pending);
  }

 private:
  template <class... Shape>
  bool drawFirst(gxShape const &shape, Pending const &pending)
  {
    return (drawAs<Shape>(shape, pending) || ...);
  }

  template <class Shape>
  bool drawAs(gxShape const &shape, Pending const &pending)
  {
    auto const *const s = dynamic_cast<Shape const *>(&shape);
    if (!s)
      return false;
    if (pending.isNull())
      drawOne(*s);
    else
      drawOne(gf_linearImage(*s, *pending));
    return true;
  }

  template <class Shape>
  void drawOne(Shape const &shape)
  {
    if constexpr (std::derived_from<Shape, gxCubicSpline>)
      tablet_.draw(static_cast<gxCubicSpline const &>(shape), props_, layer_);
    else
      tablet_.draw(shape, props_, layer_);
  }
  void drawOne(gxEllipseAnnulus const &annulus)
  {
    tablet_.draw(annulus.outerEllipse(), props_, layer_);
    tablet_.draw(annulus.innerEllipse(), props_, layer_);
  }

  void drawTree(gxShapeTree const &tree, Pending const &pending)
  {
    if (auto const *const region = dynamic_cast<gxRegionTree const *>(&tree))
      if (!(region->isRoot() && region->isHole()))
        draw(*region->boundary(), pending);
    auto const *const contour = dynamic_cast<gxContourTree const *>(&tree);
    long const n = tree.numChildren();
    for (long i = 0; i < n; ++i) {
      draw(*tree.child(i), pending);
      if (contour && i + 1 < n)
        closeGap(*tree.child(i), *tree.child(i + 1), pending);
    }
    if (contour && contour->isClosed() && n > 0)
      closeGap(*tree.child(n - 1), *tree.child(0), pending);
  }

  /// A line from the end of one contour to the start of the next, where they differ. A child without ends has no gap.
  void closeGap(gxShape const &from, gxShape const &to, Pending const &pending)
  {
    if (!from.isOpenContour() || !to.isOpenContour())
      return;
    gxVector<2> const end = from.endPoint();
    gxVector<2> const start = to.startPoint();
    if (!(end == start))
      draw(gxLineSeg(end, start), pending);
  }

  gxUITablet &tablet_;
  gxGraphicProps const &props_;
  gxUITablet::Layers const layer_;
};
}  // namespace

gxVector<2> gf_middleOf(gxShape const &shape)
try {
  gxRect const box = shape.boundingBox();
  return box.origin() + box.size() * 0.5;
} catch (gxShapesError::BadGeom const &) {
  return {};
}

void gxUITablet::draw(gxShape const &shape, gxGraphicProps const &props, Layers layer)
{
  Dispatch(*this, props, layer).draw(shape, nullptr);
}
