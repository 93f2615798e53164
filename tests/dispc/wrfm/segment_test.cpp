// Line and arc segments against plain numerics: dense samples of c + r (cos, sin) under a transform, and bisection.

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/lineseg.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/matherror.h"
#include "foundation/rigid.h"
#include "foundation/shapeserror.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numbers>
#include <optional>
#include <random>
#include <sstream>
#include <tuple>

namespace
{

using V = gxVector<2>;
constexpr double pi = std::numbers::pi;
constexpr double rad = pi / 180.0;

enum class Maps { none, similar, any };

/// A piece told by its own numbers: the reference that the segments are held against.
struct Piece {
  bool isArc = false;
  V a, b;                             // ends of a line; centre of an arc in a
  double r = 0, start = 0, span = 0;  // degrees
  gxXform<2> x;

  V at(double t) const
  {
    double const w = (start + span * t) * rad;
    return x * (isArc ? V(a.x() + r * std::cos(w), a.y() + r * std::sin(w)) : a + (b - a) * t);
  }
  /// Zero on the endless line or whole circle, of the own frame's unit.
  double side(V p) const
  {
    V const q = x.inverse() * p;
    return isArc ? std::hypot(q.x() - a.x(), q.y() - a.y()) - r : (b - a).cross(q - a) / (b - a).len();
  }
  /// The place of a point of the whole curve; outside 0 to 1 it is not on the piece.
  double place(V p) const
  {
    V const q = x.inverse() * p;
    if (!isArc)
      return (q - a) * (b - a) / ((b - a) * (b - a));
    double const turn =
        std::fmod((std::atan2(q.y() - a.y(), q.x() - a.x()) / rad - start) / span, 360.0 / std::abs(span));
    return turn < 0 ? turn + 360.0 / std::abs(span) : turn;
  }
  gx2SegmentArc arc() const { return x * gx2SegmentArc(a, r, gxDegree(start), gxDegree(span)); }
  gx2SegmentLine line() const { return x * gx2SegmentLine(a, b); }
  friend std::ostream &operator<<(std::ostream &os, Piece const &p)
  {
    os.precision(17);
    os << "Piece{" << p.isArc << ", V" << p.a << ", V" << p.b << ", " << p.r << ", " << p.start << ", " << p.span;
    return os << "} under " << p.x;
  }
};

class Random
{
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  double in(double low, double high) { return std::uniform_real_distribution<double>(low, high)(engine_); }
  bool coin() { return in(0, 1) < 0.5; }
  V point(double size) { return {in(-size, size), in(-size, size)}; }
  Piece piece(bool isArc, Maps maps)
  {
    Piece p{isArc, point(5), point(5), in(0.5, 6), in(-720, 720), coin() ? in(5, 360) : in(-360, -5), {}};
    if (maps == Maps::none)
      return p;
    double const turn = in(-pi, pi), scale = in(0.3, 3);
    bool const isPlain = maps == Maps::similar;
    double const mirror = coin() ? -1.0 : 1.0;
    p.x = {gxMatrix<2>(gxRadian(turn), gxRadian(isPlain ? turn : turn + in(-1, 1)), scale,
                       mirror * (isPlain ? scale : in(0.3, 3))),
           point(3)};
    return p;
  }

