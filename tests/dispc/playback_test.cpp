#include "dispc/uierror.h"
#include "foundation/circle.h"
#include "foundation/lineseg.h"
#include "tests/support/allocations.h"
#include "tests/support/bytes.h"
#include "tests/support/hooktablet.h"

// Playback step by step: what it tells the scopes, what it records, what it leaves behind.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
constexpr auto both = gxUITablet::both;
constexpr auto badLayer = gxUITablet::Layers(7);

/// A visible tablet on two layers, at a map of 2 x + 10, 2 y.
struct Playback : testing::Test {
  CheckedLog log;
  LogScope i{log, "i", gxPair<long>(100, 80)}, o{log, "o", gxPair<long>(100, 80)};
  HookTablet tablet{log, "t", &i, &o};
  gxXform<2> const map{gxMatrix<2>(2, 0, 0, 2), gxVector<2>(10, 0)};

  Playback()
  {
    i.quietEnd(), o.quietEnd();
    tablet.baseMap(map);
    tablet.visible(true);
    log.take();
  }
  std::string played(gxUISketch const &sketch, gxUITablet::Layers layer, gxPoint const &offset = {})
  {
    tablet.draw(sketch, offset, layer);
    return log.text();
  }
};

/// A point for each layer, the second with a pen of its own, which the third goes on with.
gxUISketch threePoints()
{
  return sketchOf(Bytes()
                      .drawn(0, 0, {1, 1})
                      .prefix(false, 5)
                      .head(0, 1)
                      .rgb(9, 8, 7)
                      .f64s({2, 2})
                      .head(0, 2)
                      .rgb(1, 2, 3)
                      .f64s({3, 3})
                      .get());
}

/// Each record plays on its layer, one for both on the layer of the playback; all are read for their properties.
TEST_F(Playback, PlaysTheRecordsOfALayerInABatch)
{
  EXPECT_EQ(
      played(threePoints(), image),
      "\ni: lock 1\ni: optimize 1\ni: point (12, 2)\ni: point (16, 6) [#010203, width 5]\ni: optimize 0\ni: unlock");
  EXPECT_EQ(played(threePoints(), overlay, {1, 0.5}),
            "\no: lock 1\no: optimize 1\no: point (16, 5) [#090807, width 5]\no: point (18, 7) [#010203, width 5]"
            "\no: optimize 0\no: unlock");
  EXPECT_EQ(
      played(threePoints(), both),
      "\ni: lock 1\no: lock 1\ni: optimize 1\no: optimize 1\ni: point (12, 2)\no: point (14, 4) [#090807, width 5]"
      "\ni: optimize 0\no: optimize 0\ni: unlock\no: unlock")
      << "a record for both is on no layer of its own";
  gxUITablet half(nullptr, &o);
  half.visible(true);
  log.take();
  half.draw(threePoints(), {}, both);
  EXPECT_EQ(log.text(), "\no: lock 1\no: optimize 1\no: point (2, 2) [#090807, width 5]\no: optimize 0\no: unlock");
  half.draw(threePoints(), {}, image);
  EXPECT_EQ(log.text(), "");
}

TEST_F(Playback, LeavesTheTabletAsItWas)
{
  tablet.scaleExact({2, 2});
  tablet.dragDel({3, -4});
  gxXform<2> const before = tablet.scaledMap();
  log.take();
  EXPECT_EQ(played(threePoints(), image, {0.1, 0.3}).find("t:"), std::string::npos) << "no hook is called";
  EXPECT_EQ(tablet.scaledMap(), before);
  EXPECT_EQ(tablet.dragDel(), gxPair<long>(3, -4));
  EXPECT_EQ(tablet.recordOn().depth(), 1);
  EXPECT_FALSE(tablet.screenUpdatesLocked(image));
}

