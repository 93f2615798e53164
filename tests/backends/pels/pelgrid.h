#pragma once

#include "backends/pels/detail/pelcanvas.h"

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// A picture of a few pels to draw on, which prints itself. Its box may lie anywhere on the surface.
class PelGrid
{
 public:
  using Set = std::set<std::pair<long, long>>;

  explicit PelGrid(gx_PelBox const &box)
      : box_(box),
        pels_(static_cast<std::size_t>(box.area())),
        canvas_(origin(), width(), box, gxPackedRGB32Pel(1, 0, 0))
  {
  }
  PelGrid(PelGrid const &) = delete;
  PelGrid &operator=(PelGrid const &) = delete;

  gx_PelCanvas &canvas() { return canvas_; }
  gx_PelBox const &box() const { return box_; }

  bool isSet(long x, long y) const { return pels_[index(x, y)].red() != 0; }
  Set pels() const
  {
    return where([this](long x, long y) { return isSet(x, y); });
  }
  /// The pels of the box for which a condition holds.
  Set where(std::function<bool(long, long)> const &condition) const
  {
    Set set;
    for (long y = box_.top; y < box_.bottom; ++y)
      for (long x = box_.left; x < box_.right; ++x)
        if (condition(x, y))
          set.emplace(x, y);
    return set;
  }
  /// The smallest box round what is set.
  gxUIRect tightBox() const
  {
    gxUIRect box;
    for (auto const &[x, y] : pels())
      box |= gxUIRect(x, y, 1, 1);
    return box;
  }

 private:
  long width() const { return box_.right - box_.left; }
  std::size_t index(long x, long y) const { return static_cast<std::size_t>((y - box_.top) * width() + x - box_.left); }
  gxPackedRGB32Pel *origin() { return pels_.data() - (box_.top * width() + box_.left); }

  gx_PelBox box_;
  std::vector<gxPackedRGB32Pel> pels_;
  gx_PelCanvas canvas_;
};

/// The rows of a picture: '#' where both sets have the pel, '-' where only the first one has it, '+' only the second.
inline std::string compare(gx_PelBox const &box, PelGrid::Set const &expected, PelGrid::Set const &actual)
{
  std::string rows = "\n";
  for (long y = box.top; y < box.bottom; ++y, rows += '\n')
    for (long x = box.left; x < box.right; ++x)
      rows += ".-+#"[(expected.count({x, y}) ? 1 : 0) + (actual.count({x, y}) ? 2 : 0)];
  return rows;
}
