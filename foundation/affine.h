#pragma once

#include "foundation/affinerect.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"

#include <cstdint>

/// Where to sample an image, in how many samples, and how.
///
/// The rectangle is divided into width x height cells, width along its x side; sample (i, j) is taken at the center of
/// cell (i, j), so that the center of sample (0, 0) lies half a cell from the corner `po` on both axes.
///
/// @code
/// // The part of a tilted label, upright and at twice its size.
/// gxAffineRectangle const label(center, 120, 40, gxDegree(17), gxDegree(17));
/// gxPelBuffer<unsigned char> upright(240, 80);
/// gfAffineTransformImage(image, upright, gxAffineSamplingParams(label, 240, 80, gxAffineSamplingParams::bicubic));
/// @endcode
class GX_API gxAffineSamplingParams
{
 public:
  /// How a sample between the centers of pels gets its value.
  enum Interpolation : std::int32_t {
    nearest = 1,   ///< the pel that it lies in
    bilinear = 2,  ///< of the 2 x 2 pels around it, linearly in x and in y
    /// Of the 4 x 4 pels around it, by the cubic convolution kernel with a = -1/2 in x and in y (R. G. Keys, "Cubic
    /// convolution interpolation for digital image processing", 1981). Overshoots are cut off at 0 and 255.
    bicubic = 3
  };

  /// Throws gxPel::BadSize unless both sizes are positive, gxPel::BadCoord if a corner is not finite, gxPel::Errors for
  /// an interpolation that is none of the above.
  gxAffineSamplingParams(gxAffineRectangle const &source, long width, long height,
                         Interpolation interpolation = bilinear);

  gxAffineRectangle const &source() const { return source_; }
  long width() const { return width_; }
  long height() const { return height_; }
  Interpolation interpolation() const { return interpolation_; }
  /// The map from the plane of the samples, in which sample (i, j) covers i to i + 1 and j to j + 1, to the source.
  gxXform<2> sourceFromSamples() const;

 private:
  gxAffineRectangle source_;
  long width_;
  long height_;
  Interpolation interpolation_;
};

/// Fills @p target with samples of the window of @p source. T is `unsigned char` or gxPackedRGB32Pel, whose four
/// components are sampled alike.
///
/// Both sides are told by the labels of the buffers (gx_PelBuffer::offset): the rectangle of @p params lies in those
/// of the source, and sample (i, j) goes to the pel of the target with that label. Samples without such a pel are left
/// out, and pels of the target without a sample keep their value. A target without a root becomes a new buffer of
/// width x height pels.
///
/// Beyond its border the source goes on with the pel of the border that is nearest. No sample is off by more than one
/// grey level from the exact value rounded to whole numbers, and the result is the same on every machine. Samples are
/// never averages over what lies between them: for an image at less than half its size, filter it before.
///
/// Throws gxPel::UnboundWindow for a source without a root, gxPel::BadWindow for one without pels. Costs least for a
/// rectangle whose x side is parallel to the x axis and whose y side to the y axis.
template <class T>
void gfAffineTransformImage(gxPelBuffer_const<T> const &source, gxPelBuffer<T> &target,
                            gxAffineSamplingParams const &params);
