#include "dispc/wrfm/genpoly.h"

#include "foundation/archive.h"
#include "foundation/matherror.h"
#include "tests/support/outlines.h"
#include "tests/support/shapes.h"

#include <gmock/gmock.h>

#include <cmath>
#include <sstream>

namespace
{

using Point = gxVector<2>;
using S = gxShapesError;

gxRadian degrees(double v)
{
  return gxRadian(gxDegree(v));
}

gxGenPoly rounded()
{
  gxGenPoly p(gxRect({0, 0}, Point(40, 20)));
  p.vertexRoundingSizes(3);
  p.segmentAngleSpan(1, degrees(40));
  return p;
}

std::string stored(gxGenPoly const &p)
{
  std::ostringstream os;
  gxStoringArchive(os) << p;
  return os.str();
}

// A polygon of a shape has the shape's outline: same length, box and inside.
TEST(Polygon, OfAShapeHasItsOutline)
{
  gxEllipse2 const ellipse({5, 3}, gxRadian(0.4), {7, 8});
  gxEllipse const inner({7, 8}, {2.5, 1.5}, gxRadian(0.4)), outer({7, 8}, {5, 3}, gxRadian(0.4));
  struct Row {
    char const *name;
    gxPtrHandle<gxShape> shape;
    gxGenPoly polygon;
    bool isMutable;
  };
  gxCircle const circle({3, 4}, 5);
  gxRect const rect({1, 2}, Point(6, 4));
  gxLineSeg const segment({1, 2}, {5, 9});
  std::vector<Point> const corners = {{0, 0}, {9, 1}, {7, 8}, {2, 5}};
  gxEllipseArc2 const arc(ellipse, gxRadian(0.5), gxRadian(4)), back(ellipse, gxRadian(0.5), gxRadian(-2));
  gxEllipseAnnulusSection const section(gxEllipseAnnulus(inner, outer), gxRadian(0.3), gxRadian(2.4));
  gxGenRect const sharp({3, 4}, Point(8, 6), gxRadian(0.3), {0, 0.5}),
      soft({3, 4}, Point(8, 6), gxRadian(0.3), {0.4, 0.7});
  gxGenRect const lying({3, 4}, Point(8, 6), gxRadian(0.3), {0.4, 1}),
      standing({3, 4}, Point(8, 6), gxRadian(0.3), {1, 0.2});
  gxGenRect const oval({3, 4}, Point(8, 6), gxRadian(0.3), {1, 1});
  std::vector<Row> const rows = {
      {"circle", new gxCircle(circle), gxGenPoly(circle), true},
      {"segment", new gxLineSeg(segment), gxGenPoly(segment), true},
      {"rectangle", new gxRect(rect), gxGenPoly(rect), true},
      {"polygon", new gxPolyline(corners, true), gxGenPoly(gxPolygon(corners)), true},
      {"ellipse", new gxEllipse2(ellipse), gxGenPoly(ellipse), false},
      {"plain ellipse", new gxEllipse2(ellipse), gxGenPoly(outer), false},
      {"arc", new gxEllipseArc2(arc), gxGenPoly(arc), false},
      {"arc backward", new gxEllipseArc2(back), gxGenPoly(back), false},
      {"sharp", new gxGenRect(sharp), gxGenPoly(sharp), false},
      {"soft", new gxGenRect(soft), gxGenPoly(soft), false},
      {"lying", new gxGenRect(lying), gxGenPoly(lying), false},
      {"standing", new gxGenRect(standing), gxGenPoly(standing), false},
      {"oval", new gxGenRect(oval), gxGenPoly(oval), false},
      {"section", new gxEllipseAnnulusSection(section), gxGenPoly(section), false},
  };
  for (Row const &row : rows) {
    gxShape const &shape = *row.shape;
    gxGenPoly const &p = row.polygon;
    EXPECT_EQ(p.isMutable(), row.isMutable) << row.name;
    EXPECT_EQ(p.isRegion(), shape.isRegion()) << row.name;
    EXPECT_NEAR(p.perimeter(), shape.perimeter(), 1e-9) << row.name;
    gxRect const a = p.boundingBox(), b = shape.boundingBox();
    EXPECT_NEAR(a.origin().distance(b.origin()) + a.size().distance(b.size()), 0, 1e-9) << row.name;
    Random random(9);
    for (int i = 0; i < 200; ++i) {
      Point const q(random.in(-5, 15), random.in(-5, 15));
      EXPECT_NEAR(p.nearestPoint(q).distance(q), shape.distanceToPoint(q), 1e-6) << row.name;
      if (shape.isRegion() && shape.distanceToPoint(q) > 1e-6) {
        EXPECT_EQ(p.within(p.xform().invMapPoint(q)), shape.within(q)) << row.name << q;
      }
    }
  }
  EXPECT_EQ(gxGenPoly::convert(gxAnnulus(gxCircle({0, 0}, 1), gxCircle({0, 0}, 2)))[1], gxGenPoly(gxCircle({0, 0}, 2)));
  EXPECT_EQ(gxGenPoly::convert(gxGenAnnulus(sharp, soft))[0], gxGenPoly(sharp));
  EXPECT_EQ(gxGenPoly::convert(gxEllipseAnnulus(inner, outer))[0], gxGenPoly(inner));
  EXPECT_THROW(gxGenPoly{gxCircle()}, S::BadGeom);
  EXPECT_THROW(gxGenPoly{gxRect()}, S::BadGeom);
  EXPECT_THROW(gxGenPoly{gxLineSeg()}, S::BadGeom);
  EXPECT_THROW(gxGenPoly(gxPolygon({{1, 1}})), S::BadGeom);
  EXPECT_THROW(gxGenPoly(gxPolygon({{1, 1}, {5, 2}})), S::BadGeom);
  EXPECT_THROW(gxGenPoly{gxEllipseArc()}, S::BadGeom);
  EXPECT_THROW(gxGenPoly(gxEllipseArc2(ellipse, gxRadian(1), gxDegree(360))), S::BadGeom);
  EXPECT_THROW(gxGenPoly(gxEllipse2({5, 0}, gxRadian(0), {0, 0})), S::BadGeom);
  EXPECT_THROW(gxGenPoly(gxEllipseAnnulusSection(gxEllipseAnnulus(gxEllipse({7, 8}, {2, 2}, gxRadian(0)), outer),
                                                 gxRadian(0), gxRadian(1))),
               S::BadGeom);
}

TEST(Polygon, ANewOneIsNothingYet)
{
  gxGenPoly p;
  EXPECT_TRUE(p.degen() && p.isEmpty() && p.isMutable() && p.isOpen());
  EXPECT_FALSE(p.isOpenContour() || p.isRegion() || p.hasTangent());
  EXPECT_EQ(p.pos(), Point());
  EXPECT_EQ(p.center(), Point());
  EXPECT_TRUE(p.encloseRect().isEmpty());
  EXPECT_THROW(p.boundingBox(), S::EmptyShape);
  EXPECT_THROW(p.nearestPoint({1, 1}), S::EmptyShape);
  EXPECT_THROW(p.distToPoint({1, 1}), S::BadCoef);
  EXPECT_THROW(p.startPoint(), S::NotOpenContour);
  EXPECT_THROW(p.within({1, 1}), S::NotRegion);
  EXPECT_THROW(p.isRightHanded(), S::NotRegion);
  EXPECT_THROW(p.close(degrees(0)), S::BadGeom);
  p.insertVertex({3, 4}, 0, degrees(0));
  EXPECT_TRUE(p.isOpenContour());
  EXPECT_EQ(p.boundingBox(), gxRect({3, 4}, Point(0, 0)));
  EXPECT_THROW(p.startAngle(), S::NoTangent);
  EXPECT_THROW(p.close(degrees(0)), S::BadGeom);
  p.insertVertex(-1, {0, 0}, 0, degrees(0));
  EXPECT_EQ(p.vertexPoint(0), Point(0, 0));
  EXPECT_NEAR(p.startAngle().value(), std::atan2(4, 3), 1e-15);
  p.close(degrees(180));
  EXPECT_TRUE(p.isArcSegment(1) && p.isLineSegment(0));
}

TEST(Polygon, SegmentsAreNumberedFromTheirStarts)
{
  gxGenPoly p = rounded();
  for (long i = 0; i < 4; ++i) {
    EXPECT_EQ(p.previousVertexIndex(i), i);
    EXPECT_EQ(p.nextVertexIndex(i), (i + 1) % 4);
    EXPECT_EQ(p.nextSegmentIndex(i), i);
    EXPECT_EQ(p.previousSegmentIndex(i), (i + 3) % 4);
  }
  EXPECT_NEAR(p.segmentAngleSpan(1).value(), degrees(40).value(), 1e-15);
  EXPECT_EQ(p.lineSegment(0, true), gxLineSeg({0, 0}, {40, 0}));
  EXPECT_EQ(p.lineSegment(3, true), gxLineSeg({0, 20}, {0, 0}));
  EXPECT_NEAR(p.lineSegment(3, false).length(), 14, 1e-9);
  EXPECT_NEAR(p.arcSegment(1, true).span().value(), degrees(40).value(), 1e-12);
  EXPECT_LT(p.ellipseSegment(1, false).phiSpan().value(), degrees(40).value());
  EXPECT_NEAR(p.roundedVertexArc(0).phiSpan().value(), degrees(90).value(), 1e-12);
  EXPECT_THROW(p.lineSegment(1, true), S::BadGeom);
  EXPECT_THROW(p.arcSegment(0, true), S::BadGeom);
  p.open();
  EXPECT_EQ(p.numSegments(), 3);
  EXPECT_EQ(p.previousSegmentIndex(0), -1);
  EXPECT_EQ(p.nextSegmentIndex(3), -1);
  EXPECT_THROW(p.roundedVertex(0), S::BadGeom) << "an end";
  for (long const bad : {-1L, 3L, 1L << 32}) {
    EXPECT_THROW(p.lineSegment(bad, true), S::BadCoef);
    EXPECT_THROW(p.isLineSegment(bad), S::BadCoef);
    EXPECT_EQ(p.nextVertexIndex(bad), -1);
  }
}

TEST(Polygon, ARefusedEditLeavesItAsItWas)
{
  gxGenPoly p = rounded();
  std::string const before = stored(p);
  EXPECT_THROW(p.vertexRoundingSizes(30), S::BadRadius);
  EXPECT_THROW(p.vertexRoundingSize(2, 11), S::BadRadius);
  EXPECT_THROW(p.vertexPoint(2, {20, -5}), S::Errors);
  EXPECT_THROW(p.insertVertex(-2, {1, 1}, 0, degrees(0)), S::BadCoef);
  EXPECT_THROW(p.insertVertex(4, {1, 1}, 0, degrees(0)), S::BadCoef);
  EXPECT_THROW(p.deleteVertex(-1), S::BadCoef);
  EXPECT_THROW(p.replaceVertex(0, {std::nan(""), 1}, 0), S::BadGeom);
  EXPECT_EQ(stored(p), before);
  gxGenPoly open;
  for (Point const &q : {Point(0, 0), Point(10, 0), Point(10, 10), Point(0, 10), Point(0, 3), Point(5, 3), Point(5, 6)})
    open.insertVertex(q, 0, degrees(0));
  std::string const unclosed = stored(open);
  EXPECT_THROW(open.close(degrees(1)), S::BadGeom);
  EXPECT_EQ(stored(open), unclosed) << "the span of the closing segment too";

  gxGenPoly mapped = p.map(gxXform<2>(gxMatrix<2>(), {1, 0}));
  std::string const image = stored(mapped);
  EXPECT_THROW(mapped.insertVertex({1, 1}, 0, degrees(0)), S::BadGeom);
  EXPECT_THROW(mapped.vertexRoundingSizes(0), S::BadGeom);
  EXPECT_THROW(mapped.open(), S::BadGeom);
  EXPECT_THROW(mapped.close(degrees(0)), S::BadGeom);
  EXPECT_THROW(mapped.deleteVertex(0), S::BadGeom);
  EXPECT_THROW(mapped.segmentAngleSpan(0, degrees(1)), S::BadGeom);
  EXPECT_EQ(stored(mapped), image);
}

TEST(Polygon, MapsAndShapes)
{
  gxGenPoly const p = rounded();
  gxXform<2> const skew(gxMatrix<2>(2, 1, 0.5, -1), {3, 4});
  EXPECT_EQ(p.map(gxXform<2>()), p);
  EXPECT_THROW(p.map(gxXform<2>(gxMatrix<2>(1, 2, 2, 4), {0, 0})), gxMathError::Singular);
  gxGenPoly const image = p.map(skew);
  EXPECT_FALSE(image.isMutable());
  EXPECT_NE(image, p);
  EXPECT_TRUE(p.isRightHanded());
  EXPECT_FALSE(image.isRightHanded()) << "mirrored";
  EXPECT_EQ(image.vertexPoint(1), skew.mapPoint(p.vertexPoint(1)));
  gxPtrHandle<gxShape> const plain = p.mapShape(skew);
  EXPECT_NEAR(plain->perimeter(), image.perimeter(), 1e-9);
  EXPECT_NEAR(plain->boundingBox().size().distance(image.boundingBox().size()), 0, 1e-9);
  gxGenPoly const moved = p.map(gx2Rigid(gxDegree(30), {5, 6}), 2.0);
  EXPECT_TRUE(moved.isMutable() && moved.xform().isIdentity());
  EXPECT_NEAR(moved.perimeter(), 2.0 * p.perimeter(), 1e-9);
  EXPECT_NEAR(moved.vertexRoundingSize(1), 6, 1e-12);
  EXPECT_FALSE(image.map(gx2Rigid(), 2.0).isMutable());
  EXPECT_TRUE(gfRealEq(p.map(gx2Rigid(gxDegree(0), {1e-7, 0}), 1.0), p, 1e-6));
  EXPECT_FALSE(gfRealEq(p.map(gx2Rigid(gxDegree(0), {1e-5, 0}), 1.0), p, 1e-6));

  EXPECT_THROW(p.map(gx2Rigid(), 0.0), S::BadGeom);
  EXPECT_THROW(image.map(gx2Rigid(), 0.0), gxMathError::Singular);

  gxGenPoly deep;  // backward, the fillet stands before the segment that leaves it room
  for (Point const &q : {Point(0, 0), Point(10, 0), Point(10, 10), Point(20, 10)})
    deep.insertVertex(q, q == Point(10, 0) ? 8 : 0, gxRadian());
  EXPECT_THROW(deep.reverse(), S::BadRadius);

  gxPtrHandle<gxShape> const back = p.reverse();
  EXPECT_FALSE(back->isRightHanded());
  EXPECT_EQ(*back->reverse(), p);
  auto const tree = p.decompose();
  EXPECT_EQ(dynamic_cast<gxContourTree const &>(*tree).numChildren(), 8);
  gxShape::gxSampleResult points;
  EXPECT_THROW(p.sample(gxShape::gxSampleParams(1, 0, 1000, true, false), points), S::BadParams);
  p.sample(gxShape::gxSampleParams(0, 0.01, 1000, false, false), points);
  for (Point const &q : points.positions())
    EXPECT_NEAR(p.distToPoint(q), 0, 1e-9);
  gxClipInfo info;
  gxPolyline const window({{-100, -100}, {20, -100}, {20, 100}, {-100, 100}}, true),
      all({{-99, -99}, {99, -99}, {99, 99}, {-99, 99}}, true);
  EXPECT_NEAR(p.clip(window, info)->boundingBox().size().x(), 20, 1e-9);
  EXPECT_EQ(*p.clip(all, info), p);
  gxShapeInfo const lengths(p);
  EXPECT_NEAR(p.subShape(lengths, 1, 30)->perimeter(), 29, 1e-9);

  std::stringstream stream(stored(image));
  gxGenPoly loaded;
  gxLoadingArchive(stream) >> loaded;
  EXPECT_EQ(loaded, image);
  EXPECT_EQ(stored(loaded), stored(image));
}

}  // namespace
