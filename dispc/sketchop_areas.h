#pragma once

#include "dispc/sketchop.h"
#include "dispc/uirect.h"
#include "foundation/pair.h"
#include "foundation/point.h"
#include "foundation/rect.h"

#include <cstdint>

/// @file
/// Op objects of areas and of the pen. They hold the values.

/// A rectangle in one of two forms: in pels of the tablet, or in client coordinates.
struct gx_FormRect {
  bool inPels = true;
  gxUIRect pels;  ///< meant if `inPels`
  gxRect client;  ///< meant otherwise
};

/// A rectangle in the colour of the head.
class GX_API gx_UISketchOpSet final : public gx_UISketchOpData
{
 public:
  gx_FormRect const &rect() const { return rect_; }

 private:
  gx_FormRect rect_;

  GX_SKETCH_OP(gx_UISketchOpSet);
};

/// All but a rectangle.
class GX_API gx_UISketchOpSetComp final : public gx_UISketchOpData
{
 public:
  gx_FormRect const &rect() const { return rect_; }

 private:
  gx_FormRect rect_;

  GX_SKETCH_OP(gx_UISketchOpSetComp);
};

/// The whole surface; without a payload.
class GX_API gx_UISketchOpSetAll final : public gx_UISketchOpData
{
  GX_SKETCH_OP(gx_UISketchOpSetAll);
};

/// A flood fill, from a seed in one of two forms.
class GX_API gx_UISketchOpFill final : public gx_UISketchOpData
{
 public:
  bool inPels() const { return inPels_; }
  gxPair<long> const &pelSeed() const { return pelSeed_; }  ///< meant if inPels()
  gxPoint const &seed() const { return seed_; }             ///< meant otherwise
  gxColor const &boundary() const { return boundary_; }
  gx_UITabletBase::FillType type() const { return type_; }

 private:
  bool inPels_ = true;
  gxPair<long> pelSeed_;
  gxPoint seed_;
  gxColor boundary_;
  gx_UITabletBase::FillType type_ = gx_UITabletBase::boundaryFill;

  GX_SKETCH_OP(gx_UISketchOpFill);
};

/// A frame in two colours.
class GX_API gx_UISketchOpOutline3d final : public gx_UISketchOpData
{
 public:
  gx_FormRect const &rect() const { return rect_; }
  /// The colour of top and left as it was recorded; a replay takes that of the head.
  gxColor const &first() const { return first_; }
  gxColor const &second() const { return second_; }
  long width() const { return width_; }

 private:
  gx_FormRect rect_;
  gxColor first_;
  gxColor second_;
  std::int32_t width_ = 0;

  GX_SKETCH_OP(gx_UISketchOpOutline3d);
};

/// The pen goes to a point.
class GX_API gx_UISketchOpDrawStart final : public gx_UISketchOpData
{
 public:
  gxPoint const &point() const { return point_; }

 private:
  gxPoint point_;

  GX_SKETCH_OP(gx_UISketchOpDrawStart);
};

/// The pen draws to a point.
class GX_API gx_UISketchOpDrawTo final : public gx_UISketchOpData
{
 public:
  gxPoint const &point() const { return point_; }

 private:
  gxPoint point_;

  GX_SKETCH_OP(gx_UISketchOpDrawTo);
};

/// The pen draws a step in pels.
class GX_API gx_UISketchOpDrawToRelPels final : public gx_UISketchOpData
{
 public:
  gxPair<long> const &step() const { return step_; }

 private:
  gxPair<long> step_;

  GX_SKETCH_OP(gx_UISketchOpDrawToRelPels);
};

/// The pen goes a step in pels.
class GX_API gx_UISketchOpMoveToRelPels final : public gx_UISketchOpData
{
 public:
  gxPair<long> const &step() const { return step_; }

 private:
  gxPair<long> step_;

  GX_SKETCH_OP(gx_UISketchOpMoveToRelPels);
};

/// An arrowhead.
class GX_API gx_UISketchOpArrow final : public gx_UISketchOpData
{
 public:
  gxPoint const &tip() const { return tip_; }
  gxVector<2> const &dir() const { return dir_; }
  float armLength() const { return armLength_; }

 private:
  gxPoint tip_;
  gxVector<2> dir_;
  float armLength_ = 0.0f;

  GX_SKETCH_OP(gx_UISketchOpArrow);
};
