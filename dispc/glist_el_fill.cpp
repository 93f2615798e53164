#include "dispc/detail/glist_el_impl.h"

namespace
{

template <class S, class F>
char const *nameOf = nullptr;

#define GX_NAME_(S, F) \
  template <>          \
  constexpr char const *nameOf<S, F> = "gxGraphicWithFill<" #S ", " #F ">";
GX_GRAPHIC_FILL_INSTANCES(GX_NAME_)
#undef GX_NAME_

}  // namespace

// F is tried first: the class changes as soon as the shape has done so.
template <class S, class F>
gxPtrHandle<gxGraphic> gxGraphicWithFill<S, F>::map(gxXform<2> const &xform) const
{
  if constexpr (!gx_ShapeItem<F>) {
    return new gxGraphicWithFill<F, F>(this->item().map(xform), this->props());
  } else {
    gxPtrHandle<gxShape> const shape = this->item().mapShape(xform);
    gxShape const &image = *shape;
    if (auto const *const turned = dynamic_cast<F const *>(&image))
      return new gxGraphicWithFill<F, F>(*turned, this->props());
    if (auto const *const kept = dynamic_cast<S const *>(&image))
      return new gxGraphicWithFill(*kept, this->props());
    throw gxShapesError::DegenerateShape();
  }
}

template <class S, class F>
gxPtrHandle<gxGraphic> gxGraphicWithFill<S, F>::clone() const
{
  return new gxGraphicWithFill(*this);
}

template <class S, class F>
void gxGraphicWithFill<S, F>::draw(gxUITablet &tablet, gxGraphic::Layers layer) const
{
  tablet.draw(this->item(), this->props(), layer);
}

template <class S, class F>
gx_Instantiator gxGraphicWithFill<S, F>::sExemplar(typeid(gxGraphicWithFill<S, F>), nameOf<S, F>, &make);

template <class S, class F>
gxPersistent *gxGraphicWithFill<S, F>::make()
{
  return new gxGraphicWithFill;
}

template <class S, class F>
void gxGraphicWithFill<S, F>::dispatchSerialize(gxArchive &archive)
{
  unsigned char version = 1;
  if (gf_enterClass(archive, this, sizeof *this, &typeid(gxGraphicWithFill), version))
    serialize_(archive, version);
}

// In version 0 the fill did not travel in the properties.
template <class S, class F>
void gxGraphicWithFill<S, F>::serialize_(gxArchive &archive, unsigned char version)
{
  constexpr bool isPlain = !gx_ShapeItem<F>;
  if (version > 1)
    throw gxArchive::UnknownVersion(isPlain ? "dispc/glist_el" : nameOf<S, F>, isPlain ? __LINE__ : 0);
  gxGraphicBuiltin<S>::dispatchSerialize(archive);
  if (version == 1)
    return;
  bool filled = false;
  archive || filled;
  fill(filled);
}

#define GX_INSTANCE_(S, F) template class gxGraphicWithFill<S, F>;
GX_GRAPHIC_FILL_INSTANCES(GX_INSTANCE_)
#undef GX_INSTANCE_

// Each item once: the circle has two rows, and the general annulus a simple graphic as well.
template class gxGraphicBuiltin<gxRect>;
template class gxGraphicBuiltin<gxCircle>;
template class gxGraphicBuiltin<gxAnnulus>;
template class gxGraphicBuiltin<gxEllipse>;
template class gxGraphicBuiltin<gxEllipse2>;
template class gxGraphicBuiltin<gxEllipseAnnulus>;
template class gxGraphicBuiltin<gxGenRect>;
