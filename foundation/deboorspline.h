#pragma once

#include "foundation/cubicspline.h"

/// A cubic B-spline: control points that the curve follows without running through them, with a continuous second
/// derivative. The curves are found by Boehm's construction (W. Boehm, "Cubic B-spline curves and surfaces in computer
/// aided geometric design", Computing 19, 1977).
///
/// An open spline of n control points starts at the first and ends at the last (the knots there are fourfold); it has
/// n - 3 curves, and curve i follows the line from control point i + 1 to i + 2, whose length gives its interval. With
/// fewer than four control points it is one curve of degree n - 1. A closed spline has n curves, and curve i follows
/// the line from control point i to i + 1.
class GX_API gxDeBoorSpline : public gxCubicSpline
{
 public:
  explicit gxDeBoorSpline(bool closed = false, IntervalMode mode = uniform) : gxCubicSpline(closed, mode) {}

  using gxCubicSpline::points;
  /// Replaces all control points. Throws BadGeom for a coordinate that is not finite or too large, and then changes
  /// nothing.
  void points(std::vector<gxVector<2>> v);
  /// Costs as much as setting all points. Throws BadGeom as above.
  void append(gxVector<2> const &point);

  gxDeBoorSpline map(gxXform<2> const &xform) const;
  /// A gxDeBoorSpline.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;

  /// Exact.
  friend bool operator==(gxDeBoorSpline const &a, gxDeBoorSpline const &b) { return a.equalBase(b); }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;
  std::size_t curveCount() const override;
  std::size_t firstLeg() const override { return isClosed() || points().size() < 4 ? 0 : 1; }
  std::vector<gxVector<2>> join(std::vector<double> const &intervals) const override;

 private:
  GX_SHAPE(gxDeBoorSpline);
};
