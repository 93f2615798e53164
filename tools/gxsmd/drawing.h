#pragma once

#include "dispc/uitablet.h"
#include "tools/gxsmd/device.h"

#include <string>
#include <vector>

/// Draws devices on a tablet that records, in coordinates that a map makes of millimetres.
class DeviceDrawing
{
 public:
  DeviceDrawing(Device const &device, gxXform<2> const &map, gxUITablet &tablet)
      : device_(device), map_(map), tablet_(tablet)
  {
  }

  /// Corners that are not rounded, where they would be.
  void sharp(bool on) { isSharp_ = on; }

  /// The outlines of pads, body or courtyard.
  void outlines(gxSMDGDModel const &model, gxColor const &color) const;
  void outline(gxSMDGDPoly const &poly, gxColor const &color, long penWidth = 1) const;
  /// Lines, arcs and areas of a layer of the file, such as F.SilkS, as they are drawn there. The pen is as wide as the
  /// line, @p scale being the pels of a millimetre. False if there are none.
  bool layer(std::string const &name, gxColor const &color, double scale) const;
  /// The same with a pen of one pel.
  bool layer(std::string const &name, gxColor const &color) const { return layer(name, color, 0.0); }
  /// Marks what a finding is about: rings round places, a line between two of them, outlines
  /// and boxes.
  void mark(Finding const &finding, gxColor const &color) const;

 private:
  void path(std::vector<gxVector<2>> points, gxGraphicProps const &props) const;
  void ring(gxVector<2> const &center, double radius, gxGraphicProps const &props) const;

  Device const &device_;
  gxXform<2> const map_;
  gxUITablet &tablet_;
  bool isSharp_ = false;
};

/// The names of the layers of the file on which something is drawn, each once, in order of their first appearance.
std::vector<std::string> drawnLayers(gxFootprint const &footprint);
