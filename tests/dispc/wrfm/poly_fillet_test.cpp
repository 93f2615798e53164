#include "foundation/shapeserror.h"
#include "tests/support/outlines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

// Fillets against a construction of their own: a circle rolls along the first segment, touching it on the inner side
// of the corner, and bisection finds the places where it touches the second one.

namespace
{
using Poly = gxSMDGDPoly;
using Point = gxVector<2>;
double const pi = std::numbers::pi;

/// A segment by its parameter 0 to 1, from its ends and span alone.
struct Curve {
  Point a, b;
  double span = 0.0;  // radians

  bool isArc() const { return span != 0.0; }
  Point center() const
  {
    // The chord subtends the span, so the centre is on its left for a positive span below a half turn.
    Point const half = (b - a) * 0.5;
    return a + half + Point(-half.y(), half.x()) * (1.0 / std::tan(span / 2.0));
  }
  double radius() const { return center().distance(a); }
  Point at(double t) const
  {
    if (!isArc())
      return a + (b - a) * t;
    Point const c = center();
    double const turn = span * t;
    Point const r = a - c;
    return c + Point(r.x() * std::cos(turn) - r.y() * std::sin(turn), r.x() * std::sin(turn) + r.y() * std::cos(turn));
  }
  Point directionAt(double t) const
  {
    if (!isArc())
      return (b - a).unit();
    Point const r = (at(t) - center()).unit();
    return span > 0.0 ? Point(-r.y(), r.x()) : Point(r.y(), -r.x());
  }
  /// How far left of the curve (continued) the point lies.
  double leftOf(Point p) const
  {
    if (!isArc())
      return (b - a).unit().cross(p - a);
    double const outside = p.distance(center()) - radius();
    return span > 0.0 ? -outside : outside;
  }
  /// The parameter of the foot of a point on the curve, continued.
  double footOf(Point p) const
  {
    if (!isArc())
      return (p - a) * (b - a) / ((b - a) * (b - a));
    double turn = (p - center()).angle().value() - (a - center()).angle().value();
    turn -= 2.0 * pi * std::floor((turn / (2.0 * pi)));  // 0 to a turn
    double const t = span > 0.0 ? turn / span : (2.0 * pi - turn) / -span;
    double const back = t - 2.0 * pi / std::abs(span);  // the same place, before the start
    return std::abs(back) < t - 1.0 ? back : t;
  }
};

struct Reference {
  std::vector<Point> centers;
  bool doubtful = false;  ///< a solution lies so near to a limit that rounding decides
};

/// All circles of the radius that touch @p first at a parameter from @p from on, and @p second at one up to @p to.
Reference roll(Curve const &first, Curve const &second, double radius, double from, double to)
{
  Reference found;
  bool const left = first.directionAt(1.0).cross(second.directionAt(0.0)) > 0.0;
  double const offset = left ? radius : -radius;
  auto const centerAt = [&](double t) {
    Point const d = first.directionAt(t);
    return first.at(t) + Point(-d.y(), d.x()) * offset;
  };
  auto const miss = [&](double t) { return second.leftOf(centerAt(t)) - offset; };

  int const steps = 500;
  double const margin = 1e-6;
  for (int i = -4; i < steps + 4; ++i) {  // a little beyond the limits, to see what is close to them
    double low = from + (1.0 - from) * i / steps;
    double high = from + (1.0 - from) * (i + 1) / steps;
    if (std::signbit(miss(low)) == std::signbit(miss(high))) {
      found.doubtful = found.doubtful || std::min(std::abs(miss(low)), std::abs(miss(high))) < 1e-3 * radius;
      continue;
    }
    for (int k = 0; k < 60; ++k) {
      double const middle = (low + high) / 2.0;
      (std::signbit(miss(middle)) == std::signbit(miss(low)) ? low : high) = middle;
    }
    double const t = second.footOf(centerAt(low));
    for (double const distance : {low - from, low - 1.0, t, t - to})
      found.doubtful = found.doubtful || std::abs(distance) < margin;
    if (low >= from && low <= 1.0 && t >= 0.0 && t <= to)
      found.centers.push_back(centerAt(low));
  }
  // An arc whose inner side is nearer than its centre cannot take the circle inside.
  for (Curve const *c : {&first, &second})
    if (c->isArc() && (c->span > 0.0) == left && c->radius() < radius)
      found.centers.clear();
  return found;
}

double angleBetween(gxDegree a, gxDegree b)
{
  return std::abs((a - b).signedNorm().value());
}

/// What must hold of any fillet: it touches both segments, in their direction of travel.
void expectSmooth(Outline const &poly, int v, Point center, Curve const &first, Curve const &second)
{
  double const r = poly.vertexRadius_(v);
  gx2SegmentArc const fillet = poly.fillet(v);
  EXPECT_NEAR(fillet.p1().distance(center), r, 1e-9);
  EXPECT_NEAR(fillet.p2().distance(center), r, 1e-9);
  EXPECT_NEAR(fillet.center().distance(center), 0.0, 1e-6);
  EXPECT_NEAR(first.leftOf(fillet.p1()), 0.0, 1e-9);
  EXPECT_NEAR(second.leftOf(fillet.p2()), 0.0, 1e-9);
  EXPECT_LT(angleBetween(fillet.startDirection(), first.directionAt(first.footOf(fillet.p1())).angle()), 1e-5);
  EXPECT_LT(angleBetween(fillet.endDirection(), second.directionAt(second.footOf(fillet.p2())).angle()), 1e-5);
  // What lies before and behind the two segments is not rounded.
  EXPECT_NEAR(poly.roundedSegmentLength_(v) + fillet.length() + poly.roundedSegmentLength_(v + 1),
              poly.perimeter_(0.0) - (v == 2 ? poly.roundedSegmentLength_(1) : 0.0) -
                  (poly.numVertices() == v + 3 ? poly.roundedSegmentLength_(v + 2) : 0.0),
              1e-9);
}
}  // namespace

