#include "dispc/sketchop.h"
#include "dispc/uitablet.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/circle.h"
#include "foundation/mappedshape.h"
#include "foundation/matherror.h"
#include "foundation/shapeserror.h"
#include "foundation/xformbase.h"
#include "tests/support/bytes.h"
#include "tests/support/logscope.h"
#include "tests/support/outlines.h"

#include <gmock/gmock.h>

#include <cmath>

namespace
{

using Point = gxVector<2>;
using Layers = gxUITablet::Layers;
constexpr Layers image = gxUITablet::image;

/// Keeps the lines that it is given.
class StrokeScope : public LogScope
{
 public:
  using LogScope::draw;
  using LogScope::LogScope;
  void draw(gxLineSeg const &s, gxGraphicProps const &p) override
  {
    EXPECT_TRUE(screenUpdatesLocked());
    strokes.push_back(s);
    LogScope::draw(s, p);
  }
  std::vector<gxLineSeg> strokes;
};

struct Stage {
  Stage()
  {
    tablet.visible(true);
    tablet.recordOn().push(true);
  }
  ScopeLog log;
  StrokeScope scope{log, "image", {100, 100}};
  gxUITablet tablet{&scope, nullptr};

  template <class Polygon>
  std::vector<gxLineSeg> strokes(Polygon const &polygon, gxGraphicProps const &props)
  {
    scope.strokes.clear();
    tablet.draw(polygon, props, image);
    EXPECT_FALSE(scope.screenUpdatesLocked());
    return scope.strokes;
  }
};

gxGraphicProps plain(bool showVertex = false, bool arrows = false)
{
  gxGraphicProps props;
  props.showVertex(showVertex);
  props.arrowHead(arrows);
  return props;
}

gxXform<2> skewed(double determinantSign)
{
  return {gxMatrix<2>(1.5, 0.4, 0.3, 0.9 * determinantSign), Point(7, -3)};
}

double lengthOf(std::vector<gxLineSeg> const &strokes)
{
  double sum = 0.0;
  for (gxLineSeg const &s : strokes)
    sum += s.length();
  return sum;
}

// The strokes are the rounded outline: none leaves it by more than a chord may, and none is missing.
TEST(PolygonStrokes, CoverTheOutline)
{
  Random random(3);
  int drawn = 0;
  for (int run = 0; run < 300; ++run) {
    gxGenPoly polygon;
    try {
      std::vector<Corner> const corners = star(random, 3 + random.below(6));
      for (Corner const &c : corners)
        polygon.insertVertex({c.x, c.y}, c.radius, gxDegree(c.span));
      if (random.one(2))
        polygon.close(gxDegree(random.one(2) ? 0.0 : 20.0));
    } catch (gxShapesError::Errors const &) {
      continue;
    }
    ++drawn;
    gxXform<2> const own = random.one(2) ? skewed(random.one(2) ? 1 : -1) : gxXform<2>(), map = skewed(1);
    gxGenPoly const seen = polygon.map(own);
    Stage stage;
    stage.tablet.baseMap(map);
    std::vector<gxLineSeg> const rounded = stage.strokes(seen, plain(false, true));
    gxGenPoly const mapped = seen.map(map);
    gxPtrHandle<gxShape> const outline = mapped.decompose();
    for (gxLineSeg const &s : rounded) {
      EXPECT_LT(outline->distanceToPoint(s.start()), 1e-6);
      EXPECT_LT(outline->distanceToPoint(s.midPoint()), 0.15);  // 0.05 on circles
    }
    double const perimeter = outline->perimeter();
    EXPECT_LE(lengthOf(rounded), perimeter * (1 + 1e-6));
    EXPECT_GE(lengthOf(rounded), perimeter * 0.995);

    std::size_t next = 0;
    std::vector<gxLineSeg> const whole = stage.strokes(seen, plain(true, true));
    for (long i = 0; i < mapped.numSegments(); ++i) {
      if (!mapped.isLineSegment(i)) {
        while (next < whole.size() &&
               whole[next].start().distance(mapped.vertexPoint((i + 1) % mapped.numVertices())) > 1e-6)
          ++next;
        ++next;
      } else {
        ASSERT_LT(next, whole.size());
        EXPECT_LT(whole[next].start().distance(mapped.lineSegment(i, true).start()), 1e-9);
        EXPECT_LT(whole[next].end().distance(mapped.lineSegment(i, true).end()), 1e-9);
        ++next;
      }
    }
  }
  EXPECT_GT(drawn, 100);
}

// The rule of the chords, with the points of each found by themselves.
TEST(PolygonStrokes, ChordsStayOnTheirArcHoweverManyThereAre)
{
  for (double const radius : {0.03, 1.0, 300.0, 2e4, 1e6})
    for (double const span : {180.0, -350.0, 90.0, 3.0})
      for (gxXform<2> const &map : {gxXform<2>(), skewed(-1), gxXform<2>(gxMatrix<2>(0, -2, 2, 0), Point(4, 5))}) {
        auto const at = [&](double angle) { return Point(10, 20) + Point(radius, gxDegree(angle)); };
        gxGenPoly polygon;
        polygon.insertVertex(at(33), 0.0, gxDegree(0));
        polygon.insertVertex(at(33 + span), 0.0, gxDegree(span));
        std::vector<gxLineSeg> const strokes = Stage().strokes(polygon.map(map), plain());

        double const across = (map.matrix().inverse() * Point(1, 0)).len();  // where the client angle is 0
        double const seen = radius / across;
        double const step =
            seen > 0.05 ? std::min(5.0, 2 * std::acos(1 - 0.05 / seen) * 180 / 3.14159265358979323846) : 5;
        auto const n = static_cast<std::size_t>(std::abs(span / step)) + 1;
        ASSERT_EQ(strokes.size(), n) << radius << ' ' << span;
        for (std::size_t k = 0; k < n; ++k) {
          double const bound = 1e-15 * (radius + 30) * (double(k) + 20);
          ASSERT_LT(strokes[k].end().distance(map * at(33 + span * double(k) / double(n))), bound)
              << radius << span << k;
          ASSERT_LT(strokes[k].start().distance(map * at(33 + span * double(k + 1) / double(n))), bound);
        }
      }
}

// A mark: two arms from the middle, a plus on one side and a minus on the other; five strokes behind those of the
// segments.
TEST(PolygonStrokes, MarksTellDirectionAndSides)
{
  gx2Wireframe square(gxGenPoly(gxRect({0, 0}, Point(100, 100))));
  auto const markOf = [](gx2Wireframe const &w, gxXform<2> const &map) {
    Stage stage;
    stage.tablet.baseMap(map);
    std::vector<gxLineSeg> const strokes = stage.strokes(w, plain(false, true));
    EXPECT_EQ(strokes.size(), 4u + 4 * 5u);
    return std::vector<gxLineSeg>(strokes.begin() + 9, strokes.begin() + 14);  // of the segment that ends at vertex 1
  };
  auto const arms = [](Point at, Point b, Point a, Point plus, Point minus) {
    Point const x(2.4, 0), y(0, 2.4);
    return std::vector<gxLineSeg>{{at, b}, {at, a}, {plus - x, plus + x}, {plus - y, plus + y}, {minus - x, minus + x}};
  };
  auto const expectNear = [](std::vector<gxLineSeg> const &a, std::vector<gxLineSeg> const &b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      EXPECT_LT(a[i].start().distance(b[i].start()), 1e-9) << i << ": " << a[i] << " and " << b[i];
      EXPECT_LT(a[i].end().distance(b[i].end()), 1e-9) << i << ": " << a[i] << " and " << b[i];
    }
  };
  expectNear(markOf(square, {}), arms({50, 0}, {42, -8}, {42, 8}, {50, -8}, {50, 8}));
  gxXform<2> const mirror(gxMatrix<2>(1, 0, 0, -1), Point());
  expectNear(markOf(square, mirror), arms({50, 0}, {42, 8}, {42, -8}, {50, 8}, {50, -8}));
  square.polarity(true);
  expectNear(markOf(square, {}), arms({50, 0}, {58, 8}, {58, -8}, {50, 8}, {50, -8}));

