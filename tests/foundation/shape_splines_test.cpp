// What is special about splines: continuity, interpolation, end conditions, intervals, closing, reversing.

#include "tests/foundation/shape_splines.h"
#include "foundation/deboorspline.h"
#include "foundation/hermitespline.h"
#include "foundation/interpspline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <limits>

using namespace shape_test;

namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// First and second derivative by the parameter at the start (or end) of a curve of a spline, from its control points.
gxVector<2> first(gxCubicSpline const &s, long i, bool atEnd)
{
  gxBezierCurve::Points const p = s.bezierCurve(i).controlPoints();
  double const h = s.intervals()[static_cast<std::size_t>(i)];
  return (atEnd ? p[3] - p[2] : p[1] - p[0]) * (3.0 / h);
}

gxVector<2> second(gxCubicSpline const &s, long i, bool atEnd)
{
  gxBezierCurve::Points const p = s.bezierCurve(i).controlPoints();
  double const h = s.intervals()[static_cast<std::size_t>(i)];
  return (atEnd ? p[3] - p[2] * 2.0 + p[1] : p[2] - p[1] * 2.0 + p[0]) * (6.0 / (h * h));
}

gxVector<2> third(gxCubicSpline const &s, long i)
{
  double const h = s.intervals()[static_cast<std::size_t>(i)];
  return (second(s, i, true) - second(s, i, false)) * (1.0 / h);
}

void checkJoints(gxCubicSpline const &s, bool isSecondContinuous)
{
  long const n = s.numBezierCurves();
  for (long i = s.isClosed() ? 0 : 1; i < n; ++i) {
    long const before = (i + n - 1) % n;
    EXPECT_TRUE(s.bezierCurve(before).controlPoints()[3] == s.bezierCurve(i).controlPoints()[0]);
    EXPECT_LE(first(s, before, true).distance(first(s, i, false)), 1e-10) << i;
    if (isSecondContinuous) {
      EXPECT_LE(second(s, before, true).distance(second(s, i, false)), 1e-8) << i;
    }
  }
}

std::vector<gxVector<2>> randomPoints(Random &random, int n)
{
  std::vector<gxVector<2>> points;
  for (int i = 0; i < n; ++i)
    points.push_back(random.point(5.0));
  return points;
}

std::vector<double> randomIntervals(Random &random, std::size_t n)
{
  std::vector<double> h;
  for (std::size_t i = 0; i < n; ++i)
    h.push_back(random.between(0.3, 2.5));
  return h;
}

TEST(Splines, AreAsSmoothAsTheirKindForAnyPointsAndIntervals)
{
  Random random(31);
  for (int n = 1; n <= 9; ++n)
    for (bool const isClosed : {false, true})
      for (int mode = 0; mode <= 3; ++mode) {
        SCOPED_TRACE(testing::Message() << n << " points, closed " << isClosed << ", mode " << mode);
        auto const intervalMode = static_cast<gxCubicSpline::IntervalMode>(mode);
        std::vector<gxVector<2>> const points = randomPoints(random, n);
        auto const prepare = [&](gxCubicSpline &spline) {
          if (intervalMode == gxCubicSpline::given)
            spline.intervals(randomIntervals(random, spline.intervals().size()));
        };
        gxDeBoorSpline deBoor(isClosed, intervalMode);
        deBoor.points(points);
        prepare(deBoor);
        checkJoints(deBoor, true);
        gxHermiteSpline hermite(isClosed, intervalMode);
        hermite.set(points, randomPoints(random, n));
        prepare(hermite);
        checkJoints(hermite, false);
        for (int ends = 0; ends <= 4; ++ends) {
          gxInterpSpline interp(isClosed, intervalMode, static_cast<gxInterpSpline::EndConditions>(ends));
          interp.points(points);
          prepare(interp);
          checkJoints(interp, true);
          for (long i = 0; i < interp.numBezierCurves(); ++i) {
            EXPECT_TRUE(interp.bezierCurve(i).controlPoints()[0] == points[static_cast<std::size_t>(i)]);
          }
        }
      }
}

