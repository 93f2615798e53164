#include "examples/demo/scene.h"

#include "backends/pels/pelsurface.h"
#include "foundation/affinerect.h"
#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc.h"
#include "foundation/genrect.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/netpbm.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"

#ifdef GXDISPLAY_HAVE_PNG
#include "backends/png/pngfile.h"
#endif

#include <cmath>

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;

gxColor grey(int v)
{
  auto const c = static_cast<unsigned char>(v);
  return gxColor(c, c, c);
}

gxGraphicProps pen(gxColor const &color, long width, bool fill = false)
{
  return gxGraphicProps(color, width, gxGraphicProps::penSolid, fill);
}

constexpr gxVector<2> bodyCenter(320, 240);
constexpr gxVector<2> bodySize(200, 200);
constexpr gxRadian bodyAngle(0.08);

/// The centres of the pins, counted round the body; and the turn of each.
struct Pin {
  gxVector<2> center;
  gxRadian angle;
};

std::vector<Pin> pins()
{
  std::vector<Pin> all;
  for (int side = 0; side < 4; ++side)
    for (int i = 0; i < 8; ++i) {
      gxRadian const turn(bodyAngle.value() + side * std::acos(0.0));
      gxXform<2> const place(gxMatrix<2>(turn, turn, 1.0, 1.0), bodyCenter);
      all.push_back({place * gxVector<2>(bodySize.x() / 2 + 16, (i - 3.5) * 22), turn});
    }
  return all;
}
}  // namespace

gxPelBuffer<unsigned char> boardPicture()
{
  gxPelSurface surface(640, 480);
  gxUITablet board(&surface.imageScope(), nullptr);
  board.visible(true);
  board.set(grey(58), image);
  for (int i = 0; i < 9; ++i) {
    double const y = 20 + 55 * i;
    board.draw(gxPolyline({{0, y}, {90, y}, {130, y + 40}, {640, y + 40}}, false), pen(grey(78), 7), image);
  }
  for (int i = 0; i < 40; ++i)
    board.draw(gxCircle({30.0 + 145 * (i % 5), 24.0 + 62 * (i / 5)}, 5), pen(grey(150), 3), image);
  for (Pin const &pin : pins()) {
    board.draw(gxGenRect(pin.center, {44, 13}, pin.angle, {0, 0}), pen(grey(120), 1, true), image);
    board.draw(gxGenRect(pin.center, {34, 9}, pin.angle, {0.3, 0.9}), pen(grey(215), 1, true), image);
  }
  board.draw(gxGenRect(bodyCenter, bodySize, bodyAngle, {0.04, 0.04}), pen(grey(28), 1, true), image);
  board.draw(gxGenRect(bodyCenter, bodySize * 0.94, bodyAngle, {0.04, 0.04}), pen(grey(40), 1, true), image);
  gxXform<2> const body(gxMatrix<2>(bodyAngle, bodyAngle, 1.0, 1.0), bodyCenter);
  board.draw(gxCircle(body * gxVector<2>(-78, -78), 8), pen(grey(90), 1, true), image);

  gxPelBuffer_const<gxPackedRGB32Pel> const picture = surface.picture();
  gxPelBuffer<unsigned char> pels(640, 480);
  for (long y = 0; y < 480; ++y)
    for (long x = 0; x < 640; ++x)
      pels.put(x, y, picture.get(x, y).green());
  return pels;
}

gxPelBuffer<unsigned char> readPicture(std::string const &path)
{
#ifdef GXDISPLAY_HAVE_PNG
  if (path.ends_with(".png") || path.ends_with(".PNG"))
    return gfReadPngGrey(path);
#endif
  return gfReadNetpbmGrey(path);
}

Drawing inspectionResult(gxPair<long> const &size)
{
  Drawing d;
  gxVector<2> const all(size);
  gxGraphicProps dashed = pen(gxColor::yellowColor(), 1);
  dashed.penStyle(gxGraphicProps::penDash);
  d.push_back([=](gxUITablet &t) { t.draw(gxRect(all * 0.06, all * 0.88), dashed, overlay); });
  for (Pin const &pin : pins()) {
    d.push_back([=](gxUITablet &t) {
      t.draw(gxGenRect(pin.center, {38, 13}, pin.angle, {0, 0}), pen(gxColor::greenColor(), 1), overlay);
    });
    d.push_back([=](gxUITablet &t) { t.draw(gxPoint(pin.center), pen(gxColor::redColor(), 3), overlay); });
  }
  d.push_back([=](gxUITablet &t) {
    t.draw(gxGenRect(bodyCenter, bodySize, bodyAngle, {0.04, 0.04}), pen(gxColor::cyanColor(), 2), overlay);
  });
  d.push_back([=](gxUITablet &t) { t.draw(gxLine(bodyAngle, bodyCenter), pen(gxColor::magentaColor(), 1), overlay); });
  d.push_back([=](gxUITablet &t) {
    t.draw(gxLine(gxRadian(bodyAngle.value() + std::acos(0.0)), bodyCenter), pen(gxColor::magentaColor(), 1), overlay);
  });
  d.push_back([=](gxUITablet &t) { t.draw(gxCircle(bodyCenter, 24), pen(gxColor::orangeColor(), 2), overlay); });
  d.push_back([=](gxUITablet &t) {
    t.draw(gxEllipse(gxVector<2>(bodyCenter), {60, 36}, bodyAngle), pen(gxColor::orangeColor(), 1), overlay);
  });
  d.push_back([=](gxUITablet &t) {
    t.draw(std::string("32 pins, turned by 4.6 deg"), gxPoint(all.x() / 2, 8), gxColor::whiteColor(),
           gxColor::passColor(), gxUIFormat(gxUIFormat::topCenter), overlay);
  });
  return d;
}

