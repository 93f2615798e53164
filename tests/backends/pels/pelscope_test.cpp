#include "backends/pels/pelsurface.h"
#include "dispc/dispprop.h"
#include "dispc/uierror.h"
#include "dispc/uitablet.h"
#include "foundation/lineseg.h"
#include "foundation/pelerror.h"
#include "foundation/rect.h"
#include "tests/backends/pels/pelops.h"
#include "tests/support/logscope.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace
{

using Pels = std::set<std::pair<long, long>>;
using Scope = std::unique_ptr<gxUIScope>;

gxGraphicProps const pen(gxColor::red, 1, gxGraphicProps::penSolid, false);

Pels rectangle(long x, long y, long w, long h)
{
  Pels pels;
  for (long j = y; j < y + h; ++j)
    for (long i = x; i < x + w; ++i)
      pels.emplace(i, j);
  return pels;
}

gxUIRect rectOf(gxUIScope const &scope)
{
  return {scope.org(), scope.size()};
}

struct Part {
  gxUIRect rect;
  gxUIRect device;  ///< origin and size of the part
  gxUIRect shown;   ///< where all of it shows on a surface of 40 x 30
};

TEST(PelScopeTree, PartsShowWhereTheyLieInsideTheirAncestors)
{
  Part const cases[] = {
      {{5, 6, 10, 11}, {0, 0, 10, 11}, {5, 6, 10, 11}},    {{-5, 6, 10, 11}, {5, 0, 5, 11}, {0, 6, 5, 11}},
      {{-5, -6, 100, 90}, {5, 6, 40, 30}, {0, 0, 40, 30}}, {{35, 28, 10, 10}, {0, 0, 5, 2}, {35, 28, 5, 2}},
      {{40, 0, 5, 5}, {0, 0, 0, 0}, {0, 0, 0, 0}},         {{-5, 0, 5, 5}, {0, 0, 0, 0}, {0, 0, 0, 0}},
      {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}},
  };
  for (Part const &c : cases) {
    gxPelSurface surface(40, 30);
    Scope const part(surface.overlayScope().newSubScope(c.rect, false));
    EXPECT_EQ(rectOf(*part), c.device) << c.rect;
    EXPECT_EQ(part->isNull(), c.device.isNull());
    part->set(gxColor::red);
    EXPECT_EQ(coveredPels(surface.overlayPels()),
              rectangle(c.shown.left(), c.shown.top(), c.shown.width(), c.shown.height()))
        << c.rect;
    EXPECT_EQ(part->opaque(), !c.shown.isNull());
    EXPECT_EQ(part->allChanged(), !c.shown.isNull());
  }
}

TEST(PelScopeTree, APartOfACutPartCountsFromItsTabletsFirstPel)
{
  gxPelSurface surface(40, 30);
  Scope const outer(surface.overlayScope().newSubScope({-7, -4, 30, 20}, false));  // 23 x 16 of it show
  Scope const inner(outer->newSubScope({9, 5, 10, 8}, false));                     // at (2, 1) of the surface
  inner->set(gxUIRect(0, 0, 3, 2), gxColor::red);
  EXPECT_EQ(coveredPels(surface.overlayPels()), rectangle(2, 1, 3, 2));
  inner->set(gxUIRect(-100, -100, 1000, 1000), gxColor::red);
  EXPECT_EQ(coveredPels(surface.overlayPels()), rectangle(2, 1, 10, 8));

  Scope const cut(outer->newSubScope({3, 5, 10, 8}, false));  // starts 4 pels before what shows of the outer one
  EXPECT_EQ(rectOf(*cut), gxUIRect(4, 0, 6, 8));
  Scope const deep(cut->newSubScope({5, 1, 2, 2}, false));
  surface.overlayScope().set(gxColor::pass);
  deep->set(gxColor::red);
  EXPECT_EQ(coveredPels(surface.overlayPels()), rectangle(1, 2, 2, 2));
}