TEST(InterpSpline, EndConditions)
{
  Random random(8);
  for (int n = 2; n <= 7; ++n) {
    SCOPED_TRACE(n);
    gxInterpSpline s(false, gxCubicSpline::uniform);
    s.points(randomPoints(random, n));
    s.intervals(randomIntervals(random, static_cast<std::size_t>(n) - 1));
    long const last = s.numBezierCurves() - 1;

    s.endConditions(gxInterpSpline::natural);
    EXPECT_LE(second(s, 0, false).len() + second(s, last, true).len(), 1e-9);
    s.endConditions(gxInterpSpline::quadratic);
    EXPECT_LE(third(s, 0).len() + third(s, last).len(), 1e-8);
    s.endTangents({1, 2}, {-3, 0.5});
    EXPECT_EQ(s.endConditions(), gxInterpSpline::clamped);
    EXPECT_LE(first(s, 0, false).distance({1, 2}) + first(s, last, true).distance({-3, 0.5}), 1e-10);
    s.endConditions(gxInterpSpline::notAKnot);
    if (n > 2) {
      EXPECT_LE(third(s, 0).distance(third(s, 1)) + third(s, last).distance(third(s, last - 1)), 1e-7);
    }
    s.endConditions(gxInterpSpline::bessel);
    if (n > 2) {  // the parabola a + b u + c u^2 through the first three points, by divided differences
      double const h0 = s.intervals()[0], h1 = s.intervals()[1];
      gxVector<2> const d0 = (s.points()[1] - s.points()[0]) * (1 / h0);
      gxVector<2> const d1 = (s.points()[2] - s.points()[1]) * (1 / h1);
      EXPECT_LE(first(s, 0, false).distance(d0 - (d1 - d0) * (h0 / (h0 + h1))), 1e-10);
    }
  }
}

TEST(InterpSpline, ReproducesPolynomials)
{
  auto const cubic = [](double u) {
    return gxVector<2>(1 + u - 2 * u * u + 0.5 * u * u * u, 3 - u * u + 0.25 * u * u * u);
  };
  auto const parabola = [](double u) { return gxVector<2>(1 + u - 2 * u * u, 3 + 0.5 * u * u); };
  std::vector<double> const h = {0.5, 1.25, 0.75, 1, 0.3};
  auto const through = [&](auto const &curve, gxInterpSpline::EndConditions ends) {
    gxInterpSpline s(false, gxCubicSpline::uniform, ends);
    s.append(curve(0.0));
    double u = 0.0;
    for (double const step : h)
      s.append(curve(u += step));
    s.intervals(h);
    return s;
  };
  auto const difference = [&](gxInterpSpline const &s, auto const &curve) {
    double furthest = 0.0, u = 0.0;
    for (std::size_t i = 0; i < h.size(); u += h[i++])
      for (double const share : {0.2, 0.5, 0.9})
        furthest = std::fmax(furthest, s.point(static_cast<double>(i) + share).distance(curve(u + share * h[i])));
    return furthest;
  };
  EXPECT_LE(difference(through(cubic, gxInterpSpline::notAKnot), cubic), 1e-12);
  EXPECT_GT(difference(through(cubic, gxInterpSpline::natural), cubic), 1e-3);
  for (auto const ends : {gxInterpSpline::notAKnot, gxInterpSpline::bessel, gxInterpSpline::quadratic})
    EXPECT_LE(difference(through(parabola, ends), parabola), 1e-12);
  gxInterpSpline clamped = through(cubic, gxInterpSpline::natural);
  double const end = 3.8;
  clamped.endTangents({1, 0}, {1 - 4 * end + 1.5 * end * end, -2 * end + 0.75 * end * end});
  EXPECT_LE(difference(clamped, cubic), 1e-12);
}

TEST(DeBoorSpline, FewPointsAndHulls)
{
  gxDeBoorSpline s;
  EXPECT_TRUE(s.isEmpty());
  EXPECT_FALSE(s.isOpenContour());
  EXPECT_EQ(s.numBezierCurves(), 0);
  EXPECT_THROW(s.boundingBox(), gxShapesError::EmptyShape);
  EXPECT_THROW(s.bezierCurve(0), gxShapesError::BadCoef);
  s.append({1, 1});
  EXPECT_EQ(s.boundingBox(), gxRect({1, 1}, {0, 0}));
  s.append({4, 1});
  EXPECT_NEAR(s.perimeter(), 3.0, 1e-13);
  s.append({4, 4});  // a parabola: its middle is a quarter, a half and a quarter of the points
  EXPECT_EQ(s.numBezierCurves(), 1);
  EXPECT_LE(s.point(0.5).distance({3.25, 1.75}), 1e-14);
  for (gxVector<2> const &p : {gxVector<2>(0, 6), gxVector<2>(0, 6), gxVector<2>(0, 6), gxVector<2>(5, 5)})
    s.append(p);
  EXPECT_EQ(s.numBezierCurves(), 4);
  EXPECT_EQ(s.startPoint(), gxVector<2>(1, 1));
  EXPECT_EQ(s.endPoint(), gxVector<2>(5, 5));
  EXPECT_LE(s.distanceToPoint({0, 6}), 1e-14);  // a control point that stands three times is on the curve
  s.isClosed(true);
  EXPECT_TRUE(s.isRegion());
  EXPECT_EQ(s.numBezierCurves(), 7);

  gxDeBoorSpline same(true, gxCubicSpline::chordLength);
  same.points({{2, 2}, {2, 2}, {2, 2}});
  EXPECT_EQ(same.boundingBox(), gxRect({2, 2}, {0, 0}));
  EXPECT_EQ(same.intervals(), (std::vector<double>{1, 1, 1}));
}

