#include "backends/pels/pelsurface.h"
#include "dispc/sketchop.h"
#include "foundation/matherror.h"
#include "foundation/netpbm.h"
#include "tests/support/archived.h"
#include "tests/support/opsteps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>

// The picture of a live drawing, that of its replay, and that of its replay out of an archive are the same, pel for
// pel; and a sketch is measured as a surface in memory reports it.

namespace
{
constexpr long width = 120;
constexpr long height = 90;

/// A surface and a tablet on it, with both pens at a place of their own.
struct Canvas {
  gxPelSurface surface{width, height};
  gxUITablet tablet{&surface.imageScope(), &surface.overlayScope()};

  Canvas(gxXform<2> const &map, gxPair<double> const &scale)
  {
    surface.imageScope().drawStart(gxPoint(3, 4));
    surface.overlayScope().drawStart(gxPoint(50, 6));
    tablet.baseMap(map).scaleExact(scale);
    tablet.visible(true);
  }
};

/// The pels of both layers, the overlay below the image.
using Pels = gxPelBuffer<gxPackedRGB32Pel>;

Pels pelsOf(gxPelSurface const &surface)
{
  Pels all(width, 2 * height);
  gxPelBuffer<gxPackedRGB32Pel> const image = surface.imagePels(), overlay = surface.overlayPels();
  for (long y = 0; y < height; ++y) {
    std::copy_n(image.pointToPel(0, y), width, all.pointToPel(0, y));
    std::copy_n(overlay.pointToPel(0, y), width, all.pointToPel(0, height + y));
  }
  return all;
}

long difference(Pels const &a, Pels const &b)
{
  auto const same = [](gxPackedRGB32Pel p, gxPackedRGB32Pel q) { return p.value() == q.value(); };
  long n = 0;
  for (long y = 0; y < a.height(); ++y)
    n += width - std::inner_product(a.pointToPel(0, y), a.pointToPel(0, y) + width, b.pointToPel(0, y), 0L,
                                    std::plus<>(), same);
  return n;
}

/// The first operations of a picture, live.
Pels live(OpPicture const &picture, std::size_t n)
{
  Canvas canvas(picture.moved(), picture.scale);
  for (std::size_t i = 0; i < n; ++i)
    picture.steps[i].draw(canvas.tablet);
  return pelsOf(canvas.surface);
}

using Way = std::function<gxUISketch(gxUISketch const &)>;

/// The same by their records, which come @p by some way.
Pels replayed(OpPicture const &picture, std::size_t n, Way const &by)
{
  OpPicture first = picture;
  first.steps.resize(n);
  Canvas canvas(picture.map, picture.scale);
  canvas.tablet.draw(by(first.recorded()), picture.offset, gxUITablet::both);
  return pelsOf(canvas.surface);
}

/// The number of the first operation with which the pictures part, or nothing.
std::optional<std::size_t> firstBad(OpPicture const &picture, Way const &by)
{
  auto const differ = [&](std::size_t n) { return difference(live(picture, n), replayed(picture, n, by)) != 0; };
  std::size_t good = 0, bad = picture.steps.size();
  if (!differ(bad))
    return std::nullopt;
  while (bad - good > 1) {
    std::size_t const middle = (good + bad) / 2;
    (differ(middle) ? bad : good) = middle;
  }
  return good;
}

void expectSamePicture(OpPicture const &picture, Way const &by, char const *what)
{
  std::optional<std::size_t> const bad = firstBad(picture, by);
  if (!bad)
    return;
  std::string const folder = testing::TempDir();
  Pels const expected = live(picture, *bad + 1), got = replayed(picture, *bad + 1, by);
  gfWriteNetpbm(folder + "live.ppm", expected);
  gfWriteNetpbm(folder + "replayed.ppm", got);
  ADD_FAILURE() << difference(expected, got) << " pels differ " << what << " since " << picture.steps[*bad].name()
                << ", number " << *bad << " of " << picture.names() << "; see live.ppm and replayed.ppm in " << folder;
}

gxUISketch asItIs(gxUISketch const &sketch)
{
  return sketch;
}

/// Operations on one of the layers each, under a map that shows most of what they draw.
OpPicture pictureOf(unsigned seed, std::size_t steps)
{
  OpGenerator generate(seed);
  OpPicture picture = generate.picture();
  double const shown = 0.25 / std::max(1.0, std::sqrt(std::abs(picture.map.matrix().det())));
  picture.map = gxXform<2>(gxMatrix<2>(shown, 0, 0, shown), gxVector<2>(60, 45)) * picture.map;
  while (picture.steps.size() < steps) {
    OpStep const step = generate.step(generate.variant());
    if (!isLossy(*step.variant) && !step.variant->erases() && !step.variant->nests() && step.layer != gxUITablet::both)
      picture.steps.push_back(step);
  }
  return picture;
}

TEST(PlaybackPicture, LiveReplayedAndOutOfAnArchiveAreTheSame)
{
  long drawn = 0;
  for (unsigned seed = 1; seed <= 40 && !testing::Test::HasFailure(); ++seed) {
    OpPicture const picture = pictureOf(seed, 20);
    expectSamePicture(picture, asItIs, "in the replay");
    expectSamePicture(picture, throughArchive<gxUISketch>, "out of an archive");
    drawn += difference(live(picture, 20), live(picture, 0));
  }
  EXPECT_GT(drawn, 40 * width * height / 20) << "the pictures should show something";
}

/// The search itself: a record that comes back with another colour is found, wherever it stands.
TEST(PlaybackPicture, TheFirstBadRecordIsFound)
{
  OpPicture picture;
  auto const plain = [](OpVariant const &v) { return std::string_view(v.name) == "circle, filled"; };
  OpVariant const &circle = *std::ranges::find_if(opVariants(), plain);
  for (unsigned i = 0; i < 16; ++i)
    picture.steps.push_back({&circle, i + 1, gxUITablet::overlay});
  picture.map = gxXform<2>(gxMatrix<2>(0.2, 0, 0, 0.2), gxVector<2>(60, 45));
  EXPECT_EQ(firstBad(picture, asItIs), std::nullopt);
  long found = 0;
  for (std::size_t bad = 0; bad < picture.steps.size(); ++bad) {
    Way const spoilt = [bad](gxUISketch const &sketch) {
      gxUISketch all = sketch, changed;
      gx_UISketchOpHeader header;
      long number = 0;
      for (long at = 0; at < all.size(); ++number) {
        gx_UISketchOpData *made = nullptr;
        at += gfParseUISketch(all, at, header, &made);
        std::unique_ptr<gx_UISketchOpData> const op(made);
        gxGraphicProps props = header.props();
        props.penColor(number == static_cast<long>(bad) ? gxColor(1, 2, 3) : header.color());
        changed.opcode(40, props);
        changed.opcode(static_cast<signed char>(header.opcode()), static_cast<signed char>(header.layer()),
                       props.penColor());
        op->populateSketch(changed);
      }
      return changed;
    };
    if (difference(live(picture, 16), replayed(picture, 16, spoilt)) == 0)
      continue;  // outside of the surface, or covered by those behind it
    EXPECT_EQ(firstBad(picture, spoilt), bad);
    ++found;
  }
  EXPECT_GT(found, 4);
}

/// What a surface reports to a client that tracks changes is what encloseRect() says without drawing.
TEST(PlaybackPicture, ASketchIsMeasuredAsASurfaceReportsIt)
{
  auto const reports = [](OpVariant const &v) {
    // Only a client's own surface draws its shapes.
    return v.records() && v.code != gx_SketchCode::genShape;
  };
  for (OpVariant const &variant : opVariants())
    for (unsigned seed = 1; reports(variant) && seed <= 10; ++seed) {
      OpGenerator generate(seed);
      OpPicture picture = generate.picture();
      picture.steps = {generate.step(variant)};
      picture.steps[0].layer = gxUITablet::overlay;
      SCOPED_TRACE(picture.names());
      gxUISketch const sketch = picture.recorded();
      Canvas canvas(picture.map, picture.scale);
      gxUIRect const measured = canvas.tablet.encloseRect(sketch, picture.offset, gxUITablet::overlay);
      canvas.surface.overlayScope().drawStart(gxPoint());  // where the pen of the private surface begins
      canvas.tablet.recordChanges(true);
      canvas.tablet.draw(sketch, picture.offset, gxUITablet::overlay);
      gxUIRect reported[2];
      canvas.tablet.getChanges(reported, false);
      EXPECT_EQ(measured, reported[1]);
    }
}

/// Maps and offsets beyond all bounds: the surfaces stay as they are, or show something, and nothing else happens. An
/// outline alone asks for a map with an inverse.
TEST(PlaybackPicture, MapsWithoutBoundsAreHarmless)
{
  double const inf = std::numeric_limits<double>::infinity();
  for (OpVariant const &variant : opVariants())
    for (double const bad : {inf, -inf, std::nan(""), 1e300, -3e9, 1e-300, 0.0})
      for (bool const isOffset : {false, true}) {
        if (variant.erases())
          continue;
        SCOPED_TRACE(std::string(variant.name) + ", " + std::to_string(bad));
        gxUITablet recorder;
        OpStep{&variant, 5, gxUITablet::overlay}.draw(recorder);
        gxXform<2> const map = isOffset ? gxXform<2>() : gxXform<2>(gxMatrix<2>(bad, 0, 1, 1), {});
        gxPoint const offset(isOffset ? bad : 0.0, 1.0);
        Canvas canvas(map, {1.0, 1.0});
        auto const measureAndDraw = [&] {
          canvas.tablet.encloseRect(recorder.sketch(), offset, gxUITablet::overlay);
          canvas.tablet.draw(recorder.sketch(), offset, gxUITablet::overlay);
        };
        bool const isOutline = variant.code == gx_SketchCode::genPoly || variant.code == gx_SketchCode::wireframe ||
                               variant.code == gx_SketchCode::genPolyVertices;
        if (isOutline && !isOffset && (bad == 0.0 || !std::isfinite(bad))) {
          EXPECT_THROW(measureAndDraw(), gxMathError::Singular);
          continue;
        }
        EXPECT_NO_THROW(measureAndDraw());
        EXPECT_EQ(canvas.tablet.recordOn().depth(), 1);
      }
}
}  // namespace
