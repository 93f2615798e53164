#pragma once

#include "foundation/angle.h"
#include "foundation/vector.h"

#include <optional>

/// Where the distance from a point to the ellipse (rx cos s, ry sin s) has its valleys. Answers are points of the unit
/// circle, (cos s, sin s); for finite input they are finite. (Nearest points by bracketed roots: D. Eberly, "Distance
/// from a Point to an Ellipse, an Ellipsoid, or a Hyperellipsoid".)
class gx_EllipseNear
{
 public:
  gx_EllipseNear(double rx, double ry, gxVector<2> const &p);

  /// A nearest point.
  gxVector<2> nearest() const;
  /// True on the long axis, but for rounding: there the mirror image of `nearest()` by that axis may be just as near.
  bool hasTwin() const { return by_ <= 1e-15; }
  gxVector<2> twin() const;
  /// True if all points are equally near: from the center of a circle.
  bool isCenter() const { return focal_ == 0.0 && ax_ == 0.0 && by_ == 0.0; }
  /// The other valley, for points inside the evolute; for others any point.
  gxVector<2> second() const;

 private:
  double fall(double s) const;
  double sinkBetween(double low, double high, double guess) const;
  gxVector<2> restored(double along, double across) const;

  // in the quadrant where both coordinates of the point are positive, the long axis first, all scaled to about 1
  double focal_ = 0.0;  ///< difference of the squared half axes
  double ax_ = 0.0;     ///< long half axis times the point's coordinate along it
  double by_ = 0.0;     ///< the same for the short one
  gxVector<2> point_;
  bool isTall_ = false;
};

/// The nearest point of a whole ellipse, where there is only one; nothing near its long axis.
std::optional<gxVector<2>> gf_onlyNearest(gxVector<2> const &center, gxVector<2> const &radii, gxRadian angle,
                                          gxVector<2> const &p);
