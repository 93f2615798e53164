#pragma once

/// @file
/// The rules, by theme. Each looks at surfaces of its own, through one statement of the contract and as little else as
/// can be, so that a fault is found by its own rule and not by all of them.

#include "conformance/detail/probe.h"
#include "conformance/detail/scopeops.h"

#include <string>
#include <vector>

struct gx_SurfaceRule {
  char const *name;
  char const *statement;
  bool needsPels;
  /// False if this surface has no means to be looked at by the rule.
  bool (*check)(gx_Check &);
};

using gx_SurfaceRules = std::vector<gx_SurfaceRule>;

gx_SurfaceRules gf_hostRules();    ///< new surfaces, null ones, locks, drag, batches
gx_SurfaceRules gf_changeRules();  ///< change rectangles, tracking, modified
gx_SurfaceRules gf_penRules();     ///< the pen, and rounding
gx_SurfaceRules gf_partRules();    ///< sub-scopes
gx_SurfaceRules gf_clipRules();    ///< scope, display clip, numbers that lie nowhere
gx_SurfaceRules gf_pelRules();     ///< colors, transparency, scaled images, flood fill
gx_SurfaceRules gf_textRules();

/// The operations that mean something on this surface: a flood fill only where there are pels.
inline bool gf_fits(gx_ScopeOp const &op, bool readsPels)
{
  return readsPels || op.kind != gx_ScopeOp::flood;
}

inline gxUIRect gf_grown(gxUIRect const &r, long by)
{
  return {r.left() - by, r.top() - by, r.width() + 2 * by, r.height() + 2 * by};
}

/// The rectangle of a cell's pels, for a cell at whole pels.
inline gxUIRect gf_inCell(gxUIRect const &rect, gxVector<2> const &cell)
{
  return rect + gxPair<long>(gxPair<double>(cell));
}
