#include "foundation/shapetree.h"

#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapearchive.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"

#include <algorithm>

GX_SHAPE_IMPL(gxShapeTree, gxShape)

void gxShapeTree::passFields_(gxArchive &archive)
{
  gf_passChildren(archive, *this, children_);
}

namespace
{

gxPtrHandle_const<gxShape> const &notNull(gxPtrHandle_const<gxShape> const &shape)
{
  if (shape.isNull())
    gf_throwBadPointer();
  return shape;
}

}  // namespace

gxShapeTree::gxShapeTree(Children children) : children_(std::move(children))
{
  std::for_each(children_.begin(), children_.end(), notNull);
}

gxPtrHandle_const<gxShape> const &gxShapeTree::child(long i) const
{
  if (i < 0 || i >= numChildren())
    throw gxShapesError::BadCoef();
  return children_[static_cast<std::size_t>(i)];
}

void gxShapeTree::addChild(gxShape const &child)
{
  addChild(gxPtrHandle_const<gxShape>(cloneThat_(child)));
}

void gxShapeTree::addChild(gxPtrHandle_const<gxShape> const &child)
{
  notNull(child);
  mutating();
  children_.push_back(child);
}

void gxShapeTree::clearChildren()
{
  mutating();
  children_.clear();
}

bool gxShapeTree::isFinite() const
{
  return std::all_of(children_.begin(), children_.end(), [](auto const &c) { return c->isFinite(); });
}

bool gxShapeTree::isEmpty() const
{
  return std::all_of(children_.begin(), children_.end(), [](auto const &c) { return c->isEmpty(); });
}

bool gxShapeTree::hasTangent() const
{
  return std::any_of(children_.begin(), children_.end(), [](auto const &c) { return c->hasTangent(); });
}

bool gxShapeTree::isDecomposed() const
{
  return std::all_of(children_.begin(), children_.end(), [](auto const &c) { return c->isDecomposed(); });
}

bool gxShapeTree::isReversible() const
{
  return std::all_of(children_.begin(), children_.end(), [](auto const &c) { return c->isReversible(); });
}

gxRect gxShapeTree::boundingBox() const
{
  gxRect box;
  for (auto const &child : children_)
    if (!child->isEmpty())
      box = box.enclose(child->boundingBox());
  if (box.isEmpty())
    throw gxShapesError::EmptyShape();
  return box;
}

gxVector<2> gxShapeTree::nearestPoint(gxVector<2> const &p) const
{
  bool isFound = false;
  gxVector<2> best;
  for (auto const &child : children_) {
    if (child->isEmpty())
      continue;
    gxVector<2> const found = child->nearestPoint(p);
    if (!isFound || p.distance(found) < p.distance(best))
      best = found;
    isFound = true;
  }
  if (!isFound)
    throw gxShapesError::EmptyShape();
  return best;
}

gxPtrHandle<gxShape> gxShapeTree::withChildren(Children children) const
{
  gxPtrHandle<gxShape> const copy = clone();
  static_cast<gxShapeTree &>(*copy).children_ = std::move(children);
  return copy;
}

gxPtrHandle<gxShape> gxShapeTree::changed(Change const &change) const
{
  Children images;
  for (auto const &child : children_)
    images.push_back(change(child));
  return withChildren(std::move(images));
}

gxPtrHandle<gxShape> gxShapeTree::mapShape(gxXform<2> const &xform) const
{
  return changed([&](auto const &shape) { return shape->mapShape(xform); });
}

gxPtrHandle<gxShape> gxShapeTree::decompose() const
{
  return changed([](auto const &shape) { return shape->isDecomposed() ? shape : shape->decompose(); });
}

gxPtrHandle<gxShape> gxShapeTree::reverse_() const
{
  return changed([](auto const &shape) { return shape->reverse(); });
}

gxPtrHandle<gxShape> gxShapeTree::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  bool isCut = false;
  Children parts;
  for (auto const &child : children_) {
    gxClipInfo ofChild;
    gxPtrHandle<gxShape> const part = child->clip(region, ofChild);
    isCut = isCut || ofChild.isCut();
    if (!ofChild.isOutside())
      parts.push_back(part);
  }
  info.set(isCut, parts.empty());
  return isCut ? gxPtrHandle<gxShape>(new gxShapeTree(std::move(parts))) : clone();
}

void gxShapeTree::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  params.check();
  std::size_t const points = result.positions().size(), contours = result.contourStarts().size();
  try {
    for (auto const &child : children_)
      child->sample(params, result);
  } catch (...) {
    result.truncate(points, contours);
    throw;
  }
}

void gxShapeTree::appendOutline(gx_Outline &outline) const
{
  for (auto const &child : children_)
    child->appendOutline(outline);
}

bool gxShapeTree::equalChildren(gxShapeTree const &other) const
{
  return std::equal(children_.begin(), children_.end(), other.children_.begin(), other.children_.end(),
                    [](auto const &a, auto const &b) { return *a == *b; });
}
