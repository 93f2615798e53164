#include "foundation/detail/archivepass.h"

#include <algorithm>

thread_local gx_Pass *gx_Pass::innermost_ = nullptr;

bool gx_Pass::isPassing(gxArchive const &archive, gxPersistent const &object)
{
  for (gx_Pass const *pass = innermost_; pass; pass = pass->outer_) {
    if (pass->object_ == &object && &pass->archive_ == &archive)
      return true;
  }
  return false;
}

void gx_Pass::refuseDepth() const
{
  archive_.fail("objects are nested deeper than " + std::to_string(archive_.limits_.maxDepth));
}

bool gx_Pass::isMarkedFurther(Mark mark) const
{
  return std::find(more_->begin(), more_->end(), mark) != more_->end();
}

void gx_Pass::markFurther(Mark mark)
{
  if (!more_)
    more_ = std::make_unique<std::vector<Mark>>();
  more_->push_back(mark);
}
