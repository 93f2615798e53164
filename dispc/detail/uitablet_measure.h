#pragma once

#include "dispc/uiscope.h"
#include "foundation/outline.h"

#include <span>
#include <vector>

/// What gxUITablet::encloseRect() draws on: a scope without a surface, which reports the pels that each drawing would
/// touch, of the whole drawing, clipped or not. Internal to the tablet's sources.
class gx_MeasuringScope final : public gxUIScope
{
 public:
  /// @param size of the tablet that is measured
  /// @param fonts the scope that would draw the texts: only a back end knows how large they are
  gx_MeasuringScope(gxPair<long> const &size, gxUIScope &fonts) : size_(size), fonts_(fonts) {}

  void moveSurface(gxUIScope const &, gxUIRect const &) override {}
  gxUIScope *newSubScope(gxUIRect const &rect, bool) override { return new gx_MeasuringScope(rect.sz(), fonts_); }
  void dragStart() override {}
  void dragStop() override {}
  void dragErase() override {}
  void dragAnimate(bool) override {}
  bool isNull() const override { return true; }
  gxPair<long> size() const override { return size_; }

  using gxUIScope::draw;
  using gxUIScope::expand;
  using gxUIScope::sample;

  void draw(gxGenShape const &shape, gxColor const &color) override;
  void draw(gxEllipseArc const &arc, gxGraphicProps const &props) override;
  void draw(gxEllipse const &ellipse, gxGraphicProps const &props) override;
  void draw(gxPolygon const &polygon, gxGraphicProps const &props) override;
  void draw(gxPolyline const &polyline, gxGraphicProps const &props) override;
  void draw(gxGenRect const &rect, gxGraphicProps const &props) override;
  void draw(gxEllipseArc2 const &arc, gxGraphicProps const &props) override;
  void draw(gxEllipse2 const &ellipse, gxGraphicProps const &props) override;
  void draw(gxLineSeg const &segment, gxGraphicProps const &props) override;
  void draw(gxPoint const &point, gxGraphicProps const &props) override;
  void drawTo(gxPoint const &to, gxGraphicProps const &props) override;
  void drawToRelPels(long dx, long dy, gxGraphicProps const &props) override;
  void set(gxUIRect const &rect, gxColor const &) override { change(rect, false); }
  void set(gxColor const &) override { change(gxUIRect(gxPair<long>(), size_), false); }
  /// The seed: how far the colour would run, only a picture could tell.
  void fill(gxPair<long> const &seed, gxColor const &, gxColor const &, bool) override
  {
    change(gxUIRect(seed, {1, 1}), false);
  }
  void draw(std::string const &text, gxPoint const &at, gxColor const &, gxColor const &,
            gxUIFormat const &format) override;
  gxUIRect textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect) override;

  // Images, whose pels play no part.

  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<gxColor> const &, bool, unsigned char) override;
  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &, bool, unsigned char) override;
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, bool, unsigned long) override;
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, bool, unsigned short) override;
  void draw(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, bool, unsigned short) override;
  void draw(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, bool, unsigned char, bool) override;
  void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned long) override;
  void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned short) override;
  void sample(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned short) override;
  void sample(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned char, bool) override;
  void expand(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &, gxPair<double> const &scale,
              bool, unsigned char) override;
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned long, InterpolationModes) override;
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned short, InterpolationModes) override;
  void expand(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned short, InterpolationModes) override;
  void expand(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &scale, bool,
              unsigned char, bool, InterpolationModes) override;

 private:
  gxVector<2> pelOf(gxPoint const &p) const;
  void lines(std::span<gxVector<2> const> points, gxGraphicProps const &props);
  void arc(gx_ArcPiece piece, gxGraphicProps const &props);
  void ellipse(gx_ArcPiece const &piece, gxGraphicProps const &props);
  void image(gxPair<long> const &size, gxPoint const &at, gxPair<double> const &scale);

  gxPair<long> size_;
  gxUIScope &fonts_;
};
