#include "tests/support/hooktablet.h"
#include "tests/support/opsteps.h"

// What a replay calls is what the live drawing called: for every drawing operation, on each layer, at random maps and
// offsets, alone and in company.

namespace
{
constexpr auto both = gxUITablet::both;

/// Two layers that write down all they are told.
struct Surface {
  CheckedLog log;
  LogScope image{log, "i", gxPair<long>(100, 80)}, overlay{log, "o", gxPair<long>(90, 120)};
  gxUITablet tablet{&image, &overlay};

  explicit Surface(gxXform<2> const &map, gxPair<double> const &scale)
  {
    image.exact(true), overlay.exact(true);
    image.drawStart(gxPoint(3, 4)), overlay.drawStart(gxPoint(5, 6));
    tablet.baseMap(map).scaleExact(scale);
    tablet.visible(true);
    log.take();
  }
};

struct Picture : OpPicture {
  /// Those of a layer, and those for both on the layer; with `both`, each on its own.
  std::vector<std::string> live(gxUITablet::Layers layer) const
  {
    Surface s(moved(), scale);
    for (OpStep step : steps) {
      if (step.layer == both)
        step.layer = layer;
      if (layer == both || step.layer == layer)
        step.draw(s.tablet);
    }
    return s.log.take();
  }
  std::vector<std::string> replayed(gxUISketch const &sketch, gxUITablet::Layers layer) const
  {
    Surface s(map, scale);
    s.tablet.draw(sketch, offset, layer);
    return s.log.take();
  }
};

/// What a playback tells the scopes of its layers before and behind the drawing.
void bracket(std::vector<std::string> &lines, gxUITablet::Layers layer)
{
  for (char const *const told : {"optimize 1", "lock 1"})
    for (auto const &[scope, of] : {std::pair("o: ", gxUITablet::overlay), {"i: ", gxUITablet::image}})
      if (gxUITablet::shouldUpdate(of, layer))
        lines.insert(lines.begin(), std::string(scope) + told);
  for (char const *const told : {"optimize 0", "unlock"})
    for (auto const &[scope, of] : {std::pair("i: ", gxUITablet::image), {"o: ", gxUITablet::overlay}})
      if (gxUITablet::shouldUpdate(of, layer))
        lines.push_back(std::string(scope) + told);
}

void expectReplayedAsLive(Picture const &picture)
{
  SCOPED_TRACE(picture.names());
  gxUISketch const sketch = picture.recorded();
  for (auto const layer : {gxUITablet::image, gxUITablet::overlay, both}) {
    std::vector<std::string> expected = picture.live(layer);
    if (!sketch.isNull())
      bracket(expected, layer);
    EXPECT_EQ(picture.replayed(sketch, layer), expected) << "played on " << layer;
  }
}

TEST(PlaybackLaw, EachOperationReplaysAsItWasDrawn)
{
  for (OpVariant const &variant : opVariants())
    for (unsigned seed = 1; !isLossy(variant) && seed <= 12; ++seed) {
      OpGenerator generate(seed);
      Picture picture{generate.picture()};
      picture.steps = {generate.step(variant)};
      expectReplayedAsLive(picture);
      if (testing::Test::HasFailure())
        return;
    }
}

/// Properties, pen and clip carry over from record to record.
TEST(PlaybackLaw, OperationsInCompanyReplayAsTheyWereDrawn)
{
  for (unsigned seed = 1; seed <= 150; ++seed) {
    OpGenerator generate(seed);
    Picture picture{generate.picture()};
    while (picture.steps.size() < 16) {
      OpVariant const &variant = generate.variant();
      if (!isLossy(variant) && !variant.erases())
        picture.steps.push_back(generate.step(variant));
    }
    expectReplayedAsLive(picture);
    if (testing::Test::HasFailure())
      return;
  }
}
}  // namespace