  // Of chords of 100, 100, 100, 19 and more, the short one has no mark; a half circle has its mark at its top.
  gxGenPoly flag;
  for (Point const &p : {Point(0, 0), Point(100, 0), Point(100, 19), Point(0, 19)})
    flag.insertVertex(p, 0, gxRadian());
  EXPECT_EQ(Stage().strokes(gx2Wireframe(flag), plain(false, true)).size(), 3u + 2 * 5u);
  gxGenPoly arch;
  arch.insertVertex({0, 0}, 0, gxRadian());
  arch.insertVertex({20, 0}, 0, gxDegree(180));
  Stage stage;
  std::vector<gxLineSeg> const strokes = stage.strokes(gx2Wireframe(arch), plain(false, true));
  expectNear({strokes[strokes.size() - 5]}, {{{10, -10}, {8.4, -11.6}}});
  // Of a polygon without length nothing can be told.
  gxGenPoly single;
  single.insertVertex({3, 3}, 5, gxRadian());
  EXPECT_TRUE(Stage().strokes(gx2Wireframe(single), plain(true, true)).empty());
  EXPECT_TRUE(Stage().strokes(gxGenPoly(), plain(true, true)).empty());
}

TEST(PolygonDraws, FollowThePatternOfAllShapes)
{
  gxGenPoly const square(gxRect({0, 0}, Point(10, 10)));
  gx2Wireframe const wireframe(square);
  Stage stage;
  stage.tablet.draw(square, gxColor::redColor(), image, true);
  EXPECT_EQ(stage.log.take().front(), "image: lock 1");
  struct Row {
    std::function<void(gxUITablet &)> draw;
    gx_SketchCode code;
    std::size_t strokes;
  };
  gxPtrHandle_const<gx2XformBase> const shift(new gx2XformLinear(gxXform<2>(gxMatrix<2>(1, 0, 0, 1), Point(5, 0))));
  std::vector<Row> const rows = {
      {[&](gxUITablet &t) { t.draw(square, plain(false, true), image); }, gx_SketchCode::genPoly, 4},
      {[&](gxUITablet &t) { t.draw(square, plain(true, true), image); }, gx_SketchCode::genPolyVertices, 4},
      {[&](gxUITablet &t) { t.draw(square, gxColor::redColor(), image, false); }, gx_SketchCode::genPoly, 4},
      {[&](gxUITablet &t) { t.draw(wireframe, plain(false, true), image); }, gx_SketchCode::wireframe, 24},
      {[&](gxUITablet &t) { t.draw(wireframe, gxColor::redColor(), image, true); }, gx_SketchCode::wireframe, 4},
      {[&](gxUITablet &t) { t.draw(static_cast<gxShape const &>(wireframe), plain(false, true), image); },
       gx_SketchCode::genPoly, 4},
      {[&](gxUITablet &t) { t.draw(gxMappedShape(square.clone(), shift), plain(), image); }, gx_SketchCode::genPoly, 4},
  };
  for (Row const &row : rows) {
    gxUISketch &sketch = stage.tablet.sketch();
    long const before = sketch.size();
    stage.scope.strokes.clear();
    row.draw(stage.tablet);
    EXPECT_EQ(stage.scope.strokes.size(), row.strokes);
    gx_UISketchOpHeader header;
    header.parseByteStream(sketch.bytes() + before);
    EXPECT_EQ(header.opcode(), static_cast<long>(row.code));
  }
  EXPECT_EQ(stage.scope.strokes.front(), gxLineSeg({5, 0}, {15, 0}));  // the mapped shape

  // A map without an inverse: refused before anything is drawn, locked or recorded. Hidden tablets do not ask.
  stage.tablet.baseMap(gxXform<2>(gxMatrix<2>(1, 1, 1, 1), Point()));
  long const before = stage.tablet.sketch().size();
  stage.scope.strokes.clear();
  stage.log.take();
  EXPECT_THROW(stage.tablet.draw(square, plain(), image), gxMathError::Singular);
  EXPECT_TRUE(stage.scope.strokes.empty());
  EXPECT_TRUE(stage.log.take().empty()) << "not even a lock";
  EXPECT_EQ(stage.tablet.sketch().size(), before);
  stage.tablet.visible(false);
  long const hidden = stage.tablet.sketch().size();
  stage.tablet.draw(square, plain(), image);
  EXPECT_GT(stage.tablet.sketch().size(), hidden);
}

