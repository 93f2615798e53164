#pragma once

#include "foundation/shape.h"

#include <array>
#include <ostream>
#include <type_traits>
#include <vector>

struct gx_BezierPiece;

/// A rational Bezier curve of degree three: an open contour from the first control point to the last. The point at t
/// is the mean of the control points with the weights w_i binomial(3, i) t^i (1 - t)^(3 - i); see G. Farin, Curves and
/// Surfaces for CAGD. Equal weights leave a polynomial curve.
class GX_API gxBezierCurve : public gxShape
{
 public:
  using Points = std::array<gxVector<2>, 4>;
  using Weights = std::array<double, 4>;

  /// All control points at (0, 0), all weights 1.
  gxBezierCurve() = default;
  /// Throws BadCoef unless there are four of each, BadGeom for a coordinate that is not finite or beyond 1e150 in
  /// size, BadWeight for a weight that is not finite or not positive.
  gxBezierCurve(std::vector<gxVector<2>> const &controlPoints, std::vector<double> const &weights);
  /// The same from arrays; a template only so that plain lists in braces mean vectors.
  template <class P, class W>
  requires std::is_same_v<P, Points> && std::is_same_v<W, Weights> gxBezierCurve(P const &controlPoints,
                                                                                 W const &weights)
  {
    set(controlPoints, weights);
  }

  Points const &controlPoints() const { return points_; }
  /// Throws as the constructor and then changes nothing; so does the next one.
  void controlPoints(Points const &v);
  Weights const &weights() const { return weights_; }
  void weights(Weights const &v);
  /// The point at @p t, 0 to 1.
  gxVector<2> point(double t) const;

  gxBezierCurve map(gxXform<2> const &xform) const;

  bool isOpenContour() const override { return true; }
  bool hasTangent() const override;
  bool isDecomposed() const override { return true; }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  gxVector<2> startPoint() const override { return points_.front(); }
  gxVector<2> endPoint() const override { return points_.back(); }
  /// A gxBezierCurve.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxBezierCurve const &a, gxBezierCurve const &b)
  {
    return a.points_ == b.points_ && a.weights_ == b.weights_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  void set(Points const &controlPoints, Weights const &weights);
  gx_BezierPiece piece() const;

  Points points_{};
  Weights weights_ = {1.0, 1.0, 1.0, 1.0};

  GX_SHAPE(gxBezierCurve);
};

GX_API std::ostream &operator<<(std::ostream &os, gxBezierCurve const &curve);
