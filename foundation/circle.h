#pragma once

#include "foundation/shape.h"

#include <ostream>

class gxEllipse;

/// A circle: a region whose outline starts at angle 0 and runs towards growing angles. A radius of 0 leaves a point.
class GX_API gxCircle : public gxShape
{
 public:
  /// Of radius 0 at (0, 0).
  gxCircle() = default;
  /// Throws BadRadius for a negative radius.
  gxCircle(gxVector<2> const &center, double radius);

  gxVector<2> const &center() const { return center_; }
  void center(gxVector<2> const &v)
  {
    mutating();
    center_ = v;
  }
  double radius() const { return radius_; }
  /// Throws BadRadius for a negative radius and then changes nothing.
  void radius(double v);

  /// For every transform, the identity included.
  gxEllipse map(gxXform<2> const &xform) const;

  bool isRegion() const override { return true; }
  bool hasTangent() const override { return radius_ != 0.0; }
  gxRect boundingBox() const override;
  /// From the centre all points are equally near; the one at angle 0 is returned.
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  bool isRightHanded() const override { return true; }
  bool within(gxVector<2> const &p) const override;
  /// A gxEllipse2, for every transform.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxCircle const &a, gxCircle const &b)
  {
    return a.center_ == b.center_ && a.radius_ == b.radius_;
  }

 protected:
  /// A left-handed gxEllipse2.
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxVector<2> center_;
  double radius_ = 0.0;

  GX_SHAPE(gxCircle);
};

inline std::ostream &operator<<(std::ostream &os, gxCircle const &c)
{
  return os << "circle at " << c.center() << " of radius " << c.radius();
}
