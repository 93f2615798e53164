#include "foundation/rect.h"

#include "foundation/detail/finite.h"
#include "foundation/genrect.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

GX_SHAPE_IMPL(gxRect, gxShape)

void gxRect::passFields_(gxArchive &archive)
{
  archive || origin_ || size_ || isEmpty_;
}

gxRect gxRect::around(gxVector<2> const &a, gxVector<2> const &b)
{
  gxVector<2> const low(std::min(a.x(), b.x()), std::min(a.y(), b.y()));
  gxVector<2> const high(std::max(a.x(), b.x()), std::max(a.y(), b.y()));
  return {low, high - low};
}

gxVector<2> gxRect::lowCorner() const
{
  return {std::min(origin_.x(), origin_.x() + size_.x()), std::min(origin_.y(), origin_.y() + size_.y())};
}

gxVector<2> gxRect::highCorner() const
{
  return {std::max(origin_.x(), origin_.x() + size_.x()), std::max(origin_.y(), origin_.y() + size_.y())};
}

gxVector<2> gxRect::corner(int i) const
{
  if (i < 0 || i > 3)
    throw gxShapesError::BadCoef();
  return origin_ + gxVector<2>(i == 1 || i == 2 ? size_.x() : 0.0, i >= 2 ? size_.y() : 0.0);
}

gxRect gxRect::enclose(gxRect const &other) const
{
  if (isEmpty_ || other.isEmpty_)
    return isEmpty_ ? other : *this;
  gxVector<2> const low = lowCorner(), otherLow = other.lowCorner();
  gxVector<2> const high = highCorner(), otherHigh = other.highCorner();
  return around({std::min(low.x(), otherLow.x()), std::min(low.y(), otherLow.y())},
                {std::max(high.x(), otherHigh.x()), std::max(high.y(), otherHigh.y())});
}

gxRect operator&(gxRect const &a, gxRect const &b)
{
  if (a.isEmpty_ || b.isEmpty_)
    return {};
  gxVector<2> const aLow = a.lowCorner(), bLow = b.lowCorner();
  gxVector<2> const aHigh = a.highCorner(), bHigh = b.highCorner();
  gxVector<2> const low(std::max(aLow.x(), bLow.x()), std::max(aLow.y(), bLow.y()));
  gxVector<2> const high(std::min(aHigh.x(), bHigh.x()), std::min(aHigh.y(), bHigh.y()));
  return low.x() <= high.x() && low.y() <= high.y() ? gxRect(low, high - low) : gxRect();
}

gxGenRect gxRect::map(gxXform<2> const &xform) const
{
  gxMatrix<2> const half(size_.x() * 0.5, 0.0, 0.0, size_.y() * 0.5);
  return {xform * center(), xform.matrix() * half, {0.0, 0.0}};
}

bool gxRect::hasTangent() const
{
  return !isEmpty_ && !(size_ == gxVector<2>());
}

gxRect gxRect::boundingBox() const
{
  if (isEmpty_)
    throw gxShapesError::EmptyShape();
  return gf_finite(around(lowCorner(), highCorner()));
}

gxVector<2> gxRect::nearestPoint(gxVector<2> const &p) const
{
  if (isEmpty_)
    throw gxShapesError::EmptyShape();
  gxVector<2> const low = gf_finite(lowCorner()), high = gf_finite(highCorner());
  gf_finite(p);
  gxVector<2> const inside(std::clamp(p.x(), low.x(), high.x()), std::clamp(p.y(), low.y(), high.y()));
  if (!(inside == p))
    return inside;
  // from inside, the nearest side, and of several the first of the outline
  gxVector<2> const from = origin_, to = origin_ + size_;
  double const away[] = {std::abs(p.y() - from.y()), std::abs(p.x() - to.x()), std::abs(p.y() - to.y()),
                         std::abs(p.x() - from.x())};
  switch (std::min_element(away, away + 4) - away) {
    case 0:
      return {p.x(), from.y()};
    case 1:
      return {to.x(), p.y()};
    case 2:
      return {p.x(), to.y()};
    default:
      return {from.x(), p.y()};
  }
}

double gxRect::perimeter() const
{
  return isEmpty_ ? 0.0 : gf_finite(2.0 * (std::abs(size_.x()) + std::abs(size_.y())));
}

bool gxRect::isRightHanded() const
{
  if (isEmpty_)
    throw gxShapesError::NotRegion();
  return size_.x() * size_.y() >= 0.0;
}

bool gxRect::within(gxVector<2> const &p) const
{
  if (isEmpty_)
    return false;
  gxVector<2> const low = lowCorner(), high = highCorner();
  return low.x() <= p.x() && p.x() <= high.x() && low.y() <= p.y() && p.y() <= high.y();
}

gxPtrHandle<gxShape> gxRect::mapShape(gxXform<2> const &xform) const
{
  return new gxGenRect(map(xform));
}

gxPtrHandle<gxShape> gxRect::reverse_() const
{
  return new gxRect(origin_ + gxVector<2>(size_.x(), 0.0), {-size_.x(), size_.y()});
}

void gxRect::appendOutline(gx_Outline &outline) const
{
  if (isEmpty_)
    return;
  gx_Contour &contour = outline.addContour(true);
  for (int i = 0; i < 4; ++i)
    contour.pieces.push_back(gx_LinePiece{corner(i), corner((i + 1) % 4)});
}

std::ostream &operator<<(std::ostream &os, gxRect const &r)
{
  return r.isEmpty() ? os << "[empty]" : os << '[' << r.origin() << " size " << r.size() << ']';
}
