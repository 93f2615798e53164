#pragma once

#include "dispc/color.h"
#include "dispc/wrfm/colors.h"
#include "dispc/wrfm/description.h"
#include "dispc/wrfm/dimension.h"
#include "dispc/wrfm/polyboxes.h"
#include "dispc/wrfm/polyvertex.h"
#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/rect.h"
#include "foundation/rigid.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

class gx2Wireframe;
class gxGraphicList;
struct gx_Meeting;

/// An outline of a device: an open or closed chain of vertices, joined by lines and circular arcs. A vertex may be
/// rounded: a fillet of a given radius then joins its two segments, which are cut back to where it touches them.
/// A segment may have a tolerance of its length, and a vertex a label, which groups vertices into parts of the device.
///
/// An outline checks itself at each change. What would cross itself, cannot be rounded, or breaks a tolerance is
/// refused with an exception that says so, and the outline stays as it was.
///
/// @code
/// gxSMDGDPoly body = gxSMDGDPoly::rectangle(40, 20, {0, 0});
/// gxSMDGDPolyVertex corner = body.vertex(0, false);
/// corner.vertexRadius(3);
/// body.replaceVertex(0, corner);    // rounds a corner
/// corner.vertexRadius(11);
/// body.replaceVertex(0, corner);    // throws gxSMDGDPoly::invalidRounding; the corner keeps its radius of 3
/// @endcode
///
/// Numbering: of n vertices, 0 to n - 1, segment i is the one that *ends* at vertex i, and its span and tolerance are
/// kept there. A closed outline of 2 or more vertices has n segments, segment 0 from the last vertex to the first. An
/// open one has no segment 0. Where an index of a segment that does not exist is asked for, it is -1.
class GX_API gxSMDGDPoly : public gxSMDGeometricDescription
{
 public:
  /// Base of the family.
  GX_EXCEPTION(Errors, gxException);
  GX_EXCEPTION(invalidVertices, Errors);   ///< a closed outline of fewer than 2 vertices
  GX_EXCEPTION(crossingSegments, Errors);  ///< the outline crosses itself, or one label claims a segment twice
  GX_EXCEPTION(invalidIndex, Errors);      ///< no such vertex or segment
  GX_EXCEPTION(invalidRounding, Errors);   ///< the radius does not fit between the segments
  GX_EXCEPTION(noPelBuffer, Errors);       ///< nothing to draw on
  GX_EXCEPTION(badSubModel, Errors);       ///< the part is not two-dimensional
  GX_EXCEPTION(notClosed, Errors);         ///< an open outline has no inside

  /// @name Creation
  ///@{
  /// Open and without vertices.
  explicit gxSMDGDPoly(std::string name = "poly") : gxSMDGeometricDescription(std::move(name)) {}
  /// The outline inside a wireframe, as it is; its name, too, is kept, and the one given here is not looked at.
  gxSMDGDPoly(gx2Wireframe const &wireframe, std::string const &name);
  gxSMDGDPoly(gxSMDGDPoly const &) = default;
  gxSMDGDPoly(gxSMDGDPoly &&) noexcept = default;
  gxSMDGDPoly &operator=(gxSMDGDPoly const &other);
  gxSMDGDPoly &operator=(gxSMDGDPoly &&) noexcept = default;
  ~gxSMDGDPoly() override;

  /// Two half circles. These three throw what an edit throws, for sizes of 0 and such that are not finite.
  static gxSMDGDPoly circle(double radius, gxVector<2> const &center);
  /// Of four vertices, labelled 0 to 3, from the one of greatest x and y towards growing angles.
  static gxSMDGDPoly rectangle(double width, double height, gxVector<2> const &center);
  /// With the base along x, towards smaller y, and @p center the mean of the corners.
  static gxSMDGDPoly triangle(double base, double height, gxVector<2> const &center);
  ///@}

