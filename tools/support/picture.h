#pragma once

#include "foundation/pelbuf.h"

#include <string>

/// Reads a picture as grey values: a PNG file (where the tools were built with it) or one of Netpbm, whatever its name.
/// Throws FileError.
gxPelBuffer<unsigned char> readGreyPicture(std::string const &path);
/// The same in colour.
gxPelBuffer<gxPackedRGB32Pel> readColorPicture(std::string const &path);
