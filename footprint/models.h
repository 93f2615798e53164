#pragma once

#include "dispc/wrfm/model.h"
#include "footprint/footprint.h"
#include "foundation/export.h"

#include <string>
#include <vector>

/// A footprint as models, in millimetres, y down, and where it was placed if it was. Curves stay exact: corners are
/// fillets, round ends half circles.
struct GX_API gxFootprintModels {
  gxSMDGDModel pads{"pads"};            ///< an outline for each pad; several for a custom one
  gxSMDGDModel body{"body"};            ///< what is drawn on the fabrication layers
  gxSMDGDModel courtyard{"courtyard"};  ///< what is drawn on the courtyard layers
  std::vector<std::size_t> padOf;       ///< for each outline of `pads`, the index of its pad in the footprint
  /// What was left out or is not sound, a line each: pads without a size, outlines that cross themselves, gaps.
  std::vector<std::string> problems;
};

/// Makes the models. Loose lines and arcs of a layer are joined where ends are no farther apart than @p tolerance, in
/// millimetres; what does not close then is kept open, and the gap told.
GX_API gxFootprintModels gfFootprintModels(gxFootprint const &footprint, double tolerance = 0.02);
