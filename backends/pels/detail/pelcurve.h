#pragma once

#include "backends/pels/detail/pelcanvas.h"
#include "backends/pels/detail/peldash.h"
#include "foundation/export.h"
#include "foundation/outline.h"
#include "foundation/vector.h"

#include <vector>

/// @file
/// One-pel arcs of ellipses, and the chords of arcs. An arc is a gx_ArcPiece: center + u cos(t) + v sin(t) for t from
/// start through span.

/// Draws the one-pel outline of an arc, in coordinates in which whole numbers are the centers of pels.
///
/// Wherever the arc crosses a line through the centers of a column or of a row, the pel on that line nearest to the
/// crossing is drawn; of two equally near ones (to 1e-9) the one inside the ellipse. An arc of less than a turn has
/// also the pels nearest to its ends. The result is connected. Of an ellipse that is flat, chords are drawn as
/// one-pel lines.
/// @param dash measured along the arc, from its start, which is at @p phase of the pattern
GX_API void gf_drawPelArc(gx_PelCanvas &canvas, gx_ArcPiece const &arc, gx_PelDash const &dash = gx_PelDash(),
                          double phase = 0.0);

/// True if the ellipse is thinner than 1e-12 of its length: a line that runs forth and back, or a point.
GX_API bool gf_isFlat(gx_ArcPiece const &arc);

/// A place on an arc.
struct gx_ArcPlace {
  gxVector<2> unit;    ///< (cos t, sin t)
  gxVector<2> point;   ///< on the arc
  gxVector<2> normal;  ///< of length 1, at a right angle to the arc; zero on a degenerate ellipse
};

/// How finely an arc is broken into chords, and which parts are of no use.
struct gx_ArcFineness {
  double tolerance = 1.0 / 64;      ///< distance of a chord from the curve, in pels
  double halfWidth = 0.0;           ///< the tolerance holds at this distance on both sides of the curve, too
  gx_PelBox const *seen = nullptr;  ///< parts farther than halfWidth outside need no more than one chord
};

/// Places on an arc, start and end included, so dense that the chords between them meet the tolerance (or that a turn
/// has 2^14 long ones, where nothing says which parts are seen). Empty if a coordinate is not finite.
GX_API std::vector<gx_ArcPlace> gf_arcPlaces(gx_ArcPiece const &arc, gx_ArcFineness const &fineness);
