#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/poly.h"

#include <algorithm>

// Where an outline meets itself. What lies far away, by the boxes round the pieces, is left out where these are
// current.

namespace
{
/// Adjacent pieces meet at their joint, whatever the rounding of its coordinates: nearer than this, in units of the
/// size of the outline or, of a flat arc, of its radius, a common point is the joint.
constexpr double kJointTolerance = 1e-9;
constexpr double kFlatJointTolerance = 1e-11;

double radiusOf(gx_PolyPiece const &piece)
{
  auto const *const arc = std::get_if<gx2SegmentArc>(&piece);
  return arc ? arc->radius(gxDegree()) : 0.0;
}

double jointTolerance(double size, gx_PolyPiece const &a, gx_PolyPiece const &b)
{
  return std::max(kJointTolerance * size, kFlatJointTolerance * std::max(radiusOf(a), radiusOf(b)));
}
}  // namespace

bool gxSMDGDPoly::segmentIntersectsVertex_(int s, int v) const
{
  if (!hasFillet_(v) || s == previousSegmentIndex_(v) || s == nextSegmentIndex_(v) || isUsedUp_(s))
    return false;
  return gx_meet(gxSMDGDPolyPrivate::roundedArcVertex_(*this, v), gx_roundedSegment(*this, s), false).count != 0;
}

bool gxSMDGDPoly::vertexIntersectsVertex_(int v, int w) const
{
  if (!hasFillet_(v) || !hasFillet_(w))
    return false;
  gx2SegmentArc const arc = gxSMDGDPolyPrivate::roundedArcVertex_(*this, v);
  return gx_SegmentMeet::meet(arc, gxSMDGDPolyPrivate::roundedArcVertex_(*this, w), false).count != 0;
}

gx_Meeting gxSMDGDPoly::meetingOf_(int s, int t) const
{
  bool const adjacent = s == previousVertexIndex_(t) || t == previousVertexIndex_(s);
  bool const lines = isLineSegment_(s) && isLineSegment_(t);
  if ((adjacent && lines) || isUsedUp_(s) || isUsedUp_(t))
    return {};
  gx_PolyPiece const first = gx_roundedSegment(*this, s), second = gx_roundedSegment(*this, t);
  gx_Meeting const points = gx_meet(first, second, adjacent);
  if (!adjacent || points.count == 0)
    return points;

  double const near = jointTolerance(outlineSize_(), first, second);
  auto const isJoint = [&](gxVector<2> const &p, int before, int after) {
    return previousVertexIndex_(after) == before && !hasFillet_(before) && p.distance(vertexPoint_(before)) <= near;
  };
  return points.filtered([&](gxVector<2> const &p) { return !isJoint(p, s, t) && !isJoint(p, t, s); });
}

std::vector<gxVector<2>> gxSMDGDPoly::segmentIntersection_(int s, int t) const
{
  return meetingOf_(s, t).toVector();
}

template <class Visit>
bool gxSMDGDPoly::anyNear_(int i, int last, Visit visit) const
{
  std::size_t const end = vertexAt_(last, last == -1);
  if (boxes_.areCurrent(vertices_.size()))
    return boxes_.anyNear(static_cast<std::size_t>(i), end, [&](std::size_t k) { return visit(static_cast<int>(k)); });
  for (std::size_t k = 0; k <= end; ++k)
    if (visit(static_cast<int>(k)))
      return true;
  return false;
}

bool gxSMDGDPoly::segmentIntersectsPoly_(int s, int last) const
{
  return anyNear_(segmentIndex_(s, false), last, [&](int k) {
    return segmentIntersectsVertex_(s, k) || (k != s && previousSegmentIndex_(k) != -1 && meetingOf_(s, k).count != 0);
  });
}

bool gxSMDGDPoly::vertexIntersectsPoly_(int v, int last) const
{
  return hasFillet_(v) && anyNear_(v, last, [&](int k) {
           return (k != v && vertexIntersectsVertex_(v, k)) ||
                  (previousSegmentIndex_(k) != -1 && segmentIntersectsVertex_(k, v));
         });
}

bool gxSMDGDPoly::segmentIntersectsSegment_(int s, int t) const
{
  int const joints = (s == previousVertexIndex_(t) ? 1 : 0) + (t == previousVertexIndex_(s) ? 1 : 0);
  if (joints == 0)
    return meetingOf_(s, t).count != 0;
  if (isLineSegment_(s) && isLineSegment_(t))
    return false;
  gx_PolyPiece const first = gx_plainSegment(*this, s), second = gx_plainSegment(*this, t);
  double const near = jointTolerance(outlineSize_(), first, second);
  auto const isJoint = [&](gxVector<2> const &p, int before, int after) {
    return previousVertexIndex_(after) == before && p.distance(vertexPoint_(before)) <= near;
  };
  for (gxVector<2> const &p : gx_meet(first, second, false))
    if (!isJoint(p, s, t) && !isJoint(p, t, s))
      return true;
  return false;
}
