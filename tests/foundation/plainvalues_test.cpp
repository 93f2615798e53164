#include "foundation/angle.h"
#include "foundation/matherror.h"
#include "foundation/numbers.h"
#include "foundation/rectangle.h"
#include "foundation/rigid.h"
#include "foundation/xform.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

// Numbers, pairs, angles, matrices and transforms: laws over generated values, and rows of boundaries.

namespace
{

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double denorm = std::numeric_limits<double>::denorm_min();
constexpr double pi = std::numbers::pi;
constexpr long lowest = std::numeric_limits<std::int32_t>::min();
constexpr long highest = std::numeric_limits<std::int32_t>::max();

// Doubles of every size and sign, many of them whole or a hair beside whole numbers.
class Doubles
{
 public:
  double operator()()
  {
    double const size = std::ldexp(1.0, static_cast<int>(random_() % 80) - 40);
    double const v = std::uniform_real_distribution(-1.0, 1.0)(random_) * size;
    switch (random_() % 4) {
      case 0:
        return std::round(v);
      case 1:
        return std::nextafter(std::round(v), random_() % 2 ? inf : -inf);
      default:
        return v;
    }
  }
  double within(double limit) { return std::uniform_real_distribution(-limit, limit)(random_); }

 private:
  std::mt19937_64 random_{20240229};
};

gxMatrix<2> regularMatrix(Doubles &doubles)
{
  while (true) {
    gxMatrix<2> const m(doubles.within(10), doubles.within(10), doubles.within(10), doubles.within(10));
    if (std::abs(m.det()) > 0.5)
      return m;
  }
}

}  // namespace

TEST(Numbers, EachRoundingKeepsItsBoundaries)
{
  struct Row {
    double v;
    long truncated, floor, ceil, half, nudgedFloor, nudgedCeil;
  };
  std::vector<Row> const rows = {
      {0.0, 0, 0, 0, 0, 0, 0},
      {-0.0, 0, 0, 0, 0, 0, 0},
      {denorm, 0, 0, 1, 0, 0, 1},
      {-denorm, 0, -1, 0, 0, -1, 0},
      {0.5, 0, 0, 1, 1, 0, 1},
      {-0.5, 0, -1, 0, -1, -1, 0},
      {2.5, 2, 2, 3, 3, 2, 3},
      {-2.5, -2, -3, -2, -3, -3, -2},
      {2.9999999999999, 2, 2, 3, 3, 3, 3},  // a hair short of a whole number
      {-2.9999999999999, -2, -3, -2, -3, -3, -3},
      {3.0000000000001, 3, 3, 4, 3, 3, 3},  // a hair beyond
      {-3.0000000000001, -3, -4, -3, -3, -3, -3},
      {2.9999999999, 2, 2, 3, 3, 2, 3},  // more than a hair
      {-3.0000000001, -3, -4, -3, -3, -4, -3},
      {1e6 - 5e-6, 999999, 999999, 1000000, 1000000, 1000000, 1000000},  // the hair grows with the number
      {2147483646.5, 2147483646, 2147483646, highest, highest, 2147483646, highest},
      {2147483647.0, highest, highest, highest, highest, highest, highest},
      {2147483648.0, highest, highest, highest, highest, highest, highest},
      {-2147483648.0, lowest, lowest, lowest, lowest, lowest, lowest},
      {-2147483649.0, lowest, lowest, lowest, lowest, lowest, lowest},
      {1e300, highest, highest, highest, highest, highest, highest},
      {-1e300, lowest, lowest, lowest, lowest, lowest, lowest},
      {inf, highest, highest, highest, highest, highest, highest},
      {-inf, lowest, lowest, lowest, lowest, lowest, lowest},
      {notANumber, 0, 0, 0, 0, 0, 0},
      {-notANumber, 0, 0, 0, 0, 0, 0},
  };
  for (Row const &row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.v));
    EXPECT_EQ(gf_truncate(row.v), row.truncated);
    EXPECT_EQ(gfIFloor(row.v), row.floor);
    EXPECT_EQ(gfICeil(row.v), row.ceil);
    EXPECT_EQ(gf_roundHalfAway(row.v), row.half);
    EXPECT_EQ(gf_nudgedFloor(row.v), row.nudgedFloor);
    EXPECT_EQ(gf_nudgedCeil(row.v), row.nudgedCeil);
  }
}

