#pragma once

#include "foundation/shape.h"

#include <functional>
#include <vector>

/// Shapes in a row: the base of the trees, and by itself a set of shapes of any kind. Children are shared and constant.
///
/// A set is no contour and no region; its box, nearest point, perimeter and samples are those of all children.
class GX_API gxShapeTree : public gxShape
{
 public:
  using Children = std::vector<gxPtrHandle_const<gxShape>>;

  /// No children.
  gxShapeTree() = default;
  /// Throws gxBadPointer for a null handle.
  explicit gxShapeTree(Children children);

  long numChildren() const { return static_cast<long>(children_.size()); }
  Children const &children() const { return children_; }
  /// Throws BadCoef for an index outside 0 to numChildren() - 1.
  gxPtrHandle_const<gxShape> const &child(long i) const;
  /// Appends a copy.
  void addChild(gxShape const &child);
  /// Appends the very object. Throws gxBadPointer for a null handle.
  void addChild(gxPtrHandle_const<gxShape> const &child);
  void clearChildren();

  /// What is made of a shape.
  using Change = std::function<gxPtrHandle_const<gxShape>(gxPtrHandle_const<gxShape> const &)>;
  /// A tree of the same class with what @p change makes of each child, and of the boundaries of regions.
  virtual gxPtrHandle<gxShape> changed(Change const &change) const;

  bool isFinite() const override;
  /// True if no child has points.
  bool isEmpty() const override;
  bool hasTangent() const override;
  bool isDecomposed() const override;
  bool isReversible() const override;
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  /// A tree of the same class with mapped children.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  /// A tree of the same class with decomposed children.
  gxPtrHandle<gxShape> decompose() const override;
  void sample(gxSampleParams const &params, gxSampleResult &result) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Equal children in equal order.
  friend bool operator==(gxShapeTree const &a, gxShapeTree const &b) { return a.equalChildren(b); }

 protected:
  /// A set of reversed children, in the same order.
  gxPtrHandle<gxShape> reverse_() const override;
  /// What is left of each child, without those of which nothing is left.
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;
  bool equalChildren(gxShapeTree const &other) const;
  /// A copy of this tree with other children.
  gxPtrHandle<gxShape> withChildren(Children children) const;

 private:
  Children children_;

  GX_SHAPE(gxShapeTree);
};

/// Open contours in a row that form one contour; where the end of one and the start of the next differ, a straight
/// line joins them. A closed tree, whose end is joined to its start, is a region, an open one an open contour. A child
/// that is no open contour has no ends: it stands in the outline behind this contour, as one of its own, and no line
/// leads to it. A tree without open contours is neither region nor open contour.
class GX_API gxContourTree : public gxShapeTree
{
 public:
  /// No children.
  explicit gxContourTree(bool closed = false) : isClosed_(closed) {}
  explicit gxContourTree(Children children, bool closed = false) : gxShapeTree(std::move(children)), isClosed_(closed)
  {
  }

  bool isClosed() const { return isClosed_; }
  void isClosed(bool v);

  bool isOpenContour() const override { return !isClosed_ && hasContour(); }
  bool isRegion() const override { return isClosed_ && hasContour(); }
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  void sample(gxSampleParams const &params, gxSampleResult &result) const override;
  void appendOutline(gx_Outline &outline) const override;

  friend bool operator==(gxContourTree const &a, gxContourTree const &b)
  {
    return a.isClosed_ == b.isClosed_ && a.equalChildren(b);
  }

 protected:
  /// Reversed children in reverse order.
  gxPtrHandle<gxShape> reverse_() const override;
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

 private:
  /// True if some child has ends.
  bool hasContour() const;

  bool isClosed_ = false;

  GX_SHAPE(gxContourTree);
};

/// A region with holes, which may have islands, and so on: each tree has a boundary, and its children are trees of
/// the other kind, holes in a solid and solids in a hole. A root that is a hole has no boundary: it is the bare plane,
/// and its children are solids apart from one another. The boundaries do not cross.
class GX_API gxRegionTree : public gxShapeTree
{
 public:
  /// A root that is a hole, without children: nothing.
  gxRegionTree() = default;
  /// A root that is solid. Throws gxBadPointer for a null handle, NotRegion if @p boundary is no region.
  explicit gxRegionTree(gxPtrHandle_const<gxShape> const &boundary);

  /// The region whose outline this tree has; null for a root that is a hole.
  gxPtrHandle_const<gxShape> const &boundary() const { return boundary_; }
  bool isHole() const { return isHole_; }
  /// True if the tree is no child of another.
  bool isRoot() const { return isRoot_; }
  /// Appends a child of the other kind with this boundary. Throws as the constructor.
  void addRegion(gxPtrHandle_const<gxShape> const &boundary);
  /// Appends a copy of the tree as a child of the other kind; its own children take their kinds from it. Throws
  /// NotRegion for a tree without boundary.
  void addRegion(gxRegionTree const &child);

  bool isRegion() const override { return !isEmpty(); }
  bool isEmpty() const override { return boundary_.isNull() && numChildren() == 0; }
  bool isDecomposed() const override;
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  void sample(gxSampleParams const &params, gxSampleResult &result) const override;
  /// That of the boundary, or of the first child of a root that has none.
  bool isRightHanded() const override;
  bool within(gxVector<2> const &p) const override;
  gxPtrHandle<gxShape> changed(Change const &change) const override;
  /// The boundary, then the children.
  void appendOutline(gx_Outline &outline) const override;

  friend GX_API bool operator==(gxRegionTree const &a, gxRegionTree const &b);

 protected:
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

 private:
  /// A copy of @p tree as a child of a tree of the given kind, and so on down.
  static gxPtrHandle_const<gxShape> asChild(gxRegionTree const &tree, bool parentIsHole);
  gxRegionTree const &region(long i) const;

  using gxShapeTree::addChild;  // not for regions

  gxPtrHandle_const<gxShape> boundary_;
  bool isHole_ = true;
  bool isRoot_ = true;

  GX_SHAPE(gxRegionTree);
};
