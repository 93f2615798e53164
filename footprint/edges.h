#pragma once

#include "dispc/uitablet.h"
#include "footprint/models.h"
#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"
#include "foundation/xform.h"

#include <vector>

/// How edges are looked for. Lengths in pels.
struct GX_API gxEdgeSearch {
  double reach = 6.0;    ///< how far to either side of the outline, 2 to 50
  double spacing = 1.0;  ///< of the places where it is looked for, at least 0.1
  /// How far from sharp corners and other outlines, where edges disturb one another; an arc of a smaller radius is a
  /// corner. Twice the standard deviation of blur is to be added.
  double corner = 3.0;
  double contrast = 8.0;  ///< grey values; what is weaker is no edge
};

/// Where the picture has an edge, against where an outline puts it.
struct GX_API gxEdgePoint {
  gxVector<2> place;    ///< on the outline, in pels
  gxVector<2> outward;  ///< of length 1
  double offset = 0.0;  ///< pels along it to the edge
};

/// The edges found along one segment of an outline, or along a fillet.
struct GX_API gxSegmentEdges {
  enum Kind { line, arc, fillet };

  bool isBody = false;  ///< else of a pad
  int outline = 0;      ///< in the model of the pads or of the body
  int vertex = 0;       ///< where the segment ends, or that is rounded
  Kind kind = line;
  int looked = 0;                   ///< in how many places
  std::vector<gxEdgePoint> points;  ///< where there was an edge

  double mean() const;    ///< of the offsets; 0 if there are none
  double spread() const;  ///< their standard deviation
  double worst() const;   ///< the one of the greatest amount
};

/// What gfMeasureEdges() has found.
struct GX_API gxEdgeReport {
  /// Of the closed outlines, in their order, pads first. Along those that are too short or hidden, no place was looked
  /// at.
  std::vector<gxSegmentEdges> segments;

  int looked() const;
  int found() const;
  double mean() const;
  double spread() const;
  double worst() const;

  /// What the pose is off by, by least squares over all points: it lies this much too far to the right and down, and
  /// is turned this much too far counter-clockwise as it is seen, about the middle of the points.
  gxVector<2> poseShift;
  gxDegree poseTurn;
};

/// Looks for the edges of a device in an image, along the normals of each segment of its closed outlines, to a fraction
/// of a pel. The device is taken to look as gfCameraImage() paints it: the body hides what it covers of the pads.
///
/// Along a normal the picture is interpolated and averaged over a few pels of the outline. Of the steep changes of grey
/// the nearest one is the edge; it lies where a sharp step of its height would have the same sum of grey values. So
/// blur does not move it, nor does the level of light. Only where it is bent, blur of a variance v moves an edge of
/// radius r by v / 2r towards its centre; v is taken from the width of the edge, and the shift given back.
///
/// @param pose from millimetres to pels: may turn, scale and mirror, but not distort. Pel (0, 0) of the buffer's root
///        covers 0 to 1 both ways.
/// Throws gxPel::UnboundWindow, gxMathError::Singular for a pose without an inverse, gxShapesError::BadCoef for one
/// that distorts and for a search out of range.
GX_API gxEdgeReport gfMeasureEdges(gxFootprintModels const &models, gxXform<2> const &pose,
                                   gxPelBuffer<unsigned char> const &image, gxEdgeSearch const &search = {});

/// Draws whiskers from the outlines to the edges, @p magnify times as long as the offsets, in client coordinates that
/// are pels of the image: green ones up to @p good pels, red ones beyond.
GX_API void gfDrawEdges(gxEdgeReport const &report, gxUITablet &tablet, double magnify, double good,
                        gx_UITabletBase::Layers layer);