  /// @name Vertices
  /// Changes either succeed or leave the outline as it was. They throw invalidIndex, invalidVertices,
  /// crossingSegments, invalidRounding, gxShapesError::DegenerateShape (a segment without length, one that its
  /// roundings use up, or a rounding too small to be an arc) and gxShapesError::BadGeom (a length that breaks its
  /// tolerance, a coordinate or span that is not finite). The first and the last segment of an open outline may be
  /// used up: nothing is drawn of them, and nothing measured. The vertex may be one of this outline.
  ///@{
  long numVertices() const { return static_cast<long>(vertices_.size()); }
  long numSegments() const { return numVertices() < 2 ? 0 : numVertices() - isOpen_; }
  std::vector<gxSMDGDPolyVertex> const &vertices() const { return vertices_; }
  /// Replaces all of them.
  void vertices(std::vector<gxSMDGDPolyVertex> const &vertices);
  /// @param wrap takes the index modulo the number of vertices, so that -1 is the last one; throws invalidIndex
  /// otherwise, and always if there are none
  gxSMDGDPolyVertex const &vertex(long index, bool wrap) const { return vertices_[vertexAt_(index, wrap)]; }
  /// The vertex becomes number @p after + 1; -1 inserts at the front.
  void insertVertex(int after, gxSMDGDPolyVertex const &v);
  void replaceVertex(int index, gxSMDGDPolyVertex const &v);
  void deleteVertex(int index);
  /// Of an open outline only: throws invalidVertices for a closed one.
  void deleteAllVertices();
  /// Appends.
  gxSMDGDPoly &operator<<(gxSMDGDPolyVertex const &v);
  ///@}

  /// @name Shape
  ///@{
  /// The roundings at the ends end with it. Should a rounding beside them be refused, the outline stays open.
  void open();
  /// Throws as a change of a vertex does, and invalidVertices for fewer than 2 vertices; stays open then.
  void close();
  bool isOpen() const { return isOpen_ != 0; }
  bool isClosed() const { return isOpen_ == 0; }
  /// Back to a new outline, named "poly".
  void reset();
  ///@}

  /// @name Direction
  ///@{
  /// True if the inside lies to the left of the first segment, in a frame with y up; the other way round after
  /// toggleDirection(). If that segment is an arc, a test ray that happens to point beyond 180 degrees turns the answer
  /// round. Throws notClosed.
  bool isDirectionPositive() const;
  bool isDirectionNegative() const { return !isDirectionPositive(); }
  ///@}

  /// @name Attributes
  ///@{
  /// True if toggleDirection() has swapped the positive and the negative side.
  bool isDirectionReversed() const { return directionReversed_ != 0; }
  void toggleDirection();
  gxSMDColors const &colors() const { return colors_; }
  void colors(gxSMDColors const &colors);
  gxColor const &positiveArrowColor() const { return positiveArrowColor_; }
  void positiveArrowColor(gxColor const &color);
  gxColor const &negativeArrowColor() const { return negativeArrowColor_; }
  void negativeArrowColor(gxColor const &color);
  /// The weight of the outline in its model.
  double weight() const { return weight_; }
  void weight(double weight);
  ///@}

  /// The length of a segment before rounding, with the limits of its tolerance. Throws invalidIndex, and
  /// gxShapesError::BadGeom if the length does not fit the tolerance.
  gxSMDDimension segmentDimension(long segment) const;
  /// The box round the mapped outline, before rounding, which only cuts corners. Empty if there are no segments. Throws
  /// gxShapesError::DegenerateShape if the map takes the length of a line.
  gxRect boundingBox(gxXform<2> const &xform) const;
  /// The segments that break their tolerances, as they are seen elsewhere: the length under @p a is what was measured,
  /// and the length under @p b over the nominal one is the scale of the limits. Lengths are those before rounding.
  /// Throws gxShapesError::DegenerateShape for a segment that a map collapses, and as segmentDimension() does.
  std::vector<long> segmentsOutOfTolerance(gxXform<2> const &a, gxXform<2> const &b) const;

  /// @name Pictures
  ///@{
  /// The rounded outline as a wireframe, in the wireframe colour, on the image layer.
  void drawWireframe(gxXform<2> const &xform, gxUITablet &tablet) const override;
  /// An arrow in the middle of each segment, in the direction of travel: arms of @p size, a plus on the positive and a
  /// minus on the negative side, in the arrow colours. On the image layer, or appended as lines.
  void drawDirectionArrows(gxXform<2> const &xform, gxUITablet &tablet, double size) const;
  void drawDirectionArrows(gxXform<2> const &xform, gxGraphicList &list, double size) const;
  /// Paints the inside in the grey of the synthetic colour, with smoothed edges; nothing of an open outline. On each
  /// row of pels the line through their centres meets the rounded outline in points; between two neighbours the pels
  /// from one rounded column up to the other are filled if the middle between the points lies inside. Edges are painted
  /// by drawLinePelBuf() and drawArcPelBuf().
  ///
  /// A transform that bends makes the outline a polygon of points instead, without smoothed edges: every third pel of a
  /// line, half as many points as degrees of an arc but 5 at least, and 5 of an arc that runs through falling angles.
  ///
  /// Throws gxPel::UnboundWindow, gxBadPointer for a null handle, gxMathError::Singular for a transform without an
  /// inverse, gxShapesError::DegenerateShape for one that takes the length of a line, and what painting the edges
  /// throws. What is not finite paints nothing.
  void drawSynthetic(gxXform<2> const &xform, gxPelBuffer<unsigned char> const &buffer) const override;
  void drawSynthetic(gxPtrHandle_const<gx2XformBase> const &xform,
                     gxPelBuffer<unsigned char> const &buffer) const override;
  ///@}

