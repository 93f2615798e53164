#pragma once

#include "dispc/uisketch.h"

#include <string>

/// The lines, polylines and polygons that a sketch has on its overlay, as an SVG element that can stand in a page of
/// HTML; in tenths of a pel, with a margin round what they cover. What else the sketch draws is left out. Lines of one
/// pen that follow one another are one path.
std::string svgLines(gxUISketch const &sketch);
