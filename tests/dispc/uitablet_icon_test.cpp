#include "dispc/uibitmap.h"
#include "dispc/uierror.h"
#include "foundation/pelbuf.h"
#include "tests/support/drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <sstream>

// Icons by their patterns, and the road of run-length and colour images to the scope.

namespace
{
using testing::ElementsAre;
constexpr unsigned char pass = 243;

std::vector<int> pelsOf(gxRLEBuffer const &icon)
{
  gxPelBuffer<unsigned char> const pels = icon.image();
  std::vector<int> all{static_cast<int>(icon.width()), static_cast<int>(icon.height())};
  for (long y = 0; y < pels.height(); ++y)
    for (long x = 0; x < pels.width(); ++x)
      all.push_back(pels.get(x, y));
  return all;
}

TEST(Icon, PatternsAndTheirPels)
{
  struct {
    char const *pattern;
    std::vector<int> pels;  ///< width, height, values
  } const good[] = {
      {"/0+/. /", {2, 2, 7, pass, pass, pass}},
      {"/012/345", {3, 2, 7, 8, 2, 3, 4, 5}},  // beyond the map a digit stands for itself; the text's end ends a row
      {"x9x", {1, 1, 9}},
      {"01020", {1, 2, 8, 2}},  // a digit may be the delimiter
      {"//", {0, 1}},
      {"///", {0, 2}},
  };
  for (auto const &c : good)
    EXPECT_EQ(pelsOf(gxUITablet::makeIcon(c.pattern, {7, 8})), c.pels) << c.pattern;
  for (char const *bad : {"/12/3/", "/3/12/", "/12//", "/1a/11/", "/1/1/x", "010230", "/", "", "/1\n/11/",
                          static_cast<char const *>(nullptr)})
    EXPECT_THROW(gxUITablet::makeIcon(bad, {}), gxUIError::BadIconPattern) << (bad ? bad : "null");
}

TEST(Icon, TouchesAreThoseOfThePattern)
{
  // Against the rows read one by one; outside of them nothing is touched.
  std::vector<std::string> const rows = {"1+ .", " 0+2", "...+"};
  std::string text = "/";
  for (auto const &row : rows)
    text += row + '/';
  for (long width : {-1L, 5L})
    for (long y = -3; y < 6; ++y)
      for (long x = -3; x < 8; ++x) {
        bool const inside = x >= 0 && x < 4 && y >= 0 && y < 3;
        char const c = inside ? rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] : '.';
        EXPECT_EQ(gxUITablet::iconTouched(text.c_str(), {x, y}, width), c != '.' && c != ' ') << x << ' ' << y;
      }
  constexpr long far = std::numeric_limits<std::int32_t>::max(), farthest = std::numeric_limits<long>::max();
  for (long const width : {-1L, 0L, far, farthest, -farthest - 1})
    for (gxPair<long> const &p : {gxPair<long>(far, far), gxPair<long>(-far - 1, -far - 1), gxPair<long>(1, far)}) {
      EXPECT_FALSE(gxUITablet::iconTouched(text.c_str(), p, width));
      EXPECT_FALSE(gxUITablet::iconTouched("", p, width));
      EXPECT_FALSE(gxUITablet::iconTouched(nullptr, p, width));
      EXPECT_FALSE(gxUITablet::pointIconTouched(p));
    }
  EXPECT_FALSE(gxUITablet::iconTouched("/", {0, 0}, 5));
  EXPECT_TRUE(gxUITablet::iconTouched("/..1", {2, 0}, -1)) << "the text's end ends a row";
}

TEST(Icon, ThePointIconIsACrossHairInACircle)
{
  gxPelBuffer<unsigned char> const pels = gxUITablet::pointIcon().image();
  ASSERT_EQ(pels.size(), gxPair<long>(13, 13));
  for (long y = -8; y <= 8; ++y)
    for (long x = -8; x <= 8; ++x) {
      long const u = std::abs(x), v = std::abs(y), far = std::max(u, v), near = std::min(u, v);
      bool const inside = far <= 6, arm = near == 0, circle = far == 3 && near <= 2;
      if (inside) {
        EXPECT_EQ(pels.get(x + 6, y + 6), arm || circle ? 0 : pass) << x << ' ' << y;
      }
      EXPECT_EQ(gxUITablet::pointIconTouched({x, y}), inside && (near <= 1 || far <= 3)) << x << ' ' << y;
    }
}

/// Tells the scales of run-length images too.
struct RunLog : LogScope {
  using LogScope::expand;
  using LogScope::LogScope;
  using LogScope::sample;
  void sample(gxRLEBuffer const &, gxPoint const &at, std::vector<unsigned char> const &map,
              gxPair<double> const &scale, bool passes, unsigned char v) override
  {
    told << "sample " << at << ' ' << map.size() << ' ' << scale << ' ' << passes << ' ' << int(v);
  }
  void expand(gxRLEBuffer const &, gxPoint const &at, std::vector<unsigned char> const &map,
              gxPair<double> const &scale, bool passes, unsigned char v) override
  {
    told << "expand " << at << ' ' << map.size() << ' ' << scale << ' ' << passes << ' ' << int(v);
  }
  std::ostringstream told;
};

