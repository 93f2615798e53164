#include "backends/pels/pelsurface.h"
#include "examples/demo/pages.h"
#include "examples/demo/scene.h"
#include "footprint/footprint.h"

#include "foundation/exception.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

// The road of a drawing, from a device in a file and a camera picture to what an operator sees: tablets draw on the
// image and the overlay layer of a surface in memory, and record. Numbered pictures go to the folder demo-out, one line
// each.
//
//   demo [FOOTPRINT] [PICTURE]     a land pattern (.kicad_mod); a grey picture, PNG or PGM. Without them the
//                                  demonstration takes a device of its own, and renders a board
//
// Exit status: 0, or 1 if a file cannot be read or a result cannot be written.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;

/// A tablet that shows a picture and a drawing on it, whenever it is asked to repaint.
class View : public gxUITablet
{
 public:
  View(gxPelSurface &surface, gxPelBuffer<unsigned char> const &camera, Drawing drawing)
      : gxUITablet(&surface.imageScope(), &surface.overlayScope()), camera_(camera), drawing_(std::move(drawing))
  {
    // It covers all of its area: what goes from in front of it is given back to it to repaint.
    opaque(image, true);
    opaque(overlay, true);
  }
  View(gxUITablet &parent, gxUIRect const &rect, gxPelBuffer<unsigned char> const &camera, Drawing drawing)
      : gxUITablet(parent, rect), camera_(camera), drawing_(std::move(drawing))
  {
  }

  void drawing(Drawing d) { drawing_ = std::move(d); }
  void frame(gxColor const &color) { frame_ = color; }

  /// Draws the drawing; a tablet that records has its records in the sketch then, and nothing else.
  void drawAll()
  {
    if (recordOn())
      sketch().erase();
    for (auto const &operation : drawing_)
      operation(*this);
  }
  void record()
  {
    recordOn().push(true);
    drawAll();
    recordOn().pop();
  }

 protected:
  void redraw_() override
  {
    gxUIRect const all(gxPair<long>(), scopeRect().sz());
    if (shouldUpdateImage(updateLayers())) {
      set(gxColor(24, 24, 32), image);
      if (camera_.isBound())
        draw(camera_, gxPoint(0, 0), false, 0, false, image);
    }
    if (shouldUpdateOverlay(updateLayers())) {
      set(gxColor::passColor(), overlay);
      drawAll();
      if (frame_.isStockColor())
        outline(all, frame_, 3, overlay);
    }
  }

 private:
  gxPelBuffer<unsigned char> camera_;
  Drawing drawing_;
  gxColor frame_;
};

bool sameBytes(gxUISketch const &a, gxUISketch const &b)
{
  return a.size() == b.size() && std::equal(a.bytes(), a.bytes() + a.size(), b.bytes());
}

