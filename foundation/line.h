#pragma once

#include "foundation/shape.h"

#include <ostream>

/// A straight line without ends: a direction, of any length but 0, and a position on it, both kept as given.
///
/// A direction of length 0 is kept too, since a singular map may make one; what needs a direction then throws
/// DegenerateShape. Without ends the line is no open contour: `startPoint` throws NotOpenContour, `perimeter` and
/// `boundingBox` throw InfiniteShape.
class GX_API gxLine : public gxShape
{
 public:
  /// The x axis.
  gxLine() : dir_(1.0, 0.0) {}
  gxLine(gxVector<2> const &dir, gxVector<2> const &pos) : dir_(dir), pos_(pos) {}
  gxLine(gxRadian angle, gxVector<2> const &pos) : dir_(1.0, angle), pos_(pos) {}

  gxVector<2> const &dir() const { return dir_; }
  void dir(gxVector<2> const &v)
  {
    mutating();
    dir_ = v;
  }
  gxVector<2> const &pos() const { return pos_; }
  void pos(gxVector<2> const &v)
  {
    mutating();
    pos_ = v;
  }
  /// Throws DegenerateShape for a direction of length 0.
  gxRadian angle() const;

  gxLine map(gxXform<2> const &xform) const { return {xform.mapVector(dir_), xform.mapPoint(pos_)}; }
  /// The common point. Throws DegenerateShape for a direction of length 0, NoIntersection for parallel lines.
  gxVector<2> intersect(gxLine const &other) const;

  bool isFinite() const override { return false; }
  bool hasTangent() const override { return !(dir_ == gxVector<2>()); }
  bool isDecomposed() const override { return true; }
  bool isReversible() const override { return true; }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  /// A gxLine.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  /// Throws InfiniteShape.
  void appendOutline(gx_Outline &outline) const override;

  /// Exact: equal direction and equal position, not just the same points.
  friend bool operator==(gxLine const &a, gxLine const &b) { return a.dir_ == b.dir_ && a.pos_ == b.pos_; }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;
  /// Line segments; always cut.
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

 private:
  gxVector<2> dir_;
  gxVector<2> pos_;

  GX_SHAPE(gxLine);
};

inline std::ostream &operator<<(std::ostream &os, gxLine const &l)
{
  return os << "through " << l.pos() << " along " << l.dir();
}
