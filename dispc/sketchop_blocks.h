#pragma once

#include "dispc/sketchop.h"
#include "foundation/affinerect.h"
#include "foundation/ellipseannulus.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"

/// @file
/// Op objects of shapes that a record holds as a block. But for the last one they are views.

/// A sector of the ring between two ellipses, drawn with an arrowhead that points forward.
class GX_API gx_UISketchOpEllipseAnnSect final : public gx_UISketchOpData
{
 public:
  /// Made anew by each call.
  gxEllipseAnnulusSection section() const;

 private:
  gx_StreamView block_;

  GX_SKETCH_OP(gx_UISketchOpEllipseAnnSect);
};

/// A general rectangle, outlined or filled: codes 8 and 31.
class GX_API gx_UISketchOpGenRect final : public gx_UISketchOpData
{
 public:
  /// Made anew by each call.
  gxGenRect rect() const;

 private:
  gx_StreamView block_;

  GX_SKETCH_OP(gx_UISketchOpGenRect);
};

/// The ring between two general rectangles.
class GX_API gx_UISketchOpGenAnn final : public gx_UISketchOpData
{
 public:
  /// Made anew by each call.
  gxGenAnnulus annulus() const;

 private:
  gx_StreamView block_;

  GX_SKETCH_OP(gx_UISketchOpGenAnn);
};

/// An affine rectangle.
class GX_API gx_UISketchOpAffineRect final : public gx_UISketchOpData
{
 public:
  /// Made anew by each call.
  gxAffineRectangle rect() const;

 private:
  gx_StreamView block_;

  GX_SKETCH_OP(gx_UISketchOpAffineRect);
};

/// A sector of the ring between two ellipses, with its own arrow flags: a replay puts them into the properties of the
/// header, where they stay for the records that follow without properties.
class GX_API gx_UISketchOpEllipseAnnSectArrowheadFlag final : public gx_UISketchOpData
{
 public:
  gxEllipseAnnulusSection const &section() const { return section_; }
  bool arrowHead() const { return arrowHead_; }
  bool arrowHeadForward() const { return arrowHeadForward_; }

 private:
  gxEllipseAnnulusSection section_;
  bool arrowHead_ = false;
  bool arrowHeadForward_ = false;

  GX_SKETCH_OP(gx_UISketchOpEllipseAnnSectArrowheadFlag);
};
