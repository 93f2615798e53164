#include "dispc/detail/uitablet_draw.h"
#include "foundation/pelbuf.h"

// Drawing of images. Their rows stay rows under any map: only the top left corner is mapped.

namespace
{

/// Calls the operation of the scope that a scale mode asks for.
template <class Expand, class Sample, class Draw>
void byScaleMode(gxUITablet::ScaleModes mode, Expand const &expand, Sample const &sample, Draw const &draw)
{
  switch (mode) {
    case gxUITablet::expandMode:
      expand();
      break;
    case gxUITablet::sampleMode:
      sample();
      break;
    default:
      draw();
  }
}

}  // namespace

void gxUITablet::draw(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned char passPel, bool flag, Layers layer)
{
  long const width = buffer.width();
  long const height = buffer.height();
  drawRecorded(
      layer, {gx_SketchCode::pelBuffer8, gxGraphicProps(), gxColor(0)}, 91 + width * height,
      [&](gxUIScope &scope) {
        gxPoint tmp;
        gxPoint const &at = mapPoint(topLeft, layer, tmp);
        byScaleMode(
            scaleMode_, [&] { scope.expand(buffer, at, scaleExact_, pass, passPel, flag, interpolation_); },
            [&] { scope.sample(buffer, at, scaleExact_, pass, passPel, flag); },
            [&] { scope.draw(buffer, at, pass, passPel, flag); });
      },
      [&](gx_StreamWriter &payload) {
        gxXform<2> const map = buffer.imageFromClientXform();
        gxMatrix<2> const &m = map.matrix();
        payload.vector(topLeft).flag(pass).byte(passPel).vector(map.translation());
        payload.real(m.element(0, 0)).real(m.element(0, 1)).real(m.element(1, 0)).real(m.element(1, 1)).real(m.det());
        payload.pair(buffer.offset()).word(width).word(height).flag(flag);
        gxPelRect const window = buffer.window();
        for (long y = 0; y < height && width > 0; ++y)
          payload.bytes(buffer.pointToPel(window.x(), window.y() + y), static_cast<std::size_t>(width));
      });
}

/// Images of the other pel types are drawn and not recorded. @p mode is what `expand` is told.
template <class Pel, class Value>
void gxUITablet::drawImage(gxPelBuffer_const<Pel> const &buffer, gxPoint const &topLeft, bool pass, Value passPel,
                           InterpolationModes mode, Layers layer)
{
  if (!okToDraw(layer))
    return;
  gxUIScope &scope = *activeScope_[layer];
  gxPoint tmp;
  gxPoint const &at = mapPoint(topLeft, layer, tmp);
  byScaleMode(
      scaleMode_, [&] { scope.expand(buffer, at, scaleExact_, pass, passPel, mode); },
      [&] { scope.sample(buffer, at, scaleExact_, pass, passPel); }, [&] { scope.draw(buffer, at, pass, passPel); });
}

void gxUITablet::draw(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned short passPel, Layers layer)
{
  drawImage(buffer, topLeft, pass, passPel, noInterpolation, layer);
}

void gxUITablet::draw(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned short passPel, Layers layer)
{
  drawImage(buffer, topLeft, pass, passPel, noInterpolation, layer);
}

void gxUITablet::draw(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, bool pass,
                      unsigned long passPel, Layers layer)
{
  drawImage(buffer, topLeft, pass, passPel, interpolation_, layer);
}
