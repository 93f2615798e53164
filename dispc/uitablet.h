#pragma once

#include "dispc/color.h"
#include "dispc/dispprop.h"
#include "dispc/flagstack.h"
#include "dispc/tabletbase.h"
#include "dispc/uirect.h"
#include "dispc/uiscope.h"
#include "dispc/uisketch.h"
#include "dispc/uistring.h"
#include "foundation/export.h"
#include "foundation/lists.h"
#include "foundation/pair.h"
#include "foundation/point.h"
#include "foundation/polygon.h"
#include "foundation/rect.h"
#include "foundation/xform.h"

#include <cstdint>
#include <string>
#include <vector>

class gx2Point;
class gx2Wireframe;
class gxAffineRectangle;
class gxAnnulus;
class gxBezierCurve;
class gxCircle;
class gxCoordAxes;
class gxCross;
class gxCubicSpline;
class gxEllipse;
class gxEllipse2;
class gxEllipseAnnulusSection;
class gxEllipseArc;
class gxEllipseArc2;
class gxGenAnnulus;
class gxGenPoly;
class gxGenRect;
class gxGraphic;
class gxLine;
class gxLineSeg;
class gxLineSegSet;
class gxPointSet;
class gxPolyline;
class gxShape;
struct gx_RecordHead;

/// The drawing front end: a rectangle of pels inside its parent tablet, with a client coordinate system of its own, an
/// image layer and an overlay layer, and a recorder.
///
/// A draw call does up to two independent things: it maps the shape to pels and hands it to the scope of the layer, and
/// it appends the shape, unmapped, to the tablet's sketch(). The scope gets it if the tablet is visible, drawOn() (and
/// for the overlay drawOnOverlay()) is true, and the layer has a scope with a surface; a draw that is refused is not an
/// error. The sketch gets it if recordOn() is true, whatever becomes of the scope.
///
/// @code
/// gxPelSurface surface(640, 480);
/// gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
/// tablet.visible(true);                                      // a tablet is born hidden
/// tablet.baseMap(gxXform<2>(gxMatrix<2>(10, 0, 0, 10), gxVector<2>(320, 240)));
/// tablet.draw(gxCircle(gxPoint(0, 0), 5), gxColor::redColor(), gxUITablet::overlay);
/// @endcode
///
/// A tablet keeps no picture of its own: derive from it and paint in redraw_(), or replay a sketch there. Tablets form
/// a tree; kids are stacked back to front. A tablet owns the sub-scopes that it made, never its parent or its kids.
/// All tablets belong to one thread.
class GX_API gxUITablet : public gx_UITabletBase
{
 public:
  /// @name Life
  ///@{
  /// A tablet without a scope, which records and does not draw.
  gxUITablet();
  /// A root on two scopes, either of which may be null, and which it does not own. Its size is the greater of theirs.
  gxUITablet(gxUIScope *imageScope, gxUIScope *overlayScope);
  /// A kid in front of all others, on sub-scopes of its parent's, in pels of the parent.
  gxUITablet(gxUITablet &parent, gxUIRect const &rect);
  /// Field by field: a snapshot. It names the same scopes, parent and kids, but no parent and no kid knows it, it has
  /// no siblings, and its end disturbs no link. Where scopes are owned, only one of the two may be destroyed; scopes
  /// that the target of an assignment owned stay with whoever else names them.
  gxUITablet(gxUITablet const &);
  gxUITablet &operator=(gxUITablet const &);
  /// Gives its area back. Kids live on as roots without scopes.
  virtual ~gxUITablet();
  ///@}

  /// @name The tree
  ///@{
  gxUITablet *parent() const { return parent_; }
  long numKids() const { return static_cast<long>(kids_.entries().size()); }
  gxUITablet *firstKid() const;  ///< the rearmost, or null
  gxUITablet *lastKid() const;   ///< the frontmost, or null
  gxUITablet *nextSib() const;   ///< the next in front, or null
  gxUITablet *prevSib() const;   ///< the next behind, or null
  /// Moves this tablet with its subtree under another parent, in front of its kids. Throws gxUIError::BadParams if the
  /// parent is this tablet or lies below it.
  void setParent(gxUITablet &parent, gxUIRect const &rect);
  /// Moves this tablet in front of its siblings and repaints what it now covers.
  void front();
  /// Moves this tablet behind its siblings. Nothing is repainted: the whole scope counts as changed, and the next
  /// update() finds the tablets above.
  void back();
  ///@}

