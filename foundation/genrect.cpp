#include "foundation/genrect.h"

#include "foundation/detail/finite.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <cmath>
#include <numbers>

GX_SHAPE_IMPL(gxGenRect, gxShape)

namespace
{

bool isRounding(gxVector<2> const &r)
{
  return !(r.x() < 0.0 || r.x() > 1.0 || r.y() < 0.0 || r.y() > 1.0);
}

}  // namespace

void gxGenRect::passFields_(gxArchive &archive)
{
  gxVector<2> center = center_, rounding = rounding_;
  gxMatrix<2> matrix = matrix_;
  archive || center || matrix || rounding;
  if (!isRounding(rounding))
    archive.fail("a rounding outside 0 to 1");
  center_ = center;
  matrix_ = matrix;
  rounding_ = rounding;
}

gxGenRect::gxGenRectData::gxGenRectData(gxGenRect const &rect)
{
  gxXform<2> const toPlace(rect.matrix_, rect.center_);
  corners_ = {toPlace * gxVector<2>(-1.0, -1.0), toPlace * gxVector<2>(1.0, -1.0), toPlace * gxVector<2>(1.0, 1.0),
              toPlace * gxVector<2>(-1.0, 1.0)};
}

gxGenRect::gxGenRect(gxVector<2> const &center, gxMatrix<2> const &matrix, gxVector<2> const &rounding)
    : center_(center), matrix_(matrix), rounding_(rounding)
{
  if (!isRounding(rounding))
    throw gxShapesError::BadRadius();
}

gxGenRect::gxGenRect(gxVector<2> const &center, gxVector<2> const &size, gxRadian angle, gxVector<2> const &rounding)
    : gxGenRect(center, gxMatrix<2>(angle, angle, size.x() * 0.5, size.y() * 0.5), rounding)
{
}

gxVector<2> gxGenRect::size() const
{
  return {2.0 * std::hypot(matrix_.element(0, 0), matrix_.element(1, 0)),
          2.0 * std::hypot(matrix_.element(0, 1), matrix_.element(1, 1))};
}

gxGenRect gxGenRect::map(gxXform<2> const &xform) const
{
  return {xform * center_, xform.matrix() * matrix_, rounding_};
}

gxVector<2> gxGenRect::effectiveRounding() const
{
  return rounding_.x() == 0.0 || rounding_.y() == 0.0 ? gxVector<2>() : rounding_;
}

gxRect gxGenRect::boundingBox() const
{
  // the rounded square is the sum of a smaller square and an ellipse, and half widths add up
  gxVector<2> const round = effectiveRounding();
  auto const halfWidth = [&](int row) {
    double const x = matrix_.element(row, 0), y = matrix_.element(row, 1);
    return std::abs(x) * (1.0 - round.x()) + std::abs(y) * (1.0 - round.y()) + std::hypot(x * round.x(), y * round.y());
  };
  gxVector<2> const half(halfWidth(0), halfWidth(1));
  return gf_finite(gxRect(center_ - half, half * 2.0));
}

bool gxGenRect::within(gxVector<2> const &p) const
{
  if (matrix_.det() == 0.0)
    return nearestPoint(p) == p;
  gxVector<2> const q = gxXform<2>(matrix_, center_).invMapPoint(p);
  if (!(std::abs(q.x()) <= 1.0 && std::abs(q.y()) <= 1.0))
    return false;
  gxVector<2> const round = effectiveRounding();
  double const pastX = std::abs(q.x()) - (1.0 - round.x());
  double const pastY = std::abs(q.y()) - (1.0 - round.y());
  return pastX <= 0.0 || pastY <= 0.0 || std::hypot(pastX / round.x(), pastY / round.y()) <= 1.0;
}

gxPtrHandle<gxShape> gxGenRect::mapShape(gxXform<2> const &xform) const
{
  return new gxGenRect(map(xform));
}

gxPtrHandle<gxShape> gxGenRect::reverse_() const
{
  return new gxGenRect(center_, matrix_ * gxMatrix<2>(-1.0, 0.0, 0.0, 1.0), rounding_);
}

void gxGenRect::appendOutline(gx_Outline &outline) const
{
  gx_Contour &contour = outline.addContour(true);
  gxXform<2> const toPlace(matrix_, center_);
  gxVector<2> const round = effectiveRounding();
  gxVector<2> const sharp = gxVector<2>(1.0, 1.0) - round;  // half size of the square between the roundings
  // each side in the frame of the square: it runs along `along`, and `out` points outward
  gxVector<2> along(1.0, 0.0);
  for (int side = 0; side < 4; ++side) {
    gxVector<2> const out(along.y(), -along.x());
    auto const scaled = [](gxVector<2> const &a, gxVector<2> const &b) {
      return gxVector<2>(a.x() * b.x(), a.y() * b.y());
    };
    gxVector<2> const middle = scaled(out, sharp + round);
    gxVector<2> const reach = scaled(along, sharp);
    if (!(reach == gxVector<2>()))
      contour.pieces.push_back(gx_LinePiece{toPlace * (middle - reach), toPlace * (middle + reach)});
    if (!(round == gxVector<2>()))
      contour.pieces.push_back(gx_ArcPiece{toPlace * scaled(out + along, sharp), matrix_ * scaled(out, round),
                                           matrix_ * scaled(along, round), 0.0, std::numbers::pi / 2.0});
    along = gxVector<2>(-along.y(), along.x());
  }
}
