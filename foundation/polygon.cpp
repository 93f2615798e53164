#include "foundation/polygon.h"

#include "foundation/geomarchive.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"

gxPolygon gxPolygon::map(gxXform<2> const &xform) const
{
  gxPolygon image(*this);
  for (gxVector<2> &p : image.vertices_)
    p = xform * p;
  return image;
}

gxRect gxPolygon::boundingBox() const
{
  return gxPolyline(vertices_, true).boundingBox();
}

double gxPolygon::distanceToPoint(gxVector<2> const &p) const
{
  return gxPolyline(vertices_, true).distanceToPoint(p);
}

gxArchive &operator||(gxArchive &archive, gxPolygon &polygon)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxPolygon");
  int mode = polygon.fillMode_;
  archive || mode;
  if (mode < gxPolygon::noFill || mode > gxPolygon::winding)
    archive.fail("an unknown fill mode");
  archive || polygon.vertices_;
  polygon.fillMode_ = static_cast<gxPolygon::PolyFillMode>(mode);
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxPolygon const &p)
{
  os << "polygon, fill mode " << p.fillMode() << ':';
  for (gxVector<2> const &v : p.vertices())
    os << ' ' << v;
  return os;
}
