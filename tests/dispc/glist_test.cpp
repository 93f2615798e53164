#include "dispc/glist.h"

#include "dispc/graphic_flat.h"
#include "dispc/graphic_hit.h"
#include "foundation/archive.h"
#include "foundation/failure.h"
#include "foundation/shapeserror.h"
#include "tests/support/bytes.h"
#include "tests/support/graphics.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <random>
#include <sstream>

namespace
{

using Handle = gxPtrHandle<gxGraphic>;

gxColor const red = gxColor::redColor(), blue = gxColor::blueColor();

Handle line(double x, gxColor const &color)
{
  return new gxGraphicSimple<gxLineSeg>(gxLineSeg({x, 0}, {x, 10}), color);
}
Handle emptyText(gxColor const &color)
{
  return new gxGraphicText("", {0, 0}, color, blue, gxUIFormat(), {0, 0});
}
Handle groupOf(std::vector<Handle> const &members)
{
  gxPtrHandle<gxGraphicGroup> const group(new gxGraphicGroup);
  group->items(members, false);
  return group;
}

TEST(GraphicList, SharesOrClonesAndIsUnchangedByAFailure)
{
  gxGraphicList list;
  Handle const shared = line(1, red);
  list.append(shared, false);
  list.append(shared, true);
  shared->color(blue);
  EXPECT_EQ(list.items()[0]->color(), blue);
  EXPECT_EQ(list.items()[1]->color(), red);
  list.append(list, false);
  EXPECT_EQ(list.items()[2], list.items()[0]);
  list.append(std::as_const(list));
  ASSERT_EQ(list.items().size(), 8u);
  EXPECT_FALSE(list.items()[4] == list.items()[0]);

  gxGraphicList holed;
  holed.append(line(2, red), false);
  holed.append(nullptr, false);
  EXPECT_THROW(list.append(nullptr, true), gxBadPointer);
  EXPECT_THROW(list.append(holed, true), gxBadPointer);
  EXPECT_THROW(list = holed, gxBadPointer);
  EXPECT_THROW(gxGraphicList{std::as_const(holed)}, gxBadPointer);
  EXPECT_EQ(list.items().size(), 8u);
  EXPECT_THROW(holed.sketch(gxUITablet::image), gxBadPointer);
  holed.items().pop_back();
  gxUITablet tablet;
  tablet.recordOn() = true;
  holed.draw(tablet, gxUITablet::image);
  EXPECT_EQ(bytesOf(holed.sketch(gxUITablet::image)), bytesOf(tablet.sketch()));
  EXPECT_NE(bytesOf(holed.sketch(gxUITablet::overlay)), bytesOf(tablet.sketch()));
}

TEST(GraphicGroup, WearsThePropertiesOfItsFirstRealMember)
{
  struct Row {
    std::vector<Handle> members;
    bool null;
    gxColor color;
  };
  gxColor const none = gxGraphicGroup().color();
  for (Row const &row : std::initializer_list<Row>{
           {{}, true, none},
           {{nullptr, nullptr}, true, none},
           {{emptyText(red), emptyText(blue)}, true, red},
           {{nullptr, emptyText(red), line(1, blue), line(2, red)}, false, blue},
           {{groupOf({}), groupOf({line(1, red)})}, false, red},
       }) {
    gxGraphicGroup group;
    group.items(row.members, false);
    EXPECT_EQ(group.isNull(), row.null);
    EXPECT_EQ(group.color(), row.color);
    EXPECT_EQ(group.encloseRect().isEmpty(), row.null);
    gxUITablet tablet;
    tablet.recordOn() = true;
    tablet.draw(group, gxUITablet::image);
    EXPECT_EQ(tablet.sketch().isNull(), row.null);
  }
}

TEST(GraphicGroup, PropertiesGoDownOnlyAsAWhole)
{
  gxGraphicGroup group;
  Handle const deep = line(1, red), near = line(5, red);
  group.items({groupOf({deep, nullptr}), near}, false);
  group.props().penColor(blue);
  EXPECT_EQ(deep->color(), red);
  Handle const image = group.map(gxXform<2>(gxMatrix<2>(), gxVector<2>(3, 0)));
  EXPECT_EQ(image->color(), blue) << "a group's own properties, not those of its members";
  EXPECT_EQ(image->encloseRect(), gxRect({4, 0}, gxVector<2>(4, 10)));
  Handle const copy = group.clone();
  EXPECT_EQ(copy->color(), blue);
  group.color(gxColor::greenColor());
  EXPECT_EQ(deep->color(), gxColor::greenColor());
  EXPECT_EQ(near->props(), group.props());
  EXPECT_EQ(dynamic_cast<gxGraphicGroup const &>(*copy).item(1)->color(), red);

  EXPECT_EQ(group.distToPoint({3, 5}), 2);
  EXPECT_EQ(gxGraphicGroup().distToPoint({3, 5}), HUGE_VAL);
  for (long const bad : {-1L, 2L, 1L << 40}) {
    try {
      group.item(bad);
      FAIL() << bad;
    } catch (gxGraphic::BadParams const &e) {
      EXPECT_EQ(e.message(), "Item index out of range");
    }
  }
  gxGraphicGroup const &self = group;
  group = self;
  EXPECT_EQ(group.numItems(), 2);
  std::vector<gxPtrHandle_const<gxGraphic>> members;
  group.getItems(members);
  group.items(members);
  EXPECT_FALSE(group.item(1) == members[1]) << "constant members are cloned";
}

TEST(GraphicGroup, SharedAndNullMembersComeBackFromAnArchive)
{
  Handle const twice = line(1, red);
  gxGraphicList list, back;
  list.append(twice, false);
  list.append(nullptr, false);
  list.append(groupOf({twice, nullptr, groupOf({})}), false);
  std::stringstream stream;
  gxStoringArchive(stream) || list;
  back.append(line(9, blue), false);
  gxLoadingArchive(stream) || back;
  ASSERT_EQ(back.items().size(), 3u);
  EXPECT_TRUE(back.items()[1].isNull());
  auto const &group = dynamic_cast<gxGraphicGroup const &>(*back.items()[2]);
  EXPECT_EQ(group.item(0), back.items()[0]);
  EXPECT_TRUE(group.item(1).isNull());
  EXPECT_TRUE(group.item(2)->isNull());

  // A group inside itself would never be drawn to its end.
  gxPtrHandle<gxGraphicGroup> const ring(new gxGraphicGroup);
  ring->items({line(1, red), Handle(ring)}, false);
  std::stringstream looped;
  gxStoringArchive(looped) << ring;
  ring->items({}, false);
  Handle target;
  EXPECT_THROW(gxLoadingArchive(looped) || target, gxArchive::Errors);
}

// The flat list.

struct FlatList : gxr_list {
  FlatList() = default;
  ~FlatList() { gxr_list_free(this); }
  FlatList(FlatList const &) = delete;
  FlatList &operator=(FlatList const &) = delete;
  std::string bytes() const { return std::string(reinterpret_cast<char const *>(records), size); }
};

std::vector<unsigned char> recordedBy(gxr_list const *flat)
{
  gxUITablet tablet;
  tablet.recordOn() = true;
  gfUITabletDraw(tablet, flat, gxUITablet::overlay);
  return bytesOf(tablet.sketch());
}

// One record of each type, and one of a type that nobody knows.
void fill(gxr_list *flat)
{
  gxVector<2> const a(1, 2), b(3, 4), c(5, 7);
  gxVector<2> const points[] = {a, b, c, {8, 1}};
  long bad = 0;
  bad |= gxr_list_appendPoint(flat, gxr_red, a);
  bad |= gxr_list_appendLineSeg(flat, gxr_green, a, b);
  bad |= gxr_list_appendLineDirPoint(flat, gxr_blue, a, b);
  bad |= gxr_list_appendRect(flat, gxr_orange, a, b);
  bad |= gxr_list_appendGenRect(flat, gxr_cyan, a, b, {0.25, 0.5}, 0.5);
  bad |= gxr_list_appendCircle(flat, gxr_red, a, 4);
  bad |= gxr_list_appendEllipse(flat, gxr_red, a, b, 0.5, 0.25, false);
  bad |= gxr_list_appendPolyline(flat, gxr_red, points, 4, true);
  bad |= gxr_list_appendShapeAffineRect(flat, gxr_red, points);
  bad |= gxr_list_appendTextEx(flat, "odd", a, gxr_red, gxUIFormat::bottomRight + 1);
  bad |= gxr_list_appendLineSegSet(flat, gxr_red, points, 2);
  bad |= gxr_list_appendPoint(flat, static_cast<gxr_color>(0x12345680), c);
  ASSERT_EQ(bad, 0);
  std::int32_t const unknown = 11;
  std::memcpy(flat->records + flat->size - 24, &unknown, 4);
}

TEST(FlatLists, EveryRecordComesOutAsItsGraphicAndAsItsDrawing)
{
  FlatList flat;
  fill(&flat);
  gxGraphicList list;
  gfGraphicListAppend(list, &flat);
  ASSERT_EQ(list.items().size(), 12u);
  EXPECT_EQ(bytesOf(list.sketch(gxUITablet::overlay)), recordedBy(&flat));
  EXPECT_EQ(list.items()[11]->encloseRect(), gxRect({5, 7}, gxVector<2>(1, 1)));
  EXPECT_EQ(list.items()[1]->color(), gxColor::greenColor());
  auto const &ellipse = dynamic_cast<gxGraphicWithFill<gxEllipse2, gxEllipse2> const &>(*list.items()[6]);
  EXPECT_EQ(ellipse.item(), gxEllipse2({3, 4}, gxRadian(0.5), {1, 2}, false, gxRadian(0.25)));
  auto const &text = dynamic_cast<gxGraphicText const &>(*list.items()[9]);
  EXPECT_EQ(text.text(), "odd");
  EXPECT_EQ(text.format(), gxUIFormat(gxUIFormat::bottomRight));

  // And back: what a flat list can hold returns to the same bytes; an ellipse and a group are passed over.
  FlatList again;
  list.append(groupOf({line(1, red)}), false);
  gfGraphicListAppend(&again, list);
  EXPECT_EQ(again.count, 10);
  gxGraphicList twice;
  gfGraphicListAppend(twice, &again);
  FlatList third;
  gfGraphicListAppend(&third, twice);
  EXPECT_EQ(third.bytes(), again.bytes());
  FlatList indexed;
  gxGraphicList one;
  one.append(new gxGraphicPointIcon({1, 2}, gxColor(77)), false);
  gfGraphicListAppend(&indexed, one);
  gfGraphicListAppend(one, &indexed);
  EXPECT_EQ(one.items()[1]->color(), gxColor(0, 0, 0)) << "an index has no components";

  again.count = -1;
  gfGraphicListAppend(list, &again);
  gfGraphicListAppend(list, nullptr);
  EXPECT_EQ(list.items().size(), 13u);
}

TEST(FlatLists, DamageIsFoundBeforeAnythingIsAppended)
{
  FlatList flat;
  fill(&flat);
  std::string const bytes = flat.bytes();
  for (std::size_t n = 0; n < bytes.size(); ++n) {
    std::string cut(bytes, 0, n);
    gxr_list const borrowed{12, reinterpret_cast<unsigned char *>(cut.data()), n, 0};
    gxGraphicList list;
    EXPECT_THROW(gfGraphicListAppend(list, &borrowed), gxDrawListError::BadRecord) << n;
    EXPECT_TRUE(list.items().empty());
  }
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    std::string bad = bytes;
    for (int k = 0; k < 3; ++k)
      bad[random() % bad.size()] = static_cast<char>(random());
    gxr_list borrowed{12, reinterpret_cast<unsigned char *>(bad.data()), bad.size(), 0};
    gxGraphicList list;
    try {
      gfGraphicListAppend(list, &borrowed);
      recordedBy(&borrowed);
    } catch (gxDrawListError::Errors const &) {
      EXPECT_TRUE(list.items().empty());
    } catch (gxShapesError::Errors const &) {
      EXPECT_TRUE(list.items().empty());
    }
  }
  // A failure in the middle takes back what came before it; borrowed records are copied, not written.
  gxGraphicList holed;
  holed.append(line(1, red), false);
  holed.append(nullptr, false);
  EXPECT_THROW(gfGraphicListAppend(&flat, holed), gxBadPointer);
  EXPECT_EQ(flat.bytes(), bytes);
  EXPECT_EQ(flat.count, 12);
  FlatList copy;
  copy.count = 12;
  copy.records = flat.records;
  copy.size = flat.size;
  EXPECT_EQ(gxr_list_appendPoint(&copy, gxr_red, {1, 2}), 0);
  EXPECT_EQ(copy.bytes().substr(0, bytes.size()), bytes);
  EXPECT_NE(copy.records, flat.records);
  EXPECT_THROW(gfThrowExceptionOnFailure(gxr_list_appendPolyline(&copy, gxr_red, nullptr, -1, false)),
               gxDrawListError::NoRoom);
}

