#include "tests/support/logscope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace
{
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Scopes : testing::Test {
  ScopeLog log;
  std::unique_ptr<LogScope> scope(std::string name, long w, long h)
  {
    return std::make_unique<LogScope>(log, std::move(name), gxPair<long>(w, h));
  }
};

TEST_F(Scopes, CoordinatesForgiveAHairAndNeverOverflow)
{
  auto const s = scope("s", 10, 10);
  EXPECT_EQ(s->xCoord(gxPoint(2.9999999999999, 0)), 3);
  EXPECT_EQ(s->xCoord(gxPoint(-2.9999999999999, 0)), -3);
  EXPECT_EQ(s->yCoord(gxPoint(0, 2.9999)), 2);
  EXPECT_EQ(s->yCoord(gxPoint(0, -0.5)), -1);
  EXPECT_EQ(s->xCoord(gxPoint(1e300, 0)), 2147483647);
  EXPECT_EQ(s->xCoord(gxPoint(-inf, 0)), -2147483648L);
  EXPECT_EQ(s->xCoord(gxPoint(nan, 0)), 0);
  LogScope moved(log, "moved", gxPair<long>(5, 5));
  moved.move(*s, gxUIRect(-7, -3, 5, 5));
  EXPECT_EQ(moved.org(), gxPair<long>(7, 3)) << "starts before the parent's first pel";
  EXPECT_EQ(moved.xCoord(gxPoint(10.5, 0)), 3);
  EXPECT_EQ(moved.xCoord(gxPoint(-1e300, 0)), 2147483641) << "wraps";
}

TEST_F(Scopes, ThePenDoesNotDriftFromItsDouble)
{
  auto const s = scope("s", 10, 10);
  s->drawStart(gxPoint(0.999999999999, 5.5));
  EXPECT_EQ(s->drawX(), 1);
  EXPECT_EQ(s->drawY(), 5);
  s->moveToRel(3, -7);
  EXPECT_EQ(s->drawX(), 4);
  EXPECT_EQ(s->drawY(), -2);
  EXPECT_DOUBLE_EQ(s->drawPoint().x(), 3.999999999999);
  s->drawStart(s->drawPoint());
  EXPECT_EQ(s->xCoord(s->drawPoint()), 4) << "the pen itself, by address";
  s->moveToRel(2147483647, 0);
  EXPECT_EQ(s->drawX(), -2147483645) << "wraps";
}

TEST_F(Scopes, ChangesJoinAndTellWhenAllHasChanged)
{
  auto const s = scope("s", 10, 10);
  EXPECT_TRUE(s->trackChanges());
  s->change(gxUIRect(20, 20, 5, 5), true);
  EXPECT_FALSE(s->someChanged());
  EXPECT_FALSE(s->anyChanged());
  s->change(gxUIRect(-5, 0, 10, 10), true);
  EXPECT_EQ(s->changeRect(), gxUIRect(0, 0, 5, 10));
  EXPECT_FALSE(s->opaque()) << "not the whole scope";
  EXPECT_FALSE(s->allChanged());
  s->change(gxUIRect(5, 0, 100, 10), false);
  EXPECT_TRUE(s->allChanged());
  EXPECT_FALSE(s->trackChanges());
  s->change(gxUIRect(1, 1, 1, 1), false);
  EXPECT_TRUE(s->allChanged()) << "the union keeps the full size";
  EXPECT_TRUE(s->anyChanged());
  s->noChange();
  EXPECT_FALSE(s->allChanged());
  EXPECT_TRUE(s->anyChanged()) << "noChange leaves the tree's flag";
  s->clearAnyChanged();
  EXPECT_FALSE(s->anyChanged());
  s->change(gxUIRect(-3, -3, 100, 100), true);
  EXPECT_TRUE(s->opaque());
}

TEST_F(Scopes, AClientCollectsChangesBeforeClipping)
{
  auto const s = scope("s", 10, 10);
  s->change(gxUIRect(0, 0, 10, 10), false);
  s->clientChangeEnable(true);
  EXPECT_TRUE(s->trackChanges()) << "although all has changed";
  s->change(gxUIRect(50, 60, 2, 3), false);
  EXPECT_EQ(s->clientChangedRect(true), gxUIRect(50, 60, 2, 3));
  EXPECT_TRUE(s->clientChangeEnable());
  s->noChange();
  EXPECT_EQ(s->clientChangedRect(false), gxUIRect(50, 60, 2, 3));
  EXPECT_FALSE(s->clientChangeEnable());
  s->change(gxUIRect(0, 0, 1, 1), false);
  EXPECT_EQ(s->clientChangedRect(true), gxUIRect(50, 60, 2, 3));
  s->clientChangeEnable(true);
  EXPECT_TRUE(s->clientChangedRect(true).isNull());
  s->allChange();
  EXPECT_EQ(s->clientChangedRect(true), gxUIRect::inf);
  EXPECT_EQ(s->changeRect(), gxUIRect(0, 0, 10, 10));
  s->null(true);
  s->allChange();
  EXPECT_TRUE(s->changeRect().isNull());
  EXPECT_TRUE(s->allChanged());
}

TEST_F(Scopes, SubsetKeepsDeviceCoordinates)
{
  auto const s = scope("s", 100, 100);
  LogScope a(log, "a", gxPair<long>(1, 1));
  a.subset(*s, gxUIRect(10, 20, 30, 40));
  EXPECT_EQ(a.org(), gxPair<long>(10, 20));
  EXPECT_EQ(a.size(), gxPair<long>(30, 40));
  a.change(gxUIRect(1, 1, 2, 2), false);
  EXPECT_EQ(a.changeRect(), gxUIRect(11, 21, 2, 2));
  LogScope b(log, "b", gxPair<long>(1, 1));
  b.subset(a, gxUIRect(5, 50, 10, 10));
  EXPECT_EQ(b.org(), gxPair<long>(10, 50)) << "at least the parent's";
  EXPECT_EQ(log.lines.back(), "b: surface in a " + testing::PrintToString(gxUIRect(-5, 30, 10, 10)));
}

TEST_F(Scopes, TheTreeNeverKeepsARootThatIsGone)
{
  auto top = scope("top", 9, 9);
  auto mid = scope("mid", 9, 9);
  auto low = scope("low", 9, 9);
  auto leaf = scope("leaf", 9, 9);
  leaf->move(*low, gxUIRect(0, 0, 1, 1));
  low->move(*mid, gxUIRect(0, 0, 1, 1));
  mid->move(*top, gxUIRect(0, 0, 1, 1));
  leaf->change(gxUIRect(0, 0, 1, 1), false);
  EXPECT_TRUE(top->anyChanged()) << "the root was carried down to what hung below";
  auto other = scope("other", 9, 9);
  mid->move(*other, gxUIRect(0, 0, 1, 1));
  EXPECT_TRUE(top->children().empty());
  leaf->change(gxUIRect(0, 0, 1, 1), false);
  EXPECT_TRUE(other->anyChanged());
  low.reset();  // dies in the middle: what is below is without parent and root
  EXPECT_EQ(leaf->parent(), nullptr);
  EXPECT_FALSE(leaf->anyChanged());
  other.reset();
  EXPECT_FALSE(mid->anyChanged());
  leaf->allChange();
  mid->allChange();
  EXPECT_FALSE(leaf->anyChanged());
}

TEST_F(Scopes, CopiesDisturbNoLink)
{
  struct Copied : LogScope {
    using LogScope::LogScope;
  };
  Copied top(log, "top", gxPair<long>(9, 9));
  auto kid = scope("kid", 9, 9);
  kid->move(top, gxUIRect(0, 0, 1, 1));
  {
    Copied copy(top);
    copy.quietEnd();
    EXPECT_EQ(copy.children().size(), 1u);
    auto own = scope("own", 9, 9);
    own->move(copy, gxUIRect(0, 0, 1, 1));
    kid->move(copy, gxUIRect(0, 0, 1, 1));
    EXPECT_TRUE(top.children().empty());
    kid->move(top, gxUIRect(0, 0, 1, 1));
    EXPECT_EQ(copy.children().size(), 1u) << "every entry of the one that left is gone";
    Copied assigned(log, "assigned", gxPair<long>(9, 9));
    assigned = copy;
    assigned.quietEnd();
  }
  EXPECT_EQ(kid->parent(), &top);
  Copied late(top);
  late.quietEnd();
  kid.reset();
  EXPECT_TRUE(top.children().empty());
}

TEST_F(Scopes, NearestColorIsTheFirstOfTheNearest)
{
  std::vector<gxRGB> const map = {{10, 0, 0}, {0, 10, 0}, {0, 0, 10}, {200, 0, 0}};
  EXPECT_EQ(gxUIScope::nearestColor(gxColor(0, 0, 0), map).index(), 0);
  EXPECT_EQ(gxUIScope::nearestColor(gxColor(0, 9, 1), map).index(), 1);
  EXPECT_EQ(gxUIScope::nearestColor(gxColor(255, 255, 255), map).index(), 3);
  EXPECT_EQ(gxUIScope::nearestColor(gxColor(200), map).index(), 0) << "invalid components count as they stand";
  EXPECT_EQ(gxUIScope::nearestColor(gxColor(1, 2, 3), {}).index(), 0);
  std::mt19937 random(3);
  auto const component = [&] { return static_cast<unsigned char>(random() % 256); };
  std::vector<gxRGB> big;
  for (int i = 0; i < 300; ++i)
    big.emplace_back(component(), component(), component());
  for (int round = 0; round < 500; ++round) {
    gxColor const c(component(), component(), component());
    double best = HUGE_VAL;
    std::size_t index = 0;
    for (std::size_t i = 0; i < big.size(); ++i) {
      double const d =
          std::hypot(c.rgbStruct().r() - big[i].r(), c.rgbStruct().g() - big[i].g(), c.rgbStruct().b() - big[i].b());
      if (d < best) {
        best = d;
        index = i;
      }
    }
    EXPECT_EQ(gxUIScope::nearestColor(c, big).index(), index % 256);
  }
}

TEST_F(Scopes, WholeFactorsGoToTheExactForms)
{
  auto const s = scope("s", 10, 10);
  gxPelBuffer<unsigned char> const grey(2, 2);
  gxPelBuffer<gxPackedRGB32Pel> const color(2, 2);
  s->sample(grey, gxPoint(1, 2), gxPair<long>(4, 2), true, 7, true);
  s->expand(color, gxPoint(1, 2), gxPair<long>(3, 5), false, 0ul, LogScope::InterpolationModes(2));
  ASSERT_EQ(log.lines.size(), 2u);
  EXPECT_EQ(log.lines[0], "s: sample8 (2, 2) at (1, 2) pass 7 flag 1 scale (0.25, 0.5)");
  EXPECT_EQ(log.lines[1], "s: expand32 (2, 2) at (1, 2) solid 0 scale (3, 5) mode 2");
}
}  // namespace
