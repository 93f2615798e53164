#pragma once

#include "dispc/color.h"
#include "foundation/export.h"
#include "foundation/persistent.h"

#include <ostream>

/// The colours that a description of a device is drawn in.
class GX_API gxSMDColors : public virtual gxPersistent
{
 public:
  /// Green wireframes; light grey on dark grey in synthetic pictures.
  gxSMDColors() = default;
  gxSMDColors(gxColor const &wireframeDefault, gxColor const &syntheticDefault, gxColor const &syntheticBackground)
      : wireframeDefaultColor_(wireframeDefault),
        syntheticDefaultColor_(syntheticDefault),
        syntheticBackgroundColor_(syntheticBackground)
  {
  }
  gxSMDColors(gxSMDColors const &other) = default;
  gxSMDColors &operator=(gxSMDColors const &other) = default;
  ~gxSMDColors() override;

  /// Of overlays.
  gxColor wireframeDefaultColor() const { return wireframeDefaultColor_; }
  void wireframeDefaultColor(gxColor const &color)
  {
    mutating();
    wireframeDefaultColor_ = color;
  }
  /// Of the device in synthetic pictures.
  gxColor syntheticDefaultColor() const { return syntheticDefaultColor_; }
  void syntheticDefaultColor(gxColor const &color)
  {
    mutating();
    syntheticDefaultColor_ = color;
  }
  /// Of what lies around the device in synthetic pictures.
  gxColor syntheticBackgroundColor() const { return syntheticBackgroundColor_; }
  void syntheticBackgroundColor(gxColor const &color)
  {
    mutating();
    syntheticBackgroundColor_ = color;
  }

  /// The grey value of a colour in synthetic pictures. A colour with a palette index has the grey of that stock
  /// colour, and 0 if the index belongs to none; any other has the rounded mean of its components.
  static unsigned char colorToGrayScale(gxColor const &color);

  friend bool operator==(gxSMDColors const &a, gxSMDColors const &b)
  {
    return a.wireframeDefaultColor_ == b.wireframeDefaultColor_ &&
           a.syntheticDefaultColor_ == b.syntheticDefaultColor_ &&
           a.syntheticBackgroundColor_ == b.syntheticBackgroundColor_;
  }

 private:
  gxColor wireframeDefaultColor_ = gxColor::greenColor();
  gxColor syntheticDefaultColor_ = gxColor::ltGreyColor();
  gxColor syntheticBackgroundColor_ = gxColor::dkGreyColor();

  GX_PERSISTENT(gxSMDColors);
};

inline std::ostream &operator<<(std::ostream &os, gxSMDColors const &c)
{
  return os << "wireframe " << c.wireframeDefaultColor() << ", synthetic " << c.syntheticDefaultColor() << " on "
            << c.syntheticBackgroundColor();
}
