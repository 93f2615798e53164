#pragma once

#include "backends/pels/detail/pelcanvas.h"
#include "backends/pels/detail/pelcurve.h"
#include "backends/pels/detail/peldash.h"
#include "dispc/dispprop.h"
#include "foundation/export.h"
#include "foundation/vector.h"

#include <span>
#include <vector>

/// @file
/// Outlines by a pen of any width. Coordinates are those in which whole numbers are the centers of pels. The center of
/// a pen of an odd width follows them; that of an even width runs through the upper left corners of the pels, so that a
/// level line of width w covers w rows for every w.

/// What a pen of gxGraphicProps is like.
struct GX_API gx_PelPen {
  explicit gx_PelPen(gxGraphicProps const &props)
      : width(props.penWidth()), join(props.penJoin()), cap(props.penEndCap()), dash(props.penStyle(), props.penWidth())
  {
  }

  bool isThin() const { return width <= 1; }
  double halfWidth() const { return 0.5 * static_cast<double>(width); }
  /// From the centers of pels to coordinates of the surface.
  gxVector<2> shift() const { return width % 2 ? gxVector<2>(0.5, 0.5) : gxVector<2>(); }
  /// How far, in pels, what the pen draws may reach beyond its path.
  double reach() const;

  long width;
  gxGraphicProps::gePenJoin join;
  gxGraphicProps::gePenEndCap cap;
  gx_PelDash dash;
};

/// The dot of a pen: one pel, or a disk of the pen's width.
GX_API void gf_drawDot(gx_PelCanvas &canvas, gxVector<2> const &at, gx_PelPen const &pen);

/// Lines through whole-numbered points, from one to the next, and from the last to the first if @p closed. A single
/// point, and lines without length, give a dot. One that is not finite leaves out the lines to and from it.
GX_API void gf_strokeLines(gx_PelCanvas &canvas, std::span<gxVector<2> const> points, bool closed,
                           gx_PelPen const &pen);

/// The outline of an arc.
GX_API void gf_strokeArc(gx_PelCanvas &canvas, gx_ArcPiece const &arc, gx_PelPen const &pen);

/// The points of lines and arcs that follow each other, the arcs broken into chords. The last one is that of the end of
/// the last piece.
GX_API std::vector<gxVector<2>> gf_contourPoints(std::vector<gx_Piece> const &pieces, gx_ArcFineness const &fineness);

/// The outline of a closed contour. Of a one-pel pen, each piece has the pels of its own rule, a line those of the line
/// between the pels nearest to its ends.
GX_API void gf_strokeContour(gx_PelCanvas &canvas, std::vector<gx_Piece> const &pieces, gx_PelPen const &pen);
