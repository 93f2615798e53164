#pragma once

#include "foundation/export.h"
#include "foundation/listcolor.h"

#include <bit>
#include <cstdint>
#include <ostream>

class gxArchive;

/// Red, green and blue, 8 bits each; black by default. A fourth byte makes the value four bytes wide: it is copied with
/// the value, and nothing else looks at it.
class GX_API gxRGB
{
 public:
  constexpr gxRGB() = default;
  constexpr gxRGB(unsigned char r, unsigned char g, unsigned char b) : r_(r), g_(g), b_(b) {}

  constexpr unsigned char r() const { return r_; }
  constexpr unsigned char g() const { return g_; }
  constexpr unsigned char b() const { return b_; }
  constexpr void r(unsigned char v) { r_ = v; }
  constexpr void g(unsigned char v) { g_ = v; }
  constexpr void b(unsigned char v) { b_ = v; }
  /// Sets all three.
  constexpr void rgb(unsigned char r, unsigned char g, unsigned char b)
  {
    r_ = r;
    g_ = g;
    b_ = b;
  }

  /// 8-8-8, red highest.
  constexpr unsigned long rgb() const { return static_cast<unsigned long>(r_ << 16 | g_ << 8 | b_); }
  /// 8-8-8, blue highest.
  constexpr unsigned long bgr() const { return static_cast<unsigned long>(b_ << 16 | g_ << 8 | r_); }
  /// 5-5-5, red highest; the low bits of the components fall off.
  constexpr unsigned short rgb15() const
  {
    return static_cast<unsigned short>((r_ & 0xF8) << 7 | (g_ & 0xF8) << 2 | b_ >> 3);
  }
  /// 5-6-5, red highest; the low bits of the components fall off.
  constexpr unsigned short rgb16() const
  {
    return static_cast<unsigned short>((r_ & 0xF8) << 8 | (g_ & 0xFC) << 3 | b_ >> 3);
  }

  friend constexpr bool operator==(gxRGB const &a, gxRGB const &b) { return a.components() == b.components(); }
  /// Order of brightness: by the mean of the components, in whole numbers. Different colors of one mean are neither
  /// less nor greater.
  friend constexpr bool operator<(gxRGB const &a, gxRGB const &b) { return a.mean() < b.mean(); }
  friend constexpr bool operator>(gxRGB const &a, gxRGB const &b) { return b < a; }

 private:
  constexpr int mean() const { return (r_ + g_ + b_) / 3; }
  /// All but the fourth byte, in one word.
  constexpr std::uint32_t components() const
  {
    return std::bit_cast<std::uint32_t>(*this) & (std::endian::native == std::endian::little ? 0x00FFFFFFu : ~0xFFu);
  }

  unsigned char r_ = 0;
  unsigned char g_ = 0;
  unsigned char b_ = 0;
  [[maybe_unused]] unsigned char fourth_ = 0;
};

static_assert(sizeof(gxRGB) == 4);

/// A color by palette index, by red, green and blue, or both. The stock colors carry both, so that they mean the same
/// on an indexed and on a true-color display. They can be used by static initialisers of any module.
///
/// @code
/// gxColor const mark(255, 0, 0);          // by components
/// gxColor const pen(249);                 // by index
/// mark == gxColor::red;                   // true, and so is pen == gxColor::red
/// mark == pen;                            // false: they have no form in common
/// @endcode
class GX_API gxColor
{
 public:
  /// Index 0. This is not stock black: it has no components.
  constexpr gxColor() = default;
  constexpr explicit gxColor(unsigned char index) : index_(index) {}
  constexpr gxColor(gxRGB const &rgb) : flags_(rgbFlag), rgb_(rgb) {}  // NOLINT(google-explicit-constructor)
  constexpr gxColor(unsigned char r, unsigned char g, unsigned char b) : gxColor(gxRGB(r, g, b)) {}

  static gxColor const black, dkGrey, grey, ltGrey, white, red, dkRed, orange, yellow, green, dkGreen, cyan, blue,
      purple, magenta;
  /// The color with which icons and bitmaps mark a pel that lets the background through.
  static gxColor const pass;
  static gxColor const &dkGray, &gray, &ltGray;

  static constexpr gxColor const &blackColor() { return black; }
  static constexpr gxColor const &dkGreyColor() { return dkGrey; }
  static constexpr gxColor const &greyColor() { return grey; }
  static constexpr gxColor const &ltGreyColor() { return ltGrey; }
  static constexpr gxColor const &whiteColor() { return white; }
  static constexpr gxColor const &redColor() { return red; }
  static constexpr gxColor const &dkRedColor() { return dkRed; }
  static constexpr gxColor const &orangeColor() { return orange; }
  static constexpr gxColor const &yellowColor() { return yellow; }
  static constexpr gxColor const &greenColor() { return green; }
  static constexpr gxColor const &dkGreenColor() { return dkGreen; }
  static constexpr gxColor const &cyanColor() { return cyan; }
  static constexpr gxColor const &blueColor() { return blue; }
  static constexpr gxColor const &purpleColor() { return purple; }
  static constexpr gxColor const &magentaColor() { return magenta; }
  static constexpr gxColor const &passColor() { return pass; }

