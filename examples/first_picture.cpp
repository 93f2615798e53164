#include "backends/pels/pelsurface.h"
#include "dispc/gxdisplay.h"

#include <iostream>

int main()
{
  gxPelSurface surface(640, 480);  // an image layer and an overlay above it, in memory
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.baseMap(gxXform<2>(gxMatrix<2>(20, 0, 0, 20), gxVector<2>(320, 240)));  // millimetres, 20 pels each
  tablet.visible(true);
  tablet.recordOn().push(true);

  gxColor const board(30, 70, 50);
  tablet.draw(gxRect(gxVector<2>(-12, -8), gxVector<2>(24, 16)), board, gxUITablet::image, true);
  tablet.draw(gxCircle(gxVector<2>(0, 0), 2.5), gxColor::yellowColor(), gxUITablet::overlay, false);
  tablet.draw(gxLineSeg(gxVector<2>(-4, 0), gxVector<2>(4, 0)), gxColor::redColor(), gxUITablet::overlay);

  gfWriteNetpbm("first_picture.ppm", surface.picture());  // what an operator sees
  std::cout << "recorded " << tablet.sketch().size() << " bytes, in millimetres\n";
}
