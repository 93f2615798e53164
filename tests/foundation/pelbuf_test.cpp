#include "foundation/pelbuf.h"
#include "foundation/archive.h"
#include "foundation/matherror.h"
#include "foundation/pelops.h"
#include "tests/support/archived.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <sstream>
#include <string>

namespace
{
using Buffer8 = gxPelBuffer<unsigned char>;
using ConstBuffer8 = gxPelBuffer_const<unsigned char>;

template <class T>
T pelOf(unsigned v)
{
  if constexpr (sizeof(T) == 1)
    return static_cast<unsigned char>(v);
  else if constexpr (sizeof(T) == 2)
    return T(static_cast<unsigned short>(v * 257));
  else
    return T(static_cast<unsigned long>(v) * 0x01030507UL);
}

/// Each pel tells its root coordinates.
template <class T>
gxPelBuffer<T> numbered(long width, long height)
{
  gxPelBuffer<T> const b(width, height);
  for (long y = 0; y < height; ++y)
    for (long x = 0; x < width; ++x)
      b.put(x, y, pelOf<T>(static_cast<unsigned>(y * width + x)));
  return b;
}

template <class T>
class PelBuffers : public testing::Test
{
};
using PelTypes = testing::Types<unsigned char, unsigned short, gxPackedRGB16Pel, gxPackedRGB32Pel>;
TYPED_TEST_SUITE(PelBuffers, PelTypes);

TYPED_TEST(PelBuffers, OwnRootsAreZeroAndAligned)
{
  for (long alignment : {4L, 8L, 32L, 64L, 4096L})
    for (long width : {0L, 1L, 7L, 33L}) {
      gxPelBuffer<TypeParam> const b(width, 3, alignment);
      EXPECT_EQ(b.rowStep() % alignment, 0);
      EXPECT_GE(b.rowStep(), width * static_cast<long>(sizeof(TypeParam)));
      EXPECT_LT(b.rowStep(), width * static_cast<long>(sizeof(TypeParam)) + alignment);
      for (long y = 0; y < 3; ++y) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(b.pointToRow(y)) % alignment, 0u);
        for (long x = 0; x < width; ++x)
          EXPECT_EQ(b.get(x, y), TypeParam());
      }
    }
}

TYPED_TEST(PelBuffers, AWindowKeepsRootCoordinates)
{
  auto const b = numbered<TypeParam>(9, 7);
  auto view = b;
  ASSERT_TRUE(view.window(3, 2, 4, 3));
  EXPECT_EQ(view.size(), gxPair<long>(4, 3));
  for (long y = 0; y < 7; ++y)
    for (long x = 0; x < 9; ++x)
      if (x >= 3 && x < 7 && y >= 2 && y < 5) {
        EXPECT_EQ(view.get(x, y), b.get(x, y));
        EXPECT_EQ(view.pointToPel(x, y), b.pointToPel(gxPair<long>(x, y)));
      } else {
        EXPECT_THROW(view.put(x, y, TypeParam()), gxPel::BadCoord);
      }
  EXPECT_EQ(view.pointToOffset(), b.pointToPel(3, 2));
  EXPECT_EQ(view.pointToRow(4), b.pointToPel(3, 4));
  EXPECT_THROW(view.pointToRow(5), gxPel::BadCoord);
  EXPECT_EQ(reinterpret_cast<char *>(view.pointToRow(3)) - reinterpret_cast<char *>(view.pointToRow(2)),
            view.rep()->rowStep());

  view.put(4, 4, pelOf<TypeParam>(200));
  EXPECT_EQ(b.get(4, 4), pelOf<TypeParam>(200)) << "copies look at the same pels";
  view.setEntire();
  EXPECT_EQ(view.window(), b.window());
}

