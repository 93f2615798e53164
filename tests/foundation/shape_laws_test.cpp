// Laws that every shape keeps, looped over a table of shapes and over what becomes of them: copies, images under
// maps, decompositions. The reference is a dense chain written from the plain formula of the curve.

#include "foundation/circle.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/outline.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"
#include "tests/foundation/shape_chain.h"

#include <gtest/gtest.h>

#include <memory>
#include <numbers>
#include <string>

using namespace shape_test;

namespace
{

constexpr double pi = std::numbers::pi;
constexpr int steps = 1024;

struct Row {
  std::string name;
  gxPtrHandle_const<gxShape> shape;
  Chain chain;  ///< closed contours end where they begin
};

void PrintTo(Row const &row, std::ostream *os)
{
  *os << row.name;
}

Chain roundedSquare(gxXform<2> const &x, gxVector<2> round)
{
  Chain chain;
  gxVector<2> const sharp = gxVector<2>(1.0, 1.0) - round;
  for (int i = 0; i <= steps; ++i) {
    double const t = -pi / 2.0 + 2.0 * pi * i / steps;
    int const quarter = 4 * i / steps % 4;
    // on the borders between quarters both corners have their say
    for (int q : {i % (steps / 4) == 0 ? (quarter + 3) % 4 : quarter, quarter}) {
      gxVector<2> const sign(q == 0 || q == 1 ? 1.0 : -1.0, q == 1 || q == 2 ? 1.0 : -1.0);
      chain.push_back(x * gxVector<2>(sign.x() * sharp.x() + round.x() * std::cos(t),
                                      sign.y() * sharp.y() + round.y() * std::sin(t)));
    }
  }
  return {chain.begin(), chain.end() - 1};
}

Chain ellipse(gxVector<2> center, gxVector<2> radii, double angle, double from, double span)
{
  return alongCurve(
      [=](double u) {
        double const s = from + span * u;
        gxVector<2> const p(radii.x() * std::cos(s), radii.y() * std::sin(s));
        return center + gxVector<2>(p.x() * std::cos(angle) - p.y() * std::sin(angle),
                                    p.x() * std::sin(angle) + p.y() * std::cos(angle));
      },
      steps);
}

Chain closed(Chain chain)
{
  chain.push_back(chain.front());
  return chain;
}

std::vector<Row> rows()
{
  std::vector<Row> table;
  auto const add = [&](char const *name, gxShape *shape, Chain const &chain) {
    table.push_back({name, gxPtrHandle_const<gxShape>(shape), divided(chain, 0.04)});
  };
  add("segment", new gxLineSeg({1, 2}, {-3, 5}), {{1, 2}, {-3, 5}});
  add("open polyline", new gxPolyline({{0, 0}, {3, 0}, {3, 2}, {1, -2}}), {{0, 0}, {3, 0}, {3, 2}, {1, -2}});
  add("polyline with repeated vertices", new gxPolyline({{0, 0}, {0, 0}, {3, 0}, {3, 0}, {3, 2}}),
      {{0, 0}, {3, 0}, {3, 2}});
  Chain const concave = {{0, 0}, {4, 0}, {4, 3}, {2, 1}, {0, 3}};
  add("closed polyline", new gxPolyline(concave, true), closed(concave));
  Chain const clockwise = {{0, 0}, {0, 2}, {3, 2}};
  add("left-handed triangle", new gxPolyline(clockwise, true), closed(clockwise));
  add("rectangle", new gxRect({1, -1}, {3, 2}), {{1, -1}, {4, -1}, {4, 1}, {1, 1}, {1, -1}});
  add("rectangle of negative width", new gxRect({1, -1}, {-3, 2}), {{1, -1}, {-2, -1}, {-2, 1}, {1, 1}, {1, -1}});
  gxMatrix<2> const sheared(2, 0.7, 0.3, 1.1), mirrored(0.4, 1.3, 2.1, -0.2);
  add("sharp parallelogram", new gxGenRect({1, 2}, sheared, {0, 1}),
      closed(mapped({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, gxXform<2>(sheared, {1, 2}))));
  add("rounded parallelogram", new gxGenRect({1, 2}, sheared, {0.4, 0.7}),
      roundedSquare(gxXform<2>(sheared, {1, 2}), {0.4, 0.7}));
  add("rounded on all of one axis", new gxGenRect({0, 0}, gxVector<2>(4, 2), gxRadian(0.4), {1, 0.25}),
      roundedSquare(gxXform<2>(gxMatrix<2>(gxRadian(0.4), gxRadian(0.4), 2, 1), {0, 0}), {1, 0.25}));
  add("mirrored ellipse as rectangle", new gxGenRect({-1, 0}, mirrored, {1, 1}),
      roundedSquare(gxXform<2>(mirrored, {-1, 0}), {1, 1}));
  add("circle", new gxCircle({2, -1}, 1.5), ellipse({2, -1}, {1.5, 1.5}, 0, 0, 2 * pi));
  add("ellipse", new gxEllipse2({3, 1}, gxRadian(0.5), {1, 1}, true, gxRadian(0.8)),
      ellipse({1, 1}, {3, 1}, 0.5, 0.8, 2 * pi));
  add("tall left-handed ellipse", new gxEllipse2({0.5, 2}, gxRadian(-1), {0, 1}, false, gxRadian(0.3)),
      ellipse({0, 1}, {0.5, 2}, -1, -0.3, -2 * pi));
  add("arc", new gxEllipseArc2(gxEllipse2({3, 1}, gxRadian(0.5), {1, 1}), gxRadian(0.4), gxRadian(2.5)),
      ellipse({1, 1}, {3, 1}, 0.5, 0.4, 2.5));
  add("long backward arc", new gxEllipseArc2(gxEllipse2({1, 2}, gxRadian(), {0, 0}), gxRadian(-3), gxRadian(-5)),
      ellipse({0, 0}, {1, 2}, 0, -3, -5));
  add("forward arc on a left-handed ellipse",
      new gxEllipseArc2(gxEllipse2({2, 1}, gxRadian(1), {1, 0}, false, gxRadian(0.2)), gxRadian(1), gxRadian(1.5)),
      ellipse({1, 0}, {2, 1}, 1, -1.2, -1.5));
  add("whole turn as an arc", new gxEllipseArc2(gxEllipse2({2, 1}, gxRadian(1), {1, 0}), gxRadian(2), gxRadian(7)),
      ellipse({1, 0}, {2, 1}, 1, 2, 2 * pi));
  add("small arc of a big circle",
      new gxEllipseArc2(gxEllipse2({50, 50}, gxRadian(), {0, -50}), gxRadian(pi / 2 - 0.02), gxRadian(0.04)),
      ellipse({0, -50}, {50, 50}, 0, pi / 2 - 0.02, 0.04));

  auto const annular = [](double from, double span) {  // inner arc forth, outer arc back
    Chain outer = ellipse({0, 0}, {3, 2}, 0.3, from, span), inner = ellipse({0.2, 0}, {1, 1.5}, 0.3, from, span);
    outer.insert(outer.end(), inner.rbegin(), inner.rend());
    return closed(outer);
  };
  gxEllipseAnnulus const ring(gxEllipse({0.2, 0}, {1, 1.5}, gxRadian(0.3)), gxEllipse({0, 0}, {3, 2}, gxRadian(0.3)));
  add("section of a ring", new gxEllipseAnnulusSection(ring, gxRadian(0.5), gxRadian(2.2)), annular(0.5, 1.7));
  add("section of a ring beyond the turn", new gxEllipseAnnulusSection(ring, gxRadian(6), gxRadian(1)),
      annular(6, 1 - 6 + 2 * pi));

  auto *const chained = new gxContourTree;
  chained->addChild(gxLineSeg({-3, 0}, {-1, 0}));
  chained->addChild(gxEllipseArc2(gxEllipse2({1, 1}, gxRadian(), {0, 0}), gxRadian(pi), gxRadian(-pi)));
  chained->addChild(gxLineSeg({1.5, 0.5}, {3, 0}));
  Chain bump = ellipse({0, 0}, {1, 1}, 0, pi, -pi);
  bump.insert(bump.begin(), {{-3, 0}, {-1, 0}});
  bump.insert(bump.end(), {{1.5, 0.5}, {3, 0}});
  add("contour tree with a gap", chained, bump);
  auto *const slice = new gxContourTree(true);
  slice->addChild(gxEllipseArc2(gxEllipse2({2, 2}, gxRadian(), {0, 0}), gxRadian(0), gxRadian(1)));
  slice->addChild(gxLineSeg({2 * std::cos(1.0), 2 * std::sin(1.0)}, {0, 0}));
  Chain sector = ellipse({0, 0}, {2, 2}, 0, 0, 1);
  sector.push_back({0, 0});
  add("closed contour tree", slice, closed(sector));
  return table;
}

double reach(Chain const &chain)
{
  double r = 0.0;
  for (auto const &p : chain)
    r = std::fmax(r, p.len());
  return r;
}

/// How far a chain of equal parameter steps stays from the curve, and by how much it is shorter, for curves of this
/// size: the sagitta of a step of 2 pi / steps, with room to spare.
double slack(Chain const &chain)
{
  return 2e-5 * reach(chain);
}

constexpr double rounding = 1e-13;

void checkBox(gxShape const &shape, Chain const &chain)
{
  Box const expected = box(chain);
  gxRect const found = shape.boundingBox();
  gxVector<2> const low = found.lowCorner(), high = found.highCorner();
  double const eps = rounding * reach(chain);
  EXPECT_LE(low.x(), expected.left + eps);
  EXPECT_LE(low.y(), expected.low + eps);
  EXPECT_GE(high.x(), expected.right - eps);
  EXPECT_GE(high.y(), expected.high - eps);
  EXPECT_NEAR(low.x(), expected.left, slack(chain));
  EXPECT_NEAR(low.y(), expected.low, slack(chain));
  EXPECT_NEAR(high.x(), expected.right, slack(chain));
  EXPECT_NEAR(high.y(), expected.high, slack(chain));
}

void checkNearest(gxShape const &shape, Chain const &chain, Random &random)
{
  for (int i = 0; i < 25; ++i) {
    gxVector<2> const p = random.point(1.5 * reach(chain));
    gxVector<2> const nearest = shape.nearestPoint(p);
    double const found = shape.distanceToPoint(p);
    double leastVertex = (p - chain.front()).len();
    for (auto const &q : chain)
      leastVertex = std::fmin(leastVertex, (p - q).len());
    EXPECT_LE(found, leastVertex + rounding * reach(chain)) << p;  // no point of the curve is nearer
    EXPECT_NEAR(found, distance(chain, p), slack(chain)) << p;
    EXPECT_LE(distance(chain, nearest), slack(chain)) << p;
  }
}

void checkPerimeter(gxShape const &shape, Chain const &chain, Random &random)
{
  double const whole = shape.perimeter();
  EXPECT_GE(whole, length(chain) * (1.0 - rounding));
  EXPECT_NEAR(whole, length(chain), slack(chain));

  gxShapeInfo const info(shape);
  EXPECT_NEAR(info.perimeter(), whole, rounding * whole);
  for (int i = 0; i < 12; ++i) {
    double const pos = random.between(0.0, info.perimeter());
    gxPerimPoint const place = shape.perimPointAndTangent(info, pos);
    EXPECT_LE(place.point.distance(pointAt(chain, pos)), 2.0 * slack(chain)) << pos;
    double const nearest = shape.nearestPerimPos(info, place.point);
    EXPECT_LE(shape.perimPointAndTangent(info, nearest).point.distance(place.point), rounding * 10 * reach(chain));
    double const step = 1e-4 * whole;
    if (place.hasTangent && pos > step && pos < whole - step) {
      gxVector<2> const chord = pointAt(chain, pos + step) - pointAt(chain, pos - step);
      if (chord.len() > 1.9 * step) {  // not across a corner
        EXPECT_LE(std::abs((chord.angle() - place.tangent).signedNorm().value()), 2e-2) << pos;
      }
    }
  }
  EXPECT_THROW(shape.perimPointAndTangent(info, -1e-9), gxShapesError::BadCoef);
  EXPECT_THROW(shape.perimPointAndTangent(info, 1.01 * whole), gxShapesError::BadCoef);
}

void checkOpen(gxShape const &shape, Chain const &chain, Random &random)
{
  double const eps = rounding * reach(chain);
  EXPECT_LE(shape.startPoint().distance(chain.front()), eps);
  EXPECT_LE(shape.endPoint().distance(chain.back()), eps);
  gxRadian const first = (chain[1] - chain[0]).angle();
  gxRadian const last = (chain.back() - chain[chain.size() - 2]).angle();
  EXPECT_LE(std::abs((shape.startAngle() - first).signedNorm().value()), 1e-2);
  EXPECT_LE(std::abs((shape.endAngle() - last).signedNorm().value()), 1e-2);
  EXPECT_NEAR(shape.tangentRotation().value(), rotation(chain), 2e-2);
  for (int i = 0; i < 20; ++i) {
    gxVector<2> const p = random.point(1.2 * reach(chain));
    if (distance(chain, p) > 20.0 * slack(chain)) {
      EXPECT_NEAR(shape.windingAngle(p).value(), winding(chain, p), 1e-9) << p;
    }
  }
  EXPECT_THROW(shape.within({0, 0}), gxShapesError::NotRegion);
  EXPECT_THROW(shape.isRightHanded(), gxShapesError::NotRegion);
}

void checkRegion(gxShape const &shape, Chain const &chain, Random &random)
{
  EXPECT_EQ(shape.isRightHanded(), doubleArea(chain) >= 0.0);
  for (int i = 0; i < 40; ++i) {
    gxVector<2> const p = random.point(1.2 * reach(chain));
    if (distance(chain, p) > 2.0 * slack(chain)) {
      EXPECT_EQ(shape.within(p), std::abs(winding(chain, p)) > 1.0) << p;
    }
  }
  EXPECT_THROW(shape.startPoint(), gxShapesError::NotOpenContour);
  EXPECT_THROW(shape.endAngle(), gxShapesError::NotOpenContour);
  EXPECT_THROW(shape.tangentRotation(), gxShapesError::NotOpenContour);
  EXPECT_THROW(shape.windingAngle({0, 0}), gxShapesError::NotOpenContour);
}

void checkReverse(gxShape const &shape, Chain const &chain)
{
  ASSERT_TRUE(shape.isReversible());
  gxPtrHandle<gxShape> const turned = shape.reverse();
  gxShapeInfo const info(shape), turnedInfo(*turned);
  EXPECT_NEAR(turnedInfo.perimeter(), info.perimeter(), rounding * info.perimeter());
  EXPECT_EQ(turned->isRegion(), shape.isRegion());
  if (shape.isRegion()) {
    EXPECT_NE(turned->isRightHanded(), shape.isRightHanded());
    EXPECT_LE(std::abs(shape.distanceToPoint(turned->nearestPoint({5, 5}))), rounding * 10 * reach(chain));
    return;
  }
  EXPECT_LE(turned->startPoint().distance(shape.endPoint()), rounding * reach(chain));
  EXPECT_LE(turned->endPoint().distance(shape.startPoint()), rounding * reach(chain));
  for (double const share : {0.1, 0.45, 0.8}) {
    double const pos = share * info.perimeter();
    gxVector<2> const there = shape.perimPointAndTangent(info, pos).point;
    gxVector<2> const back = turned->perimPointAndTangent(turnedInfo, turnedInfo.perimeter() - pos).point;
    EXPECT_LE(there.distance(back), rounding * 100 * reach(chain));
  }
}

void checkSubShape(gxShape const &shape, Chain const &chain, Random &random)
{
  gxShapeInfo const info(shape);
  double const whole = info.perimeter();
  for (int i = 0; i < 8; ++i) {
    double const a = random.between(0.0, whole), b = random.between(0.0, whole);
    if (a > b && shape.isOpenContour()) {
      EXPECT_THROW(shape.subShape(info, a, b), gxShapesError::BadCoef);
      continue;
    }
    gxPtrHandle<gxShape> const part = shape.subShape(info, a, b);
    double const expected = a <= b ? b - a : whole - a + b;
    EXPECT_NEAR(part->perimeter(), expected, 1e-12 * whole);
    EXPECT_LE(part->startPoint().distance(pointAt(chain, a)), 2.0 * slack(chain));
    EXPECT_LE(part->endPoint().distance(pointAt(chain, b)), 2.0 * slack(chain));
    gxShapeInfo const partInfo(*part);
    double const middle = std::fmod(a + expected / 2.0, whole);
    EXPECT_LE(part->perimPointAndTangent(partInfo, partInfo.perimeter() / 2.0).point.distance(pointAt(chain, middle)),
              2.0 * slack(chain));
  }
}

void checkSample(gxShape const &shape, Chain const &chain)
{
  for (double const tolerance : {0.3, 0.002}) {
    gxShape::gxSampleResult result;
    shape.sample({0.0, tolerance, 5000, false, false}, result);
    Chain const &found = result.positions();
    double furthest = 0.0;
    for (std::size_t i = 0; i < chain.size(); i += 7)
      furthest = std::fmax(furthest, distance(found, chain[i]));
    EXPECT_LE(furthest, tolerance * (1.0 + 1e-9) + slack(chain));
    for (std::size_t i = 0; i < found.size(); i += 3)
      EXPECT_LE(distance(chain, found[i]), slack(chain));
  }
  double const spacing = shape.perimeter() / 13.7;
  for (bool const uniform : {false, true}) {
    gxShape::gxSampleResult result;
    shape.sample({spacing, 0.0, 5000, uniform, false}, result);
    Chain const &found = result.positions();
    for (std::size_t i = 1; i < found.size(); ++i)
      EXPECT_LE(found[i].distance(found[i - 1]), spacing * (1.0 + 1e-9));
    if (uniform) {
      ASSERT_EQ(found.size(), 15u);
      for (std::size_t i = 0; i < found.size(); ++i) {
        gxVector<2> const expected = pointAt(chain, shape.perimeter() * static_cast<double>(i) / 14.0);
        EXPECT_LE(found[i].distance(expected), 2.0 * slack(chain));
      }
    }
    EXPECT_LE(found.front().distance(chain.front()), rounding * 10 * reach(chain));
    EXPECT_LE(found.back().distance(chain.back()), rounding * 10 * reach(chain));
  }
}

void checkClip(gxShape const &shape, Chain const &chain)
{
  // corners off the axes of symmetry of the table's shapes, so that nothing runs along a side
  Chain const window = {{-1.13, -0.77}, {2.71, -1.39}, {1.17, 0.53}, {2.23, 1.91}, {-0.71, 1.43}};
  gxClipInfo info;
  gxPtrHandle<gxShape> const part = shape.clip(gxPolyline(window, true), info);
  EXPECT_NEAR(part->perimeter(), lengthInside(chain, window), 0.02 * reach(chain));
  EXPECT_EQ(info.isOutside(), part->perimeter() == 0.0);
  gxShapeInfo const partInfo(*part);
  for (gx_Contour const &contour : partInfo.outline().contours)
    for (gx_Piece const &piece : contour.pieces)
      EXPECT_TRUE(isInside(window, piece.point(0.5)));

  gxRect const whole = shape.boundingBox();
  gxVector<2> const margin(1, 1), low = whole.lowCorner() - margin, high = whole.highCorner() + margin;
  gxPolyline const round({low, {high.x(), low.y()}, high, {low.x(), high.y()}}, true);
  EXPECT_TRUE(*shape.clip(round, info) == shape);
  EXPECT_FALSE(info.isCut() || info.isOutside());
  EXPECT_TRUE(shape.clip(round.map(gxXform<2>(gxMatrix<2>(), {0, 1000})), info)->isEmpty());
  EXPECT_TRUE(info.isCut() && info.isOutside());
}

void checkAll(gxShape const &shape, Chain const &chain, unsigned seed)
{
  Random random(seed);
  EXPECT_TRUE(shape.isFinite());
  EXPECT_FALSE(shape.isEmpty());
  EXPECT_TRUE(shape.hasTangent());
  EXPECT_NE(shape.isOpenContour(), shape.isRegion());
  checkBox(shape, chain);
  checkNearest(shape, chain, random);
  checkPerimeter(shape, chain, random);
  checkReverse(shape, chain);
  checkSubShape(shape, chain, random);
  checkSample(shape, chain);
  checkClip(shape, chain);
  if (shape.isOpenContour())
    checkOpen(shape, chain, random);
  else
    checkRegion(shape, chain, random);
}

class ShapeLaws : public testing::TestWithParam<Row>
{
};

TEST_P(ShapeLaws, HoldForTheShape)
{
  checkAll(*GetParam().shape, GetParam().chain, 1);
  gxPtrHandle<gxShape> const copy = GetParam().shape->clone();
  EXPECT_NE(copy.rep(), GetParam().shape.rep());
  EXPECT_TRUE(*copy == *GetParam().shape);
}

TEST_P(ShapeLaws, HoldForItsImages)
{
  gxMatrix<2> const matrices[] = {
      {1, 0, 0, 1}, {-1, 0, 0, 1}, {0.6, -0.8, 0.8, 0.6}, {1.2, 0.9, -0.4, 0.7}, {0.3, 1.1, 1.4, 0.2}};
  unsigned seed = 10;
  for (gxMatrix<2> const &matrix : matrices) {
    SCOPED_TRACE(testing::Message() << matrix);
    gxXform<2> const xform(matrix, {0.25, -0.5});
    checkAll(*GetParam().shape->mapShape(xform), mapped(GetParam().chain, xform), seed++);
  }
}

TEST_P(ShapeLaws, HoldForItsDecomposition)
{
  gxPtrHandle<gxShape> const parts = GetParam().shape->decompose();
  EXPECT_TRUE(parts->isDecomposed());
  EXPECT_EQ(parts->isRegion(), GetParam().shape->isRegion());
  checkAll(*parts, GetParam().chain, 3);
}

INSTANTIATE_TEST_SUITE_P(Table, ShapeLaws, testing::ValuesIn(rows()), [](auto const &row) {
  std::string name = row.param.name;
  for (char &c : name)
    c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
});

}  // namespace
