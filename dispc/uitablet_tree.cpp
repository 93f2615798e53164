#include "dispc/detail/uitablet_layers.h"
#include "dispc/uitablet.h"

#include <algorithm>
#include <iterator>
#include <utility>

// The tree of tablets, and the scopes that hang in step with it.

gxUITablet *gxUITablet::firstKid() const
{
  return kids_.empty() ? nullptr : kids_.entries().front();
}

gxUITablet *gxUITablet::lastKid() const
{
  return kids_.empty() ? nullptr : kids_.entries().back();
}

gxUITablet *gxUITablet::nextSib() const
{
  return sibling(true);
}

gxUITablet *gxUITablet::prevSib() const
{
  return sibling(false);
}

gxUITablet *gxUITablet::sibling(bool next) const
{
  if (!linked_)
    return nullptr;
  if (!next)
    return sibPos_ == parent_->kids_.ownBegin() ? nullptr : *std::prev(sibPos_);
  auto const after = std::next(sibPos_);
  return after == parent_->kids_.end() ? nullptr : *after;
}

gxUITablet &gxUITablet::root()
{
  gxUITablet *t = this;
  while (t->parent_)
    t = t->parent_;
  return *t;
}

/// True if this tablet is @p other or lies in its subtree.
bool gxUITablet::isBelow(gxUITablet const &other) const
{
  gxUITablet const *t = this;
  while (t && t != &other)
    t = t->parent_;
  return t != nullptr;
}

void gxUITablet::deleteScope(int layer)
{
  if (!std::exchange(ownsScope_[layer], false))
    return;
  gxUIScope *const scope = std::exchange(currentScope_[layer], nullptr);
  activeScope_[layer] = nullptr;
  int const other = 1 - layer;
  if (scope != currentScope_[other] || !ownsScope_[other])  // one scope may have been given for both layers
    delete scope;
}

/// Makes the scope of a layer a part of the parent's, or none where the parent has none.
void gxUITablet::takeSubScope(int layer, gxUIRect const &rect)
{
  gxUIScope *const above = parent_->currentScope_[layer];
  activeScope_[layer] = currentScope_[layer] = above ? above->newSubScope(rect, false) : nullptr;
  ownsScope_[layer] = above != nullptr;
}

void gxUITablet::parentScopesDeleted(Layers layer)
{
  forEachKid([&](gxUITablet &kid) { kid.parentScopesDeleted(layer); });
  deleteScope(layer);
  activeScope_[layer] = currentScope_[layer] = nullptr;
}

void gxUITablet::parentDeleted()
{
  parent_ = nullptr;
  for (Layers const layer : gf_eachLayer)
    parentScopesDeleted(layer);
}

void gxUITablet::newScope(bool quiet)
{
  auto const fitKids = [this] { forEachKid([](gxUITablet &kid) { kid.newScope(false); }); };
  if (!parent_) {
    fitKids();
    return;
  }
  gxUIRect before[gf_layerCount];
  for (Layers const layer : gf_eachLayer)
    before[layer] = activeScope(layer);
  scopeOrg_ = parent_->scopeOrg_ + scopeRect_.ul();
  for (Layers const layer : gf_eachLayer) {
    gxUIScope *const above = parent_->currentScope_[layer];
    if (!above)
      continue;
    if (currentScope_[layer])
      currentScope_[layer]->move(*above, scopeRect_);
    else
      takeSubScope(layer, scopeRect_);
    activeScope_[layer] = currentScope_[layer];
  }
  fitKids();
  if (!quiet && std::ranges::any_of(gf_eachLayer, [&](Layers l) { return activeScope(l) != before[l]; }))
    clipped_();
}

void gxUITablet::setParent(gxUITablet &newParent, gxUIRect const &rect)
{
  if (newParent.isBelow(*this))
    throw gxUIError::BadParams();
  newParent.kids_.checkGrowth();
  hide();
  gxUITablet *const oldParent = parent_;
  unlink();
  for (int layer = 0; layer < gf_layerCount; ++layer)
    deleteScope(layer);
  parent_ = &newParent;
  for (int layer = 0; layer < gf_layerCount; ++layer)
    takeSubScope(layer, rect);
  sibPos_ = newParent.kids_.insert(newParent.kids_.end(), this);
  linked_ = true;
  newParentTablet(oldParent);
  // Exactly the first kid is taken anew, which makes it the last; the others have their scopes moved below.
  if (gxUITablet *const kid = firstKid())
    kid->setParent(*this, kid->scopeRect_);
  if (scopeRect_ == rect)
    newScope(true);  // the rectangle alone does not tell that the scopes above are others
  else
    scopeRect(rect);
  if (!visible_(true))
    return;
  lockScreenUpdatesPush(true, both);
  redraw(both);
  forEachKid([](gxUITablet &kid) { kid.fullDraw(both); });
  lockScreenUpdatesPop(both);
}

