#include "dispc/wrfm/detail/polyedit.h"
#include "dispc/wrfm/poly.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/shapeserror.h"

#include <cmath>

bool gxSMDGDPoly::claimsTooMuch_(int before, int after) const
{
  return percentNextSegment_(before) + percentPrevSegment_(after) > 1.0;
}

void gxSMDGDPoly::validate_()
{
  int const n = static_cast<int>(numVertices());
  if (isClosed() && n < 2)
    throw invalidVertices();
  boxes_.clear();
  for (int i = 0; i < n; ++i)
    computeVertexRounding_(i);
  if (n < 2)
    return;

  refreshBoxes_();
  for (int i = 0; i < n; ++i) {
    // Each looks back only, so that every pair is looked at once.
    if (vertexIntersectsPoly_(i, i))
      throw crossingSegments();
    if (previousSegmentIndex_(i) == -1)
      continue;
    if (segmentIntersectsPoly_(i, i))
      throw crossingSegments();
    int const p = vertexIndex_(i - 1, true);
    if (vertexLabel_(i) != -1 && vertexLabel_(i) == vertexLabel_(p) && claimsTooMuch_(p, i))
      throw crossingSegments();
    checkDimension_(i);
  }
  for (int i = 0; i < n; ++i) {
    checkFillet_(i);
    if (previousSegmentIndex_(i) != -1)
      checkRest_(i);
  }
}

gxSMDGDPoly::Neighbours gxSMDGDPoly::filletsAround_(int i) const
{
  Neighbours around;
  long const n = numVertices();
  around.add(vertexIndex_(i, false));
  if (n != 1)
    around.add(vertexIndex_(i - 1, true));
  if (n != 2)
    around.add(vertexIndex_(i + 1, true));
  if (n != 3 && i == 0 && isClosed())
    around.add(vertexIndex_(i - 2, true));
  return around;
}

void gxSMDGDPoly::computeVertexRoundings_(int v)
{
  for (int const around : filletsAround_(v))
    computeVertexRounding_(around);
}

void gxSMDGDPoly::validateReplacement_(int i)
{
  if (vertices_.empty())
    return;
  computeVertexRoundings_(i);
  refreshBoxes_();
  if (vertexIntersectsPoly_(i, -1))
    throw crossingSegments();

  int ps = -1;
  int ns = -1;
  getSegmentIndices_(ps, ns, i);
  int const p = vertexIndex_(i - 1, true);
  int const q = vertexIndex_(i + 1, true);
  // Both claims are looked at if the vertex *before* has the same label, the one on the segment behind, too.
  bool const sharesLabel = vertexLabel_(i) != -1 && vertexLabel_(i) == vertexLabel_(p);
  if (ps != -1) {
    if (segmentIntersectsPoly_(ps, -1) || vertexIntersectsPoly_(p, -1))
      throw crossingSegments();
    if (sharesLabel && claimsTooMuch_(p, i))
      throw crossingSegments();
    checkDimension_(ps);
  }
  if (ns != -1) {
    if (segmentIntersectsPoly_(ns, -1) || vertexIntersectsPoly_(q, -1))
      throw crossingSegments();
    if (sharesLabel && claimsTooMuch_(i, q))
      throw crossingSegments();
    checkDimension_(ns);
  }
  for (int const v : filletsAround_(i)) {
    checkFillet_(v);
    if (previousSegmentIndex_(v) != -1)
      checkRest_(v);
  }
  if (int const behind = nextSegmentIndex_(q); behind != -1)
    checkRest_(behind);
}

void gxSMDGDPoly::validateDeletion_(int i)
{
  if (isClosed() && numVertices() < 2)
    throw invalidVertices();
  if (vertices_.empty())
    return;
  validateReplacement_(vertexIndex_(i - 1, true));
  validateReplacement_(vertexIndex_(i, true));
}

void gxSMDGDPoly::validateClose_()
{
  if (numVertices() < 2)
    throw invalidVertices();
  validateReplacement_(0);
}

void gxSMDGDPoly::checkFillet_(int v) const
{
  constexpr double small = 1e-9;  // of the coordinates: above it there is no doubt
  if (!hasFillet_(v))
    return;
  auto const at = static_cast<std::size_t>(v);
  gxVector<2> const chord = nextRoundPoints_[at] - prevRoundPoints_[at], p = vertexPoint_(v);
  bool const isLarge = chord * chord > small * small * (p * p) && std::abs(roundSpans_[at]) > small;
  if (!isLarge)
    gxSMDGDPolyPrivate::roundedArcVertex_(*this, v);
}

// Only what is cut back: a whole segment is looked at by its dimension. The ends of an arc of up to half a turn move
// towards each other, and so the rest has a span while they do not meet.
void gxSMDGDPoly::checkRest_(int s) const
{
  if (!hasFillet_(previousVertexIndex_(s)) && !hasFillet_(s))
    return;
  if (isUsedUp_(s))
    return;
  if (hasNoRest_(s))
    throw gxShapesError::DegenerateShape();
  if (std::abs(segmentAngleSpan_(s).value()) > 180.0 && isArcSegment_(s))
    gxSMDGDPolyPrivate::roundedArcSegment_(*this, s);
}

// What segmentDimension() throws, it throws too. Of a line that may have any length nothing needs to be measured.
void gxSMDGDPoly::checkDimension_(int s) const
{
  gxDimTol const &tol = at_(s).segmentLengthTol_;
  bool const mayHaveAnyLength = tol.minTol() == kUnsetDim && tol.maxTol() == kUnsetDim;
  if (!mayHaveAnyLength || isArcSegment_(s))
    segmentDimension(s);
  else if (vertexPoint_(previousVertexIndex_(s)) == vertexPoint_(s))
    throw gxShapesError::DegenerateShape();
}

gxSMDDimension gxSMDGDPoly::segmentDimension(long segment) const
{
  int const s = segmentIndex_(static_cast<int>(vertexAt_(segment, false)), false);
  gxDimTol tol = at_(s).segmentLengthTol_;
  tol.nomDim(segmentLength_(s));
  return gxSMDDimension(tol);
}
