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

#include <array>
#include <cstddef>
#include <variant>
#include <vector>

/// The point of a piece that is nearest to some point.
struct gx_Nearest {
  gxVector<2> point;
  double param = 0.0;     ///< where on the piece, 0 to 1
  double distance = 0.0;  ///< how far off
};

/// The members of every kind of piece; what they mean is told at gx_Piece.
#define GX_PIECE(Kind)                                                             \
  gxVector<2> point(double param) const;                                           \
  gxVector<2> tangent(double param) const;                                         \
  gx_Nearest nearest(gxVector<2> const &p) const;                                  \
  gxRect bounds() const;                                                           \
  double lengthTo(double param) const;                                             \
  double paramAtLength(double length) const;                                       \
  double rotation() const;                                                         \
  double winding(gxVector<2> const &p) const;                                      \
  double doubleArea() const;                                                       \
  Kind part(double begin, double end) const;                                       \
  Kind mapped(gxXform<2> const &xform) const;                                      \
  double chords(double tolerance) const;                                           \
  bool isFinite() const;                                                           \
  std::vector<double> crossings(gxVector<2> const &a, gxVector<2> const &b) const; \
  gxPtrHandle<gxShape> shape() const;

/// A straight piece.
struct GX_API gx_LinePiece {
  gxVector<2> from;
  gxVector<2> to;

  GX_PIECE(gx_LinePiece)
};

/// A piece of an ellipse: center + u cos(t) + v sin(t) for t from `start` through `span`, which may be negative and
/// is at most a turn. u and v are any pair of conjugate half-diameters, so that every linear map keeps the form.
struct GX_API gx_ArcPiece {
  gxVector<2> center;
  gxVector<2> u;
  gxVector<2> v;
  double start = 0.0;
  double span = gf_turnRadians;

  gxVector<2> at(double t) const { return center + u * std::cos(t) + v * std::sin(t); }
  gxVector<2> derivativeAt(double t) const { return v * std::cos(t) - u * std::sin(t); }

  GX_PIECE(gx_ArcPiece)
};

/// A rational Bezier curve of degree three. The weights are positive and at most 1; equal weights leave a polynomial.
struct GX_API gx_BezierPiece {
  std::array<gxVector<2>, 4> points;
  std::array<double, 4> weights = {1.0, 1.0, 1.0, 1.0};

  /// True if all weights are equal.
  bool isPolynomial() const;
  /// Many points at once: those at (first + i) * step for i from 0 to n - 1.
  void evaluate(double first, double step, std::size_t n, gxVector<2> *to) const;

  GX_PIECE(gx_BezierPiece)
};

/// One smooth piece of an outline, of any kind. A place on it is a parameter from 0 to 1. A new kind of curve joins
/// the list of alternatives and brings the members below.
class GX_API gx_Piece : public std::variant<gx_LinePiece, gx_ArcPiece, gx_BezierPiece>
{
 public:
  using Kinds = std::variant<gx_LinePiece, gx_ArcPiece, gx_BezierPiece>;

 private:
  template <class Operation>
  decltype(auto) visit(Operation operation) const
  {
    return std::visit(operation, static_cast<Kinds const &>(*this));
  }

 public:
  using Kinds::Kinds;

  gxVector<2> point(double param) const
  {
    return visit([&](auto const &p) { return p.point(param); });
  }
  /// Derivative by the parameter, taken as a limit where it vanishes; zero for a piece without extent.
  gxVector<2> tangent(double param) const
  {
    return visit([&](auto const &p) { return p.tangent(param); });
  }
  /// The first of the nearest points.
  gx_Nearest nearest(gxVector<2> const &p) const
  {
    return visit([&](auto const &piece) { return piece.nearest(p); });
  }
  /// The smallest upright rectangle round the piece.
  gxRect bounds() const
  {
    return visit([&](auto const &p) { return p.bounds(); });
  }
  double length() const { return lengthTo(1.0); }
  /// Length from the start to a place.
  double lengthTo(double param) const
  {
    return visit([&](auto const &p) { return p.lengthTo(param); });
  }
  /// The place at a length from the start, at the ends for lengths beyond them.
  double paramAtLength(double length) const
  {
    return visit([&](auto const &p) { return p.paramAtLength(length); });
  }
  /// Signed angle by which the tangent turns from start to end.
  double rotation() const
  {
    return visit([&](auto const &p) { return p.rotation(); });
  }
  /// Signed angle by which the direction from @p p turns from start to end; @p p is not on the piece.
  double winding(gxVector<2> const &p) const
  {
    return visit([&](auto const &piece) { return piece.winding(p); });
  }
  /// Twice the signed area that the line from the origin to the piece sweeps over.
  double doubleArea() const
  {
    return visit([&](auto const &p) { return p.doubleArea(); });
  }
  /// The piece between two places; it runs backward if @p begin lies behind @p end.
  gx_Piece part(double begin, double end) const
  {
    return visit([&](auto const &p) -> gx_Piece { return p.part(begin, end); });
  }
  gx_Piece mapped(gxXform<2> const &xform) const
  {
    return visit([&](auto const &p) -> gx_Piece { return p.mapped(xform); });
  }
  /// How many equal steps of the parameter keep the chords within the tolerance of the piece: a whole number, at
  /// least 1; for arcs at least one for each quarter turn. A tolerance of 0 sets no limit.
  double chords(double tolerance) const
  {
    return visit([&](auto const &p) { return p.chords(tolerance); });
  }
  /// The places where the piece meets the straight line from @p a to @p b, ends included, in order. A piece that runs
  /// along that line meets it nowhere.
  std::vector<double> crossings(gxVector<2> const &a, gxVector<2> const &b) const
  {
    return visit([&](auto const &piece) { return piece.crossings(a, b); });
  }
  /// The piece as a shape of its own.
  gxPtrHandle<gxShape> shape() const
  {
    return visit([&](auto const &p) { return p.shape(); });
  }
  /// True if all numbers that make the piece are finite.
  bool isFinite() const
  {
    return visit([](auto const &p) { return p.isFinite(); });
  }
  bool isStraight() const { return std::holds_alternative<gx_LinePiece>(*this); }
  /// False for a piece that has collapsed to a point.
  bool hasDirection() const { return !(tangent(0.0) == gxVector<2>()); }
};

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
  /// Of a shape. Throws gxShapesError::BadGeom if a piece is not finite.
  GX_API explicit gx_Outline(gxShape const &shape);
  gx_Outline() = default;

  /// The box of all pieces; empty for an outline without pieces.
  GX_API gxRect bounds() const;
  /// Length of all contours.
  GX_API double length() const;
};
