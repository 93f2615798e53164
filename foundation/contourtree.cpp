#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapearchive.h"
#include "foundation/shapetree.h"

#include <algorithm>

GX_SHAPE_IMPL(gxContourTree, gxShapeTree)

void gxContourTree::passFields_(gxArchive &archive)
{
  archive || isClosed_;
}

void gxContourTree::isClosed(bool v)
{
  mutating();
  isClosed_ = v;
}

// The joining lines belong to the contour, so that these go by the outline and not child by child.

gxRect gxContourTree::boundingBox() const
{
  return isFinite() && !isEmpty() ? gxShape::boundingBox() : gxShapeTree::boundingBox();
}

gxVector<2> gxContourTree::nearestPoint(gxVector<2> const &p) const
{
  return isFinite() && !isEmpty() ? gxShape::nearestPoint(p) : gxShapeTree::nearestPoint(p);
}

void gxContourTree::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  gxShape::sample(params, result);
}

gxPtrHandle<gxShape> gxContourTree::reverse_() const
{
  Children turned;
  for (auto child = children().rbegin(); child != children().rend(); ++child)
    turned.push_back((*child)->reverse());
  return withChildren(std::move(turned));
}

gxPtrHandle<gxShape> gxContourTree::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  return gxShape::clip_(region, info);
}

void gxContourTree::appendOutline(gx_Outline &outline) const
{
  gx_Outline others;  // of children without ends
  gx_Contour contour;
  contour.closed = isClosed_;
  auto const joinTo = [&](gxVector<2> const &p) {
    gxVector<2> const end = contour.pieces.back().point(1.0);
    if (!(end == p))
      contour.pieces.push_back(gx_LinePiece{end, p});
  };
  for (auto const &child : children()) {
    if (!child->isOpenContour()) {
      child->appendOutline(others);
      continue;
    }
    gx_Outline part;
    child->appendOutline(part);
    for (gx_Contour const &chain : part.contours)
      for (gx_Piece const &piece : chain.pieces) {
        if (!contour.pieces.empty())
          joinTo(piece.point(0.0));
        contour.pieces.push_back(piece);
      }
  }
  if (!contour.pieces.empty()) {
    if (isClosed_)
      joinTo(contour.pieces.front().point(0.0));
    outline.contours.push_back(std::move(contour));
  }
  std::move(others.contours.begin(), others.contours.end(), std::back_inserter(outline.contours));
}
