#pragma once

#include "foundation/export.h"
#include "foundation/pair.h"
#include "foundation/pelbuf.h"
#include "foundation/rectangle.h"

#include <vector>

class gx_TmpRLEBuffer;

/// A run of pels of one value, two bytes. A row of an image is an array of runs that ends with a closing pair: a run of
/// length 0, whose value has no meaning.
struct gxRLEBufferRun {
  unsigned char value;
  unsigned char length;

  friend constexpr bool operator==(gxRLEBufferRun, gxRLEBufferRun) = default;
};

static_assert(sizeof(gxRLEBufferRun) == 2);

/// An image of 8-bit pels as rows of runs: small for icons and masks, and quick to draw.
///
/// Coordinates begin at offset(), the label of the first pel. Rows may hold fewer or more pels than the width says:
/// what is missing at the end of a row counts as 0, what is too much is left out.
///
/// @code
/// gxRLEBuffer packed;
/// packed.encode(mask);
/// gxRLEBuffer left = packed.subWindow(gxPelRect(0, 0, packed.width() / 2, packed.height()));
/// gxPelBuffer<unsigned char> pels = left.image();
/// @endcode
class GX_API gxRLEBuffer
{
 public:
  /// Empty: 0 x 0, without rows.
  gxRLEBuffer();
  /// By encode().
  explicit gxRLEBuffer(gxPelBuffer_const<unsigned char> const &image);
  /// Takes over the rows.
  gxRLEBuffer(gx_TmpRLEBuffer &&tmp) noexcept;  // NOLINT(google-explicit-constructor)
  /// A copy owns runs of its own, also where the original borrows them.
  gxRLEBuffer(gxRLEBuffer const &other);
  gxRLEBuffer(gxRLEBuffer &&other) noexcept;
  gxRLEBuffer &operator=(gxRLEBuffer const &other);
  gxRLEBuffer &operator=(gxRLEBuffer &&other) noexcept;
  gxRLEBuffer &operator=(gx_TmpRLEBuffer &&tmp) noexcept;
  virtual ~gxRLEBuffer();

  /// Pels in a row.
  long width() const { return width_; }
  /// Number of rows.
  long height() const { return static_cast<long>(rows_.size()); }
  gxPair<long> size() const { return {width(), height()}; }
  /// The coordinates of the first pel.
  gxPair<long> const &offset() const { return offset_; }
  void offset(gxPair<long> const &p) { offset_ = p; }
  /// True if there is no row.
  bool isNull() const { return rows_.empty(); }
  /// Number of all runs, closing pairs left out. Walks the runs.
  long numRuns() const;

  /// The first run of row @p y, counted from the y of offset(). Throws gxPel::BadCoord outside.
  gxRLEBufferRun const *pointToRow(long y) const;

  /// Unpacks to a new buffer with the same offset.
  gxPelBuffer<unsigned char> image() const;
  /// Unpacks to the window of @p target, its first pel to that of the window: what is larger than the window is left
  /// out, and the rest of the window becomes 0. Throws gxPel::UnboundWindow.
  void unpack(gxPelBuffer<unsigned char> const &target) const;
  /// Packs the window of @p image with its offset. Throws gxPel::UnboundWindow; this buffer is unchanged then.
  void encode(gxPelBuffer_const<unsigned char> const &image);
  /// The part of the image in @p window, in coordinates that begin at offset(); what lies outside of the image is cut
  /// off the window. The part keeps its coordinates. Of rows that are too short, it holds what there is.
  gx_TmpRLEBuffer subWindow(gxPelRect const &window) const;

  /// Takes over runs in place of the present ones. The offset becomes (0, 0).
  /// @param width  pels in a row
  /// @param rows   the first run of each row; every row ends with a closing pair
  /// @param blocks the allocations, made by `new gxRLEBufferRun[]`, in which the rows lie
  /// @param own    if set, this buffer deletes the blocks in the end. Otherwise it borrows the runs, which must outlive
  ///               it, and takes no notice of the blocks.
  /// The vectors are not changed. Throws gxPel::BadSize for a negative width or too many rows, gxPel::BadWindow for a
  /// null row; the blocks then still belong to the caller, and this buffer is unchanged.
  void becomeOwner(long width, std::vector<gxRLEBufferRun *> const &rows, std::vector<gxRLEBufferRun *> const &blocks,
                   bool own);

 private:
  friend GX_API gxArchive &operator||(gxArchive &archive, gxRLEBuffer &buffer);

  class Builder;

  void becomeDegenerate();
  void swap(gxRLEBuffer &other) noexcept;
  void load(gxArchive &archive);
  void store(gxArchive &archive) const;

  long width_ = 0;
  gxPair<long> offset_;
  std::vector<gxRLEBufferRun *> rows_;
  std::vector<gxRLEBufferRun *> blocks_;  ///< what is deleted in the end
};

/// What gxRLEBuffer::subWindow() gives: a buffer on its way to another one.
class gx_TmpRLEBuffer
{
 public:
  explicit gx_TmpRLEBuffer(gxRLEBuffer &&buffer) noexcept : buffer_(std::move(buffer)) {}

 private:
  friend class gxRLEBuffer;
  gxRLEBuffer buffer_;
};

/// Stores or loads a buffer with its offset; what is loaded owns its runs. Throws gxArchive::Errors for anything wrong
/// in a loaded stream; the buffer is unchanged then.
GX_API gxArchive &operator||(gxArchive &archive, gxRLEBuffer &buffer);
