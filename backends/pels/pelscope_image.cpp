#include "backends/pels/detail/pelpainter.h"
#include "backends/pels/pelscope.h"
#include "foundation/pelbuf.h"
#include "foundation/rlebuf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <vector>

namespace
{

/// A factor this close to a whole number is taken to be that.
constexpr double wholeEnough = 1e-6;

/// How the pels of an image lie along one axis when it is scaled.
class Axis
{
 public:
  Axis(long size, double scale) : size_(size)
  {
    double const inverse = 1.0 / scale;
    if (!(scale > 0.0) || !std::isfinite(scale) || !std::isfinite(inverse))
      return;
    if (scale > 1.0 && scale < 0x1p31 && std::abs(scale - std::round(scale)) <= wholeEnough)
      up_ = std::lround(scale);
    else if (inverse < 0x1p31 && std::abs(inverse - std::round(inverse)) <= wholeEnough)
      down_ = std::lround(inverse);
    inverse_ = inverse;
    double const scaled = down_ ? static_cast<double>(size / down_)
                                : static_cast<double>(size) * (up_ ? static_cast<double>(up_) : scale);
    count_ = static_cast<std::int64_t>(std::min(scaled, 0x1p32));
  }

  /// Number of pels that are shown.
  std::int64_t count() const { return count_; }
  /// The pel of the image that is shown as number @p i.
  long source(std::int64_t i) const
  {
    if (up_)
      return static_cast<long>(i / up_);
    if (down_)
      return static_cast<long>(i * down_);
    return std::min(static_cast<long>(static_cast<double>(i) * inverse_), size_ - 1);
  }

 private:
  long size_;
  long up_ = 0;    ///< whole factors, or 0
  long down_ = 0;  ///<
  double inverse_ = 0.0;
  std::int64_t count_ = 0;
};

/// Shows pels of an image from left to right.
/// @param at      the pel of the image for the i-th one
/// @param show    what is written for it
/// @param isPass  whether it is left out
template <class At, class Show, class IsPass>
void showRow(gx_PelCanvas &canvas, std::int32_t y, std::int32_t left, std::int32_t right, At at, Show show,
             IsPass isPass)
{
  gxPackedRGB32Pel *const to = canvas.address(left, y);
  std::int32_t first = right - left;
  std::int32_t last = -1;
  std::int32_t count = 0;
  for (std::int32_t i = 0; i < right - left; ++i) {
    auto const pel = at(i);
    if (isPass(pel))
      continue;
    to[i] = show(pel);
    first = std::min(first, i);
    last = i;
    ++count;
  }
  if (last >= 0)
    canvas.touch({left + first, y, left + last + 1, y + 1}, count);
}

template <class At, class Show>
void showRow(gx_PelCanvas &canvas, std::int32_t y, std::int32_t left, std::int32_t right, At at, Show show)
{
  gxPackedRGB32Pel *const to = canvas.address(left, y);
  for (std::int32_t i = 0; i < right - left; ++i)
    to[i] = show(at(i));
  canvas.touch({left, y, right, y + 1}, right - left);
}

/// Shows a buffer that lies inside the box of the canvas.
template <class Pel, class Show, class IsPass>
void showAll(gx_PelCanvas &canvas, gxPelBuffer<Pel> const &buffer, std::int32_t left, std::int32_t top, bool pass,
             Show show, IsPass isPass)
{
  auto const right = static_cast<std::int32_t>(left + buffer.width());
  for (std::int32_t row = 0; row < buffer.height(); ++row) {
    Pel const *const from = buffer.pointToRow(row);
    auto const at = [from](std::int32_t i) { return from[i]; };
    if (pass)
      showRow(canvas, top + row, left, right, at, show, isPass);
    else
      showRow(canvas, top + row, left, right, at, show);
  }
}

gxPackedRGB32Pel covering(unsigned char r, unsigned char g, unsigned char b)
{
  return {r, g, b, 255};
}

std::uint32_t const componentBits = gxPackedRGB32Pel(255, 255, 255, 0).value();

}  // namespace

