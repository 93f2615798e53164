// Ellipses and their arcs to the last digits, against plain references in long double.

#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc2.h"
#include "foundation/matherror.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"
#include "tests/foundation/shape_chain.h"

#include <gtest/gtest.h>

#include <numbers>

using shape_test::Random;

namespace
{

constexpr double pi = std::numbers::pi;
using Real = long double;

/// Least distance from p to (rx cos s, ry sin s) for s in [from, to]: every valley of a grid, searched by thirds.
Real leastDistance(Real rx, Real ry, gxVector<2> p, Real from, Real to)
{
  auto const distance = [&](Real s) {
    return std::hypot(rx * std::cos(s) - static_cast<Real>(p.x()), ry * std::sin(s) - static_cast<Real>(p.y()));
  };
  int const n = 360;
  Real best = std::fmin(distance(from), distance(to));
  for (int i = 1; i < n; ++i) {
    Real const step = (to - from) / n;
    Real low = from + step * (i - 1), high = low + 2 * step;
    if (distance(low + step) > distance(low) || distance(low + step) > distance(high))
      continue;
    for (int k = 0; k < 100; ++k) {
      Real const a = low + (high - low) / 3, b = high - (high - low) / 3;
      (distance(a) < distance(b) ? high : low) = distance(a) < distance(b) ? b : a;
    }
    best = std::fmin(best, distance((low + high) / 2));
  }
  return best;
}

/// Points that make trouble: on the axes, at the center, near the cusps of the evolute, on the outline, far off.
std::vector<gxVector<2>> troublePoints(double rx, double ry, Random &random)
{
  double const cuspX = (rx * rx - ry * ry) / rx, cuspY = (ry * ry - rx * rx) / ry;
  std::vector<gxVector<2>> points = {{0, 0},         {rx, 0},         {0, ry},           {0, -ry},
                                     {0.5 * rx, 0},  {0, 0.5 * ry},   {cuspX, 0},        {0, cuspY},
                                     {-cuspX, 1e-9}, {1e-300, 1e-12}, {1e-9, cuspY},     {1e6, 1e-6},
                                     {-1e8, 2e8},    {rx, ry},        {-rx, 1e-15 * ry}, {cuspX * (1 + 1e-14), 1e-14}};
  for (int i = 0; i < 12; ++i) {
    double const s = random.between(0.0, 2.0 * pi);
    points.push_back({rx * std::cos(s), ry * std::sin(s)});
    points.push_back({cuspX * std::pow(std::cos(s), 3), cuspY * std::pow(std::sin(s), 3)});  // on the evolute
    points.push_back(random.point(2.0 * rx));
  }
  return points;
}

double const shapesOfEllipses[][2] = {{1, 1}, {2, 1.999999}, {3, 1}, {1, 4}, {1, 0.01}, {1e-6, 1}, {1e5, 3e4}};

TEST(EllipseDistance, IsThatOfThePlainSearchForPointsThatMakeTrouble)
{
  Random random(20);
  for (auto const &radii : shapesOfEllipses) {
    gxEllipse2 const ellipse({radii[0], radii[1]}, gxRadian(), {0, 0});
    for (gxVector<2> const &p : troublePoints(radii[0], radii[1], random)) {
      Real const expected = leastDistance(radii[0], radii[1], p, -0.1L, 2 * std::numbers::pi_v<Real>);
      double const scale = std::fmax(p.len(), std::fmax(radii[0], radii[1]));
      EXPECT_NEAR(ellipse.distanceToPoint(p), static_cast<double>(expected), 4e-15 * scale)
          << radii[0] << " x " << radii[1] << " from " << p;
    }
  }
}

TEST(EllipseDistance, OfAnArcFindsTheSecondValleyWhereTheFirstIsOffTheArc)
{
  Random random(21);
  for (auto const &radii : shapesOfEllipses) {
    for (gxVector<2> const &p : troublePoints(radii[0], radii[1], random)) {
      double const start = random.between(-7.0, 7.0), span = random.between(0.01, 6.2);
      gxEllipseArc2 const arc(gxEllipse2({radii[0], radii[1]}, gxRadian(), {0, 0}), gxRadian(start), gxRadian(span));
      Real const expected = leastDistance(radii[0], radii[1], p, start, static_cast<Real>(start) + span);
      double const scale = std::fmax(p.len(), std::fmax(radii[0], radii[1]));
      EXPECT_NEAR(arc.distanceToPoint(p), static_cast<double>(expected), 1e-14 * scale) << arc << " from " << p;
    }
  }
}

/// Simpson's rule in long double.
Real arcLength(Real rx, Real ry, Real from, Real to)
{
  auto const speed = [&](Real s) { return std::hypot(rx * std::sin(s), ry * std::cos(s)); };
  int const n = 12000;
  Real const h = (to - from) / n;
  Real sum = speed(from) + speed(to);
  for (int i = 1; i < n; ++i)
    sum += speed(from + h * i) * (i % 2 ? 4 : 2);
  return std::abs(sum * h / 3);
}

double perimeterOf(double rx, double ry)
{
  return gxEllipse2({rx, ry}, gxRadian(0.3), {1, 2}).perimeter();
}

TEST(EllipseLength, IsExactForWholeEllipsesOfEveryFlatness)
{
  EXPECT_DOUBLE_EQ(perimeterOf(2, 2), 4 * pi);
  EXPECT_EQ(perimeterOf(2, 0), 8);
  EXPECT_EQ(perimeterOf(0, 0), 0);
  for (double const ry : {0.999, 0.7, 0.3, 0.05}) {
    double const expected = static_cast<double>(arcLength(1, ry, 0, 2 * std::numbers::pi_v<Real>));
    EXPECT_NEAR(perimeterOf(1, ry), expected, 1e-14 * expected) << ry;
    EXPECT_NEAR(perimeterOf(1e7 * ry, 1e7), 1e7 * expected, 1e-7 * expected) << ry;
  }
  for (double const ry : {1e-4, 1e-7, 1e-12, 1e-200}) {  // the first terms of the series for flat ellipses
    double const expected = 4.0 + 2.0 * ry * ry * (std::log(4.0 / ry) - 0.5);
    EXPECT_NEAR(perimeterOf(1, ry), expected, 4e-12) << ry;
  }
}

TEST(EllipseLength, IsExactForArcsAndAddsUp)
{
  Random random(22);
  for (auto const &radii : {gxVector<2>(1, 1), gxVector<2>(3, 1), gxVector<2>(0.2, 1), gxVector<2>(5, 4.99)}) {
    gxEllipse2 const ellipse(radii, gxRadian(1), {0, 0});
    for (int i = 0; i < 12; ++i) {
      double const start = random.between(-7.0, 7.0);
      double const span = i % 3 ? random.between(-6.2, 6.2) : random.between(-0.01, 0.01);
      double const found = gxEllipseArc2(ellipse, gxRadian(start), gxRadian(span)).perimeter();
      double const expected =
          static_cast<double>(arcLength(radii.x(), radii.y(), start, static_cast<Real>(start) + span));
      // short arcs are exact in proportion to their own length
      double const digits = std::abs(span) < 0.02 ? 1e-13 * expected : 1e-14 * std::fmax(radii.x(), radii.y());
      EXPECT_NEAR(found, expected, digits) << radii << start << ' ' << span;
      double const cut = span * random.between(0.0, 1.0);
      double const parts = gxEllipseArc2(ellipse, gxRadian(start), gxRadian(cut)).perimeter() +
                           gxEllipseArc2(ellipse, gxRadian(start + cut), gxRadian(span - cut)).perimeter();
      EXPECT_NEAR(parts, found, 1e-14 * std::fmax(radii.x(), radii.y()));
    }
  }
}

gxXform<2> randomXform(Random &random, int i)
{
  gxMatrix<2> const special[] = {{1, 0, 0, 1}, {0, 1, 1, 0}, {-2, 0, 0, -2},       {3, 0, 0, 1},
                                 {0, 0, 0, 0}, {1, 2, 2, 4}, {0.6, 0.8, 0.8, -0.6}};
  if (i < 7)
    return {special[i], random.point(3)};
  return {gxMatrix<2>(random.between(-2, 2), random.between(-2, 2), random.between(-2, 2), random.between(-2, 2)),
          random.point(3)};
}

TEST(EllipseMap, KeepsEveryPointAtItsPhi)
{
  Random random(23);
  for (int i = 0; i < 60; ++i) {
    gxVector<2> const radii(random.between(0.0, 3.0), i % 5 ? random.between(0.0, 3.0) : 0.0);
    gxEllipse2 const ellipse(i % 7 ? radii : gxVector<2>(2, 2), gxRadian(random.between(-4, 4)), random.point(2),
                             i % 2 == 0, gxRadian(random.between(-4, 4)));
    for (int k = 0; k < 14; ++k) {
      gxXform<2> const xform = randomXform(random, k);
      gxEllipse2 const image = ellipse.map(xform);
      if (xform.matrix().det() != 0.0 && !ellipse.isDegenerate()) {
        EXPECT_EQ(image.isRightHanded(), ellipse.isRightHanded() == (xform.matrix().det() > 0.0));
      }
      for (double const phi : {-3.0, 0.0, 0.7, 2.0, 9.0})
        EXPECT_LE(image.point(gxRadian(phi)).distance(xform * ellipse.point(gxRadian(phi))), 1e-13)
            << ellipse << " by " << xform << " at " << phi;
      gxEllipse2 const rebuilt(image.ellFromUnitCirc());
      EXPECT_LE(rebuilt.point(gxRadian(1)).distance(image.point(gxRadian(1))), 1e-13);
    }
  }
}

TEST(EllipseMap, LeavesTheNumbersAloneThatAMapDoesNotTouch)
{
  gxEllipse2 const ellipse({3, 1}, gxRadian(0.5), {1, 2}, false, gxRadian(0.8));
  EXPECT_EQ(ellipse.map(gxXform<2>::I), ellipse);
  gxEllipse2 const larger = ellipse.map(gxXform<2>(gxMatrix<2>(4, 0, 0, 4), {1, 1}));
  EXPECT_EQ(larger, gxEllipse2({12, 4}, gxRadian(0.5), {5, 9}, false, gxRadian(0.8)));
  gxEllipse2 const upright({3, 1}, gxRadian(), {0, 0});
  EXPECT_EQ(upright.map(gxXform<2>(gxMatrix<2>(0.5, 0, 0, 7), {0, 0})), gxEllipse2({1.5, 7}, gxRadian(), {0, 0}));

  // a circle maps to an ellipse by every map, the identity included
  gxCircle const circle({1, 2}, 3);
  EXPECT_EQ(circle.map(gxXform<2>::I), gxEllipse({1, 2}, {3, 3}, gxRadian()));
  gxPtrHandle<gxShape> const image = circle.mapShape(gxXform<2>::I);
  EXPECT_TRUE(*image == gxEllipse2({3, 3}, gxRadian(), {1, 2}));
}

TEST(LegacyEllipse, TellsHowAMapMovesItsAngles)
{
  Random random(24);
  for (int i = 0; i < 40; ++i) {
    gxEllipse ellipse(random.point(2), {random.between(0.1, 3), random.between(0.1, 3)},
                      gxRadian(random.between(-4, 4)));
    ellipse.isReversed(i % 2 == 0);
    for (int k = 0; k < 12; ++k) {
      gxXform<2> const xform = randomXform(random, k);
      gxRadian phase;
      gxEllipse const image = ellipse.map(xform, phase);
      EXPECT_EQ(image, ellipse.map(xform));
      EXPECT_LE(std::abs(phase.value()), pi / 4 + 1e-12);
      for (double const t : {-1.0, 0.0, 2.5})
        EXPECT_LE((xform * ellipse.point(gxRadian(t))).distance(image.point(gxRadian(t) + phase)), 1e-13);
      if (xform.matrix().det() != 0.0) {
        EXPECT_EQ(image.isReversed(), ellipse.isReversed() != (xform.matrix().det() < 0.0));
      }
    }
  }
}

TEST(LegacyEllipse, ItsUnitTransformTakesItToTheUnitCircle)
{
  gxEllipse ellipse({1, 2}, {3, 0.5}, gxRadian(0.7));
  for (bool const reversed : {false, true}) {
    ellipse.isReversed(reversed);
    gxEllipse::gxEllipseUnit const unit = ellipse.unit();
    EXPECT_EQ(unit.matrix().det() < 0.0, reversed);
    EXPECT_EQ(unit.center(), ellipse.center());
    for (double const t : {0.0, 1.0, -2.0}) {
      gxVector<2> const onCircle(1.0, gxRadian(t));
      EXPECT_LE((unit.xform() * ellipse.point(gxRadian(t))).distance(onCircle), 1e-14);
      EXPECT_LE((unit.center() + unit.matrix().inverse() * onCircle).distance(ellipse.point(gxRadian(t))), 1e-14);
    }
    gxEllipse const rebuilt(unit);
    EXPECT_EQ(rebuilt.isReversed(), reversed);
    EXPECT_LE(rebuilt.radii().distance({3, 0.5}), 1e-14);
  }
  EXPECT_THROW(gxEllipse({0, 0}, {1, 0}, gxRadian()).unit(), gxMathError::Singular);
}

TEST(LegacyEllipse, ItsRecordIsFlatBytesAndFindsItsOwnDegeneracy)
{
  gxEllipse::gxEllipseGeom geom;
  geom.radii = {2, 0};
  geom.degenerate = 0;
  gxEllipse const flat(geom);
  EXPECT_TRUE(flat.degen());
  EXPECT_EQ(flat.geom().degenerate, 1);
  EXPECT_EQ(flat.boundingBox(), gxRect({-2, 0}, {4, 0}));
  EXPECT_EQ(flat.perimeter(), 8);
  EXPECT_NEAR(flat.distToPoint({1, 3}), 3, 1e-15);
  EXPECT_NEAR(flat.distToPoint({5, 4}), 5, 1e-15);
  geom.radii = {-1, 1};
  EXPECT_THROW(gxEllipse{geom}, gxShapesError::BadRadius);
  EXPECT_THROW(gxEllipse2({1, -1}, gxRadian(), {0, 0}), gxShapesError::BadRadius);
}

}  // namespace
