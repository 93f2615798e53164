#include "conformance/detail/rules.h"
#include "dispc/dispprop.h"
#include "foundation/lineseg.h"
#include "foundation/pelbuf.h"
#include "foundation/rlebuf.h"

#include <cmath>
#include <limits>
#include <utility>

namespace
{

gxVector<2> const cell(12, 16);

bool inPlace(gx_Check &check)
{
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe probe = check.probe();
    op.draw(probe.scope(), cell);
    gx_Picture const seen = probe.picture();
    gxUIRect const core = gf_inCell(op.core, cell) & probe.whole();
    check.expectNone(seen.like(gx_groundColor, core), seen, op.name, ": painted in ", core);
    if (!op.isBounded() || op.kind == gx_ScopeOp::text)
      continue;
    gxUIRect const box = gf_grown(gf_inCell(op.box, cell), op.kind == gx_ScopeOp::shape ? 1 : 0);
    for (gxUIRect const &side : {gxUIRect(0, 0, 64, box.top()), gxUIRect(0, box.bottom(), 64, 64),
                                 gxUIRect(0, 0, box.left(), 64), gxUIRect(box.right(), 0, 64, 64)})
      check.expectNone(seen.unlike(gx_groundColor, side), seen, op.name, ": nothing painted outside of ", box);
  }
  return true;
}

bool colors(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIRect const rect(10, 12, 20, 9);
  probe.scope().set(rect, gx_penColor);
  gx_Picture const seen = probe.picture();
  check.expectNone(seen.unlike(gx_penColor, rect), seen, "set of ", rect, ": the color in each pel");
  for (gxUIRect const &side :
       {gxUIRect(0, 0, 64, 12), gxUIRect(0, 21, 64, 64), gxUIRect(0, 0, 10, 64), gxUIRect(30, 0, 64, 64)})
    check.expectNone(seen.unlike(gx_groundColor, side), seen, "set of ", rect, ": no pel outside");
  probe.scope().set(gxColor::greenColor());
  gx_Picture const all = probe.picture();
  check.expectNone(all.unlike(gxColor::greenColor(), probe.whole()), all, "set: the color in each pel");
  return true;
}

/// An image of 5 x 4 pels, all different, as a window on a larger one.
template <class Pel, class Make>
gxPelBuffer<Pel> motley(Make make)
{
  gxPelBuffer<Pel> image(8, 7);
  for (long y = 0; y < 7; ++y)
    for (long x = 0; x < 8; ++x)
      image.put(x, y, make(static_cast<unsigned char>(30 * x + 10), static_cast<unsigned char>(30 * y + 20)));
  image.window(2, 1, 5, 4);
  return image;
}

template <class Pel>
void expectColors(gx_Check &check, char const *name, gxPelBuffer<Pel> const &image)
{
  gx_Probe probe = check.probe();
  probe.scope().draw(image, gxPoint(20, 30), false, 0);
  gx_Picture const seen = probe.picture();
  for (long y = 0; y < image.height(); ++y)
    for (long x = 0; x < image.width(); ++x) {
      Pel const pel = image.get(image.window().x() + x, image.window().y() + y);
      check.expectNone(seen.unlike(gxColor(pel.red(), pel.green(), pel.blue()), {20 + x, 30 + y, 1, 1}), seen, name,
                       ": pel (", x, ", ", y, ") of the window as (", int(pel.red()), ", ", int(pel.green()), ", ",
                       int(pel.blue()), ")");
    }
}

/// Grey images have no other color to be compared with, but brighter pels have to look brighter.
template <class Pel, class... Flag>
void expectBrighter(gx_Check &check, char const *name, int unit, Flag... flag)
{
  gxPelBuffer<Pel> image(6, 1);
  for (int x = 0; x < 6; ++x)
    image.put(x, 0, static_cast<Pel>((40 * x + 20) * unit));
  gx_Probe probe = check.probe();
  probe.scope().draw(image, gxPoint(20, 30), false, 0, flag...);
  gx_Picture const seen = probe.picture();
  for (long x = 20; x < 25; ++x)
    check.expect(seen.at(x, 30).g() < seen.at(x + 1, 30).g(),
                 check.text(int(seen.at(x, 30).g()), " and ", int(seen.at(x + 1, 30).g())), name,
                 ": brighter from left to right at ", x);
}

