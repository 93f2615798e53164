// Shapes in archives: every class comes back equal, alone and shared in trees; what no constructor would accept is
// refused while loading.

#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "foundation/xformbase.h"
#include "tests/support/shapes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

namespace
{

using Shape = gxPtrHandle_const<gxShape>;

template <class... T>
std::string stored(T &...values)
{
  std::ostringstream os;
  {
    gxStoringArchive archive(os);
    (archive || ... || values);
  }
  return os.str();
}

template <class... T>
void load(std::string const &bytes, T &...values)
{
  std::istringstream is(bytes);
  gxLoadingArchive archive(is);
  (archive || ... || values);
}

std::vector<Shape> oneOfEach()
{
  gxEllipse reversed({1, 2}, {3, 1}, gxRadian(0.5));
  reversed.isReversed(true);
  gxEllipseAnnulus const ring(reversed.map(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), {0, 1})), gxEllipse());
  gxEllipse2 const ellipse({3, 1}, gxRadian(0.5), {1, 1}, false, gxRadian(0.8));
  Shape const circle = new gxCircle({1, 2}, 3);
  gxRegionTree *const region = new gxRegionTree(circle);
  region->addRegion(Shape(new gxCircle({1, 2}, 1)));
  return {
      circle,
      new gx2Point({1, 2}),
      new gxLineSeg({1, 2}, {3, 4}),
      new gxLine({1, 2}, {3, 4}),
      new gxFLine(gxDegree(30), {3, 4}),
      new gxRect,
      new gxRect({1, 2}, {-3, 4}),
      new gxGenRect({1, 2}, gxMatrix<2>(1, 2, 3, 4), {0.25, 1}),
      new gxAffineRectangle({1, 2}, {3, 5}, {-1, 4}),
      ellipse.clone(),
      new gxEllipseArc2(ellipse, gxRadian(1), gxRadian(-2)),
      ring.clone(),
      new gxEllipseAnnulusSection(ring, gxRadian(1), gxRadian(2), false, true, false),
      new gxPolyline({{1, 2}, {3, 4}, {5, 7}}, true),
      new gxShapeTree({circle, circle, Shape(new gxShapeTree)}),
      new gxContourTree({Shape(new gxLineSeg({0, 0}, {1, 1}))}, true),
      region,
      new gxRegionTree,
  };
}

TEST(ShapeArchive, EveryClassComesBackEqualBehindAPointerAndInTheShortForm)
{
  for (Shape const &shape : oneOfEach()) {
    gxShape const &object = *shape;
    SCOPED_TRACE(typeid(object).name());
    Shape out = shape, in;
    std::string const bytes = stored(out);
    load(bytes, in);
    ASSERT_FALSE(in.isNull());
    EXPECT_TRUE(*in == *shape);
    EXPECT_NE(in.rep(), shape.rep());
    EXPECT_EQ(stored(in), bytes);
    for (Shape const &other : oneOfEach())
      EXPECT_EQ(*in == *other, *shape == *other);
  }
}

TEST(ShapeArchive, SharedChildrenStayShared)
{
  Shape const leaf = new gxCircle({1, 2}, 3);
  Shape out = new gxShapeTree({leaf, Shape(new gxShapeTree({leaf}))}), in;
  std::string const bytes = stored(out);
  load(bytes, in);
  auto const &tree = dynamic_cast<gxShapeTree const &>(*in);
  EXPECT_EQ(tree.child(0), dynamic_cast<gxShapeTree const &>(*tree.child(1)).child(0));
}

TEST(ShapeArchive, ShortFormHoldsVersionAndFieldsAlone)
{
  unsigned char version = 0;
  gxVector<2> start(1, 2), end(3, 4);
  std::istringstream is(stored(version, start, end));
  gxLoadingArchive archive(is);
  gxLineSeg segment;
  EXPECT_TRUE(segment.loadSimple(archive));
  EXPECT_EQ(segment, gxLineSeg(start, end));
  version = 1;
  std::istringstream later(stored(version, start, end));
  gxLoadingArchive laterArchive(later);
  EXPECT_THROW(segment.loadSimple(laterArchive), gxArchive::UnknownVersion);
}

TEST(ShapeArchive, ShortFormIsAChangeThatAStoringArchiveHearsOf)
{
  unsigned char version = 0;
  gxVector<2> start(5, 6), end(7, 8);
  std::string const shortForm = stored(version, start, end);
  gxPtrHandle<gxLineSeg> const segment = new gxLineSeg({1, 2}, {3, 4});
  std::ostringstream os;
  {
    gxStoringArchive out(os);
    Shape before = segment;
    out || before;
    std::istringstream is(shortForm);
    gxLoadingArchive in(is);
    EXPECT_TRUE(segment->loadSimple(in));
    Shape after = segment;
    out || after;
  }
  Shape before, after;
  load(os.str(), before, after);
  EXPECT_TRUE(*before == gxLineSeg({1, 2}, {3, 4}));
  EXPECT_TRUE(*after == gxLineSeg(start, end));  // not the first one again
}

