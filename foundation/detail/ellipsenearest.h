#pragma once

#include "foundation/vector.h"

/// Where the distance from a point to the ellipse (rx cos s, ry sin s) has its valleys. For finite input all angles
/// are finite. (Nearest points by bracketed roots: D. Eberly, "Distance from a Point to an Ellipse, an Ellipsoid, or
/// a Hyperellipsoid", has the same quadrants in another parameter.)
class gx_EllipseNear
{
 public:
  gx_EllipseNear(double rx, double ry, gxVector<2> const &p);

  /// The angle of a nearest point.
  double nearest() const;
  /// The angle of the other valley, for points inside the evolute; for others any angle.
  double second() const;

 private:
  double fall(double s) const;
  double sinkBetween(double low, double high, double guess) const;
  double restored(double s) const;

  // in the quadrant where both coordinates of the point are positive, the long axis first, all scaled to about 1
  double focal_ = 0.0;  ///< difference of the squared half axes
  double ax_ = 0.0;     ///< long half axis times the point's coordinate along it
  double by_ = 0.0;     ///< the same for the short one
  gxVector<2> point_;
  bool isTall_ = false;
};
