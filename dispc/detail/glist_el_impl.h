#pragma once

#include "dispc/glist_el.h"
#include "dispc/uitablet.h"
#include "foundation/archive.h"
#include "foundation/shapeserror.h"

#include <concepts>
#include <typeinfo>

// The members of gxGraphicBuiltin, for the sources that instantiate the classes over it.

template <class T>
concept gx_ShapeItem = std::derived_from<T, gxShape>;

template <class T>
gxRect gxGraphicBuiltin<T>::encloseRect() const
try {
  return item_.boundingBox();
} catch (gxShapesError::DegenerateShape const &) {
  return gxRect();
}

template <class T>
double gxGraphicBuiltin<T>::distToPoint(gxVector<2> const &point) const
{
  if constexpr (!gx_ShapeItem<T> && requires { item_.distToPoint(point); })
    return item_.distToPoint(point);
  else
    return item_.distanceToPoint(point);
}

template <class T>
void gxGraphicBuiltin<T>::dispatchSerialize(gxArchive &archive)
{
  unsigned char version = 0;
  if (gf_enterClass(archive, this, sizeof *this, &typeid(gxGraphicBuiltin), version))
    serialize_(archive, version);
}

template <class T>
void gxGraphicBuiltin<T>::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, typeid(*this).name());
  gxGraphic::dispatchSerialize(archive);
  if constexpr (gx_ShapeItem<T>)
    archive || static_cast<gxPersistent &>(item_);
  else
    archive || item_;
}
