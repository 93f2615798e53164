#include "dispc/uirect.h"

#include "foundation/archive.h"

namespace
{
constexpr char const *module = "dispc/uirect";
constexpr long versionLine = 156;  ///< what the exception says, in every release

void passPair(gxArchive &archive, gxPair<long> &pair)
{
  unsigned char version = 0;
  archive || version;
  if (version != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  long x = pair.x();
  long y = pair.y();
  archive || x || y;
  pair = gxPair<long>(x, y);
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
