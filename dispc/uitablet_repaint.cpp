#include "dispc/detail/uitablet_layers.h"
#include "dispc/uitablet.h"

#include <memory>
#include <utility>

// Showing and hiding, repainting, and the repair of what is stacked above a drawing. A hook that runs on the way may
// install other scopes, so a scope is asked for again after each.

bool gxUITablet::visible_(bool show)
{
  if (!show)
    return hiddenCount_++ == 0;
  return hiddenCount_ != 0 && --hiddenCount_ == 0;
}

bool gxUITablet::visible(bool show)
{
  return show ? this->show() : hide();
}

/// One more reason to hide. What was visible gives its area and its recording away.
bool gxUITablet::hide()
{
  if (!visible_(false))
    return false;
  erase(both);
  return true;
}

/// One reason less to hide. What becomes visible is painted, kids and all.
bool gxUITablet::show()
{
  if (!visible_(true))
    return false;
  fullDraw(both);
  return true;
}

void gxUITablet::interpolation(InterpolationModes mode)
{
  if (mode == interpolation_)
    return;
  interpolation_ = mode;
  fullDraw(both);
}

gxUITablet::Layers gxUITablet::updateLayers(Layers layers)
{
  return std::exchange(updateLayers_, layers);
}

/// A drawing on this tablet that is the latest of all.
void gxUITablet::stampDrawn()
{
  drawStamp_ = ++timeStamp_;
}

void gxUITablet::stampRedrawn()
{
  if (!updating_ && timeStamp_ != redrawStamp_)
    redrawStamp_ = ++timeStamp_;
}

void gxUITablet::redraw(Layers layer)
{
  if (!visible() || !drawOn_)
    return;
  gf_needLayers(layer);
  recordOn_.push(false);
  lockScreenUpdatesPush(true, layer);
  Layers const before = updateLayers(layer);
  redraw_();
  updateLayers(before);
  lockScreenUpdatesPop(layer);
  recordOn_.pop();
  stampRedrawn();
}

void gxUITablet::fullDraw(Layers layer)
{
  gf_needLayers(layer);
  lockScreenUpdatesPush(true, layer);
  redraw(layer);
  forEachKid([&](gxUITablet &kid) { kid.fullDraw(layer); });
  lockScreenUpdatesPop(layer);
}

bool gxUITablet::canDraw(Layers layer) const
{
  if (!visible() || !drawOn_ || layer < 0)
    return false;
  if (layer == overlay ? !drawOnOverlay_ : layer >= gf_layerCount)
    return false;
  return hasSurface(layer);
}

/// True if the layer has a scope that takes drawing: one with a surface, or one by which a client measures.
bool gxUITablet::hasSurface(Layers layer) const
{
  gxUIScope const *const scope = activeScope_[layer];
  return scope && (!scope->isNull() || scope->clientChangeEnable());
}

void gxUITablet::stampDrawnIfOther()
{
  if (!updating_ && timeStamp_ != drawStamp_)
    stampDrawn();
}

bool gxUITablet::okToDrawVisible(Layers layer)
{
  if (!canDraw(layer))
    return false;
  stampDrawnIfOther();
  return true;
}

void gxUITablet::update(gxUIRect const &rect, Layers layer, bool keepChange)
{
  gf_needSingleLayer(layer);
  if (!currentScope_[layer])
    return;
  lockScreenUpdatesPush(true, layer);
  {
    // However the repaint ends, the clipping scope goes and drawing returns to the lasting one; inside another pass,
    // to that one's scope.
    struct Pass {
      gxUITablet &tablet;
      Layers const layer;
      std::unique_ptr<gxUIScope> const clipping;
      bool const nested = tablet.updating_;
      gxUIScope *const outer = tablet.activeScope_[layer];
      ~Pass()
      {
        tablet.activeScope_[layer] = nested ? outer : tablet.currentScope_[layer];
        tablet.updating_ = nested;
      }
    };
    gxUIRect const local = rect - scopeOrg_;
    Pass const pass{*this, layer, std::unique_ptr<gxUIScope>(currentScope_[layer]->newSubScope(local, true))};
    updating_ = true;
    gxUIScope *const clipping = activeScope_[layer] = pass.clipping.get();
    if (canDraw(layer)) {
      if (keepChange) {
        redraw(layer);
        if (gxUIScope *const lasting = currentScope_[layer])
          lasting->change(clipping->changeRect() - lasting->org(), clipping->opaque());
        stampDrawn();
      } else {
        clipping->allChange();
        redraw(layer);
        gxUIScope *const lasting = currentScope_[layer];
        if (lasting && local.within(lasting->changeRect()))
          lasting->noChange();
        forEachKid([&](gxUITablet &kid) { kid.update(rect, layer, false); });
      }
    }
  }
  lockScreenUpdatesPop(layer);
}

