#include "foundation/outline.h"

namespace
{

template <class Operation>
decltype(auto) onPiece(gx_Piece const &piece, Operation operation)
{
  return std::visit(operation, piece);
}

}  // namespace

gxVector<2> gf_point(gx_Piece const &piece, double param)
{
  return onPiece(piece, [&](auto const &p) { return gf_point(p, param); });
}

gxVector<2> gf_tangent(gx_Piece const &piece, double param)
{
  return onPiece(piece, [&](auto const &p) { return gf_tangent(p, param); });
}

gx_Nearest gf_nearest(gx_Piece const &piece, gxVector<2> const &p)
{
  return onPiece(piece, [&](auto const &q) { return gf_nearest(q, p); });
}

gxRect gf_bounds(gx_Piece const &piece)
{
  return onPiece(piece, [&](auto const &p) { return gf_bounds(p); });
}

double gf_lengthTo(gx_Piece const &piece, double param)
{
  return onPiece(piece, [&](auto const &p) { return gf_lengthTo(p, param); });
}

double gf_paramAtLength(gx_Piece const &piece, double length)
{
  return onPiece(piece, [&](auto const &p) { return gf_paramAtLength(p, length); });
}

double gf_rotation(gx_Piece const &piece)
{
  return onPiece(piece, [&](auto const &p) { return gf_rotation(p); });
}

double gf_winding(gx_Piece const &piece, gxVector<2> const &p)
{
  return onPiece(piece, [&](auto const &q) { return gf_winding(q, p); });
}

double gf_doubleArea(gx_Piece const &piece)
{
  return onPiece(piece, [&](auto const &p) { return gf_doubleArea(p); });
}

gx_Piece gf_part(gx_Piece const &piece, double from, double to)
{
  return onPiece(piece, [&](auto const &p) -> gx_Piece { return gf_part(p, from, to); });
}

gx_Piece gf_mapped(gx_Piece const &piece, gxXform<2> const &xform)
{
  return onPiece(piece, [&](auto const &p) -> gx_Piece { return gf_mapped(p, xform); });
}

double gf_chords(gx_Piece const &piece, double tolerance)
{
  return onPiece(piece, [&](auto const &p) { return gf_chords(p, tolerance); });
}

std::vector<double> gf_crossings(gx_Piece const &piece, gxVector<2> const &a, gxVector<2> const &b)
{
  return onPiece(piece, [&](auto const &p) { return gf_crossings(p, a, b); });
}

gxPtrHandle<gxShape> gf_shapeOf(gx_Piece const &piece)
{
  return onPiece(piece, [](auto const &p) { return gf_shapeOf(p); });
}

gxRect gf_bounds(gx_Outline const &outline)
{
  gxRect box;
  for (gx_Contour const &contour : outline.contours)
    for (gx_Piece const &piece : contour.pieces)
      box = box.enclose(gf_bounds(piece));
  return box;
}

double gf_length(gx_Outline const &outline)
{
  double length = 0.0;
  for (gx_Contour const &contour : outline.contours)
    for (gx_Piece const &piece : contour.pieces)
      length += gf_length(piece);
  return length;
}
