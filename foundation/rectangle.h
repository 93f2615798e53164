#pragma once

#include "foundation/pair.h"

template <class T>
class gxRectangle;

/// A rectangle of whole numbers, left, top, width and height in 32 bits each: the window of a pel buffer.
template <>
class gxRectangle<long>
{
 public:
  /// At (0, 0), empty.
  constexpr gxRectangle() = default;
  constexpr gxRectangle(long x, long y, long width, long height) : origin_(x, y), size_(width, height) {}

  constexpr long x() const { return origin_.x(); }
  constexpr long y() const { return origin_.y(); }
  constexpr long width() const { return size_.x(); }
  constexpr long height() const { return size_.y(); }
  constexpr gxPair<long> const &origin() const { return origin_; }
  constexpr gxPair<long> const &size() const { return size_; }
  /// True if there is no pel in it.
  constexpr bool isNull() const { return size_.x() <= 0 || size_.y() <= 0; }

  friend constexpr bool operator==(gxRectangle const &a, gxRectangle const &b)
  {
    return a.origin_ == b.origin_ && a.size_ == b.size_;
  }

 private:
  gxPair<long> origin_;
  gxPair<long> size_;
};

using gxPelRect = gxRectangle<long>;
