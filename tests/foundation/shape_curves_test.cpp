// Bezier curves and splines: the laws of shapes over a table, and what is special about curves. References are the
// sums, recursions and systems of equations of the textbooks, written as plainly as they stand there.

#include "foundation/bezier.h"
#include "foundation/deboorspline.h"
#include "foundation/ellipsearc2.h"
#include "foundation/hermitespline.h"
#include "foundation/interpspline.h"
#include "foundation/linesegset.h"
#include "tests/foundation/shape_laws.h"
#include "tests/foundation/shape_splines.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>

using namespace shape_test;

namespace
{

constexpr double pi = std::numbers::pi;
constexpr int steps = 1024;
using Points = gxBezierCurve::Points;
using Weights = gxBezierCurve::Weights;
constexpr Weights even = {1, 1, 1, 1};

gxVector<2> bezierPoint(Points const &p, Weights const &w, double t)
{
  double const s = 1.0 - t;
  double const b[4] = {w[0] * s * s * s, 3 * w[1] * s * s * t, 3 * w[2] * s * t * t, w[3] * t * t * t};
  double x = 0.0, y = 0.0, sum = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    x += b[i] * p[i].x();
    y += b[i] * p[i].y();
    sum += b[i];
  }
  return {x / sum, y / sum};
}

Chain bezierChain(Points const &p, Weights const &w)
{
  return alongCurve([&](double t) { return bezierPoint(p, w, t); }, steps);
}

std::vector<Row> rows()
{
  std::vector<Row> table;
  auto const add = [&](char const *name, gxShape *shape, Chain const &chain) {
    table.push_back({name, gxPtrHandle_const<gxShape>(shape), divided(chain, 0.04)});
  };
  auto const curve = [&](char const *name, Points const &p, Weights const &w) {
    add(name, new gxBezierCurve(p, w), bezierChain(p, w));
  };
  curve("plain curve", {{{0, 0}, {1, 2}, {3, 2}, {4, 0}}}, even);
  curve("with an inflection", {{{0, 0}, {3, 2}, {-1, 3}, {2, 4}}}, even);
  curve("loop", {{{0, 0}, {5, 3}, {-2, 3.5}, {2.5, 0.25}}}, even);
  curve("nearly a cusp", {{{0, 0}, {4, 3}, {0.2, 3}, {4, 0}}}, even);
  curve("first leg without length", {{{0, 0}, {0, 0}, {2, 3}, {4, 1}}}, even);
  curve("last legs without length", {{{0, 1}, {2, 3}, {4, 1}, {4, 1}}}, even);
  curve("both end legs without length", {{{0, 1}, {0, 1}, {4, 1.5}, {4, 1.5}}}, even);
  curve("bent back on itself", {{{-1, 0.5}, {3, 1}, {-2, 1.5}, {1, -1}}}, even);
  double const quarter = std::numbers::sqrt2;
  curve("quarter of a circle", {{{2, 0}, {2, 2 * (quarter - 1) * 4 / 3}, {2 * (quarter - 1) * 4 / 3, 2}, {0, 2}}},
        even);
  curve("rational", {{{0, 0}, {1, 2}, {3, 2}, {4, 0}}}, {1, 3, 0.5, 2});
  curve("weights of one side", {{{0, 0}, {3, 2}, {-1, 3}, {2, 4}}}, {5, 1, 0.3, 0.1});
  curve("light middle", {{{0, 0}, {1, 4}, {3, 4}, {4, 0}}}, {2, 0.2, 0.3, 2});

  std::vector<gxLineSeg> const path = {{{0, 0}, {3, 0}}, {{3, 0}, {3, 2}}, {{3, 2}, {1, -2}}};
  add("connected segments", new gxLineSegSet(path, true), {{0, 0}, {3, 0}, {3, 2}, {1, -2}});

  std::vector<gxVector<2>> const bow = {{-2, 0}, {-1, 2}, {0.5, 1.5}, {1, -1}, {3, 0}, {3.5, 2}};
  std::vector<gxVector<2>> const ring = {{3, 0}, {1.5, 2}, {-1, 2.5}, {-3, 0}, {-0.5, -2}};
  struct Kind {
    char const *name;
    bool isClosed;
    gxCubicSpline::IntervalMode mode;
  };
  for (Kind const &kind : {Kind{"open uniform", false, gxCubicSpline::uniform},
                           Kind{"open by chord length", false, gxCubicSpline::chordLength},
                           Kind{"closed centripetal", true, gxCubicSpline::centripetal}}) {
    std::vector<gxVector<2>> const &points = kind.isClosed ? ring : bow;
    std::vector<double> const intervals = intervalsOf(points, kind.isClosed, kind.mode);
    auto *const deBoor = new gxDeBoorSpline(kind.isClosed, kind.mode);
    deBoor->points(points);
    add((std::string("de Boor ") + kind.name).c_str(), deBoor, bsplineChain(points, kind.isClosed, intervals));
    auto *const interp = new gxInterpSpline(kind.isClosed, kind.mode, gxInterpSpline::natural);
    interp->points(points);
    add((std::string("interpolating ") + kind.name).c_str(), interp, naturalChain(points, kind.isClosed, intervals));
    std::vector<gxVector<2>> tangents;
    for (std::size_t i = 0; i < points.size(); ++i) {
      gxVector<2> const along = points[(i + 1) % points.size()] - points[i];
      tangents.push_back(along * 0.8 + gxVector<2>(-along.y(), along.x()) * 0.6);
    }
    auto *const hermite = new gxHermiteSpline(kind.isClosed, kind.mode);
    hermite->set(points, tangents);
    add((std::string("Hermite ") + kind.name).c_str(), hermite,
        hermiteChain(points, tangents, kind.isClosed, intervals));
  }
  return table;
}

