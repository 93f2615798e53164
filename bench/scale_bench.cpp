#include "bench/nullscope.h"
#include "bench/ratio.h"
#include "foundation/pelbuf.h"
#include "foundation/rlebuf.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <random>
#include <string>

#ifdef GXBENCH_HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

// An image of 640 x 480 at other scales, result buffer included: whole factors make blocks of pels, others go by a
// table. The limits of the machine are to fill memory of the size of the result, and to copy that much.

namespace
{
long allocations = 0;
constexpr long width = 640, height = 480;

struct Tools : NullScope {
  using gxUIScope::pelScale;
};

template <class T>
gxPelBuffer<T> const &image()
{
  static gxPelBuffer<T> const made = [] {
    gxPelBuffer<T> pels(width, height);
    std::mt19937 random(7);
    for (long y = 0; y < height; ++y)
      for (long i = 0; i < width * static_cast<long>(sizeof(T)); ++i)
        reinterpret_cast<unsigned char *>(pels.pointToRow(y))[i] = static_cast<unsigned char>(random());
    return pels;
  }();
  return made;
}

template <class T>
gxPelBuffer<T> scaled(double scale, gxUIScope::InterpolationModes mode)
{
  gxPelBuffer<T> result;
  Tools::pelScale(image<T>(), result, scale, gxUIRect::firstQuad, gxPair<long>(), mode);
  return result;
}

template <class T>
void pelScale(benchmark::State &state, double scale, long mode)
{
  long before = allocations;
  for (auto _ : state)
    benchmark::DoNotOptimize(scaled<T>(scale, gxUIScope::InterpolationModes(mode)).rep());
  state.counters["allocations"] = static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
}

/// Memory of the size of a result, touched before.
template <class T>
std::vector<unsigned char> memory(double scale)
{
  gxPelBuffer<T> const result = scaled<T>(scale, gxUIScope::InterpolationModes{0});
  return std::vector<unsigned char>(static_cast<std::size_t>(result.rowStep() * result.height()), 1);
}

template <class T>
void fill(benchmark::State &state, double scale)
{
  std::vector<unsigned char> to = memory<T>(scale);
  for (auto _ : state) {
    std::memset(to.data(), 5, to.size());
    benchmark::ClobberMemory();
  }
}

template <class T>
void copy(benchmark::State &state, double scale)
{
  std::vector<unsigned char> const from = memory<T>(scale);
  std::vector<unsigned char> to = from;
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), to.size());
    benchmark::ClobberMemory();
  }
}

#ifdef GXBENCH_HAVE_OPENCV
template <class T>
void opencv(benchmark::State &state, double scale)
{
  cv::setNumThreads(1);
  cv::Mat const from(height, width,
                     sizeof(T) == 1   ? CV_8UC1
                     : sizeof(T) == 2 ? CV_16UC1
                                      : CV_8UC4,
                     image<T>().pointToOffset(), static_cast<std::size_t>(image<T>().rowStep()));
  cv::Mat to;
  for (auto _ : state) {
    cv::resize(from, to, cv::Size(), scale, scale, cv::INTER_NEAREST);
    benchmark::ClobberMemory();
  }
}
#endif

/// An overlay of labels, with runs of 1 to 16 pels.
gxRLEBuffer const &labels()
{
  static gxRLEBuffer const made = [] {
    gxPelBuffer<unsigned char> pels(width, height);
    std::mt19937 random(7);
    for (long y = 0; y < height; ++y)
      for (long x = 0; x < width;) {
        auto const v = static_cast<unsigned char>(random());
        for (long n = 1 + static_cast<long>(random() % 16); n > 0 && x < width; --n, ++x)
          pels.put(x, y, v);
      }
    return gxRLEBuffer(pels);
  }();
  return made;
}

/// A surface that takes run-length images.
class RunScope : public NullScope
{
 public:
  using NullScope::draw;
  void draw(gxRLEBuffer const &buffer, gxPoint const &, std::vector<unsigned char> const &, bool,
            unsigned char) override
  {
    benchmark::DoNotOptimize(buffer.pointToRow(0));
    if (keep)
      *keep = buffer;
  }
  gxPair<long> size() const override { return {4 * width, 4 * height}; }

  gxRLEBuffer *keep = nullptr;
};

