#pragma once

#include "backends/pels/pelsurface.h"
#include "dispc/dispprop.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"
#include "foundation/rlebuf.h"

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// The pels of a layer that something was drawn on.
inline std::set<std::pair<long, long>> coveredPels(gxPelBuffer_const<gxPackedRGB32Pel> const &pels)
{
  std::set<std::pair<long, long>> set;
  for (long y = 0; y < pels.height(); ++y)
    for (long x = 0; x < pels.width(); ++x)
      if (pels.get(x, y).spare())
        set.emplace(x, y);
  return set;
}

/// Every drawing operation of a scope, with device coordinates round @p at. Each draws something in a box of about
/// 30 pels to both sides.
struct ScopeOperation {
  std::string name;
  std::function<void(gxUIScope &, gxVector<2> const &at)> run;

  friend std::ostream &operator<<(std::ostream &os, ScopeOperation const &operation) { return os << operation.name; }
};

inline std::vector<ScopeOperation> scopeOperations()
{
  using Props = gxGraphicProps;
  auto const pen = [](long width, Props::gePenStyle style, bool fill) {
    return Props(gxColor::red, width, style, fill);
  };
  Props const thin = pen(1, Props::penSolid, false), wide = pen(4, Props::penSolid, false);
  Props const dashed = pen(1, Props::penDashDot, false), wideDashed = pen(3, Props::penDot, false);
  Props const filled = pen(1, Props::penSolid, true);
  std::vector<ScopeOperation> list;
  auto const add = [&list](std::string name, std::function<void(gxUIScope &, gxVector<2> const &)> run) {
    list.push_back({std::move(name), std::move(run)});
  };
  using V = gxVector<2>;
  for (auto const &[kind, props] : {std::pair<char const *, Props>("thin", thin),
                                    {"wide", wide},
                                    {"dashed", dashed},
                                    {"wide dashed", wideDashed},
                                    {"filled", filled}}) {
    std::string const with = std::string(", ") + kind;
    Props const p = props;
    add("point" + with, [p](gxUIScope &s, V const &at) { s.draw(gxPoint(at + V(3, 4)), p); });
    add("segment" + with, [p](gxUIScope &s, V const &at) { s.draw(gxLineSeg(at + V(-20, -7), at + V(17, 21)), p); });
    add("polyline" + with, [p](gxUIScope &s, V const &at) {
      s.draw(gxPolyline({at + V(-20, -7), at + V(17, 21), at + V(5, -18)}, true), p);
    });
    add("polygon" + with, [p](gxUIScope &s, V const &at) {
      s.draw(gxPolygon({at + V(-20, -7), at + V(17, 21), at + V(5, -18), at + V(-3, 20)}, gxPolygon::winding), p);
    });
    add("ellipse" + with, [p](gxUIScope &s, V const &at) { s.draw(gxEllipse(at, {20, 9}, gxRadian(0.5)), p); });
    add("ellipse2" + with, [p](gxUIScope &s, V const &at) {
      s.draw(gxEllipse2({20, 9}, gxRadian(2.5), at, false), p);
    });
    add("arc" + with, [p](gxUIScope &s, V const &at) {
      s.draw(gxEllipseArc(gxEllipse(at, {20, 12}, gxRadian(0.5)), gxRadian(1.0), gxRadian(3.0)), p);
    });
    add("arc2" + with, [p](gxUIScope &s, V const &at) {
      s.draw(gxEllipseArc2(gxEllipse2({20, 12}, gxRadian(0.5), at), gxRadian(4.0), gxRadian(-2.0)), p);
    });
    add("general rectangle" + with, [p](gxUIScope &s, V const &at) {
      s.draw(gxGenRect(at, {40, 22}, gxRadian(0.3), {0.4, 0.6}), p);
    });
    add("pen" + with, [p](gxUIScope &s, V const &at) {
      s.drawStart(gxPoint(at + V(-9, 3)));
      s.drawTo(gxPoint(at + V(12, 11)), p);
      s.drawToRelPels(5, -20, p);
      s.draw(s.drawPoint(), p);
      s.drawTo(s.drawPoint(), p);
    });
  }
  gxPelBuffer<unsigned char> grey(23, 17);
  gxPelBuffer<unsigned short> deep(23, 17);
  gxPelBuffer<gxPackedRGB16Pel> packed(23, 17);
  gxPelBuffer<gxPackedRGB32Pel> color(23, 17);
  for (long y = 0; y < 17; ++y)
    for (long x = 0; x < 23; ++x) {
      auto const v = static_cast<unsigned char>((x * 7 + y * 3) % 5);
      grey.put(x, y, v);
      deep.put(x, y, static_cast<unsigned short>(v * 1000));
      packed.put(x, y, gxPackedRGB16Pel(static_cast<unsigned short>(v)));
      color.put(x, y, gxPackedRGB32Pel(v, 2, 3));
    }
  gxRLEBuffer const runs(grey);
  for (bool const pass : {false, true}) {
    std::string const with = pass ? " with transparent pels" : "";
    gxPair<double> const up(2.0, 1.5), down(1.0 / 2, 1.0 / 3);
    add("8 bit image" + with, [=](gxUIScope &s, V const &at) { s.draw(grey, gxPoint(at - V(9, 8)), pass, 0, false); });
    add("8 bit image, sampled" + with,
        [=](gxUIScope &s, V const &at) { s.sample(grey, gxPoint(at - V(9, 8)), down, pass, 1, true); });
    add("8 bit image, expanded" + with,
        [=](gxUIScope &s, V const &at) { s.expand(grey, gxPoint(at - V(20, 18)), up, pass, 0, false, {}); });
    add("16 bit image" + with, [=](gxUIScope &s, V const &at) { s.draw(deep, gxPoint(at - V(9, 8)), pass, 0); });
    add("16 bit image, sampled" + with,
        [=](gxUIScope &s, V const &at) { s.sample(deep, gxPoint(at - V(9, 8)), down, pass, 0); });
    add("16 bit image, expanded" + with,
        [=](gxUIScope &s, V const &at) { s.expand(deep, gxPoint(at - V(20, 18)), up, pass, 1000, {}); });
    add("16 bit color" + with, [=](gxUIScope &s, V const &at) { s.draw(packed, gxPoint(at - V(9, 8)), pass, 2); });
    add("16 bit color, sampled" + with,
        [=](gxUIScope &s, V const &at) { s.sample(packed, gxPoint(at - V(9, 8)), down, pass, 0); });
    add("16 bit color, expanded" + with,
        [=](gxUIScope &s, V const &at) { s.expand(packed, gxPoint(at - V(20, 18)), up, pass, 0, {}); });
    unsigned long const passing = gxPackedRGB32Pel(1, 2, 3).value();
    add("32 bit color" + with, [=](gxUIScope &s, V const &at) { s.draw(color, gxPoint(at - V(9, 8)), pass, passing); });
    add("32 bit color, sampled" + with,
        [=](gxUIScope &s, V const &at) { s.sample(color, gxPoint(at - V(9, 8)), down, pass, passing); });
    add("32 bit color, expanded" + with,
        [=](gxUIScope &s, V const &at) { s.expand(color, gxPoint(at - V(20, 18)), up, pass, passing, {}); });
    add("runs by index" + with, [=](gxUIScope &s, V const &at) {
      s.draw(runs, gxPoint(at - V(9, 8)), std::vector<unsigned char>{9, 8, 7}, pass, 4);
    });
    for (double const scale : {0.5, 0.4, 1.5, 2.0})
      add("runs at scale " + std::to_string(scale) + with, [=](gxUIScope &s, V const &at) {
        gxPoint const corner(at - V(15, 12));
        std::vector<unsigned char> const map{9, 8, 7};
        gxPair<double> const both(scale, scale);
        scale < 1.0 ? s.sample(runs, corner, map, both, pass, 8) : s.expand(runs, corner, map, both, pass, 8);
      });
    add("runs by color" + with, [=](gxUIScope &s, V const &at) {
      s.draw(runs, gxPoint(at - V(9, 8)), std::vector<gxColor>{gxColor::red, gxColor::green}, pass, 1);
    });
  }
  add("set",
      [](gxUIScope &s, V const &at) { s.set(gxUIRect(long(at.x()) - 5, long(at.y()) - 9, 21, 22), gxColor::blue); });
  for (auto const alignment : {gxUIFormat::topLeft, gxUIFormat::center, gxUIFormat::bottomRight})
    add("text " + std::to_string(alignment), [alignment](gxUIScope &s, V const &at) {
      s.draw("Ag", gxPoint(at), gxColor::red, gxColor::pass, gxUIFormat(2, alignment));
    });
  add("text on a ground", [](gxUIScope &s, V const &at) {
    s.draw("xy\nz", gxPoint(at - V(9, 9)), gxColor::red, gxColor::white, gxUIFormat());
  });
  return list;
}
