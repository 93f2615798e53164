// Rings, sets, the plain values, shapes of clients, shapes seen through transforms and the distortion of a lens.

#include "foundation/matherror.h"
#include "tests/foundation/shape_chain.h"
#include "tests/support/archived.h"
#include "tests/support/shapes.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numbers>

using namespace shape_test;

namespace
{

constexpr double pi = std::numbers::pi;
gxXform<2> const sheared(gxMatrix<2>(1.5, 0.4, -0.3, 0.8), {2, -1});
gxXform<2> const mirror(gxMatrix<2>(-1, 0, 0, 1), {});

TEST(Annulus, IsWhatExactlyOneCircleHolds)
{
  gxAnnulus const ring(gxCircle({0, 0}, 1), gxCircle({0.5, 0}, 3));
  Random random(1);
  for (gxXform<2> const &xform : {gxXform<2>(), sheared, mirror}) {
    gxGenAnnulus const image = ring.map(xform);
    EXPECT_TRUE(*ring.mapShape(xform) == image);
    EXPECT_EQ(image.isRightHanded(), xform.matrix().det() > 0.0);
    gxPtrHandle<gxShape> const turned = image.reverse();
    EXPECT_NE(turned->isRightHanded(), image.isRightHanded());
    gxPtrHandle<gxShape> const parts = image.decompose();
    for (int i = 0; i < 200; ++i) {
      gxVector<2> const p = random.point(4.0);
      bool const isInside = (p.len() < 1.0) != (p.distance({0.5, 0}) < 3.0);
      EXPECT_EQ(ring.within(p), isInside) << p;
      for (gxShape const *shape : {static_cast<gxShape const *>(&image), static_cast<gxShape const *>(turned.rep()),
                                   static_cast<gxShape const *>(parts.rep())})
        EXPECT_EQ(shape->within(xform * p), isInside) << p;
      EXPECT_NEAR(ring.distanceToPoint(p), std::fmin(std::abs(p.len() - 1), std::abs(p.distance({0.5, 0}) - 3)), 1e-14);
    }
  }
  EXPECT_TRUE(ring.within({1, 0}));
  EXPECT_TRUE(ring.within({3.5, 0}));
  EXPECT_NEAR(ring.perimeter(), 8 * pi, 1e-13);
  EXPECT_NEAR(gxGenAnnulus(ring).perimeter(), 8 * pi, 1e-12);
  EXPECT_EQ(ring.boundingBox(), gxRect({-2.5, -3}, {6, 6}));
  EXPECT_TRUE(ring.isMultipleContours());
  gxShapeInfo const info(ring);
  EXPECT_LE(ring.perimPointAndTangent(info, 6 * pi + 1e-9).point.distance({1, 0}), 1e-8);  // the outer circle is first
  EXPECT_THROW(ring.subShape(info, 1, 7 * pi), gxShapesError::BadGeom);
  EXPECT_FALSE(ring.degen());
  EXPECT_TRUE(gxAnnulus().degen());
  EXPECT_EQ(gxAnnulus().perimeter(), 0.0);
  EXPECT_EQ(gxGenAnnulus(ring).innerRect().round(), gxVector<2>(1, 1));
  EXPECT_TRUE(*throughArchive(ring.clone()) == ring);
  EXPECT_TRUE(*throughArchive(ring.map(sheared).clone()) == ring.map(sheared));
  EXPECT_FALSE(gxAnnulus(ring.outerCircle(), ring.innerCircle()) == ring);
}

TEST(AffineRectangle, RotationsAndLengthsGiveTheCornersAndComeBack)
{
  gxAffineRectangle const upright({10, 20}, 6, 4, gxRadian(), gxRadian());
  EXPECT_EQ(upright, gxAffineRectangle({7, 18}, {13, 18}, {7, 22}));
  EXPECT_EQ(upright.cornerPopp(), gxVector<2>(13, 22));

  Random random(4);
  for (int n = 0; n < 200; ++n) {
    gxVector<2> const center = random.point(50);
    double const x = random.between(0.1, 9), y = random.between(0.1, 9), xRot = random.between(-3.1, 3.1),
                 yRot = random.between(-3.1, 3.1);
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

TEST(LineSegSet, ConnectedIsOnePathAndOthersAreNone)
{
  std::vector<gxLineSeg> const path = {{{0, 0}, {3, 0}}, {{3, 0}, {3, 4}}};
  std::vector<gxLineSeg> const apart = {{{0, 0}, {3, 0}}, {{3, 1}, {3, 4}}};
  EXPECT_THROW(gxLineSegSet(apart, true), gxShapesError::BadGeom);
  gxLineSegSet connected(path, true);
  EXPECT_THROW(connected.segments(apart), gxShapesError::BadGeom);
  EXPECT_EQ(connected.segments(), path);
  EXPECT_TRUE(connected.isOpenContour());
  EXPECT_NEAR(connected.tangentRotation().value(), pi / 2, 1e-15);

  gxLineSegSet const set(apart);
  EXPECT_FALSE(set.isOpenContour() || set.isRegion());
  EXPECT_THROW(set.startPoint(), gxShapesError::NotOpenContour);
  EXPECT_THROW(set.within({0, 0}), gxShapesError::NotRegion);
  EXPECT_EQ(set.perimeter(), 6.0);
  EXPECT_EQ(set.nearestPoint({3, 0.75}), gxVector<2>(3, 1));
  EXPECT_EQ(set.boundingBox(), gxRect({0, 0}, {3, 4}));
  gxShape::gxSampleResult result;
  set.sample({1.0, 0.0, 100, false, false}, result);
  EXPECT_EQ(result.contourStarts(), (std::vector<std::size_t>{0, 4}));
  EXPECT_EQ(result.positions().size(), 8u);
  EXPECT_TRUE(*set.reverse()->reverse() == set);
  EXPECT_TRUE(*set.mapShape(sheared) == set.map(sheared));
  EXPECT_TRUE(*throughArchive(set.clone()) == set);
  EXPECT_TRUE(*throughArchive(connected.clone()) == connected);
  EXPECT_FALSE(gxLineSegSet(path) == connected);

  std::string bytes = archivedBytes(connected);
  bytes.back() = '\x41';  // another end of the last segment is no harm, another start is
  EXPECT_NO_THROW(loadArchived(bytes, connected));
  bytes[bytes.size() - 17] = '\x41';
  gxLineSegSet const before = connected;
  EXPECT_THROW(loadArchived(bytes, connected), gxArchive::Errors);
  EXPECT_EQ(connected, before);

  gxLineSegSet const none({}, true);
  EXPECT_TRUE(none.isEmpty());
  EXPECT_FALSE(none.isOpenContour());
  EXPECT_THROW(none.boundingBox(), gxShapesError::EmptyShape);
  EXPECT_THROW(none.nearestPoint({0, 0}), gxShapesError::EmptyShape);
}

TEST(PlainValues, PointsCrossesAndAxes)
{
  gxPointSet const points({{1, 5}, {-2, 3}, {4, 4}});
  EXPECT_EQ(points.boundingBox(), gxRect({-2, 3}, {6, 2}));
  EXPECT_EQ(points.distanceToPoint({4, 1}), 3.0);
  EXPECT_EQ(points.map(sheared)[1], sheared * points[1]);
  EXPECT_EQ(throughArchive(points), points);
  EXPECT_THROW(gxPointSet().boundingBox(), gxShapesError::EmptyShape);
  EXPECT_THROW(gxPointSet().distanceToPoint({0, 0}), gxShapesError::EmptyShape);
  EXPECT_EQ(throughArchive(gxPointSet()).size(), 0);

  gxCross const cross({10, 20}, gxRadian(pi / 4), 7);
  double const reach = 7 / std::numbers::sqrt2;
  EXPECT_LE(cross.boundingBox().lowCorner().distance({10 - reach, 20 - reach}), 1e-14);
  EXPECT_LE(cross.boundingBox().highCorner().distance({10 + reach, 20 + reach}), 1e-14);
  EXPECT_NEAR(cross.distToPoint({13, 20}), 3 / std::numbers::sqrt2, 1e-14);
  EXPECT_NEAR(cross.distToPoint({10 + 2 * reach, 20 - 2 * reach}), 7.0, 1e-14);
  gxCross const image = cross.map(gxXform<2>(gxMatrix<2>(0, -3, 3, 0), {1, 1}));
  EXPECT_EQ(image.center(), gxVector<2>(-59, 31));
  EXPECT_NEAR(image.angle().value(), 3 * pi / 4, 1e-15);
  EXPECT_EQ(image.armLength(), 7);
  EXPECT_EQ(gxCross({}, gxRadian(), (1L << 32) + 5).armLength(), 5);  // 32 bits are kept
  EXPECT_EQ(throughArchive(cross), cross);
  EXPECT_EQ(gxCross().distToPoint({3, 4}), 5.0);

  gxCoordAxes const axes({1, 1}, {4, 1}, {1, 3});
  EXPECT_EQ(axes.xAxis(), gxLineSeg({1, 1}, {4, 1}));
  EXPECT_EQ(axes.yAxis(), gxLineSeg({1, 1}, {1, 3}));
  EXPECT_EQ(axes.boundingBox(), gxRect({1, 1}, {3, 2}));
  EXPECT_EQ(axes.distanceToPoint({0, 2}), 1.0);
  EXPECT_EQ(axes.distanceToPoint({5, 1}), 1.0);
  EXPECT_FALSE(axes.degen());
  EXPECT_TRUE(gxCoordAxes({1, 1}, {4, 1}, {-2, 1}).degen());
  EXPECT_TRUE(gxCoordAxes({1, 1}, {1, 1}, {1, 3}).degen());
  EXPECT_EQ(axes.map(sheared).yAxis(), axes.yAxis().map(sheared));
  EXPECT_EQ(throughArchive(axes), axes);
}

/// A client's shape: a square on its corner, of bytes of its own.
class Diamond : public gxGenShape
{
 public:
  static constexpr tagShapeID id = {0xD1A30, 7, 9, {1, 2, 3, 4, 5, 6, 7, 8}};

  tagShapeID shapeID() const override { return id; }
  gxGenShape *map(gxXform<2> const &xform) const override
  {
    auto *const image = new Diamond;
    image->center = xform * center;
    return image;
  }
  gxRect boundingBox() const override { return {center - gxVector<2>(1, 1), {2, 2}}; }
  unsigned char *save(long &size) const override
  {
    size = 2;
    return new unsigned char[2]{static_cast<unsigned char>(center.x()), static_cast<unsigned char>(center.y())};
  }
  void load(unsigned char const *bytes, long size) override
  {
    if (size == 2)
      center = {static_cast<double>(bytes[0]), static_cast<double>(bytes[1])};
  }

  gxVector<2> center;
};

TEST(GenShape, TheFactoryKnowsClassesAsLongAsTheyAreRegistered)
{
  EXPECT_THROW(gxGenShape::newGenShape(Diamond::id), gxShapesError::BadGeom);
  {
    gxGenShape::Registration const entry(Diamond::id, [] { return static_cast<gxGenShape *>(new Diamond); });
    Diamond original;
    original.center = {3, 4};
    std::unique_ptr<gxGenShape> const image(original.map(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), {1, 1})));
    long size = 0;
    std::unique_ptr<unsigned char[]> const bytes(image->save(size));
    std::unique_ptr<gxGenShape> const again(gxGenShape::newGenShape(image->shapeID()));
    again->load(bytes.get(), size);
    EXPECT_EQ(again->boundingBox(), gxRect({6, 4}, {2, 2}));
    gxGenShape::tagShapeID other = Diamond::id;
    other.data4[7] = 9;
    EXPECT_THROW(gxGenShape::newGenShape(other), gxShapesError::BadGeom);
  }
  EXPECT_THROW(gxGenShape::newGenShape(Diamond::id), gxShapesError::BadGeom);
}

TEST(MappedShape, KeepsTheInnermostShapeAndAllTransforms)
{
  gxCircle const circle({1, 0}, 2);
  gxMappedShape const once(circle, sheared);
  gxMappedShape const twice(once, mirror);
  EXPECT_TRUE(*twice.underlyingShape() == circle);
  ASSERT_TRUE(twice.overallMapXform()->isLinear());
  gxXform<2> const all = mirror * sheared;
  EXPECT_TRUE(twice.overallMapXform()->linearXform({}).xform() == all);
  EXPECT_TRUE(*once.mapShape(mirror) == twice);
  gxPtrHandle<gxShape> const image = circle.mapShape(all);
  EXPECT_EQ(twice.boundingBox(), image->boundingBox());
  EXPECT_EQ(twice.perimeter(), image->perimeter());
  EXPECT_EQ(twice.isRightHanded(), image->isRightHanded());
  EXPECT_TRUE(*twice.decompose() == *image->decompose());
  Random random(2);
  for (int i = 0; i < 50; ++i) {
    gxVector<2> const p = random.point(6.0);
    EXPECT_EQ(twice.nearestPoint(p), image->nearestPoint(p));
    EXPECT_EQ(twice.within(p), image->within(p));
  }
  EXPECT_TRUE(*throughArchive(twice.clone()) == twice);
  EXPECT_FALSE(twice == once);
  EXPECT_NE(twice.reverse()->isRightHanded(), twice.isRightHanded());

  gxMappedShape const line(gxLine(gxVector<2>(1, 0), gxVector<2>(0, 2)), mirror);
  EXPECT_FALSE(line.isFinite());
  EXPECT_EQ(line.nearestPoint({5, 7}), gxVector<2>(5, 2));
  EXPECT_THROW(line.boundingBox(), gxShapesError::InfiniteShape);

  gxMappedShape const nothing;
  EXPECT_THROW(nothing.boundingBox(), gxBadPointer);
  EXPECT_THROW(nothing.isEmpty(), gxBadPointer);
  EXPECT_THROW(gxMappedShape(nullptr, once.overallMapXform()), gxBadPointer);
  EXPECT_THROW(gxMappedShape(once.underlyingShape(), nullptr), gxBadPointer);
  EXPECT_THROW(gxMappedShape(nothing, mirror), gxBadPointer);
  EXPECT_TRUE(*throughArchive(nothing.clone()) == nothing);
}

TEST(MappedShape, ThroughALensIsTheImageOfEachPoint)
{
  gx2XformLens const lens({0.5, -0.25}, 5.0, -0.12, 0.02, -0.001);
  auto *const slice = new gxContourTree(true);
  slice->addChild(gxEllipseArc2(gxEllipse2({2, 2}, gxRadian(), {0, 0}), gxRadian(0), gxRadian(1)));
  slice->addChild(gxLineSeg({2 * std::cos(1.0), 2 * std::sin(1.0)}, {0, 0}));
  Chain sector = alongCurve([](double u) { return gxVector<2>(2 * std::cos(u), 2 * std::sin(u)); }, 4000);
  for (gxVector<2> const &p : {gxVector<2>(0, 0), gxVector<2>(2, 0)})
    sector.push_back(p);
  auto const circle = [](double u) { return gxVector<2>(1 + 3 * std::cos(2 * pi * u), -1 + 3 * std::sin(2 * pi * u)); };
  gxBezierCurve const wave({{0, 0}, {1, 3}, {2, -3}, {3, 0}}, {1, 2, 1, 1});
  struct Row {
    gxPtrHandle_const<gxShape> shape;
    Chain chain;
  };
  std::vector<Row> const rows = {
      {gxPtrHandle_const<gxShape>(slice), divided(sector, 1e-3)},
      {gxPtrHandle_const<gxShape>(new gxCircle({1, -1}, 3)), alongCurve(circle, 8000)},
      {gxPtrHandle_const<gxShape>(new gxPolyline({{-3, -3}, {4, -2}, {1, 4}}, true)),
       divided({{-3, -3}, {4, -2}, {1, 4}, {-3, -3}}, 1e-3)},
      {wave.clone(), alongCurve([&](double u) { return wave.point(u); }, 8000)},
  };
  Random random(9);
  for (Row const &row : rows) {
    gxMappedShape const image(*row.shape, lens);
    Chain chain = row.chain;
    for (gxVector<2> &p : chain)
      p = lens.mapPoint(p);
    Box const expected = box(chain);
    gxRect const found = image.boundingBox();
    EXPECT_LE(found.lowCorner().distance({expected.left, expected.low}), 1e-6);
    EXPECT_LE(found.highCorner().distance({expected.right, expected.high}), 1e-6);
    EXPECT_NEAR(image.perimeter(), length(chain), 1e-5);
    EXPECT_EQ(image.isRegion(), row.shape->isRegion());
    for (int i = 0; i < 12; ++i) {
      gxVector<2> const p = random.point(4.0);
      EXPECT_NEAR(image.distanceToPoint(p), distance(chain, p), 1e-6) << p;
      if (image.isRegion() && distance(chain, p) > 1e-6) {
        EXPECT_EQ(image.within(p), isInside(chain, p)) << p;
        EXPECT_EQ(image.gxShape::within(p), isInside(chain, p)) << p;
      }
    }
    // the points of the outline are images, as near as promised
    gxShapeInfo const info(image);
    for (double share = 0.03; share < 1.0; share += 0.11) {
      gxVector<2> const p = image.perimPointAndTangent(info, share * info.perimeter()).point;
      EXPECT_LE(row.shape->distanceToPoint(lens.invMapPoint(p)), 20 * gxMappedShape::relativeTolerance);
    }
    // a linear transform on top
    gxPtrHandle<gxShape> const further = image.mapShape(sheared);
    EXPECT_NEAR(further->perimeter(), length(mapped(chain, sheared)), 1e-5);
    EXPECT_TRUE(*throughArchive(image.clone()) == image);
    EXPECT_TRUE(*throughArchive(further) == *further);
  }
  // sets and trees of regions are bent part by part
  gxRegionTree target(gxPtrHandle_const<gxShape>(new gxCircle({1, -1}, 3)));
  gxRegionTree hole(gxPtrHandle_const<gxShape>(new gxCircle({1, -1}, 2)));
  hole.addRegion(gxPtrHandle_const<gxShape>(new gxCircle({1, -1}, 1)));
  target.addRegion(hole);
  gxMappedShape const rings(target, lens);
  gxPtrHandle<gxShape> const parts = rings.decompose();
  EXPECT_TRUE(parts->isDecomposed());
  gxShapeTree const set({gxPtrHandle_const<gxShape>(new gx2Point({3, 3})), target.clone()});
  gxMappedShape const bentSet(set, lens);
  EXPECT_EQ(bentSet.nearestPoint({5, 5}), lens.mapPoint({3, 3}));
  for (int i = 0; i < 60; ++i) {
    gxVector<2> const p = random.point(4.0), image = lens.mapPoint(p);
    EXPECT_EQ(rings.within(image), target.within(p)) << p;
    EXPECT_EQ(parts->within(image), target.within(p)) << p;
  }
  gxShape::gxSampleResult result;
  bentSet.sample({0, 0.1, 1000, false, false}, result);
  EXPECT_EQ(result.contourStarts().size(), 4u);
  gxClipInfo info;
  gxPolyline const corner({{2, 2}, {9, 2}, {9, 9}, {2, 9}}, true);
  EXPECT_EQ(dynamic_cast<gxShapeTree const &>(*bentSet.clip(corner, info)).numChildren(), 1);
  EXPECT_TRUE(info.isCut() && !info.isOutside());

  gxMappedShape const point(gx2Point(gxVector<2>(3, 3)), lens);
  EXPECT_LE(point.distanceToPoint(lens.mapPoint({3, 3})), 1e-14);
  EXPECT_TRUE(*point.clip(corner, info) == point);
  EXPECT_FALSE(info.isCut() || info.isOutside());
  EXPECT_THROW(gxMappedShape(gxLine(gxVector<2>(1, 0), gxVector<2>(0, 2)), lens).perimeter(),
               gxShapesError::InfiniteShape);
}

TEST(Lens, InverseAndDerivativeAgreeWithTheMap)
{
  Random random(6);
  for (gx2XformLens const &lens :
       {gx2XformLens({1, 2}, 3, 0.2), gx2XformLens({1, 2}, 3, -0.2), gx2XformLens({-1, 0}, 10, -0.3, 0.2),
        gx2XformLens({0, 0}, 2, 0.4, -0.3, 0.05), gx2XformLens({0, 0}, 2, 0, 0, -0.01), gx2XformLens({4, 4}, 7, 0)}) {
    double const radius = std::fmin(lens.invertibleRadius(), 4 * lens.unit());
    EXPECT_LE(lens.invMapPoint(lens.center()).distance(lens.center()), 0.0);
    for (int i = 0; i < 100; ++i) {
      gxVector<2> const p =
          lens.center() + gxVector<2>(random.between(0, 0.999) * radius, gxRadian(random.between(0, 2 * pi)));
      gxVector<2> const image = lens.mapPoint(p);
      EXPECT_LE(lens.mapPoint(lens.invMapPoint(image)).distance(image), 1e-13 * (1 + image.len()));
      gxXform<2> const linear = lens.linearXform(p).xform();
      EXPECT_LE((linear * p).distance(image), 1e-13 * (1 + image.len()));
      constexpr double step = 1e-6;
      for (gxVector<2> const &d : {gxVector<2>(step, 0), gxVector<2>(0, step)}) {
        gxVector<2> const slope = (lens.mapPoint(p + d) - lens.mapPoint(p - d)) * (0.5 / step);
        EXPECT_LE(linear.mapVector(d * (1 / step)).distance(slope), 1e-7 * (1 + slope.len()));
      }
    }
  }
  EXPECT_TRUE(gx2XformLens().isLinear());
  EXPECT_FALSE(gx2XformLens({}, 1, 0, 0, 1e-9).isLinear());
  EXPECT_EQ(throughArchive(gx2XformLens({1, 2}, 3, 4, 5, 6)), gx2XformLens({1, 2}, 3, 4, 5, 6));
}

TEST(Lens, HasNoInverseBeyondItsFold)
{
  // r (1 - r^2 / 3) grows up to r = 1, where it is 2/3
  gx2XformLens const barrel({0, 0}, 1, -1.0 / 3.0);
  EXPECT_NEAR(barrel.invertibleRadius(), 1.0, 1e-15);
  EXPECT_NEAR(barrel.invMapPoint({2.0 / 3.0 - 1e-9, 0}).x(), 1.0, 1e-4);
  EXPECT_THROW(barrel.invMapPoint({0.667, 0}), gxMathError::NoConvergence);
  EXPECT_FALSE(gxMappedShape(gxCircle({0, 0}, 0.5), barrel).within({5, 5}));
  // grows again behind a dip: 1 + 3 k1 x + 5 k2 x^2 with roots x = 1 and x = 2
  gx2XformLens const dip({0, 0}, 2, -0.5, 0.1);
  EXPECT_NEAR(dip.invertibleRadius(), 2.0, 1e-12);
  EXPECT_EQ(gx2XformLens({}, 1, 0.5, -0.1, 0.1).invertibleRadius(), std::numeric_limits<double>::infinity());
  gx2XformLens const strong({0, 0}, 1e-3, 1, 1, 1);
  for (double const far : {1e-200, 1.0, 1e100, 1e300})
    EXPECT_NEAR(strong.mapPoint(strong.invMapPoint({far, 0})).x() / far, 1.0, 1e-12) << far;
  double const inf = std::numeric_limits<double>::infinity();
  EXPECT_THROW(strong.invMapPoint({inf, 0}), gxMathError::NoConvergence);
  EXPECT_THROW(strong.invMapPoint({std::nan(""), 0}), gxMathError::NoConvergence);
  EXPECT_THROW(gx2XformLens({0, 0}, 0, 1), gxShapesError::BadParams);
  EXPECT_THROW(gx2XformLens({0, 0}, 1, std::nan("")), gxShapesError::BadParams);
  EXPECT_THROW(gx2XformLens({inf, 0}, 1, 1), gxShapesError::BadParams);
}

TEST(Transforms, AreEqualByValue)
{
  gxPtrHandle_const<gx2XformBase> const lens(new gx2XformLens({1, 2}, 3, 0.1)), linear(new gx2XformLinear(sheared));
  auto const composed = gx2XformBase::compose(lens, linear);
  EXPECT_TRUE(*composed == *gx2XformBase::compose(lens->clone(), linear->clone()));
  EXPECT_FALSE(*composed == *gx2XformBase::compose(linear, lens));
  EXPECT_FALSE(*lens == *linear);
  EXPECT_LE(composed->invMapPoint(composed->mapPoint({1, 1})).distance({1, 1}), 1e-13);
}

}  // namespace
