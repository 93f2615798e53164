#pragma once

#include "foundation/export.h"
#include "foundation/lineseg.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <ostream>

class gxArchive;
class gxRect;

/// The axes of a coordinate frame, as a plain value, no shape: two arrows from an origin.
class GX_API gxCoordAxes
{
 public:
  /// The unit vectors at (0, 0).
  gxCoordAxes() = default;
  gxCoordAxes(gxVector<2> const &origin, gxVector<2> const &xEnd, gxVector<2> const &yEnd)
      : origin_(origin), xEnd_(xEnd), yEnd_(yEnd)
  {
  }

  gxVector<2> const &origin() const { return origin_; }
  void origin(gxVector<2> const &v) { origin_ = v; }
  gxVector<2> const &xEnd() const { return xEnd_; }
  void xEnd(gxVector<2> const &v) { xEnd_ = v; }
  gxVector<2> const &yEnd() const { return yEnd_; }
  void yEnd(gxVector<2> const &v) { yEnd_ = v; }
  /// From the origin to the end of the axis.
  gxLineSeg xAxis() const { return {origin_, xEnd_}; }
  gxLineSeg yAxis() const { return {origin_, yEnd_}; }
  /// True if the axes do not span the plane: one has no length, or they are parallel.
  bool degen() const { return (xEnd_ - origin_).cross(yEnd_ - origin_) == 0.0; }

  gxCoordAxes map(gxXform<2> const &xform) const { return {xform * origin_, xform * xEnd_, xform * yEnd_}; }
  gxRect boundingBox() const;
  /// Distance to the nearest point of the two axes.
  double distanceToPoint(gxVector<2> const &p) const;

  /// Exact.
  friend bool operator==(gxCoordAxes const &a, gxCoordAxes const &b)
  {
    return a.origin_ == b.origin_ && a.xEnd_ == b.xEnd_ && a.yEnd_ == b.yEnd_;
  }
  friend GX_API gxArchive &operator||(gxArchive &archive, gxCoordAxes &axes);

 private:
  gxVector<2> origin_;
  gxVector<2> xEnd_{1.0, 0.0};
  gxVector<2> yEnd_{0.0, 1.0};
};

static_assert(sizeof(gxCoordAxes) == 48);

inline std::ostream &operator<<(std::ostream &os, gxCoordAxes const &a)
{
  return os << "axes at " << a.origin() << " to " << a.xEnd() << " and " << a.yEnd();
}
