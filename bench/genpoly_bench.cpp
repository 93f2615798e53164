#include "bench/nullscope.h"
#include "bench/ratio.h"
#include "dispc/uitablet.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/polyline.h"

#include <cmath>

// Polygons on tablets: against polylines through the same points, and mapping against copying.

namespace
{

constexpr long numVertices = 256;

/// A ring with teeth; every eighth segment an arc if @p arcs, corners rounded if @p rounded.
gxGenPoly ring(bool arcs, bool rounded)
{
  gxGenPoly polygon;
  for (long i = 0; i < numVertices; ++i) {
    double const a = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(numVertices);
    double const r = i % 4 < 2 ? 200.0 : 206.0;
    polygon.insertVertex({250 + r * std::cos(a), 250 + r * std::sin(a)}, 0.0, gxDegree(arcs && i % 8 == 1 ? 30 : 0));
  }
  polygon.close();
  if (rounded)
    polygon.vertexRoundingSizes(0.5);
  return polygon;
}

/// Keeps the points of the strokes.
class Flattened : public NullScope
{
 public:
  using NullScope::draw;
  void draw(gxLineSeg const &s, gxGraphicProps const &) override { points.push_back(s.start()); }
  std::vector<gxVector<2>> points;
};

gxPolyline flattened(gxGenPoly const &polygon)
{
  Flattened scope;
  gxUITablet tablet(&scope, nullptr);
  tablet.visible(true);
  tablet.draw(polygon, gxGraphicProps(), gxUITablet::image);
  return gxPolyline(std::move(scope.points), true);
}

template <class Shape>
void drawRepeatedly(benchmark::State &state, Shape const &shape, bool recording)
{
  NullScope scope;
  gxUITablet tablet(&scope, nullptr);
  tablet.visible(true);
  tablet.drawOn() = !recording;
  tablet.recordOn().push(recording);
  tablet.baseMap(gxXform<2>(gxMatrix<2>(1.5, 0.2, -0.2, 1.5), gxVector<2>(3, 4)));
  gxGraphicProps const props;
  for (auto _ : state) {
    tablet.draw(shape, props, gxUITablet::image);
    if (tablet.sketch().size() > 1'000'000)
      tablet.sketch().erase();
  }
}

template <class Shape>
void replayRepeatedly(benchmark::State &state, Shape const &shape)
{
  gxUITablet recorder;
  recorder.recordOn().push(true);
  recorder.draw(shape, gxGraphicProps(), gxUITablet::image);
  NullScope scope;
  gxUITablet tablet(&scope, nullptr);
  tablet.visible(true);
  for (auto _ : state)
    tablet.draw(recorder.sketch(), gxPoint(), gxUITablet::image);
}

// Polygons by their marks: none, arcs, roundings.
gxGenPoly polygonOf(benchmark::State const &state)
{
  return ring(state.range(0) > 0, state.range(0) > 1);
}

void drawPolygon(benchmark::State &state)
{
  drawRepeatedly(state, polygonOf(state), false);
}
void drawPolyline(benchmark::State &state)
{
  drawRepeatedly(state, flattened(polygonOf(state)), false);
}
/// Line by line, as a surface gets a polygon.
void drawSegments(benchmark::State &state)
{
  gxPolyline const line = flattened(polygonOf(state));
  NullScope scope;
  gxUITablet tablet(&scope, nullptr);
  tablet.visible(true);
  gxGraphicProps const props;
  for (auto _ : state)
    for (std::size_t i = 1; i < line.vertices().size(); ++i)
      tablet.draw(gxLineSeg(line.vertices()[i - 1], line.vertices()[i]), props, gxUITablet::image);
}
void recordPolygon(benchmark::State &state)
{
  drawRepeatedly(state, polygonOf(state), true);
}
void recordPolyline(benchmark::State &state)
{
  drawRepeatedly(state, flattened(polygonOf(state)), true);
}
void replayPolygon(benchmark::State &state)
{
  replayRepeatedly(state, polygonOf(state));
}
void replayPolyline(benchmark::State &state)
{
  replayRepeatedly(state, flattened(polygonOf(state)));
}
void mapPolygon(benchmark::State &state)
{
  gxGenPoly const polygon = polygonOf(state);
  gxXform<2> const turn(gxMatrix<2>(0, -2, 2, 0), gxVector<2>(30, 40));
  for (auto _ : state)
    benchmark::DoNotOptimize(polygon.map(turn));
}
void copyPolygon(benchmark::State &state)
{
  gxGenPoly const polygon = polygonOf(state);
  for (auto _ : state)
    benchmark::DoNotOptimize(gxGenPoly(polygon));
}
/// Splits a segment, and joins it again: by a plain insertion, and by one that also moves tolerances.
template <class Insert>
void splitAndJoin(benchmark::State &state, Insert insert)
{
  gx2Wireframe wireframe(polygonOf(state));
  gxVector<2> const middle = (wireframe.vertexPoint(7) + wireframe.vertexPoint(8)) * 0.5005;
  for (auto _ : state) {
    insert(wireframe, middle);
    wireframe.deleteVertex(8);
  }
}
void insertVertex(benchmark::State &state)
{
  splitAndJoin(state, [](gx2Wireframe &w, gxVector<2> const &p) { w.insertVertex(7, p, 0.0, gxRadian()); });
}
void insertVertexWithTolerance(benchmark::State &state)
{
  splitAndJoin(state, [](gx2Wireframe &w, gxVector<2> const &p) {
    w.insertVertex(7, p, 0.0, gxRadian(), gxDimTol(-1, 0.0001, 1000));
  });
}
BENCHMARK(drawPolygon)->DenseRange(0, 2);
BENCHMARK(drawPolyline)->DenseRange(0, 2);
BENCHMARK(drawSegments)->DenseRange(0, 2);
BENCHMARK(recordPolygon)->DenseRange(0, 2);
BENCHMARK(recordPolyline)->DenseRange(0, 2);
BENCHMARK(replayPolygon)->DenseRange(0, 2);
BENCHMARK(replayPolyline)->DenseRange(0, 2);
BENCHMARK(mapPolygon)->DenseRange(0, 2);
BENCHMARK(copyPolygon)->DenseRange(0, 2);
BENCHMARK(insertVertex)->Arg(0);
BENCHMARK(insertVertexWithTolerance)->Arg(0);

}  // namespace

int main(int argc, char **argv)
{
  std::vector<gx_BenchRatio> ratios;
  char const *const kinds[] = {"lines", "lines and arcs", "lines, arcs and fillets"};
  for (int kind = 0; kind < 3; ++kind) {
    std::string const of = std::string(" (") + kinds[kind] + ")", arg = '/' + std::to_string(kind);
    ratios.push_back({"drawing / its flattened polyline" + of, "drawPolygon" + arg, "drawPolyline" + arg, 0.25});
    ratios.push_back({"drawing / its lines one by one" + of, "drawPolygon" + arg, "drawSegments" + arg, 0.8});
    ratios.push_back({"recording / its flattened polyline" + of, "recordPolygon" + arg, "recordPolyline" + arg, 0.15});
    ratios.push_back({"replay / its flattened polyline" + of, "replayPolygon" + arg, "replayPolyline" + arg, 0.05});
    ratios.push_back({"map / copy" + of, "mapPolygon" + arg, "copyPolygon" + arg, 0.9});
  }
  ratios.push_back({"insertion with a tolerance / plain one", "insertVertexWithTolerance/0", "insertVertex/0", 0.8});
  return gf_runBenchmarks(argc, argv, ratios);
}
