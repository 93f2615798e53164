// Extensions: where segments run on past sharp corners, and how far they may.

#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kDefaultExtension = 0.5;
constexpr double kExtensionCornerAngle = 45.0;
constexpr gxDegree kExtensionParallelAngle(10.0);
constexpr double kExtensionClearanceFactor = 8.0;  // in steps

/// No walk takes more steps, however short they are asked for.
constexpr double mostSteps = 1e6;

double sine(gxDegree a)
{
  return std::abs(std::sin(gxRadian(a).value()));
}

/// A place on the continuation of a segment.
struct Place {
  gxVector<2> point;
  gxDegree direction;  ///< of the segment, continued
};

Place continued(gx2SegmentLine const &line, double t, bool backward)
{
  gxDegree const d = line.angle();
  return {backward ? line.p1() - gxVector<2>(t, d) : line.p2() + gxVector<2>(t, d), d};
}

Place continued(gx2SegmentArc const &arc, double t, bool backward)
{
  double const span = arc.angleSpan().value();
  double const turn = gxDegree(gxRadian(t / arc.radius(arc.startAngle()))).value();
  gxDegree const a = (backward ? arc.startAngle() : arc.startAngle() + gxDegree(span)) +
                     gxDegree(std::copysign(turn, backward ? -span : span));
  return {arc.arcPoint(a), a + gxDegree(std::copysign(90.0, span))};
}

gxDegree directionAt(gx2SegmentLine const &line, gxVector<2> const &)
{
  return line.angle();
}

gxDegree directionAt(gx2SegmentArc const &arc, gxVector<2> const &p)
{
  return gxDegree((p - arc.center()).angle()) + gxDegree(90.0);
}

/// Two straight lines are as parallel in one place as in all others.
template <class Segment, class Other>
bool neverParallel(Segment const &, Other const &, double)
{
  return false;
}
bool neverParallel(gx2SegmentLine const &segment, gx2SegmentLine const &other, double limit)
{
  return sine(other.angle() - segment.angle()) > limit;
}

gx_PolyBoxes::Box boxOf(gxRect const &rect)
{
  gxVector<2> const low = rect.lowCorner(), high = rect.highCorner();
  return {low.x(), low.y(), high.x(), high.y()};
}

/// Round all places of a continuation up to @p reach.
gx_PolyBoxes::Box boxOfContinuation(gx2SegmentLine const &line, double reach, bool backward)
{
  return boxOf(gxRect::around(backward ? line.p1() : line.p2(), continued(line, reach, backward).point));
}
gx_PolyBoxes::Box boxOfContinuation(gx2SegmentArc const &arc, double, bool)
{
  return boxOf(gx2SegmentArc(arc.center(), arc.radius(arc.startAngle()), gxDegree(), gxDegree(360.0)).boundingBox());
}

void checkStep(double step)
{
  if (!(step > 0.0) || !std::isfinite(step))
    throw gxShapesError::BadCoef();
}

template <class Segment, class Other>
void shorten(double &fraction, Segment const &segment, Other const &other, double clearance, gxDegree angle,
             double step, bool backward)
{
  checkStep(step);
  double const limit = sine(angle);
  double const length = segment.length(), reach = length * fraction;
  if (!(reach > 0.0) || !std::isfinite(reach) || neverParallel(segment, other, limit))
    return;
  step = std::max(step, reach / mostSteps);
  gx_PolyBoxes::Box far = boxOf(other.boundingBox());
  double const margin = clearance * (1.0 + 1e-9);
  far = {far.left - margin, far.bottom - margin, far.right + margin, far.top + margin};
  if (!far.meets(boxOfContinuation(segment, reach + step, backward)))
    return;
  for (long k = 0; static_cast<double>(k) * step < reach; ++k) {
    Place const at = continued(segment, static_cast<double>(k + 1) * step, backward);
    gx_Ray const across{at.point, gxVector<2>(1.0, at.direction + gxDegree(90.0))};
    for (gxVector<2> const &q : gx_SegmentMeet::meet(other, across, false))
      if (at.point.distance(q) < clearance && !(sine(directionAt(other, q) - at.direction) > limit)) {
        fraction = static_cast<double>(k) * step / length;
        return;
      }
  }
}

}  // namespace

void gxSMDGDPolyPrivate::checkSegmentExtension_(double &fraction, gx2SegmentLine const &segment,
                                                gx2SegmentLine const &other, double clearance, gxDegree const &angle,
                                                double step, bool backward)
{
  shorten(fraction, segment, other, clearance, angle, step, backward);
}

