#include "dispc/uirect.h"

#include "foundation/archive.h"
#include "foundation/geomarchive.h"

namespace
{
constexpr char const *module = "dispc/uirect";
constexpr long versionLine = 156;  ///< what the exception says, in every release

/// A pair inside of a rectangle has a version byte of its own.
void passPair(gxArchive &archive, gxPair<long> &pair)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  archive || pair;
}
}  // namespace

gxArchive &operator||(gxArchive &archive, gxUIRect &rect)
{
  signed char version = 0;
  archive || version;
  if (version != 0)
    throw gxArchive::UnknownVersion(module, versionLine);
  gxPair<long> origin = rect.origin_;
  gxPair<long> size = rect.size_;
  passPair(archive, origin);
  passPair(archive, size);
  rect.origin_ = origin;
  rect.size_ = size;
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxUIRect const &rect)
{
  return os << rect.ul() << ' ' << rect.width() << " x " << rect.height();
}
