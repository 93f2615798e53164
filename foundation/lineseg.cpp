#include "foundation/lineseg.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"

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
