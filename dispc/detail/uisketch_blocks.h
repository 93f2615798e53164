#pragma once

#include "dispc/detail/uisketch_fields.h"
#include "dispc/detail/uisketch_io.h"
#include "dispc/uisketch_writer.h"

/// @file
/// The blocks that hold a whole object in a record. Each has a fixed size; the fields stand at the offsets told here,
/// and all else is 0. Their descriptions are in dispc/detail/uisketch_fields.h.
///
/// | Block | Fields |
/// |---|---|
/// | ellipse, 48 | 0 center, 16 radii, 32 angle, 40 reversed, 41 degenerate |
/// | ellipse arc, 192 | 0 ellipse, 176 start angle, 184 span |
/// | annulus section, 552 | 0 inner ellipse, 48 its phase, 176 outer ellipse, 224 its phase, 352 start, 360 end, 368
/// forward, 369 and 370 flags | | general rectangle, 152 | 0 center, 16 matrix a b c d, 48 determinant, 56 rounding |
/// | general annulus, 360 | 0 inner and 96 outer rectangle, 72 bytes of each as above |
/// | rectangle, 88 | 16 origin, 32 size |
/// | affine rectangle, 232 | 56 corner Po, 72 corner Px, 88 corner Py |

/// Writes a value by its description.
template <class T>
void gf_writeFields(gx_StreamWriter &to, T const &value)
{
  gx_PayloadWriter io(to.at());
  gf_describe(io, value);
  to = gx_StreamWriter(io.at());
}

template <class Shape>
void gf_writeBlock(gx_StreamWriter &to, Shape const &shape)
{
  static_assert(gf_blockSize<Shape> > 0);
  gf_writeFields(to, shape);
}

/// A rectangle has a block beside its short form.
inline void gf_writeBlock(gx_StreamWriter &to, gxRect const &rect)
{
  gx_PayloadWriter io(to.at());
  gf_describeBlock(io, rect);
  to = gx_StreamWriter(io.at());
}
