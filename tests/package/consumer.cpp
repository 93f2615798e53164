// A program of a user: the umbrella header, an exception that crosses the border of the library, a drawing that a
// sketch records, and, where there are back ends, a picture of it.

#include "dispc/gxdisplay.h"
#ifdef CONSUMER_PELS
#include "backends/pels/pelsurface.h"
#endif
#ifdef CONSUMER_PNG
#include "backends/png/pngfile.h"
#endif
#ifdef CONSUMER_CONFORMANCE
#include "conformance/surfacecheck.h"
#endif
#ifdef CONSUMER_FOOTPRINT
#include "footprint/models.h"
#endif

#include <cstdio>
#include <iostream>
#include <string>

namespace
{
bool throwsSingular()
{
  try {
    gxXform<2>(gxMatrix<2>(1, 2, 2, 4), {}).inverse();
  } catch (gxMathError::Errors const &error) {
    return std::string(error.what()).find("Singular") != std::string::npos;
  }
  return false;
}

bool records()
{
  gxUITablet tablet;
  tablet.draw(gxRect(gxVector<2>(1, 2), gxVector<2>(3, 4)), gxColor::redColor(), gxUITablet::overlay, true);
  return !tablet.sketch().isNull();
}

#ifdef CONSUMER_PELS
bool shows()
{
  gxPelSurface surface(8, 8);
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.visible(true);
  tablet.draw(gxRect(gxVector<2>(2, 2), gxVector<2>(4, 4)), gxColor(255, 0, 0), gxUITablet::overlay, true);
  auto const picture = surface.picture();
  return picture.get(4, 4).red() == 255 && picture.get(0, 0).red() == 0;
}
#endif

#ifdef CONSUMER_PNG
bool keepsPng()
{
  gxPelBuffer<unsigned char> pels(2, 1);
  pels.put(0, 0, 7);
  pels.put(1, 0, 200);
  gfWritePng("consumer.png", pels);
  auto const back = gfReadPngGrey("consumer.png");
  std::remove("consumer.png");
  return back.get(0, 0) == 7 && back.get(1, 0) == 200;
}
#endif

int failures = 0;
void check(bool good, char const *what)
{
  if (!good) {
    std::cerr << what << '\n';
    ++failures;
  }
}

}  // namespace

int main()
{
  check(throwsSingular(), "an exception of the library was not caught by its type");
  check(records(), "a tablet without a scope recorded nothing");
#ifdef CONSUMER_PELS
  check(shows(), "the drawing is not in the picture");
#endif
#ifdef CONSUMER_PNG
  check(keepsPng(), "a PNG file did not come back as it was written");
#endif
#ifdef CONSUMER_CONFORMANCE
  check(!gfSurfaceRules().empty(), "there are no rules for surfaces");
#endif
#ifdef CONSUMER_FOOTPRINT
  gxFootprint const pattern = gxFootprint::read("(module one (pad 1 smd rect (at 0 0) (size 2 1) (layers F.Cu)))");
  check(gfFootprintModels(pattern).pads.numVertices() == 4, "a pad is no rectangle");
#endif
  return failures;
}