INSTANTIATE_TEST_SUITE_P(Table, ShapeLaws, testing::ValuesIn(rows()), testName);

// A rational curve can be a circle exactly, and then all its measures are known to the last digits.
gxBezierCurve circleQuarter(double radius)
{
  // a quarter of degree two with weights 1, 1/sqrt 2, 1, raised to degree three
  double const w = 1.0 / std::numbers::sqrt2, middle = (1.0 + 2.0 * w) / 3.0;
  auto const between = [&](gxVector<2> a, gxVector<2> b) { return (a + b * (2.0 * w)) * (1.0 / (1.0 + 2.0 * w)); };
  gxVector<2> const a(radius, 0), corner(radius, radius), b(0, radius);
  return gxBezierCurve({a, between(a, corner), between(b, corner), b}, {1.0, middle, middle, 1.0});
}

TEST(RationalBezier, MeasuresACircle)
{
  gxBezierCurve const quarter = circleQuarter(2.0);
  EXPECT_NEAR(quarter.perimeter(), pi, 1e-13);
  EXPECT_NEAR(quarter.tangentRotation().value(), pi / 2.0, 1e-14);
  EXPECT_NEAR(quarter.windingAngle({0.5, 0.5}).value(), std::atan2(1.5, -0.5) - std::atan2(-0.5, 1.5), 1e-14);
  gxShapeInfo const info(quarter);
  for (double const share : {0.1, 0.37, 0.5, 0.93}) {
    gxVector<2> const p = quarter.perimPointAndTangent(info, share * pi).point;
    EXPECT_NEAR(p.angle().value(), share * pi / 2.0, 1e-13);
    EXPECT_NEAR(quarter.distanceToPoint(p * 1.7), 1.4, 1e-14);
    EXPECT_NEAR(quarter.distanceToPoint(p * 1e-9), 2.0 - 2e-9, 1e-14);
  }
  EXPECT_NEAR(quarter.distanceToPoint({0, 0}), 2.0, 1e-14);  // all points are equally near
  EXPECT_NEAR(quarter.distanceToPoint({-3, -4}), std::hypot(5, 4), 1e-14);
}

