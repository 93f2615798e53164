#pragma once

/// @file
/// What a gxCairoSurface and its scopes share. It lives as long as the last of them.

#include "dispc/color.h"
#include "foundation/pair.h"
#include "foundation/pelbuf.h"

#include <cairo.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

struct gx_CairoDeleter {
  void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t *context) const { cairo_destroy(context); }
};
using gx_CairoTarget = std::unique_ptr<cairo_surface_t, gx_CairoDeleter>;
using gx_CairoContext = std::unique_ptr<cairo_t, gx_CairoDeleter>;

/// A cairo image in memory, 32 bits a pel: alpha, red, green, blue, premultiplied.
class gx_CairoImage
{
 public:
  /// Transparent. Throws std::bad_alloc.
  gx_CairoImage(long width, long height);

  cairo_surface_t *surface() const { return surface_.get(); }
  /// The pels of a row, to be read; call flush() before, if cairo has drawn.
  std::uint32_t *row(long y) const;
  void flush() const { cairo_surface_flush(surface_.get()); }
  /// After pels were written.
  void dirty() const { cairo_surface_mark_dirty(surface_.get()); }

 private:
  gx_CairoTarget surface_;
};

/// One layer: its drawings, its drag image and its palette.
class gx_CairoLayer
{
 public:
  gx_CairoLayer(gxPair<long> const &size, bool vectors);

  cairo_surface_t *drawings() const { return drawings_.get(); }
  /// Where drawing goes.
  cairo_surface_t *target() const { return dragging_ ? drag_.get() : drawings_.get(); }
  /// Starts over, as all is going to be painted over anyway: vectors would be kept in vain.
  void forget();

  void dragStart();
  void dragStop() { dragging_ = false; }
  bool isDragging() const { return dragging_; }
  void dragErase();
  void dragShow(bool on) { dragShown_ = on; }
  /// The drag image if it is to be seen, or null.
  cairo_surface_t *seenDrag() const { return dragShown_ ? drag_.get() : nullptr; }

  gxRGB paletteColor(unsigned char index) const { return palette_[index]; }
  /// Throws gxUIError::InvalidColorMapSize for more than 256 colors. With @p reset, the other entries become a ramp of
  /// greys, with the stock colors at their indices.
  void setPalette(std::vector<gxRGB> const &map, bool reset);

 private:
  gx_CairoTarget make() const;

  gxPair<long> size_;
  bool vectors_;
  gx_CairoTarget drawings_;
  gx_CairoTarget drag_;
  bool dragging_ = false;
  bool dragShown_ = true;
  std::array<gxRGB, 256> palette_;
};

/// Both layers of a surface, their locks, and the picture that they make.
class gx_CairoScreen
{
 public:
  gx_CairoScreen(gxPair<long> const &size, bool vectors);

  gxPair<long> const &size() const { return size_; }
  gx_CairoLayer &layer(int i) { return layers_[static_cast<std::size_t>(i)]; }

  void lock(bool on) { locks_.push_back(on); }
  /// Takes back the last lock(); nothing without one.
  void unlock()
  {
    if (!locks_.empty())
      locks_.pop_back();
  }
  bool isLocked() const;

  void changed() { isCurrent_ = false; }
  gxPelBuffer<gxPackedRGB32Pel> const &picture();
  /// Paints both layers, without drag images unless @p drags.
  void paint(cairo_t *to, bool drags) const;

 private:
  gxPair<long> size_;
  std::array<gx_CairoLayer, 2> layers_;
  std::vector<bool> locks_;
  gxPelBuffer<gxPackedRGB32Pel> picture_;
  bool isCurrent_ = true;
};
