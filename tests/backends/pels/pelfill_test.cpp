#include "backends/pels/detail/pelfill.h"

#include "tests/backends/pels/pelgrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>

namespace
{

using Points = std::vector<gxVector<2>>;

gx_PelBox const theBox{-12, -9, 14, 11};

/// How often an outline turns round the center of a pel, by the rule: sides to the left of the center, or through it,
/// count; a side spans the heights from its upper end up to, not including, its lower end. Exact for points on a grid
/// of quarters.
int turnsRound(Points const &points, long i, long j)
{
  double const x = double(i) + 0.5;
  double const y = double(j) + 0.5;
  int turns = 0;
  for (std::size_t k = 0; k < points.size(); ++k) {
    gxVector<2> a = points[k], b = points[(k + 1) % points.size()];
    int const sense = a.y() < b.y() ? 1 : -1;
    if (sense < 0)
      std::swap(a, b);
    if (a.y() <= y && y < b.y() && (b.x() - a.x()) * (y - a.y()) <= (x - a.x()) * (b.y() - a.y()))
      turns += sense;
  }
  return turns;
}

std::string print(Points const &points)
{
  std::ostringstream os;
  for (auto const &p : points)
    os << p << ' ';
  return os.str();
}

Points randomPoints(std::mt19937 &random, int count, int reach)
{
  Points points;
  for (int i = 0; i < count; ++i)
    points.emplace_back((int(random() % (8u * reach)) - 4 * reach) * 0.25,
                        (int(random() % (8u * reach)) - 4 * reach) * 0.25);
  return points;
}

TEST(PelFill, CoversThePelsWhoseCenterThePolygonEncloses)
{
  std::mt19937 random(1);
  for (int i = 0; i < 4000; ++i) {
    Points const points = randomPoints(random, static_cast<int>(random() % 9), i % 3 ? 12 : 200);
    for (auto const rule : {gx_PelFillRule::evenOdd, gx_PelFillRule::winding}) {
      PelGrid grid(theBox);
      gf_fillPolygon(grid.canvas(), points, rule);
      PelGrid::Set const expected = grid.where([&](long x, long y) {
        int const turns = turnsRound(points, x, y);
        return rule == gx_PelFillRule::evenOdd ? turns % 2 != 0 : turns != 0;
      });
      ASSERT_EQ(grid.pels(), expected) << print(points) << compare(theBox, expected, grid.pels());
      ASSERT_EQ(grid.canvas().touched().rect(), grid.tightBox());
      ASSERT_EQ(grid.canvas().written(), long(expected.size()));
    }
  }
}

TEST(PelFill, ConvexAgreesWithTheGeneralFill)
{
  std::mt19937 random(2);
  for (int i = 0; i < 3000; ++i) {
    Points const points = randomPoints(random, 3, 14);  // any triangle is convex
    PelGrid convex(theBox), general(theBox);
    gf_fillConvex(convex.canvas(), points);
    gf_fillPolygon(general.canvas(), points, gx_PelFillRule::evenOdd);
    ASSERT_EQ(convex.pels(), general.pels()) << print(points);
  }
}

TEST(PelFill, AdjoiningAreasNeitherOverlapNorLeaveGaps)
{
  std::mt19937 random(3);
  std::uniform_real_distribution<double> offset(-3.0, 3.0);
  for (int round = 0; round < 200; ++round) {
    // A mesh of 5 x 5 bent cells over the whole box, each cell split along a diagonal.
    std::map<std::pair<int, int>, gxVector<2>> nodes;
    for (int i = 0; i <= 5; ++i)
      for (int j = 0; j <= 5; ++j)
        nodes[{i, j}] = {(i - 2.5) * 12 + (i % 5 ? offset(random) : 0), (j - 2.5) * 12 + (j % 5 ? offset(random) : 0)};
    std::map<std::pair<long, long>, int> times;
    auto const cover = [&](Points const &points) {
      PelGrid grid(theBox);
      gf_fillPolygon(grid.canvas(), points, gx_PelFillRule::winding);
      for (auto const &pel : grid.pels())
        ++times[pel];
    };
    for (int i = 0; i < 5; ++i)
      for (int j = 0; j < 5; ++j) {
        cover({nodes[{i, j}], nodes[{i + 1, j}], nodes[{i + 1, j + 1}]});
        cover({nodes[{i, j}], nodes[{i, j + 1}], nodes[{i + 1, j + 1}]});
      }
    EXPECT_EQ(times.size(), std::size_t(theBox.area()));
    for (auto const &[pel, count] : times)
      ASSERT_EQ(count, 1) << pel.first << ", " << pel.second << " in round " << round;
  }
}

TEST(PelFill, EllipseCoversThePelsWhoseCenterItEncloses)
{
  std::mt19937 random(4);
  std::uniform_real_distribution<double> part(-9.0, 9.0);
  for (int i = 0; i < 2000; ++i) {
    gxVector<2> const center(part(random), part(random)), u(part(random), part(random)), v(part(random), part(random));
    PelGrid grid(theBox);
    gf_fillEllipse(grid.canvas(), center, u, v);
    for (long y = theBox.top; y < theBox.bottom; ++y)
      for (long x = theBox.left; x < theBox.right; ++x) {
        gxVector<2> const d = gxVector<2>(double(x) + 0.5, double(y) + 0.5) - center;
        double const a = d.cross(v) / u.cross(v), b = u.cross(d) / u.cross(v);
        double const off = a * a + b * b - 1.0;
        ASSERT_TRUE(std::abs(off) < 1e-9 || grid.isSet(x, y) == (off < 0.0))
            << center << u << v << " at " << x << ", " << y;
      }
    ASSERT_EQ(grid.canvas().touched().rect(), grid.tightBox());
  }
}

TEST(PelFill, DiskIsHalfOpenWhereItPassesThroughCenters)
{
  PelGrid grid({-4, -4, 5, 5});
  gf_fillDisk(grid.canvas(), {0.5, 0.5}, 2.0);
  PelGrid::Set expected;
  for (long y = -1; y <= 1; ++y)
    for (long x = -1; x <= 1; ++x)
      expected.emplace(x, y);
  expected.emplace(-2, 0);
  EXPECT_EQ(grid.pels(), expected) << compare(grid.box(), expected, grid.pels());
}

TEST(PelFill, HugeAndNonFiniteAreas)
{
  double const inf = std::numeric_limits<double>::infinity();
  double const nan = std::numeric_limits<double>::quiet_NaN();
  PelGrid empty(theBox);
  for (double const bad : {nan, inf, -inf, 1e101}) {
    gf_fillPolygon(empty.canvas(), Points{{-5, -5}, {5, -5}, {bad, 5}}, gx_PelFillRule::evenOdd);
    gf_fillConvex(empty.canvas(), Points{{-5, -5}, {5, bad}, {0, 5}});
    gf_fillEllipse(empty.canvas(), {bad, 0}, {5, 0}, {0, 5});
    gf_fillEllipse(empty.canvas(), {0, 0}, {5, bad}, {0, 5});
  }
  gf_fillPolygon(empty.canvas(), Points{}, gx_PelFillRule::winding);
  gf_fillConvex(empty.canvas(), Points{});
  gf_fillEllipse(empty.canvas(), {0, 0}, {0, 0}, {0, 0});
  EXPECT_TRUE(empty.pels().empty());

  PelGrid half(theBox);
  gf_fillPolygon(half.canvas(), Points{{0, -1e99}, {1e99, 0}, {0, 1e99}}, gx_PelFillRule::winding);
  EXPECT_EQ(half.tightBox(), gxUIRect(0, theBox.top, theBox.right, theBox.bottom - theBox.top));
  PelGrid whole(theBox);
  gf_fillDisk(whole.canvas(), {1e6, -1e6}, 1e90);
  EXPECT_EQ(whole.pels().size(), std::size_t(theBox.area()));
}

}  // namespace
