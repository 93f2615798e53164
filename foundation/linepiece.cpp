#include "foundation/lineseg.h"
#include "foundation/outline.h"

#include <algorithm>
#include <cmath>

// Straight pieces.

gxVector<2> gf_point(gx_LinePiece const &piece, double param)
{
  if (param == 1.0)
    return piece.to;
  return piece.from + (piece.to - piece.from) * param;
}

gxVector<2> gf_tangent(gx_LinePiece const &piece, double)
{
  return piece.to - piece.from;
}

gx_Nearest gf_nearest(gx_LinePiece const &piece, gxVector<2> const &p)
{
  gxVector<2> const along = piece.to - piece.from;
  double const square = along * along;
  double const param = square > 0.0 ? std::clamp(along * (p - piece.from) / square, 0.0, 1.0) : 0.0;
  gxVector<2> const point = gf_point(piece, param);
  return {point, param, p.distance(point)};
}

gxRect gf_bounds(gx_LinePiece const &piece)
{
  return gxRect::around(piece.from, piece.to);
}

double gf_lengthTo(gx_LinePiece const &piece, double param)
{
  return param * piece.from.distance(piece.to);
}

double gf_paramAtLength(gx_LinePiece const &piece, double length)
{
  double const whole = gf_length(piece);
  return whole > 0.0 ? std::clamp(length / whole, 0.0, 1.0) : 0.0;
}

double gf_rotation(gx_LinePiece const &)
{
  return 0.0;
}

double gf_winding(gx_LinePiece const &piece, gxVector<2> const &p)
{
  gxVector<2> const a = piece.from - p, b = piece.to - p;
  return std::atan2(a.cross(b), a * b);
}

double gf_doubleArea(gx_LinePiece const &piece)
{
  return piece.from.cross(piece.to);
}

gx_LinePiece gf_part(gx_LinePiece const &piece, double from, double to)
{
  return {gf_point(piece, from), gf_point(piece, to)};
}

gx_LinePiece gf_mapped(gx_LinePiece const &piece, gxXform<2> const &xform)
{
  return {xform * piece.from, xform * piece.to};
}

double gf_chords(gx_LinePiece const &, double)
{
  return 1.0;
}

std::vector<double> gf_crossings(gx_LinePiece const &piece, gxVector<2> const &a, gxVector<2> const &b)
{
  gxVector<2> const along = piece.to - piece.from, across = b - a;
  double const sine = along.cross(across);
  if (sine == 0.0)
    return {};
  double const param = (a - piece.from).cross(across) / sine;
  double const other = (a - piece.from).cross(along) / sine;
  if (param >= 0.0 && param <= 1.0 && other >= 0.0 && other <= 1.0)
    return {param};
  return {};
}

gxPtrHandle<gxShape> gf_shapeOf(gx_LinePiece const &piece)
{
  return new gxLineSeg(piece.from, piece.to);
}
