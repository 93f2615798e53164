#include "dispc/graphic.h"

#include "dispc/glist.h"
#include "dispc/uierror.h"
#include "foundation/archive.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"
#include "tests/support/allocations.h"
#include "tests/support/archived.h"
#include "tests/support/bytes.h"
#include "tests/support/graphics.h"
#include "tests/support/logscope.h"

#include <gmock/gmock.h>

#include <cmath>

namespace
{

using testing::HasSubstr;

std::string stored(gxPtrHandle<gxGraphic> const &graphic)
{
  std::ostringstream os;
  gxStoringArchive out(os);
  out << graphic;
  out.close();
  return os.str();
}

gxPtrHandle<gxGraphic> loaded(std::string const &bytes)
{
  std::istringstream is(bytes);
  gxPtrHandle<gxGraphic> graphic;
  gxLoadingArchive(is) || graphic;
  return graphic;
}

// Everything that a drawing does: the calls of the scope, and the record.
struct Trace {
  std::vector<std::string> calls;
  std::vector<unsigned char> record;
  friend bool operator==(Trace const &, Trace const &) = default;
};

template <class Draw>
Trace traceOf(Draw draw)
{
  ScopeLog log;
  LogScope image(log, "i", gxPair<long>(100, 80)), over(log, "o", gxPair<long>(100, 80));
  gxUITablet tablet(&image, &over);
  tablet.visible(true);
  tablet.baseMap(gxXform<2>(gxMatrix<2>(3, 1, 0, 4), gxVector<2>(10, 0)));
  tablet.recordOn() = true;
  log.take();
  draw(tablet, gxUITablet::overlay);
  return {log.take(), bytesOf(tablet.sketch())};
}

Trace traceOf(gxGraphic const &graphic)
{
  return traceOf([&](gxUITablet &tablet, gxUITablet::Layers layer) { tablet.draw(graphic, layer); });
}

class EveryGraphic : public testing::TestWithParam<GraphicCase>
{
};

TEST_P(EveryGraphic, DrawsAsTheTabletDraws)
{
  Trace const direct = traceOf(GetParam().draw);
  EXPECT_EQ(traceOf(*GetParam().graphic), direct);
  // An endless line with a direction has no operation of the tablet: the one for all shapes leaves it out.
  EXPECT_EQ(direct.record.empty(), std::string(GetParam().name) == "gxGraphicSimple<gxFLine>");
}

TEST_P(EveryGraphic, ComesBackFromAnArchiveAndSharesNothingWithItsClone)
{
  gxPtrHandle<gxGraphic> const graphic = GetParam().graphic;
  std::string const bytes = stored(graphic);
  EXPECT_THAT(bytes, HasSubstr(GetParam().name));
  gxPtrHandle<gxGraphic> const back = loaded(bytes);
  ASSERT_FALSE(back.isNull());
  EXPECT_EQ(stored(back), bytes);
  EXPECT_EQ(traceOf(*back), traceOf(*graphic));

  gxPtrHandle<gxGraphic> const copy = graphic->clone();
  EXPECT_EQ(stored(copy), bytes);
  copy->color(gxColor::magentaColor());
  EXPECT_NE(stored(copy), bytes);
  EXPECT_EQ(stored(graphic), bytes);
}

TEST_P(EveryGraphic, ItsImageWearsItsPropertiesAndLiesWhereItsPointsGo)
{
  gxPtrHandle<gxGraphic> const graphic = GetParam().graphic;
  graphic->props().penWidth(5);
  gxXform<2> const turn(gxMatrix<2>(0, -2, 2, 0), gxVector<2>(30, 40));
  gxPtrHandle<gxGraphic> const image = graphic->map(turn);
  EXPECT_THAT(stored(image), HasSubstr(GetParam().mapped));
  EXPECT_EQ(image->props(), graphic->props());
  EXPECT_EQ(graphic->props().penWidth(), 5);

  // A similarity scales distances, except those told in pels or not at all.
  gxVector<2> const p(-7, 11);
  if (std::string(GetParam().name) == "gxGraphicText") {
    EXPECT_EQ(image->distToPoint(p), 1e308);
  } else if (std::string(GetParam().name) != "gxGraphicCross") {
    EXPECT_NEAR(image->distToPoint(turn.mapPoint(p)), 2.0 * graphic->distToPoint(p), 1e-9);
  }
}

// A graphic is one piece of memory; only items and groups that hold lists have more.
TEST_P(EveryGraphic, IsMadeInOneAllocation)
{
  gxXform<2> const turn(gxMatrix<2>(0, -2, 2, 0), gxVector<2>(30, 40));
  std::string const name = GetParam().name;
  bool const isList = name.find("Poly") + 1 || name.find("Set") + 1 || name.find("Spline") + 1 ||
                      name.find("Bezier") + 1 || name.find("Wireframe") + 1 || name == "gxGraphicGroup";
  long const before = allocations;
  gxPtrHandle<gxGraphic> const copy = GetParam().graphic->clone();
  long const between = allocations;
  gxPtrHandle<gxGraphic> const image = GetParam().graphic->map(turn);
  if (!isList) {
    EXPECT_EQ(between - before, 1);
    EXPECT_EQ(allocations - between, 1);
  }
}

// A version that no class knows is refused, at whichever of the levels it stands.
TEST_P(EveryGraphic, RefusesVersionsOfTheFuture)
{
  std::string const bytes = stored(GetParam().graphic);
  int refused = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::string bad = bytes;
    bad[i] = '\x7e';
    try {
      loaded(bad);
    } catch (gxArchive::UnknownVersion const &) {
      ++refused;
    } catch (gxArchive::Errors const &) {  // names, counts and values have errors of their own
    } catch (gxException const &) {
    }
  }
  EXPECT_GE(refused, 3);
}

