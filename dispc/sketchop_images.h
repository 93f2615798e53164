#pragma once

#include "dispc/sketchop.h"
#include "foundation/pair.h"
#include "foundation/pelbuf.h"
#include "foundation/point.h"
#include "foundation/rlebuf.h"
#include "foundation/xform.h"

#include <cstdint>
#include <vector>

/// @file
/// Op objects of images. The pels and the runs stay where they stand in the stream.

/// An image of 8-bit pels.
class GX_API gx_UISketchOpPelBuf8 final : public gx_UISketchOpData
{
 public:
  gxPoint const &position() const { return position_; }
  bool pass() const { return pass_; }
  unsigned char passPel() const { return passPel_; }
  bool flag() const { return flag_; }
  gxPelBuffer<unsigned char> const &buffer() const { return buffer_; }

 private:
  template <class Io>
  void passArchive(Io &io);

  gxPoint position_;
  bool pass_ = false;
  unsigned char passPel_ = 0;
  gxXform<2> imageFromClient_;
  gxPair<long> offset_;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  bool flag_ = false;
  gxPelBuffer<unsigned char> buffer_;

  GX_SKETCH_OP(gx_UISketchOpPelBuf8);
};

/// A run-length image.
class GX_API gx_UISketchOpRleBuf final : public gx_UISketchOpData
{
 public:
  gxPoint const &position() const { return position_; }
  bool pass() const { return pass_; }
  unsigned char passPel() const { return passPel_; }
  bool unscaled() const { return unscaled_; }
  std::vector<unsigned char> const &colorMap() const { return map_; }
  gxRLEBuffer const &buffer() const { return buffer_; }

 private:
  gxPoint position_;
  bool pass_ = false;
  unsigned char passPel_ = 0;
  bool unscaled_ = false;
  std::vector<unsigned char> map_;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  gxRLEBuffer buffer_;
  std::vector<gxRLEBufferRun *> rows_;  ///< room for the next parse

  GX_SKETCH_OP(gx_UISketchOpRleBuf);
};
