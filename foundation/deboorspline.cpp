#include "foundation/deboorspline.h"

#include "foundation/archive.h"
#include "foundation/shapeserror.h"

GX_SHAPE_IMPL(gxDeBoorSpline, gxCubicSpline)

void gxDeBoorSpline::passFields_(gxArchive &archive)
{
  if (archive.isLoading())
    rejoinLoaded(archive);
}

void gxDeBoorSpline::points(std::vector<gxVector<2>> v)
{
  gxDeBoorSpline changed(*this);
  changed.setPoints(std::move(v));
  changed.rejoin();
  mutating();
  *this = std::move(changed);
}

void gxDeBoorSpline::append(gxVector<2> const &point)
{
  std::vector<gxVector<2>> more = points();
  more.push_back(point);
  points(std::move(more));
}

std::size_t gxDeBoorSpline::curveCount() const
{
  std::size_t const n = points().size();
  return isClosed() || n == 0 ? n : std::max<std::size_t>(n, 4) - 3;
}

namespace
{

/// Fewer than four points as the control points of one cubic curve of the same shape.
std::vector<gxVector<2>> raised(std::vector<gxVector<2>> const &p)
{
  if (p.size() == 1)
    return {p[0], p[0], p[0], p[0]};
  if (p.size() == 2)
    return {p[0], p[0] + (p[1] - p[0]) * (1.0 / 3.0), p[1] + (p[0] - p[1]) * (1.0 / 3.0), p[1]};
  return {p[0], p[1] + (p[0] - p[1]) * (1.0 / 3.0), p[1] + (p[2] - p[1]) * (1.0 / 3.0), p[2]};
}

gxVector<2> between(gxVector<2> const &a, gxVector<2> const &b, double share)
{
  return a + (b - a) * share;
}

}  // namespace

std::vector<gxVector<2>> gxDeBoorSpline::join(std::vector<double> const &intervals) const
{
  if (!isClosed() && points().size() < 4)
    return raised(points());
  std::size_t const count = intervals.size();
  // for curve i: its interval, with that of the curves before and behind; outside an open spline they are 0
  auto const interval = [&](std::size_t i, int step) {
    std::size_t const neighbor = (i + (step < 0 ? count - 1 : static_cast<std::size_t>(step))) % count;
    bool const isOutside = !isClosed() && (step < 0 ? i == 0 : i + static_cast<std::size_t>(step) == count);
    return isOutside ? 0.0 : intervals[neighbor];
  };
  std::vector<gxVector<2>> joined;
  for (std::size_t i = 0; i < count; ++i) {
    double const before = interval(i, -1), here = interval(i, 0), behind = interval(i, 1);
    double const sum = before + here + behind;
    gxVector<2> const &p = around(i + firstLeg()), &q = around(i + firstLeg() + 1);
    joined.push_back({});  // where curves meet; below
    joined.push_back(between(p, q, before / sum));
    joined.push_back(between(p, q, (before + here) / sum));
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (i == 0 && !isClosed()) {
      joined[0] = points().front();
      continue;
    }
    double const before = interval(i, -1), here = interval(i, 0);
    gxVector<2> const &last = joined[(3 * i + 3 * count - 1) % (3 * count)];
    joined[3 * i] = between(last, joined[3 * i + 1], before / (before + here));
  }
  joined.push_back(isClosed() ? joined.front() : points().back());
  return joined;
}

gxDeBoorSpline gxDeBoorSpline::map(gxXform<2> const &xform) const
{
  gxDeBoorSpline image(*this);
  image.mapPoints(xform);
  image.rejoin();
  return image;
}

gxPtrHandle<gxShape> gxDeBoorSpline::mapShape(gxXform<2> const &xform) const
{
  return new gxDeBoorSpline(map(xform));
}

gxPtrHandle<gxShape> gxDeBoorSpline::reverse_() const
{
  gxPtrHandle<gxDeBoorSpline> const turned = new gxDeBoorSpline(*this);
  turned->reversePoints();
  turned->rejoin();
  return turned;
}
