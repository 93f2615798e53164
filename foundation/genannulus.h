#pragma once

#include "foundation/genrect.h"
#include "foundation/shape.h"

#include <ostream>

class gxAnnulus;

/// The ring between two general rectangles: a region. They may have different centers and axes; what is inside exactly
/// one of them is inside the ring. Its outline is that of the outer rectangle, then that of the inner one.
class GX_API gxGenAnnulus : public gxShape
{
 public:
  /// Twice the square from -1 to 1.
  gxGenAnnulus() = default;
  /// The circles as rectangles of rounding (1, 1).
  explicit gxGenAnnulus(gxAnnulus const &annulus);
  gxGenAnnulus(gxGenRect const &inner, gxGenRect const &outer) : inner_(inner), outer_(outer) {}

  /// The first one.
  gxGenRect const &innerRect() const { return inner_; }
  void innerRect(gxGenRect const &v)
  {
    mutating();
    inner_ = v;
  }
  /// The second one.
  gxGenRect const &outerRect() const { return outer_; }
  void outerRect(gxGenRect const &v)
  {
    mutating();
    outer_ = v;
  }

  gxGenAnnulus map(gxXform<2> const &xform) const { return {inner_.map(xform), outer_.map(xform)}; }

  bool isRegion() const override { return true; }
  gxRect boundingBox() const override;
  /// Handedness of the outer rectangle.
  bool isRightHanded() const override { return outer_.isRightHanded(); }
  /// True on both outlines.
  bool within(gxVector<2> const &p) const override;
  /// A gxGenAnnulus.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxGenAnnulus const &a, gxGenAnnulus const &b)
  {
    return a.inner_ == b.inner_ && a.outer_ == b.outer_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxGenRect inner_;
  gxGenRect outer_;

  GX_SHAPE(gxGenAnnulus);
};

inline std::ostream &operator<<(std::ostream &os, gxGenAnnulus const &a)
{
  return os << "ring, inner " << a.innerRect() << ", outer " << a.outerRect();
}
