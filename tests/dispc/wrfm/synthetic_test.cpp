#include "dispc/wrfm/synthetic.h"

#include "foundation/line.h"
#include "foundation/pelerror.h"
#include "foundation/shapeserror.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Buffer = gxPelBuffer<unsigned char>;
using Point = gxVector<2>;
using Map = gxXform<2>;

// The rules, in the plainest way, on a grid of numbers that has room on all sides.

double floorEps(double v)
{
  return std::floor((1 + (v < 0 ? -1e-11 : 1e-11)) * v);
}
double ceilEps(double v)
{
  return std::ceil((1 - (v < 0 ? -1e-11 : 1e-11)) * v);
}

struct Reference {
  long x, y, width, height;  ///< the window
  std::vector<std::vector<double>> pels;
  double value = 0;

  explicit Reference(Buffer const &buffer)
      : x(buffer.window().x()), y(buffer.window().y()), width(buffer.width()), height(buffer.height())
  {
    pels.assign(std::size_t(y + height + 4), std::vector<double>(std::size_t(x + width + 4)));
    for (long j = y; j < y + height; ++j)
      for (long i = x; i < x + width; ++i)
        at(double(i), double(j)) = buffer.get(i, j);
  }
  double &at(double i, double j) { return pels.at(std::size_t(j)).at(std::size_t(i)); }
  bool inClip(Point const &p) const
  {
    return p.x() >= double(x + 2) && p.x() <= double(x + width - 2) && p.y() >= double(y + 2) &&
           p.y() <= double(y + height - 2);
  }

  void line(Point const &p1, Point const &p2, Map const &xform, bool smooth)
  {
    Point a = xform * p1, b = xform * p2;
    if (width < 4 || height < 4)
      return;
    if (!inClip(a) || !inClip(b)) {
      double const left = double(x + 2), right = double(x + width - 2), top = double(y + 2),
                   bottom = double(y + height - 2);
      if (std::max(a.x(), b.x()) < left || std::min(a.x(), b.x()) > right || std::max(a.y(), b.y()) < top ||
          std::min(a.y(), b.y()) > bottom)
        return;
      bool const right_ = a.x() < b.x(), down = a.y() < b.y();
      auto const cut = [&](gxFLine const &edge, bool first) {
        auto const met = gx2SegmentLine(a, b).intersection(edge, false);
        if (met.size() == 1)
          (first ? a : b) = met[0];
      };
      cut(gxFLine(Point(0, top), Point(1, top)), down);
      cut(gxFLine(Point(0, bottom), Point(1, bottom)), !down);
      cut(gxFLine(Point(left, 0), Point(left, 1)), right_);
      cut(gxFLine(Point(right, 0), Point(right, 1)), !right_);
      if (!inClip(Point((a.x() + b.x()) / 2, (a.y() + b.y()) / 2)))
        return;
    }
    a = xform * (xform.inverse() * a);
    b = xform * (xform.inverse() * b);
    if (!smooth)
      return bresenham(floorEps(a.x()), floorEps(a.y()), floorEps(b.x()), floorEps(b.y()));
    if (std::abs(a.y() - b.y()) > std::abs(a.x() - b.x())) {
      if (a.y() > b.y())
        std::swap(a, b);
      return edge({a.y(), a.x()}, {b.y(), b.x()}, true);
    }
    if (a.x() > b.x())
      std::swap(a, b);
    edge(a, b, false);
  }

  void bresenham(double x0, double y0, double x1, double y1)
  {
    double const dx = std::abs(x1 - x0), dy = std::abs(y1 - y0), sx = x1 < x0 ? -1 : 1, sy = y1 < y0 ? -1 : 1;
    bool const flat = dx >= dy;
    double const n = flat ? dx : dy, m = flat ? dy : dx;
    double e = 2 * m - n;
    for (double i = 0; i < n; ++i) {
      at(x0, y0) = value;
      if (e < 0) {
        (flat ? x0 : y0) += flat ? sx : sy;
        e += 2 * m;
      } else {
        x0 += sx;
        y0 += sy;
        e += 2 * (m - n);
      }
    }
  }

