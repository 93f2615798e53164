#include "backends/pels/detail/pelline.h"

#include <cmath>
#include <cstdlib>
#include <utility>

namespace
{

std::int64_t floorDiv(std::int64_t a, std::int64_t b)
{
  std::int64_t const q = a / b;
  return q - (q * b > a);
}

std::int64_t ceilDiv(std::int64_t a, std::int64_t b)
{
  std::int64_t const q = a / b;
  return q + (q * b < a);
}

// The minor coordinate of step i is the floor of (2 rise i + length - 1) / (2 length). A stretch of steps finds it by
// adding a slope in fixed point, of which both the start and the slope are rounded up. After n steps the sum is too
// large by less than (n + 1) / 2^fraction, while the true value lies at least 1 / (2 length) >= 2^-31 below the next
// whole number: with fewer than 2^15 steps the floor is exact. At step 0 the start is a little less than one half, and
// any value from 1/2 - 1/(2 length) that the errors do not bring up to 1/2 serves as well: `start` for every length.
constexpr int fraction = 46;
constexpr std::int64_t stretch = std::int64_t(1) << 14;
constexpr std::int64_t start = (std::int64_t(1) << (fraction - 1)) - (std::int64_t(1) << 15);

/// a * 2^fraction / b, rounded up, for |a| <= b <= 2^31.
std::int64_t fixedRatio(std::int64_t a, std::int64_t b)
{
  if (b < (std::int64_t(1) << (62 - fraction)))
    return ceilDiv(a * (std::int64_t(1) << fraction), b);
  std::int64_t const high = floorDiv(a * (std::int64_t(1) << 31), b);
  std::int64_t const rest = a * (std::int64_t(1) << 31) - high * b;
  constexpr int left = fraction - 31;
  return high * (std::int64_t(1) << left) + ceilDiv(rest * (std::int64_t(1) << left), b);
}

}  // namespace

gx_PelLine::gx_PelLine(std::int64_t fromX, std::int64_t fromY, std::int64_t toX, std::int64_t toY)
{
  steep_ = std::abs(toY - fromY) > std::abs(toX - fromX);
  if (steep_) {
    std::swap(fromX, fromY);
    std::swap(toX, toY);
  }
  reversed_ = toX < fromX;
  if (reversed_) {
    std::swap(fromX, toX);
    std::swap(fromY, toY);
  }
  major_ = fromX;
  minor_ = fromY;
  length_ = toX - fromX;
  rise_ = toY - fromY;
  if (rise_ != 0)
    slope_ = fixedRatio(rise_, length_);
}

std::int64_t gx_PelLine::minorOf(std::int64_t step) const
{
  if (step == 0 || rise_ == 0)
    return minor_;
  if (step == length_)
    return minor_ + rise_;
  return minor_ + floorDiv(2 * rise_ * step + length_ - 1, 2 * length_);
}

gx_PelLine::Interval gx_PelLine::minorWithin(std::int64_t low, std::int64_t high) const
{
  if (rise_ == 0)
    return minor_ >= low && minor_ < high ? Interval{0, length_ + 1} : Interval{0, 0};
  // minorOf(i) >= k means 2 rise i >= 2 length (k - minor) - length + 1.
  std::int64_t const toLow = 2 * length_ * (low - minor_) - length_ + 1;
  std::int64_t const toHigh = 2 * length_ * (high - minor_) - length_ + 1;
  if (rise_ > 0)
    return {ceilDiv(toLow, 2 * rise_), ceilDiv(toHigh, 2 * rise_)};
  return {floorDiv(-toHigh, -2 * rise_) + 1, floorDiv(-toLow, -2 * rise_) + 1};
}

gx_PelLine::Interval gx_PelLine::visible(gx_PelBox const &box) const
{
  if (box.isEmpty())
    return {0, 0};
  if (steep_ ? box.holds(minor_, major_) && box.holds(minor_ + rise_, major_ + length_)
             : box.holds(major_, minor_) && box.holds(major_ + length_, minor_ + rise_))
    return {0, length_ + 1};
  std::int64_t const majorLow = steep_ ? box.top : box.left;
  std::int64_t const majorHigh = steep_ ? box.bottom : box.right;
  Interval seen = minorWithin(steep_ ? box.left : box.top, steep_ ? box.right : box.bottom);
  seen.begin = std::max({seen.begin, majorLow - major_, std::int64_t(0)});
  seen.end = std::min({seen.end, majorHigh - major_, length_ + 1});
  return reversed_ ? Interval{length_ + 1 - seen.end, length_ + 1 - seen.begin} : seen;
}

void gx_PelLine::draw(gx_PelCanvas &canvas, Interval const &pels) const
{
  if (pels.end <= pels.begin)
    return;
  std::int64_t const begin = reversed_ ? length_ + 1 - pels.end : pels.begin;
  std::int64_t const end = reversed_ ? length_ + 1 - pels.begin : pels.end;
  if (rise_ == 0 && !steep_)
    return canvas.span(static_cast<std::int32_t>(minor_), static_cast<std::int32_t>(major_ + begin),
                       static_cast<std::int32_t>(major_ + end));
  for (std::int64_t i = begin; i < end; i += stretch)
    drawSteps(canvas, i, std::min(i + stretch, end));
}

