// Shapes at their edges: what has no meaning throws the fitting error, what has collapsed gives finite answers, what
// is not finite does no harm.

#include "foundation/matherror.h"
#include "tests/support/shapes.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numbers>

namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

using Shape = gxPtrHandle_const<gxShape>;

Shape shape(gxShape *s)
{
  return Shape(s);
}

struct Row {
  char const *name;
  Shape shape;
  gxRect box;
  double perimeter;
  gxVector<2> nearest;  ///< to (4, 3)
};

std::vector<Row> collapsed()
{
  gxRect const atOneTwo({1, 2}, {0, 0});
  auto const row = [](char const *name, gxShape *shape, gxRect const &box, double perimeter,
                      gxVector<2> const &nearest) {
    return Row{name, Shape(shape), box, perimeter, nearest};
  };
  return {
      row("segment", new gxLineSeg({1, 2}, {1, 2}), atOneTwo, 0, {1, 2}),
      row("one vertex", new gxPolyline({{1, 2}}), atOneTwo, 0, {1, 2}),
      row("closed vertex", new gxPolyline({{1, 2}}, true), atOneTwo, 0, {1, 2}),
      row("two vertices, closed", new gxPolyline({{1, 2}, {3, 2}}, true), gxRect({1, 2}, {2, 0}), 4, {3, 2}),
      row("point rectangle", new gxRect({1, 2}, {0, 0}), atOneTwo, 0, {1, 2}),
      row("level rectangle", new gxRect({1, 2}, {5, 0}), gxRect({1, 2}, {5, 0}), 10, {4, 2}),
      row("flat general rectangle", new gxGenRect({1, 2}, gxMatrix<2>(2, 2, 0, 0), {0, 0}), gxRect({-3, 2}, {8, 0}), 16,
          {4, 2}),
      row("flat rounded rectangle", new gxGenRect({1, 2}, gxMatrix<2>(1, 0, 0, 0), {0.5, 0.5}), gxRect({0, 2}, {2, 0}),
          4, {2, 2}),
      row("point general rectangle", new gxGenRect({1, 2}, gxMatrix<2>(0, 0, 0, 0), {1, 1}), atOneTwo, 0, {1, 2}),
      row("flat affine rectangle", new gxAffineRectangle({0, 2}, {4, 2}, {2, 2}), gxRect({0, 2}, {6, 0}), 12, {4, 2}),
      row("point affine rectangle", new gxAffineRectangle({1, 2}, {1, 2}, {1, 2}), atOneTwo, 0, {1, 2}),
      row("circle of radius 0", new gxCircle({1, 2}, 0), atOneTwo, 0, {1, 2}),
      row("point ellipse", new gxEllipse2({0, 0}, gxRadian(1), {1, 2}), atOneTwo, 0, {1, 2}),
      row("flat ellipse", new gxEllipse2({2, 0}, gxRadian(), {1, 2}), gxRect({-1, 2}, {4, 0}), 8, {3, 2}),
      row("arc of span 0", new gxEllipseArc2(gxEllipse2({1, 1}, gxRadian(), {0, 2}), gxRadian(), gxRadian()), atOneTwo,
          0, {1, 2}),
      row("arc of a flat ellipse",
          new gxEllipseArc2(gxEllipse2({2, 0}, gxRadian(), {1, 2}), gxRadian(), gxRadian(std::numbers::pi / 2)),
          gxRect({1, 2}, {2, 0}), 2, {3, 2}),
      row("tree of one point", new gxShapeTree({shape(new gx2Point({1, 2})), shape(new gxPolyline)}), atOneTwo, 0,
          {1, 2}),
  };
}

bool isFinite(gxRect const &r)
{
  return r.origin().isFinite() && r.size().isFinite();
}