TEST_F(Playback, BecomesOneRecord)
{
  gxUISketch const sketch = threePoints();
  std::vector<unsigned char> const bytes = bytesOf(sketch);
  tablet.recordOn() = true;
  EXPECT_EQ(played(gxUISketch(), image) + played(gxUISketch(), badLayer), "");
  EXPECT_TRUE(tablet.sketch().isNull()) << "nothing is recorded of an empty sketch, and its layer does not matter";

  Bytes expected;
  auto const expectRecord = [&](std::vector<unsigned char> const &nested, int layer, double x) {
    expected.moved(15, layer, {x, 2}).i32(static_cast<long>(nested.size()));
    for (unsigned char const b : nested)
      expected.u8(b);
  };
  expected.prefix(false, 9).drawn(0, 0, {0, 0});
  gxGraphicProps wide;
  wide.penWidth(9);
  tablet.draw(gxPoint(0, 0), wide, image);
  expected.prefix();  // the record of a sketch has the default properties
  for (auto const layer : {overlay, both}) {
    tablet.draw(sketch, {1, 2}, layer);
    expectRecord(bytes, layer, 1);
  }
  EXPECT_THROW(tablet.draw(sketch, {1, 2}, badLayer), gxUIError::BadLayer);
  EXPECT_EQ(bytesOf(tablet.sketch()), expected.get());
  EXPECT_EQ(tablet.recordOn().depth(), 1) << "a bad layer is refused before anything changes";
  EXPECT_EQ(tablet.scaledMap(), map);
  EXPECT_FALSE(tablet.screenUpdatesLocked(image));

  tablet.drawOn() = false;  // neither drawn, nor is the layer looked at
  log.take();
  EXPECT_EQ(played(sketch, badLayer, {3, 2}), "");
  expectRecord(bytes, badLayer, 3);
  EXPECT_EQ(bytesOf(tablet.sketch()), expected.get());
  tablet.drawOn() = true;
  tablet.draw(tablet.sketch(), {4, 2}, image);  // its own, which grows meanwhile
  std::vector<unsigned char> const own = expected.get();
  expectRecord(own, image, 4);
  EXPECT_EQ(bytesOf(tablet.sketch()), expected.get());
}

/// Offsets add up under the map; a nested sketch starts with default properties, and its own do not come out of it.
TEST_F(Playback, SketchesHoldSketches)
{
  gxUITablet recorder;
  gxGraphicProps wide;
  wide.penWidth(3);
  recorder.draw(gxPoint(1, 1), wide, image);
  recorder.draw(threePoints(), {10, 20}, both);
  recorder.draw(gxPoint(2, 2), wide, image);
  EXPECT_EQ(played(recorder.sketch(), image, {0, 100}),
            "\ni: lock 1\ni: optimize 1\ni: point (12, 202) [stock 254 #00ffff, width 3]"
            "\ni: lock 1\ni: optimize 1\ni: point (32, 242)\ni: point (36, 246) [#010203, width 5]\ni: optimize 0"
            "\ni: unlock\ni: point (14, 204) [stock 254 #00ffff, width 3]\ni: optimize 0\ni: unlock");

  gxUISketch nest = threePoints();
  for (long level = 1; level < gxFlagStack::maxDepth; ++level) {
    EXPECT_NO_THROW(tablet.draw(nest, {}, image)) << level;
    recorder.sketch().erase();
    recorder.draw(nest, {}, image);
    nest = recorder.sketch();
  }
  EXPECT_THROW(tablet.draw(nest, {}, image), gxUIError::FlagStackOverflow);
}

