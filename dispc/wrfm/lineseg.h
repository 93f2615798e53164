#pragma once

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <ostream>
#include <vector>

class gx2Rigid;
class gx2SegmentArc;
class gxArchive;
class gxFLine;
class gxLineSeg;
class gxRect;

/// A straight piece of an outline, from p1 to p2: a plain value.
///
/// Angles are in degrees. A point counts as an end of the segment when its foot lies within a relative 1e-14 of it.
///
/// @code
/// gx2SegmentLine const side({0, 0}, {10, 0});
/// side.intersection(gx2SegmentLine({5, -1}, {5, 1}), false);  // {(5, 0)}
/// side.closestPoint({12, 3});                                 // (10, 0)
/// @endcode
class GX_API gx2SegmentLine
{
 public:
  /// Both ends at (0, 0): the one degenerate segment that there is.
  gx2SegmentLine() = default;
  /// Throws gxShapesError::DegenerateShape if the points are equal, exactly.
  gx2SegmentLine(gxVector<2> const &p1, gxVector<2> const &p2);
  /// The same.
  explicit gx2SegmentLine(gxLineSeg const &segment);

  gxVector<2> const &p1() const { return p1_; }
  gxVector<2> const &p2() const { return p2_; }
  gxVector<2> midPoint() const { return {(p2_.x() + p1_.x()) * 0.5, (p2_.y() + p1_.y()) * 0.5}; }
  /// p1 at 0, p2 at 1; @p t may lie outside.
  gxVector<2> segPoint(double t) const { return p1_ + (p2_ - p1_) * t; }
  gxLineSeg lineSeg() const;
  /// Without ends, through p1 towards p2. Throws gxShapesError::DegenerateShape for the default segment.
  gxFLine line() const;

  /// The direction from p1 to p2, in (-180, 180]; the same all along.
  gxDegree angle() const { return (p2_ - p1_).angle(); }
  gxDegree startDirection() const { return angle(); }
  gxDegree midDirection() const { return angle(); }
  gxDegree endDirection() const { return angle(); }
  gxDegree direction(double) const { return angle(); }

  double length() const { return p1_.distance(p2_); }
  gxRect boundingBox() const;

  gxVector<2> closestPoint(gxVector<2> const &p) const;
  double distToPoint(gxVector<2> const &p) const { return p.distance(closestPoint(p)); }
  /// True if the foot of @p p lies on the segment: between the ends or at one of them if @p inclusive, otherwise
  /// between them and at neither.
  bool inRange(gxVector<2> const &p, bool inclusive) const;
  /// True if @p p lies on the segment, up to 1e-14 of its length. The flag has no meaning.
  bool validPoint(gxVector<2> const &p, bool) const { return distToPoint(p) <= length() * 1e-14; }

  /// The common point, or none. With @p excludeEnds a point at an end of a segment does not count. Parallel pieces
  /// have no common points, even if they overlap.
  std::vector<gxVector<2>> intersection(gxFLine const &line, bool excludeEnds) const;
  std::vector<gxVector<2>> intersection(gx2SegmentLine const &other, bool excludeEnds) const;

  /// All four coordinates agree within 1e-15.
  friend GX_API bool operator==(gx2SegmentLine const &a, gx2SegmentLine const &b);
  /// The segment between the images of the ends. Throws gxShapesError::DegenerateShape if these are equal, exactly.
  friend GX_API gx2SegmentLine operator*(gx2Rigid const &map, gx2SegmentLine const &segment);
  friend GX_API gx2SegmentLine operator*(gxXform<2> const &map, gx2SegmentLine const &segment);
  friend GX_API gxArchive &operator||(gxArchive &archive, gx2SegmentLine &segment);

 private:
  gxVector<2> p1_;
  gxVector<2> p2_;
};

/// "p1_=xy", "p2_=xy" and an empty line; nothing stands between the numbers of a point.
GX_API std::ostream &operator<<(std::ostream &os, gx2SegmentLine const &segment);