/// Calls every operation; errors of shapes are answers too. True if all numbers that came are finite.
bool askAll(gxShape const &s)
{
  bool finite = true;
  auto const ask = [&](auto const &question) {
    try {
      finite = question() && finite;
    } catch (gxShapesError::Errors const &) {
    } catch (gxMathError::Errors const &) {
    }
  };
  gxVector<2> const p(4, 3);
  ask([&] { return isFinite(s.boundingBox()); });
  ask([&] { return s.nearestPoint(p).isFinite(); });
  ask([&] { return std::isfinite(s.perimeter()); });
  ask([&] { return s.startPoint() == s.startPoint() || s.endPoint() == s.endPoint() || true; });  // may be as given
  ask([&] { return std::isfinite(s.startAngle().value()) && std::isfinite(s.endAngle().value()); });
  ask([&] { return std::isfinite(s.tangentRotation().value()); });
  ask([&] { return std::isfinite(s.windingAngle(p).value()); });
  ask([&] { return s.isRightHanded() || true; });
  ask([&] { return s.within(p) || true; });
  ask([&] { return !s.clone()->isDecomposed() || true; });
  ask([&] { return !s.mapShape(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), {1, 1}))->isEmpty() || true; });
  ask([&] { return std::isfinite(s.mapShape(gxXform<2>(gxMatrix<2>(1, 2, 2, 4), {1, 1}))->perimeter()); });
  ask([&] { return std::isfinite(s.reverse()->perimeter()); });
  ask([&] { return std::isfinite(s.decompose()->perimeter()); });
  gxClipInfo clipInfo;
  ask([&] { return std::isfinite(s.clip(gxPolyline({{0, 0}, {2, 0}, {2, 5}}, true), clipInfo)->perimeter()); });
  ask([&] {
    gxShapeInfo const info(s);
    double const pos = s.nearestPerimPos(info, p);
    return s.perimPointAndTangent(info, pos).point.isFinite() &&
           std::isfinite(s.subShape(info, 0, info.perimeter())->perimeter());
  });
  for (bool const uniform : {false, true})
    ask([&] {
      gxShape::gxSampleResult result;
      s.sample({0.5, 0.01, 1000, uniform, true}, result);
      return result.positions().empty() || result.positions().back().isFinite();
    });
  return finite;
}

TEST(CollapsedShapes, HaveDefinedBoxesLengthsAndNearestPoints)
{
  for (Row const &row : collapsed()) {
    SCOPED_TRACE(row.name);
    EXPECT_FALSE(row.shape->isEmpty());
    EXPECT_LE(row.shape->boundingBox().origin().distance(row.box.origin()), 1e-15);
    EXPECT_LE(row.shape->boundingBox().size().distance(row.box.size()), 1e-15);
    EXPECT_NEAR(row.shape->perimeter(), row.perimeter, 1e-14);
    EXPECT_LE(row.shape->nearestPoint({4, 3}).distance(row.nearest), 1e-15);
    EXPECT_EQ(row.shape->hasTangent(), row.perimeter > 0.0);
    EXPECT_TRUE(askAll(*row.shape));
    if (row.shape->isRegion()) {
      EXPECT_TRUE(row.shape->within(row.nearest));
      EXPECT_FALSE(row.shape->within({4, 3}));
    }
    if (row.shape->isOpenContour() && row.perimeter == 0.0) {
      EXPECT_THROW(row.shape->startAngle(), gxShapesError::NoTangent);
      EXPECT_THROW(row.shape->tangentRotation(), gxShapesError::NoTangent);
      EXPECT_EQ(row.shape->startPoint(), row.shape->endPoint());
    }
  }
}

