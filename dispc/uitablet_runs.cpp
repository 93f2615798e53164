#include "dispc/detail/uitablet_draw.h"
#include "foundation/rlebuf.h"

// Drawing of run-length images: the runs go to the scope as they are.

namespace
{
/// The bytes of a run-length row, its closing pair of length 0 included.
long rowBytes(gxRLEBufferRun const *run)
{
  long n = 1;
  for (; run->length != 0; ++run)
    ++n;
  return 2 * n;
}
}  // namespace

void gxUITablet::draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                      bool pass, unsigned char passColor, bool unscaled, Layers layer)
{
  long const top = buffer.offset().y();
  long const height = buffer.height();
  long bytes = 31 + static_cast<long>(colorMap.size());
  if (recordOn_)
    for (long y = 0; y < height; ++y)
      bytes += rowBytes(buffer.pointToRow(top + y));
  drawRecorded(
      layer, {gx_SketchCode::rleBuffer, gxGraphicProps(), gxColor(0)}, bytes,
      [&](gxUIScope &scope) {
        gxPoint tmp;
        gxPoint const &at = mapPoint(topLeft, layer, tmp);
        if (!unscaled && scaleMode_ == expandMode)
          scope.expand(buffer, at, colorMap, scaleExact_, pass, passColor);
        else if (!unscaled && scaleMode_ == sampleMode)
          scope.sample(buffer, at, colorMap, scaleExact_, pass, passColor);
        else
          scope.draw(buffer, at, colorMap, pass, passColor);
      },
      [&](gx_StreamWriter &payload) {
        payload.vector(topLeft).flag(pass).byte(passColor).flag(unscaled);
        payload.word(static_cast<long>(colorMap.size())).bytes(colorMap.data(), colorMap.size());
        payload.word(buffer.width()).word(height);
        for (long y = 0; y < height; ++y) {
          gxRLEBufferRun const *const row = buffer.pointToRow(top + y);
          payload.bytes(row, static_cast<std::size_t>(rowBytes(row)));
        }
      });
}
