#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapearchive.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"

#include <algorithm>

GX_SHAPE_IMPL(gxRegionTree, gxShapeTree)

void gxRegionTree::passFields_(gxArchive &archive)
{
  bool hasBoundary = !boundary_.isNull();
  archive || isHole_ || isRoot_ || hasBoundary;
  if (hasBoundary)
    gf_passChild(archive, *this, boundary_);
  if (archive.isStoring())
    return;
  if (!hasBoundary)
    boundary_ = nullptr;
  bool const isPlane = isRoot_ && isHole_;
  if (hasBoundary == isPlane || (hasBoundary && !boundary_->isRegion()))
    archive.fail("a region without its boundary");
  for (auto const &child : children()) {
    auto const *const tree = dynamic_cast<gxRegionTree const *>(child.rep());
    if (!tree || tree->isRoot_ || tree->isHole_ == isHole_)
      archive.fail("a region with a child that does not fit");
  }
}

gxRegionTree::gxRegionTree(gxPtrHandle_const<gxShape> const &boundary) : boundary_(boundary), isHole_(false)
{
  if (!boundary->isRegion())
    throw gxShapesError::NotRegion();
}

gxRegionTree const &gxRegionTree::region(long i) const
{
  auto const *const tree = dynamic_cast<gxRegionTree const *>(child(i).rep());
  if (!tree || tree->boundary_.isNull())
    throw gxShapesError::BadGeom();  // a child that was added through the base class
  return *tree;
}

gxPtrHandle_const<gxShape> gxRegionTree::asChild(gxRegionTree const &tree, bool parentIsHole)
{
  gxPtrHandle<gxRegionTree> const copy = new gxRegionTree(tree.boundary_);
  copy->isRoot_ = false;
  copy->isHole_ = !parentIsHole;
  for (long i = 0; i < tree.numChildren(); ++i)
    copy->addChild(asChild(tree.region(i), copy->isHole_));
  return copy;
}

void gxRegionTree::addRegion(gxPtrHandle_const<gxShape> const &boundary)
{
  addRegion(gxRegionTree(boundary));
}

void gxRegionTree::addRegion(gxRegionTree const &child)
{
  if (child.boundary_.isNull())
    throw gxShapesError::NotRegion();
  addChild(asChild(child, isHole_));
}

bool gxRegionTree::isDecomposed() const
{
  return (boundary_.isNull() || boundary_->isDecomposed()) && gxShapeTree::isDecomposed();
}

gxRect gxRegionTree::boundingBox() const
{
  return boundary_.isNull() ? gxShapeTree::boundingBox() : boundary_->boundingBox();
}

gxVector<2> gxRegionTree::nearestPoint(gxVector<2> const &p) const
{
  if (boundary_.isNull())
    return gxShapeTree::nearestPoint(p);
  gxVector<2> const onBoundary = boundary_->nearestPoint(p);
  if (numChildren() == 0)
    return onBoundary;
  gxVector<2> const onChild = gxShapeTree::nearestPoint(p);
  return p.distance(onChild) < p.distance(onBoundary) ? onChild : onBoundary;
}

bool gxRegionTree::isRightHanded() const
{
  if (isEmpty())
    throw gxShapesError::NotRegion();
  return boundary_.isNull() ? region(0).isRightHanded() : boundary_->isRightHanded();
}

bool gxRegionTree::within(gxVector<2> const &p) const
{
  if (isEmpty())
    throw gxShapesError::NotRegion();
  if (!boundary_.isNull() && !boundary_->within(p))
    return false;
  for (long i = 0; i < numChildren(); ++i) {
    gxRegionTree const &child = region(i);
    if (!child.boundary_->within(p))
      continue;
    if (child.isHole_)  // its outline still belongs to the solid round it
      return child.boundary_->nearestPoint(p) == p || child.within(p);
    return child.within(p);
  }
  return !isHole_;
}

gxPtrHandle<gxShape> gxRegionTree::changed(Change const &change) const
{
  Children images;
  for (long i = 0; i < numChildren(); ++i)
    images.push_back(region(i).changed(change));
  gxPtrHandle<gxShape> const copy = withChildren(std::move(images));
  if (!boundary_.isNull())
    static_cast<gxRegionTree &>(*copy).boundary_ = change(boundary_);
  return copy;
}

void gxRegionTree::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  gxShape::sample(params, result);
}

gxPtrHandle<gxShape> gxRegionTree::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  return gxShape::clip_(region, info);
}

void gxRegionTree::appendOutline(gx_Outline &outline) const
{
  if (!boundary_.isNull())
    boundary_->appendOutline(outline);
  gxShapeTree::appendOutline(outline);
}

bool operator==(gxRegionTree const &a, gxRegionTree const &b)
{
  bool const isSameKind = a.isHole_ == b.isHole_ && a.isRoot_ == b.isRoot_;
  if (!isSameKind || a.boundary_.isNull() != b.boundary_.isNull())
    return false;
  return (a.boundary_.isNull() || *a.boundary_ == *b.boundary_) && a.equalChildren(b);
}
