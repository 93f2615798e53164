#pragma once

#include "dispc/wrfm/lineseg.h"
#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/fline.h"
#include "foundation/rect.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <ostream>
#include <vector>

class gxEllipseArc;
class gxEllipseArc2;
class gxGenPoly;
class gxSMDGDPoly;
class gxSMDGDPolyPrivate;
class gx_SegmentMeet;

/// A curved piece of an outline: a circular arc in a frame of its own, and the linear transform from there to client
/// space. So circular and elliptical arcs are one class, a plain value.
///
/// The public operations take and give client coordinates, those that end in an underscore the own frame. Angles are
/// in degrees. In the own frame the arc starts at a start angle and runs through a span: towards growing angles if the
/// span is positive, towards falling ones if not. A client angle is the direction in which a point of the own circle
/// is seen from the centre, mapped: on an ellipse it differs from the direction in which its image is seen.
///
/// Operations that go back from client space throw gxMathError::Singular if the transform has no inverse.
///
/// @code
/// gx2SegmentArc const quarter({0, 0}, 5.0, gxDegree(0), gxDegree(90));
/// quarter.p2();                                                           // (0, 5)
/// quarter.intersection(gx2SegmentLine({0, 3}, {10, 3}), false);           // {(4, 3)}
/// gx2SegmentArc const same({5, 0}, {0, 5}, gxDegree(90));                 // by its ends
/// @endcode
class GX_API gx2SegmentArc
{
 public:
  /// The full unit circle.
  gx2SegmentArc() = default;
  /// @param span of any size: from a full turn on the arc is the whole circle, for all that is asked of it.
  /// Throws gxShapesError::DegenerateShape unless the radius is greater than 0.
  gx2SegmentArc(gxVector<2> const &center, double radius, gxDegree start, gxDegree span);
  /// From @p p1 to @p p2. Throws gxShapesError::DegenerateShape if the points are equal, exactly, if the span is at
  /// most 1e-15 or more than a full turn, and if no finite numbers come out. A span of a full turn through two
  /// different points is a circle with a centre very far off.
  gx2SegmentArc(gxVector<2> const &p1, gxVector<2> const &p2, gxDegree span);
  /// An arc of the unit circle with the transform that makes the ellipse of it. Throws gxMathError::Singular if the
  /// ellipse is degenerate. The span of a gxEllipseArc comes out positive: one that runs through falling angles, on a
  /// reversed ellipse, is turned round.
  explicit gx2SegmentArc(gxEllipseArc const &arc);
  explicit gx2SegmentArc(gxEllipseArc2 const &arc);

  gxVector<2> center() const { return xform_ * center_; }
  /// Distance from the centre to the point at the client angle @p a.
  double radius(gxDegree a) const;

  gxDegree startAngle() const { return mapAngle_(startAngle_); }
  gxDegree midAngle() const { return mapAngle_(midAngle_()); }
  gxDegree endAngle() const { return mapAngle_(endAngle_()); }
  /// At 0 the start, at 1 the end.
  gxDegree angle(double t) const { return mapAngle_(angle_(t)); }
  /// The span in client space: negative for a positive one under a mirroring transform, and a full turn stays one.
  gxDegree angleSpan() const;

  gxVector<2> p1() const { return xform_ * p1_(); }
  gxVector<2> p2() const { return xform_ * p2_(); }
  gxVector<2> midPoint() const { return xform_ * midPoint_(); }
  gxVector<2> segPoint(double t) const { return xform_ * segPoint_(t); }
  /// The point of the whole circle or ellipse at the client angle @p a.
  gxVector<2> arcPoint(gxDegree a) const { return xform_ * arcPoint_(invMapAngle_(a)); }

  /// Directions of travel from start to end.
  gxDegree startDirection() const { return mapAngle_(startDirection_()); }
  gxDegree midDirection() const { return mapAngle_(midDirection_()); }
  gxDegree endDirection() const { return mapAngle_(endDirection_()); }
  gxDegree direction(double t) const { return mapAngle_(direction_(t)); }
  /// The tangent at the client angle @p a, at @p t between 0 and 1.
  gxFLine tangent(gxDegree a) const { return xform_ * tangent_(invMapAngle_(a)); }
  gxFLine tangent(double t) const { return tangent(angle(t)); }

  /// Of the arc as a bent wire. Not finite for a span of 0.
  gxVector<2> centerOfMass() const { return xform_ * centerOfMass_(); }
  /// Exact for circular arcs; on an ellipse the length of an arc of its radius at client angle 0.
  double length() const;
  /// Of the chord.
  double segmentLength() const { return p1().distance(p2()); }
  gxRect boundingBox() const;

