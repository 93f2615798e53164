#pragma once

#include "dispc/wrfm/poly.h"
#include "foundation/angle.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/lineseg.h"
#include "foundation/rect.h"
#include "foundation/rigid.h"
#include "foundation/shape.h"
#include "foundation/xform.h"

#include <ostream>
#include <vector>

class gx2SegmentArc;
class gxAnnulus;
class gxCircle;
class gxEllipse;
class gxEllipse2;
class gxEllipseAnnulus;
class gxEllipseAnnulusSection;
class gxGenAnnulus;
class gxGenRect;
class gxGraphicProps;
class gxPolygon;
class gxUIScope;
class gxUITablet;

/// A polygon as a shape: vertices joined by lines and circular arcs, open or closed, each vertex perhaps rounded, and a
/// linear transform of the whole. It is the face that a gxSMDGDPoly shows as a gxShape: the outline does the geometry
/// and checks itself at each change, and its exceptions come out as those of shapes.
///
/// @code
/// gxGenPoly plate(gxRect({0, 0}, {40, 20}));
/// plate.vertexRoundingSizes(3);                       // rounds all corners
/// plate.segmentAngleSpan(1, gxDegree(60));            // bends a side
/// tablet.draw(plate, gxGraphicProps(), gxUITablet::overlay);
/// @endcode
///
/// Segments are numbered from their start: segment i runs from vertex i to vertex i + 1. (The outline inside numbers
/// them by their ends.)
///
/// - A polygon that was mapped can no longer be edited, as its vertices lie in a frame of their own: edits throw
///   gxShapesError::BadGeom, but for those that map() by a rigid transform leaves editable.
/// - `startPoint`, `endPoint`, `startAngle`, `endAngle`, `within` and `distToPoint` work in the frame of the outline;
///   `vertexPoint`, segments, boxes, `nearestPoint`, `decompose` and what follows from it are mapped.
/// - What a vertex or outline has beyond points, roundings, spans and tolerances (labels, percentages, colours, the
///   polarity of a wireframe) is not in the records of a sketch.
/// - Errors: BadGeom for what crosses itself, is degenerate, or is not what was asked for; BadRadius for a rounding
/// that
///   does not fit; BadCoef for an index. A refused edit leaves the polygon as it was.
class GX_API gxGenPoly : public gxShape
{
 public:
  /// @name Creation
  ///@{
  /// Open, without vertices, editable.
  gxGenPoly();
  gxGenPoly(gxGenPoly const &);
  gxGenPoly(gxGenPoly &&) noexcept;
  gxGenPoly &operator=(gxGenPoly const &) = default;
  gxGenPoly &operator=(gxGenPoly &&) noexcept = default;
  ~gxGenPoly() override;

  // Editable.
  explicit gxGenPoly(gxCircle const &circle);
  explicit gxGenPoly(gxLineSeg const &segment);
  /// Its four corners, from its origin towards growing x.
  explicit gxGenPoly(gxRect const &rect);
  /// Throws BadGeom for fewer than three vertices, and for a polygon that crosses itself.
  explicit gxGenPoly(gxPolygon const &polygon);

  // Not editable. All throw BadGeom for degenerate shapes, and those of arcs for a whole turn.
  explicit gxGenPoly(gxEllipse const &ellipse);
  explicit gxGenPoly(gxEllipse2 const &ellipse);
  explicit gxGenPoly(gxEllipseArc const &arc);
  explicit gxGenPoly(gxEllipseArc2 const &arc);
  /// With its rounding, as circular fillets in a frame where they are such.
  explicit gxGenPoly(gxGenRect const &rect);
  /// Two arcs and two radial lines. Throws BadGeom for a whole turn, and for ellipses that no map takes to two circles
  /// about one centre.
  explicit gxGenPoly(gxEllipseAnnulusSection const &section);

  /// The inner boundary, then the outer one.
  static std::vector<gxGenPoly> convert(gxAnnulus const &annulus);
  static std::vector<gxGenPoly> convert(gxGenAnnulus const &annulus);
  static std::vector<gxGenPoly> convert(gxEllipseAnnulus const &annulus);
  ///@}