INSTANTIATE_TEST_SUITE_P(Classes, EveryGraphic, testing::ValuesIn(allGraphics()),
                         [](testing::TestParamInfo<GraphicCase> const &row) {
                           std::string name = row.param.name;
                           std::replace_if(
                               name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
                           return name;
                         });

// Archives of older releases: the level of gxGraphic held a color only, and what the properties hold now stood behind.

template <class T>
std::string itemBytes(T item)
{
  return archivedBytes(item);
}

std::string const oldGraphic = bytesOf({0}) + archivedBytes(gxColor(gxColor::redColor()));

TEST(OldGraphics, LoadWithWhatTheyKnew)
{
  gxGraphicProps const red(gxColor::redColor(), 1, gxGraphicProps::penSolid, false);
  gxGraphicSimple<gxLineSeg> line(gxLineSeg(), broadPen());
  loadArchived(bytesOf({0, 0}) + oldGraphic + itemBytes(gxLineSeg({1, 2}, {3, 4})), line);
  EXPECT_EQ(line.item(), gxLineSeg({1, 2}, {3, 4}));
  EXPECT_EQ(line.props(), red);

  gxGraphicProps filled = red;
  filled.fill(true);
  gxGraphicWithFill<gxCircle, gxEllipse2> circle(gxCircle(), broadPen());
  loadArchived(bytesOf({0, 0}) + oldGraphic + itemBytes(gxCircle({1, 2}, 3)) + bytesOf({1}), circle);
  EXPECT_EQ(circle.item(), gxCircle({1, 2}, 3));
  EXPECT_EQ(circle.props(), filled);
  gxGraphicWithFill<gxEllipse, gxEllipse> ellipse;
  loadArchived(bytesOf({0, 0}) + oldGraphic + itemBytes(gxEllipse(gxCircle({1, 2}, 3))) + bytesOf({1}), ellipse);
  EXPECT_EQ(ellipse.props(), filled);

  gxGraphicProps backward = red;
  backward.arrowHeadForward(false);
  gxGraphicEllipseAnnulusSection section;
  loadArchived(bytesOf({0}) + oldGraphic + itemBytes(gxEllipseAnnulusSection()) + bytesOf({1, 0}), section);
  EXPECT_EQ(section.props(), backward);
}

// What the types alone cannot tell of single graphics.
TEST(Graphics, ExtentsAndDistancesOfTheSpecialOnes)
{
  gxGraphicText const text("x", {3, 4}, gxColor::redColor(), gxColor::blueColor(), gxUIFormat(), {5, 6});
  EXPECT_TRUE(text.encloseRect().isEmpty());
  EXPECT_FALSE(text.isNull());
  EXPECT_TRUE(gxGraphicText().isNull());
  gxPtrHandle<gxGraphic> const moved = text.map(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), gxVector<2>(1, 1)));
  EXPECT_EQ(dynamic_cast<gxGraphicText const &>(*moved).location(), gxPoint(7, 9));
  EXPECT_EQ(dynamic_cast<gxGraphicText const &>(*moved).offset(), gxVector<2>(5, 6));
  EXPECT_EQ(gxGraphicPointIcon({3, 4}, gxColor::redColor()).encloseRect(), gxRect({3, 4}, gxVector<2>(1, 1)));
  EXPECT_THROW(gxGraphicSimple<gxLine>().encloseRect(), gxShapesError::InfiniteShape);
  EXPECT_THROW(gxGraphicSimple<gxPolyline>().encloseRect(), gxShapesError::EmptyShape);
  EXPECT_THROW(gxGraphicSimple<gxFLine>().map(gxXform<2>(gxMatrix<2>(0, 0, 0, 0), {1, 1})),
               gxShapesError::DegenerateShape);
}

