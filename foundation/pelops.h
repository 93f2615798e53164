#pragma once

/// @file
/// Operations on whole windows of pels. Each takes T as `unsigned char`, `unsigned short`, gxPackedRGB16Pel or
/// gxPackedRGB32Pel unless it says otherwise, and throws gxPel::UnboundWindow for a buffer without a root. A null
/// window is legal: there is nothing to do.

#include "foundation/pelbuf.h"

#include <vector>

/// Fills the window of @p buffer with @p value.
template <class T>
void gfPelSet(gxPelBuffer<T> const &buffer, T value);

/// The same for pels of 8 bits.
GX_API void gfPelSet_U8(gxPelBuffer<unsigned char> const &buffer, unsigned char value);

/// A new buffer with pels of its own that equal the window of @p source. Offset and client coordinates of each pel are
/// those it has in @p source; its root coordinates begin at 0.
template <class T>
gxPelBuffer<T> gfPelCopy(gxPelBuffer_const<T> const &source);

/// Copies the window of @p source into the window of @p target, which must have the same size; otherwise throws
/// gxPel::BadWindow. The windows may lie on one root, and overlap.
template <class T>
void gfPelCopy(gxPelBuffer_const<T> const &source, gxPelBuffer<T> const &target);

/// A new buffer, as by gfPelCopy(), in which each pel of value v has become `map[v]`; values beyond the end of the map
/// stand for themselves. Both types are `unsigned char`.
template <class From, class To>
gxPelBuffer<To> gfPelMap(gxPelBuffer_const<From> const &source, std::vector<To> const &map);
template <>
GX_API gxPelBuffer<unsigned char> gfPelMap(gxPelBuffer_const<unsigned char> const &source,
                                           std::vector<unsigned char> const &map);
