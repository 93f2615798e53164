#include "dispc/glist.h"
#include "dispc/uitablet.h"
#include "dispc/wrfm/detail/synthfill.h"
#include "dispc/wrfm/genpoly.h"
#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/synthetic.h"
#include "foundation/circle.h"
#include "foundation/lensxform.h"
#include "foundation/matherror.h"
#include "foundation/pelerror.h"
#include "foundation/shapeserror.h"
#include "foundation/xformbase.h"
#include "tests/support/logscope.h"
#include "tests/support/outlines.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace
{

using Poly = gxSMDGDPoly;
using P = gxSMDGDPolyPrivate;
using Point = gxVector<2>;
using Buffer = gxPelBuffer<unsigned char>;
using Handle = gxPtrHandle_const<gx2XformBase>;

std::string pelsOf(Buffer const &buffer)
{
  Buffer whole = buffer;
  whole.setEntire();
  std::string pels;
  for (long y = 0; y < whole.height(); ++y)
    pels.append(reinterpret_cast<char const *>(whole.pointToRow(y)), static_cast<std::size_t>(whole.width()));
  return pels;
}

/// The numbers of painted pels, row by row, and the first column of each.
std::string spans(Buffer const &buffer)
{
  std::string text;
  for (long y = 0; y < buffer.height(); ++y) {
    long first = -1, n = 0;
    for (long x = 0; x < buffer.width(); ++x)
      if (buffer.get(x, y)) {
        first = first < 0 ? x : first;
        ++n;
      }
    text += n ? std::to_string(first) + "+" + std::to_string(n) + " " : ". ";
  }
  return text;
}

std::optional<Poly> randomOutline(Random &random)
{
  try {
    std::vector<Corner> corners = star(random, 3 + random.below(9));
    if (random.one(2))
      for (Corner &c : corners) {  // whole numbers meet the rows of pels at their ends
        c.x = std::round(c.x);
        c.y = std::round(c.y) + 0.5 * random.below(2);
      }
    if (random.one(5))
      for (Corner &c : corners) {  // arcs so flat that their centres lie far away; fillets that lie outside
        c.radius *= random.in(1, 3);
        c.span = random.one(2) ? std::pow(10.0, random.in(-9, 1)) * (random.one(2) ? 1 : -1) : c.span;
      }
    return Outline(true, corners);
  } catch (gxException const &) {
    return {};
  }
}

gxXform<2> randomMap(Random &random)
{
  switch (random.below(6)) {
    case 0:
      return {};
    case 4: {  // a part of the outline, much enlarged
      double const scale = random.in(5, 300);
      Point const at(random.in(3, 11), gxDegree(random.in(-180, 180)));
      return {gxMatrix<2>(scale, 0, 0, scale), Point(20, 20) - at * scale};
    }
    case 1:
      return {gxMatrix<2>(2, 0, 0, random.one(2) ? 2 : -2), Point(20, 20.5)};
    case 2:
      return {gxMatrix<2>(gxDegree(90), gxDegree(90), 1.5, 1.5), Point(17, 17)};
    case 3:
      return {gxMatrix<2>(random.in(-3, 3), random.in(-3, 3), random.in(-3, 3), random.in(-3, 3)),
              Point(random.in(0, 40), random.in(0, 40))};
    default:
      return {gxMatrix<2>(random.in(0.5, 3), 0, 0, random.in(0.5, 3)), Point(random.in(0, 40), random.in(0, 40))};
  }
}

// The fill that steps along the pieces gives the pels of the rule, and away from the outline those that lie inside.
TEST(SyntheticFill, IsTheRuleRowByRow)
{
  Random random(17);
  int drawn = 0;
  long rows = 0, exactRows = 0;
  for (int run = 0; run < 2000; ++run) {
    std::optional<Poly> const poly = randomOutline(random);
    gxXform<2> const map = randomMap(random);
    if (!poly || std::abs(map.matrix().det()) < 0.05)
      continue;
    ++drawn;
    Buffer fast(44, 42), exact(44, 42);
    for (Buffer *const b : {&fast, &exact})
      b->window(2, 1, 40, 40);
    gxRect const box = poly->boundingBox(map);
    long const left = std::lround(std::floor(box.origin().x())) - 5;
    long const right = std::lround(std::ceil(box.origin().x() + box.size().x())) + 5;
    gx_SyntheticFill filler(*poly, map, left, right, fast, 7);
    filler.fill();
    rows += 40;
    exactRows += filler.numExactRows();
    gx_SyntheticFill const rule(*poly, map, left, right, exact, 7);
    for (long y = 1; y <= 40; ++y)
      rule.fillRow(y);
    ASSERT_EQ(pelsOf(fast), pelsOf(exact)) << asCode(*poly) << map;
    if (run % 10 == 0)
      for (int k = 0; k < 200; ++k) {
        long const x = 2 + random.below(40), y = 1 + random.below(40);
        Point const p = map.invMapPoint(Point(double(x) + 0.5, double(y) + 0.5));
        if (P::distToPoint(*poly, p) * map.matrix().scale() > 4) {
          EXPECT_EQ(fast.get(x, y) != 0, P::inside(*poly, p)) << asCode(*poly) << map << x << ' ' << y;
        }
      }
  }
  EXPECT_GT(drawn, 1000);
  EXPECT_LT(exactRows * 3, rows);
}

TEST(SyntheticImages, AreExactPels)
{
  Poly const square = Poly::rectangle(4, 4, {4, 4});
  Buffer buffer(9, 8);
  P::drawSynthetic(square, gxXform<2>(), buffer, 200, false, true);
  EXPECT_EQ(spans(buffer), ". . 2+4 2+4 2+4 2+4 . . ");
  // Its edges lie on boundaries of pels, so that smoothing changes nothing.
  square.drawSynthetic(gxXform<2>(), buffer);
  EXPECT_EQ(spans(buffer), ". . 2+4 2+4 2+4 2+4 . . ");
  EXPECT_EQ(buffer.get(3, 3), gxSMDColors::colorToGrayScale(gxColor::ltGreyColor()));

  // Edges alone, plain; of an open outline too.
  Buffer lines(12, 12);
  Poly open = Poly::rectangle(4, 4, {6, 6});
  open.open();
  P::drawSynthetic(open, gxXform<2>(), lines, 9, true, true);
  EXPECT_EQ(spans(lines), ". . . . . . . . . . . . ");
  P::drawSynthetic(open, gxXform<2>(), lines, 9, false, false);
  EXPECT_EQ(spans(lines), ". . . . 4+4 4+1 4+1 4+1 4+5 . . . ");

  // The client map of the buffer counts for the fill alone; a window keeps what lies outside.
  Buffer windowed(9, 8);
  windowed.imageFromClientXform(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), Point(1, 1)));
  windowed.window(4, 0, 3, 5);
  P::drawSynthetic(square, gxXform<2>(), windowed, 200, false, true);
  windowed.setEntire();
  EXPECT_EQ(spans(windowed), ". . . 4+3 4+3 . . . ");

  // A triangle whose corner lies on the centre of a row.
  Buffer corner(12, 9);
  P::drawSynthetic(Outline(true, {{1, 4.5}, {11, 2.5}, {11, 6.5}}), gxXform<2>(), corner, 1, false, true);
  EXPECT_EQ(spans(corner), ". . . 6+5 1+10 6+5 . . . ");
}

