#include "dispc/color.h"

#include "dispc/uierror.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace
{
static_assert(std::is_trivially_copyable_v<gxColor> && std::is_trivially_copyable_v<gxRGB>);

constinit gxColor const atStaticInitialisation = gxColor::orangeColor();

struct Stock {
  gxColor const &member;
  gxColor const &accessor;
  int index, r, g, b;
};

/// In the order of the codes.
Stock const stocks[] = {
    {gxColor::black, gxColor::blackColor(), 0, 0, 0, 0},
    {gxColor::dkGrey, gxColor::dkGreyColor(), 248, 128, 128, 128},
    {gxColor::grey, gxColor::greyColor(), 247, 160, 160, 164},
    {gxColor::ltGrey, gxColor::ltGreyColor(), 7, 192, 192, 192},
    {gxColor::white, gxColor::whiteColor(), 255, 255, 255, 255},
    {gxColor::red, gxColor::redColor(), 249, 255, 0, 0},
    {gxColor::dkRed, gxColor::dkRedColor(), 1, 128, 0, 0},
    {gxColor::orange, gxColor::orangeColor(), 245, 250, 125, 50},
    {gxColor::yellow, gxColor::yellowColor(), 251, 255, 255, 0},
    {gxColor::green, gxColor::greenColor(), 250, 0, 255, 0},
    {gxColor::dkGreen, gxColor::dkGreenColor(), 2, 0, 128, 0},
    {gxColor::cyan, gxColor::cyanColor(), 254, 0, 255, 255},
    {gxColor::blue, gxColor::blueColor(), 252, 0, 0, 255},
    {gxColor::purple, gxColor::purpleColor(), 244, 160, 20, 200},
    {gxColor::magenta, gxColor::magentaColor(), 253, 255, 0, 255},
    {gxColor::pass, gxColor::passColor(), 243, 243, 243, 243},
};

std::string imageOf(gxColor const &color)
{
  return {reinterpret_cast<char const *>(&color), sizeof color};
}
}  // namespace

TEST(RGB, Packings)
{
  gxRGB c;
  EXPECT_EQ(c, gxRGB(0, 0, 0));
  c.rgb(0x12, 0x34, 0x56);
  EXPECT_EQ(c.rgb(), 0x123456ul);
  EXPECT_EQ(c.bgr(), 0x563412ul);
  EXPECT_EQ(gxRGB(255, 255, 255).rgb15(), 0x7FFF);
  EXPECT_EQ(gxRGB(255, 255, 255).rgb16(), 0xFFFF);
  EXPECT_EQ(gxRGB(0xFF, 0x07, 0x0F).rgb15(), 0x7C01);
  EXPECT_EQ(gxRGB(0x07, 0xFF, 0x0F).rgb16(), 0x07E1);
}

TEST(RGB, FourthByteIsCarriedButNeverCompared)
{
  gxRGB carrying(1, 2, 3);
  reinterpret_cast<unsigned char *>(&carrying)[3] = 99;
  EXPECT_EQ(carrying, gxRGB(1, 2, 3));
  gxRGB copy;
  copy = carrying;
  EXPECT_EQ(reinterpret_cast<unsigned char const *>(&copy)[3], 99);
  for (gxRGB const &other : {gxRGB(0, 2, 3), gxRGB(1, 0, 3), gxRGB(1, 2, 0)})
    EXPECT_NE(carrying, other);
  loadArchived(archivedBytes(gxRGB(4, 5, 6)), copy);
  EXPECT_EQ(copy, gxRGB(4, 5, 6));
  EXPECT_EQ(reinterpret_cast<unsigned char const *>(&copy)[3], 99);
}

TEST(RGB, OrderIsByTheMeanInWholeNumbers)
{
  // the mean of a sum s is the high word of s * 0x55555556
  for (std::uint64_t sum = 0; sum <= 765; ++sum) {
    auto const mean = (sum * 0x55555556u) >> 32;
    auto const part = [sum](std::uint64_t before) {
      return static_cast<unsigned char>(std::min<std::uint64_t>(255, sum > before ? sum - before : 0));
    };
    gxRGB const c(part(0), part(255), part(510));
    for (int level = 0; level <= 255; level += 5) {
      auto const l = static_cast<unsigned char>(level);
      ASSERT_EQ(c < gxRGB(l, l, l), mean < l) << c << " and " << level;
      ASSERT_EQ(c > gxRGB(l, l, l), mean > l) << c << " and " << level;
    }
  }
  EXPECT_FALSE(gxRGB(90, 0, 0) < gxRGB(0, 0, 91));
}

TEST(Color, StockColors)
{
  EXPECT_EQ(atStaticInitialisation, gxColor::orange);
  std::uint32_t code = 0;
  for (Stock const &s : stocks) {
    SCOPED_TRACE(code);
    std::string const image = bytesOf({7, s.index, s.r, s.g, s.b, 0});
    EXPECT_EQ(imageOf(s.member), image);
    EXPECT_EQ(imageOf(s.accessor), image);
    EXPECT_EQ(gfColor(s.member), code);
    EXPECT_EQ(imageOf(gfColor(static_cast<gxr_color>(code))), image);
    ++code;
  }
  EXPECT_EQ(&gxColor::dkGray, &gxColor::dkGrey);
  EXPECT_EQ(&gxColor::gray, &gxColor::grey);
  EXPECT_EQ(&gxColor::ltGray, &gxColor::ltGrey);
}

