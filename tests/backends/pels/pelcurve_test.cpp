#include "backends/pels/detail/pelcurve.h"

#include "tests/backends/pels/pelgrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

constexpr double turn = gf_turnRadians;
gx_PelBox const theBox{-26, -22, 27, 24};

gx_ArcPiece ellipse(gxVector<2> const &center, gxVector<2> const &u, gxVector<2> const &v)
{
  return {center, u, v, 0.0, turn};
}

PelGrid::Set drawn(gx_ArcPiece const &arc, gx_PelBox const &box = theBox, gx_PelDash const &dash = gx_PelDash())
{
  PelGrid grid(box);
  gf_drawPelArc(grid.canvas(), arc, dash);
  EXPECT_EQ(grid.canvas().touched().rect(), grid.tightBox());
  return grid.pels();
}

enum Answer { no, yes, close };

/// Whether an ellipse meets the straight line from @p p by @p d, by the sign of its equation along the line. `close`
/// if that hangs on a hair.
Answer meets(gx_ArcPiece const &e, gxVector<2> const &p, gxVector<2> const &d)
{
  // In the plane of the unit circle the line is q + t w, 0 <= t <= 1, and the equation is |q + t w|^2 - 1.
  double const det = e.u.cross(e.v);
  auto const toUnit = [&](gxVector<2> const &x) { return gxVector<2>(x.cross(e.v) / det, e.u.cross(x) / det); };
  gxVector<2> const q = toUnit(p - e.center), w = toUnit(d);
  double const at0 = q * q - 1.0, at1 = (q + w) * (q + w) - 1.0;
  double const lowest = std::clamp(-(q * w) / (w * w), 0.0, 1.0);
  gxVector<2> const near = q + w * lowest;
  double const atLowest = near * near - 1.0;
  double const hair = 1e-7 * (1.0 + w * w);
  if (std::min({std::abs(at0), std::abs(at1), std::abs(atLowest)}) < hair)
    return close;
  return (at0 > 0.0 || at1 > 0.0) && (at0 < 0.0 || at1 < 0.0 || atLowest < 0.0) ? yes : no;
}

/// The rule for one pel: the outline passes the part of a center line that lies in the pel.
Answer isOnOutline(gx_ArcPiece const &e, long x, long y)
{
  Answer const up = meets(e, {double(x), double(y) - 0.5}, {0.0, 1.0});
  Answer const across = meets(e, {double(x) - 0.5, double(y)}, {1.0, 0.0});
  return up == yes || across == yes ? yes : std::max(up, across);
}

/// Every pel can be reached from the first one over neighbours, diagonal ones included.
bool isConnected(PelGrid::Set pels)
{
  std::vector<std::pair<long, long>> front{*pels.begin()};
  pels.erase(pels.begin());
  while (!front.empty()) {
    auto const [x, y] = front.back();
    front.pop_back();
    for (long dy = -1; dy <= 1; ++dy)
      for (long dx = -1; dx <= 1; ++dx)
        if (pels.erase({x + dx, y + dy}))
          front.emplace_back(x + dx, y + dy);
  }
  return pels.empty();
}

class Ellipses
{
 public:
  explicit Ellipses(unsigned seed) : random_(seed) {}
  double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
  gxVector<2> vector(double reach) { return {number(-reach, reach), number(-reach, reach)}; }
  gx_ArcPiece next(double reach) { return ellipse(vector(3.0), vector(reach), vector(reach)); }

 private:
  std::mt19937 random_;
};

TEST(PelCurve, EllipseHasThePelsNearestToItsCrossings)
{
  Ellipses ellipses(1);
  for (int i = 0; i < 2500; ++i) {
    gx_ArcPiece const e = ellipses.next(i % 3 == 0 ? 2.0 : i % 3 == 1 ? 14.0 : 300.0);
    PelGrid::Set const pels = drawn(e);
    for (long y = theBox.top; y < theBox.bottom; ++y)
      for (long x = theBox.left; x < theBox.right; ++x) {
        Answer const expected = isOnOutline(e, x, y);
        ASSERT_TRUE(expected == close || (pels.count({x, y}) != 0) == (expected == yes))
            << e.center << e.u << e.v << " at " << x << ", " << y << compare(theBox, {}, pels);
      }
  }
}

