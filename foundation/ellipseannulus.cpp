#include "foundation/ellipseannulus.h"

#include "foundation/ellipsearc.h"
#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"

#include <cmath>
#include <utility>

GX_SHAPE_IMPL(gxEllipseAnnulus, gxShape)

void gxEllipseAnnulus::passFields_(gxArchive &archive)
{
  archive || inner_ || outer_;
}

namespace
{

void appendWhole(gxEllipse const &ellipse, gx_Outline &outline)
{
  outline.addContour(true).pieces.push_back(ellipse.piece(gxRadian(), gxRadian(gf_turnRadians)));
}

gxEllipse reversed(gxEllipse const &ellipse)
{
  gxEllipse turned = ellipse.withoutPhase();
  turned.isReversed(!ellipse.isReversed());
  return turned;
}

}  // namespace

gxRect gxEllipseAnnulus::boundingBox() const
{
  return outer_.boundingBox().enclose(inner_.boundingBox());
}

bool gxEllipseAnnulus::within(gxVector<2> const &p) const
{
  if (outer_.within(p) != inner_.within(p))
    return true;
  return outer_.nearestPoint(p) == p || inner_.nearestPoint(p) == p;
}

gxPtrHandle<gxShape> gxEllipseAnnulus::mapShape(gxXform<2> const &xform) const
{
  return new gxEllipseAnnulus(map(xform));
}

gxPtrHandle<gxShape> gxEllipseAnnulus::reverse_() const
{
  return new gxEllipseAnnulus(reversed(inner_), reversed(outer_));
}

void gxEllipseAnnulus::appendOutline(gx_Outline &outline) const
{
  appendWhole(outer_, outline);
  appendWhole(inner_, outline);
}

GX_SHAPE_IMPL(gxEllipseAnnulusSection, gxShape)

void gxEllipseAnnulusSection::passFields_(gxArchive &archive)
{
  archive || annulus_ || start_ || end_ || isForward_ || flag1_ || flag2_;
}

gxEllipseAnnulusSection::gxEllipseAnnulusSection(gxEllipseAnnulus const &annulus, gxRadian start, gxRadian end,
                                                 bool forward, bool flag1, bool flag2)
    : annulus_(annulus), start_(start), end_(end), isForward_(forward), flag1_(flag1), flag2_(flag2)
{
}

bool gxEllipseAnnulusSection::isWholeTurn() const
{
  return std::abs((end_ - start_).value()) >= gf_turnRadians;
}

gxRect gxEllipseAnnulusSection::encloseRect() const
{
  return boundingBox();
}

gxEllipseAnnulusSection gxEllipseAnnulusSection::map(gxXform<2> const &xform) const
{
  gxEllipseAnnulusSection image(*this);
  image.annulus_ = annulus_.map(xform);
  bool const isMirrored = image.annulus_.outerEllipse().isReversed() != annulus_.outerEllipse().isReversed();
  if (!isMirrored || !(end_ < start_))
    return image;
  gxRadian const span = gxEllipseArc(annulus_.outerEllipse(), start_, end_).span();
  if (span.value() < 0.0)
    std::swap(image.start_, image.end_);
  else
    image.end_ = start_ + span;
  return image;
}

bool gxEllipseAnnulusSection::within(gxVector<2> const &p) const
{
  return isWholeTurn() ? annulus_.within(p) : gxShape::within(p);
}

gxPtrHandle<gxShape> gxEllipseAnnulusSection::mapShape(gxXform<2> const &xform) const
{
  return new gxEllipseAnnulusSection(map(xform));
}

void gxEllipseAnnulusSection::appendOutline(gx_Outline &outline) const
{
  if (isWholeTurn()) {
    annulus_.appendOutline(outline);
    return;
  }
  gx_ArcPiece const inner = gxEllipseArc(annulus_.innerEllipse(), start_, end_).piece();
  gx_ArcPiece const outer = gxEllipseArc(annulus_.outerEllipse(), start_, end_).piece();
  outline.addContour(true).pieces = {outer, gx_LinePiece{outer.point(1.0), inner.point(1.0)}, inner.part(1.0, 0.0),
                                     gx_LinePiece{inner.point(0.0), outer.point(0.0)}};
}

bool operator==(gxEllipseAnnulusSection const &a, gxEllipseAnnulusSection const &b)
{
  return a.annulus_ == b.annulus_ && a.start_ == b.start_ && a.end_ == b.end_ && a.isForward_ == b.isForward_ &&
         a.flag1_ == b.flag1_ && a.flag2_ == b.flag2_;
}
