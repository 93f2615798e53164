#include "dispc/uierror.h"
#include "foundation/matherror.h"
#include "tests/support/drawing.h"

#include <numbers>

// The pen, areas, outlines, the display clip and text: what the scope is asked and what is recorded.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
constexpr auto both = gxUITablet::both;
using Layers = gxUITablet::Layers;

struct Pen : DrawingTest {
  /// The pen of the image in pels and as a point.
  void expectPen(long x, long y, gxVector<2> const &point) const
  {
    EXPECT_EQ(i.drawX(), x);
    EXPECT_EQ(i.drawY(), y);
    EXPECT_EQ(gxVector<2>(i.drawPoint()), point);
  }
  /// The head that an operation with a colour leaves behind other default properties.
  static Bytes colored(int code, gxColor const &c, bool fill = false, int layer = 0)
  {
    return Bytes().prefix(fill).head(code, layer).rgb(c.rgbStruct().r(), c.rgbStruct().g(), c.rgbStruct().b());
  }
  static Bytes rect(Bytes b, gxUIRect const &r) { return b.u8(1).i32s({r.left(), r.top(), r.width(), r.height()}); }
  /// The block of a client rectangle: its four doubles, and nothing around them.
  static Bytes rect(Bytes b, gxRect const &r)
  {
    return b.u8(0).zeros(16).f64s({r.origin().x(), r.origin().y(), r.size().x(), r.size().y()}).zeros(40);
  }
};

TEST_F(Pen, MovesByPointsAndByPels)
{
  tablet.drawStart({1, 2}, image);
  expectPen(12, 6, {12, 6});
  tablet.moveToRelPels(-20, 3, image);
  expectPen(-8, 9, {-8, 9});
  tablet.drawTo({2, 3}, gxGraphicProps(), image);
  expectPen(14, 9, {14, 9});
  tablet.drawToRelPels(5, -1, red, image);
  expectPen(19, 8, {19, 8});
  gxGraphicProps wide;
  wide.penColor(red);
  EXPECT_EQ(log.text(), textOf("\ni: drawTo from (-8, 9) to (14, 9)\ni: drawToRelPels 5 -1 [", wide, ']'));
  EXPECT_EQ(gxVector<2>(o.drawPoint()), gxVector<2>(0, 0)) << "each layer has a pen of its own";
  EXPECT_EQ(tablet.drawingPoint(image), gxVector<2>(4.5, 8.0 / 3.0));
  Bytes expected = Bytes().moved(20, 0, {1, 2}).moved(23, 0).i32s({-20, 3}).drawn(21, 0, {2, 3});
  EXPECT_EQ(recorded(), expected.prefix().head(22, 0).rgb(255, 0, 0).i32s({5, -1}).get());

  // A move writes default properties between those of the client.
  wide = gxGraphicProps();
  wide.penWidth(3);
  tablet.sketch().eraseAndDelete();
  tablet.drawTo({0, 0}, wide, image);
  tablet.drawStart({0, 0}, image);
  tablet.drawTo({0, 0}, wide, image);
  expected = Bytes().prefix(false, 3).drawn(21, 0, {0, 0}).prefix().moved(20, 0, {0, 0});
  EXPECT_EQ(recorded(), expected.prefix(false, 3).drawn(21, 0, {0, 0}).get());
}

TEST_F(Pen, TheSentinelMeansWhereThePenIs)
{
  tablet.drawStart({0.25, 0.5}, image);
  expectPen(10, 1, {10.5, 1.5});
  recorded();
  tablet.drawStart(tablet.drawPointArg(), image);
  expectPen(10, 1, {10.5, 1.5});
  tablet.drawTo(gxPoint(1.234567e+89, 9.876543e+21), gxGraphicProps(), image);
  EXPECT_EQ(log.text(), "\ni: drawTo from (10.5, 1.5) to (10.5, 1.5)");
  EXPECT_EQ(recorded(),
            Bytes().moved(20, 0, {1.234567e+89, 9.876543e+21}).drawn(21, 0, {1.234567e+89, 9.876543e+21}).get());
  tablet.setScope(image, nullptr, false);
  gxUIRect out(1, 2, 3, 4);
  EXPECT_EQ(tablet.textRect("a", tablet.drawPointArg(), gxUIFormat(), out, image), gxUIRect());
  EXPECT_EQ(out, gxUIRect(1, 2, 3, 4)) << "not touched without a scope";
  EXPECT_EQ(tablet.drawingPoint(image), gxVector<2>(0, 0));
}