TEST(Numbers, RoundingFollowsItsFormulaInsideTheRange)
{
  Doubles doubles;
  for (int i = 0; i < 20'000; ++i) {
    double const v = doubles();
    if (std::abs(v) > 2e9)
      continue;
    double const nudge = v < 0 ? -1e-11 : 1e-11;
    ASSERT_EQ(gf_nudgedFloor(v), static_cast<long>(std::floor((nudge + 1.0) * v))) << v;
    ASSERT_EQ(gf_nudgedCeil(v), static_cast<long>(std::ceil((1.0 - nudge) * v))) << v;
    ASSERT_EQ(gf_roundHalfAway(v), -gf_roundHalfAway(-v)) << v;
    ASSERT_EQ(gfIFloor(v), -gfICeil(-v)) << v;
  }
}

TEST(Pairs, PelsKeep32BitsAndWrap)
{
  gxPair<long> const corner(highest, lowest);
  EXPECT_EQ(corner + gxPair<long>(1, -1), gxPair<long>(lowest, highest));
  EXPECT_EQ(gxPair<long>() - gxPair<long>(0, lowest), gxPair<long>(0, lowest));
  EXPECT_EQ(-gxPair<long>(lowest, 5), gxPair<long>(lowest, -5));
  EXPECT_EQ(corner * 2, gxPair<long>(-2, 0));
  EXPECT_EQ(gxPair<long>(highest + 1, (1L << 32) + 7), gxPair<long>(lowest, 7));
  EXPECT_EQ(gxPair<long>(gxPair<double>(notANumber, -1e20)), gxPair<long>(0, lowest));
  EXPECT_EQ(gxPair<long>(gxPair<double>(-2.9, 2.9)), gxPair<long>(-2, 2));
  EXPECT_EQ(gxPair<double>(corner), gxPair<double>(2147483647.0, -2147483648.0));
}

TEST(Angles, NormAndSignedNormKeepTheirBoundaries)
{
  struct Row {
    double degrees, norm, signedNorm;
  };
  std::vector<Row> const rows = {
      {0, 0, 0},
      {-0.0, 0, 0},
      {360, 0, 0},
      {-360, 0, 0},
      {180, 180, 180},
      {-180, 180, 180},
      {540, 180, 180},
      {-900, 180, 180},
      {-denorm, 0, -denorm},  // 360 - denorm would round to 360
      {-1e-14, 0, -1e-14},
      {std::nextafter(360.0, 0.0), std::nextafter(360.0, 0.0), std::nextafter(360.0, 0.0) - 360.0},
      {std::nextafter(180.0, 360.0), std::nextafter(180.0, 360.0), -180.0 + (std::nextafter(180.0, 360.0) - 180.0)},
      {270, 270, -90},
      {-90, 270, -90},
      {360e15 + 64, 64, 64},
  };
  for (Row const &row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.degrees));
    EXPECT_EQ(gxDegree(row.degrees).norm().value(), row.norm);
    EXPECT_FALSE(std::signbit(gxDegree(row.degrees).norm().value()));
    EXPECT_EQ(gxDegree(row.degrees).signedNorm().value(), row.signedNorm);
    EXPECT_EQ(std::signbit(gxDegree(row.degrees).signedNorm().value()), row.signedNorm < 0);
  }
  EXPECT_EQ(gxRadian(-pi).signedNorm(), gxRadian(pi));
  EXPECT_EQ(gxRadian(2 * pi).norm(), gxRadian(0));
  EXPECT_EQ(gxRadian(-1e-17).norm(), gxRadian(0));
  for (double const v : {inf, -inf, notANumber}) {
    EXPECT_TRUE(std::isnan(gxRadian(v).norm().value()) && std::isnan(gxDegree(v).signedNorm().value()));
  }
}

