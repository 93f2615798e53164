#include "foundation/detail/affinekernels.h"
#include "foundation/detail/affinesampler.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>

/// @file
/// Sampling along lines in any direction. The part of each row of samples that has all its pels within the source is
/// cut into short lines for the kernels; each line starts from an exact position, so that steps in whole numbers do
/// not stray. The samples near the border and beyond it are taken one by one.

namespace gx_affine
{
namespace
{
using Interpolation = gxAffineSamplingParams::Interpolation;

constexpr double one = 1 << positionBits;
constexpr long longestLine = 32;
/// Larger steps, and rows further apart, would not fit into the numbers of a line.
constexpr double largestStep = 512.0;
constexpr long largestRowStep = 1L << 16;

/// A position as a whole pel and a fraction with @p bits bits, rounded. Further than 4 pels beyond the border nothing
/// changes any more. NaN counts as far to the left.
struct Place {
  long pel;
  int fraction;

  Place(double u, long size, int bits)
  {
    constexpr double beyond = 4.0;
    double const inside = u > -beyond ? std::min(u, static_cast<double>(size) + beyond) : -beyond;
    double const floor = std::floor(inside);
    long const parts = gf_roundHalfAway((inside - floor) * (1 << bits));
    pel = static_cast<long>(floor) + (parts >> bits);
    fraction = static_cast<int>(parts & ((1 << bits) - 1));
  }
};

/// Samples from `first` up to, not including, `end`.
struct Range {
  long first;
  long end;
};

/// The samples of a row of @p count, at @p u and @p du further each, that need no pel beyond the border on this axis,
/// with a pel to spare. Kernels may read three pels on from the one at a sample.
Range insideRange(double u, double du, long count, long size)
{
  double const low = 2.0, high = static_cast<double>(size - 5);
  if (!(low <= high) || (du == 0.0 && !(u >= low && u <= high)))
    return {0, 0};
  if (du == 0.0)
    return {0, count};
  double const a = (low - u) / du, b = (high - u) / du;
  double const first = std::ceil(std::min(a, b)), last = std::floor(std::max(a, b));
  auto const n = static_cast<double>(count);
  if (!(first <= last && last >= 0.0 && first < n))
    return {0, 0};
  return {static_cast<long>(std::max(first, 0.0)), static_cast<long>(std::min(last + 1.0, n))};
}

template <int C>
class LineSampler
{
 public:
  explicit LineSampler(Job const &job)
      : job_(job),
        kernels_(job.sourceStep <= largestRowStep ? bestKernels<C>() : plainKernels<C>()),
        du_(job.positions.matrix().element(0, 0)),
        dv_(job.positions.matrix().element(1, 0)),
        areStepsSmall_(std::abs(du_) <= largestStep && std::abs(dv_) <= largestStep)
  {
  }

  void run() const
  {
    // Values of pels belong to their centers; the nearest pel is the one that the sample lies in.
    double const shift = job_.interpolation == Interpolation::nearest ? 0.0 : 0.5;
    for (long j = 0; j < job_.rows; ++j) {
      gxVector<2> const start = job_.positions * gxVector<2>(0.0, static_cast<double>(j)) - gxVector<2>(shift, shift);
      sampleRow(start.x(), start.y(), job_.target + j * job_.targetStep);
    }
  }

 private:
  void sampleRow(double u, double v, unsigned char *to) const
  {
    Range const inU = insideRange(u, du_, job_.columns, job_.sourceWidth);
    Range const inV = insideRange(v, dv_, job_.columns, job_.sourceHeight);
    Range inside = {std::max(inU.first, inV.first), std::min(inU.end, inV.end)};
    if (inside.first >= inside.end || !areStepsSmall_)
      inside = {job_.columns, job_.columns};
    auto const border = [&](long first, long end) {
      for (long i = first; i < end; ++i)
        sampleBorder(u + static_cast<double>(i) * du_, v + static_cast<double>(i) * dv_, to + i * C);
    };
    border(0, inside.first);
    for (long i = inside.first; i < inside.end; i += longestLine)
      sampleInside(u + static_cast<double>(i) * du_, v + static_cast<double>(i) * dv_,
                   static_cast<int>(std::min(longestLine, inside.end - i)), to + i * C);
    border(inside.end, job_.columns);
  }

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
    switch (job_.interpolation) {
      case Interpolation::nearest:
        takeNearest(line, to);
        break;
      case Interpolation::bilinear:
        kernels_.lineLinear(line, to);
        break;
      case Interpolation::bicubic:
        kernels_.lineCubic(line, to);
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

  void sampleBorder(double u, double v, unsigned char *to) const
  {
    int const bits = job_.interpolation == Interpolation::nearest    ? 0
                     : job_.interpolation == Interpolation::bilinear ? weightBits
                                                                     : cubicFractionBits;
    if (bits == 0)
      u = std::floor(u), v = std::floor(v);
    Place const x(u, job_.sourceWidth, bits), y(v, job_.sourceHeight, bits);
    Surroundings at;
    at.origin = job_.source;
    for (int k = 0; k < 4; ++k) {
      at.across[k] = std::clamp(x.pel + k - 1, 0L, job_.sourceWidth - 1) * C;
      at.down[k] = std::clamp(y.pel + k - 1, 0L, job_.sourceHeight - 1) * job_.sourceStep;
    }
    at.acrossFraction = x.fraction;
    at.downFraction = y.fraction;
    switch (job_.interpolation) {
      case Interpolation::nearest:
        std::memcpy(to, at.origin + at.down[1] + at.across[1], C);
        break;
      case Interpolation::bilinear:
        sampleLinear<C>(at, to);
        break;
      case Interpolation::bicubic:
        sampleCubic<C>(at, to);
        break;
    }
  }

  Job const &job_;
  Kernels<C> kernels_;
  double du_, dv_;
  bool areStepsSmall_;
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
