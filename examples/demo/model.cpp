#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"
#include "examples/demo/pages.h"
#include "examples/demo/sheet.h"
#include "foundation/ellipsearc.h"

#include <array>
#include <cstdio>

// A device as a model: body and leads as outlines, drawn as wireframes; its parts; a copy; extensions.

namespace
{
using Poly = gxSMDGDPoly;
using Private = gxSMDGDPolyPrivate;

constexpr auto overlay = gxUITablet::overlay;

enum Part : long { bodyPart = 1, leftPart = 2, rightPart = 3 };

gxSMDGDPolyVertex corner(double x, double y, double radius, Part part, double span = 0.0)
{
  return {{x, y}, radius, gxDegree(span), 0.3, 0.3, part, gxDimTol()};
}

/// A body with a notch at the end of pin 1, in millimetres, y down.
Poly body()
{
  Poly poly("body");
  poly << corner(-2, -2.5, 0.35, bodyPart) << corner(-0.6, -2.5, 0, bodyPart) << corner(0.6, -2.5, 0, bodyPart, -180)
       << corner(2, -2.5, 0.35, bodyPart) << corner(2, 2.5, 0.35, bodyPart) << corner(-2, 2.5, 0.35, bodyPart);
  poly.close();
  return poly;
}

/// A lead that ends in a half circle, on the right or on the left side.
Poly lead(double y, double side, Part part)
{
  Poly poly("lead");
  poly << corner(side * 2.1, y - 0.25, 0, part) << corner(side * 3, y - 0.25, 0.08, part)
       << corner(side * 3, y + 0.25, 0.08, part, side * 120) << corner(side * 2.1, y + 0.25, 0, part);
  poly.close();
  return poly;
}

gxSMDGDModel device()
{
  gxSMDGDModel model("soic8");
  model << body();
  for (int pin = 0; pin < 4; ++pin) {
    double const y = -1.9 + 1.27 * pin;
    model << lead(y, -1, leftPart) << lead(y, 1, rightPart);
  }
  return model;
}

void drawModel(Sheet &sheet, gxSMDGDModel const &model, gxColor const &color, bool marks)
{
  gxGraphicProps props(color, 1, gxGraphicProps::penSolid, false);
  props.arrowHead(marks);
  for (Poly const &poly : model.polys())
    sheet.tablet.draw(Private::wireframe(poly), props, overlay);
}

void caption(Sheet &sheet, double x, double y, char const *words)
{
  sheet.panel({x, y}, 1.0);
  sheet.text(words, {0, 0}, gxColor::whiteColor(), gxUIFormat::topLeft);
}

void drawExtensions(Sheet &sheet, gxSMDGDModel const &model)
{
  gxGraphicProps const dashed(gxColor::yellowColor(), 1, gxGraphicProps::penSolid, false);
  auto const draw = [&](auto const &piece) {
    if constexpr (requires { piece.lineSeg(); })
      sheet.tablet.draw(piece.lineSeg(), dashed, overlay);
    else if (piece.angleSpan().value() != 0.0)
      sheet.tablet.draw(piece.ellipseArc(), dashed, overlay);
  };
  for (Poly const &poly : model.polys())
    for (int s = 0; s < poly.numVertices(); ++s) {
      if (!Private::isLineSegment_(poly, s)) {
        draw(Private::forwardArcSegmentExtension_(poly, s));
        draw(Private::backwardArcSegmentExtension_(poly, s));
        continue;
      }
      try {
        draw(Private::forwardLineSegmentExtension_(poly, s));
      } catch (gxException const &) {  // no extension: the walk along it was blocked at once
      }
      try {
        draw(Private::backwardLineSegmentExtension_(poly, s));
      } catch (gxException const &) {
      }
    }
}
}  // namespace

void modelChapter(Pages &pages)
{
  Sheet sheet;
  gxSMDGDModel const model = device();
  gx2Rigid leftAt;
  pages.show(
      "model", "a device as a model: wireframes, parts, a flipped copy, extensions", sheet.surface,
      &sheet.tablet.sketch(), [&] {
        sheet.panel({175, 235}, 52.0);
        drawModel(sheet, model, gxColor::greenColor(), true);
        caption(sheet, 20, 405, "marks: direction of travel, plus and minus side");

        std::array<gxColor, 3> const colors = {gxColor::greenColor(), gxColor::orangeColor(), gxColor::cyanColor()};
        for (long const part : {bodyPart, leftPart, rightPart}) {
          gxSMDGDModel pieces;
          model.subModel(part, pieces);
          gx2Rigid const at = gxSMDGDModelPrivate::position(pieces);
          if (part == leftPart)
            leftAt = at;
          sheet.panel({410, 100}, 26.0);
          drawModel(sheet, at * pieces, colors[static_cast<std::size_t>(part - 1)], false);
        }
        caption(sheet, 345, 185, "sub-models");

        sheet.panel({555, 100}, 26.0);
        drawModel(sheet, 0.7 * model.flip(), gxColor::cyanColor(), true);
        caption(sheet, 500, 185, "flipped, at 0.7");

        gxSMDGDModel extended = model;
        gxSMDGDModelPrivate::setExtensions(extended, 0.05, 0.15);
        sheet.panel({480, 320}, 34.0);
        drawModel(sheet, extended, gxColor::greenColor(), false);
        drawExtensions(sheet, extended);
        caption(sheet, 345, 430, "extensions past sharp corners");
      });
  char words[120];
  std::snprintf(words, sizeof words, "%ld outlines of %ld vertices; the left leads lie at (%.2f, %.2f)",
                model.numPolys(), model.numVertices(), leftAt.translation().x(), leftAt.translation().y());
  pages.remark(words);
}
