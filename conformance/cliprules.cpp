#include "conformance/detail/rules.h"

#include <cmath>
#include <limits>

namespace
{

/// The rectangle of the clips, and cells that lie across its corners.
gxUIRect const middle(20, 20, 20, 20);
gxVector<2> const corners[] = {{8, 8}, {32, 32}};

bool part(gx_Check &check)
{
  for (bool const temporary : {false, true})
    for (gx_ScopeOp const &op : gf_scopeOps())
      for (gxVector<2> const &cell : corners) {
        gx_Probe probe = check.probe();
        auto const scope = probe.part(middle, temporary);
        gx_Picture const before = probe.picture();
        op.draw(*scope, temporary ? cell : cell - gxVector<2>(middle.ul()));
        gx_Picture const after = probe.picture();
        check.expectNone(after.difference(before, probe.whole(), middle), after, op.name,
                         ": nothing drawn outside of the part at ", middle);
      }
  return true;
}

bool display(gx_Check &check)
{
  for (gx_ScopeOp const &op : gf_scopeOps())
    for (gxVector<2> const &cell : corners) {
      gx_Probe probe = check.probe(), open = check.probe();
      gx_Picture const before = probe.picture();
      probe.scope().setDisplayClipRect(middle);
      op.draw(probe.scope(), cell);
      op.draw(open.scope(), cell);
      gx_Picture const after = probe.picture();
      check.expectNone(after.difference(before, probe.whole(), middle), after, op.name,
                       ": nothing drawn outside of the display clip ", middle);
      if (op.kind != gx_ScopeOp::flood)  // its seed lies outside, and nothing is filled
        check.expectNone(after.difference(open.picture(), middle), after, op.name, ": inside of the display clip ",
                         middle, " the same as without it");
    }
  return true;
}

bool nowhere(gx_Check &check)
{
  double const inf = std::numeric_limits<double>::infinity();
  for (double const v : {std::nan(""), inf, -inf, 1e300, -1e300})
    for (gx_ScopeOp const &op : gf_scopeOps()) {
      bool const isPlaced = op.kind == gx_ScopeOp::shape || op.kind == gx_ScopeOp::image ||
                            op.kind == gx_ScopeOp::scaledRuns || op.kind == gx_ScopeOp::text;
      if (!isPlaced)
        continue;
      gx_Probe probe = check.probe();
      op.draw(probe.scope(), {v, v});
      if (!probe.readsPels())
        continue;
      gx_Picture const seen = probe.picture();
      check.expectNone(seen.unlike(gx_groundColor, probe.whole()), seen, op.name, " at ", v, ": nothing drawn");
    }
  return true;
}

bool everywhere(gx_Check &check)
{
  gx_Probe probe = check.probe();
  probe.scope().set(gxUIRect::null, gxColor(1, 2, 3));
  bool const isStill = !probe.scope().someChanged();
  check.expect(isStill, check.text(probe.scope().changeRect()), "no change by a null rectangle");
  probe.scope().set(gxUIRect::inf, gx_penColor);
  check.expect(probe.scope().changeRect() == probe.whole(), check.text(probe.scope().changeRect()),
               "everything changed by an infinite rectangle");
  if (!probe.readsPels())
    return true;
  gx_Picture const seen = probe.picture();
  check.expectNone(seen.unlike(gx_penColor, probe.whole()), seen, "all pels painted by an infinite rectangle");
  return true;
}

}  // namespace

gx_SurfaceRules gf_clipRules()
{
  return {
      {"clip-part", "nothing is drawn outside of a scope's own rectangle", true, part},
      {"clip-display", "nothing is drawn outside of the display clip, and all inside", true, display},
      {"not-finite", "what is not finite, or infinitely far, is drawn nowhere", false, nowhere},
      {"infinite-area", "rectangles of any size are legal", false, everywhere},
  };
}
