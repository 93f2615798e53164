#include "backends/pels/detail/pelstroke.h"

#include "tests/backends/pels/pelgrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

using Points = std::vector<gxVector<2>>;
using Props = gxGraphicProps;

gx_PelBox const theBox{-26, -22, 27, 24};

Props pen(long width, Props::gePenJoin join, Props::gePenEndCap cap, Props::gePenStyle style = Props::penSolid)
{
  Props props(gxColor::white, width, style, false);
  props.penJoin(join);
  props.penEndCap(cap);
  return props;
}

struct Path {
  Points points;
  bool closed;

  std::size_t lines() const { return points.size() - (closed ? 0 : 1); }
  gxVector<2> from(std::size_t i) const { return points[i]; }
  gxVector<2> to(std::size_t i) const { return points[(i + 1) % points.size()]; }
};

std::ostream &operator<<(std::ostream &os, Path const &path)
{
  for (auto const &p : path.points)
    os << p << ' ';
  return os << (path.closed ? "closed" : "open");
}

PelGrid::Set drawn(Path const &path, Props const &props, gx_PelBox const &box = theBox)
{
  PelGrid grid(box);
  gf_strokeLines(grid.canvas(), path.points, path.closed, gx_PelPen(props));
  EXPECT_EQ(grid.canvas().touched().rect(), grid.tightBox());
  return grid.pels();
}

/// Where the center of a pel lies with respect to a line: along it from its start, and aside.
struct Place {
  double along, aside, length;
};

Place placeOf(gxVector<2> const &a, gxVector<2> const &b, gxVector<2> const &p)
{
  double const length = a.distance(b);
  gxVector<2> const d = (b - a) * (1.0 / length);
  return {d * (p - a), d.cross(p - a), length};
}

/// The center of a pel as the path sees it: paths are given by the centers of pels, and a pen of even width runs
/// through upper left corners.
gxVector<2> centerFor(long width, long x, long y)
{
  return width % 2 ? gxVector<2>(double(x), double(y)) : gxVector<2>(double(x) + 0.5, double(y) + 0.5);
}

/// Distance of a pel's center from a path.
double distanceTo(Path const &path, gxVector<2> const &p)
{
  double least = p.distance(path.points.front());
  for (std::size_t i = 0; i < path.lines(); ++i) {
    if (path.from(i) == path.to(i))
      continue;
    Place const at = placeOf(path.from(i), path.to(i), p);
    gxVector<2> const foot = path.from(i) + (path.to(i) - path.from(i)) * std::clamp(at.along / at.length, 0.0, 1.0);
    least = std::min(least, p.distance(foot));
  }
  return least;
}

class Paths
{
 public:
  explicit Paths(unsigned seed) : random_(seed) {}

  Path next()
  {
    Path path{{}, random_() % 2 == 0};
    int const reach = random_() % 4 ? 12 : 300;
    for (int i = 1 + int(random_() % 5); i > 0; --i)
      path.points.emplace_back(coordinate(reach), coordinate(reach));
    if (random_() % 5 == 0)
      path.points.push_back(path.points.back());
    return path;
  }
  long width() { return 2 + long(random_() % 9); }
  unsigned below(unsigned n) { return unsigned(random_() % n); }

 private:
  double coordinate(int reach) { return int(random_() % (2u * unsigned(reach))) - reach; }

  std::mt19937 random_;
};

TEST(PelStroke, RoundPenCoversWhatLiesWithinHalfItsWidth)
{
  Paths paths(1);
  for (int i = 0; i < 1500; ++i) {
    Path const path = paths.next();
    long const width = paths.width();
    PelGrid::Set const pels = drawn(path, pen(width, Props::joinRound, Props::capRound));
    for (long y = theBox.top; y < theBox.bottom; ++y)
      for (long x = theBox.left; x < theBox.right; ++x) {
        double const off = distanceTo(path, centerFor(width, x, y)) - 0.5 * double(width);
        ASSERT_TRUE(std::abs(off) < 1e-9 || (pels.count({x, y}) != 0) == (off < 0.0))
            << path << " width " << width << " at " << x << ", " << y << compare(theBox, {}, pels);
      }
  }
}

