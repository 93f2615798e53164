#include "backends/pels/pelscope.h"

#include "backends/pels/detail/pelpainter.h"

#include <algorithm>

gxPelScope::gxPelScope() = default;

gxPelScope::gxPelScope(std::shared_ptr<gx_PelScreen> screen, int layer) : screen_(std::move(screen)), layer_(layer)
{
  size_ = screen_->size();
  if (size_.x() == 0 || size_.y() == 0)
    size_ = {};
}

gxPelScope::~gxPelScope() = default;

gx_PelLayer &gxPelScope::layer() const
{
  return screen_->layer(layer_);
}

void gxPelScope::moveSurface(gxUIScope const &parent, gxUIRect const &rectInParent)
{
  rectInParent_ = rectInParent;
  if (auto const *const pels = dynamic_cast<gxPelScope const *>(&parent)) {
    attach(*pels);
  } else {
    screen_.reset();
    size_ = {};
  }
}

/// Takes the place inside the parent that the rectangle tells, and carries the scopes below along.
void gxPelScope::attach(gxPelScope const &parent)
{
  gxUIRect const seen = rectInParent_ & gxUIRect(gxPair<long>(), parent.size_);
  screen_ = parent.screen_;
  layer_ = parent.layer_;
  origin_ = parent.origin_ + seen.ul();
  size_ = seen.sz();
  for (gxUIScope *const child : children())
    if (auto *const pels = dynamic_cast<gxPelScope *>(child))
      pels->attach(*this);
}

/// What is drawn through a temporary part stays on the scope that it is a part of.
void gxPelScope::markModified()
{
  modified(true);
  if (isTemporary_ && parent())
    parent()->modified(true);
}

gxUIScope *gxPelScope::newSubScope(gxUIRect const &rect, bool temporary)
{
  std::unique_ptr<gxPelScope> scope(new gxPelScope);
  if (temporary) {
    scope->isTemporary_ = true;
    scope->subset(*this, rect);
    scope->setDisplayClipRect(displayClipRect());
  } else {
    scope->move(*this, rect);
  }
  return scope.release();
}

void gxPelScope::dragStart()
{
  if (!isNull())
    layer().dragStart();
  changeLook();
}

void gxPelScope::dragStop()
{
  if (screen_)
    layer().dragStop();
}

void gxPelScope::dragErase()
{
  if (screen_)
    layer().dragErase();
  changeLook();
}

void gxPelScope::dragAnimate(bool on)
{
  if (screen_)
    layer().dragShow(on);
  changeLook();
}

void gxPelScope::changeLook()
{
  if (screen_)
    screen_->damageAll();
}

void gxPelScope::lockScreenUpdatesPush(bool lock)
{
  if (screen_)
    layer().lock(lock);
}

bool gxPelScope::lockScreenUpdatesPop()
{
  return screen_ && layer().unlock();
}

bool gxPelScope::screenUpdatesLocked() const
{
  return screen_ && layer().isLocked();
}

void gxPelScope::updateScreen()
{
  if (screen_)
    screen_->update();
}

void gxPelScope::invalidateScreen(gxUIRect const &rect)
{
  gxUIRect const seen = (rect - org()) & gxUIRect(gxPair<long>(), size_);
  if (!screen_ || seen.isNull())
    return;
  screen_->damage(gf_pelBox(seen + origin_));
}

void gxPelScope::colorMap(std::vector<gxRGB> const &map)
{
  if (!screen_)
    return;
  gx_PelLayer::checkPalette(map);
  layer().resetPalette();
  layer().setPalette(map);
}

void gxPelScope::colorMapEx(std::vector<gxRGB> const &map)
{
  if (screen_)
    layer().setPalette(map);
}
