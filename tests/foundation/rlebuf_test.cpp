#include "foundation/rlebuf.h"
#include "foundation/archive.h"
#include "foundation/pelops.h"
#include "tests/support/archived.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{
using Buffer8 = gxPelBuffer<unsigned char>;
using Runs = std::vector<std::pair<int, int>>;

/// The runs of a row, value and length, without the closing pair.
Runs runsOf(gxRLEBuffer const &b, long y)
{
  Runs runs;
  for (gxRLEBufferRun const *r = b.pointToRow(y); r->length != 0; ++r)
    runs.emplace_back(r->value, r->length);
  return runs;
}

/// The runs of a row of pels, by the rule: maximal stretches of one value, cut into pieces of 255 from the left.
Runs naiveRuns(Buffer8 const &image, long y)
{
  Runs runs;
  for (long x = image.window().x(); x < image.window().x() + image.width(); ++x) {
    int const v = image.get(x, y);
    if (!runs.empty() && runs.back().first == v && runs.back().second < 255)
      ++runs.back().second;
    else
      runs.emplace_back(v, 1);
  }
  return runs;
}

/// Stretches of all lengths, those near 16 and 255 above all.
Buffer8 generated(std::mt19937 &random, long width, long height, int values)
{
  Buffer8 const b(width, height);
  long const lengths[] = {1, 1, 2, 3, 15, 16, 17, 31, 33, 254, 255, 256, 510, 511};
  for (long y = 0; y < height; ++y)
    for (long x = 0; x < width;) {
      long const n = lengths[random() % std::size(lengths)];
      auto const v = static_cast<unsigned char>(random() % values);
      for (long i = 0; i < n && x < width; ++i)
        b.put(x++, y, v);
    }
  return b;
}

void expectEqual(Buffer8 const &a, Buffer8 const &b)
{
  ASSERT_EQ(a.size(), b.size());
  for (long y = 0; y < a.height(); ++y)
    for (long x = 0; x < a.width(); ++x)
      ASSERT_EQ(a.get(a.window().x() + x, a.window().y() + y), b.get(b.window().x() + x, b.window().y() + y))
          << "at " << x << ", " << y;
}

TEST(RLEBuffer, PacksMaximalRunsAndUnpacksTheSamePels)
{
  std::mt19937 random(4711);
  for (long width : {1L, 2L, 15L, 16L, 17L, 18L, 33L, 255L, 256L, 257L, 640L, 1100L})
    for (int values : {1, 2, 256}) {
      SCOPED_TRACE(testing::Message() << "width " << width << ", values " << values);
      Buffer8 image = generated(random, width + 7, 9, values);
      image.window(3, 2, width, 5);
      gxRLEBuffer const packed(image);
      EXPECT_EQ(packed.size(), image.size());
      EXPECT_EQ(packed.offset(), image.offset());
      long runs = 0;
      for (long y = 2; y < 7; ++y) {
        EXPECT_EQ(runsOf(packed, y), naiveRuns(image, y));
        runs += static_cast<long>(naiveRuns(image, y).size());
      }
      EXPECT_EQ(packed.numRuns(), runs);
      expectEqual(packed.image(), image);
      EXPECT_EQ(packed.image().offset(), image.offset());
    }
}

TEST(RLEBuffer, EmptyImages)
{
  gxRLEBuffer b;
  EXPECT_TRUE(b.isNull());
  EXPECT_EQ(b.numRuns(), 0);
  EXPECT_THROW(b.pointToRow(0), gxPel::BadCoord);
  EXPECT_EQ(b.image().size(), gxPair<long>(0, 0));
  EXPECT_TRUE(gxRLEBuffer(b).isNull());
  EXPECT_TRUE(gxRLEBuffer(b.subWindow(gxPelRect(-5, -5, 10, 10))).isNull());

  b.encode(Buffer8(0, 3));
  EXPECT_FALSE(b.isNull());
  EXPECT_EQ(b.size(), gxPair<long>(0, 3));
  EXPECT_EQ(b.pointToRow(2)->length, 0) << "only the closing pair";
  EXPECT_EQ(b.image().size(), gxPair<long>(0, 3));
  EXPECT_THROW(b.encode(Buffer8()), gxPel::UnboundWindow);
  EXPECT_EQ(b.height(), 3) << "unchanged by what failed";
}

