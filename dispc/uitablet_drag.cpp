#include "dispc/detail/uitablet_layers.h"
#include "dispc/uitablet.h"

// What a tablet hands on to its scopes beside drawing: the drag image, screen locks, change tracking. Nothing of it is
// recorded, and no draw decision is asked.

/// The active scope of a layer, if it has a surface; drags take no notice of a client that measures.
gxUIScope *gxUITablet::activeSurface(Layers layer) const
{
  gf_needSingleLayer(layer);
  gxUIScope *const scope = activeScope_[layer];
  return scope && !scope->isNull() ? scope : nullptr;
}

void gxUITablet::dragStart(Layers layer)
{
  if (gxUIScope *const scope = activeSurface(layer))
    scope->dragStart();
}

void gxUITablet::dragStop(Layers layer)
{
  if (gxUIScope *const scope = activeSurface(layer))
    scope->dragStop();
}

void gxUITablet::dragErase(Layers layer)
{
  if (gxUIScope *const scope = activeSurface(layer))
    scope->dragErase();
}

void gxUITablet::dragAnimate(bool on, Layers layer)
{
  if (gxUIScope *const scope = activeSurface(layer))
    scope->dragAnimate(on);
}

void gxUITablet::lockScreenUpdatesPush(bool lock, Layers layers)
{
  gf_needLayers(layers);
  for (Layers const layer : gf_eachLayer)
    if (shouldUpdate(layer, layers) && activeScope_[layer])
      activeScope_[layer]->lockScreenUpdatesPush(lock);
}

void gxUITablet::lockScreenUpdatesPop(Layers layers)
{
  gf_needLayers(layers);
  for (Layers const layer : gf_eachLayer)
    if (shouldUpdate(layer, layers) && activeScope_[layer])
      activeScope_[layer]->lockScreenUpdatesPop();
}

bool gxUITablet::screenUpdatesLocked(Layers layer) const
{
  gxUIScope const *const scope = activeSurface(layer);
  return scope && scope->screenUpdatesLocked();
}

void gxUITablet::optimizeDrawing(bool on, Layers layer)
{
  gf_needSingleLayer(layer);
  if (activeScope_[layer])
    activeScope_[layer]->optimizeDrawing(on);
}

bool gxUITablet::recordChanges() const
{
  for (gxUIScope const *const scope : activeScope_)
    if (scope && scope->clientChangeEnable())
      return true;
  return false;
}

void gxUITablet::recordChanges(bool on)
{
  for (gxUIScope *const scope : activeScope_)
    if (scope)
      scope->clientChangeEnable(on);
}

void gxUITablet::getChanges(gxUIRect *rects, bool keepOn)
{
  for (Layers const layer : gf_eachLayer)
    rects[layer] = activeScope_[layer] ? activeScope_[layer]->clientChangedRect(keepOn) : gxUIRect::null;
}
