#include "footprint/detail/edgeprofile.h"

#include <algorithm>

double gx_EdgePicture::operator()(gxVector<2> const &p) const
{
  double const x = p.x() - double(window_.x()) - 0.5, y = p.y() - double(window_.y()) - 0.5;
  double const left = std::floor(x), top = std::floor(y), fx = x - left, fy = y - top;
  long const x0 = clamped(left, width_), x1 = clamped(left + 1.0, width_);
  unsigned char const *const upper = rows_[std::size_t(clamped(top, height_))];
  unsigned char const *const lower = rows_[std::size_t(clamped(top + 1.0, height_))];
  return (1.0 - fy) * ((1.0 - fx) * upper[x0] + fx * upper[x1]) + fy * ((1.0 - fx) * lower[x0] + fx * lower[x1]);
}

bool gx_EdgeProfile::findEdge(double bend, double &offset) const
{
  int const first = half, last = count_ - 1 - half;
  double steepest = 0.0;
  for (int i = first; i <= last; ++i)
    steepest = std::max(steepest, std::abs(rise(i)));
  int best = -1;
  for (int i = first; i <= last; ++i) {
    bool const isPeak = std::abs(rise(i)) >= std::abs(rise(std::max(i - 1, first))) &&
                        std::abs(rise(i)) >= std::abs(rise(std::min(i + 1, last)));
    if (isPeak && std::abs(rise(i)) >= 0.4 * steepest && (best < 0 || std::abs(offsetOf(i)) < std::abs(offsetOf(best))))
      best = i;
  }
  return best >= 0 && steepest > 0.0 && locate(best, bend, offset);
}

bool gx_EdgeProfile::locate(int peak, double bend, double &offset) const
{
  double const top = rise(peak);
  auto const goesOn = [&](int i) { return i >= half && i < count_ - half && rise(i) * top > 0.03 * top * top; };
  int from = peak, to = peak;
  while (goesOn(from - 1))
    --from;
  while (goesOn(to + 1))
    ++to;
  for (int k = 0; k < half / 2 && from > half && to < count_ - 1 - half; ++k) {  // the last traces
    --from;
    ++to;
  }
  bool const isCutOff = (from == half && goesOn(from)) || (to == count_ - 1 - half && goesOn(to));
  if (isCutOff && std::max(std::abs(rise(from)), std::abs(rise(to))) > 0.3 * std::abs(top))
    return false;
  // Levels on both sides, and the area between the profile and the far one.
  double const low = at(from - half), high = at(to + half), height = high - low;
  if (std::abs(height) < contrast_)
    return false;
  double const a = offsetOf(from - half), b = offsetOf(to + half);
  double area = 0.0, moment = 0.0;
  for (int i = from - half; i < to + half; ++i) {
    double const part = (0.5 * (at(i) + at(i + 1)) - low) / height;
    area += part * step;
    moment += part * step * (offsetOf(i) + 0.5 * step);
  }
  double const edge = b - area;
  // Of the edge taken as a distribution, by parts: the mean of squares is b^2 - 2 * integral of t F(t).
  double const variance = std::max(0.0, b * b - 2.0 * moment - edge * edge);
  offset = edge + 0.5 * variance * bend;
  return edge > a && edge < b;
}
