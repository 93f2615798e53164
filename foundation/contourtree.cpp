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

bool gxContourTree::hasContour() const
{
  return std::any_of(children().begin(), children().end(), [](auto const &c) { return c->isOpenContour(); });
}

// The joining lines belong to the contour, so that these go by the outline and not only child by child. They lie
// within the box of their ends.

gxVector<2> gxContourTree::nearestPoint(gxVector<2> const &p) const
{
  if (!isFinite() || !hasContour())
    return gxShapeTree::nearestPoint(p);
  gxVector<2> best = gxShape::nearestPoint(p);
  for (auto const &child : children())
    if (!child->isOpenContour() && !child->isEmpty()) {  // a point, for instance, has no outline
      gxVector<2> const found = child->nearestPoint(p);
      if (p.distance(found) < p.distance(best))
        best = found;
    }
  return best;
}

void gxContourTree::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  hasContour() ? gxShape::sample(params, result) : gxShapeTree::sample(params, result);
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
  return hasContour() ? gxShape::clip_(region, info) : gxShapeTree::clip_(region, info);
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