TEST(Fillets, AgreeWithARollingCircle)
{
  int rounded[2][2] = {};
  int refused[2][2] = {};
  int compared = 0;
  for (unsigned seed = 0; seed < 1200; ++seed) {
    Random random(seed);
    // A corner at (0, 0), with a segment before and behind it that makes its own segments inner ones, or without.
    bool const before = random.below(2) != 0;
    bool const behind = random.below(2) != 0;
    auto const span = [&](bool arc) {
      double const size = arc ? random.in(20, 200) : 0.0;
      return arc && random.below(2) ? -size : size;
    };
    bool const arcs[2] = {random.below(2) != 0, random.below(2) != 0};
    double const spans[2] = {span(arcs[0]), span(arcs[1])};
    Point const p{random.in(5, 15), gxDegree(random.in(0, 360))};
    Point const q{random.in(5, 15), gxDegree(random.in(0, 360))};
    double const size = std::exp(random.in(std::log(0.05), std::log(20.0)));
    double const radius = random.one(4) ? -size : size;

    std::vector<Corner> corners = {{p.x(), p.y()}, {0, 0, 0, spans[0]}, {q.x(), q.y(), 0, spans[1]}};
    if (before)
      corners.insert(corners.begin(), {p.x() * 5 - 40 * p.y(), p.y() * 5 + 40 * p.x()});
    if (behind)
      corners.push_back({q.x() * 5 + 40 * q.y(), q.y() * 5 - 40 * q.x()});
    int const v = before ? 2 : 1;
    auto const at = static_cast<std::size_t>(v);

    std::optional<Outline> poly;
    try {
      poly.emplace(false, corners);
    } catch (gxException const &) {
      continue;  // the corner crosses itself without any rounding
    }
    Curve const first{p, {0, 0}, spans[0] * pi / 180.0};
    Curve const second{{0, 0}, q, spans[1] * pi / 180.0};
    if (std::abs(first.directionAt(1.0).cross(second.directionAt(0.0))) < 0.02)
      continue;  // neither left nor right
    Reference const reference = roll(first, second, std::abs(radius), before ? 0.5 : 0.0, behind ? 0.5 : 1.0);

    corners[at].radius = radius;
    SCOPED_TRACE(testing::Message() << "seed " << seed << ' ' << asCode(*poly) << " radius " << radius);
    try {
      poly->replaceVertex(v, corners[at].vertex());
    } catch (Poly::invalidRounding const &) {
      EXPECT_TRUE(reference.centers.empty() || reference.doubtful);
      ++refused[arcs[0]][arcs[1]];
      continue;
    } catch (Poly::crossingSegments const &) {
      continue;
    } catch (gxShapesError::DegenerateShape const &) {
      continue;
    }
    ++rounded[arcs[0]][arcs[1]];
    Point const center = gxSMDGDPolyPrivate::roundPoint(*poly, v);
    EXPECT_EQ(poly->roundingIsUncertain_(v), radius < 0.0);
    if (reference.doubtful)
      continue;
    ++compared;
    ASSERT_FALSE(reference.centers.empty());
    Point nearest = reference.centers.front();
    for (Point const c : reference.centers)
      if (c.len() < nearest.len())
        nearest = c;
    EXPECT_LT(center.distance(nearest), 1e-6) << reference.centers.size() << " centres";
    expectSmooth(*poly, v, center, first, second);
  }
  for (int a = 0; a < 2; ++a)
    for (int b = 0; b < 2; ++b) {
      EXPECT_GT(rounded[a][b], 40) << a << b;
      EXPECT_GT(refused[a][b], 20) << a << b;
    }
  EXPECT_GT(compared, 300);
}

