/// @file
/// Reads whatever bytes as a footprint: it is refused with a place, or makes models that are stored and loaded equal.

#include "footprint/models.h"
#include "foundation/archive.h"
#include "fuzz/expect.h"

#include <cstdint>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
  if (size > 20000)
    return 0;
  std::string_view const text(reinterpret_cast<char const *>(data), size);
  try {
    gxFootprintModels const models = gfFootprintModels(gxFootprint::read(text));
    for (gxSMDGDModel const *model : {&models.pads, &models.body, &models.courtyard}) {
      std::stringstream stream;
      gxStoringArchive store(stream);
      gxSMDGDModel copy(*model), loaded;
      store || copy;
      store.flush();
      gxLoadingArchive load(stream);
      load || loaded;
      expect(loaded == *model, "a model is not the one that was stored");
    }
  } catch (gxFootprintError const &e) {
    expect(e.message().find_first_of("0123456789") != std::string::npos, "a refusal without its place");
  }
  return 0;
}
