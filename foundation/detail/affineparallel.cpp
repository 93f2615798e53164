#include "foundation/detail/affinekernels.h"
#include "foundation/detail/affinesampler.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

/// @file
/// Sampling of rectangles parallel to the axes. The columns of samples are the same in every row and the rows the same
/// in every column, so that a source row is filtered once, at all columns, and kept while rows of samples need it.

namespace gx_affine
{
namespace
{
/// Copies of the first and of the last pel that lie before and behind a source row.
constexpr long pad = 4;
/// Bytes, and values of filtered rows, that a kernel may read or write in excess.
constexpr long excess = 32;

using Interpolation = gxAffineSamplingParams::Interpolation;

/// The places of samples along one axis of the source.
struct Axis {
  std::vector<std::int32_t> pel;       ///< the pel at the sample, or left of it; beyond the border by 2 at most
  std::vector<std::int16_t> fraction;  ///< the way to the next pel, in the unit of the interpolation
  bool isWhole = true;                 ///< all fractions are 0

  /// @param at   position of the first sample, @p step the way to the next, both in pels
  /// @param size of the source
  Axis(double at, double step, long count, long size, Interpolation interpolation) : pel(count), fraction(count)
  {
    for (long i = 0; i < count; ++i)
      place(i, at + static_cast<double>(i) * step, size, interpolation);
  }

 private:
  void place(long i, double u, long size, Interpolation interpolation)
  {
    if (interpolation == Interpolation::nearest) {
      pel[i] = static_cast<std::int32_t>(std::clamp<long>(gf_nudgedFloor(u), 0, size - 1));
      return;
    }
    // Values of pels belong to their centers. NaN counts as far to the left.
    double const highest = static_cast<double>(size) + 1.0;
    double const inside = u - 0.5 > -2.0 ? std::min(u - 0.5, highest) : -2.0;
    int const bits = interpolation == Interpolation::bilinear ? weightBits : cubicFractionBits;
    double const floor = std::floor(inside);
    int const parts = static_cast<int>(gf_roundHalfAway((inside - floor) * (1 << bits)));
    pel[i] = static_cast<std::int32_t>(floor) + (parts >> bits);
    fraction[i] = static_cast<std::int16_t>(parts & ((1 << bits) - 1));
    isWhole = isWhole && fraction[i] == 0;
  }
};

/// The columns as the kernels want them.
class ColumnTable
{
 public:
  ColumnTable(Axis const &axis, Interpolation interpolation)
  {
    auto const count = axis.pel.size();
    auto const padded = (count + 15) / 16 * 16;
    bool const cubic = interpolation == Interpolation::bicubic;
    for (std::size_t i = 0; i < padded; ++i) {
      std::size_t const k = std::min(i, count - 1);
      first_.push_back(axis.pel[k] + static_cast<std::int32_t>(pad) - (cubic ? 1 : 0));
      fraction_.push_back(axis.fraction[k]);
      if (cubic)
        weights_.push_back(cubicWeights()[axis.fraction[k]]);
    }
    group();
    columns_ = {static_cast<long>(count), first_.data(),     fraction_.data(),
                weights_.data(),          groupBase_.data(), groupShuffle_.empty() ? nullptr : groupShuffle_.data()};
  }

  Columns const &columns() const { return columns_; }

 private:
  void group()
  {
    constexpr std::size_t size = 8;
    constexpr int reach = 15;  // a shuffle picks from 16 bytes
    for (std::size_t g = 0; g < first_.size(); g += size) {
      auto const [low, high] = std::minmax_element(first_.begin() + g, first_.begin() + g + size);
      if (*high - *low > reach) {
        groupShuffle_.clear();
        return;
      }
      groupBase_.push_back(*low);
      for (std::size_t i = 0; i < size; ++i)
        groupShuffle_.push_back(static_cast<std::uint16_t>((first_[g + i] - *low) << 8 | 0x80));
    }
  }

  std::vector<std::int32_t> first_;
  std::vector<std::int16_t> fraction_;
  std::vector<CubicWeights> weights_;
  std::vector<std::int32_t> groupBase_;
  std::vector<std::uint16_t> groupShuffle_;
  Columns columns_;
};

/// Filtered source rows, the last four of them.
template <int C>
class FilteredRows
{
 public:
  FilteredRows(Job const &job, Kernels<C> const &kernels, Columns const &columns)
      : job_(job),
        filter_(job.interpolation == Interpolation::bilinear ? kernels.rowLinear : kernels.rowCubic),
        columns_(columns),
        padded_((pad + job.sourceWidth + pad + 1) * C + excess)
  {
    for (auto &values : values_)
      values.resize(job.columns * C + excess);
  }

