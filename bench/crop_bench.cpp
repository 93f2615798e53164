#include "bench/ratio.h"
#include "dispc/wrfm/model.h"
#include "dispc/wrfm/polyprivate.h"

#include <cmath>
#include <list>

// Outlines cut by masks. The limit is one test of every piece of the outline against every piece of the mask, which is
// what the crossings take by themselves without a tree.

namespace
{

struct Outline : gxSMDGDPoly {
  explicit Outline(gxSMDGDPoly const &poly) : gxSMDGDPoly(poly) {}
  using gxSMDGDPoly::intersection_;
};

/// A ring of n vertices with teeth, some of them rounded.
Outline ring(long n, double radius, gxVector<2> const &center)
{
  std::vector<gxSMDGDPolyVertex> vertices;
  for (long i = 0; i < n; ++i) {
    gxRadian const a(6.283185307179586 * static_cast<double>(i) / static_cast<double>(n));
    double const r = radius * (i % 4 < 2 ? 1.0 : 1.0 + 4.0 / static_cast<double>(n));
    vertices.emplace_back(center + gxVector<2>(r, a), i % 3 ? 0.0 : 0.1 * radius / static_cast<double>(n), 0.5, 0.5,
                          -1);
  }
  gxSMDGDPoly poly = gxSMDGDPoly::rectangle(1, 1, {0, 0});
  poly.vertices(vertices);
  return Outline(poly);
}

/// Through each other at two places.
void crop(benchmark::State &state)
{
  Outline const poly = ring(state.range(0), 100, {0, 0}), mask = ring(state.range(0), 90, {60, 20});
  for (auto _ : state)
    benchmark::DoNotOptimize(gxSMDGDPolyPrivate::crop(poly, mask, true).numPolys());
}

/// Through each other at as many places as there are teeth.
void cropTeeth(benchmark::State &state)
{
  Outline const poly = ring(state.range(0), 100, {0, 0});
  double const mean = 100 * (1 + 2.0 / static_cast<double>(state.range(0)));
  gxSMDGDPoly const mask = gxSMDGDPoly::circle(mean, {0, 0});
  for (auto _ : state)
    benchmark::DoNotOptimize(gxSMDGDPolyPrivate::crop(poly, mask, true).numPolys());
}

void everyPair(benchmark::State &state)
{
  Outline const poly = ring(state.range(0), 100, {0, 0}), mask = ring(state.range(0), 90, {60, 20});
  for (auto _ : state)
    benchmark::DoNotOptimize(poly.intersection_(mask).size());
}

/// What asking for the side of each vertex would take, crossings not found yet.
void everyVertex(benchmark::State &state)
{
  Outline const poly = ring(state.range(0), 100, {0, 0}), mask = ring(state.range(0), 90, {60, 20});
  for (auto _ : state) {
    long count = 0;
    for (gxSMDGDPolyVertex const &v : poly.vertices())
      count += gxSMDGDPolyPrivate::inside(mask, v.point());
    benchmark::DoNotOptimize(count);
  }
}

void resolve(benchmark::State &state)
{
  std::list<gxSMDGDPoly> in, out;
  for (long i = 0; i < 20; ++i)
    in.push_back(ring(state.range(0), 100.0 + static_cast<double>(i), {static_cast<double>(i % 5) * 130.0, 0}));
  for (auto _ : state) {
    gxSMDGDPolyPrivate::crossingPolysResolve(out, in);
    benchmark::DoNotOptimize(out.size());
  }
}

void sizes(benchmark::internal::Benchmark *b)
{
  b->Arg(64)->Arg(512)->Unit(benchmark::kMicrosecond);
}
BENCHMARK(crop)->Apply(sizes);
BENCHMARK(cropTeeth)->Apply(sizes);
BENCHMARK(everyPair)->Apply(sizes);
BENCHMARK(everyVertex)->Apply(sizes);
BENCHMARK(resolve)->Apply(sizes);

}  // namespace

int main(int argc, char **argv)
{
  return gf_runBenchmarks(
      argc, argv,
      {{"a crop against a test of every pair of pieces, 64", "crop/64", "everyPair/64", 15},
       {"a crop against a test of every pair of pieces, 512", "crop/512", "everyPair/512", 150},
       {"a crop against the side of every vertex, 512", "crop/512", "everyVertex/512", 80},
       {"a crop with a cut at every tooth against one with two, 512", "cropTeeth/512", "crop/512", 0.2},
       {"the longest of 20 outlines against one pair of them, 512", "resolve/512", "everyPair/512", 80}});
}