/// Blocks as a client makes them: a row too short, one too long, one of the closing pair alone.
struct Handmade {
  std::vector<gxRLEBufferRun *> blocks{new gxRLEBufferRun[3]{{5, 2}, {6, 1}, {77, 0}},
                                       new gxRLEBufferRun[4]{{1, 3}, {2, 255}, {9, 0}, {0, 0}}};
  std::vector<gxRLEBufferRun *> rows{blocks[0], blocks[1], blocks[1] + 3};

  void freeBlocks()
  {
    for (auto *b : blocks)
      delete[] b;
  }
};

TEST(RLEBuffer, RowsMayBeShorterOrLongerThanTheWidth)
{
  Handmade made;
  gxRLEBuffer b;
  b.offset(gxPair<long>(3, 3));
  b.becomeOwner(5, made.rows, made.blocks, true);
  EXPECT_EQ(b.offset(), gxPair<long>(0, 0));
  EXPECT_EQ(b.numRuns(), 4);
  EXPECT_EQ(made.rows.size(), 3u) << "the vectors stay with their owner";
  EXPECT_EQ(made.blocks.size(), 2u);
  EXPECT_EQ(b.pointToRow(1), made.rows[1]) << "no run is copied";

  unsigned char const expected[3][5] = {{5, 5, 6, 0, 0}, {1, 1, 1, 2, 2}, {0, 0, 0, 0, 0}};
  auto const image = b.image();
  for (long y = 0; y < 3; ++y)
    for (long x = 0; x < 5; ++x)
      EXPECT_EQ(image.get(x, y), expected[y][x]);

  gxRLEBuffer const cut = b.subWindow(gxPelRect(1, 0, 4, 3));
  EXPECT_EQ(runsOf(cut, 0), (Runs{{5, 1}, {6, 1}}));
  EXPECT_EQ(runsOf(cut, 1), (Runs{{1, 2}, {2, 2}}));
  EXPECT_EQ(runsOf(cut, 2), Runs());
}

TEST(RLEBuffer, BorrowedRunsAreNotFreedAndCopiesOwnTheirs)
{
  Handmade made;
  gxRLEBuffer copy;
  {
    gxRLEBuffer borrowed;
    borrowed.becomeOwner(3, made.rows, made.blocks, false);
    copy = borrowed;
    gxRLEBuffer moved = std::move(borrowed);
    EXPECT_EQ(moved.pointToRow(0), made.rows[0]);
    EXPECT_TRUE(borrowed.isNull());
  }
  EXPECT_NE(copy.pointToRow(0), made.rows[0]);
  made.freeBlocks();
  EXPECT_EQ(runsOf(copy, 0), (Runs{{5, 2}, {6, 1}}));
  copy = static_cast<gxRLEBuffer const &>(copy);
  EXPECT_EQ(runsOf(copy, 1), (Runs{{1, 3}, {2, 255}}));
}

TEST(RLEBuffer, ARefusedTakeOverChangesNothing)
{
  gxRLEBuffer b(Buffer8(4, 2));
  Handmade made;
  EXPECT_THROW(b.becomeOwner(-1, made.rows, made.blocks, true), gxPel::BadSize);
  EXPECT_THROW(b.becomeOwner(LONG_MAX, made.rows, made.blocks, true), gxPel::BadSize);
  made.rows[1] = nullptr;
  EXPECT_THROW(b.becomeOwner(4, made.rows, made.blocks, true), gxPel::BadWindow);
  EXPECT_EQ(b.size(), gxPair<long>(4, 2));
  made.freeBlocks();
}

