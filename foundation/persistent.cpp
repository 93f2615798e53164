#include "foundation/persistent.h"

#include "foundation/detail/archivepass.h"
#include "foundation/detail/objecttable.h"

void gxPersistent::leaveArchives_()
{
  for (gx_ObjectTable *table = gx_ObjectTable::living(); table; table = table->older())
    table->destroyed(*this);
}

void gxPersistent::mutating_()
{
  bool needed = false;
  for (gx_ObjectTable *table = gx_ObjectTable::living(); table; table = table->older()) {
    if (table->changed(*this))
      needed = true;
  }
  tracked_ = needed;
}

bool gxPersistent::haveVisited(void const *part, std::size_t size, void const *level)
{
  gx_Pass const *const pass = gx_Pass::innermost();
  return pass && pass->isMarked({part, size, level});
}

void gxPersistent::setVisited(void const *part, std::size_t size, void const *level)
{
  if (gx_Pass *const pass = gx_Pass::innermost())
    pass->mark({part, size, level});
}

void gxPersistent::serializePointer(gxArchive &archive, gxPersistent *in, gxPersistent *&out)
{
  if (archive.isLoading())
    in = archive.objects_->load(gx_ObjectTable::Receiver::plain);
  else
    archive.objects_->store(in);
  out = in;
}

gxPersistent *gf_passShared(gxArchive &archive, gxPersistent *object)
{
  if (archive.isLoading())
    return archive.objects_->load(gx_ObjectTable::Receiver::handle);
  archive.objects_->store(object);
  return object;
}

gxPersistent *gf_passOwned(gxArchive &archive, gxPersistent *object)
{
  if (archive.isLoading())
    return archive.objects_->load(gx_ObjectTable::Receiver::owner);
  archive.objects_->storeOwned(object);
  return object;
}

bool gf_passOnce(gxArchive &archive, gxPersistent &object)
{
  if (archive.isLoading())
    return archive.objects_->loadOnce(object);
  archive.objects_->storeOnce(object);
  return true;
}

gxArchive &operator||(gxArchive &archive, gxPersistent &object)
{
  bool const outermost = !archive.pass_;
  std::size_t const known = archive.objects_->size();
  if (archive.isLoading())
    object.mutating();
  try {
    gx_Pass const pass(archive, object);
    object.dispatchSerialize(archive);
  } catch (...) {
    if (archive.isLoading() && outermost)
      archive.objects_->abandon(known);
    throw;
  }
  return archive;
}
