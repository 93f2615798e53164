#include "bench/ratio.h"
#include "dispc/wrfm/synthetic.h"

#ifdef GXBENCH_HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

#include <random>
#include <vector>

// The primitives of synthetic images on 640 x 480 pels of 8 bits: 1,000 lines within the picture, and circles.

namespace
{

constexpr int width = 640, height = 480, count = 1000;

struct Ends {
  gxVector<2> a, b;
};

std::vector<Ends> const &lines()
{
  static std::vector<Ends> const made = [] {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> x(5, width - 5), y(5, height - 5);
    std::vector<Ends> list(count);
    for (Ends &e : list)
      e = {{x(random), y(random)}, {x(random), y(random)}};
    return list;
  }();
  return made;
}

void drawLines(benchmark::State &state)
{
  gxPelBuffer<unsigned char> const buffer(width, height);
  for (auto _ : state)
    for (Ends const &e : lines())
      drawLinePelBuf(buffer, gx2SegmentLine(e.a, e.b), gxXform<2>(), 127, state.range(0) != 0);
  state.SetItemsProcessed(state.iterations() * count);
}

void drawCircles(benchmark::State &state)
{
  gxPelBuffer<unsigned char> const buffer(width, height);
  gx2SegmentArc const circle({320, 240}, 200, gxDegree(0), gxDegree(360));
  for (auto _ : state)
    drawArcPelBuf(buffer, circle, gxXform<2>(), 127, state.range(0) != 0, nullptr, nullptr, nullptr, nullptr);
}

#ifdef GXBENCH_HAVE_OPENCV
void drawPeerLines(benchmark::State &state)
{
  cv::Mat canvas(height, width, CV_8UC1, cv::Scalar());
  int const kind = state.range(0) ? cv::LINE_AA : cv::LINE_8;
  auto const whole = [](gxVector<2> const &p) { return cv::Point(int(p.x()), int(p.y())); };
  for (auto _ : state)
    for (Ends const &e : lines())
      cv::line(canvas, whole(e.a), whole(e.b), cv::Scalar(127), 1, kind);
  state.SetItemsProcessed(state.iterations() * count);
}
#endif

}  // namespace

int main(int argc, char **argv)
{
  for (long const smooth : {0, 1}) {
    benchmark::RegisterBenchmark("lines", drawLines)->Arg(smooth);
    benchmark::RegisterBenchmark("circle", drawCircles)->Arg(smooth);
#ifdef GXBENCH_HAVE_OPENCV
    benchmark::RegisterBenchmark("lines-opencv", drawPeerLines)->Arg(smooth);
#endif
  }
  return gf_runBenchmarks(argc, argv,
                          {{"plain lines against OpenCV's LINE_8", "lines/0", "lines-opencv/0", 2.0},
                           {"smooth lines against OpenCV's LINE_AA", "lines/1", "lines-opencv/1", 1.5}});
}
