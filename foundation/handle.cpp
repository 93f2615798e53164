#include "foundation/handle.h"

#include "foundation/exception.h"

#include <new>
#include <vector>

namespace
{

// The nested deletions of a thread; lives in the frame of the outermost one.
struct Deletions {
  static constexpr int maxDepth = 500;

  // False without memory for the note; then the stack has to do.
  bool postpone(gxRepBase const *rep)
  try {
    postponed.push_back(rep);
    return true;
  } catch (std::bad_alloc const &) {
    return false;
  }

  int depth = 0;
  std::vector<gxRepBase const *> postponed;
};

thread_local Deletions *deletions GX_INITIAL_EXEC = nullptr;

void destroyNested(gxRepBase const *rep)
{
  ++deletions->depth;
  delete rep;
  --deletions->depth;
}

void destroyOutermost(gxRepBase const *rep)
{
  Deletions all;
  deletions = &all;
  destroyNested(rep);
  while (!all.postponed.empty()) {
    gxRepBase const *const next = all.postponed.back();
    all.postponed.pop_back();
    destroyNested(next);
  }
  deletions = nullptr;
}

}  // namespace

void gx_PtrHandleBase_RepAccessor::destroy(gxRepBase const *rep) noexcept
{
  if (!deletions)
    destroyOutermost(rep);
  else if (deletions->depth < Deletions::maxDepth || !deletions->postpone(rep))
    destroyNested(rep);
}

void gf_throwBadPointer()
{
  throw gxBadPointer();
}