TEST(EmptyShapes, HaveNoPointsAndSaySo)
{
  for (Shape const &s : {shape(new gxRect), shape(new gxPolyline), shape(new gxPolyline(true)), shape(new gxShapeTree),
                         shape(new gxContourTree), shape(new gxContourTree(true)), shape(new gxRegionTree),
                         shape(new gxShapeTree({shape(new gxRect)}))}) {
    EXPECT_TRUE(s->isEmpty());
    EXPECT_FALSE(s->isOpenContour() || s->isRegion() || s->hasTangent());
    EXPECT_THROW(s->boundingBox(), gxShapesError::EmptyShape);
    EXPECT_THROW(s->nearestPoint({0, 0}), gxShapesError::EmptyShape);
    EXPECT_EQ(s->perimeter(), 0.0);
    EXPECT_THROW(s->startPoint(), gxShapesError::NotOpenContour);
    if (dynamic_cast<gxRect const *>(s.rep())) {
      EXPECT_FALSE(s->within({0, 0}));
    } else {
      EXPECT_THROW(s->within({0, 0}), gxShapesError::NotRegion);
    }
    EXPECT_TRUE(s->mapShape(gxXform<2>::I)->mapShape(gxXform<2>::I));
    EXPECT_TRUE(askAll(*s));
  }
}

TEST(PointsAndLines, AreNeitherContourNorRegion)
{
  for (Shape const &s :
       {shape(new gx2Point({1, 2})), shape(new gxLine({3, 0}, {1, 2})), shape(new gxFLine(gxDegree(0), {1, 2}))}) {
    EXPECT_FALSE(s->isOpenContour() || s->isRegion() || s->isEmpty());
    EXPECT_THROW(s->startPoint(), gxShapesError::NotOpenContour);
    EXPECT_THROW(s->endAngle(), gxShapesError::NotOpenContour);
    EXPECT_THROW(s->windingAngle({0, 0}), gxShapesError::NotOpenContour);
    EXPECT_THROW(s->within({0, 0}), gxShapesError::NotRegion);
    EXPECT_THROW(s->isRightHanded(), gxShapesError::NotRegion);
    EXPECT_TRUE(*s->decompose() == *s);
    EXPECT_TRUE(askAll(*s));
  }
  gx2Point const point({1, 2});
  EXPECT_THROW(point.reverse(), gxShapesError::NotReversible);
  EXPECT_THROW(point.nearestPerimPos(gxShapeInfo(point), {0, 0}), gxShapesError::NotContour);
  EXPECT_EQ(point.distanceToPoint({4, 6}), 5.0);
  gxLine const line({0, 3}, {1, 2});
  EXPECT_THROW(line.boundingBox(), gxShapesError::InfiniteShape);
  EXPECT_THROW(line.perimeter(), gxShapesError::InfiniteShape);
  EXPECT_THROW(gxShapeInfo{line}, gxShapesError::InfiniteShape);
  EXPECT_EQ(line.nearestPoint({5, 7}), gxVector<2>(1, 7));
  EXPECT_EQ(dynamic_cast<gxLine &>(*line.reverse()).dir(), gxVector<2>(0, -3));
  // a tree with a line in it has no bounds either
  EXPECT_THROW(gxShapeTree({line.clone()}).boundingBox(), gxShapesError::InfiniteShape);
  EXPECT_FALSE(gxShapeTree({line.clone()}).isFinite());
}

