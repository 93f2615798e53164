// One-pel lines of gxPelScope, and of OpenCV on the same canvas and the same ends.

#include "backends/pels/pelsurface.h"
#include "bench/ratio.h"
#include "dispc/dispprop.h"
#include "foundation/lineseg.h"

#include <benchmark/benchmark.h>

#ifdef GXBENCH_HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace
{

constexpr int width = 1024;
constexpr int height = 768;

struct Ends {
  int x0, y0, x1, y1;
};

/// Lines of random directions inside of the canvas, up to a length.
std::vector<Ends> const &lines(int longest)
{
  static std::vector<Ends> made[3];
  std::vector<Ends> &list = made[longest < 50 ? 0 : longest < 500 ? 1 : 2];
  std::mt19937 random(1);
  auto const below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  while (list.size() < 4096) {
    int const x = below(width), y = below(height);
    list.push_back({x, y, std::clamp(x + below(2 * longest) - longest, 0, width - 1),
                    std::clamp(y + below(2 * longest) - longest, 0, height - 1)});
  }
  return list;
}

void drawOurs(benchmark::State &state)
{
  gxPelSurface surface(width, height);
  gxPelScope &scope = surface.overlayScope();
  gxGraphicProps const props(gxColor::red, 1, gxGraphicProps::penSolid, false);
  std::vector<gxLineSeg> segments;
  for (Ends const &e : lines(static_cast<int>(state.range(0))))
    segments.emplace_back(gxVector<2>(e.x0, e.y0), gxVector<2>(e.x1, e.y1));
  for (auto _ : state)
    for (gxLineSeg const &segment : segments)
      scope.draw(segment, props);
  state.SetItemsProcessed(state.iterations() * static_cast<long>(segments.size()));
}

#ifdef GXBENCH_HAVE_OPENCV
void drawPeer(benchmark::State &state)
{
  cv::Mat canvas(height, width, CV_8UC4, cv::Scalar());
  std::vector<Ends> const &list = lines(static_cast<int>(state.range(0)));
  for (auto _ : state)
    for (Ends const &e : list)
      cv::line(canvas, {e.x0, e.y0}, {e.x1, e.y1}, cv::Scalar(255, 0, 0, 255), 1, cv::LINE_8);
  state.SetItemsProcessed(state.iterations() * static_cast<long>(list.size()));
}
#endif

/// What an operator waits for: both layers into one picture.
void compose(benchmark::State &state)
{
  gxPelSurface surface(width, height);
  for (auto _ : state) {
    surface.invalidate();
    benchmark::DoNotOptimize(surface.picture().pointToOffset());
  }
  state.SetItemsProcessed(state.iterations() * width * height);
}

}  // namespace

int main(int argc, char **argv)
{
  std::vector<gx_BenchRatio> ratios;
  for (long const longest : {12, 100, 800}) {
    std::string const name = std::to_string(longest);
    benchmark::RegisterBenchmark("lines", drawOurs)->Arg(longest);
#ifdef GXBENCH_HAVE_OPENCV
    benchmark::RegisterBenchmark("lines-opencv", drawPeer)->Arg(longest);
#endif
    ratios.push_back({"one-pel lines of up to " + name + " pels against OpenCV's LINE_8", "lines/" + name,
                      "lines-opencv/" + name, 1.0});
  }
  benchmark::RegisterBenchmark("compose", compose);
  return gf_runBenchmarks(argc, argv, ratios);
}
