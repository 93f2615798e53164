#include "dispc/wrfm/detail/genpoly.h"
#include "dispc/wrfm/genpoly.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"

#include <algorithm>

// The polygon as a shape. What is asked of its curves goes to the chain of simple shapes that it decomposes into.

namespace
{

gxVector<2> const &pointOf(gxSMDGDPoly const &poly, long v)
{
  return poly.vertex(v, true).point();
}

}  // namespace

bool gxGenPoly::hasTangent() const
{
  auto const &all = poly_.vertices();
  return std::any_of(all.begin(), all.end(),
                     [&](gxSMDGDPolyVertex const &v) { return !(v.point() == all.front().point()); });
}

gxRect gxGenPoly::boundingBox() const
{
  if (degen())
    throw gxShapesError::EmptyShape();
  return decompose()->boundingBox();
}

gxVector<2> gxGenPoly::nearestPoint(gxVector<2> const &p) const
{
  if (degen())
    throw gxShapesError::EmptyShape();
  return decompose()->nearestPoint(p);
}

gxVector<2> gxGenPoly::startPoint() const
{
  if (!isOpenContour())
    throw gxShapesError::NotOpenContour();
  return pointOf(poly_, 0);
}

gxVector<2> gxGenPoly::endPoint() const
{
  if (!isOpenContour())
    throw gxShapesError::NotOpenContour();
  return pointOf(poly_, -1);
}

gxRadian gxGenPoly::startAngle() const
{
  gxVector<2> const from = startPoint();
  if (numVertices() < 2)
    throw gxShapesError::NoTangent();
  return (pointOf(poly_, 1) - from).angle();
}

gxRadian gxGenPoly::endAngle() const
{
  gxVector<2> const to = endPoint();
  if (numVertices() < 2)
    throw gxShapesError::NoTangent();
  return (to - pointOf(poly_, -2)).angle();
}

// By the shoelace formula over the vertices.
bool gxGenPoly::isRightHanded() const
{
  if (!isRegion())
    throw gxShapesError::NotRegion();
  double sum = 0.0;
  for (long v = 0; v < numVertices(); ++v)
    sum += pointOf(poly_, v).cross(pointOf(poly_, v + 1));
  return (sum >= 0.0) != (xform_.matrix().det() < 0.0);
}

bool gxGenPoly::within(gxVector<2> const &p) const
{
  if (!isRegion())
    throw gxShapesError::NotRegion();
  return ask_([&] { return gxSMDGDPolyPrivate::inside(poly_, p); });
}

gxPtrHandle<gxShape> gxGenPoly::mapShape(gxXform<2> const &xform) const
{
  return decompose()->mapShape(xform);
}

gxPtrHandle<gxShape> gxGenPoly::reverse() const
{
  gxPtrHandle<gxShape> const copy = clone();
  auto &reversed = dynamic_cast<gxGenPoly &>(*copy);
  ask_([&] { gxSMDGDPolyPrivate::reversePoly(poly_, reversed.poly_); });
  return copy;
}

bool gxGenPoly::hasFillet_(long index) const
{
  int const v = static_cast<int>(index);
  return gxSMDGDPolyPrivate::vertexIsRounded_(poly_, v) && !gxSMDGDPolyPrivate::isEndVertex(poly_, v);
}

gxPtrHandle<gxShape> gxGenPoly::decompose() const
{
  gxShapeTree::Children parts;
  if (numVertices() == 1)
    parts.push_back(new gxLineSeg(vertexPoint(0), vertexPoint(0)));
  for (long v = 0; v < numVertices() && numVertices() > 1; ++v) {
    if (hasFillet_(v)) {
      gxEllipseArc2 const arc = roundedVertexArc(v);
      if (vertexRoundingSize(v) > 0.0)
        parts.push_back(new gxEllipseArc2(arc));
      else
        parts.push_back(negCornerArc_(arc));
    }
    if (v >= numSegments() || gxSMDGDPolyPrivate::isUsedUp_(poly_, segmentAt_(v)))
      continue;
    if (isLineSegment(v))
      parts.push_back(new gxLineSeg(lineSegment(v, false)));
    else
      parts.push_back(new gxEllipseArc2(ellipseSegment(v, false)));
  }
  return new gxContourTree(std::move(parts), isRegion());
}

gxPtrHandle<gxShape> gxGenPoly::negCornerArc_(gxEllipseArc2 const &arc) const
{
  return new gxEllipseArc2(arc);
}

void gxGenPoly::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  if (params.uniformMode())
    throw gxShapesError::BadParams();
  decompose()->sample(params, result);
}

gxPtrHandle<gxShape> gxGenPoly::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  gxPtrHandle<gxShape> const cut = decompose()->clip(region, info);
  return info.isCut() ? cut : clone();
}
