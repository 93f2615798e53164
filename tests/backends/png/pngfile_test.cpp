#include "backends/png/pngfile.h"

#include "foundation/pelerror.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace
{
namespace fs = std::filesystem;

struct PngFile : testing::Test {
  fs::path const folder = fs::temp_directory_path() / ("gxdisplay_png_" + std::to_string(std::random_device()()));
  PngFile() { fs::create_directories(folder); }
  ~PngFile() override { fs::remove_all(folder); }
  std::string path(char const *name) const { return (folder / name).string(); }

  static std::vector<char> bytesOf(std::string const &path)
  {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  static void put(std::string const &path, std::vector<char> const &bytes)
  {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  /// The text of the exception that reading throws, or "" if it reads.
  static std::string trouble(std::string const &path)
  {
    try {
      gfReadPngColor(path);
    } catch (gxPel::BadImageFile const &e) {
      return e.message();
    }
    return "";
  }
};

TEST_F(PngFile, KeepsTheWindowOfABufferExactly)
{
  std::mt19937 random(5);
  gxPelBuffer<gxPackedRGB32Pel> color(37, 11);
  gxPelBuffer<unsigned char> grey(37, 11);
  for (long y = 0; y < 11; ++y)
    for (long x = 0; x < 37; ++x) {
      color.put(x, y, gxPackedRGB32Pel(static_cast<unsigned long>(random())));
      grey.put(x, y, static_cast<unsigned char>(random()));
    }
  ASSERT_TRUE(color.window(3, 2, 20, 7));
  ASSERT_TRUE(grey.window(3, 2, 20, 7));
  gfWritePng(path("c.png"), color);
  gfWritePng(path("g.png"), grey);
  auto const color2 = gfReadPngColor(path("c.png"));
  auto const grey2 = gfReadPngGrey(path("g.png"));
  auto const greyAsColor = gfReadPngColor(path("g.png"));
  ASSERT_EQ(color2.size(), gxPair<long>(20, 7));
  ASSERT_EQ(grey2.size(), gxPair<long>(20, 7));
  for (long y = 0; y < 7; ++y)
    for (long x = 0; x < 20; ++x) {
      gxPackedRGB32Pel const c = color.get(x + 3, y + 2);
      unsigned char const g = grey.get(x + 3, y + 2);
      EXPECT_EQ(color2.get(x, y), gxPackedRGB32Pel(c.red(), c.green(), c.blue()));
      EXPECT_EQ(grey2.get(x, y), g);
      EXPECT_EQ(greyAsColor.get(x, y), gxPackedRGB32Pel(g, g, g));
    }
}

TEST_F(PngFile, NamesTheFileAndTheReason)
{
  EXPECT_THAT(trouble(path("missing.png")), testing::EndsWith("missing.png: No such file or directory"));
  put(path("text.png"), {'h', 'e', 'l', 'l', 'o', ' ', 'y', 'o', 'u', '\n'});
  EXPECT_THAT(trouble(path("text.png")), testing::HasSubstr("text.png: Not a PNG file"));
  EXPECT_THROW(gfWritePng(path("empty.png"), gxPelBuffer<unsigned char>()), gxPel::BadImageFile);
  EXPECT_THROW(gfWritePng(path("no/such/folder.png"), gxPelBuffer<unsigned char>(2, 2)), gxPel::BadImageFile);
}

TEST_F(PngFile, DamagedFilesEndInTheException)
{
  gxPelBuffer<unsigned char> grey(16, 16);
  for (long i = 0; i < 256; ++i)
    grey.put(i % 16, i / 16, static_cast<unsigned char>(i * 7));
  gfWritePng(path("g.png"), grey);
  std::vector<char> const whole = bytesOf(path("g.png"));
  for (std::size_t n = 0; n < whole.size(); ++n) {
    put(path("cut.png"), {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)});
    EXPECT_NE(trouble(path("cut.png")), "") << n;
  }
  int refused = 0;
  for (std::size_t n = 8; n < whole.size(); ++n) {
    std::vector<char> bad = whole;
    bad[n] = static_cast<char>(bad[n] ^ 0x5a);
    put(path("bad.png"), bad);
    refused += trouble(path("bad.png")) != "";
  }
  EXPECT_GT(refused, static_cast<int>(whole.size()) / 2) << "the check sums see most of it";
}

TEST_F(PngFile, AHugeImageIsRefusedBeforeMemoryIsTaken)
{
  gfWritePng(path("g.png"), gxPelBuffer<unsigned char>(4, 4));
  std::vector<char> bytes = bytesOf(path("g.png"));
  for (int const at : {16, 20}) {  // width and height 2^19 each, with the check sum of that header
    bytes[static_cast<std::size_t>(at)] = 0;
    bytes[static_cast<std::size_t>(at) + 1] = 8;
    bytes[static_cast<std::size_t>(at) + 2] = 0;
    bytes[static_cast<std::size_t>(at) + 3] = 0;
  }
  auto crc = [](char const *p, int n) {
    unsigned long c = 0xffffffff;
    for (int i = 0; i < n; ++i) {
      c ^= static_cast<unsigned char>(p[i]);
      for (int k = 0; k < 8; ++k)
        c = c & 1 ? 0xedb88320 ^ c >> 1 : c >> 1;
    }
    return c ^ 0xffffffff;
  };
  unsigned long const sum = crc(&bytes[12], 17);
  for (int i = 0; i < 4; ++i)
    bytes[static_cast<std::size_t>(29 + i)] = static_cast<char>(sum >> (24 - 8 * i));
  put(path("huge.png"), bytes);
  EXPECT_THAT(trouble(path("huge.png")), testing::HasSubstr("524288 x 524288 is too large"));
}
}  // namespace
