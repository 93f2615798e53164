#pragma once

#include "foundation/shape.h"

#include <ostream>

/// What straight lines without ends have in common: a direction and a position. Without ends they are no open contours:
/// `startPoint` throws NotOpenContour; `perimeter`, `boundingBox` and `appendOutline` throw InfiniteShape.
class GX_API gx_EndlessLine : public gxShape
{
 public:
  gxVector<2> const &dir() const { return dir_; }
  gxVector<2> const &pos() const { return pos_; }

  bool isFinite() const override { return false; }
  bool hasTangent() const override { return !(dir_ == gxVector<2>()); }
  bool isDecomposed() const override { return true; }
  bool isReversible() const override { return true; }
  gxRect boundingBox() const override;
  /// Throws DegenerateShape for a direction of length 0.
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  void appendOutline(gx_Outline &outline) const override;

  friend std::ostream &operator<<(std::ostream &os, gx_EndlessLine const &l)
  {
    return os << "through " << l.pos_ << " along " << l.dir_;
  }

 protected:
  /// The x axis.
  gx_EndlessLine() : dir_(1.0, 0.0) {}
  gx_EndlessLine(gxVector<2> const &dir, gxVector<2> const &pos) : dir_(dir), pos_(pos) {}

  /// Exact: equal direction and equal position, not just the same points.
  bool equalLine(gx_EndlessLine const &other) const { return dir_ == other.dir_ && pos_ == other.pos_; }
  /// Line segments; always cut.
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

  gxVector<2> dir_;
  gxVector<2> pos_;
};

/// A straight line without ends: a direction, of any length but 0, and a position on it, both kept as given.
///
/// A direction of length 0 is kept too, since a singular map may make one; what needs a direction then throws
/// DegenerateShape.
class GX_API gxLine : public gx_EndlessLine
{
 public:
  /// The x axis.
  gxLine() = default;
  gxLine(gxVector<2> const &dir, gxVector<2> const &pos) : gx_EndlessLine(dir, pos) {}
  gxLine(gxRadian angle, gxVector<2> const &pos) : gx_EndlessLine({1.0, angle}, pos) {}

  using gx_EndlessLine::dir;
  void dir(gxVector<2> const &v)
  {
    mutating();
    dir_ = v;
  }
  using gx_EndlessLine::pos;
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

  /// A gxLine.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;

  /// Exact.
  friend bool operator==(gxLine const &a, gxLine const &b) { return a.equalLine(b); }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  GX_SHAPE(gxLine);
};
