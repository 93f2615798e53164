#pragma once

#include "footprint/models.h"

#include <string>
#include <vector>

/// What a file describes.
struct Device {
  std::string path;
  gxFootprint footprint;  ///< empty but for its name if the models were stored
  gxFootprintModels models;
};

/// All bytes of a file. Throws FileError.
std::string contentOf(std::string const &path);

/// Reads a footprint, or models that gxsmd has stored. Throws FileError, which names the file and the place.
Device readDevice(std::string const &path);

/// Stores the three models. Throws FileError.
void writeModels(std::string const &path, gxFootprintModels const &models);

/// The footprints among files and below folders, in the order of their names. Throws FileError for a path that cannot
/// be read, and for a folder without a footprint.
std::vector<std::string> footprintsIn(std::vector<std::string> const &paths);

/// What does not agree with itself, or with the sizes that the name of the footprint tells, a line each.
std::vector<std::string> deviationsOf(Device const &device, double tolerance);

/// The box round what is drawn of the body; of its largest closed outline, if there is one.
gxRect bodyBox(gxSMDGDModel const &body);
