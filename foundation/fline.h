#pragma once

#include "foundation/line.h"

#include <vector>

/// A straight line without ends that keeps its direction as a unit vector: the line of numeric work, where gxLine
/// keeps what it was given. `dir()` has length 1.
class GX_API gxFLine : public gx_EndlessLine
{
 public:
  /// The x axis.
  gxFLine() = default;
  gxFLine(gxDegree angle, gxVector<2> const &pos);
  /// Through @p from towards @p to. Throws DegenerateShape if they coincide.
  gxFLine(gxVector<2> const &from, gxVector<2> const &to);

  gxRadian angle() const { return dir_.angle(); }
  /// Positive on the side towards growing angles, the left of the direction in a frame with y up.
  double signedDistance(gxVector<2> const &p) const { return dir_.cross(p - pos_); }

  gxVector<2> closestPoint(gxVector<2> const &p) const { return pos_ + dir_ * (dir_ * (p - pos_)); }
  /// The common point, or none for parallel lines.
  std::vector<gxVector<2>> intersection(gxFLine const &other) const;
  /// Throws DegenerateShape if the map takes the direction to zero.
  gxFLine map(gxXform<2> const &xform) const;
  friend gxFLine operator*(gxXform<2> const &xform, gxFLine const &line) { return line.map(xform); }

  /// A gxFLine.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;

  /// Exact.
  friend bool operator==(gxFLine const &a, gxFLine const &b) { return a.equalLine(b); }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  GX_SHAPE(gxFLine);
};
