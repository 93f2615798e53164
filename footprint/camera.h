#pragma once

#include "footprint/models.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"
#include "foundation/xform.h"

/// How a camera sees a device: grey values from 0 to 255, lengths in pels.
struct GX_API gxCameraLook {
  unsigned char background = 120;
  unsigned char pads = 220;
  unsigned char body = 30;
  double blur = 0.0;       ///< standard deviation of a Gaussian; 0 for a lens without fault, at most 50
  double noise = 0.0;      ///< standard deviation of what is added to each pel, in grey values
  double shading = 0.0;    ///< by which part of itself the light falls off from the middle to the corners, 0 to 1
  unsigned long seed = 0;  ///< of the noise; the same gives the same image on every machine
};

/// Paints the image that a camera would take: of the pads, and of the body over them. Each pel takes the mean of the
/// light on its whole area, which is found by painting everything 8 times as large (4, 2 times in images above 1, 4
/// million pels, and as it is above 16).
///
/// @param pose from millimetres to pels; pel (0, 0) of the buffer's root covers 0 to 1 both ways
/// Throws gxPel::UnboundWindow for an image without pels, gxMathError::Singular for a pose without an inverse, and
/// gxShapesError::BadCoef for a look out of range; the image is as it was then.
GX_API void gfCameraImage(gxFootprintModels const &models, gxXform<2> const &pose, gxCameraLook const &look,
                          gxPelBuffer<unsigned char> const &image);
