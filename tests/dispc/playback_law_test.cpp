#include "tests/support/hooktablet.h"
#include "tests/support/opvariants.h"

#include <array>
#include <string_view>

// What a replay calls is what the live drawing called: for every drawing operation, on each layer, at random maps and
// offsets, alone and in company.

namespace
{
constexpr auto both = gxUITablet::both;

/// One drawing operation of a random picture.
struct Step {
  OpVariant const *variant;
  unsigned seed;
  gxUITablet::Layers layer;

  void draw(gxUITablet &tablet) const
  {
    OpRandom random(seed);
    variant->draw(tablet, random, layer);
  }
};

/// Operations of which a record does not hold all that they draw: points of a set are drawn with a pen of one pel, a
/// text ends at its first zero, a shape of a client's replays in cyan, and what makes no record does not replay.
bool isLossy(OpVariant const &v)
{
  std::string_view const name = v.name;
  return name == "points" || name == "text with a zero" || v.code == gx_SketchCode::genShape || !v.records();
}

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

struct Picture {
  std::vector<Step> steps;
  gxXform<2> map;
  gxVector<2> offset;
  gxPair<double> scale{1.0, 1.0};

  /// The map of live drawing that a replay at the offset has.
  gxXform<2> moved() const { return map * gxXform<2>(gxMatrix<2>(), offset); }
  gxUISketch recorded() const
  {
    gxUITablet recorder;
    recorder.baseMap(moved()).scaleExact(scale);
    for (Step const &step : steps)
      step.draw(recorder);
    return recorder.sketch();
  }
  /// Those of a layer, and those for both on the layer; with `both`, each on its own.
  std::vector<std::string> live(gxUITablet::Layers layer) const
  {
    Surface s(moved(), scale);
    for (Step step : steps) {
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
  std::string names() const
  {
    std::string all;
    for (Step const &step : steps)
      all += std::string(all.empty() ? "" : ", ") + step.variant->name + " (" + std::to_string(step.seed) + ") on " +
             std::to_string(step.layer);
    return all;
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

class Generator
{
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  Step step(OpVariant const &variant)
  {
    auto const seed = static_cast<unsigned>(random_.below(1'000'000));
    return {&variant, seed, static_cast<gxUITablet::Layers>(random_.below(3))};
  }
  OpVariant const &variant()
  {
    auto const &all = opVariants();
    return all[static_cast<std::size_t>(random_.below(static_cast<long>(all.size())))];
  }
  /// Without steps: a map that turns, shears or mirrors, an offset, and a scale that keeps sums exact.
  Picture picture()
  {
    static constexpr std::array scales = {1.0, 1.0, 2.0, 0.5};
    double const scale = scales[static_cast<std::size_t>(random_.below(4))];
    gxVector<2> const x = random_.vector(), y = random_.vector(), shift = random_.vector();
    gxMatrix<2> const matrix =
        random_.flag() ? gxMatrix<2>(x.x() / 50, y.x() / 50, x.y() / 50, y.y() / 50) : gxMatrix<2>(1, 0, 0, 1);
    return {{}, gxXform<2>(matrix, shift), random_.flag() ? random_.vector() : gxVector<2>(), {scale, scale}};
  }

 private:
  OpRandom random_;
};

TEST(PlaybackLaw, EachOperationReplaysAsItWasDrawn)
{
  for (OpVariant const &variant : opVariants())
    for (unsigned seed = 1; !isLossy(variant) && seed <= 12; ++seed) {
      Generator generate(seed);
      Picture picture = generate.picture();
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
    Generator generate(seed);
    Picture picture = generate.picture();
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
