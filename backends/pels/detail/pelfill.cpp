#include "backends/pels/detail/pelfill.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace
{

/// A side of a polygon, turned to run down. A row is crossed if its center lies between the ends, the upper one
/// included. The place of the crossing depends on the ends alone, not on the sense of the side nor on the rows that are
/// looked at, so that two polygons agree on a side that they share, and clipping changes nothing. For ends on a binary
/// grid the division is the only rounding, so that a side through the center of a pel is found to run through it.
class Side
{
 public:
  Side() = default;
  Side(gxVector<2> from, gxVector<2> to, gx_PelBox const &clip) : down_(from.y() < to.y())
  {
    if (!down_)
      std::swap(from, to);
    top_ = from;
    bottom_ = to;
    begin_ = gf_firstCenter(from.y(), clip.top, clip.bottom);
    end_ = gf_firstCenter(to.y(), clip.top, clip.bottom);
  }

  bool isSeen() const { return begin_ < end_; }
  std::int32_t begin() const { return begin_; }  ///< first row
  std::int32_t end() const { return end_; }
  int turn() const { return down_ ? 1 : -1; }
  double crossing(std::int32_t row) const
  {
    double const y = row + 0.5;
    return (top_.x() * (bottom_.y() - y) + bottom_.x() * (y - top_.y())) / (bottom_.y() - top_.y());
  }

 private:
  gxVector<2> top_, bottom_;
  std::int32_t begin_ = 0, end_ = 0;
  bool down_ = true;
};

bool areDrawable(std::span<gxVector<2> const> points)
{
  return std::all_of(points.begin(), points.end(), gf_isDrawable);
}

struct Crossing {
  double x;
  Side const *side;
};

/// The crossings of one row, from left to right. They hardly change their order from row to row.
void sortRow(std::vector<Crossing> &active, std::int32_t row)
{
  for (std::size_t i = 0; i < active.size(); ++i) {
    Crossing const c{active[i].side->crossing(row), active[i].side};
    std::size_t k = i;
    for (; k > 0 && c.x < active[k - 1].x; --k)
      active[k] = active[k - 1];
    active[k] = c;
  }
}

void fillRow(gx_PelCanvas &canvas, std::vector<Crossing> const &active, std::int32_t row, int mask)
{
  gx_PelBox const &clip = canvas.clip();
  int turns = 0;
  double begin = 0.0;
  for (Crossing const &c : active) {
    bool const wasInside = (turns & mask) != 0;
    turns += c.side->turn();
    bool const isInside = (turns & mask) != 0;
    if (!wasInside && isInside)
      begin = c.x;
    else if (wasInside && !isInside)
      canvas.span(row, gf_firstCenter(begin, clip.left, clip.right), gf_firstCenter(c.x, clip.left, clip.right));
  }
}

}  // namespace

void gf_fillPolygon(gx_PelCanvas &canvas, std::span<gxVector<2> const> points, gx_PelFillRule rule)
{
  if (canvas.clip().isEmpty() || !areDrawable(points))
    return;
  std::vector<Side> sides;
  sides.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    Side const side(points[i], points[i + 1 < points.size() ? i + 1 : 0], canvas.clip());
    if (side.isSeen())
      sides.push_back(side);
  }
  std::sort(sides.begin(), sides.end(), [](Side const &a, Side const &b) { return a.begin() < b.begin(); });

  int const mask = rule == gx_PelFillRule::evenOdd ? 1 : -1;
  std::vector<Crossing> active;
  auto next = sides.begin();
  std::int32_t row = 0;
  while (next != sides.end() || !active.empty()) {
    if (active.empty())
      row = next->begin();
    for (; next != sides.end() && next->begin() == row; ++next)
      active.push_back({0.0, &*next});
    sortRow(active, row);
    fillRow(canvas, active, row, mask);
    ++row;
    std::erase_if(active, [row](Crossing const &c) { return c.side->end() <= row; });
  }
}

void gf_fillConvex(gx_PelCanvas &canvas, std::span<gxVector<2> const> points)
{
  if (canvas.clip().isEmpty() || points.empty() || !areDrawable(points))
    return;
  gx_PelBox const &clip = canvas.clip();
  auto const [top, bottom] =
      std::minmax_element(points.begin(), points.end(), [](auto const &a, auto const &b) { return a.y() < b.y(); });
  std::int32_t const end = gf_firstCenter(bottom->y(), clip.top, clip.bottom);
  std::int32_t row = gf_firstCenter(top->y(), clip.top, clip.bottom);
  if (row >= end)
    return;
  constexpr std::size_t few = 8;
  if (points.size() > few)
    return gf_fillPolygon(canvas, points, gx_PelFillRule::winding);
  std::array<Side, few> sides;
  std::size_t count = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    Side const side(points[i], points[i + 1 < points.size() ? i + 1 : 0], clip);
    if (side.isSeen())
      sides[count++] = side;
  }
  for (; row < end; ++row) {
    double left = std::numeric_limits<double>::infinity();
    double right = -left;
    for (std::size_t i = 0; i < count; ++i) {
      if (row < sides[i].begin() || row >= sides[i].end())
        continue;
      double const x = sides[i].crossing(row);
      left = std::min(left, x);
      right = std::max(right, x);
    }
    if (left < right)
      canvas.span(row, gf_firstCenter(left, clip.left, clip.right), gf_firstCenter(right, clip.left, clip.right));
  }
}

void gf_fillEllipse(gx_PelCanvas &canvas, gxVector<2> const &center, gxVector<2> const &u, gxVector<2> const &v)
{
  gx_PelBox const &clip = canvas.clip();
  if (clip.isEmpty() || !gf_isDrawable(center) || !gf_isDrawable(u) || !gf_isDrawable(v))
    return;
  // With h the half height, a row at dy from the center meets the ellipse at
  // dx = (dy (u.x u.y + v.x v.y) +- |u x v| sqrt(h^2 - dy^2)) / h^2.
  double const h2 = u.y() * u.y() + v.y() * v.y();
  double const h = std::sqrt(h2);
  double const shear = u.x() * u.y() + v.x() * v.y();
  double const area = std::abs(u.cross(v));
  if (!(h2 > 0.0))
    return;
  std::int32_t const end = gf_firstCenter(center.y() + h, clip.top, clip.bottom);
  for (std::int32_t row = gf_firstCenter(center.y() - h, clip.top, clip.bottom); row < end; ++row) {
    double const dy = row + 0.5 - center.y();
    double const half = area * std::sqrt(std::max((h - dy) * (h + dy), 0.0)) / h2;
    double const middle = center.x() + dy * shear / h2;
    canvas.span(row, gf_firstCenter(middle - half, clip.left, clip.right),
                gf_firstCenter(middle + half, clip.left, clip.right));
  }
}
