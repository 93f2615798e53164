#include "foundation/affinerect.h"

#include "foundation/geomarchive.h"
#include "foundation/outline.h"

GX_SHAPE_IMPL(gxAffineRectangle, gxShape)

void gxAffineRectangle::passFields_(gxArchive &archive)
{
  archive || po_ || px_ || py_;
}

gxAffineRectangle::gxAffineRectangle(gxVector<2> const &center, double xLength, double yLength, gxRadian xRotation,
                                     gxRadian yRotation)
{
  gxMatrix<2> const toPlace(xRotation, yRotation, xLength, yLength);
  po_ = center + toPlace * gxVector<2>(-0.5, -0.5);
  px_ = center + toPlace * gxVector<2>(0.5, -0.5);
  py_ = center + toPlace * gxVector<2>(-0.5, 0.5);
}

bool gxAffineRectangle::within(gxVector<2> const &p) const
{
  gxXform<2> const toPlace = fromUnitSquare();
  if (toPlace.matrix().det() == 0.0)
    return nearestPoint(p) == p;
  gxVector<2> const q = toPlace.invMapPoint(p);
  return q.x() >= 0.0 && q.x() <= 1.0 && q.y() >= 0.0 && q.y() <= 1.0;
}

gxPtrHandle<gxShape> gxAffineRectangle::mapShape(gxXform<2> const &xform) const
{
  return new gxAffineRectangle(map(xform));
}

gxPtrHandle<gxShape> gxAffineRectangle::reverse_() const
{
  return new gxAffineRectangle(po_, py_, px_);
}

void gxAffineRectangle::appendOutline(gx_Outline &outline) const
{
  gx_Contour &contour = outline.addContour(true);
  gxVector<2> const corners[] = {po_, px_, cornerPopp(), py_, po_};
  for (int side = 0; side < 4; ++side)
    contour.pieces.push_back(gx_LinePiece{corners[side], corners[side + 1]});
}
