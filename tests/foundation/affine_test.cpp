#include "foundation/affine.h"
#include "foundation/detail/affinekernels.h"
#include "foundation/pelops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace
{
using Params = gxAffineSamplingParams;
using Buffer8 = gxPelBuffer<unsigned char>;
using Buffer32 = gxPelBuffer<gxPackedRGB32Pel>;

int component(unsigned char pel, int)
{
  return pel;
}
int component(gxPackedRGB32Pel pel, int c)
{
  return static_cast<int>(pel.value() >> 8 * c & 255);
}
template <class T>
constexpr int components = sizeof(T) == 1 ? 1 : 4;

void setRandom(std::mt19937 &random, unsigned char &pel)
{
  pel = static_cast<unsigned char>(random() % 3 == 0 ? random() % 256 : random() % 2 * 255);
}
void setRandom(std::mt19937 &random, gxPackedRGB32Pel &pel)
{
  unsigned char v[4];
  for (unsigned char &c : v)
    setRandom(random, c);
  pel = gxPackedRGB32Pel(v[0], v[1], v[2], v[3]);
}

/// Noise with many full contrasts, the worst case for every error of position.
template <class T>
gxPelBuffer<T> noise(long width, long height, unsigned seed)
{
  std::mt19937 random(seed);
  gxPelBuffer<T> const b(width, height);
  for (long y = 0; y < height; ++y)
    for (long x = 0; x < width; ++x)
      setRandom(random, *b.pointToPel(x, y));
  return b;
}

/// Cubic convolution with a = -1/2, by its definition.
double keys(double t)
{
  t = std::abs(t);
  return t < 1.0 ? 1.5 * t * t * t - 2.5 * t * t + 1.0 : t < 2.0 ? -0.5 * t * t * t + 2.5 * t * t - 4.0 * t + 2.0 : 0.0;
}
double tent(double t)
{
  return std::max(0.0, 1.0 - std::abs(t));
}

/// The exact value at a place of the window, whose first pel covers (0, 0) to (1, 1).
template <class T>
double exactValue(gxPelBuffer<T> const &b, gxVector<2> at, int c, Params::Interpolation mode)
{
  auto const kernel = mode == Params::bilinear ? tent : keys;
  // Ten pels beyond the border nothing changes any more, and numbers are still exact.
  double const u = std::clamp(at.x() - 0.5, -10.0, static_cast<double>(b.width() + 10));
  double const v = std::clamp(at.y() - 0.5, -10.0, static_cast<double>(b.height() + 10));
  double sum = 0.0;
  for (int j = -1; j <= 2; ++j)
    for (int i = -1; i <= 2; ++i) {
      double const px = std::floor(u) + i, py = std::floor(v) + j;
      long const x = static_cast<long>(std::clamp(px, 0.0, static_cast<double>(b.width() - 1)));
      long const y = static_cast<long>(std::clamp(py, 0.0, static_cast<double>(b.height() - 1)));
      sum += kernel(u - px) * kernel(v - py) * component(b.get(b.window().x() + x, b.window().y() + y), c);
    }
  return std::clamp(sum, 0.0, 255.0);
}

/// Where sample (i, j) is taken, in coordinates of the rectangle, by its corners.
gxVector<2> place(gxAffineRectangle const &r, long width, long height, long i, long j)
{
  double const s = (static_cast<double>(i) + 0.5) / static_cast<double>(width);
  double const t = (static_cast<double>(j) + 0.5) / static_cast<double>(height);
  return r.cornerPo() + (r.cornerPx() - r.cornerPo()) * s + (r.cornerPy() - r.cornerPo()) * t;
}

/// True if the pel is one that a sample at @p at, or next to it within rounding, lies in.
template <class T>
bool isNearest(gxPelBuffer<T> const &b, gxVector<2> at, T pel)
{
  for (double dx : {-1e-4, 1e-4})
    for (double dy : {-1e-4, 1e-4}) {
      auto const inside = [](double v, long size) {
        return static_cast<long>(std::clamp(std::floor(v), 0.0, static_cast<double>(size - 1)));
      };
      long const x = inside(at.x() + dx, b.width()), y = inside(at.y() + dy, b.height());
      if (b.get(b.window().x() + x, b.window().y() + y) == pel)
        return true;
    }
  return false;
}

template <class T>
void expectSamples(gxPelBuffer<T> const &source, gxAffineRectangle const &r, long width, long height,
                   Params::Interpolation mode)
{
  gxPelBuffer<T> target;
  gfAffineTransformImage<T>(source, target, Params(r, width, height, mode));
  ASSERT_EQ(target.size(), gxPair<long>(width, height));
  gxVector<2> const origin(source.offset());
  for (long j = 0; j < height; ++j)
    for (long i = 0; i < width; ++i) {
      gxVector<2> const at = place(r, width, height, i, j) - origin;
      T const pel = target.get(i, j);
      if (mode == Params::nearest) {
        ASSERT_TRUE(isNearest(source, at, pel)) << "sample " << i << ", " << j << " at " << at;
        continue;
      }
      for (int c = 0; c < components<T>; ++c)
        ASSERT_NEAR(component(pel, c), std::round(exactValue(source, at, c, mode)), 1.0)
            << "sample " << i << ", " << j << " at " << at << ", component " << c;
    }
}

gxAffineRectangle turned(gxVector<2> center, double x, double y, double degrees, double shear = 0.0)
{
  return {center, x, y, gxDegree(degrees), gxDegree(degrees + shear)};
}

template <class T>
class AffineSampling : public testing::Test
{
};
using PelTypes = testing::Types<unsigned char, gxPackedRGB32Pel>;
TYPED_TEST_SUITE(AffineSampling, PelTypes);

TYPED_TEST(AffineSampling, IsWithinOneGreyLevelOfTheExactValue)
{
  auto source = noise<TypeParam>(75, 49, 1);
  source.window(3, 2, 70, 44);
  gxVector<2> const middle(38.2, 24.7);
  struct {
    char const *what;
    gxAffineRectangle rectangle;
    long width, height;
  } const cases[] = {
      {"factor 2.37", turned(middle, 60, 40, 0), 142, 95},
      {"the same size", gxAffineRectangle({3, 2}, {73, 2}, {3, 46}), 70, 44},
      {"half a pel off", gxAffineRectangle({3.5, 2.5}, {73.5, 2.5}, {3.5, 46.5}), 70, 44},
      {"whole pels beyond the border", gxAffineRectangle({-7, -8}, {93, -8}, {-7, 72}), 100, 80},
      {"factor 1/2", turned(middle, 66, 40, 0), 33, 20},
      {"factor 1/5", turned(middle, 66, 40, 0), 13, 8},
      {"mirrored in x", gxAffineRectangle({70, 4}, {6, 4}, {70, 44}), 131, 80},
      {"mirrored in y", gxAffineRectangle({6, 44}, {70, 44}, {6, 4}), 131, 80},
      {"mirrored to a fifth", gxAffineRectangle({70, 44}, {6, 44}, {70, 4}), 13, 8},
      {"larger than the image", turned(middle, 200, 160, 0), 111, 90},
      {"a quarter turn", turned(middle, 40, 40, 90), 61, 61},
      {"turned inside", turned(middle, 30, 20, 17), 77, 51},
      {"turned, over the border", turned(middle, 90, 70, -33), 120, 93},
      {"sheared", turned(middle, 40, 20, 70, 25), 81, 41},
      {"mirrored and turned", turned(middle, 50, 30, 200).map(gxXform<2>(gxMatrix<2>(-1, 0, 0, 1), {76, 0})), 90, 54},
      {"beside the image", turned({300, -200}, 40, 30, 5), 20, 15},
      {"a million pels away", turned({1e6, -1e6}, 40, 30, 0), 20, 15},
      {"beyond all numbers of pels", turned({1e300, 1e300}, 1e299, 1e299, 10), 5, 5},
      {"steps over the whole image", turned(middle, 2e5, 2e5, 10), 40, 40},
      {"a point", turned(middle, 0, 0, 0), 7, 5},
      {"a line", gxAffineRectangle({5, 5}, {60, 30}, {5, 5}), 64, 3},
      {"one sample", turned(middle, 3, 3, 45), 1, 1},
  };
  for (auto const &c : cases)
    for (auto mode : {Params::nearest, Params::bilinear, Params::bicubic}) {
      SCOPED_TRACE(testing::Message() << c.what << ", interpolation " << mode);
      expectSamples<TypeParam>(source, c.rectangle, c.width, c.height, mode);
    }
}

TYPED_TEST(AffineSampling, OfTinyImages)
{
  for (auto [w, h] : {std::pair(1, 1), std::pair(2, 1), std::pair(1, 3), std::pair(4, 4), std::pair(9, 2)})
    for (auto mode : {Params::nearest, Params::bilinear, Params::bicubic})
      for (double degrees : {0.0, 30.0}) {
        SCOPED_TRACE(testing::Message() << w << " x " << h << ", interpolation " << mode << ", turned " << degrees);
        auto const source = noise<TypeParam>(w, h, 7);
        expectSamples<TypeParam>(source, turned({w / 2.0, h / 2.0}, w + 3.0, h + 3.0, degrees), 50, 40, mode);
      }
}

TYPED_TEST(AffineSampling, OfGeneratedRectangles)
{
  std::mt19937 random(20261122);
  auto const number = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  auto const source = noise<TypeParam>(64, 64, 3);
  for (int n = 0; n < 60; ++n) {
    double const degrees = n % 3 == 0 ? 0.0 : number(-180, 180);
    double const size = std::exp(number(0, 5));
    auto const r = turned({number(-5, 69), number(-5, 69)}, size, size * number(0.5, 2), degrees, number(-20, 20));
    auto const mode = static_cast<Params::Interpolation>(1 + n % 3);
    SCOPED_TRACE(testing::Message() << "case " << n << ": " << r);
    expectSamples<TypeParam>(source, r, 1 + static_cast<long>(random() % 90), 1 + static_cast<long>(random() % 50),
                             mode);
  }
}

TYPED_TEST(AffineSampling, KeepsAnEvenImageEven)
{
  for (int v : {0, 1, 127, 128, 254, 255}) {
    gxPelBuffer<TypeParam> const source(40, 30);
    TypeParam pel;
    if constexpr (sizeof(TypeParam) == 1)
      pel = static_cast<unsigned char>(v);
    else
      pel = gxPackedRGB32Pel(static_cast<unsigned long>(v) * 0x01010101UL);
    gfPelSet(source, pel);
    for (auto mode : {Params::bilinear, Params::bicubic})
      for (double degrees : {0.0, 25.0}) {
        gxPelBuffer<TypeParam> target;
        gfAffineTransformImage<TypeParam>(source, target, Params(turned({20, 15}, 33, 22, degrees), 1030, 70, mode));
        for (long y = 0; y < target.height(); ++y)
          for (long x = 0; x < target.width(); ++x)
            ASSERT_EQ(target.get(x, y), pel) << x << ", " << y;
      }
  }
}

TYPED_TEST(AffineSampling, CopiesWhatItNeedNotFilter)
{
  auto const source = noise<TypeParam>(33, 21, 5);
  for (auto mode : {Params::nearest, Params::bilinear, Params::bicubic}) {
    gxPelBuffer<TypeParam> target;
    gfAffineTransformImage<TypeParam>(source, target, Params({{0, 0}, {33, 0}, {0, 21}}, 33, 21, mode));
    for (long y = 0; y < 21; ++y)
      for (long x = 0; x < 33; ++x)
        ASSERT_EQ(target.get(x, y), source.get(x, y));
  }
}

TEST(AffineSamplingLabels, SaySourceAndTarget)
{
  auto const all = noise<unsigned char>(40, 30, 9);
  Buffer8 view = all;
  view.window(10, 5, 20, 20);
  auto const sampled = [](Buffer8 const &source, gxVector<2> po) {
    Buffer8 target;
    gfAffineTransformImage<unsigned char>(source, target,
                                          Params({po, po + gxVector<2>(8, 0), po + gxVector<2>(0, 6)}, 8, 6));
    return target;
  };
  EXPECT_EQ(sampled(view, {12, 9}).get(3, 2), all.get(15, 11)) << "without an offset, root coordinates";
  EXPECT_EQ(sampled(view, {5, 9}).get(3, 2), all.get(10, 11)) << "the border is the window's";
  view.offset(0, 0);
  EXPECT_EQ(sampled(view, {2, 4}).get(3, 2), all.get(15, 11)) << "the window's first pel is at the offset";

  // Samples go to the pels of their labels; the rest of the target stays.
  for (auto [ox, oy] :
       {std::pair(0L, 0L), std::pair(-3L, -2L), std::pair(4L, 3L), std::pair(-100L, 0L), std::pair(8L, 0L)}) {
    Buffer8 target(14, 12);
    gfPelSet_U8(target, 77);
    target.window(1, 1, 12, 10);
    target.offset(ox, oy);
    Buffer8 const expected = sampled(all, {5, 7});
    gfAffineTransformImage<unsigned char>(all, target, Params({{5, 7}, {13, 7}, {5, 13}}, 8, 6));
    target.setEntire();
    for (long y = 0; y < 12; ++y)
      for (long x = 0; x < 14; ++x) {
        long const i = x - 1 + ox, j = y - 1 + oy;
        bool const inWindow = x >= 1 && x < 13 && y >= 1 && y < 11;
        bool const isSample = inWindow && i >= 0 && i < 8 && j >= 0 && j < 6;
        ASSERT_EQ(target.get(x, y), isSample ? expected.get(i, j) : 77) << x << ", " << y;
      }
  }
}

TEST(AffineSamplingLabels, SourceAndTargetMayShareARoot)
{
  auto const expected = noise<unsigned char>(40, 30, 11), shared = noise<unsigned char>(40, 30, 11);
  Params const params({{39, 2}, {3, 5}, {36, 29}}, 40, 30, Params::bilinear);
  Buffer8 separate, target = shared;
  gfAffineTransformImage<unsigned char>(expected, separate, params);
  gfAffineTransformImage<unsigned char>(shared, target, params);
  EXPECT_EQ(target.rep(), shared.rep());
  for (long y = 0; y < 30; ++y)
    for (long x = 0; x < 40; ++x)
      ASSERT_EQ(shared.get(x, y), separate.get(x, y));
}

TEST(AffineSamplingParams, RefuseWhatCannotBeSampled)
{
  gxAffineRectangle const r;
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_THROW(Params(r, 0, 1), gxPel::BadSize);
  EXPECT_THROW(Params(r, 1, -1), gxPel::BadSize);
  EXPECT_THROW(Params(r, 1L << 40, 1), gxPel::BadSize);
  EXPECT_THROW(Params({{0, 0}, {infinity, 0}, {0, 1}}, 1, 1), gxPel::BadCoord);
  EXPECT_THROW(Params({{0, 0}, {1, 0}, {0, std::nan("")}}, 1, 1), gxPel::BadCoord);
  EXPECT_THROW(Params(r, 1, 1, static_cast<Params::Interpolation>(0)), gxPel::Errors);
  Buffer8 target;
  EXPECT_THROW(gfAffineTransformImage<unsigned char>(Buffer8(), target, Params(r, 1, 1)), gxPel::UnboundWindow);
  EXPECT_THROW(gfAffineTransformImage<unsigned char>(Buffer8(0, 4), target, Params(r, 1, 1)), gxPel::BadWindow);
  EXPECT_FALSE(target.isBound());
  // Differences of corners that overflow give positions that are no numbers: samples of the border, no crash.
  double const huge = std::numeric_limits<double>::max();
  gfAffineTransformImage<unsigned char>(noise<unsigned char>(8, 8, 1), target,
                                        Params({{-huge, -huge}, {huge, 1}, {1, huge}}, 9, 9));
  EXPECT_EQ(target.size(), gxPair<long>(9, 9));
}

/// Whatever the processor has, the pels are those of the plain kernels.
template <int C>
void expectSameKernels()
{
  auto const plain = gx_affine::plainKernels<C>(), best = gx_affine::bestKernels<C>();
  std::mt19937 random(31);
  constexpr long pels = 200, height = 20;
  std::vector<unsigned char> source(pels * height * C + 64);
  for (unsigned char &v : source)
    setRandom(random, v);

  for (int n = 0; n < 200; ++n) {
    // Rows blended: every weight, every value that a filtered row can have.
    long const count = 1 + static_cast<long>(random() % 100);
    std::vector<std::int16_t> rows[4];
    std::int16_t const *pointers[4];
    for (int k = 0; k < 4; ++k) {
      for (long i = 0; i < count + 32; ++i)
        rows[k].push_back(static_cast<std::int16_t>(random() % 32641));
      pointers[k] = rows[k].data();
    }
    std::vector<unsigned char> a(count + 32, 1), b(count + 32, 1);
    int const fraction = static_cast<int>(random() % 32768);
    plain.blendLinear(pointers, fraction, count, a.data());
    best.blendLinear(pointers, fraction, count, b.data());
    ASSERT_EQ(a, b);
    for (auto &row : rows)
      for (std::int16_t &v : row)
        v = static_cast<std::int16_t>(static_cast<int>(random() % 20401) - 2040);
    auto const &weights = gx_affine::cubicWeights()[random() % 1024];
    plain.blendCubic(pointers, weights, count, a.data());
    best.blendCubic(pointers, weights, count, b.data());
    ASSERT_EQ(a, b);

    // Lines in all directions that stay inside.
    int const length = 1 + static_cast<int>(random() % 32);
    auto const step = [&] { return static_cast<std::int32_t>(random() % 20001) - 10000; };
    gx_affine::Line const line = {source.data() + (10 * pels + 100) * C,
                                  pels * C,
                                  static_cast<int>(random() % 65536),
                                  static_cast<int>(random() % 65536),
                                  step() * 10,
                                  step(),
                                  length};
    a.assign(32 * C + 32, 1), b = a;
    plain.lineLinear(line, a.data());
    best.lineLinear(line, b.data());
    ASSERT_EQ(a, b);
    plain.lineCubic(line, a.data());
    best.lineCubic(line, b.data());
    ASSERT_EQ(a, b);
  }
}

TEST(AffineKernels, AllComputeTheSame)
{
  expectSameKernels<1>();
  expectSameKernels<4>();
}

TEST(AffineKernels, WeightsAddUpToOne)
{
  for (int f = 0; f < 1024; ++f) {
    auto const &w = gx_affine::cubicWeights()[f];
    ASSERT_NEAR(w[0] + w[1] + w[2] + w[3], 32768, 1) << f;
    for (int k = 0; k < 4; ++k)
      ASSERT_NEAR(w[k], 32768 * keys(k - 1 - f / 1024.0), 2.0) << f << ", " << k;
  }
}
}  // namespace
