#include "dispc/uirect.h"

#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>

namespace
{
constexpr long lowest = -2147483647L - 1;
constexpr long highest = 2147483647L;

constinit gxUIRect const atStaticInitialisation = gxUIRect::inf;

using Pels = std::set<std::pair<long, long>>;

Pels pelsOf(gxUIRect const &r)
{
  Pels pels;
  for (long y = r.top(); y < r.top() + r.height(); ++y)
    for (long x = r.left(); x < r.left() + r.width(); ++x)
      pels.insert({x, y});
  return pels;
}

bool isNormal(gxUIRect const &r)
{
  return r == gxUIRect::null || (r.width() >= 1 && r.height() >= 1);
}
}  // namespace

TEST(UIRect, ConstantsAndConstruction)
{
  EXPECT_EQ(atStaticInitialisation, gxUIRect(-1073741823, -1073741823, 2147483647, 2147483647));
  EXPECT_EQ(gxUIRect::inf.right(), 1073741824);
  EXPECT_EQ(gxUIRect::firstQuad.lr(), gxPair<long>(1073741823, 1073741823));
  for (gxUIRect const &r : {gxUIRect(5, 5, 0, 10), gxUIRect(5, 5, 10, 0), gxUIRect(5, 5, -3, 10),
                            gxUIRect(5, 5, 10, lowest), gxUIRect(gxPair<long>(5, 5), gxPair<long>(1L << 32, 4))}) {
    EXPECT_EQ(r, gxUIRect::null);
    EXPECT_TRUE(r.isNull());
  }
  // 2^32 + 3 narrows to 3 before the test of the size
  EXPECT_EQ(gxUIRect(1, 2, (1L << 32) + 3, 4), gxUIRect(1, 2, 3, 4));
}

TEST(UIRect, EdgesWrap)
{
  gxUIRect r(highest - 1, 0, 4, 1);
  EXPECT_EQ(r.right(), lowest + 2);
  EXPECT_EQ(r & r, r);
  EXPECT_EQ(r | r, r);
  EXPECT_TRUE(r.within(gxPair<long>(highest, 0)));
  r += gxPair<long>(10, 0);
  EXPECT_EQ(r.left(), lowest + 8);
  EXPECT_EQ(r - gxPair<long>(10, 0), gxUIRect(highest - 1, 0, 4, 1));
  EXPECT_EQ((gxUIRect::inf + gxPair<long>(highest, 0)).left(), 1073741824);
}

TEST(UIRect, FarRectanglesDoNotMeet)
{
  gxUIRect const window(0, 0, 640, 480);
  gxUIRect const ends[] = {gxUIRect(highest, 0, 100, 480), gxUIRect(lowest, 0, 100, 480),
                           gxUIRect(0, highest, 640, highest), gxUIRect(0, lowest, 640, highest)};
  for (gxUIRect const &a : ends) {
    EXPECT_TRUE(window.nullIntersection(a)) << a;
    EXPECT_EQ(window & a, gxUIRect::null) << a;
    for (gxUIRect const &b : ends)
      EXPECT_EQ(a & b, a == b ? a : gxUIRect::null) << a << " and " << b;
  }
  EXPECT_EQ(ends[0] | ends[1], gxUIRect::null);  // wider than 32 bits
  EXPECT_EQ((gxUIRect::inf + gxPair<long>(1073741900, 0)) & window, gxUIRect(77, 0, 563, 480));
}

TEST(UIRect, NullIsNotTheSameForEveryOperation)
{
  gxUIRect const r(3, 4, 5, 6);
  gxUIRect const null;
  EXPECT_EQ(null | r, r);
  EXPECT_EQ(r | null, r);
  EXPECT_EQ(null & r, null);
  EXPECT_EQ(r & null, null);
  EXPECT_EQ(null + gxPair<long>(1, 1), null);

  gxUIRect moved;
  moved += gxPair<long>(7, 8);
  EXPECT_EQ(moved.ul(), gxPair<long>(7, 8));
  EXPECT_TRUE(moved.isNull());
  EXPECT_NE(moved, null);
  gxUIRect kept = moved;
  EXPECT_EQ(kept &= r, moved) << "a null rectangle stays as it is";
  gxUIRect taken = r;
  EXPECT_EQ(taken &= moved, moved) << "the null value of the other is taken";
  EXPECT_EQ(moved & r, null);
  EXPECT_EQ(moved + gxPair<long>(1, 1), null);
  EXPECT_EQ(r | moved, r);
  EXPECT_EQ(moved | null, null) << "the other, as it stands";
  moved -= gxPair<long>(7, 8);
  EXPECT_EQ(moved, null);

  gxUIRect still;
  still.ul(gxPair<long>(9, 9));
  EXPECT_EQ(still, null);
  gxUIRect sized = r;
  sized.sz(gxPair<long>(1, 2));
  EXPECT_EQ(sized, gxUIRect(3, 4, 1, 2));
  sized.sz(gxPair<long>(1, 0));
  EXPECT_EQ(sized, null);
}

