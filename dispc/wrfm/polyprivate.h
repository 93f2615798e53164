#pragma once

#include "dispc/tabletbase.h"
#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/lineseg.h"
#include "dispc/wrfm/poly.h"
#include "foundation/angle.h"

#include <list>
#include <vector>

class gx2Wireframe;
class gxGenPoly;
class gxPolygon;
class gxSMDGDModel;

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
  static bool isUsedUp_(gxSMDGDPoly const &poly, int s) { return poly.isUsedUp_(s); }
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
  static gxRect boundingBox(gxSMDGDPoly const &poly, gxXform<2> const &xform) { return poly.boundingBox(xform); }
  /// The box round a mapped segment before rounding.
  static gxRect segmentBoundingBox_(gxSMDGDPoly const &poly, int s, gxXform<2> const &xform);
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
  /// Cut back to the roundings at its ends. DegenerateShape also for one that these use up.
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

  static void setExtensions_(gxSMDGDPoly &poly, double fraction) { poly.setExtensions_(fraction); }
  static void setDefaultExtensions_(gxSMDGDPoly &poly) { poly.setDefaultExtensions_(); }
  static void checkExtensions_(gxSMDGDPoly &poly, gxSMDGDPoly &other, double clearance, gxDegree const &angle,
                               double step, bool samePoly)
  {
    poly.checkExtensions_(other, clearance, angle, step, samePoly);
  }
  /// Cuts an extension back to where it last was clear of another piece. It is walked from the end of the segment (with
  /// @p backward from the start) in steps of length @p step; it is blocked where the other piece is met at a right
  /// angle to it, nearer than @p clearance, and running at most @p angle aside. Throws gxShapesError::BadCoef for a
  /// step that is not positive and finite; a walk takes at most a million steps.
  ///@{
  static void checkSegmentExtension_(double &fraction, gx2SegmentLine const &segment, gx2SegmentLine const &other,
                                     double clearance, gxDegree const &angle, double step, bool backward);
  static void checkSegmentExtension_(double &fraction, gx2SegmentLine const &segment, gx2SegmentArc const &other,
                                     double clearance, gxDegree const &angle, double step, bool backward);
  static void checkSegmentExtension_(double &fraction, gx2SegmentArc const &segment, gx2SegmentLine const &other,
                                     double clearance, gxDegree const &angle, double step, bool backward);
  static void checkSegmentExtension_(double &fraction, gx2SegmentArc const &segment, gx2SegmentArc const &other,
                                     double clearance, gxDegree const &angle, double step, bool backward);
  ///@}

  /// @name Points and outlines
  ///@{
  static bool inside(gxSMDGDPoly const &poly, gxVector<2> const &p) { return poly.inside_(p); }
  /// Where the rounded outlines meet, in the order of the first one: see gxSMDGDPoly::intersection_().
  static std::vector<gxVector<2>> intersection(gxSMDGDPoly const &a, gxSMDGDPoly const &b)
  {
    return a.intersection_(b);
  }
  /// The nearest point of the rounded outline; the first of several. Throws invalidIndex if there are no vertices.
  static gxVector<2> closestPoint(gxSMDGDPoly const &poly, gxVector<2> const &p);
  static double distToPoint(gxSMDGDPoly const &poly, gxVector<2> const &p) { return closestPoint(poly, p).distance(p); }
  /// True if outline @p a touches @p b at @p p, where they meet, without passing through it: at a sharp vertex of @p a
  /// if both its segments stay on one side of @p b, on a fillet if it is tangent there. Throws notClosed for an open @p
  /// b.
  static bool pointContact(gxSMDGDPoly const &a, gxVector<2> const &p, gxSMDGDPoly const &b);
  ///@}

  /// @name Ranges
  /// A range is an arc of radius 1 about a point: the directions in which a stretch of an outline is seen from there.
  /// A ray from the point crosses a piece once for each range of it that holds the direction of the ray.
  ///@{
  /// Of all pieces but one segment; -1 leaves none out. The rounded pieces are meant. A line that ends at the point has
  /// none.
  static std::vector<gx2SegmentArc> ranges_(gxSMDGDPoly const &poly, gxVector<2> const &p, int excludedSegment);
  /// Up to three: an arc may be seen to turn back at two places.
  static std::vector<gx2SegmentArc> arcRanges_(gx2SegmentArc const &arc, gxVector<2> const &p);
  /// The middle of the widest gap between the starts of ranges, from @p start through @p span; all round for a span of
  /// a turn. 0 if there are no ranges.
  static gxDegree safestDirection_(std::vector<gx2SegmentArc> const &ranges, gxDegree const &start,
                                   gxDegree const &span);
  ///@}

  /// @name Surgery
  /// New outlines from the pieces of others, each checked as any outline is: what cannot stand throws crossingSegments,
  /// invalidRounding or gxShapesError::DegenerateShape. An outline or list that is handed in for the result stays as it
  /// was then; it may be one of those that are read.
  ///@{
  /// What belongs to a vertex: the vertex, with its rounding, between the parts of its two segments that its
  /// percentages give it; at an end of an open outline the one part that there is. Open, named "poly", without labels,
  /// tolerances and colours of its own, but with direction, arrow colours and weight.
  /// An outline of these vertices, checked once, as a whole. Throws what vertices() and close() throw.
  static gxSMDGDPoly outline(std::vector<gxSMDGDPolyVertex> vertices, bool isClosed);
  /// A copy that lies elsewhere. Nothing of an outline depends on its place, so it is not checked again; @p offset must
  /// not be so large that the parts of the outline get lost in rounding. (`gx2Rigid * poly` does check.)
  static gxSMDGDPoly moved(gxSMDGDPoly const &poly, gxVector<2> const &offset);

  static gxSMDGDPoly subPoly(gxSMDGDPoly const &poly, int vertex, bool wrap);
  /// The same for a vertex between two segments; throws invalidIndex at an end.
  static gxSMDGDPoly corner(gxSMDGDPoly const &poly, int vertex, bool wrap);
  /// Appends to @p model what belongs to each vertex with the label.
  static void subModel(gxSMDGDModel &model, gxSMDGDPoly const &poly, long label);
  /// The same outline walked the other way, with its positive side where it was. Named "poly".
  static void reversePoly(gxSMDGDPoly const &in, gxSMDGDPoly &out);
  /// @p a and then @p b, each walked backward if its flag is false, joined by a line. Throws invalidVertices unless
  /// both are open.
  static void connectPolys(gxSMDGDPoly const &a, bool aForward, gxSMDGDPoly const &b, bool bForward, gxSMDGDPoly &out);
  /// The open pieces of at least 2 vertices that are left without the segments, in the order of the walk that begins
  /// behind the first cut; the outline itself if no segment is listed. Throws invalidIndex for a segment that does not
  /// exist.
  static void deleteSegments(gxSMDGDPoly const &poly, std::vector<long> const &segments, std::vector<gxSMDGDPoly> &out);
  /// Mirrored in the x axis, with the other direction.
  static gxSMDGDPoly flip(gxSMDGDPoly const &poly);
  /// A closed outline through the points of a polygon. Throws what closing one throws.
  static gxSMDGDPoly convert(gxPolygon const &polygon);
  ///@}

  /// @name Right angles
  /// Outlines whose segments are lines along two axes at right angles. Edits succeed or leave the outline as it was;
  /// they throw what its own edits throw.
  ///@{
  /// How far the axes of the outline are turned, within 45 degrees of 0: the mean over its chords, by their lengths. 0
  /// for fewer than 2 vertices. Exact for right angles. In other outlines a chord off the axes counts with its sign if
  /// it runs along the chord from vertex 0 to vertex 1, or a quarter turn on from it, and with the opposite sign if it
  /// runs against one of these.
  static gxDegree dominantAngle(gxSMDGDPoly const &poly);
  /// True if all segments run along x or y, up to 1e-15.
  static bool isRectilinear(gxSMDGDPoly const &poly);
  /// True if it is a sharp, closed rectangle along x and y, with equal tolerances on opposite sides.
  static bool isRectangular(gxSMDGDPoly const &poly);
  using gxSMDGDPoly::rectangle;
  /// Its box if it is rectangular, else empty.
  static gxRect rectangle(gxSMDGDPoly const &poly);
  /// The dimension of a rectangle along x (@p dim 0) or y; the default one if the outline is none.
  static gxSMDDimension rectDim(gxSMDGDPoly const &poly, long dim);
  static gxSMDDimension rectLength(gxSMDGDPoly const &poly) { return rectDim(poly, 0); }
  static gxSMDDimension rectWidth(gxSMDGDPoly const &poly) { return rectDim(poly, 1); }
  /// Resizes a rectangle about its centre, and gives the two sides the tolerance. Other outlines stay as they are.
  /// Throws gxShapesError::BadGeom for a dimension without a nominal.
  static void rectDim(gxSMDGDPoly &poly, long dim, gxSMDDimension const &value);
  static void rectLength(gxSMDGDPoly &poly, gxSMDDimension const &value) { rectDim(poly, 0, value); }
  static void rectWidth(gxSMDGDPoly &poly, gxSMDDimension const &value) { rectDim(poly, 1, value); }
  /// Makes a nearly rectilinear outline exact, about its dominant angle: each vertex gives way by half of the error of
  /// each of its segments, arcs become lines, and a closed outline of an odd number of vertices gets one more. Colours
  /// and weight become the default ones. What is rectilinear stays as it is.
  static void snapRectilinear(gxSMDGDPoly &poly);
  /// Closes the outline with right angles at its end: an odd number of vertices gets one more, of an even one the last
  /// moves.
  static void closeRectilinear(gxSMDGDPoly &poly);
  /// Replaces a vertex, and moves its neighbours so that segments along an axis stay so.
  static void replaceVertexRectilinear(gxSMDGDPoly &poly, long index, gxSMDGDPolyVertex const &v);
  /// Sets the tolerance on every segment, with its length as the nominal. Vertex 0 of an open outline, where no segment
  /// ends, gets it as it is.
  static void autoSegmentLengthTolerance(gxSMDGDPoly &poly, gxDimTol const &tol);
  ///@}

  /// @name Crop
  ///@{
  /// The pieces of an outline that run inside the mask, or outside if @p keepInside is false, in the order of the walk;
  /// the closed outline itself if nothing of it is cut away, no piece if nothing is kept. A piece is open, named
  /// "poly", with colours and weight of a new outline; a reversed direction comes with it.
  ///
  /// Where a segment is cut, a vertex with the attributes of its end is put; its parts have no length tolerance. A cut
  /// fillet becomes a segment of its own, between sharp vertices, and the segment beside it keeps its tolerance as far
  /// as its new length allows. What only touches the mask is not cut, and what runs along the outline of the mask goes
  /// with what it comes from and leads to, with the inside if these differ. A sharp vertex between two segments that
  /// touches the mask from the side that is not kept begins a piece, as a mark of the touch: from there to the next
  /// cut, or to the last vertex, the outline is kept, and the sides are swapped after it. A cut end has the label of
  /// the vertex that it was copied from, unless both ends of the part would claim more of the segment than there is.
  ///
  /// Cost: a search in the tree of the mask for each piece of the outline, and an inside test for the walk and for each
  /// touch. Throws invalidIndex for an outline without vertices, notClosed for an open mask, and what making an outline
  /// throws for a piece that cannot stand.
  static gxSMDGDModel crop(gxSMDGDPoly const &poly, gxSMDGDPoly const &mask, bool keepInside);
  /// Of outlines that meet keeps the longest, by perimeter; of equally long ones the first. Each is held, in order,
  /// against those kept so far. The lists may be the same one.
  static void crossingPolysResolve(std::list<gxSMDGDPoly> &out, std::list<gxSMDGDPoly> const &in);
  ///@}

  /// @name Wireframes
  ///@{
  /// A wireframe that holds the outline, editable and not mapped.
  static gx2Wireframe wireframe(gxSMDGDPoly const &poly);
  /// The outline inside a polygon, and the map from its frame.
  static gxSMDGDPoly const &poly(gxGenPoly const &polygon);
  static gxXform<2> const &wireframeXform(gxGenPoly const &polygon);
  ///@}

  /// @name Drawing
  /// @p xform maps from the outline to client coordinates of the tablet or the buffer.
  ///@{
  /// As a wireframe without marks.
  static void drawWireframe(gxSMDGDPoly const &poly, gxXform<2> const &xform, gxUITablet &tablet, gxColor const &color,
                            gx_UITabletBase::Layers layer);
  /// The extensions of the segments.
  static void drawNegWireframe(gxSMDGDPoly const &poly, gxXform<2> const &xform, gxUITablet &tablet,
                               gxColor const &color, gx_UITabletBase::Layers layer);
  static void overlayLineSegment_(gxUITablet &tablet, gx2SegmentLine const &line, gxXform<2> const &xform,
                                  gxColor const &color, gx_UITabletBase::Layers layer);
  /// As chords of at most 5 degrees, within 0.05 of the arc.
  static void overlayArc_(gxUITablet &tablet, gx2SegmentArc const &arc, gxXform<2> const &xform, gxColor const &color,
                          gx_UITabletBase::Layers layer);
  /// Round the mapped extensions; empty if there are none.
  static gxRect boundingBoxNeg(gxSMDGDPoly const &poly, gxXform<2> const &xform);
  /// A synthetic image: see gxSMDGDPoly::drawSynthetic(). With @p fill the inside takes the value, and edges, if they
  /// are drawn, are smoothed; nothing is painted of an open outline then. Without it the edges are lines of the value.
  static void drawSynthetic(gxSMDGDPoly const &poly, gxXform<2> const &xform, gxPelBuffer<unsigned char> const &buffer,
                            unsigned char value, bool drawEdges, bool fill);
  static void drawSynthetic(gxSMDGDPoly const &poly, gxPtrHandle_const<gx2XformBase> const &xform,
                            gxPelBuffer<unsigned char> const &buffer, unsigned char value);
  static double forwardPercExtension(gxSMDGDPoly const &poly, int v) { return poly.forwardPercExtension_(v); }
  static double backwardPercExtension(gxSMDGDPoly const &poly, int v) { return poly.backwardPercExtension_(v); }
  ///@}

  /// @name Filters
  /// They work on a list in place, and change nothing if they throw. The last three cut outlines into pieces, as
  /// deleteSegments() does.
  ///@{
  /// Keeps outlines whose perimeter lies in the range.
  static void perimeterFilter(std::list<gxSMDGDPoly> &polys, gxRange const &range);
  static void closureFilter(std::list<gxSMDGDPoly> &polys, bool keepClosed, bool keepOpen);
  /// Cuts away segments whose length, as by appendSegmentLengths(), lies outside of the range.
  static void segmentLengthFilter(std::list<gxSMDGDPoly> &polys, gxRange const &range);
  /// Cuts away segments that end at a vertex, but for the ends of open outlines, with an angle outside of the range.
  static void vertexAngleFilter(std::list<gxSMDGDPoly> &polys, gxAngleRange const &range);
  /// Cuts away arcs that span more than @p limit, either way, counted within half a turn.
  static void segmentAngleSpanFilter(std::list<gxSMDGDPoly> &polys, gxDegree const &limit);
  ///@}

 private:
  /// True if a line from @p from arrives at @p p, a point on @p b, from inside.
  static bool arrivesInside_(gxSMDGDPoly const &b, gxVector<2> const &p, gxVector<2> const &from);

  static gxPersistent *make();
  static gx_Instantiator sExemplar;
  static void copyLooks_(gxSMDGDPoly const &from, gxSMDGDPoly &to);
};