  /// The nearest point of a circular arc; under a transform that is no similarity the image of the point nearest in
  /// the own frame. To the centre itself the point at own angle 0 counts as nearest, even where the arc has none.
  gxVector<2> closestPoint(gxVector<2> const &p) const { return xform_ * closestPoint_(invMapPoint_(p)); }
  double distToPoint(gxVector<2> const &p) const { return p.distance(closestPoint(p)); }
  /// True if the arc has a point at the client angle @p a: with its ends, which are met within 1e-13 of the span, or
  /// without. A full turn has all angles, whatever the flag.
  bool validAngle(gxDegree a, bool inclusive) const { return validAngle_(invMapAngle_(a), inclusive); }
  /// True if @p p lies on the arc, up to 1e-15 of the radius. The flag has no meaning. Of use for arcs without a
  /// transform: under one the point is taken back through it twice.
  bool validPoint(gxVector<2> const &p, bool) const;
  /// True if the client angle from the centre *of the own frame* to @p p is one of the arc; false at this centre.
  bool inRange(gxVector<2> const &p, bool inclusive) const;

  /// The arc as an elliptical arc in client space; with a negative span on a reversed ellipse, so that both cover
  /// the same points.
  gxEllipseArc ellipseArc() const;
  /// The same as a shape that keeps start and span.
  gxEllipseArc2 ellipseArc2() const;

  /// Common points. With @p excludeEnds a point at an end of a piece does not count. A line that touches gives one
  /// point, which under a transform is left in the own frame.
  std::vector<gxVector<2>> intersection(gxFLine const &line, bool excludeEnds) const;
  std::vector<gxVector<2>> intersection(gx2SegmentLine const &line, bool excludeEnds) const;
  /// Exact for circular arcs, also under turning, mirroring and scaling transforms. Concentric arcs have no common
  /// points, even if they overlap.
  std::vector<gxVector<2>> intersection(gx2SegmentArc const &other, bool excludeEnds) const;

  /// The same curve in client space, within 1e-15 in each number, whatever the own frames.
  friend GX_API bool operator==(gx2SegmentArc const &a, gx2SegmentArc const &b);
  /// The image of the arc.
  friend GX_API gx2SegmentArc operator*(gx2Rigid const &map, gx2SegmentArc const &arc);
  friend GX_API gx2SegmentArc operator*(gxXform<2> const &map, gx2SegmentArc const &arc);
  friend GX_API gxArchive &operator||(gxArchive &archive, gx2SegmentArc &arc);

 private:
  friend gxGenPoly;
  friend gxSMDGDPoly;
  friend gxSMDGDPolyPrivate;
  friend gx_SegmentMeet;

  // From the own frame to client space and back. Without a transform an angle is only brought to (-180, 180].
  gxDegree mapAngle_(gxDegree a) const { return xform_.isIdentity() ? a.signedNorm() : gxDegree(xform_.mapAngle(a)); }
  gxDegree invMapAngle_(gxDegree a) const
  {
    return xform_.isIdentity() ? a.signedNorm() : gxDegree(xform_.invMapAngle(a));
  }
  gxVector<2> invMapPoint_(gxVector<2> const &p) const { return xform_.isIdentity() ? p : xform_.invMapPoint(p); }

  // What the public operations of the same names give, in the own frame.
  gxDegree angle_(double t) const { return startAngle_ + angleSpan_ * t; }
  gxDegree midAngle_() const { return angle_(0.5); }
  gxDegree endAngle_() const { return startAngle_ + angleSpan_; }
  gxVector<2> arcPoint_(gxDegree a) const { return center_ + gxVector<2>(radius_, a); }
  gxVector<2> p1_() const { return arcPoint_(startAngle_); }
  gxVector<2> p2_() const { return arcPoint_(endAngle_()); }
  gxVector<2> midPoint_() const { return arcPoint_(midAngle_()); }
  gxVector<2> segPoint_(double t) const { return arcPoint_(angle_(t)); }
  gxDegree directionAt_(gxDegree a) const { return a + gxDegree(angleSpan_.value() >= 0.0 ? 90.0 : -90.0); }
  gxDegree startDirection_() const { return directionAt_(startAngle_); }
  gxDegree midDirection_() const { return directionAt_(midAngle_()); }
  gxDegree endDirection_() const { return directionAt_(endAngle_()); }
  gxDegree direction_(double t) const { return directionAt_(angle_(t)); }
  gxFLine tangent_(gxDegree a) const { return {a + gxDegree(90.0), arcPoint_(a)}; }
  gxVector<2> centerOfMass_() const;
  double length_() const;
  double segmentLength_() const { return p1_().distance(p2_()); }
  gxRect boundingBox_() const;
  gxVector<2> closestPoint_(gxVector<2> const &p) const;
  double distToPoint_(gxVector<2> const &p) const { return p.distance(closestPoint_(p)); }
  bool validAngle_(gxDegree a, bool inclusive) const;
  bool validPoint_(gxVector<2> const &p) const;

  gxVector<2> center_;
  double radius_ = 1.0;
  gxDegree startAngle_;
  gxDegree angleSpan_{gf_turnDegrees};
  gxXform<2> xform_;
};

/// "center=x y", "radius=", "startAngle=", "angleSpan=" and an empty line, all in client space.
GX_API std::ostream &operator<<(std::ostream &os, gx2SegmentArc const &arc);
