#include "dispc/wrfm/description.h"

#include "foundation/archive.h"
#include "foundation/xformbase.h"

gxSMDGeometricDescription::~gxSMDGeometricDescription() = default;

void gxSMDGeometricDescription::drawSynthetic(gxPtrHandle_const<gx2XformBase> const &xform,
                                              gxPelBuffer<unsigned char> const &buffer) const
{
  if (xform.isNull())
    throw gxBadPointer();
  drawSynthetic(xform->linearXform(gxVector<2>()).xform(), buffer);
}

GX_PERSISTENT_ABSTRACT_IMPL(gxSMDGeometricDescription, 0)
void gxSMDGeometricDescription::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  gxPersistent::dispatchSerialize(archive);
  archive || name_;
}
