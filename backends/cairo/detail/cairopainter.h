#pragma once

/// @file
/// How gxCairoScope draws: the way from device coordinates to a cairo context, and the report of what was touched.

#include "backends/cairo/cairoscope.h"
#include "backends/cairo/detail/cairoscreen.h"
#include "dispc/dispprop.h"
#include "foundation/outline.h"
#include "foundation/vector.h"

#include <array>
#include <span>
#include <string>
#include <vector>

/// One drawing operation on a scope. Coordinates are *places*: what is left of device coordinates without the origin of
/// the scope.
class gxCairoScope::Painter
{
 public:
  explicit Painter(gxCairoScope &scope) : scope_(scope) {}

  gxVector<2> placeOf(gxVector<2> const &p) const;
  /// The center of a point's pel; of the pen itself, that of its pel. Not finite for a point that is not.
  gxVector<2> pelCenterOf(gxPoint const &p) const;
  /// The way from device coordinates to places on outlines, which run through the centers of pels.
  gxXform<2> outlineXform() const;
  gxXform<2> areaXform() const;

  /// @name Drawing
  /// Nothing is drawn of what has numbers that are not finite.
  ///@{
  void stroke(std::vector<gx_Contour> const &contours, gxGraphicProps const &props);
  void fill(std::vector<gx_Contour> const &contours, cairo_fill_rule_t rule, gxColor const &color);
  void dot(gxVector<2> const &center, gxGraphicProps const &props);
  /// Filled or outlined, in device coordinates.
  void shape(std::vector<gx_Contour> const &contours, gxGraphicProps const &props);
  void rectangle(gxUIRect const &rect, gxColor const &color);
  void text(std::vector<std::string> const &lines, double size, gxUIRect const &rect, gxColor const &foreground,
            gxColor const &background);
  /// Pels for a rectangle inside of shows(); the report is the caller's.
  void paint(gx_CairoImage const &pels, gxUIRect const &seen);
  /// The same, with one color where the pels are solid.
  void mask(gx_CairoImage const &pels, gxUIRect const &seen, gxColor const &color);
  ///@}

  /// @name Images
  ///@{
  /// What cairo keeps of each value of an 8-bit pel: 0 for one that is left out.
  using Looks = std::array<std::uint32_t, 256>;

  void image(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
             bool pass, unsigned long passPel, bool smoothly);
  void image(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
             bool pass, unsigned short passPel, bool smoothly);
  void image(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
             bool pass, unsigned short passPel, bool smoothly);
  void image(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
             bool pass, unsigned char passPel, bool indexed, bool smoothly);
  void runs(gxRLEBuffer const &buffer, gxPoint const &topLeft, Looks const &looks, bool pass);
  ///@}

  /// @name Around drawing
  ///@{
  /// The pels that may be drawn on: those inside the scope and the display clip. Null without a surface.
  gxUIRect shows() const;
  /// Notes that a rectangle was touched.
  void report(gxUIRect const &rect, bool opaque);
  gxRGB rgbOf(gxColor const &color) const;
  gxRGB paletteColor(unsigned char index) const;
  /// True for the color that makes pels transparent, where they can be that.
  bool isPass(gxColor const &color) const;
  /// The pels that the layer shows inside shows(), premultiplied.
  gx_CairoImage pels() const;
  ///@}

 private:
  template <class Pel, class Look>
  void image(gxPelBuffer_const<Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale, bool solidly,
             bool smoothly, Look look);
  gx_CairoContext context(gxColor const &color) const;
  gx_CairoContext context() const;

  gxCairoScope &scope_;
};

/// A chain of straight lines.
std::vector<gx_Contour> gf_cairoLines(std::span<gxVector<2> const> points, bool closed);
/// The smallest rectangle of whole pels around a box, cut to what a rectangle can hold.
gxUIRect gf_cairoPels(gxRect const &box, double around);
