#include "foundation/detail/affineavx2.h"

#if defined(GX_AFFINE_AVX2)

#include <algorithm>
#include <cstring>

/// @file
/// Sampling along lines with AVX2. The places of up to 32 samples are found first, then the samples are taken eight at
/// once; a rest of fewer is left to the plain kernels.

namespace gx_affine
{
namespace
{
constexpr int lanes = 8;
constexpr int most = 32;

/// Where samples are: the offsets in bytes of their pels, and their fractions of a pel in `bits` bits.
struct Places {
  alignas(32) std::int32_t offsets[most];
  alignas(16) std::int16_t across[most], down[most];
};

/// Places of the first @p count samples, a multiple of eight.
template <int C, int bits>
GX_AVX2 inline void findPlaces(Line const &line, int count, Places &places)
{
  constexpr int shift = positionBits - bits;
  // The plain kernels round the fractions of cubic sampling, and cut those of linear sampling.
  constexpr std::int32_t nudge = bits == cubicFractionBits ? 1 << (shift - 1) : 0;
  __m256i const index = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  __m256i const du = _mm256_set1_epi32(line.du), dv = _mm256_set1_epi32(line.dv);
  __m256i u = _mm256_add_epi32(_mm256_set1_epi32(line.u + nudge), _mm256_mullo_epi32(index, du));
  __m256i v = _mm256_add_epi32(_mm256_set1_epi32(line.v + nudge), _mm256_mullo_epi32(index, dv));
  __m256i const rowStep = _mm256_set1_epi32(static_cast<int>(line.rowStep));
  __m256i const mask = _mm256_set1_epi32((1 << bits) - 1);
  auto const storeFractions = [mask](std::int16_t *to, __m256i position) GX_AVX2 {
    __m256i const fractions = _mm256_and_si256(_mm256_srli_epi32(position, shift), mask);
    __m256i const words = _mm256_permute4x64_epi64(_mm256_packus_epi32(fractions, fractions), 0x08);
    _mm_store_si128(reinterpret_cast<__m128i *>(to), _mm256_castsi256_si128(words));
  };
  for (int i = 0; i < count; i += lanes) {
    __m256i const rows = _mm256_srai_epi32(v, positionBits), columns = _mm256_srai_epi32(u, positionBits);
    __m256i const inRow = C == 1 ? columns : _mm256_slli_epi32(columns, 2);
    store(places.offsets + i, _mm256_add_epi32(_mm256_mullo_epi32(rows, rowStep), inRow));
    storeFractions(places.across + i, u);
    storeFractions(places.down + i, v);
    u = _mm256_add_epi32(u, _mm256_slli_epi32(du, 3));
    v = _mm256_add_epi32(v, _mm256_slli_epi32(dv, 3));
  }
}

GX_AVX2 inline __m128i load32(void const *p)
{
  std::int32_t v;
  std::memcpy(&v, p, sizeof v);
  return _mm_cvtsi32_si128(v);
}

GX_AVX2 inline __m128i load128(void const *p)
{
  return _mm_loadu_si128(static_cast<__m128i const *>(p));
}

// Single loads take less time than the instruction that gathers.

/// The two pels at each of eight places, a word each.
GX_AVX2 inline __m128i pairs(unsigned char const *base, std::int32_t const *at)
{
  auto const two = [&](int k) GX_AVX2 { return _mm_unpacklo_epi16(load32(base + at[k]), load32(base + at[k + 1])); };
  return _mm_unpacklo_epi64(_mm_unpacklo_epi32(two(0), two(2)), _mm_unpacklo_epi32(two(4), two(6)));
}

/// The four pels at each of eight places.
GX_AVX2 inline __m256i quads(unsigned char const *base, std::int32_t const *at)
{
  auto const four = [&](int k) GX_AVX2 {
    return _mm_unpacklo_epi64(_mm_unpacklo_epi32(load32(base + at[k]), load32(base + at[k + 1])),
                              _mm_unpacklo_epi32(load32(base + at[k + 2]), load32(base + at[k + 3])));
  };
  return _mm256_set_m128i(four(4), four(0));
}

/// Eight grey samples; the row above is in the low half of vectors, the row below in the high half.
GX_AVX2 inline void greyLinear(Line const &line, Places const &places, int i, unsigned char *to)
{
  std::int32_t const *const at = places.offsets + i;
  __m256i const pels = _mm256_set_m128i(pairs(line.origin + line.rowStep, at), pairs(line.origin, at));
  __m256i const left = _mm256_srli_epi16(_mm256_slli_epi16(pels, 8), 8 - linearBits);
  __m256i const right = _mm256_slli_epi16(_mm256_srli_epi16(pels, 8), linearBits);
  __m256i const rows = mix(left, right, _mm256_broadcastsi128_si256(load128(places.across + i)));
  __m128i const above = _mm256_castsi256_si128(rows), below = _mm256_extracti128_si256(rows, 1);
  __m128i const value = _mm_add_epi16(above, _mm_mulhrs_epi16(_mm_sub_epi16(below, above), load128(places.down + i)));
  __m128i const rounded = _mm_srli_epi16(_mm_add_epi16(value, _mm_set1_epi16(1 << (linearBits - 1))), linearBits);
  _mm_storel_epi64(reinterpret_cast<__m128i *>(to), _mm_packus_epi16(rounded, rounded));
}

/// Weights of eight samples: the first two and the last two of each.
struct GreyWeights {
  __m256i first, last;

