#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/poly.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

using Private = gxSMDGDPolyPrivate;

// ---- Segments

gx2SegmentLine Private::lineSegment_(gxSMDGDPoly const &poly, int s)
{
  return {poly.vertexPoint_(poly.previousVertexIndex_(s)), poly.vertexPoint_(s)};
}

gx2SegmentArc Private::arcSegment_(gxSMDGDPoly const &poly, int s)
{
  return {poly.vertexPoint_(poly.previousVertexIndex_(s)), poly.vertexPoint_(s), poly.segmentAngleSpan_(s)};
}

gx2SegmentLine Private::roundedLineSegment_(gxSMDGDPoly const &poly, int s)
{
  return {poly.nextRoundPoints_[poly.vertexAt_(poly.previousVertexIndex_(s), false)],
          poly.prevRoundPoints_[poly.vertexAt_(s, false)]};
}

gx2SegmentArc Private::roundedArcSegment_(gxSMDGDPoly const &poly, int s)
{
  int const before = poly.previousVertexIndex_(s);
  gxVector<2> const a = poly.nextRoundPoints_[poly.vertexAt_(before, false)];
  gxVector<2> const b = poly.prevRoundPoints_[poly.vertexAt_(s, false)];
  gx2SegmentArc const whole = arcSegment_(poly, s);
  if (a == poly.vertexPoint_(before) && b == poly.vertexPoint_(s))
    return whole;  // nothing is cut off, so nothing is to be lost by reckoning
  gxVector<2> const c = whole.center();
  double const startShift = gxDegree(gxDegree((a - c).angle()) - whole.startAngle()).signedNorm().value();
  double const endShift = gxDegree(gxDegree((b - c).angle()) - whole.endAngle()).signedNorm().value();
  return {a, b, gxDegree(poly.segmentAngleSpan_(s).value() - startShift + endShift)};
}

gx2SegmentArc Private::roundedArcVertex_(gxSMDGDPoly const &poly, int v)
{
  std::size_t const i = poly.vertexAt_(v, false);
  return {poly.prevRoundPoints_[i], poly.nextRoundPoints_[i], gxDegree(poly.roundSpans_[i])};
}

namespace
{
/// A segment is used up if what is left of it is no longer than this, in units of its coordinates and its radius, and
/// of its chord.
constexpr double kUsedUpTolerance = 1e-14;
constexpr double kUsedUpPart = 1e-3;

double reach(gxVector<2> const &p)
{
  return std::abs(p.x()) + std::abs(p.y());
}
}  // namespace

bool gxSMDGDPoly::hasNoRest_(int s) const
{
  int const before = previousVertexIndex_(s);
  if (!hasFillet_(before) && !hasFillet_(s))
    return false;
  gxVector<2> const a = nextRoundPoints_[vertexAt_(before, false)], b = prevRoundPoints_[vertexAt_(s, false)];
  gxVector<2> const from = vertexPoint_(before), to = vertexPoint_(s), rest = b - a, whole = to - from;
  if (rest * rest > kUsedUpPart * kUsedUpPart * (whole * whole))
    return false;
  double const chord = from.distance(to), sine = std::sin(gxRadian(segmentAngleSpan_(s)).value() / 2.0);
  double const radius = isArcSegment_(s) ? 0.5 * chord / std::abs(sine) : 0.0;
  double const tolerance = std::min(kUsedUpTolerance * (reach(from) + reach(to) + radius), kUsedUpPart * chord);
  return rest.len() <= tolerance;
}

// ---- Slides

gx2SegmentLine Private::slideLineSegment_(gxSMDGDPoly const &poly, int s, double d)
{
  gx2SegmentLine const line = lineSegment_(poly, s);
  gxVector<2> const offset(d, line.angle() - gxDegree(90.0));
  return {line.p1() + offset, line.p2() + offset};
}

gx2SegmentLine Private::firstHalfSlideLineSegment_(gxSMDGDPoly const &poly, int s, double d)
{
  gx2SegmentLine const line = slideLineSegment_(poly, s, d);
  return {line.p1(), line.midPoint()};
}

gx2SegmentLine Private::secondHalfSlideLineSegment_(gxSMDGDPoly const &poly, int s, double d)
{
  gx2SegmentLine const line = slideLineSegment_(poly, s, d);
  return {line.midPoint(), line.p2()};
}

gx2SegmentArc Private::slideArc_(gxSMDGDPoly const &poly, int s, double d)
{
  gx2SegmentArc const arc = arcSegment_(poly, s);
  gxDegree const span = poly.segmentAngleSpan_(s);
  double const radius = arc.center().distance(arc.p1()) + (span.value() < 0.0 ? -d : d);
  if (radius < 0.0)
    throw invalidRounding();
  return {arc.center(), radius, arc.startAngle(), span};
}

gx2SegmentArc Private::firstHalfSlideArc_(gxSMDGDPoly const &poly, int s, double d)
{
  gx2SegmentArc const arc = slideArc_(poly, s, d);
  return {arc.p1(), arc.midPoint(), poly.segmentAngleSpan_(s) * 0.5};
}

