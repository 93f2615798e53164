#pragma once

#include "dispc/uiscope.h"

/// A surface that takes every call and does nothing, so that a benchmark measures the tablet alone.
class NullScope : public gxUIScope
{
 public:
  using gxUIScope::draw;
  using gxUIScope::expand;
  using gxUIScope::sample;

  void moveSurface(gxUIScope const &, gxUIRect const &) override {}
  gxUIScope *newSubScope(gxUIRect const &, bool) override { return new NullScope; }
  void dragStart() override {}
  void dragStop() override {}
  void dragErase() override {}
  void dragAnimate(bool) override {}
  void draw(gxEllipseArc const &, gxGraphicProps const &) override {}
  void draw(gxEllipse const &, gxGraphicProps const &) override {}
  void draw(gxPolygon const &, gxGraphicProps const &) override {}
  void draw(gxRLEBuffer const &, gxPoint const &, std::vector<gxColor> const &, bool, unsigned char) override {}
  void draw(gxRLEBuffer const &, gxPoint const &, std::vector<unsigned char> const &, bool, unsigned char) override {}
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &, gxPoint const &, bool, unsigned long) override {}
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &, gxPoint const &, bool, unsigned short) override {}
  void draw(gxPelBuffer_const<unsigned short> const &, gxPoint const &, bool, unsigned short) override {}
  void draw(gxPelBuffer_const<unsigned char> const &, gxPoint const &, bool, unsigned char, bool) override {}
  void draw(std::string const &, gxPoint const &, gxColor const &, gxColor const &, gxUIFormat const &) override {}
  void draw(gxPolyline const &, gxGraphicProps const &) override {}
  void draw(gxGenRect const &, gxGraphicProps const &) override {}
  void draw(gxEllipseArc2 const &, gxGraphicProps const &) override {}
  void draw(gxEllipse2 const &, gxGraphicProps const &) override {}
  void draw(gxLineSeg const &, gxGraphicProps const &) override {}
  void draw(gxPoint const &, gxGraphicProps const &) override {}
  gxUIRect textRect(std::string const &, gxPoint const &, gxUIFormat const &, gxUIRect &r) override { return r = {}; }
  void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned long) override
  {
  }
  void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned short) override
  {
  }
  void sample(gxPelBuffer_const<unsigned short> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned short) override
  {
  }
  void sample(gxPelBuffer_const<unsigned char> const &, gxPoint const &, gxPair<double> const &, bool, unsigned char,
              bool) override
  {
  }
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &, gxPoint const &, gxPair<double> const &, bool, unsigned long,
              InterpolationModes) override
  {
  }
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned short, InterpolationModes) override
  {
  }
  void expand(gxPelBuffer_const<unsigned short> const &, gxPoint const &, gxPair<double> const &, bool, unsigned short,
              InterpolationModes) override
  {
  }
  void expand(gxPelBuffer_const<unsigned char> const &, gxPoint const &, gxPair<double> const &, bool, unsigned char,
              bool, InterpolationModes) override
  {
  }
  void set(gxUIRect const &, gxColor const &) override {}
  void set(gxColor const &) override {}
  void fill(gxPair<long> const &, gxColor const &, gxColor const &, bool) override {}
  void drawTo(gxPoint const &to, gxGraphicProps const &) override { drawStart(to); }
  void drawToRelPels(long dx, long dy, gxGraphicProps const &) override { moveToRel(dx, dy); }
  bool isNull() const override { return false; }
  gxPair<long> size() const override { return {640, 480}; }
};