TEST(PelCurve, EllipseIsConnectedAndAsSymmetricAsItsGeometry)
{
  Ellipses ellipses(2);
  for (int i = 0; i < 2000; ++i) {
    gx_ArcPiece const e = ellipse({0, 0}, ellipses.vector(10.0), ellipses.vector(10.0));
    PelGrid::Set const pels = drawn(e);
    ASSERT_TRUE(!pels.empty() && isConnected(pels)) << e.u << e.v << compare(theBox, {}, pels);
    for (auto const &[x, y] : pels)
      ASSERT_TRUE(pels.count({-x, -y})) << e.u << e.v << compare(theBox, {}, pels);
    // Other half diameters of the same ellipse.
    double const t = ellipses.number(0.0, turn);
    gxVector<2> const u = e.u * std::cos(t) + e.v * std::sin(t), v = e.u * std::sin(t) - e.v * std::cos(t);
    EXPECT_EQ(drawn(ellipse({0, 0}, u, v)), pels);
  }
  for (int r2 = 0; r2 <= 40; ++r2) {
    double const r = r2 * 0.5;
    PelGrid::Set const pels = drawn(ellipse({0, 0}, {r, 0}, {0, r}));
    for (auto const &[x, y] : pels)
      for (auto const &image : {std::pair(y, x), std::pair(-x, y), std::pair(x, -y)})
        EXPECT_TRUE(pels.count(image)) << "radius " << r << compare(theBox, {}, pels);
    EXPECT_TRUE(pels.count({long(std::ceil(r - 0.5)), 0})) << "radius " << r;  // halves lie inside
    EXPECT_FALSE(pels.count({long(std::ceil(r - 0.5)) + 1, 0})) << "radius " << r;
  }
}

TEST(PelCurve, ClippingLeavesOutPelsAndAddsNone)
{
  Ellipses ellipses(3);
  gx_PelBox const small{-5, -3, 4, 6};
  gxGraphicProps::gePenStyle const styles[] = {gxGraphicProps::penSolid, gxGraphicProps::penDash,
                                               gxGraphicProps::penDashDotDot};
  for (int i = 0; i < 600; ++i) {
    gx_ArcPiece arc = ellipses.next(15.0);
    arc.start = ellipses.number(-9.0, 9.0);
    arc.span = ellipses.number(-7.0, 7.0);
    gx_PelDash const dash(styles[i % 3], 1);
    PelGrid::Set expected = drawn(arc, theBox, dash);
    std::erase_if(expected, [&](auto const &pel) { return !small.holds(pel.first, pel.second); });
    ASSERT_EQ(drawn(arc, small, dash), expected);
  }
}

TEST(PelCurve, ArcsOfOneEllipseMakeItWhole)
{
  Ellipses ellipses(4);
  for (int i = 0; i < 1000; ++i) {
    gx_ArcPiece arc = ellipses.next(12.0);
    PelGrid::Set const whole = drawn(arc);
    arc.start = ellipses.number(-9.0, 9.0);
    arc.span = ellipses.number(-turn, turn);
    PelGrid::Set parts = drawn(arc);
    gx_ArcPiece reversed = arc;
    reversed.start = arc.start + arc.span;
    reversed.span = -arc.span;
    ASSERT_EQ(drawn(reversed), parts);
    gx_ArcPiece rest = arc;
    rest.start = arc.start + arc.span;
    rest.span = std::copysign(turn - std::abs(arc.span), arc.span);
    parts.merge(drawn(rest));
    ASSERT_TRUE(isConnected(drawn(arc))) << arc.center << arc.u << arc.v << arc.start << ' ' << arc.span
                                         << compare(theBox, whole, drawn(arc));
    for (auto const &pel : whole)
      ASSERT_TRUE(parts.count(pel));
    // Beyond the whole there are at most the pels of the two ends.
    ASSERT_LE(parts.size(), whole.size() + 2);
    for (auto const t : {arc.start, arc.start + arc.span}) {
      gxVector<2> const end = arc.at(t);
      ASSERT_TRUE(parts.count({std::lround(end.x()), std::lround(end.y())}));
    }
  }
}

TEST(PelCurve, ArcHasThePelsBetweenItsDirections)
{
  gx_ArcPiece arc = ellipse({0, 0}, {12, 0}, {0, 12});
  arc.start = 0.0;
  arc.span = turn / 4;
  for (auto const &[x, y] : drawn(arc))
    EXPECT_TRUE(x >= 0 && y >= 0) << x << ", " << y;
  arc.span = -turn / 4;
  for (auto const &[x, y] : drawn(arc))
    EXPECT_TRUE(x >= 0 && y <= 0) << x << ", " << y;
  arc.span = 0.0;
  EXPECT_EQ(drawn(arc), (PelGrid::Set{{12, 0}}));
  arc.span = 3 * turn;
  EXPECT_EQ(drawn(arc), drawn(ellipse({0, 0}, {12, 0}, {0, 12})));
}

