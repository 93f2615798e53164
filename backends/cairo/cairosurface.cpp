#include "backends/cairo/cairosurface.h"

#include "backends/cairo/detail/cairoscreen.h"
#include "foundation/pelerror.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

namespace
{

/// What cairo's images can be as wide or high as.
constexpr long maxSide = 32767;

gxPair<long> checkedSize(long width, long height)
{
  if (width < 0 || height < 0 || width > maxSide || height > maxSide)
    throw gxPel::BadSize();
  return {width, height};
}

/// Writes a page through a surface of cairo's that writes to a file.
template <class Create>
void writePage(gx_CairoScreen const &screen, std::string const &path, Create create)
{
  gxPair<double> const size(screen.size());
  gx_CairoTarget const page(create(path.c_str(), size.x(), size.y()));
  gx_CairoContext const context(cairo_create(page.get()));
  screen.paint(context.get(), false);
  cairo_show_page(context.get());
  cairo_status_t const drawn = cairo_status(context.get());
  cairo_surface_finish(page.get());
  cairo_status_t const written = cairo_surface_status(page.get());
  for (cairo_status_t const status : {drawn, written})
    if (status != CAIRO_STATUS_SUCCESS)
      throw gxPel::BadImageFile(path + ": " + cairo_status_to_string(status));
}

}  // namespace

gxCairoSurface::gxCairoSurface(long width, long height, Kind kind)
    : screen_(std::make_shared<gx_CairoScreen>(checkedSize(width, height), kind == vectors)),
      imageScope_(screen_, 0),
      overlayScope_(screen_, 1)
{
}

gxCairoSurface::~gxCairoSurface() = default;

gxPair<long> gxCairoSurface::size() const
{
  return screen_->size();
}

gxPelBuffer_const<gxPackedRGB32Pel> gxCairoSurface::picture()
{
  return screen_->picture();
}

void gxCairoSurface::writeSvg(std::string const &path) const
{
  writePage(*screen_, path, cairo_svg_surface_create);
}

void gxCairoSurface::writePdf(std::string const &path) const
{
  writePage(*screen_, path, cairo_pdf_surface_create);
}
