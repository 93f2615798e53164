#include "dispc/detail/pelscale_smooth.h"
#include "dispc/uiscope.h"
#include "foundation/pelbuf.h"
#include "foundation/rect.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace
{
constexpr long rowAlignment = 32;

/// A new buffer of the given size, whose pel (i, j) is pel (columns[i], rows[j]) of the window of @p src; where there
/// are fewer positions than pels, the others are 0.
template <class T>
gxPelBuffer<T> copiedByPosition(gxPelBuffer_const<T> const &src, gxPair<long> const &size,
                                gx_scale::Positions const &columns, gx_scale::Positions const &rows)
{
  bool const isFull = static_cast<long>(columns.size()) == size.x() && static_cast<long>(rows.size()) == size.y();
  gxPelBuffer<T> result = isFull ? gxPelBuffer<T>(gxPelRoot<T>::unset(size.x(), size.y(), rowAlignment))
                                 : gxPelBuffer<T>(size.x(), size.y(), rowAlignment);
  gx_scale::copyPels({reinterpret_cast<unsigned char const *>(src.pointToOffset()), src.rowStep(), src.width()},
                     {reinterpret_cast<unsigned char *>(result.pointToOffset()), result.rowStep()}, columns, rows,
                     sizeof(T));
  return result;
}

/// The grey round an interpolated image, of pel types that are interpolated.
template <class T>
constexpr std::optional<T> background = std::nullopt;
template <>
constexpr std::optional<unsigned char> background<unsigned char> = 128;
template <>
constexpr std::optional<gxPackedRGB32Pel> background<gxPackedRGB32Pel> = gxPackedRGB32Pel(128, 128, 128, 0);

gxAffineSamplingParams::Interpolation interpolationOf(gxUIScope::InterpolationModes mode)
{
  constexpr long bilinearMode = 1;
  return mode == bilinearMode ? gxAffineSamplingParams::bilinear : gxAffineSamplingParams::bicubic;
}

/// One axis of an image that begins at @p origin, of which a part shows.
gx_scale::Axis axisOf(long origin, double seenFrom, double seenSize, long size)
{
  return {seenFrom - static_cast<double>(origin), seenSize, gf_truncate(seenSize), size};
}
}  // namespace

template <class T>
void gxUIScope::pelExpand(gxPelBuffer_const<T> const &src, gxPelBuffer<T> &dst, long xFactor, long yFactor,
                          gxUIRect const &clip, gxPair<long> const &phase)
{
  // Larger factors cannot show: no clip is wider than 32 bits say.
  constexpr long largest = std::numeric_limits<std::int32_t>::max();
  long const kx = std::min(xFactor, largest), ky = std::min(yFactor, largest);
  if (src.window().isNull() || kx < 1 || ky < 1 || clip.isNull())
    return;
  gxPair<long> const size(std::min(src.width() * kx, clip.width()), std::min(src.height() * ky, clip.height()));
  long const cutX = std::clamp(-phase.x(), 0L, kx), cutY = std::clamp(-phase.y(), 0L, ky);
  dst = copiedByPosition(src, size, gx_scale::blockPositions(size.x(), kx, 0, cutX, src.width()),
                         gx_scale::blockPositions(size.y(), ky, 0, cutY, src.height()));
}

template <class T>
void gxUIScope::pelScale(gxPelBuffer_const<T> const &src, gxPelBuffer<T> &dst, double scale, gxUIRect const &clip,
                         gxPair<long> const &origin, InterpolationModes mode)
{
  if (src.window().isNull() || !(scale > 0.0) || !std::isfinite(scale))
    return;
  gxRect const image(gxVector<2>(origin), gxVector<2>(src.size()) * scale);
  gxRect const seen = gxRect(gxVector<2>(clip.ul()), gxVector<2>(clip.sz())) & image;
  gx_scale::Axis const x = axisOf(origin.x(), seen.origin().x(), seen.size().x(), src.width());
  gx_scale::Axis const y = axisOf(origin.y(), seen.origin().y(), seen.size().y(), src.height());
  if (x.count < 1 || y.count < 1)
    return;
  if constexpr (background<T>.has_value())
    if (mode != gx_UITabletBase::noInterpolation && scale > 1.0 &&
        std::min(x.size, y.size) >= gx_scale::leastInterpolated) {
      dst = gx_scale::interpolated<T>(src, scale, x, y, interpolationOf(mode), *background<T>);
      return;
    }
  dst = copiedByPosition(src, gxPair<long>(x.count, y.count), gx_scale::positionsAtScale(x, scale),
                         gx_scale::positionsAtScale(y, scale));
}

#define GX_PEL_SCALE_(T)                                                                                             \
  template GX_API void gxUIScope::pelScale(gxPelBuffer_const<T> const &, gxPelBuffer<T> &, double, gxUIRect const &, \
                                           gxPair<long> const &, InterpolationModes)
#define GX_PEL_EXPAND_(T)                                                                               \
  template GX_API void gxUIScope::pelExpand(gxPelBuffer_const<T> const &, gxPelBuffer<T> &, long, long, \
                                            gxUIRect const &, gxPair<long> const &)

GX_PEL_SCALE_(unsigned char);
GX_PEL_SCALE_(unsigned short);
GX_PEL_SCALE_(gxPackedRGB16Pel);
GX_PEL_SCALE_(gxPackedRGB32Pel);
GX_PEL_EXPAND_(unsigned char);
GX_PEL_EXPAND_(gxPackedRGB16Pel);
GX_PEL_EXPAND_(gxPackedRGB32Pel);