TYPED_TEST(PelBuffers, SetCopyAndMoveWithinARoot)
{
  auto const b = numbered<TypeParam>(8, 6);
  auto view = b;
  view.window(2, 1, 4, 4);
  auto const copy = gfPelCopy<TypeParam>(view);
  gfPelSet(view, pelOf<TypeParam>(99));
  for (long y = 0; y < 6; ++y)
    for (long x = 0; x < 8; ++x) {
      bool const inside = x >= 2 && x < 6 && y >= 1 && y < 5;
      auto const before = pelOf<TypeParam>(static_cast<unsigned>(y * 8 + x));
      EXPECT_EQ(b.get(x, y), inside ? pelOf<TypeParam>(99) : before);
      if (inside) {
        EXPECT_EQ(copy.get(x - 2, y - 1), before);
      }
    }

  for (auto [dx, dy] : {std::pair(1, 1), std::pair(-1, -1), std::pair(1, -1), std::pair(0, 1), std::pair(1, 0)}) {
    auto const all = numbered<TypeParam>(8, 6);
    auto from = all, to = all;
    from.window(2, 1, 4, 4);
    to.window(2 + dx, 1 + dy, 4, 4);
    gfPelCopy<TypeParam>(from, to);
    for (long y = 0; y < 4; ++y)
      for (long x = 0; x < 4; ++x)
        EXPECT_EQ(to.get(2 + dx + x, 1 + dy + y), pelOf<TypeParam>(static_cast<unsigned>((y + 1) * 8 + x + 2)));
  }
  EXPECT_THROW(gfPelCopy<TypeParam>(view, gxPelBuffer<TypeParam>(4, 3)), gxPel::BadWindow);
}

TEST(PelRoot, WrapsWithoutOwning)
{
  unsigned char pels[3 * 5];
  std::iota(std::begin(pels), std::end(pels), static_cast<unsigned char>(0));
  {
    Buffer8 const packed(new gxPelRoot<unsigned char>(5, 3, pels, 1));
    EXPECT_FALSE(packed.rep()->isOwner());
    EXPECT_EQ(packed.pointToPel(2, 1), pels + 7);
    packed.put(4, 2, 77);
    Buffer8 const spread(new gxPelRoot<unsigned char>(2, 3, pels, 5));
    EXPECT_EQ(spread.get(1, 2), 11) << "the row step serves as alignment";
  }
  EXPECT_EQ(pels[14], 77);
  EXPECT_THROW(gxPelRoot<unsigned char>(1, 1, nullptr, 1), gxPel::BadSize);
  EXPECT_NO_THROW(gxPelRoot<unsigned char>(0, 4, nullptr, 1));
}

TEST(PelRoot, RefusesSizesThatCannotBe)
{
  for (auto [w, h] : {std::pair(-1L, 0L), std::pair(0L, -1L), std::pair(LONG_MIN, 1L), std::pair(1L, LONG_MAX),
                      std::pair(1L << 31, 1L), std::pair(INT_MAX * 1L, INT_MAX * 1L)}) {
    EXPECT_THROW(Buffer8(w, h), gxPel::BadSize) << w << " x " << h;
    EXPECT_THROW(gxPelBuffer<gxPackedRGB32Pel>(w, h), gxPel::BadSize) << w << " x " << h;
  }
  for (long alignment : {0L, -32L, LONG_MAX, LONG_MIN})
    EXPECT_THROW(Buffer8(4, 4, alignment), gxPel::BadAlignment) << alignment;
  EXPECT_THROW(gxPelBuffer<unsigned short>(4, 4, 3), gxPel::BadAlignment) << "rows would begin within a pel";
  EXPECT_NO_THROW(gxPelBuffer<unsigned short>(3, 4, 3));

  for (auto [w, h] : {std::pair(0L, 0L), std::pair(5L, 0L), std::pair(0L, 5L)}) {
    Buffer8 const none(w, h);
    EXPECT_TRUE(none.isBound());
    EXPECT_TRUE(none.window().isNull());
    EXPECT_EQ(none.size(), gxPair<long>(w, h));
    EXPECT_THROW(none.get(0, 0), gxPel::BadCoord);
    EXPECT_NO_THROW(none.pointToOffset());
    EXPECT_NO_THROW(gfPelSet_U8(none, 1));
    EXPECT_EQ(gfPelMap(ConstBuffer8(none), std::vector<unsigned char>()).size(), none.size());
  }
}

