#include "dispc/sketchop_areas.h"
#include "dispc/sketchop_blocks.h"
#include "dispc/sketchop_curves.h"
#include "dispc/sketchop_images.h"
#include "dispc/sketchop_shapes.h"
#include "dispc/sketchop_text.h"
#include "dispc/uierror.h"
#include "dispc/uitablet.h"

#include <memory>

// Playing of records: each op calls the operation of the tablet that made its record.

void gx_UISketchOpPoint::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(point_, header.props(), header.layer());
}

void gx_UISketchOpLineSeg::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(segment_, header.props(), header.layer());
}

void gx_UISketchOpLine::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(line_, header.props(), header.layer());
}

void gx_UISketchOpCircle::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(circle_, header.props(), header.layer());
}

void gx_UISketchOpEllipse::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(ellipse_, header.props(), header.layer());
}

void gx_UISketchOpEllipseArc::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(arc_, header.props(), header.layer());
}

void gx_UISketchOpEllipseAnnSect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(section(), header.props(), header.layer());
}

void gx_UISketchOpGenRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(rect(), header.props(), header.layer());
}

void gx_UISketchOpGenAnn::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(annulus(), header.props(), header.layer());
}

void gx_UISketchOpCoordAxes::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(axes_, header.props(), header.layer());
}

void gx_UISketchOpAffineRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(rect(), header.props(), header.layer());
}

void gx_UISketchOpPolygon::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(polygon_, header.props(), header.layer());
}

void gx_UISketchOpRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(rect_, header.props(), header.layer());
}

void gx_UISketchOpCross::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(cross_, header.props(), header.layer());
}

void gx_UISketchOpBezierCurve::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(curve_, header.props(), header.layer());
}

void gx_UISketchOpPolyline::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(polyline_, header.props(), header.layer());
}

void gx_UISketchOpEllipse2::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(ellipse_, header.props(), header.layer());
}

void gx_UISketchOpEllipseArc2::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(arc_, header.props(), header.layer());
}

void gx_UISketchOpPointIcon::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawPointIcon(point_, header.props(), header.layer());
}

void gx_UISketchOpEllipseAnnSectArrowheadFlag::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  header.props().arrowHead(arrowHead_);
  header.props().arrowHeadForward(arrowHeadForward_);
  tablet.draw(section_, header.props(), header.layer());
}

void gx_UISketchOpCubicSpline::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  for (gxBezierCurve const &curve : curves_)
    tablet.draw(curve, header.props(), header.layer());
}

void gx_UISketchOpString::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.draw(text(), position_, header.color(), background_, format_, header.layer());
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

void gx_UISketchOpSet::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  if (rect_.inPels)
    tablet.set(rect_.pels, header.color(), header.layer());
  else
    tablet.set(rect_.client, header.color(), header.layer());
}

void gx_UISketchOpSetComp::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  if (rect_.inPels)
    tablet.setComplement(rect_.pels, header.color(), header.layer());
  else
    tablet.setComplement(rect_.client, header.color(), header.layer());
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
  if (rect_.inPels)
    tablet.outline3D(rect_.pels, header.color(), second_, width_, header.layer());
  else
    tablet.outline3D(rect_.client, header.color(), second_, width_, header.layer());
}

void gx_UISketchOpDrawStart::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawStart(point_, header.layer());
}

void gx_UISketchOpDrawTo::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawTo(point_, header.props(), header.layer());
}

void gx_UISketchOpDrawToRelPels::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawToRelPels(step_.x(), step_.y(), header.props(), header.layer());
}

void gx_UISketchOpMoveToRelPels::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.moveToRelPels(step_.x(), step_.y(), header.layer());
}

void gx_UISketchOpArrow::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.arrowHead(tip_, dir_, armLength_, header.props(), header.layer());
}

void gx_UISketchOpClipRect::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  tablet.drawClipRect(rect_, header.layer());
}

/// In the colour of the head: that of the payload is not used.
void gx_UISketchOpGenShape::draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const
{
  std::unique_ptr<gxGenShape> const shape(gxGenShape::newGenShape(id_));
  shape->load(data_.data(), static_cast<long>(data_.size()));
  tablet.draw(*shape, header.color(), header.layer());
}

void gx_UISketchOpSketch::draw(gxUITablet &, gx_UISketchOpHeader &) const
{
  throw gxUIError::NotImplemented();  // until tablets play sketches
}
