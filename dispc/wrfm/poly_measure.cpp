#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/poly.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>
#include <limits>

// ---- Segments

double gxSMDGDPoly::segmentLength_(int s) const
{
  return gx_ask(gx_plainSegment(*this, s), [](auto const &piece) { return piece.length(); });
}

double gxSMDGDPoly::roundedSegmentLength_(int s) const
{
  if (isUsedUp_(s))
    return 0.0;
  return gx_ask(gx_roundedSegment(*this, s), [](auto const &piece) { return piece.length(); });
}

gxDegree gxSMDGDPoly::segmentStartDirection_(int s) const
{
  return gx_ask(gx_plainSegment(*this, s), [](auto const &piece) { return piece.startDirection(); });
}

gxDegree gxSMDGDPoly::segmentEndDirection_(int s) const
{
  return gx_ask(gx_plainSegment(*this, s), [](auto const &piece) { return piece.endDirection(); });
}

gxVector<2> gxSMDGDPoly::closestSegmentPoint_(int s, gxVector<2> const &p) const
{
  return gx_ask(gx_plainSegment(*this, s), [&](auto const &piece) { return piece.closestPoint(p); });
}

gxVector<2> gxSMDGDPoly::closestRoundedSegmentPoint_(int s, gxVector<2> const &p) const
{
  if (isUsedUp_(s))
    return prevRoundPoints_[vertexAt_(s, false)];
  return gx_ask(gx_roundedSegment(*this, s), [&](auto const &piece) { return piece.closestPoint(p); });
}

// ---- The outline

gxVector<2> gxSMDGDPoly::centerOfMass_() const
{
  gxVector<2> sum;
  for (gxSMDGDPolyVertex const &v : vertices_)
    sum += v.point_;
  return vertices_.empty() ? sum : sum * (1.0 / static_cast<double>(vertices_.size()));
}

gxDegree gxSMDGDPoly::orientation_() const
{
  return numVertices() < 2 ? gxDegree() : gxDegree((vertexPoint_(1) - vertexPoint_(0)).angle());
}

double gxSMDGDPoly::outlineSize_() const
{
  if (vertices_.empty())
    return 0.0;
  gxVector<2> low = vertices_.front().point_;
  gxVector<2> high = low;
  for (gxSMDGDPolyVertex const &v : vertices_) {
    low = {std::min(low.x(), v.point_.x()), std::min(low.y(), v.point_.y())};
    high = {std::max(high.x(), v.point_.x()), std::max(high.y(), v.point_.y())};
  }
  return low.distance(high);
}

template <class Visit>
void gxSMDGDPoly::visitSegments_(Visit visit) const
{
  for (int s = 0; s < numVertices() && numVertices() > 1; ++s)
    if (previousSegmentIndex_(s) != -1)
      visit(s);
}

double gxSMDGDPoly::perimeter_(double minLength) const
{
  double sum = 0.0;
  auto const add = [&](double length) { sum += length > minLength ? length : 0.0; };
  visitSegments_([&](int s) {
    add(roundedSegmentLength_(s));
    if (hasFillet_(s))
      add(gxSMDGDPolyPrivate::roundedArcVertex_(*this, s).length());
  });
  return sum;
}

double gxSMDGDPoly::perimeter_(gxXform<2> const &xform) const
{
  double sum = 0.0;
  visitSegments_([&](int s) {
    if (!isUsedUp_(s))
      sum += gx_ask(gx_roundedSegment(*this, s), [&](auto const &piece) { return (xform * piece).length(); });
    if (hasFillet_(s))
      sum += (xform * gxSMDGDPolyPrivate::roundedArcVertex_(*this, s)).length();
  });
  return sum;
}

gxRect gxSMDGDPolyPrivate::segmentBoundingBox_(gxSMDGDPoly const &poly, int s, gxXform<2> const &xform)
{
  return gx_ask(gx_plainSegment(poly, s), [&](auto const &piece) { return (xform * piece).boundingBox(); });
}

