#include "dispc/wrfm/detail/segmentmeet.h"

#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double tiny = 1e-15;  // absolute: lengths, and the excess of a cosine

/// The directions, from the centre of a circle of radius @p r2, of its points that have distance @p r1 from a point
/// at distance @p d: theta + turn and theta - turn, with theta the direction away from that point's side.
struct Triangle {
  gxDegree turn;
  int count = 0;  ///< 2, 1 if both are the same, 0 if there are none
};

/// a + b - c without loss where that is little.
double excess(double a, double b, double c)
{
  return (std::max(a, b) - c) + std::min(a, b);
}

/// With k the cosine of the turn, which tells nothing of it where a circle is huge, as that of a flat arc is: 1 - k and
/// 1 + k are products of the excesses of two sides over the third, and the tangent of half the turn is the root of
/// their quotient (W. Kahan, Miscalculating Area and Angles of a Needle-like Triangle, 1986).
Triangle solveTriangle(double r1, double r2, double d, bool excludeEnds)
{
  double const over = excess(r1, r2, d), under = excess(r1, d, r2), inner = excess(r2, d, r1), sum = r2 + d + r1;
  if (!std::isfinite(sum))
    return {};
  double const belowOne = 0.5 * (over / r2) * (under / d), aboveMinusOne = 0.5 * (inner / r2) * (sum / d);
  // On a circle that is the larger one all points of the smaller one have nearly the same direction.
  double const share = std::min(1.0, r1 / r2), rounding = 0x1p-53 * share;
  double const least = std::min(belowOne, aboveMinusOne);
  int const count = std::abs(least) <= tiny * share ? 1 : 2;
  if (belowOne >= -rounding && aboveMinusOne >= -rounding) {
    auto const root = [](double a, double b) { return std::sqrt(std::max(a, 0.0)) * std::sqrt(std::max(b, 0.0)); };
    return {gxRadian(2.0 * std::atan2(root(over, under), root(inner, sum))), count};
  }
  if (excludeEnds || count == 2)
    return {};
  return {gxDegree(belowOne < aboveMinusOne ? 0.0 : 180.0), 1};
}

}  // namespace

gx_Ray gx_Ray::of(gx2SegmentLine const &segment)
{
  gxVector<2> const dir = (segment.p2() - segment.p1()).unit();
  if (dir == gxVector<2>())
    throw gxShapesError::DegenerateShape();
  return {segment.p1(), dir};
}

gx_Meeting gx_SegmentMeet::meet(gx2SegmentLine const &segment, gx_Ray const &line, bool excludeEnds)
{
  gx_Ray const own = gx_Ray::of(segment);
  gx_Meeting meeting;
  double const sine = own.dir.cross(line.dir);
  if (sine != 0.0)
    meeting.add(own.pos + own.dir * ((line.pos - own.pos).cross(line.dir) / sine));
  return meeting.filtered([&](auto const &p) { return segment.inRange(p, !excludeEnds); });
}

gx_Meeting gx_SegmentMeet::meet(gx2SegmentLine const &segment, gx2SegmentLine const &other, bool excludeEnds)
{
  return meet(other, gx_Ray::of(segment), excludeEnds).filtered([&](auto const &p) {
    return segment.inRange(p, !excludeEnds);
  });
}

template <class Keep>
gx_Meeting gx_SegmentMeet::meetLine(gx2SegmentArc const &arc, gx_Ray const &line, bool excludeEnds, Keep keep)
{
  gx_Ray own = line;
  if (!arc.xform_.isIdentity()) {
    gxXform<2> const back = arc.xform_.inverse();
    own = {back * line.pos, back.mapVector(line.dir).unit()};
    if (own.dir == gxVector<2>())
      throw gxShapesError::DegenerateShape();
  }
  gxVector<2> const foot = own.foot(arc.center_);
  double const d = arc.center_.distance(foot);
  double const r = std::abs(arc.radius_);
  if (!(d <= r))
    return {};

  gx_Meeting meeting;
  auto const offer = [&](gxVector<2> const &p, gxVector<2> const &client) {
    // the angle last: it costs most
    if (keep(client) && arc.validAngle_((p - arc.center_).angle(), !excludeEnds))
      meeting.add(client);
  };
  if (r - d <= tiny) {
    offer(foot, foot);
    return meeting;
  }
  double const h = std::sqrt((r - d) * (r + d));
  for (double const along : {h, -h}) {
    gxVector<2> const p = foot + own.dir * along;
    offer(p, arc.xform_ * p);
  }
  return meeting;
}

gx_Meeting gx_SegmentMeet::meet(gx2SegmentArc const &arc, gx_Ray const &line, bool excludeEnds)
{
  return meetLine(arc, line, excludeEnds, [](gxVector<2> const &) { return true; });
}

gx_Meeting gx_SegmentMeet::meet(gx2SegmentArc const &arc, gx2SegmentLine const &segment, bool excludeEnds)
{
  return meetLine(arc, gx_Ray::of(segment), excludeEnds,
                  [&](gxVector<2> const &p) { return segment.inRange(p, !excludeEnds); });
}

gx_Meeting gx_SegmentMeet::meet(gx2SegmentArc const &arc, gx2SegmentArc const &other, bool excludeEnds)
{
  gxVector<2> const c1 = arc.center(), c2 = other.center();
  double const d = c1.distance(c2);
  if (!(d > tiny))
    return {};
  gxDegree const theta = (c1 - c2).angle();
  double const r2 = other.radius(theta);
  double const r1 = arc.radius(theta + gxDegree(180.0));

  gx_Meeting candidates;
  if (!(std::abs(r2) > tiny)) {
    candidates.add(c2);
  } else {
    Triangle const triangle = solveTriangle(r1, r2, d, excludeEnds);
    if (triangle.count > 0 && other.validAngle(theta + triangle.turn, !excludeEnds))
      candidates.add(other.arcPoint(theta + triangle.turn));
    if (triangle.count > 1 && other.validAngle(theta - triangle.turn, !excludeEnds))
      candidates.add(other.arcPoint(theta - triangle.turn));
  }
  return candidates.filtered([&](auto const &p) { return arc.validAngle((p - c1).angle(), !excludeEnds); });
}
