#include "dispc/detail/pelscale.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define GX_SCALE_SHUFFLE
#include <tmmintrin.h>
#endif

namespace gx_scale
{
std::optional<long> wholeFactor(double scale)
{
  constexpr double tolerance = 1e-6;
  for (long k = gf_truncate(scale); k < gf_truncate(scale + 2.0); ++k)
    if (std::abs(scale - static_cast<double>(k)) <= tolerance)
      return k;
  return std::nullopt;
}

Positions blockPositions(long count, long factor, long first, long cut, long size)
{
  Positions positions;
  positions.reserve(count);
  long left = count;
  for (long at = first, length = factor - cut; left > 0 && at < size; ++at, length = factor) {
    length = std::min(length, left);
    positions.insert(positions.end(), length, gf_narrow(at));
    left -= length;
  }
  return positions;
}

namespace
{
/// Blocks of @p k pels, a whole number that @p scale is close to.
Positions positionsOfBlocks(Axis const &axis, double scale, long k)
{
  long const pel = std::clamp<long>(gf_nudgedFloor(axis.first / scale), 0, axis.size - 1);
  long const cut = std::clamp<long>(gf_nudgedFloor(axis.first - static_cast<double>(pel) * scale), 0, k - 1);
  return blockPositions(axis.count, k, pel, cut, axis.size);
}

/// Each pel shows the one that holds its top left corner.
Positions nearestPositions(Axis const &axis, double scale)
{
  Positions positions(axis.count);
  double const inverse = 1.0 / scale;
  std::int32_t const last = gf_narrow(axis.size - 1);
  for (long i = 0; i < axis.count; ++i)
    positions[i] = std::min(gf_truncate((axis.first + static_cast<double>(i)) * inverse), last);
  return positions;
}
}  // namespace

Positions positionsAtScale(Axis const &axis, double scale)
{
  if (auto const k = wholeFactor(scale); k && scale > 1.0)
    return positionsOfBlocks(axis, scale, *k);
  return nearestPositions(axis, scale);
}

namespace
{
constexpr long unit = 16;  ///< bytes

template <class Word>
void copyByTable(unsigned char const *from, unsigned char *to, Positions const &columns)
{
  for (std::int32_t const column : columns) {
    std::memcpy(to, from + column * sizeof(Word), sizeof(Word));
    to += sizeof(Word);
  }
}

/// Makes a row of the target out of one of the source. Where a unit of the target shows pels that lie within one unit
/// of the source, a single shuffle of bytes makes it; that holds for all units of an enlarged row.
class RowCopier
{
 public:
  RowCopier(Positions const &columns, long sourceWidth, long pelSize) : columns_(columns), pelSize_(pelSize)
  {
#ifdef GX_SCALE_SHUFFLE
    if (__builtin_cpu_supports("ssse3") && sourceWidth * pelSize >= unit)
      makeShuffles(sourceWidth * pelSize);
#else
    static_cast<void>(sourceWidth);
#endif
  }

  void operator()(unsigned char const *from, unsigned char *to) const
  {
    if (!shuffles_.empty())
      shuffle(from, to);
    else if (pelSize_ == 1)
      copyByTable<std::uint8_t>(from, to, columns_);
    else if (pelSize_ == 2)
      copyByTable<std::uint16_t>(from, to, columns_);
    else
      copyByTable<std::uint32_t>(from, to, columns_);
  }

 private:
  /// One unit of the target: byte i is the byte pick[i] of the 16 bytes of the source from `offset` on, or 0.
  struct Shuffle {
    alignas(unit) unsigned char pick[unit];
    long offset;
  };
  static constexpr unsigned char pickZero = 0x80;

#ifdef GX_SCALE_SHUFFLE
  /// Leaves shuffles_ empty if some unit of the target shows pels from farther apart.
  void makeShuffles(long sourceBytes)
  {
    long const perUnit = unit / pelSize_, count = static_cast<long>(columns_.size());
    std::vector<Shuffle> shuffles((count + perUnit - 1) / perUnit);
    for (long i = 0; i < count; i += perUnit) {
      long const end = std::min(i + perUnit, count);
      Shuffle &s = shuffles[i / perUnit];
      s.offset = std::min<long>(columns_[i] * pelSize_, sourceBytes - unit);
      if ((columns_[end - 1] + 1) * pelSize_ > s.offset + unit)
        return;
      std::fill_n(s.pick, unit, pickZero);
      for (long j = i; j < end; ++j)
        for (long b = 0; b < pelSize_; ++b)
          s.pick[(j - i) * pelSize_ + b] = static_cast<unsigned char>(columns_[j] * pelSize_ + b - s.offset);
    }
    shuffles_ = std::move(shuffles);
  }

  __attribute__((target("ssse3"))) void shuffle(unsigned char const *from, unsigned char *to) const
  {
    for (Shuffle const &s : shuffles_) {
      __m128i const pels = _mm_loadu_si128(reinterpret_cast<__m128i const *>(from + s.offset));
      __m128i const picked = _mm_shuffle_epi8(pels, _mm_load_si128(reinterpret_cast<__m128i const *>(s.pick)));
      _mm_storeu_si128(reinterpret_cast<__m128i *>(to), picked);
      to += unit;
    }
  }
#else
  void shuffle(unsigned char const *, unsigned char *) const {}
#endif

  Positions const &columns_;
  long pelSize_;
  std::vector<Shuffle> shuffles_;
};
}  // namespace

void copyPels(Source const &source, Target const &target, Positions const &columns, Positions const &rows, long pelSize)
{
  RowCopier const copyRow(columns, source.width, pelSize);
  auto const bytes = columns.size() * static_cast<std::size_t>(pelSize);
  unsigned char *to = target.bytes;
  for (std::size_t j = 0; j < rows.size(); ++j, to += target.step) {
    if (j > 0 && rows[j] == rows[j - 1])
      std::memcpy(to, to - target.step, bytes);
    else
      copyRow(source.bytes + rows[j] * source.step, to);
  }
}
}  // namespace gx_scale
