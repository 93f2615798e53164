#include "dispc/detail/pelscale.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define GX_SCALE_SHUFFLE
#include <immintrin.h>
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
  Positions positions(std::min(count, (size - first) * factor - cut));
  auto to = positions.begin();
  for (long at = first, length = factor - cut; to != positions.end(); ++at, length = factor)
    to = std::fill_n(to, std::min<long>(length, positions.end() - to), gf_narrow(at));
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
/// A row of the target as a table of shuffles. The row is cut into units of 16 or 32 bytes; byte i of a unit is the
/// byte `pick[i]` of the 16 bytes of the source from `offset` on, or 0.
struct Shuffles {
  template <long pelSize>
  bool make(Positions const &columns, long sourceBytes, long unitBytes);

  std::vector<unsigned char> picks;
  std::vector<std::int32_t> offsets;
};

constexpr long window = 16;  ///< bytes of the source that one shuffle sees

/// False if some unit of the target shows pels of the source from farther apart than a shuffle sees. An enlarged row
/// has no such units of 16 bytes, and of 32 only at factors below 2 and a bit.
template <long pelSize>
bool Shuffles::make(Positions const &columns, long sourceBytes, long unitBytes)
{
  constexpr unsigned char pickZero = 0x80;
  long const perUnit = unitBytes / pelSize, count = static_cast<long>(columns.size());
  if (sourceBytes < window)
    return false;
  offsets.clear();
  offsets.reserve((count + perUnit - 1) / perUnit);
  picks.assign((count + perUnit - 1) / perUnit * unitBytes, pickZero);
  unsigned char *pick = picks.data();
  for (long i = 0; i < count; i += perUnit) {
    long const end = std::min(i + perUnit, count);
    long const offset = std::min(columns[i] * pelSize, sourceBytes - window);
    if ((columns[end - 1] + 1) * pelSize > offset + window)
      return false;
    offsets.push_back(gf_narrow(offset));
    for (long j = i; j < end; ++j)
      for (long b = 0; b < pelSize; ++b)
        *pick++ = static_cast<unsigned char>(columns[j] * pelSize + b - offset);
  }
  return true;
}

/// Makes the same row of the target several times, one below the other.
using Kernel = void (*)(Shuffles const &, unsigned char const *from, unsigned char *to, long step);
constexpr long mostRows = 4;

#ifdef GX_SCALE_SHUFFLE
template <int rows>
__attribute__((target("ssse3"))) void shuffle16(Shuffles const &shuffles, unsigned char const *from, unsigned char *to,
                                                long step)
{
  unsigned char const *pick = shuffles.picks.data();
  for (std::int32_t const offset : shuffles.offsets) {
    __m128i const pels = _mm_loadu_si128(reinterpret_cast<__m128i const *>(from + offset));
    __m128i const unit = _mm_shuffle_epi8(pels, _mm_loadu_si128(reinterpret_cast<__m128i const *>(pick)));
    for (int i = 0; i < rows; ++i)
      _mm_storeu_si128(reinterpret_cast<__m128i *>(to + i * step), unit);
    pick += 16;
    to += 16;
  }
}

template <int rows>
__attribute__((target("avx2"))) void shuffle32(Shuffles const &shuffles, unsigned char const *from, unsigned char *to,
                                               long step)
{
  unsigned char const *pick = shuffles.picks.data();
  for (std::int32_t const offset : shuffles.offsets) {
    __m128i const pels = _mm_loadu_si128(reinterpret_cast<__m128i const *>(from + offset));
    __m256i const unit = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(pels),
                                             _mm256_loadu_si256(reinterpret_cast<__m256i const *>(pick)));
    for (int i = 0; i < rows; ++i)
      _mm256_storeu_si256(reinterpret_cast<__m256i *>(to + i * step), unit);
    pick += 32;
    to += 32;
  }
}

constexpr Kernel kernels16[mostRows] = {shuffle16<1>, shuffle16<2>, shuffle16<3>, shuffle16<4>};
constexpr Kernel kernels32[mostRows] = {shuffle32<1>, shuffle32<2>, shuffle32<3>, shuffle32<4>};
#endif

/// Makes rows of the target, by the quickest way that the positions and the processor allow.
template <class Word>
class RowCopier
{
 public:
  RowCopier(Positions const &columns, [[maybe_unused]] long sourceWidth) : columns_(columns)
  {
#ifdef GX_SCALE_SHUFFLE
    long const sourceBytes = sourceWidth * size;
    if (__builtin_cpu_supports("avx2") && shuffles_.make<size>(columns, sourceBytes, 32))
      kernels_ = kernels32;
    else if (__builtin_cpu_supports("ssse3") && shuffles_.make<size>(columns, sourceBytes, 16))
      kernels_ = kernels16;
#endif
  }

  /// Makes @p count rows from @p to on that show the row @p from.
  void operator()(unsigned char const *from, unsigned char *to, long step, long count) const
  {
    if (kernels_) {
      for (; count > 0; count -= mostRows, to += mostRows * step)
        kernels_[std::min(count, mostRows) - 1](shuffles_, from, to, step);
      return;
    }
    copyByTable(from, to);
    for (; count > 1; --count, to += step)
      std::memcpy(to + step, to, columns_.size() * size);
  }

 private:
  static constexpr long size = sizeof(Word);

  void copyByTable(unsigned char const *from, unsigned char *to) const
  {
    for (std::int32_t const column : columns_) {
      std::memcpy(to, from + column * size, size);
      to += size;
    }
  }

  Positions const &columns_;
  Shuffles shuffles_;
  Kernel const *kernels_ = nullptr;
};

template <class Word>
void copyWords(Source const &source, Target const &target, Positions const &columns, Positions const &rows)
{
  RowCopier<Word> const copyRows(columns, source.width);
  unsigned char *to = target.bytes;
  for (auto row = rows.begin(); row != rows.end();) {
    auto const next = std::find_if(row, rows.end(), [&](std::int32_t r) { return r != *row; });
    copyRows(source.bytes + *row * source.step, to, target.step, next - row);
    to += (next - row) * target.step;
    row = next;
  }
}
}  // namespace

void copyPels(Source const &source, Target const &target, Positions const &columns, Positions const &rows, long pelSize)
{
  if (pelSize == 1)
    copyWords<std::uint8_t>(source, target, columns, rows);
  else if (pelSize == 2)
    copyWords<std::uint16_t>(source, target, columns, rows);
  else
    copyWords<std::uint32_t>(source, target, columns, rows);
}
}  // namespace gx_scale