  void edge(Point const &a, Point const &b, bool swapped)
  {
    gxLine const l((b - a).unit(), a);
    if (std::abs(l.dir().y()) < 1e-12) {
      double f = std::fmod(std::abs(a.y()), 1.0);
      f = f > 0.5 ? 1 - f : f;
      if (f <= 0.001)
        return;
    }
    auto const pel = [&](double u, double v) -> double & { return swapped ? at(v, u) : at(u, v); };
    auto const blend = [&](double u, double v, double w) {
      double const above = pel(u, v - 1), below = pel(u, v + 1);
      pel(u, v) = std::trunc((below - above) * w + above + 0.5);
    };
    double const x0 = floorEps(a.x()), x1 = floorEps(b.x());
    for (double u = x0; u <= x1 && x0 != x1; ++u) {
      double const yl = l.intersect(gxLine(Point(0, 1), Point(u, 0))).y();
      double const yr = l.intersect(gxLine(Point(0, 1), Point(u + 1, 0))).y();
      double const r0 = floorEps(yl), r1 = floorEps(yr);
      auto const meets = [&](double row) { return l.intersect(gxLine(Point(1, 0), Point(0, row))).x(); };
      if (r0 == r1) {
        blend(u, r0, ((r0 + 1 - yr) + (r0 + 1 - yl)) * 0.5);
      } else if (r0 < r1) {
        blend(u, r0, (ceilEps(yl) - yl) * (meets(r1) - u) * 0.5);
        blend(u, r1, 1 - (yr - floorEps(yr)) * (u + 1 - meets(r1)) * 0.5);
      } else {
        blend(u, r1, (ceilEps(yr) - yr) * (u + 1 - meets(r0)) * 0.5);
        blend(u, r0, 1 - (yl - floorEps(yl)) * (meets(r0) - u) * 0.5);
      }
    }
  }

  void extents(Point a, Point b)
  {
    if (a.y() > b.y())
      std::swap(a, b);
    double const y0 = ceilEps(a.y() - 0.5), y1 = floorEps(b.y() - 0.5);
    for (double row = y0; row <= y1 && y0 != y1; ++row)
      at(floorEps((row + 0.5 - a.y()) * ((b.x() - a.x()) / (b.y() - a.y())) + a.x()), row) = value;
    if (y0 == y1) {
      at(ceilEps(std::min(a.x(), b.x()) - 0.5), y0) = value;
      at(floorEps(std::max(a.x(), b.x()) - 0.5), y0) = value;
    }
  }

  bool agrees(Buffer const &buffer, std::string &where)
  {
    for (long j = y; j < y + height; ++j)
      for (long i = x; i < x + width; ++i)
        if (buffer.get(i, j) != at(double(i), double(j))) {
          where = "pel " + std::to_string(i) + ", " + std::to_string(j);
          return false;
        }
    return true;
  }
};

class Raster : public testing::Test
{
 protected:
  std::mt19937 random{20260};
  double real(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); }
  // Now and then on a boundary of pels, a hair beside it, or in the middle.
  double place(double from, double to)
  {
    double const v = real(from, to);
    static double const off[] = {0, 1e-13, -1e-13, 0.5, 1e-4, 0.25};
    return random() % 3 ? v : std::floor(v) + off[random() % 6];
  }
  Point point(double low, double high) { return {place(low, high), place(low, high)}; }
  Map map()
  {
    if (random() % 3 == 0)
      return Map();
    return Map(gxMatrix<2>(real(-2, 2), real(-1, 1), real(-1, 1), real(-2, 2)), point(0, 30));
  }
  Buffer noise(long w, long h)
  {
    Buffer root(60, 60);
    for (long y = 0; y < 60; ++y)
      for (long x = 0; x < 60; ++x)
        root.put(x, y, static_cast<unsigned char>(random()));
    root.window(5, 7, w, h);
    return root;
  }
};

TEST_F(Raster, EveryPelOfALineFollowsTheRules)
{
  int painted = 0, rounds = 0;
  for (; rounds < 6000; ++rounds) {
    Map const xform = map();
    Buffer buffer = noise(long(random() % 40), long(random() % 40));
    Point const a = xform.inverse() * point(-10, 70);
    Point const b = random() % 4 ? xform.inverse() * point(-10, 70) : a + point(-3, 3);
    if (a == b)
      continue;
    bool const smooth = random() % 2;
    Reference expected(buffer);
    expected.value = 200;
    std::vector<std::vector<double>> const before = expected.pels;
    try {
      drawLinePelBuf(buffer, gx2SegmentLine(a, b), xform, static_cast<signed char>(200), smooth);
    } catch (gxShapesError::DegenerateShape const &) {
      continue;  // cut to a point
    } catch (gxPel::BadCoord const &) {
      ASSERT_TRUE(smooth);
      continue;
    }
    expected.line(a, b, xform, smooth);
    painted += expected.pels != before;
    std::string where;
    ASSERT_TRUE(expected.agrees(buffer, where))
        << where << " of the line " << a << " to " << b << ", smooth " << smooth << ", window of " << buffer.width()
        << " x " << buffer.height() << ", map " << xform.matrix().element(0, 0) << ", round " << rounds;
  }
  EXPECT_GT(painted, rounds / 7);
}

