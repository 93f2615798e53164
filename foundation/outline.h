#pragma once

/// @file
/// The common ground of all shapes: an outline is a list of contours, a contour a chain of smooth pieces, and a piece
/// one of a few plain curves. Lengths, boxes, nearest points, turning and sampling are written once per curve here,
/// and the operations of gxShape work on outlines.

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/rect.h"
#include "foundation/shape.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <variant>
#include <vector>

/// A straight piece.
struct gx_LinePiece {
  gxVector<2> from;
  gxVector<2> to;
};

/// A piece of an ellipse: center + u cos(t) + v sin(t) for t from `start` through `span`, which may be negative and
/// is at most a turn. u and v are any pair of conjugate half-diameters, so that every linear map keeps the form.
struct gx_ArcPiece {
  gxVector<2> center;
  gxVector<2> u;
  gxVector<2> v;
  double start = 0.0;
  double span = gf_turnRadians;

  gxVector<2> at(double t) const { return center + u * std::cos(t) + v * std::sin(t); }
  gxVector<2> derivativeAt(double t) const { return v * std::cos(t) - u * std::sin(t); }
};

/// One smooth piece. A piece runs over the parameter 0 to 1.
using gx_Piece = std::variant<gx_LinePiece, gx_ArcPiece>;

/// A chain of pieces, each of which begins where the one before ends; if closed, the last ends where the first begins.
struct gx_Contour {
  std::vector<gx_Piece> pieces;
  bool closed = false;
};

/// All contours of a shape, in the order of its perimeter.
struct gx_Outline {
  std::vector<gx_Contour> contours;

  gx_Contour &addContour(bool closed)
  {
    contours.push_back({{}, closed});
    return contours.back();
  }
};

/// The point of a piece that is nearest to some point.
struct gx_Nearest {
  gxVector<2> point;
  double param = 0.0;     ///< where on the piece, 0 to 1
  double distance = 0.0;  ///< how far off
};

// For every kind of piece. A place on a piece is a parameter from 0 to 1. Each new kind of piece brings one overload
// of each function below; the forms for gx_Piece follow of themselves.

#define GX_PIECE_OPERATIONS(Piece)                                                                         \
  GX_API gxVector<2> gf_point(Piece const &piece, double param);                                           \
  /* Derivative by the parameter, taken as a limit where it vanishes; zero for a piece without extent. */  \
  GX_API gxVector<2> gf_tangent(Piece const &piece, double param);                                         \
  /* The first of the nearest points. */                                                                   \
  GX_API gx_Nearest gf_nearest(Piece const &piece, gxVector<2> const &p);                                  \
  /* The smallest upright rectangle round the piece. */                                                    \
  GX_API gxRect gf_bounds(Piece const &piece);                                                             \
  /* Length from the start to a place. */                                                                  \
  GX_API double gf_lengthTo(Piece const &piece, double param);                                             \
  /* The place at a length from the start. */                                                              \
  GX_API double gf_paramAtLength(Piece const &piece, double length);                                       \
  /* Signed angle by which the tangent turns from start to end. */                                         \
  GX_API double gf_rotation(Piece const &piece);                                                           \
  /* Signed angle by which the direction from p turns; p is not on the piece. */                           \
  GX_API double gf_winding(Piece const &piece, gxVector<2> const &p);                                      \
  /* Twice the signed area between the piece and the origin. */                                            \
  GX_API double gf_doubleArea(Piece const &piece);                                                         \
  /* The piece between two places; from > to gives it reversed. */                                         \
  GX_API Piece gf_part(Piece const &piece, double from, double to);                                        \
  GX_API Piece gf_mapped(Piece const &piece, gxXform<2> const &xform);                                     \
  /* How many equal steps of the parameter keep the chords within the tolerance; at least 1. */            \
  GX_API double gf_chords(Piece const &piece, double tolerance);                                           \
  /* The places where the piece meets the straight line from a to b, ends included; in order. */           \
  GX_API std::vector<double> gf_crossings(Piece const &piece, gxVector<2> const &a, gxVector<2> const &b); \
  /* The piece as a shape of its own. */                                                                   \
  GX_API gxPtrHandle<gxShape> gf_shapeOf(Piece const &piece);

GX_PIECE_OPERATIONS(gx_LinePiece)
GX_PIECE_OPERATIONS(gx_ArcPiece)
GX_PIECE_OPERATIONS(gx_Piece)

template <class Piece>
double gf_length(Piece const &piece)
{
  return gf_lengthTo(piece, 1.0);
}

/// The box of all pieces; empty for an outline without pieces.
GX_API gxRect gf_bounds(gx_Outline const &outline);
/// Length of all contours.
GX_API double gf_length(gx_Outline const &outline);
