#include "foundation/affine.h"

#include "foundation/detail/affinesampler.h"
#include "foundation/pelops.h"

#include <algorithm>
#include <limits>
#include <string>

gxAffineSamplingParams::gxAffineSamplingParams(gxAffineRectangle const &source, long width, long height,
                                               Interpolation interpolation)
    : source_(source), width_(width), height_(height), interpolation_(interpolation)
{
  constexpr long largest = std::numeric_limits<std::int32_t>::max();
  if (width < 1 || height < 1 || width > largest || height > largest)
    throw gxPel::BadSize("an image cannot be sampled at " + std::to_string(width) + " x " + std::to_string(height) +
                         " places");
  if (!source.cornerPo().isFinite() || !source.cornerPx().isFinite() || !source.cornerPy().isFinite())
    throw gxPel::BadCoord("a rectangle of samples with a corner that is not finite");
  if (interpolation != nearest && interpolation != bilinear && interpolation != bicubic)
    throw gxPel::Errors("there is no interpolation " + std::to_string(interpolation));
}

gxXform<2> gxAffineSamplingParams::sourceFromSamples() const
{
  auto const w = static_cast<double>(width_), h = static_cast<double>(height_);
  gxVector<2> const po = source_.cornerPo();
  gxVector<2> const x = source_.cornerPx() - po, y = source_.cornerPy() - po;
  return {gxMatrix<2>(x.x() / w, y.x() / h, x.y() / w, y.y() / h), po};
}

namespace
{
/// The samples that fall on the target, and the pels that take them.
struct Overlap {
  long firstSample;
  long firstPel;  ///< counted from the window's first
  long count;
};

Overlap overlap(long samples, long label, long pels)
{
  long const first = std::max(0L, label);
  return {first, first - label, std::max(0L, std::min(samples, label + pels) - first)};
}
}  // namespace

template <class T>
void gfAffineTransformImage(gxPelBuffer_const<T> const &source, gxPelBuffer<T> &target,
                            gxAffineSamplingParams const &params)
{
  source.checkBound();
  if (source.window().isNull())
    throw gxPel::BadWindow("an image without pels cannot be sampled");
  if (!target.isBound())
    target = gxPelBuffer<T>(params.width(), params.height());
  if (target.rep() == source.rep()) {
    // Pels must not change while they are still to be read.
    gxPelBuffer<T> const copy = gfPelCopy<T>(source);
    gfAffineTransformImage<T>(copy, target, params);
    return;
  }
  Overlap const x = overlap(params.width(), target.offset().x(), target.width());
  Overlap const y = overlap(params.height(), target.offset().y(), target.height());
  if (x.count == 0 || y.count == 0)
    return;

  gx_affine::Job job;
  job.source = reinterpret_cast<unsigned char const *>(source.pointToOffset());
  job.sourceStep = source.rowStep();
  job.sourceWidth = source.width();
  job.sourceHeight = source.height();
  job.target = reinterpret_cast<unsigned char *>(
      target.pointToPel(target.window().x() + x.firstPel, target.window().y() + y.firstPel));
  job.targetStep = target.rowStep();
  job.columns = x.count;
  job.rows = y.count;
  gxXform<2> const toFirst(
      gxMatrix<2>(), gxVector<2>(static_cast<double>(x.firstSample) + 0.5, static_cast<double>(y.firstSample) + 0.5));
  gxXform<2> const toWindow(gxMatrix<2>(), -gxVector<2>(source.offset()));
  job.positions = toWindow * params.sourceFromSamples() * toFirst;
  job.interpolation = params.interpolation();
  gx_affine::sample<sizeof(T)>(job);
}

template GX_API void gfAffineTransformImage(gxPelBuffer_const<unsigned char> const &, gxPelBuffer<unsigned char> &,
                                            gxAffineSamplingParams const &);
template GX_API void gfAffineTransformImage(gxPelBuffer_const<gxPackedRGB32Pel> const &,
                                            gxPelBuffer<gxPackedRGB32Pel> &, gxAffineSamplingParams const &);
