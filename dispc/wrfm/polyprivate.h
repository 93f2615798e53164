#pragma once

#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/lineseg.h"
#include "dispc/wrfm/poly.h"

/// The extended interface of gxSMDGDPoly: what tools that edit and measure outlines need beyond their public face.
/// All static, with the outline as the first argument. Indices are those of gxSMDGDPoly and throw
/// gxSMDGDPoly::invalidIndex.
class GX_API gxSMDGDPolyPrivate : public gxSMDGDPoly
{
 public:
  using gxSMDGDPoly::gxSMDGDPoly;

  /// @name Indices and fields
  ///@{
  static bool isEndVertex(gxSMDGDPoly const &poly, int v) { return poly.isEndVertex(v); }
  static int previousSegmentIndex_(gxSMDGDPoly const &poly, int v) { return poly.previousSegmentIndex_(v); }
  static int nextSegmentIndex_(gxSMDGDPoly const &poly, int v) { return poly.nextSegmentIndex_(v); }
  static int previousVertexIndex_(gxSMDGDPoly const &poly, int s) { return poly.previousVertexIndex_(s); }
  static int nextVertexIndex_(gxSMDGDPoly const &poly, int s) { return poly.nextVertexIndex_(s); }
  static bool isLineSegment_(gxSMDGDPoly const &poly, int s) { return poly.isLineSegment_(s); }
  static bool vertexIsRounded_(gxSMDGDPoly const &poly, int v) { return poly.vertexIsRounded_(v); }
  static std::vector<long> subModelLabels(gxSMDGDPoly const &poly);
  static void setWeight_(gxSMDGDPoly &poly, double weight) { poly.weight(weight); }
  static double getWeight_(gxSMDGDPoly const &poly) { return poly.weight(); }
  ///@}

  /// @name Measures
  ///@{
  static double segmentLength(gxSMDGDPoly const &poly, int s) { return poly.segmentLength_(s); }
  static double perimeter(gxSMDGDPoly const &poly, double minLength) { return poly.perimeter_(minLength); }
  static double perimeter(gxSMDGDPoly const &poly, gxXform<2> const &xform) { return poly.perimeter_(xform); }
  static void appendSegmentLengths(gxSMDGDPoly const &poly, std::vector<double> &out)
  {
    poly.appendSegmentLengths_(out);
  }
  /// Orientation and centre of mass.
  static gx2Rigid position(gxSMDGDPoly const &poly);
  /// The signed angle between the segments at a vertex, in (-180, 180]. Throws invalidIndex at an end.
  static gxDegree vertexAngle(gxSMDGDPoly const &poly, long v, bool wrap);
  /// True if the segments are arcs of one sense that make up a circle: radii within 0.01 of the first, spans within 1
  /// degree of a full turn.
  static bool isCircle(gxSMDGDPoly const &poly);
  ///@}

  /// @name Tolerances
  ///@{
  static gxDimTol::TolType tolType(gxSMDDimension::ScaleType type) { return gxSMDDimension::tolType(type); }
  static gxSMDDimension::ScaleType scaleType(gxDimTol::TolType type) { return gxSMDDimension::scaleType(type); }
  /// The tolerance of a dimension, in the form that its scale type corresponds to.
  static gxDimTol dimTol(gxSMDDimension const &dimension);
  ///@}

  /// @name Segments
  /// Throw invalidIndex for a segment that does not exist, and gxShapesError::DegenerateShape for one without length.
  ///@{
  static gx2SegmentLine lineSegment_(gxSMDGDPoly const &poly, int s);
  static gx2SegmentArc arcSegment_(gxSMDGDPoly const &poly, int s);
  /// Cut back to the roundings at its ends.
  static gx2SegmentLine roundedLineSegment_(gxSMDGDPoly const &poly, int s);
  static gx2SegmentArc roundedArcSegment_(gxSMDGDPoly const &poly, int s);
  ///@}

  /// @name Fillets
  ///@{
  /// The centre. Throws invalidIndex, invalidRounding and gxShapesError::DegenerateShape.
  static gxVector<2> roundPoint(gxSMDGDPoly const &poly, int v) { return poly.roundPoint_(v); }
  /// The fillet of a vertex that is rounded and no end; DegenerateShape otherwise.
  static gx2SegmentArc roundedArcVertex_(gxSMDGDPoly const &poly, int v);
  ///@}

  /// @name Slides
  /// A segment moved by @p d to the right of its direction, and the halves of it. An arc that would be moved beyond
  /// its centre throws invalidRounding, one that is moved onto it gxShapesError::DegenerateShape.
  ///@{
  static gx2SegmentLine slideLineSegment_(gxSMDGDPoly const &poly, int s, double d);
  static gx2SegmentLine firstHalfSlideLineSegment_(gxSMDGDPoly const &poly, int s, double d);
  static gx2SegmentLine secondHalfSlideLineSegment_(gxSMDGDPoly const &poly, int s, double d);
  static gx2SegmentArc slideArc_(gxSMDGDPoly const &poly, int s, double d);
  static gx2SegmentArc firstHalfSlideArc_(gxSMDGDPoly const &poly, int s, double d);
  static gx2SegmentArc secondHalfSlideArc_(gxSMDGDPoly const &poly, int s, double d);
  ///@}

  /// @name Extensions
  /// The part of a segment's continuation that its extension allows. Those of lines throw
  /// gxShapesError::DegenerateShape where there is none; those of arcs have a span of 0 then.
  ///@{
  static gx2SegmentLine forwardLineSegmentExtension_(gxSMDGDPoly const &poly, int s);
  static gx2SegmentLine backwardLineSegmentExtension_(gxSMDGDPoly const &poly, int s);
  static gx2SegmentArc forwardArcSegmentExtension_(gxSMDGDPoly const &poly, int s);
  static gx2SegmentArc backwardArcSegmentExtension_(gxSMDGDPoly const &poly, int s);
  ///@}

 private:
  static gxPersistent *make();
  static gx_Instantiator sExemplar;
};
