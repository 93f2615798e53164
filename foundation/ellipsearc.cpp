#include "foundation/ellipsearc.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"

#include <algorithm>
#include <cmath>

namespace
{

gxRadian spanBetween(gxRadian start, gxRadian end, bool isReversed)
{
  gxRadian const way = end - start;
  bool const falls = isReversed && way.value() < 0.0;
  if (std::abs(way.value()) >= gf_turnRadians)
    return gxRadian(falls ? -gf_turnRadians : gf_turnRadians);
  return falls ? way : way.norm();
}

}  // namespace

gxEllipseArc::gxEllipseArc(gxEllipse const &ellipse, gxRadian start, gxRadian end)
    : ellipse_(ellipse.withoutPhase()),
      start_(start + ellipse.phase()),
      span_(spanBetween(start, end, ellipse.isReversed()))
{
}

gxEllipseArc gxEllipseArc::fromSpan(gxEllipse const &ellipse, gxRadian start, gxRadian span)
{
  gxEllipseArc arc(ellipse, start, start);
  arc.span_ = gxRadian(std::clamp(span.value(), -gf_turnRadians, gf_turnRadians));
  if (!ellipse.isReversed() && arc.span_.value() < 0.0) {  // the same points, the ordinary way
    arc.start_ = arc.start_ + arc.span_;
    arc.span_ = -arc.span_;
  }
  return arc;
}

gx_ArcPiece gxEllipseArc::piece() const
{
  return ellipse_.piece(start_, span_);
}

gxEllipseArc gxEllipseArc::map(gxXform<2> const &xform) const
{
  return fromSpan(ellipse_.map(xform), start_, span_);
}

gxRect gxEllipseArc::boundingBox() const
{
  return gf_finite(piece().bounds());
}

gxRect gxEllipseArc::encloseRect() const
{
  return boundingBox();
}

gxVector<2> gxEllipseArc::nearestPoint(gxVector<2> const &p) const
{
  return gf_finite(piece().nearest(p).point);
}

double gxEllipseArc::distToPoint(gxVector<2> const &p) const
{
  return gf_finite(piece().nearest(p).distance);
}

double gxEllipseArc::perimeter() const
{
  return gf_finite(piece().lengthTo(1.0));
}

gxArchive &operator||(gxArchive &archive, gxEllipseArc &arc)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxEllipseArc");
  gxEllipse ellipse = arc.ellipse_;
  gxRadian start = arc.start_, span = arc.span_;
  archive || ellipse || start || span;
  if (archive.isLoading())
    arc = gxEllipseArc::fromSpan(ellipse, start, span);
  return archive;
}
