#include "bench/ratio.h"
#include "dispc/wrfm/detail/synthfill.h"
#include "dispc/wrfm/polyprivate.h"

#ifdef GXBENCH_HAVE_CAIRO
#include <cairo.h>
#endif

#include <cmath>
#include <cstring>

// Synthetic images of outlines: against cairo's fill of the same outline, and against setting the bytes.

namespace
{

using Buffer = gxPelBuffer<unsigned char>;
using Private = gxSMDGDPolyPrivate;

constexpr long width = 512, height = 512;

gxSMDGDPolyVertex corner(double x, double y, double radius = 0.0)
{
  return {{x, y}, radius, gxDegree(), 0.5, 0.5, -1, gxDimTol()};
}

gxSMDGDPoly roundedRectangle()
{
  gxSMDGDPoly poly;
  poly << corner(50.3, 100.2, 40) << corner(450.3, 100.2, 40) << corner(450.3, 400.2, 40) << corner(50.3, 400.2, 40);
  poly.close();
  return poly;
}

/// A body with 16 pins on each side: 260 segments.
gxSMDGDPoly package()
{
  gxSMDGDPoly poly;
  gxVector<2> const center(256.3, 256.2);
  for (int side = 0; side < 4; ++side) {
    gx2Rigid const turn(gxDegree(90.0 * side), center);
    poly << gxSMDGDPolyVertex(turn * gxVector<2>(-150, -150), 0.5, 0.5, -1);
    for (int pin = 0; pin < 16; ++pin) {
      double const x = -135.0 + 18.0 * pin;
      for (gxVector<2> const &p :
           {gxVector<2>(x - 4, -150), gxVector<2>(x - 4, -200), gxVector<2>(x + 4, -200), gxVector<2>(x + 4, -150)})
        poly << gxSMDGDPolyVertex(turn * p, 0.5, 0.5, -1);
    }
  }
  poly.close();
  return poly;
}

gxSMDGDPoly outline(benchmark::State const &state)
{
  return state.range(0) == 0 ? roundedRectangle() : package();
}

void fill(benchmark::State &state)
{
  gxSMDGDPoly const poly = outline(state);
  Buffer const buffer(width, height);
  for (auto _ : state)
    Private::drawSynthetic(poly, gxXform<2>(), buffer, 200, false, true);
}

void fillSmooth(benchmark::State &state)
{
  gxSMDGDPoly const poly = outline(state);
  Buffer const buffer(width, height);
  for (auto _ : state)
    Private::drawSynthetic(poly, gxXform<2>(), buffer, 200, true, true);
}

/// The rule, as it is told: every row asks the whole outline.
void fillByRule(benchmark::State &state)
{
  gxSMDGDPoly const poly = outline(state);
  Buffer const buffer(width, height);
  gx_SyntheticFill const rule(poly, gxXform<2>(), 0, width, buffer, 200);
  for (auto _ : state)
    for (long y = 50; y < 462; ++y)
      rule.fillRow(y);
}

/// Sets the bytes of the runs, which are known.
void setSpans(benchmark::State &state)
{
  gxSMDGDPoly const poly = outline(state);
  Buffer const buffer(width, height);
  Private::drawSynthetic(poly, gxXform<2>(), buffer, 200, false, true);
  struct Run {
    unsigned char *from;
    std::size_t n;
  };
  std::vector<Run> runs;
  for (long y = 0; y < height; ++y) {
    unsigned char *const row = buffer.pointToRow(y);
    for (long x = 0; x < width; ++x) {
      long const from = x;
      while (x < width && row[x])
        ++x;
      if (x > from)
        runs.push_back({row + from, static_cast<std::size_t>(x - from)});
    }
  }
  for (auto _ : state) {
    for (Run const &run : runs)
      std::memset(run.from, 100, run.n);
    benchmark::ClobberMemory();
  }
}

#ifdef GXBENCH_HAVE_CAIRO
void cairoFill(benchmark::State &state, cairo_antialias_t antialias)
{
  gxSMDGDPoly const poly = outline(state);
  cairo_surface_t *const surface = cairo_image_surface_create(CAIRO_FORMAT_A8, width, height);
  cairo_t *const cairo = cairo_create(surface);
  cairo_set_antialias(cairo, antialias);
  for (int v = 0; v < poly.numVertices(); ++v) {
    if (Private::vertexIsRounded_(poly, v)) {
      gx2SegmentArc const arc = Private::roundedArcVertex_(poly, v);
      double const start = gxRadian(arc.startAngle()).value(), end = start + gxRadian(arc.angleSpan()).value();
      (end > start ? cairo_arc : cairo_arc_negative)(cairo, arc.center().x(), arc.center().y(), arc.radius(gxDegree(0)),
                                                     start, end);
    } else {
      cairo_line_to(cairo, poly.vertex(v, false).point().x(), poly.vertex(v, false).point().y());
    }
  }
  cairo_close_path(cairo);
  for (auto _ : state)
    cairo_fill_preserve(cairo);
  cairo_destroy(cairo);
  cairo_surface_destroy(surface);
}
BENCHMARK_CAPTURE(cairoFill, plain, CAIRO_ANTIALIAS_NONE)->DenseRange(0, 1);
BENCHMARK_CAPTURE(cairoFill, smooth, CAIRO_ANTIALIAS_DEFAULT)->DenseRange(0, 1);
#endif
BENCHMARK(fill)->DenseRange(0, 1);
BENCHMARK(fillSmooth)->DenseRange(0, 1);
BENCHMARK(fillByRule)->DenseRange(0, 1);
BENCHMARK(setSpans)->DenseRange(0, 1);

}  // namespace

int main(int argc, char **argv)
{
  return gf_runBenchmarks(
      argc, argv,
      {{"fill / cairo without antialiasing (rounded rectangle)", "fill/0", "cairoFill/plain/0", 1.6},
       {"fill / cairo without antialiasing (64 pins)", "fill/1", "cairoFill/plain/1", 2.5},
       {"fill with edges / cairo's default (rounded rectangle)", "fillSmooth/0", "cairoFill/smooth/0", 2.0},
       {"fill with edges / cairo's default (64 pins)", "fillSmooth/1", "cairoFill/smooth/1", 2.0},
       {"fill / setting the bytes (rounded rectangle)", "fill/0", "setSpans/0", 0.4},
       {"fill / setting the bytes (64 pins)", "fill/1", "setSpans/1", 0.4},
       {"fill / the rule as told (rounded rectangle)", "fill/0", "fillByRule/0", 50},
       {"fill / the rule as told (64 pins)", "fill/1", "fillByRule/1", 50}});
}
