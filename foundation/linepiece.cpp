#include "foundation/lineseg.h"
#include "foundation/outline.h"

#include <algorithm>
#include <cmath>

// Straight pieces.

gxVector<2> gx_LinePiece::point(double param) const
{
  if (param == 1.0)
    return to;
  return from + (to - from) * param;
}

gxVector<2> gx_LinePiece::tangent(double) const
{
  return to - from;
}

gx_Nearest gx_LinePiece::nearest(gxVector<2> const &p) const
{
  constexpr double large = 1e150;  // beyond it squares overflow
  bool const isLarge = std::abs(to.x() - from.x()) > large || std::abs(to.y() - from.y()) > large;
  double const scale = isLarge ? 0x1p-600 : 1.0;
  gxVector<2> const along = (to - from) * scale;
  double const square = along * along;
  double const param = square > 0.0 ? std::clamp(along * ((p - from) * scale) / square, 0.0, 1.0) : 0.0;
  gxVector<2> const found = point(param);
  return {found, param, p.distance(found)};
}

gxRect gx_LinePiece::bounds() const
{
  return gxRect::around(from, to);
}

double gx_LinePiece::lengthTo(double param) const
{
  return param * from.distance(to);
}

double gx_LinePiece::paramAtLength(double length) const
{
  double const whole = lengthTo(1.0);
  return whole > 0.0 ? std::clamp(length / whole, 0.0, 1.0) : 0.0;
}

double gx_LinePiece::rotation() const
{
  return 0.0;
}

double gx_LinePiece::winding(gxVector<2> const &p) const
{
  gxVector<2> const a = from - p, b = to - p;
  return std::atan2(a.cross(b), a * b);
}

double gx_LinePiece::doubleArea() const
{
  return from.cross(to);
}

gx_LinePiece gx_LinePiece::part(double begin, double end) const
{
  return {point(begin), point(end)};
}

gx_LinePiece gx_LinePiece::mapped(gxXform<2> const &xform) const
{
  return {xform * from, xform * to};
}

bool gx_LinePiece::isFinite() const
{
  return from.isFinite() && to.isFinite();
}

double gx_LinePiece::chords(double) const
{
  return 1.0;
}

std::vector<double> gx_LinePiece::crossings(gxVector<2> const &a, gxVector<2> const &b) const
{
  gxVector<2> const along = to - from, across = b - a;
  double const sine = along.cross(across);
  if (sine == 0.0)
    return {};
  double const param = (a - from).cross(across) / sine;
  double const other = (a - from).cross(along) / sine;
  if (param >= 0.0 && param <= 1.0 && other >= 0.0 && other <= 1.0)
    return {param};
  return {};
}

gxPtrHandle<gxShape> gx_LinePiece::shape() const
{
  return new gxLineSeg(from, to);
}