TEST(Color, FormsAreAskedForBeforeTheyAreGiven)
{
  gxColor const byIndex;
  EXPECT_EQ(imageOf(byIndex), bytesOf({4, 0, 0, 0, 0, 0}));
  EXPECT_EQ(byIndex.rgbStruct(), gxRGB());
  EXPECT_THROW(byIndex.rgb(), gxUIError::NotRGBColor);
  EXPECT_THROW(byIndex.bgr(), gxUIError::NotRGBColor);
  EXPECT_THROW(byIndex.rgb15(), gxUIError::NotRGBColor);
  EXPECT_THROW(byIndex.rgb16(), gxUIError::NotRGBColor);
  EXPECT_EQ(gxColor(200).index(), 200);

  gxColor const byRGB(1, 2, 3);
  EXPECT_EQ(imageOf(byRGB), bytesOf({2, 0, 1, 2, 3, 0}));
  EXPECT_THROW(byRGB.index(), gxUIError::NotIndexColor);
  EXPECT_EQ(byRGB.bgr(), 0x030201ul);
  EXPECT_FALSE(byRGB.isStockColor());
}

TEST(Color, EqualityIsLooseAndNotTransitive)
{
  // every pair, against the rule taken step by step
  std::vector<gxColor> colors = {gxColor(),        gxColor(249),       gxColor(255, 0, 0),
                                 gxColor(0, 0, 0), gxColor(128, 0, 0), gxColor(gxRGB(9, 9, 9)),
                                 gxColor(1),       gxColor(254)};
  for (Stock const &s : stocks)
    colors.push_back(s.member);
  for (gxColor const &a : colors)
    for (gxColor const &b : colors) {
      bool equal = false;
      if (a.isIndexColor() && b.isIndexColor() && a.index() == b.index())
        equal = true;
      else if (a.isRGBColor() && b.isRGBColor())
        equal = a.rgb() == b.rgb();
      EXPECT_EQ(a == b, equal) << a << " and " << b;
    }
  EXPECT_TRUE(gxColor(255, 0, 0) == gxColor::redColor());
  EXPECT_TRUE(gxColor(249) == gxColor::redColor());
  EXPECT_FALSE(gxColor(255, 0, 0) == gxColor(249));
  EXPECT_TRUE(gxColor(0) == gxColor::black && gxColor(0, 0, 0) == gxColor::black);
}

TEST(Color, WordsOfTheDrawingList)
{
  EXPECT_EQ(gfColor(gxColor(5)), 128u) << "the index is lost";
  EXPECT_EQ(gfColor(gxColor(0xFF, 1, 2)), 0xFF010280u);
  for (std::uint32_t const word : {0x00FF0080u, 0x00FF00FFu})
    EXPECT_EQ(imageOf(gfColor(static_cast<gxr_color>(word))), imageOf(gxColor(0, 255, 0))) << word;
  EXPECT_EQ(imageOf(gfColor(static_cast<gxr_color>(0xFF000080u))), imageOf(gxColor(255, 0, 0))) << "never stock red";
  for (std::uint32_t const word : {16u, 127u, 0x100u, 0xFFFFFF7Fu, 0x80000001u})
    EXPECT_EQ(imageOf(gfColor(static_cast<gxr_color>(word))), imageOf(gxColor::black)) << word;
}

TEST(Color, ArchiveForms)
{
  EXPECT_EQ(archivedBytes(gxRGB(1, 2, 255)), bytesOf({0, 1, 2, 255}));
  std::string const orange = bytesOf({0, 7, 245, 0, 250, 125, 50});
  EXPECT_EQ(archivedBytes(gxColor::orange), orange);
  for (gxColor const &c : {gxColor::orange, gxColor(3), gxColor(3, 4, 5)})
    EXPECT_EQ(imageOf(throughArchive(c)), imageOf(c));

  EXPECT_EQ(refusalOfVersion(bytesOf({0, 1, 2, 3}), 0, gxRGB(7, 8, 9), "dispc/color", -1), "");
  EXPECT_EQ(refusalOfVersion(orange, 0, gxColor(1), "dispc/color", -1, 255), "");
  EXPECT_EQ(refusalOfVersion(orange, 3, gxColor(1), "dispc/color", -1), "");

  std::stringstream stream;
  gxStoringArchive storing(stream);
  gxColor color = gxColor::purple;
  gxRGB rgb(1, 2, 3);
  storing << gxColor::red << gxRGB(4, 5, 6);
  EXPECT_THROW(storing >> color, gxArchive::Errors);
  EXPECT_THROW(storing >> rgb, gxArchive::Errors);
  EXPECT_EQ(color, gxColor::purple);
  storing.close();
  gxLoadingArchive loading(stream);
  EXPECT_THROW(loading << color, gxArchive::Errors);
  loading >> color >> rgb;
  EXPECT_EQ(imageOf(color), imageOf(gxColor::red));
  EXPECT_EQ(rgb, gxRGB(4, 5, 6));
}