TEST(Splines, CoincidingPointsLeaveNothingUndefined)
{
  for (auto const mode : {gxCubicSpline::chordLength, gxCubicSpline::centripetal})
    for (bool const isClosed : {false, true}) {
      gxInterpSpline s(isClosed, mode);
      s.points({{0, 0}, {3, 0}, {3, 0}, {3, 4}, {0, 4}, {0, 4}});
      std::vector<double> const h = s.intervals();
      EXPECT_EQ(h[1], (h[0] + h[2] + h[3] + (isClosed ? h[5] : 0.0)) / (isClosed ? 4.0 : 3.0));
      for (long i = 0; i < s.numBezierCurves(); ++i)
        EXPECT_TRUE(s.bezierCurve(i).point(0.5).isFinite());
      checkJoints(s, true);
    }
}

TEST(Splines, ImagesKeepTheirIntervals)
{
  gxXform<2> const squeeze(gxMatrix<2>(0.1, 0.4, 0, 3), {5, -2});
  Random random(3);
  for (bool const isClosed : {false, true}) {
    gxInterpSpline s(isClosed, gxCubicSpline::centripetal);
    s.points(randomPoints(random, 6));
    gxInterpSpline const image = s.map(squeeze);
    EXPECT_EQ(image.intervals(), s.intervals());
    for (double t = 0.1; t < 5.0; t += 0.37)
      EXPECT_LE(image.point(t).distance(squeeze * s.point(t)), 1e-12);
    // moving alone changes no distance, and the mode stays
    EXPECT_EQ(s.map(gxXform<2>(gxMatrix<2>(), {1, 2})).intervalMode(), gxCubicSpline::centripetal);
  }
}

TEST(Splines, ReversedTwiceIsTheSame)
{
  Random random(4);
  for (bool const isClosed : {false, true}) {
    gxHermiteSpline hermite(isClosed, gxCubicSpline::chordLength);
    hermite.set(randomPoints(random, 5), randomPoints(random, 5));
    EXPECT_TRUE(*hermite.reverse()->reverse() == hermite);
    gxInterpSpline interp(isClosed);
    interp.points(randomPoints(random, 5));
    interp.intervals({1, 2, 3});
    interp.endTangents({1, 0}, {2, 3});
    EXPECT_TRUE(*interp.reverse()->reverse() == interp);
    EXPECT_FALSE(*interp.reverse() == interp);
    gxDeBoorSpline deBoor(isClosed);
    deBoor.points(randomPoints(random, 7));
    deBoor.intervals({3, 1});
    EXPECT_TRUE(*deBoor.reverse()->reverse() == deBoor);
  }
}

TEST(Splines, RefuseBadInputAndStayAsTheyWere)
{
  gxInterpSpline s(false, gxCubicSpline::chordLength);
  s.points({{0, 0}, {3, 1}, {3, 4}});
  gxInterpSpline const before = s;
  EXPECT_THROW(s.points({{0, 0}, {nan, 1}}), gxShapesError::BadGeom);
  EXPECT_THROW(s.append({1e200, 0}), gxShapesError::BadGeom);
  EXPECT_THROW(s.intervals({1, 0}), gxShapesError::BadKnots);
  EXPECT_THROW(s.intervals({1, nan}), gxShapesError::BadKnots);
  EXPECT_THROW(s.intervals({-1}), gxShapesError::BadKnots);
  EXPECT_THROW(s.endTangents({0, nan}, {}), gxShapesError::BadGeom);
  EXPECT_EQ(s, before);
  EXPECT_THROW(s.point(2.001), gxShapesError::BadCoef);
  EXPECT_THROW(s.point(nan), gxShapesError::BadCoef);
  EXPECT_EQ(s.point(2.0), gxVector<2>(3, 4));
  gxHermiteSpline hermite;
  EXPECT_THROW(hermite.set({{0, 0}}, {}), gxShapesError::BadCoef);
}

TEST(Splines, DamagedArchives)
{
  gxHermiteSpline hermite(true);
  hermite.set({{0, 0}, {3, 1}, {3, 4}}, {{1, 0}, {0, 1}, {-1, 0}});
  hermite.intervals({1, 2, 3});
  EXPECT_EQ(throughArchive(hermite), hermite);
  forDamaged(archivedBytes(hermite), [](std::string const &bad) {
    gxHermiteSpline loaded;
    try {
      loadArchived(bad, loaded);
    } catch (gxArchive::Errors const &) {
    }
    // whatever became of it may be used
    try {
      loaded.map(gxXform<2>(gxMatrix<2>(0, 1, 1, 0), {}));
    } catch (gxShapesError::BadGeom const &) {
    }
    for (long k = 0; k < loaded.numBezierCurves(); ++k)
      EXPECT_TRUE(loaded.bezierCurve(k).point(0.5).isFinite());
  });
}

}  // namespace