TEST(Lines, MeetUnlessTheyAreParallelOrWithoutDirection)
{
  gxLine const level({2, 0}, {0, 1}), steep({1e-200, 3e-200}, {1, 0});
  EXPECT_LE(level.intersect(steep).distance({4.0 / 3.0, 1}), 1e-15);
  EXPECT_THROW(level.intersect(gxLine({-5, 0}, {0, 3})), gxShapesError::NoIntersection);
  gxLine const singular = level.map(gxXform<2>(gxMatrix<2>(0, 1, 0, 1), {0, 0}));
  EXPECT_THROW(singular.intersect(level), gxShapesError::DegenerateShape);
  EXPECT_THROW(singular.nearestPoint({0, 0}), gxShapesError::DegenerateShape);
  EXPECT_FALSE(singular.hasTangent());

  gxFLine const across({1, 1}, gxVector<2>(1, 5)), along(gxDegree(180), {7, 3});
  ASSERT_EQ(across.intersection(along).size(), 1u);
  EXPECT_EQ(across.intersection(along)[0], gxVector<2>(1, 3));
  EXPECT_TRUE(across.intersection(across).empty());
  EXPECT_EQ(along.dir(), gxVector<2>(-1, 0));
  EXPECT_EQ(along.signedDistance({0, 5}), -2.0);
  EXPECT_THROW(gxFLine({1, 1}, gxVector<2>(1, 1)), gxShapesError::DegenerateShape);
  EXPECT_THROW(across.map(gxXform<2>(gxMatrix<2>(1, 0, 0, 0), {0, 0})), gxShapesError::DegenerateShape);
  EXPECT_NEAR((gxXform<2>(gxMatrix<2>(1, 0, 3, 4), {0, 0}) * along).dir().len(), 1.0, 1e-15);
  EXPECT_THROW(gxPoint(1, 2).connect({1, 2}), gxShapesError::DegenerateShape);
  EXPECT_EQ(gxPoint(1, 2).connect({4, 6}).dir(), gxVector<2>(3, 4));
}

TEST(Clipping, PointsAndEndlessLinesKeepWhatIsInside)
{
  gxPolyline const notch({{0, 0}, {4, 0}, {4, 3}, {2, 1}, {0, 3}}, true);
  gxClipInfo info;
  gxPtrHandle<gxShape> const pieces = gxLine({0.5, 0}, {100, 2}).clip(notch, info);
  EXPECT_TRUE(info.isCut() && !info.isOutside());
  EXPECT_NEAR(pieces->perimeter(), 2, 1e-13);
  EXPECT_TRUE(pieces->boundingBox().within({3.5, 2}));
  EXPECT_EQ(dynamic_cast<gxShapeTree &>(*pieces).numChildren(), 2);
  EXPECT_TRUE(gxFLine(gxDegree(90), {9, 0}).clip(notch, info)->isEmpty());
  EXPECT_TRUE(info.isCut() && info.isOutside());
  EXPECT_THROW(gxLine({0, 0}, {1, 1}).clip(notch, info), gxShapesError::DegenerateShape);
  EXPECT_THROW(gxLineSeg().clip(gxPolyline({{0, 0}, {1, 1}}), info), gxShapesError::NotRegion);

  gxShapeTree const set(
      {shape(new gx2Point({1, 1})), shape(new gx2Point({2, 2})), shape(new gxLineSeg({1, -1}, {1, 1}))});
  gxPtrHandle<gxShape> const left = set.clip(notch, info);
  EXPECT_TRUE(info.isCut() && !info.isOutside());
  EXPECT_TRUE(*left == gxShapeTree({shape(new gx2Point({1, 1})), shape(new gxLineSeg({1, 0}, {1, 1}))}));
}

TEST(Rect, KeepsNegativeSizesAndTellsEmptyFromFlat)
{
  gxRect const r({3, 1}, {-2, 4});
  EXPECT_EQ(r.lowCorner(), gxVector<2>(1, 1));
  EXPECT_EQ(r.highCorner(), gxVector<2>(3, 5));
  EXPECT_TRUE(r.within({1, 5}) && r.within({3, 1}) && !r.within({0.999, 3}));
  EXPECT_EQ(r & gxRect({2, 0}, {9, 2}), gxRect({2, 1}, {1, 1}));
  EXPECT_EQ(r & gxRect({3, 0}, {1, 9}), gxRect({3, 1}, {0, 4}));  // a common side
  EXPECT_FALSE((r & gxRect({3, 0}, {1, 9})).isEmpty());
  EXPECT_EQ(r & gxRect({3.001, 0}, {1, 9}), gxRect());
  EXPECT_EQ(gxRect().enclose(r), r);
  EXPECT_EQ(r.enclose(gxRect()), r);
  EXPECT_EQ(r.enclose(gxRect({5, 5}, {0, 0})), gxRect({1, 1}, {4, 4}));
  EXPECT_FALSE(gxRect() == gxRect({0, 0}, {0, 0}));
  EXPECT_EQ(r.corner(2), gxVector<2>(1, 5));
  EXPECT_THROW(r.corner(4), gxShapesError::BadCoef);
  EXPECT_EQ(gxRect({0, 0}, {4, 2}).nearestPoint({1, 1.5}), gxVector<2>(1, 2));  // from inside, to the outline
  // in a tie to the side that comes first
  EXPECT_EQ(gxRect({0, 0}, {2, 2}).nearestPoint({1, 1}), gxVector<2>(1, 0));
  EXPECT_EQ(gxRect({2, 2}, {-2, -2}).nearestPoint({1, 1}), gxVector<2>(1, 2));
  EXPECT_EQ(gxRect({0, 0}, {2, 2}).nearestPoint({1.5, 1.5}), gxVector<2>(2, 1.5));
  EXPECT_EQ(gxRect({0, 0}, {2, 9}).nearestPoint({1, 4}), gxVector<2>(2, 4));
}

