// Shows a result over a camera image: the image on one layer, the result on the other, in millimetres.
//
//   show_overlay             writes show_overlay.ppm; fails if a step does not come out as told
//
// docs/overlays.md goes through it.

#include "backends/pels/pelsurface.h"
#include "dispc/gxdisplay.h"

#include <iostream>
#include <string>

namespace
{

bool allAsTold = true;

void tell(bool holds, std::string const &what)
{
  std::cout << (holds ? "" : "NOT SO: ") << what << '\n';
  allAsTold = allAsTold && holds;
}

constexpr gxPair<long> size(320, 240);
constexpr auto overlay = gxUITablet::overlay;

/// What a camera would give: a bright disk on a dark board.
gxPelBuffer<unsigned char> cameraImage()
{
  gxPelBuffer<unsigned char> const camera(size.x(), size.y());
  for (long y = 0; y < size.y(); ++y)
    for (long x = 0; x < size.x(); ++x) {
      double const dx = double(x) - 200.0, dy = double(y) - 90.0;
      camera.put(x, y, dx * dx + dy * dy < 40.0 * 40.0 ? 220 : 60);
    }
  return camera;
}

/// The result of a vision tool, in millimetres.
void drawResult(gxUITablet &tablet)
{
  gxCircle const found({5.0, 1.5}, 2.0);
  tablet.draw(found, gxColor::greenColor(), overlay, false);
  tablet.draw(gxLineSeg({4.5, 1.5}, {5.5, 1.5}), gxColor::redColor(), overlay);
  tablet.draw(gxLineSeg({5.0, 1.0}, {5.0, 2.0}), gxColor::redColor(), overlay);
  tablet.draw("2.0 mm", {5.0, 4.0}, gxColor::yellowColor(), gxColor::passColor(), gxUIFormat(gxUIFormat::topCenter),
              overlay);
}

/// A tablet that shows both whenever it is asked to repaint.
class ResultView : public gxUITablet
{
 public:
  explicit ResultView(gxPelSurface &surface) : gxUITablet(&surface.imageScope(), &surface.overlayScope()) {}

 protected:
  void redraw_() override
  {
    if (shouldUpdateImage(updateLayers()))
      draw(camera_, gxPoint(-5, -3), false, 0, false, image);
    if (shouldUpdateOverlay(updateLayers())) {
      set(gxColor::passColor(), overlay);
      drawResult(*this);
    }
  }

 private:
  gxPelBuffer<unsigned char> camera_ = cameraImage();
};

gxColor colorAt(gxPelSurface &surface, long x, long y)
{
  gxPackedRGB32Pel const pel = surface.picture().get(x, y);
  return {pel.red(), pel.green(), pel.blue()};
}

}  // namespace

int main()
{
  gxPelSurface surface(size.x(), size.y());
  ResultView view(surface);

  // 20 pels to a millimetre, the origin at pel (100, 60).
  view.baseMap(gxXform<2>(gxMatrix<2>(20, 0, 0, 20), gxVector<2>(100, 60)));
  view.visible(true);  // paints
  gfWriteNetpbm("show_overlay.ppm", surface.picture());
  tell(colorAt(surface, 160, 90) == gxColor::greenColor(), "the circle passes 2 mm to the left of its centre");
  tell(colorAt(surface, 200, 90) == gxColor::redColor(), "a cross marks the centre");
  tell(colorAt(surface, 180, 90) == gxColor(220, 220, 220), "between them the image is seen");

  // The layers are painted for themselves: without the overlay the image is as it was.
  view.set(gxColor::passColor(), overlay);
  tell(colorAt(surface, 160, 90) == gxColor(60, 60, 60), "the overlay is gone, the image is not");
  view.redraw(overlay);
  tell(colorAt(surface, 160, 90) == gxColor::greenColor(), "and painting that layer anew brings it back");
  return allAsTold ? 0 : 1;
}