// Offset by offset: a right angle of legs 4 and 3 whose corner is rounded by 1.
TEST(PolygonDraws, RecordHasTheDocumentedBytes)
{
  gx2Wireframe wireframe;
  wireframe.insertVertex({0, 0}, 0, gxRadian());
  wireframe.insertVertex({4, 0}, -1, gxRadian(), gxDimTol(-1, 3, 5));
  wireframe.insertVertex({4, 3}, 0, gxRadian());
  gxUITablet tablet;
  tablet.recordOn().push(true);
  tablet.draw(wireframe, plain(), image);
  auto const unset = [](Bytes &b) { b.f64s({-1, -1, -1}).i32(0).zeros(4); };
  Bytes expected;
  expected.prefix(false, 1, false).head(41, 0).cyan();
  expected.f64s({0, 0, 1, 0, 0, 1, 1}).i32s({1, 3});
  expected.f64s({0, 0, 0, 0});
  unset(expected);
  expected.f64s({4, 0, -1, 0}).f64s({-1, 3, 5}).i32(0).zeros(4);
  expected.f64s({4, 3, 0, 0});
  unset(expected);
  expected.f64s({0, 0, 3, 0, 4, 3}).f64s({0, 0, 4, 1, 4, 3}).f64s({0, 90, 0}).i32(1);
  gxUISketch const &sketch = tablet.sketch();
  EXPECT_EQ(std::vector<unsigned char>(sketch.bytes(), sketch.bytes() + sketch.size()), expected.get());
}

}  // namespace