/// Tablets on a camera picture.
void tabletsChapter(Pages &pages, gxPelBuffer<unsigned char> const &camera)
{
  gxPelSurface surface(camera.width(), camera.height());
  Drawing const result = inspectionResult(camera.size());

  View root(surface, camera, {});
  pages.show("camera", "a camera picture on the image layer", surface, &root.sketch(), [&] { root.visible(true); });
  root.drawing(result);
  pages.show("overlay", "the result of a vision tool on the overlay, recorded", surface, &root.sketch(),
             [&] { root.record(); });
  pages.store("overlay", root.sketch());

  // Two windows on the same picture: one enlarged on a corner, one turned and made small.
  gxPair<long> const size = camera.size();
  long const w = size.x() * 2 / 5;
  long const h = size.y() * 2 / 5;
  View zoomed(root, gxUIRect(size.x() / 16, size.y() / 12, w, h), camera, result);
  zoomed.frame(gxColor::yellowColor());
  zoomed.baseMap(gxXform<2>(gxMatrix<2>(), gxVector<2>(-0.27 * double(size.x()), -0.2 * double(size.y()))));
  zoomed.scaleExact({3.0, 3.0});
  View turned(root, gxUIRect(size.x() * 2 / 5, size.y() * 2 / 5, w, h), {}, result);
  turned.frame(gxColor::cyanColor());
  turned.baseMap(gxXform<2>(gxMatrix<2>(gxRadian(0.5), gxRadian(0.5), 0.45, 0.3),
                            gxVector<2>(0.16 * double(size.x()), -0.03 * double(size.y()))));
  pages.show("two_kids", "two tablets on it: threefold, and turned with unequal scales", surface, &root.sketch(), [&] {
    zoomed.visible(true);
    turned.visible(true);
  });
  pages.show("restacked", "the rear one brought to the front", surface, &root.sketch(), [&] { zoomed.front(); });
  pages.show("moved", "and moved: what was behind it repaints itself", surface, &root.sketch(), [&] {
    zoomed.moveRel({size.x() * 2 / 5, size.y() * 3 / 8});
    // The root has painted what came free. An update brings back what is stacked above that.
    root.update(image);
    root.update(overlay);
  });

  View chart(root, gxUIRect(gxPair<long>(), size), {}, penChart());
  pages.show("pens", "widths and styles of lines, joins and caps", surface, &chart.sketch(), [&] {
    chart.visible(true);
    chart.record();
  });
  chart.drawing(shapeChart());
  pages.show("shapes", "shapes: thin, wide and filled", surface, &chart.sketch(), [&] {
    chart.baseMap(gxXform<2>(gxMatrix<2>(double(size.x()) / 640, 0, 0, double(size.y()) / 480), {}));
    chart.record();
  });

  gxUITablet::scratchPad.sketch().erase();
  for (auto const &operation : result)
    operation(gxUITablet::scratchPad);
  pages.remark(std::string("the same drawing on a tablet without a display gives the same records: ") +
               (sameBytes(gxUITablet::scratchPad.sketch(), root.sketch()) ? "yes" : "no"));
}

// Further chapters, each in a source of its own.
constexpr void (*chapters[])(Pages &) = {
    shapesChapter,   letteringChapter, imagesChapter,      graphicsChapter,
    outlinesChapter, modelChapter,     rectilinearChapter, devicesChapter,
};

bool isFootprint(std::string const &path)
{
  return std::filesystem::path(path).extension() == ".kicad_mod";
}

gxFootprint readFootprint(std::string const &path)
{
  std::ifstream is(path, std::ios::binary);
  std::string const text{std::istreambuf_iterator<char>(is), {}};
  if (!is)
    throw std::runtime_error(path + ": cannot be read");
  try {
    return gxFootprint::read(text);
  } catch (gxFootprintError const &e) {
    throw std::runtime_error(path + ": " + e.message());
  }
}

/// What the command line names.
struct Arguments {
  std::string footprint = GX_DEMO_FOOTPRINT, picture;

  /// False for a command line that makes no sense.
  bool read(int argc, char **argv)
  {
    int footprints = 0, pictures = 0;
    for (int i = 1; i < argc; ++i)
      if (argv[i][0] == '-')
        return false;
      else if (isFootprint(argv[i]))
        ++footprints, footprint = argv[i];
      else
        ++pictures, picture = argv[i];
    return footprints <= 1 && pictures <= 1;
  }
};
}  // namespace

int main(int argc, char **argv)
{
  Arguments arguments;
  if (!arguments.read(argc, argv)) {
    std::cerr << "usage: demo [FOOTPRINT] [PICTURE]   a .kicad_mod file; a grey picture, PNG or PGM\n";
    return 1;
  }
  try {
    gxFootprint const device = readFootprint(arguments.footprint);
    auto const camera = arguments.picture.empty() ? boardPicture() : readPicture(arguments.picture);
    Pages pages("demo-out");
    deviceChapter(pages, device);
    tabletsChapter(pages, camera);
    for (auto const chapter : chapters)
      chapter(pages);
    knownTruthChapter(pages, device);
  } catch (std::exception const &e) {
    std::cerr << "demo: " << e.what() << '\n';
    return 1;
  }
  return 0;
}
