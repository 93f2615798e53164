#include "dispc/uistring.h"

#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{
gxUIFormat aligned(int alignment)
{
  return gxUIFormat(0, static_cast<gxUIFormat::Alignment>(alignment));
}

gxUIFormat const madeAtStaticInitialisation;
}  // namespace

TEST(UIFormat, DefaultFontIsSharedByTheProcess)
{
  EXPECT_EQ(madeAtStaticInitialisation, gxUIFormat(-1, gxUIFormat::topLeft));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([] { EXPECT_EQ(gxUIFormat::defaultFontId(), -1); });
  for (std::thread &t : threads)
    t.join();

  gxUIFormat::defaultFontId((1L << 32) + 12);
  EXPECT_EQ(gxUIFormat::defaultFontId(), 12);
  EXPECT_EQ(gxUIFormat(gxUIFormat::center), gxUIFormat(12, gxUIFormat::center));
  EXPECT_EQ(madeAtStaticInitialisation.fontId(), -1) << "a format keeps the font it was made with";
  gxUIFormat::defaultFontId(-1);
  EXPECT_EQ(gxUIFormat().fontId(), -1);
}

TEST(UIFormat, AlignmentPutsItsPointAtThePosition)
{
  gxUIRect const r(10, 10, 5, 7);
  EXPECT_EQ(aligned(gxUIFormat::center).alignRect(r), gxUIRect(8, 7, 5, 7));
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) {
      gxUIRect const placed = aligned(3 * row + column).alignRect(r);
      EXPECT_EQ(placed.sz(), r.sz());
      EXPECT_EQ(placed.left(), 10 - (column == 0 ? 0 : column == 1 ? 2 : 5)) << row << column;
      EXPECT_EQ(placed.top(), 10 - (row == 0 ? 0 : row == 1 ? 3 : 7)) << row << column;
    }
  for (int const other : {-1, 9, 100, -2147483647 - 1})
    EXPECT_EQ(aligned(other).alignRect(r), r) << other;
  EXPECT_EQ(aligned(8).alignRect(gxUIRect::null), gxUIRect::null);
  // the origin wraps below the range
  EXPECT_EQ(aligned(2).alignRect(gxUIRect(-2147483647, 0, 3, 1)).left(), 2147483646);
}

TEST(UIFormat, ArchiveForm)
{
  gxUIFormat const format(-2, gxUIFormat::bottomCenter);
  std::string const bytes = bytesOf({0, 0xFE, 0xFF, 0xFF, 0xFF, 7, 0, 0, 0});
  EXPECT_EQ(archivedBytes(format), bytes);
  EXPECT_EQ(throughArchive(format), format);
  EXPECT_EQ(throughArchive(aligned(-77)), aligned(-77));
  EXPECT_EQ(refusalOfVersion(bytes, 0, aligned(3), "dispc/uistring", 77), "");
}
