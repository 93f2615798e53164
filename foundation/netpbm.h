#pragma once

/// @file
/// Pel buffers from and to files of the Netpbm family: PGM (grey, P2 and P5) and PPM (color, P3 and P6), of 8 bits a
/// component. Nothing but the standard library is needed for them.
///
/// What a file holds is stretched to 0 to 255 where its greatest value is less than that: v becomes v * 255 / greatest,
/// rounded half up. A color becomes grey by gxPackedRGB32Pel::luminance(). Bitmaps (P1, P4),
/// files of 16 bits a component, and sizes of more than gf_netpbmMaxPels pels are refused. What follows the first image
/// of a file is not read.
///
/// All throw gxPel::BadImageFile with a text that names the file, or what else is read, and says what is wrong and at
/// which byte. Memory is taken only as far as pels arrive, so that a header cannot ask for more than the file has.

#include "foundation/export.h"
#include "foundation/pelbuf.h"

#include <iosfwd>
#include <string>

inline constexpr long gf_netpbmMaxPels = 1L << 28;

/// Reads an image as grey pels.
GX_API gxPelBuffer<unsigned char> gfReadNetpbmGrey(std::string const &path);
/// Reads an image as color pels, whose spare byte is 0; of a grey file, with equal components.
GX_API gxPelBuffer<gxPackedRGB32Pel> gfReadNetpbmColor(std::string const &path);
/// The same from a stream in binary mode; @p name stands for the file in the texts of errors.
GX_API gxPelBuffer<unsigned char> gfReadNetpbmGrey(std::istream &is, std::string const &name);
GX_API gxPelBuffer<gxPackedRGB32Pel> gfReadNetpbmColor(std::istream &is, std::string const &name);

/// Writes the window of a buffer as P5. There must be pels in it.
GX_API void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<unsigned char> const &buffer);
/// Writes the window of a buffer as P6, without the spare byte.
GX_API void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer);
/// The same to a stream in binary mode.
GX_API void gfWriteNetpbm(std::ostream &os, std::string const &name, gxPelBuffer_const<unsigned char> const &buffer);
GX_API void gfWriteNetpbm(std::ostream &os, std::string const &name, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer);
