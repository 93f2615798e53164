#include "dispc/detail/pelscale_smooth.h"

#include "foundation/numbers.h"
#include "foundation/pelops.h"

#include <algorithm>

namespace gx_scale
{
namespace
{
constexpr long rowAlignment = 32;
constexpr double mostSamples = 32767.0;

/// What of an axis can be sampled, and what is left before and behind it. Gaps are in pels of the target, where the
/// edges of blocks are whole numbers: reckoned in pels of the source, they would come out a hair beside them.
struct Span {
  Span(Axis const &axis, double scale, double margin)
      : before(std::max(0.0, margin * scale - axis.first)),
        behind(std::max(0.0, axis.first + axis.shown - (static_cast<double>(axis.size) - margin) * scale)),
        from(std::max(margin, axis.first / scale)),
        to(std::min(static_cast<double>(axis.size) - margin, (axis.first + axis.shown) / scale)),
        samples(gf_roundHalfAway(std::min(axis.shown - before - behind, mostSamples)))
  {
  }

  /// Pels that the gap before the samples takes of a target of @p count pels.
  long pelsBefore(long count) const { return std::min<long>(gf_truncate(before), count); }
  long pelsBehind(long count) const { return std::min<long>(gf_nudgedCeil(behind), count); }

  double before, behind;
  double from, to;  ///< in pels of the source
  long samples;
};

template <class T>
void sampleSpans(gxPelBuffer_const<T> const &src, gxPelBuffer<T> &target, Span const &x, Span const &y,
                 gxAffineSamplingParams::Interpolation interpolation)
{
  gxPelBuffer_const<T> source(src);
  source.offset(0, 0);
  gxVector<2> const corner(x.from, y.from);
  gxAffineRectangle const part(corner, {x.to, y.from}, {x.from, y.to});
  target.offset(-gf_truncate(x.before), -gf_truncate(y.before));
  gfAffineTransformImage<T>(source, target, gxAffineSamplingParams(part, x.samples, y.samples, interpolation));
  target.offset(0, 0);
}

template <class T>
void paint(gxPelBuffer<T> &target, long x, long y, long width, long height, T value)
{
  target.window(x, y, width, height);
  gfPelSet(target, value);
  target.setEntire();
}
}  // namespace

template <class T>
gxPelBuffer<T> interpolated(gxPelBuffer_const<T> const &src, double scale, Axis const &x, Axis const &y,
                            gxAffineSamplingParams::Interpolation interpolation, T background)
{
  double const margin = interpolation == gxAffineSamplingParams::bilinear ? 2.0 : 3.0;
  Span const across(x, scale, margin), down(y, scale, margin);
  long const width = x.count, height = y.count;
  gxPelBuffer<T> result(width, height, rowAlignment);
  if (across.samples >= 1 && down.samples >= 1)
    sampleSpans(src, result, across, down, interpolation);

  long const left = across.pelsBefore(width), right = across.pelsBehind(width);
  long const top = down.pelsBefore(height), bottom = down.pelsBehind(height);
  paint(result, 0, 0, left, height, background);
  paint(result, 0, 0, width, top, background);
  paint(result, width - right, 0, right, height, background);
  paint(result, 0, height - bottom, width, bottom, background);
  return result;
}

template gxPelBuffer<unsigned char> interpolated(gxPelBuffer_const<unsigned char> const &, double, Axis const &,
                                                 Axis const &, gxAffineSamplingParams::Interpolation, unsigned char);
template gxPelBuffer<gxPackedRGB32Pel> interpolated(gxPelBuffer_const<gxPackedRGB32Pel> const &, double, Axis const &,
                                                    Axis const &, gxAffineSamplingParams::Interpolation,
                                                    gxPackedRGB32Pel);
}  // namespace gx_scale
