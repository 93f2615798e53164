#pragma once

#include "dispc/graphic.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/affinerect.h"
#include "foundation/annulus.h"
#include "foundation/bezier.h"
#include "foundation/circle.h"
#include "foundation/coordaxes.h"
#include "foundation/deboorspline.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/fline.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"
#include "foundation/hermitespline.h"
#include "foundation/interpspline.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/linesegset.h"
#include "foundation/point.h"
#include "foundation/pointset.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"
#include "foundation/rect.h"

/// A graphic that holds a value of geometry, in itself: one allocation in all.
template <class T>
class GX_API gxGraphicBuiltin : public gxGraphic
{
 public:
  gxGraphicBuiltin() = default;
  gxGraphicBuiltin(T const &item, gxColor const &color) : gxGraphic(color), item_(item) {}
  gxGraphicBuiltin(T const &item, gxGraphicProps const &props) : gxGraphic(props), item_(item) {}
  gxGraphicBuiltin(gxGraphicBuiltin const &other) : gxPersistent(), gxRepBase(), gxGraphic(other), item_(other.item_) {}
  gxGraphicBuiltin &operator=(gxGraphicBuiltin const &) = default;

  T const &item() const { return item_; }
  T &item()
  {
    mutating();
    return item_;
  }

  /// The item's bounding box; empty if the item is degenerate. Other errors of the item pass.
  gxRect encloseRect() const override;
  /// The item's.
  double distToPoint(gxVector<2> const &point) const override;

 private:
  T item_;

  GX_PERSISTENT_ABSTRACT(gxGraphicBuiltin);
};

/// A graphic that draws its item as it is, by the operation of the tablet for its class. (A gxFLine has none, and is
/// not drawn.)
template <class T>
class GX_API gxGraphicSimple : public gxGraphicBuiltin<T>
{
 public:
  gxGraphicSimple() = default;
  gxGraphicSimple(T const &item, gxColor const &color) : gxGraphicBuiltin<T>(item, color) {}
  gxGraphicSimple(T const &item, gxGraphicProps const &props) : gxGraphicBuiltin<T>(item, props) {}
  gxGraphicSimple(gxGraphicSimple const &other) : gxPersistent(), gxRepBase(), gxGraphicBuiltin<T>(other) {}
  gxGraphicSimple &operator=(gxGraphicSimple const &) = default;

  /// Of the same class, holding `item().map(xform)`.
  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;

  static gxPersistent *make();

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, gxGraphic::Layers layer) const override;

 private:
  static gx_Instantiator sExemplar;
  GX_PERSISTENT_ABSTRACT(gxGraphicSimple);
};

/// A graphic of a shape with an inside, which the `fill` of its properties paints. F is the class that the shape turns
/// into when it is mapped, since a transform need not keep it an S: a turned gxRect is a gxGenRect.
template <class S, class F>
class GX_API gxGraphicWithFill : public gxGraphicBuiltin<S>
{
 public:
  gxGraphicWithFill() = default;
  gxGraphicWithFill(S const &item, gxColor const &color, bool fill) : gxGraphicBuiltin<S>(item, color)
  {
    this->fill(fill);
  }
  gxGraphicWithFill(S const &item, gxGraphicProps const &props) : gxGraphicBuiltin<S>(item, props) {}
  gxGraphicWithFill(gxGraphicWithFill const &other) : gxPersistent(), gxRepBase(), gxGraphicBuiltin<S>(other) {}
  gxGraphicWithFill &operator=(gxGraphicWithFill const &) = default;

  bool fill() const { return this->props().fill(); }
  void fill(bool on) { this->props().fill(on); }

  /// A gxGraphicWithFill<F, F>, for every transform, the identity included.
  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;

  static gxPersistent *make();

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, gxGraphic::Layers layer) const override;

 private:
  static gx_Instantiator sExemplar;
  GX_PERSISTENT_ABSTRACT(gxGraphicWithFill);
};

/// The instances of gxGraphicSimple: X(item).
#define GX_GRAPHIC_SIMPLE_INSTANCES(X) \
  X(gxPoint)                           \
  X(gx2Point)                          \
  X(gxLineSeg)                         \
  X(gxLine)                            \
  X(gxFLine)                           \
  X(gxEllipseArc)                      \
  X(gxEllipseArc2)                     \
  X(gxGenAnnulus)                      \
  X(gxCoordAxes)                       \
  X(gxPointSet)                        \
  X(gxAffineRectangle)                 \
  X(gxPolyline)                        \
  X(gxPolygon)                         \
  X(gxGenPoly)                         \
  X(gx2Wireframe)                      \
  X(gxLineSegSet)                      \
  X(gxBezierCurve)                     \
  X(gxDeBoorSpline)                    \
  X(gxInterpSpline)                    \
  X(gxHermiteSpline)

/// The instances of gxGraphicWithFill: X(item, class that it turns into).
#define GX_GRAPHIC_FILL_INSTANCES(X)    \
  X(gxRect, gxGenRect)                  \
  X(gxCircle, gxEllipse2)               \
  X(gxCircle, gxEllipse)                \
  X(gxAnnulus, gxGenAnnulus)            \
  X(gxEllipse, gxEllipse)               \
  X(gxEllipse2, gxEllipse2)             \
  X(gxEllipseAnnulus, gxEllipseAnnulus) \
  X(gxGenRect, gxGenRect)               \
  X(gxGenAnnulus, gxGenAnnulus)

#define GX_EXTERN_SIMPLE_(T)                 \
  extern template class gxGraphicBuiltin<T>; \
  extern template class gxGraphicSimple<T>;
#define GX_EXTERN_FILL_(S, F)                \
  extern template class gxGraphicBuiltin<S>; \
  extern template class gxGraphicWithFill<S, F>;
GX_GRAPHIC_SIMPLE_INSTANCES(GX_EXTERN_SIMPLE_)
GX_GRAPHIC_FILL_INSTANCES(GX_EXTERN_FILL_)
#undef GX_EXTERN_SIMPLE_
#undef GX_EXTERN_FILL_
