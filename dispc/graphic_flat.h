#pragma once

#include "dispc/tabletbase.h"
#include "foundation/export.h"
#include "foundation/flatlist.h"

class gxGraphicList;
class gxUITablet;

// Flat drawing lists to graphics, to tablets, and back.

/// Appends a graphic for each record: see gxr_list for the records; a point becomes a gxGraphicPointIcon, circle and
/// ellipse a gxEllipse2. Texts take the default font and no offset. Does nothing for a count below 1. Throws
/// gxDrawListError::BadRecord for a damaged list, gxShapesError for the numbers of no shape; the list is then as it
/// was.
GX_API void gfGraphicListAppend(gxGraphicList &list, gxr_list const *flat);

/// Draws each record as its graphic would be drawn. Throws likewise; what stands before the bad record has been drawn.
GX_API void gfUITabletDraw(gxUITablet &tablet, gxr_list const *flat, gx_UITabletBase::Layers layer);

/// Appends a record for each graphic that a flat list can hold: point icons, line segments, lines, rectangles with or
/// without rounding, affine rectangles, polylines, sets of line segments and texts. Others, groups included, are passed
/// over. Of the properties the color is kept, of a general rectangle's shear nothing, of a text its place and
/// alignment. Throws gxBadPointer for a null handle, gxDrawListError::NoRoom; the flat list is then as it was.
GX_API void gfGraphicListAppend(gxr_list *flat, gxGraphicList const &list);
