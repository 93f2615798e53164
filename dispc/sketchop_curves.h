#pragma once

#include "dispc/sketchop.h"
#include "foundation/bezier.h"
#include "foundation/genshape.h"
#include "foundation/point.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"

#include <vector>

/// @file
/// Op objects of shapes with any number of points, of curves, and of what clients define. They hold the values.

/// A rational Bezier curve.
class GX_API gx_UISketchOpBezierCurve final : public gx_UISketchOpData
{
 public:
  gxBezierCurve const &curve() const { return curve_; }

 private:
  gxBezierCurve curve_;

  GX_SKETCH_OP(gx_UISketchOpBezierCurve);
};

/// A spline, as the curves that it consists of.
class GX_API gx_UISketchOpCubicSpline final : public gx_UISketchOpData
{
 public:
  std::vector<gxBezierCurve> const &curves() const { return curves_; }

 private:
  std::vector<gxBezierCurve> curves_;

  GX_SKETCH_OP(gx_UISketchOpCubicSpline);
};

/// A polygon with its fill mode.
class GX_API gx_UISketchOpPolygon final : public gx_UISketchOpData
{
 public:
  gxPolygon const &polygon() const { return polygon_; }

 private:
  gxPolygon polygon_;

  GX_SKETCH_OP(gx_UISketchOpPolygon);
};

/// A polyline, open or closed.
class GX_API gx_UISketchOpPolyline final : public gx_UISketchOpData
{
 public:
  gxPolyline const &polyline() const { return polyline_; }

 private:
  gxPolyline polyline_;

  GX_SKETCH_OP(gx_UISketchOpPolyline);
};

/// A shape of a client's, by its identity and the bytes that it saved.
class GX_API gx_UISketchOpGenShape final : public gx_UISketchOpData
{
 public:
  /// The colour that the client drew in; a replay takes that of the head.
  gxColor const &color() const { return color_; }
  gxGenShape::tagShapeID const &id() const { return id_; }
  std::vector<unsigned char> const &data() const { return data_; }

 private:
  gxColor color_;
  gxGenShape::tagShapeID id_;
  std::vector<unsigned char> data_;

  GX_SKETCH_OP(gx_UISketchOpGenShape);
};

/// A sketch inside a sketch, which holds its bytes. It cannot pass through an archive: that throws
/// gxUIError::NotImplemented.
class GX_API gx_UISketchOpSketch final : public gx_UISketchOpData
{
 public:
  gxPoint const &offset() const { return offset_; }
  gxUISketch const &sketch() const { return sketch_; }

 private:
  gxPoint offset_;
  gxUISketch sketch_;

  GX_SKETCH_OP(gx_UISketchOpSketch);
};
