#pragma once

/// @file
/// The common points of two pieces of an outline, without memory of their own: what stands behind the operations
/// `intersection` of lines and arcs, for callers that ask it of many pieces.

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/lineseg.h"

#include <array>
#include <vector>

/// At most two points.
struct gx_Meeting {
  std::array<gxVector<2>, 2> points;
  int count = 0;

  void add(gxVector<2> const &p) { points[static_cast<std::size_t>(count++)] = p; }
  gxVector<2> const *begin() const { return points.data(); }
  gxVector<2> const *end() const { return points.data() + count; }
  std::vector<gxVector<2>> toVector() const { return {begin(), end()}; }
  /// The points for which @p keep(point) holds, in order.
  template <class Keep>
  gx_Meeting filtered(Keep keep) const
  {
    gx_Meeting kept;
    for (gxVector<2> const &p : *this)
      if (keep(p))
        kept.add(p);
    return kept;
  }
};

/// A line without ends: a point and a direction of length 1.
struct gx_Ray {
  gxVector<2> pos;
  gxVector<2> dir;

  static gx_Ray of(gxFLine const &line) { return {line.pos(), line.dir()}; }
  /// Throws gxShapesError::DegenerateShape for a segment without direction.
  static gx_Ray of(gx2SegmentLine const &segment);
  gxVector<2> foot(gxVector<2> const &p) const { return pos + dir * (dir * (p - pos)); }
};

class gx_SegmentMeet
{
 public:
  static gx_Meeting meet(gx2SegmentLine const &segment, gx_Ray const &line, bool excludeEnds);
  static gx_Meeting meet(gx2SegmentLine const &segment, gx2SegmentLine const &other, bool excludeEnds);
  static gx_Meeting meet(gx2SegmentArc const &arc, gx_Ray const &line, bool excludeEnds);
  static gx_Meeting meet(gx2SegmentArc const &arc, gx2SegmentLine const &segment, bool excludeEnds);
  static gx_Meeting meet(gx2SegmentArc const &arc, gx2SegmentArc const &other, bool excludeEnds);

 private:
  /// The common points for which keep(point) holds.
  template <class Keep>
  static gx_Meeting meetLine(gx2SegmentArc const &arc, gx_Ray const &line, bool excludeEnds, Keep keep);
};