TEST(PelScopeTree, MovingCarriesWhatIsBelow)
{
  gxPelSurface surface(40, 30), other(50, 50);
  Scope const outer(surface.overlayScope().newSubScope({10, 10, 20, 15}, false));
  Scope const inner(outer->newSubScope({2, 3, 5, 4}, false));
  outer->move(surface.overlayScope(), {1, 2, 20, 15});
  outer->move(surface.overlayScope(), {1, 2, 20, 15});  // as often as it likes
  inner->set(gxColor::red);
  EXPECT_EQ(coveredPels(surface.overlayPels()), rectangle(3, 5, 5, 4));
  outer->move(surface.overlayScope(), {35, 20, 20, 15});
  EXPECT_EQ(inner->size(), gxPair<long>(3, 4)) << "cut by the surface now";
  outer->move(other.imageScope(), {30, 40, 20, 15});
  inner->set(gxColor::green);
  EXPECT_EQ(coveredPels(other.imagePels()), rectangle(32, 43, 5, 4));
  EXPECT_EQ(coveredPels(surface.overlayPels()).size(), 20u);

  // A parent that shows no pels leaves a part without a surface, and so does a parent of another kind.
  outer->move(other.imageScope(), {-20, 0, 20, 15});
  EXPECT_TRUE(inner->isNull());
  ScopeLog log;
  LogScope foreign(log, "foreign", gxPair<long>(10, 10));
  outer->move(foreign, {0, 0, 5, 5});
  EXPECT_TRUE(outer->isNull());
  outer->set(gxColor::red);
  outer->draw(gxPoint(1, 1), pen);
  outer->lockScreenUpdatesPush(true);
  outer->dragStart();
  outer->dragErase();
  outer->fill({0, 0}, gxColor::red, gxColor::blue, true);
  EXPECT_FALSE(outer->lockScreenUpdatesPop());
  outer->colorMap(std::vector<gxRGB>(3));
  outer->updateScreen();
  foreign.quietEnd();
}

TEST(PelScopeTree, TheSurfaceLivesAsLongAsAPart)
{
  auto surface = std::make_unique<gxPelSurface>(20, 20);
  gxPelBuffer<gxPackedRGB32Pel> const pels = surface->overlayPels();
  Scope outer(surface->overlayScope().newSubScope({2, 2, 10, 10}, false));
  Scope const inner(outer->newSubScope({1, 1, 5, 5}, false));
  Scope const temporary(outer->newSubScope({1, 1, 5, 5}, true));
  surface.reset();
  outer.reset();
  inner->set(gxColor::red);
  temporary->draw(gxPoint(3, 3), pen);
  EXPECT_EQ(coveredPels(pels), rectangle(3, 3, 5, 5));
}

TEST(PelScopeTree, TemporaryPartsTakeTheDisplayClipAlong)
{
  gxPelSurface surface(20, 20);
  surface.imageScope().setDisplayClipRect({4, 4, 3, 3});
  Scope const temporary(surface.imageScope().newSubScope({5, 0, 10, 10}, true));
  Scope const lasting(surface.imageScope().newSubScope({5, 0, 10, 10}, false));
  EXPECT_EQ(temporary->displayClipRect(), gxUIRect(4, 4, 3, 3));
  EXPECT_TRUE(lasting->displayClipRect().isNull());
  temporary->set(gxColor::red);
  EXPECT_EQ(coveredPels(surface.imagePels()), rectangle(5, 4, 2, 3));
  EXPECT_FALSE(temporary->opaque());
}

TEST(PelSurface, SizesAndNull)
{
  EXPECT_THROW(gxPelSurface(-1, 5), gxPel::BadSize);
  for (gxPair<long> const &size : {gxPair<long>(0, 0), gxPair<long>(0, 5), gxPair<long>(5, 0)}) {
    gxPelSurface surface(size.x(), size.y());
    EXPECT_TRUE(surface.imageScope().isNull());
    EXPECT_EQ(surface.picture().size(), size);
  }
  gxPelSurface surface(7, 5);
  EXPECT_FALSE(surface.overlayScope().isNull());
  EXPECT_EQ(surface.overlayScope().size(), gxPair<long>(7, 5));
  EXPECT_EQ(surface.picture().get(6, 4), gxPackedRGB32Pel(0, 0, 0));
}

