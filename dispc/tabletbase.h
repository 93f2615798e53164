#pragma once

#include <cstdint>

/// The enumerations that tablet and scope share. They are reached as members of gxUITablet, which derives from this.
/// Any 32-bit value may arrive: operations that need a valid layer say what they do with another.
class gx_UITabletBase
{
 public:
  /// The two layers of a surface. `both` is for operations on all layers; nothing is drawn on it.
  enum Layers : std::int32_t { image = 0, overlay = 1, both = 2 };

  /// How the scale factors of a tablet enter its map, and how images are brought to scale.
  enum ScaleModes : std::int32_t {
    noScale = 0,     ///< the factors play no part
    expandMode = 1,  ///< magnified; images go through the scope's `expand`
    sampleMode = 2   ///< reduced; images go through the scope's `sample`
  };

  /// How an enlarged image is interpolated. Further values are those that a back end honours.
  enum InterpolationModes : std::int32_t { noInterpolation = 0 };

  /// What bounds a flood fill.
  enum FillType : std::int32_t {
    boundaryFill = 0,  ///< all up to pels of the boundary colour
    surfaceFill = 1    ///< all connected pels of the colour found at the seed
  };

 protected:
  gx_UITabletBase() = default;
  ~gx_UITabletBase() = default;
};
