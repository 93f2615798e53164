#pragma once

#include "dispc/glist.h"
#include "dispc/glist_el.h"
#include "dispc/graphic_special.h"
#include "dispc/uitablet.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// One graphic of each class, with the call of the tablet that draws the same.
struct GraphicCase {
  char const *name;
  gxPtrHandle<gxGraphic> graphic;
  std::function<void(gxUITablet &, gxUITablet::Layers)> draw;
  char const *mapped;  ///< name of the class of its images

  friend std::ostream &operator<<(std::ostream &os, GraphicCase const &c) { return os << c.name; }
};

inline gxGraphicProps broadPen()
{
  gxGraphicProps props(gxColor::greenColor(), 3, gxGraphicProps::penDash, true);
  props.penJoin(gxGraphicProps::joinMiter);
  props.arrowHeadForward(false);
  return props;
}

template <class T>
GraphicCase simpleCase(char const *name, T const &item)
{
  gxGraphicProps const props = broadPen();
  return {name, new gxGraphicSimple<T>(item, props),
          [item, props](gxUITablet &t, gxUITablet::Layers layer) { t.draw(item, props, layer); }, name};
}

template <class S, class F>
GraphicCase fillCase(char const *name, S const &item, char const *mapped)
{
  gxGraphicProps const props = broadPen();
  return {name, new gxGraphicWithFill<S, F>(item, props),
          [item, props](gxUITablet &t, gxUITablet::Layers layer) { t.draw(item, props, layer); }, mapped};
}