TEST(PelSurface, TheOverlayCoversTheImageAndPassUncoversIt)
{
  gxPelSurface surface(4, 3);
  surface.imageScope().set(gxColor(10, 20, 30));
  surface.overlayScope().set(gxUIRect(1, 1, 2, 1), gxColor::yellow);
  EXPECT_EQ(surface.picture().get(0, 0), gxPackedRGB32Pel(10, 20, 30));
  EXPECT_EQ(surface.picture().get(1, 1), gxPackedRGB32Pel(255, 255, 0));
  surface.overlayScope().set(gxUIRect(1, 1, 1, 1), gxColor::pass);
  EXPECT_EQ(surface.picture().get(1, 1), gxPackedRGB32Pel(10, 20, 30));
  EXPECT_EQ(surface.picture().get(2, 1), gxPackedRGB32Pel(255, 255, 0));

  surface.overlayScope().set(gxColor(243));
  EXPECT_FALSE(surface.overlayScope().opaque()) << "what lets through covers nothing";
  surface.overlayScope().noChange();
  surface.overlayScope().set(gxColor(243, 243, 243));  // by components this is a color like any other
  EXPECT_TRUE(surface.overlayScope().opaque());
  EXPECT_EQ(surface.picture().get(0, 0), gxPackedRGB32Pel(243, 243, 243));
  surface.overlayScope().set(gxColor(243));
  EXPECT_TRUE(surface.overlayScope().opaque()) << "an application that sets the flag is not overruled";
  surface.imageScope().noChange();
  surface.imageScope().set(gxColor::pass);
  EXPECT_TRUE(surface.imageScope().opaque()) << "nothing is behind an image";
  EXPECT_EQ(surface.picture().get(0, 0), gxPackedRGB32Pel(243, 243, 243));
}

TEST(PelSurface, LocksHoldThePictureBackAndNest)
{
  gxPelSurface surface(4, 3);
  gxPelScope &image = surface.imageScope();
  Scope const part(image.newSubScope({0, 0, 2, 2}, false));
  gxPackedRGB32Pel const black, red(255, 0, 0);
  image.lockScreenUpdatesPush(true);
  part->lockScreenUpdatesPush(false);
  part->lockScreenUpdatesPush(true);
  EXPECT_TRUE(surface.imageScope().screenUpdatesLocked());
  EXPECT_FALSE(surface.overlayScope().screenUpdatesLocked());
  image.set(gxColor::red);
  EXPECT_EQ(surface.picture().get(0, 0), black);
  EXPECT_TRUE(image.lockScreenUpdatesPop());
  EXPECT_TRUE(image.lockScreenUpdatesPop());
  EXPECT_EQ(surface.picture().get(0, 0), black);
  EXPECT_FALSE(part->lockScreenUpdatesPop());
  EXPECT_EQ(surface.picture().get(3, 2), red);
  EXPECT_FALSE(part->lockScreenUpdatesPop()) << "one pop too many is harmless";

  gxPelBuffer_const<gxPackedRGB32Pel> const picture = surface.picture();
  part->set(gxColor::green);
  EXPECT_EQ(picture.get(1, 1), red);
  part->updateScreen();
  EXPECT_EQ(picture.get(1, 1), gxPackedRGB32Pel(0, 255, 0));

  surface.imagePels().put(3, 0, gxPackedRGB32Pel(1, 2, 3));
  EXPECT_EQ(surface.picture().get(3, 0), red) << "nobody knows yet";
  image.invalidateScreen({3, 0, 9, 9});
  EXPECT_EQ(surface.picture().get(3, 0), gxPackedRGB32Pel(1, 2, 3));
}

TEST(PelSurface, TheDragImageLiesOverItsLayer)
{
  gxPelSurface surface(6, 4);
  gxPelScope &image = surface.imageScope();
  gxPackedRGB32Pel const blue(0, 0, 255), red(255, 0, 0), black;
  image.set(gxColor::blue);
  surface.overlayScope().set(gxUIRect(2, 0, 1, 1), gxColor::green);
  image.dragStart();
  image.set(gxUIRect(0, 0, 4, 2), gxColor::red);
  EXPECT_EQ(surface.picture().get(1, 1), red);
  EXPECT_EQ(surface.picture().get(2, 0), gxPackedRGB32Pel(0, 255, 0)) << "below the overlay";
  EXPECT_EQ(surface.picture().get(5, 3), blue);
  image.set(gxUIRect(0, 0, 1, 1), gxColor::pass);
  EXPECT_EQ(surface.picture().get(0, 0), blue);
  image.dragStop();
  image.dragAnimate(false);
  EXPECT_EQ(surface.picture().get(1, 1), blue);
  image.dragAnimate(true);
  EXPECT_EQ(surface.picture().get(1, 1), red);
  image.dragErase();
  EXPECT_EQ(surface.picture().get(1, 1), blue);
  image.dragStart();
  image.dragStop();
  image.set(gxColor::black);
  EXPECT_EQ(surface.picture().get(1, 1), black);
}

