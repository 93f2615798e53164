#include "dispc/detail/glist_el_impl.h"

namespace
{

template <class T>
char const *nameOf = nullptr;

#define GX_NAME_(T) \
  template <>       \
  constexpr char const *nameOf<T> = "gxGraphicSimple<" #T ">";
GX_GRAPHIC_SIMPLE_INSTANCES(GX_NAME_)
#undef GX_NAME_

template <class T>
T mapped(T const &item, gxXform<2> const &xform)
{
  return item.map(xform);
}
gxPoint mapped(gxPoint const &item, gxXform<2> const &xform)
{
  return xform.mapPoint(item);
}

}  // namespace

template <class T>
gxPtrHandle<gxGraphic> gxGraphicSimple<T>::map(gxXform<2> const &xform) const
{
  return new gxGraphicSimple(mapped(this->item(), xform), this->props());
}

template <class T>
gxPtrHandle<gxGraphic> gxGraphicSimple<T>::clone() const
{
  return new gxGraphicSimple(*this);
}

template <class T>
void gxGraphicSimple<T>::draw(gxUITablet &tablet, gxGraphic::Layers layer) const
{
  tablet.draw(this->item(), this->props(), layer);
}

template <class T>
gx_Instantiator gxGraphicSimple<T>::sExemplar(typeid(gxGraphicSimple<T>), nameOf<T>, &make);

template <class T>
gxPersistent *gxGraphicSimple<T>::make()
{
  return new gxGraphicSimple;
}

template <class T>
void gxGraphicSimple<T>::dispatchSerialize(gxArchive &archive)
{
  unsigned char version = 0;
  if (gf_enterClass(archive, this, sizeof *this, &typeid(gxGraphicSimple), version))
    serialize_(archive, version);
}

template <class T>
void gxGraphicSimple<T>::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, nameOf<T>);
  gxGraphicBuiltin<T>::dispatchSerialize(archive);
}

#define GX_INSTANCE_(T)               \
  template class gxGraphicBuiltin<T>; \
  template class gxGraphicSimple<T>;
GX_GRAPHIC_SIMPLE_INSTANCES(GX_INSTANCE_)
#undef GX_INSTANCE_
