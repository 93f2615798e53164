#pragma once

#include "backends/pels/detail/pelcanvas.h"
#include "backends/pels/detail/peldash.h"
#include "foundation/export.h"
#include "foundation/vector.h"

#include <cstdint>

/// A one-pel line from pel to pel, both included.
///
/// The axis along which the line is longer (x if both are equal) is its major axis. The line has one pel in every
/// column (row) along it, the one whose center is nearest to the straight line through the centers of the end pels;
/// of two equally near ones it is the one above (left). So a line has max(|dx|, |dy|) + 1 pels, and it has the same
/// ones in both directions.
///
/// The pels are numbered from `from`, 0 to steps(). Those within a clip box are an interval, so that what is drawn of a
/// clipped line are pels of the whole line, and what is not seen costs nothing.
class GX_API gx_PelLine
{
 public:
  /// Coordinates of end pels are at most this far from 0.
  static constexpr std::int64_t limit = std::int64_t(1) << 29;

  gx_PelLine(std::int64_t fromX, std::int64_t fromY, std::int64_t toX, std::int64_t toY);

  /// Number of the last pel.
  std::int64_t steps() const { return length_; }
  /// Numbers [begin, end) of pels; none if end <= begin.
  struct Interval {
    std::int64_t begin, end;
  };
  /// The pels within a box.
  Interval visible(gx_PelBox const &box) const;
  /// Draws the pels with these numbers; all of them must lie in the box of the canvas.
  void draw(gx_PelCanvas &canvas, Interval const &pels) const;

 private:
  std::int64_t minorOf(std::int64_t step) const;
  Interval minorWithin(std::int64_t low, std::int64_t high) const;
  void drawSteps(gx_PelCanvas &canvas, std::int64_t begin, std::int64_t end) const;

  // In terms of the normalised line, which runs along the growing major axis.
  bool steep_;              ///< the major axis is y
  bool reversed_;           ///< `from` is the end of the normalised line
  std::int64_t major_ = 0;  ///< its first pel
  std::int64_t minor_ = 0;
  std::int64_t length_ = 0;  ///< steps along the major axis
  std::int64_t rise_ = 0;    ///< along the minor axis, from -length_ to length_
  std::int64_t slope_ = 0;   ///< of a step along the minor axis, in fixed point
};

/// Draws the one-pel line between two pels, given as whole numbers in doubles. Ends that are not finite draw nothing.
/// Ends beyond gx_PelLine::limit are first brought in along the line, which may then be off by one pel.
/// @param dash numbers of pels, of which the first is number @p phase
/// @return the number of the last pel
GX_API std::int64_t gf_drawPelLine(gx_PelCanvas &canvas, gxVector<2> const &from, gxVector<2> const &to,
                                   gx_PelDash const &dash = gx_PelDash(), std::int64_t phase = 0);

/// Shortens a line to its part inside the square from -limit to limit. False if there is none, or an end is not finite.
GX_API bool gf_limitLine(gxVector<2> &from, gxVector<2> &to, double limit);
