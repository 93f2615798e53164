#include "dispc/uibitmap.h"
#include "dispc/uitablet.h"

#include "examples/demo/pages.h"
#include "examples/demo/scene.h"

#include <array>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

// Images: one picture at many scales, icons made of texts, and the labels of a segmentation over the picture.

namespace
{

constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
gxColor const backdrop(24, 24, 32);

void caption(gxUITablet &tablet, std::string const &text, gxVector<2> const &at,
             gxUIFormat::Alignment alignment = gxUIFormat::topCenter)
{
  tablet.draw(text, gxPoint(at), gxColor::whiteColor(), gxColor::passColor(), gxUIFormat(alignment), overlay);
}

using Tablets = std::vector<std::unique_ptr<gxUITablet>>;

/// A window in @p sheet that has point @p center of a picture in its middle, at a scale. It shows as long as it lives.
gxUITablet &loupe(Tablets &tablets, gxUITablet &sheet, gxUIRect const &window, gxVector<2> const &center, double scale)
{
  tablets.push_back(std::make_unique<gxUITablet>(sheet, window));
  gxUITablet &tablet = *tablets.back();
  tablet.baseMap(gxXform<2>(gxMatrix<2>(), gxVector<2>(window.sz()) * (0.5 / scale) - center));
  tablet.scaleExact({scale, scale});
  tablet.visible(true);
  return tablet;
}

void zoomStrip(Pages &pages, gxPelBuffer<unsigned char> const &picture)
{
  constexpr long side = 150, pitch = side + 10;
  gxPelSurface surface(5 * pitch + 10, 2 * (side + 30) + 10);
  gxUITablet sheet(&surface.imageScope(), &surface.overlayScope());
  sheet.visible(true);
  sheet.set(backdrop, image);
  Tablets tablets;
  pages.show("zoom_strip", "one picture at five scales, by blocks and interpolated", surface, nullptr, [&] {
    for (long row = 0; row < 2; ++row)
      for (long column = 0; column < 5; ++column) {
        double const scale = std::array{1.0 / 3.0, 1.0, 2.37, 3.0, 8.0}[static_cast<std::size_t>(column)];
        gxUIRect const window(10 + column * pitch, 10 + row * (side + 30), side, side);
        gxUITablet &tablet = loupe(tablets, sheet, window, {248, 156}, scale);
        tablet.interpolation(row == 0 ? gxUITablet::noInterpolation : gxUITablet::InterpolationModes(2));
        tablet.draw(picture, gxPoint(0, 0), false, 0, false, image);
        char text[40];
        std::snprintf(text, sizeof text, "%.3g%s", scale, row == 0 ? "" : " interpolated");
        caption(sheet, text, {static_cast<double>(window.left() + side / 2), static_cast<double>(window.bottom() + 4)});
      }
  });
}

/// Shows every pel of an icon as a square, with what a hit test answers.
void hitMap(gxUITablet &tablet, char const *pattern, gxRLEBuffer const &icon, gxPair<long> const &at)
{
  constexpr long side = 12;
  for (long y = 0; y < icon.height(); ++y)
    for (long x = 0; x < icon.width(); ++x) {
      bool const touched = gxUITablet::iconTouched(pattern, {x, y}, -1);
      tablet.set(gxUIRect(at.x() + x * side, at.y() + y * side, side - 1, side - 1),
                 touched ? gxColor::dkGreenColor() : gxColor::dkGreyColor(), overlay);
    }
}

void icons(Pages &pages)
{
  constexpr char const *flag =
      "/0......../0111...../01111111./0112222../0111111../0111...../0......../0......../+......../";
  constexpr char const *grip = "|+++++++|+00000+|+01110+|+01110+|+01110+|+00000+|+++++++|";
  constexpr char const *bolt = "*....00..*...010..*..010...*.010000.*.000110.*...010..*..010...*.010....*.00.....*";
  gxPelSurface surface(640, 240);
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.visible(true);
  tablet.set(backdrop, image);
  tablet.recordOn() = true;
  unsigned char const pass = gxColor::passColor().index();
  std::vector<unsigned char> const colors = {gxColor::whiteColor().index(), gxColor::redColor().index(),
                                             gxColor::yellowColor().index()};
  pages.show("icons", "icons at unit scale and eightfold, and what a hit test says", surface, &tablet.sketch(), [&] {
    gxPair<long> at(30, 40);
    for (char const *pattern : {flag, grip, bolt}) {
      gxUIBitmap const icon(gxUITablet::makeIcon(pattern, colors), {}, true, pass);
      auto const show = [&](gxPair<long> const &where, double scale) {
        tablet.scaleExact({scale, scale});
        gxVector<2> const corner = gxVector<2>(where) * (1.0 / scale);
        tablet.draw(icon, gxPoint(corner), icon.colorMap(), icon.passThrough(), icon.passColor(), false, overlay);
        tablet.scaleExact({1.0, 1.0});
      };
      show(at, 1.0);
      show(at + gxPair<long>(20, 0), 8.0);
      hitMap(tablet, pattern, icon, at + gxPair<long>(0, 85));
      at += gxPair<long>(130, 0);
    }
    for (long i = 0; i < 5; ++i)
      tablet.drawPointIcon(gxPoint(440.0 + 40.0 * static_cast<double>(i), 60.0),
                           std::array{gxColor::redColor(), gxColor::greenColor(), gxColor::yellowColor(),
                                      gxColor::cyanColor(), gxColor::magentaColor()}[static_cast<std::size_t>(i)],
                           overlay);
    for (long y = -9; y <= 9; ++y)
      for (long x = -9; x <= 9; ++x)
        tablet.set(gxUIRect(520 + 6 * x, 160 + 6 * y, 5, 5),
                   gxUITablet::pointIconTouched({x, y}) ? gxColor::dkGreenColor() : gxColor::dkGreyColor(), overlay);
    caption(tablet, "icons and their pels", {30, 14}, gxUIFormat::topLeft);
    caption(tablet, "the point icon and its halo", {520, 14});
  });
}

/// Numbers the bright areas of a picture from 1 on; what hangs together over sides has one number, the rest is 0.
gxPelBuffer<unsigned char> labelsOf(gxPelBuffer<unsigned char> const &picture)
{
  constexpr unsigned char bright = 190;
  gxPelBuffer<unsigned char> labels(picture.width(), picture.height());
  unsigned number = 0;
  std::vector<std::pair<long, long>> front;
  auto const visit = [&](long x, long y) {
    bool const inside = x >= 0 && y >= 0 && x < picture.width() && y < picture.height();
    if (!inside || picture.get(x, y) < bright || labels.get(x, y) != 0)
      return;
    labels.put(x, y, static_cast<unsigned char>(1 + number % 255));
    front.emplace_back(x, y);
  };
  for (long y = 0; y < picture.height(); ++y)
    for (long x = 0; x < picture.width(); ++x) {
      visit(x, y);
      if (front.empty())
        continue;
      while (!front.empty()) {
        auto const [i, j] = front.back();
        front.pop_back();
        visit(i - 1, j);
        visit(i + 1, j);
        visit(i, j - 1);
        visit(i, j + 1);
      }
      ++number;
    }
  return labels;
}

void labels(Pages &pages, gxPelBuffer<unsigned char> const &picture)
{
  gxPelSurface surface(picture.width(), picture.height());
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.visible(true);
  tablet.recordOn() = true;
  unsigned char const pass = gxColor::passColor().index();
  std::vector<unsigned char> colors(256, pass);
  std::array const names = {gxColor::redColor(),    gxColor::greenColor(), gxColor::yellowColor(),
                            gxColor::orangeColor(), gxColor::cyanColor(),  gxColor::magentaColor(),
                            gxColor::blueColor()};
  for (std::size_t i = 1; i < colors.size(); ++i)
    colors[i] = names[i % names.size()].index();
  gxUIBitmap const overlaid(gxRLEBuffer(labelsOf(picture)), colors, true, pass);
  auto const drawOn = [&](gxUITablet &t) {
    t.draw(picture, gxPoint(0, 0), false, 0, false, image);
    t.draw(overlaid, gxPoint(0, 0), overlaid.colorMap(), overlaid.passThrough(), overlaid.passColor(), false, overlay);
  };
  Tablets tablets;
  pages.show("labels", "labels as runs with a color map: whole, halved, and fourfold", surface, &tablet.sketch(), [&] {
    drawOn(tablet);
    for (double const scale : {0.5, 4.0}) {
      gxUIRect const window(scale < 1.0 ? 12 : 388, 12, 240, 150);
      gxUITablet &kid = loupe(tablets, tablet, window, {248, 156}, scale);
      kid.set(gxColor::passColor(), overlay);
      kid.set(backdrop, image);
      drawOn(kid);
      tablet.outline(window, gxColor::whiteColor(), 1, overlay);
    }
  });
}

}  // namespace

void imagesChapter(Pages &pages)
{
  gxPelBuffer<unsigned char> const picture = boardPicture();
  zoomStrip(pages, picture);
  icons(pages);
  labels(pages, picture);
}