void gxUITablet::update(Layers layer)
{
  gf_needSingleLayer(layer);
  if (!currentScope_[layer] || !visible())
    return;
  lockScreenUpdatesPush(true, layer);
  if (currentScope_[layer]->someChanged())
    repairAbove(layer);
  forEachKid([&](gxUITablet &kid) { kid.update(layer); });
  lockScreenUpdatesPop(layer);
}

/// Repaints, in the pels that changed here, whatever is stacked above: the kids, the later siblings, and those of each
/// ancestor; of them only those whose last repaint is not newer than the drawing, or than the repair before.
void gxUITablet::repairAbove(Layers layer)
{
  std::uint32_t stamp = drawStamp_;
  gxUIRect const changed = currentScope_[layer]->changeRect() + scopeOrg_;
  forEachKid([&](gxUITablet &kid) { repairIfOlder(kid, changed, layer, stamp); });
  for (gxUITablet *t = this; t->parent_; t = t->parent_)
    for (gxUITablet *s = t->nextSib(); s; s = s->nextSib())
      repairIfOlder(*s, changed, layer, stamp);
  if (currentScope_[layer])
    currentScope_[layer]->noChange();
}

void gxUITablet::repairIfOlder(gxUITablet &above, gxUIRect const &rect, Layers layer, std::uint32_t &stamp)
{
  if (stamp < above.redrawStamp_)
    return;
  above.update(rect, layer, false);
  stamp = timeStamp_;
}

void gxUITablet::erase(gxUIRect const &rect, Layers layers)
{
  lockScreenUpdatesPush(true, both);
  ++hiddenCount_;  // this tablet must not paint itself meanwhile
  for (Layers const layer : gf_eachLayer) {
    if (!shouldUpdate(layer, layers) || !modified(layer))
      continue;
    gxUITablet *behind = parent_;
    while (behind && !behind->opaque(layer))
      behind = behind->parent_;
    if (behind)
      behind->update(rect + scopeOrg_, layer, true);
    // With the origin in the parent, on purpose: the whole of a tablet is erased from (0, 0), so that the flag of one
    // that lies elsewhere stays set.
    if (rect == scopeRect_ && currentScope_[layer])
      currentScope_[layer]->modified(false);
  }
  visible_(true);
  lockScreenUpdatesPop(both);
}

void gxUITablet::erase(Layers layers)
{
  erase(gxUIRect(gxPair<long>(), scopeRect_.sz()), layers);
  if (recordOn_)
    sketch_.erase();
}

void gxUITablet::front()
{
  gxUITablet *covered = nextSib();
  if (!covered)
    return;
  auto &siblings = parent_->kids_;
  siblings.moveTo(siblings.end(), sibPos_);
  for (; covered && covered != this; covered = covered->nextSib()) {
    gxUIRect const shared = covered->absRect() & absRect();
    if (!covered->visible() || shared.isNull())
      continue;
    for (Layers const layer : gf_eachLayer) {
      if (!currentScope_[layer])
        continue;
      update(shared, layer, true);
      if (gxUIScope *const scope = currentScope_[layer])
        scope->change(shared - (scopeOrg_ + scope->org()), false);
      stampDrawn();
    }
    if (shared == absRect())
      return;
  }
}

void gxUITablet::back()
{
  if (!prevSib())
    return;
  auto &siblings = parent_->kids_;
  siblings.moveTo(siblings.ownBegin(), sibPos_);
  for (gxUIScope *const scope : currentScope_)
    if (scope)
      scope->allChange();
  stampDrawn();
}
