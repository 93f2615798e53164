#pragma once

#include "dispc/uirect.h"
#include "foundation/export.h"
#include "foundation/numbers.h"

#include <cstdint>
#include <ostream>

class gxArchive;

/// How a text is drawn: the font, by a number that the display knows, and the point of the text's rectangle that the
/// position of the text stands for.
///
/// @code
/// gxUIFormat const format(gxUIFormat::center);
/// gxUIRect const box = format.alignRect(gxUIRect(x, y, width, height));   // centered around (x, y)
/// @endcode
class GX_API gxUIFormat
{
 public:
  /// Row by row.
  enum Alignment : std::int32_t {
    topLeft,
    topCenter,
    topRight,
    centerLeft,
    center,
    centerRight,
    bottomLeft,
    bottomCenter,
    bottomRight
  };

  /// The font is defaultFontId().
  gxUIFormat(Alignment alignment = topLeft)  // NOLINT(google-explicit-constructor): an alignment is a format
      : gxUIFormat(defaultFontId(), alignment)
  {
  }
  /// @param fontId narrows to 32 bits
  constexpr gxUIFormat(long fontId, Alignment alignment) : fontId_(gf_narrow(fontId)), alignment_(alignment) {}

  constexpr long fontId() const { return fontId_; }
  constexpr void fontId(long id) { fontId_ = gf_narrow(id); }
  constexpr Alignment alignment() const { return alignment_; }
  constexpr void alignment(Alignment alignment) { alignment_ = alignment; }

  friend constexpr bool operator==(gxUIFormat const &a, gxUIFormat const &b)
  {
    return a.fontId_ == b.fontId_ && a.alignment_ == b.alignment_;
  }

  /// The font of formats that name none, for the whole process; -1 until it is set.
  static long defaultFontId();
  static void defaultFontId(long id);

  /// The rectangle of the size of @p r whose point of this alignment lies at the origin of @p r. Halves of odd sizes
  /// are rounded towards zero. An alignment outside 0 to 8 moves neither axis.
  gxUIRect alignRect(gxUIRect const &r) const;

  /// Passes the format through. Throws gxArchive::UnknownVersion.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxUIFormat &format);

 private:
  std::int32_t fontId_;
  Alignment alignment_;
};

static_assert(sizeof(gxUIFormat) == 8);

/// "font 3, centerLeft".
GX_API std::ostream &operator<<(std::ostream &os, gxUIFormat const &format);
