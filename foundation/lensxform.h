#pragma once

#include "foundation/xformbase.h"

/// The radial distortion of a lens: a transform that moves points along the rays from a center. A point at distance r
/// goes to distance r (1 + k1 x + k2 x^2 + k3 x^3) with x = (r / unit)^2 (D. Brown, "Close-range camera calibration",
/// Photogrammetric Engineering 37, 1971, without the decentering terms). Negative coefficients give a barrel, positive
/// ones a pincushion.
///
/// The inverse is defined where the distortion grows outward: up to the first radius at which images turn back, see
/// `invertibleRadius`.
class GX_API gx2XformLens : public gx2XformBase
{
 public:
  /// The identity: all coefficients are 0.
  gx2XformLens() = default;
  /// @param unit the distance from the center at which x is 1, for instance half the diagonal of the picture
  /// Throws gxShapesError::BadParams unless the unit is positive and all numbers are finite.
  gx2XformLens(gxVector<2> const &center, double unit, double k1, double k2 = 0.0, double k3 = 0.0);

  gxVector<2> const &center() const { return center_; }
  double unit() const { return unit_; }
  double k1() const { return k1_; }
  double k2() const { return k2_; }
  double k3() const { return k3_; }
  /// Up to this distance from the center the distortion grows and has an inverse; infinite if it always grows.
  double invertibleRadius() const;

  gxPtrHandle<gx2XformBase> clone() const override;
  /// True if all coefficients are 0.
  bool isLinear() const override { return k1_ == 0.0 && k2_ == 0.0 && k3_ == 0.0; }
  gx2XformLinear linearXform(gxVector<2> const &at) const override;
  gxVector<2> mapPoint(gxVector<2> const &p) const override;
  /// The point within the invertible radius that goes to @p p, by Newton's steps within a bracket. Throws
  /// gxMathError::NoConvergence if there is none.
  gxVector<2> invMapPoint(gxVector<2> const &p) const override;

  /// Exact.
  friend bool operator==(gx2XformLens const &a, gx2XformLens const &b)
  {
    return a.center_ == b.center_ && a.unit_ == b.unit_ && a.k1_ == b.k1_ && a.k2_ == b.k2_ && a.k3_ == b.k3_;
  }

 protected:
  bool equal_(gx2XformBase const &other) const override;

 private:
  /// 1 + k1 x + k2 x^2 + k3 x^3, and its derivative by x.
  double factor(double x) const { return 1.0 + x * (k1_ + x * (k2_ + x * k3_)); }
  double factorSlope(double x) const { return k1_ + x * (2.0 * k2_ + x * 3.0 * k3_); }
  /// Derivative of the distorted radius by the radius, in units.
  double growth(double x) const { return 1.0 + x * (3.0 * k1_ + x * (5.0 * k2_ + x * 7.0 * k3_)); }
  /// The radius, in units, that goes to @p target.
  double radiusOf(double target) const;

  gxVector<2> center_;
  double unit_ = 1.0;
  double k1_ = 0.0;
  double k2_ = 0.0;
  double k3_ = 0.0;

  GX_PERSISTENT(gx2XformLens);
};
