#pragma once

#include "dispc/sketchop.h"
#include "foundation/circle.h"
#include "foundation/coordaxes.h"
#include "foundation/cross.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/point.h"
#include "foundation/rect.h"

/// @file
/// Op objects of single shapes of a fixed size. They hold the values.

/// A point of one pel.
class GX_API gx_UISketchOpPoint final : public gx_UISketchOpData
{
 public:
  gxPoint const &point() const { return point_; }

 private:
  gxPoint point_;

  GX_SKETCH_OP(gx_UISketchOpPoint);
};

/// The point icon.
class GX_API gx_UISketchOpPointIcon final : public gx_UISketchOpData
{
 public:
  gxPoint const &point() const { return point_; }

 private:
  gxPoint point_;

  GX_SKETCH_OP(gx_UISketchOpPointIcon);
};

/// A segment.
class GX_API gx_UISketchOpLineSeg final : public gx_UISketchOpData
{
 public:
  gxLineSeg const &segment() const { return segment_; }

 private:
  gxLineSeg segment_;

  GX_SKETCH_OP(gx_UISketchOpLineSeg);
};

/// An endless line.
class GX_API gx_UISketchOpLine final : public gx_UISketchOpData
{
 public:
  gxLine const &line() const { return line_; }

 private:
  gxLine line_;

  GX_SKETCH_OP(gx_UISketchOpLine);
};

/// A circle, outlined or filled: codes 4 and 29.
class GX_API gx_UISketchOpCircle final : public gx_UISketchOpData
{
 public:
  gxCircle const &circle() const { return circle_; }

 private:
  gxCircle circle_;

  GX_SKETCH_OP(gx_UISketchOpCircle);
};

/// An ellipse, outlined or filled: codes 5 and 30.
class GX_API gx_UISketchOpEllipse final : public gx_UISketchOpData
{
 public:
  gxEllipse const &ellipse() const { return ellipse_; }

 private:
  gxEllipse ellipse_;

  GX_SKETCH_OP(gx_UISketchOpEllipse);
};

/// An elliptical arc.
class GX_API gx_UISketchOpEllipseArc final : public gx_UISketchOpData
{
 public:
  gxEllipseArc const &arc() const { return arc_; }

 private:
  gxEllipseArc arc_;

  GX_SKETCH_OP(gx_UISketchOpEllipseArc);
};

/// A coordinate frame.
class GX_API gx_UISketchOpCoordAxes final : public gx_UISketchOpData
{
 public:
  gxCoordAxes const &axes() const { return axes_; }

 private:
  gxCoordAxes axes_;

  GX_SKETCH_OP(gx_UISketchOpCoordAxes);
};

/// An upright rectangle.
class GX_API gx_UISketchOpRect final : public gx_UISketchOpData
{
 public:
  gxRect const &rect() const { return rect_; }

 private:
  gxRect rect_;

  GX_SKETCH_OP(gx_UISketchOpRect);
};

/// A cross.
class GX_API gx_UISketchOpCross final : public gx_UISketchOpData
{
 public:
  gxCross const &cross() const { return cross_; }

 private:
  gxCross cross_;

  GX_SKETCH_OP(gx_UISketchOpCross);
};

/// An ellipse as a shape; right-handed and without a phase, which a record does not keep.
class GX_API gx_UISketchOpEllipse2 final : public gx_UISketchOpData
{
 public:
  gxEllipse2 const &ellipse() const { return ellipse_; }

 private:
  gxEllipse2 ellipse_;

  GX_SKETCH_OP(gx_UISketchOpEllipse2);
};

/// An elliptical arc as a shape.
class GX_API gx_UISketchOpEllipseArc2 final : public gx_UISketchOpData
{
 public:
  gxEllipseArc2 const &arc() const { return arc_; }

 private:
  gxEllipseArc2 arc_;

  GX_SKETCH_OP(gx_UISketchOpEllipseArc2);
};

/// The clip rectangle of the display.
class GX_API gx_UISketchOpClipRect final : public gx_UISketchOpData
{
 public:
  gxRect const &rect() const { return rect_; }

 private:
  gxRect rect_;

  GX_SKETCH_OP(gx_UISketchOpClipRect);
};
