#include "foundation/mappedshape.h"

#include "foundation/archive.h"
#include "foundation/matherror.h"
#include "foundation/outline.h"
#include "foundation/point.h"
#include "foundation/rect.h"
#include "foundation/shapearchive.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"

#include <array>

GX_SHAPE_IMPL(gxMappedShape, gxShape)

void gxMappedShape::passFields_(gxArchive &archive)
{
  bool isSet = !shape_.isNull();
  archive || isSet;
  if (!isSet) {
    shape_ = nullptr;
    xform_ = nullptr;
    return;
  }
  gf_passChild(archive, *this, shape_);
  archive || xform_;
  if (archive.isStoring())
    return;
  if (xform_.isNull() || dynamic_cast<gxMappedShape const *>(shape_.rep())) {
    shape_ = nullptr;
    xform_ = nullptr;
    archive.fail("a mapped shape without a plain shape or a transform");
  }
}

gxMappedShape::gxMappedShape(gxPtrHandle_const<gxShape> const &shape, gxPtrHandle_const<gx2XformBase> const &xform)
    : shape_(shape), xform_(xform)
{
  if (shape.isNull() || xform.isNull())
    gf_throwBadPointer();
  if (auto const *const inner = dynamic_cast<gxMappedShape const *>(shape.rep())) {
    xform_ = gx2XformBase::compose(xform, inner->xform_);
    shape_ = gxPtrHandle_const<gxShape>(inner->shape_);
    if (shape_.isNull())
      gf_throwBadPointer();
  }
}

gxMappedShape::gxMappedShape(gxShape const &shape, gx2XformBase const &xform)
    : gxMappedShape(shape.clone(), xform.clone())
{
}

gxMappedShape::gxMappedShape(gxShape const &shape, gxXform<2> const &xform)
    : gxMappedShape(shape, gx2XformLinear(xform))
{
}

gxPtrHandle<gxShape> gxMappedShape::plainImage() const
{
  if (xform_->isLinear())
    return shape_->mapShape(xform_->linearXform({}).xform());
  if (auto const *const point = dynamic_cast<gx2Point const *>(shape_.rep()))  // has no outline that could bend
    return point->mapShape(xform_->linearXform(point->point()).xform());
  auto const *const tree = dynamic_cast<gxShapeTree const *>(shape_.rep());
  if (!tree || dynamic_cast<gxContourTree const *>(tree))
    return nullptr;
  return tree->changed([&](auto const &part) { return new gxMappedShape(part, xform_); });
}

bool gxMappedShape::hasTangent() const
{
  gxPtrHandle<gxShape> const image = plainImage();
  return image ? image->hasTangent() : shape_->hasTangent();
}

gxRect gxMappedShape::boundingBox() const
{
  gxPtrHandle<gxShape> const image = plainImage();
  return image ? image->boundingBox() : gxShape::boundingBox();
}

gxVector<2> gxMappedShape::nearestPoint(gxVector<2> const &p) const
{
  gxPtrHandle<gxShape> const image = plainImage();
  return image ? image->nearestPoint(p) : gxShape::nearestPoint(p);
}

double gxMappedShape::perimeter() const
{
  gxPtrHandle<gxShape> const image = plainImage();
  return image ? image->perimeter() : gxShape::perimeter();
}

bool gxMappedShape::within(gxVector<2> const &p) const
{
  if (gxPtrHandle<gxShape> const image = plainImage())
    return image->within(p);
  if (!isRegion())
    throw gxShapesError::NotRegion();
  try {
    return shape_->within(xform_->invMapPoint(p));
  } catch (gxMathError::Errors const &) {
    return false;  // no point has this image
  }
}

gxPtrHandle<gxShape> gxMappedShape::mapShape(gxXform<2> const &xform) const
{
  return new gxMappedShape(shape_, gx2XformBase::compose(gxPtrHandle<gx2XformBase>(new gx2XformLinear(xform)), xform_));
}

