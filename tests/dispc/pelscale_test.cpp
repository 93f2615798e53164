#include "dispc/uiscope.h"
#include "foundation/affine.h"
#include "foundation/pelbuf.h"
#include "foundation/pelops.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

// The tools that a scope gives its back ends to enlarge pels, against references written pel by pel from their rules.

namespace
{
using Mode = gxUIScope::InterpolationModes;
constexpr Mode none = Mode{0}, bilinear = Mode{1}, bicubic = Mode{2};

struct Tools : gxUIScope {
  using gxUIScope::pelExpand;
  using gxUIScope::pelScale;
};

template <class T>
T pelOf(unsigned long bits)
{
  return T(static_cast<std::conditional_t<sizeof(T) == 1, unsigned char,
                                          std::conditional_t<sizeof(T) == 2, unsigned short, unsigned long>>>(bits));
}

template <class T>
std::ostream &show(std::ostream &os, T v)
{
  if constexpr (std::is_integral_v<T>)
    return os << static_cast<unsigned>(v);
  else
    return os << v.value();
}

/// A window of width x height random pels, inside a larger root.
template <class T>
gxPelBuffer<T> randomPels(std::mt19937 &random, long width, long height)
{
  long const left = static_cast<long>(random() % 4), top = static_cast<long>(random() % 4);
  gxPelBuffer<T> buffer(left + width + static_cast<long>(random() % 4), top + height + 1, 4);
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x)
      buffer.put(x, y, pelOf<T>(random()));
  buffer.window(left, top, width, height);
  return buffer;
}

/// Pel (x, y) of the window.
template <class T>
T pelAt(gxPelBuffer_const<T> const &buffer, long x, long y)
{
  return buffer.get(buffer.window().x() + x, buffer.window().y() + y);
}

/// What every result keeps to, and that its pels are those of @p expected.
template <class T>
::testing::AssertionResult same(gxPelBuffer<T> const &result, gxPelBuffer<T> const &expected)
{
  if (result.size().x() != expected.size().x() || result.size().y() != expected.size().y())
    return ::testing::AssertionFailure() << "size " << result.size() << ", not " << expected.size();
  if (result.isBound() && (result.rowStep() % 32 != 0 || result.offset() != gxPair<long>() || result.window().x() != 0))
    return ::testing::AssertionFailure() << "rows " << result.rowStep() << " bytes apart, offset " << result.offset();
  for (long y = 0; y < result.height(); ++y)
    for (long x = 0; x < result.width(); ++x)
      if (!(result.get(x, y) == expected.get(x, y))) {
        auto failure = ::testing::AssertionFailure() << "pel " << x << ", " << y << " of " << result.size() << " is ";
        std::ostringstream os;
        show(os, result.get(x, y)) << ", not ";
        show(os, expected.get(x, y));
        return failure << os.str();
      }
  return ::testing::AssertionSuccess();
}

template <class T>
class PelScale : public ::testing::Test
{
};
using AllPels = ::testing::Types<unsigned char, unsigned short, gxPackedRGB16Pel, gxPackedRGB32Pel>;
TYPED_TEST_SUITE(PelScale, AllPels);

template <class T>
class PelExpand : public ::testing::Test
{
};
using ExpandedPels = ::testing::Types<unsigned char, gxPackedRGB16Pel, gxPackedRGB32Pel>;
TYPED_TEST_SUITE(PelExpand, ExpandedPels);

template <class T>
class Interpolated : public ::testing::Test
{
};
using InterpolatedPels = ::testing::Types<unsigned char, gxPackedRGB32Pel>;
TYPED_TEST_SUITE(Interpolated, InterpolatedPels);

/// A walk over the source that fills blocks.
template <class T>
gxPelBuffer<T> expandPlainly(gxPelBuffer_const<T> const &src, long kx, long ky, gxPair<long> clip, gxPair<long> phase)
{
  gxPelBuffer<T> dst(std::min(src.width() * kx, clip.x()), std::min(src.height() * ky, clip.y()));
  long top = 0;
  for (long sy = 0; sy < src.height(); ++sy) {
    long const bottom = top + std::max(0L, sy == 0 && phase.y() < 0 ? ky + phase.y() : ky);
    long left = 0;
    for (long sx = 0; sx < src.width(); ++sx) {
      long const right = left + std::max(0L, sx == 0 && phase.x() < 0 ? kx + phase.x() : kx);
      for (long y = top; y < std::min(bottom, dst.height()); ++y)
        for (long x = left; x < std::min(right, dst.width()); ++x)
          dst.put(x, y, pelAt(src, sx, sy));
      left = right;
    }
    top = bottom;
  }
  return dst;
}

