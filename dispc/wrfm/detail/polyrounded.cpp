#include "dispc/wrfm/detail/polyrounded.h"

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/detail/polyfields.h"

namespace
{

using Private = gxSMDGDPolyPrivate;

struct Closest {
  gxVector<2> p;

  gxVector<2> operator()(gxVector<2> const &point) const { return point; }
  template <class Segment>
  gxVector<2> operator()(Segment const &segment) const
  {
    return segment.closestPoint(p);
  }
};

/// For each pair of kinds; of a line and an arc it is the arc that looks for points.
struct Meet {
  double tolerance;

  template <class Piece>
  gx_Meeting operator()(gxVector<2> const &point, Piece const &piece) const
  {
    gx_Meeting meeting;
    if (gx_holds(piece, point, tolerance))
      meeting.add(point);
    return meeting;
  }
  gx_Meeting operator()(gx2SegmentLine const &line, gxVector<2> const &point) const { return (*this)(point, line); }
  gx_Meeting operator()(gx2SegmentArc const &arc, gxVector<2> const &point) const { return (*this)(point, arc); }
  gx_Meeting operator()(gx2SegmentLine const &line, gx2SegmentArc const &arc) const { return (*this)(arc, line); }
  template <class A, class B>
  gx_Meeting operator()(A const &a, B const &b) const
  {
    return gx_SegmentMeet::meet(a, b, false);
  }
};

}  // namespace

gx_RoundedPiece gx_roundedVertex(gxSMDGDPoly const &poly, int v)
{
  if (Private::vertexIsRounded_(poly, v) && !Private::isEndVertex(poly, v))
    return Private::roundedArcVertex_(poly, v);
  return poly.vertex(v, false).point();
}

gx_RoundedPiece gx_roundedPiece(gxSMDGDPoly const &poly, int s)
{
  if (Private::isUsedUp_(poly, s))
    return gx_PolyFields::prevRoundPoints(poly)[static_cast<std::size_t>(s)];
  if (Private::isLineSegment_(poly, s))
    return Private::roundedLineSegment_(poly, s);
  return Private::roundedArcSegment_(poly, s);
}

gxVector<2> gx_closestPoint(gx_RoundedPiece const &piece, gxVector<2> const &p)
{
  return std::visit(Closest{p}, piece);
}

gx_Meeting gx_meet(gx_RoundedPiece const &a, gx_RoundedPiece const &b, double tolerance)
{
  return std::visit(Meet{tolerance}, a, b);
}
