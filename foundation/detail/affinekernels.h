#pragma once

/// @file
/// The inner loops of affine sampling, in plain C++ and for the vector units that a processor may have. All of them
/// compute the same numbers:
///
/// - Fractions of a pel are whole multiples of 1/32768 (bilinear) or 1/1024 (bicubic); weights have 15 bits.
/// - A product of a number with a weight is rounded to (number * weight + 2^14) >> 15.
/// - Sums along rows come first, in 16 bits with gx_affine::linearBits or cubicBits bits behind the point; then sums
///   down the columns, in the same format; then rounding, half up, to a pel.
///
/// Pels have C components of 8 bits: one for grey, four for color.

#include "foundation/export.h"

#include <array>
#include <cstdint>

namespace gx_affine
{
constexpr int weightBits = 15;
constexpr int linearBits = 7;
constexpr int cubicBits = 6;
constexpr int cubicFractionBits = 10;
constexpr int positionBits = 16;

/// Weights of four pels in a row, for a place between the two in the middle.
using CubicWeights = std::array<std::int16_t, 4>;

/// The weights for each fraction of a pel, in steps of 1/1024.
GX_API CubicWeights const *cubicWeights();

inline int timesWeight(int v, int weight)
{
  return (v * weight + (1 << (weightBits - 1))) >> weightBits;
}

/// a + (b - a) * fraction.
inline int mixLinear(int a, int b, int fraction)
{
  return a + timesWeight(b - a, fraction);
}

inline unsigned char toPel(int v, int bits)
{
  int const rounded = (v + (1 << (bits - 1))) >> bits;
  return static_cast<unsigned char>(rounded < 0 ? 0 : rounded > 255 ? 255 : rounded);
}

/// Where the samples of a row lie in a source row, for rectangles parallel to the axes. Source rows are handed over
/// with copies of their first and last pel on both sides, and with readable bytes behind them.
struct Columns {
  long count = 0;
  std::int32_t const *first = nullptr;      ///< the first pel that a sample needs
  std::int16_t const *fraction = nullptr;   ///< bilinear: weight of the second pel
  CubicWeights const *weights = nullptr;    ///< bicubic
  std::int32_t const *groupBase = nullptr;  ///< for each eight samples the lowest of their first pels
  /// For each sample the byte that brings its first pel from groupBase to the high half of a 16-bit word; null if
  /// samples lie too far apart.
  std::uint16_t const *groupShuffle = nullptr;
};

/// Samples along a straight line through the inside of the source: all pels that they need are there.
struct Line {
  unsigned char const *origin;  ///< the pel that positions count from
  long rowStep;
  std::int32_t u, v;    ///< position of the first sample, with positionBits bits behind the point
  std::int32_t du, dv;  ///< from one sample to the next
  int count;
};

/// One set of inner loops; C is 1 or 4.
template <int C>
struct Kernels {
  /// Filter along a source row. The results have room for up to 32 more values.
  void (*rowLinear)(unsigned char const *row, Columns const &columns, std::int16_t *to);
  void (*rowCubic)(unsigned char const *row, Columns const &columns, std::int16_t *to);
  /// Blend filtered rows of @p n values, two with the weight of the second, or four. Rows are readable up to the
  /// next multiple of 32 values.
  void (*blendLinear)(std::int16_t const *const rows[2], int fraction, long n, unsigned char *to);
  void (*blendCubic)(std::int16_t const *const rows[4], CubicWeights const &weights, long n, unsigned char *to);
  /// Samples along any line.
  void (*lineLinear)(Line const &line, unsigned char *to);
  void (*lineCubic)(Line const &line, unsigned char *to);
};

/// In plain C++. Exported for the tests, as the next one.
template <int C>
GX_API Kernels<C> plainKernels();

/// The fastest set for this processor.
template <int C>
GX_API Kernels<C> bestKernels();

#if defined(__x86_64__) && defined(__GNUC__)
#define GX_AFFINE_AVX2
/// For processors with AVX2.
template <int C>
Kernels<C> avx2Kernels();
template <>
Kernels<1> avx2Kernels<1>();
template <>
Kernels<4> avx2Kernels<4>();
#endif
}  // namespace gx_affine