TYPED_TEST(PelExpand, IsReplicationInBlocks)
{
  std::mt19937 random(11);
  auto upTo = [&](long n) { return static_cast<long>(random() % (n + 1)); };
  for (int n = 0; n < 600; ++n) {
    auto const src = randomPels<TypeParam>(random, 1 + upTo(n % 3 ? 40 : 4), 1 + upTo(9));
    long const kx = 1 + upTo(n % 4 ? 5 : 40), ky = 1 + upTo(5);
    gxUIRect const clip(upTo(9) - 4, upTo(9) - 4, 1 + upTo(150), 1 + upTo(40));
    gxPair<long> const phase(4 - upTo(kx + 6), 2 - upTo(ky + 3));
    gxPelBuffer<TypeParam> dst;
    Tools::pelExpand(src, dst, kx, ky, clip, phase);
    ASSERT_TRUE(same(dst, expandPlainly<TypeParam>(src, kx, ky, clip.sz(), phase)))
        << "case " << n << ": " << src.size() << " by " << kx << ", " << ky << " clip " << clip << " phase " << phase;
  }
}

/// Scaling without interpolation, in the terms of the rules: rectangles, the inverted map, phases, the table.
template <class T>
gxPelBuffer<T> scalePlainly(gxPelBuffer_const<T> const &src, double scale, gxUIRect const &clip,
                            gxPair<long> const &origin)
{
  gxVector<2> const start(origin), end = start + gxVector<2>(src.size()) * scale;
  gxVector<2> const clipStart(clip.ul()), clipEnd(clip.lr());
  double const left = std::max(clipStart.x(), start.x()), top = std::max(clipStart.y(), start.y());
  double const right = std::min(clipEnd.x(), end.x()), bottom = std::min(clipEnd.y(), end.y());
  if (right < left || bottom < top || std::trunc(right - left) < 1 || std::trunc(bottom - top) < 1)
    return gxPelBuffer<T>();
  gxPelBuffer<T> dst(static_cast<long>(right - left), static_cast<long>(bottom - top));

  long factor = 0;
  for (long k = static_cast<long>(scale); k < static_cast<long>(scale + 2.0) && !factor; ++k)
    if (scale > 1.0 && std::abs(scale - static_cast<double>(k)) <= 1e-6)
      factor = k;
  gxVector<2> const corner =
      gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), gxVector<2>(origin)).inverse() * gxVector<2>(left, top);
  auto blockPel = [&](double from, long i) {
    auto const first = static_cast<long>(std::floor(from * (1 + 1e-11)));
    double const p = (from - static_cast<double>(first)) * scale;
    long const phase = std::min(factor - 1, static_cast<long>(p * (1 + 1e-11)));
    long const firstBlock = phase > 0 ? factor - phase : factor;
    return first + (i < firstBlock ? 0 : 1 + (i - firstBlock) / factor);
  };
  auto tablePel = [&](double edge, double image, long i) {
    return static_cast<long>((std::trunc(edge - image) + static_cast<double>(i)) * (1.0 / scale));
  };
  for (long y = 0; y < dst.height(); ++y)
    for (long x = 0; x < dst.width(); ++x) {
      long const sx = factor ? blockPel(corner.x(), x) : tablePel(left, start.x(), x);
      long const sy = factor ? blockPel(corner.y(), y) : tablePel(top, start.y(), y);
      dst.put(x, y, pelAt(src, sx, sy));
    }
  return dst;
}

TYPED_TEST(PelScale, AgreesWithThePlainRules)
{
  double const scales[] = {0.01,      0.3,       0.5,       0.75, 0.999,      1.0,  1.0000005, 1.1,       1.5,
                           1.9999995, 2.0,       2.0000001, 2.1,  2.00000101, 2.37, 3.0,       3.7,       4.0,
                           5.0,       7.9999999, 8.0,       15.0, 16.5,       17.0, 40.0,      300.00001, 1000.0};
  std::mt19937 random(5);
  auto upTo = [&](long n) { return static_cast<long>(random() % (n + 1)); };
  for (int n = 0; n < 4000; ++n) {
    double const scale = scales[random() % std::size(scales)];
    auto const src = randomPels<TypeParam>(random, 1 + upTo(n % 3 ? 60 : 5), 1 + upTo(12));
    gxUIRect const clip(upTo(100) - 50, upTo(40) - 20, 1 + upTo(200), 1 + upTo(40));
    gxPair<long> const origin(upTo(300) - 200, upTo(120) - 80);
    gxPelBuffer<TypeParam> dst;
    Tools::pelScale(src, dst, scale, clip, origin, none);
    ASSERT_TRUE(same(dst, scalePlainly<TypeParam>(src, scale, clip, origin)))
        << "case " << n << ": " << src.size() << " by " << scale << " clip " << clip << " origin " << origin;
  }
}

