#pragma once

#include "dispc/wrfm/poly.h"

#include <utility>
#include <vector>

/// The fields of an outline for what draws it and what passes it through streams: as they stand, roundings among them,
/// without a question asked.
class gx_PolyFields
{
 public:
  static std::vector<gxSMDGDPolyVertex> const &vertices(gxSMDGDPoly const &poly) { return poly.vertices_; }
  /// Where the rounding of each vertex touches the segment that ends there, and the one that starts there; the point of
  /// a vertex without one.
  static std::vector<gxVector<2>> const &prevRoundPoints(gxSMDGDPoly const &poly) { return poly.prevRoundPoints_; }
  static std::vector<gxVector<2>> const &nextRoundPoints(gxSMDGDPoly const &poly) { return poly.nextRoundPoints_; }
  static std::vector<double> const &roundSpans(gxSMDGDPoly const &poly) { return poly.roundSpans_; }

  /// The boxes round the pieces, if they are current; and one of them, found anew.
  static gx_PolyBoxes const *boxes(gxSMDGDPoly const &poly)
  {
    return poly.boxes_.areCurrent(poly.vertices_.size()) ? &poly.boxes_ : nullptr;
  }
  static gx_PolyBoxes::Box boxAt(gxSMDGDPoly const &poly, int i) { return poly.boxAt_(i); }
  /// Within which a point lies on a piece of one of these outlines.
  static double onPieceTolerance(gxSMDGDPoly const &a, gxSMDGDPoly const &b)
  {
    return gxSMDGDPoly::onPieceTolerance_(a, b);
  }
  /// The outline alone: without name, looks and weight of its own, and without its direction flag.
  static gxSMDGDPoly geometryOf(gxSMDGDPoly const &poly)
  {
    gxSMDGDPoly result;
    result.vertices_ = poly.vertices_;
    result.subModelLabels_ = poly.subModelLabels_;
    result.prevRoundPoints_ = poly.prevRoundPoints_;
    result.nextRoundPoints_ = poly.nextRoundPoints_;
    result.roundSpans_ = poly.roundSpans_;
    result.isOpen_ = poly.isOpen_;
    result.labelsInOrder_ = poly.labelsInOrder_;
    return result;
  }

  /// What stands in the records of an outline.
  struct Content {
    std::vector<gxSMDGDPolyVertex> vertices;
    std::vector<gxVector<2>> prevRoundPoints, nextRoundPoints;
    std::vector<double> roundSpans;
    bool isOpen = true;
  };
  /// The content, for its memory: the outline is open and empty then.
  static Content take(gxSMDGDPoly &poly)
  {
    Content content{std::move(poly.vertices_), std::move(poly.prevRoundPoints_), std::move(poly.nextRoundPoints_),
                    std::move(poly.roundSpans_)};
    poly.reInit();
    return content;
  }
  /// All fields of a vertex, unasked; those that are not named have their start values.
  static void fill(gxSMDGDPolyVertex &v, gxVector<2> const &point, double radius, double span, gxDimTol const &tol)
  {
    v.point_ = point;
    v.vertexRadius_ = radius;
    v.segmentAngleSpan_ = gxDegree(span);
    v.percentPrevSegment_ = v.percentNextSegment_ = 0.5;
    v.subModelLabel_ = -1;
    v.segmentLengthTol_ = tol;
    v.forwardPercExtension_ = v.backwardPercExtension_ = 0.0;
  }
  /// Takes the content as it is; no vertex may have a label. All else stays.
  static void refill(gxSMDGDPoly &poly, Content &&content)
  {
    poly.mutating();
    poly.vertices_ = std::move(content.vertices);
    poly.prevRoundPoints_ = std::move(content.prevRoundPoints);
    poly.nextRoundPoints_ = std::move(content.nextRoundPoints);
    poly.roundSpans_ = std::move(content.roundSpans);
    poly.isOpen_ = content.isOpen;
    poly.subModelLabels_.clear();
    poly.labelsInOrder_ = true;
    poly.boxes_.clear();
  }
  /// Sets span and tolerance at a vertex, unasked: for edits of several steps, which check at the last one.
  static void segment(gxSMDGDPoly &poly, int v, gxDegree const &span, gxDimTol const &tol)
  {
    gxSMDGDPolyVertex &vertex = poly.vertices_[static_cast<std::size_t>(v)];
    vertex.segmentAngleSpan(span);
    vertex.segmentLengthTol(tol);
  }
  /// A tolerance as it was stored.
  static gxDimTol tolerance(double nominal, double low, double high, gxDimTol::TolType type)
  {
    gxDimTol tol;
    tol.nomDim_ = nominal;
    tol.minTol_ = low;
    tol.maxTol_ = high;
    tol.tolType_ = type;
    return tol;
  }
  /// What is wrong with an outline that came from outside; null if nothing is.
  static char const *fault(gxSMDGDPoly const &poly) { return poly.faultOfLoaded_(); }
};