TEST(SyntheticImages, OfPolygonsAndModelsAreThoseOfTheirOutlines)
{
  Poly soft = Poly::rectangle(20, 12, {15, 13});
  gxSMDGDPolyVertex v = soft.vertex(1, false);
  v.vertexRadius(4);
  soft.replaceVertex(1, v);
  gxXform<2> const map(gxMatrix<2>(gxDegree(20), gxDegree(20), 1, 1), Point(6, -3));
  Buffer a(40, 40), b(40, 40), c(40, 40), d(40, 40);
  P::drawSynthetic(soft, map, a, 150, true, true);
  gxGenPoly polygon;
  for (gxSMDGDPolyVertex const &corner : soft.vertices())
    polygon.insertVertex(corner.point(), corner.vertexRadius(), gxRadian());
  polygon.close();
  gfDrawSynthetic(polygon.map(map), gxXform<2>(), b, 150);
  EXPECT_EQ(pelsOf(b), pelsOf(a));
  gxSMDGDModel model;
  model << soft << Poly::circle(3, {33, 33});
  gxSMDColors colors;
  colors.syntheticDefaultColor(gxColor(150, 150, 150));
  model.colors(colors);
  model.drawSynthetic(map, c);
  model.poly(0).drawSynthetic(map, d);
  EXPECT_EQ(pelsOf(d), pelsOf(a));
  model.poly(1).drawSynthetic(Handle(new gx2XformLinear(map)), d);
  EXPECT_EQ(pelsOf(c), pelsOf(d));
  EXPECT_NE(pelsOf(c), pelsOf(a));

  EXPECT_THROW(gfDrawSynthetic(gxGenPoly(), gxXform<2>(), a, 1), gxShapesError::BadGeom);
  EXPECT_THROW(gfDrawSynthetic(polygon, Handle(), a, 1), gxBadPointer);
}