TYPED_TEST(PelScale, BlocksMeetTheEdgesOfTheClipExactlyHoweverFarTheOrigin)
{
  std::mt19937 random(3);
  auto const src = randomPels<TypeParam>(random, 700'000, 2);
  for (long const factor : {3L, 7L, 10L})
    for (long i = 0; i < 200; ++i) {
      long const first = src.width() * factor - 40 - i;
      gxPelBuffer<TypeParam> dst;
      Tools::pelScale(src, dst, static_cast<double>(factor), gxUIRect(0, 0, 40, 1), gxPair<long>(-first, 0), none);
      ASSERT_EQ(dst.width(), 40);
      for (long x = 0; x < 40; ++x)
        ASSERT_TRUE(dst.get(x, 0) == pelAt(src, (first + x) / factor, 0)) << factor << ' ' << first << ' ' << x;
    }
}

TYPED_TEST(PelScale, AnImageIsTheSameInOnePieceAndInTiles)
{
  std::mt19937 random(8);
  auto const src = randomPels<TypeParam>(random, 50, 20);
  for (double const scale : {0.6, 2.37, 3.0, 6.0}) {
    gxPelBuffer<TypeParam> whole;
    gxPair<long> const origin(-7, 3);
    Tools::pelScale(src, whole, scale, gxUIRect::inf, origin, none);
    for (long top = -10; top < 150; top += 13)
      for (long left = -20; left < 320; left += 29) {
        gxPelBuffer<TypeParam> tile;
        gxUIRect const clip(left, top, 29, 13);
        Tools::pelScale(src, tile, scale, clip, origin, none);
        ASSERT_LE(tile.width(), 29);
        ASSERT_LE(tile.height(), 13);
        long const x0 = std::max(0L, left - origin.x()), y0 = std::max(0L, top - origin.y());
        for (long y = 0; y < tile.height(); ++y)
          for (long x = 0; x < tile.width(); ++x)
            ASSERT_TRUE(tile.get(x, y) == whole.get(x0 + x, y0 + y)) << scale << ' ' << clip << ' ' << x << ' ' << y;
      }
  }
}

TYPED_TEST(PelScale, NothingToShowLeavesTheDestination)
{
  constexpr double inf = std::numeric_limits<double>::infinity();
  gxPelBuffer<TypeParam> const src(20, 20);
  gxPelBuffer<TypeParam> nullWindow(src);
  nullWindow.window(0, 0, 0, 20);
  gxPelBuffer<TypeParam> const before(3, 3);
  gxPelBuffer<TypeParam> dst(before);
  gxUIRect const clip(0, 0, 100, 100);
  for (double const scale : {0.0, -0.0, -1.0, -3.0, 1e-300, 5e-324, std::nan(""), inf, -inf})
    for (Mode const mode : {none, bilinear, bicubic})
      Tools::pelScale(src, dst, scale, clip, gxPair<long>(), mode);
  for (auto const &empty : {gxPelBuffer<TypeParam>(), nullWindow})
    for (double const scale : {0.5, 2.0, 2.5})
      Tools::pelScale(empty, dst, scale, clip, gxPair<long>(), bilinear);
  Tools::pelScale(src, dst, 2.0, gxUIRect::null, gxPair<long>(), none);
  Tools::pelScale(src, dst, 2.0, clip, gxPair<long>(100, 0), none);               // beside the clip
  Tools::pelScale(src, dst, 2.5, clip, gxPair<long>(-50, 0), bilinear);           // touches it
  Tools::pelScale(src, dst, 2.0, clip, gxPair<long>(-2147483648, -5), bilinear);  // far away
  if constexpr (!std::is_same_v<TypeParam, unsigned short>) {
    constexpr long longest = std::numeric_limits<long>::max();
    for (long const k : {0L, -1L, -longest})
      for (long const other : {1L, longest}) {
        Tools::pelExpand(src, dst, k, other, clip, gxPair<long>());
        Tools::pelExpand(src, dst, other, k, clip, gxPair<long>());
      }
    Tools::pelExpand(src, dst, 2, 2, gxUIRect::null, gxPair<long>());
    Tools::pelExpand(nullWindow, dst, 2, 2, clip, gxPair<long>());
    EXPECT_EQ(dst.rep(), before.rep());
    Tools::pelExpand(src, dst, longest, longest, clip, gxPair<long>(-2147483648, 2147483647));
    EXPECT_EQ(dst.size(), clip.sz());
    dst = before;
  }
  EXPECT_EQ(dst.rep(), before.rep());
}

TYPED_TEST(PelScale, HugeScalesShowOnePelAndStayWithinTheClip)
{
  std::mt19937 random(9);
  auto const src = randomPels<TypeParam>(random, 20, 20);
  for (double const scale : {1e9, 2147483647.0, 3e9, 1e15, 1e300})
    for (Mode const mode : {none, bilinear, bicubic}) {
      gxPelBuffer<TypeParam> dst;
      Tools::pelScale(src, dst, scale, gxUIRect(-5, -5, 64, 32), gxPair<long>(-5, -20), mode);
      ASSERT_EQ(dst.size(), gxPair<long>(64, 32)) << scale;
      bool const grey = mode != none && (sizeof(TypeParam) == 1 || sizeof(TypeParam) == 4);
      TypeParam const expected = grey ? pelOf<TypeParam>(sizeof(TypeParam) == 1 ? 128 : 0x808080) : pelAt(src, 0, 0);
      EXPECT_TRUE(dst.get(0, 0) == expected && dst.get(63, 31) == expected) << scale << " mode " << mode;
    }
}

TYPED_TEST(PelScale, TheDestinationMayBeTheSource)
{
  std::mt19937 random(10);
  auto const src = randomPels<TypeParam>(random, 20, 9);
  gxPelBuffer<TypeParam> expected, both(src);
  Tools::pelScale(src, expected, 2.37, gxUIRect(0, 0, 40, 20), gxPair<long>(), none);
  Tools::pelScale(both, both, 2.37, gxUIRect(0, 0, 40, 20), gxPair<long>(), none);
  EXPECT_TRUE(same(both, expected));
}

/// Scaling with interpolation by quarters / 4, all in whole quarters of a pel of the result.
template <class T>
gxPelBuffer<T> interpolatePlainly(gxPelBuffer_const<T> const &src, long quarters, gxUIRect const &clip,
                                  gxPair<long> const &origin, long margin)
{
  struct Side {
    Side(long clipFrom, long clipSize, long start, long size, long quarters, long margin)
    {
      long const from = std::max(clipFrom, start) - start;
      long const to = std::min(4 * (clipFrom + clipSize - start), size * quarters);
      pels = (to - 4 * from) / 4;
      before = std::max(0L, margin * quarters - 4 * from);
      behind = std::max(0L, to - (size - margin) * quarters);
      a = static_cast<double>(4 * from + before) / static_cast<double>(quarters);
      b = static_cast<double>(to - behind) / static_cast<double>(quarters);
      samples = (to - 4 * from - before - behind + 2) >> 2;  // half a pel counts as one
    }
    long pels, before, behind, samples;
    double a, b;
  };
  Side const x(clip.left(), clip.width(), origin.x(), src.width(), quarters, margin);
  Side const y(clip.top(), clip.height(), origin.y(), src.height(), quarters, margin);
  gxPelBuffer<T> dst(x.pels, y.pels);
  if (x.samples >= 1 && y.samples >= 1) {
    gxPelBuffer<T> samples;
    gxPelBuffer_const<T> in(src);
    in.offset(0, 0);
    gfAffineTransformImage<T>(in, samples,
                              gxAffineSamplingParams(gxAffineRectangle({x.a, y.a}, {x.b, y.a}, {x.a, y.b}), x.samples,
                                                     y.samples, gxAffineSamplingParams::Interpolation(margin)));
    for (long j = 0; j < y.samples; ++j)
      for (long i = 0; i < x.samples; ++i)
        if (long const u = i + x.before / 4, v = j + y.before / 4; u < x.pels && v < y.pels)
          dst.put(u, v, samples.get(i, j));
  }
  T const grey = pelOf<T>(sizeof(T) == 1 ? 128 : 0x808080);
  for (long v = 0; v < y.pels; ++v)
    for (long u = 0; u < x.pels; ++u)
      if (u < x.before / 4 || v < y.before / 4 || u >= x.pels - (x.behind + 3) / 4 || v >= y.pels - (y.behind + 3) / 4)
        dst.put(u, v, grey);
  return dst;
}

TYPED_TEST(Interpolated, AgreesWithThePlainRules)
{
  std::mt19937 random(6);
  auto upTo = [&](long n) { return static_cast<long>(random() % (n + 1)); };
  for (int n = 0; n < 1500; ++n) {
    auto const src = randomPels<TypeParam>(random, 8 + upTo(20), 8 + upTo(12));
    long const quarters = 5 + upTo(n % 2 ? 9 : 40);
    gxPair<long> const origin(upTo(100) - 70, upTo(60) - 40);
    // A clip that shares a pel with the image.
    gxUIRect const clip(origin.x() + upTo(src.width()) - 10, origin.y() + upTo(src.height()) - 10, 11 + upTo(90),
                        11 + upTo(60));
    Mode const mode = n % 3 == 0 ? bilinear : Mode{static_cast<std::int32_t>(2 + n % 3 * 40)};
    gxPelBuffer<TypeParam> dst;
    Tools::pelScale(src, dst, static_cast<double>(quarters) / 4, clip, origin, mode);
    ASSERT_TRUE(same(dst, interpolatePlainly<TypeParam>(src, quarters, clip, origin, mode == bilinear ? 2 : 3)))
        << "case " << n << ": " << src.size() << " by " << quarters << "/4 clip " << clip << " origin " << origin;
  }
}

TEST(Interpolation, ARampStaysARampWhereItWas)
{
  gxPelBuffer<unsigned char> ramp(40, 12);
  for (long y = 0; y < 12; ++y)
    for (long x = 0; x < 40; ++x)
      ramp.put(x, y, static_cast<unsigned char>(6 * x + 2 * y));
  for (Mode const mode : {bilinear, bicubic})
    for (long const scale : {2L, 3L, 5L})
      for (long const shift : {0L, 7L, 23L}) {
        gxPelBuffer<unsigned char> dst;
        Tools::pelScale(ramp, dst, static_cast<double>(scale), gxUIRect(0, 0, 1000, 1000), gxPair<long>(-shift, 4),
                        mode);
        long const margin = (mode == bilinear ? 2 : 3) * scale;
        for (long y = margin; y < dst.height() - margin; ++y)
          for (long x = std::max(0L, margin - shift); x < dst.width() - margin; ++x) {
            auto const at = [&](long i) { return (static_cast<double>(i) + 0.5) / static_cast<double>(scale) - 0.5; };
            ASSERT_NEAR(dst.get(x, y), 6 * at(x + shift) + 2 * at(y), 1.001) << scale << ' ' << x << ' ' << y;
          }
      }
}

TEST(Interpolation, OnlyPelTypesAndSizesThatAreInterpolatedTakeNoticeOfTheMode)
{
  std::mt19937 random(4);
  auto isPlain = [&]<class T>(T, long width, long height, double scale) {
    auto const src = randomPels<T>(random, width, height);
    gxPelBuffer<T> plain, moded;
    Tools::pelScale(src, plain, scale, gxUIRect::firstQuad, gxPair<long>(), none);
    Tools::pelScale(src, moded, scale, gxUIRect::firstQuad, gxPair<long>(), bilinear);
    return static_cast<bool>(same(moded, plain));
  };
  unsigned char const bytes = 0;
  EXPECT_FALSE(isPlain(bytes, 8, 8, 2.0));
  EXPECT_FALSE(isPlain(gxPackedRGB32Pel(), 8, 8, 2.37));
  EXPECT_TRUE(isPlain(bytes, 7, 100, 2.0));
  EXPECT_TRUE(isPlain(gxPackedRGB32Pel(), 100, 7, 2.37));
  EXPECT_TRUE(isPlain(bytes, 30, 30, 1.0));
  EXPECT_TRUE(isPlain(bytes, 30, 30, 0.7));
  EXPECT_TRUE(isPlain(gxPackedRGB16Pel(), 30, 30, 3.0));
  EXPECT_TRUE(isPlain(static_cast<unsigned short>(0), 30, 30, 2.37));
}
}  // namespace