void gx_PelLine::drawSteps(gx_PelCanvas &canvas, std::int64_t begin, std::int64_t end) const
{
  std::int64_t const firstMajor = major_ + begin;
  std::int64_t const firstMinor = minorOf(begin);
  std::int64_t const lastMinor = minorOf(end - 1);
  auto const [minorLow, minorHigh] = std::minmax(firstMinor, lastMinor);
  auto const narrow = [](std::int64_t v) { return static_cast<std::int32_t>(v); };
  if (steep_)
    canvas.touch({narrow(minorLow), narrow(firstMajor), narrow(minorHigh + 1), narrow(major_ + end)}, end - begin);
  else
    canvas.touch({narrow(firstMajor), narrow(minorLow), narrow(major_ + end), narrow(minorHigh + 1)}, end - begin);

  std::ptrdiff_t const majorStep = steep_ ? canvas.stride() : 1;
  std::ptrdiff_t const minorStep = steep_ ? 1 : canvas.stride();
  gxPackedRGB32Pel *p = steep_ ? canvas.address(narrow(firstMinor), narrow(firstMajor))
                               : canvas.address(narrow(firstMajor), narrow(firstMinor));
  gxPackedRGB32Pel const value = canvas.value();
  std::int64_t place = start;
  if (begin != 0 && rise_ != 0)
    place = fixedRatio(2 * rise_ * begin + length_ - 1 - (firstMinor - minor_) * 2 * length_, 2 * length_);
  std::int64_t const slope = slope_;
  for (std::int64_t i = begin; i < end; ++i) {
    p[(place >> fraction) * minorStep] = value;
    p += majorStep;
    place += slope;
  }
}

bool gf_limitLine(gxVector<2> &from, gxVector<2> &to, double limit)
{
  if (!from.isFinite() || !to.isFinite())
    return false;
  // One axis after the other. The cut coordinate is set, not computed, so that it is exact for ends however far; a
  // place between two ends is found by weights, so that the difference of the ends does not overflow.
  auto const cut = [limit](double &a, double &aOther, double &b, double &bOther) {
    if (std::max(a, b) < -limit || std::min(a, b) > limit)
      return false;
    double const a0 = a, b0 = b, aOther0 = aOther, bOther0 = bOther;
    auto const bring = [&](double &v, double &other) {
      if (std::abs(v) <= limit)
        return;
      v = std::copysign(limit, v);
      double const weight = (v * 0.5 - a0 * 0.5) / (b0 * 0.5 - a0 * 0.5);
      other = aOther0 * (1.0 - weight) + bOther0 * weight;
    };
    bring(a, aOther);
    bring(b, bOther);
    return true;
  };
  double ax = from.x(), ay = from.y(), bx = to.x(), by = to.y();
  if (!cut(ax, ay, bx, by) || !cut(ay, ax, by, bx))
    return false;
  auto const hold = [limit](double v) { return std::min(std::max(v, -limit), limit); };
  from = {hold(ax), hold(ay)};
  to = {hold(bx), hold(by)};
  return true;
}

std::int64_t gf_drawPelLine(gx_PelCanvas &canvas, gxVector<2> const &from, gxVector<2> const &to,
                            gx_PelDash const &dash, std::int64_t phase)
{
  auto const longer = [](gxVector<2> const &d) {
    double const steps = std::max(std::abs(d.x()), std::abs(d.y()));
    return steps < 0x1p53 ? static_cast<std::int64_t>(steps) : 0;
  };
  constexpr auto limit = static_cast<double>(gx_PelLine::limit);
  gxVector<2> a = from;
  gxVector<2> b = to;
  std::int64_t const last = phase + longer(to - from);
  auto const isNear = [](gxVector<2> const &p) { return std::abs(p.x()) <= limit && std::abs(p.y()) <= limit; };
  if (!isNear(a) || !isNear(b)) {
    if (!gf_limitLine(a, b, limit))
      return last;
    a = {std::round(a.x()), std::round(a.y())};
    b = {std::round(b.x()), std::round(b.y())};
    phase += longer(a - from);
  }
  gx_PelLine const line(static_cast<std::int64_t>(a.x()), static_cast<std::int64_t>(a.y()),
                        static_cast<std::int64_t>(b.x()), static_cast<std::int64_t>(b.y()));
  gx_PelLine::Interval const seen = line.visible(canvas.clip());
  if (dash.isSolid()) {
    line.draw(canvas, seen);
    return last;
  }
  for (std::int64_t i = seen.begin; i < seen.end;) {
    gx_PelDash::Stretch const part = dash.stretch(i + phase);
    std::int64_t const end = std::min(seen.end, part.end - phase);
    if (part.on)
      line.draw(canvas, {i, end});
    i = end;
  }
  return last;
}
