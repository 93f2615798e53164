#pragma once

#include "backends/pels/pelscope.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"

#include <memory>

/// A surface in memory with two layers of pels, an image and an overlay above it, which make one picture. No window
/// and no display is needed: a program draws, takes the picture, and shows, stores or compares it.
///
/// @code
/// gxPelSurface surface(640, 480);
/// gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
/// tablet.visible(true);
/// tablet.draw(camera, gxPoint(0, 0), false, 0, false, gxUITablet::image);
/// tablet.draw(gxCircle(gxPoint(320, 240), 50), gxColor::redColor(), gxUITablet::overlay);
/// gxPelBuffer_const<gxPackedRGB32Pel> picture = surface.picture();
/// @endcode
///
/// Both layers start black and transparent. The surface owns its two scopes; parts of them, which tablets make, may
/// outlive it.
class GX_API gxPelSurface
{
 public:
  /// Throws gxPel::BadSize for a negative size. A surface without pels is legal: its scopes are null.
  gxPelSurface(long width, long height);
  gxPelSurface(gxPelSurface const &) = delete;
  gxPelSurface &operator=(gxPelSurface const &) = delete;
  ~gxPelSurface();

  gxPair<long> size() const;
  /// The whole surface, for the root of a tree of tablets.
  gxPelScope &imageScope() { return imageScope_; }
  gxPelScope &overlayScope() { return overlayScope_; }

  /// What an operator sees: the overlay where it covers, the image elsewhere, drag images above their layers; the
  /// spare bytes are 0. It is made anew where something was drawn since the last time; while a screen lock of either
  /// layer is in force it stays as it is. Every call returns the same pels, so copy a picture to keep it.
  gxPelBuffer_const<gxPackedRGB32Pel> picture();

  /// The pels of a layer, which may also be written to from outside; tell invalidate() then. The spare byte is 255
  /// where something was drawn and 0 where the layer is transparent.
  gxPelBuffer<gxPackedRGB32Pel> imagePels() const;
  gxPelBuffer<gxPackedRGB32Pel> overlayPels() const;
  /// Lets the whole picture be made anew.
  void invalidate();

 private:
  std::shared_ptr<gx_PelScreen> screen_;
  gxPelScope imageScope_;
  gxPelScope overlayScope_;
};