  /// @name Scopes
  ///@{
  /// Installs both scopes at the root of the tree, whatever tablet is asked; only the kids of this tablet are brought
  /// in line, so ask the root. @p own: the root deletes them.
  void setScope(gxUIScope *imageScope, gxUIScope *overlayScope, bool own);
  /// Installs one scope at the root of the tree. Throws gxUIError::BadLayer for layers other than image and overlay.
  void setScope(Layers layer, gxUIScope *scope, bool own);
  /// Rectangle of the scope, null without one. Throw gxUIError::BadLayer for layers other than image and overlay.
  gxUIRect activeScope(Layers layer) const;
  gxUIRect currentScope(Layers layer) const;
  bool opaque(Layers layer) const;  ///< false without a scope
  void opaque(Layers layer, bool on);
  bool anyChanged(Layers layer) const;  ///< false without a scope
  /// The scope of this tablet, or that of a kid, was drawn on; false without a scope.
  bool modified(Layers layer) const;
  void modified(Layers layer, bool on);
  ///@}

  /// @name Maps and coordinates
  ///@{
  /// Client coordinates to unscaled pels.
  gxXform<2> const &baseMap() const { return baseMap_; }
  gxUITablet &baseMap(gxXform<2> const &map);
  /// Client coordinates to pels of this tablet.
  gxXform<2> const &scaledMap() const { return scaledMap_; }
  ScaleModes scaleMode() const { return scaleMode_; }
  gxUITablet &scaleMode(ScaleModes mode);
  /// The factors as whole numbers per axis: of a factor below 1, the divisor. Truncated.
  gxPair<long> scale() const;
  /// Sets the factors and leaves the mode.
  gxUITablet &scale(gxPair<long> factors);
  gxPair<double> scaleExact() const { return scaleExact_; }
  /// Sets the factors, and the mode by the x factor alone: within 1e-6 of 1 none, above it expandMode, else sampleMode.
  gxUITablet &scaleExact(gxPair<double> factors);
  /// The pel of a client point, in pels of this tablet; see gf_nudgedFloor().
  gxPair<long> scopeCoords(gxPoint const &p) const;
  /// The same in absolute pels.
  gxPair<long> screenCoords(gxPoint const &p) const;
  /// The client point of a pel of this tablet. Throws gxMathError::Singular if the map has no inverse.
  gxPoint tabletCoords(gxPair<long> const &pel) const;
  /// The pan, in pels, that is added to the map. Setting it repaints nothing.
  gxPair<long> const &dragDel() const { return dragDel_; }
  void dragDel(gxPair<long> const &pan);
  /// The point that stands for the pen in every operation that takes a position.
  gxPoint const &drawPointArg() const { return drawPointArg_; }
  ///@}

  /// @name Rectangles
  ///@{
  /// In pels of the parent.
  gxUIRect const &scopeRect() const { return scopeRect_; }
  gxUITablet &scopeRect(gxUIRect const &rect);
  /// The origin in absolute pels.
  gxPair<long> scopeOrg() const { return scopeOrg_; }
  gxUIRect absRect() const { return gxUIRect(scopeOrg_, scopeRect_.sz()); }
  gxUITablet &moveAbs(gxPair<long> origin) { return scopeRect(gxUIRect(origin, scopeRect_.sz())); }
  gxUITablet &moveRel(gxPair<long> delta) { return scopeRect(scopeRect_ + delta); }
  gxUITablet &size(gxPair<long> size) { return scopeRect(gxUIRect(scopeRect_.ul(), size)); }
  ///@}