void gxSMDGDPolyPrivate::checkSegmentExtension_(double &fraction, gx2SegmentLine const &segment,
                                                gx2SegmentArc const &other, double clearance, gxDegree const &angle,
                                                double step, bool backward)
{
  shorten(fraction, segment, other, clearance, angle, step, backward);
}

void gxSMDGDPolyPrivate::checkSegmentExtension_(double &fraction, gx2SegmentArc const &segment,
                                                gx2SegmentLine const &other, double clearance, gxDegree const &angle,
                                                double step, bool backward)
{
  shorten(fraction, segment, other, clearance, angle, step, backward);
}

void gxSMDGDPolyPrivate::checkSegmentExtension_(double &fraction, gx2SegmentArc const &segment,
                                                gx2SegmentArc const &other, double clearance, gxDegree const &angle,
                                                double step, bool backward)
{
  shorten(fraction, segment, other, clearance, angle, step, backward);
}

void gxSMDGDPoly::setExtensions_(double fraction)
{
  auto const atCorner = [&](int v) {
    if (isEndVertex(v))
      return 0.0;
    gxDegree const turn = segmentStartDirection_(nextSegmentIndex_(v)) - segmentEndDirection_(previousSegmentIndex_(v));
    double const corner = (gxDegree(180.0) - turn).signedNorm().norm().value();
    return std::abs(corner - 180.0) >= kExtensionCornerAngle ? fraction : 0.0;
  };
  for (int s = 0; s < numVertices(); ++s) {
    if (previousSegmentIndex_(s) == -1)
      continue;
    int const start = previousVertexIndex_(s);
    backwardPercExtension_(start, atCorner(start));
    forwardPercExtension_(s, atCorner(s));
  }
}

void gxSMDGDPoly::setDefaultExtensions_()
{
  setExtensions_(kDefaultExtension);
}

void gxSMDGDPoly::checkExtensions_(gxSMDGDPoly &other, double clearance, gxDegree const &angle, double step,
                                   bool samePoly)
{
  struct Fractions {
    int segment, start;
    double backward, forward;
  };
  std::vector<Fractions> shortened;  // all are set, or none
  for (int i = 0; i < numVertices(); ++i) {
    if (previousSegmentIndex_(i) == -1)
      continue;
    int const start = previousVertexIndex_(i);
    double backward = backwardPercExtension_(start), forward = forwardPercExtension_(i);
    gx_PolyPiece const whole = gx_plainSegment(*this, i);
    auto const shortenBoth = [&](gx_PolyPiece const &obstacle) {
      auto const both = [&](auto const &segment, auto const &piece) {
        shorten(backward, segment, piece, clearance, angle, step, true);
        shorten(forward, segment, piece, clearance, angle, step, false);
      };
      std::visit(both, whole, obstacle);
    };
    for (int j = 0; j < other.numVertices(); ++j) {
      if (other.previousSegmentIndex_(j) == -1)
        continue;
      if ((!samePoly || i != j) && !other.isUsedUp_(j))
        shortenBoth(gx_roundedSegment(other, j));
      if (other.hasFillet_(j) && !(samePoly && (j == start || j == i)))
        shortenBoth(gxSMDGDPolyPrivate::roundedArcVertex_(other, j));
    }
    shortened.push_back({i, start, backward, forward});
  }
  for (Fractions const &f : shortened) {
    backwardPercExtension_(f.start, f.backward);
    forwardPercExtension_(f.segment, f.forward);
  }
}

void gxSMDGDModel::setExtensions_(double clearance, gxDegree const &angle, double step, double fraction)
{
  checkStep(step);
  mutating();
  for (gxSMDGDPoly &poly : polys_) {
    if (fraction >= 0.0)
      gxSMDGDPolyPrivate::setExtensions_(poly, fraction);
    else
      gxSMDGDPolyPrivate::setDefaultExtensions_(poly);
  }
  for (gxSMDGDPoly &poly : polys_)
    for (gxSMDGDPoly &other : polys_)
      gxSMDGDPolyPrivate::checkExtensions_(poly, other, clearance, angle, step, &poly == &other);
}

void gxSMDGDModelPrivate::setExtensions(gxSMDGDModel &model, double step, double fraction)
{
  model.setExtensions_(kExtensionClearanceFactor * step, kExtensionParallelAngle, step, fraction);
}