TEST(Bezier, BoundsAreExactAtExtrema)
{
  // y = 3 s s t y1 + 3 s t t y2 with y1 = 1, y2 = -1 has its extrema at t = (1 -+ 1/sqrt 3) / 2: +- sqrt 3 / 6
  gxBezierCurve const wave({{0, 0}, {1, 1}, {2, -1}, {3, 0}}, {1, 1, 1, 1});
  EXPECT_NEAR(wave.boundingBox().highCorner().y(), std::sqrt(3.0) / 6.0, 1e-16);
  EXPECT_NEAR(wave.boundingBox().lowCorner().y(), -std::sqrt(3.0) / 6.0, 1e-16);
  EXPECT_EQ(wave.boundingBox().lowCorner().x(), 0.0);
  EXPECT_EQ(wave.boundingBox().highCorner().x(), 3.0);
}

TEST(Bezier, NearestPointsOfRandomCurves)
{
  Random random(77);
  for (int i = 0; i < 400; ++i) {
    Points p;
    for (gxVector<2> &v : p)
      v = random.point(1.0);
    if (i % 4 == 1)
      p[1] = p[0] + random.point(1e-9);
    if (i % 4 == 2)
      p[2] = p[1];
    Weights w = even;
    if (i % 2 == 1)
      for (double &v : w)
        v = std::exp(random.between(-2.0, 2.0));
    gxBezierCurve const curve(p, w);
    gxVector<2> const q = i % 3 == 0 ? bezierPoint(p, w, random.between(0.0, 1.0)) : random.point(1.5);
    double least = std::numeric_limits<double>::infinity();
    for (int k = 0; k <= steps; ++k)
      least = std::fmin(least, q.distance(bezierPoint(p, w, static_cast<double>(k) / steps)));
    double const found = curve.distanceToPoint(q);
    EXPECT_LE(found, least + 1e-14) << curve << " from " << q;
    EXPECT_NEAR(found, least, 1e-2) << curve << " from " << q;
    if (i % 3 == 0) {
      EXPECT_LE(found, 1e-13) << curve << " from " << q;
    }
  }
}

TEST(Bezier, SamplesKeepToTheTolerance)
{
  Random random(5);
  for (int i = 0; i < 120; ++i) {
    Points p;
    for (gxVector<2> &v : p)
      v = random.point(100.0);
    Weights w = even;
    if (i % 2 == 1)
      for (double &v : w)
        v = std::exp(random.between(-3.0, 3.0));
    double const tolerance = std::exp(random.between(-5.0, 2.0));
    gxShape::gxSampleResult result;
    gxBezierCurve(p, w).sample({0.0, tolerance, 100000, false, false}, result);
    std::size_t const n = result.positions().size() - 1;
    double furthest = 0.0;
    for (std::size_t k = 0; k < n; ++k)
      for (double const u : {0.2, 0.4, 0.5, 0.6, 0.8}) {
        double const t = (static_cast<double>(k) + u) / static_cast<double>(n);
        furthest = std::fmax(furthest,
                             distanceToSegment(bezierPoint(p, w, t), result.positions()[k], result.positions()[k + 1]));
      }
    EXPECT_LE(furthest, tolerance) << gxBezierCurve(p, w);
    if (i % 2 == 0 && n > 8) {
      EXPECT_GE(furthest, tolerance * 0.01) << "far too many points: " << n;
    }
  }
}

TEST(Bezier, SamplingEndsWhateverTheTolerance)
{
  gxBezierCurve const curve({{0, 0}, {1e6, 2e6}, {3e6, -5e6}, {4, 0}}, {1, 1, 1, 1});
  gxShape::gxSampleResult result;
  result.append({7, 7});
  EXPECT_THROW(curve.sample({0.0, 1e-9, 5000, false, false}, result), gxShapesError::SampleOverflow);
  EXPECT_THROW(curve.sample({0.0, std::numeric_limits<double>::denorm_min(), 5000, false, false}, result),
               gxShapesError::SampleOverflow);
  EXPECT_THROW(curve.sample({0.0, std::nan(""), 5000, false, false}, result), gxShapesError::BadParams);
  EXPECT_EQ(result.positions().size(), 1u);
  curve.sample({0.0, std::numeric_limits<double>::infinity(), 3, false, false}, result);
  EXPECT_EQ(result.positions().size(), 3u);
  // what a caller does that doubles the tolerance until the points suffice
  for (double tolerance = 1e-9;; tolerance *= 2.0) {
    ASSERT_LE(tolerance, 1e7);
    try {
      result.reset();
      curve.sample({0.0, tolerance, 5000, false, false}, result);
      break;
    } catch (gxShapesError::SampleOverflow const &) {
    }
  }
  EXPECT_GT(result.positions().size(), 2500u);
}

