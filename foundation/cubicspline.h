#pragma once

#include "foundation/bezier.h"
#include "foundation/shape.h"

#include <algorithm>
#include <cstdint>
#include <vector>

/// Base of the splines: cubic polynomial curves that join smoothly. A closed spline is a region, an open one an open
/// contour, one without points neither.
///
/// A spline runs through a parameter; the *interval* of a curve is how much of the parameter it takes. Curve i of an
/// interpolating spline lies between points i and i + 1.
///
/// See G. Farin, Curves and Surfaces for Computer Aided Geometric Design: "Cubic spline interpolation", "B-splines".
class GX_API gxCubicSpline : public gxShape
{
 public:
  /// How the intervals follow from the points. The numbers are archived.
  enum IntervalMode : std::int32_t {
    uniform = 0,      ///< all are 1
    chordLength = 1,  ///< the distance of the two points
    centripetal = 2,  ///< its square root (E. Lee, Computer-Aided Design 21, 1989)
    given = 3,        ///< as set by `intervals`; those that were not set are 1
  };

  bool isClosed() const { return isClosed_; }
  void isClosed(bool v);
  IntervalMode intervalMode() const { return mode_; }
  void intervalMode(IntervalMode v);
  long numPoints() const { return static_cast<long>(points_.size()); }
  std::vector<gxVector<2>> const &points() const { return points_; }
  /// The interval of each curve. Where two points coincide so that their distance gives none, it is the mean of the
  /// others, or 1.
  std::vector<double> intervals() const;
  /// Sets the first intervals, and the mode to `given`. Throws BadKnots unless all are positive and finite, and then
  /// changes nothing.
  void intervals(std::vector<double> v);

  long numBezierCurves() const { return static_cast<long>(joined_.size()) / 3; }
  /// A curve with weights of 1. Throws BadCoef for an index outside 0 to numBezierCurves() - 1.
  gxBezierCurve bezierCurve(long i) const;
  /// The point at the curve @p t is in, at the fraction of its interval that is the fraction of t: t runs from 0 to
  /// numBezierCurves(). Throws BadCoef outside.
  gxVector<2> point(double t) const;

  bool isOpenContour() const override { return !isClosed_ && !points_.empty(); }
  bool isRegion() const override { return isClosed_ && !points_.empty(); }
  bool isEmpty() const override { return points_.empty(); }
  /// The curves in a row.
  void appendOutline(gx_Outline &outline) const override;

 protected:
  gxCubicSpline() = default;
  gxCubicSpline(bool closed, IntervalMode mode) : isClosed_(closed), mode_(mode) {}

  /// The number of curves that the present points make.
  virtual std::size_t curveCount() const = 0;
  /// The points whose distance gives the interval of curve 0; those of curve i follow i places behind.
  virtual std::size_t firstLeg() const { return 0; }
  /// The control points of all curves, 3 for each, and the last point, for these intervals.
  virtual std::vector<gxVector<2>> join(std::vector<double> const &intervals) const = 0;

  /// Finds the curves anew. A derived class calls it at the end of its constructors and setters and after loading.
  /// Throws BadGeom if a coordinate is not finite or too large.
  void rejoin();
  /// The same after loading, where it fails as the archive does.
  void rejoinLoaded(gxArchive &archive);
  /// Replaces the points; without rejoin().
  void setPoints(std::vector<gxVector<2>> v) { points_ = std::move(v); }
  gxVector<2> const &around(std::size_t i) const { return points_[i % points_.size()]; }
  /// Curves through the points with these derivatives by the parameter.
  std::vector<gxVector<2>> joinHermite(std::vector<double> const &intervals,
                                       std::vector<gxVector<2>> const &slopes) const;
  /// Makes this spline, a copy of another, its image: maps the points and keeps the intervals as they are.
  void mapPoints(gxXform<2> const &xform);
  /// Likewise its reverse. A closed one keeps its first point.
  void reversePoints();
  /// The order of points in the reverse.
  template <class T>
  std::vector<T> reversed(std::vector<T> const &v) const
  {
    std::vector<T> turned(v.rbegin(), v.rend());
    if (isClosed_ && !turned.empty())
      std::rotate(turned.begin(), turned.end() - 1, turned.end());
    return turned;
  }
  bool equalBase(gxCubicSpline const &other) const;

 public:
  bool loadSimple(gxArchive &archive) override;

 private:
  void passFields_(gxArchive &archive);

  bool isClosed_ = false;
  IntervalMode mode_ = uniform;
  std::vector<gxVector<2>> points_;
  std::vector<double> given_;
  std::vector<gxVector<2>> joined_;  ///< control points of the curves; found from the other fields

  GX_PERSISTENT_ABSTRACT(gxCubicSpline);
};
