#include "foundation/handle.h"

#include "foundation/exception.h"

#include <vector>

namespace
{

// The nested deletions of a thread; lives in the frame of the outermost one.
struct Deletions {
  static constexpr int maxDepth = 500;

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
  else if (deletions->depth < Deletions::maxDepth)
    destroyNested(rep);
  else
    deletions->postponed.push_back(rep);
}

void gf_throwBadPointer()
{
  throw gxBadPointer();
}
