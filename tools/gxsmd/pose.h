#pragma once

#include "foundation/xform.h"

#include <string>

/// Where a device lies in a picture.
struct Pose {
  double x = 0.0, y = 0.0;  ///< of the origin of the footprint, in pels; pel (0, 0) covers 0 to 1
  double degrees = 0.0;     ///< of the device as it is seen, counter-clockwise
  double scale = 1.0;       ///< pels per millimetre

  /// From millimetres of the footprint to pels.
  gxXform<2> xform() const;
};

/// A pose out of "X,Y" or "X,Y,DEGREES". Throws UsageError.
Pose poseIn(std::string const &text, double scale);