TEST(Constructors, RefuseWhatNoShapeCanBe)
{
  EXPECT_THROW(gxCircle({0, 0}, -1), gxShapesError::BadRadius);
  gxCircle circle({0, 0}, 2);
  EXPECT_THROW(circle.radius(-1e-300), gxShapesError::BadRadius);
  EXPECT_EQ(circle.radius(), 2.0);
  for (gxVector<2> const rounding : {gxVector<2>(-0.1, 0), gxVector<2>(0, 1.1)})
    EXPECT_THROW(gxGenRect({0, 0}, gxMatrix<2>(), rounding), gxShapesError::BadRadius);
  EXPECT_THROW(gxShapeTree({Shape()}), gxBadPointer);
  EXPECT_THROW(gxRegionTree(shape(new gxLineSeg)), gxShapesError::NotRegion);
  EXPECT_THROW(gxPolygon().boundingBox(), gxShapesError::EmptyShape);
  EXPECT_EQ(gxPolygon({{0, 0}, {4, 0}, {0, 3}}).distanceToPoint({4, 3}), 2.4);
}

TEST(Sampling, StopsBeforeTheLimitAndLeavesTheResultAsItWas)
{
  gxCircle const circle({0, 0}, 1);
  gxShape::gxSampleResult result;
  gxLineSeg({0, 0}, {1, 1}).sample({0, 0, 100, false, false}, result);
  auto const before = result.positions();
  EXPECT_THROW(circle.sample({0, 1e-9, 100, false, false}, result), gxShapesError::SampleOverflow);
  EXPECT_THROW(circle.sample({1e-300, 0, 100, false, false}, result), gxShapesError::SampleOverflow);
  EXPECT_THROW(circle.sample({0.1, 0, 60, true, false}, result), gxShapesError::SampleOverflow);
  EXPECT_THROW(gxShapeTree({circle.clone(), circle.clone()}).sample({0, 0, 9, false, false}, result),
               gxShapesError::SampleOverflow);
  EXPECT_EQ(result.positions(), before);
  EXPECT_EQ(result.contourStarts().size(), 1u);
  EXPECT_THROW(circle.sample({nan, 0, 100, false, false}, result), gxShapesError::BadParams);
  EXPECT_THROW(circle.sample({0, -1, 100, false, false}, result), gxShapesError::BadParams);
  EXPECT_THROW(circle.sample({0, 1, 100, true, false}, result), gxShapesError::BadParams);

  // without a limit the ends of the smooth pieces and the quarters of arcs are taken; the limit itself is allowed
  circle.sample({0, 0, 7, false, false}, result);
  EXPECT_EQ(result.positions().size(), 7u);
  EXPECT_EQ(result.contourStarts(), (std::vector<std::size_t>{0, 2}));
}

