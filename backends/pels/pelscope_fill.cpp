#include "backends/pels/detail/pelpainter.h"
#include "backends/pels/pelscope.h"

#include <tuple>
#include <utility>
#include <vector>

namespace
{

/// Fills the pels that hang together with a seed over common sides, row by row.
class Flood
{
 public:
  Flood(gx_PelCanvas &canvas, gxPackedRGB32Pel value, bool toBoundary)
      : canvas_(canvas),
        box_(canvas.clip()),
        value_(value),
        toBoundary_(toBoundary),
        visited_(static_cast<std::size_t>(box_.area()))
  {
  }

  void run(std::int32_t x, std::int32_t y)
  {
    std::vector<std::pair<std::int32_t, std::int32_t>> seeds{{x, y}};
    while (!seeds.empty()) {
      std::tie(x, y) = seeds.back();
      seeds.pop_back();
      if (!isOpen(x, y))
        continue;
      std::int32_t left = x;
      while (left > box_.left && isOpen(left - 1, y))
        --left;
      std::int32_t right = x + 1;
      while (right < box_.right && isOpen(right, y))
        ++right;
      for (std::int32_t i = left; i < right; ++i)
        visited_[index(i, y)] = true;
      canvas_.span(y, left, right);
      for (std::int32_t const row : {y - 1, y + 1}) {
        if (row < box_.top || row >= box_.bottom)
          continue;
        for (std::int32_t i = left; i < right; ++i)
          if (isOpen(i, row) && (i == left || !isOpen(i - 1, row)))
            seeds.emplace_back(i, row);
      }
    }
  }

 private:
  std::size_t index(std::int32_t x, std::int32_t y) const
  {
    return static_cast<std::size_t>(y - box_.top) * static_cast<std::size_t>(box_.right - box_.left) +
           static_cast<std::size_t>(x - box_.left);
  }
  bool isOpen(std::int32_t x, std::int32_t y) const
  {
    return !visited_[index(x, y)] && (*canvas_.address(x, y) == value_) != toBoundary_;
  }

  gx_PelCanvas &canvas_;
  gx_PelBox box_;
  gxPackedRGB32Pel value_;  ///< of the boundary, or of the area
  bool toBoundary_;
  std::vector<bool> visited_;
};

}  // namespace

void gxPelScope::fill(gxPair<long> const &seed, gxColor const &fillColor, gxColor const &boundary, bool toBoundary)
{
  Painter painter(*this);
  gx_PelBox const at = gf_pelBox(gxUIRect(seed - org(), gxPair<long>(1, 1)));
  painter.paint(
      fillColor, true,
      [&](gx_PelCanvas &canvas) {
        if (!canvas.clip().holds(at.left, at.top))
          return;
        gxPackedRGB32Pel const value = toBoundary ? painter.ink(boundary) : *canvas.address(at.left, at.top);
        Flood(canvas, value, toBoundary).run(at.left, at.top);
      },
      [&] { return at; });
}
