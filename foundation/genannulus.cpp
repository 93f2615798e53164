#include "foundation/genannulus.h"

#include "foundation/annulus.h"
#include "foundation/archive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"

GX_SHAPE_IMPL(gxGenAnnulus, gxShape)

void gxGenAnnulus::passFields_(gxArchive &archive)
{
  archive || inner_ || outer_;
}

namespace
{

gxGenRect asRect(gxCircle const &circle)
{
  return {circle.center(), gxMatrix<2>(circle.radius(), 0.0, 0.0, circle.radius()), {1.0, 1.0}};
}

gxGenRect reversed(gxGenRect const &rect)
{
  return dynamic_cast<gxGenRect const &>(*rect.reverse());
}

}  // namespace

gxGenAnnulus::gxGenAnnulus(gxAnnulus const &annulus)
    : inner_(asRect(annulus.innerCircle())), outer_(asRect(annulus.outerCircle()))
{
}

gxRect gxGenAnnulus::boundingBox() const
{
  return outer_.boundingBox().enclose(inner_.boundingBox());
}

bool gxGenAnnulus::within(gxVector<2> const &p) const
{
  if (outer_.within(p) != inner_.within(p))
    return true;
  return outer_.nearestPoint(p) == p || inner_.nearestPoint(p) == p;
}

gxPtrHandle<gxShape> gxGenAnnulus::mapShape(gxXform<2> const &xform) const
{
  return new gxGenAnnulus(map(xform));
}

gxPtrHandle<gxShape> gxGenAnnulus::reverse_() const
{
  return new gxGenAnnulus(reversed(inner_), reversed(outer_));
}

void gxGenAnnulus::appendOutline(gx_Outline &outline) const
{
  outer_.appendOutline(outline);
  inner_.appendOutline(outline);
}
