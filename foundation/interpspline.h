#pragma once

#include "foundation/cubicspline.h"

/// The cubic spline through points with continuous second derivative, as in G. Farin, Curves and Surfaces for CAGD,
/// "Cubic spline interpolation", and C. de Boor, A Practical Guide to Splines, chapter IV. What an open spline still
/// has free is settled at its ends; a closed one is periodic and has no end conditions.
class GX_API gxInterpSpline : public gxCubicSpline
{
 public:
  /// What holds at either end of an open spline. The numbers are archived.
  enum EndConditions : std::int32_t {
    natural = 0,    ///< the second derivative is 0
    clamped = 1,    ///< the first derivative by the parameter is the end tangent
    notAKnot = 2,   ///< the first two curves, and the last two, are one and the same cubic
    bessel = 3,     ///< the first derivative is that of the parabola through the three end points
    quadratic = 4,  ///< the end curve is a parabola
  };

  /// With two points all but clamped give the straight line, with three notAKnot gives the parabola.
  explicit gxInterpSpline(bool closed = false, IntervalMode mode = uniform, EndConditions ends = natural)
      : gxCubicSpline(closed, mode), ends_(ends)
  {
  }

  using gxCubicSpline::points;
  /// Replaces all points. Throws BadGeom for a coordinate that is not finite or too large, and then changes nothing.
  void points(std::vector<gxVector<2>> v);
  /// Costs as much as setting all points. Throws BadGeom as above.
  void append(gxVector<2> const &point);
  EndConditions endConditions() const { return ends_; }
  void endConditions(EndConditions v);
  /// For clamped ends; (0, 0) at first.
  gxVector<2> const &startTangent() const { return startTangent_; }
  gxVector<2> const &endTangent() const { return endTangent_; }
  /// Sets both, and the end conditions to clamped. Throws BadGeom as above.
  void endTangents(gxVector<2> const &start, gxVector<2> const &end);

  gxInterpSpline map(gxXform<2> const &xform) const;
  /// A gxInterpSpline.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;

  /// Exact.
  friend bool operator==(gxInterpSpline const &a, gxInterpSpline const &b)
  {
    return a.equalBase(b) && a.ends_ == b.ends_ && a.startTangent_ == b.startTangent_ && a.endTangent_ == b.endTangent_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;
  std::size_t curveCount() const override;
  std::vector<gxVector<2>> join(std::vector<double> const &intervals) const override;

 private:
  /// Finds the curves of @p changed and takes it over.
  void take(gxInterpSpline &changed);
  /// The derivatives at the points.
  std::vector<gxVector<2>> openSlopes(std::vector<double> const &intervals) const;
  std::vector<gxVector<2>> closedSlopes(std::vector<double> const &intervals) const;

  EndConditions ends_ = natural;
  gxVector<2> startTangent_;
  gxVector<2> endTangent_;

  GX_SHAPE(gxInterpSpline);
};
