#include "backends/cairo/cairoscope.h"

#include "backends/cairo/detail/cairoscreen.h"

gxCairoScope::gxCairoScope() = default;

gxCairoScope::gxCairoScope(std::shared_ptr<gx_CairoScreen> screen, int layer)
    : screen_(std::move(screen)), layer_(layer)
{
  size_ = screen_->size();
  if (size_.x() == 0 || size_.y() == 0)
    size_ = {};
}

gxCairoScope::~gxCairoScope() = default;

void gxCairoScope::moveSurface(gxUIScope const &parent, gxUIRect const &rectInParent)
{
  rectInParent_ = rectInParent;
  if (auto const *const above = dynamic_cast<gxCairoScope const *>(&parent)) {
    attach(*above);
  } else {
    screen_.reset();
    size_ = {};
  }
}

/// Takes the place inside the parent that the rectangle tells, and carries the scopes below along.
void gxCairoScope::attach(gxCairoScope const &parent)
{
  gxUIRect const seen = rectInParent_ & gxUIRect(gxPair<long>(), parent.size_);
  screen_ = parent.screen_;
  layer_ = parent.layer_;
  origin_ = parent.origin_ + seen.ul();
  size_ = seen.sz();
  for (gxUIScope *const child : children())
    if (auto *const below = dynamic_cast<gxCairoScope *>(child))
      below->attach(*this);
}

gxUIScope *gxCairoScope::newSubScope(gxUIRect const &rect, bool temporary)
{
  std::unique_ptr<gxCairoScope> scope(new gxCairoScope);
  scope->isTemporary_ = temporary;
  if (temporary) {
    scope->subset(*this, rect);
    scope->setDisplayClipRect(displayClipRect());
  } else {
    scope->move(*this, rect);
  }
  return scope.release();
}

void gxCairoScope::dragStart()
{
  if (isNull())
    return;
  screen_->layer(layer_).dragStart();
  screen_->changed();
}

void gxCairoScope::dragStop()
{
  if (screen_)
    screen_->layer(layer_).dragStop();
}

void gxCairoScope::dragErase()
{
  if (!screen_)
    return;
  screen_->layer(layer_).dragErase();
  screen_->changed();
}

void gxCairoScope::dragAnimate(bool on)
{
  if (!screen_)
    return;
  screen_->layer(layer_).dragShow(on);
  screen_->changed();
}

void gxCairoScope::lockScreenUpdatesPush(bool lock)
{
  if (screen_)
    screen_->lock(lock);
}

bool gxCairoScope::lockScreenUpdatesPop()
{
  if (screen_)
    screen_->unlock();
  return screenUpdatesLocked();
}

bool gxCairoScope::screenUpdatesLocked() const
{
  return screen_ && screen_->isLocked();
}

void gxCairoScope::colorMap(std::vector<gxRGB> const &map)
{
  if (screen_)
    screen_->layer(layer_).setPalette(map, true);
}

void gxCairoScope::colorMapEx(std::vector<gxRGB> const &map)
{
  if (screen_)
    screen_->layer(layer_).setPalette(map, false);
}