  /// Open or closed alike, with equal vertices, flags, colours and weights. Names take no part.
  friend GX_API bool operator==(gxSMDGDPoly const &a, gxSMDGDPoly const &b);
  /// The same with the vertices and weights within @p eps.
  friend GX_API bool gfRealEq(gxSMDGDPoly const &a, gxSMDGDPoly const &b, double eps);
  /// The image, checked as a whole: throws as vertices() does.
  friend GX_API gxSMDGDPoly operator*(double s, gxSMDGDPoly const &poly);
  friend GX_API gxSMDGDPoly operator*(gx2Rigid const &map, gxSMDGDPoly const &poly);

 protected:
  /// A segment whose span exceeds this is an arc, a vertex whose radius does is rounded; also the equality of weights.
  static constexpr double kSpanEpsilon = 1e-15;

  /// @name Indices
  /// All throw invalidIndex for arguments out of range, and for an outline without vertices.
  ///@{
  int firstVertexIndex_() const { return vertexIndex_(0, false); }
  int lastVertexIndex_() const { return vertexIndex_(-1, true); }
  int firstSegmentIndex_() const { return nextSegmentIndex_(0); }
  int lastSegmentIndex_() const;
  int vertexIndex_(int index, bool wrap) const { return static_cast<int>(vertexAt_(index, wrap)); }
  /// As vertexIndex_(); 0 is refused for an open outline.
  int segmentIndex_(int index, bool wrap) const;
  /// The segment that ends at the vertex, and the one that starts there; -1 beyond the ends of an open outline.
  int previousSegmentIndex_(int vertex) const;
  int nextSegmentIndex_(int vertex) const;
  void getSegmentIndices_(int &prev, int &next, int vertex) const;
  /// The vertex where the segment starts, and the one where it ends.
  int previousVertexIndex_(int segment) const;
  int nextVertexIndex_(int segment) const;
  void getVertexIndices_(int &start, int &end, int segment) const;
  /// True at the two ends of an open outline.
  bool isEndVertex(int vertex) const;
  ///@}

  /// @name Fields by index
  /// Throw invalidIndex.
  ///@{
  gxVector<2> const &vertexPoint_(int v) const { return at_(v).point_; }
  double vertexRadius_(int v) const { return std::abs(at_(v).vertexRadius_); }
  bool roundingIsUncertain_(int v) const { return at_(v).vertexRadius_ < 0.0; }
  gxDegree segmentAngleSpan_(int s) const { return at_(s).segmentAngleSpan_; }
  double percentPrevSegment_(int v) const { return at_(v).percentPrevSegment_; }
  double percentNextSegment_(int v) const { return at_(v).percentNextSegment_; }
  long vertexLabel_(int v) const { return at_(v).subModelLabel_; }
  bool isLineSegment_(int s) const { return !isArcSegment_(s); }
  bool isArcSegment_(int s) const
  {
    double const span = segmentAngleSpan_(s).value();
    return span != 0.0 && std::abs(gxDegree(span).signedNorm().value()) > kSpanEpsilon;
  }
  /// By its radius; whether it is an end, where the radius has no effect, is not asked.
  bool vertexIsRounded_(int v) const { return vertexRadius_(v) > kSpanEpsilon; }
  double forwardPercExtension_(int v) const { return at_(v).forwardPercExtension_; }
  /// True if the rounding beside it leaves nothing of the segment, which is the first or the last one of an open
  /// outline. There is no piece to be had of it then.
  bool isUsedUp_(int s) const
  {
    long const n = numVertices();
    return isOpen_ && n > 2 && (s == 1 || s == n - 1) && hasNoRest_(s);
  }
  double backwardPercExtension_(int v) const { return at_(v).backwardPercExtension_; }
  void forwardPercExtension_(int v, double fraction);
  void backwardPercExtension_(int v, double fraction);
  ///@}

