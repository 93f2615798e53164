#pragma once

// Laws that every shape keeps, to be looped over a table of shapes and over what becomes of them: copies, images under
// maps, decompositions. The reference is a dense chain written from the plain formula of the curve.

#include "foundation/outline.h"
#include "foundation/polyline.h"
#include "foundation/shapeinfo.h"
#include "foundation/shapeserror.h"
#include "tests/foundation/shape_chain.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

namespace shape_test
{

struct Row {
  std::string name;
  gxPtrHandle_const<gxShape> shape;
  Chain chain;  ///< closed contours end where they begin
};

inline void PrintTo(Row const &row, std::ostream *os)
{
  *os << row.name;
}

inline Chain closed(Chain chain)
{
  chain.push_back(chain.front());
  return chain;
}

/// The names of a table as names of tests.
inline std::string testName(testing::TestParamInfo<Row> const &row)
{
  std::string name = row.param.name;
  for (char &c : name)
    c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

inline double reach(Chain const &chain)
{
  double r = 0.0;
  for (auto const &p : chain)
    r = std::fmax(r, p.len());
  return r;
}

/// How far a chain of equal parameter steps stays from the curve, and by how much it is shorter, for curves of this
/// size: the sagitta of a step of 2 pi / steps, with room to spare.
inline double slack(Chain const &chain)
{
  return 2e-5 * reach(chain);
}

constexpr double rounding = 1e-13;

inline void checkBox(gxShape const &shape, Chain const &chain)
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

inline void checkNearest(gxShape const &shape, Chain const &chain, Random &random)
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

inline void checkPerimeter(gxShape const &shape, Chain const &chain, Random &random)
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

inline void checkOpen(gxShape const &shape, Chain const &chain, Random &random)
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

inline void checkRegion(gxShape const &shape, Chain const &chain, Random &random)
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

inline void checkReverse(gxShape const &shape, Chain const &chain)
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

inline void checkSubShape(gxShape const &shape, Chain const &chain, Random &random)
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

inline void checkSample(gxShape const &shape, Chain const &chain)
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

inline void checkClip(gxShape const &shape, Chain const &chain)
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

inline void checkAll(gxShape const &shape, Chain const &chain, unsigned seed)
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

inline void checkShape(Row const &row)
{
  checkAll(*row.shape, row.chain, 1);
  gxPtrHandle<gxShape> const copy = row.shape->clone(), loaded = throughArchive(copy);
  EXPECT_NE(copy.rep(), row.shape.rep());
  EXPECT_TRUE(*copy == *row.shape && *loaded == *row.shape);
  checkBox(*loaded, row.chain);
}

inline void checkImages(Row const &row)
{
  gxMatrix<2> const matrices[] = {
      {1, 0, 0, 1}, {-1, 0, 0, 1}, {0.6, -0.8, 0.8, 0.6}, {1.2, 0.9, -0.4, 0.7}, {0.3, 1.1, 1.4, 0.2}};
  unsigned seed = 10;
  for (gxMatrix<2> const &matrix : matrices) {
    SCOPED_TRACE(testing::Message() << matrix);
    gxXform<2> const xform(matrix, {0.25, -0.5});
    checkAll(*row.shape->mapShape(xform), mapped(row.chain, xform), seed++);
  }
}

inline void checkDecomposition(Row const &row)
{
  gxPtrHandle<gxShape> const parts = row.shape->decompose();
  EXPECT_TRUE(parts->isDecomposed());
  EXPECT_EQ(parts->isRegion(), row.shape->isRegion());
  checkAll(*parts, row.chain, 3);
}

/// A test program gives its table by `INSTANTIATE_TEST_SUITE_P(Table, ShapeLaws, testing::ValuesIn(rows()), testName)`.
class ShapeLaws : public testing::TestWithParam<Row>
{
};

TEST_P(ShapeLaws, HoldForTheShapeAndBehindAnArchive)
{
  checkShape(GetParam());
}

TEST_P(ShapeLaws, HoldForItsImages)
{
  checkImages(GetParam());
}

TEST_P(ShapeLaws, HoldForItsDecomposition)
{
  checkDecomposition(GetParam());
}

}  // namespace shape_test
