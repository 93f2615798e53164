#pragma once

#include "foundation/rlebuf.h"

#include <utility>
#include <vector>

/// All that gxUITablet::draw() of a run-length image needs, but for its place: the runs, what their values mean, and
/// which colour is transparent. A plain value.
///
/// @code
/// gxUIBitmap const mark(gxUITablet::makeIcon("/0+0/+1+/0+0/", {}), {251, 249}, true, gxColor::pass.index());
/// tablet.draw(mark, at, mark.colorMap(), mark.passThrough(), mark.passColor(), true, gxUITablet::overlay);
/// @endcode
class GX_API gxUIBitmap : public gxRLEBuffer
{
 public:
  /// Without rows; values stand for themselves, and none is transparent.
  gxUIBitmap() = default;
  gxUIBitmap(gxRLEBuffer const &buffer, std::vector<unsigned char> colorMap, bool passThrough, unsigned char passColor)
      : gxRLEBuffer(buffer), colorMap_(std::move(colorMap)), passThrough_(passThrough), passColor_(passColor)
  {
  }

  /// True if there are rows.
  bool isInit() const { return !isNull(); }
  /// Takes a copy of the runs, with their offset; all else stays.
  void rleBuf(gxRLEBuffer const &buffer) { gxRLEBuffer::operator=(buffer); }

  /// The colour index of each run value; a value beyond the map stands for itself.
  std::vector<unsigned char> const &colorMap() const { return colorMap_; }
  void colorMap(std::vector<unsigned char> map) { colorMap_ = std::move(map); }

  /// Whether passColor() is transparent.
  bool passThrough() const { return passThrough_; }
  void passThrough(bool on) { passThrough_ = on; }

  unsigned char passColor() const { return passColor_; }
  void passColor(unsigned char index) { passColor_ = index; }

 private:
  std::vector<unsigned char> colorMap_;
  bool passThrough_ = false;
  unsigned char passColor_ = 0;
};
