#include "dispc/detail/uitablet_layers.h"
#include "dispc/uitablet.h"

#include <new>
#include <utility>

// Construction, copying and destruction of tablets, and the hooks of derived classes.

constinit std::uint32_t gxUITablet::timeStamp_ = 1;
constinit gxPoint const gxUITablet::drawPointArg_(1.234567e+89, 9.876543e+21);

namespace
{
/// The place of the scratch pad, which is made by the first of the sources that ask for it and never unmade: clients
/// may use it in static initialisers and destructors in whatever order their sources are linked.
union ScratchPad {
  constexpr ScratchPad() : none() {}
  ~ScratchPad() {}
  char none;
  gxUITablet tablet;
};
constinit ScratchPad scratchPadPlace;
constinit bool scratchPadMade = false;
}  // namespace

constinit gxUITablet &gxUITablet::scratchPad = scratchPadPlace.tablet;

gx_ScratchPadInit::gx_ScratchPadInit()
{
  if (!std::exchange(scratchPadMade, true))
    new (&scratchPadPlace.tablet) gxUITablet;
}

gxUITablet::gxUITablet() : recordOn_(true) {}

gxUITablet::gxUITablet(gxUIScope *imageScope, gxUIScope *overlayScope)
    : activeScope_{imageScope, overlayScope},
      currentScope_{imageScope, overlayScope},
      drawOn_(true),
      drawOnOverlay_(true)
{
  scopeRect_ = gxUIRect(gxPair<long>(), scopesSize());
}

gxUITablet::gxUITablet(gxUITablet &parent, gxUIRect const &rect) : drawOn_(true), drawOnOverlay_(true), parent_(&parent)
{
  try {
    for (int layer = 0; layer < gf_layerCount; ++layer)
      takeSubScope(layer, rect);
    sibPos_ = parent.kids_.insert(parent.kids_.end(), this);
    linked_ = true;
    scopeRect(rect);
  } catch (...) {
    unlink();
    for (int layer = 0; layer < gf_layerCount; ++layer)
      deleteScope(layer);
    throw;
  }
}

gxUITablet::gxUITablet(gxUITablet const &t)
{
  *this = t;
}

gxUITablet &gxUITablet::operator=(gxUITablet const &t)
{
  if (this == &t)
    return *this;
  gx_LinkList<gxUITablet> kids = t.kids_;
  gxUITablet *const parent = t.parent_ == this ? nullptr : t.parent_;  // a tablet is not its own parent
  unlink();
  unlinkKids();
  for (int layer = 0; layer < gf_layerCount; ++layer) {
    activeScope_[layer] = t.activeScope_[layer];
    currentScope_[layer] = t.currentScope_[layer];
    ownsScope_[layer] = t.ownsScope_[layer];
    clipRect_[layer] = t.clipRect_[layer];
  }
  baseMap_ = t.baseMap_;
  scaleMode_ = t.scaleMode_;
  scaledMap_ = t.scaledMap_;
  scaleExact_ = t.scaleExact_;
  scopeRect_ = t.scopeRect_;
  scopeOrg_ = t.scopeOrg_;
  dragDel_ = t.dragDel_;
  drawOn_ = t.drawOn_;
  recordOn_ = t.recordOn_;
  drawOnOverlay_ = t.drawOnOverlay_;
  updateLayers_ = t.updateLayers_;
  interpolation_ = t.interpolation_;
  sketch_ = t.sketch_;
  hiddenCount_ = t.hiddenCount_;
  updating_ = t.updating_;
  drawStamp_ = t.drawStamp_;
  redrawStamp_ = t.redrawStamp_;
  parent_ = parent;
  kids_ = kids;
  kids_.remove(this);
  sibPos_ = t.sibPos_;
  linked_ = false;
  return *this;
}

gxUITablet::~gxUITablet()
{
  hide();
  unlink();
  unlinkKids();
  for (int layer = 0; layer < gf_layerCount; ++layer)
    deleteScope(layer);
}

/// Leaves the parent's list, if this tablet is in it.
void gxUITablet::unlink()
{
  if (linked_)
    parent_->kids_.erase(sibPos_);
  linked_ = false;
}

/// Makes the kids roots without scopes.
void gxUITablet::unlinkKids()
{
  forEachKid([](gxUITablet &kid) {
    kid.linked_ = false;
    kid.parentDeleted();
  });
  kids_.clear();
}

void gxUITablet::redraw_() {}
void gxUITablet::resize_() {}
void gxUITablet::move_() {}
void gxUITablet::clipped_() {}
void gxUITablet::newParentTablet(gxUITablet *) {}
void gxUITablet::parentMapChanged() {}
