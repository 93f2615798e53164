// Ellipses and their arcs to the last digits, against plain references in long double.

#include "foundation/matherror.h"
#include "foundation/outline.h"
#include "tests/foundation/shape_chain.h"
#include "tests/support/shapes.h"

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

TEST(EllipseDistance, OfTwoEquallyNearPointsTakesTheFirstOfTheOutline)
{
  for (bool const rightHanded : {true, false})
    for (double const phase : {0.0, 1.0, 3.0, 5.5}) {
      gxEllipse2 const wide({3, 1}, gxRadian(), {0, 0}, rightHanded, gxRadian(phase));
      gxEllipse2 const tall({1, 3}, gxRadian(), {0, 0}, rightHanded, gxRadian(phase));
      for (double const along : {0.0, 0.5, -1.5}) {
        gxVector<2> const onWide = wide.nearestPoint({along, 0}), onTall = tall.nearestPoint({0, along});
        gxShapeInfo const wideInfo(wide), tallInfo(tall);
        EXPECT_LT(wide.nearestPerimPos(wideInfo, onWide), wide.nearestPerimPos(wideInfo, {onWide.x(), -onWide.y()}));
        EXPECT_LT(tall.nearestPerimPos(tallInfo, onTall), tall.nearestPerimPos(tallInfo, {-onTall.x(), onTall.y()}));
      }
      gxEllipse2 const round({2, 2}, gxRadian(0.3), {1, 1}, rightHanded, gxRadian(phase));
      EXPECT_EQ(round.nearestPoint({1, 1}), round.point(gxRadian()));
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

TEST(LegacyEllipse, KeepsEveryPointAtItsAngleButTheRecordIsFreeOfThePhase)
{
  Random random(24);
  for (int i = 0; i < 40; ++i) {
    gxEllipse ellipse(random.point(2), {random.between(0.1, 3), random.between(0.1, 3)},
                      gxRadian(random.between(-4, 4)));
    ellipse.isReversed(i % 2 == 0);
    for (int k = 0; k < 12; ++k) {
      gxXform<2> const xform = randomXform(random, k);
      gxEllipse const image = ellipse.map(xform);
      EXPECT_LE(std::abs(image.phase().value()), pi / 4 + 1e-12);
      for (gxRadian const t : {gxRadian(-1.0), gxRadian(0.0), gxRadian(2.5)}) {
        EXPECT_LE((xform * ellipse.point(t)).distance(image.point(t)), 1e-13);
        EXPECT_LE(image.point(t).distance(image.withoutPhase().point(t + image.phase())), 1e-14);
      }
      if (xform.matrix().det() != 0.0) {
        EXPECT_EQ(image.isReversed(), ellipse.isReversed() != (xform.matrix().det() < 0.0));
      }
      // replayed from its record, it maps to the same record
      gxEllipse const replayed = gxEllipse(image.geom()).map(gxXform<2>(gxMatrix<2>(1, 2, 0.5, 3), {1, 1}));
      EXPECT_EQ(replayed.withoutPhase(), image.map(gxXform<2>(gxMatrix<2>(1, 2, 0.5, 3), {1, 1})).withoutPhase());
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

/// Points of an arc by the formula, in no order.
std::vector<gxVector<2>> pointsOf(gxEllipse const &ellipse, double from, double span)
{
  std::vector<gxVector<2>> points;
  for (int i = 0; i <= 50; ++i)
    points.push_back(ellipse.point(gxRadian(from + span * i / 50)));
  return points;
}

void expectSamePoints(gxEllipseArc const &arc, std::vector<gxVector<2>> const &points)
{
  EXPECT_LE(std::fmin(arc.startPoint().distance(points.front()), arc.startPoint().distance(points.back())), 1e-12);
  EXPECT_LE(std::fmin(arc.endPoint().distance(points.front()), arc.endPoint().distance(points.back())), 1e-12);
  for (auto const &p : points) {
    EXPECT_LE(arc.distToPoint(p), 1e-12) << arc << " from " << p;
    EXPECT_EQ(arc.encloseRect().enclose(gxRect(p, {0, 0})).size().distance(arc.encloseRect().size()) < 1e-12, true);
  }
}

TEST(LegacyArc, RunsFromStartToEndAndOnReversedEllipsesBothWays)
{
  gxEllipse ellipse({1, 2}, {3, 0.5}, gxRadian(0.7));
  EXPECT_DOUBLE_EQ(gxEllipseArc(ellipse, gxRadian(1), gxRadian(2)).span().value(), 1);
  EXPECT_DOUBLE_EQ(gxEllipseArc(ellipse, gxRadian(2), gxRadian(1)).span().value(), 2 * pi - 1);
  EXPECT_EQ(gxEllipseArc(ellipse, gxRadian(1), gxRadian(1)).span().value(), 0);
  EXPECT_EQ(gxEllipseArc(ellipse, gxRadian(9), gxRadian(1)).span().value(), 2 * pi);
  expectSamePoints(gxEllipseArc(ellipse, gxRadian(2), gxRadian(1)), pointsOf(ellipse, 2, 2 * pi - 1));
  ellipse.isReversed(true);
  expectSamePoints(gxEllipseArc(ellipse, gxRadian(1), gxRadian(2)), pointsOf(ellipse, 1, 1));
  expectSamePoints(gxEllipseArc(ellipse, gxRadian(2), gxRadian(1)), pointsOf(ellipse, 2, -1));
  EXPECT_EQ(gxEllipseArc(ellipse, gxRadian(9), gxRadian(1)).span().value(), -2 * pi);

  // the backward arc of a circle from 0.3 through -1: the ellipse reversed, the negated angles from last to first
  gxEllipse circle(gxCircle({0, 0}, 2));
  std::vector<gxVector<2>> const points = pointsOf(circle, 0.3, -1);
  circle.isReversed(true);
  expectSamePoints(gxEllipseArc(circle, gxRadian(0.7), gxRadian(-0.3)), points);
}

TEST(LegacyArc, MapsPointForPoint)
{
  Random random(25);
  for (int i = 0; i < 40; ++i) {
    gxEllipse ellipse(random.point(2), {random.between(0.1, 3), random.between(0.1, 3)},
                      gxRadian(random.between(-4, 4)));
    ellipse.isReversed(i % 3 == 0);
    gxEllipseArc const arc(ellipse, gxRadian(random.between(-7, 7)), gxRadian(random.between(-7, 7)));
    std::vector<gxVector<2>> const points = pointsOf(ellipse, arc.start().value(), arc.span().value());
    expectSamePoints(arc, points);
    EXPECT_EQ(gxEllipseArc::fromSpan(arc.ellipse(), arc.start(), arc.span()), arc);
    for (int k = 0; k < 12; ++k) {
      if (k == 4 || k == 5)
        continue;  // singular
      gxXform<2> const xform = randomXform(random, k);
      gxEllipseArc const image = arc.map(xform);
      std::vector<gxVector<2>> images = points;
      for (auto &p : images)
        p = xform * p;
      expectSamePoints(image, images);
      EXPECT_GE(image.span().value() * (image.ellipse().isReversed() ? 0 : 1), 0);
      // mapped onto its own unit circle, the arc is an ordinary one of the circle
      gxEllipseArc const round = image.map(image.ellipse().unit().xform());
      EXPECT_LE(round.ellipse().radii().distance({1, 1}), 1e-10);
      EXPECT_FALSE(round.ellipse().isReversed());
      EXPECT_NEAR(round.span().value(), std::abs(image.span().value()), 1e-9);
      EXPECT_NEAR(image.perimeter(), gxEllipseArc::fromSpan(image.ellipse(), image.end(), -image.span()).perimeter(),
                  1e-12);
    }
  }
}

TEST(EllipseAnnulus, HoldsWhatIsInsideOneEllipseAndMapsSectionsByTheirPoints)
{
  gxEllipseAnnulus const ring(gxEllipse({0, 0}, {1, 2}, gxRadian(0.4)), gxEllipse({0, 0}, {4, 3}, gxRadian()));
  EXPECT_TRUE(ring.within({3, 0}) && ring.within({4, 0}) && !ring.within({0, 0}) && !ring.within({5, 0}));
  EXPECT_TRUE(ring.isRightHanded() && !ring.reverse()->isRightHanded() && !ring.degen());
  EXPECT_NEAR(ring.perimeter(), perimeterOf(1, 2) + perimeterOf(4, 3), 1e-13);
  EXPECT_NEAR(ring.distanceToPoint({0, 0}), 1, 1e-15);
  EXPECT_TRUE(dynamic_cast<gxRegionTree &>(*ring.decompose()).within({3, 0}));
  EXPECT_FALSE(ring.decompose()->within({0, 0}));

  gxEllipseAnnulusSection const whole(ring, gxRadian(1), gxRadian(1 + 2 * pi));
  EXPECT_TRUE(whole.isWholeTurn());
  EXPECT_NEAR(whole.perimeter(), ring.perimeter(), 1e-13);

  Random random(26);
  for (auto const &angles : {gxVector<2>(0.5, 2), gxVector<2>(5, 1), gxVector<2>(-3, 2)}) {
    gxEllipseAnnulusSection const section(ring, gxRadian(angles.x()), gxRadian(angles.y()), false, true, false);
    for (int k = 0; k < 12; ++k) {
      if (k == 4 || k == 5)
        continue;  // singular
      gxXform<2> const xform = randomXform(random, k), back = xform.inverse();
      gxEllipseAnnulusSection const image = section.map(xform);
      EXPECT_NEAR(image.perimeter(), section.decompose()->mapShape(xform)->perimeter(), 1e-11);
      for (int i = 0; i < 20; ++i) {
        gxVector<2> const p = random.point(4);
        EXPECT_EQ(image.within(xform * p), section.within(p));
        EXPECT_EQ(image.map(back).within(p), section.within(p));
      }
      EXPECT_TRUE(!image.isForward() && image.flag1() && !image.flag2());
    }
  }
}

}  // namespace