TEST(PelBuffer, RefusesOrClipsAWindow)
{
  Buffer8 b(10, 8);
  ASSERT_TRUE(b.window(2, 2, 6, 5));
  gxPelRect const before = b.window();
  for (gxPelRect r : {gxPelRect(1, 2, 3, 3), gxPelRect(2, 1, 3, 3), gxPelRect(2, 2, 7, 1), gxPelRect(2, 2, 1, 6),
                      gxPelRect(4, 4, -1, 2), gxPelRect(0, 0, 10, 8), gxPelRect(9, 2, 0, 0)}) {
    EXPECT_FALSE(b.window(r.x(), r.y(), r.width(), r.height(), false));
    EXPECT_EQ(b.window(), before);
  }
  for (long big : {LONG_MAX, LONG_MIN, 1L << 32, -(1L << 32)})
    for (int where = 0; where < 4; ++where) {
      long v[4] = {3, 3, 2, 2};
      v[where] = big;
      EXPECT_FALSE(b.window(v[0], v[1], v[2], v[3], false));
      EXPECT_EQ(b.window(), before);
    }

  auto clipped = [&](long x, long y, long w, long h) {
    Buffer8 c = b;
    bool const some = c.window(x, y, w, h, true);
    EXPECT_EQ(some, !c.window().isNull());
    return c.window();
  };
  EXPECT_EQ(clipped(0, 0, 4, 4), gxPelRect(2, 2, 2, 2));
  EXPECT_EQ(clipped(-100, 5, LONG_MAX, LONG_MAX), gxPelRect(2, 5, 6, 2));
  EXPECT_EQ(clipped(LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX).size(), gxPair<long>(0, 0));
  EXPECT_TRUE(clipped(8, 3, 5, 5).isNull());
  EXPECT_TRUE(clipped(3, 3, 0, 2).isNull());
  EXPECT_TRUE(clipped(3, 3, -2, 2).isNull());

  EXPECT_TRUE(b.window(8, 7, 0, 0)) << "a null window at the far corner fits";
  EXPECT_NO_THROW(b.pointToOffset());
}

TEST(PelBuffer, LabelsFollowThePels)
{
  Buffer8 b(10, 8);
  EXPECT_EQ(b.offset(), gxPair<long>(0, 0));
  b.window(3, 2, 5, 5);
  EXPECT_EQ(b.offset(), gxPair<long>(3, 2));
  b.offset(100, -50);
  EXPECT_EQ(b.offset(), gxPair<long>(100, -50));
  EXPECT_EQ(b.window(), gxPelRect(3, 2, 5, 5)) << "a label moves no window";
  b.window(4, 4, 2, 2);
  EXPECT_EQ(b.offset(), gxPair<long>(101, -48));
  EXPECT_EQ(gfPelCopy<unsigned char>(b).offset(), b.offset());
  b.setEntire();
  EXPECT_EQ(b.offset(), gxPair<long>(97, -52));
  b.offset(INT_MIN, INT_MAX);
  b.window(1, 1, 1, 1);
  EXPECT_EQ(b.offset(), gxPair<long>(INT_MIN + 1L, INT_MIN * 1L)) << "labels wrap";
}

