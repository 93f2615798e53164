#include "foundation/detail/rlerow.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
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
}  // namespace

gxRLEBufferRun *packRow(unsigned char const *pels, long width, gxRLEBufferRun *to)
{
  long start = 0;
  auto endRunAt = [&](long end) {
    to = putRun(to, pels[start], end - start);
    start = end;
  };
  long i = 1;
#if defined(__SSE2__)
  // A run ends where a pel differs from the one before it: sixteen such questions at once.
  for (; i + 16 <= width; i += 16) {
    __m128i const here = _mm_loadu_si128(reinterpret_cast<__m128i const *>(pels + i));
    __m128i const before = _mm_loadu_si128(reinterpret_cast<__m128i const *>(pels + i - 1));
    unsigned ends = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(here, before))) ^ 0xffffu;
    for (; ends != 0; ends &= ends - 1)
      endRunAt(i + std::countr_zero(ends));
  }
#endif
  for (; i < width; ++i)
    if (pels[i] != pels[i - 1])
      endRunAt(i);
  if (width > 0)
    endRunAt(width);
  *to++ = closing;
  return to;
}

unsigned char *unpackRow(gxRLEBufferRun const *row, unsigned char *to, long width)
{
  constexpr long block = 16;
  unsigned char *const end = to + width;
  // Runs are written in whole blocks as long as these fit; the next run overwrites the excess.
  for (; row->length != 0 && end - to >= row->length + block; ++row) {
    for (long x = 0; x < row->length; x += block)
      std::memset(to + x, row->value, block);
    to += row->length;
  }
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
