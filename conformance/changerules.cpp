#include "conformance/detail/rules.h"
#include "dispc/dispprop.h"
#include "foundation/genrect.h"
#include "foundation/pelbuf.h"

namespace
{

gxVector<2> const cell(12, 16);

bool covers(gx_Check &check)
{
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe probe = check.probe();
    if (!gf_fits(op, probe.readsPels()))
      continue;
    if (probe.readsPels()) {
      gx_Picture const before = probe.picture();
      op.draw(probe.scope(), cell);
      gxUIRect const changed = probe.scope().changeRect();
      gx_Picture const after = probe.picture();
      check.expectNone(after.difference(before, probe.whole(), changed), after, op.name,
                       ": all pels that differ inside of the reported ", changed);
      continue;
    }
    op.draw(probe.scope(), cell);
    gxUIRect const changed = probe.scope().changeRect(), core = gf_inCell(op.core, cell) & probe.whole();
    check.expect(core.isNull() || changed.within(core), check.text(changed), op.name, ": a change rectangle around ",
                 core);
  }
  return true;
}

bool tight(gx_Check &check)
{
  constexpr long room = 4;
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe probe = check.probe();
    if (!op.isBounded())
      continue;
    gxUIRect box = gf_inCell(op.box, cell);
    if (op.kind == gx_ScopeOp::text)
      box = probe.scope().textRect("A", gxPoint(cell + gxVector<2>(2, 2)), gxUIFormat(), box);
    op.draw(probe.scope(), cell);
    gxUIRect const changed = probe.scope().changeRect();
    check.expect(changed.isNull() || gf_grown(box, room).within(changed), check.text(changed), op.name,
                 ": a change rectangle inside of ", gf_grown(box, room));
  }
  return true;
}

/// Draws by @p draw and looks at the flag.
template <class Draw>
void expectOpaque(gx_Check &check, bool opaque, char const *what, Draw draw)
{
  gx_Probe probe = check.probe();
  draw(probe.scope(), probe.whole().sz());
  bool const seen = probe.scope().opaque();
  check.expect(seen == opaque, seen ? "opaque" : "not opaque", what, opaque ? ": opaque" : ": not opaque");
}

gxPelBuffer<unsigned char> halfEmpty(gxPair<long> const &size)
{
  gxPelBuffer<unsigned char> image(size.x(), size.y());
  for (long y = 0; y < size.y(); ++y)
    for (long x = 0; x < size.x() / 2; ++x)
      image.put(x, y, 200);
  return image;
}

bool opaqueChanges(gx_Check &check)
{
  using Size = gxPair<long>;
  expectOpaque(check, true, "set of the whole scope",
               [](gxUIScope &s, Size const &size) { s.set(gxUIRect({}, size), gx_penColor); });
  expectOpaque(check, true, "a solid image over the whole scope", [](gxUIScope &s, Size const &size) {
    s.draw(halfEmpty(size), gxPoint(0, 0), false, static_cast<unsigned char>(0), false);
  });
  expectOpaque(check, false, "an image with transparent pels over the whole scope", [](gxUIScope &s, Size const &size) {
    s.draw(halfEmpty(size), gxPoint(0, 0), true, static_cast<unsigned char>(0), false);
  });
  expectOpaque(check, false, "an outline around the whole scope", [](gxUIScope &s, Size const &size) {
    gxVector<2> const corner(size);
    s.draw(gxGenRect(corner * 0.5, corner, gxRadian(0.0), gxVector<2>()),
           gxGraphicProps(gx_penColor, 3, gxGraphicProps::penSolid, false));
  });
  expectOpaque(check, false, "set of the whole scope inside a display clip", [](gxUIScope &s, Size const &) {
    s.setDisplayClipRect(gxUIRect(10, 10, 20, 20));
    s.set(gx_penColor);
  });
  return true;
}

bool modified(gx_Check &check)
{
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe probe = check.probe();
    if (!gf_fits(op, probe.readsPels()))
      continue;
    op.draw(probe.scope(), cell);
    check.expect(probe.scope().modified(), "not modified", op.name, ": modified()");
  }
  return true;
}

/// What a client collects of every drawing for which @p fits, drawn at @p at.
template <class Fits>
void expectTracked(gx_Check &check, bool allChanged, gxVector<2> const &at, Fits fits)
{
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe probe = check.probe();
    gxUIScope &scope = probe.scope();
    if (!fits(op))
      continue;
    if (allChanged)
      scope.allChange();
    scope.clientChangeEnable(true);
    op.draw(scope, at);
    gxUIRect const collected = scope.clientChangedRect(true), core = gf_inCell(op.core, at);
    check.expect(collected.within(core), check.text(collected), op.name, ": a client collects ", core);
  }
}

bool trackingOutside(gx_Check &check)
{
  expectTracked(check, false, {-300, -200}, [](gx_ScopeOp const &op) { return op.reportsOutside(); });
  return true;
}

bool trackingContinues(gx_Check &check)
{
  expectTracked(check, true, cell, [](gx_ScopeOp const &op) { return op.isBounded() && op.kind != gx_ScopeOp::text; });
  return true;
}

}  // namespace

gx_SurfaceRules gf_changeRules()
{
  return {
      {"change-covers", "a drawing reports a rectangle around all that it touched", false, covers},
      {"change-tight", "the rectangle is that of the drawing, not more", false, tight},
      {"change-opaque", "a change is opaque exactly if each pel of the rectangle was painted", false, opaqueChanges},
      {"modified", "every drawing sets modified(true)", false, modified},
      {"tracking-outside", "a client who collects gets rectangles outside of the scope, too", false, trackingOutside},
      {"tracking-continues", "trackChanges() decides: a client collects on when all has changed", false,
       trackingContinues},
  };
}
