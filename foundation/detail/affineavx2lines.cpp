#include "foundation/detail/affineavx2.h"

#if defined(GX_AFFINE_AVX2)

#include <cstring>

/// @file
/// Sampling along lines with AVX2, eight samples at once; a rest of fewer is left to the plain kernels.

namespace gx_affine
{
namespace
{
constexpr int lanes = 8;
constexpr int cubicShift = positionBits - cubicFractionBits;

/// Positions of eight samples in a row, 32 bits each.
struct Positions {
  __m256i u, v;

  /// @p nudge is added to both coordinates.
  GX_AVX2 explicit Positions(Line const &line, int nudge = 0)
  {
    __m256i const count = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    auto const at = [&](std::int32_t start, std::int32_t step) GX_AVX2 {
      return _mm256_add_epi32(_mm256_set1_epi32(start + nudge), _mm256_mullo_epi32(count, _mm256_set1_epi32(step)));
    };
    u = at(line.u, line.du);
    v = at(line.v, line.dv);
  }

  /// Offsets in bytes of the pels at the samples.
  template <int C>
  GX_AVX2 __m256i offsets(Line const &line) const
  {
    __m256i const rows = _mm256_srai_epi32(v, positionBits), columns = _mm256_srai_epi32(u, positionBits);
    return _mm256_add_epi32(_mm256_mullo_epi32(rows, _mm256_set1_epi32(static_cast<int>(line.rowStep))),
                            C == 1 ? columns : _mm256_slli_epi32(columns, 2));
  }
};

/// The line behind its first eight samples.
Line advanced(Line line)
{
  line.u += lanes * line.du;
  line.v += lanes * line.dv;
  line.count -= lanes;
  return line;
}

GX_AVX2 inline __m256i gather(void const *base, __m256i offsets)
{
  return _mm256_i32gather_epi32(static_cast<int const *>(base), offsets, 1);
}

/// Writes eight pels from the low bytes of eight numbers from 0 to 255.
GX_AVX2 inline void storeGrey(unsigned char *to, __m256i pels)
{
  __m256i const words = _mm256_packus_epi32(pels, pels);
  __m256i const bytes = _mm256_packus_epi16(words, words);
  auto const low = static_cast<std::uint32_t>(_mm256_cvtsi256_si32(bytes));
  auto const high = static_cast<std::uint32_t>(_mm256_extract_epi32(bytes, 4));
  std::memcpy(to, &low, sizeof low);
  std::memcpy(to + 4, &high, sizeof high);
}

/// Eight grey samples. Of each there are the row above in the low word and the row below in the high word.
GX_AVX2 inline void greyLinear(Line const &line, unsigned char *to)
{
  Positions const at(line);
  __m256i const offsets = at.offsets<1>(line);
  __m256i const above = gather(line.origin, offsets), below = gather(line.origin + line.rowStep, offsets);
  __m256i const pairs = _mm256_blend_epi16(above, _mm256_slli_epi32(below, 16), 0xaa);
  __m256i const left = _mm256_srli_epi16(_mm256_slli_epi16(pairs, 8), 8 - linearBits);
  __m256i const right = _mm256_slli_epi16(_mm256_srli_epi16(pairs, 8), linearBits);
  // The fraction of u in both words; that of v is in the low one.
  __m256i const twice = _mm256_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13,  //
                                         0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13);
  __m256i const rows = mix(left, right, _mm256_srli_epi16(_mm256_shuffle_epi8(at.u, twice), 1));
  __m256i const value = mix(rows, _mm256_srli_epi32(rows, 16), _mm256_srli_epi16(at.v, 1));
  __m256i const rounded =
      _mm256_srli_epi16(_mm256_add_epi16(value, _mm256_set1_epi16(1 << (linearBits - 1))), linearBits);
  storeGrey(to, _mm256_and_si256(rounded, _mm256_set1_epi32(0xff)));
}

/// Weights of eight samples: the first two and the last two of each.
struct GreyWeights {
  __m256i first, last;

  /// @p positions are in units of 1/65536, of which cubicFractionBits are looked at.
  GX_AVX2 explicit GreyWeights(__m256i positions)
  {
    __m256i const mask = _mm256_set1_epi32((1 << cubicFractionBits) - 1);
    __m256i const offsets = _mm256_slli_epi32(_mm256_and_si256(_mm256_srai_epi32(positions, cubicShift), mask), 3);
    first = gather(cubicWeights(), offsets);
    last = gather(cubicWeights()->data() + 2, offsets);
  }

