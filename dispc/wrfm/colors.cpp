#include "dispc/wrfm/colors.h"

#include "foundation/archive.h"

namespace
{
struct GrayOfColor {
  gxColor const &color;
  unsigned char gray;
};

// The first row with the index of a colour counts.
GrayOfColor const grays[] = {
    {gxColor::black, 5},    {gxColor::dkGrey, 50},  {gxColor::grey, 100},  {gxColor::ltGrey, 150},
    {gxColor::white, 250},  {gxColor::red, 120},    {gxColor::dkRed, 90},  {gxColor::magenta, 170},
    {gxColor::orange, 180}, {gxColor::yellow, 210}, {gxColor::green, 130}, {gxColor::dkGreen, 80},
    {gxColor::cyan, 200},   {gxColor::blue, 160},   {gxColor::purple, 90}, {gxColor::pass, 0},
};
}  // namespace

gxSMDColors::~gxSMDColors() = default;

unsigned char gxSMDColors::colorToGrayScale(gxColor const &color)
{
  if (!color.isIndexColor()) {
    gxRGB const &rgb = color.rgbStruct();
    return static_cast<unsigned char>((rgb.r() + rgb.g() + rgb.b()) * 0.3333333333333333 + 0.5);
  }
  for (GrayOfColor const &row : grays)
    if (row.color.index() == color.index())
      return row.gray;
  return 0;
}

// Version 0 had no fields.
GX_PERSISTENT_IMPL(gxSMDColors, "gxSMDColors", 1)
void gxSMDColors::serialize_(gxArchive &archive, unsigned char version)
{
  if (version > 1)
    throw gxArchive::UnknownVersion("dispc/wrfm/colors", 107);
  if (version == 0) {
    wireframeDefaultColor_ = gxColor::greenColor();
    syntheticDefaultColor_ = gxColor::ltGreyColor();
    syntheticBackgroundColor_ = gxColor::dkGreyColor();
    return;
  }
  gxPersistent::dispatchSerialize(archive);
  archive || wireframeDefaultColor_ || syntheticDefaultColor_ || syntheticBackgroundColor_;
}
