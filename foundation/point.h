#pragma once

#include "foundation/shape.h"
#include "foundation/vector.h"

#include <ostream>

class gxArchive;
class gxLine;

/// A vector that is a position: a plain value of 16 bytes, no shape (see gx2Point for that).
class GX_API gxPoint : public gxVector<2>
{
 public:
  using gxVector<2>::gxVector;
  constexpr gxPoint() = default;
  constexpr gxPoint(gxVector<2> const &v) : gxVector<2>(v) {}  // NOLINT(google-explicit-constructor)

  /// The line through this point and @p to. Throws DegenerateShape if they coincide.
  gxLine connect(gxVector<2> const &to) const;
  double distToPoint(gxVector<2> const &p) const { return distance(p); }
  /// The flat rectangle at the point.
  gxRect boundingBox() const;

  friend GX_API gxArchive &operator||(gxArchive &archive, gxPoint &point);
};

static_assert(sizeof(gxPoint) == 16);

/// A point as a shape: neither contour nor region.
class GX_API gx2Point : public gxShape
{
 public:
  /// (0, 0).
  gx2Point() = default;
  gx2Point(gxVector<2> const &point) : point_(point) {}  // NOLINT(google-explicit-constructor)

  gxVector<2> const &point() const { return point_; }
  void point(gxVector<2> const &v)
  {
    mutating();
    point_ = v;
  }
  double x() const { return point_.x(); }
  double y() const { return point_.y(); }

  gx2Point map(gxXform<2> const &xform) const { return xform.mapPoint(point_); }

  bool isDecomposed() const override { return true; }
  /// The flat rectangle at the point.
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  /// 0.
  double perimeter() const override { return 0.0; }
  /// A gx2Point.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  /// The point itself.
  void sample(gxSampleParams const &params, gxSampleResult &result) const override;
  /// Nothing: a point has no outline.
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gx2Point const &a, gx2Point const &b) { return a.point_ == b.point_; }

 protected:
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

 private:
  gxVector<2> point_;

  GX_SHAPE(gx2Point);
};

inline std::ostream &operator<<(std::ostream &os, gx2Point const &p)
{
  return os << p.point();
}