bool images(gx_Check &check)
{
  using Byte = unsigned char;
  expectColors(check, "32-bit color image",
               motley<gxPackedRGB32Pel>([](Byte a, Byte b) { return gxPackedRGB32Pel(a, b, 77); }));
  expectColors(check, "16-bit color image",
               motley<gxPackedRGB16Pel>([](Byte a, Byte b) { return gxPackedRGB16Pel(a, b, 77); }));
  expectBrighter<unsigned char>(check, "8-bit image", 1, false);
  expectBrighter<unsigned short>(check, "16-bit image", 257);
  gxPelBuffer<unsigned char> pattern(4, 4);
  for (long i = 0; i < 4; ++i)
    pattern.put(i, 3 - i, 1);
  gx_Probe probe = check.probe();
  probe.scope().draw(gxRLEBuffer(pattern), gxPoint(20, 30), std::vector<gxColor>{gxColor(20, 200, 60), gx_penColor},
                     false, static_cast<unsigned char>(0));
  gx_Picture const seen = probe.picture();
  for (long y = 0; y < 4; ++y)
    for (long x = 0; x < 4; ++x)
      check.expectNone(seen.unlike(x + y == 3 ? gx_penColor : gxColor(20, 200, 60), {20 + x, 30 + y, 1, 1}), seen,
                       "icon: pel (", x, ", ", y, ") by its entry of the color table");
  return true;
}

/// Two pels side by side, as wide and high as @p size; the first one is the value that lets the ground through.
template <class Pel>
gxPelBuffer<Pel> pair(long size, Pel passing, Pel other)
{
  gxPelBuffer<Pel> image(2 * size, size);
  for (long y = 0; y < size; ++y)
    for (long x = 0; x < 2 * size; ++x)
      image.put(x, y, x < size ? passing : other);
  return image;
}

template <class Draw>
void expectLeftOut(gx_Check &check, std::string const &name, Draw draw)
{
  gx_Probe probe = check.probe();
  draw(probe.scope(), gxPoint(20, 30));
  gx_Picture const seen = probe.picture();
  check.expectNone(seen.unlike(gx_groundColor, {20, 30, 4, 4}), seen, name, ": the ground, where pels are passed");
  check.expectNone(seen.like(gx_groundColor, {24, 30, 4, 4}), seen, name, ": painted, where they are not");
}

template <class Pel, class Pass, class... Flag>
void expectLeftOutOf(gx_Check &check, std::string const &name, Pel passing, Pel other, Pass pass, Flag... flag)
{
  using Scale = gxPair<double>;
  expectLeftOut(check, name,
                [=](gxUIScope &s, gxPoint const &at) { s.draw(pair(4, passing, other), at, true, pass, flag...); });
  expectLeftOut(check, name + ", reduced", [=](gxUIScope &s, gxPoint const &at) {
    s.sample(pair(8, passing, other), at, Scale(0.5, 0.5), true, pass, flag...);
  });
  expectLeftOut(check, name + ", enlarged", [=](gxUIScope &s, gxPoint const &at) {
    s.expand(pair(2, passing, other), at, Scale(2, 2), true, pass, flag..., {});
  });
}

