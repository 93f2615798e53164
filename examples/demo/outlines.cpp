#include "dispc/wrfm/polyprivate.h"
#include "examples/demo/pages.h"
#include "examples/demo/sheet.h"
#include "foundation/ellipsearc.h"

#include <cstdio>

// The outline of a device: fillets, tolerances of length, and edits that it refuses.

namespace
{
using Poly = gxSMDGDPoly;
using Private = gxSMDGDPolyPrivate;

constexpr auto overlay = gxUITablet::overlay;

gxSMDGDPolyVertex corner(double x, double y, double radius, double span = 0.0, gxDimTol const &tol = gxDimTol())
{
  return {{x, y}, radius, gxDegree(span), 0.5, 0.5, -1, tol};
}

/// A body with rounded corners, a notch that marks pin 1, and a slanted side; in millimetres, y down.
Poly device()
{
  auto const offsets = [](double nominal, double below, double above) {
    return gxDimTol(nominal, below, above, gxDimTol::Offsets);
  };
  Poly poly("device");
  poly << corner(0, 0, 1.5) << corner(9, 0, 0.4, 0, offsets(9, 0.5, 0.5)) << corner(15, 0, 0.4, -180)
       << corner(24, 0, 1.5, 0, gxDimTol(9, 8.6, 9.2))
       << corner(24, 12, 3, 0, gxDimTol(12, 0.05, 0.05, gxDimTol::Percentages)) << corner(18, 17, 3)
       << corner(0, 17, -2.5, 0, offsets(18, 0.2, 0.4));
  poly.close();
  return poly;
}

/// The rounded outline, piece by piece. Fillets in another color, uncertain ones in a third.
void drawOutline(Sheet &sheet, Poly const &poly, gxColor const &color, long width)
{
  for (int v = 0; v < poly.numVertices(); ++v) {
    gxGraphicProps const pen(color, width, gxGraphicProps::penSolid, false);
    if (Private::previousSegmentIndex_(poly, v) != -1) {
      if (Private::isLineSegment_(poly, v))
        sheet.tablet.draw(Private::roundedLineSegment_(poly, v).lineSeg(), pen, overlay);
      else
        sheet.tablet.draw(Private::roundedArcSegment_(poly, v).ellipseArc(), pen, overlay);
    }
    if (Private::vertexIsRounded_(poly, v) && !Private::isEndVertex(poly, v)) {
      bool const uncertain = poly.vertex(v, false).vertexRadius() < 0.0;
      gxColor const fillet = uncertain ? gxColor::redColor() : gxColor::yellowColor();
      sheet.tablet.draw(Private::roundedArcVertex_(poly, v).ellipseArc(),
                        gxGraphicProps(fillet, width, gxGraphicProps::penSolid, false), overlay);
    }
  }
}

/// A dimension line beside each segment with a tolerance: its limits are marks before and behind the end.
void drawTolerances(Sheet &sheet, Poly const &poly)
{
  for (int s = 0; s < poly.numVertices(); ++s) {
    gxSMDDimension const d = poly.segmentDimension(s);
    if (d.minDim() == kUnsetDim || !Private::isLineSegment_(poly, s))
      continue;
    gx2SegmentLine const line = Private::lineSegment_(poly, s);
    gxVector<2> const along = (line.p2() - line.p1()).unit();
    gxVector<2> const out(along.y(), -along.x());
    gxVector<2> const from = line.p1() + out * 1.4;
    gxGraphicProps const thin(gxColor::greyColor(), 1, gxGraphicProps::penSolid, false);
    sheet.line(from, from + along * d.maxDim(), thin);
    for (double const mark : {0.0, d.minDim(), d.maxDim()})
      sheet.line(from + along * mark - out * 0.4, from + along * mark + out * 0.4,
                 gxGraphicProps(mark > 0.0 ? gxColor::orangeColor() : gxColor::greyColor(), 1, gxGraphicProps::penSolid,
                                false));
    char words[60];
    std::snprintf(words, sizeof words, "%.4g (%.4g to %.4g)", d.nomDim(), d.minDim(), d.maxDim());
    bool const upright = std::abs(along.x()) < std::abs(along.y());
    gxVector<2> const middle = from + along * (d.nomDim() / 2) + out * (upright ? -2.0 : 0.5);
    sheet.text(words, middle, gxColor::whiteColor(),
               upright         ? gxUIFormat::centerRight
               : out.y() < 0.0 ? gxUIFormat::bottomCenter
                               : gxUIFormat::topCenter);
  }
}

/// Tries to replace a vertex, and tells what became of it; the outline is drawn as it is after that.
bool showRefusal(Sheet &sheet, double top, int index, gxSMDGDPolyVertex const &v, char const *what)
{
  Poly poly = device();
  std::string refusal = "accepted";
  try {
    poly.replaceVertex(index, v);
  } catch (gxException const &e) {
    refusal = e.message();
  }
  bool const unchanged = poly == device();
  sheet.panel({400, top}, 4.2);
  gxVector<2> const at = v.point();
  gxVector<2> const old = poly.vertex(index, false).point();
  gxGraphicProps const dashed(gxColor::redColor(), 1, gxGraphicProps::penDash, false);
  sheet.line(poly.vertex(index - 1, true).point(), at, dashed);
  sheet.line(at, poly.vertex(index + 1, true).point(), dashed);
  if (v.vertexRadius() > 0.0)
    sheet.tablet.draw(gx2SegmentArc(old + gxVector<2>(-v.vertexRadius(), v.vertexRadius()), v.vertexRadius(),
                                    gxDegree(-90), gxDegree(90))
                          .ellipseArc(),
                      dashed, overlay);
  drawOutline(sheet, poly, gxColor::greenColor(), 2);
  sheet.panel({345, top}, 1.0);
  sheet.text(what, {0, 92}, gxColor::whiteColor(), gxUIFormat::topLeft);
  sheet.text(refusal, {0, 106}, gxColor::redColor(), gxUIFormat::topLeft);
  return unchanged;
}
}  // namespace

void outlinesChapter(Pages &pages)
{
  Sheet sheet;
  bool unchanged = true;
  pages.show(
      "outlines", "an outline with fillets and tolerances, and edits that it refuses", sheet.surface,
      &sheet.tablet.sketch(), [&] {
        sheet.panel({24, 80}, 11.0);
        drawOutline(sheet, device(), gxColor::greenColor(), 2);
        drawTolerances(sheet, device());
        sheet.panel({24, 80}, 1.0);
        sheet.text("fillets in yellow, an uncertain one in red", {0, 240}, gxColor::greyColor(), gxUIFormat::topLeft);
        unchanged = showRefusal(sheet, 25, 2, corner(10, 20, 0), "a corner dragged across");
        unchanged = showRefusal(sheet, 175, 3, corner(24, 0, 7), "a radius of 7") && unchanged;
        unchanged = showRefusal(sheet, 330, 4, corner(24, 14.5, 3, 0, gxDimTol(12, 11, 13)),
                                "a side of 14.5 that may have 11 to 13") &&
                    unchanged;
      });
  pages.remark(std::string("the outline after the refused edits is what it was: ") + (unchanged ? "yes" : "no"));
}
