#pragma once

#include "footprint/models.h"
#include "tools/gxsmd/findings.h"

#include <functional>
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

/// Calls visit(path) for each file, and for each footprint below a folder, in the order of their names. A folder that
/// cannot be looked into, or has no footprint below it, is visited itself: reading it tells that.
void eachFootprint(std::vector<std::string> const &paths, std::function<void(std::string const &)> const &visit);
/// The same as a list.
std::vector<std::string> footprintsIn(std::vector<std::string> const &paths);

/// What does not agree with itself, or with the sizes that the name of the footprint tells.
std::vector<Finding> deviationsOf(Device const &device, double tolerance);

/// The box round what is drawn of the body; of its largest closed outline, if there is one.
gxRect bodyBox(gxSMDGDModel const &body);
