#include "dispc/wrfm/polyprivate.h"
#include "foundation/angle.h"

#include <cmath>
#include <utility>

// Which segments and outlines are wanted, and which are not.

namespace
{

using Poly = gxSMDGDPoly;
using Polys = std::list<Poly>;

/// Cuts away the segments that unwanted(poly) names; all pieces are made before the list changes.
template <class Unwanted>
void cutAway(Polys &polys, Unwanted unwanted)
{
  Polys kept;
  for (Poly const &poly : polys) {
    std::vector<Poly> pieces;
    gxSMDGDPolyPrivate::deleteSegments(poly, unwanted(poly), pieces);
    for (Poly &piece : pieces)
      kept.push_back(std::move(piece));
  }
  polys = std::move(kept);
}

double mappedLength(gx2SegmentLine const &line, gxXform<2> const &xform)
{
  return (xform * line).length();
}
double mappedLength(gx2SegmentArc const &arc, gxXform<2> const &xform)
{
  return (xform * arc).length();
}

}  // namespace

void gxSMDGDPolyPrivate::perimeterFilter(Polys &polys, gxRange const &range)
{
  Polys kept;
  for (Poly const &poly : polys) {
    if (range.isWithin(poly.perimeter_(0.0)))
      kept.push_back(poly);
  }
  polys = std::move(kept);
}

void gxSMDGDPolyPrivate::closureFilter(Polys &polys, bool keepClosed, bool keepOpen)
{
  polys.remove_if([&](Poly const &poly) { return !(poly.isClosed() ? keepClosed : keepOpen); });
}

void gxSMDGDPolyPrivate::segmentLengthFilter(Polys &polys, gxRange const &range)
{
  cutAway(polys, [&](Poly const &poly) {
    std::vector<double> lengths;
    poly.appendSegmentLengths_(lengths);
    std::vector<long> cut;
    long segment = poly.isOpen() ? 1 : 0;
    for (double const length : lengths) {
      if (!range.isWithin(length))
        cut.push_back(segment);
      ++segment;
    }
    return cut;
  });
}

void gxSMDGDPolyPrivate::vertexAngleFilter(Polys &polys, gxAngleRange const &range)
{
  cutAway(polys, [&](Poly const &poly) {
    std::vector<long> cut;
    for (int v = 0; v < poly.numVertices(); ++v) {
      if (!poly.isEndVertex(v) && !range.isWithin(vertexAngle(poly, v, false)))
        cut.push_back(v);
    }
    return cut;
  });
}

void gxSMDGDPolyPrivate::segmentAngleSpanFilter(Polys &polys, gxDegree const &limit)
{
  cutAway(polys, [&](Poly const &poly) {
    std::vector<long> cut;
    for (int s = 0; s < poly.numVertices(); ++s) {
      bool const isArc = poly.previousSegmentIndex_(s) != -1 && poly.isArcSegment_(s);
      if (isArc && std::abs(poly.segmentAngleSpan_(s).signedNorm().value()) > limit.value())
        cut.push_back(s);
    }
    return cut;
  });
}

std::vector<long> gxSMDGDPoly::segmentsOutOfTolerance(gxXform<2> const &a, gxXform<2> const &b) const
{
  auto const length = [this](int s, gxXform<2> const &xform) {
    return isLineSegment_(s) ? mappedLength(gxSMDGDPolyPrivate::lineSegment_(*this, s), xform)
                             : mappedLength(gxSMDGDPolyPrivate::arcSegment_(*this, s), xform);
  };
  std::vector<long> broken;
  for (int s = isOpen() ? 1 : 0; s < numVertices() && numSegments() > 0; ++s) {
    gxSMDDimension const dimension = segmentDimension(s);
    if (dimension.minDim() < 0.0 && dimension.maxDim() < 0.0)
      continue;
    if (!dimension.withinTolerance(length(s, a), length(s, b) / dimension.nomDim()))
      broken.push_back(s);
  }
  return broken;
}
