#include "backends/pels/pelsurface.h"
#include "dispc/uitablet.h"
#include "foundation/rlebuf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <random>
#include <set>
#include <tuple>

namespace
{

gxPair<long> const theSize(47, 39);
gxPackedRGB32Pel const nothing;

gxPackedRGB32Pel solid(int r, int g, int b)
{
  auto const byte = [](int v) { return static_cast<unsigned char>(v); };
  return {byte(r), byte(g), byte(b), 255};
}

/// The pel of an image that is shown at pel @p i of an axis, by the rule; nothing beyond the end.
std::optional<long> sourceOf(long i, long size, double scale)
{
  double const inverse = 1.0 / scale;
  bool const up = scale > 1.0 && std::abs(scale - std::round(scale)) <= 1e-6;
  bool const down = !up && std::abs(inverse - std::round(inverse)) <= 1e-6;
  long count = static_cast<long>(double(size) * scale);
  if (up)
    count = size * std::lround(scale);
  if (down)
    count = size / std::lround(inverse);
  if (i < 0 || i >= count)
    return std::nullopt;
  if (up)
    return i / std::lround(scale);
  if (down)
    return i * std::lround(inverse);
  return static_cast<long>(double(i) * inverse);
}

/// Compares the layer with what the rule tells pel by pel.
template <class Look>
void expectImage(gxPelSurface &surface, gxPair<long> const &at, gxPair<long> const &size, gxPair<double> const &scale,
                 Look look, std::string const &what)
{
  for (long y = 0; y < theSize.y(); ++y)
    for (long x = 0; x < theSize.x(); ++x) {
      auto const column = sourceOf(x - at.x(), size.x(), scale.x());
      auto const row = sourceOf(y - at.y(), size.y(), scale.y());
      gxPackedRGB32Pel const expected = column && row ? look(*column, *row) : nothing;
      ASSERT_EQ(surface.overlayPels().get(x, y).value(), expected.value())
          << what << " at " << at << " scale " << scale << ": pel " << x << ", " << y;
    }
}

class Images : public testing::Test
{
 protected:
  Images()
  {
    std::mt19937 random(1);
    for (long y = 0; y < 16; ++y)
      for (long x = 0; x < 20; ++x) {
        grey.put(x, y, static_cast<unsigned char>(random()));
        deep.put(x, y, static_cast<unsigned short>(random()));
        packed.put(x, y, gxPackedRGB16Pel(static_cast<unsigned short>(random())));
        color.put(x, y, gxPackedRGB32Pel(random()));
      }
    // A window: only the pels inside of it are the image.
    grey.window(3, 2, 13, 11);
    deep.window(3, 2, 13, 11);
    packed.window(3, 2, 13, 11);
    color.window(3, 2, 13, 11);
    grey.offset(100, 200);  // a label, without a part in drawing
  }

  /// Draws @p image at all places and scales, with and without transparency.
  template <class Pel, class Value, class Look, class Flag = std::tuple<>>
  void everywhere(std::string const &what, gxPelBuffer<Pel> const &image, Value passing, Look look, Flag flag = {})
  {
    for (auto const &at : places)
      for (auto const &scale : scales)
        for (bool const pass : {false, true}) {
          gxPoint const p(double(at.x()) + 0.75, double(at.y()) + 0.25);
          gxPelSurface s(theSize.x(), theSize.y());
          gxPelScope &scope = s.overlayScope();
          std::apply(
              [&](auto... indexed) {
                if (scale == gxPair<double>(1, 1))
                  scope.draw(image, p, pass, passing, indexed...);
                else if (scale.x() > 1.0)
                  scope.expand(image, p, scale, pass, passing, indexed..., gxUITablet::noInterpolation);
                else
                  scope.sample(image, p, scale, pass, passing, indexed...);
              },
              flag);
          expectImage(
              s, at, size, scale,
              [&](long x, long y) {
                Pel const v = image.get(x + 3, y + 2);
                return pass && isPassing(v, image.get(5, 5)) ? nothing : look(v);
              },
              what);
        }
  }
  static bool isPassing(gxPackedRGB32Pel a, gxPackedRGB32Pel b) { return ((a.value() ^ b.value()) & 0xFFFFFF) == 0; }
  template <class Pel>
  static bool isPassing(Pel a, Pel b)
  {
    return a == b;
  }

