#include "dispc/uitablet.h"
#include "examples/demo/pages.h"
#include "foundation/affinerect.h"
#include "foundation/annulus.h"
#include "foundation/bezier.h"
#include "foundation/circle.h"
#include "foundation/coordaxes.h"
#include "foundation/cross.h"
#include "foundation/deboorspline.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"
#include "foundation/hermitespline.h"
#include "foundation/interpspline.h"
#include "foundation/lensxform.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/linesegset.h"
#include "foundation/mappedshape.h"
#include "foundation/pointset.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"
#include "foundation/shapetree.h"

#include <functional>
#include <memory>

// Every shape in a small window of its own, with its name below. The maps of the windows turn from one to the next and
// scale the axes unequally, so that circles show as ellipses and right angles as others.

namespace
{

constexpr auto overlay = gxUITablet::overlay;
constexpr auto image = gxUITablet::image;
constexpr long columns = 6, rows = 5, cellWidth = 140, cellHeight = 116, captionHeight = 18;

gxGraphicProps const &pen()
{
  static gxGraphicProps const props(gxColor::greenColor(), 2, gxGraphicProps::penSolid, false);
  return props;
}

struct Exhibit {
  char const *name;
  std::function<void(gxUITablet &)> draw;
};

template <class Shape>
Exhibit exhibit(char const *name, Shape const &shape)
{
  return {name, [shape](gxUITablet &t) { t.draw(shape, pen(), overlay); }};
}

/// All within the square from -40 to 40.
std::vector<Exhibit> exhibits()
{
  std::vector<gxVector<2>> const zigzag = {{-38, 20}, {-14, -30}, {10, 30}, {36, -22}};
  std::vector<gxVector<2>> const round = {{-30, -20}, {28, -26}, {36, 14}, {0, 34}, {-34, 16}};
  gxEllipse const ring({0, 0}, {36, 20}, gxRadian(0.3)), hole({0, 0}, {18, 10}, gxRadian(0.3));
  gxEllipse2 const oval({36, 20}, gxRadian(0.3), {0, 0});
  gxGenRect const block({0, 0}, {70, 44}, gxRadian(0.2), {0.4, 0.5}), slot({0, 0}, {36, 18}, gxRadian(0.2), {0.4, 0.5});
  gxHermiteSpline hermite;
  gxDeBoorSpline deBoor(true);
  gxInterpSpline interpolating(true);
  deBoor.points(round);
  interpolating.points(round);
  for (gxVector<2> const &p : zigzag)
    hermite.append(p, gxVector<2>(30, 20));
  gxShapeTree set;
  set.addChild(gxCircle({-18, 0}, 14));
  set.addChild(gxLineSeg({0, -30}, {34, 30}));
  gxContourTree contour(true);
  contour.addChild(gxEllipseArc2(gxEllipse2({20, 26}, gxRadian(0.0), {-6, 0}), gxRadian(1.57), gxRadian(3.14)));
  contour.addChild(gxLineSeg({-6, -26}, {34, -10}));
  contour.addChild(gxLineSeg({34, 10}, {-6, 26}));
  gxRegionTree region(gxPtrHandle_const<gxShape>(new gxCircle({0, 0}, 36)));
  region.addRegion(gxPtrHandle_const<gxShape>(new gxGenRect({-8, 0}, {26, 26}, gxRadian(0.4), {0.3, 0.3})));
  gxMappedShape const bent(gxRect({-30, -24}, {60, 48}), gx2XformLens({0, 0}, 50, -0.35));
  // The tablet draws it as its lens acts near the middle; sampled, it shows how the lens bends it.
  gxShape::gxSampleResult bentPoints;
  bent.sample(gxShape::gxSampleParams(0, 0.1, 1000, false, false), bentPoints);
  return {
      {"points",
       [](gxUITablet &t) {
         for (int i = -3; i <= 3; ++i)
           t.draw(gxPoint(i * 10, i * i * 3 - 14), pen(), overlay);
       }},
      exhibit("point set", gxPointSet(round)),
      exhibit("cross", gxCross({0, 0}, gxRadian(0.2), 24)),
      exhibit("axes", gxCoordAxes({-24, -20}, {34, -20}, {-24, 34})),
      exhibit("segment", gxLineSeg({-36, -20}, {36, 24})),
      exhibit("line", gxLine(gxVector<2>(3, 1), gxVector<2>(0, 6))),
      exhibit("segment set", gxLineSegSet({gxLineSeg({-36, -20}, {0, 20}), gxLineSeg({-10, -26}, {34, 16})})),
      exhibit("polyline", gxPolyline(zigzag, false)),
      exhibit("polygon", gxPolygon(round)),
      exhibit("rectangle", gxRect({-34, -20}, {68, 40})),
      exhibit("general rectangle", block),
      exhibit("affine rectangle", gxAffineRectangle({-34, -26}, {26, -14}, {-20, 28})),
      exhibit("circle", gxCircle({0, 0}, 32)),
      exhibit("ellipse", ring),
      exhibit("ellipse by numbers", oval),
      exhibit("elliptical arc", gxEllipseArc(ring, gxRadian(0.4), gxRadian(3.6))),
      exhibit("arc backward", gxEllipseArc2(oval, gxRadian(0.4), gxRadian(-4.2))),
      exhibit("annulus", gxAnnulus(gxCircle({0, 0}, 16), gxCircle({0, 0}, 32))),
      exhibit("general annulus", gxGenAnnulus(slot, block)),
      exhibit("elliptical annulus", gxEllipseAnnulus(hole, ring)),
      exhibit("section", gxEllipseAnnulusSection(gxEllipseAnnulus(hole, ring), gxRadian(0.5), gxRadian(2.9))),
      exhibit("Bezier curve", gxBezierCurve(zigzag, {1, 1, 3, 1})),
      exhibit("de Boor spline", deBoor),
      exhibit("interpolating spline", interpolating),
      exhibit("Hermite spline", hermite),
      exhibit("set of shapes", set),
      exhibit("contour", contour),
      exhibit("region with a hole", region),
      exhibit("through a lens", gxPolyline(bentPoints.positions(), true)),
      {"filled",
       [block](gxUITablet &t) {
         gxGraphicProps props = pen();
         props.fill(true);
         t.draw(block, props, overlay);
       }},
  };
}

/// A window that keeps what is drawn in it, and its caption.
class Window : public gxUITablet
{
 public:
  Window(gxUITablet &page, long index, Exhibit exhibit)
      : gxUITablet(page, gxUIRect(index % columns * cellWidth + 4, index / columns * cellHeight + 4, cellWidth - 8,
                                  cellHeight - 8)),
        exhibit_(std::move(exhibit))
  {
    gxRadian const turn(0.21 * double(index));
    baseMap(gxXform<2>(gxMatrix<2>(turn, turn, 1.15, 0.75),
                       gxVector<2>(cellWidth / 2.0 - 4, (cellHeight - captionHeight) / 2.0 - 4)));
    visible(true);
  }

 protected:
  void redraw_() override
  {
    long const w = scopeRect().width(), h = scopeRect().height();
    set(gxColor(24, 24, 32), image);
    exhibit_.draw(*this);
    gxColor const strip(56, 60, 84);
    set(gxUIRect(0, h - captionHeight, w, captionHeight), strip, overlay);
    draw(exhibit_.name, baseMap().inverse() * gxVector<2>(double(w) / 2.0, double(h) - captionHeight / 2.0),
         gxColor::whiteColor(), strip, gxUIFormat(gxUIFormat::center), overlay);
  }

 private:
  Exhibit exhibit_;
};

}  // namespace

void shapesChapter(Pages &pages)
{
  gxPelSurface surface(columns * cellWidth, rows * cellHeight);
  gxUITablet page(&surface.imageScope(), &surface.overlayScope());
  page.visible(true);
  std::vector<std::unique_ptr<Window>> windows;
  pages.show("every_shape", "every shape, each under a map that turns and stretches", surface, nullptr, [&] {
    page.set(gxColor(12, 12, 16), image);
    for (Exhibit const &e : exhibits())
      windows.push_back(std::make_unique<Window>(page, long(windows.size()), e));
  });
}