  GX_AVX2 explicit GreyWeights(std::int16_t const *fractions)
  {
    CubicWeights const *const table = cubicWeights();
    auto const two = [&](int k) GX_AVX2 {
      return _mm_unpacklo_epi32(load64(table + fractions[k]), load64(table + fractions[k + 1]));
    };
    __m256i const even = _mm256_set_m128i(two(4), two(0)), odd = _mm256_set_m128i(two(6), two(2));
    first = _mm256_unpacklo_epi64(even, odd);
    last = _mm256_unpackhi_epi64(even, odd);
  }

  /// Sums of four numbers, given as two words each, as 32 bits.
  GX_AVX2 __m256i sum(__m256i numbersFirst, __m256i numbersLast) const
  {
    __m256i const twoSums =
        _mm256_add_epi16(_mm256_mulhrs_epi16(numbersFirst, first), _mm256_mulhrs_epi16(numbersLast, last));
    return _mm256_madd_epi16(twoSums, _mm256_set1_epi16(1));
  }
};

GX_AVX2 inline void greyCubic(Line const &line, Places const &places, int i, unsigned char *to)
{
  GreyWeights const across(places.across + i), down(places.down + i);
  // Two of the four pels of each sample, to the high bytes of words.
  __m256i const firstTwo = _mm256_setr_epi8(-1, 0, -1, 1, -1, 4, -1, 5, -1, 8, -1, 9, -1, 12, -1, 13,  //
                                            -1, 0, -1, 1, -1, 4, -1, 5, -1, 8, -1, 9, -1, 12, -1, 13);
  __m256i const lastTwo = _mm256_add_epi8(firstTwo, _mm256_set1_epi16(0x0200));
  auto const row = [&](int y) GX_AVX2 {
    __m256i const pels = quads(line.origin - 1 + (y - 1) * line.rowStep, places.offsets + i);
    return across.sum(_mm256_srli_epi16(_mm256_shuffle_epi8(pels, firstTwo), 8 - cubicBits),
                      _mm256_srli_epi16(_mm256_shuffle_epi8(pels, lastTwo), 8 - cubicBits));
  };
  auto const twoRows = [&](int y)
                           GX_AVX2 { return _mm256_blend_epi16(row(y), _mm256_slli_epi32(row(y + 1), 16), 0xaa); };
  __m256i const sum = down.sum(twoRows(0), twoRows(2));
  __m256i const rounded = _mm256_srai_epi32(_mm256_add_epi32(sum, _mm256_set1_epi32(1 << (cubicBits - 1))), cubicBits);
  __m256i const words = _mm256_permute4x64_epi64(_mm256_packs_epi32(rounded, rounded), 0x08);
  __m256i const bytes = _mm256_packus_epi16(words, words);
  _mm_storel_epi64(reinterpret_cast<__m128i *>(to), _mm256_castsi256_si128(bytes));
}

/// Rounds the words of four samples to pels.
template <int bits>
GX_AVX2 inline void storeColor(unsigned char *to, __m256i words)
{
  __m256i const rounded = _mm256_srai_epi16(_mm256_add_epi16(words, _mm256_set1_epi16(1 << (bits - 1))), bits);
  __m256i const bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(rounded, rounded), 0x08);
  _mm_storeu_si128(reinterpret_cast<__m128i *>(to), _mm256_castsi256_si128(bytes));
}

/// Four colored samples.
GX_AVX2 inline void colorLinearAt(Line const &line, Places const &places, int i, unsigned char *to)
{
  __m256i const fractions = colorFractions(places.across + i);
  __m256i const above = colorLinear<1>(line.origin, places.offsets + i, fractions);
  __m256i const below = colorLinear<1>(line.origin + line.rowStep, places.offsets + i, fractions);
  storeColor<linearBits>(to, mix(above, below, colorFractions(places.down + i)));
}

GX_AVX2 inline ColorWeights colorWeights(std::int16_t const *fractions)
{
  CubicWeights const *const table = cubicWeights();
  auto const two = [&](int k) GX_AVX2 {
    return _mm_unpacklo_epi64(load64(table + fractions[k]), load64(table + fractions[k + 1]));
  };
  return ColorWeights(_mm256_set_m128i(two(2), two(0)));
}

GX_AVX2 inline void colorCubicAt(Line const &line, Places const &places, int i, unsigned char *to)
{
  ColorWeights const across = colorWeights(places.across + i), down = colorWeights(places.down + i);
  unsigned char const *row = line.origin - line.rowStep - 4;
  __m256i sum = _mm256_setzero_si256();
  for (int y = 0; y < 4; ++y, row += line.rowStep)
    sum = _mm256_add_epi16(sum, _mm256_mulhrs_epi16(colorCubic<1>(row, places.offsets + i, across), down.of[y]));
  storeColor<cubicBits>(to, sum);
}

/// What is left of a line behind its first @p count samples.
Line behind(Line line, int count)
{
  line.u += count * line.du;
  line.v += count * line.dv;
  line.count -= count;
  return line;
}
}  // namespace

