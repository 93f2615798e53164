#pragma once

#include "dispc/uitablet.h"
#include "foundation/pelbuf.h"

#include <functional>
#include <string>
#include <vector>

/// @file
/// What the demonstration shows: a grey picture of a board, and drawings on it.

/// A drawing as a list of calls on a tablet, one record each.
using Drawing = std::vector<std::function<void(gxUITablet &)>>;

/// A grey picture as a camera would give it, 640 x 480: a board with tracks, pads and a device. Rendered through a
/// tablet of its own.
gxPelBuffer<unsigned char> boardPicture();

/// The picture in a file, PNG or PGM. Throws gxPel::BadImageFile.
gxPelBuffer<unsigned char> readPicture(std::string const &path);

/// What a vision tool would report on the board, in pels of the picture: pins, a body, a search area, edge points.
Drawing inspectionResult(gxPair<long> const &size);

/// Lines of every width, style, join and cap.
Drawing penChart();

/// One of each shape, in a grid of cells of 120 x 100 from (0, 0).
Drawing shapeChart();
