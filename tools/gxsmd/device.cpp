#include "tools/gxsmd/device.h"

#include "foundation/archive.h"
#include "tools/support/errors.h"
#include "tools/support/output.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

namespace fs = std::filesystem;

namespace
{

constexpr std::string_view archiveStart = "gxar";

void passModels(gxArchive &archive, gxFootprintModels &models)
{
  for (gxSMDGDModel *const model : {&models.pads, &models.body, &models.courtyard})
    archive || static_cast<gxPersistent &>(*model);
}

/// Models that were stored by gxsmd, or one that a program stored alone, which counts as pads.
void loadModels(std::string const &text, gxFootprintModels &models)
{
  try {
    std::istringstream is(text);
    gxLoadingArchive archive(is);
    passModels(archive, models);
    return;
  } catch (gxException const &) {
    models = {};
    std::istringstream is(text);
    gxLoadingArchive archive(is);
    archive || static_cast<gxPersistent &>(models.pads);
    unsigned char more = 0;
    try {
      archive || more;
    } catch (gxException const &) {  // that was all
      return;
    }
    throw;
  }
}

/// What the models do not hold: each outline is a pad of its own, and what does not close is told by its ends.
void nameParts(Device &device)
{
  auto &[path, footprint, models] = device;
  for (std::size_t i = 0; i < models.pads.polys().size(); ++i) {
    gxFootprint::Pad pad;
    pad.number = std::to_string(i + 1);
    footprint.pads.push_back(pad);
    models.padOf.push_back(i);
  }
  for (gxSMDGDModel const *const model : {&models.body, &models.courtyard})
    for (gxSMDGDPoly const &poly : model->polys())
      if (poly.isOpen() && poly.numVertices() > 0) {
        auto const last = static_cast<int>(poly.numVertices()) - 1;
        models.problems.push_back({gxFootprintProblem::gap,
                                   model == &models.body ? "body" : "courtyard",
                                   {},
                                   poly.vertex(last, false).point(),
                                   poly.vertex(0, false).point()});
      }
}

}  // namespace

std::string contentOf(std::string const &path)
{
  errno = 0;
  std::error_code unknown;
  std::ifstream is(path, std::ios::binary);
  auto const size = fs::file_size(path, unknown);
  constexpr std::uintmax_t most = 1UL << 28;
  if (!unknown && size > most)
    throw FileError(path + ": it is larger than 256 MB; give a footprint, or models that were stored");
  std::string text(unknown ? 4096 : static_cast<std::size_t>(size) + 1, '\0');  // one more, so that the end is met
  std::size_t read = 0;
  while (is.read(text.data() + read, static_cast<std::streamsize>(text.size() - read))) {
    read = text.size();
    text.resize(2 * read);
  }
  text.resize(read + static_cast<std::size_t>(is.gcount()));
  if (!is.eof())
    throw FileError(path + ": " + reasonOf(fs::is_directory(path, unknown) && errno != EACCES ? EISDIR : errno));
  return text;
}

Device readDevice(std::string const &path)
{
  Device device;
  device.path = path;
  device.footprint.name = fs::path(path).stem().string();
  std::string const text = contentOf(path);
  try {
    if (text.substr(0, archiveStart.size()) == archiveStart) {
      loadModels(text, device.models);
      nameParts(device);
    } else {
      device.footprint = gxFootprint::read(text);
      device.models = gfFootprintModels(device.footprint);
    }
  } catch (gxFootprintError const &e) {
    throw FileError(path + ": " + e.message() + "; mend the file there, or write it anew");
  } catch (gxException const &e) {
    throw FileError(path + ": " + e.message() + "; store the models again");
  }
  return device;
}

void writeModels(std::string const &path, gxFootprintModels const &models)
{
  OutputFile file(path);
  gxFootprintModels stored = models;
  try {
    gxStoringArchive archive(file.stream());
    passModels(archive, stored);
    archive.flush();
  } catch (gxException const &) {
    file.finish();  // tells what the stream did not take
    throw;
  }
  file.finish();
}

namespace
{

/// How many there were.
long visitBelow(fs::path const &folder, std::function<void(std::string const &)> const &visit)
{
  std::vector<std::pair<fs::path, bool>> found;  // in this folder, and whether they are folders
  std::error_code error;
  for (fs::directory_iterator i(folder, error), end; !error && i != end; i.increment(error)) {
    std::error_code unknown;
    bool const isFolder = i->is_directory(unknown) && !i->is_symlink(unknown);
    if (isFolder || i->path().extension() == ".kicad_mod")
      found.emplace_back(i->path(), isFolder);
  }
  if (error) {
    visit(folder.string());
    return 1;
  }
  std::sort(found.begin(), found.end());
  long count = 0;
  for (auto const &[path, isFolder] : found) {
    if (isFolder)
      count += visitBelow(path, visit);
    else {
      visit(path.string());
      ++count;
    }
  }
  return count;
}

}  // namespace

void eachFootprint(std::vector<std::string> const &paths, std::function<void(std::string const &)> const &visit)
{
  for (std::string const &path : paths) {
    std::error_code unknown;
    if (!fs::is_directory(path, unknown))
      visit(path);
    else if (visitBelow(path, visit) == 0)
      visit(path);
  }
}

std::vector<std::string> footprintsIn(std::vector<std::string> const &paths)
{
  std::vector<std::string> files;
  eachFootprint(paths, [&](std::string const &path) { files.push_back(path); });
  return files;
}