bool transparency(gx_Check &check)
{
  using Byte = unsigned char;
  expectLeftOutOf(check, "8-bit image", Byte(7), Byte(200), Byte(7), false);
  expectLeftOutOf(check, "16-bit image", static_cast<unsigned short>(700), static_cast<unsigned short>(50000),
                  static_cast<unsigned short>(700));
  gxPackedRGB16Pel const low(0, 0, 248), high(248, 72, 24);
  expectLeftOutOf(check, "16-bit color image", low, high, low.value());
  gxPackedRGB32Pel const blue(0, 0, 250), red(240, 70, 20);
  expectLeftOutOf(check, "32-bit color image", blue, red, static_cast<unsigned long>(blue.value()));
  gxRLEBuffer const runs(pair<Byte>(4, 0, 1));
  expectLeftOut(check, "runs", [&](gxUIScope &s, gxPoint const &at) {
    s.draw(runs, at, std::vector<Byte>{0, 1}, true, Byte(0));
  });
  expectLeftOut(check, "icon", [&](gxUIScope &s, gxPoint const &at) {
    s.draw(runs, at, std::vector<gxColor>{gx_groundColor, gx_penColor}, true, Byte(0));
  });
  return true;
}

/// An image of 3 x 3 blocks of pels, whose colors differ from block to block.
template <class Pel, class Make>
gxPelBuffer<Pel> blocks(long size, Make make)
{
  gxPelBuffer<Pel> image(3 * size, 3 * size);
  for (long y = 0; y < 3 * size; ++y)
    for (long x = 0; x < 3 * size; ++x)
      image.put(x, y, make(static_cast<unsigned char>(80 * (x / size) + 30 * (y / size) + 10)));
  return image;
}

/// Blocks of 4 x 4 pels, drawn as they are, reduced to that and enlarged to that, by factors of both kinds.
template <class Pel, class Make, class... Flag>
void expectSameScaled(gx_Check &check, char const *name, Make make, Flag... flag)
{
  gxPoint const at(20, 30);
  auto const picture = [&](auto draw) {
    gx_Probe probe = check.probe();
    draw(probe.scope());
    return probe.picture();
  };
  auto const small = blocks<Pel>(1, make), unit = blocks<Pel>(4, make), large = blocks<Pel>(8, make);
  gx_Picture const rule = picture([&](gxUIScope &s) { s.draw(unit, at, false, 0, flag...); });
  auto const expect = [&](char const *how, auto draw) {
    gx_Picture const seen = picture(draw);
    check.expectNone(seen.difference(rule, {20, 30, 12, 12}), seen, name, ", ", how,
                     ": the same as the image at its own size");
  };
  expect("reduced by 0.5", [&](gxUIScope &s) { s.sample(large, at, gxPair<double>(0.5, 0.5), false, 0, flag...); });
  expect("reduced by 1 / 2", [&](gxUIScope &s) { s.sample(large, at, gxPair<long>(2, 2), false, 0, flag...); });
  expect("enlarged by 4.0", [&](gxUIScope &s) { s.expand(small, at, gxPair<double>(4, 4), false, 0, flag..., {}); });
  expect("enlarged by 4", [&](gxUIScope &s) { s.expand(small, at, gxPair<long>(4, 4), false, 0, flag..., {}); });
}

bool scaled(gx_Check &check)
{
  using Byte = unsigned char;
  expectSameScaled<Byte>(
      check, "8-bit image", [](Byte v) { return v; }, false);
  expectSameScaled<unsigned short>(check, "16-bit image", [](Byte v) { return static_cast<unsigned short>(v << 8); });
  expectSameScaled<gxPackedRGB16Pel>(check, "16-bit color image", [](Byte v) { return gxPackedRGB16Pel(v, 200, 30); });
  expectSameScaled<gxPackedRGB32Pel>(check, "32-bit color image", [](Byte v) { return gxPackedRGB32Pel(v, 200, 30); });
  return true;
}

