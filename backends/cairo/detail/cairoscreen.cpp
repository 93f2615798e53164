#include "backends/cairo/detail/cairoscreen.h"

#include "dispc/uierror.h"

#include <algorithm>
#include <new>

namespace
{

/// A surface that cairo could make; it fails for want of memory alone.
gx_CairoTarget checked(cairo_surface_t *surface)
{
  gx_CairoTarget target(surface);
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS)
    throw std::bad_alloc();
  return target;
}

}  // namespace

gx_CairoImage::gx_CairoImage(long width, long height)
    : surface_(
          checked(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height))))
{
}

std::uint32_t *gx_CairoImage::row(long y) const
{
  unsigned char *const bytes = cairo_image_surface_get_data(surface_.get());
  return reinterpret_cast<std::uint32_t *>(bytes + y * cairo_image_surface_get_stride(surface_.get()));
}

gx_CairoLayer::gx_CairoLayer(gxPair<long> const &size, bool vectors) : size_(size), vectors_(vectors), drawings_(make())
{
  setPalette({}, true);
}

gx_CairoTarget gx_CairoLayer::make() const
{
  if (!vectors_)
    return checked(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(size_.x()), static_cast<int>(size_.y())));
  cairo_rectangle_t const page{0.0, 0.0, static_cast<double>(size_.x()), static_cast<double>(size_.y())};
  return checked(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &page));
}

void gx_CairoLayer::forget()
{
  if (!vectors_)
    return;
  (dragging_ ? drag_ : drawings_) = make();
}

void gx_CairoLayer::dragStart()
{
  drag_ = make();
  dragging_ = true;
  dragShown_ = true;
}

void gx_CairoLayer::dragErase()
{
  if (drag_)
    drag_ = make();
}

void gx_CairoLayer::setPalette(std::vector<gxRGB> const &map, bool reset)
{
  if (map.size() > palette_.size())
    throw gxUIError::InvalidColorMapSize();
  if (reset) {
    for (std::size_t i = 0; i < palette_.size(); ++i) {
      auto const grey = static_cast<unsigned char>(i);
      palette_[i] = gxRGB(grey, grey, grey);
    }
    for (gxColor const &stock :
         {gxColor::black, gxColor::dkGrey, gxColor::grey, gxColor::ltGrey, gxColor::white, gxColor::red, gxColor::dkRed,
          gxColor::orange, gxColor::yellow, gxColor::green, gxColor::dkGreen, gxColor::cyan, gxColor::blue,
          gxColor::purple, gxColor::magenta, gxColor::pass})
      palette_[stock.index()] = stock.rgbStruct();
  }
  std::copy(map.begin(), map.end(), palette_.begin());
}

gx_CairoScreen::gx_CairoScreen(gxPair<long> const &size, bool vectors)
    : size_(size), layers_{gx_CairoLayer(size, vectors), gx_CairoLayer(size, vectors)}, picture_(size.x(), size.y())
{
}

bool gx_CairoScreen::isLocked() const
{
  return std::find(locks_.begin(), locks_.end(), true) != locks_.end();
}

void gx_CairoScreen::paint(cairo_t *to, bool drags) const
{
  for (gx_CairoLayer const &layer : layers_)
    for (cairo_surface_t *const surface : {layer.drawings(), drags ? layer.seenDrag() : nullptr})
      if (surface) {
        cairo_set_source_surface(to, surface, 0.0, 0.0);
        cairo_paint(to);
      }
}

gxPelBuffer<gxPackedRGB32Pel> const &gx_CairoScreen::picture()
{
  if (isCurrent_ || isLocked())
    return picture_;
  gx_CairoImage const image(size_.x(), size_.y());
  gx_CairoContext const context(cairo_create(image.surface()));
  cairo_set_source_rgb(context.get(), 0.0, 0.0, 0.0);
  cairo_paint(context.get());
  paint(context.get(), true);
  image.flush();
  for (long y = 0; y < size_.y(); ++y) {
    std::uint32_t const *const from = image.row(y);
    gxPackedRGB32Pel *const to = picture_.pointToRow(y);
    for (long x = 0; x < size_.x(); ++x)
      to[x] = gxPackedRGB32Pel(static_cast<unsigned char>(from[x] >> 16), static_cast<unsigned char>(from[x] >> 8),
                               static_cast<unsigned char>(from[x]));
  }
  isCurrent_ = true;
  return picture_;
}