TEST(Sampling, GivesCornersTwiceOnDemandButNotSmoothJoints)
{
  gxPolyline const line({{0, 0}, {1, 0}, {2, 0}, {2, 1}});
  gxGenRect const rounded({0, 0}, gxVector<2>(4, 2), gxRadian(0.3), {0.5, 0.5});
  for (bool const twice : {false, true}) {
    gxShape::gxSampleResult ofLine, ofRounded, ofSquare;
    line.sample({0, 0, 100, false, twice}, ofLine);
    EXPECT_EQ(ofLine.positions().size(), twice ? 5u : 4u);
    rounded.sample({0, 0, 100, false, twice}, ofRounded);
    EXPECT_EQ(ofRounded.positions().size(), 9u);
    gxRect({0, 0}, {1, 1}).sample({0.5, 0, 100, false, twice}, ofSquare);
    EXPECT_EQ(ofSquare.positions().size(), twice ? 12u : 9u);
  }
}

TEST(Sampling, UniformPointsAreEquallyFarApartAlongTheOutline)
{
  gxShape::gxSampleResult result;
  gxRect({0, 0}, {3, 2}).sample({0.8, 0, 100, true, false}, result);  // perimeter 10: 13 steps
  ASSERT_EQ(result.positions().size(), 14u);
  EXPECT_LE(result.positions()[4].distance({3, 40.0 / 13 - 3}), 1e-14);
  EXPECT_EQ(result.positions().front(), result.positions().back());
}

TEST(RegionTree, HolesAndIslandsAlternate)
{
  gxRegionTree tree(shape(new gxRect({0, 0}, {10, 10})));
  gxRegionTree hole(shape(new gxCircle({5, 5}, 4)));
  hole.addRegion(shape(new gxCircle({5, 5}, 1)));
  tree.addRegion(hole);
  gxRegionTree const &child = dynamic_cast<gxRegionTree const &>(*tree.child(0));
  EXPECT_TRUE(tree.isRoot() && !tree.isHole() && child.isHole() && !child.isRoot());
  EXPECT_TRUE(tree.within({0.5, 0.5}) && tree.within({5, 5}) && tree.within({10, 0}));
  EXPECT_FALSE(tree.within({5, 7}) || tree.within({11, 5}));
  EXPECT_TRUE(tree.within({9, 5}) && tree.within({6, 5}));  // the outlines of hole and island belong to the region
  EXPECT_EQ(tree.distanceToPoint({5, 7.5}), 1.5);
  EXPECT_NEAR(tree.perimeter(), 40 + 10 * std::numbers::pi, 1e-13);
  EXPECT_EQ(gxShapeInfo(tree).outline().contours.size(), 3u);

  gxRegionTree plane;
  plane.addRegion(tree);
  plane.addRegion(shape(new gxCircle({20, 0}, 1)));
  EXPECT_TRUE(plane.isRegion() && plane.isHole() && plane.boundary().isNull());
  EXPECT_TRUE(plane.within({5, 5}) && plane.within({20, 0.5}) && !plane.within({5, 7}) && !plane.within({15, 0}));
  EXPECT_EQ(plane.boundingBox(), gxRect({0, -1}, {21, 11}));

  gxXform<2> const xform(gxMatrix<2>(2, 1, -1, 3), {1, 1});
  gxPtrHandle<gxShape> const image = plane.mapShape(xform);
  for (gxVector<2> const p : {gxVector<2>(5, 5), gxVector<2>(5, 7), gxVector<2>(20, 0.5), gxVector<2>(15, 0)}) {
    EXPECT_EQ(image->within(xform * p), plane.within(p));
    EXPECT_EQ(plane.decompose()->within(p), plane.within(p));
    EXPECT_EQ(plane.reverse()->within(p), plane.within(p));
  }
  EXPECT_FALSE(plane.reverse()->isRightHanded());
  EXPECT_TRUE(*plane.clone() == plane && !(*image == plane));
}