TEST(Bezier, DegenerateCurves)
{
  gxBezierCurve const dot({{2, 3}, {2, 3}, {2, 3}, {2, 3}}, {1, 2, 3, 4});
  EXPECT_FALSE(dot.hasTangent());
  EXPECT_EQ(dot.perimeter(), 0.0);
  EXPECT_EQ(dot.nearestPoint({9, 9}), gxVector<2>(2, 3));
  EXPECT_EQ(dot.boundingBox(), gxRect({2, 3}, {0, 0}));
  EXPECT_THROW(dot.startAngle(), gxShapesError::NoTangent);
  gxShape::gxSampleResult result;
  dot.sample({0.1, 0.1, 10, false, false}, result);
  for (gxVector<2> const &p : result.positions())
    EXPECT_EQ(p, gxVector<2>(2, 3));

  // there and back on one line: 0 -> max -> 0 with the extreme at t = 1/2
  gxBezierCurve const forthAndBack({{0, 0}, {4, 0}, {4, 0}, {0, 0}}, {1, 1, 1, 1});
  EXPECT_NEAR(forthAndBack.perimeter(), 6.0, 1e-10);
  EXPECT_EQ(forthAndBack.boundingBox(), gxRect({0, 0}, {3, 0}));
  EXPECT_NEAR(std::abs(forthAndBack.tangentRotation().value()), pi, 1e-12);

  // a cusp at t = 1/2
  gxBezierCurve const cusp({{0, 0}, {1, 1}, {0, 1}, {1, 0}}, {1, 1, 1, 1});
  EXPECT_NEAR(cusp.perimeter(),
              length(alongCurve(
                  [](double t) {
                    return bezierPoint({{{0, 0}, {1, 1}, {0, 1}, {1, 0}}}, even, t);
                  },
                  1 << 18)),
              1e-10);

  gxBezierCurve const uneven({{0, 0}, {1, 1}, {2, 1}, {3, 0}}, {1e-300, 1e300, 1, 1e-300});
  EXPECT_TRUE(uneven.nearestPoint({1, 0.9}).isFinite());
  EXPECT_TRUE(uneven.boundingBox().size().isFinite());
  EXPECT_TRUE(std::isfinite(uneven.perimeter()));
}

TEST(Bezier, RefusesWhatIsNoCurve)
{
  double const nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  std::vector<gxVector<2>> const p = {{0, 0}, {1, 1}, {2, 1}, {3, 0}};
  std::vector<double> const w = {1, 1, 1, 1};
  EXPECT_THROW(gxBezierCurve({p[0], p[1], p[2]}, w), gxShapesError::BadCoef);
  EXPECT_THROW(gxBezierCurve(p, {1, 1, 1}), gxShapesError::BadCoef);
  for (double const bad : {0.0, -1.0, nan, inf})
    EXPECT_THROW(gxBezierCurve(p, {1, 1, bad, 1}), gxShapesError::BadWeight);
  for (double const bad : {nan, inf, -1e300})
    EXPECT_THROW(gxBezierCurve({p[0], {1, bad}, p[2], p[3]}, w), gxShapesError::BadGeom);
  gxBezierCurve curve(p, w);
  gxBezierCurve const before = curve;
  EXPECT_THROW(curve.weights({1, 0, 1, 1}), gxShapesError::BadWeight);
  EXPECT_THROW(curve.controlPoints({{{0, 0}, {nan, 0}, {0, 0}, {0, 0}}}), gxShapesError::BadGeom);
  EXPECT_EQ(curve, before);
  EXPECT_THROW(curve.map(gxXform<2>(gxMatrix<2>(inf, 0, 0, 1), {})), gxShapesError::BadGeom);

  std::string bytes = archivedBytes(curve);
  bytes.replace(bytes.size() - 8, 8, std::string(8, '\0'));
  EXPECT_THROW(loadArchived(bytes, curve), gxArchive::Errors);
  EXPECT_EQ(curve, before);
}

}  // namespace