// Both norms lie in their intervals and differ from the angle by whole turns; checked with exact remainders.
TEST(Angles, NormsAreEqualAnglesOfTheirIntervals)
{
  Doubles doubles;
  auto const check = [](double v, double norm, double signedNorm, double turn) {
    ASSERT_TRUE(0.0 <= norm && norm < turn) << v;
    ASSERT_TRUE(-turn / 2 < signedNorm && signedNorm <= turn / 2) << v;
    double const off = std::remainder(norm - std::remainder(v, turn), turn);
    ASSERT_LE(std::abs(off), turn * 1e-15) << v;
    ASSERT_LE(std::abs(std::remainder(signedNorm - v, turn)), std::max(1.0, std::abs(v)) * 1e-15) << v;
  };
  for (int i = 0; i < 20'000; ++i) {
    double const v = doubles();
    check(v, gxDegree(v).norm().value(), gxDegree(v).signedNorm().value(), 360.0);
    check(v, gxRadian(v).norm().value(), gxRadian(v).signedNorm().value(), 2 * pi);
  }
  for (double const huge : {1e22, -1e22, 1.7e308, -1.7e308}) {
    check(huge, gxDegree(huge).norm().value(), std::remainder(huge, 360.0), 360.0);
    check(huge, gxRadian(huge).norm().value(), std::remainder(huge, 2 * pi), 2 * pi);
  }
}

TEST(Angles, UnitsConvertThereAndBack)
{
  for (int d = -720; d <= 720; d += 45)
    EXPECT_DOUBLE_EQ(gxDegree(gxRadian(gxDegree(d))).value(), d);
  EXPECT_EQ(gxRadian(gxDegree(180)).value(), pi);
  EXPECT_EQ(gxRadian(gxDegree(90)).value(), pi / 2);
  EXPECT_EQ(gxRadian(gxDegree(360)).value(), 2 * pi);
}

TEST(Angles, ARangeHoldsItsEndsAndWhatLiesBetween)
{
  Doubles doubles;
  for (int i = 0; i < 5'000; ++i) {
    double const start = doubles.within(20);
    double const span = doubles.within(6.28);
    gxAngleRange const range{gxRadian(start), gxRadian(span)};
    double const turns = 2 * pi * std::round(doubles.within(3));
    double const beside = (2 * pi - std::abs(span)) * 0.5 * (span < 0 ? 1 : -1);
    for (double const fraction : {0.0, 0.25, 0.5, 1.0})
      ASSERT_TRUE(range.isWithin(gxRadian(start + fraction * span + turns))) << start << ' ' << span;
    if (std::abs(beside) > 1e-6) {
      ASSERT_FALSE(range.isWithin(gxRadian(start + beside + turns))) << start << ' ' << span;
      ASSERT_FALSE(range.isWithin(gxRadian(start + span + (span < 0 ? -1e-9 : 1e-9)))) << start << ' ' << span;
    }
  }
  EXPECT_TRUE(gxAngleRange(gxRadian(1), gxRadian(-2 * pi)).isWithin(gxRadian(100)));
  EXPECT_FALSE(gxAngleRange(gxRadian(1), gxRadian(2 * pi)).isWithin(gxRadian(notANumber)));
  EXPECT_FALSE(gxAngleRange(gxRadian(notANumber), gxRadian(1)).isWithin(gxRadian(1)));
  EXPECT_FALSE(gxAngleRange(gxRadian(1), gxRadian(notANumber)).isWithin(gxRadian(1)));
  EXPECT_FALSE(gxAngleRange(gxRadian(1), gxRadian(1)).isWithin(gxRadian(inf)));
  EXPECT_TRUE(gxRange(1, 2).isWithin(1) && gxRange(1, 2).isWithin(2) && !gxRange(1, 2).isWithin(notANumber));
  EXPECT_FALSE(gxRange(2, 1).isWithin(1.5));
}

