#pragma once

#include "foundation/export.h"
#include "foundation/pel.h"
#include "foundation/pelbuf.h"

#include <string>

/// @file
/// Pel buffers from and to PNG files. A file keeps the pels of a buffer exactly, and so does reading them back.
///
/// Whatever a file holds is brought to 8 bits a component: palettes are looked up, fewer bits stretched, 16 bits cut
/// to the high 8. Gamma and colour profiles are left alone: a pel keeps the number that the file gives it. Transparency
/// is dropped. Reading refuses files of more than gf_pngMaxPels pels.
///
/// All throw gxPel::BadImageFile with a text that names the file and the reason.

inline constexpr long gf_pngMaxPels = 1L << 28;

/// Reads a file as grey pels; of colours, 0.299 red + 0.587 green + 0.114 blue.
GX_API gxPelBuffer<unsigned char> gfReadPngGrey(std::string const &path);
/// Reads a file as colour pels, whose spare byte is 0; of a grey file, equal components.
GX_API gxPelBuffer<gxPackedRGB32Pel> gfReadPngColor(std::string const &path);
/// Writes the window of a buffer: 8 bits grey.
GX_API void gfWritePng(std::string const &path, gxPelBuffer_const<unsigned char> const &buffer);
/// Writes the window of a buffer: 8 bits a component, without the spare byte.
GX_API void gfWritePng(std::string const &path, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer);
