#pragma once

#include "dispc/uiscope.h"

#include <memory>

class gxCairoSurface;
class gx_CairoScreen;

/// A scope that draws through cairo: one layer of a gxCairoSurface, or a part of one.
///
/// Outlines run through the centers of pels: a line from (3, 10) to (16, 10) with a pen of width 1 covers the pels of
/// row 10 evenly. They are not moved to whole pels, and neither are areas. `set`, images at any scale, and the corners
/// of texts lie on whole pels. Joins, caps and patterns of pens are those of gxGraphicProps; a pen of width 0 is one
/// pel wide.
///
/// The font of a text is the sans-serif one of the system, 12 pels high for the font ids 1 and all that are not
/// known, 24 for 2, and so on up to 8. Texts are UTF-8; bytes that are not show as a replacement character.
///
/// Colors, transparency, parts and tracking are as with gxPelScope: index colors are looked up in a palette, and
/// gxColor::pass makes pels of an overlay transparent. Reported rectangles are those of the whole drawings, cut by the
/// display clip unless a client collects.
class GX_API gxCairoScope : public gxUIScope
{
 public:
  ~gxCairoScope() override;

  void moveSurface(gxUIScope const &parent, gxUIRect const &rectInParent) override;
  gxUIScope *newSubScope(gxUIRect const &rect, bool temporary) override;

  /// The drag image is a layer of its own above this one; all scopes of the layer share it.
  void dragStart() override;
  void dragStop() override;
  void dragErase() override;
  void dragAnimate(bool on) override;

  /// A lock keeps gxCairoSurface::picture() as it is. All scopes of a surface share their locks.
  void lockScreenUpdatesPush(bool lock) override;
  /// True if the surface is still locked.
  bool lockScreenUpdatesPop() override;
  bool screenUpdatesLocked() const override;

  using gxUIScope::draw;
  using gxUIScope::expand;
  using gxUIScope::sample;

  void draw(gxEllipseArc const &arc, gxGraphicProps const &props) override;
  void draw(gxEllipse const &ellipse, gxGraphicProps const &props) override;
  void draw(gxPolygon const &polygon, gxGraphicProps const &props) override;
  void draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<gxColor> const &colors, bool pass,
            unsigned char passPel) override;
  /// The transparent value is compared with what the color map gives.
  void draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap, bool pass,
            unsigned char passPel) override;
  /// The spare bytes of the pels and of the transparent value play no part.
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, bool pass,
            unsigned long passPel) override;
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, bool pass,
            unsigned short passPel) override;
  /// Grey by the high byte.
  void draw(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, bool pass,
            unsigned short passPel) override;
  /// Grey; but with @p indexed, pels are indices of the palette.
  void draw(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, bool pass, unsigned char passPel,
            bool indexed) override;
  void draw(std::string const &text, gxPoint const &at, gxColor const &foreground, gxColor const &background,
            gxUIFormat const &format) override;
  void draw(gxPolyline const &polyline, gxGraphicProps const &props) override;
  void draw(gxGenRect const &rect, gxGraphicProps const &props) override;
  void draw(gxEllipseArc2 const &arc, gxGraphicProps const &props) override;
  void draw(gxEllipse2 const &ellipse, gxGraphicProps const &props) override;
  void draw(gxLineSeg const &segment, gxGraphicProps const &props) override;
  void draw(gxPoint const &point, gxGraphicProps const &props) override;
  gxUIRect textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect) override;

  void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned long passPel) override;
  void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned short passPel) override;
  void sample(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned short passPel) override;
  void sample(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned char passPel, bool indexed) override;

  /// Any mode but `noInterpolation` is bilinear.
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned long passPel, InterpolationModes mode) override;
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned short passPel, InterpolationModes mode) override;
  void expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned short passPel, InterpolationModes mode) override;
  void expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned char passPel, bool indexed, InterpolationModes mode) override;

  void set(gxUIRect const &rect, gxColor const &color) override;
  void set(gxColor const &color) override;
  /// Goes by the pels that the layer shows; pels are neighbours if they share a side, and smoothed edges are colors of
  /// their own.
  void fill(gxPair<long> const &seed, gxColor const &fillColor, gxColor const &boundary, bool toBoundary) override;
  void drawTo(gxPoint const &to, gxGraphicProps const &props) override;
  void drawToRelPels(long dx, long dy, gxGraphicProps const &props) override;

  /// True if there is no surface, or no pel of it lies inside all ancestors.
  bool isNull() const override { return !screen_ || size_ == gxPair<long>(); }
  gxPair<long> size() const override { return size_; }
  /// The first entries of the palette of the layer; the others become those of the default palette. Throws
  /// gxUIError::InvalidColorMapSize for more than 256 entries.
  void colorMap(std::vector<gxRGB> const &map) override;
  /// The same, but the other entries stay.
  void colorMapEx(std::vector<gxRGB> const &map) override;

 private:
  friend class gxCairoSurface;
  class Painter;
  friend class Painter;

  gxCairoScope();
  gxCairoScope(std::shared_ptr<gx_CairoScreen> screen, int layer);

  void attach(gxCairoScope const &parent);

  std::shared_ptr<gx_CairoScreen> screen_;
  int layer_ = 0;
  bool isTemporary_ = false;  ///< draws for its parent, while that is being repaired
  gxUIRect rectInParent_;     ///< in pels of the parent scope
  gxPair<long> origin_;       ///< pel of the surface that is pel (0, 0) here
  gxPair<long> size_;
};
