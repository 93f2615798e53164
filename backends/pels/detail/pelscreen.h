#pragma once

#include "backends/pels/detail/pelcanvas.h"
#include "dispc/color.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"

#include <array>
#include <vector>

/// @file
/// What a gxPelSurface and its scopes share. It lives as long as the last of them.

/// One layer of a surface: its pels, its drag image, its palette and its screen locks.
///
/// The spare byte of a pel tells whether the pel covers what is behind: 255 if it does, 0 if it is transparent. The
/// pels of the image layer show in any case.
class GX_API gx_PelLayer
{
 public:
  using Pels = gxPelBuffer<gxPackedRGB32Pel>;

  /// Transparent, and black below.
  gx_PelLayer(long width, long height);

  Pels const &pels() const { return pels_; }

  /// @name The drag image
  /// Pels of its own over those of the layer.
  ///@{
  void dragStart();  ///< empties the drag image, shows it, and lets it take what is drawn
  void dragStop() { dragging_ = false; }
  bool isDragging() const { return dragging_; }
  void dragErase();
  void dragShow(bool on) { dragShown_ = on; }
  bool dragIsSeen() const { return drag_.isBound() && dragShown_; }
  Pels const &dragImage() const { return drag_; }
  ///@}

  /// Where drawing goes: the pels of the layer, or the drag image.
  Pels const &target() const { return dragging_ ? drag_ : pels_; }

  /// @name Locks
  ///@{
  void lock(bool on);
  /// Takes back the last lock(); nothing without one. True if a lock is still in force.
  bool unlock();
  bool isLocked() const { return locked_ > 0; }
  ///@}

  /// @name Colors
  ///@{
  /// The components of a palette entry.
  gxRGB paletteColor(unsigned char index) const { return palette_[index]; }
  /// Throws gxUIError::InvalidColorMapSize for more than 256 colors.
  static void checkPalette(std::vector<gxRGB> const &map);
  /// Sets the first entries of the palette, after checkPalette().
  void setPalette(std::vector<gxRGB> const &map);
  /// A ramp of greys, with the stock colors at their indices.
  void resetPalette();
  ///@}

 private:
  Pels pels_;
  Pels drag_;
  bool dragging_ = false;
  bool dragShown_ = true;
  std::vector<bool> locks_;
  int locked_ = 0;  ///< how many of them lock
  std::array<gxRGB, 256> palette_;
};

/// Both layers of a surface, and the picture that they make.
class GX_API gx_PelScreen
{
 public:
  gx_PelScreen(long width, long height);

  gxPair<long> size() const { return layers_[0].pels().size(); }
  gx_PelLayer &layer(int i) { return layers_[static_cast<std::size_t>(i)]; }
  gx_PelLayer const &layer(int i) const { return layers_[static_cast<std::size_t>(i)]; }

  /// Notes that the picture is out of date in a box.
  void damage(gx_PelBox const &box);
  void damageAll();
  /// Brings the picture up to date, unless a lock is in force.
  void update();
  gx_PelLayer::Pels const &picture() const { return picture_; }

 private:
  gx_PelBox whole() const;
  void composeRow(std::int32_t y, std::int32_t left, std::int32_t right);

  std::array<gx_PelLayer, 2> layers_;
  gx_PelLayer::Pels picture_;
  gx_PelBox damaged_;
};
