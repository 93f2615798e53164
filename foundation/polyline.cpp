#include "foundation/polyline.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <limits>

GX_SHAPE_IMPL(gxPolyline, gxShape)

void gxPolyline::passFields_(gxArchive &archive)
{
  archive || vertices_ || isClosed_;
}

namespace
{

/// Calls @p visit for each side, the closing one included.
template <class Visit>
void forSides(gxPolyline const &line, Visit visit)
{
  std::vector<gxVector<2>> const &v = line.vertices();
  for (std::size_t i = 1; i < v.size(); ++i)
    visit(gx_LinePiece{v[i - 1], v[i]});
  if (line.isClosed() && !v.empty())
    visit(gx_LinePiece{v.back(), v.front()});
}

}  // namespace

void gxPolyline::vertices(std::vector<gxVector<2>> v)
{
  mutating();
  vertices_ = std::move(v);
}

gxVector<2> const &gxPolyline::vertex(long i) const
{
  if (i < 0 || i >= numVertices())
    throw gxShapesError::BadCoef();
  return vertices_[static_cast<std::size_t>(i)];
}

void gxPolyline::appendVertex(gxVector<2> const &v)
{
  mutating();
  vertices_.push_back(v);
}

void gxPolyline::isClosed(bool v)
{
  mutating();
  isClosed_ = v;
}

gxPolyline gxPolyline::map(gxXform<2> const &xform) const
{
  std::vector<gxVector<2>> images;
  images.reserve(vertices_.size());
  for (gxVector<2> const &v : vertices_)
    images.push_back(xform * v);
  return gxPolyline(std::move(images), isClosed_);
}

bool gxPolyline::hasTangent() const
{
  return std::any_of(vertices_.begin(), vertices_.end(), [&](auto const &v) { return !(v == vertices_.front()); });
}

gxRect gxPolyline::boundingBox() const
{
  if (vertices_.empty())
    throw gxShapesError::EmptyShape();
  gxVector<2> low = vertices_.front(), high = low;
  for (gxVector<2> const &v : vertices_) {
    gf_finite(v);
    low = {std::min(low.x(), v.x()), std::min(low.y(), v.y())};
    high = {std::max(high.x(), v.x()), std::max(high.y(), v.y())};
  }
  return gf_finite(gxRect(low, high - low));
}

gxVector<2> gxPolyline::nearestPoint(gxVector<2> const &p) const
{
  if (vertices_.empty())
    throw gxShapesError::EmptyShape();
  gxVector<2> nearest = gf_finite(vertices_.front());
  gf_finite(p);
  double distance = p.distance(nearest);
  forSides(*this, [&](gx_LinePiece const &side) {
    gx_Nearest const found = side.nearest(p);
    gf_finite(found.point);
    if (found.distance < distance) {
      nearest = found.point;
      distance = found.distance;
    }
  });
  return nearest;
}

double gxPolyline::perimeter() const
{
  double length = 0.0;
  forSides(*this, [&](gx_LinePiece const &side) { length += side.from.distance(side.to); });
  return gf_finite(length);
}

gxVector<2> gxPolyline::startPoint() const
{
  if (!isOpenContour())
    throw gxShapesError::NotOpenContour();
  return vertices_.front();
}

gxVector<2> gxPolyline::endPoint() const
{
  if (!isOpenContour())
    throw gxShapesError::NotOpenContour();
  return vertices_.back();
}

bool gxPolyline::isRightHanded() const
{
  if (!isRegion())
    throw gxShapesError::NotRegion();
  gxVector<2> const origin = vertices_.front();  // near the outline, so that the products do not cancel
  double doubleArea = 0.0;
  forSides(*this, [&](gx_LinePiece const &side) { doubleArea += (side.from - origin).cross(side.to - origin); });
  return doubleArea >= 0.0;
}

bool gxPolyline::within(gxVector<2> const &p) const
{
  if (!isRegion())
    throw gxShapesError::NotRegion();
  int turns = 0;
  bool isOnSide = false;
  forSides(*this, [&](gx_LinePiece const &side) {
    double const sense = (side.to - side.from).cross(p - side.from);
    isOnSide = isOnSide || (sense == 0.0 && (side.from - p) * (side.to - p) <= 0.0);
    if (side.from.y() <= p.y() && side.to.y() > p.y() && sense > 0.0)
      ++turns;
    if (side.from.y() > p.y() && side.to.y() <= p.y() && sense < 0.0)
      --turns;
  });
  return isOnSide || turns != 0;
}

gxPtrHandle<gxShape> gxPolyline::mapShape(gxXform<2> const &xform) const
{
  return new gxPolyline(map(xform));
}

gxPtrHandle<gxShape> gxPolyline::reverse_() const
{
  std::vector<gxVector<2>> turned(vertices_.rbegin(), vertices_.rend());
  if (isClosed_ && !turned.empty())
    std::rotate(turned.begin(), turned.end() - 1, turned.end());
  return new gxPolyline(std::move(turned), isClosed_);
}

void gxPolyline::appendOutline(gx_Outline &outline) const
{
  if (vertices_.empty())
    return;
  gx_Contour &contour = outline.addContour(isClosed_);
  forSides(*this, [&](gx_LinePiece const &side) { contour.pieces.push_back(side); });
  if (contour.pieces.empty())
    contour.pieces.push_back(gx_LinePiece{vertices_.front(), vertices_.front()});
}

std::ostream &operator<<(std::ostream &os, gxPolyline const &p)
{
  os << (p.isClosed() ? "closed polyline:" : "polyline:");
  for (gxVector<2> const &v : p.vertices())
    os << ' ' << v;
  return os;
}
