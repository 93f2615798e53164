#include "foundation/lineseg.h"
#include "foundation/outline.h"
#include "foundation/polyline.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"

#include <algorithm>

// Operations that make shapes of parts of an outline.

namespace
{

/// A contour as a tree of simple shapes; an open one of a single piece as that shape itself.
gxPtrHandle<gxShape> decomposed(gx_Contour const &contour)
{
  if (contour.pieces.size() == 1 && !contour.closed)
    return contour.pieces.front().shape();
  gxShapeTree::Children children;
  for (gx_Piece const &piece : contour.pieces)
    children.push_back(piece.shape());
  return new gxContourTree(std::move(children), contour.closed);
}

/// A contour as the simplest shape: a polyline if it is straight.
gxPtrHandle<gxShape> simplest(gx_Contour const &contour)
{
  auto const isStraight = [](gx_Piece const &piece) { return piece.isStraight(); };
  if ((contour.pieces.size() == 1 && !contour.closed) ||
      !std::all_of(contour.pieces.begin(), contour.pieces.end(), isStraight))
    return decomposed(contour);
  std::vector<gxVector<2>> vertices;
  for (gx_Piece const &piece : contour.pieces)
    vertices.push_back(piece.point(0.0));
  if (!contour.closed && !contour.pieces.empty())
    vertices.push_back(contour.pieces.back().point(1.0));
  return new gxPolyline(std::move(vertices), contour.closed);
}

/// Several contours as a set, one as itself, none as an empty polyline.
gxPtrHandle<gxShape> simplest(gx_Outline const &outline)
{
  if (outline.contours.empty())
    return new gxPolyline();
  if (outline.contours.size() == 1)
    return simplest(outline.contours.front());
  gxShapeTree::Children children;
  for (gx_Contour const &contour : outline.contours)
    children.push_back(simplest(contour));
  return new gxShapeTree(std::move(children));
}

}  // namespace

gxPtrHandle<gxShape> gxShape::decompose() const
{
  if (isDecomposed())
    return clone();
  gx_Outline const outline(*this);
  if (outline.contours.size() <= 1)
    return outline.contours.empty() ? new gxContourTree : decomposed(outline.contours.front());
  if (isRegion()) {
    gxPtrHandle<gxRegionTree> const tree = new gxRegionTree(decomposed(outline.contours.front()));
    for (std::size_t i = 1; i < outline.contours.size(); ++i)
      tree->addRegion(gxPtrHandle_const<gxShape>(decomposed(outline.contours[i])));
    return tree;
  }
  gxShapeTree::Children children;
  for (gx_Contour const &contour : outline.contours)
    children.push_back(decomposed(contour));
  return new gxShapeTree(std::move(children));
}

gxPtrHandle<gxShape> gxShape::subShape(gxShapeInfo const &info, double from, double to) const
{
  gxShapeInfo::Place const last = info.placeAt(to);
  gxShapeInfo::Place first = info.placeAt(from);
  // where pieces meet, a part begins with the later one, and ends with the earlier one
  while (from < to && first.piece < last.piece && info.lengthBefore(first.piece + 1) <= from)
    first = {first.piece + 1, 0.0};
  if (info.contourOf(first.piece) != info.contourOf(last.piece))
    throw gxShapesError::BadGeom();
  bool const isClosed = info.outline().contours[info.contourOf(first.piece)].closed;
  if (from > to && !isClosed)
    throw gxShapesError::BadCoef();
  gx_Contour part;
  if (from <= to && first.piece == last.piece) {
    part.pieces.push_back(info.piece(first.piece).part(first.param, last.param));
    return simplest(part);
  }
  std::size_t const contour = info.contourOf(first.piece);
  part.pieces.push_back(info.piece(first.piece).part(first.param, 1.0));
  auto const next = [&](std::size_t i) {
    if (i + 1 < info.numPieces() && info.contourOf(i + 1) == contour)
      return i + 1;
    while (i > 0 && info.contourOf(i - 1) == contour)
      --i;
    return i;
  };
  for (std::size_t i = next(first.piece); i != last.piece; i = next(i))
    part.pieces.push_back(info.piece(i));
  part.pieces.push_back(info.piece(last.piece).part(0.0, last.param));
  return simplest(part);
}

namespace
{

/// The places where a piece must be cut so that each part lies on one side of the region's outline.
std::vector<double> cutsOf(gx_Piece const &piece, gxPolyline const &region)
{
  std::vector<double> cuts = {0.0, 1.0};
  std::vector<gxVector<2>> const &corners = region.vertices();
  for (std::size_t i = 0; i < corners.size(); ++i) {
    std::vector<double> const found = piece.crossings(corners[i], corners[(i + 1) % corners.size()]);
    cuts.insert(cuts.end(), found.begin(), found.end());
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
  return cuts;
}

/// Cuts one contour into chains within the region.
class Clipper
{
 public:
  Clipper(gxPolyline const &region, std::vector<gx_Contour> &chains) : region_(region), chains_(chains) {}

  bool isCut() const { return isCut_; }

  void clip(gx_Contour const &contour)
  {
    std::size_t const first = chains_.size();
    bool const wasCut = isCut_;
    isCut_ = false;
    isOpen_ = false;
    for (gx_Piece const &piece : contour.pieces)
      clip(piece);
    if (!isCut_ && chains_.size() == first + 1)
      chains_.back().closed = contour.closed;
    else if (contour.closed && isOpen_ && startsInside_ && chains_.size() > first + 1)
      joinAcrossStart(first);
    isCut_ = isCut_ || wasCut;
    startsInside_ = false;
  }

 private:
  void clip(gx_Piece const &piece)
  {
    std::vector<double> const cuts = cutsOf(piece, region_);
    for (std::size_t i = 1; i < cuts.size(); ++i) {
      bool const isInside = region_.within(piece.point(0.5 * (cuts[i - 1] + cuts[i])));
      if (isInside)
        keep(piece.part(cuts[i - 1], cuts[i]));
      else
        drop();
    }
  }
  void keep(gx_Piece const &part)
  {
    if (!isOpen_) {
      chains_.push_back({});
      startsInside_ = startsInside_ || !isCut_;
    }
    isOpen_ = true;
    chains_.back().pieces.push_back(part);
  }
  void drop()
  {
    isCut_ = true;
    isOpen_ = false;
  }
  /// The chain that ends at the start of a closed contour goes on with the one that begins there.
  void joinAcrossStart(std::size_t first)
  {
    gx_Contour last = std::move(chains_.back());
    chains_.pop_back();
    std::vector<gx_Piece> const &rest = chains_[first].pieces;
    last.pieces.insert(last.pieces.end(), rest.begin(), rest.end());
    chains_[first] = std::move(last);
  }

  gxPolyline const &region_;
  std::vector<gx_Contour> &chains_;
  bool isCut_ = false;         ///< something of this contour was dropped
  bool isOpen_ = false;        ///< the last chain goes on
  bool startsInside_ = false;  ///< the first chain of this contour begins at its start
};

}  // namespace

gxPtrHandle<gxShape> gxShape::clip_(gxPolyline const &region, gxClipInfo &info) const
{
  gx_Outline const outline(*this);
  gx_Outline inside;
  Clipper clipper(region, inside.contours);
  for (gx_Contour const &contour : outline.contours)
    clipper.clip(contour);
  info.set(clipper.isCut(), inside.contours.empty());
  return clipper.isCut() ? simplest(inside) : clone();
}