TEST(Fillets, LimitsOfASquare)
{
  auto const square = [](double radius) { return Outline(true, {{10, 10, radius}, {0, 10}, {0, 0}, {10, 0}}); };
  Outline const s = square(2);
  EXPECT_LT(gxSMDGDPolyPrivate::roundPoint(s, 0).distance({8, 8}), 1e-12);
  EXPECT_LT(s.fillet(0).p1().distance({10, 8}), 1e-12);
  EXPECT_LT(s.fillet(0).p2().distance({8, 10}), 1e-12);
  EXPECT_NEAR(s.fillet(0).angleSpan().value(), 90.0, 1e-12);
  EXPECT_NO_THROW(square(5));
  EXPECT_NO_THROW(square(-5));
  EXPECT_THROW(square(5.0000001), Poly::invalidRounding);
  EXPECT_THROW(square(-6), Poly::invalidRounding);
  // Two fillets that use up a side leave a segment without length.
  EXPECT_THROW(Outline(true, {{10, 10, 5}, {0, 10, 5}, {0, 0}, {10, 0}}), gxShapesError::DegenerateShape);
  EXPECT_EQ(gxSMDGDPolyPrivate::roundPoint(square(-3), 0), gxSMDGDPolyPrivate::roundPoint(square(3), 0));

  // At the open ends a fillet may use all of a segment, and is ignored at the end itself.
  EXPECT_NO_THROW(Outline(false, {{10, 0, 77}, {10, 10, 9}, {0, 10, -88}}));
  Outline const chain(false, {{10, 0}, {10, 10, 9}, {0, 10}});
  EXPECT_THROW(Outline(false, {{10, 0}, {10, 10, 10.001}, {0, 10}}), Poly::invalidRounding);
  for (int const v : {0, 2})
    EXPECT_THROW(gxSMDGDPolyPrivate::roundPoint(chain, v), Poly::invalidIndex);
  EXPECT_THROW(gxSMDGDPolyPrivate::roundPoint(chain, 3), Poly::invalidIndex);
  // What was appended makes the last segment but one an inner one; only a later edit of the corner looks at it again.
  Outline grown = chain;
  grown << Corner{0, 0}.vertex();
  EXPECT_THROW(grown.replaceVertex(1, grown.vertex(1, false)), Poly::invalidRounding);
  // No corner, no circle; and back on itself.
  EXPECT_THROW(Outline(false, {{0, 0}, {5, 0, 1}, {10, 0}}), Poly::invalidRounding);
}

TEST(Fillets, SlidesAndExtensions)
{
  using P = gxSMDGDPolyPrivate;
  // A line along x, then a half circle of radius 2 to the left, round (10, 2).
  Outline poly(false, {{0, 0}, {10, 0}, {10, 4, 0, 180}});
  EXPECT_LT(P::slideLineSegment_(poly, 1, 3).p1().distance({0, -3}), 1e-12);  // to the right
  EXPECT_LT(P::secondHalfSlideLineSegment_(poly, 1, -3).p1().distance({5, 3}), 1e-12);
  EXPECT_LT(P::firstHalfSlideLineSegment_(poly, 1, -3).p2().distance({5, 3}), 1e-12);
  EXPECT_LT(P::slideArc_(poly, 2, 1).p1().distance({10, -1}), 1e-12);
  EXPECT_LT(P::firstHalfSlideArc_(poly, 2, 1).p2().distance({13, 2}), 1e-12);
  EXPECT_LT(P::secondHalfSlideArc_(poly, 2, -1).p1().distance({11, 2}), 1e-12);
  EXPECT_THROW(P::slideArc_(poly, 2, -2.0000001), Poly::invalidRounding);
  EXPECT_THROW(P::slideArc_(poly, 2, -2.0), gxShapesError::DegenerateShape);
  Outline const falling(false, {{0, 0}, {10, 0}, {10, -4, 0, -180}});
  EXPECT_LT(P::slideArc_(falling, 2, -1).p1().distance({10, 1}), 1e-12);
  EXPECT_THROW(P::slideArc_(falling, 2, 3), Poly::invalidRounding);

  EXPECT_THROW(P::forwardLineSegmentExtension_(poly, 1), gxShapesError::DegenerateShape);
  poly.forwardPercExtension_(1, 0.5);
  poly.backwardPercExtension_(0, 0.1);
  poly.backwardPercExtension_(1, 0.5);
  poly.forwardPercExtension_(2, 0.25);
  EXPECT_LT(P::forwardLineSegmentExtension_(poly, 1).p2().distance({15, 0}), 1e-12);
  EXPECT_LT(P::backwardLineSegmentExtension_(poly, 1).p2().distance({-1, 0}), 1e-12);
  EXPECT_LT(P::backwardArcSegmentExtension_(poly, 2).p2().distance({8, 2}), 1e-12);
  gx2SegmentArc const forward = P::forwardArcSegmentExtension_(poly, 2);
  EXPECT_LT(forward.p1().distance({10, 4}), 1e-12);
  EXPECT_NEAR(forward.angleSpan().value(), 45.0, 1e-12);
  for (int const s : {0, 3}) {
    EXPECT_THROW(P::lineSegment_(poly, s), Poly::invalidIndex);
    EXPECT_THROW(P::slideArc_(poly, s, 0), Poly::invalidIndex);
    EXPECT_THROW(P::backwardArcSegmentExtension_(poly, s), Poly::invalidIndex);
  }
}
