#include "foundation/bezier.h"

#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

GX_SHAPE_IMPL(gxBezierCurve, gxShape)

namespace
{

constexpr double maxCoordinate = 1e150;  // squares stay finite

bool arePoints(gxBezierCurve::Points const &points)
{
  return std::all_of(points.begin(), points.end(), [](gxVector<2> const &p) {
    return std::abs(p.x()) <= maxCoordinate && std::abs(p.y()) <= maxCoordinate;
  });
}

bool areWeights(gxBezierCurve::Weights const &weights)
{
  return std::all_of(weights.begin(), weights.end(), [](double w) { return w > 0.0 && std::isfinite(w); });
}

template <class Array, class T>
Array four(std::vector<T> const &v)
{
  Array array;
  if (v.size() != array.size())
    throw gxShapesError::BadCoef();
  std::copy(v.begin(), v.end(), array.begin());
  return array;
}

}  // namespace

void gxBezierCurve::passFields_(gxArchive &archive)
{
  Points points = points_;
  Weights weights = weights_;
  for (gxVector<2> &p : points)
    archive || p;
  for (double &w : weights)
    archive || w;
  if (archive.isStoring())
    return;
  if (!arePoints(points))
    archive.fail("a curve through points out of range");
  if (!areWeights(weights))
    archive.fail("a weight that is not positive");
  points_ = points;
  weights_ = weights;
}

gxBezierCurve::gxBezierCurve(std::vector<gxVector<2>> const &controlPoints, std::vector<double> const &weights)
{
  set(four<Points>(controlPoints), four<Weights>(weights));
}

void gxBezierCurve::set(Points const &controlPoints, Weights const &weights)
{
  if (!arePoints(controlPoints))
    throw gxShapesError::BadGeom();
  if (!areWeights(weights))
    throw gxShapesError::BadWeight();
  mutating();
  points_ = controlPoints;
  weights_ = weights;
}

void gxBezierCurve::controlPoints(Points const &v)
{
  set(v, weights_);
}

void gxBezierCurve::weights(Weights const &v)
{
  set(points_, v);
}

gx_BezierPiece gxBezierCurve::piece() const
{
  constexpr double least = 1e-80;  // beside a weight of 1 nobody sees less, and products stay above 0
  double const greatest = *std::max_element(weights_.begin(), weights_.end());
  gx_BezierPiece piece{points_};
  for (std::size_t i = 0; i < weights_.size(); ++i)
    piece.weights[i] = std::max(least, weights_[i] / greatest);
  return piece;
}

gxVector<2> gxBezierCurve::point(double t) const
{
  return piece().point(t);
}

gxBezierCurve gxBezierCurve::map(gxXform<2> const &xform) const
{
  Points image = points_;
  for (gxVector<2> &p : image)
    p = xform * p;
  return {image, weights_};
}

bool gxBezierCurve::hasTangent() const
{
  return std::any_of(points_.begin(), points_.end(), [&](gxVector<2> const &p) { return !(p == points_[0]); });
}

gxRect gxBezierCurve::boundingBox() const
{
  return piece().bounds();
}

gxVector<2> gxBezierCurve::nearestPoint(gxVector<2> const &p) const
{
  return piece().nearest(p).point;
}

double gxBezierCurve::perimeter() const
{
  return piece().lengthTo(1.0);
}

gxPtrHandle<gxShape> gxBezierCurve::mapShape(gxXform<2> const &xform) const
{
  return new gxBezierCurve(map(xform));
}

gxPtrHandle<gxShape> gxBezierCurve::reverse_() const
{
  Points points = points_;
  Weights weights = weights_;
  std::reverse(points.begin(), points.end());
  std::reverse(weights.begin(), weights.end());
  return new gxBezierCurve(points, weights);
}

void gxBezierCurve::appendOutline(gx_Outline &outline) const
{
  outline.addContour(false).pieces.push_back(piece());
}

std::ostream &operator<<(std::ostream &os, gxBezierCurve const &curve)
{
  os << "curve of";
  for (std::size_t i = 0; i < curve.controlPoints().size(); ++i)
    os << ' ' << curve.controlPoints()[i] << " by " << curve.weights()[i];
  return os;
}