  /// A row of the source; rows beyond the border are the border's. It stays until another fourth one is asked for.
  std::int16_t const *row(long y)
  {
    long const inside = std::clamp(y, 0L, job_.sourceHeight - 1);
    auto const slot = static_cast<std::size_t>(inside % slots);
    if (held_[slot] != inside) {
      padRow(job_.source + inside * job_.sourceStep);
      filter_(padded_.data(), columns_, values_[slot].data());
      held_[slot] = inside;
    }
    return values_[slot].data();
  }

 private:
  static constexpr long slots = 4;

  void padRow(unsigned char const *from)
  {
    unsigned char *to = padded_.data();
    for (long i = 0; i < pad; ++i, to += C)
      std::memcpy(to, from, C);
    std::memcpy(to, from, job_.sourceWidth * C);
    to += job_.sourceWidth * C;
    for (long i = 0; i < pad + 1; ++i, to += C)
      std::memcpy(to, from + (job_.sourceWidth - 1) * C, C);
  }

  Job const &job_;
  void (*filter_)(unsigned char const *, Columns const &, std::int16_t *);
  Columns const &columns_;
  std::vector<unsigned char> padded_;
  std::vector<std::int16_t> values_[slots];
  long held_[slots] = {-1, -1, -1, -1};
};

template <int C>
void interpolate(Job const &job, Axis const &across, Axis const &down)
{
  Kernels<C> const kernels = bestKernels<C>();
  ColumnTable const table(across, job.interpolation);
  FilteredRows<C> filtered(job, kernels, table.columns());
  for (long j = 0; j < job.rows; ++j) {
    unsigned char *const to = job.target + j * job.targetStep;
    long const y = down.pel[j];
    if (job.interpolation == Interpolation::bilinear) {
      std::int16_t const *const rows[] = {filtered.row(y), filtered.row(y + 1)};
      kernels.blendLinear(rows, down.fraction[j], job.columns * C, to);
    } else {
      std::int16_t const *const rows[] = {filtered.row(y - 1), filtered.row(y), filtered.row(y + 1),
                                          filtered.row(y + 2)};
      kernels.blendCubic(rows, cubicWeights()[down.fraction[j]], job.columns * C, to);
    }
  }
}

/// Samples at whole pels.
template <int C>
void pick(Job const &job, Axis const &across, Axis const &down)
{
  auto const inside = [](std::vector<std::int32_t> pels, long size) {
    for (std::int32_t &p : pels)
      p = static_cast<std::int32_t>(std::clamp<long>(p, 0, size - 1));
    return pels;
  };
  std::vector<std::int32_t> const columns = inside(across.pel, job.sourceWidth);
  std::vector<std::int32_t> const rows = inside(down.pel, job.sourceHeight);
  bool const isCopy =
      std::adjacent_find(columns.begin(), columns.end(), [](auto a, auto b) { return b != a + 1; }) == columns.end();
  for (long j = 0; j < job.rows; ++j) {
    unsigned char *const to = job.target + j * job.targetStep;
    unsigned char const *const from = job.source + rows[j] * job.sourceStep;
    if (j > 0 && rows[j] == rows[j - 1])
      std::memcpy(to, to - job.targetStep, job.columns * C);
    else if (isCopy)
      std::memcpy(to, from + columns.front() * C, job.columns * C);
    else
      for (long i = 0; i < job.columns; ++i)
        std::memcpy(to + i * C, from + static_cast<long>(columns[i]) * C, C);
  }
}
}  // namespace

template <int C>
void sampleParallel(Job const &job)
{
  gxXform<2> const &p = job.positions;
  Axis const across(p.translation().x(), p.matrix().element(0, 0), job.columns, job.sourceWidth, job.interpolation);
  Axis const down(p.translation().y(), p.matrix().element(1, 1), job.rows, job.sourceHeight, job.interpolation);
  if (across.isWhole && down.isWhole)
    pick<C>(job, across, down);
  else
    interpolate<C>(job, across, down);
}

template <int C>
void sample(Job const &job)
{
  gxMatrix<2> const &m = job.positions.matrix();
  if (m.element(0, 1) == 0.0 && m.element(1, 0) == 0.0)
    sampleParallel<C>(job);
  else
    sampleAlongLines<C>(job);
}

template void sample<1>(Job const &);
template void sample<4>(Job const &);
}  // namespace gx_affine
