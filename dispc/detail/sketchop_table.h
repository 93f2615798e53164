#pragma once

#include "dispc/sketchop.h"
#include "dispc/uisketch_codes.h"

#include <array>
#include <cstddef>
#include <memory>

/// The ops of polygons, which live upstairs.
gx_UISketchOpData *gf_makeGenPolyOp();
gx_UISketchOpData *gf_makeWireframeOp();

/// One op object for each code, made when it is first asked for and used again for every later record. Internal to
/// playback and archives.
class gx_SketchOpTable
{
 public:
  /// Throws gxUIError::InvalidUISketch for codes that no payload has.
  gx_UISketchOpData &operator[](long code)
  {
    auto const slot = static_cast<std::size_t>(code);
    return slot < ops_.size() && ops_[slot] ? *ops_[slot] : make(code);
  }

 private:
  gx_UISketchOpData &make(long code)
  {
    std::unique_ptr<gx_UISketchOpData> op(gfCreateUISketchOpData(code));
    return *(ops_[static_cast<std::size_t>(code)] = std::move(op));
  }

  std::array<std::unique_ptr<gx_UISketchOpData>, gf_sketchCodes.size()> ops_;
};

/// True if the bytes up to the end hold properties, if they begin so, and a head.
inline bool gf_holdsHead(unsigned char const *bytes, long left)
{
  bool const prefixed = left > 0 && *bytes == static_cast<unsigned char>(gx_SketchCode::props);
  return left >= gf_sketchHeadSize + (prefixed ? gf_sketchPrefixSize : 0);
}