 private:
  std::mt19937 engine_;
};

constexpr int samples = 400;
constexpr double margin = 1e-3;  // of a piece: what lies closer to an end or to touching is not decided by sampling

/// Points of @p p where it crosses @p q, by bisection; none of this if a place is too close to call.
std::optional<std::vector<V>> crossings(Piece const &p, Piece const &q)
{
  std::vector<V> points;
  std::vector<double> side;
  for (int i = 0; i <= samples; ++i)
    side.push_back(q.side(p.at(i / double(samples))));
  for (int i = 0; i < samples; ++i) {
    bool const crosses = (side[i] < 0) != (side[i + 1] < 0);
    if (!crosses) {
      double const reach = 2.0 * std::abs(side[i + 1] - side[i]) + margin;
      if (i > 0 && std::min(std::abs(side[i]), std::abs(side[i + 1])) < reach &&
          std::abs(side[i - 1]) > std::abs(side[i]) && std::abs(side[i]) <= std::abs(side[i + 1]))
        return {};
      continue;
    }
    double low = i / double(samples), high = (i + 1) / double(samples);
    for (int k = 0; k < 60; ++k) {
      double const middle = (low + high) / 2;
      ((q.side(p.at(middle)) < 0) == (side[i] < 0) ? low : high) = middle;
    }
    V const meet = p.at(low);
    double const there = q.place(meet), turn = q.isArc ? 360.0 / std::abs(q.span) : 10.0;
    if (low < margin || low > 1 - margin || std::abs(there) < margin || std::abs(there - 1) < margin ||
        std::abs(there - turn) < margin || std::abs(side[i + 1] - side[i]) < margin / 10)
      return {};
    if (there > 0 && there < 1)
      points.push_back(meet);
  }
  return points;
}

std::vector<V> intersectionOf(Piece const &p, Piece const &q, bool excludeEnds)
{
  if (p.isArc)
    return q.isArc ? p.arc().intersection(q.arc(), excludeEnds) : p.arc().intersection(q.line(), excludeEnds);
  return q.isArc ? q.arc().intersection(p.line(), excludeEnds) : p.line().intersection(q.line(), excludeEnds);
}

TEST(SegmentIntersection, agreesWithBisectionOnRandomPieces)
{
  Random random(7001);
  int decided = 0, met = 0;
  for (int i = 0; i < 6000; ++i) {
    bool const bothArcs = i % 3 == 0;  // their rule holds for circles
    Maps const maps = i % 5 == 0 ? Maps::none : bothArcs || i % 2 == 0 ? Maps::similar : Maps::any;
    Piece const p = random.piece(bothArcs || i % 3 == 1, maps), shape = random.piece(bothArcs, maps);
    Piece q = shape;
    if (random.coin())  // through a point of p
      q.x.translation(shape.x.translation() + p.at(random.in(0, 1)) - shape.at(random.in(0, 1)));
    auto const expected = crossings(p, q);
    if (!expected)
      continue;
    ++decided;
    met += !expected->empty();
    for (bool const excludeEnds : {false, true}) {
      std::vector<V> const found = intersectionOf(p, q, excludeEnds);
      ASSERT_EQ(found.size(), expected->size()) << p << "\n" << q;
      for (V const &e : *expected)
        ASSERT_TRUE(std::any_of(found.begin(), found.end(), [&](V f) { return f.distance(e) < 1e-6; })) << e << "\n"
                                                                                                        << p << "\n"
                                                                                                        << q;
    }
  }
  EXPECT_GT(decided, 3000);
  EXPECT_GT(met, 1000);
}

/// A circle in more digits than the segments have.
struct WideCircle {
  long double x, y, r, start, span;  // radians