  /// @name Flags and state
  ///@{
  gxFlagStack &drawOn() { return drawOn_; }  ///< drawing on both layers
  gxFlagStack const &drawOn() const { return drawOn_; }
  gxFlagStack &recordOn() { return recordOn_; }  ///< recording into sketch()
  gxFlagStack const &recordOn() const { return recordOn_; }
  gxFlagStack &drawOnOverlay() { return drawOnOverlay_; }  ///< in addition, drawing on the overlay
  gxFlagStack const &drawOnOverlay() const { return drawOnOverlay_; }
  bool visible() const { return hiddenCount_ == 0; }
  /// Counts the reasons to hide: false adds one, true takes one away. The result says that the visibility changed by
  /// this call. What becomes visible is painted; hiding gives the area back and erases the recording of a tablet that
  /// records.
  bool visible(bool show);
  bool updating() const { return updating_; }
  InterpolationModes interpolation() const { return interpolation_; }
  void interpolation(InterpolationModes mode);
  gxUISketch &sketch() { return sketch_; }
  gxUISketch const &sketch() const { return sketch_; }
  static bool overlaySupported() { return true; }
  /// A redraw_() paints layer @p a only if shouldUpdate(a, updateLayers()).
  static bool shouldUpdate(Layers a, Layers b) { return a == b || b == both; }
  static bool shouldUpdateImage(Layers layers) { return shouldUpdate(image, layers); }
  static bool shouldUpdateOverlay(Layers layers) { return shouldUpdate(overlay, layers); }
  ///@}

  /// @name Repainting
  /// Layers other than image, overlay and both throw gxUIError::BadLayer where they are looked at.
  ///@{
  void redraw(Layers layer);    ///< this tablet only
  void fullDraw(Layers layer);  ///< this tablet, then its kids
  /// Repairs, in the pels that changed on this tablet's scope, all that is stacked above; then does so for the kids.
  /// One layer: `both` throws gxUIError::BadLayer too.
  void update(Layers layer);
  /// Repaints a rectangle of absolute pels through a temporary scope that clips to it; one layer. @p keepChange: the
  /// repair counts as drawing of its own, and its change is passed on; else it is only brought in line.
  void update(gxUIRect const &rect, Layers layer, bool keepChange);
  /// Gives a rectangle, in pels of this tablet, back to the first opaque ancestor, on layers that were modified.
  void erase(gxUIRect const &rect, Layers layers);
  /// The whole tablet, and its recording if it records.
  void erase(Layers layers);
  ///@}