void gxUITablet::setScope(gxUIScope *imageScope, gxUIScope *overlayScope, bool own)
{
  gxUITablet &top = root();
  gxUIScope *const scopes[gf_layerCount] = {imageScope, overlayScope};
  for (Layers const layer : gf_eachLayer)
    dropKidsOfLostScope(top, layer, scopes[layer]);
  for (Layers const layer : gf_eachLayer)
    dropOwnedScope(top, layer, scopes);
  for (Layers const layer : gf_eachLayer)
    top.installScope(layer, scopes[layer], own);
  if (imageScope || overlayScope)
    fitToScopes(top);
}

void gxUITablet::setScope(Layers layer, gxUIScope *scope, bool own)
{
  gf_needSingleLayer(layer);
  gxUITablet &top = root();
  gxUIScope *const scopes[gf_layerCount] = {scope, scope};
  dropKidsOfLostScope(top, layer, scope);
  dropOwnedScope(top, layer, scopes);
  top.installScope(layer, scope, own);
  if (scope)
    fitToScopes(top);
}

/// A scope that the root does not own goes away without a successor: what hangs on it goes first.
void gxUITablet::dropKidsOfLostScope(gxUITablet const &top, Layers layer, gxUIScope const *successor)
{
  if (!successor && !top.ownsScope_[layer])
    forEachKid([&](gxUITablet &kid) { kid.parentScopesDeleted(layer); });
}

/// Deletes the scope that the root owns, after all that hangs on it, unless it is one of those to be installed.
void gxUITablet::dropOwnedScope(gxUITablet &top, Layers layer, gxUIScope *const (&successors)[2])
{
  if (!top.ownsScope_[layer])
    return;
  forEachKid([&](gxUITablet &kid) { kid.parentScopesDeleted(layer); });
  gxUIScope const *const old = top.currentScope_[layer];
  if (old == successors[0] || old == successors[1])
    top.ownsScope_[layer] = false;
  else
    top.deleteScope(layer);
}

void gxUITablet::installScope(Layers layer, gxUIScope *scope, bool own)
{
  activeScope_[layer] = currentScope_[layer] = scope;
  ownsScope_[layer] = own;
}

/// Per axis, the greatest size among the scopes of this tablet, at least 0.
gxPair<long> gxUITablet::scopesSize() const
{
  gxPair<long> size;
  for (gxUIScope const *const scope : currentScope_)
    if (scope)
      size = gxPair<long>(std::max(size.x(), scope->size().x()), std::max(size.y(), scope->size().y()));
  return size;
}

/// Brings the rectangle in line with new scopes at the root.
void gxUITablet::fitToScopes(gxUITablet &top)
{
  gxUIRect const fitting(scopeRect_.ul(), top.scopesSize());
  if (fitting == scopeRect_)
    newScope(true);
  else
    top.scopeRect(fitting);
}

gxUIScope *gxUITablet::scopeAt(Layers layer) const
{
  return gf_isSingleLayer(layer) ? currentScope_[layer] : nullptr;
}

namespace
{

gxUIRect rectOf(gxUIScope const *scope)
{
  return scope ? gxUIRect(scope->org(), scope->size()) : gxUIRect::null;
}

}  // namespace

gxUIRect gxUITablet::activeScope(Layers layer) const
{
  gf_needSingleLayer(layer);
  return rectOf(activeScope_[layer]);
}

gxUIRect gxUITablet::currentScope(Layers layer) const
{
  gf_needSingleLayer(layer);
  return rectOf(currentScope_[layer]);
}

bool gxUITablet::opaque(Layers layer) const
{
  gxUIScope const *const scope = scopeAt(layer);
  return scope && scope->opaque();
}

void gxUITablet::opaque(Layers layer, bool on)
{
  if (gxUIScope *const scope = scopeAt(layer))
    scope->opaque(on);
}

bool gxUITablet::anyChanged(Layers layer) const
{
  gxUIScope const *const scope = scopeAt(layer);
  return scope && scope->anyChanged();
}

void gxUITablet::clearAnyChanged(Layers layer)
{
  if (gxUIScope *const scope = scopeAt(layer))
    scope->clearAnyChanged();
}

bool gxUITablet::modified(Layers layer) const
{
  gxUIScope const *const scope = scopeAt(layer);
  if (!scope)
    return false;
  return scope->modified() ||
         std::any_of(kids_.ownBegin(), kids_.end(), [&](gxUITablet const *kid) { return kid->modified(layer); });
}

void gxUITablet::modified(Layers layer, bool on)
{
  if (gf_isSingleLayer(layer) && activeScope_[layer])
    activeScope_[layer]->modified(on);
}
