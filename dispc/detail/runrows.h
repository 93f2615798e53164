#pragma once

#include "foundation/rlebuf.h"

#include <vector>

namespace gx_scale
{
/// Rows of runs in the making, in a few large blocks of memory; whatever throws, nothing leaks.
///
/// A row is written through a bare pointer, which the loop that writes it can keep in a register:
/// @code
/// gxRLEBufferRun *to = rows.begin();
/// while (...)
///   rows.put(to, run);
/// rows.end(to);
/// @endcode
class RunRows
{
 public:
  explicit RunRows(long rows) { rows_.reserve(rows); }
  RunRows(RunRows const &) = delete;
  RunRows &operator=(RunRows const &) = delete;
  ~RunRows();

  /// Begins a row.
  gxRLEBufferRun *begin()
  {
    rows_.push_back(next_);
    return next_;
  }
  void put(gxRLEBufferRun *&to, gxRLEBufferRun run)
  {
    if (to == limit_)
      to = move(to);
    *to++ = run;
  }
  /// Up to here, runs of the present row may be written without put().
  gxRLEBufferRun const *limit() const { return limit_; }
  /// Writes the closing pair.
  void end(gxRLEBufferRun *to)
  {
    put(to, {0, 0});
    next_ = to;
  }
  /// Appends a copy of the last row.
  void repeat();

  long count() const { return static_cast<long>(rows_.size()); }
  /// A buffer that owns the rows. Nothing is left here.
  gxRLEBuffer take(long width);

 private:
  gxRLEBufferRun *move(gxRLEBufferRun *to);
  void newBlock(long pairs);

  std::vector<gxRLEBufferRun *> rows_;
  std::vector<gxRLEBufferRun *> blocks_;
  gxRLEBufferRun *next_ = nullptr;   ///< where the next row begins
  gxRLEBufferRun *limit_ = nullptr;  ///< end of the last block
  long size_ = 0;                    ///< pairs of the last block
};
}  // namespace gx_scale
