#include "foundation/matherror.h"
#include "tests/support/hooktablet.h"

#include <cmath>
#include <limits>
#include <random>

// From client coordinates to pels and back.

namespace
{
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr long lowest = -2147483648L;
constexpr long highest = 2147483647L;
using Modes = gxUITablet::ScaleModes;

/// Of (1, 0) and (0, 1) under a map without turn, and of the origin.
struct Images {
  double sx, sy, tx, ty;
};

/// With the map (x, y) -> (4 x + 10, 8 y + 20) and other factors for each row.
TEST(TabletMap, EachModeTakesItsFactorsIn)
{
  struct Row {
    Modes mode;
    gxPair<double> factors;
    Images expected;
  };
  Row const rows[] = {
      {gxUITablet::noScale, {2, 3}, {4, 8, 10, 20}},
      {gxUITablet::expandMode, {2, 3}, {8, 24, 20, 60}},
      {gxUITablet::expandMode, {0.5, 0.25}, {2, 2, 5, 5}},
      {gxUITablet::sampleMode, {0.5, 0.25}, {2, 2, 5, 5}},
      {gxUITablet::sampleMode, {2, 4}, {2, 2, 5, 5}},      // whole divisors
      {gxUITablet::sampleMode, {2, 0.5}, {8, 4, 20, 10}},  // only if both are above 1
      {gxUITablet::sampleMode, {2, 1}, {8, 8, 20, 20}},
      {Modes(7), {2, 4}, {8, 32, 20, 80}},
      {Modes(-1), {2, 4}, {8, 32, 20, 80}},
  };
  gxXform<2> const base(gxMatrix<2>(4, 0, 0, 8), {10, 20});
  for (Row const &row : rows) {
    SCOPED_TRACE(testing::Message() << row.mode << ' ' << row.factors);
    gxUITablet t;
    t.baseMap(base);
    t.scaleExact(row.factors);
    t.scaleMode(row.mode);
    Images const e = row.expected;
    EXPECT_EQ(t.scaledMap(), gxXform<2>(gxMatrix<2>(e.sx, 0, 0, e.sy), {e.tx, e.ty}));
    EXPECT_EQ(t.scaleExact(), row.factors);
    EXPECT_EQ(t.baseMap(), base);
  }
}

TEST(TabletMap, TheFactorOfXAloneChoosesTheMode)
{
  struct Row {
    double x;
    Modes expected;
  };
  Row const rows[] = {{1, gxUITablet::noScale},          {1.0000001, gxUITablet::noScale},
                      {0.9999991, gxUITablet::noScale},  {1.00001, gxUITablet::expandMode},
                      {0.99999, gxUITablet::sampleMode}, {3, gxUITablet::expandMode},
                      {inf, gxUITablet::expandMode},     {0, gxUITablet::sampleMode},
                      {-3, gxUITablet::sampleMode},      {nan, gxUITablet::sampleMode}};
  for (Row const &row : rows) {
    gxUITablet t;
    t.baseMap(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), {}));
    t.scaleExact({row.x, 3.0});
    EXPECT_EQ(t.scaleMode(), row.expected) << row.x;
    EXPECT_EQ(t.scaleExact().y(), 3.0) << "the factors stay as they were given";
    if (row.expected == gxUITablet::noScale) {
      EXPECT_EQ(t.scaledMap(), t.baseMap());
    }
  }
}

TEST(TabletMap, WholeFactors)
{
  struct Row {
    double factor;
    long whole;
  };
  for (Row const &row : {Row{1, 1}, Row{2.99, 2}, Row{0.25, 4}, Row{0.3, 3}, Row{1e300, highest}, Row{0, highest},
                         Row{-0.0, lowest}, Row{-0.5, -2}, Row{1e-300, highest}, Row{nan, 0}, Row{inf, highest}}) {
    gxUITablet t;
    t.scaleExact({row.factor, 1});
    EXPECT_EQ(t.scale(), gxPair<long>(row.whole, 1)) << row.factor;
  }
  gxUITablet t;
  t.scaleMode(gxUITablet::sampleMode);
  t.scale({4, 8});
  EXPECT_EQ(t.scaleMode(), gxUITablet::sampleMode) << "the mode stays";
  EXPECT_EQ(t.scaleExact(), gxPair<double>(4, 8));
  EXPECT_EQ(t.scaledMap().matrix(), gxMatrix<2>(0.25, 0, 0, 0.125));
}

