#include "tools/support/render.h"

#ifdef GXDISPLAY_HAVE_CAIRO
#include "backends/cairo/cairosurface.h"
#endif
#include "backends/pels/pelsurface.h"
#ifdef GXDISPLAY_HAVE_PNG
#include "backends/png/pngfile.h"
#endif
#include "foundation/exception.h"
#include "foundation/netpbm.h"
#include "tools/support/errors.h"

#include <filesystem>
#include <functional>
#include <sstream>
#include <vector>

namespace
{

constexpr long maxPels = 1L << 28;

/// A visible tablet on a surface of its own.
template <class Surface>
struct Canvas {
  Surface surface;
  gxUITablet tablet{&surface.imageScope(), &surface.overlayScope()};

  template <class... Options>
  Canvas(gxPair<long> const &size, double scale, Options... options) : surface(size.x(), size.y(), options...)
  {
    tablet.scaleExact({scale, scale});
    tablet.visible(true);
  }
};

/// What is drawn, and on how many pels.
struct Drawing {
  gxUISketch const &sketch;
  View const &view;
  gxUIRect shown;

  /// Draws on a canvas for Surface(width, height, options...), which is then handed on.
  template <class Surface, class Write, class... Options>
  void on(Write const &write, Options... options) const
  {
    Canvas<Surface> canvas(shown.sz(), view.scale, options...);
    canvas.tablet.dragDel(gxPair<long>() - shown.ul());
    if (view.under.isBound())
      canvas.tablet.draw(view.under, gxPoint(0, 0), false, 0, gxUITablet::image);
    canvas.tablet.draw(sketch, {}, view.layer);
    write(canvas.surface);
  }
};

/// A kind of file, known by its ending.
struct Kind {
  std::string extension;
  std::function<void(std::string const &path, Drawing const &)> write;
};

/// What a file refuses; the text names the file.
template <class Write>
void writing(Write const &write)
{
  try {
    write();
  } catch (gxException const &e) {
    throw FileError(e.message());
  }
}

template <class Write>
Kind pels(char const *extension, Write write)
{
  return {extension, [write](std::string const &path, Drawing const &drawing) {
            drawing.on<gxPelSurface>([&](gxPelSurface &surface) { writing([&] { write(path, surface.picture()); }); });
          }};
}

#ifdef GXDISPLAY_HAVE_CAIRO
Kind vectors(char const *extension, void (gxCairoSurface::*write)(std::string const &) const)
{
  return {extension, [write](std::string const &path, Drawing const &drawing) {
            drawing.on<gxCairoSurface>([&](gxCairoSurface &page) { writing([&] { (page.*write)(path); }); },
                                       gxCairoSurface::vectors);
          }};
}
#endif

std::vector<Kind> const &kinds()
{
  using Pels = gxPelBuffer_const<gxPackedRGB32Pel>;
  static std::vector<Kind> const all = {
#ifdef GXDISPLAY_HAVE_PNG
      pels(".png", [](std::string const &path, Pels const &p) { gfWritePng(path, p); }),
#endif
      pels(".ppm", [](std::string const &path, Pels const &p) { gfWriteNetpbm(path, p); }),
#ifdef GXDISPLAY_HAVE_CAIRO
      vectors(".svg", &gxCairoSurface::writeSvg),
      vectors(".pdf", &gxCairoSurface::writePdf),
#endif
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
  Canvas<gxPelSurface> const canvas({1, 1}, scale);
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

void needPictureKind(std::string const &path)
{
  kindOf(path);
}

void render(gxUISketch const &sketch, View const &view, std::string const &path)
{
  Kind const &kind = kindOf(path);
  gxUIRect const shown = shownBy(sketch, view, path);
  kind.write(path, {sketch, view, shown});
}