struct ImageRoad : DrawingTest {
  RunLog scope{log, "i", {100, 100}};
  ImageRoad() { tablet.setScope(gxUITablet::image, &scope, false), log.take(); }
  ~ImageRoad() override { scope.quietEnd(), tablet.setScope(nullptr, nullptr, false); }
  std::vector<std::string> calls()
  {
    std::vector<std::string> lines = log.take();
    std::erase_if(lines, [](std::string const &line) { return line.find("lock") != std::string::npos; });
    return lines;
  }
};

TEST_F(ImageRoad, ColourImagesByScaleModeAndWithoutARecord)
{
  gxPelBuffer<gxPackedRGB32Pel> const color(2, 1);
  gxPelBuffer<gxPackedRGB16Pel> const packed(2, 1);
  gxPelBuffer<unsigned short> const words(2, 1);
  tablet.interpolation(gxUITablet::InterpolationModes(2));
  auto const drawAll = [&] {
    tablet.draw(color, gxPoint(1, 2), true, 0x1234567, gxUITablet::image);
    tablet.draw(packed, gxPoint(1, 2), true, 1234, gxUITablet::image);
    tablet.draw(words, gxPoint(1, 2), false, 5, gxUITablet::image);
    return calls();
  };
  EXPECT_THAT(drawAll(),
              ElementsAre("i: image32 (2, 1) at (12, 6) pass 19088743", "i: image16 (2, 1) at (12, 6) pass 1234",
                          "i: imageWords (2, 1) at (12, 6) solid 5"));
  tablet.scaleExact({2, 1.5});
  calls();
  EXPECT_THAT(drawAll(), ElementsAre("i: expand32 (2, 1) at (24, 9) pass 19088743 scale (2, 1.5) mode 2",
                                     "i: expand16 (2, 1) at (24, 9) pass 1234 scale (2, 1.5) mode 0",
                                     "i: expandWords (2, 1) at (24, 9) solid 5 scale (2, 1.5) mode 0"));
  EXPECT_EQ(tablet.sketch().size(), 0);
}

TEST_F(ImageRoad, RunsByScaleModeUnlessUnscaledAndTheirRecord)
{
  gxPelBuffer<unsigned char> pels(3, 2);
  pels.put(1, 0, 4);
  gxUIBitmap bitmap(gxRLEBuffer(pels), {9, 8}, true, 8);
  bitmap.offset({5, -7});
  scope.exact(true);
  auto const draw = [&](gxPair<double> const &scale, bool unscaled) {
    tablet.scaleExact(scale);
    calls();
    scope.told.str("");
    tablet.draw(bitmap, gxPoint(1, 2), bitmap.colorMap(), bitmap.passThrough(), bitmap.passColor(), unscaled,
                gxUITablet::image);
    auto const lines = calls();
    return lines.empty() ? scope.told.str() : lines[0] + scope.told.str();
  };
  std::string const runs = " (3, 2) pass 8 9 8 row 0.1 4.1 0.1 row 0.3";
  EXPECT_EQ(draw({1, 1}, false), "i: runs (12, 6)" + runs);
  EXPECT_EQ(draw({2, 1.5}, true), "i: runs (24, 9)" + runs);
  EXPECT_EQ(draw({2, 1.5}, false), "expand (24, 9) 2 (2, 1.5) 1 8");
  tablet.sketch().erase();
  EXPECT_EQ(draw({0.5, 0.25}, false), "sample (6, 1.5) 2 (0.5, 0.25) 1 8");
  auto expected = Bytes().moved(14, 0, {1, 2}).u8(1).u8(8).u8(0).i32(2).u8(9).u8(8).i32s({3, 2});
  EXPECT_EQ(bytesOf(tablet.sketch()), expected.u8s({0, 1, 4, 1, 0, 1, 0, 0, 0, 3, 0, 0}).get());
}

TEST_F(ImageRoad, ThePointIconHasItsCentreAtThePointAndIsNotScaled)
{
  scope.exact(true);
  tablet.scaleExact({2, 2});
  calls();
  tablet.drawPointIcon(gxPoint(1, 2), gxColor::red, gxUITablet::image);
  auto const lines = calls();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].rfind("i: icon (18, 6) (13, 13) pass 243 ", 0), 0u) << lines[0];
  tablet.drawOn().push(false);
  tablet.drawPointIcon(gxPoint(1, 2), gxColor::red, gxUITablet::image);
  EXPECT_TRUE(calls().empty());
}

TEST(Bitmap, IsAValue)
{
  gxUIBitmap a;
  EXPECT_FALSE(a.isInit() || a.passThrough() || a.passColor() || !a.colorMap().empty());
  a.rleBuf(gxUITablet::pointIcon());
  a.colorMap({1, 2});
  a.passThrough(true);
  a.passColor(pass);
  gxUIBitmap b(a), c;
  c = b;
  a.rleBuf(gxRLEBuffer());
  a.colorMap({});
  EXPECT_FALSE(a.isInit());
  EXPECT_TRUE(a.passThrough());
  EXPECT_EQ(pelsOf(c), pelsOf(gxUITablet::pointIcon()));
  EXPECT_TRUE(c.isInit() && c.passThrough() && c.passColor() == pass && c.colorMap().size() == 2);
}
}  // namespace
