#include "foundation/hermitespline.h"

#include "foundation/geomarchive.h"
#include "foundation/shapeserror.h"

GX_SHAPE_IMPL(gxHermiteSpline, gxCubicSpline)

void gxHermiteSpline::passFields_(gxArchive &archive)
{
  archive || tangents_;
  if (archive.isStoring())
    return;
  if (tangents_.size() != points().size())
    archive.fail("a spline without a tangent for each point");
  rejoinLoaded(archive);
}

void gxHermiteSpline::set(std::vector<gxVector<2>> points, std::vector<gxVector<2>> tangents)
{
  if (points.size() != tangents.size())
    throw gxShapesError::BadCoef();
  gxHermiteSpline changed(*this);
  changed.setPoints(std::move(points));
  changed.tangents_ = std::move(tangents);
  changed.rejoin();
  mutating();
  *this = std::move(changed);
}

void gxHermiteSpline::append(gxVector<2> const &point, gxVector<2> const &tangent)
{
  std::vector<gxVector<2>> more = points(), moreTangents = tangents_;
  more.push_back(point);
  moreTangents.push_back(tangent);
  set(std::move(more), std::move(moreTangents));
}

std::size_t gxHermiteSpline::curveCount() const
{
  return isClosed() ? points().size() : std::max<std::size_t>(points().size(), 1) - 1;
}

std::vector<gxVector<2>> gxHermiteSpline::join(std::vector<double> const &intervals) const
{
  std::vector<gxVector<2>> slopes = tangents_;
  slopes.resize(points().size());  // after a failed load there may be fewer
  return joinHermite(intervals, slopes);
}

gxHermiteSpline gxHermiteSpline::map(gxXform<2> const &xform) const
{
  gxHermiteSpline image(*this);
  image.mapPoints(xform);
  for (gxVector<2> &v : image.tangents_)
    v = xform.mapVector(v);
  image.rejoin();
  return image;
}

gxPtrHandle<gxShape> gxHermiteSpline::mapShape(gxXform<2> const &xform) const
{
  return new gxHermiteSpline(map(xform));
}

gxPtrHandle<gxShape> gxHermiteSpline::reverse_() const
{
  gxPtrHandle<gxHermiteSpline> const turned = new gxHermiteSpline(*this);
  turned->reversePoints();
  turned->tangents_ = reversed(tangents_);
  for (gxVector<2> &v : turned->tangents_)
    v = -v;
  turned->rejoin();
  return turned;
}
