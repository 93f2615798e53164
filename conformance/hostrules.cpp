#include "conformance/detail/rules.h"

namespace
{

gxVector<2> const cell(12, 16);

bool fresh(gx_Check &check)
{
  gxPair<long> const size(64, 48);
  gxCheckedSurface const surface = check.surface(size);
  gxUIScope const &scope = *surface.scope;
  check.expect(scope.size() == size, check.text(scope.size()), "size ", size);
  check.expect(!scope.isNull(), "null", "a scope that is not null");
  check.expect(scope.org() == gxPair<long>(), check.text(scope.org()), "origin (0, 0)");
  check.expect(gf_penPel(scope) == gxPair<long>(), check.text(gf_penPel(scope)), "the pen at (0, 0)");
  check.expect(!scope.someChanged() && !scope.allChanged(), check.text(scope.changeRect()), "nothing changed");
  check.expect(!scope.modified(), "modified", "not modified");
  check.expect(!scope.clientChangeEnable(), "collecting", "no client who collects");
  check.expect(!scope.screenUpdatesLocked(), "locked", "no screen lock");
  return true;
}

bool null(gx_Check &check)
{
  gxCheckedSurface const surface = check.surface({0, 0});
  if (!surface.scope)
    return false;
  gxUIScope &scope = *surface.scope;
  check.expect(scope.isNull(), "not null", "isNull() of a surface of 0 x 0");
  std::unique_ptr<gxUIScope> const part(scope.newSubScope({2, 3, 10, 10}, false));
  check.expect(part->isNull(), "not null", "isNull() of a part of a null scope");
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    if (!op.reportsOutside())
      continue;
    scope.clientChangeEnable(true);
    op.draw(scope, cell);
    gxUIRect const collected = scope.clientChangedRect(false), core = gf_inCell(op.core, cell);
    check.expect(collected.within(core), check.text(collected), op.name, ": a null scope measures ", core);
  }
  return true;
}

/// Surfaces without locks of their own answer false to all questions.
bool hasLocks(gxUIScope &scope)
{
  scope.lockScreenUpdatesPush(true);
  bool const locked = scope.screenUpdatesLocked();
  scope.lockScreenUpdatesPop();
  return locked;
}

bool lockNesting(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIScope &scope = probe.scope();
  if (!hasLocks(scope))
    return false;
  check.expect(!scope.screenUpdatesLocked(), "locked", "no lock after a push and a pop");
  scope.lockScreenUpdatesPush(true);
  scope.lockScreenUpdatesPush(true);
  scope.lockScreenUpdatesPop();
  check.expect(scope.screenUpdatesLocked(), "not locked", "a lock after two pushes and a pop");
  scope.lockScreenUpdatesPop();
  check.expect(!scope.screenUpdatesLocked(), "locked", "no lock after two pushes and two pops");
  return true;
}

bool lockShared(gx_Check &check)
{
  gx_Probe probe = check.probe();
  if (!hasLocks(probe.scope()))
    return false;
  auto const part = probe.part({10, 10, 20, 20}, false);
  part->lockScreenUpdatesPush(true);
  check.expect(probe.scope().screenUpdatesLocked(), "not locked", "a lock of a part locks the whole");
  probe.scope().lockScreenUpdatesPop();
  check.expect(!part->screenUpdatesLocked(), "locked", "a part is unlocked with the whole");
  return true;
}

bool lockPop(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIScope &scope = probe.scope();
  scope.lockScreenUpdatesPop();
  scope.lockScreenUpdatesPush(true);
  bool const hasLock = scope.screenUpdatesLocked();
  scope.lockScreenUpdatesPop();
  scope.lockScreenUpdatesPop();
  check.expect(!scope.screenUpdatesLocked(), "locked", "no lock after more pops than pushes");
  scope.lockScreenUpdatesPush(true);
  check.expect(scope.screenUpdatesLocked() == hasLock, "not locked", "a lock by a push after more pops than pushes");
  scope.lockScreenUpdatesPop();
  return true;
}

bool drag(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIScope &scope = probe.scope();
  scope.set(gxUIRect(20, 20, 10, 10), gxColor(0, 180, 90));
  gx_Picture const before = probe.picture();
  scope.dragErase();
  for (int round = 0; round < 2; ++round) {
    scope.dragStart();
    for (gx_ScopeOp const &op : gf_scopeOps())
      if (op.isBounded())
        op.draw(scope, cell);
    scope.dragStop();
    scope.dragAnimate(true);
    scope.dragErase();
    gx_Picture const after = probe.picture();
    check.expectNone(after.difference(before, probe.whole()), after, "the picture as before, after dragErase");
  }
  scope.set(gxUIRect(40, 40, 4, 4), gx_penColor);
  gx_Picture const after = probe.picture();
  check.expectNone(after.unlike(gx_penColor, {40, 40, 4, 4}), after, "drawings show again after dragStop");
  return true;
}

bool batch(gx_Check &check)
{
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe direct = check.probe(), probe = check.probe();
    op.draw(direct.scope(), cell);
    probe.scope().optimizeDrawing(true);
    op.draw(probe.scope(), cell);
    probe.scope().optimizeDrawing(false);
    gx_Picture const seen = probe.picture();
    check.expectNone(seen.difference(direct.picture(), probe.whole()), seen, op.name,
                     ": the same pels in a batch as outside of one");
  }
  return true;
}

}  // namespace

gx_SurfaceRules gf_hostRules()
{
  return {
      {"new-surface", "a new surface has its size and no history", false, fresh},
      {"null-scope", "a scope without a surface is null, its parts too, and measures for a client", false, null},
      {"lock-nesting", "screen locks nest", false, lockNesting},
      {"lock-shared", "all scopes of a surface share their locks", false, lockShared},
      {"lock-pop", "a pop too many does no harm", false, lockPop},
      {"drag", "the drag image goes without a trace", true, drag},
      {"batch", "a batch of operations draws what the operations draw", true, batch},
  };
}
