#pragma once

#include "foundation/export.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <vector>

class gxArchive;
class gxRect;

/// A closed polygon to be drawn, as a plain value, no shape (see gxPolyline for that): vertices and how the inside is
/// painted. The last vertex is joined to the first.
class GX_API gxPolygon
{
 public:
  /// How the inside is painted. The numbers are recorded.
  enum PolyFillMode : std::int32_t {
    noFill = 0,     ///< the outline alone
    alternate = 1,  ///< what an odd number of sides encloses
    winding = 2,    ///< what the outline runs round, whatever the number of times
  };

  /// No vertices, no fill.
  gxPolygon() = default;
  explicit gxPolygon(std::vector<gxVector<2>> vertices, PolyFillMode fillMode = noFill)
      : vertices_(std::move(vertices)), fillMode_(fillMode)
  {
  }

  PolyFillMode fillMode() const { return fillMode_; }
  void fillMode(PolyFillMode v) { fillMode_ = v; }
  long size() const { return static_cast<long>(vertices_.size()); }
  /// @p i is from 0 to size() - 1 and is not checked.
  gxVector<2> const &operator[](long i) const { return vertices_[static_cast<std::size_t>(i)]; }
  gxVector<2> &operator[](long i) { return vertices_[static_cast<std::size_t>(i)]; }
  std::vector<gxVector<2>> const &vertices() const { return vertices_; }
  /// True for fewer than three vertices.
  bool degen() const { return vertices_.size() < 3; }

  gxPolygon map(gxXform<2> const &xform) const;
  /// Throws gxShapesError::EmptyShape without vertices.
  gxRect boundingBox() const;
  /// Distance to the outline, from inside too. Throws gxShapesError::EmptyShape without vertices.
  double distanceToPoint(gxVector<2> const &p) const;

  /// Exact.
  friend bool operator==(gxPolygon const &a, gxPolygon const &b)
  {
    return a.fillMode_ == b.fillMode_ && a.vertices_ == b.vertices_;
  }
  friend GX_API gxArchive &operator||(gxArchive &archive, gxPolygon &polygon);

 private:
  std::vector<gxVector<2>> vertices_;
  PolyFillMode fillMode_ = noFill;
};

GX_API std::ostream &operator<<(std::ostream &os, gxPolygon const &p);
