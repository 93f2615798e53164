// Where two outlines meet, and where two pieces of one outline do. All of it reckons with the rounded pieces.

#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/detail/polyrounded.h"
#include "dispc/wrfm/polyprivate.h"

#include <algorithm>

namespace
{

/// A point this close to a piece lies on it: in units of the size of the outlines, and by itself.
constexpr double onPieceTolerance = 1e-11;
constexpr double smallestTolerance = 1e-15;

using Points = std::vector<gxVector<2>>;

void appendMeetings(gx_RoundedPiece const &piece, gxSMDGDPoly const &other, double tolerance, Points &points)
{
  gx_visitPieces(other, [&](gx_RoundedPiece const &of) {
    gx_Meeting const meeting = gx_meet(piece, of, tolerance);
    points.insert(points.end(), meeting.begin(), meeting.end());
  });
}

}  // namespace

double gxSMDGDPoly::onPieceTolerance_(gxSMDGDPoly const &a, gxSMDGDPoly const &b)
{
  return std::max(smallestTolerance, onPieceTolerance * std::max(a.outlineSize_(), b.outlineSize_()));
}

Points gxSMDGDPoly::intersection_(gxSMDGDPoly const &other) const
{
  Points points;
  double const tolerance = onPieceTolerance_(*this, other);
  gx_visitPieces(*this, [&](gx_RoundedPiece const &piece) { appendMeetings(piece, other, tolerance, points); });
  return points;
}

Points gxSMDGDPoly::intersectionVertex_(gxSMDGDPoly const &other, int v) const
{
  Points points;
  appendMeetings(gx_roundedVertex(*this, v), other, onPieceTolerance_(*this, other), points);
  return points;
}

Points gxSMDGDPoly::intersectionSegment_(gxSMDGDPoly const &other, int s) const
{
  Points points;
  appendMeetings(gx_roundedPiece(*this, s), other, onPieceTolerance_(*this, other), points);
  return points;
}

Points gxSMDGDPoly::vertexIntersection_(int v, int w) const
{
  if (!hasFillet_(v) || !hasFillet_(w))
    return {};
  return gx_meet(gx_roundedVertex(*this, v), gx_roundedVertex(*this, w), 0.0).toVector();
}

Points gxSMDGDPoly::segmentVertexIntersection_(int s, int v) const
{
  if (!hasFillet_(v))
    return {};
  return gx_meet(gx_roundedVertex(*this, v), gx_roundedPiece(*this, s), 0.0).toVector();
}
