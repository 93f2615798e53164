#include "footprint/models.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

// Every footprint below the folder that the environment names (`./test corpus` sets it), or else of our own ones, is
// read, described, and its models stored and loaded.

namespace
{

TEST(FootprintCorpus, EveryFileIsReadAndItsModelsAreStoredAndLoadedEqual)
{
  char const *const named = std::getenv("GX_FOOTPRINTS");
  std::filesystem::path const folder = named ? named : GX_SOURCE_ROOT "/fuzz/corpus/footprint";
  long files = 0, refused = 0, outlines = 0, problems = 0, unknown = 0;
  for (auto const &entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".kicad_mod")
      continue;
    ++files;
    try {
      std::ostringstream text;
      text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
      gxFootprint const footprint = gxFootprint::read(text.str());
      gxFootprintModels const models = gfFootprintModels(footprint);
      for (auto const &[name, count] : footprint.unknown)
        unknown += count;
      problems += static_cast<long>(models.problems.size());
      EXPECT_EQ(models.padOf.size(), models.pads.polys().size()) << entry.path();
      for (gxSMDGDModel const *model : {&models.pads, &models.body, &models.courtyard}) {
        outlines += model->numPolys();
        gxSMDGDModel loaded;
        loadArchived(archivedBytes(*model), loaded);
        EXPECT_EQ(loaded, *model) << entry.path();
      }
    } catch (gxFootprintError const &e) {
      ++refused;
      EXPECT_NE(e.message(), "");
      std::cout << entry.path() << ": " << e.message() << '\n';
    }
  }
  EXPECT_GT(files, 0);
  EXPECT_LT(refused, files / 100 + 1) << "the reader refuses what is good";
  std::cout << files << " files, " << refused << " refused, " << outlines << " outlines, " << problems
            << " problems told, " << unknown << " unknown items\n";
}

}  // namespace