TEST(UIRect, WithinLooksAtTheFirstAndTheLastPel)
{
  gxUIRect const r(1, 1, 2, 2);
  EXPECT_TRUE(r.within(gxUIRect(2, 2, 1, 1)));
  EXPECT_FALSE(r.within(gxPair<long>(3, 3)));
  EXPECT_FALSE(gxUIRect(2, 2, 1, 1).within(r));
  EXPECT_TRUE(gxUIRect::inf.within(gxUIRect::firstQuad));
  // the last pel of a null rectangle is (-1, -1)
  EXPECT_TRUE(gxUIRect(-1, -1, 2, 2).within(gxUIRect::null));
  EXPECT_FALSE(gxUIRect(0, 0, 2, 2).within(gxUIRect::null));
}

TEST(UIRect, BehavesAsASetOfPels)
{
  std::mt19937 random(20240611);
  std::uniform_int_distribution<long> origin(-4, 4), size(-1, 6), shift(-5, 5);
  auto const any = [&] { return gxUIRect(origin(random), origin(random), size(random), size(random)); };
  for (int round = 0; round < 4000; ++round) {
    gxUIRect const a = any(), b = any();
    SCOPED_TRACE(testing::Message() << a << " and " << b);
    Pels const pa = pelsOf(a), pb = pelsOf(b);

    Pels both;
    for (auto const &p : pa)
      if (pb.count(p))
        both.insert(p);
    ASSERT_EQ(pelsOf(a & b), both);
    ASSERT_EQ(a.nullIntersection(b), both.empty());
    gxUIRect met = a;
    met &= b;
    ASSERT_EQ(met, a & b);

    gxUIRect const box = a | b;
    ASSERT_TRUE(isNormal(a & b) && isNormal(box));
    Pels all = pa;
    all.insert(pb.begin(), pb.end());
    ASSERT_EQ(box.isNull(), all.empty());
    bool left = false, top = false, right = false, bottom = false;
    for (auto const &[x, y] : all) {
      ASSERT_TRUE(box.within(gxPair<long>(x, y)));
      left |= x == box.left();
      top |= y == box.top();
      right |= x == box.right() - 1;
      bottom |= y == box.bottom() - 1;
    }
    ASSERT_TRUE(all.empty() || (left && top && right && bottom)) << "the box is not tight: " << box;
    if (!a.isNull() && !b.isNull()) {
      ASSERT_EQ(a.within(b), both == pb);
    }

    gxPair<long> const d(shift(random), shift(random));
    ASSERT_EQ((a + d) - d, a);
    ASSERT_EQ((a & b) + d, (a + d) & (b + d));
  }
}

TEST(UIRect, ArchiveForm)
{
  gxUIRect const r(-2, 258, 3, 65536);
  std::string const bytes = bytesOf({0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0x02, 0x01, 0, 0, 0, 3, 0, 0, 0, 0, 0, 1, 0});
  EXPECT_EQ(archivedBytes(r), bytes);
  gxUIRect moved;
  moved += gxPair<long>(5, -5);
  for (gxUIRect const &value : {r, moved, gxUIRect::null, gxUIRect::inf})
    EXPECT_EQ(throughArchive(value), value);

  EXPECT_EQ(refusalOfVersion(bytes, 0, gxUIRect(1, 2, 3, 4), "dispc/uirect", 156), "");
  EXPECT_EQ(refusalOfVersion(bytes, 0, gxUIRect(1, 2, 3, 4), "dispc/uirect", 156, -1), "");
  EXPECT_EQ(refusalOfVersion(bytes, 1, gxUIRect(1, 2, 3, 4), "", 0), "");
  EXPECT_EQ(refusalOfVersion(bytes, 10, gxUIRect(1, 2, 3, 4), "", 0), "");
}
