#pragma once

#include "dispc/dispprop.h"

#include <array>
#include <cmath>
#include <cstdint>

/// The pattern of a pen: alternating stretches that are drawn and left out, starting with a drawn one, repeated along
/// an outline. Lengths are in pels: those of gxGraphicProps::gePenStyle times the width of the pen.
class gx_PelDash
{
 public:
  /// Without gaps.
  gx_PelDash() = default;
  /// A style that is not known, and a width of 0, count as solid and 1.
  gx_PelDash(gxGraphicProps::gePenStyle style, long width)
  {
    switch (style) {
      case gxGraphicProps::penDash:
        set({6, 3}, width);
        break;
      case gxGraphicProps::penDot:
        set({1, 2}, width);
        break;
      case gxGraphicProps::penDashDot:
        set({6, 2, 1, 2}, width);
        break;
      case gxGraphicProps::penDashDotDot:
        set({6, 2, 1, 2, 1, 2}, width);
        break;
      default:
        break;
    }
  }

  bool isSolid() const { return count_ == 0; }
  /// Length after which the pattern repeats; 0 for a solid pen.
  std::int64_t period() const { return period_; }

  /// One stretch of the pattern.
  struct Stretch {
    std::int64_t begin;  ///< from the start of the outline
    std::int64_t end;
    bool on;
  };
  /// The stretch that holds the place @p at, 0 or more; on a solid pen, one without end.
  Stretch stretch(std::int64_t at) const
  {
    if (isSolid())
      return {0, std::int64_t(1) << 62, true};
    std::int64_t begin = at - at % period_;
    for (int i = 0;; ++i) {
      std::int64_t const end = begin + lengths_[static_cast<std::size_t>(i)];
      if (at < end)
        return {begin, end, i % 2 == 0};
      begin = end;
    }
  }
  /// True if the place at a length from the start of the outline is drawn; lengths of 2^53 and more are.
  bool isOn(double at) const { return isSolid() || !(at < 0x1p53) || stretch(static_cast<std::int64_t>(at)).on; }

 private:
  void set(std::initializer_list<int> units, long width)
  {
    for (int const unit : units) {
      lengths_[static_cast<std::size_t>(count_++)] = std::int64_t(unit) * (width < 1 ? 1 : width);
      period_ += std::int64_t(unit) * (width < 1 ? 1 : width);
    }
  }

  std::array<std::int64_t, 6> lengths_{};
  int count_ = 0;
  std::int64_t period_ = 0;
};
