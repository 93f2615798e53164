#include "conformance/detail/rules.h"
#include "dispc/dispprop.h"
#include "foundation/pelbuf.h"

#include <cmath>

namespace
{

gxGraphicProps const line(gxColor(240, 70, 20), 1, gxGraphicProps::penSolid, false);

gxPelBuffer_const<gxPackedRGB32Pel> square()
{
  gxPelBuffer<gxPackedRGB32Pel> image(8, 8);
  for (long y = 0; y < 8; ++y)
    for (long x = 0; x < 8; ++x)
      image.put(x, y, gxPackedRGB32Pel(240, 70, 20));
  return image;
}

void expectPen(gx_Check &check, gxUIScope const &scope, gxPoint const &point, gxPair<long> const &pel, char const *when)
{
  gxPoint const at = scope.drawPoint();
  check.expect(at.x() == point.x() && at.y() == point.y() && gf_penPel(scope) == pel,
               check.text("point (", at.x(), ", ", at.y(), "), pel ", gf_penPel(scope)), when, ": the pen at (",
               point.x(), ", ", point.y(), "), pel ", pel);
}

bool moves(gx_Check &check)
{
  gx_Probe probe = check.probe();
  auto const part = probe.part({8, 4, 50, 50}, true);
  gxUIScope &scope = *part;
  scope.drawStart(gxPoint(12.5, 14));
  scope.drawTo(gxPoint(30.25, 20), line);
  expectPen(check, scope, {30.25, 20}, {22, 16}, "drawTo");
  scope.drawToRelPels(-5, 7, line);
  expectPen(check, scope, {25.25, 27}, {17, 23}, "drawToRelPels");
  scope.drawTo(scope.drawPoint(), line);
  expectPen(check, scope, {25.25, 27}, {17, 23}, "drawTo to the pen itself");
  scope.drawTo(gxPoint(-40, 500), line);
  expectPen(check, scope, {-40, 500}, {-48, 496}, "drawTo to a point outside");
  return true;
}

bool stays(gx_Check &check)
{
  for (gx_ScopeOp const &op : gf_scopeOps()) {
    gx_Probe probe = check.probe();
    if (!gf_fits(op, probe.readsPels()) || op.kind == gx_ScopeOp::penMove)
      continue;
    probe.scope().drawStart(gxPoint(7.5, 9));
    op.draw(probe.scope(), {12, 16});
    expectPen(check, probe.scope(), {7.5, 9}, {7, 9}, op.name.c_str());
  }
  return true;
}

/// A pen whose pel and point have drifted apart: the origin of its scope moved. The pel counts.
bool isTheObject(gx_Check &check)
{
  auto const expect = [&check](char const *what, gxUIRect const &core, auto draw) {
    gx_Probe probe = check.probe();
    auto const part = probe.part({8, 8, 40, 40}, true);
    part->drawStart(gxPoint(20, 20));
    part->subset(probe.scope(), {14, 14, 40, 40});
    draw(*part);
    gxUIRect const changed = part->changeRect();
    check.expect(changed.within(core), check.text(changed), what, " at the pen: ", core);
  };
  expect("point", {26, 26, 1, 1}, [](gxUIScope &s) { s.draw(s.drawPoint(), line); });
  expect("drawTo", {26, 26, 10, 1}, [](gxUIScope &s) { s.drawTo(gxPoint(36, 26), line); });
  expect("drawTo to the pen", {26, 26, 1, 1}, [](gxUIScope &s) { s.drawTo(s.drawPoint(), line); });
  expect("drawToRelPels", {26, 26, 10, 1}, [](gxUIScope &s) { s.drawToRelPels(10, 0, line); });
  expect("image", {26, 26, 8, 8}, [](gxUIScope &s) { s.draw(square(), s.drawPoint(), false, 0UL); });
  expect("reduced image", {26, 26, 4, 4},
         [](gxUIScope &s) { s.sample(square(), s.drawPoint(), gxPair<double>(0.5, 0.5), false, 0UL); });
  expect("enlarged image", {26, 26, 16, 16},
         [](gxUIScope &s) { s.expand(square(), s.drawPoint(), gxPair<double>(2, 2), false, 0UL, {}); });
  return true;
}

/// Coordinates that arrive one rounding short of a whole number.
bool rounding(gx_Check &check)
{
  double const nearly30 = std::nextafter(30.0, 0.0);
  auto const expect = [&check](char const *what, gxUIRect const &core, auto draw) {
    gx_Probe probe = check.probe();
    draw(probe.scope());
    gxUIRect const changed = probe.scope().changeRect();
    check.expect(changed.within(core), check.text(changed), what, " at 29.999999999999996: ", core);
  };
  expect("point", {30, 30, 1, 1}, [&](gxUIScope &s) { s.draw(gxPoint(nearly30, nearly30), line); });
  expect("image", {30, 30, 8, 8}, [&](gxUIScope &s) { s.draw(square(), gxPoint(nearly30, nearly30), false, 0UL); });
  expect("enlarged image", {30, 30, 16, 16},
         [&](gxUIScope &s) { s.expand(square(), gxPoint(nearly30, nearly30), gxPair<double>(2, 2), false, 0UL, {}); });
  return true;
}

}  // namespace

gx_SurfaceRules gf_penRules()
{
  return {
      {"pen-moves", "drawTo and drawToRelPels leave the pen where the line ends", false, moves},
      {"pen-stays", "nothing else moves the pen", false, stays},
      {"pen-object", "a point that is drawPoint() itself stands for the pel of the pen", false, isTheObject},
      {"rounding", "a coordinate a hair below a whole number is that number: xCoord() and yCoord() decide", false,
       rounding},
  };
}
