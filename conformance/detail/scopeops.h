#pragma once

/// @file
/// Every drawing operation of a scope, in a form that the rules can loop over.

#include "dispc/uirect.h"
#include "dispc/uiscope.h"
#include "foundation/vector.h"

#include <functional>
#include <string>
#include <vector>

/// One drawing operation, which draws with gx_penColor, or an image, in a cell of 20 x 20 pels.
struct gx_ScopeOp {
  enum Kind { shape, image, scaledRuns, text, area, penMove, flood, wholeArea };

  std::string name;
  Kind kind;
  gxUIRect core;  ///< pels of the cell that every drawing of it paints; null if that depends on fonts
  gxUIRect box;   ///< pels of the cell outside of which nothing is painted, with some room
  std::function<void(gxUIScope &, gxVector<2> const &cell)> draw;

  /// What is seen of it depends on pels that are there, or it covers everything.
  bool isBounded() const { return kind != flood && kind != wholeArea; }
  /// Drawn outside of the scope, it still says what it would touch.
  bool reportsOutside() const { return isBounded() && kind != scaledRuns && kind != text; }
};

/// All of them; the operations that are empty in gxUIScope are not among them.
std::vector<gx_ScopeOp> const &gf_scopeOps();