  /// @name Measures
  ///@{
  double segmentLength_(int s) const;
  double roundedSegmentLength_(int s) const;
  gxDegree segmentStartDirection_(int s) const;
  gxDegree segmentEndDirection_(int s) const;
  gxVector<2> closestSegmentPoint_(int s, gxVector<2> const &p) const;
  gxVector<2> closestRoundedSegmentPoint_(int s, gxVector<2> const &p) const;
  /// Mean of the vertex points; (0, 0) if there are none.
  gxVector<2> centerOfMass_() const;
  /// Direction of the chord from vertex 0 to vertex 1; 0 if there are fewer.
  gxDegree orientation_() const;
  /// Length of the outline, without those segments and roundings that are not longer than @p minLength.
  double perimeter_(double minLength) const;
  /// Length of the mapped outline.
  double perimeter_(gxXform<2> const &xform) const;
  /// Of all extensions together.
  double extensionPerimeter_() const;
  /// For each segment, its rounded length and that of the rounding at its end.
  void appendSegmentLengths_(std::vector<double> &out) const;
  ///@}

  /// @name Rounding
  ///@{
  /// Centre of the fillet at vertex @p v. Throws invalidIndex at the ends of an open outline, invalidRounding if there
  /// is none, and gxShapesError::DegenerateShape.
  gxVector<2> roundPoint_(int v) const;
  /// Finds the fillet at @p v anew; throws as roundPoint_() does.
  void computeVertexRounding_(int v);
  /// The same at the vertex and those whose fillets depend on it.
  void computeVertexRoundings_(int v);
  ///@}

  /// @name Validation
  /// Each finds the roundings that it needs anew and throws what a refused change throws; whoever calls them keeps
  /// what there was before.
  ///@{
  void validate_();
  /// After a change of vertex @p i: looks at it, its neighbours and their segments, against all others.
  void validateReplacement_(int i);
  void validateInsertion_(int after) { validateReplacement_(after + 1); }
  void validateDeletion_(int i);
  void validateClose_();
  void validateIncremental_() { validateReplacement_(static_cast<int>(numVertices())); }
  /// Adds the label to the list of labels unless it is there, or is -1.
  void addVertexLabel_(long label);
  ///@}

  /// @name Where the outline meets itself
  /// All reckon with the rounded pieces. @p last bounds the vertices and segments that are looked at; -1 means all.
  ///@{
  bool segmentIntersectsVertex_(int s, int v) const;
  bool vertexIntersectsVertex_(int v, int w) const;
  bool segmentIntersectsPoly_(int s, int last) const;
  bool vertexIntersectsPoly_(int v, int last) const;
  /// Common points of two segments. Where they follow each other, their joint is none.
  std::vector<gxVector<2>> segmentIntersection_(int s, int t) const;
  /// Common points of two fillets, and of a segment and a fillet; none for a vertex without one.
  std::vector<gxVector<2>> vertexIntersection_(int v, int w) const;
  std::vector<gxVector<2>> segmentVertexIntersection_(int s, int v) const;
  /// The one that reckons with segments before rounding, if they follow each other.
  bool segmentIntersectsSegment_(int s, int t) const;
  ///@}

  /// @name Against points and other outlines
  ///@{
  /// True if the rounded outline runs round @p p an odd number of times. Throws notClosed.
  bool inside_(gxVector<2> const &p) const;
  /// All points where the rounded outlines meet: for each vertex and the segment that ends there, those with each
  /// vertex and segment of the other. A point on the end of a piece is found with its neighbour too. What comes within
  /// 1e-11 of the size of the outlines lies on a piece.
  std::vector<gxVector<2>> intersection_(gxSMDGDPoly const &other) const;
  /// The same for one vertex, or one segment, of this outline. Throw invalidIndex.
  std::vector<gxVector<2>> intersectionVertex_(gxSMDGDPoly const &other, int v) const;
  std::vector<gxVector<2>> intersectionSegment_(gxSMDGDPoly const &other, int s) const;
  ///@}

  /// One arrow, at the place and in the direction of @p frame.
  static void drawArrow(gxXform<2> const &xform, gxUITablet &tablet, gx2Rigid const &frame, double size,
                        gxColor const &positive, gxColor const &negative);
  static void drawArrow(gxXform<2> const &xform, gxGraphicList &list, gx2Rigid const &frame, double size,
                        gxColor const &positive, gxColor const &negative);