TEST(ContourTree, HasTheEndsOfItsContoursWhateverElseItHolds)
{
  Shape const first = shape(new gxLineSeg({0, 0}, {2, 0})), last = shape(new gxLineSeg({2, 3}, {0, 3}));
  gxContourTree tree({shape(new gx2Point({9, 9})), first, shape(new gxCircle({5, 5}, 1)), last});
  EXPECT_EQ(tree.startPoint(), gxVector<2>(0, 0));
  EXPECT_EQ(tree.endPoint(), gxVector<2>(0, 3));
  EXPECT_NEAR(tree.endAngle().value(), std::numbers::pi, 1e-15);
  EXPECT_NEAR(tree.tangentRotation().value(), std::numbers::pi, 1e-15);  // with the line that joins the two
  EXPECT_NEAR(tree.windingAngle({5, 5}).value(), gxContourTree({first, last}).windingAngle({5, 5}).value(), 1e-15);
  EXPECT_EQ(tree.nearestPoint({8, 9}), gxVector<2>(9, 9));
  EXPECT_EQ(tree.nearestPoint({2.5, 1}), gxVector<2>(2, 1));
  EXPECT_EQ(tree.boundingBox(), gxRect({0, 0}, {9, 9}));

  // without an open contour it is a set of shapes
  for (bool const closed : {false, true}) {
    gxContourTree const set({shape(new gxCircle({5, 5}, 1)), shape(new gx2Point({9, 9}))}, closed);
    EXPECT_FALSE(set.isOpenContour() || set.isRegion() || set.isEmpty());
    EXPECT_EQ(set.nearestPoint({8, 9}), gxVector<2>(9, 9));
    gxShape::gxSampleResult result;
    set.sample({0, 0, 100, false, false}, result);
    EXPECT_EQ(result.contourStarts().size(), 2u);
    EXPECT_TRUE(askAll(set));
  }
}

TEST(LineSeg, MeasuresWhatIsLargerThanTheRootOfAllNumbers)
{
  gxLineSeg const vast({-3e200, -1e200}, {5e200, 7e200});
  EXPECT_LE(vast.nearestPoint({5e200, -1e200}).distance({1e200, 3e200}), 1e185);
  EXPECT_EQ(vast.nearestPoint({9e200, 8e200}), gxVector<2>(5e200, 7e200));
}

TEST(SubShape, BeginsBehindACornerAndOnTheContourThatItEndsOn)
{
  gxRect const square({0, 0}, {1, 1});
  gxShapeInfo const info(square);
  EXPECT_TRUE(*square.subShape(info, 1, 2) == gxLineSeg({1, 0}, {1, 1}));
  EXPECT_TRUE(*square.subShape(info, 1, 3) == gxPolyline({{1, 0}, {1, 1}, {0, 1}}));
  EXPECT_EQ(square.subShape(info, 2, 2)->perimeter(), 0.0);
  EXPECT_TRUE(*square.subShape(info, 3, 1) == gxPolyline({{0, 1}, {0, 1}, {0, 0}, {1, 0}}) ||
              *square.subShape(info, 3, 1) == gxPolyline({{0, 1}, {0, 0}, {1, 0}}));

  gxLineSegSet const apart({{{0, 0}, {2, 0}}, {{5, 0}, {6, 0}}});
  gxShapeInfo const setInfo(apart);
  EXPECT_TRUE(*apart.subShape(setInfo, 2, 3) == gxLineSeg({5, 0}, {6, 0}));
  EXPECT_TRUE(*apart.subShape(setInfo, 0, 2) == gxLineSeg({0, 0}, {2, 0}));
  EXPECT_THROW(apart.subShape(setInfo, 1.5, 3), gxShapesError::BadGeom);
}

