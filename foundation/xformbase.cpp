#include "foundation/xformbase.h"

#include "foundation/archive.h"
#include "foundation/geomarchive.h"

#include <new>
#include <typeinfo>

namespace
{

/// Throws gxBadPointer for a null handle.
gxPtrHandle_const<gx2XformBase> const &checked(gxPtrHandle_const<gx2XformBase> const &xform)
{
  if (xform.isNull())
    gf_throwBadPointer();
  return xform;
}

}  // namespace

gxPtrHandle_const<gx2XformBase> gx2XformBase::compose(gxPtrHandle_const<gx2XformBase> const &outer,
                                                      gxPtrHandle_const<gx2XformBase> const &inner)
{
  if (outer.isNull() || inner.isNull())
    return outer.isNull() ? inner : outer;
  gxPtrHandle_const<gx2XformBase> const product = outer->product_(*inner);
  return product.isNull() ? new gx2XformComposed(outer, inner) : product;
}

gxPtrHandle_const<gx2XformBase> gx2XformBase::product_(gx2XformBase const &inner) const
{
  if (isLinear() && inner.isLinear())
    return new gx2XformLinear(linearXform({}).xform() * inner.linearXform({}).xform());
  return nullptr;
}

GX_PERSISTENT_ABSTRACT_IMPL(gx2XformBase, 0)
void gx2XformBase::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gx2XformBase");
  gxPersistent::dispatchSerialize(archive);
}

bool gx2XformBase::equal_(gx2XformBase const &other) const
{
  return this == &other;
}

void gx2XformLinear::xform(gxXform<2> const &xform)
{
  mutating();
  xform_ = xform;
}

gxPtrHandle<gx2XformBase> gx2XformLinear::clone() const
{
  return new gx2XformLinear(*this);
}

gx2XformLinear gx2XformLinear::linearXform(gxVector<2> const &) const
{
  return *this;
}

bool gx2XformLinear::equal_(gx2XformBase const &other) const
{
  return typeid(other) == typeid(gx2XformLinear) && *this == dynamic_cast<gx2XformLinear const &>(other);
}

void *gx2XformLinear::operator new(std::size_t size)
{
  return ::operator new(size);
}

void gx2XformLinear::operator delete(void *block)
{
  ::operator delete(block);
}

GX_PERSISTENT_IMPL(gx2XformLinear, "gx2XformLinear", 0)
void gx2XformLinear::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gx2XformLinear");
  gx2XformBase::dispatchSerialize(archive);
  archive || xform_;
}

gx2XformComposed::gx2XformComposed(gxPtrHandle_const<gx2XformBase> const &outer,
                                   gxPtrHandle_const<gx2XformBase> const &inner)
    : outer_(checked(outer)), inner_(checked(inner))
{
}

gxPtrHandle<gx2XformBase> gx2XformComposed::clone() const
{
  return new gx2XformComposed(*this);
}

bool gx2XformComposed::equal_(gx2XformBase const &other) const
{
  auto const *const composed = dynamic_cast<gx2XformComposed const *>(&other);
  return composed && *outer_ == *composed->outer_ && *inner_ == *composed->inner_;
}

bool gx2XformComposed::isLinear() const
{
  return outer_->isLinear() && inner_->isLinear();
}

gx2XformLinear gx2XformComposed::linearXform(gxVector<2> const &at) const
{
  return outer_->linearXform(inner_->mapPoint(at)).xform() * inner_->linearXform(at).xform();
}

gxVector<2> gx2XformComposed::mapPoint(gxVector<2> const &p) const
{
  return outer_->mapPoint(inner_->mapPoint(p));
}

gxVector<2> gx2XformComposed::invMapPoint(gxVector<2> const &p) const
{
  return inner_->invMapPoint(outer_->invMapPoint(p));
}

GX_PERSISTENT_IMPL(gx2XformComposed, "gx2XformComposed", 0)
void gx2XformComposed::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gx2XformComposed");
  gx2XformBase::dispatchSerialize(archive);
  gf_passWithoutRing(archive, outer_);
  gf_passWithoutRing(archive, inner_);
  if (outer_.isNull() || inner_.isNull())
    archive.fail("a composed transform without one of its parts");
}
