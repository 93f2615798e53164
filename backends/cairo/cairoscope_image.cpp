#include "backends/cairo/cairoscope.h"
#include "backends/cairo/detail/cairopainter.h"
#include "foundation/rlebuf.h"

#include <algorithm>
#include <cmath>

namespace
{

/// A pel as cairo keeps it, and 0 for one that lets through.
std::uint32_t solid(gxRGB const &rgb)
{
  return 0xFF000000u | static_cast<std::uint32_t>(rgb.r()) << 16 | static_cast<std::uint32_t>(rgb.g()) << 8 | rgb.b();
}

/// How the pels of an image lie along one axis when it is scaled.
class Axis
{
 public:
  Axis(long size, double scale) : size_(size)
  {
    constexpr double wholeEnough = 1e-6;
    double const inverse = 1.0 / scale;
    if (!(scale > 0.0) || !std::isfinite(scale) || !std::isfinite(inverse))
      return;
    bool const up = scale > 1.0;
    double const factor = std::round(up ? scale : inverse);
    bool const isWhole = std::abs((up ? scale : inverse) - factor) <= wholeEnough;
    step_ = !isWhole ? inverse : up ? 1.0 / factor : factor;
    double const scaled = static_cast<double>(size) / step_;
    // A reduction by a whole factor takes every k-th pel; the quotient may fall short of a whole number by rounding.
    constexpr double nudge = 1e-9;
    count_ = static_cast<long>(std::min(scaled + nudge * std::max(1.0, scaled), 0x1p30));
  }

  /// Number of pels that are shown.
  long count() const { return count_; }
  /// The pel of the image that is shown as number @p i.
  long nearest(long i) const
  {
    constexpr double nudge = 1e-9;
    return std::clamp(static_cast<long>(static_cast<double>(i) * step_ + nudge), 0L, size_ - 1);
  }
  /// The place in the image of the center of pel @p i, counted from the center of the image's first pel.
  double place(long i) const
  {
    return std::clamp((static_cast<double>(i) + 0.5) * step_ - 0.5, 0.0, static_cast<double>(size_ - 1));
  }

 private:
  long size_;
  double step_ = 1.0;  ///< pels of the image for one that is shown
  long count_ = 0;
};

/// Components of two pels, mixed.
std::uint32_t mixed(std::uint32_t a, std::uint32_t b, double share)
{
  auto const weight = static_cast<std::uint32_t>(share * 256.0);
  std::uint32_t result = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    std::uint32_t const from = a >> shift & 0xFF, to = b >> shift & 0xFF;
    result |= (from * (256 - weight) + to * weight + 128) >> 8 << shift;
  }
  return result;
}

/// Fills @p target with the pels of an image from (@p x0, @p y0) of the scaled image on.
/// @param look what cairo keeps of a pel of the image
template <class Look>
void scaleNearest(gx_CairoImage const &target, gxUIRect const &part, Axis const &across, Axis const &down, Look look)
{
  std::vector<long> columns;
  for (long x = part.left(); x < part.right(); ++x)
    columns.push_back(across.nearest(x));
  for (long y = 0; y < part.height(); ++y) {
    std::uint32_t *const to = target.row(y);
    auto const row = look(down.nearest(part.top() + y));
    for (std::size_t x = 0; x < columns.size(); ++x)
      to[x] = row(columns[x]);
  }
}

template <class Look>
void scaleSmoothly(gx_CairoImage const &target, gxUIRect const &part, Axis const &across, Axis const &down,
                   gxPair<long> const &size, Look look)
{
  for (long y = 0; y < part.height(); ++y) {
    std::uint32_t *const to = target.row(y);
    double const v = down.place(part.top() + y);
    auto const upper = look(static_cast<long>(v)), lower = look(std::min(static_cast<long>(v) + 1, size.y() - 1));
    for (long x = 0; x < part.width(); ++x) {
      double const u = across.place(part.left() + x);
      long const left = static_cast<long>(u), right = std::min(left + 1, size.x() - 1);
      double const share = u - static_cast<double>(left);
      to[x] =
          mixed(mixed(upper(left), upper(right), share), mixed(lower(left), lower(right), share), v - std::floor(v));
    }
  }
}

constexpr gxPair<double> unit(1.0, 1.0);

bool isSmooth(gxUIScope::InterpolationModes mode)
{
  return mode != gx_UITabletBase::noInterpolation;
}

}  // namespace

/// Images of any pel type at any scale, of which only the part that shows is looked at.
/// @param look what cairo keeps of a pel, 0 if that is left out
template <class Pel, class Look>
void gxCairoScope::Painter::image(gxPelBuffer_const<Pel> const &buffer, gxPoint const &topLeft,
                                  gxPair<double> const &scale, bool solidly, bool smoothly, Look look)
{
  Axis const across(buffer.width(), scale.x()), down(buffer.height(), scale.y());
  if (!topLeft.isFinite())
    return report({}, false);
  gxPair<long> const at(scope_.xCoord(topLeft), scope_.yCoord(topLeft));
  gxUIRect const box(at, gxPair<long>(across.count(), down.count())), seen = box & shows();
  if (!seen.isNull()) {
    gx_CairoImage const pels(seen.width(), seen.height());
    pels.flush();
    auto const row = [&](long y) {
      Pel const *const first = buffer.pointToRow(buffer.window().y() + y);
      return [=](long x) { return look(first[x]); };
    };
    gxUIRect const part = seen - at;
    if (smoothly)
      scaleSmoothly(pels, part, across, down, buffer.size(), row);
    else
      scaleNearest(pels, part, across, down, row);
    paint(pels, seen);
  }
  report(box, solidly);
}

