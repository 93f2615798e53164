#include "dispc/detail/runrows.h"

#include <algorithm>

namespace gx_scale
{
RunRows::~RunRows()
{
  for (gxRLEBufferRun *block : blocks_)
    delete[] block;
}

/// Makes a block with room for at least @p pairs; blocks double, so that there are few.
void RunRows::newBlock(long pairs)
{
  constexpr long least = 1L << 12;
  blocks_.reserve(blocks_.size() + 1);
  size_ = std::max({least, 2 * size_, pairs});
  next_ = new gxRLEBufferRun[size_];
  blocks_.push_back(next_);
  limit_ = next_ + size_;
}

/// The block is full: takes the row that is being written to a new one.
gxRLEBufferRun *RunRows::move(gxRLEBufferRun *to)
{
  gxRLEBufferRun const *const row = rows_.back();
  long const written = to - row;
  newBlock(2 * written + 1);
  rows_.back() = next_;
  return std::copy_n(row, written, next_);
}

void RunRows::repeat()
{
  gxRLEBufferRun const *const row = rows_.back();
  long const pairs = next_ - row;
  if (limit_ - next_ < pairs)
    newBlock(pairs);
  rows_.push_back(next_);
  next_ = std::copy_n(row, pairs, next_);
}

gxRLEBuffer RunRows::take(long width)
{
  gxRLEBuffer result;
  result.becomeOwner(width, rows_, blocks_, true);
  blocks_.clear();
  rows_.clear();
  next_ = limit_ = nullptr;
  return result;
}
}  // namespace gx_scale