/// Images of any pel type at any scale.
/// @param show   what is written for a pel
/// @param isPass whether a pel is left out, if @p pass is set
template <class Pel, class Show, class IsPass>
void gxPelScope::Painter::image(gxPelBuffer_const<Pel> const &buffer, gxPoint const &topLeft, Zoom const &zoom,
                                bool pass, Show show, IsPass isPass)
{
  gxPair<double> const &scale = zoom.scale;
  Axis const across(buffer.width(), scale.x());
  Axis const down(buffer.height(), scale.y());
  gxVector<2> const at = pelOf(topLeft);
  auto const boxOf = [&] {
    return gf_pelBox(at.x(), at.y(), at.x() + static_cast<double>(across.count()),
                     at.y() + static_cast<double>(down.count()));
  };
  auto const draw = [&](gx_PelCanvas &canvas) {
    gx_PelBox const seen = boxOf() & canvas.clip();
    if (seen.isEmpty())
      return;
    if constexpr (std::is_same_v<Pel, unsigned char> || std::is_same_v<Pel, gxPackedRGB32Pel>) {
      if (zoom.mode != noInterpolation && scale.x() > 1.0 && scale.x() == scale.y()) {
        gxPelBuffer<Pel> smooth;
        pelScale<Pel>(buffer, smooth, scale.x(), seen.rect(), gxPair<long>(gxPair<double>(at)), zoom.mode);
        return showAll(canvas, smooth, seen.left, seen.top, pass, show, isPass);
      }
    }
    auto const x0 = static_cast<std::int64_t>(at.x());
    auto const y0 = static_cast<std::int64_t>(at.y());
    std::vector<long> columns;
    bool const isUnit = scale == gxPair<double>(1.0, 1.0);
    for (std::int32_t x = seen.left; !isUnit && x < seen.right; ++x)
      columns.push_back(across.source(x - x0));
    for (std::int32_t y = seen.top; y < seen.bottom; ++y) {
      Pel const *const row = buffer.pointToRow(buffer.window().y() + down.source(y - y0));
      Pel const *const first = row + (seen.left - x0);
      auto const plain = [&](std::int32_t i) { return first[i]; };
      auto const scaled = [&](std::int32_t i) { return row[columns[static_cast<std::size_t>(i)]]; };
      if (isUnit && !pass)
        showRow(canvas, y, seen.left, seen.right, plain, show);
      else if (isUnit)
        showRow(canvas, y, seen.left, seen.right, plain, show, isPass);
      else if (!pass)
        showRow(canvas, y, seen.left, seen.right, scaled, show);
      else
        showRow(canvas, y, seen.left, seen.right, scaled, show, isPass);
    }
  };
  paint(covering(0, 0, 0), true, draw, boxOf);
}

void gxPelScope::Painter::image(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                                Zoom const &zoom, bool pass, unsigned long passPel)
{
  auto const passing = static_cast<std::uint32_t>(passPel) & componentBits;
  image(
      buffer, topLeft, zoom, pass, [](gxPackedRGB32Pel p) { return covering(p.red(), p.green(), p.blue()); },
      [=](gxPackedRGB32Pel p) { return (p.value() & componentBits) == passing; });
}

void gxPelScope::Painter::image(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                                Zoom const &zoom, bool pass, unsigned short passPel)
{
  image(
      buffer, topLeft, zoom, pass, [](gxPackedRGB16Pel p) { return covering(p.red(), p.green(), p.blue()); },
      [=](gxPackedRGB16Pel p) { return p.value() == passPel; });
}

void gxPelScope::Painter::image(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                                Zoom const &zoom, bool pass, unsigned short passPel)
{
  auto const show = [](unsigned short p) {
    auto const grey = static_cast<unsigned char>(p >> 8);
    return covering(grey, grey, grey);
  };
  image(buffer, topLeft, zoom, pass, show, [=](unsigned short p) { return p == passPel; });
}

void gxPelScope::Painter::image(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                                Zoom const &zoom, bool pass, unsigned char passPel, bool indexed)
{
  std::array<gxPackedRGB32Pel, 256> looks;
  for (unsigned i = 0; i < looks.size(); ++i) {
    auto const value = static_cast<unsigned char>(i);
    looks[i] = indexed ? ink(paletteColor(value)) : covering(value, value, value);
  }
  image(
      buffer, topLeft, zoom, pass, [&](unsigned char p) { return looks[p]; },
      [=](unsigned char p) { return p == passPel; });
}