TEST(Hits, AreThoseOfAPlainSearchNearestFirst)
{
  std::mt19937 random(11);
  std::uniform_real_distribution<double> place(-50, 50), size(0, 30);
  gxGraphicList list;
  gxXform<2> const shrink(gxMatrix<2>(0.3, 0.1, -0.2, 0.4), gxVector<2>());
  for (int i = 0; i < 20; ++i) {
    for (GraphicCase const &row : allGraphics())
      list.append(row.graphic->map(shrink)->map(gxXform<2>(gxMatrix<2>(), {place(random), place(random)})), false);
    list.append(nullptr, false);
    list.append(new gxGraphicSimple<gxPolyline>, false);  // without points, and so without a distance
  }
  gxGraphicGroup group;
  group.items(list.items(), false);
  for (int round = 0; round < 60; ++round) {
    gxVector<2> const p(place(random), place(random));
    double const radius = size(random);
    std::vector<gxGraphicHit> const hits = gfGraphicsNear(list, p, radius);
    std::size_t expected = 0;
    for (Handle const &item : list.items()) {
      try {
        expected += !item.isNull() && item->distToPoint(p) <= radius;
      } catch (gxShapesError::EmptyShape const &) {
      }
    }
    EXPECT_EQ(hits.size(), expected);
    for (std::size_t i = 0; i < hits.size(); ++i) {
      EXPECT_EQ(hits[i].graphic, list.items()[std::size_t(hits[i].index)]);
      EXPECT_EQ(hits[i].distance, hits[i].graphic->distToPoint(p));
      if (i == 0)
        continue;
      EXPECT_TRUE(hits[i - 1].distance < hits[i].distance ||
                  (hits[i - 1].distance == hits[i].distance && hits[i - 1].index > hits[i].index));
    }
    EXPECT_EQ(gfGraphicsNear(group, p, radius).size(), expected);
  }
  EXPECT_TRUE(gfGraphicsNear(list, {0, 0}, -1).empty());
  EXPECT_TRUE(gfGraphicsNear(list, {0, 0}, HUGE_VAL).empty());
}

}  // namespace