TEST(Sets, AskTheirShapesWhatThoseCanTell)
{
  gxShapeTree const lines({shape(new gxLine({1, 0}, {0, 0})), shape(new gx2Point({3, 4}))});
  EXPECT_TRUE(lines.hasTangent());
  EXPECT_EQ(lines.nearestPoint({2, 5}), gxVector<2>(3, 4));
  EXPECT_TRUE(askAll(lines));
  gxMappedShape const image(lines, gxXform<2>(gxMatrix<2>(0, 1, 1, 0), {0, 0}));
  EXPECT_TRUE(image.hasTangent());
  EXPECT_EQ(image.nearestPoint({5, 2}), gxVector<2>(4, 3));
  EXPECT_TRUE(askAll(image));

  // the arguments are looked at though nobody needs them
  gxShape::gxSampleResult result;
  gxClipInfo info;
  for (Shape const &s : {shape(new gx2Point), shape(new gxShapeTree), shape(new gxContourTree)}) {
    EXPECT_THROW(s->sample({-1, 0, 100, false, false}, result), gxShapesError::BadParams);
    EXPECT_THROW(s->sample({0, 0, 100, true, false}, result), gxShapesError::BadParams);
    EXPECT_THROW(s->clip(gxPolyline(), info), gxShapesError::NotRegion);
  }
  EXPECT_THROW(gxLine({1, 0}, {0, 0}).clip(gxPolyline(true), info), gxShapesError::NotRegion);
}

TEST(NonFiniteNumbers, AreRefusedWhereTheyWouldBeAnswers)
{
  gxShape::gxSampleResult result;
  for (double const bad : {nan, infinity, -infinity, 1e308}) {
    std::vector<Shape> const shapes = {
        shape(new gx2Point({bad, 1})),
        shape(new gxLineSeg({bad, 0}, {1, bad})),
        shape(new gxPolyline({{0, 0}, {bad, 1}, {2, 2}}, true)),
        shape(new gxRect({bad, 0}, {1, bad})),
        shape(new gxGenRect({0, bad}, gxMatrix<2>(1, bad, 0, 1), {0.5, 0.5})),
        shape(new gxCircle({bad, 0}, std::abs(bad))),
        shape(new gxAnnulus(gxCircle({0, 0}, 1), gxCircle({bad, 0}, std::abs(bad)))),
        shape(new gxEllipse2({std::abs(bad), 1}, gxRadian(bad), {0, 0})),
        shape(new gxEllipse2({2, 1}, gxRadian(bad), {bad, 0}, true, gxRadian(bad))),
        shape(new gxEllipseArc2(gxEllipse2({2, 1}, gxRadian(bad), {0, 0}), gxRadian(bad), gxRadian(bad))),
        shape(new gxShapeTree({shape(new gxLineSegSet({{{bad, 0}, {2, 0}}})), shape(new gxCircle)})),
    };
    gxXform<2> const xform(gxMatrix<2>(bad, 0, 0, 1), {0, bad});
    for (Shape const &s : shapes) {
      gxShape const &object = *s;
      SCOPED_TRACE(testing::Message() << typeid(object).name() << ' ' << bad);
      bool const isAnswered = askAll(*s), isImageAnswered = askAll(*s->mapShape(xform));
      if (std::isfinite(bad))
        continue;  // sums and products of such numbers overflow, and do no harm
      EXPECT_TRUE(isAnswered && isImageAnswered);
      EXPECT_THROW(s->boundingBox(), gxShapesError::BadGeom);
      EXPECT_THROW(s->nearestPoint({0, 0}), gxShapesError::BadGeom);
      if (!dynamic_cast<gx2Point const *>(s.rep())) {
        EXPECT_THROW(s->sample({0, 1, 100, false, false}, result), gxShapesError::BadGeom);
        EXPECT_THROW(gxShapeInfo{*s}, gxShapesError::BadGeom);
      }
    }
    askAll(gxLine({bad, 1}, {0, bad}));
    for (Row const &row : collapsed())
      for (gxVector<2> const p : {gxVector<2>(bad, 0), gxVector<2>(bad, bad)})
        try {
          EXPECT_TRUE(row.shape->nearestPoint(p).isFinite());
        } catch (gxShapesError::BadGeom const &) {
        }
  }
}

}  // namespace