  /// @name Shapes
  /// Shapes in client coordinates. The form with a colour draws with default properties and that pen colour.
  ///@{
  void draw(gxPoint const &point, gxGraphicProps const &props, Layers layer);
  void draw(gxPoint const &point, gxColor const &color, Layers layer);
  void draw(gx2Point const &point, gxGraphicProps const &props, Layers layer);
  void draw(gxLineSeg const &segment, gxGraphicProps const &props, Layers layer);
  void draw(gxLineSeg const &segment, gxColor const &color, Layers layer);
  /// The line is clipped to the scope's rectangle.
  void draw(gxLine const &line, gxGraphicProps const &props, Layers layer);
  void draw(gxLine const &line, gxColor const &color, Layers layer);
  void draw(gxRect const &rect, gxGraphicProps const &props, Layers layer);
  void draw(gxRect const &rect, gxColor const &color, Layers layer, bool fill);
  void draw(gxCircle const &circle, gxGraphicProps const &props, Layers layer);
  void draw(gxCircle const &circle, gxColor const &color, Layers layer, bool fill);
  void draw(gxEllipse const &ellipse, gxGraphicProps const &props, Layers layer);
  void draw(gxEllipse const &ellipse, gxColor const &color, Layers layer, bool fill);
  void draw(gxEllipseArc const &arc, gxGraphicProps const &props, Layers layer);
  void draw(gxEllipseArc const &arc, gxColor const &color, Layers layer);
  void draw(gxEllipse2 const &ellipse, gxGraphicProps const &props, Layers layer);
  void draw(gxEllipseArc2 const &arc, gxGraphicProps const &props, Layers layer);
  /// Without rounding the scope gets lines or a polygon, fully rounded an ellipse.
  void draw(gxGenRect const &rect, gxGraphicProps const &props, Layers layer);
  void draw(gxGenRect const &rect, gxColor const &color, Layers layer, bool fill);
  void draw(gxAffineRectangle const &rect, gxGraphicProps const &props, Layers layer);
  void draw(gxAffineRectangle const &rect, gxColor const &color, Layers layer);
  /// A sector of the ring between two ellipses, drawn as its curves and ends, with an arrowhead if the properties ask
  /// for one. The form with a colour sets the two arrow flags.
  void draw(gxEllipseAnnulusSection const &section, gxGraphicProps const &props, Layers layer);
  void draw(gxEllipseAnnulusSection const &section, gxColor const &color, Layers layer, bool arrow, bool forward);
  /// Two arms of @p armLength pels back from the tip. Leaves the pen at the tip.
  void arrowHead(gxPoint const &tip, gxVector<2> const &dir, float armLength, gxGraphicProps const &props,
                 Layers layer);
  void draw(gxPolygon const &polygon, gxGraphicProps const &props, Layers layer);
  void draw(gxPolygon const &polygon, gxColor const &color, Layers layer);
  void draw(gxPolyline const &polyline, gxGraphicProps const &props, Layers layer);
  /// Line by line, arcs as chords; before rounding as well if the properties show vertices. The arrow flag is not
  /// looked at. Throws gxMathError::Singular if the map of the tablet has no inverse; so does the next.
  void draw(gxGenPoly const &polygon, gxGraphicProps const &props, Layers layer);
  void draw(gxGenPoly const &polygon, gxColor const &color, Layers layer, bool showVertex);
  /// The same; with `arrowHead` each segment that is not short has a mark of its direction, and of its positive and
  /// negative side. A record does not hold the polarity.
  void draw(gx2Wireframe const &wireframe, gxGraphicProps const &props, Layers layer);
  void draw(gx2Wireframe const &wireframe, gxColor const &color, Layers layer, bool showVertex);
  /// Outer and inner circle, each with a record of its own; the form with a colour draws a gxGenAnnulus.
  void draw(gxAnnulus const &annulus, gxGraphicProps const &props, Layers layer);
  void draw(gxAnnulus const &annulus, gxColor const &color, Layers layer);
  void draw(gxGenAnnulus const &annulus, gxGraphicProps const &props, Layers layer);
  void draw(gxGenAnnulus const &annulus, gxColor const &color, Layers layer);
  /// The arm is in pels and does not scale.
  void draw(gxCross const &cross, gxGraphicProps const &props, Layers layer);
  void draw(gxCross const &cross, gxColor const &color, Layers layer);
  /// Two lines, with arrowheads unless they have one direction.
  void draw(gxCoordAxes const &axes, gxGraphicProps const &props, Layers layer);
  void draw(gxCoordAxes const &axes, gxColor const &color, Layers layer);
  /// Points of one pel, each with a record; from two points on also the circle through the second round the first, and
  /// its radius.
  void draw(gxPointSet const &points, gxGraphicProps const &props, Layers layer);
  void draw(gxPointSet const &points, gxColor const &color, Layers layer);
  /// Each segment with a record of its own.
  void draw(gxLineSegSet const &set, gxGraphicProps const &props, Layers layer);
  /// As a chain of lines within a pel of the curve.
  void draw(gxBezierCurve const &curve, gxGraphicProps const &props, Layers layer);
  /// Curve by curve. While it draws, each curve is recorded and then the spline as a whole.
  void draw(gxCubicSpline const &spline, gxGraphicProps const &props, Layers layer);
  void draw(gxGenShape const &shape, gxColor const &color, Layers layer);
  /// Any shape, by its class: a mapped shape by what lies under its transforms, a tree by its children, with the gaps
  /// of a contour closed by lines. Classes that have no operation here are left out. Throws gxBadPointer for a null
  /// handle inside the shape.
  void draw(gxShape const &shape, gxGraphicProps const &props, Layers layer);
  /// A graphic, by its own properties. Throws gxUIError::NotImplemented for one that is not built in.
  void draw(gxGraphic const &graphic, Layers layer);
  ///@}

