#include "dispc/uierror.h"
#include "tests/support/drawing.h"
#include "tests/support/shapes.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <random>

namespace
{
using testing::ElementsAre;
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
using Drawing = DrawingTest;

gxGraphicProps filled(gxColor const &color)
{
  gxGraphicProps props;
  props.penColor(color);
  props.fill(true);
  return props;
}

TEST_F(Drawing, ThePenSentinelIsKnownByAddressAndByValue)
{
  i.drawStart(gxPoint(5.25, 6));
  tablet.draw(tablet.drawPointArg(), gxGraphicProps(), image);
  tablet.draw(gxPoint(1.234567e+89, 9.876543e+21), gxGraphicProps(), image);
  tablet.draw(gxPoint(1, 2), gxGraphicProps(), image);
  EXPECT_THAT(log.take(), ElementsAre("i: point (5.25, 6) pen", "i: point (5.25, 6) pen", "i: point (12, 6)"));
  EXPECT_EQ(recorded(), Bytes()
                            .drawn(0, 0, {1.234567e+89, 9.876543e+21})
                            .drawn(0, 0, {1.234567e+89, 9.876543e+21})
                            .drawn(0, 0, {1, 2})
                            .get());
}

TEST_F(Drawing, SegmentsLinesAndTheirRecords)
{
  gxGraphicProps wide(gxColor(9, 8, 7), 4, gxGraphicProps::gePenStyle(0), false);
  tablet.draw(gxLineSeg({1, 1}, {2, 2}), wide, overlay);
  tablet.draw(gxLineSeg({1, 1}, {2, 2}), gxColor(9, 8, 7), overlay);
  EXPECT_EQ(log.lines.size(), 2u);
  EXPECT_EQ(recorded(), Bytes()
                            .prefix(false, 4)
                            .head(2, 1)
                            .rgb(9, 8, 7)
                            .f64s({1, 1, 2, 2})
                            .prefix()
                            .head(2, 1)
                            .rgb(9, 8, 7)
                            .f64s({1, 1, 2, 2})
                            .get());
}

/// Rows: direction and position in pels (the map is undone), and where the pen goes.
TEST_F(Drawing, AnEndlessLineIsCutAtTheScope)
{
  tablet.baseMap(gxXform<2>());
  log.take();
  struct Row {
    gxVector<2> dir, pos, from, to;
  };
  Row const rows[] = {
      {{1, 0}, {7, 20}, {0.5, 20}, {100.5, 20}},         // level
      {{-1, 0}, {7, 20}, {0.5, 20}, {100.5, 20}},        // against the axis: not sorted, so no turn either
      {{0, 1}, {7, 20}, {7, 0.5}, {7, 80.5}},            // upright
      {{1, 1}, {0, 0}, {0.5, 0.5}, {80.5, 80.5}},        // leaves at the bottom
      {{-1, -1}, {0, 0}, {80.5, 80.5}, {0.5, 0.5}},      // runs backwards
      {{1, 1}, {200, 0}, {200.5, 0.5}, {100.5, -99.5}},  // misses: t0 > t1, and still goes out
      {{1, 1e-13}, {0, 40}, {0.5, 40}, {100.5, 40}},     // as good as level
  };
  for (Row const &row : rows) {
    tablet.draw(gxLine(row.dir, row.pos), gxGraphicProps(), image);
    ASSERT_EQ(log.lines.size(), 1u);
    std::ostringstream os;
    gxVector<2> const to(row.to.x(), row.to.y());
    os << "i: drawTo from " << row.from << " to " << to;
    EXPECT_EQ(log.take().front(), os.str()) << row.dir << row.pos;
  }
  EXPECT_EQ(tablet.sketch().size(), 7 * 40);
}

TEST_F(Drawing, RectanglesGoOutByTheirCorners)
{
  gxRect const rect({0, 1}, {10, 5});
  tablet.draw(rect, gxGraphicProps(), image);
  EXPECT_THAT(log.take(),
              ElementsAre("i: lock 1", "i: drawTo from (10, 3) to (30, 3)", "i: drawTo from (30, 3) to (30, 18)",
                          "i: drawTo from (30, 18) to (10, 18)", "i: drawTo from (10, 18) to (10, 3)", "i: unlock"));
  tablet.draw(rect, gxColor(1, 2, 3), image, true);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0].substr(0, 52), "i: polygon mode 1 (10, 3) (30, 3) (30, 18) (10, 18) ");
  EXPECT_EQ(recorded(),
            Bytes().drawn(32, 0, {0, 1, 10, 5}).prefix(true).head(32, 0).rgb(1, 2, 3).f64s({0, 1, 10, 5}).get());
}

