#include "conformance/detail/rules.h"

namespace
{

bool rectangle(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIScope &scope = probe.scope();
  scope.drawStart(gxPoint(5, 6));
  gxUIRect stored(1, 2, 3, 4);
  gxUIRect const rect = scope.textRect("Text", gxPoint(10, 12), gxUIFormat(), stored);
  check.expect(stored == rect, check.text(stored), "the rectangle that is returned, ", rect, ", in the last argument");
  check.expect(!rect.isNull(), "null", "a rectangle of a text");
  check.expect(!scope.someChanged() && !scope.modified(), "changed", "nothing drawn by textRect");
  check.expect(gf_penPel(scope) == gxPair<long>(5, 6), check.text(gf_penPel(scope)), "the pen stays at (5, 6)");
  gxUIRect const shifted = scope.textRect("Text", gxPoint(-90, 412), gxUIFormat(), stored);
  gxUIRect const expected = rect + gxPair<long>(-100, 400);
  check.expect(shifted == expected, check.text(shifted), "the rectangle moves with the point, to ", expected);
  auto const part = probe.part({20, 20, 30, 30}, true);
  gxUIRect const inPart = part->textRect("Text", gxPoint(10, 12), gxUIFormat(), stored);
  check.expect(inPart == rect, check.text(inPart), "device coordinates in a temporary part, too: ", rect);
  return true;
}

bool alignment(gx_Check &check)
{
  gx_Probe probe = check.probe();
  gxUIRect stored;
  gxPair<long> const at(30, 32);
  gxUIRect const rect = probe.scope().textRect("Text", gxPoint(30, 32), gxUIFormat(gxUIFormat::topLeft), stored);
  for (std::int32_t i = gxUIFormat::topLeft; i <= gxUIFormat::bottomRight; ++i) {
    gxUIFormat const format(static_cast<gxUIFormat::Alignment>(i));
    gxUIRect const seen = probe.scope().textRect("Text", gxPoint(30, 32), format, stored);
    gxUIRect const expected = format.alignRect(gxUIRect(at, rect.sz()));
    check.expect(seen == expected, check.text(seen), "alignment ", i, ": ", expected);
  }
  return true;
}

bool inside(gx_Check &check)
{
  constexpr long overhang = 1;
  for (gxUIFormat const &format : {gxUIFormat(gxUIFormat::topLeft), gxUIFormat(gxUIFormat::bottomRight)}) {
    gx_Probe probe = check.probe();
    gxUIRect stored;
    gxUIRect const rect = probe.scope().textRect("Ag", gxPoint(32, 32), format, stored);
    gx_Picture const before = probe.picture();
    probe.scope().draw("Ag", gxPoint(32, 32), gx_penColor, gxColor::whiteColor(), format);
    gx_Picture const after = probe.picture();
    check.expectNone(after.difference(before, probe.whole(), gf_grown(rect, overhang)), after,
                     "a text and its background inside of ", rect);
    check.expect(after.difference(before, rect).has_value(), "nothing drawn", "a text in ", rect);
  }
  return true;
}

}  // namespace

gx_SurfaceRules gf_textRules()
{
  return {
      {"text-rect", "textRect stores what it returns, and draws nothing", false, rectangle},
      {"text-alignment", "the alignment of a text is that of gxUIFormat::alignRect()", false, alignment},
      {"text-inside", "a text is drawn in its rectangle", true, inside},
  };
}
