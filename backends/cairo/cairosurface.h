#pragma once

#include "backends/cairo/cairoscope.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"

#include <memory>
#include <string>

/// A surface with two layers, an image and an overlay above it, that draws smoothly: edges are antialiased, texts are
/// set in a font of the system, and what was drawn can be kept as a page of vectors.
///
/// @code
/// gxCairoSurface page(640, 480, gxCairoSurface::vectors);
/// gxUITablet tablet(&page.imageScope(), &page.overlayScope());
/// tablet.visible(true);
/// tablet.draw(gxCircle(gxPoint(320, 240), 50), gxColor::redColor(), gxUITablet::overlay);
/// page.writePdf("circle.pdf");
/// @endcode
///
/// The surface owns its two scopes; parts of them, which tablets make, may outlive it.
class GX_API gxCairoSurface
{
 public:
  enum Kind {
    pels,    ///< layers of pels: quick to draw on, and to look at
    vectors  ///< layers keep every drawing until they are painted over, and pages show them at any resolution
  };

  /// Throws gxPel::BadSize for a negative size, or one above 32767. A surface without pels is legal: its scopes are
  /// null.
  gxCairoSurface(long width, long height, Kind kind = pels);
  gxCairoSurface(gxCairoSurface const &) = delete;
  gxCairoSurface &operator=(gxCairoSurface const &) = delete;
  ~gxCairoSurface();

  gxPair<long> size() const;
  /// The whole surface, for the root of a tree of tablets.
  gxCairoScope &imageScope() { return imageScope_; }
  gxCairoScope &overlayScope() { return overlayScope_; }

  /// What an operator sees: the image on black, the overlay above it, drag images above their layers; the spare bytes
  /// are 0. While a screen lock of either layer is in force, the picture stays as it is.
  gxPelBuffer_const<gxPackedRGB32Pel> picture();

  /// Writes both layers, without drag images, as a page: one pel becomes one point, 1/72 of an inch. Throws
  /// gxPel::BadImageFile with a text that names the file and the reason.
  void writeSvg(std::string const &path) const;
  void writePdf(std::string const &path) const;

 private:
  std::shared_ptr<gx_CairoScreen> screen_;
  gxCairoScope imageScope_;
  gxCairoScope overlayScope_;
};
