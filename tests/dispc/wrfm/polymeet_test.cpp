// What outlines are asked about points, about themselves and about each other, against dense flattenings.

#include "dispc/wrfm/modelprivate.h"
#include "foundation/shapeserror.h"
#include "tests/support/outlinevariants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <sstream>

namespace
{

using V = gxVector<2>;
using Private = gxSMDGDPolyPrivate;
using Points = shape_test::Chain;
using shape_test::distance, shape_test::winding;

/// What is open to derived classes only.
struct Open : Outline {
  Open(gxSMDGDPoly const &poly) : Outline(poly) {}  // NOLINT(google-explicit-constructor)
  using gxSMDGDPoly::checkExtensions_, gxSMDGDPoly::intersection_, gxSMDGDPoly::intersectionSegment_;
  using gxSMDGDPoly::intersectionVertex_, gxSMDGDPoly::segmentIntersectsSegment_, gxSMDGDPoly::setDefaultExtensions_;
  using gxSMDGDPoly::segmentIntersection_, gxSMDGDPoly::segmentIntersectsVertex_, gxSMDGDPoly::setExtensions_;
  using gxSMDGDPoly::vertexIntersectsVertex_;
  /// Whether any two pieces meet, by asking each pair.
  bool crossesPlainly() const
  {
    int const n = static_cast<int>(numVertices());
    for (int i = 0; i < n; ++i)
      for (int k = 0; k < n; ++k) {
        if ((k < i && vertexIntersectsVertex_(i, k)) ||
            (previousSegmentIndex_(k) != -1 && segmentIntersectsVertex_(k, i)))
          return true;
        if (k < i && previousSegmentIndex_(k) != -1 && !segmentIntersection_(i, k).empty())
          return true;
      }
    return false;
  }
  std::vector<double> extensions() const
  {
    std::vector<double> all;
    for (int v = 0; v < numVertices(); ++v)
      all.insert(all.end(), {forwardPercExtension_(v), backwardPercExtension_(v)});
    return all;
  }
};

V at(Corner const &c)
{
  return {c.x, c.y};
}

std::string textOf(Corners const &corners)
{
  std::string text = "Corners{";
  for (Corner const &c : corners)
    text += "{" + std::to_string(c.x) + ", " + std::to_string(c.y) + ", " + std::to_string(c.radius) + ", " +
            std::to_string(c.span) + "}, ";
  return text + "}";
}

/// Proper crossings of two flattenings; with itself, each pair once.
std::size_t crossings(Points const &a, Points const &b)
{
  std::size_t count = 0;
  bool const isSame = &a == &b;
  for (std::size_t i = 0; i + 1 < a.size(); ++i)
    for (std::size_t j = isSame ? i + 2 : 0; j + 1 < b.size(); ++j) {
      V const p = a[i], u = a[i + 1] - p, q = b[j], w = b[j + 1] - q;
      if (std::max(p.x(), a[i + 1].x()) < std::min(q.x(), b[j + 1].x()) ||
          std::min(p.x(), a[i + 1].x()) > std::max(q.x(), b[j + 1].x()))
        continue;
      count += u.cross(q - p) * u.cross(q + w - p) < 0 && w.cross(p - q) * w.cross(p + u - q) < 0;
    }
  return count;
}

/// The answer of two flattenings, if they agree.
template <class Count>
std::optional<std::size_t> agreed(Count count)
{
  std::size_t const coarse = count(29), fine = count(47);
  return coarse == fine ? std::optional(fine) : std::nullopt;
}

Points distinct(Points points)
{
  Points kept;
  for (V const p : points)
    if (std::none_of(kept.begin(), kept.end(), [&](V k) { return k.distance(p) < 1e-7; }))
      kept.push_back(p);
  return kept;
}

// ---- points

TEST(PolyInside, agreesWithTheWindingNumberEvenOnRaysThroughVerticesAndTangents)
{
  RandomOutlines random(7501);
  int decided = 0, inside = 0;
  for (int i = 0; i < 60; ++i) {
    gxSMDGDPoly const poly = random.sound();
    Corners const corners = cornersOf(poly);
    Points const flat = flattened(poly, 100);
    Points probes;
    for (int k = 0; k < 20; ++k)
      probes.emplace_back(random.in(-11, 11), random.in(-11, 11));
    for (Corner const &c : corners)  // level with vertices, and in line with two of them
      for (Corner const &d : corners)
        probes.insert(probes.end(), {V(c.x, d.y), at(c) + (at(c) - at(d)) * random.in(-2, 1)});
    for (std::size_t k = 0; k + 1 < flat.size(); k += 13)  // on tangents
      probes.push_back(flat[k] + (flat[k + 1] - flat[k]).unit() * random.in(-9, 9));
    for (V const p : probes) {
      if (distance(flat, p) < 1e-3)
        continue;
      bool const expected = std::abs(winding(flat, p)) > 1;
      ASSERT_EQ(Private::inside(poly, p), expected) << p << asCode(poly);
      ++decided;
      inside += expected;
    }
  }
  EXPECT_GT(decided, 5000);
  EXPECT_GT(inside, 1500);
}

TEST(PolyInside, changesAcrossEachPieceAndNowhereElse)
{
  RandomOutlines random(7502);
  for (int i = 0; i < 60; ++i) {
    gxSMDGDPoly const poly = random.sound();
    Points const flat = flattened(poly, 10);  // points of these lie on the pieces
    for (std::size_t k = 1; k + 1 < flat.size(); ++k) {
      V const p = flat[k], before = p - flat[k - 1], behind = flat[k + 1] - p;
      if (std::min(before.len(), behind.len()) < 1e-6 || before.unit() * behind.unit() < 0.9)
        continue;  // a joint
      V const across = V(1e-6, behind.angle() + gxRadian(std::numbers::pi / 2));
      ASSERT_NE(Private::inside(poly, p + across), Private::inside(poly, p - across)) << p << asCode(poly);
    }
  }
}

TEST(PolyDirection, isTheSignOfTheAreaForOutlinesThatBeginWithALine)
{
  RandomOutlines random(7503);
  int seen = 0;
  for (int i = 0; i < 60; ++i) {
    Corners const corners = cornersOf(random.sound());
    for (std::size_t first = 0; first < corners.size(); ++first)
      for (Corners const &row : {startingAt(corners, first), reversed(startingAt(corners, first)),
                                 mapped(startingAt(corners, first), gxDegree(random.in(0, 360)), 0.01, V(100, -7))}) {
        gxSMDGDPoly poly = outlineOf(row);
        if (!Private::isLineSegment_(poly, 1))
          continue;
        ++seen;
        bool const isPositive = Fingerprint(poly).area > 0;
        ASSERT_EQ(poly.isDirectionPositive(), isPositive) << asCode(poly);
        poly.toggleDirection();
        ASSERT_EQ(poly.isDirectionNegative(), isPositive);
      }
  }
  EXPECT_GT(seen, 400);
  gxSMDGDPoly circle = gxSMDGDPoly::circle(3, {1, 2});
  EXPECT_TRUE(circle.isDirectionPositive());
  // Of the two clockwise circles the test ray of the first points to 270 degrees, that of the second to 90.
  EXPECT_FALSE(outlineOf({{-2, 2, 0, -180}, {4, 2, 0, -180}}).isDirectionPositive());
  EXPECT_TRUE(outlineOf({{4, 2, 0, -180}, {-2, 2, 0, -180}}).isDirectionPositive());
  circle.open();
  EXPECT_THROW((void)circle.isDirectionPositive(), gxSMDGDPoly::notClosed);
  EXPECT_THROW(Private::inside(circle, {1, 2}), gxSMDGDPoly::notClosed);
}

TEST(PolyRanges, aRayCrossesAnArcOnceForEachRangeThatHoldsIt)
{
  RandomOutlines random(7504);
  for (int i = 0; i < 3000; ++i) {
    V const p(random.in(-4, 4), random.in(-4, 4));
    gx2SegmentArc const arc({0, 0}, random.in(0.5, 4), gxDegree(random.in(-180, 180)),
                            gxDegree(random.in(5, 359) * (i % 2 ? 1 : -1)));
    auto const ranges = Private::arcRanges_(arc, p);
    for (double a = 0.5; a < 360; a += 7.3) {
      bool isClear = true;  // of the bounds of the ranges
      for (auto const &r : ranges)
        for (gxDegree const bound : {r.startAngle(), r.endAngle()})
          isClear = isClear && std::abs((bound - gxDegree(a)).signedNorm().value()) > 1e-3;
      if (!isClear)
        continue;
      V const ray(1.0, gxDegree(a));
      Points const met = arc.intersection(gxFLine(p, p + ray), false);
      ASSERT_EQ(
          std::count_if(met.begin(), met.end(), [&](V q) { return (q - p) * ray > 0; }),
          std::count_if(ranges.begin(), ranges.end(), [&](auto const &r) { return r.validAngle(gxDegree(a), true); }))
          << arc << p << a;
    }
    // the safest direction keeps the widest berth of all starts
    auto const berth = [&](double a) {
      double nearest = 360;
      for (auto const &r : ranges)
        nearest = std::min(nearest, std::abs((r.startAngle() - gxDegree(a)).signedNorm().value()));
      return nearest;
    };
    double const best = berth(Private::safestDirection_(ranges, gxDegree(0), gxDegree(360)).value());
    for (double a = 0; a < 360; a += 1)
      ASSERT_LE(berth(a), best + 1e-9);
    double const start = random.in(-400, 400), span = random.in(-300, 300);
    double const within =
        (Private::safestDirection_(ranges, gxDegree(start), gxDegree(span)) - gxDegree(start)).value();
    double const along = gxDegree(span < 0 ? -within : within).norm().value();
    ASSERT_LE(along, std::abs(span) + 1e-9);
  }
  EXPECT_EQ(Private::safestDirection_({}, gxDegree(77), gxDegree(20)).value(), 0);
}

TEST(PolyClosestPoint, agreesWithDenseSampling)
{
  RandomOutlines random(7505);
  for (int i = 0; i < 100; ++i) {
    gxSMDGDPoly poly = random.sound();
    Points const flat = flattened(poly, 500);
    for (int k = 0; k < 20; ++k) {
      V const p(random.in(-11, 11), random.in(-11, 11));
      ASSERT_NEAR(Private::distToPoint(poly, p), distance(flat, p), 1e-4) << p << asCode(poly);
    }
  }
  EXPECT_THROW(Private::closestPoint(gxSMDGDPoly(), {0, 0}), gxSMDGDPoly::invalidIndex);
  EXPECT_EQ(Private::closestPoint(outlineOf({{3, 4}}, false), {0, 0}), V(3, 4));
}

// ---- outlines

TEST(PolyIntersection, findsTheCrossingsOfTwoFlattenings)
{
  RandomOutlines random(7506);
  int decided = 0, met = 0;
  for (int i = 0; i < 150; ++i) {
    gxSMDGDPoly const first = random.sound();
    gxSMDGDPoly const second =
        gx2Rigid(gxDegree(random.in(0, 360)), V(random.in(-9, 9), random.in(-9, 9))) * random.sound();
    Open const a(first), b(second);
    Points const found = a.intersection_(b);
    for (V const p : found)
      ASSERT_LT(std::max(Private::distToPoint(a, p), Private::distToPoint(b, p)), 1e-6) << p << asCode(a) << asCode(b);
    ASSERT_EQ(distinct(found).size(), distinct(b.intersection_(a)).size()) << asCode(a) << asCode(b);
    Points pieces;
    for (int k = 0; k < a.numVertices(); ++k)
      for (Points const &points : {a.intersectionVertex_(b, k), a.intersectionSegment_(b, k)})
        pieces.insert(pieces.end(), points.begin(), points.end());
    ASSERT_EQ(pieces, found);
    auto const expected = agreed([&](int steps) { return crossings(flattened(a, steps), flattened(b, steps)); });
    if (!expected)
      continue;
    ++decided;
    met += *expected > 0;
    ASSERT_EQ(distinct(found).size(), *expected) << asCode(a) << "\n" << asCode(b);
  }
  EXPECT_GT(decided, 120);
  EXPECT_GT(met, 60);
  Open const square(gxSMDGDPoly::rectangle(2, 2, {0, 0}));
  EXPECT_EQ(square.intersection_(Open(gxSMDGDPoly())), Points());
  EXPECT_EQ(distinct(square.intersection_(Open(outlineOf({{1, 5}, {1, 1.0000000000001}}, false)))).size(), 1U);
  EXPECT_THROW(square.intersectionVertex_(square, 4), gxSMDGDPoly::invalidIndex);
  EXPECT_THROW(square.intersectionSegment_(square, -1), gxSMDGDPoly::invalidIndex);
}

TEST(PolySelfCrossing, isRefusedExactlyWhereTheFlatteningCrossesItself)
{
  RandomOutlines random(7507);
  int refused = 0, accepted = 0;
  for (int i = 0; i < 1200; ++i) {
    Corners corners;
    for (int k = 3 + random.upTo(4); k > 0; --k)
      corners.push_back({random.in(-9, 9), random.in(-9, 9), 0, random.upTo(2) ? random.in(-200, 200) : 0});
    auto const flat = [&](int steps) {  // by its own formula: an outline that is refused cannot be asked
      Points points;
      for (std::size_t k = 0; k < corners.size(); ++k) {
        V const from = at(corners[k]), to = at(corners[(k + 1) % corners.size()]);
        double const span = corners[(k + 1) % corners.size()].span * std::numbers::pi / 180;
        for (int s = 0; s < steps; ++s) {
          double const t = s / double(steps);  // the chord of a part of the arc: its length and its direction
          points.push_back(span == 0 ? from + (to - from) * t
                                     : from + V((to - from).len() * std::sin(span * t / 2) / std::sin(span / 2),
                                                (to - from).angle() - gxRadian(span * (1 - t) / 2)));
        }
      }
      points.push_back(at(corners[0]));
      return points;
    };
    auto const expected = agreed([&](int steps) {
      Points const points = flat(steps);
      return crossings(points, points);
    });
    Points const points = flat(200);
    bool isClear = expected.has_value();  // also of pieces that leave a joint side by side, to cross close to it
    for (std::size_t k = 0; k < corners.size(); ++k) {
      V const joint = points[k * 200];
      V const next = (points[k * 200 + 1] - joint).unit(),
              back = (points[(k * 200 + points.size() - 2) % (points.size() - 1)] - joint).unit();
      isClear = isClear && !(next * back > 0.9);
    }
    if (!isClear)
      continue;
    bool isRefused = false;
    try {
      Open const poly(outlineOf(corners));
      ++accepted;
      for (int s = 0; s < poly.numSegments(); ++s)
        for (int t = 0; t < poly.numSegments(); ++t)
          ASSERT_FALSE(s != t && poly.segmentIntersectsSegment_(s, t)) << s << " " << t << asCode(poly);
    } catch (gxSMDGDPoly::crossingSegments const &) {
      isRefused = true;
      ++refused;
    }
    ASSERT_EQ(isRefused, *expected > 0) << textOf(corners);
  }
  EXPECT_GT(refused, 150);
  EXPECT_GT(accepted, 100);
}

TEST(PolySelfCrossing, editsAreRefusedAsIfAllPairsWereAsked)
{
  RandomOutlines random(7509);
  int refused = 0, accepted = 0;
  auto const attempt = [&](auto change) {
    try {
      change();
      ++accepted;
      return true;
    } catch (gxException const &) {
      ++refused;
      return false;
    }
  };
  // Pieces of any kind: a vertex that is accepted makes no pair meet.
  for (int i = 0; i < 20; ++i) {
    Open poly(random.sound(6, 20));
    for (int k = 0; k < 60; ++k) {
      int const n = static_cast<int>(poly.numVertices()), at = random.upTo(n);
      Corner c = cornersOf(poly)[static_cast<std::size_t>(at)];
      c.x += random.in(-2, 2), c.y += random.in(-2, 2);
      if (random.upTo(2))
        c.radius = random.in(0, 1), c.span = random.in(-90, 90);
      bool const wasSound = !poly.crossesPlainly();
      bool const done = attempt([&] {
        if (k % 13 == 12)
          poly.isOpen() ? poly.close() : poly.open();
        else if (k % 5 == 4 && n > 4)
          poly.deleteVertex(at);
        else if (k % 5 == 3)
          poly.insertVertex(k % 2 ? at : n - 1, c.vertex());
        else
          poly.replaceVertex(at, c.vertex());
      });
      ASSERT_FALSE(done && wasSound && k % 5 < 3 && poly.crossesPlainly()) << asCode(poly);
    }
  }
  // Many lines: exactly those edits are refused that make two of them cross.
  Corners ring;
  for (int i = 0; i < 90; ++i) {
    V const p(random.in(8, 12), gxDegree(4 * i));
    ring.push_back({p.x(), p.y()});
  }
  gxSMDGDPoly poly = outlineOf(ring);
  for (int k = 0; k < 1500; ++k) {
    auto const at_ = static_cast<std::size_t>(random.upTo(90));
    Corners next = ring;
    next[at_].x += random.in(-1.5, 1.5), next[at_].y += random.in(-1.5, 1.5);
    Points line;
    for (Corner const &c : next)
      line.push_back(at(c));
    line.push_back(line.front());
    bool const crosses = crossings(line, line) > 0;
    ASSERT_EQ(attempt([&] { poly.replaceVertex(static_cast<int>(at_), next[at_].vertex()); }), !crosses) << k;
    if (!crosses)
      ring = next;
  }
  EXPECT_GT(refused, 500);
  EXPECT_GT(accepted, 500);
}

TEST(PolySelfCrossing, soundJointsAreNeverRefused)
{
  RandomOutlines random(7508);
  for (int i = 0; i < 20000; ++i) {
    double const scale = std::pow(10, random.in(-3, 3)), flatness = std::pow(10, -random.in(0, i % 2 ? 8 : 0));
    Corners const chain{{-3, random.in(-2, 2)},
                        {0, 0},
                        {random.in(2, 4), random.in(-1, 1), 0, random.in(-80, 80) * flatness},
                        {random.in(6, 9), random.in(-2, 2)}};
    Corners const row =
        mapped(chain, gxDegree(random.in(0, 360)), scale, V(random.in(-9, 9), random.in(-9, 9)) * scale);
    ASSERT_NO_THROW(outlineOf(row, false)) << textOf(row);
  }
  // lines that go over into arcs smoothly
  for (int i = 0; i < 3000; ++i)
    ASSERT_NO_THROW(outlineOf(mapped({{-2, 1}, {-2, -1, 0, 180}, {2, -1}, {2, 1, 0, 180}}, gxDegree(random.in(0, 360)),
                                     random.in(0.01, 100), V(random.in(-90, 90), random.in(-90, 90)))));
}

TEST(PolyContact, touchesOrPassesThrough)
{
  Corners const square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  struct Row {
    char const *what;
    Corners a;
    V p;
    bool touches;
  };
  std::vector<Row> const table{
      {"corner on a side, from outside", {{12, 8}, {10, 5}, {12, 2}}, {10, 5}, true},
      {"corner on a side, from inside", {{8, 8}, {10, 5}, {8, 2}}, {10, 5}, true},
      {"corner on a side, passing through", {{12, 8}, {10, 5}, {5, 4}}, {10, 5}, false},
      {"tip of a chain on a side: beyond it is outside", {{12, 5}, {10, 5}}, {10, 5}, true},
      {"tip of a chain that comes from inside", {{8, 5}, {10, 5}}, {10, 5}, false},
      {"fillet that touches", {{12, 9}, {9, 5, 1}, {12, 1}}, {0, 0}, true},
      {"fillet that crosses", {{12, 9}, {9, 5, 1}, {12, 1}}, {0, 0}, false},
      {"no vertex there", {{12, 8}, {8, 2}}, {10, 5}, false},
  };
  for (Row row : table)
    for (double const turn : {0.0, 33.0, 190.0}) {
      if (row.a[1].radius > 0) {  // the fillet is put where its outermost point is on the side, or 0.2 beyond it
        gxSMDGDPoly const chain = outlineOf(row.a, false);
        V const tip = Private::roundedArcVertex_(chain, 1).closestPoint({-100, 5});
        row.a = mapped(row.a, gxDegree(0), 1, V(10 - tip.x() - (row.touches ? 0.0 : 0.2), 0));
        gxSMDGDPoly const moved = outlineOf(row.a, false);
        row.p = row.touches
                    ? V(10, 5)
                    : Private::roundedArcVertex_(moved, 1).intersection(gx2SegmentLine({10, 0}, {10, 10}), false).at(0);
      }
      gx2Rigid const map(gxDegree(turn), V(3, -2));
      gxSMDGDPoly const a = map * outlineOf(row.a, false), b = map * outlineOf(square);
      EXPECT_EQ(Private::pointContact(a, map * row.p, b), row.touches) << row.what << " " << turn;
      EXPECT_FALSE(Private::pointContact(a, {std::numeric_limits<double>::quiet_NaN(), 5}, b));
      gxSMDGDPoly open(b);
      open.open();
      EXPECT_THROW(Private::pointContact(a, map * row.p, open), gxSMDGDPoly::notClosed);
    }
}

// ---- extensions

TEST(PolyExtensions, ariseAtSharpCornersOnly)
{
  Corners dozen;
  for (int i = 0; i < 12; ++i)
    dozen.push_back({std::cos(i * std::numbers::pi / 6), std::sin(i * std::numbers::pi / 6)});
  Open square(gxSMDGDPoly::rectangle(4, 4, {0, 0})), round(outlineOf(dozen)),
      chain(outlineOf({{0, 0}, {5, 0}, {5, 5}}, false));
  square.setDefaultExtensions_();
  EXPECT_EQ(square.extensions(), std::vector<double>(8, 0.5));
  EXPECT_DOUBLE_EQ(square.extensionPerimeter_(), 16);
  round.setExtensions_(0.5);
  EXPECT_EQ(round.extensions(), std::vector<double>(24, 0.0));
  chain.setExtensions_(0.25);
  EXPECT_EQ(chain.extensions(), (std::vector<double>{0, 0, 0.25, 0.25, 0, 0}));
  chain.setExtensions_(0);
  EXPECT_EQ(chain.extensions(), std::vector<double>(6, 0.0));
}

TEST(PolyExtensions, areCutBackWhereTheyRunCloseAlongAnotherPiece)
{
  auto const cut = [](auto const &segment, auto const &other, double clearance, bool backward = false) {
    double fraction = 0.5;
    Private::checkSegmentExtension_(fraction, segment, other, clearance, gxDegree(10), 1.0, backward);
    return fraction;
  };
  // a segment of length 10 along x; 1 above its continuation, from x = 13 on, lies another
  gx2SegmentLine const line({0, 0}, {10, 0}), beside({13, 1}, {20, 1}), steep({13, 1}, {14, 9});
  EXPECT_EQ(cut(line, beside, 2), 0.2);
  EXPECT_EQ(cut(line, beside, 0.5), 0.5) << "far enough";
  EXPECT_EQ(cut(line, steep, 9), 0.5) << "not along";
  EXPECT_EQ(cut(line, beside, 2, true), 0.5) << "at the other end";
  EXPECT_EQ(cut(gx2SegmentLine({10, 0}, {0, 0}), beside, 2, true), 0.2);

  // the same bent: arcs of radius 20 / pi about (0, 0), whose quarter has length 10
  double const r = 20 / std::numbers::pi;
  gx2SegmentArc const quarter({0, 0}, r, gxDegree(0), gxDegree(90)), back({0, 0}, r, gxDegree(90), gxDegree(-90));
  gx2SegmentArc const outer({0, 0}, r + 1, gxDegree(115), gxDegree(60));
  EXPECT_NEAR(cut(quarter, outer, 2), 0.2, 1e-12);
  EXPECT_NEAR(cut(back, outer, 2, true), 0.2, 1e-12);
  EXPECT_EQ(cut(quarter, outer, 0.5), 0.5);
  EXPECT_EQ(cut(back, outer, 2), 0.5);
  // and mixed: a line that an arc comes close to, an arc that a line does
  gx2SegmentArc const above({13, 21}, 20, gxDegree(270), gxDegree(8));
  EXPECT_NEAR(cut(line, above, 2), 0.2, 1e-12);
  gx2SegmentLine const tangent(V(r + 1, gxDegree(117)), V(r + 1, gxDegree(117)) + V(9, gxDegree(207)));
  EXPECT_NEAR(cut(quarter, tangent, 2), 0.2, 1e-12);

  double fraction = 0.5;
  for (double const step :
       {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    EXPECT_THROW(Private::checkSegmentExtension_(fraction, line, beside, 2, gxDegree(10), step, false),
                 gxShapesError::BadCoef);
  Private::checkSegmentExtension_(fraction, line, beside, 2, gxDegree(10), 1e-300, false);  // comes to an end
  EXPECT_NEAR(fraction, 0.3, 1e-6);

  // two squares, one unit apart: the sides that would run along each other are cut back
  Open left(gxSMDGDPoly::rectangle(10, 10, {0, 0})), right(gxSMDGDPoly::rectangle(10, 8, {11, -4}));
  left.setExtensions_(0.5);
  Open same(left);
  same.checkExtensions_(same, 0.5, gxDegree(10), 0.25, true);
  EXPECT_EQ(same.extensions(), left.extensions()) << "a square is clear of itself";
  left.checkExtensions_(right, 1.5, gxDegree(10), 0.25, false);
  EXPECT_NE(left.extensions(), same.extensions());
  // vertex 3 is (5, -5): segment 0 runs up from there, and back past it beside the other's left side
  EXPECT_EQ(left.extensions()[7], 0.0);
  EXPECT_EQ(left.extensions()[0], 0.5);

  gxSMDGDModel model;
  model << gxSMDGDPoly::rectangle(10, 10, {0, 0}) << right;
  gxSMDGDModelPrivate::setExtensions(model, 0.15, -0.1);  // of one half, clear by 1.2
  EXPECT_EQ(Open(model.polys()[0]).extensions(), left.extensions());
  gxSMDGDModelPrivate::setExtensions(model, 0.1, 0.5);  // by 0.8
  EXPECT_EQ(Open(model.polys()[0]).extensions(), same.extensions());
}

// A line within rounding errors, seen from beyond its end: the circle of the arc seems to hold the point.
TEST(PolyRanges, ofAFlatArcSeenAlongItsChord)
{
  Outline const poly(true, {{8, 5, 0, 0, -1}, {-8, 0, 0, 0, -1}, {-1, -7, 0, -5.427809201247302e-07, -1}});
  for (double const d : {0.5, 1.0, 7.0 / 3.0, 3.1})
    EXPECT_FALSE(gxSMDGDPolyPrivate::inside(poly, {-8 - d, d})) << d;
}

}  // namespace
