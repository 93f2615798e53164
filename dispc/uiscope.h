#pragma once

#include "dispc/color.h"
#include "dispc/tabletbase.h"
#include "dispc/uirect.h"
#include "dispc/uistring.h"
#include "foundation/export.h"
#include "foundation/lists.h"
#include "foundation/pair.h"
#include "foundation/point.h"

#include <cstdint>
#include <list>
#include <string>
#include <vector>

class gxEllipse;
class gxEllipse2;
class gxEllipseArc;
class gxEllipseArc2;
class gxGenRect;
class gxGenShape;
class gxGraphic;
class gxGraphicProps;
class gxLineSeg;
class gxPolygon;
class gxPolyline;
class gxRLEBuffer;
class gxPackedRGB16Pel;
class gxPackedRGB32Pel;
template <class T>
class gxPelBuffer_const;
template <class T>
class gxPelBuffer;

/// A rendering surface: a rectangle of pels on which drawing lands. A back end derives from it (a window, a bitmap, a
/// memory picture, a surface that only measures).
///
/// The tablet does the client's side (maps, recording) and calls the scope with device coordinates. The scope keeps
/// what all surfaces share: its origin, its place in a tree of scopes, the pen, what has changed, the display clip.
///
/// A back end, in each drawing operation,
///  -# works in pels relative to org(), which xCoord() and yCoord() give, and takes the pen from drawX(), drawY() and
///     drawPoint(). A point that *is* drawPoint() (the same object) stands for the pen: those two know it by address;
///  -# calls change() with the rectangle that it touched, in its own pels, when trackChanges() is true, and says
///     `opaque` when the rectangle is painted without transparent pels;
///  -# moves the pen through drawStart() and moveToRel() only;
///  -# draws only inside its own rectangle, and inside displayClipRect() when that is set: the tablet does not clip;
///  -# sets modified(true): nobody else does, and gxUITablet::erase() repaints modified layers only.
///
/// A scope tree is used by one thread. Scopes do not own their children: the tablet owns and deletes its scopes. A
/// child may outlive its parent and its root; it is then without them.
class GX_API gxUIScope
{
 public:
  using InterpolationModes = gx_UITabletBase::InterpolationModes;

  /// A root scope at (0, 0).
  gxUIScope();
  /// A root scope whose first pel is the device's pel @p org.
  explicit gxUIScope(gxPair<long> const &org);
  /// All fields by value, parent and root too: the copy looks up to the same parent and lists the same children, but
  /// no parent lists the copy, and its end disturbs no link. It must not be used after the root of the original.
  gxUIScope(gxUIScope const &);
  gxUIScope &operator=(gxUIScope const &);

  /// Leaves the tree. The children stay, without parent; nothing below keeps a root that is gone.
  virtual ~gxUIScope();

  /// @name Surfaces
  ///@{
  /// Called by move() when the tree is set up: attach the surface to the parent's, at the offset and size of the
  /// rectangle, in pels of the parent.
  virtual void moveSurface(gxUIScope const &parent, gxUIRect const &rectInParent) = 0;
  /// A new scope for a part of this one, which shares its surface; the caller owns it. @p temporary is false for a
  /// lasting scope and true for one that only clips the drawing of one repaint.
  virtual gxUIScope *newSubScope(gxUIRect const &rect, bool temporary) = 0;
  ///@}

  /// @name The drag image
  ///@{
  virtual void dragStart() = 0;  ///< what is drawn from here to dragStop() makes the drag image
  virtual void dragStop() = 0;
  virtual void dragErase() = 0;           ///< takes the drag image off the surface
  virtual void dragAnimate(bool on) = 0;  ///< shows the next frame
  ///@}

  /// @name Holding back the screen
  ///@{
  virtual void lockScreenUpdatesPush(bool lock);        ///< nests; empty here
  virtual bool lockScreenUpdatesPop();                  ///< undoes one push; false here
  virtual bool screenUpdatesLocked() const;             ///< false here
  virtual void updateScreen();                          ///< for applications; empty here
  virtual void invalidateScreen(gxUIRect const &rect);  ///< for applications; empty here
  /// True on entering a batch of many small operations, false on leaving it. Empty here.
  virtual void optimizeDrawing(bool on);
  ///@}

