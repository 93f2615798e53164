#pragma once

/// @file
/// How an outline lies to a mask: where it meets it, and on which side it runs between these points.

#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/detail/polyrounded.h"

#include <cstddef>
#include <optional>
#include <vector>

/// An outline that others are held against, with the tree over its pieces.
class gx_CropMask
{
 public:
  using Box = gx_PolyBoxes::Box;

  /// Keeps a reference.
  explicit gx_CropMask(gxSMDGDPoly const &mask);
  gx_CropMask(gx_CropMask const &) = delete;
  gx_CropMask &operator=(gx_CropMask const &) = delete;

  /// Round all of it.
  Box const &box() const { return boxes_->whole(); }

  /// Calls visit(piece) with the pieces that may come near a box, in order, until it returns true. True if it did.
  template <class Visit>
  bool anyPieceNear(Box const &box, Visit visit) const
  {
    return boxes_->anyNear(box, mask_.vertices().size() - 1, [&](std::size_t at) {
      int const j = static_cast<int>(at);
      return visit(gx_roundedVertex(mask_, j)) ||
             (gxSMDGDPolyPrivate::previousSegmentIndex_(mask_, j) != -1 && visit(gx_roundedPiece(mask_, j)));
    });
  }
  /// True if a piece comes within @p distance of the point.
  bool comesNear(gxVector<2> const &p, double distance) const;
  /// True for a point inside. Throws gxSMDGDPoly::notClosed if the box is met and the outline is open.
  bool holds(gxVector<2> const &p) const;

 private:
  gxSMDGDPoly const &mask_;
  gx_PolyBoxes own_;  ///< where those of the outline are not current
  gx_PolyBoxes const *boxes_;
};

/// A place where an outline meets its mask.
struct gx_CropPoint {
  std::size_t piece = 0;  ///< see gx_CropPath
  double along = 0.0;     ///< from the start of the piece
  gxVector<2> point;
  bool crosses = false;  ///< surely: far from the ends of the pieces that meet, and not along them
  bool isCut = false;    ///< what is before is kept and what is behind is not, or the other way round
  bool touches = false;  ///< what is before and what is behind runs on one side, and not along the mask
};

/// The pieces of an outline in the order of travel - of vertex i, its fillet or point, piece 2 i, and the segment that
/// leaves it, piece 2 i + 1 - and the points where they meet the mask.
class gx_CropPath
{
 public:
  gx_CropPath(gxSMDGDPoly const &poly, gxSMDGDPoly const &mask, bool keepInside);

  /// True if the outline is kept where it begins; a closed one that begins on the mask, where it arrives there.
  bool beginsKept() const { return beginsKept_; }
  std::vector<gx_CropPoint> const &points() const { return points_; }
  double length(std::size_t piece) const { return pieces_[piece].length; }

 private:
  struct Piece {
    std::optional<gx_RoundedPiece> shape;  ///< none behind the end of an open outline
    double length = 0.0;
    gxVector<2> start, end;
  };
  /// Of a stretch between two points; one along the mask is on neither.
  enum class Side { none, inside, outside, along };
  struct Portion {
    std::size_t piece = 0;
    double from = 0.0, to = 0.0;
  };

  void makePieces();
  void findPoints();
  void findPointsOf(std::size_t piece, gx_RoundedPiece const &of);
  void add(std::size_t piece, gxVector<2> const &point, bool crosses);
  void mergeDoubles();
  std::vector<Side> findSides(bool trusting) const;
  Side sideOf(Portion const &portion) const;
  Portion longestPortion(gx_CropPoint const *from, gx_CropPoint const *to) const;
  static std::vector<Side> settled(std::vector<Side> const &sides, bool isClosed);
  gxVector<2> pointAt(std::size_t piece, double along) const;

  gxSMDGDPoly const &poly_;
  gx_CropMask mask_;
  double tolerance_;
  std::vector<Piece> pieces_;
  std::vector<gx_CropPoint> points_;
  bool beginsKept_ = false;
};