TEST(PelCurve, DashesHaveTheirLengthAlongTheCurve)
{
  // On a big circle a dash of 6 and a gap of 3 are thirds of 9 pels along the arc.
  double const r = 2000.0;
  gx_PelBox const box{-2100, -2100, 2101, 2101};
  PelGrid grid(box);
  gf_drawPelArc(grid.canvas(), ellipse({0, 0}, {r, 0}, {0, r}), gx_PelDash(gxGraphicProps::penDash, 1));
  for (auto const &[x, y] : grid.pels()) {
    double angle = std::atan2(double(y), double(x));
    double const length = (angle < 0.0 ? angle + turn : angle) * r;
    double const inPattern = std::fmod(length, 9.0);
    EXPECT_TRUE(inPattern < 7.2 || inPattern > 7.8) << x << ", " << y << " at " << length;
  }
  EXPECT_NEAR(double(grid.pels().size()), double(drawn(ellipse({0, 0}, {r, 0}, {0, r}), box).size()) * 6 / 9, 200.0);
}

TEST(PelCurve, DegenerateHugeAndNonFinite)
{
  EXPECT_EQ(drawn(ellipse({2, 3}, {0, 0}, {0, 0})), (PelGrid::Set{{2, 3}}));
  PelGrid::Set level, diagonal;
  for (long i = -10; i <= 10; ++i) {
    level.emplace(i, 4);
    diagonal.emplace(i, i);
  }
  EXPECT_EQ(drawn(ellipse({0, 4}, {10, 0}, {0, 0})), level);
  EXPECT_EQ(drawn(ellipse({0, 0}, {6, 6}, {8, 8})), diagonal);

  double const inf = std::numeric_limits<double>::infinity();
  for (double const bad : {inf, -inf, std::numeric_limits<double>::quiet_NaN(), 1e101}) {
    EXPECT_TRUE(drawn(ellipse({bad, 0}, {10, 0}, {0, 10})).empty());
    EXPECT_TRUE(drawn(ellipse({0, 0}, {10, bad}, {0, 10})).empty());
    EXPECT_TRUE(drawn(ellipse({0, 0}, {10, 0}, {bad, 10}), theBox, gx_PelDash(gxGraphicProps::penDot, 1)).empty());
  }
  gx_ArcPiece arc = ellipse({0, 0}, {10, 0}, {0, 10});
  arc.start = inf;
  EXPECT_TRUE(drawn(arc).empty());
  // As good as a straight line, at any distance.
  for (double const r : {1e6, 1e9, 1e12}) {
    PelGrid::Set const pels = drawn(ellipse({r, 0}, {r, 0}, {0, r}));
    EXPECT_EQ(pels.size(), std::size_t(theBox.bottom - theBox.top)) << r;
    EXPECT_EQ(pels.count({0, 20}), 1u) << r;
  }
  drawn(ellipse({1e99, 0}, {1e99, 1e98}, {1e97, 1e99}));
}

TEST(PelCurve, PlacesKeepTheToleranceOnBothSides)
{
  Ellipses ellipses(5);
  for (int i = 0; i < 200; ++i) {
    gx_ArcPiece arc = ellipses.next(40.0);
    arc.start = ellipses.number(-9.0, 9.0);
    arc.span = ellipses.number(-turn, turn);
    gx_ArcFineness fineness;
    fineness.halfWidth = i % 2 ? 5.0 : 0.0;
    auto const places = gf_arcPlaces(arc, fineness);
    ASSERT_GE(places.size(), 2u);
    EXPECT_LT(places.front().point.distance(arc.at(arc.start)), 1e-9);
    EXPECT_LT(places.back().point.distance(arc.at(arc.start + arc.span)), 1e-9);
    for (std::size_t k = 1; k < places.size(); ++k) {
      gx_ArcPlace const &a = places[k - 1], &b = places[k];
      double const t0 = std::atan2(a.unit.y(), a.unit.x());
      double const step = std::remainder(std::atan2(b.unit.y(), b.unit.x()) - t0, turn);
      ASSERT_GE(step * arc.span, 0.0);
      for (double const part : {0.25, 0.5, 0.75}) {
        gxVector<2> const p = arc.at(t0 + part * step);
        gxVector<2> const chord = b.point - a.point;
        double const off = std::abs(chord.cross(p - a.point)) / chord.len();
        ASSERT_LT(off, 2.0 / 64) << arc.u << arc.v;
      }
    }
  }
}

}  // namespace
