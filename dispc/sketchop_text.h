#pragma once

#include "dispc/sketchop.h"
#include "dispc/uistring.h"
#include "foundation/point.h"

#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// Op objects of texts. They look at the text where it stands in the stream.

/// A text in the colour of the head.
class GX_API gx_UISketchOpString final : public gx_UISketchOpData
{
 public:
  gxPoint const &position() const { return position_; }
  gxColor const &background() const { return background_; }
  gxUIFormat const &format() const { return format_; }
  /// In units, the closing zero included.
  long length() const { return length_; }
  /// A copy, without the closing zero.
  std::string text() const;

 private:
  gxPoint position_;
  gxColor background_;
  gxUIFormat format_;
  gx_StreamView text_;
  std::int32_t length_ = 1;
  mutable std::string drawn_;  ///< room for the next draw

  GX_SKETCH_OP(gx_UISketchOpString);
};

/// A text of 16-bit units. No tablet records it; a replay draws it as narrow text.
class GX_API gx_UISketchOpUnicodeString final : public gx_UISketchOpData
{
 public:
  gxPoint const &position() const { return position_; }
  gxColor const &background() const { return background_; }
  gxUIFormat const &format() const { return format_; }
  /// In units, the closing zero included.
  long length() const { return length_; }
  /// A copy, without the closing zero.
  std::u16string text() const;

 private:
  gxPoint position_;
  gxColor background_;
  gxUIFormat format_;
  gx_StreamView text_;
  std::int32_t length_ = 1;

  GX_SKETCH_OP(gx_UISketchOpUnicodeString);
};

/// UTF-16 as UTF-8; half a pair of surrogates becomes U+FFFD.
GX_API std::string gfConvertString(std::u16string_view text);
