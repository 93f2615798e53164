#pragma once

#include "dispc/uirect.h"
#include "dispc/uisketch.h"
#include "dispc/uitablet.h"
#include "foundation/pelbuf.h"

#include <optional>
#include <string>

/// What a picture of a sketch shows.
struct View {
  std::optional<gxPair<long>> size;  ///< the pels from (0, 0) on; without it those that are covered
  double scale = 1.0;                ///< of coordinates and of images
  gxUITablet::Layers layer = gxUITablet::both;
  gxPelBuffer_const<gxPackedRGB32Pel> under = {};  ///< if it has pels, they lie below the sketch, from (0, 0) on
};

/// The pels that a sketch covers at a scale: on one layer, or on either with `both`.
gxUIRect extentOf(gxUISketch const &sketch, double scale, gxUITablet::Layers layer);

/// The kinds of pictures that can be written, as ".png, .ppm".
std::string pictureKinds();

/// Throws UsageError if pictures with the ending of this name cannot be written.
void needPictureKind(std::string const &path);

/// Draws a sketch and writes the picture, of the kind that the name of the file says: the overlay above the image, on
/// black. Throws FileError, UsageError for a kind that cannot be written, and what a record throws when it is drawn.
void render(gxUISketch const &sketch, View const &view, std::string const &path);
