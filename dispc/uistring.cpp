#include "dispc/uistring.h"

#include "foundation/archive.h"
#include "foundation/mutex.h"

#include <atomic>
#include <iterator>

namespace
{
constexpr char const *module = "dispc/uistring";
constexpr long versionLine = 77;  ///< what the exception says, in every release

using FontId = std::atomic<std::int32_t>;
constinit std::atomic<FontId *> theDefaultFont{nullptr};

/// Made on first use, whichever thread or static initialiser comes first; only that use takes the lock.
FontId &defaultFont()
{
  FontId *font = theDefaultFont.load(std::memory_order_acquire);
  if (!font) {
    gxLock const lock(gxMutex::global());
    font = theDefaultFont.load(std::memory_order_relaxed);
    if (!font) {
      font = new FontId(-1);  // outlives every static object, so that their destructors may still ask
      theDefaultFont.store(font, std::memory_order_release);
    }
  }
  return *font;
}
}  // namespace

long gxUIFormat::defaultFontId()
{
  return defaultFont().load(std::memory_order_relaxed);
}

void gxUIFormat::defaultFontId(long id)
{
  defaultFont().store(gf_narrow(id), std::memory_order_relaxed);
}

gxUIRect gxUIFormat::alignRect(gxUIRect const &r) const
{
  long left = r.left();
  long top = r.top();
  switch (alignment_) {
    case topCenter:
    case center:
    case bottomCenter:
      left -= r.width() / 2;
      break;
    case topRight:
    case centerRight:
    case bottomRight:
      left -= r.width();
      break;
    default:
      break;
  }
  switch (alignment_) {
    case centerLeft:
    case center:
    case centerRight:
      top -= r.height() / 2;
      break;
    case bottomLeft:
    case bottomCenter:
    case bottomRight:
      top -= r.height();
      break;
    default:
      break;
  }
  return {left, top, r.width(), r.height()};
}

gxArchive &operator||(gxArchive &archive, gxUIFormat &format)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion(module, versionLine);
  long fontId = format.fontId();
  int alignment = format.alignment();
  archive || fontId || alignment;
  format = gxUIFormat(fontId, static_cast<gxUIFormat::Alignment>(alignment));
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxUIFormat const &format)
{
  static constexpr char const *names[] = {"topLeft",     "topCenter",  "topRight",     "centerLeft", "center",
                                          "centerRight", "bottomLeft", "bottomCenter", "bottomRight"};
  auto const index = static_cast<std::uint32_t>(format.alignment());
  os << "font " << format.fontId() << ", ";
  return index < std::size(names) ? os << names[index] : os << "alignment " << static_cast<int>(format.alignment());
}
