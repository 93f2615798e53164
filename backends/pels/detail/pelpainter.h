#pragma once

/// @file
/// How gxPelScope draws: the way from device coordinates to a canvas, and the report of what was touched. For the
/// sources of gxPelScope.

#include "backends/pels/detail/pelcanvas.h"
#include "backends/pels/detail/pelscreen.h"
#include "backends/pels/pelscope.h"
#include "foundation/outline.h"
#include "foundation/vector.h"

#include <array>
#include <span>
#include <vector>

struct gx_PelPen;
enum class gx_PelFillRule;

/// The box between coordinates, which are cut to what a rectangle can hold; empty if one of them is no number.
gx_PelBox gf_pelBox(double left, double top, double right, double bottom);

/// One drawing operation on a scope.
///
/// Two systems of coordinates are in use, both relative to the scope's org(). *Pels* are whole numbers, which the
/// raster rules of lines work with. *Places* are what is left of device coordinates without the origin: pel (i, j)
/// covers the places i <= x < i + 1, j <= y < j + 1.
class gxPelScope::Painter
{
  static constexpr InterpolationModes noInterpolation = gx_UITabletBase::noInterpolation;

 public:
  explicit Painter(gxPelScope &scope) : scope_(scope) {}

  /// What is to be written for a color: transparent for gxColor::pass, where pels can be that.
  gxPackedRGB32Pel ink(gxColor const &color) const;
  gxPackedRGB32Pel ink(gxRGB const &rgb) const { return gxPackedRGB32Pel(rgb.r(), rgb.g(), rgb.b(), 255); }
  /// The components of a palette entry.
  gxRGB paletteColor(unsigned char index) const;

  /// The pel of a device point, as whole numbers; of the pen itself, the pen's pel. Not finite for a point that is not.
  gxVector<2> pelOf(gxPoint const &p) const;
  gxVector<2> placeOf(gxVector<2> const &p) const;
  /// The pels of many points.
  std::vector<gxVector<2>> pelsOf(std::span<gxVector<2> const> points) const;
  std::vector<gxVector<2>> placesOf(std::span<gxVector<2> const> points) const;

  /// The pels that may be drawn on: those inside the scope and the display clip. Empty without a surface.
  gx_PelBox clip() const;
  gx_PelCanvas canvas(gxPackedRGB32Pel value) const;

  /// Draws by @p draw(canvas) and reports. @p extent() tells the box of the drawing as it would be without any clip; it
  /// is called only if somebody wants to know.
  /// @param once no pel is written to twice; a drawing that fills its box can then be told to be opaque
  template <class Draw, class Extent>
  void paint(gxPackedRGB32Pel value, bool once, Draw draw, Extent extent)
  {
    scope_.markModified();
    gx_PelCanvas target = canvas(value);
    if (!target.clip().isEmpty())
      draw(target);
    bool const opaqueFill = once && target.written() == target.touched().area();
    finish(target, opaqueFill, scope_.clientChangeEnable() ? extent() : gx_PelBox());
  }
  /// The same for a color.
  template <class Draw, class Extent>
  void paint(gxColor const &color, bool once, Draw draw, Extent extent)
  {
    paint(ink(color), once, draw, extent);
  }

  /// @name Outlines and areas
  ///@{
  void dot(gxVector<2> const &pel, gxGraphicProps const &props);
  void lines(std::span<gxVector<2> const> pels, bool closed, gxGraphicProps const &props);
  void arc(gx_ArcPiece const &piece, gxGraphicProps const &props);
  /// A closed contour, moved as a whole so that a point of it comes to lie on the center of its pel.
  void contour(std::vector<gx_Piece> const &pieces, gxVector<2> const &anchor, gxGraphicProps const &props);
  void area(std::span<gxVector<2> const> places, gx_PelFillRule rule, gxColor const &color);
  /// A rectangle of pels.
  void rectangle(gxUIRect const &rect, gxColor const &color);
  /// Filled or outlined.
  void ellipse(gx_ArcPiece const &piece, gxGraphicProps const &props);
  ///@}

  /// @name Images
  ///@{
  struct Zoom {
    gxPair<double> scale{1.0, 1.0};
    InterpolationModes mode = noInterpolation;
  };
  void image(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, Zoom const &zoom, bool pass,
             unsigned long passPel);
  void image(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, Zoom const &zoom, bool pass,
             unsigned short passPel);
  void image(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, Zoom const &zoom, bool pass,
             unsigned short passPel);
  void image(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, Zoom const &zoom, bool pass,
             unsigned char passPel, bool indexed);
  void runs(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::array<gxPackedRGB32Pel, 256> const &looks,
            std::array<bool, 256> const &isPass);
  ///@}

 private:
  template <class Pel, class Show, class IsPass>
  void image(gxPelBuffer_const<Pel> const &buffer, gxPoint const &topLeft, Zoom const &zoom, bool pass, Show show,
             IsPass isPass);
  void finish(gx_PelCanvas const &canvas, bool opaqueFill, gx_PelBox const &extent);

  gxPelScope &scope_;
};
