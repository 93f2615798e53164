#include "foundation/lineseg.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"
#include "foundation/shapeinfo.h"

GX_SHAPE_IMPL(gxLineSeg, gxShape)

void gxLineSeg::passFields_(gxArchive &archive)
{
  archive || start_ || end_;
}

gxRect gxLineSeg::boundingBox() const
{
  return gf_finite(gxRect::around(start_, end_));
}

gxVector<2> gxLineSeg::nearestPoint(gxVector<2> const &p) const
{
  return gf_finite(gx_LinePiece{start_, end_}.nearest(p).point);
}

double gxLineSeg::perimeter() const
{
  return gf_finite(length());
}

gxPtrHandle<gxShape> gxLineSeg::clipLine(gxVector<2> const &dir, gxVector<2> const &pos, gxPolyline const &region,
                                         gxClipInfo &info)
{
  // the foot of the box's center, and from there beyond the box on both sides
  gxRect const box = region.boundingBox();
  gxVector<2> const along = dir.unit();
  gxVector<2> const foot = pos + along * (along * (box.center() - pos));
  gxVector<2> const reach = along * (box.center().distance(foot) + box.size().len() + 1.0);
  gxPtrHandle<gxShape> const part = gxLineSeg(foot - reach, foot + reach).clip(region, info);
  info.set(true, info.isOutside());
  return part;
}

gxPtrHandle<gxShape> gxLineSeg::mapShape(gxXform<2> const &xform) const
{
  return new gxLineSeg(map(xform));
}

gxPtrHandle<gxShape> gxLineSeg::reverse_() const
{
  return new gxLineSeg(end_, start_);
}

void gxLineSeg::appendOutline(gx_Outline &outline) const
{
  outline.addContour(false).pieces.push_back(gx_LinePiece{start_, end_});
}