  /// Sums of four numbers, given as two words each, as 32 bits.
  GX_AVX2 __m256i sum(__m256i numbersFirst, __m256i numbersLast) const
  {
    __m256i const pairs =
        _mm256_add_epi16(_mm256_mulhrs_epi16(numbersFirst, first), _mm256_mulhrs_epi16(numbersLast, last));
    return _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
  }
};

GX_AVX2 inline void greyCubic(Line const &line, unsigned char *to)
{
  Positions const at(line, 1 << (cubicShift - 1));
  __m256i const offsets = at.offsets<1>(line);
  GreyWeights const across(at.u), down(at.v);
  // Two of the four pels of each sample, to the high bytes of words.
  __m256i const firstTwo = _mm256_setr_epi8(-1, 0, -1, 1, -1, 4, -1, 5, -1, 8, -1, 9, -1, 12, -1, 13,  //
                                            -1, 0, -1, 1, -1, 4, -1, 5, -1, 8, -1, 9, -1, 12, -1, 13);
  __m256i const lastTwo = _mm256_add_epi8(firstTwo, _mm256_set1_epi16(0x0200));
  auto const row = [&](int y) GX_AVX2 {
    __m256i const pels = gather(line.origin - 1 + (y - 1) * line.rowStep, offsets);
    return across.sum(_mm256_srli_epi16(_mm256_shuffle_epi8(pels, firstTwo), 8 - cubicBits),
                      _mm256_srli_epi16(_mm256_shuffle_epi8(pels, lastTwo), 8 - cubicBits));
  };
  auto const twoRows = [&](int y)
                           GX_AVX2 { return _mm256_blend_epi16(row(y), _mm256_slli_epi32(row(y + 1), 16), 0xaa); };
  __m256i const sum = down.sum(twoRows(0), twoRows(2));
  __m256i const rounded = _mm256_srai_epi32(_mm256_add_epi32(sum, _mm256_set1_epi32(1 << (cubicBits - 1))), cubicBits);
  __m256i const zero = _mm256_setzero_si256(), most = _mm256_set1_epi32(255);
  storeGrey(to, _mm256_min_epi32(_mm256_max_epi32(rounded, zero), most));
}

/// Rounds the words of four samples to pels.
template <int bits>
GX_AVX2 inline void storeColor(unsigned char *to, __m256i words)
{
  __m256i const rounded = _mm256_srai_epi16(_mm256_add_epi16(words, _mm256_set1_epi16(1 << (bits - 1))), bits);
  __m256i const bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(rounded, rounded), 0x08);
  _mm_storeu_si128(reinterpret_cast<__m128i *>(to), _mm256_castsi256_si128(bytes));
}

/// The low words of eight numbers, in order.
GX_AVX2 inline void storeLowWords(std::int16_t *to, __m256i numbers)
{
  __m256i const words = _mm256_packus_epi32(numbers, numbers);
  _mm_storeu_si128(reinterpret_cast<__m128i *>(to), _mm256_castsi256_si128(_mm256_permute4x64_epi64(words, 0x08)));
}

GX_AVX2 inline void colorLinear8(Line const &line, unsigned char *to)
{
  Positions const at(line);
  alignas(32) std::int32_t offsets[lanes];
  std::int16_t across[lanes], down[lanes];
  __m256i const mask = _mm256_set1_epi32((1 << weightBits) - 1);
  store(offsets, at.offsets<4>(line));
  storeLowWords(across, _mm256_and_si256(_mm256_srli_epi32(at.u, 1), mask));
  storeLowWords(down, _mm256_and_si256(_mm256_srli_epi32(at.v, 1), mask));
  for (int k = 0; k < lanes; k += 4) {
    unsigned char const *pels[4];
    for (int n = 0; n < 4; ++n)
      pels[n] = line.origin + offsets[k + n];
    __m256i const fractions = colorFractions(across + k);
    __m256i const above = colorLinear(pels, fractions);
    for (auto &p : pels)
      p += line.rowStep;
    __m256i const below = colorLinear(pels, fractions);
    storeColor<linearBits>(to + k * 4, mix(above, below, colorFractions(down + k)));
  }
}

/// The weights of four samples whose places in the table are given.
GX_AVX2 inline ColorWeights colorWeights(std::int32_t const places[4])
{
  CubicWeights const *const table = cubicWeights();
  auto const pair = [&](int k) GX_AVX2 {
    return _mm_unpacklo_epi64(load64(table + places[k]), load64(table + places[k + 1]));
  };
  return ColorWeights(_mm256_set_m128i(pair(2), pair(0)));
}

GX_AVX2 inline void colorCubic8(Line const &line, unsigned char *to)
{
  Positions const at(line, 1 << (cubicShift - 1));
  alignas(32) std::int32_t offsets[lanes], across[lanes], down[lanes];
  __m256i const mask = _mm256_set1_epi32((1 << cubicFractionBits) - 1);
  store(offsets, at.offsets<4>(line));
  store(across, _mm256_and_si256(_mm256_srai_epi32(at.u, cubicShift), mask));
  store(down, _mm256_and_si256(_mm256_srai_epi32(at.v, cubicShift), mask));
  for (int k = 0; k < lanes; k += 4) {
    unsigned char const *pels[4];
    for (int n = 0; n < 4; ++n)
      pels[n] = line.origin + offsets[k + n] - line.rowStep - 4;
    ColorWeights const inRow = colorWeights(across + k), inColumn = colorWeights(down + k);
    __m256i sum = _mm256_setzero_si256();
    for (int y = 0; y < 4; ++y) {
      sum = _mm256_add_epi16(sum, _mm256_mulhrs_epi16(colorCubic(pels, inRow), inColumn.of[y]));
      for (auto &p : pels)
        p += line.rowStep;
    }
    storeColor<cubicBits>(to + k * 4, sum);
  }
}
}  // namespace

template <int C>
GX_AVX2 void lineLinearAvx2(Line const &line, unsigned char *to)
{
  Line rest = line;
  for (; rest.count >= lanes; rest = advanced(rest), to += lanes * C)
    if constexpr (C == 1)
      greyLinear(rest, to);
    else
      colorLinear8(rest, to);
  plainKernels<C>().lineLinear(rest, to);
}

template <int C>
GX_AVX2 void lineCubicAvx2(Line const &line, unsigned char *to)
{
  Line rest = line;
  for (; rest.count >= lanes; rest = advanced(rest), to += lanes * C)
    if constexpr (C == 1)
      greyCubic(rest, to);
    else
      colorCubic8(rest, to);
  plainKernels<C>().lineCubic(rest, to);
}

template void lineLinearAvx2<1>(Line const &, unsigned char *);
template void lineLinearAvx2<4>(Line const &, unsigned char *);
template void lineCubicAvx2<1>(Line const &, unsigned char *);
template void lineCubicAvx2<4>(Line const &, unsigned char *);
}  // namespace gx_affine

#endif
