#include "dispc/glist.h"
#include "dispc/glist_el.h"
#include "dispc/graphic_special.h"
#include "dispc/uitablet.h"

#include "examples/demo/pages.h"
#include "foundation/annulus.h"
#include "foundation/archive.h"
#include "foundation/circle.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/rect.h"

#include <sstream>

// One group of graphics four times: as it was built, as mapped, as a clone in another color, and out of an archive.

namespace
{

using Graphics = std::vector<gxPtrHandle<gxGraphic>>;

constexpr auto overlay = gxUITablet::overlay;

gxGraphicProps pen(gxColor const &color, long width, bool fill = false)
{
  return gxGraphicProps(color, width, gxGraphicProps::penSolid, fill);
}

/// What a tool found of a connector: a body, its pins, the axis, a search window, the name. 200 x 120, about (0, 0).
gxPtrHandle<gxGraphicGroup> connector()
{
  Graphics items = {
      gxGraphic::makeShapeGraphic(gxGenRect({0, 0}, {160, 70}, gxRadian(0.0), {0.2, 0.4}),
                                  pen(gxColor::greenColor(), 3)),
      gxGraphic::makeShapeGraphic(gxLineSeg({-95, 0}, {95, 0}), pen(gxColor::greyColor(), 1)),
      gxGraphic::makeShapeGraphic(gxAnnulus(gxCircle({-50, 0}, 8), gxCircle({-50, 0}, 16)),
                                  pen(gxColor::yellowColor(), 1)),
      new gxGraphicCross(gxCross({50, 0}, gxRadian(0.4), 12), pen(gxColor::redColor(), 2)),
      new gxGraphicPointIcon({0, 0}, gxColor::magentaColor()),
      new gxGraphicText("J7", {0, -52}, gxColor::whiteColor(), gxColor::passColor(),
                        gxUIFormat(gxUIFormat::bottomCenter), {0, 0}),
  };
  for (int i = -3; i <= 3; ++i)
    items.push_back(
        gxGraphic::makeShapeGraphic(gxRect({i * 22.0 - 6, 39}, {12, 18}), pen(gxColor::orangeColor(), 1, true)));
  gxPtrHandle<gxGraphicGroup> const group(new gxGraphicGroup);
  group->items(items, false);
  return group;
}

/// The same graphic by way of an archive.
gxPtrHandle<gxGraphic> throughArchive(gxPtrHandle<gxGraphic> const &graphic, std::size_t &bytes)
{
  std::stringstream stream;
  gxStoringArchive(stream) << graphic;
  bytes = stream.str().size();
  gxPtrHandle<gxGraphic> loaded;
  gxLoadingArchive(stream) || loaded;
  return loaded;
}

long differentPels(gxPelBuffer_const<gxPackedRGB32Pel> const &a, gxPelBuffer_const<gxPackedRGB32Pel> const &b)
{
  long n = 0;
  for (long y = 0; y < a.height(); ++y)
    for (long x = 0; x < a.width(); ++x)
      n += a.get(x, y) != b.get(x, y);
  return n;
}

/// A surface with a tablet for four quarters.
struct Sheet {
  gxPelSurface surface{640, 480};
  gxUITablet tablet{&surface.imageScope(), &surface.overlayScope()};

  Sheet()
  {
    tablet.visible(true);
    tablet.set(gxColor(24, 24, 32), gxUITablet::image);
    tablet.recordOn() = true;
  }
  void draw(gxGraphic const &graphic, int column, int row)
  {
    tablet.baseMap(gxXform<2>(gxMatrix<2>(1.3, 0, 0, 1.3), gxVector<2>(160.0 + 320 * column, 125.0 + 240 * row)));
    tablet.draw(graphic, overlay);
  }
};

void drawAll(Sheet &sheet, gxPtrHandle<gxGraphic> const &group)
{
  sheet.draw(*group, 0, 0);
  sheet.draw(*group->map(gxXform<2>(gxMatrix<2>(gxRadian(0.5), gxRadian(0.3), 0.8, 0.6), gxVector<2>())), 1, 0);
  gxPtrHandle<gxGraphic> const copy = group->clone();
  copy->props(pen(gxColor::cyanColor(), 1));
  sheet.draw(*copy, 0, 1);
}

}  // namespace

void graphicsChapter(Pages &pages)
{
  gxPtrHandle<gxGraphic> const group = connector();
  std::size_t bytes = 0;
  gxPtrHandle<gxGraphic> const loaded = throughArchive(group, bytes);

  Sheet sheet, again;
  pages.show("graphics", "a group: built, mapped, cloned in one color, archived", sheet.surface, &sheet.tablet.sketch(),
             [&] {
               drawAll(sheet, group);
               sheet.draw(*loaded, 1, 1);
             });
  drawAll(again, loaded);
  again.draw(*group, 1, 1);
  pages.remark("drawn again with the archived group (" + std::to_string(bytes) + " bytes) in place of the built one: " +
               std::to_string(differentPels(sheet.surface.picture(), again.surface.picture())) + " pels differ");
}