Drawing penChart()
{
  Drawing d;
  gxGraphicProps::gePenStyle const styles[] = {gxGraphicProps::penSolid, gxGraphicProps::penDash,
                                               gxGraphicProps::penDot, gxGraphicProps::penDashDot,
                                               gxGraphicProps::penDashDotDot};
  gxGraphicProps::gePenJoin const joins[] = {gxGraphicProps::joinRound, gxGraphicProps::joinBevel,
                                             gxGraphicProps::joinMiter};
  gxGraphicProps::gePenEndCap const caps[] = {gxGraphicProps::capRound, gxGraphicProps::capSquare,
                                              gxGraphicProps::capFlat};
  int const widths[] = {1, 2, 3, 5, 9};
  for (int w = 0; w < 5; ++w)
    for (int s = 0; s < 5; ++s) {
      gxGraphicProps props = pen(gxColor::yellowColor(), widths[w]);
      props.penStyle(styles[s]);
      double const y = 24.0 + 22 * (5 * w + s) * 0.75;
      d.push_back([=](gxUITablet &t) { t.draw(gxLineSeg({20, y}, {300, y + 6}), props, overlay); });
    }
  for (int j = 0; j < 3; ++j)
    for (int c = 0; c < 3; ++c) {
      gxGraphicProps props = pen(gxColor::cyanColor(), 15);
      props.penJoin(joins[j]);
      props.penEndCap(caps[c]);
      gxVector<2> const o(350.0 + 95 * c, 60.0 + 130 * j);
      gxPolyline const zigzag({o, o + gxVector<2>(60, 20), o + gxVector<2>(5, 60)}, false);
      d.push_back([=](gxUITablet &t) { t.draw(zigzag, props, overlay); });
      d.push_back([=](gxUITablet &t) { t.draw(zigzag, pen(gxColor::redColor(), 1), overlay); });
    }
  return d;
}

Drawing shapeChart()
{
  Drawing d;
  auto const cell = [](int i) { return gxVector<2>(60.0 + 120 * (i % 5), 50.0 + 100 * (i / 5)); };
  auto const thin = pen(gxColor::greenColor(), 1);
  auto const wide = pen(gxColor::orangeColor(), 4);
  auto const full = pen(gxColor::blueColor(), 1, true);
  auto const add = [&d](auto const &shape, gxGraphicProps const &props) {
    d.push_back([=](gxUITablet &t) { t.draw(shape, props, overlay); });
  };
  add(gxLineSeg(cell(0) - gxVector<2>(40, 30), cell(0) + gxVector<2>(40, 30)), wide);
  add(gxRect(cell(1) - gxVector<2>(40, 30), {80, 60}), thin);
  add(gxRect(cell(2) - gxVector<2>(40, 30), {80, 60}), full);
  add(gxCircle(cell(3), 35), wide);
  add(gxCircle(cell(4), 35), full);
  add(gxEllipse(cell(5), {45, 20}, gxRadian(0.5)), thin);
  add(gxEllipse2({45, 20}, gxRadian(-0.5), cell(6)), wide);
  add(gxEllipse(cell(7), {45, 20}, gxRadian(0.5)), full);
  add(gxEllipseArc(gxEllipse(cell(8), {40, 30}, gxRadian(0.3)), gxRadian(0.4), gxRadian(4.2)), wide);
  add(gxGenRect(cell(9), {80, 50}, gxRadian(0.3), {0.4, 0.4}), wide);
  add(gxGenRect(cell(10), {80, 50}, gxRadian(0.3), {0.4, 0.8}), full);
  add(gxAffineRectangle(cell(11), 70, 50, gxRadian(0.2), gxRadian(0.5)), thin);
  std::vector<gxVector<2>> star;
  for (int i = 0; i < 5; ++i)
    star.push_back(cell(12) + gxVector<2>(40.0, gxRadian(4.0 * i * std::acos(-1.0) / 5.0 - 0.3)));
  add(gxPolygon(star, gxPolygon::alternate), full);
  add(gxPolyline({cell(13) + gxVector<2>(-40, 20), cell(13) + gxVector<2>(-10, -30), cell(13) + gxVector<2>(10, 30),
                  cell(13) + gxVector<2>(40, -20)},
                 false),
      wide);
  add(gxEllipseAnnulusSection(
          gxEllipseAnnulus(gxEllipse(cell(14), {15, 12}, gxRadian(0)), gxEllipse(cell(14), {42, 34}, gxRadian(0))),
          gxRadian(0.3), gxRadian(3.6)),
      thin);
  for (int i = 0; i < 12; ++i)
    add(gxPoint(cell(15) + gxVector<2>(6.0 * i - 33, 12 * std::sin(i * 0.6))), pen(gxColor::redColor(), 1 + i % 4));
  return d;
}
