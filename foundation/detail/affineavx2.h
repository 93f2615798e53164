#pragma once

/// @file
/// What the kernels for AVX2 share. Only the functions that carry the mark below are compiled for it, so that the
/// library starts on any processor; every function that takes or gives vectors must carry it.
///
/// `_mm256_mulhrs_epi16` is timesWeight() of sixteen numbers. A pel becomes a number with its fixed point by going to
/// the high byte of a 16-bit word, which is a shift left by 8, and a shift right to the format that is wanted.

#include "foundation/detail/affinekernels.h"

#if defined(GX_AFFINE_AVX2)

#include <immintrin.h>

#define GX_AVX2 __attribute__((target("avx2")))

namespace gx_affine
{
GX_AVX2 inline __m256i load(void const *p)
{
  return _mm256_loadu_si256(static_cast<__m256i const *>(p));
}

GX_AVX2 inline void store(void *p, __m256i v)
{
  _mm256_storeu_si256(static_cast<__m256i *>(p), v);
}

GX_AVX2 inline __m256i load128x2(void const *low, void const *high)
{
  return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(static_cast<__m128i const *>(low))),
                                 _mm_loadu_si128(static_cast<__m128i const *>(high)), 1);
}

GX_AVX2 inline __m128i load64(void const *p)
{
  return _mm_loadl_epi64(static_cast<__m128i const *>(p));
}

/// a + (b - a) * fraction.
GX_AVX2 inline __m256i mix(__m256i a, __m256i b, __m256i fraction)
{
  return _mm256_add_epi16(a, _mm256_mulhrs_epi16(_mm256_sub_epi16(b, a), fraction));
}

/// For each half of a vector, eight words: four times the number at @p index of its first sample, and of its second.
/// Numbers of a sample lie @p stride bytes after those of the sample before; the second half begins at @p second.
GX_AVX2 inline __m256i spread(int index, int stride, int second)
{
  auto const at = [](int byte) { return static_cast<std::int16_t>((byte + 1) << 8 | byte); };
  std::int16_t const a = at(2 * index), b = at(2 * index + stride);
  std::int16_t const c = at(2 * index + second), d = at(2 * index + second + stride);
  return _mm256_setr_epi16(a, a, a, a, b, b, b, b, c, c, c, c, d, d, d, d);
}

/// Words of the low or of the high half of the pels, with @p bits bits behind the point.
template <int bits>
GX_AVX2 inline __m256i lowWords(__m256i pels)
{
  return _mm256_srli_epi16(_mm256_unpacklo_epi8(_mm256_setzero_si256(), pels), 8 - bits);
}
template <int bits>
GX_AVX2 inline __m256i highWords(__m256i pels)
{
  return _mm256_srli_epi16(_mm256_unpackhi_epi8(_mm256_setzero_si256(), pels), 8 - bits);
}

// Four samples of color at once, two in each half of a vector; the result has four words for each.

/// The weights of four samples' second pels, one number each, from 64 bits.
GX_AVX2 inline __m256i colorFractions(void const *fractions)
{
  return _mm256_shuffle_epi8(_mm256_broadcastq_epi64(load64(fractions)), spread(0, 2, 4));
}

/// Blends two pels in a row for each sample; the first one of sample k lies @p at[k] units behind @p base.
template <int unit>
GX_AVX2 inline __m256i colorLinear(unsigned char const *base, std::int32_t const *at, __m256i fractions)
{
  // Addresses are used where they are formed: compilers put arrays of them into vectors, and wait for these.
  __m128i const low = _mm_unpacklo_epi32(load64(base + at[0] * long(unit)), load64(base + at[1] * long(unit)));
  __m128i const high = _mm_unpacklo_epi32(load64(base + at[2] * long(unit)), load64(base + at[3] * long(unit)));
  __m256i const pels = _mm256_set_m128i(high, low);
  return mix(lowWords<linearBits>(pels), highWords<linearBits>(pels), fractions);
}

/// Four weights for each of four samples, spread over the components.
struct ColorWeights {
  __m256i of[4];

  /// From the weights of the four samples in turn.
  GX_AVX2 explicit ColorWeights(__m256i weights)
  {
    for (int k = 0; k < 4; ++k)
      of[k] = _mm256_shuffle_epi8(weights, spread(k, 8, 0));
  }
};

/// Sums four pels in a row for each sample; places as in colorLinear().
template <int unit>
GX_AVX2 inline __m256i colorCubic(unsigned char const *base, std::int32_t const *at, ColorWeights const &weights)
{
  __m256i const even = load128x2(base + at[0] * long(unit), base + at[2] * long(unit));
  __m256i const odd = load128x2(base + at[1] * long(unit), base + at[3] * long(unit));
  __m256i const pels01 = _mm256_unpacklo_epi32(even, odd), pels23 = _mm256_unpackhi_epi32(even, odd);
  __m256i const sum01 = _mm256_add_epi16(_mm256_mulhrs_epi16(lowWords<cubicBits>(pels01), weights.of[0]),
                                         _mm256_mulhrs_epi16(highWords<cubicBits>(pels01), weights.of[1]));
  __m256i const sum23 = _mm256_add_epi16(_mm256_mulhrs_epi16(lowWords<cubicBits>(pels23), weights.of[2]),
                                         _mm256_mulhrs_epi16(highWords<cubicBits>(pels23), weights.of[3]));
  return _mm256_add_epi16(sum01, sum23);
}

/// The kernels along lines.
template <int C>
void lineLinearAvx2(Line const &line, unsigned char *to);
template <int C>
void lineCubicAvx2(Line const &line, unsigned char *to);
}  // namespace gx_affine

#endif
