#pragma once

#include "dispc/wrfm/detail/segmentmeet.h"
#include "dispc/wrfm/polyprivate.h"

#include <variant>

/// A piece of a rounded outline: the point of a sharp vertex, a segment between its roundings, or a fillet.
using gx_RoundedPiece = std::variant<gxVector<2>, gx2SegmentLine, gx2SegmentArc>;

/// The fillet of a vertex, or its point where it has none.
gx_RoundedPiece gx_roundedVertex(gxSMDGDPoly const &poly, int v);
/// The segment that ends at the vertex; a point if a fillet uses it up. Throws gxSMDGDPoly::invalidIndex if there is
/// none.
gx_RoundedPiece gx_roundedPiece(gxSMDGDPoly const &poly, int s);

/// The nearest point of a piece.
gxVector<2> gx_closestPoint(gx_RoundedPiece const &piece, gxVector<2> const &p);
/// True if the piece comes within @p tolerance of the point.
inline bool gx_holds(gx_RoundedPiece const &piece, gxVector<2> const &p, double tolerance)
{
  return gx_closestPoint(piece, p).distance(p) <= tolerance;
}
/// Common points, ends included. A point lies on a piece that comes within @p tolerance of it.
gx_Meeting gx_meet(gx_RoundedPiece const &a, gx_RoundedPiece const &b, double tolerance);

/// Calls visit(piece) with each vertex piece and the segment that ends there, in order.
template <class Visit>
void gx_visitPieces(gxSMDGDPoly const &poly, Visit visit)
{
  for (int i = 0; i < poly.numVertices(); ++i) {
    visit(gx_roundedVertex(poly, i));
    if (gxSMDGDPolyPrivate::previousSegmentIndex_(poly, i) != -1)
      visit(gx_roundedPiece(poly, i));
  }
}
