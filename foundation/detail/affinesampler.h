#pragma once

#include "foundation/affine.h"
#include "foundation/xform.h"

namespace gx_affine
{
/// What affine sampling comes down to: pels of C bytes, row by row.
struct Job {
  unsigned char const *source;  ///< first pel
  long sourceStep;
  long sourceWidth, sourceHeight;  ///< at least 1
  unsigned char *target;           ///< the pel of the first sample
  long targetStep;
  long columns, rows;    ///< samples in a row, rows of samples
  gxXform<2> positions;  ///< from column and row of a sample to the source, whose first pel covers (0, 0) to (1, 1)
  gxAffineSamplingParams::Interpolation interpolation;
};

/// C is 1 or 4. Instances are in the source.
template <int C>
void sample(Job const &job);

/// The two roads of sample().
template <int C>
void sampleParallel(Job const &job);
template <int C>
void sampleAlongLines(Job const &job);
}  // namespace gx_affine
