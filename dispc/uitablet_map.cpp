#include "dispc/detail/uitablet_layers.h"
#include "dispc/uitablet.h"
#include "foundation/numbers.h"

#include <cmath>

// Maps, coordinates and the rectangle of a tablet.

namespace
{

/// The factors as they enter the map. A reduction may be given by whole divisors, if both are above 1.
gxMatrix<2> scaling(gxUITablet::ScaleModes mode, gxPair<double> const &f)
{
  bool const divisors = mode == gxUITablet::sampleMode && f.x() > 1.0 && f.y() > 1.0;
  return divisors ? gxMatrix<2>(1.0 / f.x(), 0.0, 0.0, 1.0 / f.y()) : gxMatrix<2>(f.x(), 0.0, 0.0, f.y());
}

long wholeFactor(double f)
{
  return gf_truncate(f >= 1.0 ? f : 1.0 / f);
}

}  // namespace

void gxUITablet::setMap()
{
  scaledMap_ = scaleMode_ == noScale ? baseMap_ : gxXform<2>(scaling(scaleMode_, scaleExact_), {}) * baseMap_;
  dragDel_ = gxPair<long>();
}

void gxUITablet::newMap()
{
  setMap();
  forEachKid([](gxUITablet &kid) { kid.parentMapChanged(); });
  redraw(both);
}

gxUITablet &gxUITablet::baseMap(gxXform<2> const &map)
{
  baseMap_ = map;
  newMap();
  return *this;
}

gxUITablet &gxUITablet::scaleMode(ScaleModes mode)
{
  scaleMode_ = mode;
  newMap();
  return *this;
}

gxPair<long> gxUITablet::scale() const
{
  return {wholeFactor(scaleExact_.x()), wholeFactor(scaleExact_.y())};
}

gxUITablet &gxUITablet::scale(gxPair<long> factors)
{
  scaleExact_ = gxPair<double>(factors);
  newMap();
  return *this;
}

gxUITablet &gxUITablet::scaleExact(gxPair<double> factors)
{
  constexpr double unscaled = 1e-6;  // factors this close to 1 count as none
  scaleExact_ = factors;
  if (std::abs(1.0 - factors.x()) <= unscaled)
    scaleMode_ = noScale;
  else
    scaleMode_ = factors.x() > 1.0 ? expandMode : sampleMode;
  newMap();
  return *this;
}

void gxUITablet::dragDel(gxPair<long> const &pan)
{
  gxPair<long> const kept = pan;  // pan may be this tablet's own, which setMap() clears
  setMap();
  scaledMap_.translation(scaledMap_.translation() + gxVector<2>(kept));
  dragDel_ = kept;
}

gxPair<long> gxUITablet::scopeCoords(gxPoint const &p) const
{
  gxVector<2> const pel = scaledMap_.mapPoint(p);
  return {gf_nudgedFloor(pel.x()), gf_nudgedFloor(pel.y())};
}

gxPair<long> gxUITablet::screenCoords(gxPoint const &p) const
{
  return scopeCoords(p) + scopeOrg_;
}

gxPoint gxUITablet::tabletCoords(gxPair<long> const &pel) const
{
  return scaledMap_.inverse().mapPoint(gxVector<2>(pel));
}

gxPoint const &gxUITablet::mapPoint(gxPoint const &p, Layers layer, gxPoint &tmp) const
{
  gf_needSingleLayer(layer);
  if (activeScope_[layer] && (&p == &drawPointArg_ || p == drawPointArg_))
    return activeScope_[layer]->drawPoint();
  tmp = scaledMap_.mapPoint(p);
  return tmp;
}

gxUITablet &gxUITablet::scopeRect(gxUIRect const &rect)
{
  if (rect == scopeRect_)
    return *this;
  gxUIRect const r = rect;
  bool const moved = r.ul() != scopeRect_.ul();
  bool const resized = r.sz() != scopeRect_.sz();
  bool const grown = (r & scopeRect_).sz() == scopeRect_.sz();
  if (!grown)
    hide();
  scopeRect_ = r;
  newScope(true);
  if (moved)
    move_();
  if (resized)
    resize_();
  if (grown)
    redraw(both);
  else
    show();
  return *this;
}
