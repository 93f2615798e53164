#pragma once

#include "footprint/sexpr.h"
#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/vector.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A land pattern out of a `.kicad_mod` file, as plain values: what the file says, in its coordinates, millimetres with
/// y down. gfPadModel() and its kin (footprint/models.h) make outlines of it.
///
/// @code
/// gxFootprint const chip = gxFootprint::read(text);     // of the whole file
/// chip.pads.size();                                     // 2
/// @endcode
struct GX_API gxFootprint {
  /// A drawn line, arc or area.
  struct Graphic {
    struct Bulge {
      std::size_t corner = 0;
      gxVector<2> through;
    };
    enum Kind : std::uint8_t { line, arc, circle, rectangle, polygon };

    Kind kind = line;
    std::string layer;  ///< empty for what belongs to a pad
    /// line: start, end; arc: start, a point between, end; circle: centre, a point on it; rectangle: two corners;
    /// polygon: its corners
    std::vector<gxVector<2>> points;
    /// polygon: the sides that are arcs, in the order of the corners where they end
    std::vector<Bulge> bulges;
    double width = 0.0;  ///< of the stroke
    bool isFilled = false;
  };

  struct Pad {
    enum Shape : std::uint8_t { rectangle, roundedRectangle, oval, circle, trapezoid, custom };

    std::string number;
    std::string type;  ///< smd, thru_hole, np_thru_hole, connect
    Shape shape = rectangle;
    gxVector<2> at;
    gxDegree angle;  ///< counter-clockwise as it is seen, y down
    gxVector<2> size;
    gxVector<2> offset;             ///< of the shape from the hole
    gxVector<2> taper;              ///< by how much opposite sides differ
    double roundRatio = 0.25;       ///< radius of the corners over the shorter side
    double chamferRatio = 0.0;      ///< size of the cut corners over the shorter side
    std::array<bool, 4> chamfer{};  ///< top left, top right, bottom left, bottom right
    bool hasCircleAnchor = false;   ///< of a custom pad: a circle, else a rectangle
    std::vector<std::string> layers;
    std::vector<Graphic> primitives;  ///< of a custom pad, about its place, before it is turned
  };

  struct Text {
    std::string kind;  ///< reference, value, user, or the name of a property
    std::string text;
    std::string layer;
    gxVector<2> at;
  };

  std::string name;
  std::string layer;
  gxVector<2> at;  ///< where it lies, if it was placed
  gxDegree angle;  ///< of the place, which the angles of the pads have in them
  std::vector<Pad> pads;
  std::vector<Graphic> graphics;
  std::vector<Text> texts;
  /// Items of no known name, which are left out, and how many there were of each. What is known and of no use here
  /// (identifiers, descriptions, looks of texts, margins) is not counted.
  std::map<std::string, long> unknown;

  /// Reads the text of a file, with either head (`footprint`, or `module` as it was before). Throws gxFootprintError
  /// for what is no footprint, breaks the form, lacks a part, or has numbers out of range.
  static gxFootprint read(std::string_view text);
};
