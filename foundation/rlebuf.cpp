#include "foundation/rlebuf.h"

#include "foundation/archive.h"
#include "foundation/detail/rlerow.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

using gx_rle::runsBefore;

/// Gathers rows in a few large blocks; whatever throws, nothing leaks.
class gxRLEBuffer::Builder
{
 public:
  /// @param pairs about what all rows together will need
  Builder(gxRLEBuffer &buffer, long rows, long pairs) : buffer_(buffer), pairsLeft_(pairs)
  {
    buffer_.rows_.reserve(rows);
  }

  /// Begins a row of @p pairs pairs at most, closing pair included.
  gxRLEBufferRun *beginRow(long pairs)
  {
    if (pairs > room_)
      newBlock(pairs);
    buffer_.rows_.push_back(next_);
    return next_;
  }
  /// @p end is behind the closing pair.
  void endRow(gxRLEBufferRun *end)
  {
    long const used = end - next_;
    room_ -= used;
    pairsLeft_ -= used;
    next_ = end;
  }

 private:
  void newBlock(long atLeast)
  {
    constexpr long least = 64, most = 1L << 14;
    room_ = std::max(atLeast, std::clamp(pairsLeft_, least, most));
    buffer_.blocks_.push_back(nullptr);
    next_ = buffer_.blocks_.back() = new gxRLEBufferRun[room_];
  }

  gxRLEBuffer &buffer_;
  long pairsLeft_;
  gxRLEBufferRun *next_ = nullptr;
  long room_ = 0;
};

gxRLEBuffer::gxRLEBuffer() = default;

gxRLEBuffer::gxRLEBuffer(gxPelBuffer_const<unsigned char> const &image)
{
  encode(image);
}

gxRLEBuffer::gxRLEBuffer(gx_TmpRLEBuffer &&tmp) noexcept : gxRLEBuffer(std::move(tmp.buffer_)) {}

gxRLEBuffer::gxRLEBuffer(gxRLEBuffer const &other) : gxRLEBuffer()
{
  gxRLEBuffer copy;
  copy.width_ = other.width_;
  copy.offset_ = other.offset_;
  Builder builder(copy, other.height(), other.numRuns() + other.height());
  for (gxRLEBufferRun const *row : other.rows_) {
    long const pairs = runsBefore(row) + 1;
    builder.endRow(std::copy_n(row, pairs, builder.beginRow(pairs)));
  }
  swap(copy);
}

gxRLEBuffer::gxRLEBuffer(gxRLEBuffer &&other) noexcept
{
  swap(other);
}

gxRLEBuffer &gxRLEBuffer::operator=(gxRLEBuffer const &other)
{
  return *this = gxRLEBuffer(other);
}

gxRLEBuffer &gxRLEBuffer::operator=(gxRLEBuffer &&other) noexcept
{
  gxRLEBuffer taken(std::move(other));
  swap(taken);
  return *this;
}

gxRLEBuffer &gxRLEBuffer::operator=(gx_TmpRLEBuffer &&tmp) noexcept
{
  return *this = std::move(tmp.buffer_);
}

gxRLEBuffer::~gxRLEBuffer()
{
  becomeDegenerate();
}

/// Empties the buffer; rows that it does not own are not freed.
void gxRLEBuffer::becomeDegenerate()
{
  for (gxRLEBufferRun *block : blocks_)
    delete[] block;
  blocks_.clear();
  rows_.clear();
  width_ = 0;
  offset_ = {};
}

void gxRLEBuffer::swap(gxRLEBuffer &other) noexcept
{
  std::swap(width_, other.width_);
  std::swap(offset_, other.offset_);
  rows_.swap(other.rows_);
  blocks_.swap(other.blocks_);
}

long gxRLEBuffer::numRuns() const
{
  long n = 0;
  for (gxRLEBufferRun const *row : rows_)
    n += runsBefore(row);
  return n;
}

gxRLEBufferRun const *gxRLEBuffer::pointToRow(long y) const
{
  auto const i = static_cast<unsigned long>(y) - static_cast<unsigned long>(offset_.y());
  if (i >= rows_.size())
    throw gxPel::BadCoord("row " + std::to_string(y) + " lies outside of the " + std::to_string(rows_.size()) +
                          " rows from " + std::to_string(offset_.y()));
  return rows_[i];
}

void gxRLEBuffer::encode(gxPelBuffer_const<unsigned char> const &image)
{
  image.checkBound();
  gxRLEBuffer packed;
  packed.width_ = image.width();
  packed.offset_ = image.offset();
  long const y = image.window().y();
  std::vector<std::uint32_t> scratch(image.width() + gx_rle::scratchExcess);
  Builder builder(packed, image.height(), (image.width() + 1) * image.height());
  for (long i = 0; i < image.height(); ++i) {
    gxRLEBufferRun *const row = builder.beginRow(image.width() + 1);
    builder.endRow(gx_rle::packRow(image.pointToRow(y + i), image.width(), scratch.data(), row));
  }
  swap(packed);
}

