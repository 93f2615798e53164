#pragma once

#include "foundation/export.h"
#include "foundation/outline.h"

#include <cstddef>
#include <vector>

/// What is worth knowing of a shape before many questions about its perimeter: its pieces in a row and the length
/// before each. It holds for the shape that it was made from, as it was then.
class GX_API gxShapeInfo
{
 public:
  /// Throws gxShapesError::InfiniteShape, and BadGeom if a number of the outline is not finite.
  explicit gxShapeInfo(gxShape const &shape);

  /// A place on the outline by piece.
  struct Place {
    std::size_t piece = 0;  ///< index of the piece over all contours
    double param = 0.0;     ///< where on it, 0 to 1
  };

  gx_Outline const &outline() const { return outline_; }
  double perimeter() const { return starts_.back(); }
  std::size_t numPieces() const { return pieces_.size(); }
  gx_Piece const &piece(std::size_t i) const { return outline_.contours[pieces_[i].contour].pieces[pieces_[i].index]; }
  /// Index of the contour of a piece.
  std::size_t contourOf(std::size_t i) const { return pieces_[i].contour; }
  /// Length of the outline before piece @p i; for i = numPieces() the perimeter.
  double lengthBefore(std::size_t i) const { return starts_[i]; }

  /// The place at length @p pos. Where pieces meet it is the end of the earlier one, but 0 is the start of the first.
  /// Throws gxShapesError::BadCoef outside 0 to `perimeter()`, NotContour for a shape without outline.
  Place placeAt(double pos) const;

 private:
  struct Piece {
    std::size_t contour;
    std::size_t index;  ///< in the contour
  };

  gx_Outline outline_;
  std::vector<Piece> pieces_;
  std::vector<double> starts_;  ///< one more than pieces
};

/// What became of a shape that was clipped.
class gxClipInfo
{
 public:
  /// True if any part of the shape was cut off.
  bool isCut() const { return isCut_; }
  /// True if nothing is left.
  bool isOutside() const { return isOutside_; }
  void set(bool isCut, bool isOutside)
  {
    isCut_ = isCut;
    isOutside_ = isOutside;
  }

 private:
  bool isCut_ = false;
  bool isOutside_ = false;
};
