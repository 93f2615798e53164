#pragma once

#include "dispc/wrfm/polyvertex.h"
#include "footprint/footprint.h"

#include <vector>

/// The outlines of pads and of drawn shapes, as the vertices of closed outlines. Curves stay exact: corners are
/// fillets, round ends half circles. Nothing is checked here; the outline that is made of the vertices does that.
namespace gx_shapes
{

using Vertices = std::vector<gxSMDGDPolyVertex>;

/// A line or an arc.
struct Piece {
  gxVector<2> start, end;
  double span = 0.0;  ///< degrees, 0 for a line

  Piece reversed() const { return {end, start, -span}; }
};

gxSMDGDPolyVertex vertexOf(gxVector<2> const &p, double span = 0.0, double radius = 0.0);

/// An arc through a point between its ends; a line if the three lie on one.
Piece arcThrough(gxVector<2> const &start, gxVector<2> const &mid, gxVector<2> const &end);
/// The sides of a polygon, in order.
std::vector<Piece> sidesOf(gxFootprint::Graphic const &polygon);

Vertices circle(gxVector<2> const &center, double radius);
Vertices rectangle(gxVector<2> const &a, gxVector<2> const &b);
/// A polygon whose sides are @p pieces; those of no length are left out.
Vertices chain(std::vector<Piece> const &pieces);
/// All within a distance of a line or an arc, with round ends; a circle about a line of no length.
Vertices thick(Piece const &piece, double radius);

/// A pad but for the primitives of a custom one: about (0, 0), not turned.
Vertices ofPad(gxFootprint::Pad const &pad);
/// Whether ofPad() gives the same for both.
bool areAlike(gxFootprint::Pad const &a, gxFootprint::Pad const &b);

}  // namespace gx_shapes
