#include "conformance/detail/rules.h"
#include "dispc/dispprop.h"

namespace
{

gxVector<2> const cell(12, 9);

/// Every operation, drawn through a part and directly, makes the same pels inside the part's rectangle.
void expectSamePels(gx_Check &check, gxUIRect const &rect, bool temporary)
{
  gxVector<2> const shift = temporary ? gxVector<2>() : gxVector<2>(rect.ul());
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe direct = check.probe(), probe = check.probe();
    op.draw(direct.scope(), cell + gxVector<2>(rect.ul()));
    auto const part = probe.part(rect, temporary);
    op.draw(*part, cell + gxVector<2>(rect.ul()) - shift);
    gx_Picture const seen = probe.picture();
    check.expectNone(seen.difference(direct.picture(), rect), seen, op.name,
                     ": the same pels as drawn directly, in the part at ", rect);
  }
}

/// A square drawn on a part is seen at @p at.
void expectSquareAt(gx_Check &check, gx_Probe &probe, gxPair<long> const &at, char const *what)
{
  gxUIRect const square(at, {4, 4});
  gx_Picture const seen = probe.picture();
  check.expectNone(seen.unlike(gx_penColor, square), seen, what, ": painted in ", square);
}

void expectState(gx_Check &check, gxUIScope const &part, gxPair<long> const &org, gxPair<long> const &size)
{
  check.expect(part.org() == org, check.text(part.org()), "origin ", org);
  check.expect(part.size() == size, check.text(part.size()), "size ", size);
  check.expect(!part.isNull(), "null", "a part that is not null");
  check.expect(!part.someChanged(), check.text(part.changeRect()), "a new part without a change");
}

bool lasting(gx_Check &check)
{
  gxUIRect const rect(8, 10, 40, 36);
  {
    gx_Probe probe = check.probe();
    expectState(check, *probe.part(rect, false), {0, 0}, rect.sz());
  }
  gx_Probe probe = check.probe();
  auto const outer = probe.part({-6, -4, 30, 30}, false);
  check.expect(outer->org() == gxPair<long>(6, 4), check.text(outer->org()),
               "origin (6, 4) of a part that begins (6, 4) before its parent");
  if (!probe.readsPels())
    return true;
  outer->set(gxUIRect(10, 10, 4, 4), gx_penColor);
  expectSquareAt(check, probe, {4, 6}, "a part that begins before its parent");
  auto const inner = std::unique_ptr<gxUIScope>(outer->newSubScope({16, 14, 10, 10}, false));
  inner->set(gxUIRect(0, 0, 4, 4), gx_penColor);
  expectSquareAt(check, probe, {10, 10}, "a part of a part");
  expectSamePels(check, rect, false);
  return true;
}

bool temporary(gx_Check &check)
{
  gxUIRect const rect(8, 10, 40, 36);
  gx_Probe probe = check.probe();
  expectState(check, *probe.part(rect, true), rect.ul(), rect.sz());
  if (probe.readsPels())
    expectSamePels(check, rect, true);
  return true;
}

bool temporaryClip(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIRect const clip(20, 20, 8, 8);
  probe.scope().setDisplayClipRect(clip);
  auto const part = probe.part({10, 10, 40, 40}, true);
  if (!probe.readsPels()) {
    check.expect(part->displayClipRect() == clip, check.text(part->displayClipRect()), "display clip ", clip);
    return true;
  }
  gx_Picture const before = probe.picture();
  part->set(gxUIRect(12, 12, 30, 30), gx_penColor);
  gx_Picture const after = probe.picture();
  check.expectNone(after.difference(before, probe.whole(), clip), after, "nothing drawn outside of the parent's clip");
  return true;
}

bool temporaryModified(gx_Check &check)
{
  gx_Probe probe = check.probe();
  auto const part = probe.part({10, 10, 40, 40}, true);
  part->set(gxUIRect(12, 12, 5, 5), gx_penColor);
  check.expect(probe.scope().modified(), "not modified", "modified() of the scope that a temporary part belongs to");
  return true;
}

bool changes(gx_Check &check)
{
  for (bool const isTemporary : {false, true}) {
    gx_Probe probe = check.probe();
    auto const part = probe.part({20, 24, 30, 30}, isTemporary);
    gxUIRect const rect = gxUIRect(3, 4, 5, 6) + (isTemporary ? gxPair<long>(20, 24) : gxPair<long>());
    part->set(rect, gx_penColor);
    check.expect(part->changeRect() == rect, check.text(part->changeRect()), isTemporary ? "temporary" : "lasting",
                 " part: changed ", rect);
  }
  return true;
}

bool moves(gx_Check &check)
{
  gx_Probe probe = check.probe();
  auto const part = probe.part({4, 4, 12, 12}, false);
  for (int i = 0; i < 3; ++i)
    part->move(probe.scope(), {30, 34, 20, 20});
  check.expect(part->size() == gxPair<long>(20, 20), check.text(part->size()), "size (20, 20) after a move");
  if (!probe.readsPels())
    return true;
  part->set(gxUIRect(0, 0, 4, 4), gx_penColor);
  expectSquareAt(check, probe, {30, 34}, "a part that moved three times to one place");
  gx_Picture const seen = probe.picture();
  check.expectNone(seen.unlike(gx_groundColor, {4, 4, 12, 12}), seen, "nothing at the place that the part left");
  return true;
}

bool outlives(gx_Check &check)
{
  gx_Probe probe = check.probe();
  bool const reads = probe.readsPels();
  auto const part = probe.part({4, 4, 40, 40}, false);
  probe.drop();
  for (gx_ScopeOp const &op : gf_scopeOps())
    if (gf_fits(op, reads))
      op.draw(*part, cell);
  gxUIRect rect;
  part->textRect("A", gxPoint(3, 3), gxUIFormat(), rect);
  return true;
}

}  // namespace

gx_SurfaceRules gf_partRules()
{
  return {
      {"part-lasting", "a lasting part has coordinates of its own, and draws on its rectangle of the surface", false,
       lasting},
      {"part-temporary", "a temporary part keeps the coordinates of its parent", false, temporary},
      {"temporary-clip", "a temporary part takes over the display clip of its parent", false, temporaryClip},
      {"temporary-modified", "a drawing through a temporary part modifies its parent, too", false, temporaryModified},
      {"part-changes", "changes are reported in pels of the scope, counted from org()", false, changes},
      {"part-moves", "moveSurface attaches anew, as often as it is called", false, moves},
      {"part-outlives", "a part lives on when the scope that made it is gone", false, outlives},
  };
}