template <int C>
GX_AVX2 void lineLinearAvx2(Line const &line, unsigned char *to)
{
  int const count = std::min(line.count, most) / lanes * lanes;
  Places places;
  findPlaces<C, weightBits>(line, count, places);
  if constexpr (C == 1)
    for (int i = 0; i < count; i += lanes)
      greyLinear(line, places, i, to + i);
  else
    for (int i = 0; i < count; i += 4)
      colorLinearAt(line, places, i, to + i * C);
  if (count < line.count)
    plainKernels<C>().lineLinear(behind(line, count), to + count * C);
}

template <int C>
GX_AVX2 void lineCubicAvx2(Line const &line, unsigned char *to)
{
  int const count = std::min(line.count, most) / lanes * lanes;
  Places places;
  findPlaces<C, cubicFractionBits>(line, count, places);
  if constexpr (C == 1)
    for (int i = 0; i < count; i += lanes)
      greyCubic(line, places, i, to + i);
  else
    for (int i = 0; i < count; i += 4)
      colorCubicAt(line, places, i, to + i * C);
  if (count < line.count)
    plainKernels<C>().lineCubic(behind(line, count), to + count * C);
}

template void lineLinearAvx2<1>(Line const &, unsigned char *);
template void lineLinearAvx2<4>(Line const &, unsigned char *);
template void lineCubicAvx2<1>(Line const &, unsigned char *);
template void lineCubicAvx2<4>(Line const &, unsigned char *);
}  // namespace gx_affine

#endif