  /// @name State
  ///@{
  long numVertices() const { return poly_.numVertices(); }
  long numSegments() const { return poly_.numSegments(); }
  /// True also without vertices.
  bool isOpen() const { return poly_.isOpen(); }
  /// True without vertices.
  bool degen() const { return numVertices() == 0; }
  bool isMutable() const { return mutable_; }
  /// The outline, in a frame of its own, and the map from there.
  gxSMDGDPoly const &poly() const { return poly_; }
  gxXform<2> const &xform() const { return xform_; }
  ///@}

  /// @name Edits
  /// They throw BadGeom for a polygon that is not editable, BadCoef for an index out of range, and what else stands at
  /// the class. A rounding is a radius, 0 for a sharp vertex and negative for an uncertain one; a span is that of the
  /// segment that *ends* at the vertex, 0 for a line.
  ///@{
  /// Should a rounding be refused then, the polygon stays open: close() brings it back.
  void open();
  /// @param span of the closing segment, from the last vertex to vertex 0; a closed polygon gets it too
  void close(gxRadian const &span = gxRadian());
  /// The vertex becomes number @p index + 1; -1 inserts at the front.
  void insertVertex(long index, gxVector<2> const &p, double rounding, gxRadian const &span);
  /// At the end.
  void insertVertex(gxVector<2> const &p, double rounding, gxRadian const &span);
  void replaceVertex(long index, gxVector<2> const &p, double rounding, gxRadian const &span);
  void replaceVertex(long index, gxVector<2> const &p, double rounding);
  void deleteVertex(long index);
  void vertexPoint(long index, gxVector<2> const &p);
  void vertexRoundingSize(long index, double rounding);
  /// Of all vertices, as one edit.
  void vertexRoundingSizes(double rounding);
  void segmentAngleSpan(long index, gxRadian const &span);
  ///@}

  /// @name Vertices and segments
  /// Throw BadCoef for an index out of range.
  ///@{
  gxVector<2> vertexPoint(long index) const;
  double vertexRoundingSize(long index) const;
  /// The fillet. Throws BadGeom for a sharp vertex, and for the ends of an open polygon, which have none.
  gxEllipseArc roundedVertex(long index) const;
  gxEllipseArc2 roundedVertexArc(long index) const;
  gxRadian segmentAngleSpan(long index) const;
  /// True if the span, without full turns, is not greater than 1e-15 degrees.
  bool isLineSegment(long index) const;
  bool isArcSegment(long index) const { return !isLineSegment(index); }
  /// The whole segment between its vertices if @p unrounded, else what its roundings leave of it. These throw BadGeom
  /// for a segment of the other kind, and for one that its roundings use up.
  gxLineSeg lineSegment(long index, bool unrounded) const;
  gxEllipseArc arcSegment(long index, bool unrounded) const;
  gxEllipseArc2 ellipseSegment(long index, bool unrounded) const;
  /// Neighbours; -1 where there is none, and for an index out of range.
  long previousVertexIndex(long segment) const;
  long nextVertexIndex(long segment) const;
  long previousSegmentIndex(long vertex) const;
  long nextSegmentIndex(long vertex) const;
  ///@}

  /// @name Place and extent
  ///@{
  /// Vertex 0; (0, 0) without vertices.
  gxVector<2> pos() const;
  /// The mean of the vertices; (0, 0) without vertices.
  gxVector<2> center() const;
  /// Round the unrounded segments; empty without them.
  gxRect encloseRect() const { return encloseRect(gxXform<2>()); }
  gxRect encloseRect(gxXform<2> const &xform) const;
  /// From the outline, unmapped. Throws BadCoef without vertices.
  double distToPoint(gxVector<2> const &p) const;
  ///@}

  /// @name Images
  ///@{
  /// Throws gxMathError::Singular. The identity gives a copy; the result of any other map is not editable.
  gxGenPoly map(gxXform<2> const &xform) const;
  /// Scaled about the origin, then moved. The result is editable if this polygon is. A negative scale makes roundings
  /// of an editable polygon uncertain, and certain ones of those that were. A scale of 0 throws BadGeom for coinciding
  /// vertices, or gxMathError::Singular if the polygon is not editable.
  gxGenPoly map(gx2Rigid const &rigid, double scale) const;
  ///@}