void scaleRuns(RunScope &scope, long factor)
{
  std::vector<unsigned char> const map;
  if (factor > 0)
    scope.expand(labels(), gxPoint(), map, gxPair<long>(factor, factor), false, 0);
  else
    scope.sample(labels(), gxPoint(), map, gxPair<long>(-factor, -factor), false, 0);
}

/// Enlarges by a factor, or reduces by a negative one.
void runs(benchmark::State &state, long factor)
{
  RunScope scope;
  long before = allocations;
  for (auto _ : state)
    scaleRuns(scope, factor);
  state.counters["allocations"] = static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
}

/// Loads and stores every run of rows.
void passOver(benchmark::State &state, gxRLEBuffer const &buffer, long step)
{
  std::vector<gxRLEBufferRun> to(static_cast<std::size_t>(buffer.numRuns() + buffer.height()));
  for (auto _ : state) {
    gxRLEBufferRun *at = to.data();
    for (long y = 0; y < buffer.height(); y += step)
      for (gxRLEBufferRun const *run = buffer.pointToRow(y);; ++run) {
        *at++ = *run;
        if (run->length == 0)
          break;
      }
    benchmark::ClobberMemory();
  }
}

void passOverResult(benchmark::State &state, long factor)
{
  gxRLEBuffer result;
  RunScope scope;
  scope.keep = &result;
  scaleRuns(scope, factor);
  passOver(state, result, 1);
}

void passOverKept(benchmark::State &state, long factor)
{
  passOver(state, labels(), factor);
}

std::vector<gx_BenchRatio> ratios;

template <class T>
void addScale(std::string const &pels, double scale, std::string const &name, double overOpenCV, double overLimit,
              bool isFill)
{
  std::string const what = name + ", " + pels;
  benchmark::RegisterBenchmark(what.c_str(), pelScale<T>, scale, 0)->Unit(benchmark::kMicrosecond);
  std::string const limit = (isFill ? "fill as for " : "copy as for ") + what;
  benchmark::RegisterBenchmark(limit.c_str(), isFill ? fill<T> : copy<T>, scale)->Unit(benchmark::kMicrosecond);
  std::string const peer = "OpenCV " + what;
#ifdef GXBENCH_HAVE_OPENCV
  benchmark::RegisterBenchmark(peer.c_str(), opencv<T>, scale)->Unit(benchmark::kMicrosecond);
#endif
  ratios.push_back({what + " / OpenCV nearest", what, peer, overOpenCV});
  ratios.push_back({what + (isFill ? " / memset" : " / memcpy") + " of the result", what, limit, overLimit});
}

void addInterpolated(std::string const &name, long mode)
{
  benchmark::RegisterBenchmark(name.c_str(), pelScale<unsigned char>, 3.0, mode)->Unit(benchmark::kMicrosecond);
}

void addRuns(long factor, double overPass)
{
  std::string const what = (factor > 0 ? "runs enlarged by " : "runs reduced by ") + std::to_string(std::abs(factor));
  benchmark::RegisterBenchmark(what.c_str(), runs, factor)->Unit(benchmark::kMicrosecond);
  std::string const pass = factor > 0 ? "pass over " + what : "pass over what is " + what;
  benchmark::RegisterBenchmark(pass.c_str(), factor > 0 ? passOverResult : passOverKept, std::abs(factor))
      ->Unit(benchmark::kMicrosecond);
  ratios.push_back({what + " / a pass over the runs", what, pass, overPass});
}
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
  addScale<unsigned char>("8 bits", 3.0, "blocks of 3 x 3", 15, 0.55, true);
  addScale<gxPackedRGB32Pel>("32 bits", 3.0, "blocks of 3 x 3", 8, 0.55, true);
  addScale<unsigned char>("8 bits", 2.37, "scale 2.37", 9, 0.7, false);
  addScale<gxPackedRGB32Pel>("32 bits", 2.37, "scale 2.37", 4, 0.7, false);
  addInterpolated("bilinear by 3, 8 bits", 1);
  addInterpolated("bicubic by 3, 8 bits", 2);
  addRuns(2, 0.6);
  addRuns(-2, 1 / 3.2);
  return gf_runBenchmarks(argc, argv, ratios);
}
