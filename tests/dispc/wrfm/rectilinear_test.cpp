#include "dispc/wrfm/modelprivate.h"
#include "foundation/shapeserror.h"
#include "tests/support/outlines.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>

namespace
{

using Poly = gxSMDGDPoly;
using P = gxSMDGDPolyPrivate;
using Point = gxVector<2>;

Poly turned(double degrees, Poly const &poly)
{
  return gx2Rigid(gxDegree(degrees), Point(3, -2)) * poly;
}

/// A staircase of lengths of at least 2, closed along its foot.
Poly staircase(Random &random)
{
  Poly poly;
  double x = 0.0, y = 0.0;
  int const steps = 1 + random.below(4);
  for (int i = 0; i < steps; ++i) {
    y += random.in(2, 5);
    poly << Corner{x, y}.vertex();
    x += random.in(2, 5);
    poly << Corner{x, y}.vertex();
  }
  poly << Corner{x, 0}.vertex() << Corner{0, 0}.vertex();
  poly.close();
  return poly;
}

TEST(Rectilinear, TheDominantAngleIsThatOfTheAxes)
{
  Random random(5);
  Poly const square = Poly::rectangle(4, 4, {1, 2});
  for (double const a : {0.0, 30.0, -30.0, 44.0, -44.0})
    EXPECT_NEAR(P::dominantAngle(turned(a, square)).value(), a, 1e-9);
  EXPECT_NEAR(P::dominantAngle(turned(60, square)).value(), -30, 1e-9);
  Poly slanting;  // the side that runs back, which counts with the opposite sign
  slanting << Corner{0, 0}.vertex() << Corner{10, 0}.vertex() << Corner{10, 5}.vertex() << Corner{0, 4.5}.vertex();
  slanting.close();
  EXPECT_NEAR(P::dominantAngle(slanting).value(), -gxDegree(gxVector<2>(10 + 10 + 5 + 4.5, 0.5).angle()).value(), 1e-9);
  EXPECT_EQ(P::dominantAngle(Poly()).value(), 0);
  EXPECT_EQ(gxSMDGDModelPrivate::dominantAngle(gxSMDGDModel()).value(), 0);
  for (int run = 0; run < 100; ++run) {
    double const a = random.in(-40, 40);
    Poly poly = turned(a, staircase(random));
    if (random.one(2))
      poly.open();
    EXPECT_NEAR(P::dominantAngle(poly).value(), a, 1e-9);
    // A second outline pulls as hard as it is long.
    double const b = a + 4;
    gxSMDGDModel model;
    model << poly << turned(b, Poly::rectangle(10, 10, {0, 0}));
    double const w = P::perimeter(poly, 0.0), v = 40;
    double const mean =
        gxDegree(gxVector<2>(w * std::cos(gxRadian(gxDegree(a)).value()) + v * std::cos(gxRadian(gxDegree(b)).value()),
                             w * std::sin(gxRadian(gxDegree(a)).value()) + v * std::sin(gxRadian(gxDegree(b)).value()))
                     .angle())
            .value();
    EXPECT_NEAR(std::remainder(gxSMDGDModelPrivate::dominantAngle(model).value() - mean, 90.0), 0, 1e-9);
  }
}

TEST(Rectilinear, IsExact)
{
  Poly const square = Poly::rectangle(4, 3, {1, 2});
  EXPECT_TRUE(P::isRectilinear(square) && P::isRectangular(square));
  EXPECT_EQ(P::rectangle(square), gxRect({-1, 0.5}, Point(4, 3)));
  EXPECT_TRUE(P::isRectilinear(Poly()));
  EXPECT_FALSE(P::isRectilinear(Poly::triangle(3, 3, {0, 0})));
  EXPECT_FALSE(P::isRectilinear(turned(1e-4, square)));
  EXPECT_TRUE(P::isRectilinear(P::flip(square)));

  struct Row {
    char const *what;
    std::function<void(gxSMDGDPolyVertex &)> change;
    bool rectilinear;
  };
  for (Row const &row : std::vector<Row>{
           {"a fillet", [](auto &v) { v.vertexRadius(0.5); }, true},
           {"an uncertain fillet", [](auto &v) { v.vertexRadius(-0.5); }, true},
           {"an arc", [](auto &v) { v.segmentAngleSpan(gxDegree(10)); }, false},
           {"a tolerance", [](auto &v) { v.segmentLengthTol(gxDimTol(-1, 1, 9)); }, true},
           {"a corner off by a hair", [](auto &v) { v.point(v.point() + Point(1e-9, 0)); }, false},
       }) {
    Poly poly = square;
    gxSMDGDPolyVertex v = poly.vertex(2, false);
    row.change(v);
    poly.replaceVertex(2, v);
    EXPECT_EQ(P::isRectilinear(poly), row.rectilinear) << row.what;
    EXPECT_FALSE(P::isRectangular(poly)) << row.what;
    EXPECT_TRUE(P::rectangle(poly).isEmpty()) << row.what;
    EXPECT_EQ(P::rectLength(poly), gxSMDDimension()) << row.what;
    Poly const before = poly;
    P::rectLength(poly, gxSMDDimension(5));
    EXPECT_EQ(poly, before) << row.what;
  }
}

// Whichever corner comes first, and whichever way round.
TEST(Rectilinear, DimensionsOfRectangles)
{
  for (int first = 0; first < 4; ++first)
    for (bool const backward : {false, true}) {
      std::vector<gxSMDGDPolyVertex> corners;
      Poly const ten = Poly::rectangle(10, 4, {1, 2});
      for (int i = 0; i < 4; ++i)
        corners.push_back(ten.vertex(first + (backward ? -i : i) + 4, true));
      Poly poly;
      poly.vertices(corners);
      poly.close();
      EXPECT_EQ(P::rectLength(poly).nomDim(), 10);
      EXPECT_EQ(P::rectWidth(poly).nomDim(), 4);
      gxSMDDimension const six(6, 5, 8, gxSMDDimension::scaleAll);
      P::rectWidth(poly, six);
      EXPECT_EQ(P::rectangle(poly), gxRect({-4, -1}, Point(10, 6)));
      EXPECT_EQ(P::rectWidth(poly), six);
      EXPECT_EQ(P::rectLength(poly).nomDim(), 10);
      P::rectLength(poly, gxSMDDimension(2));
      EXPECT_EQ(P::rectangle(poly), gxRect({0, -1}, Point(2, 6)));
      EXPECT_TRUE(poly.isClosed());
      std::string const before = asCode(poly);
      EXPECT_THROW(P::rectLength(poly, gxSMDDimension()), gxShapesError::BadGeom);
      EXPECT_EQ(asCode(poly), before);
    }
}

TEST(Rectilinear, SnappingMovesLittleAndEndsExact)
{
  Random random(11);
  int odd = 0;
  for (int run = 0; run < 400; ++run) {
    double const a = random.in(-30, 30);
    Poly poly = staircase(random);
    std::vector<gxSMDGDPolyVertex> shaken = poly.vertices();
    for (gxSMDGDPolyVertex &v : shaken) {
      v.point(v.point() + Point(random.in(-0.1, 0.1), random.in(-0.1, 0.1)));
      if (random.one(4))
        v.segmentAngleSpan(gxDegree(random.in(-8, 8)));
      v.subModelLabel(random.below(3));
    }
    if (random.one(4)) {  // a closed outline without its last corner
      shaken.pop_back();
      ++odd;
    }
    poly.vertices(shaken);
    if (random.one(4))
      poly.open();
    if (random.one(2))
      poly.toggleDirection();
    Poly const before = turned(a, poly);
    Poly after = before;
    P::snapRectilinear(after);
    EXPECT_EQ(after.isClosed(), before.isClosed());
    EXPECT_EQ(after.isDirectionReversed(), before.isDirectionReversed());
    long const more = before.isClosed() && before.numVertices() % 2;
    ASSERT_EQ(after.numVertices(), before.numVertices() + more) << asCode(before);
    double const limit = more ? 100 : 1.0;
    for (int i = 0; i < before.numVertices(); ++i) {
      EXPECT_LT(after.vertex(i, false).point().distance(before.vertex(i, false).point()), limit) << asCode(before);
      EXPECT_EQ(after.vertex(i, false).subModelLabel(), before.vertex(i, false).subModelLabel());
      EXPECT_EQ(after.vertex(i, false).segmentAngleSpan().value(), 0);
    }
    // Exact in its own frame, up to the rounding of turning back.
    double const axes = P::dominantAngle(after).value();
    Poly const level = gx2Rigid(gxDegree(-axes), Point()) * after;
    for (int i = level.isOpen() ? 1 : 0; i < level.numVertices(); ++i) {
      Point const chord = level.vertex(i, true).point() - level.vertex(i - 1, true).point();
      EXPECT_LT(std::min(std::abs(chord.x()), std::abs(chord.y())), 1e-9) << asCode(before);
    }
    if (!more) {
      EXPECT_NEAR(axes, a, 10);
    }
  }
  EXPECT_GT(odd, 20);

  Poly exact = Poly::rectangle(4, 3, {1, 2});
  exact.weight(0.25);
  Poly const kept = exact;
  P::snapRectilinear(exact);
  EXPECT_EQ(exact, kept);  // with its weight, which snapping would drop
}

TEST(Rectilinear, ClosingKeepsRightAngles)
{
  Poly l;
  l << Corner{0, 0}.vertex() << Corner{4, 0}.vertex() << Corner{4, 3}.vertex();
  P::closeRectilinear(l);
  EXPECT_EQ(P::rectangle(l), gxRect({0, 0}, Point(4, 3)));
  Poly four;
  four << Corner{0, 0}.vertex() << Corner{0, 4}.vertex() << Corner{5, 4}.vertex() << Corner{4, 1, 0.5}.vertex();
  P::closeRectilinear(four);
  EXPECT_EQ(four.vertex(3, false).point(), Point(5, 0));
  EXPECT_EQ(four.vertex(3, false).vertexRadius(), 0.5);
  EXPECT_TRUE(P::isRectilinear(four));
  Poly none, two;
  EXPECT_THROW(P::closeRectilinear(none), Poly::invalidVertices);
  two << Corner{0, 0}.vertex() << Corner{4, 0, 0, 180}.vertex();
  two.open();
  EXPECT_NO_THROW(P::closeRectilinear(two));
  EXPECT_TRUE(two.isClosed());

  // The missing corner lies on the first segment.
  Poly flat;
  flat << Corner{0, 0}.vertex() << Corner{4, 0}.vertex() << Corner{2, 0.1}.vertex();
  std::string const before = asCode(flat);
  EXPECT_THROW(P::closeRectilinear(flat), gxException);
  EXPECT_EQ(asCode(flat), before);
}

// A chord half way between the axes counts as upright.
TEST(Rectilinear, ChordsAtHalfARightAngle)
{
  Poly bent;
  bent << Corner{0, 0}.vertex() << Corner{5, 0}.vertex() << Corner{6, 1}.vertex();
  P::closeRectilinear(bent);
  ASSERT_EQ(bent.numVertices(), 4);
  EXPECT_EQ(bent.vertex(3, false).point(), Point(0, 1));
  Poly slope;
  slope << Corner{0, 0}.vertex() << Corner{2, 2}.vertex();
  P::replaceVertexRectilinear(slope, 1, Corner{3, 5}.vertex());
  EXPECT_EQ(slope.vertex(0, false).point(), Point(3, 0));
}

TEST(Rectilinear, EditsOfAVertexTakeItsNeighboursAlong)
{
  Random random(2);
  for (int run = 0; run < 100; ++run) {
    Poly poly = staircase(random);
    if (random.one(2))
      poly.open();
    int const i = random.below(static_cast<int>(poly.numVertices()));
    gxSMDGDPolyVertex v = poly.vertex(i, false);
    v.point(v.point() + Point(random.in(-0.9, 0.9), random.in(-0.9, 0.9)));
    Poly const before = poly;
    P::replaceVertexRectilinear(poly, i, v);
    EXPECT_EQ(poly.vertex(i, false), v);
    EXPECT_TRUE(P::isRectilinear(poly)) << asCode(before) << i;
    int moved = 0;
    for (int k = 0; k < poly.numVertices(); ++k)
      moved += !(poly.vertex(k, false).point() == before.vertex(k, false).point());
    EXPECT_LE(moved, 3);
  }
  Poly poly = Poly::rectangle(4, 3, {0, 0});
  std::string const before = asCode(poly);
  EXPECT_THROW(P::replaceVertexRectilinear(poly, 4, Corner{}.vertex()), Poly::invalidIndex);
  EXPECT_THROW(P::replaceVertexRectilinear(poly, -1, Corner{}.vertex()), Poly::invalidIndex);
  Corner const collapsed{-2, 1.5};
  EXPECT_THROW(P::replaceVertexRectilinear(poly, 0, collapsed.vertex()), gxException);
  EXPECT_EQ(asCode(poly), before);
  Poly single;
  single << Corner{1, 1}.vertex();
  P::replaceVertexRectilinear(single, 0, Corner{5, 6}.vertex());
  EXPECT_EQ(single.vertex(0, false).point(), Point(5, 6));
}

TEST(Rectilinear, TolerancesFittedToTheSegments)
{
  gxDimTol const tenth(-1, 0.1, 0.2, gxDimTol::Percentages);
  Poly poly = Poly::rectangle(4, 3, {0, 0});
  gxSMDGDPolyVertex v = poly.vertex(2, false);
  v.segmentAngleSpan(gxDegree(90));
  poly.replaceVertex(2, v);
  P::autoSegmentLengthTolerance(poly, tenth);
  for (int i = 0; i < 4; ++i) {
    gxDimTol const &tol = poly.vertex(i, false).segmentLengthTol();
    EXPECT_EQ(tol, gxDimTol(P::segmentLength(poly, i), 0.1, 0.2, gxDimTol::Percentages)) << i;
  }
  poly.open();
  P::autoSegmentLengthTolerance(poly, gxDimTol());
  EXPECT_EQ(poly.vertex(0, false).segmentLengthTol(), gxDimTol());
  EXPECT_EQ(poly.vertex(1, false).segmentLengthTol().nomDim(), P::segmentLength(poly, 1));
  std::string const before = Outline(poly).allFields();
  EXPECT_THROW(P::autoSegmentLengthTolerance(poly, gxDimTol(-1, 3.5, 9)), gxShapesError::BadGeom);
  EXPECT_EQ(Outline(poly).allFields(), before);
}

}  // namespace
