#include "dispc/wrfm/lineseg.h"

#include "dispc/wrfm/detail/segmentmeet.h"
#include "foundation/fline.h"
#include "foundation/geomarchive.h"
#include "foundation/lineseg.h"
#include "foundation/rect.h"
#include "foundation/rigid.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double endTolerance = 1e-14;  // relative to the length

/// Where the foot of a point lies along a segment.
struct Place {
  gxVector<2> dir;
  double length;
  double along;  ///< from p1
  bool atEnd;

  Place(gx2SegmentLine const &s, gxVector<2> const &p)
      : dir((s.p2() - s.p1()).unit()), length((s.p2() - s.p1()) * dir), along((p - s.p1()) * dir)
  {
    double const slack = length * endTolerance;
    atEnd = std::abs(along) <= slack || std::abs(along - length) <= slack;
  }
};

}  // namespace

gx2SegmentLine::gx2SegmentLine(gxVector<2> const &p1, gxVector<2> const &p2) : p1_(p1), p2_(p2)
{
  if (p1 == p2)
    throw gxShapesError::DegenerateShape();
}

gx2SegmentLine::gx2SegmentLine(gxLineSeg const &segment) : gx2SegmentLine(segment.start(), segment.end()) {}

gxLineSeg gx2SegmentLine::lineSeg() const
{
  return {p1_, p2_};
}

gxFLine gx2SegmentLine::line() const
{
  return {p1_, p2_};
}

gxRect gx2SegmentLine::boundingBox() const
{
  return {{std::min(p1_.x(), p2_.x()), std::min(p1_.y(), p2_.y())},
          {std::abs(p1_.x() - p2_.x()), std::abs(p1_.y() - p2_.y())}};
}

gxVector<2> gx2SegmentLine::closestPoint(gxVector<2> const &p) const
{
  Place const at(*this, p);
  gxVector<2> const foot = p1_ + at.dir * at.along;
  if ((at.along >= 0.0 && at.along <= at.length) || at.atEnd)
    return foot;
  return p1_.distance(foot) < p2_.distance(foot) ? p1_ : p2_;
}

bool gx2SegmentLine::inRange(gxVector<2> const &p, bool inclusive) const
{
  Place const at(*this, p);
  if (inclusive)
    return at.atEnd || (0.0 <= at.along && at.along <= at.length);
  return !at.atEnd && 0.0 < at.along && at.along < at.length;
}

std::vector<gxVector<2>> gx2SegmentLine::intersection(gxFLine const &line, bool excludeEnds) const
{
  return gx_SegmentMeet::meet(*this, gx_Ray::of(line), excludeEnds).toVector();
}

std::vector<gxVector<2>> gx2SegmentLine::intersection(gx2SegmentLine const &other, bool excludeEnds) const
{
  return gx_SegmentMeet::meet(*this, other, excludeEnds).toVector();
}

bool operator==(gx2SegmentLine const &a, gx2SegmentLine const &b)
{
  constexpr double tolerance = 1e-15;
  return gfRealEq(a.p1_, b.p1_, tolerance) && gfRealEq(a.p2_, b.p2_, tolerance);
}

gx2SegmentLine operator*(gx2Rigid const &map, gx2SegmentLine const &segment)
{
  return {map * segment.p1_, map * segment.p2_};
}

gx2SegmentLine operator*(gxXform<2> const &map, gx2SegmentLine const &segment)
{
  return {map * segment.p1_, map * segment.p2_};
}

gxArchive &operator||(gxArchive &archive, gx2SegmentLine &segment)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion("dispc/wrfm/lineseg", __LINE__);
  gxVector<2> p1 = segment.p1_, p2 = segment.p2_;
  archive || p1 || p2;
  segment.p1_ = p1;
  segment.p2_ = p2;
  return archive;
}

std::ostream &operator<<(std::ostream &os, gx2SegmentLine const &segment)
{
  os << "p1_=" << segment.p1().x() << segment.p1().y() << std::endl;
  return os << "p2_=" << segment.p2().x() << segment.p2().y() << std::endl << std::endl;
}
