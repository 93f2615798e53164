#include "tools/gxsketch/render.h"

#include "backends/pels/pelsurface.h"
#ifdef GXDISPLAY_HAVE_PNG
#include "backends/png/pngfile.h"
#endif
#include "foundation/exception.h"
#include "foundation/netpbm.h"
#include "tools/gxsketch/errors.h"

#include <filesystem>
#include <functional>
#include <sstream>
#include <vector>

namespace
{

constexpr long maxPels = 1L << 28;

/// A visible tablet on a surface in memory.
struct Canvas {
  gxPelSurface surface;
  gxUITablet tablet{&surface.imageScope(), &surface.overlayScope()};

  Canvas(gxPair<long> const &size, double scale) : surface(size.x(), size.y())
  {
    tablet.scaleExact({scale, scale});
    tablet.visible(true);
  }
};

using Pels = gxPelBuffer_const<gxPackedRGB32Pel>;

/// A kind of file, known by its ending.
struct Kind {
  std::string extension;
  std::function<void(std::string const &path, Pels const &)> write;
};

std::vector<Kind> const &kinds()
{
  static std::vector<Kind> const all = {
#ifdef GXDISPLAY_HAVE_PNG
      {".png", [](std::string const &path, Pels const &pels) { gfWritePng(path, pels); }},
#endif
      {".ppm", [](std::string const &path, Pels const &pels) { gfWriteNetpbm(path, pels); }},
  };
  return all;
}

Kind const &kindOf(std::string const &path)
{
  for (Kind const &kind : kinds())
    if (std::filesystem::path(path).extension() == kind.extension)
      return kind;
  throw UsageError(path + ": pictures can be " + pictureKinds());
}

/// The pels that a picture shows. Throws FileError for none and for too many.
gxUIRect shownBy(gxUISketch const &sketch, View const &view, std::string const &path)
{
  gxUIRect const shown = view.size ? gxUIRect(gxPair<long>(), *view.size) : extentOf(sketch, view.scale, view.layer);
  if (shown.isNull())
    throw FileError(path + ": the sketch draws nothing there; give a --size for an empty picture");
  if (shown.height() > maxPels / shown.width()) {
    std::ostringstream text;
    text << path << ": a picture of " << shown.width() << " x " << shown.height() << " pels is too large";
    throw FileError(text.str());
  }
  return shown;
}

}  // namespace

gxUIRect extentOf(gxUISketch const &sketch, double scale, gxUITablet::Layers layer)
{
  Canvas const canvas({1, 1}, scale);
  gxUIRect extent;
  for (auto const one : {gxUITablet::image, gxUITablet::overlay})
    if (gxUITablet::shouldUpdate(one, layer))
      extent |= canvas.tablet.encloseRect(sketch, {}, one);
  return extent;
}

std::string pictureKinds()
{
  std::string all;
  for (Kind const &kind : kinds())
    all += (all.empty() ? "" : ", ") + kind.extension;
  return all;
}

void render(gxUISketch const &sketch, View const &view, std::string const &path)
{
  Kind const &kind = kindOf(path);
  gxUIRect const shown = shownBy(sketch, view, path);
  Canvas canvas(shown.sz(), view.scale);
  canvas.tablet.dragDel(gxPair<long>() - shown.ul());
  canvas.tablet.draw(sketch, {}, view.layer);
  try {
    kind.write(path, canvas.surface.picture());
  } catch (gxException const &e) {
    throw FileError(e.message());  // it names the file
  }
}
