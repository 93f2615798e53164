// The other forms of an arc: elliptical arcs, images under maps, comparison, archive and text.

#include "dispc/wrfm/arc.h"
#include "foundation/circle.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/geomarchive.h"
#include "foundation/rigid.h"

gxEllipseArc gx2SegmentArc::ellipseArc() const
{
  gxEllipse ellipse(gxCircle(center_, radius_));
  if (angleSpan_.value() >= 0.0)
    return gxEllipseArc::fromSpan(ellipse, startAngle_, angleSpan_).map(xform_);
  ellipse.isReversed(true);
  return gxEllipseArc::fromSpan(ellipse, -endAngle_(), angleSpan_).map(xform_);
}

gxEllipseArc2 gx2SegmentArc::ellipseArc2() const
{
  gxEllipse2 const circle({radius_, radius_}, gxRadian(), center_);
  return gxEllipseArc2(circle, startAngle_, angleSpan_).map(gx2XformLinear(xform_));
}

gx2SegmentArc operator*(gxXform<2> const &map, gx2SegmentArc const &arc)
{
  gx2SegmentArc image(arc);
  image.xform_ = map * arc.xform_;
  return image;
}

gx2SegmentArc operator*(gx2Rigid const &map, gx2SegmentArc const &arc)
{
  return map.linear() * arc;
}

bool operator==(gx2SegmentArc const &a, gx2SegmentArc const &b)
{
  constexpr double tolerance = 1e-15;
  gxDegree const start = a.startAngle();
  if (!gfRealEq(start.value(), b.startAngle().value(), tolerance) ||
      !gfRealEq(a.angleSpan().value(), b.angleSpan().value(), tolerance) ||
      !gfRealEq(a.center(), b.center(), tolerance))
    return false;
  for (gxDegree const at : {start, a.endAngle(), start + a.angleSpan()})
    if (!gfRealEq(a.radius(at), b.radius(at), tolerance))
      return false;
  return true;
}

gxArchive &operator||(gxArchive &archive, gx2SegmentArc &arc)
{
  unsigned char const version = gf_passVersion(archive, 1);
  if (version > 1)
    throw gxArchive::UnknownVersion("dispc/wrfm/arc", __LINE__);
  gx2SegmentArc passed(arc);
  archive || passed.center_ || passed.radius_ || passed.startAngle_ || passed.angleSpan_;
  if (version == 0)
    passed.xform_ = gxXform<2>::I;
  else
    archive || passed.xform_;
  if (archive.isLoading() && !(passed.radius_ > 0.0))
    archive.fail("an arc without a radius");
  arc = passed;
  return archive;
}

std::ostream &operator<<(std::ostream &os, gx2SegmentArc const &arc)
{
  os << "center=" << arc.center().x() << " " << arc.center().y() << std::endl;
  os << "radius=" << arc.radius(gxDegree(0.0)) << std::endl;
  os << "startAngle=" << arc.startAngle().value() << std::endl;
  return os << "angleSpan=" << arc.angleSpan().value() << std::endl << std::endl;
}