TEST_F(Pen, StepsAlongADirectionHaveTheirLengthInPels)
{
  struct Row {
    gxVector<2> dir;
    float len;
    long dx, dy;
  };
  constexpr double inf = std::numeric_limits<double>::infinity();
  for (Row const &row : {Row{{1, 0}, 7.9f, 7, 0}, Row{{0, -5}, 7.9f, 0, -7}, Row{{3, 2}, 10.f, 7, 7},
                         Row{{-3, -2}, 10.f, -7, -7}, Row{{1, 0}, -3.f, -3, 0}, Row{{0, 0}, 5.f, 0, 0},
                         Row{{inf, 1}, 5.f, 0, 0}, Row{{1, 0}, 1e30f, 2147483647, 0}}) {
    tablet.drawToRelPels(row.dir, row.len, gxGraphicProps(), image);
    EXPECT_EQ(log.text(), textOf("\ni: drawToRelPels ", row.dx, ' ', row.dy));
    tablet.drawStart({0, 0}, image);
    tablet.moveToRelPels(row.dir, row.len, image);
    EXPECT_EQ(gxPair<long>(i.drawX(), i.drawY()), gxPair<long>(10 + row.dx, row.dy));
    Bytes expected = Bytes().drawn(22, 0).i32s({row.dx, row.dy});
    EXPECT_EQ(recorded(), expected.moved(20, 0, {0, 0}).moved(23, 0).i32s({row.dx, row.dy}).get()) << row.dir;
  }
}

TEST_F(Pen, WhatIsRefusedIsRecordedAndMovesNoPen)
{
  tablet.drawStart({1, 1}, image);
  tablet.visible(false);
  recorded();
  log.take();
  tablet.drawStart({5, 5}, image);
  tablet.moveToRelPels(1, 1, image);
  tablet.drawTo({5, 5}, gxGraphicProps(), image);
  tablet.drawToRelPels(1, 1, gxGraphicProps(), both);
  tablet.set(gxUIRect(1, 1, 1, 1), gxColor::cyanColor(), Layers(77));
  tablet.setComplement(gxRect({0, 0}, {1, 1}), gxColor::cyanColor(), image);
  tablet.outline(gxRect({0, 0}, {1, 1}), gxColor::cyanColor(), 1, image);
  tablet.fill(gxPair<long>(1, 1), gxColor::cyanColor(), red, gxUITablet::boundaryFill, image);
  tablet.draw("text", {1, 1}, gxColor::cyanColor(), red, gxUIFormat(3, gxUIFormat::center), image);
  EXPECT_EQ(log.text(), "");
  expectPen(12, 3, {12, 3});
  EXPECT_EQ(recorded().size(), std::size_t(24 + 16 + 24 + 16 + 25 + 97 + 113 + 22 + (8 + 19) + 22 + (8 + 35)));
}

