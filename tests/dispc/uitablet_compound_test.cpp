#include "dispc/detail/uisketch_blocks.h"
#include "foundation/rlebuf.h"
#include "tests/support/drawing.h"
#include "tests/support/shapes.h"

#include <gmock/gmock.h>

#include <numbers>

namespace
{
using testing::ElementsAre;
constexpr auto image = gxUITablet::image;
constexpr double pi = std::numbers::pi;

/// On the image alone, and in pels.
struct Compound : DrawingTest {
  Compound()
  {
    tablet.setScope(gxUITablet::overlay, nullptr, false);
    tablet.baseMap(gxXform<2>());
    log.take();
  }
  /// The calls on the scope, told by their first word.
  std::vector<std::string> calls()
  {
    std::vector<std::string> words;
    for (std::string const &line : log.take())
      words.push_back(line.substr(3, line.find(' ', 3) - 3));
    return words;
  }
  /// The codes of the records, for records of fixed size and no change of properties.
  std::vector<int> codes()
  {
    std::vector<int> all;
    for (long at = 0; at < tablet.sketch().size();) {
      int const code = tablet.sketch().bytes()[at];
      gx_SketchCodeInfo const *const info = gf_sketchCodeInfo(code);
      all.push_back(code);
      at += info && !info->open && code != 40 ? 8 + info->size : 1'000'000;
    }
    tablet.sketch().erase();
    return all;
  }
};

TEST_F(Compound, AnnuliRecordAsTwoCirclesAndInColourAsOne)
{
  gxAnnulus const ring(gxCircle({1, 2}, 3), gxCircle({1, 2}, 5));
  tablet.draw(ring, gxGraphicProps(), image);
  EXPECT_EQ(recorded(), Bytes().drawn(4, 0, {1, 2, 5}).drawn(4, 0, {1, 2, 3}).get());
  EXPECT_THAT(calls(), ElementsAre("ellipse", "ellipse"));
  tablet.draw(ring, gxColor::cyanColor(), image);
  EXPECT_THAT(codes(), ElementsAre(9));
  EXPECT_THAT(calls(), ElementsAre("lock", "lock", "ellipse", "unlock", "lock", "ellipse", "unlock", "unlock"));
}

TEST_F(Compound, GeneralRectanglesGoOutByTheirRounding)
{
  auto const rect = [](double rx, double ry) { return gxGenRect({50, 40}, {20, 10}, gxRadian(0), {rx, ry}); };
  tablet.draw(rect(0, 0), gxGraphicProps(), image);
  EXPECT_THAT(log.take(),
              ElementsAre("i: lock 1", "i: drawTo from (40, 35) to (60, 35)", "i: drawTo from (60, 35) to (60, 45)",
                          "i: drawTo from (60, 45) to (40, 45)", "i: drawTo from (40, 45) to (40, 35)", "i: unlock"));
  tablet.draw(rect(1, 1), gxGraphicProps(), image);
  tablet.draw(rect(1, 0), gxGraphicProps(), image);
  EXPECT_THAT(calls(), ElementsAre("lock", "ellipse", "unlock", "lock", "genRect", "unlock"));
  EXPECT_THAT(codes(), ElementsAre(8, 8, 8));
}

TEST_F(Compound, TheArmOfACrossIsInPels)
{
  tablet.baseMap(gxXform<2>(gxMatrix<2>(9, 0, 0, 9), {}));
  log.take();
  tablet.drawCross({2, 3}, gxRadian(0), gxColor::cyanColor(), image);
  EXPECT_THAT(log.take(), ElementsAre("i: drawToRelPels -14 0", "i: drawToRelPels 0 -14"));
  tablet.draw(gxCross({2, 3}, gxRadian(0.5), -4), gxGraphicProps(), image);
  EXPECT_EQ(recorded(), Bytes().drawn(37, 0, {2, 3, 0}).i32s({7, 0}).drawn(37, 0, {2, 3, 0.5}).i32s({-4, -1}).get());
}

TEST_F(Compound, PointSetsShowTheirFirstTwoPoints)
{
  gxPointSet set;
  tablet.draw(set, gxColor(1, 2, 3), image);
  EXPECT_TRUE(tablet.sketch().isNull()) << "not even the properties";
  set.append({5, 5});
  tablet.draw(set, gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(0));
  set.append({8, 9});
  log.take();
  tablet.draw(set, gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(4, 2, 0, 0));
  EXPECT_EQ(log.lines.size(), 4u);
  EXPECT_THAT(calls(), ElementsAre("ellipse", "lineSeg", "point", "point"));
  tablet.draw(gxLineSegSet(), gxGraphicProps(), image);
  EXPECT_TRUE(tablet.sketch().isNull());
  tablet.draw(gxLineSegSet({gxLineSeg({0, 0}, {1, 1}), gxLineSeg({1, 1}, {2, 0})}), gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(2, 2));
}

TEST_F(Compound, SplinesRecordTheirCurvesWhileTheyDraw)
{
  gxInterpSpline spline;
  spline.points({{0, 0}, {10, 20}, {30, 5}});
  long const n = spline.numBezierCurves();
  ASSERT_EQ(n, 2);
  tablet.draw(spline, gxGraphicProps(), image);
  EXPECT_THAT(calls(), ElementsAre("polyline", "polyline"));
  EXPECT_THAT(codes(), ElementsAre(42, 42, 43));
  tablet.visible(false);
  tablet.draw(spline, gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(43)) << "refused, only its own record is left";
}

TEST_F(Compound, CurvesAreFlattenedWithinAPel)
{
  tablet.baseMap(gxXform<2>(gxMatrix<2>(1e7, 0, 0, 1e7), {}));
  log.take();
  gxBezierCurve const curve({{0, 0}, {30, 90}, {60, -90}, {90, 0}}, {1, 1, 1, 1});
  tablet.draw(curve, gxGraphicProps(), image);
  EXPECT_THAT(calls(), ElementsAre("polyline")) << "too many points at a pel: the tolerance doubles until it ends";
  tablet.baseMap(gxXform<2>(gxMatrix<2>(0, 0, 0, 0), {}));
  log.take();
  tablet.draw(curve, gxGraphicProps(), image);
  EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(Compound, SectionsChooseArcsChordsOrWholeEllipses)
{
  gxEllipseAnnulus const ring(gxEllipse({50, 40}, {10, 10}, gxRadian(0)), gxEllipse({50, 40}, {20, 20}, gxRadian(0)));
  auto const draw = [&](double a, double b, bool arrow) {
    tablet.draw(gxEllipseAnnulusSection(ring, gxRadian(a), gxRadian(b)), gxColor::cyanColor(), image, arrow, true);
    return calls();
  };
  EXPECT_THAT(draw(0.5, 2.0, false), ElementsAre("lineSeg", "lineSeg", "ellipseArc", "ellipseArc"));
  EXPECT_THAT(draw(0, 2 * pi, false), ElementsAre("lineSeg", "lineSeg", "ellipse", "ellipse"));
  EXPECT_THAT(draw(0, 6.28, false), ElementsAre("lineSeg", "lineSeg", "ellipse", "ellipse")) << "the same direction";
  EXPECT_THAT(draw(1.0, 1.005, false), ElementsAre("lineSeg", "lineSeg", "lineSeg", "lineSeg"));
  EXPECT_THAT(draw(1.0, 1.0, false), ElementsAre("lineSeg", "lineSeg", "ellipseArc", "ellipseArc"));
  EXPECT_THAT(draw(0.5, 2.0, true), ElementsAre("lineSeg", "lineSeg", "ellipseArc", "ellipseArc", "lock",
                                                "drawToRelPels", "drawToRelPels", "unlock"));
  tablet.sketch().erase();
  draw(0.5, 2.0, true);
  EXPECT_THAT(codes(), ElementsAre(7));
  gxGraphicProps plain;
  plain.arrowHead(false);
  tablet.draw(gxEllipseAnnulusSection(ring, gxRadian(0.5), gxRadian(2)), plain, image);
  std::vector<unsigned char> const bytes = recorded();
  ASSERT_EQ(bytes.size(), 22u + 8 + 554);
  EXPECT_EQ(bytes[22], 39);
  EXPECT_EQ(bytes[22 + 8 + 552], 0);
  EXPECT_EQ(bytes[22 + 8 + 553], 1);
}

TEST_F(Compound, ArrowsLeaveThePenAtTheTip)
{
  tablet.arrowHead(gxPoint(10, 10), {1, 0}, 10.0f, gxGraphicProps(), image);
  EXPECT_THAT(log.take(), ElementsAre("i: lock 1", "i: drawToRelPels -8 -4", "i: drawToRelPels -8 4", "i: unlock"));
  EXPECT_EQ(i.drawPoint(), gxPoint(10, 10));
  EXPECT_EQ(recorded(), Bytes().drawn(26, 0, {10, 10, 1, 0}).f32(10.0f).get());
  tablet.draw(gxCoordAxes({0, 0}, {10, 0}, {0, 10}), gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(10));
  EXPECT_THAT(calls(), ElementsAre("lock", "lineSeg", "lineSeg", "lock", "drawToRelPels", "drawToRelPels", "unlock",
                                   "lock", "drawToRelPels", "drawToRelPels", "unlock", "unlock"));
}

TEST_F(Compound, RunsGoOutAsTheyAreAndAreRecordedRowByRow)
{
  gxPelBuffer<unsigned char> pels(3, 2);
  pels.put(1, 0, 7);
  gxRLEBuffer runs;
  runs.encode(pels);
  tablet.scaleExact({0.5, 0.5});
  log.take();
  tablet.draw(runs, gxPoint(4, 6), {9, 8}, true, 5, true, image);
  EXPECT_THAT(log.take(), ElementsAre("i: runs (2, 3)"));
  EXPECT_EQ(recorded(), Bytes()
                            .moved(14, 0, {4, 6})
                            .u8(1)
                            .u8(5)
                            .u8(1)
                            .i32(2)
                            .u8(9)
                            .u8(8)
                            .i32s({3, 2})
                            .u8s({0, 1, 7, 1, 0, 1})
                            .u8(runs.pointToRow(0)[3].value)
                            .u8(0)
                            .u8(0)
                            .u8(3)
                            .u8(runs.pointToRow(1)[1].value)
                            .u8(0)
                            .get());
}

TEST_F(Compound, AnyShapeFindsItsOperationThroughItsTransforms)
{
  gxXform<2> const shift(gxMatrix<2>(), {10, 0});
  gxXform<2> const twice(gxMatrix<2>(2, 0, 0, 2), {});
  gxMappedShape const inner(gxLineSeg({1, 1}, {2, 2}), twice);
  tablet.draw(gxMappedShape(inner, shift), gxGraphicProps(), image);
  EXPECT_THAT(log.take(), ElementsAre("i: lineSeg (12, 2) (14, 4)")) << "the outer transform is applied last";
  tablet.draw(gxMappedShape(gxRect({0, 0}, {4, 4}), shift), gxGraphicProps(), image);
  tablet.draw(gxMappedShape(gxCircle({0, 0}, 4), shift), gxGraphicProps(), image);
  gxShape const &ring =
      gxEllipseAnnulus(gxEllipse({0, 0}, {1, 1}, gxRadian(0)), gxEllipse({0, 0}, {2, 2}, gxRadian(0)));
  tablet.sketch().erase();
  tablet.draw(ring, gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(5, 5));
  gxShape const &arc = gxEllipseArc2(gxEllipse2({3, 2}, gxRadian(0), {5, 5}), gxRadian(1), gxRadian(2));
  tablet.draw(gxMappedShape(arc, shift), gxGraphicProps(), image);
  EXPECT_THAT(codes(), ElementsAre(46));
  EXPECT_THROW(tablet.draw(gxMappedShape(), gxGraphicProps(), image), gxBadPointer);
}

TEST_F(Compound, GapsOfAContourAreClosedByLines)
{
  gxContourTree tree;
  tree.addChild(gxLineSeg({0, 0}, {1, 0}));
  tree.addChild(gxLineSeg({1, 0}, {2, 0}));
  tree.addChild(gxLineSeg({2, 5}, {0, 5}));
  tablet.draw(tree, gxGraphicProps(), image);
  EXPECT_THAT(log.take(), ElementsAre("i: lineSeg (0, 0) (1, 0)", "i: lineSeg (1, 0) (2, 0)",
                                      "i: lineSeg (2, 0) (2, 5)", "i: lineSeg (2, 5) (0, 5)"));
  tree.isClosed(true);
  tablet.draw(tree, gxGraphicProps(), image);
  EXPECT_EQ(log.take().back(), "i: lineSeg (0, 5) (0, 0)");
  tree.addChild(gxCircle({3, 3}, 1));
  tablet.draw(tree, gxGraphicProps(), image);
  EXPECT_THAT(calls(), ElementsAre("lineSeg", "lineSeg", "lineSeg", "lineSeg", "ellipse"))
      << "a child without ends leaves no gap";
}
}  // namespace