TEST(ShapeArchive, PlainValuesComeBackEqual)
{
  gxPoint point(1, 2), pointIn;
  gxEllipse ellipse = gxEllipse({1, 2}, {3, 1}, gxRadian(0.5)).map(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), {0, 1}));
  gxEllipse ellipseIn;
  EXPECT_EQ(gxEllipse(ellipse.geom(), ellipse.phase()), ellipse);  // the record and the phase are all there is
  gxEllipseArc arc(ellipse, gxRadian(2), gxRadian(1)), arcIn;
  gxPolygon polygon({{1, 2}, {3, 4}, {5, 7}}, gxPolygon::winding), polygonIn;
  load(stored(point, ellipse, arc, polygon), pointIn, ellipseIn, arcIn, polygonIn);
  EXPECT_EQ(pointIn, point);
  EXPECT_EQ(ellipseIn, ellipse);
  EXPECT_EQ(arcIn, arc);
  EXPECT_EQ(polygonIn, polygon);
}

/// The stored bytes with one double put in place of another.
std::string withNumber(std::string bytes, double from, double to)
{
  char pattern[8], replacement[8];
  std::memcpy(pattern, &from, 8);
  std::memcpy(replacement, &to, 8);
  std::size_t const at = bytes.find(std::string(pattern, 8));
  EXPECT_NE(at, std::string::npos);
  return bytes.replace(at, 8, std::string(replacement, 8));
}

TEST(ShapeArchive, RefusesWhatNoConstructorWouldAccept)
{
  auto const expectRefusal = [](auto value, double from, double to, auto target) {
    auto const before = target;
    EXPECT_THROW(load(withNumber(stored(value), from, to), target), gxArchive::Errors);
    EXPECT_EQ(target, before);
  };
  expectRefusal(gxCircle({1, 2}, 77), 77, -77, gxCircle({3, 4}, 5));
  expectRefusal(gxEllipse2({77, 1}, gxRadian(2), {1, 2}, false, gxRadian(1)), 77, -77, gxEllipse2());
  expectRefusal(gxGenRect({1, 2}, gxMatrix<2>(2, 1, 1, 3), {0.77, 0.5}), 0.77, 1.5, gxGenRect());
  expectRefusal(gxFLine(gxDegree(0), {3, 4}), 1, 0, gxFLine(gxDegree(90), {5, 6}));
  gxEllipse legacy({0, 0}, {77, 1}, gxRadian());
  EXPECT_THROW(load(withNumber(stored(legacy), 77, -77), legacy), gxArchive::Errors);
}

/// A tree that stores a ring: its child is the tree itself.
TEST(ShapeArchive, RefusesAShapeThatHoldsItself)
{
  gxPtrHandle<gxShapeTree> const tree = new gxShapeTree;
  gxPtrHandle<gxShapeTree> const inner = new gxShapeTree;
  tree->addChild(Shape(inner));
  inner->addChild(Shape(tree));
  Shape out(tree), in;
  std::string const bytes = stored(out);
  EXPECT_THROW(load(bytes, in), gxArchive::Errors);
  gxPtrHandle<gxShapeTree>(inner)->clearChildren();  // let go of the ring
}

TEST(ShapeArchive, TransformsKeepTheirKind)
{
  gxPtrHandle_const<gx2XformBase> linear = new gx2XformLinear(gxMatrix<2>(1, 2, 3, 4), {5, 6}), linearIn;
  gxPtrHandle_const<gx2XformBase> composed = new gx2XformComposed(linear, linear), composedIn;
  load(stored(linear, composed), linearIn, composedIn);
  EXPECT_EQ(dynamic_cast<gx2XformLinear const &>(*linearIn).xform(), linear->linearXform({}).xform());
  auto const &pair = dynamic_cast<gx2XformComposed const &>(*composedIn);
  EXPECT_EQ(pair.outer(), pair.inner());
  EXPECT_EQ(pair.outer(), linearIn);
  EXPECT_EQ(pair.mapPoint({1, 1}), composed->mapPoint({1, 1}));
}

/// Whatever came before it does not matter.
class Anchor : public gx2XformLinear
{
 public:
  Anchor() : gx2XformLinear(gxMatrix<2>(0, 0, 0, 0), {7, 8}) {}

 protected:
  gxPtrHandle_const<gx2XformBase> product_(gx2XformBase const &) const override { return clone(); }
};

TEST(Transforms, ComposeLinearOnesIntoOneAndTreatNullAsTheIdentity)
{
  gxPtrHandle_const<gx2XformBase> const turn = new gx2XformLinear(gxMatrix<2>(0, -1, 1, 0), {1, 0});
  gxPtrHandle_const<gx2XformBase> const move = new gx2XformLinear(gxMatrix<2>(), {0, 5});
  gxPtrHandle_const<gx2XformBase> const both = gx2XformBase::compose(turn, move);
  EXPECT_TRUE(both->isLinear());
  EXPECT_EQ(both->mapPoint({2, 3}), turn->mapPoint(move->mapPoint({2, 3})));
  EXPECT_EQ(both->invMapPoint(both->mapPoint({2, 3})), gxVector<2>(2, 3));
  EXPECT_EQ(gx2XformBase::compose(nullptr, move), move);
  EXPECT_EQ(gx2XformBase::compose(turn, nullptr), turn);
  EXPECT_TRUE(gx2XformBase::compose(nullptr, nullptr).isNull());
  EXPECT_THROW(gx2XformComposed(turn, nullptr), gxBadPointer);
  gxPtrHandle_const<gx2XformBase> const lens = new gx2XformLens({0, 0}, 5, 0.1);
  EXPECT_FALSE(gx2XformBase::compose(turn, lens)->isLinear());
  EXPECT_TRUE(gx2XformBase::compose(new Anchor, lens)->isLinear());  // a transform may know its own products
}

}  // namespace