gxRect gxSMDGDPoly::boundingBox(gxXform<2> const &xform) const
{
  if (numSegments() == 0)
    return {};
  double left = std::numeric_limits<double>::infinity(), bottom = left, right = -left, top = -left;  // of the lines
  double wild = 0.0;  // not 0 if a point is not finite
  auto const add = [&](gxVector<2> const &p) {
    left = std::min(left, p.x());
    right = std::max(right, p.x());
    bottom = std::min(bottom, p.y());
    top = std::max(top, p.y());
    wild += (p.x() - p.x()) + (p.y() - p.y());
  };
  gxRect ofArcs;
  std::size_t const n = vertices_.size();
  gxVector<2> from = xform.mapPoint(vertices_[isOpen_ ? 0 : n - 1].point_);
  for (std::size_t s = isOpen_, lastLine = n; s < n; ++s) {
    gxVector<2> const to = xform.mapPoint(vertices_[s].point_);
    if (isArcSegment_(static_cast<int>(s))) {
      ofArcs = ofArcs.enclose(gxSMDGDPolyPrivate::segmentBoundingBox_(*this, static_cast<int>(s), xform));
    } else if (from == to) {
      throw gxShapesError::DegenerateShape();
    } else {
      if (s == 0 || lastLine != s - 1)
        add(from);
      add(to);
      lastLine = s;
    }
    from = to;
  }
  if (!(left <= right))
    return ofArcs;
  gxVector<2> const low(left, bottom), high(right, top);
  return ofArcs.enclose(wild == 0.0 ? gxRect(low, high - low) : gxRect({wild, wild}, {wild, wild}));
}

double gxSMDGDPoly::extensionPerimeter_() const
{
  double sum = 0.0;
  visitSegments_([&](int s) {
    double const extension = forwardPercExtension_(s) + backwardPercExtension_(previousVertexIndex_(s));
    sum += extension * segmentLength_(s);
  });
  return sum;
}

void gxSMDGDPoly::appendSegmentLengths_(std::vector<double> &out) const
{
  visitSegments_([&](int s) {
    double const fillet = hasFillet_(s) ? gxSMDGDPolyPrivate::roundedArcVertex_(*this, s).length() : 0.0;
    out.push_back(roundedSegmentLength_(s) + fillet);
  });
}

// ---- For tools

std::vector<long> gxSMDGDPolyPrivate::subModelLabels(gxSMDGDPoly const &poly)
{
  return {poly.subModelLabels_.begin(), poly.subModelLabels_.end()};
}

gx2Rigid gxSMDGDPolyPrivate::position(gxSMDGDPoly const &poly)
{
  return {poly.orientation_(), poly.centerOfMass_()};
}

gxDegree gxSMDGDPolyPrivate::vertexAngle(gxSMDGDPoly const &poly, long v, bool wrap)
{
  int ps = -1;
  int ns = -1;
  poly.getSegmentIndices_(ps, ns, static_cast<int>(poly.vertexAt_(v, wrap)));
  if (ps == -1 || ns == -1)
    throw invalidIndex();
  return (gxDegree(180.0) - (poly.segmentStartDirection_(ns) - poly.segmentEndDirection_(ps))).signedNorm();
}

bool gxSMDGDPolyPrivate::isCircle(gxSMDGDPoly const &poly)
{
  constexpr double radiusTolerance = 0.01;
  constexpr double spanTolerance = 1.0;
  double firstRadius = -1.0;
  double sum = 0.0;
  bool round = true;
  poly.visitSegments_([&](int s) {
    if (poly.isUsedUp_(s))
      return;
    if (!round || !poly.isArcSegment_(s)) {
      round = false;
      return;
    }
    gx2SegmentArc const arc = roundedArcSegment_(poly, s);
    double const span = arc.angleSpan().value();
    double const radius = arc.center().distance(arc.p1());
    if (firstRadius < 0.0)
      firstRadius = radius;
    round = span * sum >= 0.0 && std::abs(radius - firstRadius) <= radiusTolerance;
    sum += span;
  });
  return round && std::abs(std::abs(sum) - gf_turnDegrees) <= spanTolerance;
}

gxDimTol gxSMDGDPolyPrivate::dimTol(gxSMDDimension const &dimension)
{
  gxDimTol tol(dimension.nomDim(), dimension.minDim(), dimension.maxDim(), gxDimTol::Limits);
  tol.tolType(tolType(dimension.scaleType()));
  return tol;
}
