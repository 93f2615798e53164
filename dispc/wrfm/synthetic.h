#pragma once

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/lineseg.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"
#include "foundation/xform.h"

class gx2XformBase;
class gxGenPoly;

/// @file
/// Synthetic images: outlines painted into pels of 8 bits, without a surface, to be compared with what a camera sees.
/// Which pel is touched and which value it gets is part of the interface.
///
/// A point (x, y) in image coordinates lies in pel (floor x, floor y), in root coordinates of the buffer; both
/// roundings, the floor and the ceiling, forgive a relative error of 1e-11 (gf_nudgedFloor(), gf_nudgedCeil()). All
/// operations paint the caller's pels through the handle that they are given. They throw gxPel::UnboundWindow for a
/// buffer without a root, before anything else, and keep what they have painted when they throw later. Coordinates that
/// are not finite paint nothing.

/// Paints a segment, mapped by @p xform into image coordinates.
///
/// It is cut at the window less 2 pels on each side; nothing is painted outside, or in a window that is smaller.
/// - Plain: the pels of Bresenham's run from the first end to the second (J. Bresenham, IBM Systems Journal 4, 1965)
///   take the colour, but for the last one, so that a chain of segments writes each joint once. Where both steps are
///   equally good the run steps diagonally.
/// - @p smooth: the segment is an edge whose two sides have been painted. Each pel that it passes through is blended
///   anew from the pels on either side (above and below it, or left and right of it for a steep segment), by the part
///   of its area that the edge cuts off. The colour has no meaning. An edge along a boundary of pels changes nothing.
///
/// @param colour the value, taken as unsigned
/// Throws gxShapesError::DegenerateShape for a segment of no length, as given or as cut; gxMathError::Singular for a
/// transform without an inverse; gxPel::BadCoord where an edge touches the last row of the window that it may read.
GX_API void drawLinePelBuf(gxPelBuffer<unsigned char> buffer, gx2SegmentLine const &line, gxXform<2> const &xform,
                           signed char colour, signed char smooth);

/// Paints an arc as a chain of chords, by drawLinePelBuf() from its end to its start, at most 5 degrees each and within
/// 0.05 pels of the arc (for radii up to 1e10 pels). An arc that has no end within the window grown by a pel, nor
/// crosses its sides, paints nothing: not even a circle within it whose ends lie outside.
/// @param minX, maxX, minY, maxY each may be null; if the arc is painted plainly, the running extents take in the ends
///        of its chords but the start of the arc
/// Throws as drawLinePelBuf() does, and gxShapesError::DegenerateShape for chords of no length.
GX_API void drawArcPelBuf(gxPelBuffer<unsigned char> buffer, gx2SegmentArc const &arc, gxXform<2> const &xform,
                          signed char colour, signed char smooth, double *minX, double *maxX, double *minY,
                          double *maxY);

/// Marks the row extents of an area that is to be filled: on each row whose centre the segment crosses, the pel where
/// it does so takes the colour. A segment that crosses the centre of one row only marks the outermost pels on that row
/// whose centres lie between its ends. Throws gxShapesError::DegenerateShape for a segment of no length,
/// gxPel::BadCoord at a mark outside of the window.
GX_API void drawHorizontalExtentsPelBuf(gxPelBuffer<unsigned char> buffer, gx2SegmentLine const &line,
                                        gxXform<2> const &xform, signed char colour);
/// The same for an arc, by chords of at most 5 degrees, whatever its radius.
/// @param minX, maxX, minY, maxY as in drawArcPelBuf()
GX_API void drawHorizontalExtentsPelBuf(gxPelBuffer<unsigned char> buffer, gx2SegmentArc const &arc,
                                        gxXform<2> const &xform, signed char colour, double *minX, double *maxX,
                                        double *minY, double *maxY);

/// Paints the inside of a closed polygon with smoothed edges: see gxSMDGDPoly::drawSynthetic(), whose errors this has.
/// Throws gxShapesError::BadGeom for an open polygon, gxBadPointer for a null handle.
GX_API void gfDrawSynthetic(gxGenPoly const &poly, gxXform<2> const &xform, gxPelBuffer<unsigned char> const &image,
                            unsigned char colour);
GX_API void gfDrawSynthetic(gxGenPoly const &poly, gxPtrHandle_const<gx2XformBase> const &xform,
                            gxPelBuffer<unsigned char> const &image, unsigned char colour);

/// Copies @p height rows of @p width bytes, the rows @p srcStride and @p dstStride bytes apart. Blocks that overlap are
/// copied row by row, each as a whole. Nothing is copied for a width or height below 1.
GX_API void gf_PelCopyVid(void *dst, long dstStride, void const *src, long srcStride, long width, long height);