/// The pen and the clip are the scope's and the tablet's: where the records leave them, they stay.
TEST_F(Playback, PenAndArrowFlagsCarryOver)
{
  i.drawStart(gxPoint(7, 8));
  EXPECT_EQ(played(sketchOf(Bytes().head(22, 0).cyan().i32s({5, -1}).head(23, 0).cyan().i32s({1, 1}).get()), image),
            "\ni: lock 1\ni: optimize 1\ni: drawToRelPels 5 -1\ni: optimize 0\ni: unlock");
  EXPECT_EQ(gxPair<long>(i.drawX(), i.drawY()), gxPair<long>(13, 8));

  // A section with arrow flags of its own, which stay for what follows without properties.
  Bytes stream;
  stream.drawn(39, 0, {0, 0, 4, 4, 0}).zeros(136).f64s({0, 0, 8, 8, 0}).zeros(136).f64s({0, 1}).zeros(184);
  stream.u8(0).u8(1).drawn(2, 0, {0, 0, 1, 1}).prefix().drawn(2, 0, {0, 0, 1, 1});
  std::string const text = played(sketchOf(stream.get()), image);
  std::string const end =
      "\ni: lineSeg (10, 0) (12, 2) [stock 254 #00ffff, width 1, no arrowheads]\ni: lineSeg (10, 0) (12, 2)"
      "\ni: optimize 0\ni: unlock";
  ASSERT_GT(text.size(), end.size());
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

/// What throws ends the playback where it stands, and nothing is given back.
TEST_F(Playback, AFailureCleansNothingUp)
{
  struct Row {
    std::vector<unsigned char> bytes;
    bool scopeThrows;
  };
  for (Row const &row : {Row{Bytes().head(13, 0).cyan().get(), false}, Row{Bytes().head(48, 0).cyan().get(), false},
                         Row{Bytes().head(255, 0).cyan().get(), false}, Row{Bytes().prefix().prefix().get(), false},
                         Row{Bytes().prefix(false, -1).head(17, 0).cyan().get(), false}, Row{{}, true}}) {
    gxUISketch sketch = threePoints();
    sketch.append(row.bytes.data(), static_cast<long>(row.bytes.size()));
    tablet.recordOn() = true;
    i.throwing(row.scopeThrows);
    EXPECT_ANY_THROW(tablet.draw(sketch, {1, 1}, image));
    EXPECT_EQ(tablet.scaledMap(), map * gxXform<2>(gxMatrix<2>(), {1, 1}));
    EXPECT_EQ(tablet.recordOn().depth(), 2);
    EXPECT_FALSE(tablet.recordOn());
    EXPECT_TRUE(tablet.screenUpdatesLocked(image));
    EXPECT_TRUE(tablet.sketch().isNull());
    tablet.recordOn().pop();  // as the header says
    tablet.baseMap(map);
    tablet.lockScreenUpdatesPop(image);
    i.throwing(false);
    log.take();
    EXPECT_NE(played(threePoints(), image), "");
    tablet.sketch().erase();
  }
}

/// However often a record comes again, playing it takes no memory.
TEST_F(Playback, TakesMemoryForEachKindOfRecordAndNotForEachRecord)
{
  gxUITablet recorder;
  recorder.draw(gxLineSeg({0, 0}, {9, 9}), gxColor::redColor(), overlay);
  recorder.draw(gxRect({0, 0}, {9, 9}), gxColor::redColor(), overlay, false);
  recorder.draw(gxCircle({0, 0}, 5), gxColor::greenColor(), overlay, true);
  recorder.draw(gxPoint(0, 0), gxColor::redColor(), overlay);
  recorder.draw(std::string(100, 'x'), {1, 2}, gxColor::red, gxColor::black, gxUIFormat(), overlay);
  recorder.outline(gxUIRect(1, 2, 30, 20), gxColor::blue, 2, overlay);
  recorder.drawTo({5, 5}, gxColor::blue, overlay);
  gxUISketch const once = recorder.sketch();
  gxUISketch many;
  for (int n = 0; n < 50; ++n)
    many += once;
  auto const taken = [&](gxUISketch const &sketch) {
    long const before = allocations;
    tablet.encloseRect(sketch, {}, overlay);
    return allocations - before;
  };
  EXPECT_EQ(taken(many), taken(once));
  EXPECT_GT(taken(once), 0);
}

/// The private surface is on the layer that is asked for, has the size of the tablet, and the map without the pan.
TEST_F(Playback, ASketchIsMeasuredWithoutATrace)
{
  gxUISketch const sketch = threePoints();
  i.null(true);
  EXPECT_EQ(tablet.encloseRect(sketch, {}, image), gxUIRect(12, 2, 1, 1) | gxUIRect(14, 4, 5, 5));
  EXPECT_EQ(tablet.encloseRect(sketch, {0, -300}, overlay), gxUIRect(12, -598, 7, 7));
  tablet.dragDel({50, 50});
  EXPECT_EQ(tablet.encloseRect(sketch, {}, overlay), gxUIRect(12, 2, 7, 7)) << "without the pan";
  tablet.dragDel({});
  tablet.scaleMode(gxUITablet::sampleMode).scale({2, 2});  // divisors of a reduction, measured as an enlargement
  EXPECT_EQ(tablet.encloseRect(sketch, {}, overlay), gxUIRect(26, 6, 9, 9));
  tablet.baseMap(gxXform<2>()).scaleExact({1, 1});
  EXPECT_EQ(tablet.encloseRect(sketch, {}, overlay), gxUIRect(0, 0, 6, 6));
  EXPECT_EQ(tablet.encloseRect(gxUISketch(), {}, overlay), gxUIRect::null);
  gxUISketch const all = sketchOf(Bytes().head(17, 1).cyan().get());
  EXPECT_EQ(tablet.encloseRect(all, {}, overlay), gxUIRect(0, 0, 100, 80));
  log.take();

  EXPECT_THROW(tablet.encloseRect(sketch, {}, both), gxUIError::BadLayer);
  EXPECT_THROW(tablet.encloseRect(sketchOf({24, 0, 0, 0, 0, 0, 0, 0}), {}, overlay), gxUIError::InvalidUISketch);
  gxUITablet none;
  EXPECT_EQ(none.encloseRect(sketch, {}, image), gxUIRect::null);
  EXPECT_EQ(log.text(), "");
  EXPECT_FALSE(tablet.recordChanges());
}
}  // namespace
