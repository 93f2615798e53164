#include "dispc/graphic_special.h"

#include "dispc/uitablet.h"
#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "foundation/numbers.h"

namespace
{

constexpr char const *module = "dispc/glist";
constexpr double farthest = 1e308;  // farther than anything a shape answers, and yet finite

void refuseAbove(unsigned char version, unsigned char newest, long line)
{
  if (version > newest)
    throw gxArchive::UnknownVersion(module, line);
}

}  // namespace

// Text

gxGraphicText::gxGraphicText(std::string const &text, gxPoint const &location, gxColor const &color,
                             gxColor const &backgroundColor, gxUIFormat const &format, gxVector<2> const &offset)
    : gxGraphic(color),
      text_(text),
      location_(location),
      backgroundColor_(backgroundColor),
      format_(format),
      offset_(offset)
{
}

gxGraphicText::gxGraphicText(gxGraphicText const &) = default;

void gxGraphicText::text(std::string const &text)
{
  mutating();
  text_ = text;
}

void gxGraphicText::location(gxPoint const &location)
{
  mutating();
  location_ = location;
}

void gxGraphicText::backgroundColor(gxColor const &color)
{
  mutating();
  backgroundColor_ = color;
}

void gxGraphicText::format(gxUIFormat const &format)
{
  mutating();
  format_ = format;
}

void gxGraphicText::offset(gxVector<2> const &offset)
{
  mutating();
  offset_ = offset;
}

gxPtrHandle<gxGraphic> gxGraphicText::map(gxXform<2> const &xform) const
{
  gxPtrHandle<gxGraphicText> const image(new gxGraphicText(*this));
  image->location_ = xform.mapPoint(location_);
  return image;
}

gxPtrHandle<gxGraphic> gxGraphicText::clone() const
{
  return new gxGraphicText(*this);
}

gxRect gxGraphicText::encloseRect() const
{
  return gxRect();
}

double gxGraphicText::distToPoint(gxVector<2> const &) const
{
  return farthest;
}

// The pen goes to the place and steps aside in pels; the text starts at the pen.
void gxGraphicText::draw(gxUITablet &tablet, Layers layer) const
{
  tablet.drawStart(location_, layer);
  tablet.moveToRelPels(gf_truncate(offset_.x()), gf_truncate(offset_.y()), layer);
  tablet.draw(text_, tablet.drawPointArg(), color(), backgroundColor_, format_, layer);
}

GX_PERSISTENT_IMPL(gxGraphicText, "gxGraphicText", 0)
void gxGraphicText::serialize_(gxArchive &archive, unsigned char version)
{
  refuseAbove(version, 0, __LINE__);
  gxGraphic::dispatchSerialize(archive);
  archive || text_ || location_ || backgroundColor_ || format_ || offset_;
}

// Point icon

gxGraphicPointIcon::gxGraphicPointIcon(gxGraphicPointIcon const &) = default;

gxPtrHandle<gxGraphic> gxGraphicPointIcon::map(gxXform<2> const &xform) const
{
  return new gxGraphicPointIcon(xform.mapPoint(item_), props());
}

gxPtrHandle<gxGraphic> gxGraphicPointIcon::clone() const
{
  return new gxGraphicPointIcon(*this);
}

gxRect gxGraphicPointIcon::encloseRect() const
{
  return gxRect(item_, gxVector<2>(1.0, 1.0));
}

double gxGraphicPointIcon::distToPoint(gxVector<2> const &point) const
{
  return item_.distToPoint(point);
}

void gxGraphicPointIcon::draw(gxUITablet &tablet, Layers layer) const
{
  tablet.drawPointIcon(item_, props(), layer);
}

GX_PERSISTENT_IMPL(gxGraphicPointIcon, "gxGraphicPointIcon", 0)
void gxGraphicPointIcon::serialize_(gxArchive &archive, unsigned char version)
{
  refuseAbove(version, 0, __LINE__);
  gxGraphic::dispatchSerialize(archive);
  archive || item_;
}

// Cross

gxGraphicCross::gxGraphicCross(gxGraphicCross const &) = default;

gxPtrHandle<gxGraphic> gxGraphicCross::map(gxXform<2> const &xform) const
{
  return new gxGraphicCross(item_.map(xform), props());
}

gxPtrHandle<gxGraphic> gxGraphicCross::clone() const
{
  return new gxGraphicCross(*this);
}

gxRect gxGraphicCross::encloseRect() const
{
  return item_.encloseRect();
}

double gxGraphicCross::distToPoint(gxVector<2> const &point) const
{
  return item_.distToPoint(point);
}

void gxGraphicCross::draw(gxUITablet &tablet, Layers layer) const
{
  tablet.draw(item_, props(), layer);
}

GX_PERSISTENT_IMPL(gxGraphicCross, "gxGraphicCross", 0)
void gxGraphicCross::serialize_(gxArchive &archive, unsigned char version)
{
  refuseAbove(version, 0, __LINE__);
  gxGraphic::dispatchSerialize(archive);
  archive || item_;
}

// Section

gxGraphicEllipseAnnulusSection::gxGraphicEllipseAnnulusSection(gxGraphicEllipseAnnulusSection const &) = default;

void gxGraphicEllipseAnnulusSection::drawArrowHead(bool drawArrowHead, bool drawArrowHeadForward)
{
  props().arrowHead(drawArrowHead);
  props().arrowHeadForward(drawArrowHeadForward);
}

gxPtrHandle<gxGraphic> gxGraphicEllipseAnnulusSection::map(gxXform<2> const &xform) const
{
  return new gxGraphicEllipseAnnulusSection(item_.map(xform), props());
}

gxPtrHandle<gxGraphic> gxGraphicEllipseAnnulusSection::clone() const
{
  return new gxGraphicEllipseAnnulusSection(*this);
}

gxRect gxGraphicEllipseAnnulusSection::encloseRect() const
{
  return item_.encloseRect();
}

double gxGraphicEllipseAnnulusSection::distToPoint(gxVector<2> const &point) const
{
  return item_.distToPoint(point);
}

void gxGraphicEllipseAnnulusSection::draw(gxUITablet &tablet, Layers layer) const
{
  tablet.draw(item_, props(), layer);
}

// In version 0 the arrowheads did not travel in the properties.
GX_PERSISTENT_IMPL(gxGraphicEllipseAnnulusSection, "gxGraphicEllipseAnnulusSection", 1)
void gxGraphicEllipseAnnulusSection::serialize_(gxArchive &archive, unsigned char version)
{
  refuseAbove(version, 1, __LINE__);
  gxGraphic::dispatchSerialize(archive);
  archive || static_cast<gxPersistent &>(item_);
  if (version == 1)
    return;
  bool arrowHead = false, forward = false;
  archive || arrowHead || forward;
  drawArrowHead(arrowHead, forward);
}