bool badScales(gx_Check &check)
{
  gxPelBuffer<unsigned char> const image = pair<unsigned char>(8, 100, 200);
  gxRLEBuffer const runs(image);
  std::vector<unsigned char> const map;
  unsigned char const none = 0;
  for (double const scale : {0.0, -2.0, -0.5, std::nan(""), std::numeric_limits<double>::infinity()}) {
    gx_Probe probe = check.probe();
    gxUIScope &s = probe.scope();
    gxPair<double> const both(scale, scale);
    s.sample(image, gxPoint(20, 30), both, false, none, false);
    s.expand(image, gxPoint(20, 30), both, false, none, false, {});
    s.sample(runs, gxPoint(20, 30), map, both, false, none);
    s.expand(runs, gxPoint(20, 30), map, both, false, none);
    check.expect(!s.someChanged(), check.text(s.changeRect()), "no change at scale ", scale);
    if (!probe.readsPels())
      continue;
    gx_Picture const seen = probe.picture();
    check.expectNone(seen.unlike(gx_groundColor, probe.whole()), seen, "nothing drawn at scale ", scale);
  }
  return true;
}

bool floods(gx_Check &check)
{
  gxColor const wall(200, 200, 0), spot(0, 180, 90);
  for (bool const toBoundary : {true, false}) {
    gx_Probe probe = check.probe();
    gxUIScope &s = probe.scope();
    gxUIRect const inside(11, 11, 20, 20), dot(15, 15, 4, 4);
    s.set(gxUIRect(10, 10, 22, 22), wall);
    s.set(inside, gx_groundColor);
    s.set(dot, spot);
    s.fill({28, 28}, gx_penColor, wall, toBoundary);
    gx_Picture const seen = probe.picture();
    char const *const kind = toBoundary ? "fill up to a boundary" : "fill of an area";
    check.expectNone(seen.unlike(gx_penColor, {20, 11, 11, 20}), seen, kind, ": filled inside");
    check.expectNone(seen.unlike(toBoundary ? gx_penColor : spot, dot), seen, kind,
                     toBoundary ? ": another color is filled, too" : ": another color stays");
    check.expectNone(seen.unlike(wall, {10, 10, 22, 1}), seen, kind, ": the boundary stays");
    check.expectNone(seen.unlike(gx_groundColor, {0, 0, 64, 10}), seen, kind, ": nothing outside of the boundary");
  }
  gx_Probe probe = check.probe();
  probe.scope().fill({-5, 400}, gx_penColor, wall, false);
  gx_Picture const seen = probe.picture();
  check.expectNone(seen.unlike(gx_groundColor, probe.whole()), seen, "nothing filled from a seed outside");
  return true;
}

bool unknownStyles(gx_Check &check)
{
  auto const picture = [&](std::int32_t style) {
    gx_Probe probe = check.probe();
    gxGraphicProps props(gx_penColor, 3, static_cast<gxGraphicProps::gePenStyle>(style), false);
    props.penJoin(static_cast<gxGraphicProps::gePenJoin>(style));
    props.penEndCap(static_cast<gxGraphicProps::gePenEndCap>(style));
    probe.scope().draw(gxLineSeg(gxVector<2>(10, 10), gxVector<2>(50, 40)), props);
    return probe.picture();
  };
  gx_Picture const first = picture(0);
  for (std::int32_t const style : {-1, 99}) {
    gx_Picture const seen = picture(style);
    check.expectNone(seen.difference(first, seen.whole()), seen, "a pen whose style, join and cap are ", style,
                     " draws as one of style, join and cap 0");
  }
  return true;
}

}  // namespace

gx_SurfaceRules gf_pelRules()
{
  return {
      {"drawn-in-place", "every operation draws, and where it should", true, inPlace},
      {"set-colors", "set paints each pel of its rectangle in its color, and no other", true, colors},
      {"image-pels", "an image shows the pels of its window, from the top left", true, images},
      {"transparency", "pels of the passing value are left out", true, transparency},
      {"scaled-pels", "whole factors make blocks of pels, or take every k-th one", true, scaled},
      {"scale-invalid", "a scale that is not positive and finite draws nothing", false, badScales},
      {"flood-fill", "a fill goes up to the boundary, or over the color of its seed", true, floods},
      {"unknown-styles", "a style that is not known is the first of its kind", true, unknownStyles},
  };
}
