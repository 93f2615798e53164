#include "foundation/netpbm.h"

#include "foundation/pelerror.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <random>

namespace
{
namespace fs = std::filesystem;

struct Netpbm : testing::Test {
  std::string const file =
      (fs::temp_directory_path() / ("gxdisplay_" + std::to_string(std::random_device()()))).string();
  ~Netpbm() override { fs::remove(file); }

  void put(std::string const &bytes) const
  {
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  /// What reading the bytes throws, or "".
  std::string trouble(std::string const &bytes) const
  {
    put(bytes);
    try {
      gfReadNetpbmColor(file);
    } catch (gxPel::BadImageFile const &e) {
      return e.message().substr(file.size());
    }
    return "";
  }
};

TEST_F(Netpbm, TheFourFormatsAgree)
{
  put("P2 # grey\n3 2\n#two rows\n 255\n0 1 2\n253 254 255\n");
  auto const text = gfReadNetpbmGrey(file);
  put(std::string("P5 3 2 255\n\0\1\2\xfd\xfe\xff", 17));
  auto const bytes = gfReadNetpbmGrey(file);
  auto const color = gfReadNetpbmColor(file);
  for (long y = 0; y < 2; ++y)
    for (long x = 0; x < 3; ++x) {
      auto const v = static_cast<unsigned char>(y == 0 ? x : 253 + x);
      EXPECT_EQ(text.get(x, y), v);
      EXPECT_EQ(bytes.get(x, y), v);
      EXPECT_EQ(color.get(x, y), gxPackedRGB32Pel(v, v, v));
    }
  put("P3 1 1 15 15 0 8");
  EXPECT_EQ(gfReadNetpbmColor(file).get(0, 0), gxPackedRGB32Pel(255, 0, 136));
}

TEST_F(Netpbm, WritesTheWindowAndReadsItBack)
{
  std::mt19937 random(2);
  gxPelBuffer<gxPackedRGB32Pel> color(9, 7);
  gxPelBuffer<unsigned char> grey(9, 7);
  for (long i = 0; i < 63; ++i) {
    color.put(i % 9, i / 9, gxPackedRGB32Pel(static_cast<unsigned long>(random())));
    grey.put(i % 9, i / 9, static_cast<unsigned char>(random()));
  }
  ASSERT_TRUE(color.window(2, 1, 5, 4));
  ASSERT_TRUE(grey.window(2, 1, 5, 4));
  gfWriteNetpbm(file, color);
  auto const color2 = gfReadNetpbmColor(file);
  gfWriteNetpbm(file, grey);
  auto const grey2 = gfReadNetpbmGrey(file);
  ASSERT_EQ(color2.size(), gxPair<long>(5, 4));
  for (long y = 0; y < 4; ++y)
    for (long x = 0; x < 5; ++x) {
      gxPackedRGB32Pel const c = color.get(x + 2, y + 1);
      EXPECT_EQ(color2.get(x, y), gxPackedRGB32Pel(c.red(), c.green(), c.blue()));
      EXPECT_EQ(grey2.get(x, y), grey.get(x + 2, y + 1));
    }
  EXPECT_THROW(gfWriteNetpbm(file, gxPelBuffer<unsigned char>()), gxPel::BadImageFile);
  EXPECT_THROW(gfWriteNetpbm(file + "/none/x", grey), gxPel::BadImageFile);
}

TEST_F(Netpbm, SaysWhatIsWrongAndWhere)
{
  EXPECT_EQ(trouble("P4 1 1 1"), ": not a PGM or PPM file, at byte 0");
  EXPECT_EQ(trouble(""), ": not a PGM or PPM file, at byte 0");
  EXPECT_EQ(trouble("P5 2 x"), ": no number where one is due, at byte 5");
  EXPECT_EQ(trouble("P5 0 4 255\n"), ": an image without pels, at byte 10");
  EXPECT_EQ(trouble("P5 1 1 256\n12"), ": a greatest value of 256 instead of 1 to 255, at byte 10");
  EXPECT_EQ(trouble("P2 1 1 7 8"), ": a value of 8 above the greatest, 7, at byte 10");
  EXPECT_EQ(trouble("P2 2 1 7 7"), ": the file ends before the pels of 2 x 1, at byte 8");
  EXPECT_EQ(trouble("P6 999999999 999999999 255\nabc"),
            ": the file ends before the pels of 999999999 x 999999999, at byte 27");
  EXPECT_EQ(trouble("P5 1234567890 1 255\n"), ": an image without pels, at byte 15")
      << "a number ends after nine digits";
  fs::remove(file);
  EXPECT_THROW(gfReadNetpbmGrey(file), gxPel::BadImageFile);
}

TEST_F(Netpbm, CutAndChangedFilesEndInSuccessOrTheException)
{
  std::string const whole = "P3\n2 2 255\n1 2 3 4 5 6 7 8 9 10 11 12\n";
  for (std::size_t n = 0; n < whole.size(); ++n)
    trouble(whole.substr(0, n));
  std::mt19937 random(9);
  int refused = 0;
  for (int i = 0; i < 300; ++i) {
    std::string bad = whole;
    bad[random() % bad.size()] = static_cast<char>(random());
    refused += !trouble(bad).empty();
  }
  EXPECT_GT(refused, 30);
}
}  // namespace
