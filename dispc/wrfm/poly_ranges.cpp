// In which directions the pieces of an outline are seen from a point, and what follows: inside and outside, and the
// side to which the outline runs round.

#include "dispc/wrfm/polyprivate.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

gxDegree directionFrom(gxVector<2> const &p, gxVector<2> const &to)
{
  return (to - p).angle();
}

/// The directions in which an arc is seen from @p p, as it is travelled from @p from to @p to, its ends. Neighbouring
/// pieces share their ends to the last bit, so that no direction is lost or seen twice at a joint.
void appendArcRanges(gx2SegmentArc const &arc, gxVector<2> const &p, gxVector<2> const &from, gxVector<2> const &to,
                     std::vector<gx2SegmentArc> &ranges)
{
  gxVector<2> const center = arc.center();
  double const radius = arc.radius(arc.startAngle()), distance = center.distance(p), span = arc.angleSpan().value();
  bool const isOutside = radius < distance;

  // Seen from outside, directions turn back where the line of sight touches the arc.
  std::array<gxDegree, 2> touching;
  int breaks = 0;
  if (isOutside) {
    gxDegree const h = gxRadian(std::acos(radius / distance)), g = directionFrom(center, p);
    gxDegree const start = arc.startAngle();
    auto const travelled = [&](gxDegree a) { return (span > 0.0 ? a - start : start - a).norm().value(); };
    for (gxDegree const a : {g - h, g + h})
      if (arc.validAngle(a, true))
        touching[static_cast<std::size_t>(breaks++)] = a;
    if (breaks == 2 && travelled(touching[1]) < travelled(touching[0]))
      std::swap(touching[0], touching[1]);
  }

  // From within its circle an arc sweeps no more than this; what seems to do so is a direction off by a rounding error,
  // on the line through the ends of a flat arc.
  double const widest = 180.0 + std::abs(span) / 2.0 + 1e-6;
  gxDegree direction = directionFrom(p, from);
  auto const sweepTo = [&](gxDegree next) {
    gxDegree sweep = (next - direction).signedNorm();
    if (!isOutside && sweep.value() == 0.0 && std::abs(span) > 180.0)
      sweep = gxDegree(std::copysign(gf_turnDegrees, span));
    else if (!isOutside && span * sweep.value() < 0.0 && gf_turnDegrees - std::abs(sweep.value()) <= widest)
      sweep += gxDegree(std::copysign(gf_turnDegrees, span));
    ranges.emplace_back(p, 1.0, direction, sweep);
    direction = next;
  };
  for (int i = 0; i < breaks; ++i)
    sweepTo(directionFrom(p, arc.arcPoint(touching[static_cast<std::size_t>(i)])));
  sweepTo(directionFrom(p, to));
}

long rangesHolding(std::vector<gx2SegmentArc> const &ranges, gxDegree direction)
{
  return std::count_if(ranges.begin(), ranges.end(), [&](auto const &r) { return r.validAngle(direction, true); });
}

}  // namespace

std::vector<gx2SegmentArc> gxSMDGDPolyPrivate::arcRanges_(gx2SegmentArc const &arc, gxVector<2> const &p)
{
  std::vector<gx2SegmentArc> ranges;
  appendArcRanges(arc, p, arc.p1(), arc.p2(), ranges);
  return ranges;
}

std::vector<gx2SegmentArc> gxSMDGDPolyPrivate::ranges_(gxSMDGDPoly const &poly, gxVector<2> const &p,
                                                       int excludedSegment)
{
  std::vector<gx2SegmentArc> ranges;
  int const n = static_cast<int>(poly.numVertices());
  ranges.reserve(static_cast<std::size_t>(n) * 2);
  for (int v = 0; v < n; ++v) {
    auto const at = static_cast<std::size_t>(v);
    if (poly.hasFillet_(v))
      appendArcRanges(roundedArcVertex_(poly, v), p, poly.prevRoundPoints_[at], poly.nextRoundPoints_[at], ranges);
    int const s = poly.nextSegmentIndex_(v);
    if (s == -1 || s == excludedSegment || poly.isUsedUp_(s))
      continue;
    gxVector<2> const from = poly.nextRoundPoints_[at], to = poly.prevRoundPoints_[static_cast<std::size_t>(s)];
    if (poly.isArcSegment_(s)) {
      appendArcRanges(roundedArcSegment_(poly, s), p, from, to, ranges);
    } else if (!(from == p) && !(to == p)) {
      gxDegree const start = directionFrom(p, from);
      ranges.emplace_back(p, 1.0, start, (directionFrom(p, to) - start).signedNorm());
    }
  }
  return ranges;
}

gxDegree gxSMDGDPolyPrivate::safestDirection_(std::vector<gx2SegmentArc> const &ranges, gxDegree const &start,
                                              gxDegree const &span)
{
  if (ranges.empty())
    return gxDegree(0.0);
  double low = start.norm().value(), high = (start + span).norm().value();
  bool const isWhole = !(span.value() < gf_turnDegrees) || !std::isfinite(low) || !std::isfinite(high);
  if (span.value() < 0.0)
    std::swap(low, high);
  if (high < low)
    high += gf_turnDegrees;

  std::vector<double> candidates;
  candidates.reserve(ranges.size() + 2);
  if (!isWhole)
    candidates = {low, high};
  for (gx2SegmentArc const &range : ranges) {
    double a = range.startAngle().norm().value();
    if (!isWhole && a < low)
      a += gf_turnDegrees;
    if (isWhole ? a == a : a <= high)
      candidates.push_back(a);
  }
  if (candidates.empty())
    return gxDegree(0.0);  // no range has a direction
  std::sort(candidates.begin(), candidates.end());
  if (isWhole)
    candidates.push_back(candidates.front() + gf_turnDegrees);

  std::size_t best = 1;
  for (std::size_t i = 1; i < candidates.size(); ++i)
    if (candidates[best] - candidates[best - 1] <= candidates[i] - candidates[i - 1])
      best = i;
  return gxDegree((candidates[best - 1] + candidates[best]) * 0.5);
}

bool gxSMDGDPoly::inside_(gxVector<2> const &p) const
{
  if (isOpen())
    throw notClosed();
  auto const ranges = gxSMDGDPolyPrivate::ranges_(*this, p, -1);
  return rangesHolding(ranges, gxSMDGDPolyPrivate::safestDirection_(ranges, gxDegree(0.0), gxDegree(360.0))) % 2 != 0;
}

bool gxSMDGDPoly::isDirectionPositive() const
{
  if (isOpen())
    throw notClosed();
  // From the middle of the first segment a ray runs to its left, or towards the chord of an arc.
  int const s = nextSegmentIndex_(0);
  bool const isArc = isArcSegment_(s);
  gxVector<2> middle;
  gxDegree base, reach(180.0);
  if (isArc) {
    gx2SegmentArc const arc = gxSMDGDPolyPrivate::roundedArcSegment_(*this, s);
    middle = arc.midPoint();
    base = directionFrom(middle, arc.p2());
    reach = (directionFrom(middle, arc.p1()) - base).signedNorm();
  } else {
    gx2SegmentLine const line = gxSMDGDPolyPrivate::roundedLineSegment_(*this, s);
    middle = line.midPoint();
    base = line.angle();
  }
  auto const ranges = gxSMDGDPolyPrivate::ranges_(*this, middle, s);
  gxDegree const direction = gxSMDGDPolyPrivate::safestDirection_(ranges, base, reach);
  long const crossings = rangesHolding(ranges, direction) + (isArc && direction.value() - 180.0 > 0.0 ? 1 : 0);
  return (crossings % 2 != 0) != isDirectionReversed();
}