  /// Equal outlines, maps and editability; within @p epsilon for gfRealEq().
  friend GX_API bool operator==(gxGenPoly const &a, gxGenPoly const &b);
  friend GX_API bool gfRealEq(gxGenPoly const &a, gxGenPoly const &b, double epsilon);

  // As a shape.
  bool isOpenContour() const override { return isOpen() && !degen(); }
  bool isRegion() const override { return !isOpen() && !degen(); }
  bool isFinite() const override { return true; }
  bool isEmpty() const override { return degen(); }
  bool hasTangent() const override;
  bool isReversible() const override { return true; }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  gxVector<2> startPoint() const override;
  gxVector<2> endPoint() const override;
  /// Direction of the first chord.
  gxRadian startAngle() const override;
  /// Direction of the last chord.
  gxRadian endAngle() const override;
  bool isRightHanded() const override;
  bool within(gxVector<2> const &p) const override;
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  /// A polygon with its vertices in the other order, and its positive side where it was.
  gxPtrHandle<gxShape> reverse() const override;
  /// A gxContourTree of segments and elliptical arcs, one of each for every segment and rounding.
  gxPtrHandle<gxShape> decompose() const override;
  /// Throws BadParams for uniform mode.
  void sample(gxSampleParams const &params, gxSampleResult &result) const override;

 protected:
  gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const override;
  /// Throws the shape error for an exception of the outline; one that has none is thrown again. Called while the
  /// exception is being handled.
  [[noreturn]] virtual void remapAndThrowError_(gxException &error) const;
  /// What `decompose` makes of the fillet of an uncertain rounding: the arc itself.
  virtual gxPtrHandle<gxShape> negCornerArc_(gxEllipseArc2 const &arc) const;

  /// Draws the polygon, which is in the scope's coordinates, as lines: its segments, before rounding if the properties
  /// show vertices, and its fillets; arcs as chords. With `arrowHead` also a mark in the middle of each segment that is
  /// not short against the others: an arrow in its direction, and a plus and a minus at its sides.
  void drawToScope(gxGraphicProps const &props, gxUIScope &scope) const;
  /// The same of the image of the polygon. Throws gxMathError::Singular, as map() does.
  void drawToScope_(gxXform<2> const &xform, gxGraphicProps const &props, gxUIScope &scope) const;

  /// A polygon of an outline, in its frame.
  gxGenPoly(gxSMDGDPoly poly, gxXform<2> const &xform, bool isMutable);
  /// For derived classes: edits of a vertex as a whole, closing with a tolerance if one is given, and the outline
  /// itself.
  void replaceVertex_(long index, gxSMDGDPolyVertex const &vertex);
  void insert_(long index, gxSMDGDPolyVertex const &vertex);
  void close_(gxRadian const &span, gxDimTol const *tol);
  gxSMDGDPoly &editPoly_() { return poly_; }
  void checkMutable_() const;
  /// The outline's index of a segment. Throws BadCoef.
  int segmentAt_(long index) const;
  /// Runs work(), with errors of the outline remapped; the second as an edit.
  template <class Work>
  auto ask_(Work work) const;
  template <class Work>
  void edit_(Work work);

 private:
  friend class gx_GenPolyFields;
  friend class gxUITablet;
  template <class Change>
  void changeVertex_(long index, Change change);
  int vertexAt_(long index) const;
  static void checkMap_(gxXform<2> const &xform);
  /// What is wrong with the map and the flag after they came from outside; null if nothing is.
  char const *faultOfLoaded_() const;
  gx2SegmentArc fillet_(long index) const;
  gx2SegmentArc arc_(long index, bool unrounded) const;
  bool hasFillet_(long index) const;
  void becomeImage_(gxXform<2> const &xform);
  void appendArc_(gx2SegmentArc const &arc);

  gxSMDGDPoly poly_;
  gxXform<2> xform_;
  bool mutable_ = true;

  GX_SHAPE(gxGenPoly);
};

GX_API std::ostream &operator<<(std::ostream &os, gxGenPoly const &polygon);
