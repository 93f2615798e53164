#include "foundation/shape.h"

#include "foundation/archive.h"
#include "foundation/detail/finite.h"
#include "foundation/outline.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"

GX_PERSISTENT_ABSTRACT_IMPL(gxShape, 0)
void gxShape::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gxShape");
  gxPersistent::dispatchSerialize(archive);
}

bool gxShape::loadSimple(gxArchive &archive)
{
  if (!archive.isLoading())
    return false;
  mutating();  // the fields of this class and of all derived ones are about to change
  return true;
}

namespace
{

/// The contour with the ends. What else a contour tree may hold stands behind it in the outline.
std::vector<gx_Piece> openContourOf(gxShape const &shape)
{
  if (!shape.isOpenContour())
    throw gxShapesError::NotOpenContour();
  gx_Outline outline(shape);
  if (outline.contours.empty() || outline.contours.front().pieces.empty())
    throw gxShapesError::EmptyShape();
  return std::move(outline.contours.front().pieces);
}

gx_Outline regionOf(gxShape const &shape)
{
  if (!shape.isRegion())
    throw gxShapesError::NotRegion();
  return gx_Outline(shape);
}

gxVector<2> firstPoint(gx_Outline const &outline)
{
  for (gx_Contour const &contour : outline.contours)
    if (!contour.pieces.empty())
      return contour.pieces.front().point(0.0);
  throw gxShapesError::EmptyShape();
}

/// Calls @p visit for every piece in turn.
template <class Visit>
void forPieces(gx_Outline const &outline, Visit visit)
{
  for (gx_Contour const &contour : outline.contours)
    for (gx_Piece const &piece : contour.pieces)
      visit(piece);
}

}  // namespace

bool gxShape::isOpenContour() const
{
  return false;
}

bool gxShape::isRegion() const
{
  return false;
}

bool gxShape::isFinite() const
{
  return true;
}

bool gxShape::isEmpty() const
{
  return false;
}

bool gxShape::hasTangent() const
{
  bool has = false;
  forPieces(gx_Outline(*this), [&](gx_Piece const &piece) { has = has || piece.hasDirection(); });
  return has;
}

bool gxShape::isDecomposed() const
{
  return false;
}

bool gxShape::isReversible() const
{
  return isOpenContour() || isRegion();
}

gxRect gxShape::boundingBox() const
{
  gxRect const box = gx_Outline(*this).bounds();
  if (box.isEmpty())
    throw gxShapesError::EmptyShape();
  return gf_finite(box);
}

gxVector<2> gxShape::nearestPoint(gxVector<2> const &p) const
{
  gx_Outline const outline(*this);
  gf_finite(p);
  gx_Nearest best{firstPoint(outline), 0.0, p.distance(firstPoint(outline))};
  forPieces(outline, [&](gx_Piece const &piece) {
    gx_Nearest const found = piece.nearest(p);
    if (found.distance < best.distance)
      best = found;
  });
  return best.point;
}

double gxShape::perimeter() const
{
  return gf_finite(gx_Outline(*this).length());
}

double gxShape::nearestPerimPos(gxShapeInfo const &info, gxVector<2> const &p) const
{
  if (info.numPieces() == 0)
    throw gxShapesError::NotContour();
  gx_Nearest best = info.piece(0).nearest(p);
  std::size_t bestPiece = 0;
  for (std::size_t i = 1; i < info.numPieces(); ++i) {
    gx_Nearest const found = info.piece(i).nearest(p);
    if (found.distance < best.distance) {
      best = found;
      bestPiece = i;
    }
  }
  return info.lengthBefore(bestPiece) + info.piece(bestPiece).lengthTo(best.param);
}

gxVector<2> gxShape::startPoint() const
{
  return openContourOf(*this).front().point(0.0);
}

gxVector<2> gxShape::endPoint() const
{
  return openContourOf(*this).back().point(1.0);
}

gxRadian gxShape::startAngle() const
{
  for (gx_Piece const &piece : openContourOf(*this))
    if (piece.hasDirection())
      return piece.tangent(0.0).angle();
  throw gxShapesError::NoTangent();
}

gxRadian gxShape::endAngle() const
{
  std::vector<gx_Piece> const pieces = openContourOf(*this);
  for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
    if (piece->hasDirection())
      return piece->tangent(1.0).angle();
  throw gxShapesError::NoTangent();
}

gxRadian gxShape::tangentRotation() const
{
  double rotation = 0.0;
  bool isFirst = true;
  gxRadian before;
  for (gx_Piece const &piece : openContourOf(*this)) {
    if (!piece.hasDirection())
      continue;
    if (!isFirst)
      rotation += (piece.tangent(0.0).angle() - before).signedNorm().value();
    rotation += piece.rotation();
    before = piece.tangent(1.0).angle();
    isFirst = false;
  }
  if (isFirst)
    throw gxShapesError::NoTangent();
  return gxRadian(rotation);
}

gxRadian gxShape::windingAngle(gxVector<2> const &p) const
{
  double angle = 0.0;
  for (gx_Piece const &piece : openContourOf(*this))
    angle += piece.winding(p);
  return gxRadian(angle);
}

bool gxShape::isRightHanded() const
{
  gx_Outline const outline = regionOf(*this);
  gxXform<2> const toStart(gxMatrix<2>(), -firstPoint(outline));  // so that the products do not cancel
  double doubleArea = 0.0;
  forPieces(outline, [&](gx_Piece const &piece) { doubleArea += piece.mapped(toStart).doubleArea(); });
  return doubleArea >= 0.0;
}

bool gxShape::within(gxVector<2> const &p) const
{
  gx_Outline const outline = regionOf(*this);
  double angle = 0.0;
  bool isOnOutline = false;
  forPieces(outline, [&](gx_Piece const &piece) {
    isOnOutline = isOnOutline || piece.nearest(p).point == p;
    angle += piece.winding(p);
  });
  return isOnOutline || std::abs(angle) > gf_turnRadians / 2.0;  // a whole number of turns, but for rounding
}

gxPtrHandle<gxShape> gxShape::reverse() const
{
  if (!isReversible())
    throw gxShapesError::NotReversible();
  return reverse_();
}

gxPtrHandle<gxShape> gxShape::reverse_() const
{
  return decompose()->reverse();
}

bool gxShape::isMultipleContours_() const
{
  return gx_Outline(*this).contours.size() > 1;
}

gxPerimPoint gxShape::perimPointAndTangent(gxShapeInfo const &info, double pos) const
{
  return perimPointAndTangent_(info, pos);
}

gxPerimPoint gxShape::perimPointAndTangent_(gxShapeInfo const &info, double pos) const
{
  gxShapeInfo::Place const place = info.placeAt(pos);
  gx_Piece const &piece = info.piece(place.piece);
  gxVector<2> const tangent = piece.tangent(place.param);
  return {piece.point(place.param), tangent.angle(), !(tangent == gxVector<2>())};
}

gxPtrHandle<gxShape> gxShape::cloneThat_(gxShape const &that) const
{
  return that.clone();
}

gxPtrHandle<gxShape> gxShape::clip(gxPolyline const &region, gxClipInfo &info) const
{
  if (!region.isRegion())
    throw gxShapesError::NotRegion();
  return clip_(region, info);
}

void gxShape::appendOutline(gx_Outline &outline) const
{
  if (isDecomposed())
    throw gxShapesError::NotContour();
  decompose()->appendOutline(outline);
}