TEST_F(Pen, AreasOfPelsAndOfTheClient)
{
  gxUIRect const pels(-5, 6, 7, 8);
  gxRect const client({1, 2}, {3.5, 4});
  tablet.set(pels, red, overlay);
  EXPECT_EQ(recorded(), rect(colored(16, red, false, 1), pels).get());
  tablet.set(client, dark, image);
  EXPECT_EQ(recorded(), rect(colored(16, dark), client).get());
  tablet.set(gxRect({4, 4}, {-1, 2}), dark, image);
  tablet.set(gxRect({0.999999999999999, 0}, {1, 1.0 / 3}), dark, image);
  EXPECT_EQ(log.text(), textOf("\no: set ", pels, ' ', red, "\ni: set (12, 6) 7 x 12 ", dark, "\ni: set ",
                               gxUIRect::null, ' ', dark, "\ni: set (12, 0) 2 x 1 ", dark));

  // Only two corners of a client rectangle count. After an eighth of a turn they lie one below the other.
  double const c = std::numbers::sqrt2;
  tablet.baseMap(gxXform<2>(gxMatrix<2>(c, -c, c, c), {20, 20}));
  log.take();
  tablet.set(gxRect({0, 0}, {10, 0}), red, image);
  tablet.set(gxRect({0, 0}, {10, 10}), red, image);
  tablet.drawClipRect(gxRect({0, 0}, {10, 10}), image);
  EXPECT_EQ(log.text(), textOf("\ni: set (20, 20) 14 x 14 ", red, "\ni: set ", gxUIRect::null, ' ', red));
  EXPECT_EQ(i.displayClipRect(), gxUIRect(5, 20, 30, 29)) << "the clip is the box round all four";
}

TEST_F(Pen, TheWholeScopeDropsWhatWasRecordedButTheClip)
{
  tablet.set(red, image);
  EXPECT_EQ(recorded(), colored(17, red).get());
  tablet.drawClipRect(gxRect({1, 1}, {0, 8}), image);
  tablet.drawTo({1, 1}, red, overlay);
  log.take();
  tablet.set(red, image);
  EXPECT_EQ(log.text(), textOf("\ni: setAll ", red));
  EXPECT_EQ(recorded(), Bytes().drawn(47, 0, {1, 1, 0, 8}).prefix().head(17, 0).rgb(255, 0, 0).get())
      << "a clip of no width is one";
  tablet.set(red, overlay);
  EXPECT_EQ(recorded(), colored(17, red, false, 1).get()) << "that of the other layer is not repeated";
  tablet.set(red, both);
  EXPECT_EQ(recorded(), colored(17, red, false, 2).get());
  tablet.recordOn() = false;
  tablet.sketch().append(1);
  tablet.set(red, image);
  EXPECT_EQ(tablet.sketch().size(), 1) << "not recording, it drops nothing";
}

/// The bands and the rectangle cover each pel of the tablet once, wherever the rectangle lies within it.
TEST_F(Pen, TheComplementIsAPinwheelOfFourBandsThatTileTheTablet)
{
  for (gxUIRect const r : {gxUIRect(20, 30, 40, 10), gxUIRect(0, 0, 1, 1), gxUIRect(99, 79, 1, 1),
                           gxUIRect(0, 0, 100, 80), gxUIRect(0, 30, 100, 1), gxUIRect(50, 0, 1, 80)}) {
    std::vector<gxUIRect> const tiles = {
        r, gxUIRect(0, 0, r.right(), r.top()), gxUIRect(r.right(), 0, 100 - r.right(), r.bottom()),
        gxUIRect(r.left(), r.bottom(), 100 - r.left(), 80 - r.bottom()), gxUIRect(0, r.top(), r.left(), 80 - r.top())};
    std::string expected = "\ni: lock 1";
    long area = 0;
    for (std::size_t n = 0; n < tiles.size(); ++n) {
      expected += n > 0 ? textOf("\ni: set ", tiles[n], ' ', red) : "";  // bands of no pel still go out
      area += tiles[n].width() * tiles[n].height();
      for (std::size_t m = 0; m < n; ++m)
        EXPECT_TRUE((tiles[n] & tiles[m]).isNull()) << r;
    }
    EXPECT_EQ(area, 100 * 80) << r;
    tablet.setComplement(r, red, image);
    EXPECT_EQ(log.text(), expected + "\ni: unlock");
  }
  tablet.setComplement(gxUIRect(20, 30, 40, 10), red, image);
  std::string const ofPels = log.text();
  recorded();
  gxRect const client({5, 10}, {20, 10.0 / 3});
  tablet.setComplement(client, red, image);
  EXPECT_EQ(log.text(), ofPels);
  EXPECT_EQ(recorded(), rect(colored(18, red), client).get()) << "recorded once, as it was given";
}