// A bend so weak that the picture is nearly the linear one.
TEST(SyntheticImages, ThroughBendingTransforms)
{
  Handle const bent(new gx2XformLens({50, 45}, 50, 1e-6));
  Poly soft = Poly::rectangle(60, 40, {50, 45});
  for (int i = 0; i < 4; ++i) {
    gxSMDGDPolyVertex v = soft.vertex(i, false);
    v.vertexRadius(i % 2 ? 8 : 0);
    soft.replaceVertex(i, v);
  }
  Buffer straight(100, 90), weak(100, 90);
  straight.imageFromClientXform(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), Point(5, 5)));
  weak.imageFromClientXform(straight.imageFromClientXform());
  P::drawSynthetic(soft, gxXform<2>(), straight, 1, false, true);
  P::drawSynthetic(soft, bent, weak, 1);
  std::string const a = pelsOf(straight), b = pelsOf(weak);
  long differ = 0, painted = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    differ += a[i] != b[i];
    painted += a[i];
  }
  EXPECT_GT(painted, 2300);
  EXPECT_LT(differ, 130);  // the floors of the corners, a pel at most

  Buffer part(100, 90);
  part.imageFromClientXform(straight.imageFromClientXform());
  part.window(40, 30, 20, 70, true);
  P::drawSynthetic(soft, bent, part, 1);
  part.setEntire();
  for (long y = 0; y < 90; ++y)
    for (long x = 0; x < 100; ++x)
      EXPECT_EQ(part.get(x, y), x >= 40 && x < 60 && y >= 30 ? weak.get(x, y) : 0) << x << ' ' << y;
}

TEST(SyntheticImages, BadInputPaintsNothing)
{
  double const inf = std::numeric_limits<double>::infinity();
  Poly const square = Poly::rectangle(4, 4, {4, 4});
  Buffer buffer(9, 8);
  EXPECT_THROW(square.drawSynthetic(gxXform<2>(), Buffer()), gxPel::UnboundWindow);
  EXPECT_THROW(square.drawSynthetic(Handle(), buffer), gxBadPointer);
  EXPECT_THROW(square.drawSynthetic(gxXform<2>(gxMatrix<2>(1, 1, 1, 1), Point()), buffer), gxMathError::Singular);
  EXPECT_THROW(square.drawSynthetic(gxXform<2>(gxMatrix<2>(inf, 0, 0, 1), Point()), buffer), gxMathError::Singular);
  Poly open = square;
  open.open();
  open.drawSynthetic(Handle(), Buffer());  // nothing is asked of what has no inside
  for (Point const &far : {Point(inf, 0), Point(0, std::nan("")), Point(-40, 0), Point(0, 9e9)})
    square.drawSynthetic(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), far), buffer);
  EXPECT_THROW(square.drawSynthetic(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), Point(1e300, 0)), buffer),
               gxShapesError::DegenerateShape);
  // Through a transform that bends, too: lines of as many points as there are pels would take all memory.
  Handle const lens(new gx2XformLens({4, 4}, 50, 1e-6));
  for (double const scale : {1e9, 1e200, inf, std::nan("")}) {
    buffer.imageFromClientXform(gxXform<2>(gxMatrix<2>(scale, 0, 0, 1), Point(scale, 0)));
    try {
      square.drawSynthetic(lens, buffer);
    } catch (gxException const &) {  // of the transform
    }
  }
  buffer.imageFromClientXform(gxXform<2>());
  EXPECT_EQ(spans(buffer), ". . . . . . . . ");
  // The window lies deep inside of an outline that is far larger.
  square.drawSynthetic(gxXform<2>(gxMatrix<2>(1e8, 0, 0, 1e8), Point(-4e8, -4e8)), buffer);
  EXPECT_EQ(spans(buffer), "0+9 0+9 0+9 0+9 0+9 0+9 0+9 0+9 ");
}

struct Stage {
  Stage() { tablet.visible(true); }
  ScopeLog log;
  LogScope scope{log, "i", {100, 100}};
  gxUITablet tablet{&scope, nullptr};

