#include "foundation/detail/affinekernels.h"
#include "foundation/detail/affinesampler.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>

/// @file
/// Sampling along lines in any direction. Rows of samples are cut into short lines, each of which starts from an
/// exact position, so that steps in whole numbers do not stray. Lines in the inside of the source go to the kernels;
/// near the border and beyond it, each sample gets a small patch of pels of its own.

namespace gx_affine
{
namespace
{
constexpr double one = 1 << positionBits;
constexpr int longestLine = 32;
/// Larger steps would not fit into the numbers of a line.
constexpr double largestStep = 512.0;

/// Position as a whole pel and a fraction with positionBits bits; beyond the border, of which @p beyond is far
/// enough, nothing changes any more. NaN counts as far to the left.
struct Place {
  long pel;
  std::int32_t fraction;

  Place(double u, long size, double beyond)
  {
    double const highest = static_cast<double>(size) + beyond;
    double const inside = u > -beyond ? std::min(u, highest) : -beyond;
    double const floor = std::floor(inside);
    pel = static_cast<long>(floor);
    fraction = static_cast<std::int32_t>((inside - floor) * one);
  }
};

template <int C>
class LineSampler
{
 public:
  explicit LineSampler(Job const &job)
      : job_(job),
        kernels_(bestKernels<C>()),
        border_(plainKernels<C>()),
        du_(job.positions.matrix().element(0, 0)),
        dv_(job.positions.matrix().element(1, 0))
  {
    lineLength_ = std::abs(du_) <= largestStep && std::abs(dv_) <= largestStep ? longestLine : 1;
  }

  void run() const
  {
    // Values of pels belong to their centers; the nearest pel is the one that the sample lies in.
    double const shift = job_.interpolation == gxAffineSamplingParams::nearest ? 0.0 : 0.5;
    for (long j = 0; j < job_.rows; ++j) {
      gxVector<2> const start = job_.positions * gxVector<2>(0.0, static_cast<double>(j)) - gxVector<2>(shift, shift);
      unsigned char *const row = job_.target + j * job_.targetStep;
      for (long i = 0; i < job_.columns; i += lineLength_) {
        auto const n = static_cast<double>(i);
        int const count = static_cast<int>(std::min<long>(lineLength_, job_.columns - i));
        sampleLine(start.x() + n * du_, start.y() + n * dv_, count, row + i * C);
      }
    }
  }

 private:
  void sampleLine(double u, double v, int count, unsigned char *to) const
  {
    double const last = count - 1;
    if (isInside(u, job_.sourceWidth) && isInside(u + last * du_, job_.sourceWidth) && isInside(v, job_.sourceHeight) &&
        isInside(v + last * dv_, job_.sourceHeight))
      sampleInside(u, v, count, to);
    else
      for (int i = 0; i < count; ++i)
        sampleBorder(u + i * du_, v + i * dv_, to + i * C);
  }

  /// True if a sample at @p u, or a little off, needs no pel beyond the border; three pels more to the right leave
  /// room for kernels that read four at once.
  static bool isInside(double u, long size) { return u >= 2.0 && u <= static_cast<double>(size - 5); }

  void sampleInside(double u, double v, int count, unsigned char *to) const
  {
    double const pelU = std::floor(u), pelV = std::floor(v);
    Line line;
    line.origin = job_.source + static_cast<long>(pelV) * job_.sourceStep + static_cast<long>(pelU) * C;
    line.rowStep = job_.sourceStep;
    line.u = static_cast<std::int32_t>((u - pelU) * one);
    line.v = static_cast<std::int32_t>((v - pelV) * one);
    line.du = static_cast<std::int32_t>(gf_roundHalfAway(du_ * one));
    line.dv = static_cast<std::int32_t>(gf_roundHalfAway(dv_ * one));
    line.count = count;
    sampleBy(kernels_, line, to);
  }

  void sampleBorder(double u, double v, unsigned char *to) const
  {
    // The patch has one pel before the one at the sample and three behind it.
    constexpr int size = 5;
    constexpr double beyond = 4.0;
    Place const x(u, job_.sourceWidth, beyond), y(v, job_.sourceHeight, beyond);
    unsigned char patch[size * size * C];
    for (int j = 0; j < size; ++j)
      for (int i = 0; i < size; ++i) {
        long const px = std::clamp(x.pel + i - 1, 0L, job_.sourceWidth - 1);
        long const py = std::clamp(y.pel + j - 1, 0L, job_.sourceHeight - 1);
        std::memcpy(patch + (j * size + i) * C, job_.source + py * job_.sourceStep + px * C, C);
      }
    Line const line = {patch, size * C, (1 << positionBits) + x.fraction, (1 << positionBits) + y.fraction, 0, 0, 1};
    sampleBy(border_, line, to);
  }

  void sampleBy(Kernels<C> const &kernels, Line const &line, unsigned char *to) const
  {
    switch (job_.interpolation) {
      case gxAffineSamplingParams::bilinear:
        kernels.lineLinear(line, to);
        break;
      case gxAffineSamplingParams::bicubic:
        kernels.lineCubic(line, to);
        break;
      case gxAffineSamplingParams::nearest:
        takeNearest(line, to);
        break;
    }
  }

  static void takeNearest(Line const &line, unsigned char *to)
  {
    std::int32_t u = line.u, v = line.v;
    for (int i = 0; i < line.count; ++i, u += line.du, v += line.dv)
      std::memcpy(to + i * C,
                  line.origin + (v >> positionBits) * line.rowStep + static_cast<long>(u >> positionBits) * C, C);
  }

  Job const &job_;
  Kernels<C> kernels_;
  Kernels<C> border_;
  double du_, dv_;
  int lineLength_;
};
}  // namespace

template <int C>
void sampleAlongLines(Job const &job)
{
  LineSampler<C>(job).run();
}

template void sampleAlongLines<1>(Job const &);
template void sampleAlongLines<4>(Job const &);
}  // namespace gx_affine
