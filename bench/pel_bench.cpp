#include "bench/ratio.h"
#include "foundation/affine.h"
#include "foundation/pelops.h"
#include "foundation/rlebuf.h"

#include <cstring>
#include <functional>
#include <random>

#ifdef GXBENCH_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

/// @file
/// Pel buffers: affine sampling of an image of 640 x 480 pels, and packing and unpacking of runs.

namespace
{
using Params = gxAffineSamplingParams;

constexpr long width = 640, height = 480;

/// A task of affine sampling of the middle of the image; the peer is given the same rectangle.
struct Task {
  char const *name;
  double part;     ///< size of the rectangle in that of the image
  double factor;   ///< size of the target in that of the image
  double degrees;  ///< by which the rectangle in the source is turned
};
constexpr Task tasks[] = {
    {"zoom2.37", 1.0, 2.37, 0.0},
    {"turn10", 0.7, 1.0, 10.0},
    {"turn10-over-border", 1.0, 1.0, 10.0},
};

long scaled(long size, Task const &task)
{
  return static_cast<long>(static_cast<double>(size) * task.factor);
}

gxAffineRectangle rectangle(Task const &task)
{
  gxDegree const angle(task.degrees);
  return {gxVector<2>(width / 2.0, height / 2.0), width * task.part, height * task.part, angle, angle};
}

template <class T>
gxPelBuffer<T> noise()
{
  std::mt19937 random(1);
  gxPelBuffer<T> const b(width, height);
  for (long y = 0; y < height; ++y)
    for (long x = 0; x < width * static_cast<long>(sizeof(T)); ++x)
      reinterpret_cast<unsigned char *>(b.pointToRow(y))[x] = static_cast<unsigned char>(random());
  return b;
}

template <class T>
void sampleOurs(benchmark::State &state, Task const &task, Params::Interpolation mode)
{
  gxPelBuffer<T> const source = noise<T>();
  gxPelBuffer<T> target(scaled(width, task), scaled(height, task));
  Params const params(rectangle(task), target.width(), target.height(), mode);
  for (auto _ : state) {
    gfAffineTransformImage<T>(source, target, params);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * target.width() * target.height());
}

/// The least that any sampling must do: to write the target.
void copyBytes(benchmark::State &state, long bytes)
{
  std::vector<char> const from(bytes, 'a');
  std::vector<char> to(bytes, 'b');
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * bytes);
}

