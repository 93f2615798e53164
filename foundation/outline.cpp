#include "foundation/outline.h"

gxVector<2> gx_Piece::point(double param) const
{
  return visit([&](auto const &p) { return p.point(param); });
}

gxVector<2> gx_Piece::tangent(double param) const
{
  return visit([&](auto const &p) { return p.tangent(param); });
}

gx_Nearest gx_Piece::nearest(gxVector<2> const &p) const
{
  return visit([&](auto const &piece) { return piece.nearest(p); });
}

gxRect gx_Piece::bounds() const
{
  return visit([](auto const &p) { return p.bounds(); });
}

double gx_Piece::lengthTo(double param) const
{
  return visit([&](auto const &p) { return p.lengthTo(param); });
}

double gx_Piece::paramAtLength(double length) const
{
  return visit([&](auto const &p) { return p.paramAtLength(length); });
}

double gx_Piece::rotation() const
{
  return visit([](auto const &p) { return p.rotation(); });
}

double gx_Piece::winding(gxVector<2> const &p) const
{
  return visit([&](auto const &piece) { return piece.winding(p); });
}

double gx_Piece::doubleArea() const
{
  return visit([](auto const &p) { return p.doubleArea(); });
}

gx_Piece gx_Piece::part(double begin, double end) const
{
  return visit([&](auto const &p) -> gx_Piece { return p.part(begin, end); });
}

gx_Piece gx_Piece::mapped(gxXform<2> const &xform) const
{
  return visit([&](auto const &p) -> gx_Piece { return p.mapped(xform); });
}

double gx_Piece::chords(double tolerance) const
{
  return visit([&](auto const &p) { return p.chords(tolerance); });
}

std::vector<double> gx_Piece::crossings(gxVector<2> const &a, gxVector<2> const &b) const
{
  return visit([&](auto const &p) { return p.crossings(a, b); });
}

gxPtrHandle<gxShape> gx_Piece::shape() const
{
  return visit([](auto const &p) { return p.shape(); });
}

gxRect gx_Outline::bounds() const
{
  gxRect box;
  for (gx_Contour const &contour : contours)
    for (gx_Piece const &piece : contour.pieces)
      box = box.enclose(piece.bounds());
  return box;
}

double gx_Outline::length() const
{
  double sum = 0.0;
  for (gx_Contour const &contour : contours)
    for (gx_Piece const &piece : contour.pieces)
      sum += piece.length();
  return sum;
}
