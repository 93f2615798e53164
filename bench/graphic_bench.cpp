#include "bench/nullscope.h"
#include "bench/ratio.h"
#include "dispc/glist.h"
#include "dispc/glist_el.h"
#include "dispc/graphic_flat.h"
#include "dispc/graphic_hit.h"
#include "dispc/uitablet.h"

#include <cstddef>

// A list of 100,000 mixed graphics, drawn to a surface that does nothing, against the direct calls on the same values;
// and what else is done with such lists.

namespace
{

constexpr int count = 100'000;
constexpr auto overlay = gxUITablet::overlay;

gxLineSeg seg(int i)
{
  return gxLineSeg({i * 0.01, 3}, {50, i * 0.02});
}
gxRect rect(int i)
{
  return gxRect({i * 0.01, 5}, {20, 30});
}
gxEllipse2 ellipse(int i)
{
  return gxEllipse2({20, 10}, gxRadian(i * 0.1), {i * 0.01, 40});
}
gxPoint point(int i)
{
  return gxPoint(i * 0.01, 7);
}

struct Stage {
  NullScope image, over;
  gxUITablet tablet{&image, &over};

  Stage()
  {
    tablet.visible(true);
    tablet.baseMap(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), {3, 4}));
  }
};

gxGraphicList graphics()
{
  gxGraphicProps const props;
  gxGraphicList list;
  for (int i = 0; i < count; i += 4) {
    list.append(new gxGraphicSimple<gxLineSeg>(seg(i), props), false);
    list.append(new gxGraphicWithFill<gxRect, gxGenRect>(rect(i), props), false);
    list.append(new gxGraphicWithFill<gxEllipse2, gxEllipse2>(ellipse(i), props), false);
    list.append(new gxGraphicSimple<gxPoint>(point(i), props), false);
  }
  return list;
}

void drawList(benchmark::State &state)
{
  Stage stage;
  gxGraphicList const list = graphics();
  for (auto _ : state)
    list.draw(stage.tablet, overlay);
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(drawList)->Unit(benchmark::kMillisecond);

// The same values with the same properties, each a plain object in a row of its kind.
void drawDirectly(benchmark::State &state)
{
  Stage stage;
  std::vector<gxLineSeg> segs;
  std::vector<gxRect> rects;
  std::vector<gxEllipse2> ellipses;
  std::vector<gxPoint> points;
  std::vector<gxGraphicProps> const props(count);
  for (int i = 0; i < count; i += 4) {
    segs.push_back(seg(i));
    rects.push_back(rect(i));
    ellipses.push_back(ellipse(i));
    points.push_back(point(i));
  }
  for (auto _ : state) {
    for (std::size_t i = 0; i < segs.size(); ++i) {
      stage.tablet.draw(segs[i], props[4 * i], overlay);
      stage.tablet.draw(rects[i], props[4 * i + 1], overlay);
      stage.tablet.draw(ellipses[i], props[4 * i + 2], overlay);
      stage.tablet.draw(points[i], props[4 * i + 3], overlay);
    }
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(drawDirectly)->Unit(benchmark::kMillisecond);

void mapList(benchmark::State &state)
{
  gxGraphicList const list = graphics();
  gxXform<2> const turn(gxMatrix<2>(gxRadian(0.5), gxRadian(0.5), 1.0, 1.0), {1, 2});
  for (auto _ : state) {
    gxGraphicList mapped;
    mapped.items().reserve(count);
    for (gxPtrHandle<gxGraphic> const &item : list.items())
      mapped.append(item->map(turn), false);
    benchmark::DoNotOptimize(mapped.items().data());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(mapList)->Unit(benchmark::kMillisecond);

void hitList(benchmark::State &state)
{
  gxGraphicList const list = graphics();
  for (auto _ : state)
    benchmark::DoNotOptimize(gfGraphicsNear(list, {500, 40}, 3).size());
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(hitList)->Unit(benchmark::kMillisecond);

// The plain way: every distance is worked out.
void hitPlainly(benchmark::State &state)
{
  gxGraphicList const list = graphics();
  for (auto _ : state) {
    long hits = 0;
    for (gxPtrHandle<gxGraphic> const &item : list.items())
      hits += item->distToPoint({500, 40}) <= 3;
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(hitPlainly)->Unit(benchmark::kMillisecond);

void readFlatList(benchmark::State &state)
{
  gxGraphicList const list = graphics();
  gxr_list flat;
  gfGraphicListAppend(&flat, list);
  for (auto _ : state) {
    gxGraphicList read;
    gfGraphicListAppend(read, &flat);
    benchmark::DoNotOptimize(read.items().data());
  }
  state.SetItemsProcessed(state.iterations() * flat.count);
  gxr_list_free(&flat);
}
BENCHMARK(readFlatList)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char **argv)
{
  return gf_runBenchmarks(argc, argv,
                          {{"drawing graphics against the direct calls", "drawList", "drawDirectly", 0.67},
                           {"hit test against asking every distance", "hitList", "hitPlainly", 1.0}});
}