TEST(RLEBuffer, ASubWindowHoldsThePelsOfTheCutImage)
{
  std::mt19937 random(99);
  Buffer8 image = generated(random, 700, 12, 3);
  image.offset(-20, 1000);
  gxRLEBuffer const packed(image);
  auto coordinate = [&](long size) { return static_cast<long>(random() % (size + 60)) - 30; };
  for (int n = 0; n < 300; ++n) {
    gxPelRect const r(coordinate(700) - 20, coordinate(12) + 1000, coordinate(700), coordinate(12));
    gxRLEBuffer const part = packed.subWindow(r);
    Buffer8 view = image;
    // A window with a negative size holds nothing, as does one beside the image.
    view.window(r.x() + 20, r.y() - 1000, r.width(), r.height(), true);
    ASSERT_EQ(part.size(), view.size()) << n;
    if (view.window().isNull())
      continue;
    EXPECT_EQ(part.offset(), view.offset());
    expectEqual(part.image(), view);
  }
  gxRLEBuffer const all = packed.subWindow(gxPelRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX));
  EXPECT_EQ(all.size(), gxPair<long>(19, 0)) << "the largest window from the farthest corner ends at -1";
}

TEST(RLEBufferArchive, KeepsRunsAndOffset)
{
  Handmade made;
  gxRLEBuffer b, packed(Buffer8(600, 2)), none;
  b.becomeOwner(5, made.rows, made.blocks, true);
  b.offset(gxPair<long>(-4, INT_MAX));
  gxRLEBuffer const b2 = throughArchive(b), packed2 = throughArchive(packed);
  gxRLEBuffer none2(Buffer8(2, 2));
  loadArchived(archivedBytes(none), none2);
  EXPECT_EQ(b2.size(), b.size());
  EXPECT_EQ(b2.offset(), b.offset());
  EXPECT_EQ(runsOf(b2, INT_MAX), runsOf(b, INT_MAX));
  expectEqual(b2.image(), b.image());
  expectEqual(packed2.image(), packed.image());
  EXPECT_TRUE(none2.isNull());
}

TEST(RLEBufferArchive, DamageIsToldAndChangesNothing)
{
  std::mt19937 random(17);
  std::string const good = archivedBytes(gxRLEBuffer(generated(random, 60, 4, 3)));
  forDamaged(good, [&](std::string const &bad) {
    gxRLEBuffer target(Buffer8(3, 2));
    try {
      loadArchived(bad, target);
    } catch (gxArchive::Errors const &) {
      EXPECT_EQ(target.size(), gxPair<long>(3, 2));
      return;
    }
    EXPECT_EQ(bad.size(), good.size());
    EXPECT_EQ(target.height(), 4);
    Buffer8 const window(64, 4);
    target.unpack(window);
  });
  // A run of length 0 within a row would hide what follows.
  std::string bad = good;
  bad[bad.size() - 1] = 0;
  gxRLEBuffer target;
  EXPECT_THROW(loadArchived(bad, target), gxArchive::Errors);
}

TEST(RLEBuffer, UnpacksIntoAWindow)
{
  std::mt19937 random(5);
  Buffer8 const image = generated(random, 300, 6, 256);
  gxRLEBuffer const packed(image);
  for (auto [w, h] : {std::pair(300L, 6L), std::pair(299L, 5L), std::pair(320L, 8L), std::pair(1L, 1L)}) {
    Buffer8 target(330, 10);
    gfPelSet_U8(target, 200);
    target.window(4, 1, w, h);
    packed.unpack(target);
    for (long y = 0; y < h; ++y)
      for (long x = 0; x < w; ++x)
        ASSERT_EQ(target.get(4 + x, 1 + y), x < 300 && y < 6 ? image.get(x, y) : 0);
    target.setEntire();
    long untouched = 0;
    for (long y = 0; y < 10; ++y)
      for (long x = 0; x < 330; ++x)
        if (x < 4 || x >= 4 + w || y < 1 || y >= 1 + h)
          untouched += target.get(x, y) == 200;
    EXPECT_EQ(untouched, 330 * 10 - w * h);
  }
  EXPECT_THROW(packed.unpack(Buffer8()), gxPel::UnboundWindow);
}

}  // namespace
