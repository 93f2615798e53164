#include "dispc/uitablet.h"
#include "examples/demo/pages.h"
#include "foundation/ellipseannulus.h"
#include "foundation/rect.h"

#include <string>

// What is drawn in pels, whatever the map: text by its alignments, sections with arrowheads, outlines, the pen, fills.

namespace
{

constexpr auto overlay = gxUITablet::overlay;
constexpr auto image = gxUITablet::image;

gxColor const ground(24, 24, 32);

void title(gxUITablet &t, gxPoint const &at, std::string const &text)
{
  t.draw(text, at, gxColor::ltGreyColor(), gxColor::passColor(), gxUIFormat(gxUIFormat::topLeft), overlay);
}

/// Each of the nine at its anchor, in the rectangle that the surface tells for it.
void alignments(gxUITablet &t)
{
  static char const *const names[] = {"topLeft",     "topCenter",  "topRight",     "centerLeft", "center",
                                      "centerRight", "bottomLeft", "bottomCenter", "bottomRight"};
  title(t, {10, 6}, "nine alignments, and what textRect tells of them");
  for (int i = 0; i < 9; ++i) {
    gxPoint const anchor(70 + 110 * (i % 3), 45 + 46 * (i / 3));
    gxUIFormat const format(gxUIFormat::defaultFontId(), static_cast<gxUIFormat::Alignment>(i));
    gxUIRect box;
    t.textRect(names[i], anchor, format, box, overlay);
    t.set(box, gxColor(60, 40, 90), overlay);
    t.draw(names[i], anchor, gxColor::whiteColor(), gxColor(60, 40, 90), format, overlay);
    t.draw(anchor, gxGraphicProps(gxColor::redColor(), 3, gxGraphicProps::penSolid, false), overlay);
  }
}

void fonts(gxUITablet &t)
{
  title(t, {360, 6}, "font ids 0 to 3");
  for (long id = 0; id < 4; ++id)
    t.draw("Pel 0123", {360, 30.0 + 34.0 * double(id)}, gxColor::yellowColor(), gxColor::passColor(),
           gxUIFormat(id, gxUIFormat::topLeft), overlay);
}

void sections(gxUITablet &t)
{
  title(t, {10, 186}, "sections: forward, backward, wide pen, nearly a turn, a tiny span");
  gxEllipse const inner({0, 0}, {18, 14}, gxRadian(0.2)), outer({0, 0}, {40, 30}, gxRadian(0.2));
  struct Row {
    double from, to;
    bool forward;
    long width;
  };
  Row const rows[] = {
      {0.4, 3.2, true, 1}, {0.4, 3.2, false, 1}, {2.0, 5.6, true, 3}, {0.0, 6.28, true, 1}, {1.0, 1.06, true, 1}};
  double x = 60;
  for (Row const &row : rows) {
    gxGraphicProps props(gxColor::cyanColor(), row.width, gxGraphicProps::penSolid, false);
    props.arrowHeadForward(row.forward);
    gxXform<2> const place(gxMatrix<2>(), {x, 245});
    t.draw(gxEllipseAnnulusSection(gxEllipseAnnulus(inner, outer).map(place), gxRadian(row.from), gxRadian(row.to)),
           props, overlay);
    x += 118;
  }
}

void arrowsAndOutlines(gxUITablet &t)
{
  title(t, {10, 300}, "arrowheads; outline3D, outline; drawToRelPels; fill up to a boundary");
  gxGraphicProps const props(gxColor::orangeColor(), 1, gxGraphicProps::penSolid, false);
  for (int i = 0; i < 8; ++i) {
    gxVector<2> const dir(1.0, gxRadian(0.785 * i));
    gxVector<2> const tip = gxVector<2>(60, 375) + dir * 36.0;
    t.drawStart(gxPoint(gxVector<2>(60, 375)), overlay);
    t.drawTo(gxPoint(tip), props, overlay);
    t.arrowHead(gxPoint(tip), dir, 10, props, overlay);
  }
  t.outline3D(gxUIRect(130, 330, 90, 60), gxColor::whiteColor(), gxColor::dkGreyColor(), 4, overlay);
  t.outline(gxRect({240, 330}, {90, 60}), gxColor::magentaColor(), 2, overlay);
  t.drawStart(gxPoint(350, 390), overlay);
  for (int i = 0; i < 6; ++i) {
    t.drawToRelPels(8, i % 2 ? 40 : -40, gxColor::greenColor(), overlay);
    t.drawToRelPels(6, 0, gxColor::greenColor(), overlay);
  }
  t.draw(gxEllipse({520, 360}, {50, 28}, gxRadian(0.3)), gxColor::yellowColor(), overlay, false);
  t.draw(gxEllipse({535, 360}, {20, 12}, gxRadian(0.3)), gxColor::yellowColor(), overlay, false);
  t.fill(gxPoint(490, 350), gxColor::blueColor(), gxColor::yellowColor(), gxUITablet::boundaryFill, overlay);
}

}  // namespace

void letteringChapter(Pages &pages)
{
  gxPelSurface surface(640, 430);
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.visible(true);
  tablet.recordOn() = true;
  pages.show("lettering", "text, sections and arrows, outlines, the pen, a fill", surface, &tablet.sketch(), [&] {
    tablet.set(ground, image);
    alignments(tablet);
    fonts(tablet);
    sections(tablet);
    arrowsAndOutlines(tablet);
  });
}
