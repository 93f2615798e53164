#pragma once

#include <array>
#include <cstddef>

/// Operation codes of the sketch stream. The one table of them is gf_sketchCodes below.
enum class gx_SketchCode : signed char {
  point = 0,
  pointIcon = 1,
  lineSeg = 2,
  line = 3,
  circle = 4,
  ellipse = 5,
  ellipseArc = 6,
  ellipseAnnulusSection = 7,
  genRect = 8,
  genAnnulus = 9,
  coordAxes = 10,
  string = 11,
  pelBuffer8 = 12,
  rleBuffer = 14,
  sketch = 15,
  setRect = 16,
  setAll = 17,
  setComplement = 18,
  fill = 19,
  drawStart = 20,
  drawTo = 21,
  drawToRelPels = 22,
  moveToRelPels = 23,
  outline3D = 25,
  arrow = 26,
  affineRectangle = 27,
  polygon = 28,
  circleFilled = 29,
  ellipseFilled = 30,
  genRectFilled = 31,
  rect = 32,
  genShape = 33,
  genPoly = 34,
  unicodeString = 35,
  cross = 37,
  genPolyVertices = 38,
  ellipseAnnulusSectionFlags = 39,
  props = 40,
  wireframe = 41,
  bezierCurve = 42,
  cubicSpline = 43,
  polyline = 44,
  ellipse2 = 45,
  ellipseArc2 = 46,
  clipRect = 47
};

/// One row of the table of operation codes.
struct gx_SketchCodeInfo {
  gx_SketchCode code;
  char const *name;     ///< null for a code that is not assigned
  char const *payload;  ///< the fields behind the head, in order, with their bytes
  long size;            ///< bytes of the payload, or of its fixed beginning if `open`
  bool open;            ///< the length depends on counts or texts inside the payload
};

/// Bytes of the blocks that hold a whole object: a documented part is filled, all else is 0.
inline constexpr long gf_ellipseGeomBlock = 48;
inline constexpr long gf_ellipseArcBlock = 192;
inline constexpr long gf_annulusSectionBlock = 552;
inline constexpr long gf_genRectBlock = 152;
inline constexpr long gf_genAnnulusBlock = 360;
inline constexpr long gf_rectBlock = 88;
inline constexpr long gf_affineRectangleBlock = 232;

/// Bytes of the two parts that stand before every payload.
inline constexpr long gf_sketchPrefixSize = 22;  ///< code 40, then the properties without the colour
inline constexpr long gf_sketchHeadSize = 8;     ///< code, layer, colour

