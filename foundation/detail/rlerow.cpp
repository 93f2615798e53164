#include "foundation/detail/rlerow.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#define GX_RLE_AVX2
#endif

namespace gx_rle
{
namespace
{
constexpr gxRLEBufferRun closing = {0, 0};

gxRLEBufferRun *putRun(gxRLEBufferRun *to, unsigned char value, long length)
{
  for (; length > 255; length -= 255)
    *to++ = {value, 255};
  *to++ = {value, static_cast<unsigned char>(length)};
  return to;
}

/// Writes the place behind each maximal run of equal pels but the last; returns the address behind.
std::uint32_t *findEnds(unsigned char const *pels, long width, std::uint32_t *to)
{
  for (long i = 1; i < width; ++i)
    if (pels[i] != pels[i - 1])
      *to++ = static_cast<std::uint32_t>(i);
  return to;
}

#if defined(GX_RLE_AVX2)
#define GX_AVX2 __attribute__((target("avx2,bmi,popcnt")))

GX_AVX2 inline __m256i load(unsigned char const *p)
{
  return _mm256_loadu_si256(reinterpret_cast<__m256i const *>(p));
}

/// A bit for each of 64 pels that differs from the one before it.
GX_AVX2 inline std::uint64_t changes(unsigned char const *pels)
{
  __m256i const low = _mm256_cmpeq_epi8(load(pels), load(pels - 1));
  __m256i const high = _mm256_cmpeq_epi8(load(pels + 32), load(pels + 31));
  return ~(static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm256_movemask_epi8(high))) << 32 |
           static_cast<std::uint32_t>(_mm256_movemask_epi8(low)));
}

/// Writes the places of the set bits, and up to one number more: whether their number is odd is hard to foresee, so
/// they are written in pairs and counted apart from that.
GX_AVX2 inline std::uint32_t *writePlaces(std::uint64_t bits, std::uint32_t base, std::uint32_t *to)
{
  int const count = std::popcount(bits);
  for (std::uint32_t *place = to; bits != 0; place += 2) {
    place[0] = base + static_cast<std::uint32_t>(std::countr_zero(bits));
    bits &= bits - 1;
    place[1] = base + static_cast<std::uint32_t>(std::countr_zero(bits));
    bits &= bits - 1;
  }
  return to + count;
}

/// As findEnds(), 64 pels at once.
GX_AVX2 std::uint32_t *findEndsAvx2(unsigned char const *pels, long width, std::uint32_t *to)
{
  constexpr long block = 64;
  if (width <= block)
    return findEnds(pels, width, to);
  long i = 1;
  for (; i + block <= width; i += block)
    to = writePlaces(changes(pels + i), static_cast<std::uint32_t>(i), to);
  if (i == width)
    return to;
  // The last block overlaps the one before it, of which it leaves out the bits.
  long const start = width - block;
  return writePlaces(changes(pels + start) & ~std::uint64_t(0) << (i - start), static_cast<std::uint32_t>(start), to);
}

bool hasAvx2()
{
  static bool const has = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi");
  return has;
}
#endif

std::uint32_t *findRuns(unsigned char const *pels, long width, std::uint32_t *to)
{
#if defined(GX_RLE_AVX2)
  to = hasAvx2() ? findEndsAvx2(pels, width, to) : findEnds(pels, width, to);
#else
  to = findEnds(pels, width, to);
#endif
  if (width > 0)
    *to++ = static_cast<std::uint32_t>(width);
  return to;
}
}  // namespace

gxRLEBufferRun *packRow(unsigned char const *pels, long width, std::uint32_t *scratch, gxRLEBufferRun *to)
{
  std::uint32_t const *const last = findRuns(pels, width, scratch);
  std::uint32_t start = 0;
  for (std::uint32_t const *end = scratch; end != last; ++end) {
    to = putRun(to, pels[start], *end - start);
    start = *end;
  }
  *to++ = closing;
  return to;
}

namespace
{
/// Writes runs while whole blocks of pels fit; what a block writes in excess, the next run overwrites.
template <long block>
void unpackBlocks(gxRLEBufferRun const *&row, unsigned char *&to, unsigned char const *end)
{
  for (; row->length != 0 && end - to >= row->length + block; ++row) {
    unsigned char const value = row->value;
    std::memset(to, value, block);
    for (long x = block; x < row->length; x += block)
      std::memset(to + x, value, block);
    to += row->length;
  }
}
}  // namespace

unsigned char *unpackRow(gxRLEBufferRun const *row, unsigned char *to, long width)
{
  unsigned char *const end = to + width;
  unpackBlocks<64>(row, to, end);
  unpackBlocks<16>(row, to, end);
  for (; to < end && row->length != 0; ++row) {
    long const length = std::min<long>(row->length, end - to);
    std::memset(to, row->value, length);
    to += length;
  }
  return to;
}

gxRLEBufferRun *cutRow(gxRLEBufferRun const *row, long left, long right, gxRLEBufferRun *to)
{
  long x = 0;
  for (; row->length != 0 && x < right; ++row) {
    long const from = std::max(x, left);
    x += row->length;
    long const end = std::min(x, right);
    if (end > from)
      *to++ = {row->value, static_cast<unsigned char>(end - from)};
  }
  *to++ = closing;
  return to;
}
}  // namespace gx_rle