// Each shape of the factory, and the class of its graphic.
TEST(Factory, TheFirstFittingClassDecides)
{
  gxGraphicProps const props = broadPen();
  for (GraphicCase const &row : allGraphics()) {
    // Of the graphics of shapes, the factory makes the very same from the item.
    auto const check = [&]<class... G>() {
      auto const one = [&](auto const *graphic) {
        if (graphic) {
          EXPECT_EQ(stored(gxGraphic::makeShapeGraphic(graphic->item(), graphic->props())), stored(row.graphic)) << row;
        }
      };
      (one(dynamic_cast<G const *>(row.graphic.rep())), ...);
    };
    check.operator()<gxGraphicSimple<gx2Point>, gxGraphicSimple<gxLineSeg>, gxGraphicSimple<gxLine>,
                     gxGraphicSimple<gxFLine>, gxGraphicWithFill<gxRect, gxGenRect>,
                     gxGraphicWithFill<gxCircle, gxEllipse2>, gxGraphicWithFill<gxAnnulus, gxGenAnnulus>,
                     gxGraphicSimple<gxEllipseArc2>, gxGraphicWithFill<gxEllipse2, gxEllipse2>,
                     gxGraphicWithFill<gxGenRect, gxGenRect>, gxGraphicSimple<gxGenAnnulus>,
                     gxGraphicSimple<gxPolyline>, gxGraphicSimple<gxGenPoly>, gxGraphicSimple<gxAffineRectangle>,
                     gxGraphicSimple<gxBezierCurve>, gxGraphicSimple<gxDeBoorSpline>, gxGraphicSimple<gxInterpSpline>,
                     gxGraphicSimple<gxHermiteSpline>, gxGraphicWithFill<gxEllipseAnnulus, gxEllipseAnnulus>,
                     gxGraphicEllipseAnnulusSection, gxGraphicSimple<gxLineSegSet>>();
  }
  gxGenPoly const square(gxRect({1, 2}, gxVector<2>(5, 6)));
  EXPECT_EQ(stored(gxGraphic::makeShapeGraphic(gx2Wireframe(square), props)),
            stored(gxPtrHandle<gxGraphic>(new gxGraphicSimple<gxGenPoly>(square, props))));
  EXPECT_TRUE(gxGraphic::makeShapeGraphic(static_cast<gxShape const *>(nullptr), props).isNull());
  EXPECT_TRUE(gxGraphic::makeShapeGraphic(gxPtrHandle_const<gxShape>(), props).isNull());
}

// A shape that has no graphic.
class Plain : public gxLineSeg
{
};
class Stranger : public gxShape
{
 public:
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &) const override { return clone(); }
  friend bool operator==(Stranger const &, Stranger const &) { return true; }
  GX_SHAPE(Stranger);
};
GX_SHAPE_IMPL(Stranger, gxShape)
void Stranger::passFields_(gxArchive &) {}

TEST(Factory, TreesBecomeGroupsOfGroups)
{
  gxGraphicProps const props = broadPen();
  gxShapeTree inner, tree;
  inner.addChild(gxCircle({1, 2}, 3));
  tree.addChild(gxLineSeg({1, 2}, {3, 4}));
  tree.addChild(inner);
  gxPtrHandle<gxGraphic> const made = gxGraphic::makeShapeGraphic(tree, props);
  auto const &group = dynamic_cast<gxGraphicGroup const &>(*made);
  ASSERT_EQ(group.numItems(), 2);
  EXPECT_EQ(group.props(), props);
  auto const &part = dynamic_cast<gxGraphicGroup const &>(*group.item(1));
  EXPECT_EQ(part.item(0)->props(), props);
  EXPECT_EQ(part.item(0)->encloseRect(), gxRect({-2, -1}, gxVector<2>(6, 6)));

  gxPtrHandle<gxGraphic> const empty = gxGraphic::makeShapeGraphic(gxShapeTree(), props);
  EXPECT_TRUE(empty->isNull());
  EXPECT_EQ(empty->props(), props);

  inner.addChild(Stranger());
  tree.addChild(inner);
  try {
    gxGraphic::makeShapeGraphic(tree, props);
    FAIL();
  } catch (gxGraphic::NoGraphicForShape const &e) {
    EXPECT_EQ(e.message(), "");
    EXPECT_EQ(e.errorNumber(), 0x10009601);
  }
  // A class derived from one of the table counts as it.
  EXPECT_THAT(stored(gxGraphic::makeShapeGraphic(Plain(), props)), HasSubstr("gxGraphicSimple<gxLineSeg>"));
}

}  // namespace