gx2SegmentArc Private::secondHalfSlideArc_(gxSMDGDPoly const &poly, int s, double d)
{
  gx2SegmentArc const arc = slideArc_(poly, s, d);
  return {arc.midPoint(), arc.p2(), poly.segmentAngleSpan_(s) * 0.5};
}

// ---- Extensions

gx2SegmentLine Private::forwardLineSegmentExtension_(gxSMDGDPoly const &poly, int s)
{
  gx2SegmentLine const line = lineSegment_(poly, s);
  return {line.p2(), line.p2() + (line.p2() - line.p1()) * poly.forwardPercExtension_(s)};
}

gx2SegmentLine Private::backwardLineSegmentExtension_(gxSMDGDPoly const &poly, int s)
{
  gx2SegmentLine const line = lineSegment_(poly, s);
  return {line.p1(), line.p1() + (line.p1() - line.p2()) * poly.backwardPercExtension_(poly.previousVertexIndex_(s))};
}

gx2SegmentArc Private::forwardArcSegmentExtension_(gxSMDGDPoly const &poly, int s)
{
  gx2SegmentArc const arc = arcSegment_(poly, s);
  return {arc.center(), arc.center().distance(arc.p1()), arc.endAngle(),
          poly.segmentAngleSpan_(s) * poly.forwardPercExtension_(s)};
}

gx2SegmentArc Private::backwardArcSegmentExtension_(gxSMDGDPoly const &poly, int s)
{
  gx2SegmentArc const arc = arcSegment_(poly, s);
  return {arc.center(), arc.center().distance(arc.p1()), arc.startAngle(),
          -poly.segmentAngleSpan_(s) * poly.backwardPercExtension_(poly.previousVertexIndex_(s))};
}

// ---- Fillets

namespace
{
enum class Part { whole, firstHalf, secondHalf };

gx_PolyPiece slide(gxSMDGDPoly const &poly, int s, double d, Part part)
{
  if (Private::isLineSegment_(poly, s)) {
    switch (part) {
      case Part::whole:
        return Private::slideLineSegment_(poly, s, d);
      case Part::firstHalf:
        return Private::firstHalfSlideLineSegment_(poly, s, d);
      case Part::secondHalf:
        return Private::secondHalfSlideLineSegment_(poly, s, d);
    }
  }
  switch (part) {
    case Part::firstHalf:
      return Private::firstHalfSlideArc_(poly, s, d);
    case Part::secondHalf:
      return Private::secondHalfSlideArc_(poly, s, d);
    default:
      return Private::slideArc_(poly, s, d);
  }
}
}  // namespace

gxVector<2> gxSMDGDPoly::roundPoint_(int v) const
{
  int ps = -1;
  int ns = -1;
  getSegmentIndices_(ps, ns, v);
  if (ps == -1 || ns == -1)
    throw invalidIndex();
  // A fillet may use half of each segment, so that two on one segment never overlap; all of one that ends the outline.
  auto const endsOutline = [this](int s) { return isOpen_ && (s == firstSegmentIndex_() || s == lastSegmentIndex_()); };
  return filletCenter_(v, endsOutline(ps), endsOutline(ns));
}

// The centre of a circle that touches both segments lies on both of them moved by the radius towards the inside of
// the corner.
gxVector<2> gxSMDGDPoly::filletCenter_(int v, bool wholePrev, bool wholeNext) const
{
  int ps = -1;
  int ns = -1;
  getSegmentIndices_(ps, ns, v);
  double const turn = (gxDegree(180.0) - (segmentStartDirection_(ns) - segmentEndDirection_(ps))).signedNorm().value();
  double const d = turn >= 0.0 ? -vertexRadius_(v) : vertexRadius_(v);
  auto const centers = gx_meet(slide(*this, ps, d, wholePrev ? Part::whole : Part::secondHalf),
                               slide(*this, ns, d, wholeNext ? Part::whole : Part::firstHalf), false);
  if (centers.count == 0)
    throw invalidRounding();
  gxVector<2> const p = vertexPoint_(v);
  gxVector<2> const first = *centers.begin();
  gxVector<2> const last = *(centers.end() - 1);
  return p.distance(first) < p.distance(last) ? first : last;
}

gxSMDGDPoly::Fillet gxSMDGDPoly::filletAbout_(gxVector<2> const &center, int v) const
{
  int ps = -1;
  int ns = -1;
  getSegmentIndices_(ps, ns, v);
  Fillet fillet;
  fillet.prev = closestSegmentPoint_(ps, center);
  fillet.next = closestSegmentPoint_(ns, center);
  gxRadian const turned = (fillet.next - center).angle() - (fillet.prev - center).angle();
  fillet.span = turned.signedNorm().value() * 57.29577951308232;
  return fillet;
}

void gxSMDGDPoly::computeVertexRounding_(int v)
{
  std::size_t const i = vertexAt_(v, false);
  mutating();
  Fillet const fillet = hasFillet_(v) ? filletAbout_(roundPoint_(v), v) : Fillet{vertexPoint_(v), vertexPoint_(v), 0.0};
  prevRoundPoints_[i] = fillet.prev;
  nextRoundPoints_[i] = fillet.next;
  roundSpans_[i] = fillet.span;
  markBoxesStale_(v);
}
