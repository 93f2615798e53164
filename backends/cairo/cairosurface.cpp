#include "backends/cairo/cairosurface.h"

#include "backends/cairo/detail/cairoscreen.h"
#include "foundation/pelerror.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <fstream>

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

cairo_status_t append(void *to, unsigned char const *bytes, unsigned int count)
{
  static_cast<std::string *>(to)->append(reinterpret_cast<char const *>(bytes), count);
  return CAIRO_STATUS_SUCCESS;
}

/// Writes a page that cairo makes in memory.
template <class Create>
void writePage(gx_CairoScreen const &screen, std::string const &path, Create create)
{
  gxPair<double> const size(screen.size());
  std::string bytes;
  gx_CairoTarget const page(create(append, &bytes, size.x(), size.y()));
  gx_CairoContext const context(cairo_create(page.get()));
  screen.paint(context.get(), false);
  cairo_show_page(context.get());
  cairo_surface_finish(page.get());
  for (cairo_status_t const status : {cairo_status(context.get()), cairo_surface_status(page.get())})
    if (status != CAIRO_STATUS_SUCCESS)
      throw gxPel::BadImageFile(path + ": " + cairo_status_to_string(status));
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush())
    throw gxPel::BadImageFile(path + ": cannot be written");
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
  writePage(*screen_, path, cairo_svg_surface_create_for_stream);
}

void gxCairoSurface::writePdf(std::string const &path) const
{
  writePage(*screen_, path, cairo_pdf_surface_create_for_stream);
}