  gxPelBuffer<unsigned char> grey{20, 16};
  gxPelBuffer<unsigned short> deep{20, 16};
  gxPelBuffer<gxPackedRGB16Pel> packed{20, 16};
  gxPelBuffer<gxPackedRGB32Pel> color{20, 16};
  gxPair<long> const size{13, 11};
  std::vector<gxPair<long>> const places{{5, 4}, {-6, -3}, {40, 30}, {-30, 0}};
  std::vector<gxPair<double>> const scales{{1, 1},      {2, 3},   {2.37, 1.6},  {2.9999999, 2.9999999}, {0.5, 1.0 / 3},
                                           {0.4, 0.77}, {1, 4.5}, {0.05, 0.05}, {1.0 / 49, 0.1},        {1e9, 1e9}};
};

TEST_F(Images, OfEveryTypeAtEveryScale)
{
  // What has the value of the pel at (5, 5) is left out.
  everywhere(
      "grey", grey, grey.get(5, 5), [](unsigned char v) { return solid(v, v, v); }, std::tuple(false));
  everywhere("deep", deep, deep.get(5, 5), [](unsigned short v) { return solid(v / 256, v / 256, v / 256); });
  everywhere("packed", packed, packed.get(5, 5).value(), [](gxPackedRGB16Pel p) {
    int const v = p.value(), r = v >> 11, g = v >> 5 & 63, b = v & 31;
    return solid(r << 3 | r >> 2, g << 2 | g >> 4, b << 3 | b >> 2);
  });
  unsigned long const anotherSpare = color.get(5, 5).value() ^ 0x77000000u;
  everywhere("color", color, anotherSpare, [](gxPackedRGB32Pel v) { return solid(v.red(), v.green(), v.blue()); });
}

TEST_F(Images, WholeNumberFactorsAreTheSameDoubles)
{
  gxPelSurface a(theSize.x(), theSize.y()), b(theSize.x(), theSize.y());
  a.overlayScope().expand(grey, gxPoint(1, 2), gxPair<long>(3, 2), false, 0, true, gxUITablet::noInterpolation);
  a.overlayScope().sample(color, gxPoint(1, 30), gxPair<long>(3, 2), false, 0);
  b.overlayScope().expand(grey, gxPoint(1, 2), gxPair<double>(3, 2), false, 0, true, gxUITablet::noInterpolation);
  b.overlayScope().sample(color, gxPoint(1, 30), gxPair<double>(1.0 / 3, 1.0 / 2), false, 0);
  for (long y = 0; y < theSize.y(); ++y)
    for (long x = 0; x < theSize.x(); ++x)
      ASSERT_EQ(a.overlayPels().get(x, y), b.overlayPels().get(x, y));
}

TEST_F(Images, ScalesThatAreNoneDrawNothing)
{
  double const inf = std::numeric_limits<double>::infinity();
  for (double const bad : {0.0, -1.0, inf, -inf, std::numeric_limits<double>::quiet_NaN(), 1e-320})
    for (gxPair<double> const &scale : {gxPair<double>(bad, 2), gxPair<double>(2, bad), gxPair<double>(bad, bad)}) {
      gxPelSurface s(theSize.x(), theSize.y());
      s.overlayScope().expand(grey, gxPoint(1, 2), scale, false, 0, true, gxUITablet::noInterpolation);
      s.overlayScope().expand(color, gxPoint(1, 2), scale, false, 0, static_cast<gxUITablet::InterpolationModes>(1));
      s.overlayScope().sample(packed, gxPoint(1, 2), scale, false, 0);
      EXPECT_FALSE(s.overlayScope().someChanged()) << scale;
    }
  gxPelSurface s(theSize.x(), theSize.y());
  s.overlayScope().draw(gxPelBuffer<unsigned char>(), gxPoint(1, 2), false, 0, true);
  s.overlayScope().expand(gxPelBuffer<gxPackedRGB32Pel>(), gxPoint(1, 2), gxPair<double>(2, 2), false, 0,
                          static_cast<gxUITablet::InterpolationModes>(1));
  EXPECT_FALSE(s.overlayScope().someChanged());
}

TEST_F(Images, InterpolationIsSmoothAndKeepsTheRectangle)
{
  gxPelBuffer<unsigned char> ramp(20, 12);
  for (long y = 0; y < 12; ++y)
    for (long x = 0; x < 20; ++x)
      ramp.put(x, y, static_cast<unsigned char>(10 * x));
  for (int const mode : {1, 2}) {
    gxPelSurface s(100, 60);
    gxPelScope &scope = s.overlayScope();
    scope.expand(ramp, gxPoint(10, 5), gxPair<double>(4, 4), false, 0, false,
                 static_cast<gxUITablet::InterpolationModes>(mode));
    EXPECT_EQ(scope.changeRect(), gxUIRect(10, 5, 80, 48));
    for (long x = 40; x < 60; ++x) {  // far from the border: 10 more every 4 pels
      int const step = s.overlayPels().get(x + 1, 30).red() - s.overlayPels().get(x, 30).red();
      EXPECT_TRUE(step == 2 || step == 3) << step << " at " << x;
    }
    gxPelSurface clipped(100, 60);
    clipped.overlayScope().setDisplayClipRect({33, 20, 21, 9});
    clipped.overlayScope().expand(ramp, gxPoint(10, 5), gxPair<double>(4, 4), true, 0, false,
                                  static_cast<gxUITablet::InterpolationModes>(mode));
    EXPECT_EQ(clipped.overlayScope().changeRect(), gxUIRect(33, 20, 21, 9));
    for (long x = 33; x < 54; ++x)
      EXPECT_NEAR(clipped.overlayPels().get(x, 22).red(), s.overlayPels().get(x, 22).red(), 1);
  }
}

TEST_F(Images, IndexedPelsAndRunsGoThroughThePalette)
{
  gxPelBuffer<unsigned char> pels(6, 2);
  for (long x = 0; x < 6; ++x) {
    pels.put(x, 0, static_cast<unsigned char>(x == 5 ? 251 : x));  // 251 is the index of yellow
    pels.put(x, 1, static_cast<unsigned char>(x / 2));
  }
  gxPelSurface s(theSize.x(), theSize.y());
  gxPelScope &scope = s.overlayScope();
  scope.colorMapEx({gxRGB(1, 1, 1), gxRGB(11, 12, 13), gxRGB(21, 22, 23)});
  scope.draw(pels, gxPoint(2, 3), true, 1, true);
  auto const at = [&](long x, long y) { return s.overlayPels().get(x, y); };
  EXPECT_EQ(at(2, 3), solid(1, 1, 1));
  EXPECT_EQ(at(3, 3), nothing);
  EXPECT_EQ(at(4, 3), solid(21, 22, 23));
  EXPECT_EQ(at(7, 3), solid(255, 255, 0));

  gxRLEBuffer runs(pels);
  runs.offset(gxPair<long>(50, 60));
  scope.set(gxColor::pass);
  // 0 goes to 2, 1 to 251, the others stand for themselves; the transparent value is compared behind the map.
  scope.draw(runs, gxPoint(2, 3), std::vector<unsigned char>{2, 251}, true, 2);
  EXPECT_EQ(at(2, 3), nothing);
  EXPECT_EQ(at(3, 3), solid(255, 255, 0));
  EXPECT_EQ(at(4, 3), nothing);
  EXPECT_EQ(at(5, 3), solid(3, 3, 3));
  scope.set(gxColor::pass);
  scope.draw(runs, gxPoint(2, 3), std::vector<gxColor>{gxColor::red, gxColor::green}, true, 1);
  EXPECT_EQ(at(2, 3), solid(255, 0, 0));
  EXPECT_EQ(at(3, 3), nothing);
  EXPECT_EQ(at(4, 3), solid(21, 22, 23)) << "beyond the colors a value is an index";
  scope.set(gxColor::pass);
  scope.draw(runs, gxPoint(-3, -1), std::vector<gxColor>{gxColor::red, gxColor::green}, false, 0);
  EXPECT_EQ(at(0, 0), solid(0, 255, 0)) << "cut by two edges";
}

TEST_F(Images, RunsAreMeasuredAsTheyAreDrawn)
{
  // Only the x factor counts for whole factors of it, when the runs are scaled; otherwise the pels are, by both.
  gxRLEBuffer const runs(grey);
  for (gxPair<double> const &scale : {gxPair<double>(1, 1), gxPair<double>(2, 1.5), gxPair<double>(2.37, 4),
                                      gxPair<double>(1.5, 0.5), gxPair<double>(0.5, 0.3), gxPair<double>(0.4, 0.7)}) {
    gxPelSurface s(100, 80);
    gxUITablet tablet(&s.imageScope(), &s.overlayScope());
    tablet.scaleExact(scale).visible(true);
    tablet.recordOn().push(true);
    tablet.recordChanges(true);
    tablet.draw(runs, gxPoint(3, 4), {}, false, 0, false, gxUITablet::overlay);
    gxUIRect reported[2];
    tablet.getChanges(reported, false);
    EXPECT_FALSE(reported[1].isNull());
    EXPECT_EQ(tablet.encloseRect(tablet.sketch(), gxVector<2>(), gxUITablet::overlay), reported[1]) << scale;
  }
}

TEST(PelText, LiesInItsRectangleAtAllAlignments)
{
  struct {
    gxUIFormat::Alignment alignment;
    long x, y;  ///< the position in the rectangle, in halves of its size
  } const cases[] = {{gxUIFormat::topLeft, 0, 0},    {gxUIFormat::topCenter, 1, 0},    {gxUIFormat::topRight, 2, 0},
                     {gxUIFormat::centerLeft, 0, 1}, {gxUIFormat::center, 1, 1},       {gxUIFormat::centerRight, 2, 1},
                     {gxUIFormat::bottomLeft, 0, 2}, {gxUIFormat::bottomCenter, 1, 2}, {gxUIFormat::bottomRight, 2, 2}};
  for (auto const &c : cases)
    for (long font : {-1L, 1L, 2L, 3L, 77L}) {
      gxPelSurface s(200, 150);
      gxPelScope &scope = s.overlayScope();
      gxUIRect told;
      gxUIFormat const format(font, c.alignment);
      gxUIRect const rect = scope.textRect("Ab\njgQ", gxPoint(100, 70), format, told);
      long const size = font == 2 || font == 3 ? font : 1;
      EXPECT_EQ(rect, gxUIRect(100 - c.x * 19 * size / 2, 70 - c.y * 21 * size / 2, 19 * size, 21 * size)) << font;
      EXPECT_EQ(told, rect);
      scope.draw("Ab\njgQ", gxPoint(100, 70), gxColor::red, gxColor::white, format);
      EXPECT_EQ(scope.changeRect(), rect);
      long inked = 0;
      for (long y = 0; y < 150; ++y)
        for (long x = 0; x < 200; ++x) {
          gxPackedRGB32Pel const pel = s.overlayPels().get(x, y);
          bool const margin =
              x < rect.left() + size || x >= rect.right() - size || y < rect.top() + size || y >= rect.bottom() - size;
          EXPECT_EQ(pel.spare() != 0, rect.within(gxPair<long>(x, y)));
          if (pel == solid(255, 0, 0)) {
            ++inked;
            EXPECT_FALSE(margin);
          }
        }
      EXPECT_GT(inked, 40 * size * size);
    }
}

TEST(PelText, EveryPrintableCharacterHasALookOfItsOwn)
{
  auto const look = [](std::string const &text) {
    gxPelSurface s(10, 12);
    s.overlayScope().draw(text, gxPoint(0, 0), gxColor::red, gxColor::pass, gxUIFormat());
    std::string pels;
    for (long y = 0; y < 12; ++y)
      for (long x = 0; x < 10; ++x)
        pels += s.overlayPels().get(x, y).spare() ? '#' : '.';
    return pels;
  };
  std::set<std::string> looks;
  for (char c = ' '; c <= '~'; ++c)
    looks.insert(look(std::string(1, c)));
  EXPECT_EQ(looks.size(), 95u);
  std::string const box = look("\x01");
  EXPECT_FALSE(looks.count(box));
  EXPECT_EQ(look("\xC3\xA4"), box) << "one box for a character of two bytes";
  EXPECT_EQ(look("\x7F"), box);
  EXPECT_EQ(look("\xE2\x82\xAC"), box);

  gxPelSurface s(10, 12);
  gxUIRect rect(1, 2, 3, 4);
  EXPECT_TRUE(s.imageScope().textRect("", gxPoint(3, 3), gxUIFormat(), rect).isNull());
  EXPECT_TRUE(s.imageScope().textRect("\n", gxPoint(3, 3), gxUIFormat(), rect).isNull());
  EXPECT_TRUE(rect.isNull());
  EXPECT_EQ(s.imageScope().textRect("ab\n\xC3\xA4\xC3\xA4\xC3\xA4", gxPoint(3, 3), gxUIFormat(), rect),
            gxUIRect(3, 3, 19, 21));
}

}  // namespace
