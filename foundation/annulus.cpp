#include "foundation/annulus.h"

#include "foundation/archive.h"
#include "foundation/genannulus.h"
#include "foundation/outline.h"
#include "foundation/rect.h"

GX_SHAPE_IMPL(gxAnnulus, gxShape)

void gxAnnulus::passFields_(gxArchive &archive)
{
  archive || inner_ || outer_;
}

gxGenAnnulus gxAnnulus::map(gxXform<2> const &xform) const
{
  return gxGenAnnulus(*this).map(xform);
}

gxRect gxAnnulus::boundingBox() const
{
  return outer_.boundingBox().enclose(inner_.boundingBox());
}

bool gxAnnulus::within(gxVector<2> const &p) const
{
  double const toInner = p.distance(inner_.center()), toOuter = p.distance(outer_.center());
  bool const isOnOutline = toInner == inner_.radius() || toOuter == outer_.radius();
  return isOnOutline || (toInner < inner_.radius()) != (toOuter < outer_.radius());
}

gxPtrHandle<gxShape> gxAnnulus::mapShape(gxXform<2> const &xform) const
{
  return new gxGenAnnulus(map(xform));
}

gxPtrHandle<gxShape> gxAnnulus::reverse_() const
{
  return gxGenAnnulus(*this).reverse();
}

void gxAnnulus::appendOutline(gx_Outline &outline) const
{
  outer_.appendOutline(outline);
  inner_.appendOutline(outline);
}
