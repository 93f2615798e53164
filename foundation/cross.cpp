#include "foundation/cross.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"

#include <algorithm>
#include <array>

namespace
{

std::array<gx_LinePiece, 2> linesOf(gxCross const &cross)
{
  gxVector<2> const arm(static_cast<double>(cross.armLength()), cross.angle());
  gxVector<2> const across(-arm.y(), arm.x());
  return {gx_LinePiece{cross.center() - arm, cross.center() + arm},
          gx_LinePiece{cross.center() - across, cross.center() + across}};
}

}  // namespace

gxCross gxCross::map(gxXform<2> const &xform) const
{
  return {xform * center_, xform.mapAngle(angle_), armLength_};
}

gxRect gxCross::boundingBox() const
{
  auto const [first, second] = linesOf(*this);
  return gf_finite(first.bounds().enclose(second.bounds()));
}

gxRect gxCross::encloseRect() const
{
  return boundingBox();
}

double gxCross::distToPoint(gxVector<2> const &p) const
{
  auto const [first, second] = linesOf(*this);
  return std::min(gf_finite(first.nearest(p).distance), gf_finite(second.nearest(p).distance));
}

gxArchive &operator||(gxArchive &archive, gxCross &cross)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxCross");
  archive || cross.center_ || cross.angle_;
  long arm = cross.armLength_;
  archive || arm;
  cross.armLength(arm);
  return archive;
}