TEST(PelStroke, LinesByTheirEndsAndDashes)
{
  Paths paths(2);
  for (int i = 0; i < 1500; ++i) {
    Path path = paths.next();
    path.points.resize(2, {3, 4});
    path.closed = false;
    if (path.points[0] == path.points[1])
      continue;
    long const width = paths.width();
    auto const cap = paths.below(2) ? Props::capSquare : Props::capFlat;
    auto const style = paths.below(2) ? Props::penDashDot : Props::penSolid;
    PelGrid::Set const pels = drawn(path, pen(width, Props::joinRound, cap, style));
    double const w = double(width), beyond = cap == Props::capSquare ? 0.5 * w : 0.0;
    for (long y = theBox.top; y < theBox.bottom; ++y)
      for (long x = theBox.left; x < theBox.right; ++x) {
        Place const at = placeOf(path.points[0], path.points[1], centerFor(width, x, y));
        // 6, 2, 1, 2 widths; ends get their cap if the pattern draws there.
        double const inPattern = std::fmod(std::clamp(at.along, 0.0, at.length), 11.0 * w);
        bool const on =
            style == Props::penSolid || inPattern < 6.0 * w || (inPattern >= 8.0 * w && inPattern < 9.0 * w);
        double const hairs[] = {
            std::abs(at.aside) - 0.5 * w, at.along + beyond,   at.along - at.length - beyond, at.along - at.length,
            inPattern - 6.0 * w,          inPattern - 8.0 * w, inPattern - 9.0 * w,           inPattern};
        bool isClose = false;
        for (double const hair : hairs)
          isClose = isClose || (std::abs(hair) < 1e-9 && &hair != &hairs[7]);
        if (style != Props::penSolid && inPattern < 1e-9 && at.along > 1.0)
          isClose = true;
        bool const expected = on && hairs[0] < 0.0 && hairs[1] >= 0.0 && hairs[2] < 0.0;
        ASSERT_TRUE(isClose || (pels.count({x, y}) != 0) == expected)
            << path << " width " << width << " cap " << cap << " style " << style << " at " << x << ", " << y
            << compare(theBox, {}, pels);
      }
  }
}

TEST(PelStroke, JoinsGrowFromBevelToRoundToMiter)
{
  Paths paths(3);
  for (int i = 0; i < 800; ++i) {
    Path const path = paths.next();
    long const width = paths.width();
    PelGrid::Set const bevel = drawn(path, pen(width, Props::joinBevel, Props::capFlat));
    PelGrid::Set const round = drawn(path, pen(width, Props::joinRound, Props::capFlat));
    PelGrid::Set const miter = drawn(path, pen(width, Props::joinMiter, Props::capFlat));
    EXPECT_TRUE(std::includes(miter.begin(), miter.end(), bevel.begin(), bevel.end())) << path;
    EXPECT_TRUE(path.points.size() < 3 || std::includes(round.begin(), round.end(), bevel.begin(), bevel.end()))
        << path;
    // A miter stays within 4 half widths.
    for (auto const &[x, y] : miter)
      ASSERT_LE(distanceTo(path, centerFor(width, x, y)), 2.0 * double(width) + 1e-9) << path;
  }
}

TEST(PelStroke, RightAnglesAndLevelLinesAreWholePels)
{
  for (long width = 1; width <= 9; ++width) {
    long const before = width / 2;  // an even pen has one pel more above and to the left
    PelGrid::Set level;
    for (long y = -before; y < width - before; ++y)
      for (long x = 0; x < 10; ++x)
        level.emplace(x, y);
    double const end = width % 2 ? 9.5 : 10.0;
    double const start = width % 2 ? -0.5 : 0.0;
    if (width > 1) {
      EXPECT_EQ(drawn({{{start, 0}, {end, 0}}, false}, pen(width, Props::joinMiter, Props::capFlat)), level) << width;
    }

    // The frame from (0, 0) to (9, 6) has square corners with a miter.
    PelGrid::Set frame;
    for (long y = -before; y < 6 + width - before; ++y)
      for (long x = -before; x < 9 + width - before; ++x)
        if (x < width - before || x >= 9 - before || y < width - before || y >= 6 - before)
          frame.emplace(x, y);
    Path const rectangle{{{0, 0}, {9, 0}, {9, 6}, {0, 6}}, true};
    PelGrid::Set const pels = drawn(rectangle, pen(width, Props::joinMiter, Props::capFlat));
    EXPECT_EQ(pels, frame) << width << compare(theBox, frame, pels);
  }
}

TEST(PelStroke, SharpTurnsAreBeveled)
{
  // A turn by 170 degrees: a miter would reach 11 half widths beyond the corner.
  Path const path{{{-20, 0}, {10, 0}, {-20, 5}}, false};
  EXPECT_EQ(drawn(path, pen(6, Props::joinMiter, Props::capFlat)),
            drawn(path, pen(6, Props::joinBevel, Props::capFlat)));
  Path const blunt{{{-20, 0}, {10, 0}, {-10, 20}}, false};
  EXPECT_GT(drawn(blunt, pen(6, Props::joinMiter, Props::capFlat)).size(),
            drawn(blunt, pen(6, Props::joinRound, Props::capFlat)).size());
}

TEST(PelStroke, ClippingLeavesOutPelsAndAddsNone)
{
  Paths paths(4);
  gx_PelBox const small{-5, -3, 4, 6};
  for (int i = 0; i < 1500; ++i) {
    Path const path = paths.next();
    Props const props = pen(1 + long(paths.below(9)), Props::gePenJoin(paths.below(4)),
                            Props::gePenEndCap(paths.below(4)), Props::gePenStyle(paths.below(6)));
    PelGrid::Set expected = drawn(path, props);
    std::erase_if(expected, [&](auto const &pel) { return !small.holds(pel.first, pel.second); });
    ASSERT_EQ(drawn(path, props, small), expected) << path << props;
  }
}