  /// @name Drawing
  /// Shapes in device coordinates; a point may be this scope's own drawPoint(). @p pass makes the pels of value
  /// @p passPel transparent.
  ///@{
  virtual void draw(gxGenShape const &shape, gxColor const &color);  ///< empty here
  virtual void draw(gxEllipseArc const &arc, gxGraphicProps const &props) = 0;
  virtual void draw(gxEllipse const &ellipse, gxGraphicProps const &props) = 0;
  virtual void draw(gxPolygon const &polygon, gxGraphicProps const &props) = 0;  ///< filled or outlined by `fill`
  /// An icon: runs of values that index @p colors.
  virtual void draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<gxColor> const &colors, bool pass,
                    unsigned char passPel) = 0;
  /// A run-length image at unit scale; @p colorMap maps the values of the runs, one beyond it stands for itself.
  virtual void draw(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                    bool pass, unsigned char passPel) = 0;
  virtual void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, bool pass,
                    unsigned long passPel) = 0;
  virtual void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, bool pass,
                    unsigned short passPel) = 0;
  virtual void draw(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, bool pass,
                    unsigned short passPel) = 0;
  /// @p flag is handed through from the caller of the tablet; its meaning is the back end's.
  virtual void draw(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, bool pass,
                    unsigned char passPel, bool flag) = 0;
  virtual void draw(std::string const &text, gxPoint const &at, gxColor const &foreground, gxColor const &background,
                    gxUIFormat const &format) = 0;
  virtual void draw(gxGraphic const &graphic);  ///< empty here
  virtual void draw(gxPolyline const &polyline, gxGraphicProps const &props) = 0;
  virtual void draw(gxGenRect const &rect, gxGraphicProps const &props) = 0;
  virtual void draw(gxEllipseArc2 const &arc, gxGraphicProps const &props) = 0;
  virtual void draw(gxEllipse2 const &ellipse, gxGraphicProps const &props) = 0;
  virtual void draw(gxLineSeg const &segment, gxGraphicProps const &props) = 0;
  virtual void draw(gxPoint const &point, gxGraphicProps const &props) = 0;  ///< one pel, or a dot of the pen's width
  /// The rectangle that the text would cover, also stored in @p rect.
  virtual gxUIRect textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect) = 0;
  ///@}

  /// @name Reduced images
  /// The scale is 1 / n for a reduction by n; the forms with whole n pass 1.0 / n on.
  ///@{
  /// A run-length image, reduced by 1 / scale.x() on both axes: every k-th row for a whole k, and along a row the
  /// lengths of the runs over k, with the remainder carried into the next run. What results goes to draw(). If
  /// 1 / scale.x() is farther than 1e-6 from a whole number, the image is unpacked, sent through @p colorMap, and goes
  /// to `sample` for 8-bit pels with `flag` set. Nothing is drawn for a scale that is not positive, or that leaves no
  /// pel.
  virtual void sample(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                      gxPair<double> const &scale, bool pass, unsigned char passPel);
  virtual void sample(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                      gxPair<long> const &n, bool pass, unsigned char passPel);
  virtual void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned long passPel) = 0;
  virtual void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned long passPel);
  virtual void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned short passPel) = 0;
  virtual void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned short passPel);
  virtual void sample(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned short passPel) = 0;
  virtual void sample(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned short passPel);
  virtual void sample(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned char passPel, bool flag) = 0;
  virtual void sample(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned char passPel, bool flag);
  ///@}

  /// @name Enlarged images
  /// The forms with whole n pass n on as doubles.
  ///@{
  /// A run-length image, enlarged by scale.x() on both axes. For a whole factor, only the columns and rows that show in
  /// this scope are enlarged, and go to draw(); a block that the left or the upper edge cuts begins at the edge. If
  /// scale.x() is farther than 1e-6 from a whole number, the image is unpacked, sent through @p colorMap, and goes to
  /// `expand` for 8-bit pels with `flag` set and without interpolation. Nothing is drawn for a scale that is not
  /// positive, or of what lies wholly outside of the scope.
  virtual void expand(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                      gxPair<double> const &scale, bool pass, unsigned char passPel);
  virtual void expand(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                      gxPair<long> const &n, bool pass, unsigned char passPel);
  virtual void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned long passPel, InterpolationModes mode) = 0;
  virtual void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned long passPel, InterpolationModes mode);
  virtual void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned short passPel, InterpolationModes mode) = 0;
  virtual void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned short passPel, InterpolationModes mode);
  virtual void expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned short passPel, InterpolationModes mode) = 0;
  virtual void expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned short passPel, InterpolationModes mode);
  virtual void expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft,
                      gxPair<double> const &scale, bool pass, unsigned char passPel, bool flag,
                      InterpolationModes mode) = 0;
  virtual void expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                      bool pass, unsigned char passPel, bool flag, InterpolationModes mode);
  ///@}

  /// @name Areas and the pen
  ///@{
  virtual void set(gxUIRect const &rect, gxColor const &color) = 0;  ///< fills the rectangle
  virtual void set(gxColor const &color) = 0;                        ///< fills the whole scope
  /// Flood fill from the seed pel. @p toBoundary: up to pels of the colour @p boundary; else all connected pels of the
  /// seed's own colour.
  virtual void fill(gxPair<long> const &seed, gxColor const &fillColor, gxColor const &boundary, bool toBoundary) = 0;
  /// Line from the pen to the point; the pen moves there.
  virtual void drawTo(gxPoint const &to, gxGraphicProps const &props) = 0;
  /// Line from the pen by a step in pels; the pen moves there.
  virtual void drawToRelPels(long dx, long dy, gxGraphicProps const &props) = 0;
  ///@}

  /// @name What the back end tells
  ///@{
  /// True if there is no surface to draw on. Callers then leave the scope out, unless client change tracking is on.
  virtual bool isNull() const = 0;
  /// Width and height in pels.
  virtual gxPair<long> size() const = 0;
  virtual void colorMap(std::vector<gxRGB> const &map);    ///< sets the palette; empty here
  virtual void colorMapEx(std::vector<gxRGB> const &map);  ///< sets the palette; empty here
  ///@}

  /// @name The pen
  ///@{
  /// The pen as a device point. Handing this very object to a drawing operation means the pen.
  gxPoint const &drawPoint() const { return drawPoint_; }
  /// Puts the pen at a device point.
  void drawStart(gxPoint const &p);
  /// Moves the pen by whole pels.
  void moveToRel(long dx, long dy);
  ///@}

  /// @name The tree
  ///@{
  /// First pel of this scope in device pels.
  gxPair<long> const &org() const { return org_; }
  /// Hangs this scope, with what is below it, under @p parent. The scope gets coordinates of its own: its origin is
  /// (0, 0), but where @p rect starts before the parent's first pel, the origin is that far inside. Throws
  /// gxUIError::BadParams if the parent is this scope or lies below it.
  void move(gxUIScope const &parent, gxUIRect const &rect);
  /// As move(), but the scope keeps device coordinates: its origin is that of @p rect, at least the parent's.
  void subset(gxUIScope const &parent, gxUIRect const &rect);
  ///@}

  /// @name Changes
  ///@{
  /// Reports that a rectangle of this scope's pels was touched; @p opaqueFill if no pel of it was left transparent.
  void change(gxUIRect rect, bool opaqueFill);
  void allChange();  ///< all may have changed, for the tree and for a tracking client
  void noChange();   ///< all changes were seen to; a tracking client keeps its own
  /// What changed since noChange(), in device pels.
  gxUIRect changeRect() const { return changeRect_ + org_; }
  bool someChanged() const { return changeRect_.width() != 0; }
  bool allChanged() const { return flag(allChangedBit); }
  void allChanged(bool on) { flag(allChangedBit, on); }
  /// Some scope of the tree changed; kept at its root. False without a root.
  bool anyChanged() const { return root_ && root_->anyChanged_; }
  void clearAnyChanged();
  /// A client collects change rectangles.
  bool clientChangeEnable() const { return flag(clientChangeBit); }
  /// Switching on starts with an empty rectangle; switching off keeps what was collected.
  void clientChangeEnable(bool on);
  /// What the client collected, in device pels. Collecting ends unless @p keep is true.
  gxUIRect clientChangedRect(bool keep);
  /// Something was drawn since the flag was cleared: set by back ends.
  bool modified() const { return flag(modifiedBit); }
  void modified(bool on) { flag(modifiedBit, on); }
  /// The scope covers all of its rectangle: nothing behind it shows.
  bool opaque() const { return flag(opaqueBit); }
  void opaque(bool on) { flag(opaqueBit, on); }
  ///@}

  /// The part of the display to which drawing is restricted, in device pels; a null rectangle restricts nothing.
  gxUIRect const &displayClipRect() const { return displayClipRect_; }
  void setDisplayClipRect(gxUIRect const &rect) { displayClipRect_ = rect; }

  /// The index colour of the map entry nearest to @p color by the distance of the components; the first of equals.
  /// The components are taken as they stand, valid or not; an empty map gives index 0.
  static gxColor nearestColor(gxColor const &color, std::vector<gxRGB> const &map);

 protected:
  /// The pen in pels of this scope.
  long drawX() const { return drawX_; }
  long drawY() const { return drawY_; }
  gxUIScope *parent() const { return parent_; }
  std::list<gxUIScope *> const &children() const { return children_.entries(); }
  /// Change rectangles are still of use: not all has changed yet, or a client collects them.
  bool trackChanges() const { return (flags_ & (allChangedBit | clientChangeBit)) != allChangedBit; }
  /// The pel of a device point in this scope: gf_nudgedFloor() of the coordinate, less the origin. For the object
  /// drawPoint() itself, the pen in pels, so that it does not drift from its double twin.
  long xCoord(gxPoint const &p) const;
  long yCoord(gxPoint const &p) const;

  /// @name Scaling of pels
  /// For back ends: both put a new buffer, with rows aligned to 32 bytes, in place of @p dst. It is never larger than
  /// the clip. A result without pels leaves @p dst as it was; so does a source without pels, or a factor or scale that
  /// is not positive and finite.
  ///@{
  /// Enlarges the window of @p src: each pel becomes a block of xFactor x yFactor pels. Of the clip, only the size
  /// counts: the result is the top left part of the enlarged image, cut to that size.
  /// @param phase a negative one cuts the first column of blocks to xFactor + phase.x() pels, the first row likewise;
  ///        the image moves left or up by that, and the pels that it leaves are 0. One that is not negative cuts
  ///        nothing.
  /// T is `unsigned char`, gxPackedRGB16Pel or gxPackedRGB32Pel.
  template <class T>
  static void pelExpand(gxPelBuffer_const<T> const &src, gxPelBuffer<T> &dst, long xFactor, long yFactor,
                        gxUIRect const &clip, gxPair<long> const &phase);
  /// The part inside @p clip of the window of @p src, when that is drawn at @p scale with its first pel at @p origin.
  /// Clip and origin are in the same pels.
  ///
  /// A scale above 1 and within 1e-6 of a whole number makes blocks of that number of pels; of any other scale, each
  /// pel shows the pel of the source that holds its top left corner.
  /// @param mode if not 0, the scale is above 1 and the source at least 8 x 8 pels, then 8-bit and 32-bit pels are
  ///        interpolated: 1 bilinearly, any other value bicubically. Where a sample would need pels from beyond the
  ///        border (2 pels wide, or 3), the result is grey: 128, or (128, 128, 128, 0).
  /// T is `unsigned char`, `unsigned short`, gxPackedRGB16Pel or gxPackedRGB32Pel.
  template <class T>
  static void pelScale(gxPelBuffer_const<T> const &src, gxPelBuffer<T> &dst, double scale, gxUIRect const &clip,
                       gxPair<long> const &origin, InterpolationModes mode);
  ///@}

 private:
  enum : std::uint32_t { allChangedBit = 1, modifiedBit = 2, opaqueBit = 4, clientChangeBit = 8 };

  bool flag(std::uint32_t bit) const { return (flags_ & bit) != 0; }
  void flag(std::uint32_t bit, bool on) { flags_ = on ? flags_ | bit : flags_ & ~bit; }
  void leaveParent();
  void leaveTree();
  void takeRoot(gxUIScope *root);
  void markRoot();

  gxPair<long> org_;
  std::uint32_t flags_ = 0;
  gxUIRect changeRect_;
  gxUIRect clientChangedRect_;
  gxPoint drawPoint_;
  std::int32_t drawX_ = 0;
  std::int32_t drawY_ = 0;
  gxUIScope *root_;
  gxUIScope *parent_ = nullptr;
  gx_LinkList<gxUIScope> children_;
  bool anyChanged_ = false;
  gxUIRect displayClipRect_;
  bool linked_ = false;  ///< parent_ lists this scope; false in a copy
};
