#include "backends/pels/pelsurface.h"

#include "backends/pels/detail/pelscreen.h"

gxPelSurface::gxPelSurface(long width, long height)
    : screen_(std::make_shared<gx_PelScreen>(width, height)), imageScope_(screen_, 0), overlayScope_(screen_, 1)
{
}

gxPelSurface::~gxPelSurface() = default;

gxPair<long> gxPelSurface::size() const
{
  return screen_->size();
}

gxPelBuffer_const<gxPackedRGB32Pel> gxPelSurface::picture()
{
  screen_->update();
  return screen_->picture();
}

gxPelBuffer<gxPackedRGB32Pel> gxPelSurface::imagePels() const
{
  return screen_->layer(0).pels();
}

gxPelBuffer<gxPackedRGB32Pel> gxPelSurface::overlayPels() const
{
  return screen_->layer(1).pels();
}

void gxPelSurface::invalidate()
{
  screen_->damageAll();
}
