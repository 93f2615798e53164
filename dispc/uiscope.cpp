#include "dispc/uiscope.h"

#include "dispc/uierror.h"
#include "foundation/numbers.h"

#include <algorithm>
#include <limits>

gxUIScope::gxUIScope() : gxUIScope(gxPair<long>()) {}

gxUIScope::gxUIScope(gxPair<long> const &org) : org_(org), root_(this) {}

gxUIScope::gxUIScope(gxUIScope const &s) : root_(nullptr)
{
  *this = s;
}

gxUIScope &gxUIScope::operator=(gxUIScope const &s)
{
  if (this == &s)
    return *this;
  auto children = s.children_;
  leaveTree();
  org_ = s.org_;
  flags_ = s.flags_;
  changeRect_ = s.changeRect_;
  clientChangedRect_ = s.clientChangedRect_;
  drawPoint_ = s.drawPoint_;
  drawX_ = s.drawX_;
  drawY_ = s.drawY_;
  root_ = s.root_;
  parent_ = s.parent_;
  children_ = children;
  anyChanged_ = s.anyChanged_;
  displayClipRect_ = s.displayClipRect_;
  linked_ = false;
  return *this;
}

gxUIScope::~gxUIScope()
{
  leaveTree();
}

/// Unlinks this scope from the parent that lists it.
void gxUIScope::leaveParent()
{
  if (linked_)
    parent_->children_.remove(this);
  linked_ = false;
}

/// Unlinks this scope upwards and downwards. What is below has no way left to learn when the root goes, so it is
/// without a root from here on.
void gxUIScope::leaveTree()
{
  leaveParent();
  for (auto child = children_.ownBegin(); child != children_.end(); ++child) {
    (*child)->takeRoot(nullptr);
    (*child)->parent_ = nullptr;
    (*child)->linked_ = false;
  }
  children_.clear();
}

void gxUIScope::takeRoot(gxUIScope *root)
{
  root_ = root;
  for (auto child = children_.ownBegin(); child != children_.end(); ++child)
    (*child)->takeRoot(root);
}

void gxUIScope::move(gxUIScope const &parent, gxUIRect const &rect)
{
  // The parent is constant for the caller; its place in the tree is the base class's own affair.
  auto &newParent = const_cast<gxUIScope &>(parent);
  for (gxUIScope const *above = &parent; above; above = above->parent_)
    if (above == this)
      throw gxUIError::BadParams();
  gxPair<long> const offset = rect.ul() - parent.org();
  org_ = gxPair<long>(std::max(0L, (-offset).x()), std::max(0L, (-offset).y()));
  newParent.children_.checkGrowth();
  leaveParent();
  newParent.children_.insert(newParent.children_.end(), this);
  parent_ = &newParent;
  linked_ = true;
  takeRoot(parent.root_);
  moveSurface(parent, gxUIRect(offset, rect.sz()));
  noChange();
}

void gxUIScope::subset(gxUIScope const &parent, gxUIRect const &rect)
{
  move(parent, rect);
  org_ = gxPair<long>(std::max(rect.left(), parent.org().x()), std::max(rect.top(), parent.org().y()));
}

long gxUIScope::xCoord(gxPoint const &p) const
{
  return &p == &drawPoint_ ? drawX_ : gf_narrow(long(gf_nudgedFloor(p.x())) - org_.x());
}

long gxUIScope::yCoord(gxPoint const &p) const
{
  return &p == &drawPoint_ ? drawY_ : gf_narrow(long(gf_nudgedFloor(p.y())) - org_.y());
}

void gxUIScope::drawStart(gxPoint const &p)
{
  if (&p == &drawPoint_)
    return;
  drawPoint_ = p;
  drawX_ = static_cast<std::int32_t>(xCoord(p));
  drawY_ = static_cast<std::int32_t>(yCoord(p));
}

void gxUIScope::moveToRel(long dx, long dy)
{
  gxPair<long> const step(dx, dy);
  gxPair<long> const to = gxPair<long>(drawX_, drawY_) + step;
  drawX_ = static_cast<std::int32_t>(to.x());
  drawY_ = static_cast<std::int32_t>(to.y());
  drawPoint_ = drawPoint_ + gxVector<2>(step);
}

void gxUIScope::change(gxUIRect rect, bool opaqueFill)
{
  if (clientChangeEnable())
    clientChangedRect_ |= rect;
  gxPair<long> const whole = size();
  rect = rect & gxUIRect(gxPair<long>(), whole);
  if (rect.isNull())
    return;
  if (opaqueFill && rect.sz() == whole)
    opaque(true);
  changeRect_ |= rect;
  allChanged(changeRect_.sz() == whole);
  markRoot();
}

void gxUIScope::markRoot()
{
  if (root_)
    root_->anyChanged_ = true;
}

void gxUIScope::allChange()
{
  allChanged(true);
  changeRect_ = isNull() ? gxUIRect::null : gxUIRect(gxPair<long>(), size());
  clientChangedRect_ = gxUIRect::inf;
  markRoot();
}

void gxUIScope::noChange()
{
  allChanged(false);
  changeRect_ = gxUIRect::null;
}

void gxUIScope::clearAnyChanged()
{
  if (root_)
    root_->anyChanged_ = false;
}

void gxUIScope::clientChangeEnable(bool on)
{
  flag(clientChangeBit, on);
  if (on)
    clientChangedRect_ = gxUIRect::null;
}

gxUIRect gxUIScope::clientChangedRect(bool keep)
{
  if (!keep)
    flag(clientChangeBit, false);
  return clientChangedRect_ + org_;
}

gxColor gxUIScope::nearestColor(gxColor const &color, std::vector<gxRGB> const &map)
{
  gxRGB const &c = color.rgbStruct();
  // The square root that a distance would take keeps the order, so the squares decide.
  std::int32_t best = std::numeric_limits<std::int32_t>::max();
  std::size_t index = 0;
  for (std::size_t i = 0; i < map.size(); ++i) {
    int const dr = c.r() - map[i].r();
    int const dg = c.g() - map[i].g();
    int const db = c.b() - map[i].b();
    std::int32_t const d = dr * dr + dg * dg + db * db;
    if (d >= best)
      continue;
    best = d;
    index = i;
    if (d == 0)
      break;
  }
  return gxColor(static_cast<unsigned char>(index));
}

void gxUIScope::lockScreenUpdatesPush(bool) {}
bool gxUIScope::lockScreenUpdatesPop()
{
  return false;
}
bool gxUIScope::screenUpdatesLocked() const
{
  return false;
}
void gxUIScope::updateScreen() {}
void gxUIScope::invalidateScreen(gxUIRect const &) {}
void gxUIScope::optimizeDrawing(bool) {}
void gxUIScope::draw(gxGenShape const &, gxColor const &) {}
void gxUIScope::draw(gxGraphic const &) {}
void gxUIScope::colorMap(std::vector<gxRGB> const &) {}
void gxUIScope::colorMapEx(std::vector<gxRGB> const &) {}
