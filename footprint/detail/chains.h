#pragma once

#include "footprint/detail/shapes.h"

#include <vector>

namespace gx_shapes
{

/// Lines and arcs that follow one another.
struct Chain {
  std::vector<Piece> pieces;
  bool closes = false;  ///< whether the last one ends where the first one starts
};

/// Joins loose pieces where their ends are no farther apart than @p tolerance, in whatever order and direction they
/// are. What closes comes first; what hangs on it, as the leads on the outline of a body, is joined afterwards. Where
/// several could follow, the one that goes most nearly straight on does. Lines that are no longer than the tolerance,
/// and what is drawn twice, are left out. Takes n log n.
std::vector<Chain> joined(std::vector<Piece> const &pieces, double tolerance);

}  // namespace gx_shapes
