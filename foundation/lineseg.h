#pragma once

#include "foundation/shape.h"

#include <ostream>

/// A straight line from a start point to an end point, which may coincide. An open contour.
class GX_API gxLineSeg : public gxShape
{
 public:
  /// Both ends at (0, 0).
  gxLineSeg() = default;
  gxLineSeg(gxVector<2> const &start, gxVector<2> const &end) : start_(start), end_(end) {}

  gxVector<2> const &start() const { return start_; }
  void start(gxVector<2> const &v)
  {
    mutating();
    start_ = v;
  }
  gxVector<2> const &end() const { return end_; }
  void end(gxVector<2> const &v)
  {
    mutating();
    end_ = v;
  }
  double length() const { return start_.distance(end_); }
  gxVector<2> midPoint() const { return (start_ + end_) * 0.5; }

  gxLineSeg map(gxXform<2> const &xform) const { return {xform.mapPoint(start_), xform.mapPoint(end_)}; }

  bool isOpenContour() const override { return true; }
  bool hasTangent() const override { return !(start_ == end_); }
  bool isDecomposed() const override { return true; }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  gxVector<2> startPoint() const override { return start_; }
  gxVector<2> endPoint() const override { return end_; }
  /// A gxLineSeg.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxLineSeg const &a, gxLineSeg const &b) { return a.start_ == b.start_ && a.end_ == b.end_; }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxVector<2> start_;
  gxVector<2> end_;

  GX_SHAPE(gxLineSeg);
};

inline std::ostream &operator<<(std::ostream &os, gxLineSeg const &s)
{
  return os << s.start() << " to " << s.end();
}
