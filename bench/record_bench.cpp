#include "bench/nullscope.h"
#include "bench/ratio.h"
#include "bench/scene.h"

#include <malloc.h>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#ifdef GXBENCH_HAVE_CAIRO
#include <cairo.h>
#endif
#ifdef GXBENCH_HAVE_QT
#include <QPainter>
#include <QPicture>
#endif

// Recording the scene. The limit is to append the same bytes, in the same pieces, to memory that was touched before.

namespace
{
using namespace gx_bench;
long allocations = 0;

/// Bytes that the process has from malloc now.
double heapBytes()
{
  struct mallinfo2 const info = mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}
void record(benchmark::State &state)
{
  double const before = heapBytes();
  gxUITablet tablet;
  drawScene(tablet);  // touches the memory
  state.counters["bytes/item"] = (heapBytes() - before) / count;
  for (auto _ : state) {
    tablet.sketch().erase();
    drawScene(tablet);
    benchmark::DoNotOptimize(tablet.sketch().bytes());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(record)->Name("record")->Unit(benchmark::kMillisecond);

void append(benchmark::State &state)
{
  gxUITablet tablet;
  drawScene(tablet);
  gxUISketch const &made = tablet.sketch();
  std::vector<unsigned char> to(static_cast<std::size_t>(made.size()));
  std::memcpy(to.data(), made.bytes(), to.size());
  long const size[4] = {24, 40, 40, 56};
  for (auto _ : state) {
    unsigned char const *from = made.bytes();
    unsigned char *at = to.data();
    for (long i = 0; i < count; ++i) {
      long const n = size[i & 3] + ((i & 15) == 0 ? 22 : 0);
      std::memcpy(at, from, static_cast<std::size_t>(n));
      at += n;
      from += n;
      benchmark::ClobberMemory();
    }
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(append)->Name("append the bytes")->Unit(benchmark::kMillisecond);

void drawToNothing(benchmark::State &state)
{
  NullScope scope;
  gxUITablet tablet(&scope, &scope);
  tablet.visible(true);
  gxGraphicProps const *const pen = pens();
  long const before = allocations;
  long drawn = 0;
  for (auto _ : state) {
    double const *const v = scene.at(++drawn);
    tablet.draw(gxPoint(v[0], v[1]), *pen, gxUITablet::overlay);
    tablet.draw(gxLineSeg(gxVector<2>(v[0], v[1]), gxVector<2>(v[2], v[3])), *pen, gxUITablet::overlay);
    tablet.draw(gxRect(gxVector<2>(v[0], v[1]), gxVector<2>(v[2], v[3])), *pen, gxUITablet::overlay);
  }
  state.counters["allocations"] = static_cast<double>(allocations - before);
}
BENCHMARK(drawToNothing)->Name("draw point, segment, rectangle to nothing");

void refused(benchmark::State &state)
{
  gxUITablet tablet;
  tablet.recordOn() = false;
  gxEllipse const ellipse(gxCircle(gxVector<2>(1, 2), 3));
  long const before = allocations;
  for (auto _ : state)
    tablet.draw(ellipse, *pens(), gxUITablet::overlay);
  state.counters["allocations"] = static_cast<double>(allocations - before);
}
BENCHMARK(refused)->Name("refused draw");

#ifdef GXBENCH_HAVE_CAIRO
void cairo(benchmark::State &state)
{
  for (auto _ : state) {
    double const before = heapBytes();
    cairo_surface_t *const surface = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr);
    cairo_t *const c = cairo_create(surface);
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
    cairo_destroy(c);
    state.counters["bytes/item"] = (heapBytes() - before) / count;
    cairo_surface_destroy(surface);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(cairo)->Name("cairo recording surface")->Unit(benchmark::kMillisecond)->MinTime(0.1);
#endif

#ifdef GXBENCH_HAVE_QT
void qpicture(benchmark::State &state)
{
  for (auto _ : state) {
    double const before = heapBytes();
    QPicture picture;
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
    painter.end();
    state.counters["bytes/item"] = (heapBytes() - before) / count;
    benchmark::DoNotOptimize(picture.data());
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
                          {{"recording / appending the same bytes", "record", "append the bytes", 0.6},
                           {"recording / cairo recording surface", "record", "cairo recording surface", 50},
                           {"recording / QPicture", "record", "QPicture", 100}});
}