TEST(PelSurface, IndexColorsGoThroughThePaletteOfTheLayer)
{
  gxPelSurface surface(2, 2);
  gxPelScope &image = surface.imageScope();
  auto const shown = [&](gxColor const &color) {
    image.set(color);
    return surface.picture().get(0, 0);
  };
  EXPECT_EQ(shown(gxColor(251)), gxPackedRGB32Pel(255, 255, 0));  // index of yellow
  EXPECT_EQ(shown(gxColor(7)), gxPackedRGB32Pel(192, 192, 192));  // of light grey
  EXPECT_EQ(shown(gxColor(100)), gxPackedRGB32Pel(100, 100, 100));
  image.colorMapEx({gxRGB(1, 2, 3), gxRGB(4, 5, 6)});
  EXPECT_EQ(shown(gxColor(1)), gxPackedRGB32Pel(4, 5, 6));
  EXPECT_EQ(shown(gxColor::black), gxPackedRGB32Pel(0, 0, 0)) << "a stock color has components";
  EXPECT_EQ(shown(gxColor(251)), gxPackedRGB32Pel(255, 255, 0));
  std::vector<gxRGB> map(252, gxRGB(9, 9, 9));
  image.colorMap(map);
  EXPECT_EQ(shown(gxColor(251)), gxPackedRGB32Pel(9, 9, 9));
  image.colorMap({gxRGB(1, 1, 1)});
  EXPECT_EQ(shown(gxColor(251)), gxPackedRGB32Pel(255, 255, 0)) << "the rest is as in the beginning";
  EXPECT_THROW(image.colorMap(std::vector<gxRGB>(257)), gxUIError::InvalidColorMapSize);
  EXPECT_THROW(image.colorMapEx(std::vector<gxRGB>(257)), gxUIError::InvalidColorMapSize);
  EXPECT_EQ(shown(gxColor(0)), gxPackedRGB32Pel(1, 1, 1)) << "a refused palette changes nothing";
  surface.overlayScope().set(gxColor(0));
  EXPECT_EQ(surface.picture().get(0, 0), gxPackedRGB32Pel(0, 0, 0)) << "the other layer has a palette of its own";
}

TEST(PelScope, ThePenIsKeptInPels)
{
  gxPelSurface surface(30, 20);
  gxPelScope &scope = surface.overlayScope();
  scope.drawStart(gxPoint(2.9999999999999, 4.5));
  scope.drawToRelPels(4, 0, pen);
  scope.drawToRelPels(0, 3, pen);
  EXPECT_EQ(scope.drawPoint(), gxPoint(2.9999999999999 + 4, 7.5));
  scope.drawTo(gxPoint(10.9, 7.1), pen);
  Pels expected = rectangle(3, 4, 5, 1);
  expected.merge(rectangle(7, 4, 1, 4));
  expected.merge(rectangle(7, 7, 4, 1));
  EXPECT_EQ(coveredPels(surface.overlayPels()), expected);
  scope.draw(gxPoint(20, 10), pen);
  scope.draw(gxLineSeg({1, 1}, {2, 2}), pen);
  EXPECT_EQ(scope.drawPoint(), gxPoint(10.9, 7.1)) << "only pen operations move the pen";
}