TEST_F(Raster, ExtentsAreMarkedOnEveryRowCentre)
{
  for (int i = 0; i < 1500; ++i) {
    Buffer buffer = noise(40, 40);
    Point const a = point(6, 44), b = random() % 3 ? point(8, 44) : a + Point(real(0.1, 1), real(-0.9, 0.9));
    Reference expected(buffer);
    expected.value = 3;
    try {
      drawHorizontalExtentsPelBuf(buffer, gx2SegmentLine(a, b), Map(), 3);
    } catch (gxPel::BadCoord const &) {
      continue;
    }
    expected.extents(a, b);
    std::string where;
    ASSERT_TRUE(expected.agrees(buffer, where)) << where << " of " << a << " to " << b;
  }
}

// The chords of an arc, by the rule for their number, and the running extents of their ends.
TEST_F(Raster, ArcsAreChainsOfBackwardChords)
{
  int painted = 0;
  for (int i = 0; i < 1500; ++i) {
    Buffer buffer = noise(40, 35);
    gx2SegmentArc const arc(point(-5, 60), real(0.01, i % 5 ? 30 : 500), gxDegree(real(-400, 400)),
                            gxDegree(real(1, 360) * (i % 2 ? 1 : -1)));
    Map const xform = i % 3 ? Map() : Map(gxMatrix<2>(gxRadian(real(0, 6)), gxRadian(1), 1, 1), {3, 4});
    bool const smooth = i % 4 == 1;
    Reference expected(buffer);
    expected.value = 77;
    double got[] = {20, 21, 22, 23}, want[] = {20, 21, 22, 23};
    drawArcPelBuf(buffer, arc, xform, 77, smooth, &got[0], &got[1], &got[2], &got[3]);

    gx2SegmentArc const k = xform * arc;
    auto const inside = [](Point const &p) { return p.x() >= 4 && p.x() <= 46 && p.y() >= 6 && p.y() <= 43; };
    bool shows = inside(k.p1()) && inside(k.p2());
    for (auto const &[from, to] : {std::pair(Point(4, 6), Point(46, 6)), std::pair(Point(4, 43), Point(46, 43)),
                                   std::pair(Point(4, 6), Point(4, 43)), std::pair(Point(46, 6), Point(46, 43))})
      shows = shows || !k.intersection(gx2SegmentLine(from, to), false).empty();
    double const r = k.radius(gxDegree(0)), pi = std::acos(-1.0);
    double const most = r > 0.05 ? std::min(5.0, 2 * std::acos(1 - 0.05 / r) * 180 / pi) : 5.0;
    double const n = std::trunc(std::abs(arc.angleSpan().value() / most)) + 1;
    gxDegree angle = arc.startAngle();
    Point before = xform * arc.arcPoint(angle);
    for (double chord = 0; shows && chord < n; ++chord) {
      angle = angle + gxDegree(arc.angleSpan().value() / n);
      Point const q = xform * arc.arcPoint(angle);
      expected.line(q, before, Map(), smooth);
      if (!smooth) {
        want[0] = std::min(want[0], q.x());
        want[1] = std::max(want[1], q.x());
        want[2] = std::min(want[2], q.y());
        want[3] = std::max(want[3], q.y());
      }
      before = q;
    }
    painted += shows;
    std::string where;
    ASSERT_TRUE(expected.agrees(buffer, where)) << where << ", arc " << i << " " << arc;
    for (int e = 0; e < 4; ++e)
      ASSERT_EQ(got[e], want[e]) << "arc " << i << " " << arc;
  }
  EXPECT_GT(painted, 300);
}

std::string rowOf(Buffer const &buffer, long y)
{
  std::string row;
  for (long x = 0; x < buffer.width(); ++x)
    row += buffer.get(x, y) ? std::to_string(buffer.get(x, y)) : ".";
  return row;
}

