#pragma once

#include "foundation/shape.h"
#include "foundation/xformbase.h"

#include <ostream>

class gxCircle;
struct gx_ArcPiece;

/// An ellipse that knows where it starts and which way it runs: a region.
///
/// The point at phi is center + R(angle) * (rx cos s, ry sin s), where R turns by the angle and s = phi + phase if
/// the ellipse is right-handed, s = -(phi + phase) if not. Mapping an ellipse keeps phi: the image of the point at phi
/// is the point at phi of the image. The outline starts at phi 0.
class GX_API gxEllipse2 : public gxShape
{
 public:
  /// The unit circle.
  gxEllipse2() = default;
  /// The image of the unit circle; phi is the angle on that circle.
  explicit gxEllipse2(gx2XformLinear const &fromUnitCirc);
  explicit gxEllipse2(gxCircle const &circle);
  /// Throws BadRadius for a negative radius.
  gxEllipse2(gxVector<2> const &radii, gxRadian angle, gxVector<2> const &center, bool rightHanded = true,
             gxRadian phase = gxRadian());

  gxVector<2> const &radii() const { return radii_; }
  gxRadian angle() const { return angle_; }
  gxVector<2> const &center() const { return center_; }
  gxRadian phase() const { return phase_; }
  /// True if a radius is 0: the ellipse is a segment, run forth and back, or a point.
  bool isDegenerate() const { return radii_.x() == 0.0 || radii_.y() == 0.0; }

  gxVector<2> point(gxRadian phi) const;
  /// The transform that takes the unit circle to the ellipse, and its angles to phi. Has no inverse if degenerate.
  gx2XformLinear ellFromUnitCirc() const;
  gxEllipse2 map(gx2XformLinear const &xform) const;
  /// The whole outline, with phi as its angle.
  gx_ArcPiece piece() const;

  bool isRegion() const override { return true; }
  bool hasTangent() const override { return !(radii_ == gxVector<2>()); }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  bool isRightHanded() const override { return rightHanded_; }
  bool within(gxVector<2> const &p) const override;
  /// A gxEllipse2.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact, field by field.
  friend bool operator==(gxEllipse2 const &a, gxEllipse2 const &b)
  {
    return a.radii_ == b.radii_ && a.angle_ == b.angle_ && a.center_ == b.center_ && a.rightHanded_ == b.rightHanded_ &&
           a.phase_ == b.phase_;
  }

 protected:
  /// The same ellipse of the other handedness; the start point stays.
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxVector<2> radii_{1.0, 1.0};
  gxRadian angle_;
  gxVector<2> center_;
  bool rightHanded_ = true;
  gxRadian phase_;

  GX_SHAPE(gxEllipse2);
};

inline std::ostream &operator<<(std::ostream &os, gxEllipse2 const &e)
{
  return os << "ellipse at " << e.center() << " of radii " << e.radii() << " turned by " << e.angle()
            << (e.isRightHanded() ? ", phase " : ", left-handed, phase ") << e.phase();
}