TEST(PelScope, FloodFillsWhatHangsTogether)
{
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    gxPelSurface surface(20, 16);
    gxPelScope &scope = surface.overlayScope();
    gxColor const colors[] = {gxColor::red, gxColor::green, gxColor::pass, gxColor::blue};
    for (int i = 0; i < 260; ++i)
      scope.set(gxUIRect(long(random() % 20), long(random() % 16), 1, 1), colors[random() % (round % 2 ? 2 : 3)]);
    gxUIRect const clip = round % 3 ? gxUIRect(0, 0, 20, 16) : gxUIRect(3, 2, 12, 11);
    scope.setDisplayClipRect(clip);
    gxPair<long> const seed(long(random() % 20), long(random() % 16));
    bool const toBoundary = random() % 2;
    gxColor const fillColor = colors[random() % 4], boundary = colors[random() % 3];
    auto const value = [](gxColor const &c) {
      return c == gxColor::pass
                 ? 0u
                 : gxPackedRGB32Pel(c.rgbStruct().r(), c.rgbStruct().g(), c.rgbStruct().b(), 255).value();
    };
    std::map<std::pair<long, long>, unsigned> expected, actual;
    for (long y = 0; y < 16; ++y)
      for (long x = 0; x < 20; ++x)
        expected[{x, y}] = surface.overlayPels().get(x, y).value();
    std::vector<std::pair<long, long>> front;
    Pels reached;
    unsigned const atSeed = expected[{seed.x(), seed.y()}];
    auto const visit = [&](long x, long y) {
      if (!clip.within(gxPair<long>(x, y)) || reached.count({x, y}))
        return;
      unsigned const v = expected[{x, y}];
      if (toBoundary ? v == value(boundary) : v != atSeed)
        return;
      reached.emplace(x, y);
      front.emplace_back(x, y);
    };
    visit(seed.x(), seed.y());
    while (!front.empty()) {
      auto const [x, y] = front.back();
      front.pop_back();
      visit(x - 1, y), visit(x + 1, y), visit(x, y - 1), visit(x, y + 1);
    }
    for (auto const &pel : reached)
      expected[pel] = value(fillColor);
    scope.noChange();
    scope.fill(seed, fillColor, boundary, toBoundary);
    gxUIRect box;
    for (auto const &[x, y] : reached)
      box |= gxUIRect(x, y, 1, 1);
    EXPECT_EQ(scope.changeRect(), box);
    for (long y = 0; y < 16; ++y)
      for (long x = 0; x < 20; ++x)
        actual[{x, y}] = surface.overlayPels().get(x, y).value();
    ASSERT_EQ(actual, expected) << "round " << round;
  }
}

TEST(PelScope, ATabletGivesItsAreaBackWhenItHides)
{
  struct Painted : gxUITablet {
    using gxUITablet::gxUITablet;
    void redraw_() override
    {
      set(gxColor::blue, image);
      draw(gxLineSeg({0, 5}, {39, 5}), gxColor::white, image);
    }
  };
  gxPelSurface surface(40, 30);
  Painted root(&surface.imageScope(), nullptr);
  root.opaque(gxUITablet::image, true);
  root.visible(true);
  gxPelBuffer_const<gxPackedRGB32Pel> const before = surface.picture();
  std::vector<gxPackedRGB32Pel> kept;
  for (long y = 0; y < 30; ++y)
    kept.insert(kept.end(), before.pointToRow(y), before.pointToRow(y) + 40);
  {
    gxUITablet kid(root, gxUIRect(-3, 2, 20, 10));
    kid.visible(true);
    kid.draw(gxRect(gxVector<2>(0, 0), gxVector<2>(19, 9)), gxColor::red, gxUITablet::image, true);
    EXPECT_EQ(surface.picture().get(10, 5), gxPackedRGB32Pel(255, 0, 0));
    EXPECT_EQ(surface.picture().get(20, 5), gxPackedRGB32Pel(255, 255, 255));
    kid.moveAbs(gxPair<long>(15, 15));
    EXPECT_EQ(surface.picture().get(10, 5), gxPackedRGB32Pel(255, 255, 255)) << "repainted where it was";
    kid.draw(gxRect(gxVector<2>(0, 0), gxVector<2>(19, 9)), gxColor::red, gxUITablet::image, true);
    EXPECT_EQ(surface.picture().get(20, 20), gxPackedRGB32Pel(255, 0, 0));
  }
  gxPelBuffer_const<gxPackedRGB32Pel> const after = surface.picture();
  for (long y = 0; y < 30; ++y)
    for (long x = 0; x < 40; ++x)
      ASSERT_EQ(after.get(x, y), kept[static_cast<std::size_t>(y * 40 + x)]) << x << ", " << y;
}

}  // namespace
