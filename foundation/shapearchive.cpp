#include "foundation/shapearchive.h"

#include <algorithm>

namespace
{

/// The shapes whose children are being passed now, outermost first.
thread_local std::vector<gxShape const *> owners;

class OwnerScope
{
 public:
  explicit OwnerScope(gxShape const &owner) { owners.push_back(&owner); }
  OwnerScope(OwnerScope const &) = delete;
  OwnerScope &operator=(OwnerScope const &) = delete;
  ~OwnerScope() { owners.pop_back(); }
};

}  // namespace

void gf_passChild(gxArchive &archive, gxShape const &owner, gxPtrHandle_const<gxShape> &child)
{
  OwnerScope const scope(owner);
  archive || child;
  if (child.isNull())
    archive.fail("a child that is no shape");
  if (archive.isLoading() && std::find(owners.begin(), owners.end(), child.rep()) != owners.end()) {
    child = nullptr;  // a ring of handles would never be released
    archive.fail("a shape that holds itself");
  }
}

void gf_passChildren(gxArchive &archive, gxShape const &owner, std::vector<gxPtrHandle_const<gxShape>> &children)
{
  constexpr std::size_t leastBytes = 1;  // of one stored pointer
  long const count = archive.passCount(static_cast<long>(children.size()), leastBytes);
  if (archive.isStoring()) {
    for (gxPtrHandle_const<gxShape> &child : children)
      gf_passChild(archive, owner, child);
    return;
  }
  children.clear();
  for (long i = 0; i < count; ++i) {
    children.emplace_back();
    gf_passChild(archive, owner, children.back());
  }
}
