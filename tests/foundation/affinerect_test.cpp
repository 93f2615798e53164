#include "foundation/affinerect.h"
#include "foundation/rect.h"

#include <gtest/gtest.h>

#include <random>

// What is its own of an affine rectangle; the laws of shapes are tested with the other shapes.

namespace
{
TEST(AffineRectangle, RotationsAndLengthsGiveTheCornersAndComeBack)
{
  gxAffineRectangle const upright({10, 20}, 6, 4, gxRadian(), gxRadian());
  EXPECT_EQ(upright, gxAffineRectangle({7, 18}, {13, 18}, {7, 22}));
  EXPECT_EQ(upright.cornerPopp(), gxVector<2>(13, 22));

  std::mt19937 random(4);
  auto const number = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  for (int n = 0; n < 200; ++n) {
    gxVector<2> const center(number(-50, 50), number(-50, 50));
    double const x = number(0.1, 9), y = number(0.1, 9), xRot = number(-3.1, 3.1), yRot = number(-3.1, 3.1);
    gxAffineRectangle const r(center, x, y, gxRadian(xRot), gxRadian(yRot));
    EXPECT_NEAR(r.center().distance(center), 0.0, 1e-13);
    EXPECT_NEAR(r.xLength(), x, 1e-13);
    EXPECT_NEAR(r.yLength(), y, 1e-13);
    EXPECT_NEAR(r.xRotation().value(), xRot, 1e-12);
    EXPECT_NEAR(r.yRotation().value(), yRot, 1e-12);
    // The y side is the y axis, turned.
    gxVector<2> const up = r.cornerPy() - r.cornerPo();
    EXPECT_NEAR(up.x(), -y * std::sin(yRot), 1e-12);
    EXPECT_NEAR(up.y(), y * std::cos(yRot), 1e-12);
    EXPECT_EQ(r.isRightHanded(), std::cos(xRot - yRot) > 0.0);
    for (gxVector<2> corner : {gxVector<2>(0, 0), gxVector<2>(1, 0), gxVector<2>(0, 1), gxVector<2>(1, 1)}) {
      gxVector<2> const expected = corner.x() == 0.0 ? (corner.y() == 0.0 ? r.cornerPo() : r.cornerPy())
                                                     : (corner.y() == 0.0 ? r.cornerPx() : r.cornerPopp());
      EXPECT_NEAR((r.fromUnitSquare() * corner).distance(expected), 0.0, 1e-12);
    }
  }
}

TEST(AffineRectangle, MapsCornerByCorner)
{
  gxXform<2> const map(gxMatrix<2>(2, 1, -1, 3), {5, -7});
  gxAffineRectangle const r({1, 1}, {4, 2}, {0, 3}), image = r.map(map);
  EXPECT_EQ(image.cornerPo(), map * r.cornerPo());
  EXPECT_EQ(image.cornerPopp(), map * r.cornerPopp());
  EXPECT_TRUE(*r.mapShape(map) == image);
}

TEST(AffineRectangle, MayBeFlat)
{
  gxAffineRectangle const line({0, 0}, {4, 2}, {2, 1}), point({1, 2}, {1, 2}, {1, 2});
  EXPECT_EQ(line.boundingBox(), gxRect({0, 0}, {6, 3}));
  EXPECT_TRUE(line.within({6, 3}));
  EXPECT_FALSE(line.within({1, 2}));
  EXPECT_TRUE(point.within({1, 2}));
  EXPECT_EQ(point.perimeter(), 0.0);
  EXPECT_EQ(point.nearestPoint({5, 5}), gxVector<2>(1, 2));
}
}  // namespace
