#include "dispc/graphic_hit.h"

#include "dispc/glist.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double never = std::numeric_limits<double>::infinity();

// Rounding may put a point of an outline a little outside of its bounds.
constexpr double slack = 1e-9;

double gap(double at, double from, double length)
{
  return std::max({from - at, at - (from + length), 0.0});
}

// False only if the bounds show that the graphic is farther off. Graphics without bounds are
// for their own distance to judge.
bool mayReach(gxGraphic const &graphic, gxVector<2> const &p, double radius)
try {
  gxRect const box = graphic.encloseRect();
  if (box.isEmpty())
    return true;
  double const dx = gap(p.x(), box.origin().x(), box.size().x()), dy = gap(p.y(), box.origin().y(), box.size().y());
  double const extent = std::abs(box.origin().x()) + std::abs(box.origin().y()) + box.size().x() + box.size().y();
  return !(std::hypot(dx, dy) > radius + slack * (extent + radius));
} catch (gxShapesError::Errors const &) {
  return true;
}

double distanceOf(gxGraphic const &graphic, gxVector<2> const &p, double radius)
try {
  return mayReach(graphic, p, radius) ? graphic.distToPoint(p) : never;
} catch (gxShapesError::Errors const &) {
  return never;
}

template <class Member>
std::vector<gxGraphicHit> near(long count, Member member, gxVector<2> const &p, double radius)
{
  std::vector<gxGraphicHit> hits;
  if (!std::isfinite(radius))
    return hits;
  for (long i = count - 1; i >= 0; --i) {
    gxPtrHandle_const<gxGraphic> const graphic = member(i);
    double const distance = graphic.isNull() ? never : distanceOf(*graphic, p, radius);
    if (distance <= radius)
      hits.push_back({graphic, i, distance});
  }
  std::stable_sort(hits.begin(), hits.end(),
                   [](gxGraphicHit const &a, gxGraphicHit const &b) { return a.distance < b.distance; });
  return hits;
}

}  // namespace

std::vector<gxGraphicHit> gfGraphicsNear(gxGraphicList const &list, gxVector<2> const &point, double radius)
{
  gxGraphicList::Items const &items = list.items();
  return near(
      static_cast<long>(items.size()), [&](long i) { return items[static_cast<std::size_t>(i)]; }, point, radius);
}

std::vector<gxGraphicHit> gfGraphicsNear(gxGraphicGroup const &group, gxVector<2> const &point, double radius)
{
  return near(
      group.numItems(), [&](long i) { return group.item(i); }, point, radius);
}