TEST(Vectors, PolarFormsAndProductsAgree)
{
  Doubles doubles;
  for (int i = 0; i < 2'000; ++i) {
    gxVector<2> const a(doubles.within(100), doubles.within(100));
    gxVector<2> const b(doubles.within(100), doubles.within(100));
    EXPECT_TRUE(gfRealEq(gxVector<2>(a.len(), a.angle()), a, 1e-13 * a.len()));
    EXPECT_NEAR(a.unit().len(), 1.0, 1e-15);
    EXPECT_NEAR(a * b, a.len() * b.len() * std::cos((b.angle() - a.angle()).value()), 1e-10);
    EXPECT_NEAR(a.cross(b), a.len() * b.len() * std::sin((b.angle() - a.angle()).value()), 1e-10);
    EXPECT_EQ(a.cross(b), -b.cross(a));
    EXPECT_EQ(a.distance(b), b.distance(a));
  }
  EXPECT_EQ(gxVector<2>().unit(), gxVector<2>());
  EXPECT_EQ(gxVector<2>(1e300, 1e300).len(), std::hypot(1e300, 1e300));
  EXPECT_FALSE(gxVector<2>(inf, 0).isFinite() || gxVector<2>(0, notANumber).isFinite());
  EXPECT_TRUE(gfRealEq(gxVector<2>(1, 1), gxVector<2>(1.5, 0.5), 0.5));
  EXPECT_FALSE(gfRealEq(gxVector<2>(notANumber, 0), gxVector<2>(notANumber, 0), inf));
}

TEST(Matrices, RotationsAndScalesComeBack)
{
  Doubles doubles;
  for (int i = 0; i < 2'000; ++i) {
    gxRadian const xRot(doubles.within(3.1)), yRot(doubles.within(3.1));
    double const xScale = std::abs(doubles.within(5)) + 0.1, yScale = std::abs(doubles.within(5)) + 0.1;
    gxMatrix<2> const m(xRot, yRot, xScale, yScale);
    EXPECT_NEAR(m.xRot().value(), xRot.value(), 1e-14);
    EXPECT_NEAR(m.yRot().value(), yRot.value(), 1e-14);
    EXPECT_NEAR((m * gxVector<2>(1, 0)).len(), xScale, 1e-14);
    EXPECT_NEAR((m * gxVector<2>(0, 1)).len(), yScale, 1e-14);
    EXPECT_NEAR(m.scale() * m.scale(), std::abs(m.det()), 1e-13);
    gxMatrix<2> changed = m;
    changed.element(1, 0, 7.0);
    EXPECT_EQ(changed.det(), gxMatrix<2>(m.element(0, 0), m.element(0, 1), 7.0, m.element(1, 1)).det());
  }
}

TEST(Xforms, InverseAndCompositionKeepTheirLaws)
{
  Doubles doubles;
  for (int i = 0; i < 2'000; ++i) {
    gxXform<2> const a(regularMatrix(doubles), gxVector<2>(doubles.within(100), doubles.within(100)));
    gxXform<2> const b(regularMatrix(doubles), gxVector<2>(doubles.within(100), doubles.within(100)));
    gxVector<2> const p(doubles.within(100), doubles.within(100));
    double const tol = 1e-8;  // conditions of up to about 1e3, squared, on coordinates of up to 1e4
    EXPECT_TRUE(gfRealEq((a * b) * p, a * (b * p), tol));
    EXPECT_TRUE(gfRealEq(a.inverse() * (a * p), p, tol));
    EXPECT_TRUE(gfRealEq(a.invMapPoint(a.mapPoint(p)), p, tol));
    EXPECT_TRUE(gfRealEq((a * b).inverse() * p, b.inverse() * (a.inverse() * p), tol));
    EXPECT_TRUE(gfRealEq(a.mapVector(p), a * p - a * gxVector<2>(), tol));
    gxRadian const angle(doubles.within(3.1));
    EXPECT_NEAR((a.invMapAngle(a.mapAngle(angle)) - angle).signedNorm().value(), 0.0, 1e-12);
    EXPECT_NEAR((a.mapAngle(angle) - a.mapVector(gxVector<2>(2.0, angle)).angle()).signedNorm().value(), 0.0, 1e-12);
    EXPECT_EQ(a * gxXform<2>::I, a);
    EXPECT_EQ(gxXform<2>::I * a, a);
    EXPECT_FALSE(a.isIdentity());
  }
  EXPECT_TRUE(gxXform<2>().isIdentity());
  EXPECT_EQ(gxXform<2>(gxm_xformLinear{{5, 6}, 1, 2, 3, 4}), gxXform<2>(gxMatrix<2>(1, 2, 3, 4), gxVector<2>(5, 6)));
}

