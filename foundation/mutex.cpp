#include "foundation/mutex.h"

gxMutex &gxMutex::global()
{
  static gxMutex mutex;
  return mutex;
}