/// The operations of the stream, row i for code i. Numbers are little-endian, without padding; a point is two doubles,
/// a count or an enumeration 4 bytes, a colour 6, a pel rectangle 16, a transform 56.
inline constexpr std::array<gx_SketchCodeInfo, 48> gf_sketchCodes = {{
    {gx_SketchCode::point, "point", "point 16", 16, false},
    {gx_SketchCode::pointIcon, "pointIcon", "point 16", 16, false},
    {gx_SketchCode::lineSeg, "lineSeg", "start 16, end 16", 32, false},
    {gx_SketchCode::line, "line", "position 16, direction 16", 32, false},
    {gx_SketchCode::circle, "circle", "center 16, radius 8", 24, false},
    {gx_SketchCode::ellipse, "ellipse", "geometry record 48", gf_ellipseGeomBlock, false},
    {gx_SketchCode::ellipseArc, "ellipseArc", "block 192", gf_ellipseArcBlock, false},
    {gx_SketchCode::ellipseAnnulusSection, "ellipseAnnulusSection", "block 552", gf_annulusSectionBlock, false},
    {gx_SketchCode::genRect, "genRect", "block 152", gf_genRectBlock, false},
    {gx_SketchCode::genAnnulus, "genAnnulus", "block 360", gf_genAnnulusBlock, false},
    {gx_SketchCode::coordAxes, "coordAxes", "origin 16, x end 16, y end 16", 48, false},
    {gx_SketchCode::string, "string", "position 16, background 6, format 8, text, zero byte", 31, true},
    {gx_SketchCode::pelBuffer8, "pelBuffer8",
     "position 16, pass 1, pass pel 1, image from client 56, offset 8, width 4, height 4, flag 1, rows of pels", 91,
     true},
    {gx_SketchCode(13), nullptr, "", 0, false},
    {gx_SketchCode::rleBuffer, "rleBuffer",
     "position 16, pass 1, pass pel 1, unscaled 1, map size 4, map, width 4, height 4, rows of runs", 31, true},
    {gx_SketchCode::sketch, "sketch", "offset 16, size 4, stream", 20, true},
    {gx_SketchCode::setRect, "setRect", "form 1, then pel rectangle 16 (form 1) or block 88 (form 0)", 17, true},
    {gx_SketchCode::setAll, "setAll", "", 0, false},
    {gx_SketchCode::setComplement, "setComplement", "as setRect", 17, true},
    {gx_SketchCode::fill, "fill", "form 1, seed in pels 8 (form 1) or seed 16 (form 0), boundary 6, type 4", 19, true},
    {gx_SketchCode::drawStart, "drawStart", "point 16", 16, false},
    {gx_SketchCode::drawTo, "drawTo", "point 16", 16, false},
    {gx_SketchCode::drawToRelPels, "drawToRelPels", "dx 4, dy 4", 8, false},
    {gx_SketchCode::moveToRelPels, "moveToRelPels", "dx 4, dy 4", 8, false},
    {gx_SketchCode(24), nullptr, "", 0, false},
    {gx_SketchCode::outline3D, "outline3D",
     "form 1, pel rectangle 16 (form 1) or block 88 (form 0), first colour 6, second colour 6, width 4", 33, true},
    {gx_SketchCode::arrow, "arrow", "point 16, vector 16, arm length 4 (float)", 36, false},
    {gx_SketchCode::affineRectangle, "affineRectangle", "block 232", gf_affineRectangleBlock, false},
    {gx_SketchCode::polygon, "polygon", "fill mode 4, count 4, points", 8, true},
    {gx_SketchCode::circleFilled, "circleFilled", "as circle", 24, false},
    {gx_SketchCode::ellipseFilled, "ellipseFilled", "as ellipse", gf_ellipseGeomBlock, false},
    {gx_SketchCode::genRectFilled, "genRectFilled", "as genRect", gf_genRectBlock, false},
    {gx_SketchCode::rect, "rect", "origin 16, size 16", 32, false},
    {gx_SketchCode::genShape, "genShape", "colour 6, shape id 16, size 4, bytes", 26, true},
    {gx_SketchCode::genPoly, "genPoly",
     "transform 56, mutable 4, count n 4, vertices 64 n, points 32 n, spans 8 n, open 4", 68, true},
    {gx_SketchCode::unicodeString, "unicodeString",
     "position 16, background 6, format 8, text in 16-bit units, zero unit", 32, true},
    {gx_SketchCode(36), nullptr, "", 0, false},
    {gx_SketchCode::cross, "cross", "center 16, angle 8, arm length 8", 32, false},
    {gx_SketchCode::genPolyVertices, "genPolyVertices", "as genPoly", 68, true},
    {gx_SketchCode::ellipseAnnulusSectionFlags, "ellipseAnnulusSectionFlags", "block 552, arrow head 1, forward 1",
     gf_annulusSectionBlock + 2, false},
    {gx_SketchCode::props, "props",
     "version 1, fill 1, width 4, style 4, join 4, cap 4, arrow head 1, forward 1, show vertex 1", 21, false},
    {gx_SketchCode::wireframe, "wireframe", "as genPoly", 68, true},
    {gx_SketchCode::bezierCurve, "bezierCurve", "control points 64, weights 32", 96, false},
    {gx_SketchCode::cubicSpline, "cubicSpline", "count 4, curves of 96", 4, true},
    {gx_SketchCode::polyline, "polyline", "count 4, points, closed 1", 5, true},
    {gx_SketchCode::ellipse2, "ellipse2", "radii 16, angle 8, center 16", 40, false},
    {gx_SketchCode::ellipseArc2, "ellipseArc2",
     "radii 16, angle 8, center 16, right-handed 1, phase 8, start 8, span 8", 65, false},
    {gx_SketchCode::clipRect, "clipRect", "origin 16, size 16", 32, false},
}};

/// The row of a code, or null for one that is not assigned or lies outside the table.
constexpr gx_SketchCodeInfo const *gf_sketchCodeInfo(long code)
{
  if (code < 0 || code >= static_cast<long>(gf_sketchCodes.size()))
    return nullptr;
  gx_SketchCodeInfo const &info = gf_sketchCodes[static_cast<std::size_t>(code)];
  return info.name ? &info : nullptr;
}

namespace gf_sketchCodesCheck
{
constexpr bool inOrder()
{
  for (std::size_t i = 0; i < gf_sketchCodes.size(); ++i)
    if (static_cast<std::size_t>(gf_sketchCodes[i].code) != i)
      return false;
  return true;
}
static_assert(inOrder(), "row i of the table of operation codes describes code i");
}  // namespace gf_sketchCodesCheck
