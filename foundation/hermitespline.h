#pragma once

#include "foundation/cubicspline.h"

/// A cubic spline through points with given derivatives by the parameter, with a continuous first derivative: see
/// G. Farin, Curves and Surfaces for CAGD, "Piecewise cubic Hermite interpolation".
class GX_API gxHermiteSpline : public gxCubicSpline
{
 public:
  explicit gxHermiteSpline(bool closed = false, IntervalMode mode = uniform) : gxCubicSpline(closed, mode) {}

  /// One for each point.
  std::vector<gxVector<2>> const &tangents() const { return tangents_; }
  /// Replaces all points and tangents. Throws BadCoef unless there are equally many, BadGeom for a coordinate that is
  /// not finite or too large, and then changes nothing.
  void set(std::vector<gxVector<2>> points, std::vector<gxVector<2>> tangents);
  /// Costs as much as `set`. Throws BadGeom as above.
  void append(gxVector<2> const &point, gxVector<2> const &tangent);

  gxHermiteSpline map(gxXform<2> const &xform) const;
  /// A gxHermiteSpline.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;

  /// Exact.
  friend bool operator==(gxHermiteSpline const &a, gxHermiteSpline const &b)
  {
    return a.equalBase(b) && a.tangents_ == b.tangents_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;
  std::size_t curveCount() const override;
  std::vector<gxVector<2>> join(std::vector<double> const &intervals) const override;

 private:
  std::vector<gxVector<2>> tangents_;

  GX_SHAPE(gxHermiteSpline);
};
