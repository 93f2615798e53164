#include "foundation/detail/affinekernels.h"

#include "foundation/numbers.h"

#include <algorithm>
#include <vector>

namespace gx_affine
{
namespace
{
/// Weights of the cubic convolution kernel, rounded so that their sum is 1, or as close to it as 15 bits allow.
CubicWeights weightsAt(double f)
{
  constexpr int largest = (1 << weightBits) - 1;
  auto const fixed = [](double w) { return static_cast<int>(gf_roundHalfAway(w * (1 << weightBits))); };
  int const before = fixed(((-0.5 * f + 1.0) * f - 0.5) * f);
  int const right = std::min(fixed(((-1.5 * f + 2.0) * f + 0.5) * f), largest);
  int const behind = fixed((0.5 * f - 0.5) * f * f);
  int const left = std::min((1 << weightBits) - before - right - behind, largest);
  return {static_cast<std::int16_t>(before), static_cast<std::int16_t>(left), static_cast<std::int16_t>(right),
          static_cast<std::int16_t>(behind)};
}

template <int C>
void rowLinear(unsigned char const *row, Columns const &columns, std::int16_t *to)
{
  for (long i = 0; i < columns.count; ++i) {
    unsigned char const *p = row + static_cast<long>(columns.first[i]) * C;
    for (int c = 0; c < C; ++c)
      *to++ = static_cast<std::int16_t>(mixLinear(p[c] << linearBits, p[C + c] << linearBits, columns.fraction[i]));
  }
}

template <int C>
int sumCubic(unsigned char const *p, CubicWeights const &w)
{
  return timesWeight(p[0] << cubicBits, w[0]) + timesWeight(p[C] << cubicBits, w[1]) +
         timesWeight(p[2 * C] << cubicBits, w[2]) + timesWeight(p[3 * C] << cubicBits, w[3]);
}

template <int C>
void rowCubic(unsigned char const *row, Columns const &columns, std::int16_t *to)
{
  for (long i = 0; i < columns.count; ++i) {
    unsigned char const *p = row + static_cast<long>(columns.first[i]) * C;
    for (int c = 0; c < C; ++c)
      *to++ = static_cast<std::int16_t>(sumCubic<C>(p + c, columns.weights[i]));
  }
}

void blendLinear(std::int16_t const *const rows[2], int fraction, long n, unsigned char *to)
{
  std::int16_t const *const a = rows[0], *const b = rows[1];
  for (long i = 0; i < n; ++i)
    to[i] = toPel(mixLinear(a[i], b[i], fraction), linearBits);
}

void blendCubic(std::int16_t const *const rows[4], CubicWeights const &w, long n, unsigned char *to)
{
  std::int16_t const *const a = rows[0], *const b = rows[1], *const c = rows[2], *const d = rows[3];
  for (long i = 0; i < n; ++i)
    to[i] = toPel(timesWeight(a[i], w[0]) + timesWeight(b[i], w[1]) + timesWeight(c[i], w[2]) + timesWeight(d[i], w[3]),
                  cubicBits);
}

unsigned char const *pelAt(Line const &line, std::int32_t u, std::int32_t v, int components)
{
  return line.origin + (v >> positionBits) * line.rowStep + static_cast<long>(u >> positionBits) * components;
}

template <int C>
void lineLinear(Line const &line, unsigned char *to)
{
  constexpr std::int32_t fractionMask = (1 << positionBits) - 1;
  std::int32_t u = line.u, v = line.v;
  for (int i = 0; i < line.count; ++i, u += line.du, v += line.dv) {
    unsigned char const *const above = pelAt(line, u, v, C), *const below = above + line.rowStep;
    int const fu = (u & fractionMask) >> 1, fv = (v & fractionMask) >> 1;
    for (int c = 0; c < C; ++c) {
      int const a = mixLinear(above[c] << linearBits, above[C + c] << linearBits, fu);
      int const b = mixLinear(below[c] << linearBits, below[C + c] << linearBits, fu);
      *to++ = toPel(mixLinear(a, b, fv), linearBits);
    }
  }
}

template <int C>
void lineCubic(Line const &line, unsigned char *to)
{
  constexpr int shift = positionBits - cubicFractionBits;
  constexpr std::int32_t mask = (1 << cubicFractionBits) - 1;
  CubicWeights const *const weights = cubicWeights();
  std::int32_t u = line.u + (1 << (shift - 1)), v = line.v + (1 << (shift - 1));
  for (int i = 0; i < line.count; ++i, u += line.du, v += line.dv) {
    unsigned char const *const p = pelAt(line, u, v, C) - line.rowStep - C;
    CubicWeights const &across = weights[u >> shift & mask], &down = weights[v >> shift & mask];
    for (int c = 0; c < C; ++c) {
      int sum = 0;
      for (int y = 0; y < 4; ++y)
        sum += timesWeight(sumCubic<C>(p + y * line.rowStep + c, across), down[y]);
      *to++ = toPel(sum, cubicBits);
    }
  }
}
}  // namespace

CubicWeights const *cubicWeights()
{
  static std::vector<CubicWeights> const table = [] {
    std::vector<CubicWeights> t;
    for (int f = 0; f < 1 << cubicFractionBits; ++f)
      t.push_back(weightsAt(f / double(1 << cubicFractionBits)));
    return t;
  }();
  return table.data();
}

template <int C>
Kernels<C> plainKernels()
{
  return {rowLinear<C>, rowCubic<C>, blendLinear, blendCubic, lineLinear<C>, lineCubic<C>};
}

template <int C>
Kernels<C> bestKernels()
{
#if defined(GX_AFFINE_AVX2)
  if (__builtin_cpu_supports("avx2"))
    return avx2Kernels<C>();
#endif
  return plainKernels<C>();
}

template GX_API Kernels<1> plainKernels<1>();
template GX_API Kernels<4> plainKernels<4>();
template GX_API Kernels<1> bestKernels<1>();
template GX_API Kernels<4> bestKernels<4>();
}  // namespace gx_affine
