#pragma once

#include "dispc/wrfm/detail/segmentmeet.h"
#include "dispc/wrfm/polyprivate.h"

#include <utility>
#include <variant>

/// A piece of an outline, where the kind does not matter to what is asked of it.
using gx_PolyPiece = std::variant<gx2SegmentLine, gx2SegmentArc>;

/// The segment before rounding.
inline gx_PolyPiece gx_plainSegment(gxSMDGDPoly const &poly, int s)
{
  if (gxSMDGDPolyPrivate::isLineSegment_(poly, s))
    return gxSMDGDPolyPrivate::lineSegment_(poly, s);
  return gxSMDGDPolyPrivate::arcSegment_(poly, s);
}

/// The segment between its roundings, which do not use it up.
inline gx_PolyPiece gx_roundedSegment(gxSMDGDPoly const &poly, int s)
{
  if (gxSMDGDPolyPrivate::isLineSegment_(poly, s))
    return gxSMDGDPolyPrivate::roundedLineSegment_(poly, s);
  return gxSMDGDPolyPrivate::roundedArcSegment_(poly, s);
}

/// Asks a piece: gx_ask(piece, [](auto const &p) { return p.length(); }).
template <class Question>
auto gx_ask(gx_PolyPiece const &piece, Question question)
{
  return std::visit(std::move(question), piece);
}

/// Common points. Of a line and an arc it is the arc that looks for them.
inline gx_Meeting gx_meet(gx_PolyPiece const &a, gx_PolyPiece const &b, bool excludeEnds)
{
  auto const *const lineA = std::get_if<gx2SegmentLine>(&a);
  auto const *const lineB = std::get_if<gx2SegmentLine>(&b);
  if (lineA && lineB)
    return gx_SegmentMeet::meet(*lineA, *lineB, excludeEnds);
  if (lineA)
    return gx_SegmentMeet::meet(std::get<gx2SegmentArc>(b), *lineA, excludeEnds);
  if (lineB)
    return gx_SegmentMeet::meet(std::get<gx2SegmentArc>(a), *lineB, excludeEnds);
  return gx_SegmentMeet::meet(std::get<gx2SegmentArc>(a), std::get<gx2SegmentArc>(b), excludeEnds);
}
