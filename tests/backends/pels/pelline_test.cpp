#include "backends/pels/detail/pelline.h"

#include "tests/backends/pels/pelgrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

__extension__ using Wide = __int128;

struct Ends {
  long x0, y0, x1, y1;
  Ends reversed() const { return {x1, y1, x0, y0}; }
};

std::ostream &operator<<(std::ostream &os, Ends const &e)
{
  return os << "line (" << e.x0 << ", " << e.y0 << ") to (" << e.x1 << ", " << e.y1 << ")";
}

/// The number of a pel on a line, or -1: the rule, tested pel by pel in exact arithmetic.
long numberOnLine(Ends e, long x, long y)
{
  bool const steep = std::abs(e.y1 - e.y0) > std::abs(e.x1 - e.x0);
  if (steep)
    std::swap(e.x0, e.y0), std::swap(e.x1, e.y1), std::swap(x, y);
  if (x < std::min(e.x0, e.x1) || x > std::max(e.x0, e.x1))
    return -1;
  // The line passes column x at y0 + (x - x0) (y1 - y0) / (x1 - x0); the pel lies within half a pel of it, or half a
  // pel above it.
  Wide const run = e.x1 - e.x0;
  Wide const above = Wide(y - e.y0) * run - Wide(x - e.x0) * (e.y1 - e.y0);  // (y - line) run
  Wide const offset = run < 0 ? -above : above;
  Wide const length = run < 0 ? -run : run;
  bool const on = run == 0 ? y == e.y0 : -length <= 2 * offset && 2 * offset < length;
  return on ? std::abs(x - e.x0) : -1;
}

void drawInto(PelGrid &grid, Ends const &e, gx_PelDash const &dash = gx_PelDash(), long phase = 0)
{
  gf_drawPelLine(grid.canvas(), {double(e.x0), double(e.y0)}, {double(e.x1), double(e.y1)}, dash, phase);
}

/// Ends at several scales, some of them far outside of the box and most of the lines through it.
class Lines
{
 public:
  explicit Lines(unsigned seed) : random_(seed) {}

  Ends next()
  {
    long const reach = 1L << (2 + random_() % 27);
    auto const at = [&] { return std::uniform_int_distribution<long>(-reach, reach)(random_); };
    Ends e{at(), at(), at(), at()};
    if (random_() % 4 == 0)
      e.y1 = e.y0 + (e.x1 - e.x0) * (random_() % 2 ? 1 : -1);
    if (random_() % 8 == 0)
      e.x1 = e.x0;
    if (random_() % 2) {  // through a pel of the box
      e.x1 = 2 * (20 - long(random_() % 41)) - e.x0;
      e.y1 = 2 * (15 - long(random_() % 31)) - e.y0;
    }
    return e;
  }

 private:
  std::mt19937 random_;
};

gx_PelBox const theBox{-20, -15, 23, 17};

TEST(PelLine, HasThePelsOfTheRuleInBothDirections)
{
  Lines lines(1);
  for (int i = 0; i < 3000; ++i) {
    Ends const e = lines.next();
    PelGrid forth(theBox), back(theBox);
    drawInto(forth, e);
    drawInto(back, e.reversed());
    PelGrid::Set const expected = forth.where([&](long x, long y) { return numberOnLine(e, x, y) >= 0; });
    ASSERT_EQ(forth.pels(), expected) << e << compare(theBox, expected, forth.pels());
    ASSERT_EQ(back.pels(), expected) << e << " reversed" << compare(theBox, expected, back.pels());
    ASSERT_EQ(forth.canvas().touched().rect(), forth.tightBox()) << e;
  }
}

TEST(PelLine, NumbersPelsFromItsStartForDashes)
{
  Lines lines(2);
  std::mt19937 random(3);
  for (int i = 0; i < 3000; ++i) {
    Ends const e = lines.next();
    auto const style = static_cast<gxGraphicProps::gePenStyle>(random() % 6);
    long const phase = random() % 1000;
    PelGrid grid(theBox);
    gx_PelDash const dash(style, 1);
    drawInto(grid, e, dash, phase);
    // 6 on, 3 off; 1, 2; 6, 2, 1, 2; 6, 2, 1, 2, 1, 2.
    char const *const patterns[] = {"#", "######...", "#..", "######..#..", "######..#..#..", "#"};
    std::string const pattern = patterns[style];
    PelGrid::Set const expected = grid.where([&](long x, long y) {
      long const number = numberOnLine(e, x, y);
      return number >= 0 && pattern[static_cast<std::size_t>(number + phase) % pattern.size()] == '#';
    });
    ASSERT_EQ(grid.pels(), expected) << e << " style " << style << " phase " << phase
                                     << compare(theBox, expected, grid.pels());
  }
}

TEST(PelLine, DrawsAPointAndSpansThatEndAtTheEdgeOfTheBox)
{
  gx_PelBox const box{0, 0, 4, 3};
  struct {
    Ends ends;
    std::size_t count;
  } const cases[] = {{{1, 1, 1, 1}, 1},  {{4, 1, 4, 1}, 0},   {{-9, 2, 9, 2}, 4},
                     {{-9, 3, 9, 3}, 0}, {{3, -9, 3, 9}, 3},  {{-1, -9, -1, 9}, 0},
                     {{0, 0, 3, 2}, 4},  {{-1, 1, 1, -1}, 1}, {{-2, 1, 1, -2}, 0}};
  for (auto const &c : cases) {
    PelGrid grid(box);
    drawInto(grid, c.ends);
    EXPECT_EQ(grid.pels().size(), c.count) << c.ends;
  }
}

TEST(PelLine, FarEndsKeepTheDirectionToOnePel)
{
  std::mt19937 random(4);
  std::uniform_real_distribution<double> place(-15.0, 15.0), angle(0.0, 6.283), scale(9.0, 300.0);
  for (int i = 0; i < 500; ++i) {
    double const x = std::round(place(random)), y = std::round(place(random)), a = angle(random);
    double const far = std::pow(10.0, scale(random));
    gxVector<2> const d(std::cos(a), std::sin(a));
    PelGrid grid(theBox);
    gf_drawPelLine(grid.canvas(), {x - d.x() * far, y - d.y() * far}, {x + d.x() * far, y + d.y() * far});
    // Doubles of this size have no pels, so that the line may lie anywhere beside; but never steeper or bent.
    if (far > 1e15)
      continue;
    EXPECT_FALSE(grid.pels().empty());
    double const slack = 1.5 + far * 1e-15;
    for (auto const &[px, py] : grid.pels())
      EXPECT_LE(std::abs(d.cross({double(px) - x, double(py) - y})), slack) << far;
  }
}

TEST(PelLine, DrawsNothingForEndsThatAreNoNumbers)
{
  double const bad[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity()};
  for (double const v : bad)
    for (int i = 0; i < 4; ++i) {
      double c[4] = {-5, -5, 5, 5};
      c[i] = v;
      PelGrid grid(theBox);
      gf_drawPelLine(grid.canvas(), {c[0], c[1]}, {c[2], c[3]});
      EXPECT_TRUE(grid.pels().empty()) << v << " at " << i;
    }
  double const most = std::numeric_limits<double>::max();
  PelGrid grid(theBox);
  gf_drawPelLine(grid.canvas(), {-most, -3}, {most, -3});
  EXPECT_EQ(grid.tightBox(), gxUIRect(theBox.left, -3, theBox.right - theBox.left, 1));
}

}  // namespace
