#pragma once

#include "foundation/ellipse.h"
#include "foundation/shape.h"

#include <ostream>

/// The ring between two ellipses: a region. The ellipses may have different centers and axes; what is inside exactly
/// one of them is inside the ring. Its outline is that of the outer ellipse, then that of the inner one, each run
/// towards growing angles of its own.
class GX_API gxEllipseAnnulus : public gxShape
{
 public:
  /// Two unit circles.
  gxEllipseAnnulus() = default;
  gxEllipseAnnulus(gxEllipse const &inner, gxEllipse const &outer) : inner_(inner), outer_(outer) {}

  gxEllipse const &innerEllipse() const { return inner_; }
  gxEllipse const &outerEllipse() const { return outer_; }
  /// True if an ellipse has a radius of 0.
  bool degen() const { return inner_.degen() || outer_.degen(); }

  gxEllipseAnnulus map(gxXform<2> const &xform) const { return {inner_.map(xform), outer_.map(xform)}; }

  bool isRegion() const override { return true; }
  gxRect boundingBox() const override;
  /// Handedness of the outer ellipse.
  bool isRightHanded() const override { return !outer_.isReversed(); }
  bool within(gxVector<2> const &p) const override;
  /// A gxEllipseAnnulus.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxEllipseAnnulus const &a, gxEllipseAnnulus const &b)
  {
    return a.inner_ == b.inner_ && a.outer_ == b.outer_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxEllipse inner_;
  gxEllipse outer_;

  GX_SHAPE(gxEllipseAnnulus);
};

/// A sector of the ring between two ellipses, from one angle to another as in gxEllipseArc: a region that is bounded
/// by an arc of each ellipse and the straight lines between their ends. Angles a turn or more apart leave the whole
/// ring, without such lines.
class GX_API gxEllipseAnnulusSection : public gxShape
{
 public:
  /// A whole turn round two unit circles.
  gxEllipseAnnulusSection() = default;
  /// @param forward which way an arrow on the section points: towards growing directions of the plane if true
  /// @param flag1, flag2 kept for the user; the geometry does not look at them
  gxEllipseAnnulusSection(gxEllipseAnnulus const &annulus, gxRadian start, gxRadian end, bool forward = true,
                          bool flag1 = false, bool flag2 = false);

  gxEllipseAnnulus const &annulus() const { return annulus_; }
  gxRadian start() const { return start_; }
  gxRadian end() const { return end_; }
  bool isForward() const { return isForward_; }
  bool flag1() const { return flag1_; }
  bool flag2() const { return flag2_; }
  bool isWholeTurn() const;
  gxRect encloseRect() const;
  /// Distance to the outline, from inside too.
  double distToPoint(gxVector<2> const &p) const { return distanceToPoint(p); }

  /// The angles stay, since the images of the ellipses keep their points at their angles; but where a mirroring map
  /// would have the arcs run the other way between them, they are written so that the same points remain.
  gxEllipseAnnulusSection map(gxXform<2> const &xform) const;

  bool isRegion() const override { return true; }
  bool within(gxVector<2> const &p) const override;
  /// A gxEllipseAnnulusSection.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact, field by field.
  friend GX_API bool operator==(gxEllipseAnnulusSection const &a, gxEllipseAnnulusSection const &b);

 private:
  gxEllipseAnnulus annulus_;
  gxRadian start_;
  gxRadian end_{gf_turnRadians};
  bool isForward_ = true;
  bool flag1_ = false;
  bool flag2_ = false;

  GX_SHAPE(gxEllipseAnnulusSection);
};
