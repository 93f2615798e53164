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

template <class F, class S>
F mapped(S const &item, gxXform<2> const &xform)
{
  if constexpr (std::is_same_v<S, gxCircle> && std::is_same_v<F, gxEllipse2>)
    return gxEllipse2(item).map(xform);
  else
    return item.map(xform);
}

}  // namespace

// What mapShape() makes of the item, without an object of its own for it.
template <class S, class F>
gxPtrHandle<gxGraphic> gxGraphicWithFill<S, F>::map(gxXform<2> const &xform) const
{
  return new gxGraphicWithFill<F, F>(mapped<F>(this->item(), xform), this->props());
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