TEST(PelStroke, ThinClosedPathsContinueTheirPattern)
{
  // 40 pels round: 4 patterns of 9 and 4 pels more.
  Path const square{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true};
  PelGrid::Set const pels = drawn(square, pen(1, Props::joinRound, Props::capRound, Props::penDash));
  for (long n = 0; n < 40; ++n) {
    long const side = n / 10, at = n % 10;
    std::pair<long, long> const pel = side == 0   ? std::pair(at, 0L)
                                      : side == 1 ? std::pair(10L, at)
                                      : side == 2 ? std::pair(10 - at, 10L)
                                                  : std::pair(0L, 10 - at);
    EXPECT_EQ(pels.count(pel) != 0, n % 9 < 6) << n;
  }
}

TEST(PelStroke, ArcsCoverWhatLiesWithinHalfTheWidth)
{
  std::mt19937 random(5);
  std::uniform_real_distribution<double> part(-14.0, 14.0), angle(-7.0, 7.0);
  for (int i = 0; i < 40; ++i) {
    gx_ArcPiece arc{{part(random) / 4, part(random) / 4}, {part(random), part(random)}, {part(random), part(random)}};
    if (i % 2) {
      arc.start = angle(random);
      arc.span = angle(random);
    }
    if (i % 7 == 0)
      arc.v = arc.u * (i % 3 * 0.01);
    long const width = 2 + long(random() % 9);
    Points dense;
    constexpr int steps = 1200;
    for (int k = 0; k <= steps; ++k)
      dense.push_back(arc.at(arc.start + std::clamp(arc.span, -gf_turnRadians, gf_turnRadians) * k / steps));
    PelGrid grid(theBox);
    gf_strokeArc(grid.canvas(), arc, gx_PelPen(pen(width, Props::joinRound, Props::capRound)));
    for (long y = theBox.top; y < theBox.bottom; ++y)
      for (long x = theBox.left; x < theBox.right; ++x) {
        double off = 1e9;
        for (auto const &p : dense)
          off = std::min(off, p.distance(centerFor(width, x, y)) - 0.5 * double(width));
        ASSERT_TRUE(std::abs(off) < 0.05 || grid.isSet(x, y) == (off < 0.0))
            << arc.center << arc.u << arc.v << arc.start << " " << arc.span << " width " << width << " at " << x << ", "
            << y << ": " << off << compare(theBox, {}, grid.pels());
      }
  }
}

TEST(PelStroke, HugeDashedAndNonFinitePathsEnd)
{
  Props const dashed = pen(3, Props::joinRound, Props::capRound, Props::penDot);
  for (double const far : {1e6, 1e9, 1e12, 1e30, 1e99}) {
    drawn({{{-far, -far}, {far, 0.9 * far}, {far, -far}}, true}, dashed);
    PelGrid grid(theBox);
    gf_strokeArc(grid.canvas(), {{far, 0}, {far, 0}, {0, far}}, gx_PelPen(dashed));
    gf_strokeArc(grid.canvas(), {{far, 0}, {far, 0}, {0, far}}, gx_PelPen(pen(3, Props::joinRound, Props::capRound)));
    EXPECT_TRUE(far > 1e13 || !grid.pels().empty()) << far;
  }
  double const nan = std::numeric_limits<double>::quiet_NaN();
  Props const wide = pen(3, Props::joinRound, Props::capFlat);
  EXPECT_TRUE(drawn({{{nan, 0}}, false}, wide).empty());
  EXPECT_TRUE(drawn({{}, true}, wide).empty());
  // Only the lines at the bad point are missing.
  EXPECT_EQ(drawn({{{-9, 0}, {9, 0}, {0, nan}, {5, 9}, {-5, 9}}, true}, wide).size(),
            drawn({{{-9, 0}, {9, 0}}, false}, wide).size() + drawn({{{5, 9}, {-5, 9}}, false}, wide).size());
}

TEST(PelStroke, DotsHaveTheWidthOfThePen)
{
  for (long width = 0; width < 12; ++width) {
    PelGrid grid(theBox);
    gf_drawDot(grid.canvas(), {2, 3}, gx_PelPen(pen(width, Props::joinRound, Props::capRound)));
    long const w = std::max(width, 1L);
    EXPECT_EQ(grid.tightBox(), gxUIRect(2 - w / 2, 3 - w / 2, w, w)) << width;
    EXPECT_EQ(drawn({{{2, 3}}, false}, pen(width, Props::joinRound, Props::capRound)), grid.pels()) << width;
    EXPECT_EQ(drawn({{{2, 3}, {2, 3}}, false}, pen(width, Props::joinRound, Props::capFlat)).size(),
              std::size_t(w * w));
  }
}

}  // namespace
