#pragma once

/// @file
/// Work on single rows of runs.

#include "foundation/rlebuf.h"

#include <cstdint>

namespace gx_rle
{
/// Number of runs before the closing pair.
inline long runsBefore(gxRLEBufferRun const *row)
{
  long n = 0;
  while (row[n].length != 0)
    ++n;
  return n;
}

/// Packs @p width pels; @p to has room for width + 1 pairs. Runs longer than 255 become several, full ones first.
/// @param scratch room for width + scratchExcess numbers
/// Returns the address behind the closing pair.
gxRLEBufferRun *packRow(unsigned char const *pels, long width, std::uint32_t *scratch, gxRLEBufferRun *to);
constexpr long scratchExcess = 2;

/// Unpacks at most @p width pels; returns the address behind the last one.
unsigned char *unpackRow(gxRLEBufferRun const *row, unsigned char *to, long width);

/// Copies the part of a row in the columns from @p left up to, not including, @p right; @p to has room for as many
/// pairs as the row has. Returns the address behind the closing pair.
gxRLEBufferRun *cutRow(gxRLEBufferRun const *row, long left, long right, gxRLEBufferRun *to);
}  // namespace gx_rle
