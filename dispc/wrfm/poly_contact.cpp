// The nearest point of an outline, and whether one outline touches another without crossing it.

#include "dispc/wrfm/detail/polyrounded.h"
#include "dispc/wrfm/polyprivate.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kContactFirstStep = 1e-06;
constexpr double kContactLastStep = 1000000.0;
constexpr double kContactTangent = 0.001;  // of the product of a radius and a direction

}  // namespace

gxVector<2> gxSMDGDPolyPrivate::closestPoint(gxSMDGDPoly const &poly, gxVector<2> const &p)
{
  gxVector<2> nearest = poly.vertexPoint_(0);
  bool isFirst = true;
  auto const offer = [&](gx_RoundedPiece const &piece) {
    gxVector<2> const point = gx_closestPoint(piece, p);
    if (isFirst || point.distance(p) < nearest.distance(p))
      nearest = point;
    isFirst = false;
  };
  for (int i = 0; i < poly.numVertices(); ++i) {
    if (poly.previousSegmentIndex_(i) != -1)
      offer(gx_roundedPiece(poly, i));
    if (poly.hasFillet_(i))
      offer(gx_roundedVertex(poly, i));
  }
  return nearest;
}

bool gxSMDGDPolyPrivate::arrivesInside_(gxSMDGDPoly const &b, gxVector<2> const &p, gxVector<2> const &from)
{
  // p lies on b, where inside and outside say nothing: it takes two steps, there and back, that end on either side
  gxVector<2> const u = (from - p).unit();
  for (double d = kContactFirstStep; d < kContactLastStep; d *= 2.0) {
    bool const isInside = b.inside_(p + u * d);
    if (isInside != b.inside_(p - u * d))
      return isInside;
  }
  return true;
}

bool gxSMDGDPolyPrivate::pointContact(gxSMDGDPoly const &a, gxVector<2> const &p, gxSMDGDPoly const &b)
{
  if (b.isOpen())
    throw notClosed();
  double const tolerance = onPieceTolerance_(a, b);
  for (int i = 0; i < a.numVertices(); ++i) {
    if (!a.hasFillet_(i)) {
      if (!(a.vertexPoint_(i).distance(p) <= tolerance))
        continue;
      auto const arrivesFrom = [&](int segment, bool fromStart) {
        return segment != -1 &&
               arrivesInside_(b, p, a.vertexPoint_(fromStart ? a.previousVertexIndex_(segment) : segment));
      };
      return arrivesFrom(a.previousSegmentIndex_(i), true) == arrivesFrom(a.nextSegmentIndex_(i), false);
    }
    gx2SegmentArc const fillet = roundedArcVertex_(a, i);
    if (!(fillet.distToPoint(p) <= tolerance))
      continue;
    for (int j = 0; j < b.numVertices(); ++j) {
      if (b.previousSegmentIndex_(j) == -1 || !(b.closestSegmentPoint_(j, p).distance(p) <= tolerance))
        continue;
      gxVector<2> const along(1.0, b.segmentStartDirection_(j));
      if (std::abs(along * (p - fillet.center())) < kContactTangent)
        return true;
    }
  }
  return false;
}
