#pragma once

#include "dispc/uitablet.h"
#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/lineseg.h"
#include "foundation/rect.h"

#include <cstddef>
#include <random>
#include <vector>

/// @file
/// A million mixed primitives: a point, a segment, a rectangle and an ellipse by turns, another pen at every 16th. What
/// records them and what plays them again measure the same scene, and so do the peers.

namespace gx_bench
{
inline constexpr long count = 1'000'000;

/// Coordinates for the primitives, made once.
struct Scene {
  std::vector<double> v;
  Scene()
  {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> within(0.0, 640.0);
    v.resize(4096 + 4);
    for (double &x : v)
      x = within(random);
  }
  double const *at(long i) const { return &v[static_cast<std::size_t>(i) & 4095]; }
};
inline Scene const scene;

inline gxGraphicProps const *pens()
{
  static gxGraphicProps const both[2] = {gxGraphicProps(gxColor::redColor(), 1, gxGraphicProps::penSolid, false),
                                         gxGraphicProps(gxColor::greenColor(), 3, gxGraphicProps::penSolid, false)};
  return both;
}

/// The shapes of the scene, made before the clock runs: to make a shape is the caller's work.
struct Shapes {
  std::vector<gxPoint> points;
  std::vector<gxLineSeg> segments;
  std::vector<gxRect> rects;
  std::vector<gxEllipse> ellipses;
  Shapes()
  {
    for (long i = 0; i < 256; ++i) {
      double const *const v = scene.at(4 * i);
      points.emplace_back(v[0], v[1]);
      segments.emplace_back(gxVector<2>(v[0], v[1]), gxVector<2>(v[2], v[3]));
      rects.emplace_back(gxVector<2>(v[0], v[1]), gxVector<2>(v[2], v[3]));
      ellipses.emplace_back(gxCircle(gxVector<2>(v[0], v[1]), v[2]));
    }
  }
};
inline Shapes const shapes;

inline void drawScene(gxUITablet &tablet)
{
  gxGraphicProps const *const pen = pens();
  for (long i = 0; i < count; ++i) {
    gxGraphicProps const &props = pen[(i >> 4) & 1];
    auto const k = static_cast<std::size_t>(i >> 2) & 255;
    switch (i & 3) {
      case 0:
        tablet.draw(shapes.points[k], props, gxUITablet::overlay);
        break;
      case 1:
        tablet.draw(shapes.segments[k], props, gxUITablet::overlay);
        break;
      case 2:
        tablet.draw(shapes.rects[k], props, gxUITablet::overlay);
        break;
      default:
        tablet.draw(shapes.ellipses[k], props, gxUITablet::overlay);
    }
  }
}

}  // namespace gx_bench
