#pragma once

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/lineseg.h"
#include "foundation/xform.h"

#include <algorithm>
#include <cmath>

/// A segment in the image, run through by the length of its way.
class gx_EdgeTrack
{
 public:
  struct Place {
    gxVector<2> at, outward;
  };

  gx_EdgeTrack(gx2SegmentLine const &line, gxXform<2> const &pose)
      : gx_EdgeTrack(pose.mapPoint(line.p1()), pose.mapPoint(line.p2()))
  {
  }
  /// An arc that is seen as one: the pose must not distort.
  gx_EdgeTrack(gx2SegmentArc const &arc, gxXform<2> const &pose)
      : gx_EdgeTrack(pose.mapPoint(arc.p1()), pose.mapPoint(arc.p2()))
  {
    center_ = pose.mapPoint(arc.center());
    span_ = gxRadian(arc.angleSpan()).value() * (pose.matrix().det() < 0.0 ? -1.0 : 1.0);
    radius_ = center_.distance(start_);
    length_ = radius_ * std::abs(span_);
  }

  /// What a line from a place to the track passes over on its way, twice; above 0 for growing angles.
  double areaAbout(gxVector<2> const &place) const
  {
    return (start_ - place).cross(end_ - place) + radius_ * radius_ * (span_ - std::sin(span_));
  }
  /// Before this, what is to the left of the way as it is seen counts as outside.
  void outsideIsRight() { side_ = -1.0; }

  double length() const { return length_; }
  /// Whether it turns more closely than in a circle of this radius.
  bool isTight(double radius) const { return span_ != 0.0 && radius_ < radius; }
  /// 1 over the radius; above 0 if the centre lies inside.
  double bend() const { return span_ == 0.0 ? 0.0 : side_ * (span_ > 0.0 ? 1.0 : -1.0) / radius_; }
  gxVector<2> startDirection() const { return directionAt(0.0); }
  gxVector<2> endDirection() const { return directionAt(length_); }

  Place at(double way) const
  {
    double const t = std::clamp(way / length_, 0.0, 1.0);
    gxVector<2> const along = directionAt(t * length_), left(along.y(), -along.x());
    gxVector<2> const place =
        span_ == 0.0 ? start_ + (end_ - start_) * t : center_ + turned(start_ - center_, t * span_);
    return {place, left * side_};
  }

 private:
  gx_EdgeTrack(gxVector<2> const &start, gxVector<2> const &end)
      : start_(start), end_(end), length_(start.distance(end))
  {
  }

  static gxVector<2> turned(gxVector<2> const &v, double angle)
  {
    double const c = std::cos(angle), s = std::sin(angle);
    return {c * v.x() - s * v.y(), s * v.x() + c * v.y()};
  }
  gxVector<2> directionAt(double way) const
  {
    if (span_ == 0.0)
      return (end_ - start_) * (1.0 / length_);
    double const quarter = span_ > 0.0 ? 1.5707963267948966 : -1.5707963267948966;
    return turned(start_ - center_, way / length_ * span_ + quarter) * (1.0 / radius_);
  }

  gxVector<2> start_, end_, center_;
  double side_ = 1.0;  ///< -1 if what is to the left of the way as it is seen lies inside
  double length_, span_ = 0.0, radius_ = 0.0;
};