void gxCairoScope::Painter::image(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                                  gxPair<double> const &scale, bool pass, unsigned long passPel, bool smoothly)
{
  gxPackedRGB32Pel const passing(passPel);
  image(buffer, topLeft, scale, !pass, smoothly, [=](gxPackedRGB32Pel p) {
    bool const isPass = pass && p.red() == passing.red() && p.green() == passing.green() && p.blue() == passing.blue();
    return isPass ? 0 : solid({p.red(), p.green(), p.blue()});
  });
}

void gxCairoScope::Painter::image(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                                  gxPair<double> const &scale, bool pass, unsigned short passPel, bool smoothly)
{
  image(buffer, topLeft, scale, !pass, smoothly, [=](gxPackedRGB16Pel p) {
    return pass && p.value() == passPel ? 0 : solid({p.red(), p.green(), p.blue()});
  });
}

void gxCairoScope::Painter::image(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                                  gxPair<double> const &scale, bool pass, unsigned short passPel, bool smoothly)
{
  image(buffer, topLeft, scale, !pass, smoothly, [=](unsigned short p) {
    auto const grey = static_cast<unsigned char>(p >> 8);
    return pass && p == passPel ? 0 : solid({grey, grey, grey});
  });
}

void gxCairoScope::Painter::image(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                                  gxPair<double> const &scale, bool pass, unsigned char passPel, bool indexed,
                                  bool smoothly)
{
  Looks looks;
  for (std::size_t i = 0; i < looks.size(); ++i) {
    auto const value = static_cast<unsigned char>(i);
    looks[i] = solid(indexed ? paletteColor(value) : gxRGB(value, value, value));
  }
  if (pass)
    looks[passPel] = 0;
  image(buffer, topLeft, scale, !pass, smoothly, [&](unsigned char p) { return looks[p]; });
}

void gxCairoScope::Painter::runs(gxRLEBuffer const &buffer, gxPoint const &topLeft, Looks const &looks, bool pass)
{
  gxPelBuffer<unsigned char> const unpacked = buffer.image();
  image(static_cast<gxPelBuffer_const<unsigned char> const &>(unpacked), topLeft, unit, !pass, false,
        [&](unsigned char p) { return looks[p]; });
}

void gxCairoScope::draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<gxColor> const &colors,
                        bool pass, unsigned char passPel)
{
  Painter painter(*this);
  Painter::Looks looks;
  for (std::size_t i = 0; i < looks.size(); ++i) {
    gxColor const color = i < colors.size() ? colors[i] : gxColor(static_cast<unsigned char>(i));
    looks[i] = painter.isPass(color) || (pass && i == passPel) ? 0 : solid(painter.rgbOf(color));
  }
  painter.runs(buffer, topLeft, looks, pass);
}

void gxCairoScope::draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                        bool pass, unsigned char passPel)
{
  Painter painter(*this);
  Painter::Looks looks;
  for (std::size_t i = 0; i < looks.size(); ++i) {
    unsigned char const index = i < colorMap.size() ? colorMap[i] : static_cast<unsigned char>(i);
    looks[i] = pass && index == passPel ? 0 : solid(painter.paletteColor(index));
  }
  painter.runs(buffer, topLeft, looks, pass);
}

// Images at unit scale, reduced and enlarged.

void gxCairoScope::draw(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, bool pass,
                        unsigned long passPel)
{
  Painter(*this).image(buffer, topLeft, unit, pass, passPel, false);
}

void gxCairoScope::draw(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, bool pass,
                        unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, unit, pass, passPel, false);
}

void gxCairoScope::draw(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, bool pass,
                        unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, unit, pass, passPel, false);
}

void gxCairoScope::draw(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, bool pass,
                        unsigned char passPel, bool indexed)
{
  Painter(*this).image(buffer, topLeft, unit, pass, passPel, indexed, false);
}

void gxCairoScope::sample(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned long passPel)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, false);
}

void gxCairoScope::expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned long passPel, InterpolationModes mode)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, isSmooth(mode));
}

void gxCairoScope::sample(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, false);
}

void gxCairoScope::expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned short passPel, InterpolationModes mode)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, isSmooth(mode));
}

void gxCairoScope::sample(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned short passPel)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, false);
}

void gxCairoScope::expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned short passPel, InterpolationModes mode)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, isSmooth(mode));
}

void gxCairoScope::sample(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned char passPel, bool indexed)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, indexed, false);
}

void gxCairoScope::expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                          gxPair<double> const &scale, bool pass, unsigned char passPel, bool indexed,
                          InterpolationModes mode)
{
  Painter(*this).image(buffer, topLeft, scale, pass, passPel, indexed, isSmooth(mode));
}