  /// @name Extensions
  /// How far segments run on past corners that turn by 45 degrees or more, as fractions of their lengths.
  ///@{
  /// Sets both fractions of each segment to @p fraction at such corners, and to 0 at others and at open ends.
  void setExtensions_(double fraction);
  /// By half of the length.
  void setDefaultExtensions_();
  /// Shortens the extensions of this outline by the pieces of @p other: see
  /// gxSMDGDPolyPrivate::checkSegmentExtension_().
  /// @param samePoly @p other is this outline: no segment is held against itself and its own fillets
  void checkExtensions_(gxSMDGDPoly &other, double clearance, gxDegree const &angle, double step, bool samePoly);
  ///@}

  void reInit() override;

 private:
  friend class gxSMDGDPolyPrivate;
  friend class gx_PolyFields;
  class Edit;

  std::size_t vertexAt_(long index, bool wrap) const
  {
    auto const at = static_cast<std::size_t>(index);
    return at < vertices_.size() ? at : wrapped_(index, wrap);
  }
  std::size_t wrapped_(long index, bool wrap) const;
  gxSMDGDPolyVertex const &at_(int v) const { return vertices_[vertexAt_(v, false)]; }
  /// True if the vertex has a fillet: rounded, and no end.
  bool hasFillet_(int v) const { return vertexIsRounded_(v) && !isEndVertex(v); }
  struct Fillet {
    gxVector<2> prev, next;
    double span = 0.0;
  };
  /// Where a circle that touches both segments has its centre, looked for along the whole segments or along the halves
  /// next to the vertex. Throws as roundPoint_() does.
  gxVector<2> filletCenter_(int v, bool wholePrev, bool wholeNext) const;
  Fillet filletAbout_(gxVector<2> const &center, int v) const;
  template <class Visit>
  void visitSegments_(Visit visit) const;
  /// A box that holds segment @p i and the fillet of vertex @p i, with room for rounding.
  gx_PolyBoxes::Box boxAt_(int i) const;
  bool segmentIsSound_(int s) const;
  /// True if the roundings at the ends of a segment meet, up to rounding errors.
  bool hasNoRest_(int s) const;
  /// Those of the segments and the fillet that a change of vertex @p v touches.
  void markBoxesStale_(int v) noexcept;
  void refreshBoxes_();
  /// Calls visit(k) in order, for vertices k up to @p last (-1 for all) until one is true, which is returned. May leave
  /// out those whose segment and fillet are far from segment and fillet of @p i.
  template <class Visit>
  bool anyNear_(int i, int last, Visit visit) const;
  /// segmentIntersection_() without memory of its own.
  gx_Meeting meetingOf_(int s, int t) const;
  bool claimsTooMuch_(int before, int after) const;
  void checkDimension_(int s) const;
  /// Throws gxShapesError::DegenerateShape for a fillet, or the rest of a segment, that cannot be made.
  void checkFillet_(int v) const;
  void checkRest_(int s) const;
  void rebuildLabels_();
  void checkLoaded_(gxArchive const &archive);
  /// What is wrong with the content, but for its labels, after it came from outside; null if nothing is.
  char const *faultOfLoaded_() const;
  bool fits_(int v, double size) const;
  /// Diagonal of the box round the vertices; 0 if there are none.
  double outlineSize_() const;
  /// Within which a point lies on a piece of one of these outlines.
  static double onPieceTolerance_(gxSMDGDPoly const &a, gxSMDGDPoly const &b);
  static void checkFinite_(gxSMDGDPolyVertex const &v);
  struct Neighbours;
  /// The vertices whose fillets depend on vertex @p i, as they are found anew; some may be named twice.
  Neighbours filletsAround_(int i) const;

  std::vector<gxSMDGDPolyVertex> vertices_;
  std::vector<std::int32_t> subModelLabels_;  ///< the labels but -1, each once
  std::vector<gxVector<2>> prevRoundPoints_;  ///< per vertex, where the rounding touches the segment ending there
  std::vector<gxVector<2>> nextRoundPoints_;  ///< per vertex, where it touches the segment starting there
  std::vector<double> roundSpans_;            ///< per vertex, span of the rounding in degrees
  gx_PolyBoxes boxes_;                        ///< round the pieces; looked at only while they are current
  std::uint8_t isOpen_ = 1;
  std::uint8_t directionReversed_ = 0;
  bool labelsInOrder_ = true;  ///< whether the labels stand in the order of their first vertices
  gxSMDColors colors_;
  gxColor positiveArrowColor_ = gxColor::greenColor();
  gxColor negativeArrowColor_ = gxColor::greenColor();
  double weight_ = 1.0;

  GX_PERSISTENT(gxSMDGDPoly);
};

/// The vertices in order, for messages.
GX_API std::ostream &operator<<(std::ostream &os, gxSMDGDPoly const &poly);