#ifdef GXBENCH_HAVE_OPENCV
template <class T>
void samplePeer(benchmark::State &state, Task const &task, Params::Interpolation mode, bool byResize)
{
  cv::setNumThreads(1);
  gxPelBuffer<T> const source = noise<T>();
  int const type = sizeof(T) == 1 ? CV_8UC1 : CV_8UC4;
  cv::Mat const from(height, width, type, source.pointToOffset(), source.rowStep());
  cv::Mat to(static_cast<int>(scaled(height, task)), static_cast<int>(scaled(width, task)), type);
  // The peer counts from the centers of pels.
  gxXform<2> const map = Params(rectangle(task), to.cols, to.rows).sourceFromSamples();
  gxVector<2> const first = map * gxVector<2>(0.5, 0.5) - gxVector<2>(0.5, 0.5);
  gxMatrix<2> const &m = map.matrix();
  cv::Mat const toSource = (cv::Mat_<double>(2, 3) << m.element(0, 0), m.element(0, 1), first.x(), m.element(1, 0),
                            m.element(1, 1), first.y());
  int const interpolation = mode == Params::bilinear ? cv::INTER_LINEAR : cv::INTER_CUBIC;
  for (auto _ : state) {
    if (byResize)
      cv::resize(from, to, to.size(), 0, 0, interpolation);
    else
      cv::warpAffine(from, to, toSource, to.size(), interpolation | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * to.cols * to.rows);
}
#endif

std::vector<gx_BenchRatio> ratios;

void add(std::string const &name, std::function<void(benchmark::State &)> const &run)
{
  benchmark::RegisterBenchmark(name.c_str(), run);
}

template <class T>
void addSampling(std::string const &pels)
{
  for (Task const &task : tasks) {
    std::string const copy = "copy/" + pels + "/" + task.name;
    long const bytes = scaled(width, task) * scaled(height, task) * static_cast<long>(sizeof(T));
    add(copy, [=](benchmark::State &s) { copyBytes(s, bytes); });
    for (auto mode : {Params::nearest, Params::bilinear, Params::bicubic}) {
      char const *const modes[] = {"", "nearest", "bilinear", "bicubic"};
      std::string const what = pels + "/" + task.name + "/" + modes[mode];
      std::string const ours = "sample/" + what;
      add(ours, [&task, mode](benchmark::State &s) { sampleOurs<T>(s, task, mode); });
      ratios.push_back({ours + " against a copy of the result", ours, copy, 0.0});
#ifdef GXBENCH_HAVE_OPENCV
      if (mode == Params::nearest)
        continue;
      double const aim = mode == Params::bilinear ? 1.5 : 3.0;
      add("opencv-warpAffine/" + what, [&task, mode](benchmark::State &s) { samplePeer<T>(s, task, mode, false); });
      ratios.push_back({ours + " against OpenCV warpAffine", ours, "opencv-warpAffine/" + what, aim});
      if (task.degrees != 0.0)
        continue;
      add("opencv-resize/" + what, [&task, mode](benchmark::State &s) { samplePeer<T>(s, task, mode, true); });
      ratios.push_back({ours + " against OpenCV resize", ours, "opencv-resize/" + what, aim});
#endif
    }
  }
}

/// A picture of regions: flat rectangles and disks over each other.
gxPelBuffer<unsigned char> regions()
{
  std::mt19937 random(5);
  auto const upTo = [&](long n) { return static_cast<long>(random() % n); };
  gxPelBuffer<unsigned char> b(width, height);
  for (int n = 0; n < 200; ++n) {
    long const x0 = upTo(width), y0 = upTo(height), r = 3 + upTo(25);
    bool const isDisk = upTo(2) == 0;
    auto const value = static_cast<unsigned char>(upTo(16));
    for (long y = std::max(0L, y0 - r); y < std::min(height, y0 + r); ++y)
      for (long x = std::max(0L, x0 - r); x < std::min(width, x0 + r); ++x)
        if (!isDisk || (x - x0) * (x - x0) + (y - y0) * (y - y0) < r * r)
          b.put(x, y, value);
  }
  return b;
}

void pack(benchmark::State &state)
{
  gxPelBuffer<unsigned char> const image = regions();
  gxRLEBuffer packed;
  for (auto _ : state)
    packed.encode(image);
  state.SetBytesProcessed(state.iterations() * width * height);
  state.SetLabel(std::to_string(width * height / packed.numRuns()) + " pels a run");
}

void unpack(benchmark::State &state)
{
  gxRLEBuffer const packed(regions());
  gxPelBuffer<unsigned char> const target(width, height);
  for (auto _ : state) {
    packed.unpack(target);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * width * height);
}

void unpackToNew(benchmark::State &state)
{
  gxRLEBuffer const packed(regions());
  for (auto _ : state)
    benchmark::DoNotOptimize(packed.image().pointToOffset());
  state.SetBytesProcessed(state.iterations() * width * height);
}

void copyToNew(benchmark::State &state)
{
  gxPelBuffer<unsigned char> const image = regions();
  for (auto _ : state)
    benchmark::DoNotOptimize(gfPelCopy<unsigned char>(image).pointToOffset());
  state.SetBytesProcessed(state.iterations() * width * height);
}

void addRuns()
{
  constexpr double aim = 1.0 / 3.0;
  add("copy/runs", [](benchmark::State &s) { copyBytes(s, width * height); });
  add("copy/runs/new", copyToNew);
  add("runs/pack", pack);
  add("runs/unpack", unpack);
  add("runs/unpack/new", unpackToNew);
  ratios.push_back({"packing runs against copying the pels", "runs/pack", "copy/runs", aim});
  ratios.push_back({"unpacking runs against copying the pels", "runs/unpack", "copy/runs", aim});
  ratios.push_back({"the same, to a new buffer", "runs/unpack/new", "copy/runs/new", aim});
}
}  // namespace

int main(int argc, char **argv)
{
  addSampling<unsigned char>("grey");
  addSampling<gxPackedRGB32Pel>("color");
  addRuns();
  return gf_runBenchmarks(argc, argv, ratios);
}
