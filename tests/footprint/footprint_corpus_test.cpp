#include "backends/pels/pelsurface.h"
#include "dispc/uitablet.h"
#include "dispc/wrfm/polyprivate.h"
#include "footprint/models.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

// Every footprint below the folder that the environment names (`./test corpus` sets it), or else of our own ones, is
// read, described, its models stored and loaded, and drawn.

namespace
{

/// The pels that were drawn on a layer.
gxUIRect drawnOn(gxPelBuffer<gxPackedRGB32Pel> const &pels)
{
  long left = pels.width(), top = pels.height(), right = 0, bottom = 0;
  for (long y = 0; y < pels.height(); ++y) {
    gxPackedRGB32Pel const *const row = pels.pointToRow(y);
    for (long x = 0; x < pels.width(); ++x)
      if (row[x].spare() != 0) {
        left = std::min(left, x);
        right = std::max(right, x + 1);
        top = std::min(top, y);
        bottom = y + 1;
      }
  }
  return right > left ? gxUIRect(left, top, right - left, bottom - top) : gxUIRect();
}

/// A recording of all outlines, about 100 pels large: what it is measured to cover is what it covers, and lies within
/// the boxes of the outlines.
void expectPictureWithinItsExtent(gxFootprintModels const &models, std::filesystem::path const &path)
{
  gxRect const box =
      models.pads.boundingBox({}).enclose(models.body.boundingBox({})).enclose(models.courtyard.boundingBox({}));
  if (box.isEmpty())
    return;
  double const scale = 100.0 / std::max({box.size().x(), box.size().y(), 1e-6});
  gxVector<2> const corner(7.3, 6.8);
  gxXform<2> const map(gxMatrix<2>(scale, 0, 0, scale), corner - box.origin() * scale);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  for (gxSMDGDModel const *const model : {&models.pads, &models.body, &models.courtyard})
    for (gxSMDGDPoly const &poly : model->polys())
      gxSMDGDPolyPrivate::drawWireframe(poly, map, recorder, gxColor::orangeColor(), gxUITablet::overlay);

  gxPelSurface surface(120, 120);
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.visible(true);
  gxUIRect const extent = tablet.encloseRect(recorder.sketch(), {}, gxUITablet::overlay);
  gxVector<2> const end = corner + box.size() * scale;
  constexpr double rounding = 1e-6;
  EXPECT_GE(extent.left(), std::floor(corner.x() - rounding)) << path;
  EXPECT_GE(extent.top(), std::floor(corner.y() - rounding)) << path;
  EXPECT_LE(extent.right(), std::floor(end.x() + rounding) + 1.0) << path;
  EXPECT_LE(extent.bottom(), std::floor(end.y() + rounding) + 1.0) << path;

  constexpr long most = 200;  // what is larger repeats its pads, and takes nearly all the time
  if (models.pads.numVertices() + models.body.numVertices() + models.courtyard.numVertices() > most)
    return;
  tablet.draw(recorder.sketch(), {}, gxUITablet::overlay);
  EXPECT_EQ(drawnOn(surface.overlayPels()), extent) << path;
}

TEST(FootprintCorpus, EveryFileIsReadDrawnAndItsModelsAreStoredAndLoadedEqual)
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
      expectPictureWithinItsExtent(models, entry.path());
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
