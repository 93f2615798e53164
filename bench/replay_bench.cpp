#include "bench/nullscope.h"
#include "bench/ratio.h"
#include "bench/scene.h"
#include "foundation/genrect.h"

#include <cstdlib>
#include <cstring>
#include <new>

#ifdef GXBENCH_HAVE_CAIRO
#include <cairo.h>
#endif
#ifdef GXBENCH_HAVE_QT
#include <QPaintEngine>
#include <QPainter>
#include <QPicture>
#endif

// Playing the scene to a surface that does nothing. The limit is a bare switch over the same bytes, which makes one
// virtual call of the surface for each record.

namespace
{
using namespace gx_bench;
long allocations = 0;

gxUISketch const &recorded()
{
  static gxUISketch const sketch = [] {
    gxUITablet tablet;
    drawScene(tablet);
    return tablet.sketch();
  }();
  return sketch;
}

/// Does not even keep a pen.
class Nothing : public NullScope
{
 public:
  using NullScope::draw;
  void drawTo(gxPoint const &, gxGraphicProps const &) override {}
  void drawToRelPels(long, long, gxGraphicProps const &) override {}
};

gxXform<2> const skew(gxMatrix<2>(1.5, 0.25, -0.5, 2.0), {30, 40});

void replay(benchmark::State &state)
{
  Nothing scope;
  gxUITablet tablet(nullptr, &scope);
  tablet.visible(true);
  if (state.range(0))
    tablet.baseMap(skew);
  gxUISketch const &sketch = recorded();
  long const before = allocations;
  for (auto _ : state)
    tablet.draw(sketch, gxPoint(), gxUITablet::overlay);
  state.counters["allocations"] = static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(replay)->Name("replay")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// Records of one kind.
void replayOf(benchmark::State &state)
{
  gxUITablet recorder;
  for (long i = 0; i < 4096; ++i) {
    auto const k = static_cast<std::size_t>(i & 255);
    switch (state.range(0)) {
      case 0:
        recorder.draw(shapes.points[k], *pens(), gxUITablet::overlay);
        break;
      case 1:
        recorder.draw(shapes.segments[k], *pens(), gxUITablet::overlay);
        break;
      case 2:
        recorder.draw(shapes.rects[k], *pens(), gxUITablet::overlay);
        break;
      default:
        recorder.draw(shapes.ellipses[k], *pens(), gxUITablet::overlay);
    }
  }
  Nothing scope;
  gxUITablet tablet(nullptr, &scope);
  tablet.visible(true);
  for (auto _ : state)
    tablet.draw(recorder.sketch(), gxPoint(), gxUITablet::overlay);
  state.SetItemsProcessed(state.iterations() * 4096);
}
BENCHMARK(replayOf)->Name("replay of 4096 points, segments, rectangles, ellipses")->DenseRange(0, 3);

/// A player written by hand for this scene alone, without tablet and op objects: it decides nothing, and calls the
/// scope once for each record, with the mapped shape.
void bareSwitch(benchmark::State &state)
{
  gxUISketch const &sketch = recorded();
  Nothing nothing;
  gxUIScope *scope = &nothing;
  gxXform<2> map;
  benchmark::DoNotOptimize(scope);
  benchmark::DoNotOptimize(map);
  for (auto _ : state) {
    unsigned char const *at = sketch.bytes();
    unsigned char const *const end = at + sketch.size();
    gxGraphicProps props;
    double v[4];
    while (at < end) {
      if (*at == 40) {
        gxGraphicProps::decode(at + 2, props);
        at += gf_sketchPrefixSize;
      }
      int const code = *at;
      gxColor color;
      std::memcpy(&color, at + 2, sizeof color);
      props.penColor(color);
      at += gf_sketchHeadSize;
      std::memcpy(v, at, code == 0 ? 16 : sizeof v);
      switch (code) {
        case 0:
          scope->draw(gxPoint(map * gxVector<2>(v[0], v[1])), props);
          at += 16;
          break;
        case 2:
          scope->draw(gxLineSeg(map * gxVector<2>(v[0], v[1]), map * gxVector<2>(v[2], v[3])), props);
          at += 32;
          break;
        case 32:
          scope->draw(gxRect({v[0], v[1]}, {v[2], v[3]}).map(map), props);
          at += 32;
          break;
        default:
          gxEllipse::gxEllipseGeom geom;
          std::memcpy(&geom, at, sizeof geom);
          scope->draw(gxEllipse(geom).map(map), props);
          at += sizeof geom;
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(bareSwitch)->Name("bare switch")->Unit(benchmark::kMillisecond);

#ifdef GXBENCH_HAVE_CAIRO
void drawSceneWith(cairo_t *c)
{
  for (long i = 0; i < count; ++i) {
    double const *const v = scene.at(i);
    if ((i & 15) == 0) {
      cairo_set_source_rgb(c, (i >> 4) & 1 ? 1.0 : 0.0, 0.5, 0.0);
      cairo_set_line_width(c, (i >> 4) & 1 ? 3.0 : 1.0);
    }
    switch (i & 3) {
      case 0:
        cairo_rectangle(c, v[0], v[1], 1.0, 1.0);
        cairo_fill(c);
        continue;
      case 1:
        cairo_move_to(c, v[0], v[1]);
        cairo_line_to(c, v[2], v[3]);
        break;
      case 2:
        cairo_rectangle(c, v[0], v[1], v[2], v[3]);
        break;
      default:
        cairo_arc(c, v[0], v[1], v[2], 0.0, 6.283185307179586);
    }
    cairo_stroke(c);
  }
}

/// Asking for the extents of the ink plays all of it to a surface without pels.
void cairo(benchmark::State &state)
{
  cairo_surface_t *const surface = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr);
  cairo_t *const c = cairo_create(surface);
  drawSceneWith(c);
  cairo_destroy(c);
  for (auto _ : state) {
    double box[4];
    cairo_recording_surface_ink_extents(surface, box, box + 1, box + 2, box + 3);
    benchmark::DoNotOptimize(box);
  }
  cairo_surface_destroy(surface);
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(cairo)->Name("cairo recording surface")->Unit(benchmark::kMillisecond)->MinTime(0.1);
#endif

#ifdef GXBENCH_HAVE_QT
/// A device that does nothing with anything.
class NullEngine : public QPaintEngine
{
 public:
  NullEngine() : QPaintEngine(AllFeatures) {}
  bool begin(QPaintDevice *) override { return true; }
  bool end() override { return true; }
  void updateState(QPaintEngineState const &) override {}
  void drawPixmap(QRectF const &, QPixmap const &, QRectF const &) override {}
  using QPaintEngine::drawEllipse;
  using QPaintEngine::drawLines;
  using QPaintEngine::drawPoints;
  using QPaintEngine::drawPolygon;
  using QPaintEngine::drawRects;
  void drawEllipse(QRectF const &) override {}
  void drawLines(QLineF const *, int) override {}
  void drawPoints(QPointF const *, int) override {}
  void drawPolygon(QPointF const *, int, PolygonDrawMode) override {}
  void drawRects(QRectF const *, int) override {}
  void drawPath(QPainterPath const &) override {}
  Type type() const override { return User; }
};

class NullDevice : public QPaintDevice
{
 public:
  QPaintEngine *paintEngine() const override { return &engine_; }

 protected:
  int metric(PaintDeviceMetric m) const override
  {
    return m == PdmWidth || m == PdmHeight ? 640 : m == PdmDepth ? 32 : m == PdmDevicePixelRatioScaled ? 65536 : 96;
  }

 private:
  mutable NullEngine engine_;
};

void qpicture(benchmark::State &state)
{
  QPicture picture;
  {
    QPainter painter(&picture);
    for (long i = 0; i < count; ++i) {
      double const *const v = scene.at(i);
      if ((i & 15) == 0)
        painter.setPen(QPen((i >> 4) & 1 ? Qt::red : Qt::green, (i >> 4) & 1 ? 3.0 : 1.0));
      switch (i & 3) {
        case 0:
          painter.drawPoint(QPointF(v[0], v[1]));
          break;
        case 1:
          painter.drawLine(QPointF(v[0], v[1]), QPointF(v[2], v[3]));
          break;
        case 2:
          painter.drawRect(QRectF(v[0], v[1], v[2], v[3]));
          break;
        default:
          painter.drawEllipse(QPointF(v[0], v[1]), v[2], v[2]);
      }
    }
  }
  NullDevice device;
  for (auto _ : state) {
    QPainter painter(&device);
    picture.play(&painter);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(qpicture)->Name("QPicture")->Unit(benchmark::kMillisecond)->MinTime(0.1);
#endif

}  // namespace

void *operator new(std::size_t n)
{
  ++allocations;
  if (void *const p = std::malloc(n ? n : 1))
    return p;
  throw std::bad_alloc();
}
void operator delete(void *p) noexcept
{
  std::free(p);
}
void operator delete(void *p, std::size_t) noexcept
{
  std::free(p);
}

int main(int argc, char **argv)
{
  return gf_runBenchmarks(argc, argv,
                          {{"replay / bare switch with one virtual call", "replay/0", "bare switch", 0.6},
                           {"replay / cairo recording surface", "replay/0", "cairo recording surface", 40},
                           {"replay / QPicture", "replay/0", "QPicture", 60}});
}
