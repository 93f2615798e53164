#pragma once

#include "foundation/shape.h"
#include "foundation/xformbase.h"

/// A shape seen through a transform that may bend straight lines. The shape is kept as it is, together with the
/// transform; a mapped shape of a mapped shape keeps the innermost shape and the product of the transforms.
///
/// The outline is the image of the outline of the shape. Through a transform that bends lines, the images of its
/// pieces are replaced by Bezier curves that touch them at both ends and stay as near as `relativeTolerance` times the
/// size of the image; points, distances and lengths are as exact as that. The inside of a region is found by the
/// inverse of the transform.
class GX_API gxMappedShape : public gxShape
{
 public:
  static constexpr double relativeTolerance = 1e-9;

  /// Without shape and transform; all operations throw gxBadPointer.
  gxMappedShape() = default;
  /// Shares both. Throws gxBadPointer for a null handle.
  gxMappedShape(gxPtrHandle_const<gxShape> const &shape, gxPtrHandle_const<gx2XformBase> const &xform);
  /// Keeps copies.
  gxMappedShape(gxShape const &shape, gx2XformBase const &xform);
  gxMappedShape(gxShape const &shape, gxXform<2> const &xform);

  /// From the underlying shape to the image: the product of all transforms, if mapped shapes were mapped. Never null
  /// but in a default-constructed object.
  gxPtrHandle_const<gx2XformBase> const &overallMapXform() const { return xform_; }
  /// No mapped shape itself.
  gxPtrHandle_const<gxShape> const &underlyingShape() const { return shape_; }

  bool isOpenContour() const override { return shape_->isOpenContour(); }
  bool isRegion() const override { return shape_->isRegion(); }
  bool isFinite() const override { return shape_->isFinite(); }
  bool isEmpty() const override { return shape_->isEmpty(); }
  bool isReversible() const override { return shape_->isReversible(); }
  bool hasTangent() const override;
  /// Through a linear transform as in the image of the shape; so are the next ones.
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  bool within(gxVector<2> const &p) const override;
  /// A gxMappedShape.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  /// Through a linear transform the decomposed image of the shape.
  gxPtrHandle<gxShape> decompose() const override;
  void sample(gxSampleParams const &params, gxSampleResult &result) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Equal shapes, equal transforms.
  friend GX_API bool operator==(gxMappedShape const &a, gxMappedShape const &b);

 protected:
  /// A gxMappedShape.
  gxPtrHandle<gxShape> reverse_() const override;
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;

 private:
  /// The image as a shape of a class of its own: of anything through a linear transform, and of points and of sets
  /// and trees of regions, part by part, through any. Null where an outline is to be bent.
  gxPtrHandle<gxShape> plainImage() const;

  gxPtrHandle_const<gxShape> shape_;
  gxPtrHandle_const<gx2XformBase> xform_;

  GX_SHAPE(gxMappedShape);
};
