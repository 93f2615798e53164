#pragma once

/// @file
/// Copying of pels by position: what lies behind every change of scale that does not interpolate.

#include <cstdint>
#include <optional>
#include <vector>

namespace gx_scale
{
/// One axis of a change of scale.
struct Axis {
  double first;  ///< where the part that shows begins, in pels of the target from the edge of the scaled image
  double shown;  ///< how much shows, in pels of the target
  long count;    ///< whole pels of it
  long size;     ///< pels of the source
};

/// For each pel along an axis of the target, the pel of the source that it shows, counted from the first of the
/// window. Never decreases.
using Positions = std::vector<std::int32_t>;

/// The whole number that is within 1e-6 of @p scale, the lower one if there are two. None for a scale that 32 bits do
/// not hold.
std::optional<long> wholeFactor(double scale);

/// @p count pels in blocks of @p factor, a block for each pel of the source from @p first on. The first block has lost
/// its first @p cut pels, 0 to @p factor. Fewer than @p count where the source, of @p size pels, ends before.
Positions blockPositions(long count, long factor, long first, long cut, long size);

/// Blocks for a scale above 1 that is close to a whole number; the nearest pels otherwise.
Positions positionsAtScale(Axis const &axis, double scale);

/// Rows of pels in memory.
struct Source {
  unsigned char const *bytes;
  long step;   ///< from one row to the next, in bytes
  long width;  ///< pels of a row
};

/// Room for the result. Every row is padded to whole units of 32 bytes, which are written.
struct Target {
  unsigned char *bytes;
  long step;
};

/// Pel (i, j) of @p target becomes pel (columns[i], rows[j]) of @p source. A row that shows the same as the one above
/// it is copied from there.
/// @param pelSize bytes of a pel: 1, 2 or 4
void copyPels(Source const &source, Target const &target, Positions const &columns, Positions const &rows,
              long pelSize);
}  // namespace gx_scale
