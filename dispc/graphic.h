#pragma once

#include "dispc/dispprop.h"
#include "dispc/tabletbase.h"
#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/rect.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

class gxShape;
class gxUITablet;

/// A drawing that is kept: a shape, a text or a group of others, with the properties to draw it with. Graphics are held
/// by handles, shared, mapped, archived, asked for their extent, and drawn on a tablet as often as needed:
///
/// @code
/// gxPtrHandle<gxGraphic> const ring = gxGraphic::makeShapeGraphic(gxCircle({0, 0}, 5), gxColor::redColor());
/// tablet.draw(*ring, gxUITablet::overlay);
/// gxPtrHandle<gxGraphic> const copy = ring->map(xform);   // its own properties, to be changed at will
/// @endcode
///
/// A graphic that threads share must not be changed while one of them uses it.
///
/// A class of graphics of one's own overrides the pure operations, says GX_PERSISTENT, and passes its base first in
/// `serialize_`, by `gxGraphic::dispatchSerialize`.
class GX_API gxGraphic : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  using Layers = gx_UITabletBase::Layers;

  /// Base of the errors of graphics.
  GX_EXCEPTION_WITH_STRING(Errors, gxExceptionWithString);
  /// An index beyond the members of a group.
  GX_EXCEPTION_WITH_STRING(BadParams, Errors);
  /// The factory knows no graphic for the class of a shape.
  GX_EXCEPTION_WITH_STRING(NoGraphicForShape, Errors);

  /// @name Factory
  ///@{
  /// The graphic of a shape: a gxGraphicGroup for a gxShapeTree, whose children all take @p props; the
  /// gxGraphicSimple or gxGraphicWithFill of its class otherwise.
  /// A wireframe becomes the graphic of a plain polygon, and a gxGenAnnulus one without a `fill` of its own. Null for
  /// null. Throws NoGraphicForShape for other classes.
  static gxPtrHandle<gxGraphic> makeShapeGraphic(gxShape const *shape, gxGraphicProps const &props);
  static gxPtrHandle<gxGraphic> makeShapeGraphic(gxShape const &shape, gxGraphicProps const &props);
  static gxPtrHandle<gxGraphic> makeShapeGraphic(gxPtrHandle_const<gxShape> shape, gxGraphicProps const &props);
  ///@}

  /// Default properties.
  gxGraphic() = default;
  /// A pen of the colour, one pel wide.
  explicit gxGraphic(gxColor const &color) : props_(color, 1, gxGraphicProps::penSolid, false) {}
  explicit gxGraphic(gxGraphicProps const &props) : props_(props) {}
  gxGraphic(gxGraphic const &other) : gxPersistent(), gxRepBase(), props_(other.props_), builtin_(other.builtin_) {}
  gxGraphic &operator=(gxGraphic const &) = default;
  ~gxGraphic() override;

  /// @name What each class answers
  ///@{
  /// The image, with the same properties. It may be of another class: a turned gxRect is a gxGenRect.
  virtual gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const = 0;
  /// A copy that shares nothing with this graphic.
  virtual gxPtrHandle<gxGraphic> clone() const = 0;
  /// The extent in client coordinates; empty for what has none.
  virtual gxRect encloseRect() const = 0;
  /// Distance from @p point, in client coordinates.
  virtual double distToPoint(gxVector<2> const &point) const = 0;
  /// True for what draws nothing: an empty text, a group without a member that draws.
  virtual bool isNull() const { return false; }
  ///@}

  /// @name Properties
  ///@{
  gxGraphicProps const &props() const { return props_; }
  /// For changes of single properties. The members of a group do not follow a change made through this reference.
  gxGraphicProps &props()
  {
    mutating();
    return props_;
  }
  /// The members of a group take the properties too.
  void props(gxGraphicProps const &props);
  gxColor const &color() const { return props_.penColor(); }
  /// The members of a group take the properties too, all of them.
  void color(gxColor const &color);
  ///@}

 protected:
  /// For graphics of other libraries, which draw on a context of their own. Does nothing; this library never calls it.
  virtual void draw(void *context) const;
  /// Draws on a tablet; reached through gxUITablet::draw.
  virtual void draw(gxUITablet &tablet, Layers layer) const = 0;
  /// Called after the properties have changed as a whole. Does nothing here.
  virtual void setProps_(gxGraphicProps const &props);
  /// True for the classes of this library, and for those that others derive.
  bool builtin() const { return builtin_; }

 private:
  friend class gxUITablet;
  friend class gxGraphicList;
  friend class gxGraphicGroup;

  gxGraphicProps props_;
  bool builtin_ = true;

  GX_PERSISTENT_ABSTRACT(gxGraphic);
};