/// @param looks what is written for each value of a run
/// @param isPass tells which values are left out
void gxPelScope::Painter::runs(gxRLEBuffer const &buffer, gxPoint const &topLeft,
                               std::array<gxPackedRGB32Pel, 256> const &looks, std::array<bool, 256> const &isPass)
{
  gxVector<2> const at = pelOf(topLeft);
  auto const boxOf = [&] {
    return gf_pelBox(at.x(), at.y(), at.x() + static_cast<double>(buffer.width()),
                     at.y() + static_cast<double>(buffer.height()));
  };
  auto const draw = [&](gx_PelCanvas &canvas) {
    gx_PelBox const seen = boxOf() & canvas.clip();
    for (std::int32_t y = seen.top; y < seen.bottom; ++y) {
      long const row = buffer.offset().y() + static_cast<long>(y - static_cast<std::int64_t>(at.y()));
      auto x = static_cast<std::int64_t>(at.x());
      for (auto const *run = buffer.pointToRow(row); run->length && x < seen.right; ++run) {
        std::int64_t const end = x + run->length;
        if (!isPass[run->value] && end > seen.left)
          canvas.span(y, static_cast<std::int32_t>(std::max<std::int64_t>(x, seen.left)),
                      static_cast<std::int32_t>(std::min<std::int64_t>(end, seen.right)), looks[run->value]);
        x = end;
      }
    }
  };
  paint(covering(0, 0, 0), true, draw, boxOf);
}

void gxPelScope::draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<gxColor> const &colors, bool pass,
                      unsigned char passPel)
{
  Painter painter(*this);
  std::array<gxPackedRGB32Pel, 256> looks;
  std::array<bool, 256> isPass{};
  for (std::size_t i = 0; i < looks.size(); ++i)
    looks[i] = painter.ink(i < colors.size() ? colors[i] : gxColor(static_cast<unsigned char>(i)));
  isPass[passPel] = pass;
  painter.runs(buffer, topLeft, looks, isPass);
}

void gxPelScope::draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                      bool pass, unsigned char passPel)
{
  Painter painter(*this);
  std::array<gxPackedRGB32Pel, 256> looks;
  std::array<bool, 256> isPass{};
  for (std::size_t i = 0; i < looks.size(); ++i) {
    unsigned char const index = i < colorMap.size() ? colorMap[i] : static_cast<unsigned char>(i);
    looks[i] = painter.ink(painter.paletteColor(index));
    isPass[i] = pass && index == passPel;
  }
  painter.runs(buffer, topLeft, looks, isPass);
}

void gxPelScope::expand(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                        gxPair<double> const &scale, bool pass, unsigned char passPel)
{
  if (std::isnan(topLeft.x()) || std::isnan(topLeft.y()))
    return;
  // By a whole factor only the runs within the scope are enlarged; who measures wants to know of the others, too.
  double const factor = std::round(scale.x());
  if (clientChangeEnable() && factor >= 1.0 && factor < 0x1p31 && std::abs(scale.x() - factor) <= wholeEnough) {
    gxVector<2> const at = Painter(*this).pelOf(topLeft);
    gxVector<2> const end = at + gxVector<2>(buffer.size()) * factor;
    change(gf_pelBox(at.x(), at.y(), end.x(), end.y()).rect(), false);
  }
  gxUIScope::expand(buffer, topLeft, colorMap, scale, pass, passPel);
}

// Images at unit scale, reduced and enlarged.

void gxPelScope::draw(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned long passPel)
{
  Painter(*this).image(buffer, topLeft, {}, pass, passPel);
}

void gxPelScope::draw(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, {}, pass, passPel);
}

void gxPelScope::draw(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, {}, pass, passPel);
}

void gxPelScope::draw(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned char passPel, bool indexed)
{
  Painter(*this).image(buffer, topLeft, {}, pass, passPel, indexed);
}

void gxPelScope::sample(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned long passPel)
{
  Painter(*this).image(buffer, topLeft, {scale}, pass, passPel);
}

void gxPelScope::sample(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, {scale}, pass, passPel);
}

void gxPelScope::sample(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, {scale}, pass, passPel);
}

void gxPelScope::sample(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned char passPel, bool indexed)
{
  Painter(*this).image(buffer, topLeft, {scale}, pass, passPel, indexed);
}

void gxPelScope::expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned long passPel, InterpolationModes mode)
{
  Painter(*this).image(buffer, topLeft, {scale, mode}, pass, passPel);
}

void gxPelScope::expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned short passPel, InterpolationModes)
{
  Painter(*this).image(buffer, topLeft, {scale}, pass, passPel);
}

void gxPelScope::expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned short passPel, InterpolationModes)
{
  Painter(*this).image(buffer, topLeft, {scale}, pass, passPel);
}

void gxPelScope::expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                        gxPair<double> const &scale, bool pass, unsigned char passPel, bool indexed,
                        InterpolationModes mode)
{
  Painter(*this).image(buffer, topLeft, {scale, mode}, pass, passPel, indexed);
}
