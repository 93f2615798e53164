#pragma once

#include "dispc/uirect.h"
#include "foundation/pel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

/// A box of pels, half-open: pel (x, y) lies in it if left <= x < right and top <= y < bottom.
struct gx_PelBox {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;

  bool isEmpty() const { return left >= right || top >= bottom; }
  bool holds(std::int64_t x, std::int64_t y) const { return left <= x && x < right && top <= y && y < bottom; }
  std::int64_t area() const { return isEmpty() ? 0 : (std::int64_t(right) - left) * (std::int64_t(bottom) - top); }

  friend bool operator==(gx_PelBox const &, gx_PelBox const &) = default;
  friend gx_PelBox operator&(gx_PelBox const &a, gx_PelBox const &b)
  {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
  }
  /// The same box as a rectangle; gxUIRect::null if it is empty.
  gxUIRect rect() const
  {
    return isEmpty() ? gxUIRect() : gxUIRect(left, top, std::int64_t(right) - left, std::int64_t(bottom) - top);
  }
};

/// The box of a rectangle; columns and rows beyond 32 bits are left out.
inline gx_PelBox gf_pelBox(gxUIRect const &rect)
{
  auto const end = [](long begin, long size) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(std::int64_t(begin) + size, INT32_MAX));
  };
  return {static_cast<std::int32_t>(rect.left()), static_cast<std::int32_t>(rect.top()), end(rect.left(), rect.width()),
          end(rect.top(), rect.height())};
}

/// Where the rasteriser writes: rows of pels, the box that may be written to, and the value to write. Everything that
/// is drawn ends in span() or pel(); both are inlined into the loops that call them.
///
/// The canvas also keeps the tight box of the pels that were written. One canvas serves one drawing operation.
class gx_PelCanvas
{
 public:
  /// @param origin address of pel (0, 0), which need not lie in the box
  /// @param stride pels from one row to the next
  gx_PelCanvas(gxPackedRGB32Pel *origin, std::ptrdiff_t stride, gx_PelBox const &clip, gxPackedRGB32Pel value)
      : origin_(origin), stride_(stride), clip_(clip), value_(value)
  {
  }

  gx_PelBox const &clip() const { return clip_; }
  gxPackedRGB32Pel value() const { return value_; }
  std::ptrdiff_t stride() const { return stride_; }
  gxPackedRGB32Pel *address(std::int32_t x, std::int32_t y) const { return origin_ + y * stride_ + x; }

  /// Writes pels from (@p x0, @p y) up to, not including, (@p x1, @p y). The row must lie in the box; the columns are
  /// clipped, and x1 <= x0 writes nothing.
  void span(std::int32_t y, std::int32_t x0, std::int32_t x1) { span(y, x0, x1, value_); }
  /// The same with another value.
  void span(std::int32_t y, std::int32_t x0, std::int32_t x1, gxPackedRGB32Pel value)
  {
    x0 = std::max(x0, clip_.left);
    x1 = std::min(x1, clip_.right);
    if (x0 >= x1)
      return;
    std::fill(address(x0, y), address(x1, y), value);
    touch({x0, y, x1, y + 1}, x1 - x0);
  }
  /// Writes one pel, if it lies in the box.
  void pel(std::int64_t x, std::int64_t y)
  {
    if (!clip_.holds(x, y))
      return;
    auto const x32 = static_cast<std::int32_t>(x);
    auto const y32 = static_cast<std::int32_t>(y);
    *address(x32, y32) = value_;
    touch({x32, y32, x32 + 1, y32 + 1}, 1);
  }

  /// Notes that pels were written by other means, in a box inside clip() whose edges they reach.
  void touch(gx_PelBox const &box, std::int64_t pels)
  {
    written_ += pels;
    touched_.left = std::min(touched_.left, box.left);
    touched_.top = std::min(touched_.top, box.top);
    touched_.right = std::max(touched_.right, box.right);
    touched_.bottom = std::max(touched_.bottom, box.bottom);
  }
  /// The smallest box around all that was written; empty if nothing was.
  gx_PelBox const &touched() const { return touched_; }
  /// Number of pels written, each as often as it was written.
  std::int64_t written() const { return written_; }

 private:
  static constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  static constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

  gxPackedRGB32Pel *origin_;
  std::ptrdiff_t stride_;
  gx_PelBox clip_;
  gxPackedRGB32Pel value_;
  gx_PelBox touched_{highest, highest, lowest, lowest};
  std::int64_t written_ = 0;
};