TEST_F(Pen, FramesAreDrawnInwardByThePen)
{
  gxGraphicProps const light(red, 1, gxGraphicProps::penSolid, false), shade(dark, 1, gxGraphicProps::penSolid, false);
  auto const round = [&](gxGraphicProps const &first, long dx, long dy) {
    auto const step = [](long x, long y, gxGraphicProps const &p) {
      return textOf("\ni: drawToRelPels ", x, ' ', y, " [", p, ']');
    };
    return step(dx, 0, first) + step(0, dy, shade) + step(-dx, 0, shade) + step(0, -dy, first);
  };
  tablet.outline3D(gxUIRect(10, 20, 8, 6), red, dark, 2, image);
  EXPECT_EQ(log.text(), "\ni: lock 1" + round(light, 7, 5) + round(light, 5, 3) + "\ni: unlock");
  expectPen(12, 22, {12, 22});
  EXPECT_EQ(recorded(), rect(colored(25, red), gxUIRect(10, 20, 8, 6)).rgb(255, 0, 0).rgb(1, 2, 3).i32(2).get());

  gxRect const client({5, 10}, {1.5, 1});
  tablet.outline(client, dark, 5, image);
  EXPECT_EQ(log.text(), "\ni: lock 1" + round(shade, 2, 2) + "\ni: unlock")
      << "three pels square: there is no second round";
  EXPECT_EQ(recorded(), rect(colored(25, dark), client).rgb(1, 2, 3).rgb(1, 2, 3).i32(5).get());

  for (long const width : {0L, -1L}) {
    tablet.outline3D(gxUIRect(40, 50, 8, 6), red, dark, width, image);
    EXPECT_EQ(log.text(), "\ni: lock 1\ni: unlock");
    expectPen(40, 50, {40, 50});
  }
  tablet.outline3D(gxUIRect(1, 2, 1, 9), red, dark, 3, image);
  tablet.outline3D(gxUIRect::null, red, dark, 3, image);
  EXPECT_EQ(log.text(), "\ni: lock 1\ni: unlock\ni: lock 1\ni: unlock");
}

TEST_F(Pen, FillsAndTextsAndTheirRecords)
{
  tablet.fill(gxPair<long>(3, -4), red, dark, gxUITablet::boundaryFill, image);
  tablet.fill(gxPoint(1.5, 2.0 / 3), red, dark, gxUITablet::FillType(5), overlay);
  EXPECT_EQ(log.text(), textOf("\ni: fill (3, -4) ", red, ' ', dark, " 1\no: fill (13, 2) ", red, ' ', dark, " 0"))
      << "whether it stops at the boundary, and no more";
  Bytes expected = colored(19, red, true).u8(1).i32s({3, -4}).rgb(1, 2, 3).i32(0);
  expected.head(19, 1).rgb(255, 0, 0).u8(0).f64s({1.5, 2.0 / 3}).rgb(1, 2, 3).i32(5);
  EXPECT_EQ(recorded(), expected.get());

  gxUIFormat const format(7, gxUIFormat::bottomRight);
  tablet.draw("Board", {1, 2}, red, dark, format, image);
  EXPECT_EQ(log.text().substr(0, 23), "\ni: text Board (12, 6) ");
  tablet.draw("", {0, 0}, red, dark, format, overlay);
  tablet.draw(std::string("a\0b", 3), tablet.drawPointArg(), red, dark, format, image);
  EXPECT_EQ(log.take().size(), 2u);
  expected = colored(11, red).f64s({1, 2}).rgb(1, 2, 3).i32s({7, 8}).text("Board").u8(0);
  expected.head(11, 1).rgb(255, 0, 0).f64s({0, 0}).rgb(1, 2, 3).i32s({7, 8}).u8(0);
  expected.head(11, 0).rgb(255, 0, 0).f64s({1.234567e+89, 9.876543e+21}).rgb(1, 2, 3).i32s({7, 8}).text("a").u8(0);
  EXPECT_EQ(recorded(), expected.get()) << "up to the first zero";
}

