#include "foundation/detail/affineavx2.h"

#if defined(GX_AFFINE_AVX2)

#include <cstring>

namespace gx_affine
{
namespace
{
/// Rounds 2 x 16 numbers to 32 pels in order.
template <int bits>
GX_AVX2 inline __m256i toPels(__m256i low, __m256i high)
{
  __m256i const half = _mm256_set1_epi16(1 << (bits - 1));
  low = _mm256_srai_epi16(_mm256_add_epi16(low, half), bits);
  high = _mm256_srai_epi16(_mm256_add_epi16(high, half), bits);
  return _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), 0xd8);
}

/// Calls blend(i) for each 16 values from i, two at a time, and writes the pels. Behind the last whole 32 values,
/// the rows are readable but @p to is not writable.
template <int bits, class Blend>
GX_AVX2 inline void blendRows(long n, unsigned char *to, Blend const &blend)
{
  long i = 0;
  for (; i + 32 <= n; i += 32)
    store(to + i, toPels<bits>(blend.at(i), blend.at(i + 16)));
  if (i < n) {
    unsigned char rest[32];
    store(rest, toPels<bits>(blend.at(i), blend.at(i + 16)));
    std::memcpy(to + i, rest, n - i);
  }
}

struct LinearBlend {
  std::int16_t const *a, *b;
  __m256i fraction;

  GX_AVX2 __m256i at(long i) const { return mix(load(a + i), load(b + i), fraction); }
};

struct CubicBlend {
  std::int16_t const *rows[4];
  __m256i weights[4];

  GX_AVX2 __m256i term(int k, long i) const { return _mm256_mulhrs_epi16(load(rows[k] + i), weights[k]); }
  GX_AVX2 __m256i at(long i) const
  {
    return _mm256_add_epi16(_mm256_add_epi16(term(0, i), term(1, i)), _mm256_add_epi16(term(2, i), term(3, i)));
  }
};

GX_AVX2 void blendLinear(std::int16_t const *const rows[2], int fraction, long n, unsigned char *to)
{
  blendRows<linearBits>(n, to, LinearBlend{rows[0], rows[1], _mm256_set1_epi16(static_cast<std::int16_t>(fraction))});
}

GX_AVX2 void blendCubic(std::int16_t const *const rows[4], CubicWeights const &w, long n, unsigned char *to)
{
  blendRows<cubicBits>(
      n, to,
      CubicBlend{{rows[0], rows[1], rows[2], rows[3]},
                 {_mm256_set1_epi16(w[0]), _mm256_set1_epi16(w[1]), _mm256_set1_epi16(w[2]), _mm256_set1_epi16(w[3])}});
}

// Rows of grey pels: sixteen samples at once, from two groups of eight that lie within sixteen bytes each.

/// The k-th pel of sixteen samples, as words with @p bits bits behind the point.
template <int bits>
GX_AVX2 inline __m256i groupPels(unsigned char const *low, unsigned char const *high, int k, __m256i shuffle)
{
  return _mm256_srli_epi16(_mm256_shuffle_epi8(load128x2(low + k, high + k), shuffle), 8 - bits);
}

GX_AVX2 void rowLinear1(unsigned char const *row, Columns const &columns, std::int16_t *to)
{
  if (!columns.groupShuffle) {
    plainKernels<1>().rowLinear(row, columns, to);
    return;
  }
  for (long i = 0; i < columns.count; i += 16) {
    unsigned char const *const low = row + columns.groupBase[i / 8], *const high = row + columns.groupBase[i / 8 + 1];
    __m256i const shuffle = load(columns.groupShuffle + i);
    __m256i const a = groupPels<linearBits>(low, high, 0, shuffle), b = groupPels<linearBits>(low, high, 1, shuffle);
    store(to + i, mix(a, b, load(columns.fraction + i)));
  }
}

/// Turns the weights of sixteen samples into four vectors, one for each weight.
GX_AVX2 inline void splitWeights(CubicWeights const *weights, __m256i split[4])
{
  // Within each half of a vector, two samples: bring equal weights together.
  __m256i const pairs = _mm256_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15,  //
                                         0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
  __m256i v[4];
  for (int n = 0; n < 4; ++n)  // samples 2n and 2n + 1 below, 2n + 8 and 2n + 9 above
    v[n] = _mm256_shuffle_epi8(load128x2(weights + 2 * n, weights + 2 * n + 8), pairs);
  __m256i const low01 = _mm256_unpacklo_epi32(v[0], v[1]), low23 = _mm256_unpacklo_epi32(v[2], v[3]);
  __m256i const high01 = _mm256_unpackhi_epi32(v[0], v[1]), high23 = _mm256_unpackhi_epi32(v[2], v[3]);
  split[0] = _mm256_unpacklo_epi64(low01, low23);
  split[1] = _mm256_unpackhi_epi64(low01, low23);
  split[2] = _mm256_unpacklo_epi64(high01, high23);
  split[3] = _mm256_unpackhi_epi64(high01, high23);
}

GX_AVX2 void rowCubic1(unsigned char const *row, Columns const &columns, std::int16_t *to)
{
  if (!columns.groupShuffle) {
    plainKernels<1>().rowCubic(row, columns, to);
    return;
  }
  for (long i = 0; i < columns.count; i += 16) {
    unsigned char const *const low = row + columns.groupBase[i / 8], *const high = row + columns.groupBase[i / 8 + 1];
    __m256i const shuffle = load(columns.groupShuffle + i);
    __m256i weights[4];
    splitWeights(columns.weights + i, weights);
    __m256i sum = _mm256_setzero_si256();
    for (int k = 0; k < 4; ++k)
      sum = _mm256_add_epi16(sum, _mm256_mulhrs_epi16(groupPels<cubicBits>(low, high, k, shuffle), weights[k]));
    store(to + i, sum);
  }
}

// Rows of colored pels.

GX_AVX2 void rowLinear4(unsigned char const *row, Columns const &columns, std::int16_t *to)
{
  for (long i = 0; i < columns.count; i += 4)
    store(to + i * 4, colorLinear<4>(row, columns.first + i, colorFractions(columns.fraction + i)));
}

GX_AVX2 void rowCubic4(unsigned char const *row, Columns const &columns, std::int16_t *to)
{
  for (long i = 0; i < columns.count; i += 4)
    store(to + i * 4, colorCubic<4>(row, columns.first + i, ColorWeights(load(columns.weights + i))));
}
}  // namespace

template <>
Kernels<1> avx2Kernels<1>()
{
  return {rowLinear1, rowCubic1, blendLinear, blendCubic, lineLinearAvx2<1>, lineCubicAvx2<1>};
}

template <>
Kernels<4> avx2Kernels<4>()
{
  return {rowLinear4, rowCubic4, blendLinear, blendCubic, lineLinearAvx2<4>, lineCubicAvx2<4>};
}
}  // namespace gx_affine

#endif
