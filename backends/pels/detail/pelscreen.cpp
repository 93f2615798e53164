#include "backends/pels/detail/pelscreen.h"

#include "dispc/uierror.h"
#include "foundation/pelops.h"

#include <algorithm>

namespace
{

void clear(gx_PelLayer::Pels const &pels)
{
  for (long y = 0; y < pels.height(); ++y)
    std::fill_n(pels.pointToRow(y), pels.width(), gxPackedRGB32Pel());
}

}  // namespace

gx_PelLayer::gx_PelLayer(long width, long height) : pels_(width, height)
{
  resetPalette();
}

void gx_PelLayer::dragStart()
{
  if (drag_.isBound())
    clear(drag_);
  else
    drag_ = Pels(pels_.width(), pels_.height());
  dragging_ = true;
  dragShown_ = true;
}

void gx_PelLayer::dragErase()
{
  if (drag_.isBound())
    clear(drag_);
}

void gx_PelLayer::lock(bool on)
{
  locks_.push_back(on);
  locked_ += on;
}

bool gx_PelLayer::unlock()
{
  if (!locks_.empty()) {
    locked_ -= locks_.back();
    locks_.pop_back();
  }
  return isLocked();
}

void gx_PelLayer::checkPalette(std::vector<gxRGB> const &map)
{
  if (map.size() > 256)
    throw gxUIError::InvalidColorMapSize();
}

void gx_PelLayer::setPalette(std::vector<gxRGB> const &map)
{
  checkPalette(map);
  std::copy(map.begin(), map.end(), palette_.begin());
}

void gx_PelLayer::resetPalette()
{
  for (std::size_t i = 0; i < palette_.size(); ++i) {
    auto const grey = static_cast<unsigned char>(i);
    palette_[i] = gxRGB(grey, grey, grey);
  }
  for (gxColor const &stock :
       {gxColor::blackColor(), gxColor::dkGreyColor(), gxColor::greyColor(), gxColor::ltGreyColor(),
        gxColor::whiteColor(), gxColor::redColor(), gxColor::dkRedColor(), gxColor::orangeColor(),
        gxColor::yellowColor(), gxColor::greenColor(), gxColor::dkGreenColor(), gxColor::cyanColor(),
        gxColor::blueColor(), gxColor::purpleColor(), gxColor::magentaColor(), gxColor::passColor()})
    palette_[stock.index()] = stock.rgbStruct();
}

gx_PelScreen::gx_PelScreen(long width, long height)
    : layers_{gx_PelLayer(width, height), gx_PelLayer(width, height)}, picture_(width, height)
{
}

gx_PelBox gx_PelScreen::whole() const
{
  return {0, 0, static_cast<std::int32_t>(size().x()), static_cast<std::int32_t>(size().y())};
}

void gx_PelScreen::damage(gx_PelBox const &box)
{
  gx_PelBox const seen = box & whole();
  if (seen.isEmpty())
    return;
  if (damaged_.isEmpty()) {
    damaged_ = seen;
    return;
  }
  damaged_ = {std::min(damaged_.left, seen.left), std::min(damaged_.top, seen.top),
              std::max(damaged_.right, seen.right), std::max(damaged_.bottom, seen.bottom)};
}

void gx_PelScreen::damageAll()
{
  damaged_ = whole();
}

void gx_PelScreen::update()
{
  if (layers_[0].isLocked() || layers_[1].isLocked())
    return;
  for (std::int32_t y = damaged_.top; y < damaged_.bottom; ++y)
    composeRow(y, damaged_.left, damaged_.right);
  damaged_ = {};
}

void gx_PelScreen::composeRow(std::int32_t y, std::int32_t left, std::int32_t right)
{
  gxPackedRGB32Pel *const to = picture_.pointToRow(y);
  auto const cover = [&](gx_PelLayer::Pels const &above) {
    gxPackedRGB32Pel const *const from = above.pointToRow(y);
    for (std::int32_t x = left; x < right; ++x)
      to[x] = from[x].spare() ? from[x] : to[x];
  };
  gxPackedRGB32Pel const *const image = layers_[0].pels().pointToRow(y);
  std::copy(image + left, image + right, to + left);
  if (layers_[0].dragIsSeen())
    cover(layers_[0].dragImage());
  cover(layers_[1].pels());
  if (layers_[1].dragIsSeen())
    cover(layers_[1].dragImage());
  for (std::int32_t x = left; x < right; ++x)
    to[x] = gxPackedRGB32Pel(to[x].red(), to[x].green(), to[x].blue());
}