TEST(Xforms, WhatHasNoInverseSaysSo)
{
  for (gxMatrix<2> const &m : {gxMatrix<2>(0, 0, 0, 0), gxMatrix<2>(1, 2, 2, 4), gxMatrix<2>(notANumber, 0, 0, 1),
                               gxMatrix<2>(inf, 0, 0, 1), gxMatrix<2>(1e200, 0, 0, 1e200)}) {
    gxXform<2> const x(m, gxVector<2>(1, 2));
    EXPECT_THROW(m.inverse(), gxMathError::Singular);
    EXPECT_THROW(x.inverse(), gxMathError::Errors);
    EXPECT_THROW(x.invMapPoint({}), gxMathError::Singular);
    EXPECT_THROW(x.invMapAngle(gxRadian(0)), gxMathError::Singular);
  }
  EXPECT_NO_THROW(gxMatrix<2>(1e-100, 0, 0, 1e-100).inverse());  // no tolerance
}

TEST(Rigids, RightAnglesAreExact)
{
  gxVector<2> const p(3, 1e-300);
  for (int turns = -3; turns <= 3; ++turns) {
    gxDegree const full(360.0 * turns);
    EXPECT_EQ((gx2Rigid(full, {}) * p), p);
    EXPECT_EQ((gx2Rigid(full + gxDegree(90), {}) * p), gxVector<2>(-1e-300, 3));
    EXPECT_EQ((gx2Rigid(full + gxDegree(180), {}) * p), gxVector<2>(-3, -1e-300));
    EXPECT_EQ((gx2Rigid(full - gxDegree(90), {}) * p), gxVector<2>(1e-300, -3));
  }
  EXPECT_TRUE(gx2Rigid(gxDegree(720), {}).linear().isIdentity());
}

TEST(Rigids, AgreeWithTheirLinearForm)
{
  Doubles doubles;
  for (int i = 0; i < 2'000; ++i) {
    gx2Rigid const a(gxDegree(doubles.within(720)), gxVector<2>(doubles.within(100), doubles.within(100)));
    gx2Rigid const b(gxDegree(doubles.within(720)), gxVector<2>(doubles.within(100), doubles.within(100)));
    gxVector<2> const p(doubles.within(100), doubles.within(100));
    double const tol = 1e-11;
    EXPECT_TRUE(gfRealEq(a * p, a.linear() * p, tol));
    EXPECT_TRUE(gfRealEq((a * b) * p, a * (b * p), tol));
    EXPECT_TRUE(gfRealEq((a * b) * p, (a.linear() * b.linear()) * p, tol));
    EXPECT_TRUE(gfRealEq(a.inverse() * (a * p), p, tol));
    EXPECT_TRUE(gfRealEq(a.inverse() * p, a.linear().inverse() * p, tol));
    EXPECT_NEAR(a.mapVector(p).len(), p.len(), tol);
    EXPECT_NEAR(a.linear().matrix().det(), 1.0, 1e-15);
    EXPECT_EQ(a * gx2Rigid::I, a);
  }
}
