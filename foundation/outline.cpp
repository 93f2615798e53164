#include "foundation/outline.h"

#include "foundation/shapeserror.h"

gx_Outline::gx_Outline(gxShape const &shape)
{
  shape.appendOutline(*this);
  for (gx_Contour const &contour : contours)
    for (gx_Piece const &piece : contour.pieces)
      if (!piece.isFinite())
        throw gxShapesError::BadGeom();
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
