#include "foundation/ellipsearc2.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"

#include <algorithm>

GX_SHAPE_IMPL(gxEllipseArc2, gxShape)

namespace
{

gxRadian atMostATurn(gxRadian span)
{
  return gxRadian(std::clamp(span.value(), -gf_turnRadians, gf_turnRadians));
}

}  // namespace

void gxEllipseArc2::passFields_(gxArchive &archive)
{
  archive || ellipse_ || phiStart_ || phiSpan_;
  phiSpan_ = atMostATurn(phiSpan_);
}

gxEllipseArc2::gxEllipseArc2(gxEllipse2 const &ellipse, gxRadian phiStart, gxRadian phiSpan)
    : ellipse_(ellipse), phiStart_(phiStart), phiSpan_(atMostATurn(phiSpan))
{
}

gxEllipseArc2::gxEllipseArc2(gx_ArcPiece const &piece)
    : gxEllipseArc2(
          gxEllipse2(gx2XformLinear(gxMatrix<2>(piece.u.x(), piece.v.x(), piece.u.y(), piece.v.y()), piece.center)),
          gxRadian(piece.start), gxRadian(piece.span))
{
}

gx_ArcPiece gxEllipseArc2::piece() const
{
  gx_ArcPiece piece = ellipse_.piece();
  piece.start = phiStart_.value();
  piece.span = phiSpan_.value();
  return piece;
}

gxRect gxEllipseArc2::boundingBox() const
{
  return gf_finite(piece().bounds());
}

gxVector<2> gxEllipseArc2::nearestPoint(gxVector<2> const &p) const
{
  return gf_finite(piece().nearest(p).point);
}

gxPtrHandle<gxShape> gxEllipseArc2::mapShape(gxXform<2> const &xform) const
{
  return new gxEllipseArc2(map(xform));
}

gxPtrHandle<gxShape> gxEllipseArc2::reverse_() const
{
  return new gxEllipseArc2(ellipse_, phiEnd(), -phiSpan_);
}

void gxEllipseArc2::appendOutline(gx_Outline &outline) const
{
  outline.addContour(false).pieces.push_back(piece());
}

gxPtrHandle<gxShape> gx_ArcPiece::shape() const
{
  return new gxEllipseArc2(*this);
}
