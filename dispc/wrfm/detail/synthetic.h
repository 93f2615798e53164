#pragma once

#include "dispc/wrfm/arc.h"
#include "foundation/pelbuf.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

// The primitives of synthetic images on plain points, for chords: without a handle of the buffer for each, and without
// segments that are made to be taken apart. The buffer is bound.

void gf_drawSyntheticLine(gxPelBuffer<unsigned char> const &buffer, gxVector<2> const &p1, gxVector<2> const &p2,
                          gxXform<2> const &xform, unsigned char colour, bool smooth);

/// Of an arc so small that a chord has no length, this chord is left out.
void gf_drawSyntheticArc(gxPelBuffer<unsigned char> const &buffer, gx2SegmentArc const &arc, gxXform<2> const &xform,
                         unsigned char colour, bool smooth);

void gf_markSyntheticExtents(gxPelBuffer<unsigned char> const &buffer, gxVector<2> const &p1, gxVector<2> const &p2,
                             gxXform<2> const &xform, unsigned char colour);
