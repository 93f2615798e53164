#include "dispc/sketchop_areas.h"
#include "dispc/sketchop_blocks.h"
#include "dispc/sketchop_curves.h"
#include "dispc/sketchop_images.h"
#include "dispc/sketchop_shapes.h"
#include "dispc/sketchop_text.h"
#include "dispc/uitablet.h"

#include <memory>

// How records play: each op calls the operation of the tablet that made its record, with the layer, the colour and the
// properties of the header.

namespace
{
gxGraphicProps const &propsOf(gx_UISketchOpHeader const &header)
{
  return header.props();
}
}  // namespace

// ---------------------------------------------------------------- shapes

void gx_UISketchOpPoint::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(point_, propsOf(header), header.layer());
}

void gx_UISketchOpLineSeg::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(segment_, propsOf(header), header.layer());
}

void gx_UISketchOpLine::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(line_, propsOf(header), header.layer());
}

void gx_UISketchOpCircle::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(circle_, propsOf(header), header.layer());
}

void gx_UISketchOpEllipse::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(ellipse_, propsOf(header), header.layer());
}

void gx_UISketchOpEllipseArc::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(arc_, propsOf(header), header.layer());
}

void gx_UISketchOpEllipseAnnSect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(section(), propsOf(header), header.layer());
}

void gx_UISketchOpGenRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(rect(), propsOf(header), header.layer());
}

void gx_UISketchOpGenAnn::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(annulus(), propsOf(header), header.layer());
}

void gx_UISketchOpCoordAxes::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(axes_, propsOf(header), header.layer());
}

void gx_UISketchOpAffineRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(rect(), propsOf(header), header.layer());
}

void gx_UISketchOpPolygon::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(polygon_, propsOf(header), header.layer());
}

void gx_UISketchOpRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(rect_, propsOf(header), header.layer());
}

void gx_UISketchOpCross::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(cross_, propsOf(header), header.layer());
}

void gx_UISketchOpBezierCurve::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(curve_, propsOf(header), header.layer());
}

void gx_UISketchOpPolyline::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(polyline_, propsOf(header), header.layer());
}

void gx_UISketchOpEllipse2::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(ellipse_, propsOf(header), header.layer());
}

void gx_UISketchOpEllipseArc2::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(arc_, propsOf(header), header.layer());
}

void gx_UISketchOpPointIcon::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawPointIcon(point_, propsOf(header), header.layer());
}

void gx_UISketchOpArrow::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.arrowHead(tip_, dir_, armLength_, propsOf(header), header.layer());
}

/// The one op that changes the header: later records without properties of their own are drawn with these flags.
void gx_UISketchOpEllipseAnnSectArrowheadFlag::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  header.props().arrowHead(arrowHead_);
  header.props().arrowHeadForward(arrowHeadForward_);
  tablet.draw(section_, propsOf(header), header.layer());
}

void gx_UISketchOpCubicSpline::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  for (gxBezierCurve const &curve : curves_)
    tablet.draw(curve, propsOf(header), header.layer());
}

void gx_UISketchOpGenShape::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  std::unique_ptr<gxGenShape> const shape(gxGenShape::newGenShape(id_));
  shape->load(data_.data(), static_cast<long>(data_.size()));
  tablet.draw(*shape, header.color(), header.layer());
}

// ---------------------------------------------------------------- areas

namespace
{
/// Calls an operation with the form of a rectangle that was recorded.
template <class Operation>
void withForm(gx_FormRect const &rect, Operation const &operation)
{
  if (rect.inPels)
    operation(rect.pels);
  else
    operation(rect.client);
}
}  // namespace

void gx_UISketchOpSet::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  withForm(rect_, [&](auto const &rect) { tablet.set(rect, header.color(), header.layer()); });
}

void gx_UISketchOpSetComp::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  withForm(rect_, [&](auto const &rect) { tablet.setComplement(rect, header.color(), header.layer()); });
}

void gx_UISketchOpSetAll::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.set(header.color(), header.layer());
}

void gx_UISketchOpFill::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  if (inPels_)
    tablet.fill(pelSeed_, header.color(), boundary_, type_, header.layer());
  else
    tablet.fill(seed_, header.color(), boundary_, type_, header.layer());
}

void gx_UISketchOpOutline3d::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  withForm(rect_, [&](auto const &rect) { tablet.outline3D(rect, header.color(), second_, width_, header.layer()); });
}

void gx_UISketchOpClipRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawClipRect(rect_, header.layer());
}

// ---------------------------------------------------------------- the pen

void gx_UISketchOpDrawStart::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawStart(point_, header.layer());
}

void gx_UISketchOpDrawTo::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawTo(point_, propsOf(header), header.layer());
}

void gx_UISketchOpDrawToRelPels::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawToRelPels(step_.x(), step_.y(), propsOf(header), header.layer());
}

void gx_UISketchOpMoveToRelPels::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.moveToRelPels(step_.x(), step_.y(), header.layer());
}

// ---------------------------------------------------------------- texts, images, sketches

void gx_UISketchOpString::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  if (text_.bytes())
    drawn_.assign(reinterpret_cast<char const *>(text_.bytes()), static_cast<std::size_t>(length_ - 1));
  tablet.draw(drawn_, position_, header.color(), background_, format_, header.layer());
}

void gx_UISketchOpUnicodeString::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(gfConvertString(text()), position_, header.color(), background_, format_, header.layer());
}

void gx_UISketchOpPelBuf8::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(buffer_, position_, pass_, passPel_, flag_, header.layer());
}

void gx_UISketchOpRleBuf::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(buffer_, position_, map_, pass_, passPel_, unscaled_, header.layer());
}

void gx_UISketchOpSketch::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(sketch_, offset_, header.layer());
}
