#pragma once

#include "tests/support/opvariants.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Random pictures as lists of drawing operations, to be drawn live and from their records.

/// One drawing operation of a random picture.
struct OpStep {
  OpVariant const *variant;
  unsigned seed;
  gxUITablet::Layers layer;

  void draw(gxUITablet &tablet) const
  {
    OpRandom random(seed);
    variant->draw(tablet, random, layer);
  }
  std::string name() const
  {
    return std::string(variant->name) + " (" + std::to_string(seed) + ") on " + std::to_string(layer);
  }
};

/// Operations of which a record does not hold all that they draw: points of a set are drawn with a pen of one pel, a
/// text ends at its first zero, a shape of a client's replays in cyan, and what makes no record does not replay.
inline bool isLossy(OpVariant const &v)
{
  std::string_view const name = v.name;
  return name == "points" || name == "text with a zero" || v.code == gx_SketchCode::genShape || !v.records();
}

/// Operations with a map and an offset.
struct OpPicture {
  std::vector<OpStep> steps;
  gxXform<2> map;
  gxVector<2> offset;
  gxPair<double> scale{1.0, 1.0};

  /// The map of live drawing that a replay at the offset has.
  gxXform<2> moved() const { return map * gxXform<2>(gxMatrix<2>(), offset); }
  gxUISketch recorded() const
  {
    gxUITablet recorder;
    recorder.baseMap(moved()).scaleExact(scale);
    for (OpStep const &step : steps)
      step.draw(recorder);
    return recorder.sketch();
  }
  std::string names() const
  {
    std::string all;
    for (OpStep const &step : steps)
      all += (all.empty() ? "" : ", ") + step.name();
    return all;
  }
};

class OpGenerator
{
 public:
  explicit OpGenerator(unsigned seed) : random_(seed) {}

  OpStep step(OpVariant const &variant)
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
  OpPicture picture()
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
