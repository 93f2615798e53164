#include "dispc/wrfm/arc.h"

#include "dispc/wrfm/detail/segmentchords.h"
#include "dispc/wrfm/detail/segmentmeet.h"
#include "foundation/circle.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

gx2SegmentArc::gx2SegmentArc(gxVector<2> const &center, double radius, gxDegree start, gxDegree span)
    : center_(center), radius_(radius), startAngle_(start), angleSpan_(span)
{
  if (!(radius > 0.0))
    throw gxShapesError::DegenerateShape();
}

gx2SegmentArc::gx2SegmentArc(gxVector<2> const &p1, gxVector<2> const &p2, gxDegree span) : angleSpan_(span)
{
  gx_ArcSweep const sweep = gx_ArcSweep::of(p1, p2, span);
  center_ = sweep.center;
  startAngle_ = sweep.radius.angle();
  radius_ = sweep.radius.len();
}

gx2SegmentArc::gx2SegmentArc(gxEllipseArc const &arc)
    : startAngle_(arc.start()), angleSpan_(arc.span()), xform_(arc.ellipse().fromUnit())
{
  (void)xform_.inverse();  // for its refusal
  if (angleSpan_.value() < 0.0) {
    startAngle_ += angleSpan_;
    angleSpan_ = -angleSpan_;
  }
}

gx2SegmentArc::gx2SegmentArc(gxEllipseArc2 const &arc)
    : startAngle_(arc.phiStart()), angleSpan_(arc.phiSpan()), xform_(arc.ellipse().ellFromUnitCirc().xform())
{
  (void)xform_.inverse();
}

double gx2SegmentArc::radius(gxDegree a) const
{
  return xform_.isIdentity() ? std::abs(radius_) : center().distance(arcPoint(a));
}

gxDegree gx2SegmentArc::angleSpan() const
{
  if (xform_.isIdentity())
    return angleSpan_;
  gxDegree const shear = xform_.matrix().xRot() - xform_.matrix().yRot();
  bool const isMirrored = std::abs(shear.signedNorm().value()) > 90.0;
  // the angles fix the span but for full turns; of these the own span knows
  gxDegree const d = (endAngle() - startAngle()).norm();
  gxDegree const target = isMirrored ? -angleSpan_ : angleSpan_;
  return d + (target - d) - (target - d).signedNorm();
}

gxVector<2> gx2SegmentArc::centerOfMass_() const
{
  double const s = gxRadian(startAngle_).value(), e = gxRadian(endAngle_()).value(), w = gxRadian(angleSpan_).value();
  return center_ + gxVector<2>(std::sin(e) - std::sin(s), std::cos(s) - std::cos(e)) * (radius_ / w);
}

double gx2SegmentArc::length_() const
{
  return std::abs(gxRadian(angleSpan_).value() * radius_);
}

double gx2SegmentArc::length() const
{
  return xform_.isIdentity() ? length_() : std::abs(gxRadian(angleSpan()).value() * radius(gxDegree(0.0)));
}

gxRect gx2SegmentArc::boundingBox_() const
{
  gxVector<2> const a = p1_(), b = p2_();
  auto const extreme = [this](double direction, double ofCircle, double ofEnds) {
    return validAngle_(gxDegree(direction), true) ? ofCircle : ofEnds;
  };
  double const left = extreme(180.0, center_.x() - radius_, std::min(a.x(), b.x()));
  double const bottom = extreme(-90.0, center_.y() - radius_, std::min(a.y(), b.y()));
  double const right = extreme(0.0, center_.x() + radius_, std::max(a.x(), b.x()));
  double const top = extreme(90.0, center_.y() + radius_, std::max(a.y(), b.y()));
  return {{left, bottom}, {right - left, top - bottom}};
}

gxRect gx2SegmentArc::boundingBox() const
{
  return xform_.isIdentity() ? boundingBox_() : ellipseArc().encloseRect();
}

gxVector<2> gx2SegmentArc::closestPoint_(gxVector<2> const &p) const
{
  if (p == center_)
    return arcPoint_(gxDegree(0.0));
  gxVector<2> const toP = p - center_;
  gxDegree const a = toP.angle();
  if (validAngle_(a, true))
    return arcPoint_(a);
  gxVector<2> const start = p1_(), end = p2_();
  return p.distance(end) < p.distance(start) ? end : start;
}

bool gx2SegmentArc::validAngle_(gxDegree a, bool inclusive) const
{
  double const span = std::abs(angleSpan_.value());
  if (span >= gf_turnDegrees)
    return true;
  double const tolerance = span * 1e-13;
  double const along = (angleSpan_.value() >= 0.0 ? a - startAngle_ : startAngle_ - a).norm().value();
  bool const atEnd =
      std::abs(along - span) <= tolerance || along <= tolerance || std::abs(along - gf_turnDegrees) <= tolerance;
  return inclusive ? along <= span || atEnd : along < span && !atEnd;
}

bool gx2SegmentArc::validPoint_(gxVector<2> const &p) const
{
  return p.distance(closestPoint(p)) <= radius_ * 1e-15;
}

bool gx2SegmentArc::validPoint(gxVector<2> const &p, bool) const
{
  return validPoint_(invMapPoint_(p));
}

bool gx2SegmentArc::inRange(gxVector<2> const &p, bool inclusive) const
{
  return !(p == center_) && validAngle((p - center_).angle(), inclusive);
}

std::vector<gxVector<2>> gx2SegmentArc::intersection(gxFLine const &line, bool excludeEnds) const
{
  return gx_SegmentMeet::meet(*this, gx_Ray::of(line), excludeEnds).toVector();
}

std::vector<gxVector<2>> gx2SegmentArc::intersection(gx2SegmentLine const &line, bool excludeEnds) const
{
  return gx_SegmentMeet::meet(*this, line, excludeEnds).toVector();
}

std::vector<gxVector<2>> gx2SegmentArc::intersection(gx2SegmentArc const &other, bool excludeEnds) const
{
  return gx_SegmentMeet::meet(*this, other, excludeEnds).toVector();
}
