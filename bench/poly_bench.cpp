#include "bench/ratio.h"
#include "dispc/wrfm/polyprivate.h"

#include <cmath>
#include <random>

// Outlines that check themselves: wholly, and after an edit. The limit is one pass over the boxes of the pieces: what a
// machine takes to look at them at all.

namespace
{

/// With its checks in reach.
struct Outline : gxSMDGDPoly {
  using gxSMDGDPoly::validate_, gxSMDGDPoly::validateReplacement_;
};

/// A ring of n vertices with teeth, of lines or of lines and arcs.
Outline ring(long n, bool arcs)
{
  std::vector<gxSMDGDPolyVertex> vertices;
  for (long i = 0; i < n; ++i) {
    double const a = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(n);
    double const r = 1000.0 * (i % 4 < 2 ? 1.0 : 1.0 + 1.0 / static_cast<double>(n));
    vertices.emplace_back(gxVector<2>(r * std::cos(a), r * std::sin(a)), 0.5, 0.5, -1);
    if (arcs && i % 2)
      vertices.back().segmentAngleSpan(gxDegree(20));
  }
  Outline poly;
  poly.vertices(vertices);
  poly.close();
  return poly;
}

void whole(benchmark::State &state, bool arcs)
{
  Outline poly = ring(state.range(0), arcs);
  for (auto _ : state)
    poly.validate_();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Moves one vertex after the other, outwards by a little and back again.
void edit(benchmark::State &state, bool arcs)
{
  Outline poly = ring(state.range(0), arcs);
  std::vector<gxSMDGDPolyVertex> const before = poly.vertices();
  std::vector<gxSMDGDPolyVertex> moved = before;
  for (gxSMDGDPolyVertex &v : moved)
    v.point(v.point() * (1.0 + 0.1 / static_cast<double>(state.range(0))));
  int i = 0;
  int const n = static_cast<int>(state.range(0));
  for (auto _ : state) {
    i = (i + 7919) % n;
    poly.replaceVertex(i, moved[static_cast<std::size_t>(i)]);
    poly.replaceVertex(i, before[static_cast<std::size_t>(i)]);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

/// The check that follows an edit, by itself.
void revalidate(benchmark::State &state, bool arcs)
{
  Outline poly = ring(state.range(0), arcs);
  int i = 0;
  int const n = static_cast<int>(state.range(0));
  for (auto _ : state) {
    i = (i + 7919) % n;
    poly.validateReplacement_(i);
  }
}

void append(benchmark::State &state)
{
  Outline const poly = ring(state.range(0), false);
  for (auto _ : state) {
    gxSMDGDPoly made;
    for (gxSMDGDPolyVertex const &v : poly.vertices())
      made << v;
    benchmark::DoNotOptimize(made.numVertices());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// For each piece, one pass over the boxes of all: what finding crossings takes without an order among the pieces.
void passes(benchmark::State &state)
{
  struct Box {
    double left, bottom, right, top;
  };
  Outline const poly = ring(state.range(0), false);
  std::vector<Box> boxes;
  gxVector<2> from = poly.vertex(-1, true).point();
  for (gxSMDGDPolyVertex const &v : poly.vertices()) {
    gxVector<2> const to = v.point();
    boxes.push_back({std::min(from.x(), to.x()), std::min(from.y(), to.y()), std::max(from.x(), to.x()),
                     std::max(from.y(), to.y())});
    from = to;
  }
  for (auto _ : state) {
    long near = 0;
    for (Box const &a : boxes)
      for (Box const &b : boxes)
        near += (a.left <= b.right) & (b.left <= a.right) & (a.bottom <= b.top) & (b.bottom <= a.top);
    benchmark::DoNotOptimize(near);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark *b)
{
  b->Arg(100)->Arg(1000)->Arg(10000);
}
BENCHMARK_CAPTURE(whole, lines, false)->Apply(sizes);
BENCHMARK_CAPTURE(whole, arcs, true)->Apply(sizes);
BENCHMARK_CAPTURE(revalidate, lines, false)->Apply(sizes);
BENCHMARK_CAPTURE(revalidate, arcs, true)->Apply(sizes);
BENCHMARK_CAPTURE(edit, lines, false)->Apply(sizes);
BENCHMARK_CAPTURE(edit, arcs, true)->Apply(sizes);
BENCHMARK(append)->Apply(sizes);
BENCHMARK(passes)->Apply(sizes);

}  // namespace

int main(int argc, char **argv)
{
  std::vector<gx_BenchRatio> ratios;
  auto const ratio = [&](std::string const &what, std::string const &ours, std::string const &peer, double aim) {
    ratios.push_back({what, ours, peer, aim});
  };
  double const editAims[] = {50, 150, 1000};
  int i = 0;
  for (std::string const n : {"100", "1000", "10000"}) {
    for (std::string const kind : {"lines/", "arcs/"}) {
      ratio("the check of one edit against a full test, " + kind + n, "revalidate/" + kind + n, "whole/" + kind + n,
            editAims[i]);
      ratio("two whole edits against a full test, " + kind + n, "edit/" + kind + n, "whole/" + kind + n,
            editAims[i] / 2);
    }
    ++i;
    ratio("a full test against a pass over all boxes for each piece", "whole/lines/" + n, "passes/" + n, 0.1);
  }
  ratio("an edit at n = 10000 against one at n = 100", "edit/lines/10000", "edit/lines/100", 0.2);
  ratio("appending 10000 vertices against 1000", "append/10000", "append/1000", 0.08);
  return gf_runBenchmarks(argc, argv, ratios);
}
