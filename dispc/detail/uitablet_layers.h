#pragma once

#include "dispc/tabletbase.h"
#include "dispc/uierror.h"

/// Layers as numbers. Internal to the tablet's sources.

inline constexpr int gf_layerCount = 2;
inline constexpr gx_UITabletBase::Layers gf_eachLayer[gf_layerCount] = {gx_UITabletBase::image,
                                                                        gx_UITabletBase::overlay};

/// True for image and overlay alone; a negative value is a large one.
constexpr bool gf_isSingleLayer(gx_UITabletBase::Layers layer)
{
  return static_cast<unsigned>(layer) < gf_layerCount;
}

/// Throws gxUIError::BadLayer for all but image and overlay.
inline void gf_needSingleLayer(gx_UITabletBase::Layers layer)
{
  if (!gf_isSingleLayer(layer))
    throw gxUIError::BadLayer();
}

/// Throws gxUIError::BadLayer for all but image, overlay and both.
inline void gf_needLayers(gx_UITabletBase::Layers layers)
{
  if (layers != gx_UITabletBase::both)
    gf_needSingleLayer(layers);
}
