#include "dispc/glist.h"
#include "dispc/glist_el.h"
#include "dispc/graphic_special.h"
#include "foundation/shapetree.h"

// The factory of graphics: shapes to the graphics that draw them.

namespace
{

using Made = gxPtrHandle<gxGraphic>;
using Row = Made (*)(gxShape const &shape, gxGraphicProps const &props);

// The graphic, if the shape is of the class or of one derived from it.
template <class Shape, class Graphic>
Made makeAs(gxShape const &shape, gxGraphicProps const &props)
{
  auto const *const item = dynamic_cast<Shape const *>(&shape);
  return item ? new Graphic(*item, props) : nullptr;
}

template <class Shape>
constexpr Row simple = &makeAs<Shape, gxGraphicSimple<Shape>>;
template <class Shape, class Filled>
constexpr Row withFill = &makeAs<Shape, gxGraphicWithFill<Shape, Filled>>;

// The first row that fits decides.
constexpr Row rows[] = {
    simple<gx2Point>,
    simple<gxLineSeg>,
    simple<gxLine>,
    simple<gxFLine>,
    withFill<gxRect, gxGenRect>,
    withFill<gxCircle, gxEllipse2>,
    withFill<gxAnnulus, gxGenAnnulus>,
    simple<gxEllipseArc2>,
    withFill<gxEllipse2, gxEllipse2>,
    withFill<gxGenRect, gxGenRect>,
    simple<gxGenAnnulus>,
    simple<gxPolyline>,
    simple<gxGenPoly>,
    simple<gx2Wireframe>,  // never reached, as a wireframe is a polygon
    simple<gxAffineRectangle>,
    simple<gxBezierCurve>,
    simple<gxDeBoorSpline>,
    simple<gxInterpSpline>,
    simple<gxHermiteSpline>,
    withFill<gxEllipseAnnulus, gxEllipseAnnulus>,
    &makeAs<gxEllipseAnnulusSection, gxGraphicEllipseAnnulusSection>,
    simple<gxLineSegSet>,
};

Made makeGroup(gxShapeTree const &tree, gxGraphicProps const &props)
{
  gxPtrHandle<gxGraphicGroup> const group(new gxGraphicGroup);
  group->props(props);
  std::vector<Made> members;
  members.reserve(tree.children().size());
  for (gxPtrHandle_const<gxShape> const &child : tree.children())
    members.push_back(gxGraphic::makeShapeGraphic(child, props));
  group->items(members, false);
  return group;
}

}  // namespace

gxPtrHandle<gxGraphic> gxGraphic::makeShapeGraphic(gxShape const *shape, gxGraphicProps const &props)
{
  if (!shape)
    return nullptr;
  if (auto const *const tree = dynamic_cast<gxShapeTree const *>(shape))
    return makeGroup(*tree, props);
  for (Row const row : rows) {
    if (Made made = row(*shape, props); !made.isNull())
      return made;
  }
  throw NoGraphicForShape();
}

gxPtrHandle<gxGraphic> gxGraphic::makeShapeGraphic(gxShape const &shape, gxGraphicProps const &props)
{
  return makeShapeGraphic(&shape, props);
}

gxPtrHandle<gxGraphic> gxGraphic::makeShapeGraphic(gxPtrHandle_const<gxShape> shape, gxGraphicProps const &props)
{
  return makeShapeGraphic(shape.rep(), props);
}
