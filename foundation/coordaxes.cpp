#include "foundation/coordaxes.h"

#include "foundation/geomarchive.h"
#include "foundation/rect.h"

#include <algorithm>

gxRect gxCoordAxes::boundingBox() const
{
  return xAxis().boundingBox().enclose(yAxis().boundingBox());
}

double gxCoordAxes::distanceToPoint(gxVector<2> const &p) const
{
  return std::min(xAxis().distanceToPoint(p), yAxis().distanceToPoint(p));
}

gxArchive &operator||(gxArchive &archive, gxCoordAxes &axes)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxCoordAxes");
  return archive || axes.origin_ || axes.xEnd_ || axes.yEnd_;
}