  /// @name Shapes told by numbers
  ///@{
  void drawLineSeg(gxPair<double> const &a, gxPair<double> const &b, gxColor const &color, Layers layer);
  void drawLine(gxPair<double> const &p, gxRadian angle, gxColor const &color, Layers layer);
  void drawCircle(gxPair<double> const &c, double r, gxColor const &color, Layers layer, bool fill);
  void drawEllipse(gxPair<double> const &c, gxPair<double> const &radii, gxRadian angle, gxColor const &color,
                   Layers layer, bool fill);
  void drawEllipseArc(gxPair<double> const &c, gxPair<double> const &radii, gxRadian angle, gxRadian start,
                      gxRadian end, gxColor const &color, Layers layer);
  void drawPolygon(std::vector<gxVector<2>> const &vertices, gxPolygon::PolyFillMode mode, gxColor const &color,
                   Layers layer);
  void drawGenRect(gxPair<double> const &c, gxPair<double> const &size, gxRadian const &angle,
                   gxPair<double> const &rounding, gxColor const &color, Layers layer);
  void drawAffineRect(gxPair<double> const &c, double xLength, double yLength, gxRadian const &xRotation,
                      gxRadian const &yRotation, gxColor const &color, Layers layer);
  /// From corner @p a to the opposite corner @p b.
  void drawRect(gxPair<double> const &a, gxPair<double> const &b, gxColor const &color, Layers layer, bool fill);
  /// With arms of 7 pels.
  void drawCross(gxPair<double> const &c, gxRadian const &angle, gxColor const &color, Layers layer);
  void drawPixel(gxPair<double> const &p, gxColor const &color, Layers layer);
  ///@}