TEST_F(Drawing, ACircleIsDrawnAsAnEllipseAndRecordedAsACircle)
{
  tablet.draw(gxCircle({1, 2}, 3), gxGraphicProps(), image);
  tablet.draw(gxCircle({1, 2}, 3), filled(gxColor::cyanColor()), image);
  gxEllipse const ellipse({1, 2}, {4, 2}, gxRadian(0.5));
  tablet.draw(ellipse, gxGraphicProps(), image);
  ASSERT_EQ(log.lines.size(), 3u);
  EXPECT_EQ(log.lines[0].substr(0, 20), "i: ellipse (12, 6) r");
  EXPECT_EQ(recorded(), Bytes()
                            .drawn(4, 0, {1, 2, 3})
                            .prefix(true)
                            .drawn(29, 0, {1, 2, 3})
                            .prefix()
                            .drawn(5, 0, {1, 2, 4, 2, 0.5})
                            .zeros(8)
                            .get());
}

TEST_F(Drawing, PolygonsAndPolylinesKeepTheirCounts)
{
  std::vector<gxVector<2>> const corners = {{0, 0}, {1, 0}, {0, 1}};
  tablet.draw(gxPolygon(corners, gxPolygon::alternate), filled(gxColor(4)), overlay);
  tablet.draw(gxPolyline(corners, true), gxGraphicProps(), overlay);
  tablet.draw(gxPolyline({}, false), gxGraphicProps(), overlay);
  EXPECT_EQ(log.lines[1], "o: polyline closed (10, 0) (12, 0) (10, 3)");
  EXPECT_EQ(log.lines[2], "o: polyline open");
  EXPECT_EQ(recorded(), Bytes()
                            .prefix(true)
                            .head(28, 1)
                            .index(4)
                            .i32s({1, 3})
                            .f64s({0, 0, 1, 0, 0, 1})
                            .prefix()
                            .head(44, 1)
                            .cyan()
                            .i32(3)
                            .f64s({0, 0, 1, 0, 0, 1})
                            .u8(1)
                            .head(44, 1)
                            .cyan()
                            .i32(0)
                            .u8(0)
                            .get());
}

TEST_F(Drawing, ImagesAreChosenByScaleModeAndRecordedRowByRow)
{
  gxPelBuffer<unsigned char> buffer(4, 3);
  for (long y = 0; y < 3; ++y)
    for (long x = 0; x < 4; ++x)
      buffer.put(x, y, static_cast<unsigned char>(10 * y + x));
  buffer.window(1, 1, 2, 2, true);
  buffer.imageFromClientXform(gxXform<2>(gxMatrix<2>(1, 2, 3, 5), gxVector<2>(6, 7)));
  tablet.draw(buffer, gxPoint(1, 2), true, 9, true, image);
  gxUISketch const once = tablet.sketch();
  tablet.scaleExact({2.5, 2.5});
  tablet.draw(buffer, gxPoint(1, 2), false, 9, false, image);
  tablet.scaleExact({0.5, 0.25});
  tablet.draw(buffer, gxPoint(1, 2), false, 9, false, image);
  tablet.draw(gxPelBuffer<unsigned short>(5, 6), gxPoint(0, 0), false, 1, image);
  EXPECT_THAT(
      log.take(),
      ElementsAre("i: image8 (2, 2) at (12, 6) pass 9 flag 1", "i: lock 1", "o: lock 1", "i: unlock", "o: unlock",
                  "i: expand8 (2, 2) at (30, 15) solid 9 flag 0 scale (2.5, 2.5) mode 0", "i: lock 1", "o: lock 1",
                  "i: unlock", "o: unlock", "i: sample8 (2, 2) at (6, 1.5) solid 9 flag 0 scale (0.5, 0.25)",
                  "i: sampleWords (5, 6) at (5, 0) solid 1 scale (0.5, 0.25)"));
  EXPECT_EQ(bytesOf(once), Bytes()
                               .moved(12, 0, {1, 2})
                               .u8(1)
                               .u8(9)
                               .f64s({6, 7, 1, 2, 3, 5, -1})
                               .i32(buffer.offset().x())
                               .i32(buffer.offset().y())
                               .i32s({2, 2})
                               .u8s({1, 11, 12, 21, 22})
                               .get());
  EXPECT_EQ(tablet.sketch().size(), 3 * once.size()) << "images of other pels leave no record";
}

