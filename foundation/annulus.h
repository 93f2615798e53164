#pragma once

#include "foundation/circle.h"
#include "foundation/shape.h"

#include <ostream>

class gxGenAnnulus;

/// The ring between two circles: a region. The circles may have different centers; what is inside exactly one of them
/// is inside the ring. Its outline is that of the outer circle, then that of the inner one, each run towards growing
/// angles.
class GX_API gxAnnulus : public gxShape
{
 public:
  /// Two circles of radius 0 at (0, 0).
  gxAnnulus() = default;
  gxAnnulus(gxCircle const &inner, gxCircle const &outer) : inner_(inner), outer_(outer) {}

  gxCircle const &innerCircle() const { return inner_; }
  void innerCircle(gxCircle const &v)
  {
    mutating();
    inner_ = v;
  }
  gxCircle const &outerCircle() const { return outer_; }
  void outerCircle(gxCircle const &v)
  {
    mutating();
    outer_ = v;
  }
  /// True if a circle has a radius of 0.
  bool degen() const { return inner_.radius() == 0.0 || outer_.radius() == 0.0; }

  /// For every transform, the identity included.
  gxGenAnnulus map(gxXform<2> const &xform) const;

  bool isRegion() const override { return true; }
  gxRect boundingBox() const override;
  double perimeter() const override { return inner_.perimeter() + outer_.perimeter(); }
  bool isRightHanded() const override { return true; }
  /// True on both circles.
  bool within(gxVector<2> const &p) const override;
  /// A gxGenAnnulus.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxAnnulus const &a, gxAnnulus const &b)
  {
    return a.inner_ == b.inner_ && a.outer_ == b.outer_;
  }

 protected:
  /// A gxGenAnnulus.
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxCircle inner_;
  gxCircle outer_;

  GX_SHAPE(gxAnnulus);
};

inline std::ostream &operator<<(std::ostream &os, gxAnnulus const &a)
{
  return os << "ring, inner " << a.innerCircle() << ", outer " << a.outerCircle();
}
