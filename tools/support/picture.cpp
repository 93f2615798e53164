#include "tools/support/picture.h"

#ifdef GXDISPLAY_HAVE_PNG
#include "backends/png/pngfile.h"
#endif
#include "foundation/exception.h"
#include "foundation/netpbm.h"
#include "tools/support/errors.h"

#include <fstream>

namespace
{

bool isPng(std::string const &path)
{
  return std::ifstream(path, std::ios::binary).get() == 0x89;
}

template <class Read>
auto reading(Read const &read)
{
  try {
    return read();
  } catch (gxException const &e) {
    throw FileError(e.message());
  }
}

#ifndef GXDISPLAY_HAVE_PNG
template <class Pel>
gxPelBuffer<Pel> refusePng(std::string const &path)
{
  throw FileError(path + ": PNG files cannot be read by this build; give a PGM or PPM file");
}
#endif

}  // namespace

gxPelBuffer<unsigned char> readGreyPicture(std::string const &path)
{
  return reading([&] {
#ifdef GXDISPLAY_HAVE_PNG
    return isPng(path) ? gfReadPngGrey(path) : gfReadNetpbmGrey(path);
#else
    return isPng(path) ? refusePng<unsigned char>(path) : gfReadNetpbmGrey(path);
#endif
  });
}

gxPelBuffer<gxPackedRGB32Pel> readColorPicture(std::string const &path)
{
  return reading([&] {
#ifdef GXDISPLAY_HAVE_PNG
    return isPng(path) ? gfReadPngColor(path) : gfReadNetpbmColor(path);
#else
    return isPng(path) ? refusePng<gxPackedRGB32Pel>(path) : gfReadNetpbmColor(path);
#endif
  });
}
