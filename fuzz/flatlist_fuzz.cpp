/// @file
/// Reads whatever bytes as a flat drawing list, into graphics and onto a tablet that records: both end well, with the
/// same records, or with the same error, and an error leaves the graphics as they were.

#include "dispc/glist.h"
#include "dispc/graphic_flat.h"
#include "dispc/uitablet.h"
#include "foundation/exception.h"
#include "fuzz/expect.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace
{

template <class Work>
std::string errorOf(Work work)
try {
  work();
  return "";
} catch (gxException const &e) {
  return e.what();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
  std::vector<unsigned char> bytes(data, data + size);
  gxr_list const flat{100, bytes.data(), bytes.size(), 0};
  gxGraphicList list;
  gxUITablet tablet;
  tablet.recordOn() = true;
  std::string const error = errorOf([&] { gfGraphicListAppend(list, &flat); });
  expect(errorOf([&] { gfUITabletDraw(tablet, &flat, gxUITablet::image); }) == error, "two readings, two errors");
  expect(error.empty() || list.items().empty(), "a failed reading left graphics behind");
  if (!error.empty())
    return 0;
  gxUISketch const sketch = list.sketch(gxUITablet::image), &drawn = tablet.sketch();
  expect(sketch.size() == drawn.size() && !std::memcmp(sketch.bytes(), drawn.bytes(), std::size_t(sketch.size())),
         "graphics and drawing differ");
  return 0;
}
