#pragma once

#include "dispc/wrfm/model.h"
#include "footprint/footprint.h"
#include "foundation/export.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// Something of a footprint that was left out of its models, or is not sound.
struct GX_API gxFootprintProblem {
  enum Kind : std::uint8_t {
    noSize,   ///< a pad whose size is not above 0; it is left out
    refused,  ///< an outline that crosses itself or cannot be rounded; it is left out
    gap       ///< lines of a layer that do not close; they are kept open
  };

  Kind kind = refused;
  std::string what;  ///< the pad, or the layer
  std::string why;   ///< refused: what the outline said
  gxVector<2> from;  ///< gap: one of its ends, as in the file
  gxVector<2> to;    ///< gap: the other one

  /// A line that tells it.
  std::string text() const;
  double width() const { return from.distance(to); }
};

GX_API std::ostream &operator<<(std::ostream &os, gxFootprintProblem const &problem);

/// A footprint as models, in millimetres, y down, and where it was placed if it was. Curves stay exact: corners are
/// fillets, round ends half circles.
struct GX_API gxFootprintModels {
  gxSMDGDModel pads{"pads"};            ///< an outline for each pad; several for a custom one
  gxSMDGDModel body{"body"};            ///< what is drawn on the fabrication layers
  gxSMDGDModel courtyard{"courtyard"};  ///< what is drawn on the courtyard layers
  std::vector<std::size_t> padOf;       ///< for each outline of `pads`, the index of its pad in the footprint
  std::vector<gxFootprintProblem> problems;
};

/// Makes the models. Loose lines and arcs of a layer are joined where ends are no farther apart than @p tolerance, in
/// millimetres; what does not close then is kept open, and the gap told.
GX_API gxFootprintModels gfFootprintModels(gxFootprint const &footprint, double tolerance = 0.02);
