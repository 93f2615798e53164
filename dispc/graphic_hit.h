#pragma once

#include "dispc/graphic.h"

#include <vector>

class gxGraphicGroup;
class gxGraphicList;

/// A graphic near a point.
struct gxGraphicHit {
  gxPtrHandle_const<gxGraphic> graphic;
  long index = 0;         ///< among the members of the list or group
  double distance = 0.0;  ///< from the point
};

/// What a user who clicks at @p point may mean: the members whose `distToPoint` is at most @p radius, nearest first; of
/// equally near ones the one that is drawn later, and so lies on top, first. Both are in client coordinates; a radius
/// in pels is divided by the zoom of the tablet. Null members, texts, and graphics that cannot tell a distance (empty
/// shapes) are never hit. A negative or non-finite radius hits nothing. A member is asked for its distance only if its
/// bounds come within the radius.
GX_API std::vector<gxGraphicHit> gfGraphicsNear(gxGraphicList const &list, gxVector<2> const &point, double radius);
GX_API std::vector<gxGraphicHit> gfGraphicsNear(gxGraphicGroup const &group, gxVector<2> const &point, double radius);