  std::vector<std::string> lines(std::function<void(gxUITablet &)> const &draw)
  {
    draw(tablet);
    std::vector<std::string> strokes;
    for (std::string const &line : log.take())
      if (line.find("lineSeg") != std::string::npos)
        strokes.push_back(line.substr(0, line.find(" [")));
    return strokes;
  }
};

TEST(Overlays, WireframesExtensionsAndArcs)
{
  Poly square = Poly::rectangle(4, 4, {4, 4});
  gxXform<2> const twice(gxMatrix<2>(2, 0, 0, 2), Point(1, 0));
  Stage stage;
  auto const wireframe = stage.lines([&](gxUITablet &t) { square.drawWireframe(twice, t); });
  EXPECT_EQ(wireframe.size(), 4u);
  EXPECT_EQ(wireframe[0], "i: lineSeg (13, 12) (5, 12)");
  gxSMDGDModel model;
  model << square << square;
  EXPECT_EQ(stage.lines([&](gxUITablet &t) { model.drawWireframe(twice, t); }).size(), 8u);

  EXPECT_TRUE(stage.lines([&](gxUITablet &t) { gxSMDGDModelPrivate::drawNegWireframe(model, twice, t); }).empty());
  EXPECT_TRUE(P::boundingBoxNeg(square, twice).isEmpty());
  P::setExtensions_(square, 0.25);
  auto const extensions = stage.lines(
      [&](gxUITablet &t) { P::drawNegWireframe(square, twice, t, gxColor::redColor(), gxUITablet::image); });
  EXPECT_EQ(extensions.size(), 8u);
  EXPECT_EQ(P::boundingBoxNeg(square, twice), gxRect({3, 2}, Point(12, 12)));
  gxSMDGDModel both;
  both << square << gx2Rigid(gxDegree(0), Point(10, 0)) * square;
  EXPECT_EQ(gxSMDGDModelPrivate::boundingBoxNeg(both, gxXform<2>()).size(), Point(16, 6));

  gx2SegmentArc const arc({0, 0}, 0.04, gxDegree(0), gxDegree(-90));
  auto const chords =
      stage.lines([&](gxUITablet &t) { P::overlayArc_(t, arc, gxXform<2>(), gxColor::redColor(), gxUITablet::image); });
  EXPECT_EQ(chords.size(), 19u);
  EXPECT_EQ(chords[0].substr(0, 20), "i: lineSeg (0.04, 0)");
}

TEST(Overlays, ArrowsTellDirectionAndSides)
{
  Poly poly;
  poly << Corner{0, 0}.vertex() << Corner{20, 0}.vertex();
  Stage stage;
  auto const plain = stage.lines([&](gxUITablet &t) { poly.drawDirectionArrows(gxXform<2>(), t, 4); });
  EXPECT_THAT(plain, testing::ElementsAre("i: lineSeg (6, -4) (10, 0)", "i: lineSeg (6, 4) (10, 0)",
                                          "i: lineSeg (11, 4) (9, 4)", "i: lineSeg (10, 5) (10, 3)",
                                          "i: lineSeg (11, -4) (9, -4)"));
  gxXform<2> const mirror(gxMatrix<2>(1, 0, 0, -1), Point());
  auto const mirrored = stage.lines([&](gxUITablet &t) { poly.drawDirectionArrows(mirror, t, 4); });
  EXPECT_EQ(mirrored[1], "i: lineSeg (6, -4) (10, 0)");
  poly.toggleDirection();
  auto const reversed = stage.lines([&](gxUITablet &t) { poly.drawDirectionArrows(gxXform<2>(), t, 4); });
  EXPECT_EQ(reversed[1], "i: lineSeg (14, -4) (10, 0)");

  poly.positiveArrowColor(gxColor::redColor());
  gxGraphicList list;
  poly.drawDirectionArrows(gxXform<2>(), list, 4);
  ASSERT_EQ(list.items().size(), 5u);
  EXPECT_EQ(list.items()[1]->props().penColor(), gxColor::redColor());
  EXPECT_EQ(list.items()[0]->props().penColor(), gxColor::greenColor());
  EXPECT_EQ(stage.lines([&](gxUITablet &t) { list.draw(t, gxUITablet::image); }), reversed);
  gxSMDGDModel model;
  model << poly << Poly::circle(3, {0, 0});
  EXPECT_EQ(stage.lines([&](gxUITablet &t) { model.drawDirectionArrows(gxXform<2>(), t); }).size(), 15u);
}

}  // namespace