  /// @name Images
  /// The top left corner goes to the client point; rows stay rows under any map. With a scale mode, the image is
  /// brought to scale by the scope. Pels of value @p passPel are left out if @p pass. Of pel buffers only those of 8
  /// bits are recorded.
  ///@{
  void draw(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, bool pass, unsigned char passPel,
            bool flag, Layers layer);
  void draw(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, bool pass, unsigned short passPel,
            Layers layer);
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, bool pass,
            unsigned short passPel, Layers layer);
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, bool pass, unsigned long passPel,
            Layers layer);
  /// A run-length image; its values go through the colour map, one beyond it stands for itself. @p unscaled keeps it at
  /// unit scale in every mode. Recorded.
  void draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap, bool pass,
            unsigned char passColor, bool unscaled, Layers layer);
  ///@}

  /// @name Icons
  /// Small bitmaps described by a text. Its first character is the delimiter, which closes each row; rows have one
  /// width. A digit is a pel of the colour map's entry (of the digit itself beyond the map); `.` and blank are
  /// transparent; `+` is transparent too, and yet counts as touched, so that a thin icon is easy to hit.
  ///@{
  /// Throws gxUIError::BadIconPattern for other characters, ragged rows, and a pattern without a row.
  static gxRLEBuffer makeIcon(char const *pattern, std::vector<unsigned char> const &colorMap);
  /// True if the pel at @p pos, from the top left corner, is neither a dot nor a blank; false outside. @p width is the
  /// pitch of the rows in the text, delimiter included, or -1 to find it there. A null pattern is not touched.
  static bool iconTouched(char const *pattern, gxPair<long> const &pos, long width);
  /// A cross-hair in a circle, 13 x 13 pels; its pel value 0 draws.
  static gxRLEBuffer const &pointIcon();
  /// @p pos is from the centre of the icon.
  static bool pointIconTouched(gxPair<long> const &pos);
  /// The point icon, never scaled, with its centre at the point.
  void drawPointIcon(gxPoint const &p, gxGraphicProps const &props, Layers layer);
  void drawPointIcon(gxPoint const &p, gxColor const &color, Layers layer);
  ///@}

  /// @name The pen
  /// Each layer's scope holds a pen. A position may be drawPointArg(), which means where the pen is. Steps in pels do
  /// not scale with the map; a step along a direction has @p len pels in the mapped direction, truncated to whole pels.
  ///@{
  void drawStart(gxPoint const &p, Layers layer);
  void drawTo(gxPoint const &p, gxGraphicProps const &props, Layers layer);
  void drawTo(gxPoint const &p, gxColor const &color, Layers layer);
  void drawToRelPels(long dx, long dy, gxGraphicProps const &props, Layers layer);
  void drawToRelPels(long dx, long dy, gxColor const &color, Layers layer);
  void drawToRelPels(gxVector<2> const &dir, float len, gxGraphicProps const &props, Layers layer);
  void drawToRelPels(gxVector<2> const &dir, float len, gxColor const &color, Layers layer);
  void moveToRelPels(long dx, long dy, Layers layer);
  void moveToRelPels(gxVector<2> const &dir, float len, Layers layer);
  /// The pen in client coordinates; (0, 0) without a scope. Throws gxUIError::BadLayer for a bad layer, and
  /// gxMathError::Singular if the map has no inverse.
  gxPoint drawingPoint(Layers layer) const;
  ///@}

  /// @name Areas
  /// A gxUIRect is in pels of this tablet. A gxRect is in client coordinates: the pels between the images of its origin
  /// and of the corner opposite to it; under a map that turns, only these two corners count.
  ///@{
  void set(gxUIRect const &r, gxColor const &c, Layers layer);
  void set(gxRect const &r, gxColor const &c, Layers layer);
  /// The whole scope. What was recorded before is dropped, but for the clip rectangle of the layer.
  void set(gxColor const &color, Layers layer);
  /// All of the tablet but the rectangle.
  void setComplement(gxUIRect const &r, gxColor const &c, Layers layer);
  void setComplement(gxRect const &r, gxColor const &c, Layers layer);
  /// Flood fill from a seed.
  void fill(gxPair<long> const &seed, gxColor const &fillColor, gxColor const &boundary, FillType type, Layers layer);
  void fill(gxPoint const &seed, gxColor const &fillColor, gxColor const &boundary, FillType type, Layers layer);
  /// A frame of @p width pels inside the rectangle, top and left of colour @p c1, right and bottom of @p c2.
  void outline3D(gxUIRect const &r, gxColor const &c1, gxColor const &c2, long width, Layers layer);
  void outline3D(gxRect const &r, gxColor const &c1, gxColor const &c2, long width, Layers layer);
  void outline(gxUIRect const &r, gxColor const &c, long width, Layers layer);
  void outline(gxRect const &r, gxColor const &c, long width, Layers layer);
  /// Restricts the display to the pels that enclose the mapped rectangle. `both` is a layer here; others throw
  /// gxUIError::BadLayer and change nothing. A call for one layer that is refused goes to the scopes of both.
  void drawClipRect(gxRect const &r, Layers layer);
  ///@}

  /// @name Text
  ///@{
  /// The alignment of the format says which point of the text the position is.
  void draw(std::string const &text, gxPoint const &p, gxColor const &foreground, gxColor const &background,
            gxUIFormat const &format, Layers layer);
  /// The rectangle, in pels, that the text would cover; also stored in @p rect. (0, 0, 0, 0) without a scope, and then
  /// @p rect keeps its value. Throws gxUIError::BadLayer for a bad layer.
  gxUIRect textRect(std::string const &text, gxPoint const &p, gxUIFormat const &format, gxUIRect &rect, Layers layer);
  ///@}

  /// @name Sketches
  ///@{
  /// Plays a sketch, moved by @p offset in its own coordinates: calls again what was recorded. Records for both layers
  /// play on @p layer, others only if they are for it; with `both`, each plays on its own. If this tablet records, the
  /// whole sketch becomes one record. Nothing is recorded of an empty one.
  ///
  /// What is drawn depends on the pen as it stands, and leaves it where the last record put it; so it does with the
  /// clip rectangle. Records without properties take those of the records before, at first the default ones. Sketches
  /// may hold sketches as deep as recordOn() has room, one flag each; beyond that, gxUIError::FlagStackOverflow.
  ///
  /// Throws gxUIError::BadLayer for layers other than image, overlay and both. What a record throws (a stream that is
  /// none: gxUIError::InvalidUISketch) ends the playback at once. The map then stays moved, recording off and the
  /// screen locked: give them back by baseMap(), recordOn().pop() and lockScreenUpdatesPop(), or give up the tablet.
  void draw(gxUISketch const &sketch, gxPoint const &offset, Layers layer);
  /// The pels that the sketch would cover, clipped or not, under the map of this tablet without its pan; null for an
  /// empty sketch or a layer without a scope. Texts are as large as the scope says; a flood fill counts as its seed.
  /// Nothing is drawn. Throws gxUIError::BadLayer for layers other than image and overlay, and as draw() does.
  gxUIRect encloseRect(gxUISketch const &sketch, gxPoint const &offset, Layers layer) const;
  ///@}

  /// @name Dragging
  /// For animations: what is drawn between dragStart() and dragStop() makes an image of its own above the layer, as far
  /// as the surface can do that. A client moves it by setting dragDel() and drawing again. Nothing is recorded; nothing
  /// happens on a layer without a surface. One layer: others throw gxUIError::BadLayer.
  ///@{
  void dragStart(Layers layer);
  void dragStop(Layers layer);
  void dragErase(Layers layer);             ///< takes the image off the surface
  void dragAnimate(bool on, Layers layer);  ///< shows the next frame
  ///@}

  /// @name Holding back the screen
  /// Between push and pop, drawing reaches the surface, but the screen may keep what it shows. Locks nest.
  ///@{
  /// Layers other than image, overlay and both throw gxUIError::BadLayer; a layer without a scope is left out.
  void lockScreenUpdatesPush(bool lock, Layers layers);
  void lockScreenUpdatesPop(Layers layers);
  /// False for a layer without a surface. Throws gxUIError::BadLayer for layers other than image and overlay.
  bool screenUpdatesLocked(Layers layer) const;
  /// Tells the scope that a batch of small operations begins or ends. Throws gxUIError::BadLayer for layers other than
  /// image and overlay.
  void optimizeDrawing(bool on, Layers layer);
  ///@}

  /// @name Change tracking
  /// A client that shows a drawing by other means asks which pels have changed. While that is on, scopes without a
  /// surface take part in drawing, and only collect rectangles.
  ///@{
  bool recordChanges() const;  ///< on for some layer
  /// Switching on starts anew with nothing.
  void recordChanges(bool on);
  /// What changed since recordChanges(true): the box on the image layer in @p rects[0], on the overlay in @p rects[1],
  /// null without a scope. Tracking goes on only if @p keepOn.
  void getChanges(gxUIRect *rects, bool keepOn);
  ///@}

  /// A tablet without a display, on which a client can record, from its static initialisers on.
  static gxUITablet &scratchPad;

 protected:
  /// @name Hooks
  /// All are empty here. A hook may destroy its own tablet's kids, but no sibling.
  ///@{
  /// The tablet must be repainted on the layers updateLayers(); recording is off meanwhile. No exception may leave it:
  /// locks and flags would stay as they are.
  virtual void redraw_();
  virtual void resize_();                               ///< scopeRect() changed the size
  virtual void move_();                                 ///< scopeRect() changed the origin
  virtual void clipped_();                              ///< the rectangle of a scope changed because an ancestor's did
  virtual void newParentTablet(gxUITablet *oldParent);  ///< setParent() has installed the new parent
  virtual void parentMapChanged();                      ///< the parent's map changed
  ///@}

  /// The layers that the running redraw_() is asked to paint; `both` outside of one.
  Layers updateLayers() const { return updateLayers_; }
  /// Returns the value before.
  Layers updateLayers(Layers layers);
  void clearAnyChanged(Layers layer);

 private:
  bool canDraw(Layers layer) const;
  bool hasSurface(Layers layer) const;
  /// The draw decision; see drawOn(). Inline as far as most tablets that only record get.
  bool okToDraw(Layers layer) { return visible() && okToDrawVisible(layer); }
  bool okToDrawVisible(Layers layer);
  bool visible_(bool show);
  gxPoint const &mapPoint(gxPoint const &p, Layers layer, gxPoint &tmp) const;
  gxUIRect pelRect(gxRect const &r) const;
  float arrowArmLength(gxGraphicProps const &props) const;
  gxVector<2> drawSectionLines(gxEllipseAnnulusSection const &s, gxGraphicProps const &props, Layers layer);
  void drawSection(gxEllipseAnnulusSection const &s, gxGraphicProps const &props, Layers layer);
  void setMap();
  void newMap();
  void play(gxUISketch const &sketch, gxPoint const &offset, Layers layer);
  void batch(bool on, Layers layers);
  void newScope(bool quiet);
  void parentDeleted();
  void parentScopesDeleted(Layers layer);

  template <class ToScope, class ToSketch>
  void drawRecorded(Layers layer, gx_RecordHead const &head, long bytes, ToScope const &toScope,
                    ToSketch const &toSketch);
  template <class ToScope, class ToSketch>
  void drawShape(Layers layer, gxGraphicProps const &props, gx_SketchCode code, long bytes, ToScope const &toScope,
                 ToSketch const &toSketch);

  template <class Polygon>
  void drawPolygon(Polygon const &polygon, gxGraphicProps const &props, gx_SketchCode code, Layers layer);
  template <class Pel, class Value>
  void drawImage(gxPelBuffer_const<Pel> const &buffer, gxPoint const &topLeft, bool pass, Value passPel,
                 InterpolationModes mode, Layers layer);
  template <class Operation>
  void forEachKid(Operation const &operation);
  gxUITablet *sibling(bool next) const;
  gxUITablet &root();
  bool isBelow(gxUITablet const &other) const;
  gxUIScope *scopeAt(Layers layer) const;
  gxUIScope *activeSurface(Layers layer) const;
  void unlink();
  void unlinkKids();
  void deleteScope(int layer);
  void takeSubScope(int layer, gxUIRect const &rect);
  void dropKidsOfLostScope(gxUITablet const &top, Layers layer, gxUIScope const *successor);
  void dropOwnedScope(gxUITablet &top, Layers layer, gxUIScope *const (&successors)[2]);
  void installScope(Layers layer, gxUIScope *scope, bool own);
  void fitToScopes(gxUITablet &top);
  gxPair<long> scopesSize() const;
  bool hide();
  bool show();
  void stampDrawn();
  void stampDrawnIfOther();
  void stampRedrawn();
  void repairAbove(Layers layer);
  void repairIfOlder(gxUITablet &above, gxUIRect const &rect, Layers layer, std::uint32_t &stamp);

  gxUIScope *activeScope_[2] = {nullptr, nullptr};   ///< where drawing goes now: a temporary one inside update(rect)
  gxUIScope *currentScope_[2] = {nullptr, nullptr};  ///< the lasting scope, or null
  bool ownsScope_[2] = {false, false};
  gxXform<2> baseMap_;
  ScaleModes scaleMode_ = noScale;
  gxXform<2> scaledMap_;  ///< derived from baseMap_, mode, factors and pan
  gxPair<double> scaleExact_{1.0, 1.0};
  gxUIRect scopeRect_;
  gxPair<long> scopeOrg_;
  gxPair<long> dragDel_;
  gxFlagStack drawOn_;
  gxFlagStack recordOn_;
  gxFlagStack drawOnOverlay_;
  Layers updateLayers_ = both;
  InterpolationModes interpolation_ = noInterpolation;
  gxUISketch sketch_;
  std::uint32_t hiddenCount_ = 1;
  bool updating_ = false;
  std::uint32_t drawStamp_ = 0;    ///< timeStamp_ when something last drew here
  std::uint32_t redrawStamp_ = 0;  ///< timeStamp_ when this tablet was last repainted whole
  gxUITablet *parent_ = nullptr;
  gx_LinkList<gxUITablet> kids_;                ///< back to front
  gx_LinkList<gxUITablet>::iterator sibPos_{};  ///< this tablet in parent_->kids_, where linked_
  bool linked_ = false;                         ///< parent_ lists this tablet; false in a copy
  gxRect clipRect_[2];                          ///< the client's clip rectangles, in client coordinates

  static std::uint32_t timeStamp_;  ///< one clock for all tablets of the process
  static gxPoint const drawPointArg_;
};

/// The next kid is found before the operation runs, which may move the kid that it is given.
template <class Operation>
void gxUITablet::forEachKid(Operation const &operation)
{
  for (auto kid = kids_.ownBegin(); kid != kids_.end();) {
    gxUITablet &k = **kid;
    ++kid;
    operation(k);
  }
}

/// Makes the scratch pad before the first static initialiser of any source that can name it.
class GX_API gx_ScratchPadInit
{
 public:
  gx_ScratchPadInit();
};
static gx_ScratchPadInit const gf_scratchPadInit;
