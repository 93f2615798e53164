#include "foundation/detail/affinekernels.h"
#include "foundation/detail/affinesampler.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

/// @file
/// Sampling along lines in any direction. The part of each row of samples that has all its pels within the source is
/// cut into short lines for the kernels; each line starts from an exact position, so that steps in whole numbers do
/// not stray. Where samples reach the border, the source is continued; where that would cost too much, the samples near
/// the border and beyond it are taken one by one.

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
    constexpr long beyond = 4;
    double const inside = u > -beyond ? std::min(u, static_cast<double>(size + beyond)) : -beyond;
    // Moved to where truncation is the floor.
    auto const parts = static_cast<std::int64_t>((inside + beyond) * static_cast<double>(1L << bits) + 0.5);
    pel = (parts >> bits) - beyond;
    fraction = static_cast<int>(parts & ((1L << bits) - 1));
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
    switch (job_.interpolation) {
      case Interpolation::nearest:
        borderNearest(u, v, to);
        break;
      case Interpolation::bilinear:
        borderLinear(u, v, to);
        break;
      case Interpolation::bicubic:
        borderCubic(u, v, to);
        break;
    }
  }

  /// Offset of a column of the source; beyond the border, of the border's.
  long column(long x) const { return std::clamp(x, 0L, job_.sourceWidth - 1) * C; }
  unsigned char const *row(long y) const
  {
    return job_.source + std::clamp(y, 0L, job_.sourceHeight - 1) * job_.sourceStep;
  }

  void borderNearest(double u, double v, unsigned char *to) const
  {
    Place const x(u - 0.5, job_.sourceWidth, 0), y(v - 0.5, job_.sourceHeight, 0);
    std::memcpy(to, row(y.pel) + column(x.pel), C);
  }

  void borderLinear(double u, double v, unsigned char *to) const
  {
    Place const x(u, job_.sourceWidth, weightBits), y(v, job_.sourceHeight, weightBits);
    long const left = column(x.pel), right = column(x.pel + 1);
    unsigned char const *const above = row(y.pel), *const below = row(y.pel + 1);
    for (int c = 0; c < C; ++c) {
      int const a = mixLinear(above[left + c] << linearBits, above[right + c] << linearBits, x.fraction);
      int const b = mixLinear(below[left + c] << linearBits, below[right + c] << linearBits, x.fraction);
      to[c] = toPel(mixLinear(a, b, y.fraction), linearBits);
    }
  }

  void borderCubic(double u, double v, unsigned char *to) const
  {
    Place const x(u, job_.sourceWidth, cubicFractionBits), y(v, job_.sourceHeight, cubicFractionBits);
    CubicWeights const &across = cubicWeights_[x.fraction], &down = cubicWeights_[y.fraction];
    long const columns[] = {column(x.pel - 1), column(x.pel), column(x.pel + 1), column(x.pel + 2)};
    int sums[C] = {};
    for (int j = 0; j < 4; ++j) {
      unsigned char const *const pels = row(y.pel + j - 1);
      for (int c = 0; c < C; ++c) {
        int inRow = 0;
        for (int i = 0; i < 4; ++i)
          inRow += timesWeight(pels[columns[i] + c] << cubicBits, across[i]);
        sums[c] += timesWeight(inRow, down[j]);
      }
    }
    for (int c = 0; c < C; ++c)
      to[c] = toPel(sums[c], cubicBits);
  }

  Job const &job_;
  Kernels<C> kernels_;
  CubicWeights const *cubicWeights_ = cubicWeights();
  double du_, dv_;
  bool areStepsSmall_;
};
template <int C>
unsigned char *putPels(unsigned char *to, unsigned char const *pel, long n)
{
  for (long i = 0; i < n; ++i, to += C)
    std::memcpy(to, pel, C);
  return to;
}

/// The part of the source that the samples of a job fall on, where they reach beyond the border: a copy in which the
/// border goes on as far as they reach, so that none of them is taken one by one.
template <int C>
class Continuation
{
 public:
  explicit Continuation(Job const &job) : job_(job)
  {
    auto const lastColumn = static_cast<double>(job.columns - 1), lastRow = static_cast<double>(job.rows - 1);
    gxVector<2> const ends[] = {job.positions * gxVector<2>(lastColumn, 0.0), job.positions * gxVector<2>(0.0, lastRow),
                                job.positions * gxVector<2>(lastColumn, lastRow)};
    gxVector<2> low = job.positions * gxVector<2>(), high = low;
    for (gxVector<2> const &end : ends) {
      low = {std::min(low.x(), end.x()), std::min(low.y(), end.y())};
      high = {std::max(high.x(), end.x()), std::max(high.y(), end.y())};
    }
    gxVector<2> const margin(8.0, 8.0);  // more than kernels read beyond a sample
    low_ = low - margin;
    size_ = high + margin - low_;
    isOver_ = low_.x() < 0.0 || low_.y() < 0.0 || low_.x() + size_.x() > static_cast<double>(job.sourceWidth) ||
              low_.y() + size_.y() > static_cast<double>(job.sourceHeight);
  }

  /// True if some samples are near the border or beyond it, and so dense that the copy costs less than they do.
  bool isWorthIt() const
  {
    constexpr double furthest = 1e9, densest = 3.0;  // pels of the copy for each sample
    bool const isNear = std::abs(low_.x()) <= furthest && std::abs(low_.y()) <= furthest;
    auto const samples = static_cast<double>(job_.columns) * static_cast<double>(job_.rows);
    return isOver_ && isNear && size_.x() * size_.y() <= densest * samples &&
           size_.x() * C < static_cast<double>(largestRowStep);
  }

  void sample() const
  {
    long const left = static_cast<long>(std::floor(low_.x())), top = static_cast<long>(std::floor(low_.y()));
    long const width = static_cast<long>(size_.x()) + 2, height = static_cast<long>(size_.y()) + 2;
    std::unique_ptr<unsigned char[]> const pels(new unsigned char[width * height * C]);
    unsigned char *to = pels.get();
    for (long y = top; y < top + height; ++y)
      to = putRow(y, left, width, to);

    Job job = job_;
    job.source = pels.get();
    job.sourceStep = width * C;
    job.sourceWidth = width;
    job.sourceHeight = height;
    gxVector<2> const origin(static_cast<double>(left), static_cast<double>(top));
    job.positions.translation(job_.positions.translation() - origin);
    LineSampler<C>(job).run();
  }

 private:
  unsigned char *putRow(long y, long left, long width, unsigned char *to) const
  {
    unsigned char const *const row = job_.source + std::clamp(y, 0L, job_.sourceHeight - 1) * job_.sourceStep;
    long const first = std::clamp(left, 0L, job_.sourceWidth);
    long const end = std::clamp(left + width, first, job_.sourceWidth);
    long const before = std::clamp(-left, 0L, width);
    to = putPels<C>(to, row, before);
    std::memcpy(to, row + first * C, static_cast<std::size_t>((end - first) * C));
    to += (end - first) * C;
    return putPels<C>(to, row + (job_.sourceWidth - 1) * C, width - before - (end - first));
  }

  Job const &job_;
  gxVector<2> low_, size_;
  bool isOver_ = false;
};
}  // namespace

template <int C>
void sampleAlongLines(Job const &job)
{
  Continuation<C> const continuation(job);
  if (continuation.isWorthIt())
    continuation.sample();
  else
    LineSampler<C>(job).run();
}

template void sampleAlongLines<1>(Job const &);
template void sampleAlongLines<4>(Job const &);
}  // namespace gx_affine
