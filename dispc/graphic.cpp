#include "dispc/graphic.h"

#include "dispc/uierror.h"
#include "dispc/uitablet.h"
#include "foundation/archive.h"

GX_EXCEPTION_WITH_STRING_IMPL(gxGraphic::Errors, gxExceptionWithString, Errors, gxExceptionWithString().errorNumber())
GX_EXCEPTION_WITH_STRING_IMPL(gxGraphic::BadParams, gxGraphic::Errors, BadParams, 0x10009600)
GX_EXCEPTION_WITH_STRING_IMPL(gxGraphic::NoGraphicForShape, gxGraphic::Errors, NoGraphicForShape, 0x10009601)

gxGraphic::~gxGraphic() = default;

void gxGraphic::props(gxGraphicProps const &props)
{
  mutating();
  props_ = props;
  setProps_(props_);
}

void gxGraphic::color(gxColor const &color)
{
  mutating();
  props_.penColor(color);
  setProps_(props_);
}

void gxGraphic::draw(void *) const {}

void gxGraphic::setProps_(gxGraphicProps const &) {}

// Version 0 knew a color instead of the properties.
GX_PERSISTENT_ABSTRACT_IMPL(gxGraphic, 1)
void gxGraphic::serialize_(gxArchive &archive, unsigned char version)
{
  if (version > 1)
    throw gxArchive::UnknownVersion("dispc/glist", __LINE__);
  gxPersistent::dispatchSerialize(archive);
  if (version == 1) {
    archive || props_;
    return;
  }
  gxColor color;
  archive || color;
  props_ = gxGraphicProps(color, 1, gxGraphicProps::penSolid, false);
}

void gxUITablet::draw(gxGraphic const &graphic, Layers layer)
{
  if (!graphic.builtin())
    throw gxUIError::NotImplemented();
  graphic.draw(*this, layer);
}
