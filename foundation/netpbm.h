#pragma once

#include "foundation/export.h"
#include "foundation/pel.h"
#include "foundation/pelbuf.h"

#include <string>

/// @file
/// Pel buffers from and to the plain image formats PGM (grey) and PPM (colour), which need no library.
///
/// Read are P2, P3 (numbers as text), P5 and P6 (bytes), with a greatest value from 1 to 255; other greatest values
/// than 255 are stretched to it. Written are P5 and P6. All throw gxPel::BadImageFile with a text that names the file,
/// the cause and, when the content is at fault, the byte. The size of an image is checked against the size of its file
/// before memory is taken.

/// Grey pels; of colours, 0.299 red + 0.587 green + 0.114 blue.
GX_API gxPelBuffer<unsigned char> gfReadNetpbmGrey(std::string const &path);
/// Colour pels, whose spare byte is 0; of a grey file, equal components.
GX_API gxPelBuffer<gxPackedRGB32Pel> gfReadNetpbmColor(std::string const &path);
/// Writes the window of a buffer as PGM.
GX_API void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<unsigned char> const &buffer);
/// Writes the window of a buffer as PPM, without the spare byte.
GX_API void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer);
