#include "foundation/pointset.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <algorithm>

gxPointSet gxPointSet::map(gxXform<2> const &xform) const
{
  gxPointSet image(*this);
  for (gxVector<2> &p : image.points_)
    p = xform * p;
  return image;
}

gxRect gxPointSet::boundingBox() const
{
  if (points_.empty())
    throw gxShapesError::EmptyShape();
  std::for_each(points_.begin(), points_.end(), [](gxVector<2> const &p) { gf_finite(p); });
  auto const byX = [](gxVector<2> const &a, gxVector<2> const &b) { return a.x() < b.x(); };
  auto const byY = [](gxVector<2> const &a, gxVector<2> const &b) { return a.y() < b.y(); };
  auto const [left, right] = std::minmax_element(points_.begin(), points_.end(), byX);
  auto const [low, high] = std::minmax_element(points_.begin(), points_.end(), byY);
  return gf_finite(gxRect::around({left->x(), low->y()}, {right->x(), high->y()}));
}

double gxPointSet::distanceToPoint(gxVector<2> const &p) const
{
  if (points_.empty())
    throw gxShapesError::EmptyShape();
  double best = gf_finite(p.distance(points_.front()));
  for (gxVector<2> const &q : points_)
    best = std::min(best, gf_finite(p.distance(q)));
  return best;
}

gxArchive &operator||(gxArchive &archive, gxPointSet &set)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxPointSet");
  return archive || set.points_;
}

std::ostream &operator<<(std::ostream &os, gxPointSet const &set)
{
  os << "points:";
  for (gxVector<2> const &p : set.points())
    os << ' ' << p;
  return os;
}
