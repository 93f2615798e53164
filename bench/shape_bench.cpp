#include "bench/ratio.h"
#include "foundation/bezier.h"
#include "foundation/ellipse2.h"
#include "foundation/outline.h"

#include <array>
#include <cmath>
#include <random>

// Distances from ellipses and curves, and the flattening of curves. The limit is to evaluate as many points of the same
// curve by its formula, in a plain loop.

namespace
{

constexpr long count = 1024;

/// Random numbers between 0 and 1, made once.
double const *numbers()
{
  static std::vector<double> const made = [] {
    std::vector<double> v(2 * count);
    std::mt19937 random(11);
    std::uniform_real_distribution<double> within(0.0, 1.0);
    for (double &x : v)
      x = within(random);
    return v;
  }();
  return made.data();
}

gxVector<2> query(long i)
{
  double const *const v = numbers() + 2 * (i & (count - 1));
  return {640.0 * v[0], 480.0 * v[1]};
}

gxEllipse2 const ellipse({200.0, 90.0}, gxRadian(0.4), {320.0, 240.0});

void ellipsePoints(benchmark::State &state)
{
  double const cosine = std::cos(0.4), sine = std::sin(0.4);
  for (auto _ : state)
    for (long i = 0; i < count; ++i) {
      double const t = 6.28 * numbers()[i];
      double const x = 200.0 * std::cos(t), y = 90.0 * std::sin(t);
      gxVector<2> p(320.0 + cosine * x - sine * y, 240.0 + sine * x + cosine * y);
      benchmark::DoNotOptimize(p);
    }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(ellipsePoints)->Name("points of an ellipse");

void ellipseDistances(benchmark::State &state)
{
  for (auto _ : state)
    for (long i = 0; i < count; ++i)
      benchmark::DoNotOptimize(ellipse.distanceToPoint(query(i)));
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(ellipseDistances)->Name("distances to an ellipse");

using Points = gxBezierCurve::Points;
using Weights = gxBezierCurve::Weights;
Points const points = {{{10.0, 20.0}, {800.0, 100.0}, {-200.0, 460.0}, {620.0, 400.0}}};

gxBezierCurve curveOf(bool isRational)
{
  return {points, isRational ? Weights{1.0, 2.0, 0.7, 1.5} : Weights{1.0, 1.0, 1.0, 1.0}};
}

/// Evaluates as many points as the flattening gives, in the Bernstein form.
void bezierPoints(benchmark::State &state, bool isRational)
{
  gxBezierCurve const curve = curveOf(isRational);
  gxShape::gxSampleResult found;
  curve.sample({0.0, 0.01, 5000, false, false}, found);
  std::size_t const n = found.positions().size();
  std::vector<gxVector<2>> to(n);
  Weights const w = curve.weights();
  for (auto _ : state) {
    for (std::size_t i = 0; i < n; ++i) {
      double const t = static_cast<double>(i) / static_cast<double>(n - 1), s = 1.0 - t;
      double const b0 = s * s * s * w[0], b1 = 3.0 * s * s * t * w[1];
      double const b2 = 3.0 * s * t * t * w[2], b3 = t * t * t * w[3];
      gxVector<2> const sum = points[0] * b0 + points[1] * b1 + points[2] * b2 + points[3] * b3;
      to[i] = isRational ? sum * (1.0 / (b0 + b1 + b2 + b3)) : sum;
    }
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(n));
}
BENCHMARK_CAPTURE(bezierPoints, plain, false)->Name("points of a Bezier curve");
BENCHMARK_CAPTURE(bezierPoints, rational, true)->Name("points of a rational Bezier curve");

void flatten(benchmark::State &state, bool isRational)
{
  gxBezierCurve const curve = curveOf(isRational);
  gxShape::gxSampleResult result;
  result.positionsReserve(5000);
  for (auto _ : state) {
    result.reset();
    curve.sample({0.0, 0.01, 5000, false, false}, result);
    benchmark::DoNotOptimize(result.positions().data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(result.positions().size()));
}
BENCHMARK_CAPTURE(flatten, plain, false)->Name("flattening a Bezier curve");
BENCHMARK_CAPTURE(flatten, rational, true)->Name("flattening a rational Bezier curve");

void bezierDistances(benchmark::State &state)
{
  gxBezierCurve const curve = curveOf(false);
  for (auto _ : state)
    for (long i = 0; i < count; ++i)
      benchmark::DoNotOptimize(curve.distanceToPoint(query(i)));
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(bezierDistances)->Name("distances to a Bezier curve");

void bezierLengths(benchmark::State &state)
{
  gxBezierCurve const curve = curveOf(false);
  for (auto _ : state)
    benchmark::DoNotOptimize(curve.perimeter());
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(bezierLengths)->Name("length of a Bezier curve");

}  // namespace

int main(int argc, char **argv)
{
  return gf_runBenchmarks(
      argc, argv,
      {{"distances / points of an ellipse", "distances to an ellipse", "points of an ellipse", 0.1},
       {"flattening / points of a Bezier curve", "flattening a Bezier curve", "points of a Bezier curve", 0.7},
       {"flattening / points of a rational Bezier curve", "flattening a rational Bezier curve",
        "points of a rational Bezier curve", 0.5}});
}