TEST_F(Raster, Places)
{
  Buffer buffer(12, 12);
  auto const line = [&](Point const &a, Point const &b, bool smooth = false) {
    drawLinePelBuf(buffer, gx2SegmentLine(a, b), Map(), 1, smooth);
  };
  line({3, 3}, {7, 3});
  EXPECT_EQ(rowOf(buffer, 3), "...1111.....") << "the last pel is left out";
  line({2.2, 2.2}, {2.8, 2.9});
  EXPECT_EQ(rowOf(buffer, 2), "............") << "within one pel";
  line({4 - 1e-12, 5}, {6, 5});
  EXPECT_EQ(rowOf(buffer, 5), "....11......") << "a hair short of pel 4";
  auto const extents = [&](Point const &a, Point const &b) {
    drawHorizontalExtentsPelBuf(buffer, gx2SegmentLine(a, b), Map(), 1);
  };
  extents({1.2, 7.4}, {7.6, 7.6});
  EXPECT_EQ(rowOf(buffer, 7), ".1.....1....") << "one row centre, two marks";
  extents({1.2, 8.6}, {7.6, 8.9});
  EXPECT_EQ(rowOf(buffer, 8), "............") << "no row centre";

  Buffer sides(40, 30);
  for (long y = 11; y < 30; ++y)
    std::fill_n(sides.pointToPel(0, y), 40, static_cast<unsigned char>(200));
  drawLinePelBuf(sides, gx2SegmentLine({5, 10.0005}, {9, 10.0005}), Map(), 0, 1);
  EXPECT_EQ(sides.get(6, 10), 0) << "along a boundary of pels";
  drawLinePelBuf(sides, gx2SegmentLine({5, 10.25}, {9, 10.25}), Map(), 0, 1);
  EXPECT_EQ(sides.get(6, 10), 150);
}

TEST_F(Raster, WhatCannotBePaintedIsRefusedOrLeftOut)
{
  gx2SegmentLine const line({3, 3}, {7, 5});
  gx2SegmentArc const arc({10, 10}, 4, gxDegree(0), gxDegree(90));
  double const big = 1e300, inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
  for (bool const smooth : {false, true}) {
    EXPECT_THROW(drawLinePelBuf(Buffer(), line, Map(), 1, smooth), gxPel::UnboundWindow);
    EXPECT_THROW(drawArcPelBuf(Buffer(), arc, Map(), 1, smooth, nullptr, nullptr, nullptr, nullptr),
                 gxPel::UnboundWindow);
    Buffer buffer(20, 20);
    Reference const before(buffer);
    for (double const v : {big, -big, inf, nan}) {
      Map const xform(gxMatrix<2>(v, 0, 0, 1), {v, 0});
      try {
        drawLinePelBuf(buffer, line, xform, 1, smooth);
        drawArcPelBuf(buffer, arc, xform, 1, smooth, nullptr, nullptr, nullptr, nullptr);
      } catch (gxException const &) {
      }
      try {
        drawHorizontalExtentsPelBuf(buffer, line, xform, 1);
      } catch (gxException const &) {
      }
      try {
        drawHorizontalExtentsPelBuf(buffer, arc, xform, 1, nullptr, nullptr, nullptr, nullptr);
      } catch (gxException const &) {
      }
    }
    Reference after(buffer);
    EXPECT_EQ(after.pels, before.pels);
    // A map that flattens everything to a point.
    EXPECT_THROW(drawLinePelBuf(buffer, line, Map(gxMatrix<2>(0, 0, 0, 0), {5, 5}), 1, smooth),
                 gxShapesError::DegenerateShape);
    Buffer small(3, 30);
    drawLinePelBuf(small, line, Map(), 1, smooth);
    EXPECT_EQ(rowOf(small, 3), "...");
  }
  // A circle so large that it passes as a line: its chords are no more than can be counted.
  Buffer wide(20, 20);
  drawArcPelBuf(wide, gx2SegmentArc({1e15 + 10, 10}, 1e15, gxDegree(0), gxDegree(360)), Map(), 1, false, nullptr,
                nullptr, nullptr, nullptr);
  EXPECT_THROW(drawHorizontalExtentsPelBuf(Buffer(), line, Map(), 1), gxPel::UnboundWindow);
  EXPECT_THROW(drawHorizontalExtentsPelBuf(Buffer(), arc, Map(), 1, nullptr, nullptr, nullptr, nullptr),
               gxPel::UnboundWindow);
  Buffer buffer(20, 20);
  EXPECT_THROW(drawHorizontalExtentsPelBuf(buffer, gx2SegmentLine({3, 3}, {7, 50}), Map(), 1), gxPel::BadCoord);
}

TEST(PelCopy, RowsByTheirStrides)
{
  std::string const from = "abcdefghi";
  std::string to = "............";
  gf_PelCopyVid(to.data() + 1, 4, from.data(), 3, 2, 3);
  EXPECT_EQ(to, ".ab..de..gh.");
  gf_PelCopyVid(to.data(), 4, from.data(), 3, 2, 0);
  gf_PelCopyVid(to.data(), 4, from.data(), 3, -2, 3);
  EXPECT_EQ(to, ".ab..de..gh.");
}

}  // namespace