TEST(TabletMap, APanIsInPelsAndEndsWithTheNextMap)
{
  gxUITablet t;
  t.scaleExact({4, 4});
  t.dragDel({3, -5});
  EXPECT_EQ(t.scopeCoords({1, 1}), gxPair<long>(7, -1));
  t.dragDel(gxPair<long>(10, 10));
  EXPECT_EQ(t.scopeCoords({1, 1}), gxPair<long>(14, 14)) << "from the map, not from the pan before";
  t.dragDel(t.dragDel());
  EXPECT_EQ(t.dragDel(), gxPair<long>(10, 10)) << "its own pan";
  t.scaleMode(gxUITablet::expandMode);
  EXPECT_EQ(t.dragDel(), gxPair<long>(0, 0));
  EXPECT_EQ(t.scopeCoords({1, 1}), gxPair<long>(4, 4));
  t.dragDel({lowest, highest});
  EXPECT_EQ(t.scopeCoords({0, 0}), gxPair<long>(lowest, highest));
}

/// As numbers do, whose boundaries are the matter of plainvalues_test.
TEST(TabletMap, PelsForgiveAHair)
{
  gxUITablet t;
  for (auto const &[v, pel] : {std::pair(2.99999999999, 3L),
                               {2.9999999999, 2},
                               {-0.5, -1},
                               {-1e-12, -1},
                               {-0.0, 0},
                               {1e10, highest},
                               {-inf, lowest},
                               {nan, 0}}) {
    EXPECT_EQ(t.scopeCoords({v, 0}).x(), pel) << v;
    EXPECT_EQ(t.scopeCoords({7, v}).y(), pel) << v;
  }
}

TEST(TabletMap, ScreenCoordsAddTheOriginBehindTheRounding)
{
  gxUITablet root;
  gxUITablet kid(root, gxUIRect(-10, 20, 30, 40));
  gxUITablet below(kid, gxUIRect(-3, -4, 5, 6));
  EXPECT_EQ(below.scopeOrg(), gxPair<long>(-13, 16));
  EXPECT_EQ(below.screenCoords({0.5, -0.5}), gxPair<long>(-13, 15));
  EXPECT_EQ(below.screenCoords({1e300, -1e300}), gxPair<long>(highest - 13, lowest + 16));
  EXPECT_EQ(below.screenCoords({-1e300, 0}).x(), highest - 12) << "sums of pels wrap";
}

TEST(TabletMap, TabletCoordsAreTheCornerOfThePel)
{
  gxUITablet root;
  gxUITablet kid(root, gxUIRect(10, 20, 30, 40));
  kid.baseMap(gxXform<2>(gxMatrix<2>(0, -2, 4, 0), {1, 2}));
  EXPECT_EQ(kid.tabletCoords({1, 2}), gxVector<2>(0, 0)) << "in pels of the tablet, not of the screen";
  kid.baseMap(gxXform<2>(gxMatrix<2>(1, 2, 2, 4), {1, 2}));
  EXPECT_THROW(kid.tabletCoords({1, 2}), gxMathError::Singular);
  std::mt19937 random(5);
  std::uniform_real_distribution<> number(-3, 3);
  for (int round = 0; round < 300; ++round) {
    gxMatrix<2> const m(number(random), number(random), number(random), number(random));
    if (std::abs(m.det()) < 0.01)
      continue;
    kid.baseMap(gxXform<2>(m, {number(random), number(random)}));
    kid.scaleExact({std::exp(number(random)), std::exp(number(random))});
    gxPair<long> const pel(static_cast<long>(random() % 2000) - 1000, static_cast<long>(random() % 2000) - 1000);
    gxVector<2> const there = kid.scaledMap().mapPoint(kid.tabletCoords(pel));
    EXPECT_NEAR(there.x(), static_cast<double>(pel.x()), 1e-8) << round;
    EXPECT_NEAR(there.y(), static_cast<double>(pel.y()), 1e-8) << round;
  }
}

TEST(TabletMap, HooksOfAMapSeeTheNewOne)
{
  CheckedLog log;
  HookTablet root(log, "root");
  HookTablet kid(log, "kid", root, gxUIRect(0, 0, 1, 1));
  gxXform<2> const map(gxMatrix<2>(3, 0, 0, 3), {});
  kid.onParentMap = [&] {
    EXPECT_EQ(root.scaledMap(), map);
    kid.baseMap(root.baseMap());  // a kid that follows its parent
  };
  HookTablet last(log, "last", root, gxUIRect(0, 0, 1, 1));
  root.baseMap(map);
  EXPECT_EQ(kid.scaledMap(), map);
  EXPECT_EQ(log.text(), "\nkid: parentMap\nlast: parentMap");
}
}  // namespace
