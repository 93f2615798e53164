#pragma once

#include "foundation/export.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cstddef>
#include <ostream>
#include <vector>

class gxArchive;
class gxRect;

/// Points in a row, as a plain value, no shape.
class GX_API gxPointSet
{
 public:
  /// No points.
  gxPointSet() = default;
  explicit gxPointSet(std::vector<gxVector<2>> points) : points_(std::move(points)) {}

  long size() const { return static_cast<long>(points_.size()); }
  /// @p i is from 0 to size() - 1 and is not checked.
  gxVector<2> const &operator[](long i) const { return points_[static_cast<std::size_t>(i)]; }
  gxVector<2> &operator[](long i) { return points_[static_cast<std::size_t>(i)]; }
  std::vector<gxVector<2>> const &points() const { return points_; }
  void append(gxVector<2> const &p) { points_.push_back(p); }

  gxPointSet map(gxXform<2> const &xform) const;
  /// Throws gxShapesError::EmptyShape without points.
  gxRect boundingBox() const;
  /// Distance to the nearest of the points. Throws gxShapesError::EmptyShape without points.
  double distanceToPoint(gxVector<2> const &p) const;

  /// Exact: equal points in equal order.
  friend bool operator==(gxPointSet const &a, gxPointSet const &b) { return a.points_ == b.points_; }
  friend GX_API gxArchive &operator||(gxArchive &archive, gxPointSet &set);

 private:
  std::vector<gxVector<2>> points_;
};

GX_API std::ostream &operator<<(std::ostream &os, gxPointSet const &set);