gxPtrHandle<gxShape> gxMappedShape::decompose() const
{
  gxPtrHandle<gxShape> const image = plainImage();
  return image ? image->decompose() : gxShape::decompose();
}

void gxMappedShape::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  gxPtrHandle<gxShape> const image = plainImage();
  image ? image->sample(params, result) : gxShape::sample(params, result);
}

gxPtrHandle<gxShape> gxMappedShape::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  gxPtrHandle<gxShape> const image = plainImage();
  gxPtrHandle<gxShape> const part = image ? image->clip(region, info) : gxShape::clip_(region, info);
  return info.isCut() ? part : clone();
}

gxPtrHandle<gxShape> gxMappedShape::reverse_() const
{
  return new gxMappedShape(shape_->reverse(), xform_);
}

namespace
{

/// Replaces the image of a piece by Bezier curves.
class Bender
{
 public:
  Bender(gx2XformBase const &xform, double tolerance) : xform_(xform), tolerance_(tolerance) {}

  void append(gx_Piece const &piece, gx_Contour &to) const { append(piece, 0.0, 1.0, 0, to); }

 private:
  void append(gx_Piece const &piece, double from, double to, int depth, gx_Contour &contour) const
  {
    gx_BezierPiece const curve = fitted(piece, from, to);
    constexpr int maxDepth = 12;
    if (depth == maxDepth || isNear(curve, piece, from, to)) {
      contour.pieces.push_back(curve);
      return;
    }
    double const middle = 0.5 * (from + to);
    append(piece, from, middle, depth + 1, contour);
    append(piece, middle, to, depth + 1, contour);
  }

  /// The cubic that agrees with the image in ends and derivatives.
  gx_BezierPiece fitted(gx_Piece const &piece, double from, double to) const
  {
    gxVector<2> const first = piece.point(from), last = piece.point(to);
    auto const leg = [&](gxVector<2> const &at, double param) {
      return xform_.linearXform(at).matrix() * piece.tangent(param) * ((to - from) / 3.0);
    };
    gxVector<2> const begin = xform_.mapPoint(first), end = xform_.mapPoint(last);
    return {{begin, begin + leg(first, from), end - leg(last, to), end}};
  }

  bool isNear(gx_BezierPiece const &curve, gx_Piece const &piece, double from, double to) const
  {
    for (double const u : {0.25, 0.4, 0.5, 0.75})
      if (!(curve.point(u).distance(xform_.mapPoint(piece.point(from + (to - from) * u))) <= tolerance_))
        return false;
    return true;
  }

  gx2XformBase const &xform_;
  double tolerance_;
};

/// About the size of the image.
double imageSize(gx_Outline const &outline, gx2XformBase const &xform)
{
  gxRect box;
  for (gx_Contour const &contour : outline.contours)
    for (gx_Piece const &piece : contour.pieces)
      for (double const u : {0.0, 0.25, 0.5, 0.75}) {
        gxVector<2> const image = xform.mapPoint(piece.point(u));
        if (!image.isFinite())
          throw gxShapesError::BadGeom();
        box = box.enclose(gxRect::around(image, image));
      }
  return box.isEmpty() ? 0.0 : box.size().len();
}

}  // namespace

void gxMappedShape::appendOutline(gx_Outline &outline) const
{
  if (gxPtrHandle<gxShape> const image = plainImage()) {
    image->appendOutline(outline);
    return;
  }
  gx_Outline straight;
  shape_->appendOutline(straight);
  Bender const bender(*xform_, relativeTolerance * imageSize(straight, *xform_));
  for (gx_Contour const &contour : straight.contours) {
    gx_Contour &image = outline.addContour(contour.closed);
    for (gx_Piece const &piece : contour.pieces)
      bender.append(piece, image);
  }
}

bool operator==(gxMappedShape const &a, gxMappedShape const &b)
{
  if (a.shape_.isNull() || b.shape_.isNull())
    return a.shape_.isNull() && b.shape_.isNull();
  return *a.shape_ == *b.shape_ && *a.xform_ == *b.xform_;
}
