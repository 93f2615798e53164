#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"
#include "examples/demo/pages.h"
#include "examples/demo/sheet.h"
#include "foundation/pelbuf.h"

#include <cstdio>
#include <random>

// A device three ways: as a wireframe over a picture, as a synthetic image, and cut by a mask.

namespace
{
using Poly = gxSMDGDPoly;
using Private = gxSMDGDPolyPrivate;
using Buffer = gxPelBuffer<unsigned char>;

constexpr long width = 200, height = 200;

gxSMDGDPolyVertex corner(double x, double y, double radius = 0.0, double span = 0.0)
{
  return {{x, y}, radius, gxDegree(span), 0.5, 0.5, -1, gxDimTol()};
}

/// A small transistor: a body, three leads with round ends, in millimetres.
gxSMDGDModel device()
{
  gxSMDGDModel model("sot23");
  Poly body("body");
  body << corner(-1.45, -0.65, 0.2) << corner(1.45, -0.65, 0.2) << corner(1.45, 0.65, 0.2) << corner(-1.45, 0.65, 0.2);
  body.close();
  gxSMDColors dark, bright;
  dark.syntheticDefaultColor(gxColor(70, 70, 70));
  bright.syntheticDefaultColor(gxColor(225, 225, 225));
  bright.wireframeDefaultColor(gxColor::orangeColor());
  body.colors(dark);
  auto const lead = [&](double x, double side) {
    Poly poly("lead");
    poly << corner(x - 0.2, side * 0.68) << corner(x + 0.2, side * 0.68) << corner(x + 0.2, side * 1.2)
         << corner(x - 0.2, side * 1.2, 0.0, side * 120.0);
    poly.close();
    poly.colors(bright);
    return poly;
  };
  model << body << lead(-0.95, -1) << lead(0.95, -1) << lead(0, 1);
  return model;
}

/// From millimetres to pels, a little turned.
gxXform<2> pose()
{
  return {gxMatrix<2>(gxDegree(8), gxDegree(8), 55.0, 55.0), gxVector<2>(100.3, 100.6)};
}

Buffer synthetic(gxSMDGDModel const &model)
{
  Buffer buffer(width, height);
  for (long y = 0; y < height; ++y)
    std::fill_n(buffer.pointToRow(y), width, static_cast<unsigned char>(120));
  model.drawSynthetic(pose(), buffer);
  return buffer;
}

/// As a camera would have it: a bit out of focus, with uneven light and noise.
Buffer cameraPicture(gxSMDGDModel const &model)
{
  Buffer const sharp = synthetic(model);
  Buffer seen(width, height);
  std::mt19937 random(7);
  for (long y = 0; y < height; ++y)
    for (long x = 0; x < width; ++x) {
      double sum = 0.0, n = 0.0;
      for (long j = std::max(y - 2, 0L); j <= std::min(y + 2, height - 1); ++j)
        for (long i = std::max(x - 2, 0L); i <= std::min(x + 2, width - 1); ++i, n += 1.0)
          sum += sharp.get(i, j);
      double const light = 0.75 + 0.3 * static_cast<double>(x) / width;
      double const noise = static_cast<double>(random() % 17) - 8.0;
      seen.put(x, y, static_cast<unsigned char>(std::clamp(sum / n * light + noise, 0.0, 255.0)));
    }
  return seen;
}

void panel(Sheet &sheet, double x, double y, char const *words)
{
  sheet.panel({x, y + 210}, 1.0);
  sheet.text(words, {0, 0}, gxColor::whiteColor(), gxUIFormat::topLeft);
  sheet.panel({x, y}, 1.0);
}

void drawPicture(Sheet &sheet, Buffer const &picture)
{
  sheet.tablet.draw(picture, gxPoint(0, 0), false, 0, false, gxUITablet::image);
}

void drawOutlines(Sheet &sheet, gxSMDGDModel const &model)
{
  for (Poly const &poly : model.polys())
    Private::drawWireframe(poly, pose(), sheet.tablet, poly.colors().wireframeDefaultColor(), gxUITablet::overlay);
}

/// A circle that cuts through body and leads.
Poly mask()
{
  return Poly::circle(0.95, {0.45, 0.35});
}
}  // namespace

void devicesChapter(Pages &pages)
{
  Sheet sheet;
  gxSMDGDModel const model = device();
  gxSMDGDModel const inside = gxSMDGDModelPrivate::crop(model, mask(), true);
  gxSMDGDModel const outside = gxSMDGDModelPrivate::crop(model, mask(), false);
  pages.show("devices", "a device as overlay, as synthetic image, and cut by a mask", sheet.surface,
             &sheet.tablet.sketch(), [&] {
               panel(sheet, 10, 10, "wireframe over a picture");
               drawPicture(sheet, cameraPicture(model));
               drawOutlines(sheet, model);
               panel(sheet, 220, 10, "synthetic image");
               drawPicture(sheet, synthetic(model));
               panel(sheet, 430, 10, "directions and sides");
               for (Poly const &poly : model.polys())
                 poly.drawDirectionArrows(pose(), sheet.tablet, 6.0);
               drawOutlines(sheet, model);
               panel(sheet, 120, 245, "inside of a mask");
               Private::drawWireframe(mask(), pose(), sheet.tablet, gxColor::greyColor(), gxUITablet::overlay);
               drawOutlines(sheet, inside);
               panel(sheet, 330, 245, "outside of it");
               Private::drawWireframe(mask(), pose(), sheet.tablet, gxColor::greyColor(), gxUITablet::overlay);
               drawOutlines(sheet, outside);
             });
  char words[100];
  std::snprintf(words, sizeof words, "%ld outlines; the mask leaves %ld pieces inside and %ld outside",
                model.numPolys(), inside.numPolys(), outside.numPolys());
  pages.remark(words);
}