TEST(PelBuffer, CarriesTheClientMap)
{
  gxXform<2> const map(gxMatrix<2>(2, 0.5, -1, 4), gxVector<2>(10, 20));
  Buffer8 b(10, 8);
  EXPECT_TRUE(b.imageFromClientXform().isIdentity());
  b.imageFromClientXform(map);
  EXPECT_EQ(b.clientFromImageXform(), map.inverse());
  EXPECT_THROW(b.clientFromImageXform(gxXform<2>(gxMatrix<2>(1, 2, 2, 4), {})), gxMathError::Singular);
  EXPECT_EQ(b.imageFromClientXform(), map);
  b.window(3, 2, 4, 4);
  EXPECT_EQ(b.imageFromClientXform(), map) << "it maps to root coordinates";

  gxVector<2> const client(1.5, -2.25);
  EXPECT_EQ(gfPelCopy<unsigned char>(b).imageFromClientXform() * client, map * client - gxVector<2>(3, 2));
  b.clientFromImageXform(map);
  EXPECT_EQ(b.imageFromClientXform(), map.inverse());
}

TEST(PelBuffer, WithoutARootRefusesAccess)
{
  Buffer8 b;
  EXPECT_FALSE(b.isBound());
  EXPECT_EQ(b.rep(), nullptr);
  EXPECT_TRUE(b.window().isNull());
  EXPECT_THROW(b.get(0, 0), gxPel::UnboundWindow);
  EXPECT_THROW(b.pointToRow(0), gxPel::UnboundWindow);
  EXPECT_THROW(b.pointToOffset(), gxPel::UnboundWindow);
  EXPECT_THROW(b.window(0, 0, 0, 0, true), gxPel::UnboundWindow);
  EXPECT_THROW(b.setEntire(), gxPel::UnboundWindow);
  EXPECT_THROW(gfPelSet_U8(b, 0), gxPel::UnboundWindow);
  EXPECT_THROW(gfPelCopy<unsigned char>(b), gxPel::UnboundWindow);
  EXPECT_FALSE(Buffer8(gxPtrHandle<gxPelRoot<unsigned char>>()).isBound());
}

TEST(PelBuffer, ErrorsSayWhatAndWhere)
{
  Buffer8 b(10, 8);
  b.window(3, 2, 4, 4);
  try {
    b.put(7, -1, 0);
    FAIL();
  } catch (gxPel::Errors const &e) {
    EXPECT_EQ(e.message(), "pel (7, -1) lies outside of the window at (3, 2) of 4 x 4 pels");
  }
}

TEST(PelBuffer, HoldsItsRoot)
{
  gxPtrHandle<gxPelRoot<unsigned char>> root(new gxPelRoot<unsigned char>(4, 4));
  {
    Buffer8 a(root), b(a), c;
    c = b;
    b = static_cast<Buffer8 const &>(b);
    EXPECT_EQ(root->refCount(), 4);
  }
  EXPECT_EQ(root->refCount(), 1);
  Buffer8 last(root);
  root = nullptr;
  last.put(3, 3, 9);
  EXPECT_EQ(last.get(3, 3), 9);
}

struct Views {
  Buffer8 first, second;
  friend gxArchive &operator||(gxArchive &archive, Views &views) { return archive || views.first || views.second; }
};

/// Two windows on one root.
Views twoViews()
{
  auto a = numbered<unsigned char>(9, 5), b = a;
  a.window(2, 1, 6, 3);
  a.offset(-7, 70000);
  a.imageFromClientXform(gxXform<2>(gxMatrix<2>(2, 0.5, -1, 4), gxVector<2>(10, 20)));
  b.window(9, 5, 0, 0);
  return {a, b};
}

TEST(PelBufferArchive, KeepsViewsOnTheirSharedRoot)
{
  auto const [a, b] = twoViews();
  auto [a2, b2] = throughArchive(twoViews());
  EXPECT_EQ(a2.window(), a.window());
  EXPECT_EQ(a2.offset(), a.offset());
  EXPECT_EQ(a2.imageFromClientXform(), a.imageFromClientXform());
  EXPECT_EQ(b2.window(), b.window());
  EXPECT_EQ(a2.rep(), b2.rep());
  EXPECT_EQ(a2.rep()->refCount(), 2) << "the archive lets go in the end";
  EXPECT_TRUE(a2.rep()->isOwner());
  b2.setEntire();
  a2.setEntire();
  for (long y = 0; y < 5; ++y)
    for (long x = 0; x < 9; ++x)
      EXPECT_EQ(b2.get(x, y), y * 9 + x) << "what the window hides is kept";
  EXPECT_EQ(a2.get(3, 2), 21);

  unsigned char borrowed[] = {1, 2, 3, 4};
  auto const [c, none] = throughArchive(Views{Buffer8(new gxPelRoot<unsigned char>(2, 2, borrowed, 1)), Buffer8()});
  EXPECT_TRUE(c.rep()->isOwner());
  EXPECT_EQ(c.get(1, 1), 4);
  EXPECT_FALSE(none.isBound());
}