/// Of every class, with fresh objects at each call.
inline std::vector<GraphicCase> allGraphics()
{
  gxGraphicProps const props = broadPen();
  std::vector<gxVector<2>> const zigzag = {{1, 1}, {9, 2}, {3, 7}, {8, 8}};
  gxEllipse const inner({5, 5}, {2, 1}, gxRadian(0.3)), around({5, 5}, {6, 4}, gxRadian(0.3));
  gxEllipse2 const outer({6, 4}, gxRadian(0.3), {5, 5});
  gxEllipse const ellipse({5, 6}, {3, 2}, gxRadian(0.4));
  gxEllipseAnnulusSection const section(gxEllipseAnnulus(inner, around), gxRadian(0.2), gxRadian(2.0));
  gxCross const cross({5, 5}, gxRadian(0.5), 4);
  gxUIFormat const format(7, gxUIFormat::center);
  gxPtrHandle<gxGraphicGroup> const group(new gxGraphicGroup);
  gxGraphicSimple<gxLineSeg> const line(gxLineSeg({1, 2}, {3, 4}), gxColor::redColor());
  group->items({line.clone(), nullptr, gxPtrHandle<gxGraphic>(new gxGraphicText), line.clone()}, false);
  gxHermiteSpline hermite;
  gxInterpSpline interpolating;
  gxDeBoorSpline deBoor(true);
  interpolating.points(zigzag);
  deBoor.points(zigzag);
  for (gxVector<2> const &v : zigzag)
    hermite.append(v, gxVector<2>(1, 2));
  return {
      simpleCase("gxGraphicSimple<gxPoint>", gxPoint(3, 4)),
      simpleCase("gxGraphicSimple<gx2Point>", gx2Point(gxVector<2>(3, 4))),
      simpleCase("gxGraphicSimple<gxLineSeg>", gxLineSeg({1, 2}, {8, 5})),
      simpleCase("gxGraphicSimple<gxLine>", gxLine(gxVector<2>(1, 2), gxVector<2>(3, 4))),
      simpleCase("gxGraphicSimple<gxEllipseArc>", gxEllipseArc(ellipse, gxRadian(0.5), gxRadian(2.5))),
      simpleCase("gxGraphicSimple<gxEllipseArc2>", gxEllipseArc2(outer, gxRadian(0.5), gxRadian(2.5))),
      simpleCase("gxGraphicSimple<gxGenAnnulus>",
                 gxGenAnnulus(gxGenRect({5, 5}, gxVector<2>(2, 2), gxRadian(0.1), {0, 0}),
                              gxGenRect({5, 5}, gxVector<2>(6, 6), gxRadian(0.1), {0, 0}))),
      simpleCase("gxGraphicSimple<gxCoordAxes>", gxCoordAxes({1, 1}, {5, 2}, {1, 6})),
      simpleCase("gxGraphicSimple<gxPointSet>", gxPointSet(zigzag)),
      simpleCase("gxGraphicSimple<gxAffineRectangle>", gxAffineRectangle({1, 1}, {6, 2}, {2, 7})),
      simpleCase("gxGraphicSimple<gxPolyline>", gxPolyline(zigzag, true)),
      simpleCase("gxGraphicSimple<gxPolygon>", gxPolygon(zigzag)),
      simpleCase("gxGraphicSimple<gxGenPoly>", gxGenPoly(gxRect({1, 2}, gxVector<2>(5, 6)))),
      simpleCase("gxGraphicSimple<gx2Wireframe>", gx2Wireframe(gxGenPoly(gxCircle({5, 5}, 3)), gxDimTol(-1, 1, 99))),
      simpleCase("gxGraphicSimple<gxLineSegSet>", gxLineSegSet({gxLineSeg({1, 2}, {3, 4}), gxLineSeg({5, 1}, {2, 8})})),
      simpleCase("gxGraphicSimple<gxBezierCurve>", gxBezierCurve(zigzag, {1, 1, 1, 1})),
      simpleCase("gxGraphicSimple<gxFLine>", gxFLine(gxDegree(30), {3, 4})),
      simpleCase("gxGraphicSimple<gxHermiteSpline>", hermite),
      simpleCase("gxGraphicSimple<gxInterpSpline>", interpolating),
      simpleCase("gxGraphicSimple<gxDeBoorSpline>", deBoor),
      fillCase<gxRect, gxGenRect>("gxGraphicWithFill<gxRect, gxGenRect>", gxRect({1, 2}, gxVector<2>(5, 6)),
                                  "gxGraphicWithFill<gxGenRect, gxGenRect>"),
      fillCase<gxCircle, gxEllipse2>("gxGraphicWithFill<gxCircle, gxEllipse2>", gxCircle({5, 5}, 3),
                                     "gxGraphicWithFill<gxEllipse2, gxEllipse2>"),
      fillCase<gxCircle, gxEllipse>("gxGraphicWithFill<gxCircle, gxEllipse>", gxCircle({5, 5}, 3),
                                    "gxGraphicWithFill<gxEllipse, gxEllipse>"),
      fillCase<gxAnnulus, gxGenAnnulus>("gxGraphicWithFill<gxAnnulus, gxGenAnnulus>",
                                        gxAnnulus(gxCircle({5, 5}, 1), gxCircle({5, 5}, 3)),
                                        "gxGraphicWithFill<gxGenAnnulus, gxGenAnnulus>"),
      fillCase<gxEllipse, gxEllipse>("gxGraphicWithFill<gxEllipse, gxEllipse>", ellipse,
                                     "gxGraphicWithFill<gxEllipse, gxEllipse>"),
      fillCase<gxEllipse2, gxEllipse2>("gxGraphicWithFill<gxEllipse2, gxEllipse2>", outer,
                                       "gxGraphicWithFill<gxEllipse2, gxEllipse2>"),
      fillCase<gxEllipseAnnulus, gxEllipseAnnulus>("gxGraphicWithFill<gxEllipseAnnulus, gxEllipseAnnulus>",
                                                   gxEllipseAnnulus(inner, around),
                                                   "gxGraphicWithFill<gxEllipseAnnulus, gxEllipseAnnulus>"),
      fillCase<gxGenRect, gxGenRect>("gxGraphicWithFill<gxGenRect, gxGenRect>",
                                     gxGenRect({5, 5}, gxVector<2>(6, 4), gxRadian(0.3), {0.5, 0.5}),
                                     "gxGraphicWithFill<gxGenRect, gxGenRect>"),
      fillCase<gxGenAnnulus, gxGenAnnulus>("gxGraphicWithFill<gxGenAnnulus, gxGenAnnulus>",
                                           gxGenAnnulus(gxGenRect({5, 5}, gxVector<2>(2, 2), gxRadian(0.1), {0, 0}),
                                                        gxGenRect({5, 5}, gxVector<2>(6, 6), gxRadian(0.1), {0, 0})),
                                           "gxGraphicWithFill<gxGenAnnulus, gxGenAnnulus>"),
      {"gxGraphicText", new gxGraphicText("ab", {3, 4}, gxColor::redColor(), gxColor::blueColor(), format, {1.9, -1.9}),
       [format](gxUITablet &t, gxUITablet::Layers layer) {
         t.drawStart({3, 4}, layer);
         t.moveToRelPels(1, -1, layer);
         t.draw("ab", t.drawPointArg(), gxColor::redColor(), gxColor::blueColor(), format, layer);
       },
       "gxGraphicText"},
      {"gxGraphicPointIcon", new gxGraphicPointIcon({3, 4}, props),
       [props](gxUITablet &t, gxUITablet::Layers layer) {
         t.drawPointIcon({3, 4}, props, layer);
       },
       "gxGraphicPointIcon"},
      {"gxGraphicCross", new gxGraphicCross(cross, props),
       [cross, props](gxUITablet &t, gxUITablet::Layers layer) { t.draw(cross, props, layer); }, "gxGraphicCross"},
      {"gxGraphicEllipseAnnulusSection", new gxGraphicEllipseAnnulusSection(section, props),
       [section, props](gxUITablet &t, gxUITablet::Layers layer) { t.draw(section, props, layer); },
       "gxGraphicEllipseAnnulusSection"},
      {"gxGraphicGroup", group,
       [line](gxUITablet &t, gxUITablet::Layers layer) {
         t.draw(line.item(), line.props(), layer);
         t.drawStart({0, 0}, layer);
         t.moveToRelPels(0, 0, layer);
         t.draw("", t.drawPointArg(), gxGraphicProps().penColor(), gxColor(0), gxUIFormat(), layer);
         t.draw(line.item(), line.props(), layer);
       },
       "gxGraphicGroup"},
  };
}