gxPelBuffer<unsigned char> gxRLEBuffer::image() const
{
  gxPelBuffer<unsigned char> result(width(), height());
  result.offset(offset_);
  unpack(result);
  return result;
}

void gxRLEBuffer::unpack(gxPelBuffer<unsigned char> const &target) const
{
  target.checkBound();
  if (target.window().isNull())
    return;
  long const first = target.window().y();
  long const width = std::min(width_, target.width());
  for (long i = 0; i < target.height(); ++i) {
    unsigned char *const row = target.pointToRow(first + i);
    unsigned char *const end = row + target.width();
    unsigned char *to = i < height() ? gx_rle::unpackRow(rows_[i], row, width) : row;
    std::fill(to, end, static_cast<unsigned char>(0));
  }
}

gx_TmpRLEBuffer gxRLEBuffer::subWindow(gxPelRect const &window) const
{
  // In columns and rows of the image; 32-bit sizes and labels cannot overflow a long.
  long const x = window.x() - offset_.x(), y = window.y() - offset_.y();
  long const left = std::clamp(x, 0L, width()), right = std::clamp(x + window.width(), left, width());
  long const top = std::clamp(y, 0L, height()), bottom = std::clamp(y + window.height(), top, height());

  gxRLEBuffer part;
  part.width_ = right - left;
  part.offset_ = gxPair<long>(offset_.x() + left, offset_.y() + top);
  long pairs = 0;
  for (long i = top; i < bottom; ++i)
    pairs += runsBefore(rows_[i]) + 1;
  Builder builder(part, bottom - top, pairs);
  for (long i = top; i < bottom; ++i) {
    gxRLEBufferRun *const row = builder.beginRow(runsBefore(rows_[i]) + 1);
    builder.endRow(gx_rle::cutRow(rows_[i], left, right, row));
  }
  return gx_TmpRLEBuffer(std::move(part));
}

void gxRLEBuffer::becomeOwner(long width, std::vector<gxRLEBufferRun *> const &rows,
                              std::vector<gxRLEBufferRun *> const &blocks, bool own)
{
  constexpr long largest = std::numeric_limits<std::int32_t>::max();
  if (width < 0 || width > largest || rows.size() > static_cast<std::size_t>(largest))
    throw gxPel::BadSize("a run-length buffer cannot be " + std::to_string(width) + " x " +
                         std::to_string(rows.size()));
  if (auto const null = std::find(rows.begin(), rows.end(), nullptr); null != rows.end())
    throw gxPel::BadWindow("row " + std::to_string(null - rows.begin()) + " of a run-length buffer is null");

  gxRLEBuffer taken;
  taken.rows_ = rows;
  if (own)
    taken.blocks_ = blocks;
  taken.width_ = width;
  swap(taken);
}

void gxRLEBuffer::store(gxArchive &archive) const
{
  long const rows = archive.passCount(height(), sizeof(std::int32_t));
  for (long i = 0; i < rows; ++i) {
    long const runs = archive.passCount(runsBefore(rows_[i]), sizeof(gxRLEBufferRun));
    archive.raw(reinterpret_cast<char *>(rows_[i]), runs * static_cast<long>(sizeof(gxRLEBufferRun)));
  }
}

/// Into an empty buffer.
void gxRLEBuffer::load(gxArchive &archive)
{
  long const rows = archive.passCount(0, sizeof(std::int32_t));
  constexpr long usualRow = 16;
  Builder builder(*this, rows, rows * usualRow);
  for (long i = 0; i < rows; ++i) {
    long const runs = archive.passCount(0, sizeof(gxRLEBufferRun));
    gxRLEBufferRun *const row = builder.beginRow(runs + 1);
    archive.raw(reinterpret_cast<char *>(row), runs * static_cast<long>(sizeof(gxRLEBufferRun)));
    row[runs] = {0, 0};
    if (runsBefore(row) != runs)
      archive.fail("a run of length 0 within a row");
    builder.endRow(row + runs + 1);
  }
}

gxArchive &operator||(gxArchive &archive, gxRLEBuffer &buffer)
{
  gf_refuseVersion(gf_passVersion(archive, 0), "gxRLEBuffer");
  long width = buffer.width(), x = buffer.offset().x(), y = buffer.offset().y();
  archive || width || x || y;
  if (archive.isStoring()) {
    buffer.store(archive);
    return archive;
  }
  if (width < 0)
    archive.fail("a run-length buffer of negative width");
  gxRLEBuffer loaded;
  loaded.load(archive);
  loaded.width_ = width;
  loaded.offset(gxPair<long>(x, y));
  buffer = std::move(loaded);
  return archive;
}