  WideCircle(V a, V b, double degrees) : span(static_cast<long double>(degrees) * std::numbers::pi_v<long double> / 180)
  {
    long double const dx = static_cast<long double>(b.x()) - a.x(), dy = static_cast<long double>(b.y()) - a.y();
    long double const height = 0.5L / std::tan(span / 2);
    x = a.x() + dx / 2 - dy * height;
    y = a.y() + dy / 2 + dx * height;
    r = std::hypot(a.x() - x, a.y() - y);
    start = std::atan2(a.y() - y, a.x() - x);
  }
  V at(double t) const
  {
    long double const w = start + span * t;
    return {static_cast<double>(x + r * std::cos(w)), static_cast<double>(y + r * std::sin(w))};
  }
  double direction(double t) const { return static_cast<double>(start + span * t) + (span < 0 ? -pi : pi) / 2; }
  double away(V p) const { return static_cast<double>(std::abs(std::hypot(p.x() - x, p.y() - y) - r)); }
};

TEST(SegmentIntersection, ofFlatArcsIsAsExactAsTheirCentres)
{
  Random random(7004);
  double worstOfOrdinary = 0;
  for (int i = 0; i < 30000; ++i) {
    auto const flat = [&](V a) {
      V const b = a + V(random.in(0.5, 10), gxDegree(random.in(0, 360)));
      double const span = 180 * std::pow(10, random.in(-8.25, 0)) * (random.coin() ? 1 : -1);
      return std::tuple(a, b, span);
    };
    // one arc through a place on the other one, which may be as flat, or any
    auto const [a, b, span] = flat(random.point(10));
    WideCircle const circle(a, b, span);
    auto [c, d, otherSpan] = flat(V());
    if (i % 3)
      otherSpan = random.in(20, 200) * (random.coin() ? 1 : -1);
    double const t = random.in(0.05, 0.95), u = random.in(0.05, 0.95);
    V const place = circle.at(t);
    c = place - WideCircle(V(), d, otherSpan).at(u);
    d += c;
    WideCircle const other(c, d, otherSpan);
    double const sine = std::abs(std::sin(circle.direction(t) - other.direction(u)));
    if (sine < 0.3)
      continue;
    gx2SegmentArc const p(a, b, gxDegree(span)), q(c, d, gxDegree(otherSpan));
    double const size = static_cast<double>(circle.r + other.r) + 30;
    bool const ofLine = i % 4 == 0;  // across, with the tangent of the other arc at the place
    V const along(3, gxRadian(other.direction(u)));
    auto const found = ofLine       ? p.intersection(gx2SegmentLine(place - along, place + along), true)
                       : i % 2 == 0 ? p.intersection(q, true)
                                    : q.intersection(p, true);
    std::ostringstream text;
    text.precision(17);
    text << "arcs " << a << b << span << ", " << c << d << otherSpan << (ofLine ? ", line" : "");
    double nearest = 1e300;
    for (V const f : found) {
      nearest = std::min(nearest, f.distance(place));
      ASSERT_LT(circle.away(f), 3e-15 * size) << text.str();
      ASSERT_LT(ofLine ? 0.0 : other.away(f), 3e-15 * size) << text.str();
    }
    ASSERT_LT(nearest, 1e-14 * size) << text.str();
    if (std::abs(span) > 10 && i % 3)
      worstOfOrdinary = std::max(worstOfOrdinary, nearest);
  }
  EXPECT_LT(worstOfOrdinary, 2e-12);
}

TEST(SegmentIntersection, endsCountOrDoNotAndTouchingGivesOnePoint)
{
  gx2SegmentArc const half({0, 0}, 5, gxDegree(0), gxDegree(180));
  gx2SegmentLine const base({-5, 0}, {5, 0}), across({-1, -1}, {-1, 5}), toEnd({5, 0}, {9, -3});
  gx2SegmentLine const touching({-3, 5}, {3, 5}), parallel({0, 0}, {8, 0});
  gx2SegmentArc const next({10, 0}, 5, gxDegree(180), gxDegree(90)), around({0, 0}, 5, gxDegree(90), gxDegree(180));
  auto const both = [](auto const &p, auto const &q) {
    return std::array<std::vector<V>, 2>{p.intersection(q, false), p.intersection(q, true)};
  };
  auto const expect = [](char const *what, std::array<std::vector<V>, 2> const &found, std::size_t with,
                         std::size_t without) {
    EXPECT_EQ(found[0].size(), with) << what;
    EXPECT_EQ(found[1].size(), without) << what;
  };
  expect("chord through both ends", both(half, base), 2, 0);
  expect("line from the end of the arc", both(half, toEnd), 1, 0);
  expect("chord from inside", both(half, across), 1, 1);
  expect("tangent", both(half, touching), 1, 1);
  expect("arc that touches at the ends", both(half, next), 1, 0);
  expect("same circle", both(half, around), 0, 0);
  expect("lines that overlap", both(base, parallel), 0, 0);
  expect("lines that share an end", both(base, toEnd), 1, 0);
  expect("lines that cross", both(base, across), 1, 1);
  EXPECT_EQ(half.intersection(touching, true).at(0), V(0, 5));
  // a tangent under a transform is left in the own frame
  gxXform<2> const moved({2, 0, 0, 2}, {10, 20});
  EXPECT_EQ((moved * half).intersection(moved * touching, false).size(), 0U);
  EXPECT_EQ((moved * half).intersection((moved * touching).line(), false).at(0), V(0, 5));
}

TEST(SegmentMeasures, agreeWithDenseSampling)
{
  Random random(7002);
  for (int i = 0; i < 400; ++i) {
    Maps const maps = i % 2 ? Maps::similar : i % 4 ? Maps::any : Maps::none;
    Piece const p = random.piece(i % 3 != 0, maps);
    std::ostringstream text;
    text << p;
    SCOPED_TRACE(text.str());
    V const from = random.point(10);
    double nearest = 1e9, left = 1e9, right = -1e9, bottom = 1e9, top = -1e9, length = 0;
    V sum;
    for (int k = 0; k <= 4000; ++k) {
      V const at = p.at(k / 4000.0);
      nearest = std::min(nearest, at.distance(from));
      left = std::min(left, at.x()), right = std::max(right, at.x());
      bottom = std::min(bottom, at.y()), top = std::max(top, at.y());
      if (k > 0) {
        length += at.distance(p.at((k - 1) / 4000.0));
        sum += p.at((k - 0.5) / 4000.0) * (1.0 / 4000.0);
      }
    }
    gxRect const box = p.isArc ? p.arc().boundingBox() : p.line().boundingBox();
    EXPECT_NEAR(box.origin().x(), left, 1e-4);
    EXPECT_NEAR(box.origin().y(), bottom, 1e-4);
    EXPECT_NEAR(box.origin().x() + box.size().x(), right, 1e-4);
    EXPECT_NEAR(box.origin().y() + box.size().y(), top, 1e-4);
    if (p.isArc) {
      EXPECT_LT(p.arc().centerOfMass().distance(sum), 1e-5);
    }
    if (maps == Maps::any && p.isArc)
      continue;
    EXPECT_NEAR(p.isArc ? p.arc().distToPoint(from) : p.line().distToPoint(from), nearest, 1e-4);
    EXPECT_NEAR(p.isArc ? p.arc().length() : p.line().length(), length, 1e-4);
    V const on = p.at(0.3);
    EXPECT_LT(on.distance(p.isArc ? p.arc().closestPoint(on) : p.line().closestPoint(on)), 1e-12);
  }
}

TEST(SegmentArc, tellsPointsAnglesAndDirectionsOfItsCurve)
{
  Random random(7003);
  constexpr double step = 1e-6;
  for (int i = 0; i < 600; ++i) {
    Maps const maps = i % 3 == 0 ? Maps::none : i % 3 == 1 ? Maps::similar : Maps::any;
    Piece const p = random.piece(true, maps);
    gx2SegmentArc const arc = p.arc();
    std::ostringstream text;
    text << p;
    SCOPED_TRACE(text.str());
    for (double const t : {0.0, 0.25, 0.5, 1.0}) {
      V const at = p.at(t);
      ASSERT_LT(arc.segPoint(t).distance(at), 1e-11);
      if (maps != Maps::any) {  // on an ellipse client angles are none of its points'
        ASSERT_LT(arc.arcPoint(arc.angle(t)).distance(at), 1e-11);
        ASSERT_NEAR((gxDegree((at - arc.center()).angle()) - arc.angle(t)).signedNorm().value(), 0, 1e-9);
        V const travel = p.at(t + step) - p.at(t - step);
        ASSERT_NEAR((gxDegree(travel.angle()) - arc.direction(t)).signedNorm().value(), 0, 1e-6);
        ASSERT_NEAR(arc.tangent(t).signedDistance(p.at(t + step)), 0, 1e-8);
        ASSERT_NEAR(arc.radius(arc.angle(t)), at.distance(arc.center()), 1e-11);
      }
      ASSERT_TRUE(arc.validAngle(arc.angle(t), true));
      ASSERT_EQ(arc.validAngle(arc.angle(t), false), t > 0 && t < 1);
    }
    ASSERT_LT(arc.midPoint().distance(p.at(0.5)), 1e-11);
    ASSERT_LT(arc.p1().distance(p.at(0)), 1e-11);
    ASSERT_LT(arc.p2().distance(p.at(1)), 1e-11);
    ASSERT_FALSE(std::abs(p.span) < 340 && arc.validAngle(arc.angle(-0.02), true));
    bool const isMirrored = p.x.matrix().det() < 0;
    ASSERT_EQ(arc.angleSpan().value() > 0, (p.span > 0) != isMirrored);
    if (maps != Maps::any) {
      ASSERT_NEAR(std::abs(arc.angleSpan().value()), std::abs(p.span), 1e-9);
    }

    // the same curve by other forms
    gxEllipseArc const covered = arc.ellipseArc();
    gx2SegmentArc const again(arc.ellipseArc2()), forward(covered);
    ASSERT_LT(again.segPoint(0.3).distance(p.at(0.3)), 1e-9);
    ASSERT_LT(std::min(forward.segPoint(0.3).distance(p.at(0.3)), forward.segPoint(0.7).distance(p.at(0.3))), 1e-9);
    if (maps == Maps::none && std::abs(p.span) < 359) {
      gx2SegmentArc const byEnds(arc.p1(), arc.p2(), gxDegree(p.span));
      ASSERT_LT(byEnds.segPoint(0.3).distance(p.at(0.3)), 1e-6);  // ends that nearly meet fix a circle badly
      ASSERT_EQ(byEnds.angleSpan().value(), p.span);
    }
  }
}

TEST(SegmentArc, knowsFullTurnsHalfTurnsAndMirrors)
{
  gx2SegmentArc const circle;
  EXPECT_TRUE(circle.validAngle(gxDegree(0), false));
  EXPECT_EQ(circle.angleSpan().value(), 360);
  EXPECT_EQ(circle.boundingBox(), gxRect({-1, -1}, {2, 2}));
  EXPECT_EQ(gx2SegmentArc(circle.ellipseArc()).angleSpan().value(), 360);
  for (double const turn : {0.0, 90.0, 180.0, -180.0, 123.0})  // half a turn is no mirror
    EXPECT_EQ((gx2Rigid(gxDegree(turn), {3, 4}) * circle).angleSpan().value(), 360) << turn;
  EXPECT_EQ((gxXform<2>({1, 0, 0, -1}, {}) * circle).angleSpan().value(), -360);
  EXPECT_TRUE(gx2SegmentArc({0, 0}, 1, gxDegree(0), gxDegree(400)).validAngle(gxDegree(270), false));

  gx2SegmentArc const half({-1, 0}, {3, 0}, gxDegree(180)), far({0, 0}, {0, 1}, gxDegree(360));
  EXPECT_LT(half.center().distance({1, 0}), 1e-15);
  EXPECT_GT(far.radius(gxDegree(0)), 1e15);
  gx2SegmentArc const down({0, 0}, 2, gxDegree(30), gxDegree(-90));
  EXPECT_EQ(down.startDirection().value(), -60);
  EXPECT_TRUE(down.ellipseArc().ellipse().isReversed());
  EXPECT_EQ(down.closestPoint({0, 0}), V(2, 0));
  gx2SegmentArc const up({0, 0}, 2, gxDegree(90), gxDegree(45));
  EXPECT_EQ(up.closestPoint({0, 0}), V(2, 0)) << "no part of the arc, but the answer for the centre";
  EXPECT_FALSE(up.inRange({0, 0}, true));
  EXPECT_TRUE(up.inRange({0, 9}, true));
  EXPECT_FALSE(up.inRange({0, 9}, false));
  EXPECT_TRUE(circle.validPoint({0, -1}, false));
  EXPECT_FALSE(circle.validPoint({0, -1.00001}, false));

  gx2SegmentArc const plain({2, 4}, 6, gxDegree(0), gxDegree(90));
  gx2SegmentArc const scaled = gxXform<2>({2, 0, 0, 2}, {}) * gx2SegmentArc({1, 2}, 3, gxDegree(0), gxDegree(90));
  EXPECT_EQ(plain, scaled);
  EXPECT_NE(plain, (gxXform<2>({2, 0, 0, 2.0000001}, {}) * scaled));
}

TEST(SegmentLine, rangesEndsAndTheDefault)
{
  gx2SegmentLine const side({1, 1}, {4, 5}), none;
  V const u(0.6, 0.8);
  struct Row {
    double beyond;  // of the length, past p2
    bool inclusive, exclusive;
  };
  for (Row const row : {Row{-0.5, true, true},
                        {-1e-10, true, true},
                        {-1e-15, true, false},
                        {0, true, false},
                        {1e-15, true, false},
                        {1e-10, false, false}}) {
    V const p = side.segPoint(1 + row.beyond) + V(-0.8, 0.6) * 7;
    EXPECT_EQ(side.inRange(p, true), row.inclusive) << row.beyond;
    EXPECT_EQ(side.inRange(p, false), row.exclusive) << row.beyond;
  }
  EXPECT_EQ(side.closestPoint(V(4, 5) + u * 3), V(4, 5));
  EXPECT_EQ(side.closestPoint(V(1, 1) - u * 3), V(1, 1));
  EXPECT_TRUE(side.validPoint(side.midPoint(), true));
  EXPECT_FALSE(none.inRange({0, 0}, false));
  EXPECT_TRUE(none.inRange({3, 0}, true));
  EXPECT_EQ(none.closestPoint({3, 4}), V());
  EXPECT_THROW(none.line(), gxShapesError::DegenerateShape);
}

TEST(Segments, refuseWhatHasNoShapeAndLiveWithWhatIsNoNumber)
{
  using Degenerate = gxShapesError::DegenerateShape;
  constexpr double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  V const p(1, 2), q(3, 4);
  EXPECT_THROW(gx2SegmentLine(p, p), Degenerate);
  EXPECT_THROW(gxXform<2>({0, 0, 0, 0}, {}) * gx2SegmentLine(p, q), Degenerate);
  for (double const radius : {0.0, -1.0, nan})
    EXPECT_THROW(gx2SegmentArc(p, radius, gxDegree(0), gxDegree(9)), Degenerate);
  for (double const span : {0.0, 1e-15, -1e-16, 360.0000001, -361.0, nan, inf})
    EXPECT_THROW(gx2SegmentArc(p, q, gxDegree(span)), Degenerate) << span;
  EXPECT_THROW(gx2SegmentArc(p, p, gxDegree(90)), Degenerate);
  EXPECT_THROW(gx2SegmentArc(p, {nan, 0}, gxDegree(90)), Degenerate);
  EXPECT_THROW(gx2SegmentArc(gxEllipseArc2(gxEllipse2({1, 0}, gxRadian(), {}), gxRadian(0), gxRadian(1))),
               gxMathError::Singular);

  for (double const bad : {nan, inf, -inf, 1e308, 1e-308}) {
    gx2SegmentArc const arc({bad, 1}, 2, gxDegree(bad), gxDegree(bad)), plain(p, 3, gxDegree(10), gxDegree(200));
    gx2SegmentLine const line({bad, 0}, {1, bad}), sound(p, q);
    for (bool const flag : {false, true})
      try {
        EXPECT_LE(arc.intersection(plain, flag).size() + plain.intersection(arc, flag).size(), 4U);
        EXPECT_LE(plain.intersection(line, flag).size() + sound.intersection(line, flag).size(), 3U);
        EXPECT_LE(arc.intersection(sound, flag).size(), 2U);
      } catch (Degenerate const &) {
        EXPECT_FALSE(line.length() < 1e308) << "a line that can be measured has a direction";
      }
    EXPECT_FALSE(arc.boundingBox().isEmpty() || line.boundingBox().isEmpty());
    EXPECT_FALSE(plain.distToPoint({bad, 1}) < 0);
    EXPECT_FALSE(line.distToPoint({bad, 1}) < 0);
  }
}

TEST(Segments, passThroughArchivesAndTellThemselves)
{
  gx2SegmentLine const line({1, 2}, {3, 4.5});
  gx2SegmentArc const arc = gxXform<2>({2, 1, 0, 3}, {5, 6}) * gx2SegmentArc({1, 2}, 3, gxDegree(400), gxDegree(-500));
  EXPECT_EQ(throughArchive(line), line);
  EXPECT_EQ(archivedBytes(throughArchive(arc)), archivedBytes(arc));
  std::string const bytes = archivedBytes(arc);
  EXPECT_EQ(bytes.size(), 1U + 5 * 8 + 6 * 8);
  gx2SegmentArc old;
  loadArchived('\0' + bytes.substr(1, 40), old);
  EXPECT_EQ(old, gx2SegmentArc({1, 2}, 3, gxDegree(400), gxDegree(-500)));
  EXPECT_EQ(refusalOfVersion(bytes, 0, gx2SegmentArc(), "dispc/wrfm/arc", -1, 2), "");
  EXPECT_EQ(refusalOfVersion(archivedBytes(line), 0, gx2SegmentLine(), "dispc/wrfm/lineseg", -1), "");
  std::string flat = bytes;
  flat.replace(17, 8, 8, '\0');
  EXPECT_THROW(loadArchived(flat, old), gxArchive::Errors);

  std::ostringstream os;
  os << line << gxXform<2>({2, 0, 0, 2}, {1, 1}) * gx2SegmentArc({1, 2}, 3, gxDegree(90), gxDegree(45));
  EXPECT_EQ(os.str(), "p1_=12\np2_=34.5\n\ncenter=3 5\nradius=6\nstartAngle=90\nangleSpan=45\n\n");
}

}  // namespace
