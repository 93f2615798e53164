#include "dispc/color.h"

#include "dispc/uierror.h"
#include "foundation/archive.h"

#include <array>
#include <cstddef>
#include <iomanip>
#include <sstream>

namespace
{
constexpr char const *module = "dispc/color";

/// In the order of the codes.
constexpr std::array<gxColor, 16> stockColors = {gxColor::black,  gxColor::dkGrey, gxColor::grey,    gxColor::ltGrey,
                                                 gxColor::white,  gxColor::red,    gxColor::dkRed,   gxColor::orange,
                                                 gxColor::yellow, gxColor::green,  gxColor::dkGreen, gxColor::cyan,
                                                 gxColor::blue,   gxColor::purple, gxColor::magenta, gxColor::pass};

constexpr std::uint32_t rgbForm = 0x80;

void refuseVersion(signed char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(module, __LINE__);
}
}  // namespace

void gxColor::throwNotIndex()
{
  throw gxUIError::NotIndexColor();
}

void gxColor::throwNotRGB()
{
  throw gxUIError::NotRGBColor();
}

gxColor gfColor(gxr_color word)
{
  auto const bits = static_cast<std::uint32_t>(word);
  auto const byte = [bits](int shift) { return static_cast<unsigned char>(bits >> shift); };
  if (bits & rgbForm)
    return {byte(24), byte(16), byte(8)};
  return bits < stockColors.size() ? stockColors[bits] : gxColor::black;
}

gxr_color gfColor(gxColor const &color)
{
  if (!color.isStockColor())
    return static_cast<gxr_color>(static_cast<std::uint32_t>(color.rgbStruct().rgb()) << 8 | rgbForm);
  for (std::size_t code = 0; code < stockColors.size(); ++code)
    if (color == stockColors[code])
      return static_cast<gxr_color>(code);
  return gxr_black;
}

gxArchive &operator||(gxArchive &archive, gxRGB &rgb)
{
  signed char version = 0;
  unsigned char r = rgb.r(), g = rgb.g(), b = rgb.b();
  archive.numbers(version, r, g, b);
  refuseVersion(version);
  rgb.rgb(r, g, b);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gxColor &color)
{
  signed char version = 0, rgbVersion = 0;
  unsigned char flags = color.flags_, index = color.index_;
  unsigned char r = color.rgb_.r(), g = color.rgb_.g(), b = color.rgb_.b();
  archive.numbers(version, flags, index, rgbVersion, r, g, b);
  refuseVersion(version);
  refuseVersion(rgbVersion);
  color.flags_ = flags & (gxColor::stockFlag | gxColor::rgbFlag | gxColor::indexFlag);
  color.index_ = index;
  color.rgb_.rgb(r, g, b);
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxRGB const &rgb)
{
  std::ostringstream text;
  text << '#' << std::hex << std::setfill('0') << std::setw(6) << rgb.rgb();
  return os << text.str();
}

std::ostream &operator<<(std::ostream &os, gxColor const &color)
{
  if (color.isStockColor())
    os << "stock ";
  if (color.isIndexColor())
    os << static_cast<int>(color.index()) << (color.isRGBColor() ? " " : "");
  if (color.isRGBColor())
    os << color.rgbStruct();
  return os;
}
