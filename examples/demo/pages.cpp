#include "examples/demo/pages.h"

#ifdef GXDISPLAY_HAVE_PNG
#include "backends/png/pngfile.h"
#endif
#include "dispc/sketchop.h"
#include "foundation/archive.h"
#include "foundation/netpbm.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace
{

#ifdef GXDISPLAY_HAVE_PNG
constexpr char const *extension = ".png";
void write(std::string const &file, gxPelBuffer_const<gxPackedRGB32Pel> const &picture)
{
  gfWritePng(file, picture);
}
#else
constexpr char const *extension = ".ppm";
void write(std::string const &file, gxPelBuffer_const<gxPackedRGB32Pel> const &picture)
{
  gfWriteNetpbm(file, picture);
}
#endif

long recordsOf(gxUISketch sketch)
{
  gx_UISketchOpHeader header;
  long n = 0;
  for (long at = 0; at < sketch.size(); ++n)
    at += gfParseUISketch(sketch, at, header, nullptr);
  return n;
}

std::string contentOf(gxUISketch const *sketch)
{
  char text[64] = "";
  if (sketch)
    std::snprintf(text, sizeof text, "%4ld records, %6ld bytes, ", recordsOf(*sketch), sketch->size());
  return text;
}

}  // namespace

Pages::Pages(std::filesystem::path folder) : folder_(std::move(folder))
{
  std::filesystem::create_directories(folder_);
}

void Pages::show(char const *name, std::string const &what, gxPelSurface &surface, gxUISketch const *sketch,
                 std::function<void()> const &work)
{
  auto const start = std::chrono::steady_clock::now();
  work();
  auto const picture = surface.picture();
  std::chrono::duration<double, std::milli> const took = std::chrono::steady_clock::now() - start;
  char number[16];
  std::snprintf(number, sizeof number, "%02d_", ++number_);
  std::string const file = (folder_ / (std::string(number) + name + extension)).string();
  write(file, picture);
  std::printf("%-26s %-60s %35s%6.2f ms\n", file.c_str(), what.c_str(), contentOf(sketch).c_str(), took.count());
}

void Pages::store(char const *name, gxUISketch sketch)
{
  std::string const file = (folder_ / (std::string(name) + ".sketch")).string();
  std::ofstream os(file, std::ios::binary);
  gxStoringArchive archive(os);
  archive || sketch;
  archive.flush();
  if (!os.flush())
    throw std::runtime_error(file + " cannot be written");
  remark("its records are in " + file + ": gxsketch dump or render shows them");
}

void Pages::remark(std::string const &text)
{
  std::printf("%26s %s\n", "", text.c_str());
}