// The two sides of a draw: who refuses, and what is recorded all the same.
TEST_F(Drawing, WhatIsRefusedIsRecordedAndNotDrawn)
{
  using Layers = gxUITablet::Layers;
  struct Row {
    char const *why;
    std::function<void(gxUITablet &, LogScope &)> arrange;
    Layers layer;
  };
  auto const asItIs = [](gxUITablet &, LogScope &) {};
  for (Row const &row : {Row{"hidden", [](gxUITablet &t, LogScope &) { t.visible(false); }, image},
                         Row{"switched off", [](gxUITablet &t, LogScope &) { t.drawOn().push(false); }, image},
                         Row{"overlay off", [](gxUITablet &t, LogScope &) { t.drawOnOverlay() = false; }, overlay},
                         Row{"no scope", [](gxUITablet &t, LogScope &) { t.setScope(image, nullptr, false); }, image},
                         Row{"no surface", [](gxUITablet &, LogScope &s) { s.null(true); }, image},
                         Row{"both layers", asItIs, gxUITablet::both}, Row{"layer 3", asItIs, Layers(3)},
                         Row{"layer 256", asItIs, Layers(256)}, Row{"layer 257", asItIs, Layers(257)},
                         Row{"negative", asItIs, Layers(-1)}}) {
    SCOPED_TRACE(row.why);
    LogScope scope(log, "s", {10, 10}), top(log, "t", {10, 10});
    gxUITablet t(&scope, &top);
    t.visible(true);
    row.arrange(t, scope);
    t.recordOn() = true;
    log.take();
    t.draw(gxCircle({1, 2}, 3), gxGraphicProps(), row.layer);
    t.draw(gxRect({1, 2}, {3, 4}), gxGraphicProps(), row.layer);
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(t.sketch().size(), 8 + 24 + 8 + 32);
    // A layer that does not fit into the byte must not become a good one.
    EXPECT_EQ(static_cast<signed char>(t.sketch().bytes()[1]), std::clamp<int>(row.layer, -128, 127));
    t.recordOn() = false;
    t.draw(gxCircle({1, 2}, 3), gxGraphicProps(), row.layer);
    EXPECT_EQ(t.sketch().size(), 72);
  }
}

TEST_F(Drawing, ASurfacelessScopeStillMeasures)
{
  i.null(true);
  i.clientChangeEnable(true);
  tablet.draw(gxPoint(1, 1), gxGraphicProps(), image);
  EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(Drawing, AScopeThatThrowsLeavesNoRecordAndNoPushedFlag)
{
  i.throwing(true);
  EXPECT_THROW(tablet.draw(gxCircle({1, 2}, 3), gxGraphicProps(), image), LogScope::Refused);
  EXPECT_THROW(tablet.draw(gxRect({1, 2}, {3, 3}), gxGraphicProps(), image), LogScope::Refused);
  EXPECT_TRUE(tablet.sketch().isNull());
  EXPECT_TRUE(tablet.recordOn());
  EXPECT_THROW(tablet.recordOn().pop(), gxUIError::FlagStackUnderflow);
  EXPECT_THAT(log.take(), ElementsAre("i: lock 1", "i: unlock"));
}

TEST_F(Drawing, NonFiniteShapesAreRecordedAsTheyAre)
{
  double const inf = std::numeric_limits<double>::infinity();
  for (double const bad : {nan, inf, -inf, 1e308}) {
    tablet.draw(gxPoint(bad, 0), gxGraphicProps(), image);
    tablet.draw(gxLine(gxVector<2>(bad, 1), gxVector<2>(0, bad)), gxGraphicProps(), image);
    tablet.draw(gxRect({bad, 0}, {1, bad}), filled(gxColor(1)), image);
    tablet.draw(gxRect({bad, 0}, {1, bad}), gxGraphicProps(), image);
    tablet.set(gxRect({bad, 0}, {1, bad}), gxColor(1), image);
    tablet.drawToRelPels(gxVector<2>(bad, 1), 1e30f, gxColor(1), image);
    tablet.drawClipRect(gxRect({bad, 0}, {1, bad}), image);
    gx2XformLens const lens({0, 0}, 5, -0.1);
    tablet.draw(gxMappedShape(gxLineSeg({bad, 0}, {1, bad}), lens), gxGraphicProps(), image);
    tablet.draw(gxMappedShape(gxPolyline({{bad, 0}, {1, bad}}), lens), gxGraphicProps(), image);
  }
  EXPECT_GT(tablet.sketch().size(), 0);
}

TEST_F(Drawing, NestedDrawsKeepAFullFlagStackIntact)
{
  for (int n = 0; n < 31; ++n)
    tablet.recordOn().push(true);
  EXPECT_THROW(tablet.draw(gxCircle({1, 2}, 3), gxGraphicProps(), image), gxUIError::FlagStackOverflow);
  EXPECT_TRUE(tablet.sketch().isNull());
  tablet.draw(gxPoint(1, 2), gxGraphicProps(), image);
  EXPECT_FALSE(tablet.sketch().isNull());
}

// A client may record on the scratch pad, and use stock values, before main.
gxUISketch const recordedBeforeMain = [] {
  gxUITablet::scratchPad.draw(gxRect({1, 2}, {3, 4}), gxColor::redColor(), overlay, false);
  gxUISketch s = gxUITablet::scratchPad.sketch();
  gxUITablet::scratchPad.sketch().erase();
  return s;
}();

TEST(ScratchPad, RecordsBeforeMain)
{
  EXPECT_EQ(recordedBeforeMain.size(), 22 + 8 + 32);
  EXPECT_FALSE(gxUITablet::scratchPad.visible());
  EXPECT_FALSE(gxUITablet::scratchPad.modified(image));
}
}  // namespace
