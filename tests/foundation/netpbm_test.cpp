#include "foundation/netpbm.h"
#include "foundation/pelops.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace
{
using testing::HasSubstr;
using Buffer8 = gxPelBuffer<unsigned char>;
using Buffer32 = gxPelBuffer<gxPackedRGB32Pel>;

Buffer8 grey(std::string const &bytes)
{
  std::istringstream is(bytes);
  return gfReadNetpbmGrey(is, "picture");
}
Buffer32 color(std::string const &bytes)
{
  std::istringstream is(bytes);
  return gfReadNetpbmColor(is, "picture");
}

/// The text of the error that reading these bytes gives, or nothing.
std::string refusal(std::string const &bytes)
{
  try {
    grey(bytes);
  } catch (gxPel::BadImageFile const &e) {
    return e.message();
  }
  return "";
}

TEST(Netpbm, ReadsEachKind)
{
  Buffer8 const p2 = grey("P2 # a comment\n#another\r 3\t2\n255\n0 1 2\n253 254 255");
  EXPECT_EQ(p2.size(), gxPair<long>(3, 2));
  EXPECT_EQ(p2.get(2, 0), 2);
  EXPECT_EQ(p2.get(0, 1), 253);

  Buffer8 const p5 = grey(std::string("P5 2 2 255\n") + "\n\x80\xff#" + "next image");
  EXPECT_EQ(p5.get(0, 0), '\n') << "one space ends the header";
  EXPECT_EQ(p5.get(1, 0), 128);
  EXPECT_EQ(p5.get(1, 1), '#');

  for (Buffer32 const &b : {color("P3 1 2 255 1 2 3 40 50 60"), color("P6\n1 2\n255\n\x01\x02\x03\x28\x32\x3c")}) {
    EXPECT_EQ(b.get(0, 0), gxPackedRGB32Pel(1, 2, 3));
    EXPECT_EQ(b.get(0, 1), gxPackedRGB32Pel(40, 50, 60));
  }
  EXPECT_EQ(color("P2 1 1 255 77").get(0, 0), gxPackedRGB32Pel(77, 77, 77));
  EXPECT_EQ(grey("P3 1 1 255 100 200 50").get(0, 0), 153) << "0.299 * 100 + 0.587 * 200 + 0.114 * 50 = 153.0";
  for (int v = 0; v < 256; ++v)
    ASSERT_EQ(grey("P6 1 1 255\n" + std::string(3, static_cast<char>(v))).get(0, 0), v) << "grey stays grey";
}

TEST(Netpbm, StretchesFewerLevels)
{
  Buffer8 const b = grey("P2 4 1 3 0 1 2 3");
  EXPECT_EQ(b.get(0, 0), 0);
  EXPECT_EQ(b.get(1, 0), 85);
  EXPECT_EQ(b.get(2, 0), 170);
  EXPECT_EQ(b.get(3, 0), 255);
  EXPECT_EQ(grey(std::string("P5 1 1 1\n\x01")).get(0, 0), 255);
  EXPECT_EQ(grey("P2 1 1 100 50").get(0, 0), 128) << "127.5 goes up";
}

TEST(Netpbm, WritesWhatItReads)
{
  std::mt19937 random(8);
  Buffer8 a(37, 11);
  Buffer32 b(37, 11);
  for (long y = 0; y < 11; ++y)
    for (long x = 0; x < 37; ++x) {
      a.put(x, y, static_cast<unsigned char>(random()));
      b.put(x, y, gxPackedRGB32Pel(static_cast<unsigned long>(random())));
    }
  a.window(3, 2, 30, 7);
  b.window(3, 2, 30, 7);
  std::ostringstream greyOs, colorOs;
  gfWriteNetpbm(greyOs, "grey", a);
  gfWriteNetpbm(colorOs, "color", b);
  Buffer8 const a2 = grey(greyOs.str());
  Buffer32 const b2 = color(colorOs.str());
  ASSERT_EQ(a2.size(), a.size());
  ASSERT_EQ(b2.size(), b.size());
  for (long y = 0; y < 7; ++y)
    for (long x = 0; x < 30; ++x) {
      EXPECT_EQ(a2.get(x, y), a.get(x + 3, y + 2));
      auto const p = b.get(x + 3, y + 2);
      EXPECT_EQ(b2.get(x, y), gxPackedRGB32Pel(p.red(), p.green(), p.blue())) << "the spare byte is not kept";
    }
}

TEST(Netpbm, SaysWhatIsWrongAndWhere)
{
  struct {
    char const *bytes;
    char const *text;
  } const cases[] = {
      {"", "picture: no image of the Netpbm family at byte 0"},
      {"GIF89a", "no image of the Netpbm family"},
      {"P9 1 1 255 0", "no image of the Netpbm family"},
      {"P4 1 1\n0", "an image of kind P4, which is not supported, at byte 2"},
      {"P5", "the file ends before the width at byte 2"},
      {"P5 # only a comment", "the file ends before the width"},
      {"P5 x", "no number for the width at byte 4"},
      {"P5 -3 3 255\n", "no number for the width"},
      {"P5 3x3 255\n", "a stray character behind the width"},
      {"P5 0 3 255\n", "the width is less than 1"},
      {"P5 3 0 255\n", "the height is less than 1"},
      {"P5 99999999999999999999999999 1 255\n", "the width is more than 268435456"},
      {"P5 268435456 2 255\n", "a size of 268435456 x 2 pels, which is too large,"},
      {"P5 2 2 0\n", "the greatest value is less than 1"},
      {"P5 2 2 256\n", "more than 8 bits a component"},
      {"P5 2 2 70000\n", "the greatest value is more than 65535"},
      {"P5 2 2 255\n123", "the file ends 1 bytes before the end of a row at byte 14"},
      {"P2 2 1 255\n1", "the file ends before a pel at byte 12"},
      {"P2 2 1 9\n1 10", "a pel is more than 9"},
      {"P5 2 1 9\n\x01\x0a", "a value above the greatest one"},
      {"P6 16384 16384 255\n", "the file ends"},
      {"P5 268435456 1 255\nx", "the file ends"},
  };
  for (auto const &c : cases)
    EXPECT_THAT(refusal(c.bytes), HasSubstr(c.text)) << c.bytes;
}

TEST(Netpbm, AnyBytesLoadOrAreRefused)
{
  std::mt19937 random(2);
  char const *const tokens[] = {"1 ", "2 ",     "3\n",        "7 ",  "255\n", "# \n",
                                "0 ", "65536 ", "268435456 ", "-1 ", "x",     "\xff"};
  int loaded = 0;
  for (int n = 0; n < 5000; ++n) {
    std::string bytes = "P";
    bytes += "2356"[random() % 4];
    for (std::size_t k = random() % 24; k > 0; --k)
      bytes += tokens[random() % (random() % 4 == 0 ? std::size(tokens) : 6)];
    try {
      loaded += grey(bytes).isBound();
    } catch (gxPel::BadImageFile const &) {
    }
  }
  EXPECT_GT(loaded, 10);
}

TEST(Netpbm, Files)
{
  auto const folder = std::filesystem::path(testing::TempDir());
  std::string const path = (folder / ("netpbm" + std::to_string(std::random_device()()) + ".pgm")).string();
  Buffer8 const b(3, 2);
  b.put(1, 1, 200);
  gfWriteNetpbm(path, b);
  EXPECT_EQ(gfReadNetpbmGrey(path).get(1, 1), 200);
  EXPECT_EQ(gfReadNetpbmColor(path).get(1, 1), gxPackedRGB32Pel(200, 200, 200));
  EXPECT_THROW(gfWriteNetpbm(path, Buffer8()), gxPel::BadImageFile);
  EXPECT_THROW(gfWriteNetpbm(path, Buffer32(0, 5)), gxPel::BadImageFile);
  EXPECT_EQ(gfReadNetpbmGrey(path).size(), b.size()) << "what cannot be written leaves the file alone";
  std::filesystem::remove(path);

  auto const message = [](auto action) -> std::string {
    try {
      action();
    } catch (gxPel::BadImageFile const &e) {
      return e.message();
    }
    return "";
  };
  EXPECT_THAT(message([&] { gfReadNetpbmGrey(path); }), HasSubstr(path + ": No such file"));
  EXPECT_THAT(message([&] { gfReadNetpbmGrey(folder.string()); }), HasSubstr(folder.string()));
  EXPECT_THAT(message([&] { gfWriteNetpbm((folder / "no such folder" / "x.pgm").string(), b); }),
              HasSubstr("No such file"));
  if (std::filesystem::exists("/dev/full")) {
    EXPECT_THAT(message([&] { gfWriteNetpbm("/dev/full", b); }), HasSubstr("/dev/full: the image cannot be written"));
  }
}
}  // namespace
