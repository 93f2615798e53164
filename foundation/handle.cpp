#include "foundation/handle.h"

#include "foundation/exception.h"

gxRepBase::~gxRepBase() = default;

void gf_throwBadPointer()
{
  throw gxBadPointer();
}
