/// @file
/// Loads a sketch from whatever bytes, under small limits. What does not load must fail with an exception that loading
/// documents and leave the target as it was. What loads must be told as text, played and measured without a fault, and
/// come back from an archive with its bytes.

#include "bench/nullscope.h"
#include "dispc/sketchop.h"
#include "dispc/sketchop_areas.h"
#include "dispc/uierror.h"
#include "dispc/uitablet.h"
#include "foundation/archive.h"
#include "fuzz/expect.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

namespace
{

void load(std::string const &bytes, gxUISketch &sketch, std::size_t maxBytes)
{
  gxArchive::Limits limits;
  limits.maxBytes = maxBytes;
  limits.maxObjects = 1000;
  std::istringstream stream(bytes);
  gxLoadingArchive in(stream, limits);
  in || sketch;
}

bool loads(std::string const &bytes, gxUISketch &sketch)
{
  try {
    load(bytes, sketch, 1 << 13);
    return true;
  } catch (gxArchive::Errors const &) {
  } catch (gxBadPointer const &) {
  } catch (gxUIError::InvalidUISketch const &) {
  } catch (gxUIError::NotImplemented const &) {
  } catch (gxGraphicProps::BadParams const &) {
  }
  expect(sketch.isNull(), "a load has failed and left something");
  return false;
}

/// What an archive keeps of it: all but bits of colours that mean nothing, and properties that then change nothing.
gxUISketch throughArchive(gxUISketch sketch)
{
  std::ostringstream stored;
  gxStoringArchive(stored) || sketch;
  gxUISketch loaded;
  load(stored.str(), loaded, 1 << 20);
  return loaded;
}

/// True unless a frame of very many pels would be drawn, pel by pel of its width.
bool isSmall(gxUISketch &sketch)
{
  for (long at = 0; at < sketch.size();) {
    gx_UISketchOpHeader header;
    gx_UISketchOpData *made = nullptr;
    at += gfParseUISketch(sketch, at, header, &made);
    std::unique_ptr<gx_UISketchOpData> const op(made);
    auto const *const frame = dynamic_cast<gx_UISketchOpOutline3d const *>(made);
    if ((frame && frame->width() > 1000) || header.opcode() == static_cast<long>(gx_SketchCode::sketch))
      return false;
  }
  return true;
}

void play(gxUISketch const &sketch, gxUITablet::Layers layer)
{
  NullScope image, overlay;
  gxUITablet tablet(&image, &overlay);
  tablet.visible(true);
  tablet.baseMap(gxXform<2>(gxMatrix<2>(2, 0.5, -0.5, 1), gxVector<2>(3, 4)));
  try {
    tablet.draw(sketch, gxPoint(1, 2), layer);
    if (layer != gxUITablet::both)
      tablet.encloseRect(sketch, gxPoint(), layer);
  } catch (gxException const &) {  // of a shape that a client has not registered, or of a layer that there is not
  }
}

void run(std::string const &bytes)
{
  gxUISketch sketch;
  if (!loads(bytes, sketch))
    return;
  std::ostringstream text;
  gfDumpUISketch(text, sketch);
  if (isSmall(sketch))
    for (auto const layer : {gxUITablet::image, gxUITablet::overlay, gxUITablet::both})
      play(sketch, layer);

  try {
    gxUISketch const once = throughArchive(sketch), twice = throughArchive(once);
    expect(twice.size() == once.size() && std::equal(once.bytes(), once.bytes() + once.size(), twice.bytes()),
           "stored and loaded once more, the bytes differ");
  } catch (gxUIError::NotImplemented const &) {  // a sketch inside, out of a stream of the first version
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
  run(std::string(reinterpret_cast<char const *>(data), size));
  return 0;
}