TEST(PelBufferArchive, DamageIsToldAndChangesNothing)
{
  Views const good = twoViews();
  std::string const bytes = archivedBytes(good);
  int refused = 0;
  forDamaged(bytes, [&](std::string const &bad) {
    Views target{good.second, good.second};
    try {
      loadArchived(bad, target);
    } catch (gxArchive::Errors const &) {
      ++refused;
      EXPECT_EQ(target.second.rep(), good.second.rep());
      return;
    }
    EXPECT_EQ(bad.size(), bytes.size());
    // What loads is sound: every pel of its window is there.
    for (Buffer8 const &buffer : {target.first, target.second})
      if (buffer.isBound() && !buffer.window().isNull())
        gfPelSet_U8(buffer, 1);
  });
  EXPECT_GT(refused, static_cast<int>(bytes.size()) + 100);
}

TEST(PelRoot, IsNotLoadedOverPelsInUse)
{
  Buffer8 const b(3, 3);
  std::ostringstream os;
  gxStoringArchive(os) || *const_cast<gx_PelRoot *>(b.rep());
  std::istringstream is(os.str());
  gxLoadingArchive archive(is);
  EXPECT_THROW(archive || *const_cast<gx_PelRoot *>(b.rep()), gxArchive::Errors);
  EXPECT_EQ(b.get(2, 2), 0);
}

TEST(PelMap, ValuesBeyondTheMapStay)
{
  auto all = numbered<unsigned char>(16, 16);
  all.window(1, 1, 15, 15);
  std::vector<unsigned char> map(100);
  std::iota(map.rbegin(), map.rend(), static_cast<unsigned char>(5));
  auto const mapped = gfPelMap(ConstBuffer8(all), map);
  EXPECT_EQ(mapped.offset(), all.offset());
  for (long y = 0; y < 15; ++y)
    for (long x = 0; x < 15; ++x) {
      int const v = all.get(x + 1, y + 1);
      EXPECT_EQ(mapped.get(x, y), v < 100 ? 104 - v : v);
    }
  EXPECT_EQ(all.get(1, 1), 17) << "the source is left alone";
}

TEST(PackedPels, KeepTheirBytes)
{
  gxPackedRGB32Pel const p(1, 2, 3, 4);
  EXPECT_EQ(p.value(), 0x04030201u);
  EXPECT_EQ(gxPackedRGB32Pel(0xffffffff04030201UL), p);
  unsigned char bytes[4];
  std::memcpy(bytes, &p, 4);
  EXPECT_THAT(bytes, testing::ElementsAre(1, 2, 3, 4));

  EXPECT_EQ(gxPackedRGB16Pel(255, 0, 0).value(), 0xf800);
  EXPECT_EQ(gxPackedRGB16Pel(0, 255, 0).value(), 0x07e0);
  EXPECT_EQ(gxPackedRGB16Pel(0, 0, 255).value(), 0x001f);
  for (unsigned v = 0; v < 0x10000; ++v) {
    gxPackedRGB16Pel const q(static_cast<unsigned short>(v));
    ASSERT_EQ(gxPackedRGB16Pel(q.red(), q.green(), q.blue()), q) << v;
  }
  EXPECT_EQ(gxPackedRGB16Pel(0xffff).green(), 255);
}
}  // namespace
