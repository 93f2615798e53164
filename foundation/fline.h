#pragma once

#include "foundation/shape.h"

#include <ostream>
#include <vector>

/// A straight line without ends that keeps its direction as a unit vector: the line of numeric work, where gxLine
/// keeps what it was given.
class GX_API gxFLine : public gxShape
{
 public:
  /// The x axis.
  gxFLine() : dir_(1.0, 0.0) {}
  gxFLine(gxDegree angle, gxVector<2> const &pos);
  /// Through @p from towards @p to. Throws DegenerateShape if they coincide.
  gxFLine(gxVector<2> const &from, gxVector<2> const &to);

  /// Of length 1.
  gxVector<2> const &dir() const { return dir_; }
  gxVector<2> const &pos() const { return pos_; }
  gxRadian angle() const { return dir_.angle(); }
  /// Positive on the side towards growing angles, the left of the direction in a frame with y up.
  double signedDistance(gxVector<2> const &p) const { return dir_.cross(p - pos_); }

  gxVector<2> closestPoint(gxVector<2> const &p) const { return pos_ + dir_ * (dir_ * (p - pos_)); }
  /// The common point, or none for parallel lines.
  std::vector<gxVector<2>> intersection(gxFLine const &other) const;
  /// Throws DegenerateShape if the map takes the direction to zero.
  gxFLine map(gxXform<2> const &xform) const;
  friend gxFLine operator*(gxXform<2> const &xform, gxFLine const &line) { return line.map(xform); }

  bool isFinite() const override { return false; }
  bool hasTangent() const override { return true; }
  bool isDecomposed() const override { return true; }
  bool isReversible() const override { return true; }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  /// A gxFLine.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  /// Throws InfiniteShape.
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxFLine const &a, gxFLine const &b) { return a.dir_ == b.dir_ && a.pos_ == b.pos_; }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;
  /// Line segments; always cut.
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

 private:
  gxVector<2> dir_;
  gxVector<2> pos_;

  GX_SHAPE(gxFLine);
};

inline std::ostream &operator<<(std::ostream &os, gxFLine const &l)
{
  return os << "through " << l.pos() << " along " << l.dir();
}