  constexpr bool isStockColor() const { return flags_ & stockFlag; }
  constexpr bool isRGBColor() const { return flags_ & rgbFlag; }
  constexpr bool isIndexColor() const { return flags_ & indexFlag; }

  /// Throws gxUIError::NotIndexColor unless isIndexColor().
  unsigned char index() const
  {
    if (!isIndexColor())
      throwNotIndex();
    return index_;
  }
  /// @name The packings of gxRGB
  /// Each throws gxUIError::NotRGBColor unless isRGBColor().
  /// @{
  unsigned long rgb() const { return checkedRGB().rgb(); }
  unsigned long bgr() const { return checkedRGB().bgr(); }
  unsigned short rgb15() const { return checkedRGB().rgb15(); }
  unsigned short rgb16() const { return checkedRGB().rgb16(); }
  /// @}
  /// The components without a question: black for a color that has none.
  constexpr gxRGB const &rgbStruct() const { return rgb_; }

  /// Equal indices make equal colors; failing that, equal components do; two colors without a form in common differ.
  /// Not transitive: red by index and red by components both equal stock red, but not each other.
  friend constexpr bool operator==(gxColor const &a, gxColor const &b)
  {
    unsigned const common = a.flags_ & b.flags_;
    if ((common & indexFlag) && a.index_ == b.index_)
      return true;
    return (common & rgbFlag) && a.rgb_ == b.rgb_;
  }

  /// Passes the color through, with all its forms. Throws gxArchive::UnknownVersion.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxColor &color);

 private:
  enum Flag : unsigned char { stockFlag = 1, rgbFlag = 2, indexFlag = 4 };

  /// A stock color.
  constexpr gxColor(unsigned char index, unsigned char r, unsigned char g, unsigned char b)
      : flags_(stockFlag | rgbFlag | indexFlag), index_(index), rgb_(r, g, b)
  {
  }

  gxRGB const &checkedRGB() const
  {
    if (!isRGBColor())
      throwNotRGB();
    return rgb_;
  }
  [[noreturn]] static void throwNotIndex();
  [[noreturn]] static void throwNotRGB();

  unsigned char flags_ = indexFlag;
  unsigned char index_ = 0;
  gxRGB rgb_;
};

static_assert(sizeof(gxColor) == 6);

inline constexpr gxColor gxColor::black{0, 0, 0, 0};
inline constexpr gxColor gxColor::dkGrey{248, 128, 128, 128};
inline constexpr gxColor gxColor::grey{247, 160, 160, 164};
inline constexpr gxColor gxColor::ltGrey{7, 192, 192, 192};
inline constexpr gxColor gxColor::white{255, 255, 255, 255};
inline constexpr gxColor gxColor::red{249, 255, 0, 0};
inline constexpr gxColor gxColor::dkRed{1, 128, 0, 0};
inline constexpr gxColor gxColor::orange{245, 250, 125, 50};
inline constexpr gxColor gxColor::yellow{251, 255, 255, 0};
inline constexpr gxColor gxColor::green{250, 0, 255, 0};
inline constexpr gxColor gxColor::dkGreen{2, 0, 128, 0};
inline constexpr gxColor gxColor::cyan{254, 0, 255, 255};
inline constexpr gxColor gxColor::blue{252, 0, 0, 255};
inline constexpr gxColor gxColor::purple{244, 160, 20, 200};
inline constexpr gxColor gxColor::magenta{253, 255, 0, 255};
inline constexpr gxColor gxColor::pass{243, 243, 243, 243};
inline constexpr gxColor const &gxColor::dkGray = gxColor::dkGrey;
inline constexpr gxColor const &gxColor::gray = gxColor::grey;
inline constexpr gxColor const &gxColor::ltGray = gxColor::ltGrey;

/// The color of a word of the flat drawing list: by components if bit 7 is set, even where a stock color has the same;
/// else the stock color of the code, black for words that are no code.
GX_API gxColor gfColor(gxr_color word);
/// The word of a color: the code of a stock color, else the word of the components. The index of a color that has no
/// components is lost: it comes out black.
GX_API gxr_color gfColor(gxColor const &color);

/// Passes the three components through; the fourth byte stays as it is. Throws gxArchive::UnknownVersion.
GX_API gxArchive &operator||(gxArchive &archive, gxRGB &rgb);

/// "#ff0000".
GX_API std::ostream &operator<<(std::ostream &os, gxRGB const &rgb);
/// The forms that the color has, as in "stock 249 #ff0000".
GX_API std::ostream &operator<<(std::ostream &os, gxColor const &color);