TEST_F(Pen, TextRectMeasuresWithoutADrawDecision)
{
  tablet.visible(false);
  tablet.drawOn() = false;
  log.take();
  gxUIRect out;
  EXPECT_EQ(tablet.textRect("a", {1, 2}, gxUIFormat(), out, image), gxUIRect(12, 6, 1, 1));
  EXPECT_EQ(out, gxUIRect(12, 6, 1, 1));
  EXPECT_TRUE(tablet.sketch().isNull());
  for (int const bad : {2, -1}) {
    EXPECT_THROW(tablet.textRect("a", {}, gxUIFormat(), out, Layers(bad)), gxUIError::BadLayer);
    EXPECT_THROW(tablet.drawingPoint(Layers(bad)), gxUIError::BadLayer);
  }
  tablet.baseMap(gxXform<2>(gxMatrix<2>(1, 1, 1, 1), {}));
  EXPECT_THROW(tablet.drawingPoint(image), gxMathError::Singular);
}

struct Clip : Pen {
  gxRect const client{{1, 2}, {2, 3}};
  /// Which of the two scopes got the clip: "i", "o", "io" or nothing.
  std::string reached(Layers layer)
  {
    i.setDisplayClipRect({});
    o.setDisplayClipRect({});
    tablet.drawClipRect(client, layer);
    std::string who;
    for (LogScope const *const s : {&i, &o})
      if (!s->displayClipRect().isNull()) {
        EXPECT_EQ(s->displayClipRect(), gxUIRect(12, 6, 4, 9));
        who += s->name();
      }
    return who;
  }
};

TEST_F(Clip, GoesToTheLayersThatAreAskedForOrToWhatBothLayersTake)
{
  EXPECT_EQ(reached(image), "i");
  EXPECT_EQ(reached(overlay), "o");
  EXPECT_EQ(reached(both), "io");
  EXPECT_EQ(recorded(), Bytes().drawn(47, 0, {1, 2, 2, 3}).drawn(47, 1, {1, 2, 2, 3}).drawn(47, 2, {1, 2, 2, 3}).get());
  tablet.setScope(image, nullptr, false);
  EXPECT_EQ(reached(image), "o");
  tablet.drawOnOverlay() = false;
  EXPECT_EQ(reached(image), "");
  EXPECT_EQ(reached(overlay), "");
  tablet.setScope(image, &i, false);
  EXPECT_EQ(reached(overlay), "i");
  EXPECT_EQ(reached(both), "i");
  tablet.drawOnOverlay() = true;
  i.null(true);
  EXPECT_EQ(reached(both), "o") << "a scope without a surface is passed over";
  i.clientChangeEnable(true);
  EXPECT_EQ(reached(both), "io") << "unless it measures";
  tablet.drawOn().push(false);
  EXPECT_EQ(reached(both), "");
  tablet.drawOn().pop();
  tablet.visible(false);
  EXPECT_EQ(reached(image), "");
}

TEST_F(Clip, BadLayersChangeNothing)
{
  for (int const bad : {3, -1}) {
    EXPECT_THROW(tablet.drawClipRect(client, Layers(bad)), gxUIError::BadLayer);
    EXPECT_TRUE(tablet.sketch().isNull());
  }
  tablet.set(red, image);
  EXPECT_EQ(recorded(), colored(17, red).get()) << "no clip was kept";
}

TEST_F(Clip, EdgesForgiveAHairOnBothSides)
{
  tablet.baseMap(gxXform<2>());
  auto const clipOf = [&](gxRect const &r) {
    tablet.drawClipRect(r, image);
    return i.displayClipRect();
  };
  EXPECT_EQ(clipOf({{2.99999999999999, 5}, {3.00000000000002, 1}}), gxUIRect(3, 5, 3, 1));
  EXPECT_EQ(clipOf({{2.9, -0.5}, {0.2, 1}}), gxUIRect(2, -1, 2, 2));
  EXPECT_EQ(clipOf({{6, 6}, {-2, -3}}), gxUIRect(4, 3, 2, 3)) << "of any sign";
  EXPECT_TRUE(clipOf({{1, 1}, {0, 0}}).isNull());
}
}  // namespace
