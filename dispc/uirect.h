#pragma once

#include "foundation/export.h"
#include "foundation/pair.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <ostream>

class gxArchive;

/// A rectangle of pels: left, top, width and height, 32 bits each. Pel (x, y) belongs to it if left <= x < right and
/// top <= y < bottom; y runs down.
///
/// A rectangle that comes out of an operation that *normalises* is at least one pel wide and high, or it is equal to
/// gxUIRect::null, all zero. The constructors, sz(size), and `& | + -` normalise; `+=` and `-=` do not. A rectangle is
/// null exactly if its width is 0.
///
/// Arguments narrow to 32 bits before anything is tested, and sums wrap. The edges right() and bottom() wrap too when
/// they are asked for, but intersections, unions and tests of containment reckon with the true edges, so that a
/// rectangle at the end of the range never seems to overlap one at the other end, and `a & b` always lies in both.
///
/// @code
/// gxUIRect const window(0, 0, 640, 480);
/// gxUIRect const seen = window & gxUIRect(600, 400, 100, 100);   // 600, 400, 40, 80
/// @endcode
class GX_API gxUIRect
{
 public:
  /// All zero.
  constexpr gxUIRect() = default;
  /// gxUIRect::null if the width or the height is below 1.
  constexpr gxUIRect(gxPair<long> origin, gxPair<long> size)
  {
    if (size.x() >= 1 && size.y() >= 1) {
      origin_ = origin;
      size_ = size;
    }
  }
  constexpr gxUIRect(long left, long top, long width, long height)
      : gxUIRect(gxPair<long>(left, top), gxPair<long>(width, height))
  {
  }

  static gxUIRect const null;       ///< 0, 0, 0, 0
  static gxUIRect const inf;        ///< from -1073741823, 2147483647 wide and high: as good as everything
  static gxUIRect const firstQuad;  ///< from 0, 1073741823 wide and high: all that is not negative

  constexpr long left() const { return origin_.x(); }
  constexpr long top() const { return origin_.y(); }
  constexpr long width() const { return size_.x(); }
  constexpr long height() const { return size_.y(); }
  constexpr long right() const { return lr().x(); }   ///< left + width: the first column behind
  constexpr long bottom() const { return lr().y(); }  ///< top + height: the first row below

  constexpr gxPair<long> const &ul() const { return origin_; }  ///< (left, top)
  constexpr gxPair<long> ur() const { return {right(), top()}; }
  constexpr gxPair<long> ll() const { return {left(), bottom()}; }
  constexpr gxPair<long> lr() const { return origin_ + size_; }
  constexpr gxPair<long> const &sz() const { return size_; }  ///< (width, height)

  /// Moves the origin; a null rectangle stays as it is.
  constexpr void ul(gxPair<long> origin)
  {
    if (!isNull())
      origin_ = origin;
  }
  /// Sets the size; the rectangle becomes gxUIRect::null if a side is below 1.
  constexpr void sz(gxPair<long> size) { *this = gxUIRect(origin_, size); }

  /// True if the width is 0; the height is not looked at.
  constexpr bool isNull() const { return width() == 0; }

  friend constexpr bool operator==(gxUIRect const &a, gxUIRect const &b)
  {
    return a.origin_ == b.origin_ && a.size_ == b.size_;
  }

  /// True if pel @p p belongs to this rectangle.
  constexpr bool within(gxPair<long> p) const { return holds(p.x(), p.y()); }
  /// True if the first and the last pel of @p r, (right - 1, bottom - 1), belong to this rectangle: @p r lies inside
  /// this one, not the other way round.
  constexpr bool within(gxUIRect const &r) const
  {
    return holds(r.left(), r.top()) && holds(r.trueRight() - 1, r.trueBottom() - 1);
  }
  /// True if either has width 0, or they share no pel.
  constexpr bool nullIntersection(gxUIRect const &r) const { return (*this & r).isNull(); }

  /// Intersection; gxUIRect::null if either is null or they share no pel.
  friend constexpr gxUIRect operator&(gxUIRect const &a, gxUIRect const &b)
  {
    if (a.isNull() || b.isNull())
      return {};
    return between(std::max(a.left(), b.left()), std::max(a.top(), b.top()), std::min(a.trueRight(), b.trueRight()),
                   std::min(a.trueBottom(), b.trueBottom()));
  }
  /// As `&`, but if this rectangle is null it stays as it is, and if the other one is null this one takes its value.
  constexpr gxUIRect &operator&=(gxUIRect const &r)
  {
    if (!isNull())
      *this = r.isNull() ? r : *this & r;
    return *this;
  }

  /// The box around both; if one is null, the other one as it stands. gxUIRect::null if the box would be wider or
  /// higher than 32 bits can say.
  friend constexpr gxUIRect operator|(gxUIRect const &a, gxUIRect const &b)
  {
    if (a.isNull())
      return b;
    if (b.isNull())
      return a;
    return between(std::min(a.left(), b.left()), std::min(a.top(), b.top()), std::max(a.trueRight(), b.trueRight()),
                   std::max(a.trueBottom(), b.trueBottom()));
  }
  constexpr gxUIRect &operator|=(gxUIRect const &r) { return *this = *this | r; }

  /// Shifted, normalised: a null rectangle gives gxUIRect::null.
  friend constexpr gxUIRect operator+(gxUIRect const &r, gxPair<long> const &d) { return {r.origin_ + d, r.size_}; }
  friend constexpr gxUIRect operator-(gxUIRect const &r, gxPair<long> const &d) { return {r.origin_ - d, r.size_}; }
  /// Shift in place, not normalised: a null rectangle moves its origin.
  constexpr gxUIRect &operator+=(gxPair<long> const &d)
  {
    origin_ += d;
    return *this;
  }
  constexpr gxUIRect &operator-=(gxPair<long> const &d)
  {
    origin_ -= d;
    return *this;
  }

  /// Passes the rectangle through. Throws gxArchive::UnknownVersion.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxUIRect &rect);

 private:
  constexpr std::int64_t trueRight() const { return std::int64_t(left()) + width(); }
  constexpr std::int64_t trueBottom() const { return std::int64_t(top()) + height(); }

  constexpr bool holds(std::int64_t x, std::int64_t y) const
  {
    return left() <= x && x < trueRight() && top() <= y && y < trueBottom();
  }
  /// From edges that may be apart by anything: null unless both sides are from 1 to what 32 bits hold.
  static constexpr gxUIRect between(long left, long top, std::int64_t right, std::int64_t bottom)
  {
    std::int64_t const width = right - left;
    std::int64_t const height = bottom - top;
    if (std::min(width, height) < 1 || std::max(width, height) > std::numeric_limits<std::int32_t>::max())
      return {};
    return {left, top, static_cast<long>(width), static_cast<long>(height)};
  }

  gxPair<long> origin_;
  gxPair<long> size_;
};

inline constexpr gxUIRect gxUIRect::null{};
inline constexpr gxUIRect gxUIRect::inf{-1073741823, -1073741823, 2147483647, 2147483647};
inline constexpr gxUIRect gxUIRect::firstQuad{0, 0, 1073741823, 1073741823};

static_assert(sizeof(gxUIRect) == 16);

/// "(left, top) width x height".
GX_API std::ostream &operator<<(std::ostream &os, gxUIRect const &rect);
