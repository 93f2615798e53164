#pragma once

#include "foundation/shape.h"

#include <ostream>
#include <vector>

/// Straight lines from vertex to vertex. A closed polyline is a region: what its outline runs round is inside, a
/// positive or negative number of times. An open one is an open contour. Without vertices it is empty and neither.
class GX_API gxPolyline : public gxShape
{
 public:
  /// No vertices, open.
  gxPolyline() = default;
  explicit gxPolyline(bool closed) : isClosed_(closed) {}
  explicit gxPolyline(std::vector<gxVector<2>> vertices, bool closed = false)
      : vertices_(std::move(vertices)), isClosed_(closed)
  {
  }

  long numVertices() const { return static_cast<long>(vertices_.size()); }
  std::vector<gxVector<2>> const &vertices() const { return vertices_; }
  void vertices(std::vector<gxVector<2>> v);
  /// Throws BadCoef for an index outside 0 to numVertices() - 1.
  gxVector<2> const &vertex(long i) const;
  void appendVertex(gxVector<2> const &v);
  bool isClosed() const { return isClosed_; }
  void isClosed(bool v);

  gxPolyline map(gxXform<2> const &xform) const;

  bool isOpenContour() const override { return !isClosed_ && !vertices_.empty(); }
  bool isRegion() const override { return isClosed_ && !vertices_.empty(); }
  bool isEmpty() const override { return vertices_.empty(); }
  bool hasTangent() const override;
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  gxVector<2> startPoint() const override;
  gxVector<2> endPoint() const override;
  bool isRightHanded() const override;
  bool within(gxVector<2> const &p) const override;
  /// A gxPolyline.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact: equal vertices in equal order.
  friend bool operator==(gxPolyline const &a, gxPolyline const &b)
  {
    return a.isClosed_ == b.isClosed_ && a.vertices_ == b.vertices_;
  }

 protected:
  /// The vertices in reverse order; a closed polyline keeps its first vertex.
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  std::vector<gxVector<2>> vertices_;
  bool isClosed_ = false;

  GX_SHAPE(gxPolyline);
};

GX_API std::ostream &operator<<(std::ostream &os, gxPolyline const &p);
