#pragma once

#include "dispc/wrfm/poly.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"
#include "foundation/xform.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Fills the inside of a closed outline in an image, row by row.
///
/// The rule: on each row, the line through the centres of its pels meets the outline in points, whose columns are
/// their rounded coordinates; the run between two neighbouring columns is filled if the middle between their points
/// lies inside. fillRow() does just that, by questions to the outline. fill() gives the same pels: it steps along lines
/// and arcs, and leaves to fillRow() the rows where the two could differ: those next to the end or the extremum of a
/// piece, those where a column is not clear, and all of an outline whose coordinates are too large for such a promise.
class GX_API gx_SyntheticFill
{
 public:
  /// @param map from the outline to image coordinates
  /// @param left, right the columns between which the outline lies
  /// @param window the pels that are filled; a copy of a handle
  /// Throws gxMathError::Singular.
  gx_SyntheticFill(gxSMDGDPoly const &poly, gxXform<2> const &map, long left, long right,
                   gxPelBuffer<unsigned char> const &window, unsigned char value);

  void fill();
  void fillRow(long y) const;

  /// The rows that fill() left to fillRow(); for tests and benchmarks.
  long numExactRows() const { return numExact_; }

 private:
  class Pieces;
  struct Run {
    std::int32_t from, length;  ///< from the first column of the window
  };
  void fillRun(unsigned char *row, long from, long to) const;
  static void sortPieces(std::vector<std::int32_t const *> &pieces, std::size_t row,
                         std::vector<std::int32_t> &columns);
  bool isClear(std::vector<std::int32_t> const &columns) const;
  /// Every other run between columns, within the window.
  void findRuns(std::vector<std::int32_t> const &columns, std::vector<Run> &runs) const;

  gxSMDGDPoly const &poly_;
  gxXform<2> const map_, modelFromPel_;
  long const left_, right_;
  gxPelBuffer<unsigned char> const &window_;
  unsigned char const value_;
  long numExact_ = 0;
};
