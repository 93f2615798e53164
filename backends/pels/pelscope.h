#pragma once

#include "dispc/uiscope.h"

#include <memory>

class gxPelSurface;
class gx_PelLayer;
class gx_PelScreen;

/// A scope that draws into memory: one layer of a gxPelSurface, or a part of one.
///
/// Which pels a drawing covers is written down in docs/raster-rules.md, and is the same on every machine. Pels are
/// opaque; the color gxColor::pass, where a color is given by that index, makes the pels of an overlay transparent.
/// Colors given by components are shown as they are; index colors, 8-bit images whose flag is set, and run-length
/// images are looked up in the palette. At first that is a ramp of greys with the stock colors at their indices.
///
/// A part shares the surface, which lives as long as anything that draws on it. It is visible, and has its size(),
/// where it lies inside its parent; when the parent moves, the parts below move along. A scope under a parent of
/// another class has no surface.
///
/// While a client collects changes (clientChangeEnable()), the reported rectangles are those of the whole drawings,
/// clipped or not, so that a scope without a surface can measure. Otherwise they are tight around the pels that were
/// written to.
class GX_API gxPelScope : public gxUIScope
{
 public:
  ~gxPelScope() override;

  void moveSurface(gxUIScope const &parent, gxUIRect const &rectInParent) override;
  gxUIScope *newSubScope(gxUIRect const &rect, bool temporary) override;

  /// The drag image is a layer of its own above this one; all scopes of the layer share it. What is drawn between
  /// dragStart() and dragStop() goes there.
  void dragStart() override;
  void dragStop() override;
  void dragErase() override;
  /// Shows or hides the drag image.
  void dragAnimate(bool on) override;

  /// A lock keeps gxPelSurface::picture() as it is. All scopes of a layer share their locks; a lock of either layer
  /// counts.
  void lockScreenUpdatesPush(bool lock) override;
  /// True if the layer is still locked.
  bool lockScreenUpdatesPop() override;
  bool screenUpdatesLocked() const override;
  /// Brings the picture up to date now.
  void updateScreen() override;
  /// Lets the picture be made anew in a rectangle of device pels.
  void invalidateScreen(gxUIRect const &rect) override;

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

  /// 8-bit and 32-bit images are interpolated if the mode is not 0 and the factors are equal, by the rules of
  /// pelScale(); the values that come out are then looked up and compared.
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned long passPel, InterpolationModes mode) override;
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned short passPel, InterpolationModes mode) override;
  void expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned short passPel, InterpolationModes mode) override;
  void expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<double> const &scale,
              bool pass, unsigned char passPel, bool indexed, InterpolationModes mode) override;

  void expand(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
              gxPair<double> const &scale, bool pass, unsigned char passPel) override;

  void set(gxUIRect const &rect, gxColor const &color) override;
  void set(gxColor const &color) override;
  /// Pels are neighbours if they share a side. A boundary fill passes over pels that have the new color already.
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
  friend class gxPelSurface;
  class Painter;
  friend class Painter;

  gxPelScope();
  gxPelScope(std::shared_ptr<gx_PelScreen> screen, int layer);

  void attach(gxPelScope const &parent);
  void changeLook();
  void markModified();
  gx_PelLayer &layer() const;

  std::shared_ptr<gx_PelScreen> screen_;
  int layer_ = 0;
  bool isTemporary_ = false;  ///< draws for its parent, while that is being repaired
  gxUIRect rectInParent_;     ///< in pels of the parent scope
  gxPair<long> origin_;       ///< pel of the surface that is pel (0, 0) here
  gxPair<long> size_;
};
